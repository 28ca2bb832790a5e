// The fast sampling paths held to the generic span routine: the specialised four-pixel routines
// (point, bilinear, trilinear over two TMUs), spans of every length and position, coordinates at
// the edges and beyond, and the per-triangle set-up reused between triangles.
#include "tmu_rig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

using namespace zvb;
using zvb_test::TmuRig;
using zvb_test::chain_bytes;

namespace {

// A random chain of `format` downloaded to both TMUs (TMU0 holding `mask0`, TMU1 `mask1`) with
// random tables.
void load_random(TmuRig &rig, std::mt19937 &rng, int format, int large, int small, int aspect,
                 uint32_t mask0, uint32_t mask1) {
  std::vector<uint8_t> data(chain_bytes(large, small, aspect, format));
  for (uint8_t &b : data) b = uint8_t(rng());
  uint32_t pal[256];
  for (uint32_t &p : pal) p = rng();
  GuNccTable ncc{};
  for (uint32_t &w : ncc.packed_data) w = rng() & 0x07FFFFFF;
  const uint32_t masks[2] = {mask0, mask1};
  for (int i = 0; i < 2; ++i) {
    tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_PALETTE, pal);
    tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_NCC0, &ncc);
    tmu_TexDownloadTable(rig.mem[i], GR_TEXTABLE_NCC1, &ncc);
    ASSERT_TRUE(rig.load(i, uint32_t(rng() % 64) * 8, masks[i], large, small, aspect, format, data.data()));
  }
}

// The span routine chosen for the rig's state against the generic one over a span of n pixels.
void expect_span_matches(const TexSetup &ts, const TmuCoords *c, int x, int y, int n, const char *what, int round) {
  std::vector<uint32_t> fast(size_t(n) + 1, 0xDEADBEEFu), slow(size_t(n) + 1, 0xDEADBEEFu);
  tex_span(ts, c, x, y, n, fast.data());
  tex_span_generic(ts, c, x, y, n, slow.data());
  for (int i = 0; i <= n; ++i)
    ASSERT_EQ(fast[size_t(i)], slow[size_t(i)]) << what << " round " << round << " pixel " << i << " of " << n;
}

const int kFormats[] = {GR_TEXFMT_RGB_332,   GR_TEXFMT_YIQ_422,   GR_TEXFMT_ALPHA_8,  GR_TEXFMT_P_8,
                        GR_TEXFMT_ARGB_8332, GR_TEXFMT_AYIQ_8422, GR_TEXFMT_RGB_565,  GR_TEXFMT_ARGB_1555,
                        GR_TEXFMT_ARGB_4444, GR_TEXFMT_AP_88,     GR_TEXFMT_INTENSITY_8};

// Each form of the specialised routines the machine runs, forced in turn (the narrower form is
// also what a machine without the wider one gets).
class TmuFastForms : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    if (tex_force_simd(GetParam()) != GetParam()) GTEST_SKIP() << "form not available here";
  }
  void TearDown() override { tex_force_simd(-1); }
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Forms, TmuFastForms, ::testing::Values(int(TEX_SIMD_BASE), int(TEX_SIMD_AVX2)),
                         [](const ::testing::TestParamInfo<int> &info) {
                           return std::string(info.param == TEX_SIMD_AVX2 ? "Avx2" : "Base");
                         });

