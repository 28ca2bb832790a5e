// Triangles through the fast set-up (planes and fixed-point values two parameters a register, span
// parameters carried from row to row, the lean loop chosen once a triangle when its colour and W stay
// in range) against the reference set-up, which converts one value at a time and works every row out
// afresh: random states of the lean forms and of the keyed loops, every vector unit, both origins,
// clip windows, colours that end exactly on or just past 0 and 255, W inside and across the narrow
// range, values that saturate or are not numbers, textured triangles. Pixels, aux words and counters
// must be the same.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "board_fixture.h"
#include "pixel/raster.h"
#include "pixel/spans_plain.h"
#include "tmu/tmu.h"

namespace zvb::test {
namespace {

// Every vector unit the machine runs (Levels); the stepped walk is restored too when the test ends.
struct RowLevels : Levels {
  ~RowLevels() { raster_force_reference(false); }
};

// A random state: mostly the lean forms (iterated or constant colour and alpha, no depth or a
// biased Z or W buffer, table fog, the transparency blend), sometimes what only the keyed loops draw
// (an alpha test, fog from alpha, another blend, a combine unit that scales).
void random_state(std::mt19937 &g, PixelBoard &pb) {
  auto pick = [&](int n) { return static_cast<int>(g() % static_cast<unsigned>(n)); };
  const bool odd = pick(4) == 0;
  px_ColorCombine(pb, odd && pick(2) ? GR_COMBINE_FUNCTION_SCALE_OTHER : GR_COMBINE_FUNCTION_LOCAL,
                  odd ? GR_COMBINE_FACTOR_LOCAL_ALPHA : GR_COMBINE_FACTOR_NONE,
                  pick(3) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT, GR_COMBINE_OTHER_ITERATED, FXFALSE);
  px_AlphaCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE,
                  pick(2) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT, GR_COMBINE_OTHER_NONE, FXFALSE);
  px_ConstantColorValue(pb, g());
  const int depthModes[] = {GR_DEPTHBUFFER_DISABLE, GR_DEPTHBUFFER_ZBUFFER, GR_DEPTHBUFFER_WBUFFER,
                            GR_DEPTHBUFFER_WBUFFER_COMPARE_TO_BIAS};
  const int depthMode = depthModes[odd ? pick(4) : pick(3)];
  px_DepthBufferMode(pb, depthMode);
  px_DepthBufferFunction(pb, pick(2) ? GR_CMP_LEQUAL : pick(8));
  px_DepthBiasLevel(pb, static_cast<FxI16>(pick(2) ? 0 : pick(4000) - 2000));
  px_DepthMask(pb, depthMode != GR_DEPTHBUFFER_DISABLE && pick(4) != 0);
  px_FogMode(pb, pick(2) ? (odd ? GR_FOG_WITH_ITERATED_ALPHA : GR_FOG_WITH_TABLE) : GR_FOG_DISABLE);
  px_FogColorValue(pb, g());
  GrFog_t table[GR_FOG_TABLE_SIZE];
  for (auto &e : table) e = static_cast<GrFog_t>(pick(256));
  px_FogTable(pb, table);
  if (pick(2))
    px_AlphaBlendFunction(pb, GR_BLEND_SRC_ALPHA, odd ? GR_BLEND_ONE : GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE,
                          GR_BLEND_ZERO);
  else
    px_AlphaBlendFunction(pb, GR_BLEND_ONE, GR_BLEND_ZERO, GR_BLEND_ONE, GR_BLEND_ZERO);
  px_AlphaTestFunction(pb, odd && pick(2) ? GR_CMP_GREATER : GR_CMP_ALWAYS);
  px_AlphaTestReferenceValue(pb, static_cast<GrAlpha_t>(pick(256)));
  px_DitherMode(pb, pick(3));
  px_SstOrigin(pb, pick(2) ? GR_ORIGIN_UPPER_LEFT : GR_ORIGIN_LOWER_LEFT);
  if (pick(3) == 0) px_ClipWindow(pb, pick(30), pick(20), 40 + pick(100), 30 + pick(40));
}

// A colour value of a vertex: inside 0..255, exactly on an end, or a little past one.
float channel(std::mt19937 &g) {
  switch (g() % 6) {
    case 0: return 0.0f;
    case 1: return 255.0f;
    case 2: return -1.5f + float(g() % 300) / 100.0f;
    case 3: return 253.5f + float(g() % 300) / 100.0f;
    default: return float(g() % 25600) / 100.0f;
  }
}

// A triangle of roughly 1 to 3000 pixels on a 160x100 board (partly off it at times), with the
// colour channels of `channel` and a W of the narrow range, across its ends, or constant.
void random_triangle(std::mt19937 &g, GrVertex v[3]) {
  auto uni = [&](float lo, float hi) { return lo + (hi - lo) * float(g() & 0xFFFF) / 65536.0f; };
  const float size = g() % 3 == 0 ? uni(1, 80) : uni(1, 16);
  const float cx = uni(-10, 170), cy = uni(-10, 110);
  const int wKind = static_cast<int>(g() % 3);
  const float w0 = uni(0.001f, 0.9f);
  for (int k = 0; k < 3; ++k) {
    v[k] = vtx(cx + uni(-size, size), cy + uni(-size, size), channel(g), channel(g), channel(g), channel(g),
               uni(0, 65535), w0);
    if (wKind == 1) v[k].oow = uni(0.00001f, 0.0003f);  // across 2^-16
    else if (wKind == 2) v[k].oow = uni(0.9f, 1.1f);    // across 1
    v[k].tmuvtx[0].oow = v[k].oow;
    v[k].tmuvtx[0].sow = uni(-300, 300) * v[k].oow;
    v[k].tmuvtx[0].tow = uni(-300, 300) * v[k].oow;
  }
}

// Two boards with the same random contents, one drawing with the reference walk.
struct Pair {
  TestBoard b[2];
  TmuMemory mem[2][2];
  Pair() : b{TestBoard(160, 100), TestBoard(160, 100)} {
    for (int k = 0; k < 2; ++k)
      for (int i = 0; i < 2; ++i) {
        tmu_memory_init(mem[k][i], 1u << 16);
        b[k].pb.tmuMemory[i] = &mem[k][i];
      }
  }
  void fill(std::mt19937 &g) {
    for (size_t i = 0; i < b[0].buf[1].size(); ++i) {
      b[0].buf[1][i] = b[1].buf[1][i] = static_cast<uint16_t>(g());
      // Stored depths near the far end half the time, so that both outcomes of the test are common.
      b[0].auxBuf[i] = b[1].auxBuf[i] = static_cast<uint16_t>(g() % 2 ? g() : 0xFFFF - g() % 256);
    }
  }
  // Draws on both boards: board 1 with the reference walk.
  template <class Draw>
  void draw(Draw &&draw) {
    for (int k = 0; k < 2; ++k) {
      raster_force_reference(k == 1);
      draw(b[k].pb);
    }
    raster_force_reference(false);
  }
  bool same() const {
    return b[0].buf[1] == b[1].buf[1] && b[0].auxBuf == b[1].auxBuf &&
           std::memcmp(&b[0].pb.perf, &b[1].pb.perf, sizeof(PerfCounters)) == 0;
  }
};

TEST(SteppedRows, MatchTheReferenceWalkOnRandomTrianglesAndFans) {
  RowLevels levels;
  ASSERT_FALSE(levels.all.empty());
  int drawn = 0;
  for (int level : levels.all) {
    plain_force_simd(level);
    for (unsigned seed = 1; seed <= 80; ++seed) {
      std::mt19937 g(seed * 977u + static_cast<unsigned>(level));
      Pair p;
      p.fill(g);
      const unsigned stateSeed = g();
      for (TestBoard &tb : p.b) {
        std::mt19937 s(stateSeed);
        random_state(s, tb.pb);
      }
      for (int i = 0; i < 40; ++i) {
        GrVertex v[4];
        random_triangle(g, v);
        v[3] = v[2];
        v[3].x += static_cast<float>(g() % 20) - 10.0f;
        v[3].y += static_cast<float>(g() % 20);
        const bool fan = g() % 4 == 0;
        p.draw([&](PixelBoard &pb) {
          if (fan) px_DrawPolygonVertexList(pb, 4, v);
          else px_DrawTriangle(pb, &v[0], &v[1], &v[2]);
        });
      }
      ASSERT_TRUE(p.same()) << "level " << level << " seed " << seed << " key " << p.b[0].pb.derived.key;
      drawn += p.b[0].pb.perf.pixelsOut > 0;
    }
  }
  // Some states reject everything (a depth or alpha test that never passes); most must draw.
  EXPECT_GT(drawn, static_cast<int>(levels.all.size()) * 60);
}

// Colours that run from exactly 0 to exactly 255 across a triangle, and one unit past: the first
// keep every row in the no-clamp loops, the second must not.
TEST(SteppedRows, ColourRangesEndingOnTheLimits) {
  RowLevels levels;
  for (int level : levels.all) {
    plain_force_simd(level);
    for (int past = 0; past <= 1; ++past)
      for (int shape = 0; shape < 24; ++shape) {
        Pair p;
        std::mt19937 g(static_cast<unsigned>(shape * 2 + past));
        p.fill(g);
        for (TestBoard &tb : p.b) {
          px_ColorCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                          GR_COMBINE_OTHER_NONE, FXFALSE);
          px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
          px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
          px_DitherMode(tb.pb, GR_DITHER_4x4);
        }
        const float lo = past ? -1.0f : 0.0f, hi = past ? 256.0f : 255.0f;
        const float x0 = 10.0f + float(shape % 6), y0 = 5.0f + float(shape / 6) * 0.25f;
        const float sx = 20.0f + float(shape) * 3.0f, sy = 12.0f + float(shape % 5) * 7.0f;
        GrVertex v[3] = {vtx(x0, y0, lo, hi, lo, 255, 0, 0.5f), vtx(x0 + sx, y0 + sy * 0.5f, hi, lo, lo, 255, 0, 0.5f),
                         vtx(x0 + 0.25f, y0 + sy, lo, lo, hi, 255, 0, 0.5f)};
        p.draw([&](PixelBoard &pb) { px_DrawTriangle(pb, &v[0], &v[1], &v[2]); });
        ASSERT_TRUE(p.same()) << "level " << level << " shape " << shape << " past " << past;
      }
  }
}

