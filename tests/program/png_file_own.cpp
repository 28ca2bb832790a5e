// png_file_own.cpp: PNG files through this folder's own reader and stored writer (Windows
// builds, which have no libpng).
#include "png_image.h"

#include <cstdio>

namespace zvgl_test {

bool png_load(const std::string &path, RgbImage &out, std::string &error) {
  std::vector<uint8_t> data;
  if (!read_file(path, data)) {
    error = "cannot read " + path;
    return false;
  }
  return png_decode(data.data(), data.size(), out, error);
}

bool png_save(const std::string &path, const RgbImage &image) {
  std::vector<uint8_t> data;
  png_encode_stored(image, data);
  FILE *f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  const bool ok = std::fwrite(data.data(), 1, data.size(), f) == data.size();
  return (std::fclose(f) == 0) && ok;
}

}  // namespace zvgl_test
