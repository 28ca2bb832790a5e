// The texture calls through the board's Glide entry points: textures reach the pixels in the
// order of the calls, refusals reach the error callback, and the saved state holds the TMUs.
#include <glide2/glide.h>
#include <zvgl/board_tool.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> g_errors;

void record_error(const char *text, FxBool) { g_errors.push_back(text); }

class TexGlide : public ::testing::Test {
 protected:
  void SetUp() override {
    zvbReset();
    grGlideInit();
    grErrorSetCallback(record_error);
    g_errors.clear();
    ASSERT_TRUE(grSstWinOpen(0, GR_RESOLUTION_640x480, GR_REFRESH_60Hz, GR_COLORFORMAT_ARGB,
                             GR_ORIGIN_UPPER_LEFT, 2, 1));
    grDitherMode(GR_DITHER_DISABLE);
    grColorCombine(GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE,
                   GR_COMBINE_LOCAL_ITERATED, GR_COMBINE_OTHER_TEXTURE, FXFALSE);
  }
  void TearDown() override { grGlideShutdown(); }

  // An 8x8 RGB565 texture of one colour at `address` of TMU0, bound as a decal.
  void texture(FxU32 address, uint16_t colour) {
    std::vector<uint16_t> texels(64, colour);
    GrTexInfo info{GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, texels.data()};
    grTexDownloadMipMap(GR_TMU0, address, GR_MIPMAPLEVELMASK_BOTH, &info);
    grTexSource(GR_TMU0, address, GR_MIPMAPLEVELMASK_BOTH, &info);
    grTexCombineFunction(GR_TMU0, GR_TEXTURECOMBINE_DECAL);
  }
  // A triangle covering pixel (x + 2, y + 2).
  void triangle(float x, float y) {
    GrVertex v[3] = {};
    v[0].x = x; v[0].y = y;
    v[1].x = x + 10; v[1].y = y;
    v[2].x = x; v[2].y = y + 10;
    for (GrVertex &p : v) {
      p.oow = 1;
      p.tmuvtx[0].sow = p.x;
      p.tmuvtx[0].tow = p.y;
    }
    grDrawTriangle(&v[0], &v[1], &v[2]);
  }
  uint16_t pixel(int x, int y) {
    uint16_t p = 0;
    EXPECT_TRUE(grLfbReadRegion(GR_BUFFER_BACKBUFFER, FxU32(x), FxU32(y), 1, 1, 2, &p));
    return p;
  }
};

TEST_F(TexGlide, TexturesReachThePixelsInCallOrder) {
  texture(0, 0xF800);
  triangle(10, 10);
  texture(0, 0x07E0);  // the same memory, after the first triangle was queued
  triangle(40, 10);
  EXPECT_EQ(pixel(12, 12), 0xF800);
  EXPECT_EQ(pixel(42, 12), 0x07E0);
  EXPECT_TRUE(g_errors.empty());
}

TEST_F(TexGlide, AddressesAndRefusals) {
  EXPECT_EQ(grTexMinAddress(GR_TMU0), 0u);
  EXPECT_EQ(grTexMaxAddress(GR_TMU1), (4u << 20) - 8);
  EXPECT_EQ(grTexCalcMemRequired(GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565), 174768u);
  std::vector<uint16_t> texels(87381, 0);
  GrTexInfo info{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, texels.data()};
  grTexDownloadMipMap(GR_TMU0, 0x200000 - 1024, GR_MIPMAPLEVELMASK_BOTH, &info);
  ASSERT_EQ(g_errors.size(), 1u);
  EXPECT_NE(g_errors[0].find("grTexDownloadMipMap"), std::string::npos);
  grTexCombineFunction(GR_TMU1, 42);
  grTexSource(GR_TMU2, 0, GR_MIPMAPLEVELMASK_BOTH, &info);
  grTexDownloadTable(GR_TMU0, GR_TEXTABLE_PALETTE, nullptr);
  EXPECT_EQ(g_errors.size(), 4u);
}

TEST_F(TexGlide, SavedStateHoldsTheTextureRegisters) {
  texture(4096, 0x001F);
  GrState saved;
  grGlideGetState(&saved);
  grTexCombineFunction(GR_TMU0, GR_TEXTURECOMBINE_ZERO);
  triangle(10, 10);
  EXPECT_EQ(pixel(12, 12), 0x0000);
  grGlideSetState(&saved);
  triangle(40, 10);
  EXPECT_EQ(pixel(42, 12), 0x001F);
}

TEST_F(TexGlide, ThreeDfFilesLoadThroughTheUtilityCalls) {
  const char *path = "tex_glide_test.3df";
  std::FILE *f = std::fopen(path, "wb");
  ASSERT_NE(f, nullptr);
  std::fputs("3df v1.1\nargb4444\nlod range: 8 8\naspect ratio: 1 1\n", f);
  for (int i = 0; i < 64; ++i) std::fputc(i == 0 ? 0xF0 : 0x12, f), std::fputc(0x34, f);
  std::fclose(f);
  Gu3dfInfo info{};
  ASSERT_TRUE(gu3dfGetInfo(path, &info));
  std::vector<uint8_t> data(info.mem_required);
  info.data = data.data();
  ASSERT_TRUE(gu3dfLoad(path, &info));
  std::remove(path);
  const FxU16 *t = reinterpret_cast<const FxU16 *>(data.data());
  EXPECT_EQ(t[0], 0xF034);
  EXPECT_EQ(t[1], 0x1234);
  EXPECT_FALSE(gu3dfGetInfo(path, &info));
}

}  // namespace