// Vertex values the fixed-point conversion has to saturate or drop: huge, infinite and NaN colours,
// depths and W, slivers whose gradients pass the step limits, values that land on half units.
TEST(SteppedRows, ExtremeParameterValuesConvertAsTheReference) {
  RowLevels levels;
  const float specials[] = {0.0f, -0.0f, 1e30f, -1e30f, 3e9f, -3e9f, std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(),
                            1e-40f, 0.5f / 4096.0f, 1.5f / 4096.0f, -0.5f / 4096.0f, 262144.0f, 70000.5f};
  for (int level : levels.all) {
    plain_force_simd(level);
    for (unsigned seed = 1; seed <= 40; ++seed) {
      std::mt19937 g(seed * 7u + 3u);
      Pair p;
      p.fill(g);
      const unsigned stateSeed = g();
      for (TestBoard &tb : p.b) {
        std::mt19937 s(stateSeed);
        random_state(s, tb.pb);
      }
      auto special = [&]() { return specials[g() % (sizeof specials / sizeof specials[0])]; };
      for (int i = 0; i < 30; ++i) {
        GrVertex v[3];
        random_triangle(g, v);
        if (i % 3 == 0) v[2].x = v[0].x + float(g() % 5) / 64.0f;  // a sliver
        for (GrVertex &q : v)
          for (float *f : {&q.r, &q.g, &q.b, &q.a, &q.ooz, &q.oow})
            if (g() % 4 == 0) *f = special();
        p.draw([&](PixelBoard &pb) { px_DrawTriangle(pb, &v[0], &v[1], &v[2]); });
      }
      ASSERT_TRUE(p.same()) << "level " << level << " seed " << seed;
    }
  }
}

