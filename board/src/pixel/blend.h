// blend.h: the frame-buffer end of the pixel pipeline: depth values and tests, alpha blending,
// dithering to RGB565 and the expansion of stored pixels back to 8 bits.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace zvb {

// The 16-bit floating-point W of the w-buffer from oow in 16.32 fixed point. With
// oow = 2^-(e+1) x (1 + f): Wf = 4096 (e + 1) - floor(4096 f), i.e. the exponent e (leading zero
// bits of oow as a 0.32 fraction) in the top 4 bits and the inverted 12 mantissa bits plus one below.
// oow >= 1 gives 0 (nearest), oow < 2^-16 gives 0xFFFF (farthest).
inline uint32_t w_float(int64_t oow) {  // 16.32
  if (oow >= (int64_t(1) << 32)) return 0;
  if (oow < (int64_t(1) << 16)) return 0xFFFF;
  const uint32_t v = static_cast<uint32_t>(oow);
  const int e = std::countl_zero(v);                // 0..15
  const uint32_t m = (v << (e + 1)) >> 20;          // 12 bits after the leading 1
  const uint32_t wf = 4096u * static_cast<uint32_t>(e + 1) - m;
  return wf > 0xFFFF ? 0xFFFF : wf;
}

// Clamped Z from the 20.12 iterator: the integer part, 0..0xFFFF.
inline uint32_t z_clamped(int32_t z) {  // 20.12
  const int32_t v = z >> 12;
  return v < 0 ? 0u : (v > 0xFFFF ? 0xFFFFu : static_cast<uint32_t>(v));
}

// A depth value with the signed bias added, clamped to 16 bits.
inline uint32_t depth_biased(uint32_t v, int32_t bias) {
  const int32_t r = static_cast<int32_t>(v) + bias;
  return r < 0 ? 0u : (r > 0xFFFF ? 0xFFFFu : static_cast<uint32_t>(r));
}

// The comparison functions of the alpha and depth tests: pass when (src FUNC dst). The GrCmpFnc_t
// codes are a mask of the outcomes that pass: bit 0 less, bit 1 equal, bit 2 greater.
inline bool compare(int function, uint32_t src, uint32_t dst) {
  const int outcome = (src >= dst ? 1 : 0) + (src > dst ? 1 : 0);  // 0 less, 1 equal, 2 greater
  return ((function >> outcome) & 1) != 0;
}

// Bit-replicating expansion of RGB565 channels to 8 bits.
inline int expand5(uint32_t v) { return static_cast<int>((v << 3) | (v >> 2)); }
inline int expand6(uint32_t v) { return static_cast<int>((v << 2) | (v >> 4)); }

// x scaled by an 8-bit blend factor expressed as a multiplier m in 0..256 (m = a + 1 for a factor a,
// 256 for ONE, 0 for ZERO).
inline int scale8(int x, int m) { return (x * m) >> 8; }

// Multiplier of a source blend factor for one channel.
inline int blend_src_mul(int factor, int as, int cd, int ad) {
  switch (factor) {
    case 0x1: return as + 1;
    case 0x2: return cd + 1;                  // DST_COLOR
    case 0x3: return ad + 1;
    case 0x4: return 256;
    case 0x5: return 256 - as;
    case 0x6: return 256 - cd;                // ONE_MINUS_DST_COLOR
    case 0x7: return 256 - ad;
    case 0xF: return (as < 255 - ad ? as : 255 - ad) + 1;  // ALPHA_SATURATE
    default: return 0;
  }
}

// Multiplier of a destination blend factor for one channel; `prefog` is the colour before fog.
inline int blend_dst_mul(int factor, int as, int cs, int ad, int prefog) {
  switch (factor) {
    case 0x1: return as + 1;
    case 0x2: return cs + 1;                  // SRC_COLOR
    case 0x3: return ad + 1;
    case 0x4: return 256;
    case 0x5: return 256 - as;
    case 0x6: return 256 - cs;                // ONE_MINUS_SRC_COLOR
    case 0x7: return 256 - ad;
    case 0xF: return prefog + 1;              // PREFOG_COLOR
    default: return 0;
  }
}

// One channel of the blend: Cs x Fs + Cd x Fd, clamped.
inline int blend_channel(int srcFactor, int dstFactor, int cs, int cd, int as, int ad, int prefog) {
  const int v = scale8(cs, blend_src_mul(srcFactor, as, cd, ad)) + scale8(cd, blend_dst_mul(dstFactor, as, cs, ad, prefog));
  return v > 255 ? 255 : v;
}

// Dither tables: for each mode, (y & 3, x & 3) and 8-bit value, the red, green and blue fields already
// in their RGB565 positions. Mode 0 truncates; mode 1 is the 2x2 ordered dither, mode 2 the 4x4 one.
struct DitherTables {
  uint16_t r[3][4][4][256];
  uint16_t g[3][4][4][256];
  uint16_t b[3][4][4][256];
};
extern const DitherTables kDither;
// The dither matrices by mode and (y & 3, x & 3); mode 0 (no dither) is all zero and unused.
extern const std::array<std::array<std::array<uint8_t, 4>, 4>, 3> kDitherMatrix;

// The dither tables of one row: pixel() gives the RGB565 value of an 8-bit colour at column x.
struct DitherRow {
  const uint16_t *r, *g, *b;  // [x & 3][value]
  DitherRow(int mode, int y) : r(kDither.r[mode][y & 3][0]), g(kDither.g[mode][y & 3][0]), b(kDither.b[mode][y & 3][0]) {}
  uint16_t pixel(int x, int rr, int gg, int bb) const {
    const int o = (x & 3) << 8;
    return static_cast<uint16_t>(r[o + rr] | g[o + gg] | b[o + bb]);
  }
};

// The RGB565 pixel for an 8-bit colour at screen position (x, y) in dither mode `mode`.
inline uint16_t dither565(int mode, int x, int y, int r, int g, int b) { return DitherRow(mode, y).pixel(x, r, g, b); }

}  // namespace zvb
