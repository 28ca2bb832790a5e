// glColor3f + glNormal3f + glVertex3f per vertex, 100 vertices of GL_TRIANGLES between
// glBegin and glEnd: through the library's exported frames on a context of its own, and
// through Mesa's immediate mode (OSMesa, a 1x1 RGBA buffer and viewport) in the same run.
//
// The library side runs on whatever layers have landed: what is not written yet is an empty
// slot, so the figure is the frames, capture and dispatch plus those layers.
#include <benchmark/benchmark.h>

#include <dlfcn.h>

#include <cstdio>

#include <zvgl/gl.h>

#include "api_test_context.h"

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

// The GL calls of one side.
struct GlCalls {
    void(APIENTRY* begin)(GLenum);
    void(APIENTRY* end)();
    void(APIENTRY* color3f)(GLfloat, GLfloat, GLfloat);
    void(APIENTRY* normal3f)(GLfloat, GLfloat, GLfloat);
    void(APIENTRY* vertex3f)(GLfloat, GLfloat, GLfloat);
};

void draw_batch(const GlCalls& gl)
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
    TestContext tc;
    vlddb.settings.verbosity = 0;
    const GlCalls gl{glBegin, glEnd, glColor3f, glNormal3f, glVertex3f};
    for (auto _ : state)
        draw_batch(gl);
    state.SetItemsProcessed(state.iterations() * kVertices);
}
BENCHMARK(BM_Zvgl2Immediate);

// OSMesa, opened at run time with its names kept local to it.
using OSMesaContext = void*;
using CreateContextExt = OSMesaContext (*)(GLenum format, GLint depth, GLint stencil, GLint accum,
                                           OSMesaContext share);
using MakeCurrent = GLboolean (*)(OSMesaContext, void* buffer, GLenum type, GLsizei width,
                                  GLsizei height);
using DestroyContext = void (*)(OSMesaContext);

void BM_MesaImmediate(benchmark::State& state)
{
    void* mesa = dlopen("libOSMesa.so.8", RTLD_NOW | RTLD_LOCAL);
    if (!mesa)
        mesa = dlopen("libOSMesa.so", RTLD_NOW | RTLD_LOCAL);
    if (!mesa) {
        state.SkipWithError("OSMesa is not installed (libosmesa6-dev)");
        return;
    }
    auto create = (CreateContextExt)dlsym(mesa, "OSMesaCreateContextExt");
    auto make_current = (MakeCurrent)dlsym(mesa, "OSMesaMakeCurrent");
    auto destroy = (DestroyContext)dlsym(mesa, "OSMesaDestroyContext");
    OSMesaContext context = create ? create(GL_RGBA, 16, 0, 0, nullptr) : nullptr;
    unsigned char pixel[4] = {};
    if (!context || !make_current || !make_current(context, pixel, GL_UNSIGNED_BYTE, 1, 1)) {
        state.SkipWithError("no OSMesa context");
        dlclose(mesa);
        return;
    }
    GlCalls gl;
    gl.begin = (decltype(gl.begin))dlsym(mesa, "glBegin");
    gl.end = (decltype(gl.end))dlsym(mesa, "glEnd");
    gl.color3f = (decltype(gl.color3f))dlsym(mesa, "glColor3f");
    gl.normal3f = (decltype(gl.normal3f))dlsym(mesa, "glNormal3f");
    gl.vertex3f = (decltype(gl.vertex3f))dlsym(mesa, "glVertex3f");
    auto viewport = (void (*)(GLint, GLint, GLsizei, GLsizei))dlsym(mesa, "glViewport");
    auto finish = (void (*)())dlsym(mesa, "glFinish");
    viewport(0, 0, 1, 1);
    for (auto _ : state)
        draw_batch(gl);
    finish();
    state.SetItemsProcessed(state.iterations() * kVertices);
    destroy(context);
    dlclose(mesa);
}
BENCHMARK(BM_MesaImmediate);

} // namespace

BENCHMARK_MAIN();