// Decal and modulate triangles (lean textured loops) and a texture-scaled combine (keyed loop): the
// texture coordinates of each row come from the same planes in both walks.
TEST(SteppedRows, TexturedTrianglesMatchTheReferenceWalk) {
  RowLevels levels;
  for (int level : levels.all) {
    plain_force_simd(level);
    for (unsigned seed = 1; seed <= 30; ++seed) {
      std::mt19937 g(seed * 131u);
      Pair p;
      p.fill(g);
      uint16_t tex[64];
      for (uint16_t &t : tex) t = static_cast<uint16_t>(g());
      const int form = static_cast<int>(seed % 3);
      for (int k = 0; k < 2; ++k) {
        PixelBoard &pb = p.b[k].pb;
        GrTexInfo info{GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, tex};
        ASSERT_TRUE(tmu_TexDownloadMipMap(p.mem[k][0], 0, 3, &info));
        ASSERT_TRUE(tmu_TexSource(pb.state.tmu[0], p.mem[k][0], 0, 3, &info));
        tmu_TexCombineFunction(pb.state.tmu[0], GR_TEXTURECOMBINE_DECAL);
        // 0: modulate, 1: decal, 2: texel scaled plus the iterated colour (keyed loop only).
        px_ColorCombine(pb, form == 2 ? GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL : GR_COMBINE_FUNCTION_SCALE_OTHER,
                        form == 1 ? GR_COMBINE_FACTOR_ONE : GR_COMBINE_FACTOR_LOCAL, GR_COMBINE_LOCAL_ITERATED,
                        GR_COMBINE_OTHER_TEXTURE, FXFALSE);
        px_DepthBufferMode(pb, GR_DEPTHBUFFER_WBUFFER);
        px_DepthBufferFunction(pb, GR_CMP_LEQUAL);
        px_DepthMask(pb, FXTRUE);
        px_DitherMode(pb, GR_DITHER_2x2);
      }
      for (int i = 0; i < 25; ++i) {
        GrVertex v[3];
        random_triangle(g, v);
        p.draw([&](PixelBoard &pb) { px_DrawTriangle(pb, &v[0], &v[1], &v[2]); });
      }
      ASSERT_TRUE(p.same()) << "level " << level << " seed " << seed << " form " << form;
      EXPECT_GT(p.b[0].pb.perf.pixelsOut, 0u);
    }
  }
}

}  // namespace
}  // namespace zvb::test
