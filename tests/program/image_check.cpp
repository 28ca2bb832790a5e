// image_check.cpp: exact frame comparison with difference pictures.
#include "image_check.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zvgl_test {

ImageDiff image_diff(const RgbImage &actual, const RgbImage &expected) {
  ImageDiff d;
  d.sizeMatches = actual.width == expected.width && actual.height == expected.height &&
                  actual.rgb.size() == expected.rgb.size();
  if (!d.sizeMatches) return d;
  for (int y = 0; y < actual.height; ++y)
    for (int x = 0; x < actual.width; ++x) {
      const size_t i = (static_cast<size_t>(y) * actual.width + x) * 3;
      int worst = 0;
      for (int c = 0; c < 3; ++c) {
        const int delta = std::abs(actual.rgb[i + c] - expected.rgb[i + c]);
        if (delta > worst) worst = delta;
      }
      if (!worst) continue;
      if (!d.differing) {
        d.firstX = x;
        d.firstY = y;
      }
      ++d.differing;
      if (worst > d.maxDelta) d.maxDelta = worst;
    }
  return d;
}

RgbImage image_diff_picture(const RgbImage &actual, const RgbImage &expected) {
  RgbImage out;
  out.width = expected.width;
  out.height = expected.height;
  out.rgb.assign(expected.rgb.size(), 0);
  const bool same = actual.width == expected.width && actual.height == expected.height;
  for (size_t i = 0; i + 2 < expected.rgb.size(); i += 3) {
    int worst = 0;
    for (int c = 0; c < 3 && same; ++c) {
      const int delta = std::abs(actual.rgb[i + c] - expected.rgb[i + c]);
      if (delta > worst) worst = delta;
    }
    if (worst) {
      out.rgb[i] = static_cast<uint8_t>(128 + (worst > 127 ? 127 : worst));
    } else {
      const uint8_t grey = static_cast<uint8_t>((expected.rgb[i] + expected.rgb[i + 1] + expected.rgb[i + 2]) / 9);
      out.rgb[i] = out.rgb[i + 1] = out.rgb[i + 2] = grey;
    }
  }
  return out;
}

bool check_golden(const RgbImage &actual, const std::string &goldenPath, const std::string &outDir,
                  const std::string &name, std::string &message) {
  const char *update = std::getenv("ZVGL_UPDATE_GOLDEN");
  if (update && update[0] == '1') {
    if (!png_save(goldenPath, actual)) {
      message = "cannot write the golden " + goldenPath;
      return false;
    }
    message = "golden written: " + goldenPath;
    return true;
  }
  RgbImage expected;
  std::string error;
  const std::string actualPath = outDir + "/" + name + "-actual.png";
  if (!png_load(goldenPath, expected, error)) {
    png_save(actualPath, actual);
    message = "no golden " + goldenPath + " (" + error + "); the frame is in " + actualPath +
              " (ZVGL_UPDATE_GOLDEN=1 writes the golden)";
    return false;
  }
  const ImageDiff d = image_diff(actual, expected);
  if (d.sizeMatches && d.differing == 0) return true;
  png_save(actualPath, actual);
  char text[512];
  if (!d.sizeMatches) {
    std::snprintf(text, sizeof text, "%s: size %dx%d, golden %dx%d; actual in %s", name.c_str(), actual.width,
                  actual.height, expected.width, expected.height, actualPath.c_str());
  } else {
    const std::string diffPath = outDir + "/" + name + "-diff.png";
    png_save(diffPath, image_diff_picture(actual, expected));
    std::snprintf(text, sizeof text,
                  "%s: %zu pixels differ from %s (first at %d,%d, largest channel difference %d); actual in %s, "
                  "difference in %s",
                  name.c_str(), d.differing, goldenPath.c_str(), d.firstX, d.firstY, d.maxDelta, actualPath.c_str(),
                  diffPath.c_str());
  }
  message = text;
  return false;
}

int luminance(const RgbImage &image, int x, int y) {
  const uint32_t v = image.at(x, y);
  return static_cast<int>(((v >> 16) & 255) + ((v >> 8) & 255) + (v & 255)) / 3;
}

}  // namespace zvgl_test
