// The tests' own PNG reader and stored writer, held to libpng and zlib. The Windows
// whole-program test trusts this reader to compare the board's frames with the golden files,
// so it must decode every block type and filter that zlib and libpng write, and refuse damage.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <png.h>
#include <zlib.h>

#include "png_image.h"

using namespace zvgl_test;

namespace {

// A picture with smooth gradients, hard edges and noise, so that the encoders use every
// filter and a mix of literals and matches.
RgbImage test_picture(int w, int h) {
  RgbImage img;
  img.width = w;
  img.height = h;
  img.rgb.resize(static_cast<size_t>(w) * h * 3);
  uint32_t noise = 12345;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      noise = noise * 1103515245u + 12345u;
      uint8_t *p = &img.rgb[(static_cast<size_t>(y) * w + x) * 3];
      p[0] = static_cast<uint8_t>(x * 255 / (w - 1));
      p[1] = static_cast<uint8_t>(((x / 8 + y / 8) & 1) ? 200 : 30);
      p[2] = static_cast<uint8_t>(y < h / 2 ? (noise >> 16) : y * 2);
    }
  return img;
}

void put32(std::vector<uint8_t> &out, uint32_t v) {
  for (int s = 24; s >= 0; s -= 8) out.push_back(static_cast<uint8_t>(v >> s));
}

void chunk(std::vector<uint8_t> &out, const char *type, const std::vector<uint8_t> &data) {
  put32(out, static_cast<uint32_t>(data.size()));
  std::vector<uint8_t> body(type, type + 4);
  body.insert(body.end(), data.begin(), data.end());
  out.insert(out.end(), body.begin(), body.end());
  put32(out, static_cast<uint32_t>(crc32(0, body.data(), static_cast<uInt>(body.size()))));
}

// A PNG of the picture whose rows all use `filter` (the filtering done here) and whose data
// zlib compresses with `level` and `strategy`.
std::vector<uint8_t> png_with_zlib(const RgbImage &img, int filter, int level, int strategy) {
  const size_t stride = static_cast<size_t>(img.width) * 3;
  std::vector<uint8_t> raw;
  for (int y = 0; y < img.height; ++y) {
    raw.push_back(static_cast<uint8_t>(filter));
    const uint8_t *cur = &img.rgb[y * stride];
    const uint8_t *prev = y ? cur - stride : nullptr;
    for (size_t i = 0; i < stride; ++i) {
      const int a = i >= 3 ? cur[i - 3] : 0, b = prev ? prev[i] : 0, c = prev && i >= 3 ? prev[i - 3] : 0;
      int pred = 0;
      if (filter == 1) pred = a;
      if (filter == 2) pred = b;
      if (filter == 3) pred = (a + b) / 2;
      if (filter == 4) {
        const int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
        pred = (pa <= pb && pa <= pc) ? a : pb <= pc ? b : c;
      }
      raw.push_back(static_cast<uint8_t>(cur[i] - pred));
    }
  }
  z_stream zs;
  std::memset(&zs, 0, sizeof zs);
  EXPECT_EQ(deflateInit2(&zs, level, Z_DEFLATED, 15, 8, strategy), Z_OK);
  std::vector<uint8_t> z(deflateBound(&zs, raw.size()));
  zs.next_in = raw.data();
  zs.avail_in = static_cast<uInt>(raw.size());
  zs.next_out = z.data();
  zs.avail_out = static_cast<uInt>(z.size());
  EXPECT_EQ(deflate(&zs, Z_FINISH), Z_STREAM_END);
  z.resize(zs.total_out);
  deflateEnd(&zs);

  std::vector<uint8_t> out = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  std::vector<uint8_t> ihdr;
  put32(ihdr, static_cast<uint32_t>(img.width));
  put32(ihdr, static_cast<uint32_t>(img.height));
  const uint8_t rest[5] = {8, 2, 0, 0, 0};
  ihdr.insert(ihdr.end(), rest, rest + 5);
  chunk(out, "IHDR", ihdr);
  // Two IDAT chunks: the reader must join them.
  const size_t half = z.size() / 2;
  chunk(out, "IDAT", std::vector<uint8_t>(z.begin(), z.begin() + half));
  chunk(out, "IDAT", std::vector<uint8_t>(z.begin() + half, z.end()));
  chunk(out, "IEND", {});
  return out;
}

