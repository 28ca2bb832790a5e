// The peer of bench_state: Mesa's attribute stack through OSMesa.
#include <benchmark/benchmark.h>

#include <vector>

#include <GL/osmesa.h>

namespace {

struct MesaContext {
    OSMesaContext ctx;
    std::vector<unsigned char> pixels;

    MesaContext() : pixels(640 * 480 * 4)
    {
        ctx = OSMesaCreateContextExt(OSMESA_RGBA, 16, 0, 0, nullptr);
        if (ctx)
            OSMesaMakeCurrent(ctx, pixels.data(), GL_UNSIGNED_BYTE, 640, 480);
    }
    ~MesaContext()
    {
        if (ctx)
            OSMesaDestroyContext(ctx);
    }
};

void BM_PushPopAllAttribBits(benchmark::State& state)
{
    MesaContext mc;
    if (!mc.ctx) {
        state.SkipWithError("OSMesa context not available");
        return;
    }
    for (auto _ : state) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPopAttrib();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PushPopAllAttribBits);

void BM_PushPopAllWithChange(benchmark::State& state)
{
    MesaContext mc;
    if (!mc.ctx) {
        state.SkipWithError("OSMesa context not available");
        return;
    }
    for (auto _ : state) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glEnable(GL_BLEND);
        glPopAttrib();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PushPopAllWithChange);

} // namespace
