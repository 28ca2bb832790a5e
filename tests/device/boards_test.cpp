// Board discovery: classification, memory, texture units, names and largest modes as the
// software board reports its families; the enumeration's failures and clamps.
#include "device_test.h"

#include "vld/wsys/vld_wsys.h"

namespace {

using BoardsTest = DeviceTest;

// The default board: one Voodoo2 with 4 MB of frame buffer and two 4 MB TMUs.
TEST_F(BoardsTest, DefaultVoodoo2)
{
    startBoards();
    ASSERT_EQ(vlddb.unitCount, 1);
    const vld_unit& u = vlddb.units[0];
    EXPECT_STREQ(u.boardName, "Voodoo2");
    EXPECT_EQ(u.index, 0);
    EXPECT_EQ(u.glideStateSize, 312u);
    EXPECT_EQ(u.integrated2D, 0);
    EXPECT_EQ(u.frameBufferBytes, 4 << 20);
    EXPECT_EQ(u.sliPair, 0);
    EXPECT_EQ(u.tmuCount, 2);
    EXPECT_EQ(u.tmuMin, 0);
    EXPECT_EQ(u.tmu[0].lowAddress, 0u);
    EXPECT_EQ(u.tmu[0].highAddress, 4u << 20);
    EXPECT_EQ(u.tmu[1].highAddress, 4u << 20);
    EXPECT_EQ(u.defaultWidth, 800);
    EXPECT_EQ(u.defaultHeight, 600);
    EXPECT_EQ(u.width, 800);
    EXPECT_EQ(u.height, 600);
    EXPECT_EQ(u.resolutionCode, 0x8);
    EXPECT_EQ(u.refreshHz, 60);
    EXPECT_EQ(u.refreshCode, 0);
    EXPECT_EQ(u.notRush, 1);
    EXPECT_EQ(u.clearStencil, 0);
    EXPECT_EQ(u.clearDepth, 0xFFFF);
    EXPECT_EQ(u.opened, 0);
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[0]);
    EXPECT_EQ(vlddb.swapInterval, 1);
    EXPECT_EQ(vlddb.glideInitialised, 1);
    EXPECT_EQ(vlddb.minimumSpareUnits, 2);
    EXPECT_EQ(vlddb.grGetIntegerVLT, nullptr) << "the software board has no VLT extras";
}

// Start-up runs once: a second call makes no Glide call at all.
TEST_F(BoardsTest, StartupRunsOnce)
{
    startBoards();
    EXPECT_EQ(KSP_vld_init_hw(), 0);
    EXPECT_TRUE(calls().empty());
}

// A type-0 board is told apart by its revision: 0x1000 up is a Banshee, 0x11002 up a Voodoo3,
// both with 2D on the same output and 1280 x 1024 as their largest mode.
TEST_F(BoardsTest, BansheeAndVoodoo3ByRevision)
{
    board("ZVGL_BOARD_COUNT", "3");
    board("ZVGL_BOARD_TYPE", "voodoo");
    board("ZVGL_BOARD0_FBIREV", "0x1000");
    board("ZVGL_BOARD1_FBIREV", "0x11002");
    board("ZVGL_BOARD2_FBIREV", "0x11001");
    startBoards();
    ASSERT_EQ(vlddb.unitCount, 3);
    const char* const names[3] = {"Banshee", "Voodoo3", "Banshee"};
    for (int i = 0; i < 3; ++i) {
        const vld_unit& u = vlddb.units[i];
        EXPECT_STREQ(u.boardName, names[i]) << "board " << i;
        EXPECT_EQ(u.integrated2D, 1) << "board " << i;
        EXPECT_EQ(u.defaultWidth, 1280) << "board " << i;
        EXPECT_EQ(u.defaultHeight, 1024) << "board " << i;
        EXPECT_EQ(u.resolutionCode, 0xD) << "board " << i;
    }
}

