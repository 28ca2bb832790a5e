// Depth buffering: the W float encoding at its boundaries and its link with the fog table index,
// every depth function, bias with clamping, the compare-to-bias modes, masks and Z interpolation.
#include <gtest/gtest.h>

#include <cmath>

#include "board_fixture.h"

namespace zvb::test {
namespace {

// Draws a 16 x 2 rectangle of constant oow in W-buffer mode (wide enough for the four-pixel loops)
// and a point, and returns the stored W float, which must be the same everywhere.
int w_of(TestBoard &tb, float oow) {
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
  px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
  px_DepthMask(tb.pb, FXTRUE);
  GrVertex a = vtx(0, 0, 0, 0, 0, 0, 0, oow), b = vtx(16, 0, 0, 0, 0, 0, 0, oow), c = vtx(16, 2, 0, 0, 0, 0, 0, oow),
           d = vtx(0, 2, 0, 0, 0, 0, 0, oow), p = vtx(0, 3, 0, 0, 0, 0, 0, oow);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  px_DrawTriangle(tb.pb, &a, &c, &d);
  px_DrawPoint(tb.pb, &p);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 16; ++x) EXPECT_EQ(tb.aux(x, y), tb.aux(0, 3)) << "oow " << oow << " at " << x << "," << y;
  return tb.aux(0, 3);
}

TEST(WBuffer, EncodingBoundaries) {
  TestBoard tb(16, 4);
  const struct {
    float oow;
    int wf;
  } cases[] = {
      {1.0f, 0x0000},        {2.0f, 0x0000},         {1000.0f, 0x0000},       // oow >= 1: nearest
      {0.5f, 4096},          {0.75f, 2048},          {0.875f, 1024},          // e = 0
      {0.25f, 8192},         {0.375f, 6144},                                  // e = 1
      {std::ldexp(1.0f, -16), 0xFFFF},                                        // 2^-16: e = 15, f = 0
      {std::ldexp(1.5f, -16), 4096 * 16 - 2048},                              // e = 15, f = 0.5
      {std::ldexp(1.0f, -15), 4096 * 15},                                     // e = 14
      {std::ldexp(1.0f, -17), 0xFFFF},       {0.0f, 0xFFFF}, {-0.5f, 0xFFFF}, // below 2^-16: farthest
      {1.0f - std::ldexp(1.0f, -13), 1},                                      // just below 1: mantissa 4095
  };
  for (const auto &c : cases) EXPECT_EQ(w_of(tb, c.oow), c.wf) << "oow " << c.oow;
}

// Entry i of the fog table starts exactly at the W of guFogTableIndexToW(i): the exact oow of that W,
// (8 - (i & 3)) / 2^(3 + (i >> 2)), encodes to i << 10.
TEST(WBuffer, FogIndexBoundariesMatchEncoding) {
  TestBoard tb(16, 4);
  for (int i = 0; i < 64; ++i) {
    const float oow = std::ldexp(static_cast<float>(8 - (i & 3)), -(3 + (i >> 2)));
    EXPECT_FLOAT_EQ(px_fog_index_to_w(i), 1.0f / oow) << i;
    EXPECT_EQ(w_of(tb, oow), i << 10) << "index " << i;
  }
}

TEST(Depth, EveryFunction) {
  const struct {
    int fn;
    bool less, equal, greater;  // passes when incoming is less than / equal to / greater than stored
  } fns[] = {{GR_CMP_NEVER, false, false, false}, {GR_CMP_LESS, true, false, false},
             {GR_CMP_EQUAL, false, true, false},  {GR_CMP_LEQUAL, true, true, false},
             {GR_CMP_GREATER, false, false, true}, {GR_CMP_NOTEQUAL, true, false, true},
             {GR_CMP_GEQUAL, false, true, true},  {GR_CMP_ALWAYS, true, true, true}};
  for (const auto &f : fns) {
    const float oozs[3] = {999.0f, 1000.0f, 1001.0f};
    const bool pass[3] = {f.less, f.equal, f.greater};
    for (int k = 0; k < 3; ++k) {
      TestBoard tb(4, 4);
      tb.fillAux(1000);
      px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER);
      px_DepthBufferFunction(tb.pb, f.fn);
      px_DepthMask(tb.pb, FXTRUE);
      GrVertex v = vtx(1, 1, 255, 255, 255, 255, oozs[k]);
      px_DrawPoint(tb.pb, &v);
      EXPECT_EQ(tb.pixel(1, 1) != 0, pass[k]) << "fn " << f.fn << " case " << k;
      EXPECT_EQ(tb.aux(1, 1), pass[k] ? int(oozs[k]) : 1000);
      EXPECT_EQ(tb.pb.perf.zFuncFail, pass[k] ? 0u : 1u);
      EXPECT_EQ(tb.pb.perf.pixelsIn, 1u);
      EXPECT_EQ(tb.pb.perf.pixelsOut, pass[k] ? 1u : 0u);
    }
  }
}

