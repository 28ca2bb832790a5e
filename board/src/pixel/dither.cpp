// dither.cpp: the dither tables used when writing colours to the RGB565 frame buffer.
//
// The 4x4 ordered dither follows the hardware: with d the matrix entry at (y & 3, x & 3),
//   R5 = (((R << 1) - (R >> 4) + (R >> 7) + d) >> 1) >> 3,  G6 = (((G << 2) - (G >> 4) + (G >> 6) + d) >> 2) >> 2.
// The 2x2 mode uses the same formula with the 2x2 Bayer matrix spread over the same 0..15 range and
// centred like the 4x4 one: (2, 10) / (14, 6). (Which 2x2 values the hardware uses is not settled;
// this choice keeps the 2x2 and 4x4 modes the same on average.) Mode 0 truncates: R >> 3, G >> 2.
#include "pixel/blend.h"

#include <array>

namespace zvb {

namespace {

constexpr int kMatrix4[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
constexpr int kMatrix2[2][2] = {{2, 10}, {14, 6}};

constexpr std::array<std::array<std::array<uint8_t, 4>, 4>, 3> make_matrices() {
  std::array<std::array<std::array<uint8_t, 4>, 4>, 3> m{};
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) {
      m[1][y][x] = static_cast<uint8_t>(kMatrix2[y & 1][x & 1]);
      m[2][y][x] = static_cast<uint8_t>(kMatrix4[y][x]);
    }
  return m;
}

constexpr DitherTables make_tables() {
  DitherTables t{};
  for (int mode = 0; mode < 3; ++mode)
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x)
        for (int v = 0; v < 256; ++v) {
          int r5 = v >> 3, g6 = v >> 2;
          if (mode != 0) {
            const int d = mode == 2 ? kMatrix4[y][x] : kMatrix2[y & 1][x & 1];
            r5 = (((v << 1) - (v >> 4) + (v >> 7) + d) >> 1) >> 3;
            g6 = (((v << 2) - (v >> 4) + (v >> 6) + d) >> 2) >> 2;
          }
          t.r[mode][y][x][v] = static_cast<uint16_t>(r5 << 11);
          t.g[mode][y][x][v] = static_cast<uint16_t>(g6 << 5);
          t.b[mode][y][x][v] = static_cast<uint16_t>(r5);
        }
  return t;
}

}  // namespace

constinit const DitherTables kDither = make_tables();
constinit const std::array<std::array<std::array<uint8_t, 4>, 4>, 3> kDitherMatrix = make_matrices();

}  // namespace zvb
