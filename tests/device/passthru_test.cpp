// The pass-through relay: who fixes it at the opening, the dual-head settings handed on to
// Glide, the toolkit's switch, and the deferred assertions of the wanted state.
#include "device_test.h"

#include "support/timer/timer.h"

namespace {

using PassthruTest = DeviceTest;

double now()
{
    double seconds = 0.0;
    G_timer_inq_time(&seconds);
    return seconds;
}

// A plain application that sets nothing: the board is switched on at the opening and the
// relay is never touched again, whatever the toolkit asks.
TEST_F(PassthruTest, PlainApplicationFixesTheRelayOn)
{
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    const Calls trace = calls();
    EXPECT_EQ(countCalls(trace, "grSstControl"), 1);
    EXPECT_EQ(firstCall(trace, "grSstControl"), "grSstControl 1");
    const vld_unit& u = vlddb.units[0];
    EXPECT_EQ(u.passthruFixed, 1);
    EXPECT_EQ(u.passthruInitialised, 1);
    EXPECT_GT(u.passthruLastChange, 0.0);

    vlddb.units[0].passthruPending = 5;
    KSI_vld_set_passthru_fbi(0);
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(u.passthruPending, 0);
}

// A dual-head machine, named by any of the three settings: fixed on, and both of Glide's own
// settings set to "1".
TEST_F(PassthruTest, DualHeadSettings)
{
    startBoards();
    vlddb.hosted = 1;
    for (const char* name : {"KS_ENV_SST_DUALHEAD", "SST_DUALHEAD", "SSTV2_DUALHEAD"}) {
        clearSettings();
        setting(name, "1");
        vld_unit& u = vlddb.units[0];
        u.passthruFixed = 0;
        KSP_vld_passthru_init(&u, 1);
        EXPECT_EQ(calls(), Calls{"grSstControl 1"}) << name;
        EXPECT_EQ(u.passthruFixed, 1) << name;
        char value[8];
        ASSERT_EQ(KSP_vld_env_text("SST_DUALHEAD", value, sizeof value), 1) << name;
        EXPECT_STREQ(value, "1") << name;
        ASSERT_EQ(KSP_vld_env_text("SSTV2_DUALHEAD", value, sizeof value), 1) << name;
        EXPECT_STREQ(value, "1") << name;
    }
}

// The first dual-head setting found decides: "0" is not dual-head, and the ignore setting is
// consulted instead.
TEST_F(PassthruTest, DualHeadZeroFallsToIgnore)
{
    setting("KS_ENV_SST_DUALHEAD", "0");
    setting("SST_DUALHEAD", "1");
    setting("KS_ENV_PASSTHRU_IGNORE", "1");
    startBoards();
    vlddb.hosted = 1;
    vld_unit& u = vlddb.units[0];
    KSP_vld_passthru_init(&u, 1);
    EXPECT_EQ(u.passthruFixed, 1) << "the ignore setting fixes it";
    char value[8];
    KSP_vld_env_text("SSTV2_DUALHEAD", value, sizeof value);
    EXPECT_STREQ(value, "") << "not a dual-head machine: nothing handed to Glide";
}

// A hosted library with nothing set leaves the relay to the toolkit.
TEST_F(PassthruTest, HostedLeavesTheRelaySwitchable)
{
    vlddb.hosted = 1;
    vld_unit u{};
    KSP_vld_passthru_init(&u, 1);
    EXPECT_EQ(u.passthruFixed, 0);
    EXPECT_EQ(u.passthruWanted, 1);
    EXPECT_EQ(u.passthruPending, 2);
    EXPECT_EQ(u.passthruInitialised, 1);
}

// A board with 2D on the same output has no relay to switch.
TEST_F(PassthruTest, IntegratedBoardHasNoRelay)
{
    board("ZVGL_BOARD_TYPE", "banshee");
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    EXPECT_EQ(countCalls(calls(), "grSstControl"), 0);
    EXPECT_EQ(vlddb.units[0].passthruFixed, 1);
    EXPECT_EQ(vlddb.units[0].passthruInitialised, 1);
}

// KS_ENV_PASSTHRU_IGNORE "0" in a plain application: the relay belongs to the toolkit, so the
// opening switches it off (half a second after the window opened), and the toolkit's switch-on
// is asserted twice more, each time half a second after the last switch.
TEST_F(PassthruTest, IgnoreZeroSwitchesOffAndToolkitSwitchesOn)
{
    setting("KS_ENV_PASSTHRU_IGNORE", "0");
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    Calls trace = calls();
    EXPECT_EQ(countCalls(trace, "grSstControl"), 1);
    EXPECT_EQ(firstCall(trace, "grSstControl"), "grSstControl 2");
    vld_unit& u = vlddb.units[0];
    EXPECT_EQ(u.passthruFixed, 0);

    // Pretend the last switch was long ago, so that no test waits.
    u.passthruLastChange = now() - 1.0;
    KSI_vld_set_passthru_fbi(1);
    EXPECT_EQ(calls(), Calls{"grSstControl 1"});
    EXPECT_EQ(u.passthruWanted, 1);
    EXPECT_EQ(u.passthruPending, 2);

    KSP_vld_ensure_passthru_state(&u);
    EXPECT_TRUE(calls().empty()) << "too soon after the last switch: nothing, and no waiting";
    EXPECT_EQ(u.passthruPending, 2);

    u.passthruLastChange = now() - 1.0;
    KSP_vld_ensure_passthru_state(&u);
    EXPECT_EQ(calls(), Calls{"grSstControl 1"});
    EXPECT_EQ(u.passthruPending, 1);
    u.passthruLastChange = now() - 1.0;
    KSP_vld_ensure_passthru_state(&u);
    EXPECT_EQ(u.passthruPending, 0);
    u.passthruLastChange = now() - 1.0;
    KSP_vld_ensure_passthru_state(&u);
    EXPECT_EQ(calls(), Calls{"grSstControl 1"}) << "two assertions, then steady";
}

// Switching off owes no assertion; a pending count with nothing wanted is dropped.
TEST_F(PassthruTest, SwitchOffOwesNothing)
{
    vlddb.hosted = 1;
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    vld_unit& u = vlddb.units[0];
    u.passthruLastChange = now() - 1.0;
    calls();
    KSI_vld_set_passthru_fbi(0);
    EXPECT_EQ(calls(), Calls{"grSstControl 2"});
    EXPECT_EQ(u.passthruPending, 0);

    u.passthruPending = 2;
    u.passthruWanted = 0;
    KSP_vld_ensure_passthru_state(&u);
    EXPECT_EQ(u.passthruPending, 0);
    EXPECT_TRUE(calls().empty());
}

// glFlush gives the current board its deferred assertion.
TEST_F(PassthruTest, FlushAssertsTheWantedState)
{
    vlddb.hosted = 1;
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    vld_unit& u = vlddb.units[0];
    u.passthruWanted = 1;
    u.passthruPending = 1;
    u.passthruLastChange = now() - 1.0;
    calls();
    __vldim_Flush();
    EXPECT_EQ(calls(), Calls{"grSstControl 1"});
    EXPECT_EQ(u.passthruPending, 0);
    __vldim_Flush();
    EXPECT_TRUE(calls().empty());
}

} // namespace
