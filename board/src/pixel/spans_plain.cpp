// spans_plain.cpp: lean span loops for the hot modes, in front of the keyed loops.
//
// Most pixels of a frame are drawn in a few plain forms: iterated or constant colour, a biased Z or W
// buffer (or none), optionally table fog without modifiers and the SRC_ALPHA / ONE_MINUS_SRC_ALPHA
// blend, with colour writes on and nothing that can reject a pixel but the depth test; the same with
// the colour taken from the texture (decal) or the texture scaled by the iterated colour (modulate).
// For those the
// keyed loop hands the span to plain_loop, whose settings are all compile-time constants or hoisted
// out of the pixel loop, so that the compiler keeps everything in registers. The arithmetic is the
// pipeline's own (the same inline functions), and the differential test holds it to the generic loop.
#include "pixel/spans_plain.h"

#include <algorithm>
#include <array>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "pixel/blend.h"
#include "pixel/combine.h"
#include "pixel/fog.h"

namespace zvb {

namespace {

// The colour forms of the lean loops: the iterated or constant colour, the texel (decal), and the
// texel scaled by the iterated colour (modulate).
enum : uint32_t { PCC_ITER = 0, PCC_CONST = 1, PCC_DECAL = 2, PCC_MODULATE = 3, PCC_COUNT = 4 };

#if defined(__SSE2__)
// Eight pixels at a time with SSE2: the same arithmetic as the scalar loop, lane by lane. Colours,
// depth values and the stored words are 16-bit lanes (all eight in one register), the iterators
// 32-bit lanes in two registers (pixels 0-3 and 4-7) and W 64-bit lanes in four; every product of the
// colour arithmetic fits in 16 unsigned bits.
struct Oct {
  __m128i r0, r1, g0, g1, b0, b1, a0, a1, z0, z1;  // iterators (12.12, 20.12)
  __m128i dr8, dg8, db8, da8, dz8;
  __m128i w[4], dw8;           // 16.32 iterators, two pixels a register
  __m128i wl0, wl1, dwl8;      // their low 32 bits, when W stays inside [2^-16, 1) (wNarrow)
  __m128i bias;                // depth bias, 32-bit lanes
  __m128i passLess, passEqual, passGreater;  // depth function as 16-bit lane masks
  __m128i cr, cg, cb, ca;      // constant colour, 16-bit lanes
  __m128i fr, fg, fb;          // fog colour, 16-bit lanes
  __m128i dither;              // dither value of each lane, 16-bit lanes
  bool ditherOn, biasZero, wNarrow;
};

__m128i lanes4(uint32_t v, uint32_t d, uint32_t first) {
  const uint32_t s = v + first * d;
  return _mm_set_epi32(static_cast<int>(s + 3 * d), static_cast<int>(s + 2 * d), static_cast<int>(s + d), static_cast<int>(s));
}

// True when every W of the span is inside [2^16, 2^32) in 16.32 (W is linear and cannot wrap).
bool w_narrow(const SpanJob &j, int n) {
  const int64_t first = j.w, last = j.w + j.dw * (n - 1);
  auto inside = [](int64_t v) { return v >= (int64_t(1) << 16) && v < (int64_t(1) << 32); };
  return inside(first) && inside(last);
}

// Inlined into each loop, so that the set-up of the parts a mode does not use is left out.
inline __attribute__((always_inline)) void oct_start(Oct &q, const SpanJob &j, const PixelDecoded &d) {
  const uint32_t dr = static_cast<uint32_t>(j.dr), dg = static_cast<uint32_t>(j.dg), db = static_cast<uint32_t>(j.db);
  const uint32_t da = static_cast<uint32_t>(j.da), dz = static_cast<uint32_t>(j.dz);
  q.r0 = lanes4(static_cast<uint32_t>(j.r), dr, 0); q.r1 = lanes4(static_cast<uint32_t>(j.r), dr, 4);
  q.g0 = lanes4(static_cast<uint32_t>(j.g), dg, 0); q.g1 = lanes4(static_cast<uint32_t>(j.g), dg, 4);
  q.b0 = lanes4(static_cast<uint32_t>(j.b), db, 0); q.b1 = lanes4(static_cast<uint32_t>(j.b), db, 4);
  q.a0 = lanes4(static_cast<uint32_t>(j.a), da, 0); q.a1 = lanes4(static_cast<uint32_t>(j.a), da, 4);
  q.z0 = lanes4(static_cast<uint32_t>(j.z), dz, 0); q.z1 = lanes4(static_cast<uint32_t>(j.z), dz, 4);
  q.dr8 = _mm_set1_epi32(static_cast<int>(8u * dr));
  q.dg8 = _mm_set1_epi32(static_cast<int>(8u * dg));
  q.db8 = _mm_set1_epi32(static_cast<int>(8u * db));
  q.da8 = _mm_set1_epi32(static_cast<int>(8u * da));
  q.dz8 = _mm_set1_epi32(static_cast<int>(8u * dz));
  const uint64_t w0 = static_cast<uint64_t>(j.w), dw = static_cast<uint64_t>(j.dw);
  for (int k = 0; k < 4; ++k)
    q.w[k] = _mm_set_epi64x(static_cast<int64_t>(w0 + (2 * k + 1) * dw), static_cast<int64_t>(w0 + 2 * k * dw));
  q.dw8 = _mm_set1_epi64x(static_cast<int64_t>(8 * dw));
  q.wNarrow = w_narrow(j, j.x1 - j.x0);
  q.wl0 = lanes4(static_cast<uint32_t>(w0), static_cast<uint32_t>(dw), 0);
  q.wl1 = lanes4(static_cast<uint32_t>(w0), static_cast<uint32_t>(dw), 4);
  q.dwl8 = _mm_set1_epi32(static_cast<int>(static_cast<uint32_t>(8 * dw)));
  q.bias = _mm_set1_epi32(d.depthBias);
  q.biasZero = d.depthBias == 0;
  q.passLess = _mm_set1_epi16((d.depthFunction & 1) ? -1 : 0);
  q.passEqual = _mm_set1_epi16((d.depthFunction & 2) ? -1 : 0);
  q.passGreater = _mm_set1_epi16((d.depthFunction & 4) ? -1 : 0);
  q.cr = _mm_set1_epi16(d.constR);
  q.cg = _mm_set1_epi16(d.constG);
  q.cb = _mm_set1_epi16(d.constB);
  q.ca = _mm_set1_epi16(d.constA);
  q.fr = _mm_set1_epi16(d.fogR);
  q.fg = _mm_set1_epi16(d.fogG);
  q.fb = _mm_set1_epi16(d.fogB);
  const auto &m = kDitherMatrix[d.ditherMode][j.y & 3];
  const short d0 = m[j.x0 & 3], d1 = m[(j.x0 + 1) & 3], d2 = m[(j.x0 + 2) & 3], d3 = m[(j.x0 + 3) & 3];
  q.dither = _mm_setr_epi16(d0, d1, d2, d3, d0, d1, d2, d3);
  q.ditherOn = d.ditherMode != 0;
}

// Two registers of 12.12 iterators to their integer parts clamped to 0..255 (known to be inside with
// NOCLAMP), in eight 16-bit lanes.
template <bool NOCLAMP>
inline __m128i colour8(__m128i v0, __m128i v1) {
  const __m128i p = _mm_packs_epi32(_mm_srai_epi32(v0, 12), _mm_srai_epi32(v1, 12));
  if constexpr (NOCLAMP) return p;
  return _mm_min_epi16(_mm_max_epi16(p, _mm_setzero_si128()), _mm_set1_epi16(255));
}

// Wf = 647168 - (bits >> 11) for u = oow >> 1 converted exactly to a float (see w_float4), with
// 65536 (the largest exponent, zero mantissa) saturated to 0xFFFF.
inline __m128i w_float_bits(__m128i lo) {
  const __m128i u = _mm_srli_epi32(lo, 1);
  const __m128i big = _mm_cmpgt_epi32(u, _mm_set1_epi32(0x00FFFFFF));
  const __m128i x = _mm_or_si128(_mm_andnot_si128(big, u), _mm_and_si128(big, _mm_srli_epi32(u, 8)));
  const __m128i bits = _mm_add_epi32(_mm_castps_si128(_mm_cvtepi32_ps(x)), _mm_and_si128(big, _mm_set1_epi32(8 << 23)));
  const __m128i wf = _mm_sub_epi32(_mm_set1_epi32(647168), _mm_srli_epi32(bits, 11));
  return _mm_add_epi32(wf, _mm_cmpgt_epi32(wf, _mm_set1_epi32(0xFFFF)));
}

// The W float (see w_float) of four 16.32 values. For 2^16 <= oow < 2^32 (as 0.32 fixed point) let
// u = oow >> 1 (2^15 <= u < 2^31) with its leading one at bit L: the exponent is 30 - L and the
// mantissa the 12 bits below that one. Converted exactly to a float (u itself below 2^24, else u >> 8
// with 8 added to the exponent field), u has the exponent field 127 + L and those 12 bits on top of
// its mantissa, so Wf = 4096 (31 - L) - mantissa = 647168 - (bits >> 11). Outside that range the
// value is 0 (oow >= 1) or 0xFFFF.
inline __m128i w_float4(__m128i w01, __m128i w23) {
  const __m128i a = _mm_shuffle_epi32(w01, _MM_SHUFFLE(3, 1, 2, 0));  // lo0 lo1 hi0 hi1
  const __m128i b = _mm_shuffle_epi32(w23, _MM_SHUFFLE(3, 1, 2, 0));  // lo2 lo3 hi2 hi3
  const __m128i lo = _mm_unpacklo_epi64(a, b), hi = _mm_unpackhi_epi64(a, b);
  const __m128i zero = _mm_setzero_si128();
  const __m128i nearest = _mm_cmpgt_epi32(hi, zero);  // oow >= 1
  const __m128i farthest = _mm_or_si128(_mm_cmpgt_epi32(zero, hi),
                                        _mm_and_si128(_mm_cmpeq_epi32(hi, zero), _mm_cmpeq_epi32(_mm_srli_epi32(lo, 16), zero)));
  __m128i wf = w_float_bits(lo);
  wf = _mm_or_si128(_mm_andnot_si128(farthest, wf), _mm_and_si128(farthest, _mm_set1_epi32(0xFFFF)));
  return _mm_andnot_si128(nearest, wf);
}

// 32-bit lanes clamped to 0..0xFFFF.
inline __m128i clamp16u(__m128i v) {
  const __m128i neg = _mm_cmpgt_epi32(_mm_setzero_si128(), v);
  const __m128i big = _mm_cmpgt_epi32(v, _mm_set1_epi32(0xFFFF));
  v = _mm_andnot_si128(neg, v);
  return _mm_or_si128(_mm_andnot_si128(big, v), _mm_and_si128(big, _mm_set1_epi32(0xFFFF)));
}

// Two registers of 32-bit lanes 0..0xFFFF to eight 16-bit lanes.
inline __m128i narrow16(__m128i v0, __m128i v1) {
  const __m128i bias = _mm_set1_epi32(0x8000);
  return _mm_xor_si128(_mm_packs_epi32(_mm_sub_epi32(v0, bias), _mm_sub_epi32(v1, bias)), _mm_set1_epi16(-0x8000));
}

// The dithered 5- or 6-bit field of 8-bit channels: (((v << s) - (v >> 4) + (v >> t) + d) >> s) >> k.
template <int S, int T, int K>
inline __m128i dither_field(__m128i v, __m128i d, bool on) {
  if (!on) return _mm_srli_epi16(v, 8 - (K == 3 ? 5 : 6));
  const __m128i x = _mm_add_epi16(_mm_sub_epi16(_mm_slli_epi16(v, S), _mm_srli_epi16(v, 4)), _mm_add_epi16(_mm_srli_epi16(v, T), d));
  return _mm_srli_epi16(x, S + K);
}

// One channel (at bit `Shift`) of eight 0xAARRGGBB texels as 16-bit lanes.
template <int Shift>
inline __m128i texel_channel(__m128i t0, __m128i t1) {
  const __m128i m = _mm_set1_epi32(0xFF);
  return _mm_packs_epi32(_mm_and_si128(_mm_srli_epi32(t0, Shift), m), _mm_and_si128(_mm_srli_epi32(t1, Shift), m));
}

// Number of bits set in a byte.
constexpr std::array<uint8_t, 256> kBitCount = [] {
  std::array<uint8_t, 256> t{};
  for (int i = 0; i < 256; ++i) t[static_cast<size_t>(i)] = static_cast<uint8_t>(std::popcount(static_cast<unsigned>(i)));
  return t;
}();

// Pixels 0..7 at cp / ap through the plain pipeline: the `lanes` first ones, whose 16-bit lanes are
// set in `valid`.
template <uint32_t CC, uint32_t AC, uint32_t DEPTH, bool WRITE, bool FOG, bool BLEND, bool NOCLAMP>
inline __attribute__((always_inline)) void oct_pixels(Oct &q, uint16_t *cp, uint16_t *ap, const uint32_t *tx,
                                                      const uint8_t *fogTable, __m128i valid, uint32_t lanes,
                                                      uint32_t &out, uint32_t &zfail) {
  __m128i R, G, B;
  if constexpr (CC == PCC_ITER || CC == PCC_MODULATE) {
    R = colour8<NOCLAMP>(q.r0, q.r1); G = colour8<NOCLAMP>(q.g0, q.g1); B = colour8<NOCLAMP>(q.b0, q.b1);
    q.r0 = _mm_add_epi32(q.r0, q.dr8); q.r1 = _mm_add_epi32(q.r1, q.dr8);
    q.g0 = _mm_add_epi32(q.g0, q.dg8); q.g1 = _mm_add_epi32(q.g1, q.dg8);
    q.b0 = _mm_add_epi32(q.b0, q.db8); q.b1 = _mm_add_epi32(q.b1, q.db8);
  } else if constexpr (CC == PCC_CONST) {
    R = q.cr; G = q.cg; B = q.cb;
  }
  if constexpr (CC == PCC_DECAL || CC == PCC_MODULATE) {
    const __m128i t0 = _mm_loadu_si128(reinterpret_cast<const __m128i *>(tx));
    const __m128i t1 = _mm_loadu_si128(reinterpret_cast<const __m128i *>(tx + 4));
    const __m128i tr = texel_channel<16>(t0, t1), tg = texel_channel<8>(t0, t1), tb = texel_channel<0>(t0, t1);
    if constexpr (CC == PCC_DECAL) {
      R = tr; G = tg; B = tb;
    } else {
      // (t (i + 1)) >> 8: at most 255 x 256, which fits 16 unsigned bits.
      const __m128i one = _mm_set1_epi16(1);
      R = _mm_srli_epi16(_mm_mullo_epi16(tr, _mm_add_epi16(R, one)), 8);
      G = _mm_srli_epi16(_mm_mullo_epi16(tg, _mm_add_epi16(G, one)), 8);
      B = _mm_srli_epi16(_mm_mullo_epi16(tb, _mm_add_epi16(B, one)), 8);
    }
  }
  __m128i A = q.ca;
  if constexpr (BLEND && AC == AC_ITER) {
    A = colour8<false>(q.a0, q.a1);
    q.a0 = _mm_add_epi32(q.a0, q.da8); q.a1 = _mm_add_epi32(q.a1, q.da8);
  }
  __m128i wf0 = _mm_setzero_si128(), wf1 = wf0;
  if constexpr (DEPTH == DEPTH_W || FOG) {
    if (q.wNarrow) {
      wf0 = w_float_bits(q.wl0);
      wf1 = w_float_bits(q.wl1);
      q.wl0 = _mm_add_epi32(q.wl0, q.dwl8);
      q.wl1 = _mm_add_epi32(q.wl1, q.dwl8);
    } else {
      wf0 = w_float4(q.w[0], q.w[1]);
      wf1 = w_float4(q.w[2], q.w[3]);
      for (__m128i &w : q.w) w = _mm_add_epi64(w, q.dw8);
    }
  }
  __m128i pass = valid, dv = _mm_setzero_si128();
  if constexpr (DEPTH != DEPTH_NONE) {
    __m128i d0, d1;
    if constexpr (DEPTH == DEPTH_Z) {
      d0 = clamp16u(_mm_srai_epi32(q.z0, 12));
      d1 = clamp16u(_mm_srai_epi32(q.z1, 12));
      q.z0 = _mm_add_epi32(q.z0, q.dz8);
      q.z1 = _mm_add_epi32(q.z1, q.dz8);
    } else {
      d0 = wf0;
      d1 = wf1;
    }
    if (!q.biasZero) {
      d0 = clamp16u(_mm_add_epi32(d0, q.bias));
      d1 = clamp16u(_mm_add_epi32(d1, q.bias));
    }
    dv = narrow16(d0, d1);
    const __m128i stored = _mm_loadu_si128(reinterpret_cast<const __m128i *>(ap));
    // Unsigned 16-bit comparisons as signed ones with the top bit flipped.
    const __m128i flip = _mm_set1_epi16(-0x8000);
    const __m128i s = _mm_xor_si128(dv, flip), t = _mm_xor_si128(stored, flip);
    pass = _mm_and_si128(valid, _mm_or_si128(_mm_or_si128(_mm_and_si128(_mm_cmplt_epi16(s, t), q.passLess),
                                                          _mm_and_si128(_mm_cmpeq_epi16(s, t), q.passEqual)),
                                             _mm_and_si128(_mm_cmpgt_epi16(s, t), q.passGreater)));
    const int bits = _mm_movemask_epi8(_mm_packs_epi16(pass, _mm_setzero_si128()));
    const uint32_t passed = kBitCount[bits & 0xFF];
    out += passed;
    zfail += lanes - passed;
    if (bits == 0) return;
  } else {
    out += lanes;
  }
  const __m128i old = _mm_loadu_si128(reinterpret_cast<const __m128i *>(cp));
  if constexpr (FOG) {
    alignas(16) uint32_t w8[8];
    alignas(16) uint16_t f8[8];
    _mm_store_si128(reinterpret_cast<__m128i *>(w8), wf0);
    _mm_store_si128(reinterpret_cast<__m128i *>(w8 + 4), wf1);
    for (int k = 0; k < 8; ++k) f8[k] = static_cast<uint16_t>(fog_table_factor(fogTable, w8[k]) + 1);
    const __m128i f1 = _mm_load_si128(reinterpret_cast<const __m128i *>(f8));
    const __m128i f0 = _mm_sub_epi16(_mm_set1_epi16(256), f1);
    // C + ((Fc - C) f1 >> 8) = (C (256 - f1) + Fc f1) >> 8: every term fits in 16 unsigned bits.
    R = _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(R, f0), _mm_mullo_epi16(q.fr, f1)), 8);
    G = _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(G, f0), _mm_mullo_epi16(q.fg, f1)), 8);
    B = _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(B, f0), _mm_mullo_epi16(q.fb, f1)), 8);
  }
  if constexpr (BLEND) {
    const __m128i ms = _mm_add_epi16(A, _mm_set1_epi16(1)), md = _mm_sub_epi16(_mm_set1_epi16(256), A);
    const __m128i r5 = _mm_srli_epi16(old, 11), g6 = _mm_and_si128(_mm_srli_epi16(old, 5), _mm_set1_epi16(63));
    const __m128i b5 = _mm_and_si128(old, _mm_set1_epi16(31));
    const __m128i dr = _mm_or_si128(_mm_slli_epi16(r5, 3), _mm_srli_epi16(r5, 2));
    const __m128i dg = _mm_or_si128(_mm_slli_epi16(g6, 2), _mm_srli_epi16(g6, 4));
    const __m128i db = _mm_or_si128(_mm_slli_epi16(b5, 3), _mm_srli_epi16(b5, 2));
    const __m128i max = _mm_set1_epi16(255);
    R = _mm_min_epi16(max, _mm_add_epi16(_mm_srli_epi16(_mm_mullo_epi16(R, ms), 8), _mm_srli_epi16(_mm_mullo_epi16(dr, md), 8)));
    G = _mm_min_epi16(max, _mm_add_epi16(_mm_srli_epi16(_mm_mullo_epi16(G, ms), 8), _mm_srli_epi16(_mm_mullo_epi16(dg, md), 8)));
    B = _mm_min_epi16(max, _mm_add_epi16(_mm_srli_epi16(_mm_mullo_epi16(B, ms), 8), _mm_srli_epi16(_mm_mullo_epi16(db, md), 8)));
  }
  const __m128i r5 = dither_field<1, 7, 3>(R, q.dither, q.ditherOn);
  const __m128i g6 = dither_field<2, 6, 2>(G, q.dither, q.ditherOn);
  const __m128i b5 = dither_field<1, 7, 3>(B, q.dither, q.ditherOn);
  const __m128i colour = _mm_or_si128(_mm_or_si128(_mm_slli_epi16(r5, 11), _mm_slli_epi16(g6, 5)), b5);
  _mm_storeu_si128(reinterpret_cast<__m128i *>(cp), _mm_or_si128(_mm_and_si128(pass, colour), _mm_andnot_si128(pass, old)));
  if constexpr (WRITE) {
    const __m128i stored = _mm_loadu_si128(reinterpret_cast<const __m128i *>(ap));
    _mm_storeu_si128(reinterpret_cast<__m128i *>(ap), _mm_or_si128(_mm_and_si128(pass, dv), _mm_andnot_si128(pass, stored)));
  }
}
#endif

