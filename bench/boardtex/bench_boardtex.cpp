// Textured triangles at 640x480: the software board's pixel pipeline with its TMUs against Mesa's
// llvmpipe through OSMesa on one thread (LP_NUM_THREADS=1), the same triangles in the same run.
//
// Cases: point sampling; bilinear with mipmaps; bilinear with table fog and a W-buffer depth test;
// two-TMU trilinear (the chain split over even and odd levels). Each case draws a screenful of
// triangles of about 100 or 10,000 pixels in perspective; the counter is Mpixels/s.
#include <benchmark/benchmark.h>

#include <GL/gl.h>
#include <GL/osmesa.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "pixel/pixel.h"

namespace {

constexpr int kW = 640, kH = 480;

enum Case { POINT, BILINEAR, BILINEAR_FOG_DEPTH, TRILINEAR };

// A textured vertex: screen position, 1/w, texture coordinates (256 scale) and colour.
struct Vert {
  float x, y, oow, s, t, r, g, b;
};

// Triangles of about `area` pixels tiling the screen in pairs (squares), each square seen in
// perspective: 1/w falls from 1 to 0.5 across it and the texture repeats once per square.
std::vector<Vert> make_triangles(int area) {
  std::vector<Vert> v;
  const float side = std::sqrt(2.0f * float(area));
  for (float y = 0; y + side <= kH; y += side)
    for (float x = 0; x + side <= kW; x += side) {
      const Vert a{x, y, 1.0f, 0, 0, 255, 200, 160}, b{x + side, y, 0.5f, 256, 0, 160, 255, 200},
          c{x + side, y + side, 0.5f, 256, 256, 200, 160, 255}, d{x, y + side, 1.0f, 0, 256, 255, 255, 255};
      v.insert(v.end(), {a, b, c, a, c, d});
    }
  return v;
}

// A 256x256 RGB565 checker-and-gradient chain of 9 levels.
std::vector<uint16_t> make_texture() {
  std::vector<uint16_t> texels;
  for (int l = 0; l <= 8; ++l) {
    int n = 256 >> l;
    for (int y = 0; y < n; ++y)
      for (int x = 0; x < n; ++x) {
        int r = (x * 255 / n), g = (y * 255 / n), b = ((x / 8 + y / 8) & 1) ? 255 : 40;
        texels.push_back(uint16_t(((r >> 3) << 11) | ((g >> 2) << 5) | (b >> 3)));
      }
  }
  return texels;
}

// ---- the software board --------------------------------------------------------------------

struct Board {
  zvb::PixelBoard pb;
  std::vector<uint16_t> colour[2], aux;
  zvb::TmuMemory mem[2];
  Board(Case c) {
    std::memset(&pb, 0, sizeof pb);
    for (auto &b : colour) b.assign(size_t(kW) * kH, 0);
    aux.assign(size_t(kW) * kH, 0xFFFF);
    pb.colour[0] = colour[0].data();
    pb.colour[1] = colour[1].data();
    pb.aux = aux.data();
    pb.width = kW;
    pb.height = kH;
    pb.front = 0;
    pb.back = 1;
    pb.nColBuffers = 2;
    zvb::px_reset(pb, 2);
    std::vector<uint16_t> tex = make_texture();
    GrTexInfo info{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, tex.data()};
    for (int i = 0; i < 2; ++i) {
      zvb::tmu_memory_init(mem[i], 4u << 20);
      pb.tmuMemory[i] = &mem[i];
      uint32_t mask = c == TRILINEAR ? (i == 0 ? GR_MIPMAPLEVELMASK_EVEN : GR_MIPMAPLEVELMASK_ODD)
                                     : GR_MIPMAPLEVELMASK_BOTH;
      zvb::TmuState &st = pb.state.tmu[i];
      zvb::tmu_TexDownloadMipMap(mem[i], 0, mask, &info);
      zvb::tmu_TexSource(st, mem[i], 0, mask, &info);
      zvb::tmu_TexClampMode(st, GR_TEXTURECLAMP_WRAP, GR_TEXTURECLAMP_WRAP);
      int filter = c == POINT ? GR_TEXTUREFILTER_POINT_SAMPLED : GR_TEXTUREFILTER_BILINEAR;
      zvb::tmu_TexFilterMode(st, filter, filter);
      zvb::tmu_TexMipMapMode(st, c == POINT ? GR_MIPMAP_DISABLE : GR_MIPMAP_NEAREST, c == TRILINEAR);
      zvb::tmu_TexCombineFunction(st, GR_TEXTURECOMBINE_DECAL);
    }
    if (c == TRILINEAR)
      zvb::tmu_TexCombineFunction(pb.state.tmu[0], GR_TEXTURECOMBINE_TRILINEAR_EVEN);
    // Texture modulated by the iterated colour.
    zvb::px_ColorCombine(pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL,
                         GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
    if (c == BILINEAR_FOG_DEPTH) {
      GrFog_t fog[GR_FOG_TABLE_SIZE];
      zvb::px_fog_generate_linear(fog, 1.0f, 3.0f);
      zvb::px_FogTable(pb, fog);
      zvb::px_FogMode(pb, GR_FOG_WITH_TABLE);
      zvb::px_FogColorValue(pb, 0x00808080);
      zvb::px_DepthBufferMode(pb, GR_DEPTHBUFFER_WBUFFER);
      zvb::px_DepthBufferFunction(pb, GR_CMP_LEQUAL);
      zvb::px_DepthMask(pb, FXTRUE);
    }
  }
  void draw(const std::vector<Vert> &tris) {
    GrVertex g[3];
    std::memset(g, 0, sizeof g);
    for (size_t i = 0; i + 2 < tris.size(); i += 3) {
      for (int k = 0; k < 3; ++k) {
        const Vert &v = tris[i + size_t(k)];
        g[k].x = v.x;
        g[k].y = v.y;
        g[k].oow = v.oow;
        g[k].r = v.r;
        g[k].g = v.g;
        g[k].b = v.b;
        g[k].a = 255;
        for (int t = 0; t < 2; ++t) {
          g[k].tmuvtx[t].sow = v.s * v.oow;
          g[k].tmuvtx[t].tow = v.t * v.oow;
          g[k].tmuvtx[t].oow = v.oow;
        }
      }
      zvb::px_DrawTriangle(pb, &g[0], &g[1], &g[2]);
    }
  }
};

void BM_Board(benchmark::State &state) {
  const Case c = Case(state.range(0));
  const std::vector<Vert> tris = make_triangles(int(state.range(1)));
  Board board(c);
  uint64_t pixels = 0;
  for (auto _ : state) {
    std::fill(board.aux.begin(), board.aux.end(), 0xFFFF);
    const uint32_t before = board.pb.perf.pixelsIn;
    board.draw(tris);
    pixels += (board.pb.perf.pixelsIn - before) & 0xFFFFFFu;
  }
  state.counters["Mpixels/s"] = benchmark::Counter(double(pixels) / 1e6, benchmark::Counter::kIsRate);
}

// ---- llvmpipe through OSMesa -----------------------------------------------------------------

struct Mesa {
  OSMesaContext ctx = nullptr;
  std::vector<uint8_t> buffer;
  GLuint tex = 0;
  bool ok = false;
  explicit Mesa(Case c) {
    ctx = OSMesaCreateContextExt(OSMESA_RGBA, 24, 0, 0, nullptr);
    buffer.assign(size_t(kW) * kH * 4, 0);
    if (!ctx || !OSMesaMakeCurrent(ctx, buffer.data(), GL_UNSIGNED_BYTE, kW, kH)) return;
    glViewport(0, 0, kW, kH);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, kW, kH, 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glGenTextures(1, &tex);
    glBindTexture(GL_TEXTURE_2D, tex);
    std::vector<uint16_t> texels = make_texture();
    size_t at = 0;
    for (int l = 0; l <= 8; ++l) {
      int n = 256 >> l;
      glTexImage2D(GL_TEXTURE_2D, l, GL_RGB, n, n, 0, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, texels.data() + at);
      at += size_t(n) * size_t(n);
    }
    GLint minf = c == POINT ? GL_NEAREST : (c == TRILINEAR ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR_MIPMAP_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minf);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, c == POINT ? GL_NEAREST : GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glEnable(GL_TEXTURE_2D);
    glShadeModel(GL_SMOOTH);
    if (c == BILINEAR_FOG_DEPTH) {
      glEnable(GL_FOG);
      glFogi(GL_FOG_MODE, GL_LINEAR);
      glFogf(GL_FOG_START, 1.0f);
      glFogf(GL_FOG_END, 3.0f);
      const GLfloat fogColour[4] = {0.5f, 0.5f, 0.5f, 1.0f};
      glFogfv(GL_FOG_COLOR, fogColour);
      glEnable(GL_DEPTH_TEST);
      glDepthFunc(GL_LEQUAL);
    }
    ok = true;
  }
  ~Mesa() {
    if (tex) glDeleteTextures(1, &tex);
    if (ctx) OSMesaDestroyContext(ctx);
  }
  // The same triangles, positions given as (x w, y w, 0, w) so that clip w carries the perspective.
  void draw(const std::vector<Vert> &tris) {
    glBegin(GL_TRIANGLES);
    for (const Vert &v : tris) {
      const float w = 1.0f / v.oow;
      glColor3ub(GLubyte(v.r), GLubyte(v.g), GLubyte(v.b));
      glTexCoord2f(v.s / 256.0f, v.t / 256.0f);
      glVertex4f(v.x * w, v.y * w, 0.0f, w);
    }
    glEnd();
  }
};

void BM_Llvmpipe(benchmark::State &state) {
  const Case c = Case(state.range(0));
  const std::vector<Vert> tris = make_triangles(int(state.range(1)));
  Mesa mesa(c);
  if (!mesa.ok) {
    state.SkipWithError("OSMesa context not available");
    return;
  }
  double area = 0;
  for (size_t i = 0; i + 2 < tris.size(); i += 3) {
    const Vert &a = tris[i], &b = tris[i + 1], &d = tris[i + 2];
    area += std::fabs((b.x - a.x) * (d.y - a.y) - (d.x - a.x) * (b.y - a.y)) / 2.0;
  }
  uint64_t pixels = 0;
  for (auto _ : state) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    mesa.draw(tris);
    glFinish();
    pixels += uint64_t(area);
  }
  state.counters["Mpixels/s"] = benchmark::Counter(double(pixels) / 1e6, benchmark::Counter::kIsRate);
}

void cases(benchmark::internal::Benchmark *b) {
  b->ArgNames({"case", "area"});
  for (int c : {POINT, BILINEAR, BILINEAR_FOG_DEPTH, TRILINEAR})
    for (int area : {100, 10000}) b->Args({c, area});
  b->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
}

BENCHMARK(BM_Board)->Apply(cases);
BENCHMARK(BM_Llvmpipe)->Apply(cases);

}  // namespace

int main(int argc, char **argv) {
  setenv("LP_NUM_THREADS", "1", 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
