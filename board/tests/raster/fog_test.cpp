// Fog: the index-to-W function, the generated tables, the table look-up with interpolation, the
// iterated alpha and iterated Z sources and the MULT2/ADD2 modifiers.
#include <gtest/gtest.h>

#include <cmath>

#include "board_fixture.h"
#include "pixel/fog.h"

namespace zvb::test {
namespace {

// The oow whose W float is exactly wf (1..0xFFFF).
float oow_for_w_float(int wf) {
  const int e1 = (wf + 4095) / 4096;  // e + 1
  const int m = 4096 * e1 - wf;
  return std::ldexp(1.0f + m / 4096.0f, -e1);
}

TEST(Fog, IndexToW) {
  EXPECT_FLOAT_EQ(px_fog_index_to_w(0), 1.0f);
  EXPECT_FLOAT_EQ(px_fog_index_to_w(1), 8.0f / 7.0f);
  EXPECT_FLOAT_EQ(px_fog_index_to_w(4), 2.0f);
  EXPECT_FLOAT_EQ(px_fog_index_to_w(7), 16.0f / 5.0f);
  EXPECT_FLOAT_EQ(px_fog_index_to_w(63), 52428.8f);
  for (int i = 1; i < 64; ++i) EXPECT_GT(px_fog_index_to_w(i), px_fog_index_to_w(i - 1));
}

TEST(Fog, GeneratedTables) {
  GrFog_t t[64];
  px_fog_generate_exp(t, 0.01f);
  const float last = 1.0f - std::exp(-0.01f * 52428.8f);
  EXPECT_EQ(t[0], static_cast<GrFog_t>(255.0f * (1.0f - std::exp(-0.01f)) / last));
  EXPECT_EQ(t[63], 255);
  for (int i = 1; i < 64; ++i) EXPECT_GE(t[i], t[i - 1]);

  px_fog_generate_exp2(t, 0.001f);
  EXPECT_EQ(t[0], 0);  // (1 - e^-(1e-6)) x 255 truncates to 0
  EXPECT_EQ(t[63], 255);
  EXPECT_EQ(t[40], static_cast<GrFog_t>(255.0f * (1.0f - std::exp(-std::pow(0.001f * 1024.0f, 2.0f)))));

  // Linear from W = 4 (entry 8) to W = 1024 (entry 40).
  px_fog_generate_linear(t, 4.0f, 1024.0f);
  for (int i = 0; i <= 8; ++i) EXPECT_EQ(t[i], 0) << i;
  for (int i = 40; i < 64; ++i) EXPECT_EQ(t[i], 255) << i;
  EXPECT_EQ(t[24], static_cast<GrFog_t>(255.0f * (64.0f - 4.0f) / 1020.0f));
}

// Entry i = Wf >> 10 plus the step to the next entry scaled by q = (Wf >> 2) & 0xFF, truncated.
TEST(Fog, TableLookupInterpolates) {
  uint8_t t[64];
  for (int i = 0; i < 64; ++i) t[i] = static_cast<uint8_t>(i * 4);
  t[20] = 200;  // a falling step
  const struct {
    int wf, f;
  } cases[] = {{0, 0}, {1023, (4 * 255) / 256}, {5 << 10, 20}, {(5 << 10) | (128 << 2), 22},
               {(19 << 10) | (255 << 2), 76 + (124 * 255) / 256}, {(20 << 10) | (64 << 2), 200 + (-116 * 64) / 256},
               {0xFFFF, 252}};
  for (const auto &c : cases) EXPECT_EQ(fog_table_factor(t, static_cast<uint32_t>(c.wf)), c.f) << c.wf;
}

// Fog MULT2 with a white fog colour writes the factor itself: the colour shows f exactly (to 565).
TEST(Fog, TableFogOnPixels) {
  TestBoard tb(4, 4);
  GrFog_t t[64];
  for (int i = 0; i < 64; ++i) t[i] = static_cast<GrFog_t>(i * 4);
  px_FogTable(tb.pb, t);
  px_FogColorValue(tb.pb, 0x00FFFFFF);
  px_FogMode(tb.pb, GR_FOG_WITH_TABLE | GR_FOG_MULT2);
  for (int wf : {1024, 4096 + 512, 30000, 64000}) {
    GrVertex v = vtx(1, 1, 0, 0, 0, 0, 0, oow_for_w_float(wf));
    px_DrawPoint(tb.pb, &v);
    const int f = fog_table_factor(reinterpret_cast<const uint8_t *>(t), static_cast<uint32_t>(wf));
    EXPECT_EQ(tb.pixel(1, 1), rgb565(f, f, f)) << wf;
  }
}

TEST(Fog, SourcesAndModifiers) {
  const struct {
    int mode;
    float a, ooz;
    int colour, fog, expected;  // one channel value: pixel colour, fog colour, result
  } cases[] = {
      {GR_FOG_WITH_ITERATED_ALPHA, 128, 0, 0, 255, (255 * 129) >> 8},
      {GR_FOG_WITH_ITERATED_ALPHA, 0, 0, 200, 40, 200 + ((40 - 200) * 1 >> 8)},
      {GR_FOG_WITH_ITERATED_ALPHA, 255, 0, 200, 40, 40},
      {GR_FOG_WITH_ITERATED_Z, 0, 0x8000, 0, 255, (255 * 129) >> 8},
      {GR_FOG_WITH_ITERATED_ALPHA | GR_FOG_MULT2, 100, 0, 200, 160, (160 * 101) >> 8},
      {GR_FOG_WITH_ITERATED_ALPHA | GR_FOG_ADD2, 100, 0, 200, 160, 200 - ((200 * 101) >> 8)},
      {GR_FOG_WITH_ITERATED_ALPHA | GR_FOG_MULT2 | GR_FOG_ADD2, 100, 0, 200, 160, 0},
      {GR_FOG_DISABLE, 100, 0, 200, 160, 200},
  };
  for (const auto &c : cases) {
    TestBoard tb(4, 4);
    px_FogMode(tb.pb, c.mode);
    px_FogColorValue(tb.pb, (c.fog << 16) | (c.fog << 8) | c.fog);
    GrVertex v = vtx(1, 1, float(c.colour), float(c.colour), float(c.colour), c.a, c.ooz);
    px_DrawPoint(tb.pb, &v);
    EXPECT_EQ(tb.pixel(1, 1), rgb565(c.expected, c.expected, c.expected)) << "mode " << c.mode << " a " << c.a;
  }
}

}  // namespace
}  // namespace zvb::test