// CC: a PCC_ form; AC: AC_CONST or AC_ITER (read by the blend only); DEPTH: DEPTH_NONE, _Z or _W;
// WRITE: store the depth value; FOG: table fog; BLEND: the transparency pair; NOCLAMP: the iterated
// colour stays inside 0..255 over the whole span. The textured forms fetch their texels a chunk at a
// time, with the same coordinates as the keyed loop, so the texture units see the same calls.
template <uint32_t CC, uint32_t AC, uint32_t DEPTH, bool WRITE, bool FOG, bool BLEND, bool NOCLAMP>
void plain_loop(const SpanJob &j, const PixelDecoded &dref, const DitherRow &dither, SpanCounts &c) {
  constexpr bool TEX = CC == PCC_DECAL || CC == PCC_MODULATE;
  constexpr bool ITER = CC == PCC_ITER || CC == PCC_MODULATE;
  const int n = j.x1 - j.x0;
  uint16_t *const cp = j.crow + j.x0;
  uint16_t *const ap = j.arow ? j.arow + j.x0 : nullptr;
  const int32_t bias = dref.depthBias;
  const int function = dref.depthFunction;
  const int cr = dref.constR, cg = dref.constG, cb = dref.constB, ca = dref.constA;
  const int fr = dref.fogR, fg = dref.fogG, fb = dref.fogB;
  const uint8_t *const fogTable = j.fogTable;
  const uint32_t dr = static_cast<uint32_t>(j.dr), dg = static_cast<uint32_t>(j.dg), db = static_cast<uint32_t>(j.db);
  const uint32_t da = static_cast<uint32_t>(j.da), dz = static_cast<uint32_t>(j.dz);
  const uint64_t dw = static_cast<uint64_t>(j.dw);
  uint32_t out = 0, zfail = 0;
  constexpr int kChunk = TEX ? 128 : 1 << 30;
  alignas(16) uint32_t texels[TEX ? 128 : 4];
#if defined(__SSE2__)
  Oct q = {};  // set by oct_start when the span has eight pixels or more
  const bool octs = n >= 8;
  if (octs) oct_start(q, j, dref);
#endif
  for (int c0 = 0; c0 < n; c0 += kChunk) {
    const int c1 = n - c0 < kChunk ? n : c0 + kChunk;
    if constexpr (TEX) {
      TmuCoords tc[GLIDE_NUM_TMU];
      for (int k = 0; k < GLIDE_NUM_TMU; ++k) {
        tc[k] = j.tc[k];
        tc[k].sow += float(c0) * tc[k].dsow;
        tc[k].tow += float(c0) * tc[k].dtow;
        tc[k].oow += float(c0) * tc[k].doow;
      }
      tex_span(*j.tex, tc, j.x0 + c0, j.y, c1 - c0, texels);
    }
    int i = c0;
#if defined(__SSE2__)
    if (octs) {
      const __m128i all = _mm_set1_epi16(-1);
      for (; i + 8 <= c1; i += 8)
        oct_pixels<CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP>(q, cp + i, ap ? ap + i : nullptr, TEX ? texels + (i - c0) : nullptr,
                                                              fogTable, all, 8, out, zfail);
      if (c1 - i > 4) {
        // The last five to seven pixels go through a copy of their words, with the lanes past the end
        // off; fewer go through the scalar loop below.
        const int m = c1 - i;
        alignas(16) uint16_t cbuf[8] = {}, abuf[8] = {};
        std::copy(cp + i, cp + c1, cbuf);
        if (ap) std::copy(ap + i, ap + c1, abuf);
        const __m128i lane = _mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7);
        const __m128i valid = _mm_cmplt_epi16(lane, _mm_set1_epi16(static_cast<short>(m)));
        oct_pixels<CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP>(q, cbuf, ap ? abuf : nullptr, TEX ? texels + (i - c0) : nullptr,
                                                              fogTable, valid, static_cast<uint32_t>(m), out, zfail);
        std::copy(cbuf, cbuf + m, cp + i);
        if (ap) std::copy(abuf, abuf + m, ap + i);
        i = c1;
      }
    }
#endif
    if (i == c1) continue;
    // The scalar iterators start where the octs stopped (wrapping sums, as stepping them would give).
    const uint32_t k = static_cast<uint32_t>(i);
    uint32_t r = static_cast<uint32_t>(j.r) + dr * k, g = static_cast<uint32_t>(j.g) + dg * k;
    uint32_t b = static_cast<uint32_t>(j.b) + db * k, a = static_cast<uint32_t>(j.a) + da * k;
    uint32_t z = static_cast<uint32_t>(j.z) + dz * k;
    uint64_t w = static_cast<uint64_t>(j.w) + dw * k;
    for (; i < c1; ++i) {
      int R = cr, G = cg, B = cb;
      if constexpr (ITER) {
        if constexpr (NOCLAMP) {
          R = static_cast<int32_t>(r) >> 12;
          G = static_cast<int32_t>(g) >> 12;
          B = static_cast<int32_t>(b) >> 12;
        } else {
          R = clamp255(static_cast<int32_t>(r) >> 12);
          G = clamp255(static_cast<int32_t>(g) >> 12);
          B = clamp255(static_cast<int32_t>(b) >> 12);
        }
        r += dr; g += dg; b += db;
      }
      if constexpr (TEX) {
        const uint32_t t = texels[i - c0];
        const int tr = static_cast<int>((t >> 16) & 0xFF), tg = static_cast<int>((t >> 8) & 0xFF);
        const int tb = static_cast<int>(t & 0xFF);
        if constexpr (CC == PCC_DECAL) {
          R = tr; G = tg; B = tb;
        } else {
          R = mul8(tr, R); G = mul8(tg, G); B = mul8(tb, B);
        }
      }
      int A = ca;
      if constexpr (BLEND && AC == AC_ITER) {
        A = clamp255(static_cast<int32_t>(a) >> 12);
        a += da;
      }
      uint32_t dv = 0, wf = 0;
      if constexpr (DEPTH == DEPTH_W || FOG) {
        wf = w_float(static_cast<int64_t>(w));
        w += dw;
      }
      if constexpr (DEPTH == DEPTH_Z) {
        dv = depth_biased(z_clamped(static_cast<int32_t>(z)), bias);
        z += dz;
      } else if constexpr (DEPTH == DEPTH_W) {
        dv = depth_biased(wf, bias);
      }
      if constexpr (DEPTH != DEPTH_NONE) {
        if (!compare(function, dv, ap[i])) {
          ++zfail;
          continue;
        }
      }
      if constexpr (FOG) {
        const int f = fog_table_factor(fogTable, wf) + 1;
        R += ((fr - R) * f) >> 8;
        G += ((fg - G) * f) >> 8;
        B += ((fb - B) * f) >> 8;
      }
      if constexpr (BLEND) {
        const uint32_t dst = cp[i];
        const int ms = A + 1, md = 256 - A;
        R = std::min(255, ((R * ms) >> 8) + ((expand5(dst >> 11) * md) >> 8));
        G = std::min(255, ((G * ms) >> 8) + ((expand6((dst >> 5) & 0x3F) * md) >> 8));
        B = std::min(255, ((B * ms) >> 8) + ((expand5(dst & 0x1F) * md) >> 8));
      }
      cp[i] = dither.pixel(j.x0 + i, R, G, B);
      if constexpr (WRITE) ap[i] = static_cast<uint16_t>(dv);
      ++out;
    }
  }
  c.in += static_cast<uint32_t>(n);
  c.zfail += zfail;
  c.out += out;
}

