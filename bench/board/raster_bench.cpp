// Triangles per second and pixels per second of the board's rasteriser (straight on the px_
// functions) and of Mesa's llvmpipe with one thread (through OSMesa), on the same triangles at
// 640x480: flat, Gouraud with a w-buffer, and Gouraud with depth, fog and blending, for triangles of
// 10, 100 and 10,000 pixels; and the board's small triangles through its reference set-up.
#include <benchmark/benchmark.h>

#define GL_GLEXT_PROTOTYPES 1
#include <GL/osmesa.h>
#include <GL/glext.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "pixel/pixel.h"
#include "pixel/raster.h"

namespace {

constexpr int kWidth = 640, kHeight = 480;
constexpr int kBatch = 2048;

enum Mode { FLAT = 0, GOURAUD_W = 1, GOURAUD_DEPTH_FOG_BLEND = 2 };

// A screen-space triangle of about `area` pixels: a right triangle with legs sqrt(2 area), at a
// random place and orientation, with per-vertex colours and alpha, the same depth everywhere (the
// depth test then runs and passes) and a w around 10.
struct Tri {
  float x[3], y[3], r[3], g[3], b[3], a[3];
};

std::vector<Tri> make_triangles(int area) {
  std::mt19937 rng(1234u + static_cast<unsigned>(area));
  std::uniform_real_distribution<float> u(0.0f, 1.0f);
  const float leg = std::sqrt(2.0f * static_cast<float>(area));
  std::vector<Tri> tris(kBatch);
  for (Tri &t : tris) {
    const float x0 = leg + u(rng) * (kWidth - 2 * leg), y0 = leg + u(rng) * (kHeight - 2 * leg);
    const float sx = u(rng) < 0.5f ? -leg : leg, sy = u(rng) < 0.5f ? -leg : leg;
    const float xs[3] = {x0, x0 + sx, x0}, ys[3] = {y0, y0, y0 + sy};
    for (int i = 0; i < 3; ++i) {
      t.x[i] = xs[i];
      t.y[i] = ys[i];
      t.r[i] = u(rng) * 255;
      t.g[i] = u(rng) * 255;
      t.b[i] = u(rng) * 255;
      t.a[i] = 64 + u(rng) * 191;
    }
  }
  return tris;
}

// ---- The board --------------------------------------------------------------------------------

struct Board {
  zvb::PixelBoard pb;
  std::vector<uint16_t> colour[2], aux;
  Board() {
    std::memset(&pb, 0, sizeof pb);
    for (auto &c : colour) c.assign(kWidth * kHeight, 0);
    aux.assign(kWidth * kHeight, 0xFFFF);
    pb.colour[0] = colour[0].data();
    pb.colour[1] = colour[1].data();
    pb.aux = aux.data();
    pb.width = kWidth;
    pb.height = kHeight;
    pb.back = 1;
    pb.nColBuffers = 2;
    zvb::px_reset(pb, 2);
  }
};

void set_board_mode(zvb::PixelBoard &pb, Mode mode) {
  using namespace zvb;
  if (mode == FLAT) {
    px_ColorCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_CONSTANT,
                    GR_COMBINE_OTHER_NONE, FXFALSE);
    return;
  }
  px_DepthBufferMode(pb, GR_DEPTHBUFFER_WBUFFER);
  px_DepthBufferFunction(pb, GR_CMP_LEQUAL);
  px_DepthMask(pb, FXTRUE);
  if (mode == GOURAUD_DEPTH_FOG_BLEND) {
    GrFog_t table[GR_FOG_TABLE_SIZE];
    px_fog_generate_exp(table, 0.05f);
    px_FogTable(pb, table);
    px_FogMode(pb, GR_FOG_WITH_TABLE);
    px_FogColorValue(pb, 0x808080);
    px_AlphaCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                    GR_COMBINE_OTHER_NONE, FXFALSE);
    px_AlphaBlendFunction(pb, GR_BLEND_SRC_ALPHA, GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE, GR_BLEND_ZERO);
  }
}

