// Board configuration, hardware query, selection, window open rules, refusals of bad input.
#include "board_test.h"

TEST_F(BoardTest, DefaultIsOneVoodoo2WithTwoTmus) {
  init();
  GrHwConfiguration hw;
  std::memset(&hw, 0xAB, sizeof hw);
  ASSERT_EQ(grSstQueryHardware(&hw), FXTRUE);
  EXPECT_EQ(hw.num_sst, 1);
  EXPECT_EQ(hw.SSTs[0].type, GR_SSTTYPE_VOODOO);
  const GrVoodooConfig_t &v = hw.SSTs[0].sstBoard.VoodooConfig;
  EXPECT_EQ(v.fbRam, 4);
  EXPECT_EQ(v.fbiRev, 0x102);  // Voodoo2 chip revision 2 with two TMUs
  EXPECT_EQ(v.nTexelfx, 2);
  EXPECT_EQ(v.sliDetect, FXFALSE);
  EXPECT_EQ(v.tmuConfig[0].tmuRam, 4);
  EXPECT_EQ(v.tmuConfig[1].tmuRam, 4);
  EXPECT_EQ(hw.SSTs[1].type, 0) << "entries past num_sst are zeroed";
  char version[80];
  grGlideGetVersion(version);
  EXPECT_STREQ(version, "2.56");
}

TEST_F(BoardTest, BoardsDescribedByOptions) {
  zvbSetOption("ZVGL_BOARD_COUNT", "4");
  zvbSetOption("ZVGL_BOARD_FBRAM", "8");
  zvbSetOption("ZVGL_BOARD0_TYPE", "voodoo");
  zvbSetOption("ZVGL_BOARD0_TMUS", "1");
  zvbSetOption("ZVGL_BOARD1_TYPE", "rush");
  zvbSetOption("ZVGL_BOARD2_TYPE", "voodoo3");
  zvbSetOption("ZVGL_BOARD3_SLI", "1");
  zvbSetOption("ZVGL_BOARD3_TMUS", "1");
  zvbSetOption("ZVGL_BOARD3_TMURAM", "2");
  init();
  GrHwConfiguration hw;
  ASSERT_EQ(grSstQueryHardware(&hw), FXTRUE);
  ASSERT_EQ(hw.num_sst, 4);
  const GrVoodooConfig_t &v1 = hw.SSTs[0].sstBoard.VoodooConfig;
  EXPECT_EQ(hw.SSTs[0].type, GR_SSTTYPE_VOODOO);
  EXPECT_EQ(v1.fbRam, 8);
  EXPECT_LE(v1.fbiRev, 5) << "Voodoo Graphics revisions stay below the Voodoo2 range";
  EXPECT_EQ(v1.nTexelfx, 1);
  EXPECT_EQ(v1.tmuConfig[1].tmuRam, 0);
  EXPECT_EQ(hw.SSTs[1].type, GR_SSTTYPE_SST96);
  EXPECT_EQ(hw.SSTs[1].sstBoard.SST96Config.fbRam, 8);
  EXPECT_EQ(hw.SSTs[1].sstBoard.SST96Config.nTexelfx, 1);
  EXPECT_EQ(hw.SSTs[1].sstBoard.SST96Config.tmuConfig.tmuRam, 4);
  EXPECT_GE(hw.SSTs[2].sstBoard.VoodooConfig.fbiRev, 0x11002) << "Voodoo3 is told by its FBI revision";
  const GrVoodooConfig_t &v4 = hw.SSTs[3].sstBoard.VoodooConfig;
  EXPECT_EQ(v4.sliDetect, FXTRUE);
  EXPECT_EQ(v4.fbiRev, 0x82) << "a one-TMU Voodoo2";
  EXPECT_EQ(v4.tmuConfig[0].tmuRam, 2);
  char version[80];
  grGlideGetVersion(version);
  EXPECT_STREQ(version, "2.46") << "the version follows the first board's family";
}

TEST_F(BoardTest, ZeroAndSeventeenBoards) {
  zvbFaultBoardCount(0);
  GrHwConfiguration hw;
  EXPECT_EQ(grSstQueryBoards(&hw), FXTRUE);
  EXPECT_EQ(hw.num_sst, 0);
  init();
  EXPECT_EQ(grSstQueryHardware(&hw), FXFALSE);
  EXPECT_EQ(hw.num_sst, 0);
  EXPECT_FALSE(open());
  grGlideShutdown();

  zvbFaultBoardCount(17);
  init();
  ASSERT_EQ(grSstQueryHardware(&hw), FXTRUE);
  EXPECT_EQ(hw.num_sst, 17) << "one more board than the record can hold";
  error_messages().clear();
  EXPECT_EQ(hw.SSTs[15].sstBoard.VoodooConfig.nTexelfx, 2);
  grSstSelect(16);
  ASSERT_EQ(error_messages().size(), 1u) << "the 17th board does not exist";
  EXPECT_NE(error_messages()[0].find("grSstSelect"), std::string::npos);
  grSstSelect(15);
  EXPECT_TRUE(open());
  EXPECT_EQ(grSstScreenWidth(), 640u);
}

TEST_F(BoardTest, FailingQueryAndOpen) {
  zvbFaultQueryHardware(1);
  init();
  GrHwConfiguration hw;
  hw.num_sst = 5;
  EXPECT_EQ(grSstQueryHardware(&hw), FXFALSE);
  EXPECT_EQ(hw.num_sst, 0);
  zvbFaultQueryHardware(0);
  EXPECT_EQ(grSstQueryHardware(&hw), FXTRUE);

  zvbFaultWinOpen(0, 1);
  EXPECT_FALSE(open());
  EXPECT_EQ(grSstScreenWidth(), 0u);
  zvbFaultWinOpen(0, 0);
  EXPECT_TRUE(open());
}

