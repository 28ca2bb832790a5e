// spans_plain_avx2.cpp: the lean span loops (spans_lean.h) with AVX2, sixteen pixels a group, for
// machines that have it (plain_function picks them at run time).
//
// Everything this file includes is read before the target switch below, so that only the code of
// this file is built for AVX2; the loops and the unit's functions have internal linkage.
#include "pixel/spans_plain.h"

#if defined(ZVB_PLAIN_AVX2)

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>

#include "pixel/blend.h"
#include "pixel/combine.h"
#include "pixel/fog.h"

#pragma GCC push_options
#pragma GCC target("avx2,popcnt")

#include "pixel/spans_lean.h"

namespace zvb {

namespace {

// AVX2: groups of sixteen pixels. The 32-bit iterators of half h hold pixels 4h..4h+3 in the low
// 128 bits and 8+4h..8+4h+3 in the high ones, the order in which the per-128-bit packs put them back
// into pixel order; the second half is the first plus four pixels' steps.
struct Avx2 {
  using R = __m256i;
  using Wide = int;  // W goes through its low 32 bits only (plain_function checks the span's range)
  struct FogTable {
    __m256i t[4];     // entries 16c..16c+15 in both halves, each chunk after the first xored with the one before
    __m256i next[4];  // the same of the entry after each (the last one repeated)
  };

  static constexpr int N = 16;
  // With the words of a span's last group read and written in place, a group is worth its set-up
  // even for a single pixel.
  static constexpr int kFrom = 1, kFromFog = 1;
  static constexpr bool kWide64 = false;

  static R zero() { return _mm256_setzero_si256(); }
  static R set16(uint32_t v) { return _mm256_set1_epi16(static_cast<short>(v)); }
  static R set32(uint32_t v) { return _mm256_set1_epi32(static_cast<int>(v)); }
  static constexpr bool kSatW = false;  // packus saturates the W float's 65536 itself
  static constexpr bool kPartial = true;
  // Words [0, m) of p (1 <= m <= 16) in their lanes, the others 0: the pairs by a masked load of
  // 32-bit lanes, an odd last word broadcast and blended into its lane.
  static R load_part(const uint16_t *p, uint32_t m) {
    const R pairs = _mm256_cmpgt_epi32(set32(m >> 1), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    R v = _mm256_maskload_epi32(reinterpret_cast<const int *>(p), pairs);
    if (m & 1) v = _mm256_blendv_epi8(v, set16(p[m - 1]), cmpeq16(set16(m - 1), lane_index()));
    return v;
  }
  // Stores the lanes [0, m) of v to p, 1 <= m <= 16, and nothing else.
  static void store_part(uint16_t *p, R v, uint32_t m) {
    const R pairs = _mm256_cmpgt_epi32(set32(m >> 1), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    _mm256_maskstore_epi32(reinterpret_cast<int *>(p), pairs, v);
    if (m & 1) {
      alignas(32) uint16_t words[16];
      _mm256_store_si256(reinterpret_cast<__m256i *>(words), v);
      p[m - 1] = words[m - 1];
    }
  }
  // Lanes v + k d for the pixels k = 0..3 and 8..11 (the first half of a group).
  static R lanes(uint32_t v, uint32_t d) {
    const R k = _mm256_setr_epi32(0, 1, 2, 3, 8, 9, 10, 11);
    return _mm256_add_epi32(set32(v), _mm256_mullo_epi32(set32(d), k));
  }
  static R pattern4(uint8_t d0, uint8_t d1, uint8_t d2, uint8_t d3) {
    return _mm256_setr_epi16(d0, d1, d2, d3, d0, d1, d2, d3, d0, d1, d2, d3, d0, d1, d2, d3);
  }
  static R lane_index() { return _mm256_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15); }
  static R add32(R a, R b) { return _mm256_add_epi32(a, b); }
  static R sub32(R a, R b) { return _mm256_sub_epi32(a, b); }
  static R srai32(R a, int s) { return _mm256_srai_epi32(a, s); }
  static R srli32(R a, int s) { return _mm256_srli_epi32(a, s); }
  static R cmpgt32(R a, R b) { return _mm256_cmpgt_epi32(a, b); }
  static R float_bits(R a) { return _mm256_castps_si256(_mm256_cvtepi32_ps(a)); }
  static R packs32(R a, R b) { return _mm256_packs_epi32(a, b); }
  static R add16(R a, R b) { return _mm256_add_epi16(a, b); }
  static R sub16(R a, R b) { return _mm256_sub_epi16(a, b); }
  static R mullo16(R a, R b) { return _mm256_mullo_epi16(a, b); }
  static R srli16(R a, int s) { return _mm256_srli_epi16(a, s); }
  static R slli16(R a, int s) { return _mm256_slli_epi16(a, s); }
  static R min16(R a, R b) { return _mm256_min_epi16(a, b); }
  static R max16(R a, R b) { return _mm256_max_epi16(a, b); }
  static R cmpgt16(R a, R b) { return _mm256_cmpgt_epi16(a, b); }
  static R cmpeq16(R a, R b) { return _mm256_cmpeq_epi16(a, b); }
  // a >= b as unsigned 16-bit lanes.
  static R ge_u16(R a, R b) { return _mm256_cmpeq_epi16(_mm256_max_epu16(a, b), a); }
  static R clamp16(R v) { return _mm256_min_epi32(_mm256_max_epi32(v, zero()), set32(0xFFFF)); }
  // Two registers of 32-bit lanes to 16-bit ones, clamped to 0..0xFFFF (by the unsigned pack).
  static R pack16(R a, R b) { return _mm256_packus_epi32(a, b); }
  static R pack16_in(R a, R b) { return _mm256_packus_epi32(a, b); }
  static R and_(R a, R b) { return _mm256_and_si256(a, b); }
  static R andnot(R a, R b) { return _mm256_andnot_si256(a, b); }
  static R or_(R a, R b) { return _mm256_or_si256(a, b); }
  static R xor_(R a, R b) { return _mm256_xor_si256(a, b); }
  static R select(R m, R a, R b) { return _mm256_blendv_epi8(b, a, m); }
  static R load16(const uint16_t *p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(p)); }
  static void store16(uint16_t *p, R v) { _mm256_storeu_si256(reinterpret_cast<__m256i *>(p), v); }
  static void load_texels(const uint32_t *t, R &h0, R &h1) {
    const R a = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(t));
    const R b = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(t + 8));
    h0 = _mm256_permute2x128_si256(a, b, 0x20);
    h1 = _mm256_permute2x128_si256(a, b, 0x31);
  }
  static uint32_t count16(R m) { return static_cast<uint32_t>(std::popcount(static_cast<uint32_t>(_mm256_movemask_epi8(m)))) / 2; }