// Trilinear filtering over two TMUs (even levels on one, odd on the other, or all on both), with
// both blend directions, the trilinear flag on and off, dither and bias: the blend routine, the
// general combine and the generic routine must agree, and the blend routine must be the one chosen.
TEST_P(TmuFastForms, TrilinearOverTwoTmusMatchesTheGenericRoutine) {
  std::mt19937 rng(77);
  auto pick = [&](int n) { return int(rng() % uint32_t(n)); };
  auto real = [&](float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(rng); };
  int blended = 0;
  for (int round = 0; round < 400; ++round) {
    TmuRig rig;
    rig.hintMipDither = pick(2) != 0;
    const int split = pick(3);
    const uint32_t mask0 = split == 0 ? 3u : (split == 1 ? 1u : 2u), mask1 = split == 0 ? 3u : 3u - mask0;
    // At least two levels, so that each TMU holds one when the chain is split.
    const int large = pick(3), small = large + 1 + pick(8 - large);
    load_random(rig, rng, kFormats[pick(11)], large, small, pick(7), mask0, mask1);
    const int filter = pick(2), wrap = pick(2), mode = 1 + pick(2);
    const bool flag = pick(4) != 0;
    const float bias = real(-3.0f, 3.0f);
    for (int i = 0; i < 2; ++i) {
      tmu_TexFilterMode(rig.st[i], filter, filter);
      tmu_TexClampMode(rig.st[i], wrap, wrap);
      tmu_TexMipMapMode(rig.st[i], mode, flag);
      tmu_TexLodBiasValue(rig.st[i], bias);
      rig.grad[i] = {real(-6, 6), real(-6, 6), real(-6, 6), real(-6, 6)};
    }
    rig.grad[1] = rig.grad[0];
    tmu_TexCombineFunction(rig.st[1], GR_TEXTURECOMBINE_DECAL);
    const int fn = pick(5);
    if (fn < 2) {
      tmu_TexCombineFunction(rig.st[0], fn ? GR_TEXTURECOMBINE_TRILINEAR_ODD : GR_TEXTURECOMBINE_TRILINEAR_EVEN);
    } else {
      // Near misses of the blend: another factor, an inversion, or alpha unlike colour.
      const int factor = fn == 2 ? GR_COMBINE_FACTOR_DETAIL_FACTOR : GR_COMBINE_FACTOR_LOD_FRACTION;
      tmu_TexCombine(rig.st[0], GR_COMBINE_FUNCTION_BLEND, factor, GR_COMBINE_FUNCTION_BLEND,
                     fn == 4 ? GR_COMBINE_FACTOR_ONE_MINUS_LOD_FRACTION : factor, fn == 3, FXFALSE);
    }
    TexSetup ts;
    TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
    tex_setup(ts, rig.st, mem, 2, rig.grad, rig.hintMipDither);
    ASSERT_EQ(ts.numActive, 2);
    if (fn < 2) {
      ASSERT_NE(ts.span, &tex_span_generic) << round;
      ++blended;
    }
    TmuCoords c[2];
    const float oow = real(0.05f, 2.0f);
    c[0] = {real(-600, 600) * oow, real(-600, 600) * oow, oow, real(-6, 6) * oow, real(-6, 6) * oow,
            real(-0.02f, 0.02f)};
    c[1] = c[0];
    expect_span_matches(ts, c, pick(640), pick(480), 1 + pick(140), "trilinear", round);
  }
  EXPECT_GT(blended, 100);
}

// Every length from 1 to 70 at every alignment of the four-pixel groups and of the dither
// pattern, one TMU and two, for each filter and clamp mode.
TEST_P(TmuFastForms, SpansOfEveryLengthAndPosition) {
  std::mt19937 rng(5);
  int round = 0;
  for (int format : {GR_TEXFMT_P_8, GR_TEXFMT_ARGB_1555})
    for (int filter = 0; filter < 2; ++filter)
      for (int wrap = 0; wrap < 2; ++wrap)
        for (int tmus = 1; tmus <= 2; ++tmus) {
          TmuRig rig;
          rig.numTmu = tmus;
          rig.hintMipDither = true;
          load_random(rig, rng, format, GR_LOD_64, GR_LOD_1, GR_ASPECT_2x1, 3, 3);
          for (int i = 0; i < 2; ++i) {
            tmu_TexFilterMode(rig.st[i], filter, filter);
            tmu_TexClampMode(rig.st[i], wrap, wrap);
            tmu_TexMipMapMode(rig.st[i], GR_MIPMAP_NEAREST_DITHER, FXTRUE);
            tmu_TexCombineFunction(rig.st[i], GR_TEXTURECOMBINE_DECAL);
            rig.grad[i] = {1.5f, 0.25f, -0.5f, 2.0f};
          }
          if (tmus == 2) tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_TRILINEAR_EVEN);
          TexSetup ts;
          TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
          tex_setup(ts, rig.st, mem, tmus, rig.grad, true);
          ASSERT_NE(ts.span, &tex_span_generic);
          TmuCoords c[2];
          c[0] = {-20.0f, 31.0f, 0.9f, 1.7f, -0.6f, -0.004f};
          c[1] = {12.0f, -7.0f, 0.8f, -2.1f, 0.9f, 0.003f};
          for (int n = 1; n <= 70; ++n)
            for (int x = 0; x < 4; ++x) expect_span_matches(ts, c, x + 8 * n, n & 7, n, "length", round++);
        }
}