TEST_F(BoardTest, ResolutionCodes) {
  zvbSetOption("ZVGL_BOARD_FBRAM", "8");
  init();
  struct Case { int code; unsigned w, h; };
  const Case cases[] = {{GR_RESOLUTION_640x480, 640, 480}, {GR_RESOLUTION_800x600, 800, 600},
                        {GR_RESOLUTION_1024x768, 1024, 768}, {0x564C5300 + 768, 1024, 768},
                        {0x564C5400 + 255, 1024, 768}, {0x564C5300, 1024, 768}};
  for (const Case &c : cases) {
    ASSERT_TRUE(open(2, 1, c.code)) << std::hex << c.code;
    EXPECT_EQ(grSstScreenWidth(), c.w);
    EXPECT_EQ(grSstScreenHeight(), c.h);
    grSstWinClose();
  }
  EXPECT_FALSE(open(2, 1, 0x10)) << "past the last code";
  EXPECT_FALSE(open(2, 1, 0x564C52FF));
  EXPECT_FALSE(open(2, 1, 0x564C5300 + 0x10000));
  EXPECT_FALSE(open(2, 1, GR_RESOLUTION_NONE)) << "only a Voodoo Rush opens windowed";
  EXPECT_FALSE(open(2, 1, GR_RESOLUTION_640x480, 9)) << "unknown refresh code";
}

TEST_F(BoardTest, FamilyAndMemoryLimits) {
  zvbSetOption("ZVGL_BOARD_COUNT", "2");
  zvbSetOption("ZVGL_BOARD1_TYPE", "voodoo");
  init();
  // Voodoo2 (board 0): nothing below 512 x 384; 4 MB hold 800 x 600 three times but not
  // 1024 x 768.
  EXPECT_FALSE(open(2, 1, GR_RESOLUTION_320x240));
  EXPECT_FALSE(open(2, 1, GR_RESOLUTION_512x256));
  EXPECT_FALSE(open(2, 1, GR_RESOLUTION_1024x768));
  EXPECT_TRUE(open(3, 0, GR_RESOLUTION_800x600));
  EXPECT_FALSE(open()) << "already open";
  EXPECT_FALSE(error_messages().empty());
  grSstWinClose();
  EXPECT_TRUE(open(1, 1, GR_RESOLUTION_1024x768)) << "two buffers of 1.5 MB fit";
  // Voodoo Graphics (board 1): small modes are fine, triple buffering is not.
  grSstSelect(1);
  EXPECT_TRUE(open(2, 1, GR_RESOLUTION_320x240));
  grSstWinClose();
  EXPECT_FALSE(open(3, 0, GR_RESOLUTION_320x240));
}

TEST_F(BoardTest, BadInputIsRefusedThroughTheCallback) {
  init();
  ASSERT_TRUE(open());
  const GrState before = state();
  error_messages().clear();
  EXPECT_EQ(grSstQueryHardware(nullptr), FXFALSE);
  grSstPerfStats(nullptr);
  grGlideGetState(nullptr);
  grGlideSetState(nullptr);
  grGlideGetVersion(nullptr);
  grDrawTriangle(nullptr, nullptr, nullptr);
  grDrawPolygonVertexList(4, nullptr);
  grFogTable(nullptr);
  grCullMode(3);
  grDepthBufferMode(5);
  grAlphaTestFunction(-1);
  grColorCombine(0xA, GR_COMBINE_FACTOR_ONE, 0, 0, 0);
  grAlphaCombine(GR_COMBINE_FUNCTION_LOCAL, 6, 0, 0, 0);
  grFogMode(0x400);
  grRenderBuffer(GR_BUFFER_AUXBUFFER);
  grHints(7, 0);
  grBufferSwap(256);
  grSstOrigin(2);
  EXPECT_EQ(error_messages().size(), 18u);
  EXPECT_TRUE(same(before, state())) << "refused calls change nothing";
  GrState junk;
  std::memset(&junk, 0x5A, sizeof junk);
  grGlideSetState(&junk);
  EXPECT_EQ(error_messages().size(), 19u);
  EXPECT_TRUE(same(before, state()));
  EXPECT_EQ(grBufferNumPending(), 0);
}

TEST_F(BoardTest, CallsBeforeInitOrWithoutWindowDoNothing) {
  GrVertex v{};
  grDrawTriangle(&v, &v, &v);
  grBufferClear(0, 0, 0);
  grBufferSwap(1);
  EXPECT_EQ(grBufferNumPending(), 0);
  EXPECT_EQ(grSstScreenWidth(), 0u);
  EXPECT_EQ(grSstControl(GR_CONTROL_ACTIVATE), FXTRUE);
  init();
  grDrawTriangle(&v, &v, &v);
  GrLfbInfo_t info{};
  info.size = sizeof info;
  EXPECT_EQ(grLfbLock(GR_LFB_READ_ONLY, GR_BUFFER_FRONTBUFFER, GR_LFBWRITEMODE_ANY, GR_ORIGIN_UPPER_LEFT,
                      FXFALSE, &info), FXFALSE);
  ZvbBuffers buffers;
  EXPECT_EQ(zvbGetBuffers(0, &buffers), -1);
}
