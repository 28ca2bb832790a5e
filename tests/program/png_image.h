// png_image.h: 8-bit RGB pictures and their PNG files, for the whole-program tests.
//
// png_decode and png_encode_stored are this folder's own: a PNG reader with a complete
// inflate (stored, fixed and dynamic Huffman blocks) and a writer of uncompressed (stored)
// PNG files. They serve the Windows tests, for which Debian has no libpng. png_load and
// png_save use libpng on Linux and the own code on Windows; a Linux test holds the own reader
// to libpng's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zvgl_test {

struct RgbImage {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> rgb;  // 3 bytes a pixel, rows from the top, no padding

  uint32_t at(int x, int y) const {  // 0xRRGGBB
    const uint8_t *p = &rgb[(static_cast<size_t>(y) * width + x) * 3];
    return static_cast<uint32_t>(p[0]) << 16 | static_cast<uint32_t>(p[1]) << 8 | p[2];
  }
};

// Decodes a PNG file held in memory: 8-bit grey, RGB, grey with alpha or RGBA, not
// interlaced (alpha is dropped, grey is spread to RGB). False with the reason in `error`.
bool png_decode(const uint8_t *data, size_t size, RgbImage &out, std::string &error);
// A PNG file of the picture with its pixels in stored deflate blocks.
void png_encode_stored(const RgbImage &image, std::vector<uint8_t> &out);

// Reads and writes PNG files (libpng on Linux, the functions above on Windows).
bool png_load(const std::string &path, RgbImage &out, std::string &error);
bool png_save(const std::string &path, const RgbImage &image);

// A whole file into memory; false when it cannot be read.
bool read_file(const std::string &path, std::vector<uint8_t> &out);

}  // namespace zvgl_test
