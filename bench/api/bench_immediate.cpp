// glColor3f + glNormal3f + glVertex3f per vertex, 100 vertices of GL_TRIANGLES between
// glBegin and glEnd: through the library's exported frames on a context of its own, its
// triangles ending in the software board in count-only mode, and through Mesa's immediate
// mode (OSMesa, llvmpipe on one thread, a 1x1 RGBA buffer and viewport) in the same run.
#include <benchmark/benchmark.h>

#include "bench_peers.h"

namespace {

constexpr int kVertices = 100;

// A fixed strip of positions, normals and colours shared by both sides.
struct Vertex {
    float color[3];
    float normal[3];
    float position[3];
};

const Vertex* vertices()
{
    static Vertex v[kVertices];
    static bool made = false;
    if (!made) {
        for (int i = 0; i < kVertices; ++i) {
            const float t = (float)i / kVertices;
            v[i] = {{t, 1.0f - t, 0.5f}, {0.0f, 0.0f, 1.0f}, {t * 2.0f - 1.0f, (i % 3) * 0.5f - 0.5f, -0.5f}};
        }
        made = true;
    }
    return v;
}

void draw_batch(const GlTable& gl)
{
    const Vertex* v = vertices();
    gl.begin(GL_TRIANGLES);
    for (int i = 0; i < kVertices; ++i) {
        gl.color3f(v[i].color[0], v[i].color[1], v[i].color[2]);
        gl.normal3f(v[i].normal[0], v[i].normal[1], v[i].normal[2]);
        gl.vertex3f(v[i].position[0], v[i].position[1], v[i].position[2]);
    }
    gl.end();
}

void BM_Zvgl2Immediate(benchmark::State& state)
{
    ZvglPeer peer;
    if (!peer.boardOpen) {
        state.SkipWithError("the software board did not open");
        return;
    }
    peer.gl.viewport(0, 0, 1, 1);
    const uint64_t before = peer.triangles();
    for (auto _ : state)
        draw_batch(peer.gl);
    state.SetItemsProcessed(state.iterations() * kVertices);
    state.counters["board_tris"] =
        benchmark::Counter((double)(peer.triangles() - before) / (double)state.iterations());
}
BENCHMARK(BM_Zvgl2Immediate);

void BM_MesaImmediate(benchmark::State& state)
{
    MesaPeer peer;
    if (peer.error) {
        state.SkipWithError(peer.error);
        return;
    }
    peer.gl.viewport(0, 0, 1, 1);
    for (auto _ : state)
        draw_batch(peer.gl);
    peer.gl.finish();
    state.SetItemsProcessed(state.iterations() * kVertices);
    state.SetLabel((const char*)peer.gl.getString(GL_RENDERER));
}
BENCHMARK(BM_MesaImmediate);

} // namespace

int main(int argc, char** argv)
{
    bench_environment();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
