// Lit immediate-mode triangles: one directional light, smooth shading, a mesh of 1,000
// triangles as one GL_TRIANGLES primitive of glNormal3f + glVertex3f per vertex, with 10 %
// of the triangles crossing the near plane. Run under both values of the clip-volume hint:
// GL_FASTEST (the library draws the crossing triangles as they are) and GL_NICEST (it
// clips them).
//
// The library's triangles end in the software board in count-only mode; Mesa (OSMesa,
// llvmpipe on one thread) draws the same calls into a 1x1 viewport. Both in one run;
// items are vertices.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "bench_peers.h"

namespace {

constexpr int kColumns = 25;
constexpr int kRows = 20;
constexpr int kTriangles = 2 * kColumns * kRows; // 1,000
constexpr int kVertices = 3 * kTriangles;

struct LitVertex {
    float normal[3];
    float position[3];
};

// A gently curved sheet three units in front of the eye, well inside the frustum, with
// every tenth triangle's first corner pulled to half a unit from the eye: in front of the
// near plane (at 1), inside the side planes.
const std::vector<LitVertex>& mesh()
{
    static std::vector<LitVertex> v;
    if (!v.empty())
        return v;
    auto corner = [](int i, int j) {
        LitVertex c;
        const float x = -1.5f + 3.0f * (float)i / kColumns;
        const float y = -1.2f + 2.4f * (float)j / kRows;
        c.position[0] = x;
        c.position[1] = y;
        c.position[2] = -3.0f + 0.2f * std::sin(2.0f * x) * std::cos(2.0f * y);
        float n[3] = {-0.4f * std::cos(2.0f * x) * std::cos(2.0f * y),
                      0.4f * std::sin(2.0f * x) * std::sin(2.0f * y), 1.0f};
        const float l = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        for (int k = 0; k < 3; ++k)
            c.normal[k] = n[k] / l;
        return c;
    };
    for (int j = 0; j < kRows; ++j)
        for (int i = 0; i < kColumns; ++i) {
            const LitVertex a = corner(i, j), b = corner(i + 1, j), c = corner(i + 1, j + 1),
                            d = corner(i, j + 1);
            for (const LitVertex& p : {a, b, c, a, c, d})
                v.push_back(p);
        }
    for (int t = 0; t < kTriangles; t += 10) {
        LitVertex& p = v[(size_t)t * 3];
        p.position[0] *= 0.2f;
        p.position[1] *= 0.2f;
        p.position[2] = -0.5f;
    }
    return v;
}

// Projection, light and hint: the same calls on both peers.
void set_up(const GlTable& gl, GLenum clipHint)
{
    gl.viewport(0, 0, 1, 1);
    gl.matrixMode(GL_PROJECTION);
    gl.loadIdentity();
    gl.frustum(-1.0, 1.0, -0.75, 0.75, 1.0, 50.0);
    gl.matrixMode(GL_MODELVIEW);
    gl.loadIdentity();
    const float direction[4] = {0.3f, 0.5f, 1.0f, 0.0f};
    gl.lightfv(GL_LIGHT0, GL_POSITION, direction);
    gl.enable(GL_LIGHT0);
    gl.enable(GL_LIGHTING);
    gl.shadeModel(GL_SMOOTH);
    gl.hint(GL_CLIP_VOLUME_CLIPPING_HINT_EXT, clipHint);
}

void draw_mesh(const GlTable& gl)
{
    const std::vector<LitVertex>& v = mesh();
    gl.begin(GL_TRIANGLES);
    for (const LitVertex& p : v) {
        gl.normal3f(p.normal[0], p.normal[1], p.normal[2]);
        gl.vertex3f(p.position[0], p.position[1], p.position[2]);
    }
    gl.end();
}

GLenum hint_of(const benchmark::State& state)
{
    return state.range(0) ? GL_NICEST : GL_FASTEST;
}

void BM_Zvgl2Lit(benchmark::State& state)
{
    ZvglPeer peer;
    if (!peer.boardOpen) {
        state.SkipWithError("the software board did not open");
        return;
    }
    set_up(peer.gl, hint_of(state));
    const uint64_t before = peer.triangles();
    for (auto _ : state)
        draw_mesh(peer.gl);
    state.SetItemsProcessed(state.iterations() * kVertices);
    state.counters["board_tris"] =
        benchmark::Counter((double)(peer.triangles() - before) / (double)state.iterations());
    state.SetLabel(state.range(0) ? "GL_NICEST" : "GL_FASTEST");
}
BENCHMARK(BM_Zvgl2Lit)->Arg(0)->Arg(1);

void BM_MesaLit(benchmark::State& state)
{
    MesaPeer peer;
    if (peer.error) {
        state.SkipWithError(peer.error);
        return;
    }
    set_up(peer.gl, hint_of(state));
    for (auto _ : state)
        draw_mesh(peer.gl);
    peer.gl.finish();
    state.SetItemsProcessed(state.iterations() * kVertices);
    state.SetLabel(std::string(state.range(0) ? "GL_NICEST " : "GL_FASTEST ") +
                   (const char*)peer.gl.getString(GL_RENDERER));
}
BENCHMARK(BM_MesaLit)->Arg(0)->Arg(1);

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
