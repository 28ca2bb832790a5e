// Opening a board: the buffers asked for, the exact Glide calls of the opening and set-up,
// the failures, and the board selection around an opening.
#include "device_test.h"

namespace {

using UnitOpenTest = DeviceTest;

// The whole opening of the default board at 800 x 600: window, relay on, screen size, texture
// range of both TMUs, then the set-up with W-buffering and the clears of both colour buffers.
TEST_F(UnitOpenTest, GlideCallSequence)
{
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    const Calls expected = {
        "grSstSelect 0",
        "grSstWinOpen 0x0 8 0 2 1 2 1",
        "grSstControl 1",
        "grSstScreenWidth",
        "grSstScreenHeight",
        "grTexMinAddress 0",
        "grTexMaxAddress 0",
        "grTexMinAddress 1",
        "grTexMaxAddress 1",
        "grCullMode 0",
        "grClipWindow 0 0 800 600",
        "grDepthBufferMode 2",
        "grDepthMask 1",
        "grDepthBufferFunction 7",
        "grColorMask 1 0",
        "grDepthBufferMode 0",
        "grDepthMask 0",
        "grBufferClear 0x00000000 0 65535",
        "grRenderBuffer 0",
        "grBufferClear 0x00000000 0 65535",
        "grRenderBuffer 1",
    };
    EXPECT_EQ(calls(), expected);
    const vld_unit& u = vlddb.units[0];
    EXPECT_EQ(u.opened, 1);
    EXPECT_EQ(u.windowOpen, 1);
    EXPECT_EQ(u.needStateInit, 1);
    EXPECT_EQ(u.colorBuffers, 2);
    EXPECT_EQ(u.depthBuffer, 1);
    EXPECT_EQ(u.alphaBuffer, 0);
    EXPECT_EQ(u.tmu[1].highAddress, 4u << 20) << "the top of the TMU, rounded to 16 bytes";

    // An open board opens at once, without a Glide call.
    EXPECT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_TRUE(calls().empty());
}

// The mipmap-dither and gamma settings reach the set-up; a gamma of 0 makes no gamma call;
// single-buffer mode keeps rendering in the front buffer.
TEST_F(UnitOpenTest, SetupFollowsSettings)
{
    startBoards();
    vlddb.settings.mipmapDither = 1;
    vlddb.settings.gamma = 1.5f;
    vlddb.settings.singleBuffer = 1;
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    Calls trace = calls();
    EXPECT_EQ(firstCall(trace, "grHints"), "grHints 3 0x1");
    EXPECT_EQ(firstCall(trace, "grGammaCorrectionValue"), "grGammaCorrectionValue 1.5");
    EXPECT_EQ(trace.back(), "grBufferClear 0x00000000 0 65535");
    EXPECT_EQ(countCalls(trace, "grRenderBuffer 1"), 0);
    EXPECT_EQ(countCalls(trace, "grRenderBuffer 0"), 1);
}

TEST_F(UnitOpenTest, GammaZeroMakesNoGammaCall)
{
    setting("KS_ENV_GAMMA", "0");
    KSL_vld_init_from_env();
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    const Calls trace = calls();
    EXPECT_EQ(countCalls(trace, "grGammaCorrectionValue"), 0);
    EXPECT_EQ(countCalls(trace, "grHints"), 0);
}

// Triple buffering leaves no room for an auxiliary buffer: an alpha buffer asked for is
// dropped again, and Glide gets 3 colour buffers and 0 auxiliary ones.
TEST_F(UnitOpenTest, AlphaBufferWithTripleBuffering)
{
    setting("KS_ENV_VLD_COLOR_BUFFERS", "3");
    setting("KS_ENV_ALPHA_BUFFER", "1");
    startBoards();
    testing::internal::CaptureStdout();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Veldra: requesting triple buffering\n"
              "Veldra: alpha buffer enabled, depth buffer disabled\n"
              "Veldra: alpha buffer disabled due to triple buffering\n");
    const Calls trace = calls();
    EXPECT_EQ(firstCall(trace, "grSstWinOpen"), "grSstWinOpen 0x0 8 0 2 1 3 0");
    EXPECT_EQ(firstCall(trace, "grColorMask"), "grColorMask 1 0");
    EXPECT_EQ(firstCall(trace, "grDepthBufferMode"), "grDepthBufferMode 0");
    EXPECT_EQ(vlddb.units[0].colorBuffers, 3);
    EXPECT_EQ(vlddb.units[0].alphaBuffer, 0);
    EXPECT_EQ(vlddb.units[0].depthBuffer, 0);
}

TEST_F(UnitOpenTest, TripleBufferingDropsDepth)
{
    setting("KS_ENV_VLD_COLOR_BUFFERS", "4");
    startBoards();
    testing::internal::CaptureStdout();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Veldra: requesting triple buffering\n"
              "Veldra: depth buffer disabled due to triple buffering\n");
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x0 8 0 2 1 3 0");
}

// An alpha buffer in place of depth: alpha writes on, no W-buffering.
TEST_F(UnitOpenTest, AlphaBufferInPlaceOfDepth)
{
    setting("KS_ENV_ALPHA_BUFFER", "1");
    startBoards();
    testing::internal::CaptureStdout();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    testing::internal::GetCapturedStdout();
    const Calls trace = calls();
    EXPECT_EQ(firstCall(trace, "grSstWinOpen"), "grSstWinOpen 0x0 8 0 2 1 2 1");
    EXPECT_EQ(firstCall(trace, "grColorMask"), "grColorMask 1 1");
    EXPECT_EQ(countCalls(trace, "grDepthBufferMode 2"), 0);
    EXPECT_EQ(vlddb.units[0].alphaBuffer, 1);
    EXPECT_EQ(vlddb.units[0].depthBuffer, 0);

    setting("KS_ENV_ALPHA_BUFFER", "0");
    KSP_vld_WinClose(&vlddb.units[0]);
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(vlddb.units[0].depthBuffer, 1) << "read again at each opening";
}

