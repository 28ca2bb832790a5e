// Texture combine units and the TMU1 -> TMU0 chain.
#include "tmu_rig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace zvb;
using zvb_test::TmuRig;
using zvb_test::chain_bytes;

namespace {

constexpr uint32_t kLocal = 0x804010F0u;  // TMU0's texel
constexpr uint32_t kOther = 0x20C00830u;  // TMU1's texel (TMU1 a decal)

// Two TMUs, each holding one constant 8x8 texture (GR_LOD_8) of any ARGB value: AP_88 texels
// whose palette entry gives the colour and whose high byte the alpha. TMU1 is a decal.
TmuRig constant_pair(uint32_t local, uint32_t other) {
  TmuRig rig;
  for (int i = 0; i < 2; ++i) {
    uint32_t c = i == 0 ? local : other;
    uint32_t pal[256] = {};
    pal[1] = c & 0xFFFFFF;
    EXPECT_TRUE(tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_PALETTE, pal));
    uint16_t tex[64];
    for (uint16_t &t : tex) t = uint16_t((c >> 24) << 8 | 1);
    EXPECT_TRUE(rig.load(i, 0, 3, GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, GR_TEXFMT_AP_88, tex));
  }
  tmu_TexCombineFunction(rig.st[1], GR_TEXTURECOMBINE_DECAL);
  return rig;
}

struct CombineCase {
  int function, factor;
  bool invert;
  uint32_t want;
};

}  // namespace

// Every function with factor ONE, then SCALE_OTHER with every factor, with Cl = 80 40 10 F0 and
// Co = 20 C0 08 30 (ARGB); results worked out by hand, clamped to 0..255.
TEST(TmuCombine, EveryFunctionAndFactor) {
  const CombineCase cases[] = {
      {GR_COMBINE_FUNCTION_ZERO, GR_COMBINE_FACTOR_ONE, false, 0x00000000},
      {GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_ONE, false, kLocal},
      {GR_COMBINE_FUNCTION_LOCAL_ALPHA, GR_COMBINE_FACTOR_ONE, false, 0x80808080},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE, false, kOther},
      {GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL, GR_COMBINE_FACTOR_ONE, false, 0xA0FF18FF},
      {GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL_ALPHA, GR_COMBINE_FACTOR_ONE, false, 0xA0FF88B0},
      {GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL, GR_COMBINE_FACTOR_ONE, false, 0x00800000},
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_ONE, false, kOther},
      {GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL_ALPHA, GR_COMBINE_FACTOR_ONE, false,
       0x20FF7800},
      {GR_COMBINE_FUNCTION_BLEND_LOCAL, GR_COMBINE_FACTOR_ONE, false, 0x00000000},
      {GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL_ALPHA, GR_COMBINE_FACTOR_ONE, false,
       0x00407000},
      {0xB, GR_COMBINE_FACTOR_ONE, false, kOther},  // undefined codes scale the other colour
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ZERO, false, 0x00000000},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL, false, 0x1030002D},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_OTHER_ALPHA, false, 0x04180106},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL_ALPHA, false, 0x10600418},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE_MINUS_LOCAL, false, 0x10900703},
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE, true, ~kOther},
      {GR_COMBINE_FUNCTION_ZERO, GR_COMBINE_FACTOR_ZERO, true, 0xFFFFFFFF},
      // Negative products shift arithmetically: BLEND by local alpha, G = (-8 x 129 >> 8) + 16.
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_LOCAL_ALPHA, false, 0x4F800B8F},
  };
  TmuRig rig = constant_pair(kLocal, kOther);
  for (const CombineCase &c : cases) {
    tmu_TexCombine(rig.st[0], c.function, c.factor, c.function, c.factor, c.invert, c.invert);
    EXPECT_EQ(rig.sample(100, 100), c.want)
        << std::hex << "function " << c.function << " factor " << c.factor << " invert "
        << c.invert;
  }
}

TEST(TmuCombine, ColourAndAlphaHalvesAreIndependent) {
  TmuRig rig = constant_pair(kLocal, kOther);
  tmu_TexCombine(rig.st[0], GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_ZERO,
                 GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE, FXFALSE, FXTRUE);
  EXPECT_EQ(rig.sample(1, 1), (kLocal & 0xFFFFFF) | (uint32_t(0xFF - 0x20) << 24));
}