// Coordinates at and past the edges of the texture, negative, huge, infinite and NaN, and 1/w at
// and below zero, for each filter, clamp mode and texel size.
TEST_P(TmuFastForms, CoordinatesAtTheEdgesAndBeyond) {
  std::mt19937 rng(31);
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  const float odd[] = {0.0f, -0.0f, 0.5f, 127.5f, 128.0f, 255.99f, 256.0f, -1.0f, -0.001f, 1.0e9f,
                       -1.0e9f, 3.0e38f, -3.0e38f, inf, -inf, nan, 8388608.0f, -8388609.0f};
  constexpr int kOdd = sizeof odd / sizeof odd[0];
  int round = 0;
  for (int format : {GR_TEXFMT_ALPHA_INTENSITY_44, GR_TEXFMT_ARGB_4444})
    for (int filter = 0; filter < 2; ++filter)
      for (int wrap = 0; wrap < 2; ++wrap)
        for (int mode = 0; mode < 3; ++mode) {
          TmuRig rig;
          rig.numTmu = 1;
          load_random(rig, rng, format, GR_LOD_32, GR_LOD_1, GR_ASPECT_1x4, 3, 3);
          tmu_TexFilterMode(rig.st[0], filter, filter);
          tmu_TexClampMode(rig.st[0], wrap, wrap);
          tmu_TexMipMapMode(rig.st[0], mode, FXFALSE);
          tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
          rig.grad[0] = {3.0f, 0.0f, 0.0f, 3.0f};
          TexSetup ts;
          TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
          tex_setup(ts, rig.st, mem, 1, rig.grad, false);
          ASSERT_NE(ts.span, &tex_span_generic);
          for (int k = 0; k < 300; ++k) {
            TmuCoords c[2] = {};
            c[0] = {odd[rng() % kOdd], odd[rng() % kOdd], (rng() & 1) ? 1.0f : odd[rng() % kOdd],
                    (rng() & 1) ? 0.0f : odd[rng() % kOdd], (rng() & 1) ? 0.0f : odd[rng() % kOdd],
                    (rng() & 1) ? -0.25f : 0.0f};
            expect_span_matches(ts, c, int(rng() % 600), int(rng() % 400), 1 + int(rng() % 9), "edge", round++);
          }
        }
}

// The set-up reused between triangles must follow every change of the registers, the hint and
// the tables: each set-up after a change gives what a first set-up of the new state gives.
TEST(TmuFast, SetUpFollowsEveryChange) {
  std::mt19937 rng(8);
  TmuRig rig;
  rig.numTmu = 1;
  load_random(rig, rng, GR_TEXFMT_P_8, GR_LOD_16, GR_LOD_1, GR_ASPECT_1x1, 3, 3);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST_DITHER, FXFALSE);
  rig.gradient(0, 1.0f);
  auto fresh = [&](float s, float t, float oow, int x) {
    TmuRig copy;
    copy.numTmu = 1;
    copy.st[0] = rig.st[0];
    copy.grad[0] = rig.grad[0];
    copy.hintMipDither = rig.hintMipDither;
    copy.mem[0].bytes = rig.mem[0].bytes;
    std::memcpy(copy.mem[0].palette, rig.mem[0].palette, sizeof copy.mem[0].palette);
    std::memcpy(copy.mem[0].ncc, rig.mem[0].ncc, sizeof copy.mem[0].ncc);
    return copy.sample(s, t, oow, x, 1);
  };
  for (int step = 0; step < 200; ++step) {
    switch (rng() % 6) {
      case 0: tmu_TexFilterMode(rig.st[0], rng() & 1, rng() & 1); break;
      case 1: tmu_TexNCCTable(rig.st[0], rng() & 1); break;
      case 2: rig.hintMipDither = !rig.hintMipDither; break;
      case 3: {
        uint32_t entries[256];
        for (uint32_t &e : entries) e = rng();
        const int k = int(rng() % 16);
        tmu_TexDownloadTablePartial(rig.mem[0], GR_TEXTABLE_PALETTE, entries, k, k);
        break;
      }
      case 4: {
        GuNccTable ncc{};
        for (uint32_t &w : ncc.packed_data) w = rng() & 0x07FFFFFF;
        tmu_TexDownloadTable(rig.mem[0], GrTexTable_t(rng() & 1), &ncc);
        break;
      }
      default: {
        static const int formats[] = {GR_TEXFMT_P_8, GR_TEXFMT_YIQ_422, GR_TEXFMT_AP_88, GR_TEXFMT_RGB_565};
        GrTexInfo info{GR_LOD_1, GR_LOD_16, GR_ASPECT_1x1, formats[rng() % 4], nullptr};
        tmu_TexSource(rig.st[0], rig.mem[0], 0, 3, &info);
        rig.gradient(0, float(rng() % 8));
        break;
      }
    }
    const float s = float(rng() % 512) - 128.0f, t = float(rng() % 512) - 128.0f;
    const int x = int(rng() % 8);
    ASSERT_EQ(rig.sample(s, t, 1.0f, x, 1), fresh(s, t, 1.0f, x)) << "step " << step;
  }
}

