// .3df files written by the test: headers, tables and texels of several formats, and files that
// lie, stop early or are not .3df at all.
#include "tmu/tmu.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace zvb;

namespace {

class Tex3df : public ::testing::Test {
 protected:
  std::string path_;
  void SetUp() override {
    const ::testing::TestInfo *info = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::string("tmu_3df_") + info->name() + ".3df";
  }
  void TearDown() override { std::remove(path_.c_str()); }

  void write(const std::string &header, const std::vector<uint8_t> &body) {
    std::FILE *f = std::fopen(path_.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(header.data(), 1, header.size(), f);
    if (!body.empty()) std::fwrite(body.data(), 1, body.size(), f);
    std::fclose(f);
  }

  // Reads a file through both calls into `data`; returns the load result.
  FxBool load(Gu3dfInfo *info, std::vector<uint8_t> *data) {
    if (!tmu_3df_get_info(path_.c_str(), info)) return FXFALSE;
    data->assign(info->mem_required, 0xEE);
    info->data = data->data();
    return tmu_3df_load(path_.c_str(), info);
  }
};

void put16(std::vector<uint8_t> &v, uint32_t x) {
  v.push_back(uint8_t(x >> 8));
  v.push_back(uint8_t(x));
}

}  // namespace

TEST_F(Tex3df, Rgb565ChainWithBigEndianTexels) {
  // Levels 4x4, 2x2, 1x1: texel i of the file is 0x1200 + i.
  std::vector<uint8_t> body;
  for (uint32_t i = 0; i < 21; ++i) put16(body, 0x1200 + i);
  write("3df v1.1\nrgb565\nlod range: 1 4\naspect ratio: 1 1\n", body);
  Gu3dfInfo info{};
  std::vector<uint8_t> data;
  ASSERT_TRUE(load(&info, &data));
  EXPECT_EQ(info.header.width, 4u);
  EXPECT_EQ(info.header.height, 4u);
  EXPECT_EQ(info.header.large_lod, GR_LOD_4);
  EXPECT_EQ(info.header.small_lod, GR_LOD_1);
  EXPECT_EQ(info.header.aspect_ratio, GR_ASPECT_1x1);
  EXPECT_EQ(info.header.format, GR_TEXFMT_RGB_565);
  EXPECT_EQ(info.mem_required, 42u);  // exact host size, no minimums
  const FxU16 *t = reinterpret_cast<const FxU16 *>(data.data());
  for (int i = 0; i < 21; ++i) EXPECT_EQ(t[i], 0x1200 + i);
}

TEST_F(Tex3df, AspectRatiosAndSizes) {
  struct { const char *aspect; int lodRange[2]; int value; uint32_t w, h, bytes; } cases[] = {
      {"8 1", {1, 64}, GR_ASPECT_8x1, 64, 8, 64 * 8 + 32 * 4 + 16 * 2 + 8 + 4 + 2 + 1},
      {"1 4", {4, 16}, GR_ASPECT_1x4, 4, 16, 4 * 16 + 2 * 8 + 1 * 4},
      {"2 1", {256, 256}, GR_ASPECT_2x1, 256, 128, 256 * 128},
  };
  for (const auto &c : cases) {
    write("3df v1.0\nI8\nlod range: " + std::to_string(c.lodRange[0]) + " " +
              std::to_string(c.lodRange[1]) + "\naspect ratio: " + c.aspect + "\n",
          std::vector<uint8_t>(c.bytes, 7));
    Gu3dfInfo info{};
    std::vector<uint8_t> data;
    ASSERT_TRUE(load(&info, &data)) << c.aspect;
    EXPECT_EQ(info.header.aspect_ratio, c.value);
    EXPECT_EQ(info.header.width, c.w);
    EXPECT_EQ(info.header.height, c.h);
    EXPECT_EQ(info.mem_required, c.bytes);
    EXPECT_EQ(info.header.format, GR_TEXFMT_INTENSITY_8);
  }
}

TEST_F(Tex3df, PaletteFormatsCarryTheirPalette) {
  std::vector<uint8_t> body;
  for (uint32_t i = 0; i < 256; ++i) {
    put16(body, 0xAB00 | i);  // top byte ignored by the board, kept in the table
    put16(body, (i << 8) | (255 - i));
  }
  for (uint32_t i = 0; i < 4; ++i) put16(body, 0x8000 | i);  // AP88 2x2 level
  write("3df v1.1\nap88\nlod range: 2 2\naspect ratio: 1 1\n", body);
  Gu3dfInfo info{};
  std::vector<uint8_t> data;
  ASSERT_TRUE(load(&info, &data));
  EXPECT_EQ(info.header.format, GR_TEXFMT_AP_88);
  EXPECT_EQ(info.table.palette.data[3], 0xAB0303FCu);
  EXPECT_EQ(info.table.palette.data[255], 0xABFFFF00u);
  const FxU16 *t = reinterpret_cast<const FxU16 *>(data.data());
  EXPECT_EQ(t[3], 0x8003);
  // What the board makes of it: the texel's palette colour with the texel's alpha.
  EXPECT_EQ(tmu_decode_texel(info.header.format, t[3], nullptr, info.table.palette.data),
            0x800303FCu);
}

// The NCC table is stored as 16 Y, 12 I and 12 Q words; the loader keeps I and Q as raw 9-bit
// patterns and builds the packed form the board decodes.
TEST_F(Tex3df, YiqFilesBuildThePackedNccTable) {
  std::vector<uint8_t> body;
  for (uint32_t i = 0; i < 16; ++i) put16(body, 0x100 | (i * 16));  // high bits ignored
  const int iv[12] = {0, 0, 0, 40, -20, -256, -100, 255, 10, 5, 5, 5};
  const int qv[12] = {0, 0, 0, -1, 1, -1, 200, -200, 0, -30, 0, 30};
  for (int v : iv) put16(body, uint32_t(v) & 0xFFFF);
  for (int v : qv) put16(body, uint32_t(v) & 0xFFFF);
  body.push_back(0x86);
  body.push_back(0xAF);
  write("3df v1.1\nyiq\nlod range: 1 1\naspect ratio: 2 1\n", body);
  Gu3dfInfo info{};
  std::vector<uint8_t> data;
  // 1x1 level of a 2x1 aspect: one texel; the second byte is not part of the texture.
  ASSERT_TRUE(load(&info, &data));
  EXPECT_EQ(info.mem_required, 1u);
  const GuNccTable &t = info.table.nccTable;
  EXPECT_EQ(t.yRGB[15], 240);
  EXPECT_EQ(t.iRGB[1][2], 0x100);  // -256 as a 9-bit pattern
  EXPECT_EQ(t.qRGB[3][0], 0x1E2);  // -30
  EXPECT_EQ(t.packed_data[1], 0x70605040u);
  EXPECT_EQ(t.packed_data[6], (uint32_t(-100) & 0x1FFu) << 18 | 255u << 9 | 10u);
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_YIQ_422, data[0], t.packed_data, nullptr), 0xFFFF0000u);
  // The table sent to a TMU decodes like the file's own values.
  TmuMemory mem;
  tmu_memory_init(mem, 4096);
  ASSERT_TRUE(tmu_TexDownloadTable(mem, GR_TEXTABLE_NCC1, &t));
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_YIQ_422, 0xAF, mem.ncc[1], nullptr), 0xFF87A5C3u);
}

