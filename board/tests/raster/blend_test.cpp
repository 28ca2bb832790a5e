// Frame-buffer blending (every source and destination factor, destination alpha from the aux buffer,
// the pre-fog colour), the alpha test and the chroma key, with their counters.
#include <gtest/gtest.h>

#include "board_fixture.h"

namespace zvb::test {
namespace {

int expand5(int v) { return (v << 3) | (v >> 2); }
int expand6(int v) { return (v << 2) | (v >> 4); }

// x scaled by factor code `f` with the 8-bit rules: value a -> (x (a + 1)) >> 8,
// "one minus a" -> (x (256 - a)) >> 8, ONE -> x, ZERO -> 0.
int ref_scale(int x, int f, bool isSource, int as, int ad, int other, int prefog) {
  switch (f) {
    case GR_BLEND_ZERO: return 0;
    case GR_BLEND_ONE: return x;
    case GR_BLEND_SRC_ALPHA: return (x * (as + 1)) >> 8;
    case GR_BLEND_ONE_MINUS_SRC_ALPHA: return (x * (256 - as)) >> 8;
    case GR_BLEND_DST_ALPHA: return (x * (ad + 1)) >> 8;
    case GR_BLEND_ONE_MINUS_DST_ALPHA: return (x * (256 - ad)) >> 8;
    case 0x2: return (x * (other + 1)) >> 8;   // the other operand's colour
    case 0x6: return (x * (256 - other)) >> 8;
    case 0xF: {
      if (!isSource) return (x * (prefog + 1)) >> 8;
      const int a = std::min(as, 255 - ad);
      return (x * (a + 1)) >> 8;
    }
    default: return 0;  // reserved
  }
}

TEST(Blend, EveryFactorPairWithDestinationAlpha) {
  const int factors[] = {0x0, 0x1, 0x2, 0x3, 0x4, 0x5, 0x6, 0x7, 0x9, 0xF};
  const int cs[3] = {200, 90, 30}, as = 100, ad = 180;
  const uint16_t dst = rgb565(120, 250, 64);
  const int cd[3] = {expand5(dst >> 11), expand6((dst >> 5) & 63), expand5(dst & 31)};
  for (int sf : factors)
    for (int df : factors) {
      TestBoard tb(4, 4);
      px_ColorMask(tb.pb, FXTRUE, FXTRUE);  // aux buffer holds destination alpha
      px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE, GR_COMBINE_LOCAL_NONE,
                      GR_COMBINE_OTHER_ITERATED, FXFALSE);
      px_AlphaBlendFunction(tb.pb, sf, df, GR_BLEND_ONE, GR_BLEND_ONE);
      tb.fill(dst);
      tb.fillAux(ad);
      GrVertex v = vtx(1, 1, float(cs[0]), float(cs[1]), float(cs[2]), float(as));
      px_DrawPoint(tb.pb, &v);
      int e[3];
      for (int k = 0; k < 3; ++k)
        e[k] = std::min(255, ref_scale(cs[k], sf, true, as, ad, cd[k], 0) + ref_scale(cd[k], df, false, as, ad, cs[k], cs[k]));
      ASSERT_EQ(tb.pixel(1, 1), rgb565(e[0], e[1], e[2])) << "sf " << sf << " df " << df;
      ASSERT_EQ(tb.aux(1, 1), std::min(255, as + ad));  // alpha: ONE, ONE
    }
}

// Without an alpha buffer the destination alpha reads as 255; alpha factors other than ZERO/ONE are
// reduced (source to ONE, destination to ZERO).
TEST(Blend, DestinationAlphaWithoutAlphaBufferAndAlphaFactors) {
  TestBoard tb(4, 4);
  px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                  GR_COMBINE_OTHER_NONE, FXFALSE);
  px_AlphaBlendFunction(tb.pb, GR_BLEND_ONE_MINUS_DST_ALPHA, GR_BLEND_DST_ALPHA, GR_BLEND_SRC_ALPHA, GR_BLEND_SRC_ALPHA);
  EXPECT_EQ(tb.pb.state.blendAlphaSrc, GR_BLEND_ONE);
  EXPECT_EQ(tb.pb.state.blendAlphaDst, GR_BLEND_ZERO);
  tb.fill(rgb565(64, 64, 64));
  GrVertex v = vtx(1, 1, 200, 200, 200, 50);
  px_DrawPoint(tb.pb, &v);
  const int c = ((200 * 1) >> 8) + ((expand5(64 >> 3) * 256) >> 8);
  const int g = ((200 * 1) >> 8) + ((expand6(64 >> 2) * 256) >> 8);
  EXPECT_EQ(tb.pixel(1, 1), rgb565(c, g, c));
}

