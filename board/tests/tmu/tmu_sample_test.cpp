// Sampling: point and bilinear filtering, clamp and wrap, LOD, bias and dither.
#include "tmu_rig.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace zvb;
using zvb_test::TmuRig;
using zvb_test::chain_bytes;

namespace {

// An 8x8 INTENSITY_8 texture (GR_LOD_8, 32 units of s or t per texel) whose texel (x, y) has the
// intensity 16 y + 2 x, bound on TMU0 as a decal.
TmuRig grid_rig(int clamp, int filter) {
  TmuRig rig;
  rig.numTmu = 1;
  uint8_t texels[64];
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) texels[y * 8 + x] = uint8_t(16 * y + 2 * x);
  EXPECT_TRUE(rig.load(0, 256, 3, GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8, texels));
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexClampMode(rig.st[0], clamp, clamp);
  tmu_TexFilterMode(rig.st[0], filter, filter);
  return rig;
}

uint32_t grey(uint32_t i) { return 0xFF000000u | i * 0x010101u; }

}  // namespace

TEST(TmuSample, PointSamplingPicksTheTexelContainingTheCoordinate) {
  TmuRig rig = grid_rig(GR_TEXTURECLAMP_CLAMP, GR_TEXTUREFILTER_POINT_SAMPLED);
  EXPECT_EQ(rig.sample(3 * 32 + 16, 5 * 32 + 16), grey(16 * 5 + 2 * 3));  // centre
  EXPECT_EQ(rig.sample(3 * 32, 5 * 32), grey(16 * 5 + 2 * 3));            // top-left edge
  EXPECT_EQ(rig.sample(3 * 32 - 0.01f, 5 * 32), grey(16 * 5 + 2 * 2));     // just left of it
  EXPECT_EQ(rig.sample(255.9f, 255.9f), grey(16 * 7 + 2 * 7));
  // Perspective: the same texel seen through w = 4.
  EXPECT_EQ(rig.sample(3 * 32 + 16, 5 * 32 + 16, 0.25f), grey(16 * 5 + 2 * 3));
}

TEST(TmuSample, ClampAndWrapAddressing) {
  TmuRig clamp = grid_rig(GR_TEXTURECLAMP_CLAMP, GR_TEXTUREFILTER_POINT_SAMPLED);
  EXPECT_EQ(clamp.sample(-40, 16), grey(0));
  EXPECT_EQ(clamp.sample(300, 1000), grey(16 * 7 + 2 * 7));
  TmuRig wrap = grid_rig(GR_TEXTURECLAMP_WRAP, GR_TEXTUREFILTER_POINT_SAMPLED);
  EXPECT_EQ(wrap.sample(256 + 32 + 16, 16), grey(2));
  EXPECT_EQ(wrap.sample(-16, -16), grey(16 * 7 + 2 * 7));
  EXPECT_EQ(wrap.sample(-256 * 3 + 48, 512 + 80), grey(16 * 2 + 2 * 1));
  // Mixed: wrap on s only.
  tmu_TexClampMode(wrap.st[0], GR_TEXTURECLAMP_WRAP, GR_TEXTURECLAMP_CLAMP);
  EXPECT_EQ(wrap.sample(-16, -16), grey(2 * 7));
}