void BM_Board(benchmark::State &state) {
  const Mode mode = static_cast<Mode>(state.range(0));
  const int area = static_cast<int>(state.range(1));
  // The third argument, when given and 1, runs the rasteriser's reference set-up (one value at a
  // time, every row worked out afresh), to show what the fast set-up saves.
  const bool reference = state.range(2) != 0;
  const bool previous = zvb::raster_force_reference(reference);
  Board board;
  set_board_mode(board.pb, mode);
  const std::vector<Tri> tris = make_triangles(area);
  std::vector<GrVertex> verts(tris.size() * 3);
  for (size_t i = 0; i < tris.size(); ++i)
    for (int k = 0; k < 3; ++k) {
      GrVertex &v = verts[i * 3 + k];
      std::memset(&v, 0, sizeof v);
      v.x = tris[i].x[k];
      v.y = tris[i].y[k];
      v.r = tris[i].r[k];
      v.g = tris[i].g[k];
      v.b = tris[i].b[k];
      v.a = tris[i].a[k];
      v.ooz = 30000.0f;
      v.oow = 0.1f;
    }
  for (auto _ : state) {
    for (size_t i = 0; i < tris.size(); ++i) {
      if (mode == FLAT) zvb::px_ConstantColorValue(board.pb, 0xFF000000u | static_cast<uint32_t>(i * 2654435761u >> 8));
      zvb::px_DrawTriangle(board.pb, &verts[i * 3], &verts[i * 3 + 1], &verts[i * 3 + 2]);
    }
    benchmark::DoNotOptimize(board.colour[1].data());
  }
  zvb::raster_force_reference(previous);
  state.SetItemsProcessed(state.iterations() * kBatch);
  state.counters["Mpixels/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kBatch * area / 1e6, benchmark::Counter::kIsRate);
}

// ---- llvmpipe through OSMesa, one thread ------------------------------------------------------

struct Mesa {
  OSMesaContext ctx = nullptr;
  std::vector<unsigned char> buffer;
  Mesa() {
    setenv("LP_NUM_THREADS", "1", 1);
    setenv("GALLIUM_DRIVER", "llvmpipe", 1);
    ctx = OSMesaCreateContextExt(OSMESA_RGBA, 24, 0, 0, nullptr);
    buffer.assign(static_cast<size_t>(kWidth) * kHeight * 4, 0);
    if (ctx) OSMesaMakeCurrent(ctx, buffer.data(), GL_UNSIGNED_BYTE, kWidth, kHeight);
  }
  ~Mesa() {
    if (ctx) OSMesaDestroyContext(ctx);
  }
};

Mesa &mesa() {
  static Mesa m;
  return m;
}

void set_gl_mode(Mode mode) {
  glViewport(0, 0, kWidth, kHeight);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glOrtho(0, kWidth, kHeight, 0, -1, 1);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_FOG);
  glDisable(GL_BLEND);
  glDisable(GL_DITHER);
  glShadeModel(mode == FLAT ? GL_FLAT : GL_SMOOTH);
  glClearDepth(1.0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  if (mode == FLAT) return;
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LEQUAL);
  glDepthMask(GL_TRUE);
  if (mode == GOURAUD_DEPTH_FOG_BLEND) {
    glEnable(GL_FOG);
    glFogi(GL_FOG_MODE, GL_EXP);
    glFogf(GL_FOG_DENSITY, 0.05f);
    const GLfloat fogColour[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    glFogfv(GL_FOG_COLOR, fogColour);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  }
}

void BM_Llvmpipe(benchmark::State &state) {
  const Mode mode = static_cast<Mode>(state.range(0));
  const int area = static_cast<int>(state.range(1));
  if (!mesa().ctx) {
    state.SkipWithError("OSMesa context could not be created");
    return;
  }
  set_gl_mode(mode);
  const std::vector<Tri> tris = make_triangles(area);
  std::vector<GLfloat> pos, col;
  for (const Tri &t : tris)
    for (int k = 0; k < 3; ++k) {
      // Eye-space z of -10 puts w (fog distance) at 10 as for the board; the ortho maps it in range.
      pos.insert(pos.end(), {t.x[k], t.y[k], 0.0f});
      col.insert(col.end(), {t.r[k] / 255, t.g[k] / 255, t.b[k] / 255, t.a[k] / 255});
    }
  glEnableClientState(GL_VERTEX_ARRAY);
  glEnableClientState(GL_COLOR_ARRAY);
  glVertexPointer(3, GL_FLOAT, 0, pos.data());
  glColorPointer(4, GL_FLOAT, 0, col.data());
  if (mode == GOURAUD_DEPTH_FOG_BLEND) {
    glFogi(GL_FOG_COORDINATE_SOURCE, GL_FOG_COORDINATE);
    glFogCoordf(10.0f);
  }
  for (auto _ : state) {
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(tris.size() * 3));
    glFinish();
  }
  glDisableClientState(GL_VERTEX_ARRAY);
  glDisableClientState(GL_COLOR_ARRAY);
  state.SetItemsProcessed(state.iterations() * kBatch);
  state.counters["Mpixels/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kBatch * area / 1e6, benchmark::Counter::kIsRate);
}

void args(benchmark::internal::Benchmark *b) {
  for (int mode : {FLAT, GOURAUD_W, GOURAUD_DEPTH_FOG_BLEND})
    for (int area : {10, 100, 10000}) b->Args({mode, area});
  b->ArgNames({"mode", "pixels"});
}

// The board's cases, then its small triangles again with the reference set-up.
void board_args(benchmark::internal::Benchmark *b) {
  for (int mode : {FLAT, GOURAUD_W, GOURAUD_DEPTH_FOG_BLEND})
    for (int area : {10, 100, 10000}) b->Args({mode, area, 0});
  for (int mode : {FLAT, GOURAUD_W, GOURAUD_DEPTH_FOG_BLEND})
    for (int area : {10, 100}) b->Args({mode, area, 1});
  b->ArgNames({"mode", "pixels", "reference"});
}

BENCHMARK(BM_Board)->Apply(board_args)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Llvmpipe)->Apply(args)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
