// Attribute-stack cost of the library: glPushAttrib(GL_ALL_ATTRIB_BITS) and glPopAttrib,
// through the immediate layer, with a software board open (a pop with a mask programmes
// blending and the alpha test). Compare with bench_state_osmesa.
#include <benchmark/benchmark.h>

#include <cstring>

#include <glide2/glide.h>
#include <zvgl/board_tool.h>

#include "vld/api/vld_context.h"
#include "vld/state/state.h"

namespace {

// A context with the initial state, current on board 0 with an open window.
struct BenchContext {
    vld_context* ctx;

    BenchContext()
    {
        std::memset((void*)&vlddb, 0, sizeof vlddb);
        ctx = (vld_context*)KSP_vld_realloc_aligned(nullptr, sizeof(vld_context));
        std::memset((void*)ctx, 0, sizeof(vld_context));
        ctx->magic = VLD_CONTEXT_MAGIC;
        ctx->executeFlag = 1;
        KSP_vld_state_defaults(ctx);
        grGlideInit();
        grSstSelect(0);
        grSstWinOpen(0, GR_RESOLUTION_640x480, GR_REFRESH_60Hz, GR_COLORFORMAT_RGBA,
                     GR_ORIGIN_LOWER_LEFT, 2, 1);
        vld_unit* unit = &vlddb.units[0];
        unit->opened = unit->windowOpen = unit->depthBuffer = 1;
        unit->width = 640;
        unit->height = 480;
        vlddb.currentUnit = unit;
        vldGc = ctx;
    }

    ~BenchContext()
    {
        vldGc = nullptr;
        grSstWinClose();
        grGlideShutdown();
        KSP_vld_free_aligned(ctx);
    }
};

void BM_PushPopAllAttribBits(benchmark::State& state)
{
    BenchContext bc;
    for (auto _ : state) {
        __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
        __vldim_PopAttrib();
    }
    benchmark::DoNotOptimize(bc.ctx->attribDepth);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PushPopAllAttribBits);

// The same with a capability changed between push and pop, so that the pop runs updates.
void BM_PushPopAllWithChange(benchmark::State& state)
{
    BenchContext bc;
    for (auto _ : state) {
        __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
        __vldim_Enable(GL_BLEND);
        __vldim_PopAttrib();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PushPopAllWithChange);

} // namespace
