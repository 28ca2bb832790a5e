// The lean span loops on every vector unit this machine has (and the scalar form), against the
// generic loop: single spans of 1..40 pixels at every alignment of their first pixel, with colours
// that leave 0..255, W inside and outside the narrow range, depth tests that pass and fail, fog and
// blending, dithering; each span must give the generic loop's pixels, aux words and counts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "board_fixture.h"
#include "pixel/raster.h"
#include "pixel/spans_plain.h"

namespace zvb::test {
namespace {

// A random state of one of the lean forms: iterated or constant colour, constant or iterated alpha,
// no depth or a biased Z or W buffer with a random function, optional table fog and blend.
void lean_state(std::mt19937 &g, PixelBoard &pb) {
  auto pick = [&](int n) { return static_cast<int>(g() % static_cast<unsigned>(n)); };
  px_ColorCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE,
                  pick(3) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT, GR_COMBINE_OTHER_NONE, FXFALSE);
  px_AlphaCombine(pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE,
                  pick(2) ? GR_COMBINE_LOCAL_ITERATED : GR_COMBINE_LOCAL_CONSTANT, GR_COMBINE_OTHER_NONE, FXFALSE);
  px_ConstantColorValue(pb, g());
  const int depthModes[] = {GR_DEPTHBUFFER_DISABLE, GR_DEPTHBUFFER_ZBUFFER, GR_DEPTHBUFFER_WBUFFER};
  const int depthMode = depthModes[pick(3)];
  px_DepthBufferMode(pb, depthMode);
  px_DepthBufferFunction(pb, pick(2) ? GR_CMP_LEQUAL : pick(8));
  px_DepthBiasLevel(pb, static_cast<FxI16>(pick(2) ? 0 : pick(4000) - 2000));
  px_DepthMask(pb, depthMode != GR_DEPTHBUFFER_DISABLE && pick(4) != 0);
  px_FogMode(pb, pick(2) ? GR_FOG_WITH_TABLE : GR_FOG_DISABLE);
  px_FogColorValue(pb, g());
  GrFog_t table[GR_FOG_TABLE_SIZE];
  for (auto &e : table) e = static_cast<GrFog_t>(pick(256));
  px_FogTable(pb, table);
  if (pick(2)) px_AlphaBlendFunction(pb, GR_BLEND_SRC_ALPHA, GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE, GR_BLEND_ZERO);
  else px_AlphaBlendFunction(pb, GR_BLEND_ONE, GR_BLEND_ZERO, GR_BLEND_ONE, GR_BLEND_ZERO);
  px_DitherMode(pb, pick(3));
}

// Random span parameters: colours mostly inside 0..255 but sometimes running out of it, Z across the
// clamp limits, and W (16.32) either inside [2^-16, 1) or crossing its ends.
void random_params(std::mt19937 &g, SpanJob &j, int n) {
  auto pick = [&](int64_t lo, int64_t hi) { return lo + static_cast<int64_t>(g() % static_cast<uint64_t>(hi - lo + 1)); };
  const bool wild = g() % 4 == 0;
  for (auto [v, d] : {std::pair{&j.r, &j.dr}, {&j.g, &j.dg}, {&j.b, &j.db}, {&j.a, &j.da}}) {
    *v = static_cast<int32_t>(wild ? pick(-(64 << 12), 320 << 12) : pick(0, (256 << 12) - 1));
    const int64_t room = wild ? (96 << 12) : (256 << 12) / (n + 1);
    *d = static_cast<int32_t>(pick(-room, room) / 2);
  }
  j.z = static_cast<int32_t>(pick(-(1000 << 12), int64_t(0x10400) << 12));
  j.dz = static_cast<int32_t>(pick(-(3000 << 12), 3000 << 12));
  switch (g() % 4) {
    case 0:  // anywhere in the narrow range, with steps that keep it there
      j.w = pick(int64_t(1) << 16, (int64_t(1) << 32) - 1);
      j.dw = pick(-(j.w - (1 << 16)) / n, ((int64_t(1) << 32) - 1 - j.w) / n);
      break;
    case 1:  // crossing 1.0
      j.w = pick((int64_t(1) << 32) - 200000, (int64_t(1) << 32) + 200000);
      j.dw = pick(-20000, 20000);
      break;
    case 2:  // crossing 2^-16, or negative
      j.w = pick(-300000, 300000);
      j.dw = pick(-30000, 30000);
      break;
    default:  // small W, many octaves within the span
      j.w = pick(1 << 16, 1 << 22);
      j.dw = pick(0, int64_t(1) << 26);
      break;
  }
}

TEST(LeanLoops, EveryUnitMatchesTheGenericLoopOnShortAndLongSpans) {
  Levels levels;
  ASSERT_FALSE(levels.all.empty());
  constexpr int kW = 64;
  int spans = 0, failing = 0;
  for (int level : levels.all) {
    plain_force_simd(level);
    for (unsigned seed = 1; seed <= 60; ++seed) {
      std::mt19937 g(seed * 7727u + 13u);
      TestBoard tb(kW, 4);
      lean_state(g, tb.pb);
      const PixelDecoded &d = px_decode(tb.pb);
      const uint32_t key = tb.pb.derived.key;
      for (int n = 1; n <= 40; ++n)
        for (int x0 = 0; x0 < 18; ++x0) {
          std::vector<uint16_t> colour[2], aux[2];
          colour[0].resize(kW);
          aux[0].resize(kW);
          for (int x = 0; x < kW; ++x) {
            colour[0][static_cast<size_t>(x)] = static_cast<uint16_t>(g());
            // Stored depths near the ones the span computes half the time, so equal compares happen.
            aux[0][static_cast<size_t>(x)] = static_cast<uint16_t>(g() % 2 ? g() : 0xFFFF - g() % 64);
          }
          colour[1] = colour[0];
          aux[1] = aux[0];
          SpanJob j{};
          j.d = &d;
          j.fogTable = tb.pb.fogTable;
          j.y = static_cast<int>(g() % 4);
          j.x0 = x0;
          j.x1 = x0 + n;
          random_params(g, j, n);
          SpanJob k = j;
          j.crow = colour[0].data();
          j.arow = aux[0].data();
          k.crow = colour[1].data();
          k.arow = aux[1].data();
          const PlainFn fn = plain_function(j, d, key);
          ASSERT_NE(fn, nullptr) << "key " << key;
          SpanCounts lean{}, generic{};
          fn(j, d, DitherRow(d.ditherMode, j.y), lean);
          span_function(KEY_GENERIC)(k, generic);
          ++spans;
          const bool same = colour[0] == colour[1] && aux[0] == aux[1] && lean.in == generic.in &&
                            lean.zfail == generic.zfail && lean.out == generic.out;
          failing += lean.zfail != 0;
          ASSERT_TRUE(same) << "level " << level << " seed " << seed << " key " << key << " x0 " << x0 << " n " << n
                            << " w " << j.w << " dw " << j.dw;
        }
    }
  }
  EXPECT_GT(failing, spans / 10) << "the depth test should reject pixels in many spans";
  EXPECT_LT(failing, spans * 9 / 10);
}

// The farthest W values: oow at 2^-16 and just above gives a W float of 65536, which the pipeline
// saturates to 0xFFFF before the bias is added. Every depth function, biases of both signs, with and
// without fog, against stored depths at and near the top, on every unit.
TEST(LeanLoops, FarthestWSaturatesBeforeTheBiasOnEveryUnit) {
  Levels levels;
  constexpr int kW = 48;
  for (int level : levels.all) {
    plain_force_simd(level);
    for (int function = 0; function < 8; ++function)
      for (int bias : {0, -1, -2, -700, 3})
        for (bool fog : {false, true}) {
          TestBoard tb(kW, 1);
          px_ColorCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                          GR_COMBINE_OTHER_NONE, FXFALSE);
          px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
          px_DepthBufferFunction(tb.pb, function);
          px_DepthBiasLevel(tb.pb, static_cast<FxI16>(bias));
          px_DepthMask(tb.pb, FXTRUE);
          px_FogMode(tb.pb, fog ? GR_FOG_WITH_TABLE : GR_FOG_DISABLE);
          px_FogColorValue(tb.pb, 0x00406080);
          GrFog_t table[GR_FOG_TABLE_SIZE];
          for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i) table[i] = static_cast<GrFog_t>(i * 4 + 1);
          px_FogTable(tb.pb, table);
          const PixelDecoded &d = px_decode(tb.pb);
          const uint32_t key = tb.pb.derived.key;
          for (int64_t start : {0, 1, 2})
            for (int64_t step : {0, 1, 3})
              for (int n : {1, 5, 16, 23}) {
                std::vector<uint16_t> colour[2], aux[2];
                colour[0].assign(kW, 0x1234);
                aux[0].resize(kW);
                for (int x = 0; x < kW; ++x) aux[0][static_cast<size_t>(x)] = static_cast<uint16_t>(0xFFFF - x % 3);
                colour[1] = colour[0];
                aux[1] = aux[0];
                SpanJob j{};
                j.d = &d;
                j.fogTable = tb.pb.fogTable;
                j.x0 = 3;
                j.x1 = 3 + n;
                j.r = 100 << 12;
                j.g = 50 << 12;
                j.b = 200 << 12;
                j.w = (int64_t(1) << 16) + start;
                j.dw = step;
                SpanJob k = j;
                j.crow = colour[0].data();
                j.arow = aux[0].data();
                k.crow = colour[1].data();
                k.arow = aux[1].data();
                const PlainFn fn = plain_function(j, d, key);
                ASSERT_NE(fn, nullptr);
                SpanCounts lean{}, generic{};
                fn(j, d, DitherRow(d.ditherMode, j.y), lean);
                span_function(KEY_GENERIC)(k, generic);
                ASSERT_TRUE(colour[0] == colour[1] && aux[0] == aux[1] && lean.zfail == generic.zfail &&
                            lean.out == generic.out)
                    << "level " << level << " function " << function << " bias " << bias << " fog " << fog
                    << " w " << j.w << " dw " << step << " n " << n;
              }
        }
  }
}

// A forced level stays at or below what the machine has, and -1 gives back the widest.
TEST(LeanLoops, ForcingALevelNeverWidensIt) {
  const int widest = plain_force_simd(-1);
  EXPECT_EQ(plain_simd(), widest);
  EXPECT_EQ(plain_force_simd(PLAIN_SCALAR), PLAIN_SCALAR);
  EXPECT_EQ(plain_simd(), PLAIN_SCALAR);
  EXPECT_LE(plain_force_simd(PLAIN_AVX2), widest);
  EXPECT_EQ(plain_force_simd(-1), widest);
}

#if defined(__x86_64__)
// Every x86-64 build carries the AVX2 form, the Windows one as the Linux one: a machine that has
// AVX2 runs it unless ZVGL_BOARD_SIMD narrows the unit.
TEST(LeanLoops, AnAvx2MachineRunsTheAvx2Form) {
  if (!__builtin_cpu_supports("avx2") || std::getenv("ZVGL_BOARD_SIMD"))
    GTEST_SKIP() << "no AVX2 here, or the unit narrowed";
  EXPECT_EQ(plain_force_simd(-1), PLAIN_AVX2);
}
#endif

}  // namespace
}  // namespace zvb::test
