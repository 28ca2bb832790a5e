// The specialised span routines against the generic one, on random textures, modes and spans.
#include "tmu_rig.h"

#include <gtest/gtest.h>

#include <random>

using namespace zvb;
using zvb_test::TmuRig;
using zvb_test::chain_bytes;

TEST(TmuSpan, SpecialisedRoutinesMatchTheGenericOne) {
  std::mt19937 rng(1234);
  auto pick = [&](int n) { return int(rng() % uint32_t(n)); };
  auto real = [&](float lo, float hi) {
    return std::uniform_real_distribution<float>(lo, hi)(rng);
  };
  const int formats[] = {GR_TEXFMT_INTENSITY_8, GR_TEXFMT_P_8, GR_TEXFMT_RGB_565,
                         GR_TEXFMT_ARGB_4444, GR_TEXFMT_AYIQ_8422};
  int specialised = 0;
  for (int round = 0; round < 300; ++round) {
    TmuRig rig;
    rig.numTmu = 1 + pick(2);
    rig.hintMipDither = pick(2) != 0;
    int format = formats[pick(5)], aspect = pick(7);
    int large = pick(4), small = large + pick(9 - large);
    std::vector<uint8_t> data(chain_bytes(large, small, aspect, format));
    for (uint8_t &b : data) b = uint8_t(rng());
    uint32_t pal[256];
    for (uint32_t &p : pal) p = rng();
    GuNccTable ncc{};
    for (uint32_t &w : ncc.packed_data) w = rng() & 0x07FFFFFF;
    bool same = pick(3) != 0;  // most rounds give both TMUs the same modes
    for (int i = 0; i < 2; ++i) {
      tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_PALETTE, pal);
      tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_NCC0, &ncc);
      uint32_t mask = same ? 3u : uint32_t(1 + pick(3));
      ASSERT_TRUE(rig.load(i, uint32_t(pick(64)) * 8, mask, large, small, aspect, format, data.data()));
      int filter = pick(2), wrap = pick(2);
      tmu_TexFilterMode(rig.st[i], filter, same ? filter : pick(2));
      tmu_TexClampMode(rig.st[i], wrap, same ? wrap : pick(2));
      tmu_TexMipMapMode(rig.st[i], pick(3), pick(2));
      tmu_TexLodBiasValue(rig.st[i], real(-2.0f, 2.0f));
      tmu_TexDetailControl(rig.st[i], pick(16) - 4, uint8_t(pick(8)), real(0.0f, 1.0f));
      rig.grad[i] = {real(-8, 8), real(-8, 8), real(-8, 8), real(-8, 8)};
    }
    if (same) rig.st[1] = rig.st[0];
    tmu_TexCombineFunction(rig.st[1], GR_TEXTURECOMBINE_DECAL);
    if (pick(2))
      tmu_TexCombineFunction(rig.st[0], pick(11));
    else
      tmu_TexCombine(rig.st[0], pick(17), pick(16), pick(17), pick(16), pick(2), pick(2));

    TexSetup ts;
    TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
    tex_setup(ts, rig.st, mem, rig.numTmu, rig.grad, rig.hintMipDither);
    if (ts.span != &tex_span_generic) ++specialised;
    TmuCoords c[2];
    for (auto &ci : c) {
      float oow = real(0.01f, 2.0f);
      ci = {real(-300, 300) * oow, real(-300, 300) * oow, oow,
            real(-4, 4) * oow, real(-4, 4) * oow, real(-0.01f, 0.01f)};
    }
    uint32_t fast[64], slow[64];
    int x = pick(600), y = pick(400);
    tex_span(ts, c, x, y, 64, fast);
    tex_span_generic(ts, c, x, y, 64, slow);
    for (int i = 0; i < 64; ++i)
      ASSERT_EQ(fast[i], slow[i]) << "round " << round << " pixel " << i;
  }
  EXPECT_GT(specialised, 60);
}

// The sampler's bilinear blend (vector form where the target has it) against the integer form,
// through a 2x2 texture of random texels sampled at random fractions.
TEST(TmuSpan, BilinearBlendMatchesTheIntegerForm) {
  std::mt19937 rng(99);
  for (int round = 0; round < 2000; ++round) {
    TmuRig rig;
    rig.numTmu = 1;
    uint16_t tex[4];
    for (uint16_t &t : tex) t = uint16_t(rng());
    ASSERT_TRUE(rig.load(0, 0, 3, GR_LOD_2, GR_LOD_2, GR_ASPECT_1x1, GR_TEXFMT_ARGB_4444, tex));
    tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
    tmu_TexFilterMode(rig.st[0], GR_TEXTUREFILTER_BILINEAR, GR_TEXTUREFILTER_BILINEAR);
    uint32_t fu = rng() & 255, fv = rng() & 255;
    // Texel centres at s = 64 and 192; fraction f of the way from the first to the second.
    float s = 64.0f + 128.0f * float(fu) / 256.0f, t = 64.0f + 128.0f * float(fv) / 256.0f;
    uint32_t c[4];
    for (int i = 0; i < 4; ++i) c[i] = tmu_decode_texel(GR_TEXFMT_ARGB_4444, tex[i], nullptr, nullptr);
    ASSERT_EQ(rig.sample(s, t), tmu_bilerp_reference(c[0], c[1], c[2], c[3], fu, fv)) << round;
  }
}
