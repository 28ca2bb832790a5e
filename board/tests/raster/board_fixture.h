// board_fixture.h: a PixelBoard with its own buffers for the raster tests, and vertex helpers.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "pixel/pixel.h"
#include "pixel/spans_plain.h"

namespace zvb::test {

// A board of w x h pixels with two colour buffers and an aux buffer, in its window-open state with
// dithering off (so that colours read back exactly), ARGB colours and upper-left origin.
struct TestBoard {
  PixelBoard pb;
  std::vector<uint16_t> buf[2];
  std::vector<uint16_t> auxBuf;

  explicit TestBoard(int w = 64, int h = 64) {
    std::memset(&pb, 0, sizeof pb);
    buf[0].assign(static_cast<size_t>(w) * h, 0);
    buf[1].assign(static_cast<size_t>(w) * h, 0);
    auxBuf.assign(static_cast<size_t>(w) * h, 0);
    pb.colour[0] = buf[0].data();
    pb.colour[1] = buf[1].data();
    pb.aux = auxBuf.data();
    pb.width = w;
    pb.height = h;
    pb.front = 0;
    pb.back = 1;
    pb.nColBuffers = 2;
    pb.state.colourFormat = GR_COLORFORMAT_ARGB;
    pb.state.origin = GR_ORIGIN_UPPER_LEFT;
    px_reset(pb, 2);
    px_DitherMode(pb, GR_DITHER_DISABLE);
  }
  uint16_t &pixel(int x, int y) { return buf[1][static_cast<size_t>(y) * pb.width + x]; }
  uint16_t &aux(int x, int y) { return auxBuf[static_cast<size_t>(y) * pb.width + x]; }
  void fill(uint16_t c) { std::fill(buf[1].begin(), buf[1].end(), c); }
  void fillAux(uint16_t v) { std::fill(auxBuf.begin(), auxBuf.end(), v); }
  int count(uint16_t c) const {
    int n = 0;
    for (uint16_t p : buf[1]) n += p == c;
    return n;
  }
};

inline GrVertex vtx(float x, float y, float r = 0, float g = 0, float b = 0, float a = 255, float ooz = 0,
                    float oow = 1) {
  GrVertex v;
  std::memset(&v, 0, sizeof v);
  v.x = x; v.y = y; v.r = r; v.g = g; v.b = b; v.a = a; v.ooz = ooz; v.oow = oow;
  return v;
}

// RGB565 of an 8-bit colour without dithering.
inline uint16_t rgb565(int r, int g, int b) {
  return static_cast<uint16_t>(((r >> 3) << 11) | ((g >> 2) << 5) | (b >> 3));
}

// Every vector unit of the lean loops the machine runs, narrowest first; the widest is restored
// when the test ends.
struct Levels {
  std::vector<int> all;
  Levels() {
    for (int level : {PLAIN_SCALAR, PLAIN_SSE2, PLAIN_AVX2})
      if (plain_force_simd(level) == level) all.push_back(level);
  }
  ~Levels() { plain_force_simd(-1); }
};

}  // namespace zvb::test