  // The table in registers: four chunks of sixteen entries, and the same shifted by one entry;
  // chunk c > 0 is kept as its xor with chunk c - 1 (see look_up).
  static void fog_start(FogTable &f, const uint8_t *table) {
    __m128i t[4], n[4];
    for (int c = 0; c < 4; ++c) t[c] = _mm_loadu_si128(reinterpret_cast<const __m128i *>(table + 16 * c));
    for (int c = 0; c < 3; ++c) n[c] = _mm_loadu_si128(reinterpret_cast<const __m128i *>(table + 16 * c + 1));
    const __m128i top = _mm_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -1);
    n[3] = _mm_or_si128(_mm_srli_si128(t[3], 1), _mm_and_si128(t[3], top));
    f.t[0] = _mm256_broadcastsi128_si256(t[0]);
    f.next[0] = _mm256_broadcastsi128_si256(n[0]);
    for (int c = 1; c < 4; ++c) {
      f.t[c] = _mm256_broadcastsi128_si256(_mm_xor_si128(t[c], t[c - 1]));
      f.next[c] = _mm256_broadcastsi128_si256(_mm_xor_si128(n[c], n[c - 1]));
    }
  }
  // The entries of a 64-entry table at indices i (the low byte of each 16-bit lane, the high byte
  // 0x80 so that it shuffles to zero), given i, i - 16, i - 32 and i - 48 bytewise. A byte shuffle
  // reads entry i & 15 of a chunk where the index byte is not negative and gives 0 where it is, so the
  // xors of the chunk differences up to chunk i >> 4 leave that chunk's entry.
  static R look_up(const __m256i *t, R i0, R i1, R i2, R i3) {
    const R lo = _mm256_xor_si256(_mm256_shuffle_epi8(t[0], i0), _mm256_shuffle_epi8(t[1], i1));
    const R hi = _mm256_xor_si256(_mm256_shuffle_epi8(t[2], i2), _mm256_shuffle_epi8(t[3], i3));
    return _mm256_xor_si256(lo, hi);
  }
  // fog_table_factor of each lane: t0 + (delta q) / 256 with the quotient rounded towards zero, as
  // the magnitude |delta| q >> 8 (at most 255 x 255) given delta's sign.
  static R fog_factor(const FogTable &f, const uint8_t *, R wf0, R wf1) {
    const R wf = _mm256_packus_epi32(wf0, wf1);
    const R i = _mm256_srli_epi16(wf, 10);
    const R q = _mm256_and_si256(_mm256_srli_epi16(wf, 2), _mm256_set1_epi16(0xFF));
    const R i0 = _mm256_or_si256(i, _mm256_set1_epi16(static_cast<short>(0x8000)));
    const R i1 = _mm256_sub_epi8(i0, _mm256_set1_epi16(16)), i2 = _mm256_sub_epi8(i0, _mm256_set1_epi16(32));
    const R i3 = _mm256_sub_epi8(i0, _mm256_set1_epi16(48));
    const R t0 = look_up(f.t, i0, i1, i2, i3), t1 = look_up(f.next, i0, i1, i2, i3);
    const R delta = _mm256_sub_epi16(t1, t0);
    const R step = _mm256_srli_epi16(_mm256_mullo_epi16(_mm256_abs_epi16(delta), q), 8);
    return _mm256_add_epi16(t0, _mm256_sign_epi16(step, delta));
  }
};

constinit const PlainTable kPlainAvx2 = make_lean_table<Avx2>(std::make_integer_sequence<uint32_t, kPlainCount>{});

}  // namespace

const PlainTable &plain_table_avx2() { return kPlainAvx2; }

}  // namespace zvb

#pragma GCC pop_options

#endif
