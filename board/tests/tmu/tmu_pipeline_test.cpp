// Textured primitives through the whole pixel pipeline: texels reach the combine units, the
// chroma key and the alpha test, the counters stay exact, and the STW hints pick each TMU's
// coordinates.
#include "board_fixture.h"
#include "tmu/tmu.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>

using namespace zvb;
using zvb::test::TestBoard;
using zvb::test::rgb565;
using zvb::test::vtx;

namespace {

// A 64x64 board whose TMUs have memory; TMU0 holds an 8x8 texture (GR_LOD_8) of `format`.
struct TexBoard {
  TestBoard tb;
  TmuMemory mem[2];
  explicit TexBoard(int w = 64, int h = 64) : tb(w, h) {
    for (int i = 0; i < 2; ++i) {
      tmu_memory_init(mem[i], 1u << 20);
      tb.pb.tmuMemory[i] = &mem[i];
    }
  }
  void load(int tmu, int format, const void *texels) {
    GrTexInfo info{GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, format, const_cast<void *>(texels)};
    ASSERT_TRUE(tmu_TexDownloadMipMap(mem[tmu], 0, 3, &info));
    ASSERT_TRUE(tmu_TexSource(tb.pb.state.tmu[tmu], mem[tmu], 0, 3, &info));
    tmu_TexCombineFunction(tb.pb.state.tmu[tmu], GR_TEXTURECOMBINE_DECAL);
  }
  // A 32x32 square at the origin, s and t = 8 per pixel (one texel every 4 pixels), TMU1's
  // coordinates mirrored in s.
  void square() {
    GrVertex v[4] = {vtx(0, 0, 255, 255, 255), vtx(32, 0, 255, 255, 255), vtx(32, 32, 255, 255, 255),
                     vtx(0, 32, 255, 255, 255)};
    for (GrVertex &p : v) {
      p.tmuvtx[0].sow = p.x * 8;
      p.tmuvtx[0].tow = p.y * 8;
      p.tmuvtx[1].sow = 256 - p.x * 8;
      p.tmuvtx[1].tow = p.y * 8;
      p.tmuvtx[0].oow = p.tmuvtx[1].oow = 1;
    }
    px_DrawPolygonVertexList(tb.pb, 4, v);
  }
};

uint16_t texel565(int x, int y) { return uint16_t(0x0841 * (x + 2) + 0x1000 * y); }

}  // namespace

TEST(TexPipeline, DecalTriangleShowsEveryTexelExactly) {
  TexBoard b;
  uint16_t tex[64];
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) tex[y * 8 + x] = texel565(x, y);
  b.load(0, GR_TEXFMT_RGB_565, tex);
  px_ColorCombine(b.tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE,
                  GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  b.square();
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x)
      ASSERT_EQ(b.tb.pixel(x, y), texel565(x / 4, y / 4)) << x << "," << y;
  EXPECT_EQ(b.tb.pixel(32, 5), 0);
  EXPECT_EQ(b.tb.pb.perf.pixelsIn, 1024u);
  EXPECT_EQ(b.tb.pb.perf.pixelsOut, 1024u);
}

