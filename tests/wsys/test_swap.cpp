// The buffer swap and its hang watch, against a software board whose swaps complete late or
// never. The wait polls the board as fast as it runs, so the trace is off while it waits.
#include <string>

#include "support/env/env.h"
#include "wsys_test.h"

namespace {

// The answers of the test's timeout callback, one per call; the last repeats.
const GLuint* answers = nullptr;
int answerCount = 0;
int callbackCalls = 0;

GLuint APIENTRY scripted_callback()
{
    const int i = callbackCalls < answerCount ? callbackCalls : answerCount - 1;
    ++callbackCalls;
    return answers[i];
}

int occurrences(const std::string& text, const std::string& what)
{
    int n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++n;
    return n;
}

const char* const kHung = "Glide board seems to be hung -- no completion after 0.05 seconds\n";
const char* const kSkip = "    Skipping buffer swap due to hung board\n";
const char* const kCompleted = "Glide board completed after ";

class Swap : public WsysTest {
protected:
    // A current context on board 0 whose swaps complete after delayMs (never for -1), with a
    // timeout of 0.05 s, and one swap already pending on the board. The board has three
    // colour buffers: with two, a board whose swap never completes has no buffer left to
    // draw into, and every later call that waits for the board (the statistics read of the
    // swap itself) would wait for ever.
    void boardWithPendingSwap(int delayMs)
    {
        G_sys_setenv("KS_ENV_VLD_COLOR_BUFFERS", "3");
        currentContext(0);
        G_sys_setenv("KS_ENV_VLD_COLOR_BUFFERS", nullptr);
        ASSERT_EQ(vlddb.units[0].colorBuffers, 3);
        zvbTraceEnable(0);
        zvbFaultSwapDelay(0, delayMs);
        glTimeoutPeriodSetVELD(0.05f);
        KSI_vld_swap_buffers();
    }

