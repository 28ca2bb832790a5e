// Coverage of triangles: the top-left fill rule on shared edges, the 12.4 wrap, culling by the area
// sign, and the pixel counters.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "board_fixture.h"

namespace zvb::test {
namespace {

// Additive blending of a colour that adds 1 to the red field per write: each pixel then holds the
// number of times it was drawn.
void count_writes(TestBoard &tb) {
  px_AlphaBlendFunction(tb.pb, GR_BLEND_ONE, GR_BLEND_ONE, GR_BLEND_ONE, GR_BLEND_ZERO);
  tb.fill(0);
}
int writes(TestBoard &tb, int x, int y) { return tb.pixel(x, y) >> 11; }

// A jittered grid mesh whose outer boundary is the rectangle [x0, x1) x [y0, y1) (fractional, on the
// 1/16 grid): every pixel whose centre is inside by the fill rule is drawn exactly once, no other.
TEST(FillRule, JitteredMeshDrawsEveryPixelOnce) {
  for (float bias : {0.0f, 524288.0f, 786432.0f}) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
      TestBoard tb(64, 64);
      count_writes(tb);
      std::mt19937 rng(seed);
      std::uniform_int_distribution<int> jit(-5, 5);
      const int n = 7;
      const float x0 = 3.3125f, x1 = 60.5f, y0 = 2.5f, y1 = 59.6875f;
      float gx[n + 1][n + 1], gy[n + 1][n + 1];
      for (int j = 0; j <= n; ++j)
        for (int i = 0; i <= n; ++i) {
          float x = x0 + (x1 - x0) * i / n, y = y0 + (y1 - y0) * j / n;
          x = static_cast<float>(static_cast<int>(x * 16)) / 16;
          y = static_cast<float>(static_cast<int>(y * 16)) / 16;
          if (i == 0) x = x0;
          if (i == n) x = x1;
          if (j == 0) y = y0;
          if (j == n) y = y1;
          if (i > 0 && i < n) x += jit(rng) / 16.0f * 8;
          if (j > 0 && j < n) y += jit(rng) / 16.0f * 8;
          gx[j][i] = x;
          gy[j][i] = y;
        }
      for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
          GrVertex c[4] = {vtx(gx[j][i] + bias, gy[j][i] + bias, 8), vtx(gx[j][i + 1] + bias, gy[j][i + 1] + bias, 8),
                           vtx(gx[j + 1][i + 1] + bias, gy[j + 1][i + 1] + bias, 8),
                           vtx(gx[j + 1][i] + bias, gy[j + 1][i] + bias, 8)};
          if (rng() & 1) {
            px_DrawTriangle(tb.pb, &c[0], &c[1], &c[2]);
            px_DrawTriangle(tb.pb, &c[2], &c[3], &c[0]);
          } else {
            px_DrawTriangle(tb.pb, &c[1], &c[0], &c[3]);
            px_DrawTriangle(tb.pb, &c[3], &c[2], &c[1]);
          }
        }
      // Pixel centres x + 0.5 in [3.3125, 60.5): columns 3..59; rows with centre in [2.5, 59.6875): 2..59.
      for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
          const int expected = (x >= 3 && x <= 59 && y >= 2 && y <= 59) ? 1 : 0;
          ASSERT_EQ(writes(tb, x, y), expected) << "pixel " << x << "," << y << " seed " << seed << " bias " << bias;
        }
      EXPECT_EQ(tb.pb.perf.pixelsOut, 57u * 58u);
    }
  }
}

// A fan of thin triangles around a centre: shared edges of every slope, vertices off the grid.
TEST(FillRule, FanHasNoOverlapAndNoHoles) {
  TestBoard tb(64, 64);
  count_writes(tb);
  const int n = 37;
  const double cx = 31.3, cy = 30.8, rad = 27.0;
  std::vector<GrVertex> ring;
  for (int i = 0; i < n; ++i) {
    const double t = 6.283185307179586 * i / n;
    ring.push_back(vtx(static_cast<float>(cx + rad * std::cos(t)), static_cast<float>(cy + rad * std::sin(t)), 8));
  }
  GrVertex centre = vtx(static_cast<float>(cx), static_cast<float>(cy), 8);
  for (int i = 0; i < n; ++i) px_DrawTriangle(tb.pb, &centre, &ring[i], &ring[(i + 1) % n]);
  int drawn = 0;
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) {
      ASSERT_LE(writes(tb, x, y), 1) << x << "," << y;
      drawn += writes(tb, x, y);
      const double dx = x + 0.5 - cx, dy = y + 0.5 - cy;
      if (dx * dx + dy * dy < (rad - 1.5) * (rad - 1.5)) {
        ASSERT_EQ(writes(tb, x, y), 1) << x << "," << y;
      }
    }
  EXPECT_EQ(static_cast<uint32_t>(drawn), tb.pb.perf.pixelsOut);
}