TEST(TexPipeline, ModulateWithIteratedColour) {
  TexBoard b;
  uint16_t tex[64];
  for (uint16_t &t : tex) t = 0xF81F;  // magenta 255, 0, 255
  b.load(0, GR_TEXFMT_RGB_565, tex);
  px_ColorCombine(b.tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL,
                  GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  GrVertex v[3] = {vtx(0, 0, 128, 0, 64), vtx(40, 0, 128, 0, 64), vtx(0, 40, 128, 0, 64)};
  px_DrawTriangle(b.tb.pb, &v[0], &v[1], &v[2]);
  // 255 x 129 >> 8 = 128, 255 x 65 >> 8 = 64.
  EXPECT_EQ(b.tb.pixel(3, 3), rgb565(128, 0, 64));
}

// Texture alpha decides the alpha test, texture colour the chroma key; every rejected pixel is
// counted once, in pipeline order.
TEST(TexPipeline, AlphaTestAndChromaKeyOnTexelsKeepTheCountersExact) {
  TexBoard b;
  uint16_t tex[64];
  int transparent = 0, keyed = 0;
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      bool opaque = (x + y) % 3 != 0;
      bool key = x == 5;
      tex[y * 8 + x] = uint16_t((opaque ? 0x8000 : 0) | (key ? 0x7C00 : 0x001F));
      if (key) keyed += 16;
      else if (!opaque) transparent += 16;
    }
  b.load(0, GR_TEXFMT_ARGB_1555, tex);
  px_ColorCombine(b.tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE,
                  GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  px_AlphaCombine(b.tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE,
                  GR_COMBINE_LOCAL_NONE, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  px_AlphaTestFunction(b.tb.pb, GR_CMP_GREATER);
  px_AlphaTestReferenceValue(b.tb.pb, 0);
  px_ChromakeyMode(b.tb.pb, GR_CHROMAKEY_ENABLE);
  px_ChromakeyValue(b.tb.pb, 0x00FF0000);
  b.square();
  const PerfCounters &p = b.tb.pb.perf;
  EXPECT_EQ(p.pixelsIn, 1024u);
  EXPECT_EQ(p.chromaFail, uint32_t(keyed));
  EXPECT_EQ(p.aFuncFail, uint32_t(transparent));
  EXPECT_EQ(p.pixelsOut, uint32_t(1024 - keyed - transparent));
  EXPECT_EQ(b.tb.count(rgb565(0, 0, 255)), 1024 - keyed - transparent);
}

// TMU1 takes TMU0's s and t unless the hint says they differ or TMU0 does not sample its texture.
TEST(TexPipeline, StwHintsChooseTheUpstreamCoordinates) {
  TexBoard b;
  uint8_t ramp[64], flat[64];
  for (int i = 0; i < 64; ++i) {
    ramp[i] = uint8_t((i % 8) * 30);  // intensity by column
    flat[i] = 255;
  }
  b.load(1, GR_TEXFMT_INTENSITY_8, ramp);
  b.load(0, GR_TEXFMT_INTENSITY_8, flat);
  tmu_TexCombineFunction(b.tb.pb.state.tmu[0], GR_TEXTURECOMBINE_MULTIPLY);
  px_ColorCombine(b.tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE,
                  GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  b.square();
  EXPECT_EQ(b.tb.pixel(1, 1), rgb565(0, 0, 0));        // column 0 of the ramp (TMU0's s)
  px_Hints(b.tb.pb, GR_HINT_STWHINT, GR_STWHINT_ST_DIFF_TMU1);
  b.square();
  EXPECT_EQ(b.tb.pixel(1, 1), rgb565(210, 210, 210));  // column 7: TMU1's mirrored s
  // Without the hint, a TMU0 that only passes TMU1 on leaves TMU1 its own coordinates.
  px_Hints(b.tb.pb, GR_HINT_STWHINT, 0);
  tmu_TexCombineFunction(b.tb.pb.state.tmu[0], GR_TEXTURECOMBINE_OTHER);
  b.square();
  EXPECT_EQ(b.tb.pixel(1, 1), rgb565(210, 210, 210));
}

namespace {

// Random textured modes that the lean loops take (decal or modulate, constant or iterated alpha,
// Z or W or no depth, table fog, the transparency blend) mixed with a few they do not.
void random_textured_state(std::mt19937 &g, PixelBoard &pb) {
  auto pick = [&](int n) { return int(g() % unsigned(n)); };
  const int forms[][2] = {{GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE},
                          {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL},
                          {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL},
                          {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_TEXTURE_ALPHA}};
  const int *f = forms[pick(4)];
  px_ColorCombine(pb, f[0], f[1], pick(4) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT,
                  GR_COMBINE_OTHER_TEXTURE, pick(8) == 0);
  px_AlphaCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE,
                  pick(2) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT, GR_COMBINE_OTHER_NONE, FXFALSE);
  px_ConstantColorValue(pb, g());
  const int depth[] = {GR_DEPTHBUFFER_DISABLE, GR_DEPTHBUFFER_ZBUFFER, GR_DEPTHBUFFER_WBUFFER};
  px_DepthBufferMode(pb, depth[pick(3)]);
  px_DepthBufferFunction(pb, pick(2) ? GR_CMP_LEQUAL : pick(8));
  px_DepthBiasLevel(pb, FxI16(pick(2) ? 0 : pick(600) - 300));
  px_DepthMask(pb, pick(4) != 0);
  GrFog_t table[64];
  for (auto &e : table) e = GrFog_t(pick(256));
  px_FogTable(pb, table);
  px_FogMode(pb, pick(2) ? GR_FOG_WITH_TABLE : GR_FOG_DISABLE);
  px_FogColorValue(pb, g());
  if (pick(2)) px_AlphaBlendFunction(pb, GR_BLEND_SRC_ALPHA, GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE, GR_BLEND_ZERO);
  else px_AlphaBlendFunction(pb, GR_BLEND_ONE, GR_BLEND_ZERO, GR_BLEND_ONE, GR_BLEND_ZERO);
  px_DitherMode(pb, pick(3));
  TmuState &st = pb.state.tmu[0];
  const int filter = pick(2) ? GR_TEXTUREFILTER_BILINEAR : GR_TEXTUREFILTER_POINT_SAMPLED;
  tmu_TexFilterMode(st, filter, filter);
  tmu_TexClampMode(st, pick(2) ? GR_TEXTURECLAMP_WRAP : GR_TEXTURECLAMP_CLAMP, GR_TEXTURECLAMP_WRAP);
}

}  // namespace

// The lean loops of the textured modes give the generic loop's pixels, aux values and counters,
// on spans longer than the texel chunks, with colours that leave 0..255 and perspective w.
TEST(TexPipeline, LeanTexturedLoopsMatchTheGenericLoop) {
  std::set<uint32_t> keys;
  for (unsigned seed = 1; seed <= 150; ++seed) {
    TexBoard fast(300, 40), generic(300, 40);
    for (TexBoard *b : {&fast, &generic}) {
      std::mt19937 g(seed);
      uint16_t tex[64];
      for (uint16_t &t : tex) t = uint16_t(g());
      b->load(0, g() % 2 ? GR_TEXFMT_RGB_565 : GR_TEXFMT_ARGB_4444, tex);
      for (size_t i = 0; i < b->tb.buf[1].size(); ++i) {
        b->tb.buf[1][i] = uint16_t(g());
        b->tb.auxBuf[i] = uint16_t(g());
      }
      random_textured_state(g, b->tb.pb);
    }
    generic.tb.pb.derived.keyOverride = 1 + KEY_GENERIC;
    for (TexBoard *b : {&fast, &generic}) {
      std::mt19937 g(seed * 31u);
      auto uni = [&](float lo, float hi) { return lo + (hi - lo) * float(g() & 0xFFFF) / 65536.0f; };
      for (int i = 0; i < 12; ++i) {
        GrVertex v[3];
        for (GrVertex &p : v) {
          p = vtx(uni(-20, 320), uni(-5, 45), uni(-30, 290), uni(0, 255), uni(0, 255), uni(-30, 290),
                  uni(0, 65000), uni(0.01f, 1.0f));
          p.tmuvtx[0].oow = p.oow;
          p.tmuvtx[0].sow = uni(-300, 300) * p.oow;
          p.tmuvtx[0].tow = uni(-300, 300) * p.oow;
        }
        px_DrawTriangle(b->tb.pb, &v[0], &v[1], &v[2]);
      }
    }
    keys.insert(fast.tb.pb.derived.key);
    ASSERT_EQ(fast.tb.buf[1], generic.tb.buf[1]) << "seed " << seed;
    ASSERT_EQ(fast.tb.auxBuf, generic.tb.auxBuf) << "seed " << seed;
    ASSERT_EQ(0, std::memcmp(&fast.tb.pb.perf, &generic.tb.pb.perf, sizeof(PerfCounters))) << "seed " << seed;
  }
  EXPECT_GE(keys.size(), 10u);
}
