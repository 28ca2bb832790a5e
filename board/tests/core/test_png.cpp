// The uncompressed PNG encoder, read back with libpng.
#include <gtest/gtest.h>

#include <png.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/png_stored.h"

namespace {

struct Reader {
  const uint8_t *data;
  size_t size, at;
};

void read_bytes(png_structp png, png_bytep out, png_size_t n) {
  Reader *r = static_cast<Reader *>(png_get_io_ptr(png));
  if (r->at + n > r->size) png_error(png, "short PNG");
  std::memcpy(out, r->data + r->at, n);
  r->at += n;
}

// Decodes a PNG with libpng; empty on any error (CRC, Adler-32, structure).
std::vector<uint8_t> decode(const uint8_t *data, size_t size, int *w, int *h) {
  std::vector<uint8_t> pixels;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  Reader r{data, size, 0};
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_read_struct(&png, &info, nullptr);
    return {};
  }
  png_set_read_fn(png, &r, read_bytes);
  png_read_info(png, info);
  *w = static_cast<int>(png_get_image_width(png, info));
  *h = static_cast<int>(png_get_image_height(png, info));
  EXPECT_EQ(png_get_color_type(png, info), PNG_COLOR_TYPE_RGB);
  EXPECT_EQ(png_get_bit_depth(png, info), 8);
  pixels.resize(static_cast<size_t>(*w) * static_cast<size_t>(*h) * 3);
  for (int y = 0; y < *h; ++y) png_read_row(png, pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(*w) * 3, nullptr);
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  return pixels;
}

}  // namespace

TEST(StoredPng, DecodesToTheWidenedPixels) {
  // 300 x 200 needs several stored blocks of at most 65535 bytes.
  for (auto [w, h] : {std::pair{1, 1}, std::pair{300, 200}, std::pair{7, 3}}) {
    std::vector<uint16_t> src(static_cast<size_t>(w) * static_cast<size_t>(h));
    for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<uint16_t>(i * 2654435761u >> 7);
    uint8_t *data = nullptr;
    size_t size = 0;
    ASSERT_EQ(zvb::png_encode_stored(src.data(), w, h, &data, &size), 1);
    int dw = 0, dh = 0;
    const std::vector<uint8_t> got = decode(data, size, &dw, &dh);
    std::free(data);
    ASSERT_EQ(dw, w);
    ASSERT_EQ(dh, h);
    ASSERT_EQ(got.size(), src.size() * 3);
    std::vector<uint8_t> expect(src.size() * 3);
    for (int y = 0; y < h; ++y) zvb::widen_row(src.data() + y * w, w, expect.data() + static_cast<size_t>(y) * w * 3);
    EXPECT_EQ(got, expect);
    EXPECT_EQ(expect[0] & 7, expect[0] >> 5) << "5-bit values widen by replicating their top bits";
  }
}

TEST(StoredPng, CorruptionIsDetected) {
  const uint16_t px[4] = {1, 2, 3, 4};
  uint8_t *data = nullptr;
  size_t size = 0;
  ASSERT_EQ(zvb::png_encode_stored(px, 2, 2, &data, &size), 1);
  data[size - 20] ^= 1;  // a pixel byte near the end of IDAT: CRC and Adler-32 both break
  int w, h;
  EXPECT_TRUE(decode(data, size, &w, &h).empty());
  std::free(data);
  EXPECT_EQ(zvb::crc32_update(0, reinterpret_cast<const uint8_t *>("IEND"), 4), 0xAE426082u);
}
