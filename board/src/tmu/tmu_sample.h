// Internals shared by the texture sampler's span routines (tmu_sample.cpp and its wider vector
// form): the key bits naming the specialised routines, the LOD helpers and the per-pixel texture
// combine. Not part of the board's interface.
//
// The wider forms are built for another instruction set: they include this header before
// switching target, so that every function here is compiled for the baseline alone.
#ifndef ZVGL_BOARD_TMU_TMU_SAMPLE_H
#define ZVGL_BOARD_TMU_TMU_SAMPLE_H

#include <cstdint>
#include <cstring>

#include "tmu/tmu.h"

namespace zvb::tex_internal {

// log2(1 + m / 256) in 1/256 units for the top 8 mantissa bits m (rounded; exact at m = 0, so
// powers of two give exact LODs), in 32-bit entries so that vector forms can gather them.
struct Log2Table {
  int32_t v[256];
};
extern const Log2Table kTexLog2;  // built in tmu_sample.cpp

// log2(x) in 8.8 for a positive finite float, from its exponent and top mantissa bits.
inline __attribute__((always_inline)) int32_t log2_fix(float x) {
  uint32_t bits;
  std::memcpy(&bits, &x, 4);
  int32_t e = int32_t((bits >> 23) & 0xFF) - 127;
  return e * 256 + kTexLog2.v[(bits >> 15) & 0xFF];
}

// Mipmap dither matrix (the 4x4 ordered-dither matrix of the pixel pipeline), in 1/16 LOD.
constexpr uint8_t kDither[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

// Key bits of the specialised span routines. A key without TKEY_SPECIAL means "read every mode
// at run time" (the generic routine).
enum : unsigned {
  TKEY_SPECIAL = 1u << 0,   // the modes below are fixed at compile time
  TKEY_BILINEAR = 1u << 1,  // min and mag filters both bilinear (else both point)
  TKEY_SIXTEEN = 1u << 2,   // 16-bit texels
  TKEY_LOD = 1u << 3,       // LOD varies per pixel
  TKEY_WRAP = 1u << 4,      // wrap on s and t (else clamp on both)
  TKEY_TWO = 1u << 5,       // two TMUs, the same modes, TMU1 a plain decal
  TKEY_DECAL0 = 1u << 6,    // TMU0's combine is a plain decal
  TKEY_BLEND0 = 1u << 7,    // TMU0 blends TMU1's result and its own by the LOD fraction
  TKEY_COUNT = 1u << 8,
};

// Whether key K names a specialised routine: the LOD-fraction blend needs the two TMUs and
// excludes the decal.
constexpr bool key_valid(unsigned k) {
  return (k & TKEY_SPECIAL) != 0 &&
         ((k & TKEY_BLEND0) == 0 || ((k & TKEY_TWO) != 0 && (k & TKEY_DECAL0) == 0));
}

inline int clamp255(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// 8-bit multiply of a signed operand by factor f: x (f + 1) >> 8 (arithmetic shift).
inline int mul8(int x, int f) { return (x * (f + 1)) >> 8; }

// One channel of a combine unit. cl/co: local and other channel; al/ao: alphas.
inline int combine_channel(const TexCombineUnit &u, int cl, int al, int co, int ao, int detail,
                           int lodFrac, bool flip) {
  int f;
  switch (u.factor) {
    case 0: f = 0; break;
    case 1: f = cl; break;
    case 2: f = ao; break;
    case 3: f = al; break;
    case 4: f = detail; break;
    case 5: f = lodFrac; break;
    default: f = 0; break;
  }
  if (u.oneMinus ^ flip) f = 255 - f;
  int v = (u.zeroOther ? 0 : co) - (u.subLocal ? cl : 0);
  v = mul8(v, f);
  if (u.add == 1) v += cl;
  else if (u.add == 2) v += al;
  v = clamp255(v);
  return u.invert ? 255 - v : v;
}

// The texture combine of one TMU: local texel, upstream result, LOD fraction, detail factor.
// `oddLod`: the integer LOD is odd, which inverts the "one minus" choice with the trilinear flag.
inline uint32_t combine_tmu(const TmuSetup &t, uint32_t local, uint32_t other, int lodFrac,
                            int detail, bool oddLod) {
  bool flip = t.lodBlend && oddLod;
  int al = int(local >> 24), ao = int(other >> 24);
  int r = combine_channel(t.rgb, int((local >> 16) & 255), al, int((other >> 16) & 255), ao,
                          detail, lodFrac, flip);
  int g = combine_channel(t.rgb, int((local >> 8) & 255), al, int((other >> 8) & 255), ao, detail,
                          lodFrac, flip);
  int b = combine_channel(t.rgb, int(local & 255), al, int(other & 255), ao, detail, lodFrac, flip);
  int a = combine_channel(t.alpha, al, al, ao, ao, detail, lodFrac, flip);
  return (uint32_t(a) << 24) | (uint32_t(r) << 16) | (uint32_t(g) << 8) | uint32_t(b);
}
// The detail blend factor at LOD `lambda` (8.8): grows by the detail scale below the detail
// bias, up to the detail maximum; 0 at and above the bias.
inline int detail_factor(const TmuSetup &t, int lambda) {
  if (lambda >= t.detailBias) return 0;
  const int detail = ((t.detailBias - lambda) << t.detailScale) >> 8;
  return detail > t.detailMax ? t.detailMax : detail;
}

// The specialised routines of the wider vector form, by key (the generic routine where the key
// names none); null when this build or machine lacks that form.
const TexSpanFn *span_table_avx2();

}  // namespace zvb::tex_internal

#endif  // ZVGL_BOARD_TMU_TMU_SAMPLE_H
