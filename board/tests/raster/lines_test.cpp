// Coverage and parameters of lines and points, with the 12.4 wrap.
#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "board_fixture.h"

namespace zvb::test {
namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels drawn(TestBoard &tb) {
  Pixels s;
  for (int y = 0; y < tb.pb.height; ++y)
    for (int x = 0; x < tb.pb.width; ++x)
      if (tb.pixel(x, y)) s.insert({x, y});
  return s;
}

Pixels line_pixels(float x0, float y0, float x1, float y1, float bias = 0) {
  TestBoard tb(16, 16);
  GrVertex a = vtx(x0 + bias, y0 + bias, 255), b = vtx(x1 + bias, y1 + bias, 255);
  px_DrawLine(tb.pb, &a, &b);
  return drawn(tb);
}

TEST(Lines, Coverage) {
  // x-major horizontal: columns whose centre is in [1.5, 9.5), the row whose centre is in [2, 3).
  EXPECT_EQ(line_pixels(1.5f, 2.5f, 9.5f, 2.5f),
            (Pixels{{1, 2}, {2, 2}, {3, 2}, {4, 2}, {5, 2}, {6, 2}, {7, 2}, {8, 2}}));
  // Drawn from the other end: the same pixels (the right end is never drawn).
  EXPECT_EQ(line_pixels(9.5f, 2.5f, 1.5f, 2.5f), line_pixels(1.5f, 2.5f, 9.5f, 2.5f));
  // Diagonal (|dx| = |dy| counts as x-major): one pixel per column.
  EXPECT_EQ(line_pixels(0, 0, 5, 5), (Pixels{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}}));
  // y-major: rows whose centre is in [1, 5), the column whose centre is in [x - 0.5, x + 0.5).
  EXPECT_EQ(line_pixels(3.0f, 1.0f, 4.0f, 5.0f), (Pixels{{3, 1}, {3, 2}, {3, 3}, {3, 4}}));
  // A line on a row boundary: the centre at y - 0.5 is inside, the one at y + 0.5 is not.
  EXPECT_EQ(line_pixels(0.5f, 3.0f, 4.5f, 3.0f), (Pixels{{0, 2}, {1, 2}, {2, 2}, {3, 2}}));
  // Zero length: nothing.
  EXPECT_TRUE(line_pixels(3.2f, 3.2f, 3.2f, 3.2f).empty());
  // The snap constants change nothing.
  EXPECT_EQ(line_pixels(0.25f, 7.75f, 13.0f, 2.0f, 524288.0f), line_pixels(0.25f, 7.75f, 13.0f, 2.0f));
  EXPECT_EQ(line_pixels(0.25f, 7.75f, 13.0f, 2.0f, 786432.0f), line_pixels(0.25f, 7.75f, 13.0f, 2.0f));
}

// Parameters vary along the major axis only, sampled at pixel centres.
TEST(Lines, ParametersAlongMajorAxis) {
  TestBoard tb(16, 16);
  GrVertex a = vtx(0, 4.2f, 0), b = vtx(16, 4.9f, 256);
  px_DrawLine(tb.pb, &a, &b);
  for (int x = 0; x < 16; ++x) EXPECT_EQ(tb.pixel(x, 4), rgb565(std::min(255, 16 * x + 8), 0, 0)) << x;
}

TEST(Points, FloorOfPositionWithWrap) {
  const struct {
    float x, y;
    int px, py;  // -1: nothing drawn
  } cases[] = {{3.99f, 2.0f, 3, 2}, {0.0f, 0.0f, 0, 0},        {7.5f + 524288.0f, 1.25f + 524288.0f, 7, 1},
               {-0.5f, 4.0f, -1, -1}, {4096.0f + 5.0f, 6.0f, 5, 6}, {15.9375f, 15.9375f, 15, 15}};
  for (const auto &c : cases) {
    TestBoard tb(16, 16);
    GrVertex p = vtx(c.x, c.y, 255);
    px_DrawPoint(tb.pb, &p);
    const Pixels got = drawn(tb);
    if (c.px < 0) EXPECT_TRUE(got.empty()) << c.x << "," << c.y;
    else EXPECT_EQ(got, (Pixels{{c.px, c.py}})) << c.x << "," << c.y;
  }
}

}  // namespace
}  // namespace zvb::test