// The decoded copy the fast routines read must follow every change of the bytes and the tables:
// whole chains, single levels and some rows of a level written over a bound texture, palette
// entries and NCC tables replaced, the same bytes bound again as another format or NCC table, and
// textures at overlapping addresses bound in turn. After each change the fast routine must still
// give what the generic routine gives from the bytes.
TEST_P(TmuFastForms, DecodedTexelsFollowDownloadsAndTables) {
  std::mt19937 rng(404);
  auto pick = [&](int n) { return int(rng() % uint32_t(n)); };
  static const int formats[] = {GR_TEXFMT_P_8, GR_TEXFMT_AP_88, GR_TEXFMT_YIQ_422, GR_TEXFMT_AYIQ_8422,
                                GR_TEXFMT_RGB_565, GR_TEXFMT_ARGB_8332, GR_TEXFMT_INTENSITY_8};
  TmuRig rig;
  rig.numTmu = 1;
  const uint32_t addresses[] = {0, 64, 1024};
  uint32_t address = 0;
  int format = GR_TEXFMT_P_8;
  const int large = GR_LOD_32, small = GR_LOD_1, aspect = GR_ASPECT_1x1;
  auto bind = [&] {
    GrTexInfo info{small, large, aspect, format, nullptr};
    ASSERT_TRUE(tmu_TexSource(rig.st[0], rig.mem[0], address, 3, &info));
  };
  auto random_bytes = [&](size_t n) {
    std::vector<uint8_t> d(n);
    for (uint8_t &b : d) b = uint8_t(rng());
    return d;
  };
  load_random(rig, rng, format, large, small, aspect, 3, 3);
  address = rig.st[0].baseAddress;
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST, FXFALSE);
  int changes[8] = {};
  for (int step = 0; step < 400; ++step) {
    const int kind = pick(8);
    ++changes[kind];
    switch (kind) {
      case 0: {  // a whole chain over the bound texture
        std::vector<uint8_t> d = random_bytes(chain_bytes(large, small, aspect, format));
        GrTexInfo info{small, large, aspect, format, d.data()};
        ASSERT_TRUE(tmu_TexDownloadMipMap(rig.mem[0], address, 3, &info));
        break;
      }
      case 1: {  // one level
        const int lod = large + pick(small - large + 1);
        int w = 0, h = 0;
        tmu_level_size(lod, aspect, &w, &h);
        std::vector<uint8_t> d = random_bytes(size_t(w * h * tmu_format_bytes(format)));
        ASSERT_TRUE(tmu_TexDownloadMipMapLevel(rig.mem[0], address, lod, large, aspect, format, 3, d.data()));
        break;
      }
      case 2: {  // some rows of the largest level
        const int first = pick(32), last = first + pick(32 - first);
        std::vector<uint8_t> d = random_bytes(size_t((last - first + 1) * 32 * tmu_format_bytes(format)));
        ASSERT_TRUE(tmu_TexDownloadMipMapLevelPartial(rig.mem[0], address, large, large, aspect, format, 3,
                                                      d.data(), first, last));
        break;
      }
      case 3: {  // a few palette entries
        uint32_t entries[256];
        for (uint32_t &e : entries) e = rng();
        const int first = pick(256), last = first + pick(256 - first);
        ASSERT_TRUE(tmu_TexDownloadTablePartial(rig.mem[0], GR_TEXTABLE_PALETTE, entries, first, last));
        break;
      }
      case 4: {  // an NCC table
        GuNccTable ncc{};
        for (uint32_t &w : ncc.packed_data) w = rng() & 0x07FFFFFF;
        ASSERT_TRUE(tmu_TexDownloadTable(rig.mem[0], GrTexTable_t(pick(2)), &ncc));
        break;
      }
      case 5: tmu_TexNCCTable(rig.st[0], GrNCCTable_t(pick(2))); break;
      case 6: format = formats[pick(7)]; bind(); break;          // the same bytes as another format
      default: address = addresses[pick(3)]; bind(); break;      // another, overlapping texture
    }
    tmu_TexFilterMode(rig.st[0], pick(2), pick(2));
    rig.gradient(0, float(pick(4)));
    TexSetup ts;
    TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
    tex_setup(ts, rig.st, mem, 1, rig.grad, false);
    if (rig.st[0].minFilter == rig.st[0].magFilter) {
      ASSERT_NE(ts.span, &tex_span_generic) << step;
    }
    TmuCoords c[2] = {};
    c[0] = {float(pick(512)) - 128.0f, float(pick(512)) - 128.0f, 1.0f, float(pick(9)) - 4.0f,
            float(pick(9)) - 4.0f, 0.0f};
    expect_span_matches(ts, c, pick(64), pick(64), 1 + pick(40), "decoded", step);
  }
  for (int k = 0; k < 8; ++k) EXPECT_GT(changes[k], 20) << k;
}