TEST(Depth, BiasIsAddedAndClampedInBiasedModes) {
  const struct {
    int mode;
    float ooz, oow;
    int bias, stored;
  } cases[] = {{GR_DEPTHBUFFER_ZBUFFER, 1000, 1, 100, 1100},      {GR_DEPTHBUFFER_ZBUFFER, 65500, 1, 100, 0xFFFF},
               {GR_DEPTHBUFFER_ZBUFFER, 50, 1, -100, 0},           {GR_DEPTHBUFFER_ZBUFFER, 70000, 1, 0, 0xFFFF},
               {GR_DEPTHBUFFER_ZBUFFER, -7, 1, 0, 0},              {GR_DEPTHBUFFER_WBUFFER, 0, 0.5f, -96, 4000},
               {GR_DEPTHBUFFER_WBUFFER, 0, 0.0f, 5, 0xFFFF}};
  for (const auto &c : cases) {
    TestBoard tb(4, 4);
    px_DepthBufferMode(tb.pb, c.mode);
    px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
    px_DepthBiasLevel(tb.pb, static_cast<FxI16>(c.bias));
    px_DepthMask(tb.pb, FXTRUE);
    GrVertex v = vtx(2, 2, 0, 0, 0, 0, c.ooz, c.oow);
    px_DrawPoint(tb.pb, &v);
    EXPECT_EQ(tb.aux(2, 2), c.stored) << "mode " << c.mode << " ooz " << c.ooz << " bias " << c.bias;
  }
}

// Compare-to-bias: the bias level is compared with the stored value; the pixel's own depth is written.
TEST(Depth, CompareToBias) {
  for (int stored : {400, 600}) {
    TestBoard tb(4, 4);
    tb.fillAux(static_cast<uint16_t>(stored));
    px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER_COMPARE_TO_BIAS);
    px_DepthBufferFunction(tb.pb, GR_CMP_LESS);
    px_DepthBiasLevel(tb.pb, 500);
    px_DepthMask(tb.pb, FXTRUE);
    GrVertex v = vtx(1, 1, 255, 0, 0, 0, 9000);
    px_DrawPoint(tb.pb, &v);
    EXPECT_EQ(tb.aux(1, 1), stored == 600 ? 9000 : 400);
  }
  TestBoard tb(4, 4);
  tb.fillAux(0x8000);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER_COMPARE_TO_BIAS);
  px_DepthBufferFunction(tb.pb, GR_CMP_GREATER);
  px_DepthBiasLevel(tb.pb, -1);  // 0xFFFF as the compared value
  px_DepthMask(tb.pb, FXTRUE);
  GrVertex v = vtx(1, 1, 255, 0, 0, 0, 0, 0.5f);
  px_DrawPoint(tb.pb, &v);
  EXPECT_EQ(tb.aux(1, 1), 4096);
}

TEST(Depth, MaskAndDisabledMode) {
  TestBoard tb(4, 4);
  tb.fillAux(77);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER);
  px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
  GrVertex v = vtx(1, 1, 255, 0, 0, 0, 1234);
  px_DrawPoint(tb.pb, &v);
  EXPECT_EQ(tb.aux(1, 1), 77);  // mask off by default
  // Depth buffering off but the mask on: the hardware still writes Z, without bias and without test.
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_DISABLE);
  px_DepthBiasLevel(tb.pb, 10);
  px_DepthMask(tb.pb, FXTRUE);
  px_DrawPoint(tb.pb, &v);
  EXPECT_EQ(tb.aux(1, 1), 1234);
}

// Z is sampled at pixel centres: a plane ooz = 256 x gives 256 px + 128 in pixel px.
TEST(Depth, ZInterpolatedAtPixelCentres) {
  TestBoard tb(64, 8);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER);
  px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
  px_DepthMask(tb.pb, FXTRUE);
  GrVertex a = vtx(0, 0, 0, 0, 0, 0, 0), b = vtx(64, 0, 0, 0, 0, 0, 64 * 256), c = vtx(0, 8, 0, 0, 0, 0, 0);
  GrVertex d = vtx(64, 8, 0, 0, 0, 0, 64 * 256);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  px_DrawTriangle(tb.pb, &b, &d, &c);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 64; ++x) ASSERT_EQ(tb.aux(x, y), std::min(256 * x + 128, 0xFFFF)) << x << "," << y;
}

}  // namespace
}  // namespace zvb::test