// Voodoo Graphics below 0x1000 and above revision 5 is a Voodoo2; its largest mode follows
// its memory: 1024 x 768 from 8 MB, 800 x 600 from 4 MB, else 640 x 480.
TEST_F(BoardsTest, LargestModeByMemory)
{
    board("ZVGL_BOARD_COUNT", "3");
    board("ZVGL_BOARD_TYPE", "voodoo");
    board("ZVGL_BOARD0_FBRAM", "2");
    board("ZVGL_BOARD1_FBRAM", "8");
    board("ZVGL_BOARD2_FBIREV", "6");
    startBoards();
    EXPECT_STREQ(vlddb.units[0].boardName, "Voodoo Graphics");
    EXPECT_EQ(vlddb.units[0].defaultWidth, 640);
    EXPECT_EQ(vlddb.units[0].tmuCount, 1);
    EXPECT_EQ(vlddb.units[1].defaultWidth, 1024);
    EXPECT_EQ(vlddb.units[1].defaultHeight, 768);
    EXPECT_STREQ(vlddb.units[2].boardName, "Voodoo2");
    EXPECT_EQ(vlddb.units[2].defaultWidth, 800);
}

// A Voodoo2 SLI pair of 4 MB boards holds 8 MB and starts at 1024 x 768.
TEST_F(BoardsTest, Voodoo2SliPair)
{
    board("ZVGL_BOARD_SLI", "1");
    startBoards();
    const vld_unit& u = vlddb.units[0];
    EXPECT_EQ(u.sliPair, 1);
    EXPECT_EQ(u.frameBufferBytes, 8 << 20);
    EXPECT_EQ(u.width, 1024);
    EXPECT_EQ(u.height, 768);
    EXPECT_EQ(u.resolutionCode, 0xC);
}

// The SST96 record: a Voodoo Rush with one TMU, 2D on the same output and 640 x 480; with
// more than 8 MB the same record is a Banshee.
TEST_F(BoardsTest, Sst96Boards)
{
    board("ZVGL_BOARD_COUNT", "2");
    board("ZVGL_BOARD_TYPE", "rush");
    board("ZVGL_BOARD1_FBRAM", "16");
    startBoards();
    const vld_unit& rush = vlddb.units[0];
    EXPECT_STREQ(rush.boardName, "Voodoo Rush");
    EXPECT_EQ(rush.notRush, 0);
    EXPECT_EQ(rush.integrated2D, 1);
    EXPECT_EQ(rush.tmuCount, 1);
    EXPECT_EQ(rush.frameBufferBytes, 4 << 20);
    EXPECT_EQ(rush.tmu[0].highAddress, 4u << 20);
    EXPECT_EQ(rush.width, 640);
    EXPECT_EQ(rush.height, 480);
    EXPECT_STREQ(vlddb.units[1].boardName, "Banshee");
    EXPECT_EQ(vlddb.units[1].notRush, 1);
    EXPECT_EQ(vlddb.units[1].defaultWidth, 1280);
}

// 17 boards are more than the table holds: 16 are used, and the clamp is told.
TEST_F(BoardsTest, SeventeenBoardsUsedAsSixteen)
{
    zvbFaultBoardCount(17);
    testing::internal::CaptureStderr();
    startBoards();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(vlddb.unitCount, 16);
    EXPECT_NE(err.find("Glide's grSstQueryHardware num_sst forced from 17 to 16\n"), std::string::npos)
        << err;
    EXPECT_EQ(vlddb.units[15].index, 15);
    EXPECT_STREQ(vlddb.units[15].boardName, "Voodoo2");
}