// 1/w falling steeply along the span, so that the LOD crosses levels every few pixels and the
// pixels of one group read different levels: every filter, clamp mode and texel size, one TMU and
// two, with and without the mipmap dither.
TEST_P(TmuFastForms, LevelChangesInsideAGroup) {
  std::mt19937 rng(913);
  int round = 0;
  for (int format : {GR_TEXFMT_RGB_332, GR_TEXFMT_RGB_565})
    for (int filter = 0; filter < 2; ++filter)
      for (int wrap = 0; wrap < 2; ++wrap)
        for (int tmus = 1; tmus <= 2; ++tmus)
          for (int dither = 0; dither < 2; ++dither) {
            TmuRig rig;
            rig.numTmu = tmus;
            rig.hintMipDither = true;
            load_random(rig, rng, format, GR_LOD_256, GR_LOD_1, GR_ASPECT_1x2, tmus == 2 ? 1u : 3u, 2u);
            for (int i = 0; i < 2; ++i) {
              tmu_TexFilterMode(rig.st[i], filter, filter);
              tmu_TexClampMode(rig.st[i], wrap, wrap);
              tmu_TexMipMapMode(rig.st[i], dither ? GR_MIPMAP_NEAREST_DITHER : GR_MIPMAP_NEAREST, FXTRUE);
              tmu_TexCombineFunction(rig.st[i], GR_TEXTURECOMBINE_DECAL);
              rig.grad[i] = {2.0f, 0.5f, -0.5f, 2.0f};
            }
            if (tmus == 2) tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_TRILINEAR_ODD);
            TexSetup ts;
            TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
            tex_setup(ts, rig.st, mem, tmus, rig.grad, true);
            ASSERT_NE(ts.span, &tex_span_generic);
            for (int k = 0; k < 20; ++k) {
              const float oow = 4.0f - float(k) * 0.1f, doow = -oow / float(8 + k);
              TmuCoords c[2];
              c[0] = {float(int(rng() % 300)) * oow, float(int(rng() % 300)) * oow, oow, 3.0f * oow, -1.0f * oow, doow};
              c[1] = {c[0].sow + 5.0f, c[0].tow - 7.0f, oow, c[0].dsow, c[0].dtow, doow};
              expect_span_matches(ts, c, int(rng() % 600), int(rng() % 400), 1 + int(rng() % 40), "levels", round++);
            }
          }
}

// The form is chosen when a triangle is set up: forcing the narrower one gives other routines for
// the same state (where the machine has the wider one), never for a state that needs the generic
// routine, and -1 goes back to the widest.
TEST(TmuFast, FormsAreChosenAtSetUp) {
  std::mt19937 rng(12);
  TmuRig rig;
  rig.numTmu = 1;
  load_random(rig, rng, GR_TEXFMT_RGB_565, GR_LOD_64, GR_LOD_1, GR_ASPECT_1x1, 3, 3);
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  rig.gradient(0, 1.0f);
  TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
  const int widest = tex_force_simd(-1);
  ASSERT_TRUE(widest == TEX_SIMD_BASE || widest == TEX_SIMD_AVX2);
  EXPECT_EQ(tex_simd(), widest);
  TexSetup wide, base, generic;
  tex_setup(wide, rig.st, mem, 1, rig.grad, false);
  EXPECT_EQ(tex_force_simd(TEX_SIMD_BASE), TEX_SIMD_BASE);
  EXPECT_EQ(tex_simd(), TEX_SIMD_BASE);
  tex_setup(base, rig.st, mem, 1, rig.grad, false);
  EXPECT_NE(base.span, &tex_span_generic);
  if (widest == TEX_SIMD_AVX2) EXPECT_NE(base.span, wide.span);
  else EXPECT_EQ(base.span, wide.span);
  // Clamp on s, wrap on t: the generic routine whatever the form.
  tmu_TexClampMode(rig.st[0], GR_TEXTURECLAMP_CLAMP, GR_TEXTURECLAMP_WRAP);
  tex_force_simd(-1);
  tex_setup(generic, rig.st, mem, 1, rig.grad, false);
  EXPECT_EQ(generic.span, &tex_span_generic);
  EXPECT_EQ(tex_simd(), widest);
}