// PREFOG_COLOR as destination factor uses the colour before fog; the source term is fogged.
TEST(Blend, PrefogColour) {
  TestBoard tb(4, 4);
  px_FogMode(tb.pb, GR_FOG_WITH_ITERATED_ALPHA);
  px_FogColorValue(tb.pb, 0);
  px_AlphaBlendFunction(tb.pb, GR_BLEND_ONE, GR_BLEND_PREFOG_COLOR, GR_BLEND_ONE, GR_BLEND_ZERO);
  const uint16_t dst = rgb565(248, 252, 248);
  tb.fill(dst);
  GrVertex v = vtx(1, 1, 128, 128, 128, 255);  // full fog to black: source term 128 - 128 = 0
  px_DrawPoint(tb.pb, &v);
  const int r = (expand5(31) * 129) >> 8, g = (expand6(63) * 129) >> 8;
  EXPECT_EQ(tb.pixel(1, 1), rgb565(r, g, r));
}

TEST(AlphaTest, EveryFunctionAndCounter) {
  const struct {
    int fn;
    bool less, equal, greater;
  } fns[] = {{GR_CMP_NEVER, false, false, false}, {GR_CMP_LESS, true, false, false},
             {GR_CMP_EQUAL, false, true, false},  {GR_CMP_LEQUAL, true, true, false},
             {GR_CMP_GREATER, false, false, true}, {GR_CMP_NOTEQUAL, true, false, true},
             {GR_CMP_GEQUAL, false, true, true},  {GR_CMP_ALWAYS, true, true, true}};
  for (const auto &f : fns)
    for (int k = 0; k < 3; ++k) {
      TestBoard tb(4, 4);
      px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                      GR_COMBINE_OTHER_NONE, FXFALSE);
      px_AlphaTestFunction(tb.pb, f.fn);
      px_AlphaTestReferenceValue(tb.pb, 100);
      GrVertex v = vtx(1, 1, 255, 255, 255, float(99 + k));
      px_DrawPoint(tb.pb, &v);
      const bool pass = k == 0 ? f.less : k == 1 ? f.equal : f.greater;
      EXPECT_EQ(tb.pixel(1, 1) != 0, pass) << "fn " << f.fn << " alpha " << 99 + k;
      EXPECT_EQ(tb.pb.perf.aFuncFail, pass ? 0u : 1u);
      EXPECT_EQ(tb.pb.perf.pixelsOut, pass ? 1u : 0u);
    }
}

// The key compares the colour unit's "other" input (24 bits, alpha ignored), converted from the
// window's colour format; a keyed pixel counts in chromaFail.
TEST(Chromakey, DropsMatchingOtherColour) {
  TestBoard tb(4, 4);
  tb.pb.state.colourFormat = GR_COLORFORMAT_ABGR;
  px_ChromakeyMode(tb.pb, GR_CHROMAKEY_ENABLE);
  px_ChromakeyValue(tb.pb, 0x12302010);  // ABGR: r 0x10, g 0x20, b 0x30, alpha ignored
  GrVertex keyed = vtx(1, 1, 0x10, 0x20, 0x30), kept = vtx(2, 1, 0x10, 0x20, 0x31);
  px_DrawPoint(tb.pb, &keyed);
  px_DrawPoint(tb.pb, &kept);
  EXPECT_EQ(tb.pixel(1, 1), 0);
  EXPECT_NE(tb.pixel(2, 1), 0);
  EXPECT_EQ(tb.pb.perf.chromaFail, 1u);
  // With the constant colour as "other", the iterated colour no longer matters.
  px_ColorCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                  GR_COMBINE_OTHER_CONSTANT, FXFALSE);
  px_ConstantColorValue(tb.pb, 0xFF302010);
  px_DrawPoint(tb.pb, &kept);
  EXPECT_EQ(tb.pb.perf.chromaFail, 2u);
}

// Counters are 24 bits wide and wrap.
TEST(Counters, WrapAt24Bits) {
  TestBoard tb(4, 4);
  tb.pb.perf.pixelsIn = 0xFFFFFE;
  tb.pb.perf.pixelsOut = 0xFFFFFF;
  GrVertex a = vtx(0, 0, 255), b = vtx(4, 0, 255), c = vtx(0, 4, 255);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  EXPECT_EQ(tb.pb.perf.pixelsIn, 4u);  // 6 pixels
  EXPECT_EQ(tb.pb.perf.pixelsOut, 5u);
}

}  // namespace
}  // namespace zvb::test
