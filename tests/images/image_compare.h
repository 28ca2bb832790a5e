// Pictures of the image tests: RGB images, PNG files, and the two comparisons a rendering
// goes through (exact against its golden file, within a tolerance against Mesa's rendering).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// An 8-bit RGB image, row 0 at the top.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgb;  // width * height * 3

    const uint8_t* at(int x, int y) const { return &rgb[((size_t)y * width + x) * 3]; }
    uint8_t* at(int x, int y) { return &rgb[((size_t)y * width + x) * 3]; }
};

Image makeImage(int width, int height);

// Reads a PNG file as 8-bit RGB (any PNG colour type is converted); false when the file is
// missing or unreadable.
bool readPng(const std::string& path, Image& out);
// Writes 8-bit RGB; creates no folders. False on failure.
bool writePng(const std::string& path, const Image& image);

// Which pixels a comparison looks at: one flag a pixel, true = compared.
struct PixelMask {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> keep;

    bool kept(int x, int y) const { return keep[(size_t)y * width + x] != 0; }
};

// Every pixel kept.
PixelMask fullMask(int width, int height);
// Drops, from `mask`, the pixels of `reference` that lie on or next to an edge: a pixel
// whose 3x3 neighbourhood holds a channel step greater than `step`. Two rasterisers that
// place an edge up to one pixel apart then still compare the same pixels.
void dropEdges(PixelMask& mask, const Image& reference, int step);
// Drops the rectangle [x0, x1) x [y0, y1) (image rows, top-down) from `mask`.
void dropRect(PixelMask& mask, int x0, int y0, int x1, int y1);

// How close two renderings of the same commands must be.
struct Tolerance {
    int channel = 0;          // a pixel differs when one channel differs by more than this
    double fraction = 0.0;    // greatest share of compared pixels allowed to differ
};

struct CompareResult {
    bool sameSize = true;
    long compared = 0;        // pixels the mask kept
    long differing = 0;       // of those, pixels beyond the channel tolerance
    int worst = 0;            // greatest channel difference over the compared pixels
    Image difference;         // black where equal; differing pixels in red, scaled by size
};

// Compares `actual` with `expected` over the kept pixels of `mask`.
CompareResult compareImages(const Image& actual, const Image& expected, const PixelMask& mask,
                            int channelTolerance);
// True when the comparison lies within `tol`.
bool withinTolerance(const CompareResult& r, const Tolerance& tol);