// The shorthand table, seen through its results with TMU1 upstream.
TEST(TmuCombine, ShorthandFunctions) {
  TmuRig rig = constant_pair(kLocal, kOther);
  struct { int fnc; uint32_t want; } cases[] = {
      {GR_TEXTURECOMBINE_ZERO, 0},
      {GR_TEXTURECOMBINE_DECAL, kLocal},
      {GR_TEXTURECOMBINE_OTHER, kOther},
      {GR_TEXTURECOMBINE_ADD, 0xA0FF18FF},
      {GR_TEXTURECOMBINE_MULTIPLY, 0x1030002D},
      {GR_TEXTURECOMBINE_SUBTRACT, 0x00800000},
      {GR_TEXTURECOMBINE_ONE, 0xFFFFFFFF},
  };
  for (const auto &c : cases) {
    ASSERT_TRUE(tmu_TexCombineFunction(rig.st[0], c.fnc));
    EXPECT_EQ(rig.sample(5, 5), c.want) << c.fnc;
  }
  TmuState before = rig.st[0];
  EXPECT_FALSE(tmu_TexCombineFunction(rig.st[0], 11));
  EXPECT_EQ(std::memcmp(&before, &rig.st[0], sizeof before), 0);
}

// With one TMU the upstream colour is 0: MULTIPLY gives black, ADD the local texel.
TEST(TmuCombine, SingleTmuHasNoUpstream) {
  TmuRig rig = constant_pair(kLocal, kOther);
  rig.numTmu = 1;
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_MULTIPLY);
  EXPECT_EQ(rig.sample(5, 5), 0u);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_ADD);
  EXPECT_EQ(rig.sample(5, 5), kLocal);
}

// Detail texturing: d = min(((bias - LOD) << scale) >> 8, max) with LOD in 8.8 units, and
// DETAIL = local x d + other x (1 - d).
TEST(TmuCombine, DetailFactorFromLodBiasScaleAndMax) {
  TmuRig rig = constant_pair(0xFF646464u, 0xFFC8C8C8u);  // local 100, other 200
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DETAIL);
  // The texture has the one level GR_LOD_8 (= 5), so the LOD is 5.0 whatever the gradient.
  tmu_TexDetailControl(rig.st[0], 7, 5, 1.0f);  // ((7 - 5) x 256 << 5) >> 8 = 64
  // f' = 255 - 64: (200 - 100) x 192 >> 8 = 75, + 100.
  EXPECT_EQ(rig.sample(1, 1) & 0xFF, 175u);
  tmu_TexDetailControl(rig.st[0], 5, 5, 1.0f);  // LOD >= bias: d = 0, the other colour
  EXPECT_EQ(rig.sample(1, 1) & 0xFF, 200u);
  tmu_TexDetailControl(rig.st[0], 8, 5, 1.0f);  // 3 LODs below: 96 -> (100 x 160) >> 8 + 100
  EXPECT_EQ(rig.sample(1, 1) & 0xFF, 162u);
  tmu_TexDetailControl(rig.st[0], 8, 5, 0.25f);  // max 63: (100 x 193) >> 8 + 100
  EXPECT_EQ(rig.sample(1, 1) & 0xFF, 175u);
  EXPECT_EQ(rig.st[0].detailMax, 63);
  // DETAIL_OTHER puts the detail texture upstream: other x d + local x (1 - d).
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DETAIL_OTHER);
  tmu_TexDetailControl(rig.st[0], 7, 5, 1.0f);  // d = 64: (100 x 65) >> 8 + 100
  EXPECT_EQ(rig.sample(1, 1) & 0xFF, 125u);
}

