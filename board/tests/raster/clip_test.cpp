// Clip window, origin, buffer clear, render buffer and the write masks with the aux-buffer sharing rule.
#include <gtest/gtest.h>

#include "board_fixture.h"

namespace zvb::test {
namespace {

void full_screen_quad(TestBoard &tb, float r = 255) {
  const float w = static_cast<float>(tb.pb.width), h = static_cast<float>(tb.pb.height);
  GrVertex a = vtx(-10, -10, r), b = vtx(w + 10, -10, r), c = vtx(w + 10, h + 10, r), d = vtx(-10, h + 10, r);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  px_DrawTriangle(tb.pb, &a, &c, &d);
}

// Pixels drawn: the set of (x, y) whose pixel is not 0, as a rectangle check.
void expect_rect(TestBoard &tb, int x0, int y0, int x1, int y1) {
  for (int y = 0; y < tb.pb.height; ++y)
    for (int x = 0; x < tb.pb.width; ++x)
      ASSERT_EQ(tb.pixel(x, y) != 0, x >= x0 && x < x1 && y >= y0 && y < y1) << x << "," << y;
}

TEST(Clip, WindowRules) {
  const struct {
    FxU32 minx, miny, maxx, maxy;
    int x0, y0, x1, y1;  // expected drawn rectangle
  } cases[] = {
      {0, 0, 32, 24, 0, 0, 32, 24},     {3, 4, 10, 9, 3, 4, 10, 9},        // whole screen, inner window
      {5, 6, 1000, 1000, 5, 6, 32, 24}, // max clamped to the screen
      {20, 10, 8, 30, 0, 0, 0, 0},      // inverted in x: empty
      {2, 30, 9, 5, 0, 0, 0, 0},        // inverted in y (after clamping): empty
      {40, 40, 50, 50, 0, 0, 0, 0},     // entirely off screen
  };
  for (const auto &c : cases) {
    TestBoard tb(32, 24);
    px_ClipWindow(tb.pb, c.minx, c.miny, c.maxx, c.maxy);
    full_screen_quad(tb);
    expect_rect(tb, c.x0, c.y0, c.x1, c.y1);
    EXPECT_EQ(tb.pb.perf.pixelsIn, static_cast<uint32_t>((c.x1 - c.x0) * (c.y1 - c.y0)));
  }
}

// With a lower-left origin, y counts from the bottom row for vertices and for the clip window.
TEST(Clip, LowerLeftOriginFlipsRowsAndWindow) {
  TestBoard tb(16, 16);
  px_SstOrigin(tb.pb, GR_ORIGIN_LOWER_LEFT);
  GrVertex p = vtx(3.5f, 1.5f, 255);
  px_DrawPoint(tb.pb, &p);
  EXPECT_NE(tb.pixel(3, 14), 0);
  px_ClipWindow(tb.pb, 0, 0, 16, 4);  // the bottom four physical rows
  tb.fill(0);
  full_screen_quad(tb);
  expect_rect(tb, 0, 12, 16, 16);
}

TEST(Clear, FillsClipWindowOfDrawBuffer) {
  TestBoard tb(16, 12);
  tb.fillAux(7);
  px_ClipWindow(tb.pb, 2, 3, 10, 8);
  px_BufferClear(tb.pb, 0x00FF0000, 0x40, 0x1234);
  expect_rect(tb, 2, 3, 10, 8);
  EXPECT_EQ(tb.pixel(2, 3), rgb565(255, 0, 0));
  EXPECT_EQ(tb.aux(2, 3), 7);  // aux write enable off by default
  EXPECT_EQ(tb.pb.perf.pixelsOut, 40u);
  EXPECT_EQ(tb.pb.perf.pixelsIn, 0u);
  EXPECT_EQ(tb.buf[0][0], 0);  // front buffer untouched
}

// The aux buffer gets the depth when depth buffering is on, the alpha when it holds alpha, else the
// depth-bias register; only while its write enable is on.
TEST(Clear, AuxValueFollowsItsUse) {
  {
    TestBoard tb(4, 4);
    px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
    px_DepthMask(tb.pb, FXTRUE);
    px_BufferClear(tb.pb, 0, 0x40, 0xFFFF);
    EXPECT_EQ(tb.aux(3, 3), 0xFFFF);
  }
  {
    TestBoard tb(4, 4);
    px_ColorMask(tb.pb, FXFALSE, FXTRUE);
    tb.fill(0x5555);
    px_BufferClear(tb.pb, 0, 0x40, 0xFFFF);
    EXPECT_EQ(tb.aux(3, 3), 0x40);
    EXPECT_EQ(tb.pixel(3, 3), 0x5555);  // colour writes off
  }
  {
    TestBoard tb(4, 4);
    px_DepthBiasLevel(tb.pb, 33);
    px_DepthMask(tb.pb, FXTRUE);
    px_BufferClear(tb.pb, 0, 0x40, 0xFFFF);
    EXPECT_EQ(tb.aux(3, 3), 33);
  }
}

// Clearing dithers like drawing: the 4x4 pattern of a colour between two 565 levels.
TEST(Clear, DithersLikePixels) {
  TestBoard tb(8, 8);
  px_DitherMode(tb.pb, GR_DITHER_4x4);
  px_BufferClear(tb.pb, 0x00848484, 0, 0);
  TestBoard ref(8, 8);
  px_DitherMode(ref.pb, GR_DITHER_4x4);
  GrVertex a = vtx(-1, -1, 0x84, 0x84, 0x84), b = vtx(9, -1, 0x84, 0x84, 0x84), c = vtx(9, 9, 0x84, 0x84, 0x84),
           d = vtx(-1, 9, 0x84, 0x84, 0x84);
  px_DrawTriangle(ref.pb, &a, &b, &c);
  px_DrawTriangle(ref.pb, &a, &c, &d);
  EXPECT_EQ(tb.buf[1], ref.buf[1]);
  EXPECT_NE(tb.pixel(0, 0), tb.pixel(1, 0));
}

TEST(Masks, ColourMaskAndAuxSharing) {
  TestBoard tb(4, 4);
  px_ColorMask(tb.pb, FXFALSE, FXFALSE);
  GrVertex p = vtx(1, 1, 255, 255, 255, 99);
  px_DrawPoint(tb.pb, &p);
  EXPECT_EQ(tb.pixel(1, 1), 0);
  EXPECT_EQ(tb.pb.perf.pixelsOut, 1u);  // the pixel passed; only the write was masked
  // The alpha half turns the alpha buffer on while depth buffering is off...
  px_ColorMask(tb.pb, FXTRUE, FXTRUE);
  EXPECT_TRUE(tb.pb.state.alphaBuffer && tb.pb.state.auxWrite);
  // ...and is ignored while it is on.
  px_ColorMask(tb.pb, FXTRUE, FXFALSE);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_ZBUFFER);
  px_ColorMask(tb.pb, FXTRUE, FXTRUE);
  EXPECT_FALSE(tb.pb.state.alphaBuffer);
  // A triple-buffered board has no room for an alpha buffer.
  TestBoard triple(4, 4);
  triple.pb.nColBuffers = 3;
  px_ColorMask(triple.pb, FXTRUE, FXTRUE);
  EXPECT_FALSE(triple.pb.state.alphaBuffer);
}

TEST(RenderBuffer, FrontAndBack) {
  TestBoard tb(4, 4);
  GrVertex p = vtx(1, 1, 255);
  px_RenderBuffer(tb.pb, GR_BUFFER_FRONTBUFFER);
  px_DrawPoint(tb.pb, &p);
  EXPECT_NE(tb.buf[0][5], 0);
  EXPECT_EQ(tb.buf[1][5], 0);
  px_RenderBuffer(tb.pb, GR_BUFFER_AUXBUFFER);  // refused
  EXPECT_EQ(tb.pb.state.renderBuffer, GR_BUFFER_FRONTBUFFER);
}

}  // namespace
}  // namespace zvb::test
