// Antialiased primitives: the alpha ramp of the fringes, which edges get one, and that fringes
// leave the depth buffer alone.
#include <gtest/gtest.h>

#include "board_fixture.h"

namespace zvb::test {
namespace {

// Blending SRC_ALPHA / ZERO of white: the green field shows the pixel's alpha (to 6 bits).
void show_alpha(TestBoard &tb) {
  px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                  GR_COMBINE_OTHER_NONE, FXFALSE);
  px_AlphaBlendFunction(tb.pb, GR_BLEND_SRC_ALPHA, GR_BLEND_ZERO, GR_BLEND_ONE, GR_BLEND_ZERO);
}
int alpha_at(TestBoard &tb, int x, int y) { return ((tb.pixel(x, y) >> 5) & 63) << 2; }

GrVertex white(float x, float y, float a = 255) { return vtx(x, y, 255, 255, 255, a); }

TEST(AATriangle, FringeAlphaRampsToZero) {
  TestBoard tb(16, 16);
  show_alpha(tb);
  GrVertex a = white(2, 2), b = white(12, 2), c = white(2, 12);
  px_AADrawTriangle(tb.pb, &a, &b, &c, FXTRUE, FXTRUE, FXTRUE);
  EXPECT_NEAR(alpha_at(tb, 4, 4), 255, 3);  // inside
  // Top edge (x-major): a strip one pixel above; at row 1's centre alpha is half.
  for (int x = 3; x < 9; ++x) EXPECT_NEAR(alpha_at(tb, x, 1), 128, 4) << x;
  // Left edge (y-major): a strip one pixel to the left.
  for (int y = 3; y < 9; ++y) EXPECT_NEAR(alpha_at(tb, 1, y), 128, 4) << y;
  EXPECT_EQ(tb.pixel(4, 0), 0);
  EXPECT_EQ(tb.pixel(0, 4), 0);
  // Hypotenuse x + y = 14 (|dx| = |dy|: x-major): a strip one pixel below, away from a, where alpha
  // is 255 (15 - x - y). Centres on the edge belong to the strip, not to the triangle.
  EXPECT_NEAR(alpha_at(tb, 7, 5), 255, 3);  // sum 13: inside the triangle
  EXPECT_NEAR(alpha_at(tb, 7, 6), 255, 3);  // sum 14: strip, on the edge
  EXPECT_NEAR(alpha_at(tb, 7, 7), 0, 3);    // sum 15: the strip's outer side
}

TEST(AATriangle, OnlyFlaggedEdgesAndNoDepthWrites) {
  TestBoard tb(16, 16);
  show_alpha(tb);
  tb.fillAux(0);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER);
  px_DepthBufferFunction(tb.pb, GR_CMP_GEQUAL);
  px_DepthMask(tb.pb, FXTRUE);
  GrVertex a = white(2, 2), b = white(12, 2), c = white(2, 12);
  a.ooz = b.ooz = c.ooz = 500;
  px_AADrawTriangle(tb.pb, &a, &b, &c, FXTRUE, FXFALSE, FXFALSE);
  EXPECT_NE(tb.pixel(5, 1), 0);   // ab fringed
  EXPECT_EQ(tb.pixel(1, 5), 0);   // ca not
  EXPECT_EQ(tb.aux(5, 1), 0);     // the fringe wrote no depth
  EXPECT_EQ(tb.aux(5, 5), 500);   // the triangle did
  EXPECT_TRUE(tb.pb.state.auxWrite);
  // Culled triangles draw no fringes either.
  TestBoard culled(16, 16);
  show_alpha(culled);
  px_CullMode(culled.pb, GR_CULL_POSITIVE);
  px_AADrawTriangle(culled.pb, &a, &b, &c, FXTRUE, FXTRUE, FXTRUE);
  EXPECT_EQ(culled.count(0), 256);
}

TEST(AALine, BandTwoPixelsThick) {
  TestBoard tb(16, 16);
  show_alpha(tb);
  GrVertex a = white(2, 5.25f), b = white(12, 5.25f);
  px_AADrawLine(tb.pb, &a, &b);
  for (int x = 2; x < 12; ++x) {
    EXPECT_NEAR(alpha_at(tb, x, 4), 64, 4) << x;   // centre 4.5: 0.75 from the line
    EXPECT_NEAR(alpha_at(tb, x, 5), 191, 4) << x;  // centre 5.5: 0.25 from the line
    EXPECT_EQ(tb.pixel(x, 3), 0);
    EXPECT_EQ(tb.pixel(x, 6), 0);
  }
}

TEST(AAPoint, DiamondOfRadiusOne) {
  TestBoard tb(16, 16);
  show_alpha(tb);
  GrVertex p = white(5.25f, 5.5f);
  px_AADrawPoint(tb.pb, &p);
  EXPECT_NEAR(alpha_at(tb, 5, 5), 191, 4);
  EXPECT_NEAR(alpha_at(tb, 4, 5), 64, 4);
  EXPECT_EQ(tb.pixel(5, 4), 0);  // centre (5.5, 4.5): |0.25| + |1| > 1
  EXPECT_EQ(tb.pixel(7, 5), 0);
}

// Polygon fringes: every outer edge of a quad; a triangle's closing edge is left without (n = 3).
TEST(AAPolygon, OuterEdgesOnly) {
  TestBoard tb(16, 16);
  show_alpha(tb);
  GrVertex q[4] = {white(3, 3), white(12, 3), white(12, 12), white(3, 12)};
  px_AADrawPolygonVertexList(tb.pb, 4, q);
  EXPECT_NEAR(alpha_at(tb, 6, 2), 128, 4);
  EXPECT_NEAR(alpha_at(tb, 12, 6), 128, 4);
  EXPECT_NEAR(alpha_at(tb, 6, 12), 128, 4);
  EXPECT_NEAR(alpha_at(tb, 2, 6), 128, 4);
  for (int i = 3; i < 12; ++i) EXPECT_NEAR(alpha_at(tb, i, i), 255, 3) << i;  // diagonal untouched

  TestBoard tri(16, 16);
  show_alpha(tri);
  GrVertex t[3] = {white(3, 3), white(12, 3), white(3, 12)};
  px_AADrawPolygonVertexList(tri.pb, 3, t);
  EXPECT_NE(tri.pixel(6, 2), 0);  // (v0, v1)
  EXPECT_EQ(tri.pixel(2, 6), 0);  // closing edge (v2, v0) not fringed
}

}  // namespace
}  // namespace zvb::test