// Textures of 8-bit and 16-bit texels side by side in memory, bound in turn: each keeps its
// decoded copy while the others are decoded and used (16-bit copies are packed, and must stay
// inside their own range), so that every bind after the first reads a copy made earlier.
TEST_P(TmuFastForms, NeighbouringTexturesKeepTheirDecodedCopies) {
  std::mt19937 rng(2024);
  TmuRig rig;
  rig.numTmu = 1;
  const int formats[] = {GR_TEXFMT_RGB_565, GR_TEXFMT_P_8, GR_TEXFMT_ARGB_4444, GR_TEXFMT_ALPHA_INTENSITY_44};
  GrTexInfo info[4];
  uint32_t address[4];
  std::vector<uint8_t> data[4];
  uint32_t at = 0;
  uint32_t pal[256];
  for (uint32_t &p : pal) p = rng();
  tmu_TexDownloadTable(rig.mem[0], GR_TEXTABLE_PALETTE, pal);
  for (int k = 0; k < 4; ++k) {
    data[k].resize(chain_bytes(GR_LOD_32, GR_LOD_1, GR_ASPECT_2x1, formats[k]));
    for (uint8_t &b : data[k]) b = uint8_t(rng());
    info[k] = GrTexInfo{GR_LOD_1, GR_LOD_32, GR_ASPECT_2x1, formats[k], data[k].data()};
    address[k] = at;
    ASSERT_TRUE(tmu_TexDownloadMipMap(rig.mem[0], at, GR_MIPMAPLEVELMASK_BOTH, &info[k]));
    at += (tmu_TexTextureMemRequired(GR_MIPMAPLEVELMASK_BOTH, &info[k]) + 7u) & ~7u;
  }
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST, FXFALSE);
  int round = 0;
  for (int step = 0; step < 60; ++step) {
    const int k = step < 4 ? step : int(rng() % 4);
    ASSERT_TRUE(tmu_TexSource(rig.st[0], rig.mem[0], address[k], GR_MIPMAPLEVELMASK_BOTH, &info[k]));
    const int filter = int(rng() % 2);
    tmu_TexFilterMode(rig.st[0], filter, filter);
    tmu_TexClampMode(rig.st[0], int(rng() % 2), int(rng() % 2) == 0 ? GR_TEXTURECLAMP_CLAMP : GR_TEXTURECLAMP_WRAP);
    rig.gradient(0, float(1 << (rng() % 6)));
    TexSetup ts;
    TmuMemory *mem[2] = {&rig.mem[0], &rig.mem[1]};
    tex_setup(ts, rig.st, mem, 1, rig.grad, false);
    TmuCoords c[2] = {};
    c[0] = {float(int(rng() % 512)) - 128.0f, float(int(rng() % 512)) - 128.0f, 1.0f, 1.75f, 0.5f, 0.0f};
    expect_span_matches(ts, c, 0, 0, 64, "neighbours", round++);
  }
  EXPECT_EQ(rig.mem[0].decoded.size(), 4u);
}

#if defined(__x86_64__)
// Every x86-64 build carries the AVX2 routines, the Windows one as the Linux one: a machine that
// has AVX2 runs them unless ZVGL_BOARD_SIMD narrows the unit.
TEST(TmuFastForms, AnAvx2MachineRunsTheAvx2Routines) {
  if (!__builtin_cpu_supports("avx2") || std::getenv("ZVGL_BOARD_SIMD"))
    GTEST_SKIP() << "no AVX2 here, or the unit narrowed";
  EXPECT_EQ(tex_force_simd(-1), TEX_SIMD_AVX2);
}
#endif
