// Display modes: the selection rules of the refresh and resolution tables, the starting mode
// from the environment, and the toolkit's mode calls.
#include "device_test.h"

#include "vld/glide/vld_device_local.h"

namespace {

using ModesTest = DeviceTest;

struct RefreshCase {
    int request;
    int hz;
    int code;
};

// Exact rates, the highest rate below, the lowest above, and the closing row as a rate of 0.
TEST_F(ModesTest, RefreshSelection)
{
    const RefreshCase cases[] = {
        {60, 60, 0},  {85, 85, 7},   {72, 72, 2},    {65, 60, 0},  {110, 100, 6}, {130, 120, 8},
        {86, 85, 7},  {50, 0, 0xFF}, {1, 0, 0xFF},   {0, 0, 0xFF}, {-5, 60, 0},   {1000, 120, 8},
    };
    vld_unit u{};
    for (const RefreshCase& c : cases) {
        KSP_vld_select_refresh(&u, c.request);
        EXPECT_EQ(u.refreshHz, c.hz) << "request " << c.request;
        EXPECT_EQ(u.refreshCode, c.code) << "request " << c.request;
    }
}

struct ResolutionCase {
    int width, height;
    int expectWidth, expectHeight, code;
};

// Exact rows, the best row at or below both measures, the best above when none is below,
// requests by height alone, and the default row for negative heights.
TEST_F(ModesTest, ResolutionSelection)
{
    const ResolutionCase cases[] = {
        {640, 480, 640, 480, 0x7},     {856, 480, 856, 480, 0xA},    {400, 300, 400, 300, 0xF},
        {1000, 700, 800, 600, 0x8},    {2000, 2000, 1600, 1200, 0xE}, {1024, 800, 1024, 768, 0xC},
        {900, 480, 856, 480, 0xA},     {639, 479, 512, 384, 0x3},    {-1, 700, 800, 600, 0x8},
        {-1, 1024, 1280, 1024, 0xD},   {800, -1, 640, 480, 0x7},     {-7, -7, 640, 480, 0x7},
    };
    vld_unit u{};
    for (const ResolutionCase& c : cases) {
        KSP_vld_select_resolution(&u, c.width, c.height);
        EXPECT_EQ(u.width, c.expectWidth) << c.width << " x " << c.height;
        EXPECT_EQ(u.height, c.expectHeight) << c.width << " x " << c.height;
        EXPECT_EQ(u.resolutionCode, c.code) << c.width << " x " << c.height;
    }
}

// Widths 1 and 2 name the board maker's modes, which open at 1024 x 768; with a negative
// height they give the default row, and width 1 only takes heights up to 255.
TEST_F(ModesTest, SpecialWidths)
{
    vld_unit u{};
    KSP_vld_select_resolution(&u, 2, 600);
    EXPECT_EQ(u.resolutionCode, 0x564C5300 + 600);
    EXPECT_EQ(u.width, 1024);
    EXPECT_EQ(u.height, 768);
    KSP_vld_select_resolution(&u, 2, 0);
    EXPECT_EQ(u.resolutionCode, 0x564C5300);
    KSP_vld_select_resolution(&u, 1, 255);
    EXPECT_EQ(u.resolutionCode, 0x564C54FF);
    EXPECT_EQ(u.width, 1024);
    KSP_vld_select_resolution(&u, 1, 0);
    EXPECT_EQ(u.resolutionCode, 0x564C5400);
    KSP_vld_select_resolution(&u, 2, -1);
    EXPECT_EQ(u.resolutionCode, 0x7);
    EXPECT_EQ(u.width, 640);
    KSP_vld_select_resolution(&u, 1, -1);
    EXPECT_EQ(u.resolutionCode, 0x7);
    KSP_vld_select_resolution(&u, 1, 300);
    EXPECT_LT(u.resolutionCode, 0x100) << "width 1 above height 255 is an ordinary request";
}

// The starting resolution from the environment: the four separators, either case of 'x',
// numbers in any base strtol knows, and "default" in any case for 640 x 480.
TEST_F(ModesTest, ResolutionDefaultForms)
{
    const char* const same[] = {"800x600", "800,600", "800:600", "800X600", "0x320x0x258", "800x 600"};
    for (const char* text : same) {
        setting("KS_ENV_RESOLUTION_DEFAULT", text);
        vld_unit u{};
        u.defaultWidth = 1024;
        u.defaultHeight = 768;
        KSL_vld_unit_mode_defaults(&u);
        EXPECT_EQ(u.width, 800) << text;
        EXPECT_EQ(u.height, 600) << text;
        EXPECT_EQ(u.resolutionCode, 0x8) << text;
    }
    for (const char* text : {"default", "DeFault"}) {
        setting("KS_ENV_RESOLUTION_DEFAULT", text);
        vld_unit u{};
        u.defaultWidth = 1024;
        u.defaultHeight = 768;
        KSL_vld_unit_mode_defaults(&u);
        EXPECT_EQ(u.resolutionCode, 0x7) << text;
    }
}

// An empty setting is no setting; a text without two numbers keeps the board's largest mode
// and says so.
TEST_F(ModesTest, ResolutionDefaultUnusable)
{
    vld_unit u{};
    u.defaultWidth = 1024;
    u.defaultHeight = 768;
    setting("KS_ENV_RESOLUTION_DEFAULT", "");
    KSL_vld_unit_mode_defaults(&u);
    EXPECT_EQ(u.resolutionCode, 0xC);

    setting("KS_ENV_RESOLUTION_DEFAULT", "800");
    testing::internal::CaptureStderr();
    KSL_vld_unit_mode_defaults(&u);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(u.resolutionCode, 0xC);
    EXPECT_NE(err.find("KS_ENV_RESOLUTION_DEFAULT \"800\""), std::string::npos) << err;
}

// The starting refresh rate: a number through the selection rules, or "default".
TEST_F(ModesTest, RefreshDefault)
{
    vld_unit u{};
    KSL_vld_unit_mode_defaults(&u);
    EXPECT_EQ(u.refreshHz, 60);
    setting("KS_ENV_REFRESH_DEFAULT", "73");
    KSL_vld_unit_mode_defaults(&u);
    EXPECT_EQ(u.refreshHz, 72);
    EXPECT_EQ(u.refreshCode, 2);
    setting("KS_ENV_REFRESH_DEFAULT", "DEFAULT");
    KSL_vld_unit_mode_defaults(&u);
    EXPECT_EQ(u.refreshHz, 60);
    EXPECT_EQ(u.refreshCode, 0);
}

// The toolkit's calls: out of range gives -1 (and -1 stored by the queries); a changed mode
// closes an open board, an unchanged one leaves it open.
TEST_F(ModesTest, ToolkitModeCalls)
{
    startBoards();
    int hz = 0, width = 0, height = 0;
    EXPECT_EQ(KSI_vld_fbf_inq_refresh(1, &hz), -1);
    EXPECT_EQ(hz, -1);
    EXPECT_EQ(KSI_vld_fbf_inq_resolution(-1, &width, &height), -1);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
    EXPECT_EQ(KSI_vld_fbf_set_refresh(1, 60), -1);
    EXPECT_EQ(KSI_vld_fbf_set_resolution(1, 640, 480), -1);

    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    calls();
    EXPECT_EQ(KSI_vld_fbf_set_refresh(0, 64), 0) << "64 Hz selects the 60 Hz row already in use";
    EXPECT_EQ(vlddb.units[0].opened, 1);
    EXPECT_EQ(KSI_vld_fbf_set_resolution(0, 810, 610), 0);
    EXPECT_EQ(vlddb.units[0].opened, 1);
    EXPECT_TRUE(calls().empty());

    EXPECT_EQ(KSI_vld_fbf_set_refresh(0, 75), 0);
    EXPECT_EQ(vlddb.units[0].opened, 0);
    EXPECT_EQ(vlddb.units[0].windowOpen, 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinClose"), "grSstWinClose");
    EXPECT_EQ(KSI_vld_fbf_inq_refresh(0, &hz), 0);
    EXPECT_EQ(hz, 75);

    // Reopened by the next opening, in the new mode.
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(firstCall(calls(), "grSstWinOpen"), "grSstWinOpen 0x0 8 3 2 1 2 1");
    EXPECT_EQ(KSI_vld_fbf_set_resolution(0, 640, 480), 0);
    EXPECT_EQ(vlddb.units[0].opened, 0);
    EXPECT_EQ(KSI_vld_fbf_inq_resolution(0, &width, &height), 0);
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, 480);
}

} // namespace