// Centres exactly on edges: left and top edges are drawn, right and bottom ones are not.
TEST(FillRule, CentresOnEdges) {
  TestBoard tb(16, 16);
  count_writes(tb);
  // Square from centre to centre: (2.5, 2.5) .. (6.5, 6.5) as two triangles.
  GrVertex a = vtx(2.5f, 2.5f, 8), b = vtx(6.5f, 2.5f, 8), c = vtx(6.5f, 6.5f, 8), d = vtx(2.5f, 6.5f, 8);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  px_DrawTriangle(tb.pb, &a, &c, &d);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x)
      EXPECT_EQ(writes(tb, x, y), (x >= 2 && x <= 5 && y >= 2 && y <= 5) ? 1 : 0) << x << "," << y;
}

TEST(Cull, AreaSignAndZeroArea) {
  struct Case {
    int mode;
    bool ccw;  // vertices (0,0), (10,0), (0,10) give a positive area term
    bool drawn;
  } cases[] = {{GR_CULL_DISABLE, true, true},   {GR_CULL_DISABLE, false, true},  {GR_CULL_NEGATIVE, true, true},
               {GR_CULL_NEGATIVE, false, false}, {GR_CULL_POSITIVE, true, false}, {GR_CULL_POSITIVE, false, true}};
  for (const Case &c : cases) {
    TestBoard tb(16, 16);
    px_CullMode(tb.pb, c.mode);
    GrVertex a = vtx(1, 1, 255), b = vtx(11, 1, 255), d = vtx(1, 11, 255);
    if (c.ccw) px_DrawTriangle(tb.pb, &a, &b, &d);
    else px_DrawTriangle(tb.pb, &a, &d, &b);
    EXPECT_EQ(tb.pixel(2, 2) != 0, c.drawn) << "mode " << c.mode << " ccw " << c.ccw;
  }
  TestBoard tb(16, 16);
  GrVertex a = vtx(1, 1, 255), b = vtx(5, 5, 255), d = vtx(9, 9, 255);
  px_DrawTriangle(tb.pb, &a, &b, &d);
  EXPECT_EQ(tb.count(0), 256);
  EXPECT_EQ(tb.pb.perf.pixelsIn, 0u);
}

// Whatever the coordinates (NaN, infinities, huge, wrapping), pixels land only inside the clip window.
TEST(Robustness, HostileVerticesStayInsideTheClipWindow) {
  const float nan = std::nanf(""), inf = std::numeric_limits<float>::infinity();
  const float values[] = {nan, inf, -inf, 1e30f, -1e30f, 3e9f, -2047.9f, 2047.9f, 4095.0f, 20.0f, 0.0f, 65535.0f};
  TestBoard tb(40, 30);
  tb.fill(0x1234);
  tb.fillAux(0x5678);
  px_ClipWindow(tb.pb, 5, 4, 35, 25);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
  px_DepthBufferFunction(tb.pb, GR_CMP_ALWAYS);
  px_DepthMask(tb.pb, FXTRUE);
  px_FogMode(tb.pb, GR_FOG_WITH_TABLE);
  std::mt19937 rng(5);
  for (int i = 0; i < 3000; ++i) {
    GrVertex v[3];
    for (auto &e : v)
      e = vtx(values[rng() % 12], values[rng() % 12], values[rng() % 12], values[rng() % 12], values[rng() % 12],
              values[rng() % 12], values[rng() % 12], values[rng() % 12]);
    px_DrawTriangle(tb.pb, &v[0], &v[1], &v[2]);
    px_DrawLine(tb.pb, &v[0], &v[1]);
    px_DrawPoint(tb.pb, &v[2]);
    px_AADrawTriangle(tb.pb, &v[0], &v[1], &v[2], 1, 1, 1);
    px_AADrawLine(tb.pb, &v[0], &v[1]);
    px_AADrawPoint(tb.pb, &v[1]);
  }
  int inside = 0;
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) {
      if (x >= 5 && x < 35 && y >= 4 && y < 25) {
        inside += tb.pixel(x, y) != 0x1234;
        continue;
      }
      ASSERT_EQ(tb.pixel(x, y), 0x1234) << x << "," << y;
      ASSERT_EQ(tb.aux(x, y), 0x5678) << x << "," << y;
    }
  EXPECT_GT(inside, 0);
}

}  // namespace
}  // namespace zvb::test