// The LOD fraction as a factor: SCALE_OTHER by LOD_FRACTION at LOD 2.5 is other x 129 >> 8.
TEST(TmuCombine, LodFractionFactor) {
  TmuRig rig = constant_pair(0xFF000000u, 0xFFC8C8C8u);
  rig.st[0].largeLod = GR_LOD_256;  // widen the range so the LOD is not clamped (level data
  rig.st[0].smallLod = GR_LOD_1;    // is read from memory past the 8x8 texture: it is zero)
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST, FXFALSE);
  tmu_TexCombine(rig.st[0], GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOD_FRACTION,
                 GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE_MINUS_LOD_FRACTION,
                 FXFALSE, FXFALSE);
  rig.gradient(0, 4.0f);
  EXPECT_EQ(rig.sample(1, 1, 1.0f / std::sqrt(2.0f)), 0x7F646464u);  // 200 x 129 >> 8 = 100
  EXPECT_EQ(rig.sample(1, 1, 1.0f), 0xFF000000u);                    // fraction 0
}

namespace {

// Both TMUs hold the same 256 chain (level l is the constant 20 l + 5), TMU0 the levels of
// `mask0`, TMU1 the others; trilinear as an application sets it up.
TmuRig trilinear_rig(uint32_t mask0) {
  TmuRig rig;
  std::vector<uint8_t> data(chain_bytes(0, 8, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8));
  size_t at = 0;
  for (int l = 0; l <= 8; ++l) {
    size_t n = size_t(256 >> l) * size_t(256 >> l);
    std::fill(data.begin() + long(at), data.begin() + long(at + n), uint8_t(20 * l + 5));
    at += n;
  }
  for (int i = 0; i < 2; ++i) {
    uint32_t mask = i == 0 ? mask0 : 3u - mask0;
    EXPECT_TRUE(rig.load(i, 0, mask, GR_LOD_256, GR_LOD_1, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8,
                         data.data()));
    tmu_TexMipMapMode(rig.st[i], GR_MIPMAP_NEAREST, FXTRUE);
    tmu_TexFilterMode(rig.st[i], GR_TEXTUREFILTER_BILINEAR, GR_TEXTUREFILTER_BILINEAR);
    tmu_TexClampMode(rig.st[i], GR_TEXTURECLAMP_WRAP, GR_TEXTURECLAMP_WRAP);
  }
  tmu_TexCombineFunction(rig.st[1], GR_TEXTURECOMBINE_DECAL);
  tmu_TexCombineFunction(rig.st[0], mask0 == GR_MIPMAPLEVELMASK_EVEN
                                        ? GR_TEXTURECOMBINE_TRILINEAR_EVEN
                                        : GR_TEXTURECOMBINE_TRILINEAR_ODD);
  rig.gradient(0, 1.0f);
  rig.gradient(1, 1.0f);
  return rig;
}

}  // namespace

// Trilinear with the chain split over two TMUs: L(n) (1 - f) + L(n + 1) f in both parities of n
// and whichever TMU holds the even levels, to within the 8-bit arithmetic.
TEST(TmuCombine, TrilinearOverTwoTmusBlendsNeighbouringLevels) {
  for (uint32_t mask0 : {1u, 2u}) {
    TmuRig rig = trilinear_rig(mask0);
    for (int step = 0; step < 7 * 16; ++step) {
      float lod = float(step) / 16.0f;
      float oow = std::exp2(-lod);
      int n = int(std::floor(lod + 1e-4f));
      float f = lod - float(n);
      float want = (20.0f * float(n) + 5.0f) * (1.0f - f) + (20.0f * float(n + 1) + 5.0f) * f;
      int got = int(rig.sample(40, 40, oow) & 0xFF);
      EXPECT_NEAR(float(got), want, 1.5f) << "mask0 " << mask0 << " lod " << lod;
    }
  }
}

// Modulating two textures: TMU1's texel scaled by TMU0's.
TEST(TmuCombine, ChainModulateAndAdd) {
  TmuRig rig = constant_pair(0xFF808080u, 0x80402010u);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_MULTIPLY);
  // Colour x 129 >> 8 (0x40 -> 0x20, 0x20 -> 0x10, 0x10 -> 0x08); alpha x 256 >> 8.
  EXPECT_EQ(rig.sample(9, 9), 0x80201008u);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_ADD);
  EXPECT_EQ(rig.sample(9, 9), 0xFFC0A090u);
}
