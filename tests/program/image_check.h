// image_check.h: comparing rendered frames with golden pictures, and the evidence written
// when they differ.
#pragma once

#include <cstddef>
#include <string>

#include "png_image.h"

namespace zvgl_test {

struct ImageDiff {
  bool sizeMatches = false;
  size_t differing = 0;  // pixels with any channel different
  int maxDelta = 0;      // largest channel difference
  int firstX = -1, firstY = -1;
};

ImageDiff image_diff(const RgbImage &actual, const RgbImage &expected);
// A picture of the differences: equal pixels as a dim grey copy of the expected picture,
// differing ones in red, brighter for larger differences.
RgbImage image_diff_picture(const RgbImage &actual, const RgbImage &expected);

// Checks `actual` against the golden PNG at `goldenPath`, exactly. On a mismatch writes
// <outDir>/<name>-actual.png and <name>-diff.png and explains in `message`. With the
// environment variable ZVGL_UPDATE_GOLDEN=1 the golden file is (re)written from `actual`
// instead and the check passes.
bool check_golden(const RgbImage &actual, const std::string &goldenPath, const std::string &outDir,
                  const std::string &name, std::string &message);

// Mean of the three channels of pixel (x, y).
int luminance(const RgbImage &image, int x, int y);

}  // namespace zvgl_test