TEST_F(Tex3df, UpperCaseAndLowerCaseNamesOfEveryFormat) {
  const struct { const char *name; int format; } names[] = {
      {"i8", GR_TEXFMT_INTENSITY_8}, {"A8", GR_TEXFMT_ALPHA_8}, {"Ai44", GR_TEXFMT_ALPHA_INTENSITY_44},
      {"rgb332", GR_TEXFMT_RGB_332}, {"argb8332", GR_TEXFMT_ARGB_8332},
      {"argb1555", GR_TEXFMT_ARGB_1555}, {"ARGB4444", GR_TEXFMT_ARGB_4444},
      {"ai88", GR_TEXFMT_ALPHA_INTENSITY_88}, {"p8", GR_TEXFMT_P_8}, {"ayiq8422", GR_TEXFMT_AYIQ_8422}};
  for (const auto &n : names) {
    write(std::string("3df v1.1\n") + n.name + "\nlod range: 1 8\naspect ratio: 1 1\n", {});
    Gu3dfInfo info{};
    ASSERT_TRUE(tmu_3df_get_info(path_.c_str(), &info)) << n.name;
    EXPECT_EQ(info.header.format, n.format) << n.name;
    EXPECT_EQ(info.mem_required, uint32_t(85 * tmu_format_bytes(n.format)));
  }
}