TEST(TmuSample, BilinearWeightsAtCentresEdgesAndBorders) {
  TmuRig rig = grid_rig(GR_TEXTURECLAMP_CLAMP, GR_TEXTUREFILTER_BILINEAR);
  // At a texel centre the texel itself.
  EXPECT_EQ(rig.sample(2 * 32 + 16, 4 * 32 + 16), grey(16 * 4 + 2 * 2));
  // Halfway between two texels across: (68 + 70) / 2.
  EXPECT_EQ(rig.sample(3 * 32, 4 * 32 + 16), grey(69));
  // A quarter of the way down from row 4 to row 5 at a centre column: 68 + 16 / 4.
  EXPECT_EQ(rig.sample(2 * 32 + 16, 4 * 32 + 24), grey(72));
  // At a corner of four texels: the mean of 68, 70, 84, 86.
  EXPECT_EQ(rig.sample(3 * 32, 5 * 32), grey(77));
  // Beyond the border, clamping repeats the edge texels.
  EXPECT_EQ(rig.sample(0, 16), grey(0));
  EXPECT_EQ(rig.sample(-100, -100), grey(0));
  // Weights are 8-bit: (a (256 - f) + b f) >> 8 per step; one 1/256 texel step moves 0->2 by 0.
  EXPECT_EQ(rig.sample(16 + 32.0f / 256.0f, 16), grey(0));
  EXPECT_EQ(rig.sample(16 + 32.0f * 128.0f / 256.0f, 16), grey(1));
  // With wrap the left border blends the last column with the first: (14 + 0) / 2.
  TmuRig wrap = grid_rig(GR_TEXTURECLAMP_WRAP, GR_TEXTUREFILTER_BILINEAR);
  EXPECT_EQ(wrap.sample(0, 16), grey(7));
}

TEST(TmuSample, BilinearKeepsConstantTexturesExactInEveryChannel) {
  TmuRig rig;
  rig.numTmu = 1;
  std::vector<uint16_t> tex(16 * 16, 0x9C3F);  // ARGB4444
  ASSERT_TRUE(rig.load(0, 0, 3, GR_LOD_16, GR_LOD_16, GR_ASPECT_1x1, GR_TEXFMT_ARGB_4444, tex.data()));
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexFilterMode(rig.st[0], GR_TEXTUREFILTER_BILINEAR, GR_TEXTUREFILTER_BILINEAR);
  tmu_TexClampMode(rig.st[0], GR_TEXTURECLAMP_WRAP, GR_TEXTURECLAMP_WRAP);
  for (float s : {0.0f, 3.3f, 77.7f, 255.9f})
    EXPECT_EQ(rig.sample(s, 300.0f - s), 0x99CC33FFu) << s;
}

namespace {

// A full 256 chain of INTENSITY_8 where level l is the constant 20 l + 5, bound on TMU `i` with
// the given mask, mipmapped (nearest), bilinear.
void load_level_chain(TmuRig &rig, int i, uint32_t mask, uint32_t address) {
  std::vector<uint8_t> data(chain_bytes(0, 8, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8));
  size_t at = 0;
  for (int l = 0; l <= 8; ++l) {
    size_t n = size_t(256 >> l) * size_t(256 >> l);
    std::fill(data.begin() + long(at), data.begin() + long(at + n), uint8_t(20 * l + 5));
    at += n;
  }
  ASSERT_TRUE(rig.load(i, address, mask, GR_LOD_256, GR_LOD_1, GR_ASPECT_1x1,
                       GR_TEXFMT_INTENSITY_8, data.data()));
  tmu_TexMipMapMode(rig.st[i], GR_MIPMAP_NEAREST, FXFALSE);
  tmu_TexFilterMode(rig.st[i], GR_TEXTUREFILTER_BILINEAR, GR_TEXTUREFILTER_BILINEAR);
  tmu_TexClampMode(rig.st[i], GR_TEXTURECLAMP_WRAP, GR_TEXTURECLAMP_WRAP);
}

int level_of(uint32_t argb) { return int((argb & 0xFF) - 5) / 20; }

}  // namespace

// A plane receding in perspective: w grows along the row, the texel footprint with it. The level
// is floor(log2(w x gradient)) wherever that is not within the 8-bit LOD precision of a step.
TEST(TmuSample, LodFollowsTheTexelFootprintOfAPlaneInPerspective) {
  TmuRig rig;
  rig.numTmu = 1;
  load_level_chain(rig, 0, 3, 0);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  const float g = 0.75f;  // s/w change per pixel
  rig.gradient(0, g);
  int checked = 0;
  for (int x = 0; x < 400; ++x) {
    float w = 1.0f + 0.5f * float(x);
    float lambda = std::log2(w * g);
    if (std::fabs(lambda - std::round(lambda)) < 0.02f) continue;
    int want = std::clamp(int(std::floor(lambda)), 0, 8);
    ASSERT_EQ(level_of(rig.sample(10.0f, 20.0f, 1.0f / w, x, 0)), want) << "w " << w;
    ++checked;
  }
  EXPECT_GT(checked, 350);
  // Exact powers of two select their level exactly; magnified maps clamp to the largest level,
  // a mipmap-less texture always uses its largest level.
  rig.gradient(0, 4.0f);
  EXPECT_EQ(level_of(rig.sample(10, 20, 1.0f)), 2);
  EXPECT_EQ(level_of(rig.sample(10, 20, 0.5f)), 3);
  EXPECT_EQ(level_of(rig.sample(10, 20, 8.0f)), 0);
  EXPECT_EQ(level_of(rig.sample(10, 20, 1.0f / 4096.0f)), 8);
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_DISABLE, FXFALSE);
  EXPECT_EQ(level_of(rig.sample(10, 20, 1.0f / 64.0f)), 0);
}

