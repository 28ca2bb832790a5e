// The colour and alpha combine units: every function x factor x invert, for each local and other
// source, against the combine equations written out case by case.
#include <gtest/gtest.h>

#include "board_fixture.h"

namespace zvb::test {
namespace {

struct Inputs {
  int ir, ig, ib, ia;  // iterated
  int cr, cg, cb, ca;  // constant
};

int ref_mul(int x, int f) { return (x * (f + 1)) >> 8; }
int ref_clamp(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

// The combine equation of one channel, spelled out per function.
int ref_function(int fn, int f, int co, int cl, int al) {
  switch (fn) {
    case 0x0: return 0;
    case 0x1: return cl;
    case 0x2: return al;
    case 0x4: return ref_mul(co, f) + cl;
    case 0x5: return ref_mul(co, f) + al;
    case 0x6: return ref_mul(co - cl, f);
    case 0x7: return ref_mul(co - cl, f) + cl;
    case 0x8: return ref_mul(co - cl, f) + al;
    case 0x9: return ref_mul(-cl, f) + cl;
    case 0x10: return ref_mul(-cl, f) + al;
    default: return ref_mul(co, f);  // SCALE_OTHER and undefined codes
  }
}

// Factor value before "one minus" for the colour unit (channel values) or alpha unit.
int ref_factor(int factor, int cl, int ao, int al) {
  int f = 0;
  switch (factor & 7) {
    case 1: f = cl; break;
    case 2: f = ao; break;
    case 3: f = al; break;
    default: f = 0; break;  // texture alpha / rgb: no texture yet (0); reserved codes 0
  }
  return (factor & 8) ? 255 - f : f;
}

const int kFunctions[] = {0x0, 0x1, 0x2, 0x3, 0x4, 0x5, 0x6, 0x7, 0x8, 0x9, 0x10, 0xB};
const int kFactors[] = {0x0, 0x1, 0x2, 0x3, 0x4, 0x5, 0x8, 0x9, 0xA, 0xB, 0xC, 0xD};
const Inputs kInputs[] = {{200, 100, 40, 180, 30, 220, 128, 60},
                          {0, 255, 17, 255, 255, 0, 99, 1},
                          {77, 77, 77, 0, 200, 201, 202, 203}};

// Draws one point with the given iterated values on a board whose aux buffer holds alpha, and
// returns the written colour (565) and alpha.
void draw(TestBoard &tb, const Inputs &in, uint16_t &colour, int &alpha) {
  tb.fill(0);
  tb.fillAux(0);
  px_ColorMask(tb.pb, FXTRUE, FXTRUE);
  px_ConstantColorValue(tb.pb, (uint32_t(in.ca) << 24) | (in.cr << 16) | (in.cg << 8) | in.cb);
  GrVertex v = vtx(3.5f, 2.5f, float(in.ir), float(in.ig), float(in.ib), float(in.ia));
  px_DrawPoint(tb.pb, &v);
  colour = tb.pixel(3, 2);
  alpha = tb.aux(3, 2);
}

TEST(Combine, AlphaUnitEveryFunctionFactorInvertAndSource) {
  TestBoard tb(8, 8);
  int checked = 0;
  for (const Inputs &in : kInputs)
    for (int local = 0; local < 3; ++local)
      for (int other = 0; other < 3; ++other)
        for (int fn : kFunctions)
          for (int factor : kFactors)
            for (int invert = 0; invert < 2; ++invert) {
              px_AlphaCombine(tb.pb, fn, factor, local, other, invert);
              uint16_t c;
              int a;
              draw(tb, in, c, a);
              const int al = local == 0 ? in.ia : local == 1 ? in.ca : 0;  // depth: ooz 0
              const int ao = other == 0 ? in.ia : other == 1 ? 0 : in.ca;
              int e = ref_clamp(ref_function(fn, ref_factor(factor, al, ao, al), ao, al, al));
              if (invert) e = 255 - e;
              ASSERT_EQ(a, e) << "fn " << fn << " factor " << factor << " local " << local << " other " << other
                              << " invert " << invert;
              ++checked;
            }
  EXPECT_EQ(checked, 3 * 3 * 3 * 12 * 12 * 2);
}

TEST(Combine, ColourUnitEveryFunctionFactorInvertAndSource) {
  TestBoard tb(8, 8);
  for (const Inputs &in : kInputs)
    for (int local = 0; local < 2; ++local)
      for (int other = 0; other < 3; ++other)
        for (int fn : kFunctions)
          for (int factor : kFactors)
            for (int invert = 0; invert < 2; ++invert) {
              // The alpha unit selects Al = iterated alpha, Ao = constant alpha for the colour unit's
              // alpha-valued factors and functions.
              px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                              GR_COMBINE_OTHER_CONSTANT, FXFALSE);
              px_ColorCombine(tb.pb, fn, factor, local, other, invert);
              uint16_t c;
              int a;
              draw(tb, in, c, a);
              const int cl[3] = {local ? in.cr : in.ir, local ? in.cg : in.ig, local ? in.cb : in.ib};
              const int co[3] = {other == 0 ? in.ir : other == 1 ? 0 : in.cr, other == 0 ? in.ig : other == 1 ? 0 : in.cg,
                                 other == 0 ? in.ib : other == 1 ? 0 : in.cb};
              int e[3];
              for (int k = 0; k < 3; ++k) {
                e[k] = ref_clamp(ref_function(fn, ref_factor(factor, cl[k], in.ca, in.ia), co[k], cl[k], in.ia));
                if (invert) e[k] = 255 - e[k];
              }
              ASSERT_EQ(c, rgb565(e[0], e[1], e[2]))
                  << "fn " << fn << " factor " << factor << " local " << local << " other " << other << " invert "
                  << invert;
            }
}

// GR_COMBINE_LOCAL_DEPTH feeds the high byte of the clamped Z into the alpha unit.
TEST(Combine, AlphaLocalDepthIsZHighByte) {
  TestBoard tb(8, 8);
  px_ColorMask(tb.pb, FXTRUE, FXTRUE);
  px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_DEPTH,
                  GR_COMBINE_OTHER_NONE, FXFALSE);
  for (float ooz : {0.0f, 255.9f, 256.0f, 0x1234 + 0.5f, 65535.0f, 90000.0f, -5.0f}) {
    GrVertex v = vtx(1, 1, 0, 0, 0, 0, ooz);
    px_DrawPoint(tb.pb, &v);
    const int z = ooz < 0 ? 0 : ooz > 65535 ? 65535 : int(ooz);
    EXPECT_EQ(tb.aux(1, 1), z >> 8) << ooz;
  }
}

// Iterated values outside 0..255 are clamped per pixel.
TEST(Combine, IteratedColourIsClamped) {
  TestBoard tb(8, 8);
  GrVertex v = vtx(1, 1, 300, -20, 128);
  px_DrawPoint(tb.pb, &v);
  EXPECT_EQ(tb.pixel(1, 1), rgb565(255, 0, 128));
}

}  // namespace
}  // namespace zvb::test