TEST_F(Tex3df, BadHeadersAreRefused) {
  const char *headers[] = {
      "3df v1.1\np6666\nlod range: 1 8\naspect ratio: 1 1\n",     // a name the board lacks
      "3df v1.1\n# made by hand\nrgb565\nlod range: 1 8\naspect ratio: 1 1\n",  // comment line
      "3df v1.1\nrgb565\nlod range: 3 8\naspect ratio: 1 1\n",    // not a power of two
      "3df v1.1\nrgb565\nlod range: 16 8\naspect ratio: 1 1\n",   // small above large
      "3df v1.1\nrgb565\nlod range: 1 512\naspect ratio: 1 1\n",  // larger than 256
      "3df v1.1\nrgb565\nlod range: 1 8\naspect ratio: 2 2\n",    // not an aspect
      "3df v1.1\nrgb565\nlod range: 1 8\naspect ratio: 16 1\n",
      "3df v1.1\nrgb565\nlod range: 1 99999999999\naspect ratio: 1 1\n",
      "3df v1.1\nrgb565\nlod range: 1 8\n",                        // three lines
      "PNG\nrgb565\nlod range: 1 8\naspect ratio: 1 1\n",          // not a .3df file
      "",
  };
  for (const char *h : headers) {
    write(h, {});
    Gu3dfInfo info{};
    info.mem_required = 12345;
    EXPECT_FALSE(tmu_3df_get_info(path_.c_str(), &info)) << h;
    EXPECT_EQ(info.mem_required, 12345u);
  }
  // A header longer than 100 bytes.
  write("3df v1.1" + std::string(120, ' ') + "\nrgb565\nlod range: 1 8\naspect ratio: 1 1\n", {});
  Gu3dfInfo info{};
  EXPECT_FALSE(tmu_3df_get_info(path_.c_str(), &info));
  EXPECT_FALSE(tmu_3df_get_info("no/such/file.3df", &info));
  EXPECT_FALSE(tmu_3df_get_info(nullptr, &info));
}

// A header that promises more than the file holds, a palette cut short, and a caller whose buffer
// is smaller than the header it hands back: all refused, nothing written past the buffer.
TEST_F(Tex3df, TruncatedFilesAndLyingCallersFailCleanly) {
  write("3df v1.1\nrgb565\nlod range: 1 256\naspect ratio: 1 1\n", std::vector<uint8_t>(1000, 1));
  Gu3dfInfo info{};
  std::vector<uint8_t> data;
  EXPECT_FALSE(load(&info, &data));
  write("3df v1.1\np8\nlod range: 1 1\naspect ratio: 1 1\n", std::vector<uint8_t>(600, 1));
  EXPECT_FALSE(load(&info, &data));

  write("3df v1.1\ni8\nlod range: 1 8\naspect ratio: 1 1\n", std::vector<uint8_t>(85, 9));
  ASSERT_TRUE(tmu_3df_get_info(path_.c_str(), &info));
  std::vector<uint8_t> small(16 + 85, 0xEE);
  info.data = small.data() + 16;
  info.header.large_lod = GR_LOD_256;  // the caller changed the header, not the size
  EXPECT_FALSE(tmu_3df_load(path_.c_str(), &info));
  info.header.large_lod = GR_LOD_8;
  info.header.format = GR_TEXFMT_RSVD1;
  EXPECT_FALSE(tmu_3df_load(path_.c_str(), &info));
  info.header.format = GR_TEXFMT_INTENSITY_8;
  info.data = nullptr;
  EXPECT_FALSE(tmu_3df_load(path_.c_str(), &info));
  info.data = small.data() + 16;
  EXPECT_TRUE(tmu_3df_load(path_.c_str(), &info));
  EXPECT_EQ(small[15], 0xEE);
  EXPECT_EQ(small[16], 9);
  EXPECT_EQ(small.back(), 9);
}
