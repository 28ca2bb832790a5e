// The buffer swap and its hang watch. The swap is the one place where the library waits
// for the board: it keeps the board's queue of swaps short (by default no earlier swap may
// still be pending), and when the wait outlasts the context's timeout it tells the
// application's callback, which may report the board as hung or skip the swap.
#include <glide2/glide.h>

#include <cstdio>
#include <cstdlib>

#include "support/env/env.h"
#include "support/timer/timer.h"
#include "vld/api/vld_export.h"
#include "vld/glide/vld_device.h"
#include "vld/wsys/vld_wsys.h"

uint16_t vldSpatialUpdateCount = 0;

namespace {

// Bits of the callback's result.
constexpr GLuint kSkipSwap = 1;
constexpr GLuint kBoardHung = 2;

// The swaps that may stay pending: read once per process, and kept over shutdown.
unsigned long swapPendingMax = 0;
bool swapPendingMaxRead = false;

// KS_ENV_VLD_SWAP_PENDING_MAX as strtoul reads it with base 0; 0 when unset or empty.
void vld_read_pending_max()
{
    char* value = nullptr;
    int flags = 0;
    G_sys_inq_env("KS_ENV_VLD_SWAP_PENDING_MAX", &value, &flags);
    swapPendingMax = value && *value ? std::strtoul(value, nullptr, 0) : 0;
    G_sys_free_env_value(&value, flags);
    swapPendingMaxRead = true;
}

GLtimeoutcallbackVELD vld_callback_of(const vld_context* ctx)
{
    return reinterpret_cast<GLtimeoutcallbackVELD>(ctx->timeoutCallback);
}

double vld_now()
{
    double seconds = 0.0;
    G_timer_inq_time(&seconds);
    return seconds;
}

} // namespace

void KSP_vld_swap_reset_settings()
{
    swapPendingMax = 0;
    swapPendingMaxRead = false;
}

extern "C" {

// True when a swap may go to the board now: no context (nothing to wait for), a context on
// no board, or no more swaps pending than the setting allows.
VLD_EXPORT GLboolean VLD_APIENTRY glIsSwapReadyVELD(void)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return GL_TRUE;
    if (!swapPendingMaxRead)
        vld_read_pending_max();
    if (!ctx->boundUnit)
        return GL_TRUE;
    const int pending = grBufferNumPending();
    return pending <= 0 || (unsigned long)pending <= swapPendingMax ? GL_TRUE : GL_FALSE;
}

// Swaps the current context's board. Waits, spinning, until the board's queue is short
// enough. Past the deadline every pass of the wait asks the callback: bit 0 of its answer
// skips this swap at once, bit 1 (or an earlier bit 1) reports the hang, once. Without a
// callback the hang is reported once and the wait goes on; with a timeout of 0 or below
// there is no deadline at all.
VLD_EXPORT void VLD_APIENTRY KSI_vld_swap_buffers(void)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ++vldSpatialUpdateCount;
    if (!ctx->boundUnit)
        return; // no board to show the frame on
    const double timeout = ctx->swapTimeout;
    bool reported = false, hung = false, skip = false;
    double start = -1.0, deadline = 0.0, now = 0.0;
    if (!glIsSwapReadyVELD()) {
        for (;;) {
            now = vld_now();
            if (start < 0.0) {
                start = now;
                deadline = now + timeout;
            } else if (timeout > 0.0 && now >= deadline) {
                if (GLtimeoutcallbackVELD callback = vld_callback_of(ctx)) {
                    const GLuint answer = callback();
                    if (answer & kSkipSwap)
                        skip = true;
                    if ((answer & kBoardHung) || hung) {
                        if (!reported)
                            std::fprintf(stderr, "Glide board seems to be hung -- no completion after %g seconds\n",
                                         timeout);
                        reported = true;
                        if (answer & kBoardHung)
                            hung = true;
                    }
                } else {
                    if (!reported)
                        std::fprintf(stderr, "Glide board seems to be hung -- no completion after %g seconds\n",
                                     timeout);
                    reported = hung = true;
                }
                if (skip) {
                    std::fprintf(stderr, "    Skipping buffer swap due to hung board\n");
                    return;
                }
            }
            if (glIsSwapReadyVELD())
                break;
        }
        if (reported)
            std::fprintf(stderr, "Glide board completed after %g seconds\n", now - start);
    }
    if (!vlddb.settings.singleBuffer)
        grBufferSwap(vlddb.swapInterval);
    if (vlddb.currentUnit && vlddb.currentUnit->passthruPending > 0)
        KSP_vld_ensure_passthru_state(vlddb.currentUnit);
    KSP_vld_update_pixel_fill();
}

VLD_EXPORT int VLD_APIENTRY vldSwapIntervalSet(int interval)
{
    vlddb.swapInterval = interval;
    return 0;
}

VLD_EXPORT GLtimeoutcallbackVELD VLD_APIENTRY glTimeoutCallbackSetVELD(GLtimeoutcallbackVELD callback)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return nullptr;
    GLtimeoutcallbackVELD previous = vld_callback_of(ctx);
    ctx->timeoutCallback = reinterpret_cast<void (*)(void)>(callback);
    return previous;
}

VLD_EXPORT void VLD_APIENTRY glTimeoutPeriodSetVELD(GLfloat seconds)
{
    if (vld_context* ctx = vldGc)
        ctx->swapTimeout = (double)seconds;
}

} // extern "C"