// A refresh request of 50 Hz ends on the closing row, and Glide receives its code.
TEST_F(UnitOpenTest, RefreshNoneReachesGlide)
{
    setting("KS_ENV_REFRESH_DEFAULT", "50");
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x0 8 255 2 1 2 1");
}

// The 4 MB Voodoo2 cannot hold two colour buffers and depth at 1024 x 768: the open fails with
// its message and -1, the board stays closed, and an 8 MB board opens the same mode.
TEST_F(UnitOpenTest, ModeTooLargeForTheBoard)
{
    setting("KS_ENV_RESOLUTION_DEFAULT", "1024x768");
    startBoards();
    testing::internal::CaptureStderr();
    EXPECT_EQ(KSP_vld_unit_init(0), -1);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.rfind("KSP_vld_unit_init: grSstWinOpen failed!\n    grSstWinOpen params: hWnd = 0x", 0), 0u)
        << err;
    EXPECT_NE(err.find(", res = 0xc, ref = 0x0, nbufsc = 2, nbufsa = 1\n"), std::string::npos) << err;
    EXPECT_EQ(vlddb.units[0].opened, 0);
    EXPECT_EQ(vlddb.units[0].windowOpen, 0);
}

TEST_F(UnitOpenTest, EightMegabytesOpen1024x768)
{
    board("ZVGL_BOARD_FBRAM", "8");
    startBoards();
    EXPECT_EQ(vlddb.units[0].resolutionCode, 0xC);
    EXPECT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(firstCall(calls(), "grClipWindow"), "grClipWindow 0 0 1024 768");
}

// A window that does not open leaves the board closed; the next opening tries again.
TEST_F(UnitOpenTest, FailedOpenIsRetried)
{
    startBoards();
    zvbFaultWinOpen(0, 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(KSP_vld_unit_init(0), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("grSstWinOpen failed!"), std::string::npos);
    Calls trace = calls();
    EXPECT_EQ(countCalls(trace, "grSstControl"), 0) << "nothing after the failed open";
    EXPECT_EQ(countCalls(trace, "grClipWindow"), 0);

    zvbFaultWinOpen(0, 0);
    EXPECT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(vlddb.units[0].opened, 1);
    EXPECT_EQ(countCalls(calls(), "grSstWinOpen"), 1);
}

// Numbers outside the table are refused without a Glide call.
TEST_F(UnitOpenTest, OutOfRange)
{
    startBoards();
    EXPECT_EQ(KSP_vld_unit_init(-1), -1);
    EXPECT_EQ(KSP_vld_unit_init(1), -1);
    EXPECT_TRUE(calls().empty());
}

// Opening another board than the selected one selects it for the opening and the previous one
// again afterwards; with none selected before, the opened board stays selected.
TEST_F(UnitOpenTest, SelectionAroundTheOpening)
{
    board("ZVGL_BOARD_COUNT", "2");
    startBoards();
    ASSERT_EQ(vlddb.currentUnit, &vlddb.units[0]);
    ASSERT_EQ(KSP_vld_unit_init(1), 0);
    Calls trace = calls();
    EXPECT_EQ(trace.front(), "grSstSelect 1");
    EXPECT_EQ(trace.back(), "grSstSelect 0");
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[0]);

    vlddb.currentUnit = nullptr;
    KSP_vld_WinClose(&vlddb.units[1]);
    calls();
    ASSERT_EQ(KSP_vld_unit_init(1), 0);
    EXPECT_EQ(calls().back(), "grRenderBuffer 1");
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[1]);
}

// Closing a board closes its own window, even while another board is selected.
TEST_F(UnitOpenTest, WinCloseOnItsOwnBoard)
{
    board("ZVGL_BOARD_COUNT", "2");
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(1), 0);
    calls();
    KSP_vld_WinClose(&vlddb.units[1]);
    const Calls expected = {"grSstSelect 1", "grSstWinClose", "grSstSelect 0"};
    EXPECT_EQ(calls(), expected);
    EXPECT_EQ(vlddb.units[1].opened, 0);
    EXPECT_EQ(vlddb.units[1].windowOpen, 0);
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[0]);
    KSP_vld_WinClose(&vlddb.units[1]);
    EXPECT_TRUE(calls().empty()) << "a closed board has no window to close";
}

// The window for Glide: the record's own, else the toolkit's mouse-arena window, else the
// toolkit's callback.
void vld_test_window_callback(void** window)
{
    *window = (void*)(uintptr_t)0x5678;
}

TEST_F(UnitOpenTest, WindowSources)
{
    board("ZVGL_BOARD_COUNT", "3");
    startBoards();
    KSI_vld_set_chn_ma_callback((void*)&vld_test_window_callback);
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x5678 8 0 2 1 2 1");
    KSI_vld_set_mouse_arena_window((void*)(uintptr_t)0x1234);
    ASSERT_EQ(KSP_vld_unit_init(1), 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x1234 8 0 2 1 2 1");
    vlddb.units[2].window = (void*)(uintptr_t)0x9abc;
    ASSERT_EQ(KSP_vld_unit_init(2), 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x9abc 8 0 2 1 2 1");
}

} // namespace
