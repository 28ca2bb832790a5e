// Costs of the window-system binding on the software board: a make-current that moves one
// board from one context to another (grGlideGetState of the leaving one, grGlideSetState of
// the arriving one), a make-current of the context already current, and a swap with nothing
// pending (one look at the queue, the swap, the statistics read). The board swaps without
// waiting for its retrace (FX_GLIDE_SWAPINTERVAL=0 and interval 0), so the figures are the
// library's and the board's own work.
#include <benchmark/benchmark.h>

#include <cstdint>

#include <zvgl/board_tool.h>
#include <zvgl/wgl.h>

#include "vld/wsys/vld_wsys.h"

namespace {

HDC bench_dc(int i)
{
    return reinterpret_cast<HDC>((uintptr_t)(0x1000 + 0x10 * i));
}

void BM_SwitchContextsOnOneBoard(benchmark::State& state)
{
    zvbReset();
    HGLRC a = wglCreateContext(bench_dc(0));
    HGLRC b = wglCreateContext(bench_dc(1));
    wglMakeCurrent(bench_dc(0), a);
    wglMakeCurrent(bench_dc(1), b);
    for (auto _ : state) {
        wglMakeCurrent(bench_dc(0), a);
        wglMakeCurrent(bench_dc(1), b);
    }
    state.SetItemsProcessed(state.iterations() * 2);
    glShutdownVELD();
    zvbReset();
}
BENCHMARK(BM_SwitchContextsOnOneBoard);

void BM_MakeCurrentAgain(benchmark::State& state)
{
    zvbReset();
    HGLRC a = wglCreateContext(bench_dc(0));
    wglMakeCurrent(bench_dc(0), a);
    for (auto _ : state)
        benchmark::DoNotOptimize(wglMakeCurrent(bench_dc(0), a));
    glShutdownVELD();
    zvbReset();
}
BENCHMARK(BM_MakeCurrentAgain);

void BM_SwapWithNothingPending(benchmark::State& state)
{
    zvbReset();
    zvbSetOption("FX_GLIDE_SWAPINTERVAL", "0");
    HGLRC a = wglCreateContext(bench_dc(0));
    wglMakeCurrent(bench_dc(0), a);
    vldSwapIntervalSet(0);
    for (auto _ : state) {
        wglSwapBuffers(bench_dc(0));
        state.PauseTiming();
        while (!glIsSwapReadyVELD()) {
        }
        state.ResumeTiming();
    }
    glShutdownVELD();
    zvbReset();
}
BENCHMARK(BM_SwapWithNothingPending);

// Swaps one after another: each one waits until the board has shown the one before.
void BM_SwapBackToBack(benchmark::State& state)
{
    zvbReset();
    zvbSetOption("FX_GLIDE_SWAPINTERVAL", "0");
    HGLRC a = wglCreateContext(bench_dc(0));
    wglMakeCurrent(bench_dc(0), a);
    vldSwapIntervalSet(0);
    for (auto _ : state)
        wglSwapBuffers(bench_dc(0));
    glShutdownVELD();
    zvbReset();
}
BENCHMARK(BM_SwapBackToBack);

} // namespace