    // Runs one swap with the callback answering `script`; returns what it printed.
    template <int N>
    std::string swapWithCallback(const GLuint (&script)[N])
    {
        answers = script;
        answerCount = N;
        callbackCalls = 0;
        glTimeoutCallbackSetVELD(scripted_callback);
        testing::internal::CaptureStderr();
        KSI_vld_swap_buffers();
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(Swap, WithoutAContextNothingHappensAndTheSwapIsReady)
{
    EXPECT_TRUE(glIsSwapReadyVELD());
    KSI_vld_swap_buffers();
    EXPECT_EQ(zvbTraceCount(), 0);
    EXPECT_EQ(glTimeoutCallbackSetVELD(scripted_callback), nullptr) << "nothing stored without a context";
    EXPECT_EQ(wglSwapBuffers(wsys_test_dc(0)), TRUE);
}

TEST_F(Swap, ASwapOnAnIdleBoardGoesStraightThrough)
{
    currentContext(0);
    const uint16_t frames = vldSpatialUpdateCount;
    zvbTraceClear();
    EXPECT_EQ(wglSwapBuffers(wsys_test_dc(0)), TRUE);
    const int pending = zvbTraceFind("grBufferNumPending", 0);
    EXPECT_GE(pending, 0) << traceText();
    EXPECT_GT(zvbTraceFind("grBufferSwap 1", pending), pending) << traceText();
    EXPECT_EQ(traceCount("grBufferNumPending"), 1) << "one look at the queue, no wait";
    EXPECT_EQ((uint16_t)(vldSpatialUpdateCount - frames), 1);
}

TEST_F(Swap, TheIntervalIsProcessWide)
{
    currentContext(0);
    EXPECT_EQ(vlddb.swapInterval, 1);
    EXPECT_EQ(vldSwapIntervalSet(0), 0);
    zvbTraceClear();
    KSI_vld_swap_buffers();
    EXPECT_TRUE(traced("grBufferSwap 0")) << traceText();
}

TEST_F(Swap, SingleBufferMakesNoSwapButStillLooksAtTheQueue)
{
    currentContext(0);
    vlddb.settings.singleBuffer = 1;
    zvbTraceClear();
    KSI_vld_swap_buffers();
    EXPECT_FALSE(traced("grBufferSwap")) << traceText();
    EXPECT_TRUE(traced("grBufferNumPending")) << traceText();
}

TEST_F(Swap, CallbackSkipsWithoutReportingAHang)
{
    boardWithPendingSwap(-1);
    ASSERT_FALSE(glIsSwapReadyVELD());
    const GLuint script[] = {0, 0, 1};
    const std::string printed = swapWithCallback(script);
    EXPECT_EQ(printed, kSkip);
    EXPECT_EQ(callbackCalls, 3);
    EXPECT_FALSE(glIsSwapReadyVELD()) << "the skipped swap leaves the queue as it was";
}

TEST_F(Swap, HangIsReportedOnceThenTheSwapIsSkipped)
{
    boardWithPendingSwap(-1);
    ASSERT_FALSE(glIsSwapReadyVELD());
    const GLuint script[] = {2, 2, 2, 3};
    const std::string printed = swapWithCallback(script);
    EXPECT_EQ(printed, std::string(kHung) + kSkip);
    EXPECT_EQ(callbackCalls, 4);

    // The next swap starts the watch afresh: a new report.
    const GLuint again[] = {2, 1};
    EXPECT_EQ(swapWithCallback(again), std::string(kHung) + kSkip);
}

TEST_F(Swap, ABoardThatRecoversIsReportedAsCompleted)
{
    boardWithPendingSwap(400);
    ASSERT_FALSE(glIsSwapReadyVELD());
    const GLuint script[] = {2};
    const std::string printed = swapWithCallback(script);
    EXPECT_EQ(occurrences(printed, "seems to be hung"), 1) << printed;
    ASSERT_NE(printed.find(kCompleted), std::string::npos) << printed;
    EXPECT_LT(printed.find(kHung), printed.find(kCompleted));
    EXPECT_GT(callbackCalls, 0);
    // The swap itself was made after the wait.
    EXPECT_FALSE(glIsSwapReadyVELD());
}

TEST_F(Swap, AHangAnsweredWithZeroIsNotReported)
{
    // A callback that never reports nor skips waits for the board quietly.
    boardWithPendingSwap(300);
    const GLuint script[] = {0};
    EXPECT_EQ(swapWithCallback(script), "");
    EXPECT_GT(callbackCalls, 0);
}

TEST_F(Swap, NoWatchWithoutTimeoutTheWaitEndsWhenTheBoardDoes)
{
    boardWithPendingSwap(200);
    glTimeoutPeriodSetVELD(0.0f);
    const GLuint script[] = {3};
    EXPECT_EQ(swapWithCallback(script), "");
    EXPECT_EQ(callbackCalls, 0) << "with no deadline the callback is never asked";
}

TEST_F(Swap, CallbackSetterReturnsThePreviousOne)
{
    currentContext(0);
    EXPECT_EQ(glTimeoutCallbackSetVELD(scripted_callback), nullptr);
    EXPECT_EQ(glTimeoutCallbackSetVELD(nullptr), &scripted_callback);
    glTimeoutPeriodSetVELD(2.5f);
    EXPECT_DOUBLE_EQ(vldGc->swapTimeout, 2.5);
}

TEST_F(Swap, PendingLimitComesFromTheEnvironmentInAnyBase)
{
    // One swap may stay pending ("0x1", read with its base): the board's one pending swap
    // does not hold the next back.
    G_sys_setenv("KS_ENV_VLD_SWAP_PENDING_MAX", "0x1");
    boardWithPendingSwap(-1);
    G_sys_setenv("KS_ENV_VLD_SWAP_PENDING_MAX", nullptr);
    EXPECT_TRUE(glIsSwapReadyVELD());
}

TEST_F(Swap, PendingLimitIsReadOncePerProcessAndOutlivesShutdown)
{
    boardWithPendingSwap(-1);
    EXPECT_FALSE(glIsSwapReadyVELD());
    G_sys_setenv("KS_ENV_VLD_SWAP_PENDING_MAX", "1");
    glShutdownVELD();
    boardWithPendingSwap(-1);
    G_sys_setenv("KS_ENV_VLD_SWAP_PENDING_MAX", nullptr);
    EXPECT_FALSE(glIsSwapReadyVELD()) << "the limit read before the shutdown still holds";
}

} // namespace