// The bias register holds (int)((bias + 0.125) / 0.25) quarters, 6 bits.
TEST(TmuSample, LodBiasInQuarterSteps) {
  TmuRig rig;
  rig.numTmu = 1;
  load_level_chain(rig, 0, 3, 0);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  rig.gradient(0, 4.0f);  // LOD 2.0 at w = 1
  struct { float bias; int level; int8_t quarters; } cases[] = {
      {0.0f, 2, 0},    {0.1f, 2, 0},      {-0.2f, 2, 0},  {-0.25f, 2, 0}, {-0.4f, 1, -1},
      {0.9f, 3, 4},    {1.0f, 3, 4},      {-2.0f, 0, -7}, {7.75f, 8, 31}, {-8.0f, 0, -31},
      {9.0f, 0, -28} /* 36 quarters wrap to -28 in 6 bits */};
  for (const auto &c : cases) {
    tmu_TexLodBiasValue(rig.st[0], c.bias);
    EXPECT_EQ(rig.st[0].lodBias, c.quarters) << c.bias;
    EXPECT_EQ(level_of(rig.sample(10, 20)), c.level) << c.bias;
  }
}

// With NEAREST_DITHER and the hint, 1/16 steps of the 4x4 matrix are added to the LOD: at LOD 2.5
// the pixels whose matrix entry is 8 or more move to level 3.
TEST(TmuSample, MipmapDitherNeedsTheHint) {
  const int matrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
  TmuRig rig;
  rig.numTmu = 1;
  load_level_chain(rig, 0, 3, 0);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST_DITHER, FXFALSE);
  rig.gradient(0, 4.0f);
  const float oow = 1.0f / std::sqrt(2.0f);  // LOD 2.5
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) {
      rig.hintMipDither = false;
      EXPECT_EQ(level_of(rig.sample(10, 20, oow, x + 8, y + 4)), 2);
      rig.hintMipDither = true;
      EXPECT_EQ(level_of(rig.sample(10, 20, oow, x + 8, y + 4)), matrix[y][x] >= 8 ? 3 : 2)
          << x << "," << y;
    }
}

TEST(TmuSample, NegativeWSamplesTheOrigin) {
  TmuRig rig = grid_rig(GR_TEXTURECLAMP_WRAP, GR_TEXTUREFILTER_POINT_SAMPLED);
  EXPECT_EQ(rig.sample(100, 100, -1.0f), grey(0));
  EXPECT_EQ(rig.sample(100, 100, std::nanf("")), grey(0));
}

// A state restored from arbitrary bytes must not make the sampler read outside memory.
TEST(TmuSample, InvalidRegistersSampleNothing) {
  TmuRig rig = grid_rig(GR_TEXTURECLAMP_WRAP, GR_TEXTUREFILTER_BILINEAR);
  rig.st[0].baseAddress = 0xFFFFFF00u;
  EXPECT_EQ(rig.sample(100, 100), 0u);
  rig.st[0].baseAddress = 256;
  rig.st[0].format = 7;
  EXPECT_EQ(rig.sample(100, 100), 0u);
  rig.st[0].format = GR_TEXFMT_INTENSITY_8;
  rig.st[0].largeLod = 200;
  EXPECT_EQ(rig.sample(100, 100), 0u);
}
