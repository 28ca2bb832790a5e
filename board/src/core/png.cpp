// png.cpp: writes RGB565 pictures as PNG files. Linux builds use libpng; Windows builds (Debian
// has no MinGW libpng) use the small encoder below, which writes the pixels uncompressed, in
// stored deflate blocks. Both produce 8-bit RGB images; 565 values are widened by replicating
// their top bits.
#include "core/board.h"
#include "core/png_stored.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#if defined(ZVGL_HAVE_LIBPNG)
#include <png.h>
#endif

namespace zvb {

// Writes the picture to `path`; 1 on success.
int write_png_rgb565(const char *path, const uint16_t *pixels, int w, int h) {
  if (!path || !pixels || w <= 0 || h <= 0) return 0;
  FILE *f = std::fopen(path, "wb");
  if (!f) return 0;
#if defined(ZVGL_HAVE_LIBPNG)
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  uint8_t *row = static_cast<uint8_t *>(std::malloc(static_cast<size_t>(w) * 3));
  int ok = png && info && row;
  // libpng reports errors by longjmp; the board is built without exceptions, so this is the
  // library's own error path, kept to this function.
  if (ok && setjmp(png_jmpbuf(png))) ok = 0;
  else if (ok) {
    png_init_io(png, f);
    png_set_compression_level(png, 1);
    png_set_IHDR(png, info, static_cast<png_uint_32>(w), static_cast<png_uint_32>(h), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < h; ++y) {
      widen_row(pixels + static_cast<size_t>(y) * static_cast<size_t>(w), w, row);
      png_write_row(png, row);
    }
    png_write_end(png, info);
  }
  png_destroy_write_struct(png ? &png : nullptr, info ? &info : nullptr);
  std::free(row);
  return (std::fclose(f) == 0) && ok;
#else
  uint8_t *data = nullptr;
  size_t size = 0;
  int ok = png_encode_stored(pixels, w, h, &data, &size);
  if (ok) ok = std::fwrite(data, 1, size, f) == size;
  std::free(data);
  return (std::fclose(f) == 0) && ok;
#endif
}

// True when the capture pattern has exactly one conversion and it takes an int (flags,
// width and precision allowed; "%%" is text), so that it is safe to hand to snprintf.
bool capture_pattern_ok(const char *p) {
  int conversions = 0;
  for (; *p; ++p) {
    if (*p != '%') continue;
    ++p;
    if (*p == '%') continue;
    while (*p && std::strchr("-+ #0", *p)) ++p;
    while (*p >= '0' && *p <= '9') ++p;
    if (*p == '.') {
      ++p;
      while (*p >= '0' && *p <= '9') ++p;
    }
    if (!*p || !std::strchr("diouxX", *p)) return false;
    ++conversions;
  }
  return conversions == 1;
}

// Writes the displayed buffer of a board that has just shown a swap, when ZVGL_BOARD_CAPTURE
// names a pattern. Board 0 uses the pattern as it is; board i > 0 adds ".b<i>" before the
// extension, so that several boards do not overwrite each other's frames.
void capture_frame(Board &b) {
  const char *pattern = option("ZVGL_BOARD_CAPTURE");
  if (!pattern || !*pattern || !b.px.colour[b.shown]) return;
  if (!capture_pattern_ok(pattern)) {
    std::fprintf(stderr, "glide2x: ZVGL_BOARD_CAPTURE needs one integer conversion: %s\n", pattern);
    return;
  }
  char path[1024];
  std::snprintf(path, sizeof path, pattern, static_cast<int>(b.swaps - 1));
  if (b.index > 0) {
    char *dot = std::strrchr(path, '.');
    char tail[64];
    std::snprintf(tail, sizeof tail, "%s", dot ? dot : "");
    if (dot) *dot = 0;
    const size_t len = std::strlen(path);
    std::snprintf(path + len, sizeof path - len, ".b%d%s", b.index, tail);
  }
  if (!write_png_rgb565(path, b.px.colour[b.shown], b.px.width, b.px.height))
    std::fprintf(stderr, "glide2x: cannot write the frame %s\n", path);
}

}  // namespace zvb