TEST(PngCodec, DecodesEveryFilterAndBlockTypeThatZlibWrites) {
  const RgbImage img = test_picture(97, 61);
  struct {
    int level, strategy;
    const char *what;
  } const modes[] = {{0, Z_DEFAULT_STRATEGY, "stored"},
                     {6, Z_FIXED, "fixed codes"},
                     {9, Z_DEFAULT_STRATEGY, "dynamic codes"},
                     {6, Z_HUFFMAN_ONLY, "literals only"},
                     {6, Z_RLE, "run lengths"}};
  for (const auto &m : modes)
    for (int filter = 0; filter <= 4; ++filter) {
      SCOPED_TRACE(std::string(m.what) + ", filter " + std::to_string(filter));
      const std::vector<uint8_t> file = png_with_zlib(img, filter, m.level, m.strategy);
      RgbImage got;
      std::string error;
      ASSERT_TRUE(png_decode(file.data(), file.size(), got, error)) << error;
      EXPECT_EQ(got.width, img.width);
      EXPECT_EQ(got.height, img.height);
      EXPECT_TRUE(got.rgb == img.rgb);
    }
}

TEST(PngCodec, AgreesWithLibpngOnItsOwnFilesAndTheGoldenFrames) {
  const std::filesystem::path tmp = std::filesystem::temp_directory_path() / "zvgl-png-codec-test.png";
  const RgbImage img = test_picture(200, 150);
  ASSERT_TRUE(png_save(tmp.string(), img));  // libpng: adaptive filters, dynamic codes
  std::vector<uint8_t> file;
  ASSERT_TRUE(read_file(tmp.string(), file));
  RgbImage own;
  std::string error;
  ASSERT_TRUE(png_decode(file.data(), file.size(), own, error)) << error;
  EXPECT_TRUE(own.rgb == img.rgb);

  // The stored writer's file, read by libpng.
  std::vector<uint8_t> stored;
  png_encode_stored(img, stored);
  FILE *f = std::fopen(tmp.string().c_str(), "wb");
  ASSERT_NE(f, nullptr);
  ASSERT_EQ(std::fwrite(stored.data(), 1, stored.size(), f), stored.size());
  std::fclose(f);
  RgbImage viaLibpng;
  ASSERT_TRUE(png_load(tmp.string(), viaLibpng, error)) << error;
  EXPECT_TRUE(viaLibpng.rgb == img.rgb);
  std::filesystem::remove(tmp);

  int goldens = 0;
  for (const auto &entry : std::filesystem::directory_iterator(std::string(ZVGL_SOURCE_DIR) + "/tests/program/golden")) {
    if (entry.path().extension() != ".png") continue;
    SCOPED_TRACE(entry.path().string());
    RgbImage a, b;
    ASSERT_TRUE(png_load(entry.path().string(), a, error)) << error;
    ASSERT_TRUE(read_file(entry.path().string(), file));
    ASSERT_TRUE(png_decode(file.data(), file.size(), b, error)) << error;
    EXPECT_TRUE(a.rgb == b.rgb);
    ++goldens;
  }
  EXPECT_GT(goldens, 0);
}

TEST(PngCodec, RefusesDamagedFiles) {
  const RgbImage img = test_picture(40, 30);
  const std::vector<uint8_t> good = png_with_zlib(img, 4, 9, Z_DEFAULT_STRATEGY);
  RgbImage out;
  std::string error;
  ASSERT_TRUE(png_decode(good.data(), good.size(), out, error)) << error;

  std::vector<uint8_t> bad = good;
  bad[8 + 8 + 13 + 4 + 8 + 10] ^= 0x40;  // a byte inside the first IDAT: its CRC no longer holds
  EXPECT_FALSE(png_decode(bad.data(), bad.size(), out, error));
  EXPECT_NE(error.find("CRC"), std::string::npos) << error;

  // Cut short: the chunk runs past the end.
  EXPECT_FALSE(png_decode(good.data(), good.size() / 2, out, error));
  // Not a PNG at all.
  EXPECT_FALSE(png_decode(good.data() + 1, good.size() - 1, out, error));
  // Sixteen bits per sample are not what the board writes: refused, not misread.
  bad = good;
  bad[8 + 8 + 8] = 16;
  const uint32_t crc = static_cast<uint32_t>(crc32(0, &bad[8 + 4], 17));
  for (int k = 0; k < 4; ++k) bad[8 + 8 + 13 + k] = static_cast<uint8_t>(crc >> (24 - 8 * k));
  EXPECT_FALSE(png_decode(bad.data(), bad.size(), out, error));
  EXPECT_NE(error.find("unsupported"), std::string::npos) << error;
}

}  // namespace