// Index of a plain loop: cc, ac, depth (0..2), write, fog, blend, noclamp.
constexpr uint32_t plain_index(uint32_t cc, uint32_t ac, uint32_t depth, bool write, bool fog, bool blend,
                               bool noclamp) {
  return ((((((cc * 2 + ac) * 3 + depth) * 2 + write) * 2 + fog) * 2 + blend) * 2) + noclamp;
}
constexpr uint32_t kPlainCount = PCC_COUNT * 2 * 3 * 2 * 2 * 2 * 2;

template <uint32_t I>
constexpr PlainFn plain_entry() {
  constexpr uint32_t noclamp = I & 1, blend = (I >> 1) & 1, fog = (I >> 2) & 1, write = (I >> 3) & 1;
  constexpr uint32_t depth = (I >> 4) % 3, ac = ((I >> 4) / 3) & 1, cc = (I >> 4) / 6;
  return &plain_loop<cc, ac, depth, write != 0, fog != 0, blend != 0, noclamp != 0>;
}

template <uint32_t... I>
constexpr std::array<PlainFn, sizeof...(I)> make_plain_table(std::integer_sequence<uint32_t, I...>) {
  return {{plain_entry<I>()...}};
}

constinit const std::array<PlainFn, kPlainCount> kPlain =
    make_plain_table(std::make_integer_sequence<uint32_t, kPlainCount>{});

