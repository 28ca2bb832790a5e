// Golden frames: small scenes drawn with many pipeline features at once, compared pixel for pixel
// with PNG files under golden/. On a mismatch the actual frame and a difference image are written
// to the test's temporary folder and the differing pixel runs are listed. Setting
// ZVGL_UPDATE_GOLDEN=1 rewrites the golden files instead.
#include <gtest/gtest.h>

#include <png.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "board_fixture.h"

namespace zvb::test {
namespace {

const std::string kGoldenDir = std::string(ZVGL_SOURCE_DIR) + "/board/tests/raster/golden/";

struct Image {
  int w = 0, h = 0;
  std::vector<unsigned char> rgb;  // 8 bits per channel, rows top to bottom
};

Image from_board(TestBoard &tb) {
  Image im;
  im.w = tb.pb.width;
  im.h = tb.pb.height;
  for (int y = 0; y < im.h; ++y)
    for (int x = 0; x < im.w; ++x) {
      const uint16_t p = tb.pixel(x, y);
      const int r = p >> 11, g = (p >> 5) & 63, b = p & 31;
      im.rgb.push_back(static_cast<unsigned char>((r << 3) | (r >> 2)));
      im.rgb.push_back(static_cast<unsigned char>((g << 2) | (g >> 4)));
      im.rgb.push_back(static_cast<unsigned char>((b << 3) | (b >> 2)));
    }
  return im;
}

bool write_png(const std::string &path, const Image &im) {
  FILE *f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    std::fclose(f);
    return false;
  }
  png_init_io(png, f);
  png_set_IHDR(png, info, static_cast<png_uint_32>(im.w), static_cast<png_uint_32>(im.h), 8, PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int y = 0; y < im.h; ++y) png_write_row(png, const_cast<unsigned char *>(&im.rgb[static_cast<size_t>(y) * im.w * 3]));
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(f);
  return true;
}

bool read_png(const std::string &path, Image &im) {
  png_image img;
  std::memset(&img, 0, sizeof img);
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&img, path.c_str())) return false;
  img.format = PNG_FORMAT_RGB;
  im.w = static_cast<int>(img.width);
  im.h = static_cast<int>(img.height);
  im.rgb.resize(PNG_IMAGE_SIZE(img));
  return png_image_finish_read(&img, nullptr, im.rgb.data(), 0, nullptr) != 0;
}

// Compares with the golden file; on a difference writes actual and difference images.
void expect_golden(const std::string &name, TestBoard &tb) {
  const Image actual = from_board(tb);
  const std::string golden = kGoldenDir + name + ".png";
  if (const char *u = std::getenv("ZVGL_UPDATE_GOLDEN"); u && *u == '1') {
    ASSERT_TRUE(write_png(golden, actual)) << golden;
    return;
  }
  Image expected;
  ASSERT_TRUE(read_png(golden, expected)) << "cannot read " << golden;
  ASSERT_EQ(expected.w, actual.w);
  ASSERT_EQ(expected.h, actual.h);
  Image diff = actual;
  std::string runs;
  int differing = 0;
  for (int y = 0; y < actual.h; ++y) {
    int runStart = -1;
    for (int x = 0; x <= actual.w; ++x) {
      bool differs = false;
      if (x < actual.w) {
        const size_t o = (static_cast<size_t>(y) * actual.w + x) * 3;
        differs = std::memcmp(&actual.rgb[o], &expected.rgb[o], 3) != 0;
        for (int k = 0; k < 3; ++k) diff.rgb[o + k] = differs ? (k == 0 ? 255 : 0) : static_cast<unsigned char>(actual.rgb[o + k] / 4);
        differing += differs;
      }
      if (differs && runStart < 0) runStart = x;
      if (!differs && runStart >= 0) {
        if (runs.size() < 2000) runs += "  row " + std::to_string(y) + ": x " + std::to_string(runStart) + ".." + std::to_string(x - 1) + "\n";
        runStart = -1;
      }
    }
  }
  if (differing) {
    const std::string dir = ::testing::TempDir();
    write_png(dir + name + "_actual.png", actual);
    write_png(dir + name + "_diff.png", diff);
    ADD_FAILURE() << differing << " pixels differ from " << golden << "; actual and difference images in " << dir
                  << "\n" << runs;
  }
}

