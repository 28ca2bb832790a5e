// Choosing boards: the wgl unit calls of applications and the toolkit's KSI_vld_set_unit,
// with units out of range and the unit -1 (none).
#include "wsys_test.h"

namespace {

using Units = WsysTest;

TEST_F(Units, CountStartsTheLibrary)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "3");
    int count = -1;
    EXPECT_EQ(wglUnitCountGetVELD(&count), 0);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(vlddb.initialised, 1);
    EXPECT_EQ(wglUnitCountGetVELD(nullptr), -1);
}

TEST_F(Units, QueriesBeforeStartUp)
{
    int unit = 7;
    EXPECT_EQ(wglUnitCurrentGetVELD(nullptr, &unit), -1);
    EXPECT_EQ(unit, -1);
    EXPECT_EQ(wglUnitCurrentVELD(reinterpret_cast<HGLRC>(&unit), 0), -1);
    EXPECT_EQ(vlddb.initialised, 0) << "neither query starts the library";
}

TEST_F(Units, DefaultUnitAcceptsMinusOneAndTheBoardsOnly)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "2");
    EXPECT_EQ(wglUnitDefaultVELD(1), 0);
    int unit = -5;
    EXPECT_EQ(wglUnitDefaultGetVELD(&unit), 0);
    EXPECT_EQ(unit, 1);
    for (int bad : {2, -2, 16, 1000}) {
        EXPECT_EQ(wglUnitDefaultVELD(bad), -1) << bad;
        EXPECT_EQ(wglUnitDefaultGetVELD(&unit), 0);
        EXPECT_EQ(unit, 1) << "a refused value leaves the default";
    }
    // A new context takes the default at its first make-current.
    HGLRC rc = currentContext(0);
    EXPECT_EQ(ctx_of(rc)->boundUnit, &vlddb.units[1]);
    EXPECT_EQ(wglUnitCurrentGetVELD(rc, &unit), 0);
    EXPECT_EQ(unit, 1);
}

TEST_F(Units, DefaultOfNoneGivesContextsWithoutABoard)
{
    ASSERT_EQ(wglUnitDefaultVELD(-1), 0);
    HGLRC rc = currentContext(0);
    EXPECT_EQ(ctx_of(rc)->boundUnit, nullptr);
    EXPECT_EQ(ctx_of(rc)->chosenUnit, nullptr);
    EXPECT_FALSE(traced("grSstWinOpen"));
    int unit = 0;
    EXPECT_EQ(wglUnitCurrentGetVELD(rc, &unit), 0);
    EXPECT_EQ(unit, -1);
    // Choosing a board moves the current context onto it at once.
    EXPECT_EQ(wglUnitCurrentVELD(rc, 0), 0);
    EXPECT_EQ(ctx_of(rc)->boundUnit, &vlddb.units[0]);
    EXPECT_TRUE(traced("grSstWinOpen"));
}

TEST_F(Units, CurrentUnitOfAContext)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "2");
    HGLRC a = currentContext(0);
    HGLRC b = wglCreateContext(wsys_test_dc(1));
    for (int bad : {2, -2, 99}) {
        EXPECT_EQ(wglUnitCurrentVELD(b, bad), -1) << bad;
        EXPECT_EQ(ctx_of(b)->unitExplicit, 0) << bad;
    }
    EXPECT_EQ(wglUnitCurrentVELD(nullptr, 0), -1);
    // A context that is not current only records its choice.
    zvbTraceClear();
    EXPECT_EQ(wglUnitCurrentVELD(b, 1), 0);
    EXPECT_EQ(zvbTraceCount(), 0);
    int unit = -2;
    EXPECT_EQ(wglUnitCurrentGetVELD(b, &unit), 0);
    EXPECT_EQ(unit, 1);
    // The current one moves: board 0 is let go, board 1 opened.
    EXPECT_EQ(wglUnitCurrentVELD(a, 1), 0);
    EXPECT_EQ(ctx_of(a)->boundUnit, &vlddb.units[1]);
    EXPECT_EQ(ctx_of(a)->lastUnit, &vlddb.units[0]);
    EXPECT_TRUE(traced("grSstSelect 1")) << traceText();
    // And to no board at all.
    EXPECT_EQ(wglUnitCurrentVELD(a, -1), 0);
    EXPECT_EQ(ctx_of(a)->boundUnit, nullptr);
    EXPECT_EQ(wglGetCurrentContext(), a);
}

TEST_F(Units, ToolkitChoosesBoardsForItsRendering)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "2");
    ASSERT_EQ(KSI_vld_init(), 0);
    vld_context* hosted = vldGc;
    ASSERT_NE(hosted, nullptr);
    EXPECT_EQ(KSI_vld_set_unit(2), -1);
    EXPECT_EQ(KSI_vld_set_unit(-2), -1);
    EXPECT_EQ(vldGc, hosted);

    // None for a context on none: it only becomes explicit.
    EXPECT_EQ(KSI_vld_set_unit(-1), 0);
    EXPECT_EQ(vldGc, hosted);

    // Board 1: no context chose it, so one is made and bound there.
    EXPECT_EQ(KSI_vld_set_unit(1), 0);
    vld_context* onBoard1 = vldGc;
    ASSERT_NE(onBoard1, hosted);
    EXPECT_EQ(onBoard1->boundUnit, &vlddb.units[1]);
    EXPECT_EQ(onBoard1->unitExplicit, 1);
    // Again: already there.
    EXPECT_EQ(KSI_vld_set_unit(1), 0);
    EXPECT_EQ(vldGc, onBoard1);

    // Back to none: the first context that chose no board, the toolkit's own.
    EXPECT_EQ(KSI_vld_set_unit(-1), 0);
    EXPECT_EQ(vldGc, hosted);
    // And board 1 again: the context that board last carried, with its saved state.
    zvbTraceClear();
    EXPECT_EQ(KSI_vld_set_unit(1), 0);
    EXPECT_EQ(vldGc, onBoard1);
    EXPECT_FALSE(traced("grBufferClear")) << traceText();
}

} // namespace