// True when an iterated channel stays inside 0..255 (12.12) at both ends of the span, and so on all
// of it (the iterator is linear and cannot wrap in between).
bool channel_in_range(int32_t start, int32_t step, int n) {
  const int64_t last = int64_t(start) + int64_t(step) * (n - 1);
  return start >= 0 && start < (256 << 12) && last >= 0 && last < (256 << 12);
}

}  // namespace

PlainFn plain_function(const SpanJob &j, const PixelDecoded &d, uint32_t key) {
  const uint32_t cc = (key >> KEY_CC_SHIFT) & 3, ac = (key >> KEY_AC_SHIFT) & 3;
  const uint32_t depth = (key >> KEY_DEPTH_SHIFT) & 3;
  if (ac == AC_DYN || depth == DEPTH_DYN || (key & KEY_TESTS) || !d.rgbWrite) return nullptr;
  uint32_t form = cc == CC_CONST ? PCC_CONST : PCC_ITER;
  if (cc == CC_DYN) {
    // The texel alone (SCALE_OTHER by ONE of the texture) or scaled by the iterated colour
    // (SCALE_OTHER by LOCAL, the local input iterated).
    const CombineUnit &u = d.cc;
    if (!j.tex || !d.textured || u.other != GR_COMBINE_OTHER_TEXTURE || u.zeroOther || u.subLocal || u.add ||
        u.invert)
      return nullptr;
    if (u.factor == 0 && u.oneMinus) form = PCC_DECAL;
    else if (u.factor == 1 && !u.oneMinus && (u.local & 1) == 0) form = PCC_MODULATE;
    else return nullptr;
  }
  const bool auxWrites = d.auxWrite && j.arow;
  if (auxWrites && d.alphaBuffer) return nullptr;
  if (depth != DEPTH_NONE && !j.arow) return nullptr;
  bool fog = false, blend = false;
  if (key & KEY_FOG) {
    if (d.fogSource != GR_FOG_WITH_TABLE || d.fogMult2 || d.fogAdd2) return nullptr;
    fog = true;
  }
  if (key & KEY_BLEND) {
    if (d.blendSrc != GR_BLEND_SRC_ALPHA || d.blendDst != GR_BLEND_ONE_MINUS_SRC_ALPHA) return nullptr;
    blend = true;
  }
  const int n = j.x1 - j.x0;
  const bool noclamp = (form == PCC_ITER || form == PCC_MODULATE) && channel_in_range(j.r, j.dr, n) && channel_in_range(j.g, j.dg, n) &&
                       channel_in_range(j.b, j.db, n);
  const bool write = auxWrites && depth != DEPTH_NONE;
  return kPlain[plain_index(form, ac == AC_ITER ? 1 : 0, depth, write, fog, blend, noclamp)];
}

}  // namespace zvb