// Gouraud triangles through a w-buffer with table fog, a blended translucent quad, lines, points and
// antialiased edges, dithered 4x4 with a lower-left origin and a clip window.
TEST(Golden, SceneWithEveryStage) {
  TestBoard tb(96, 72);
  px_DitherMode(tb.pb, GR_DITHER_4x4);
  px_SstOrigin(tb.pb, GR_ORIGIN_LOWER_LEFT);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_WBUFFER);
  px_DepthMask(tb.pb, FXTRUE);
  px_BufferClear(tb.pb, 0x00203040, 0, 0xFFFF);
  GrFog_t fog[64];
  px_fog_generate_linear(fog, 2.0f, 40.0f);
  px_FogTable(tb.pb, fog);
  px_FogColorValue(tb.pb, 0x00C0C0D0);
  px_FogMode(tb.pb, GR_FOG_WITH_TABLE);
  const float bias = 524288.0f;
  GrVertex a = vtx(bias + 4, bias + 4, 255, 0, 0, 255, 0, 1.0f), b = vtx(bias + 90, bias + 10, 0, 255, 0, 255, 0, 0.05f),
           c = vtx(bias + 30, bias + 68, 0, 0, 255, 255, 0, 0.3f);
  px_DrawTriangle(tb.pb, &a, &b, &c);
  GrVertex d = vtx(10, 60, 255, 255, 0, 255, 0, 0.5f), e = vtx(80, 50, 255, 0, 255, 255, 0, 0.5f),
           f = vtx(50, 2, 0, 255, 255, 255, 0, 0.5f);
  px_DrawTriangle(tb.pb, &d, &e, &f);  // interpenetrates the first through the w-buffer
  px_FogMode(tb.pb, GR_FOG_DISABLE);
  px_DepthBufferMode(tb.pb, GR_DEPTHBUFFER_DISABLE);
  px_AlphaCombine(tb.pb, GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_NONE, GR_COMBINE_LOCAL_ITERATED,
                  GR_COMBINE_OTHER_NONE, FXFALSE);
  px_AlphaBlendFunction(tb.pb, GR_BLEND_SRC_ALPHA, GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE, GR_BLEND_ZERO);
  GrVertex q[4] = {vtx(20, 20, 255, 255, 255, 40), vtx(70, 22, 255, 255, 255, 200), vtx(72, 40, 255, 255, 255, 120),
                   vtx(18, 44, 255, 255, 255, 0)};
  px_DrawPolygonVertexList(tb.pb, 4, q);
  px_ClipWindow(tb.pb, 4, 4, 92, 68);
  for (int i = 0; i < 12; ++i) {
    GrVertex l0 = vtx(2, 3.0f + i * 5.5f, 255, 255, 255, 255), l1 = vtx(94, 70.0f - i * 3.3f, 255, 128, 0, 255);
    if (i % 3 == 0) px_AADrawLine(tb.pb, &l0, &l1);
    else if (i % 3 == 1) px_DrawLine(tb.pb, &l0, &l1);
    GrVertex p = vtx(6.0f + i * 7.3f, 66.5f, 255, 255, 255, 255);
    px_AADrawPoint(tb.pb, &p);
  }
  GrVertex t0 = vtx(60, 60, 0, 0, 0, 255), t1 = vtx(90, 66, 255, 255, 255, 255), t2 = vtx(75, 40, 128, 128, 128, 255);
  px_AADrawTriangle(tb.pb, &t0, &t1, &t2, FXTRUE, FXTRUE, FXTRUE);
  expect_golden("scene", tb);
}

}  // namespace
}  // namespace zvb::test
