// png_file_libpng.cpp: PNG files through libpng (Linux builds).
#include "png_image.h"

#include <cstring>
#include <cstdio>

#include <png.h>

namespace zvgl_test {

bool png_load(const std::string &path, RgbImage &out, std::string &error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str())) {
    error = image.message;
    return false;
  }
  image.format = PNG_FORMAT_RGB;
  out.width = static_cast<int>(image.width);
  out.height = static_cast<int>(image.height);
  out.rgb.assign(PNG_IMAGE_SIZE(image), 0);
  if (!png_image_finish_read(&image, nullptr, out.rgb.data(), 0, nullptr)) {
    error = image.message;
    png_image_free(&image);
    return false;
  }
  return true;
}

bool png_save(const std::string &path, const RgbImage &picture) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGB;
  return png_image_write_to_file(&image, path.c_str(), 0, picture.rgb.data(), 0, nullptr) != 0;
}

}  // namespace zvgl_test