// A failed query leaves no board and nothing selected; start-up reports -1.
TEST_F(BoardsTest, QueryFailure)
{
    zvbFaultQueryHardware(1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(KSP_vld_init_hw(), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "KSP_vld_init_hw: grSstQueryHardware failed\n");
    EXPECT_EQ(vlddb.unitCount, 0);
    EXPECT_EQ(vlddb.currentUnit, nullptr);
    EXPECT_EQ(KSP_vld_unit_init(0), -1) << "no board can open";
}

// The texture-unit settings: the count is only ever lowered, and never below 1; the forced
// minimum must be below the count. The lowest spare count over all boards is kept.
TEST_F(BoardsTest, TmuSettings)
{
    board("ZVGL_BOARD_COUNT", "2");
    setting("KS_ENV_GLIDE_TMU_MIN", "1");
    testing::internal::CaptureStdout();
    startBoards();
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(vlddb.units[0].tmuMin, 1);
    EXPECT_EQ(vlddb.minimumSpareUnits, 1);
    EXPECT_NE(out.find("KSL_vld_config_unit_tmu_counts: unit 1: TMU min forced to 1\n"), std::string::npos)
        << out;
}

TEST_F(BoardsTest, TmuCountLowered)
{
    board("ZVGL_BOARD_COUNT", "3");
    board("ZVGL_BOARD2_TMUS", "1");
    setting("KS_ENV_GLIDE_TMU_COUNT", "0");
    setting("KS_ENV_GLIDE_TMU_MIN", "1");
    testing::internal::CaptureStdout();
    startBoards();
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(vlddb.units[0].tmuCount, 1) << "0 is raised to 1";
    EXPECT_EQ(vlddb.units[0].tmuMin, 1) << "the minimum is decided on the count Glide gave";
    EXPECT_EQ(vlddb.units[0].tmu[1].highAddress, 0u);
    EXPECT_EQ(vlddb.units[2].tmuCount, 1);
    EXPECT_EQ(vlddb.units[2].tmuMin, 0);
    EXPECT_EQ(vlddb.minimumSpareUnits, 0);
    EXPECT_NE(out.find("KSL_vld_config_unit_tmu_counts: unit 0: TMU count forced from 2 to 1\n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("unit 2: TMU count forced from 1 to 1\n"), std::string::npos)
        << "0 is below 1, and is raised to 1 again";
}

TEST_F(BoardsTest, TmuCountNeverRaised)
{
    setting("KS_ENV_GLIDE_TMU_COUNT", "5");
    testing::internal::CaptureStdout();
    startBoards();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(vlddb.units[0].tmuCount, 2);
}

// The configuration dump prints what Glide reported, when asked for with anything but "0".
TEST_F(BoardsTest, ConfigurationDump)
{
    board("ZVGL_BOARD_COUNT", "2");
    board("ZVGL_BOARD1_TYPE", "rush");
    setting("KS_ENV_DUMP_CONFIG", "1");
    testing::internal::CaptureStdout();
    startBoards();
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "KSL_vld_dump_3dfx: 3DFX configuration:\n"
                   "    number of boards: 2\n"
                   "    board 0:\n"
                   "        board type: voodoo\n"
                   "        FB RAM: 4 MB\n"
                   "        Pixelfx (FB) rev: 258\n"
                   "        texelFX chips: 2\n"
                   "        SLI Detect: 0 MB\n"
                   "        texelFX chip 0:\n"
                   "            texelFX chip rev: 2\n"
                   "            texelFX chip ram: 4 MB\n"
                   "        texelFX chip 1:\n"
                   "            texelFX chip rev: 2\n"
                   "            texelFX chip ram: 4 MB\n"
                   "    board 1:\n"
                   "        board type: sst96\n"
                   "        FB RAM: 4 MB\n"
                   "        texelFX chips: 1\n"
                   "        texelFX chip 0:\n"
                   "            texelFX chip rev: 1\n"
                   "            texelFX chip ram: 4 MB\n");
}

TEST_F(BoardsTest, ConfigurationDumpOff)
{
    setting("KS_ENV_DUMP_CONFIG", "0");
    testing::internal::CaptureStdout();
    startBoards();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

} // namespace

namespace {

// The toolkit's count starts the library when nothing has started yet.
TEST_F(BoardsTest, UnitCountRunsStartup)
{
    board("ZVGL_BOARD_COUNT", "3");
    int count = -1;
    EXPECT_EQ(KSI_vld_UnitCountGetVELD(&count), 0);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(vlddb.initialised, 1);
    EXPECT_EQ(vlddb.units[2].index, 2);
    EXPECT_EQ(KSI_vld_UnitCountGetVELD(nullptr), 0);
    KSP_vld_shutdown();
}

} // namespace
