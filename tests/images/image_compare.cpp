// PNG files through libpng's simplified interface, and the pixel comparisons.
#include "image_compare.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <png.h>

Image makeImage(int width, int height)
{
    Image image;
    image.width = width;
    image.height = height;
    image.rgb.assign((size_t)width * height * 3, 0);
    return image;
}

bool readPng(const std::string& path, Image& out)
{
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str()))
        return false;
    png.format = PNG_FORMAT_RGB;
    Image image = makeImage((int)png.width, (int)png.height);
    if (!png_image_finish_read(&png, nullptr, image.rgb.data(), 0, nullptr)) {
        png_image_free(&png);
        return false;
    }
    out = std::move(image);
    return true;
}

bool writePng(const std::string& path, const Image& image)
{
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = (png_uint_32)image.width;
    png.height = (png_uint_32)image.height;
    png.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&png, path.c_str(), 0, image.rgb.data(), 0, nullptr) != 0;
}

PixelMask fullMask(int width, int height)
{
    PixelMask mask;
    mask.width = width;
    mask.height = height;
    mask.keep.assign((size_t)width * height, 1);
    return mask;
}

// The greatest channel difference between two pixels.
static int channelStep(const uint8_t* a, const uint8_t* b)
{
    int worst = 0;
    for (int c = 0; c < 3; ++c)
        worst = std::max(worst, std::abs((int)a[c] - (int)b[c]));
    return worst;
}

void dropEdges(PixelMask& mask, const Image& reference, int step)
{
    std::vector<uint8_t> edge((size_t)reference.width * reference.height, 0);
    for (int y = 0; y < reference.height; ++y)
        for (int x = 0; x < reference.width; ++x) {
            const uint8_t* p = reference.at(x, y);
            if (x + 1 < reference.width && channelStep(p, reference.at(x + 1, y)) > step)
                edge[(size_t)y * reference.width + x] = edge[(size_t)y * reference.width + x + 1] = 1;
            if (y + 1 < reference.height && channelStep(p, reference.at(x, y + 1)) > step)
                edge[(size_t)y * reference.width + x] = edge[(size_t)(y + 1) * reference.width + x] = 1;
        }
    // Both sides of a step are edge pixels; widen by one more pixel on every side, so that an
    // edge the other rasteriser places one pixel further out is covered too.
    for (int y = 0; y < mask.height; ++y)
        for (int x = 0; x < mask.width; ++x) {
            bool nearEdge = false;
            for (int dy = -1; dy <= 1 && !nearEdge; ++dy)
                for (int dx = -1; dx <= 1 && !nearEdge; ++dx) {
                    int nx = x + dx, ny = y + dy;
                    if (nx >= 0 && ny >= 0 && nx < reference.width && ny < reference.height &&
                        edge[(size_t)ny * reference.width + nx])
                        nearEdge = true;
                }
            if (nearEdge)
                mask.keep[(size_t)y * mask.width + x] = 0;
        }
}

void dropRect(PixelMask& mask, int x0, int y0, int x1, int y1)
{
    for (int y = std::max(0, y0); y < std::min(mask.height, y1); ++y)
        for (int x = std::max(0, x0); x < std::min(mask.width, x1); ++x)
            mask.keep[(size_t)y * mask.width + x] = 0;
}

CompareResult compareImages(const Image& actual, const Image& expected, const PixelMask& mask,
                            int channelTolerance)
{
    CompareResult r;
    if (actual.width != expected.width || actual.height != expected.height ||
        mask.width != actual.width || mask.height != actual.height) {
        r.sameSize = false;
        return r;
    }
    r.difference = makeImage(actual.width, actual.height);
    for (int y = 0; y < actual.height; ++y)
        for (int x = 0; x < actual.width; ++x) {
            uint8_t* d = r.difference.at(x, y);
            if (!mask.kept(x, y)) {
                // Pixels left out of the comparison show dark blue.
                d[2] = 48;
                continue;
            }
            ++r.compared;
            int step = channelStep(actual.at(x, y), expected.at(x, y));
            r.worst = std::max(r.worst, step);
            if (step > channelTolerance) {
                ++r.differing;
                d[0] = (uint8_t)std::min(255, 96 + step);
            } else if (step > 0) {
                d[1] = (uint8_t)std::min(255, 32 + 8 * step);
            }
        }
    return r;
}

bool withinTolerance(const CompareResult& r, const Tolerance& tol)
{
    if (!r.sameSize)
        return false;
    if (r.compared == 0)
        return r.differing == 0;
    return (double)r.differing <= tol.fraction * (double)r.compared;
}
