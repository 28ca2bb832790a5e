// tmu_sample_avx2.cpp: the specialised texture span routines with AVX2, eight pixels a register,
// for machines that have it (tex_setup picks them at run time, see tex_simd).
//
// They compute exactly what the four-pixel routines of tmu_sample.cpp compute: the same float
// operations in the same order lane by lane (no fused multiply-add), the same integer LOD, wrap,
// clamp and blend arithmetic, and texel reads from the decoded copy of texture memory, here by
// gathers. Everything this file includes is read before the target switch, so that only the code
// of this file is built for AVX2; the routines have internal linkage.
#include "tmu/tmu_sample.h"

#if defined(__GNUC__) && defined(__x86_64__)
#define ZVB_TEX_AVX2 1
#endif

#if defined(ZVB_TEX_AVX2)

#include <immintrin.h>

#include <array>
#include <utility>

#pragma GCC push_options
#pragma GCC target("avx2")

#define ZVB_TEX8_INLINE inline __attribute__((always_inline))

namespace zvb::tex_internal {

namespace {

// One TMU's coordinates at eight pixels: s and t in 24.8 (0 where 1/w <= 0), LOD in 8.8.
struct Coords8 {
  __m256i s, t, lambda;
};

// The per-span constants of one TMU's LOD: base plus bias, the dither of each lane (zero when
// the TMU does not dither) and the clamp range.
struct Lod8 {
  __m256i base, dither, min, max;
};

ZVB_TEX8_INLINE Lod8 lod_constants(const TmuSetup &t, __m256i ditherRow) {
  return {_mm256_set1_epi32(t.lodBase + t.lodBias), t.dither ? ditherRow : _mm256_setzero_si256(),
          _mm256_set1_epi32(t.lodMin), _mm256_set1_epi32(t.lodMax)};
}

// The coordinates of one TMU at the pixels of offsets fi along the span: 1/w, s/w and t/w stepped
// as a product of the offset (not by repeated adds), one division for w, then the floor of s and
// t times 256 saturated to +-2^30 (max and min return the bound for NaN, as the narrower form's do).
template <unsigned K>
ZVB_TEX8_INLINE Coords8 coords8(const TmuCoords &c, const Lod8 &lod, __m256 fi) {
  const __m256 o = _mm256_add_ps(_mm256_set1_ps(c.oow), _mm256_mul_ps(fi, _mm256_set1_ps(c.doow)));
  const __m256 so = _mm256_add_ps(_mm256_set1_ps(c.sow), _mm256_mul_ps(fi, _mm256_set1_ps(c.dsow)));
  const __m256 to = _mm256_add_ps(_mm256_set1_ps(c.tow), _mm256_mul_ps(fi, _mm256_set1_ps(c.dtow)));
  const __m256 positive = _mm256_cmp_ps(o, _mm256_setzero_ps(), _CMP_GT_OQ);
  const __m256 w = _mm256_div_ps(_mm256_set1_ps(1.0f), o);
  auto fix8 = [&](__m256 v) {
    const __m256 f = _mm256_mul_ps(_mm256_and_ps(positive, v), _mm256_set1_ps(256.0f));
    const __m256 b = _mm256_min_ps(_mm256_max_ps(f, _mm256_set1_ps(-1073741824.0f)), _mm256_set1_ps(1073741824.0f));
    // The bounds are whole numbers, so the floor of the clamped value is the clamped floor; it
    // converts exactly (the narrower form steps a truncation down instead).
    return _mm256_cvttps_epi32(_mm256_round_ps(b, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC));
  };
  Coords8 r{fix8(_mm256_mul_ps(so, w)), fix8(_mm256_mul_ps(to, w)), lod.min};
  if constexpr ((K & TKEY_LOD) != 0) {
    // log2_fix lane by lane: exponent x 256 plus the table entry of the top mantissa bits.
    const __m256i bits = _mm256_castps_si256(o), low8 = _mm256_set1_epi32(255);
    const __m256 valid = _mm256_and_ps(positive, _mm256_cmp_ps(o, _mm256_set1_ps(3.0e38f), _CMP_LT_OQ));
    const __m256i e = _mm256_sub_epi32(_mm256_and_si256(_mm256_srli_epi32(bits, 23), low8), _mm256_set1_epi32(127));
    const __m256i m = _mm256_and_si256(_mm256_srli_epi32(bits, 15), low8);
    const __m256i l2 = _mm256_add_epi32(_mm256_slli_epi32(e, 8), _mm256_i32gather_epi32(kTexLog2.v, m, 4));
    const __m256i l = _mm256_add_epi32(_mm256_sub_epi32(lod.base, l2), lod.dither);
    const __m256i chosen = _mm256_blendv_epi8(lod.min, l, _mm256_castps_si256(valid));
    r.lambda = _mm256_min_epi32(_mm256_max_epi32(chosen, lod.min), lod.max);
  }
  return r;
}

// Eight texels blended by eight 8-bit weights, pixel by pixel: (a (256 - f) + b f) >> 8 on every
// channel, f in 0..256 given once in each 16-bit half of its pixel's lane (as the four-pixel form).
ZVB_TEX8_INLINE __m256i lerp8(__m256i a, __m256i b, __m256i f) {
  const __m256i low = _mm256_set1_epi32(0x00FF00FF);
  const __m256i g = _mm256_sub_epi16(_mm256_set1_epi16(256), f);
  const __m256i rb = _mm256_srli_epi16(
      _mm256_add_epi16(_mm256_mullo_epi16(_mm256_and_si256(a, low), g), _mm256_mullo_epi16(_mm256_and_si256(b, low), f)), 8);
  const __m256i ag =
      _mm256_add_epi16(_mm256_mullo_epi16(_mm256_srli_epi16(a, 8), g), _mm256_mullo_epi16(_mm256_srli_epi16(b, 8), f));
  return _mm256_or_si256(rb, _mm256_andnot_si256(low, ag));
}

// A weight per pixel copied into both 16-bit halves of its lane.
ZVB_TEX8_INLINE __m256i weights8(__m256i f) { return _mm256_or_si256(f, _mm256_slli_epi32(f, 16)); }

// The filtered texels of one TMU at eight pixels. The level, its offset and size go lane by lane
// (variable shifts); when the eight share one integer LOD, the usual case inside a triangle, they
// are one level's values broadcast, else they are looked up pixel by pixel.
template <unsigned K>
ZVB_TEX8_INLINE __m256i filter8(const TmuSetup &t, const Coords8 &c) {
  constexpr bool wrap = (K & TKEY_WRAP) != 0;
  // 16-bit texels are packed two bytes of memory to one entry of the copy.
  constexpr int shift16 = (K & TKEY_SIXTEEN) != 0 ? 1 : 0;
  const int n0 = _mm256_cvtsi256_si32(c.lambda) >> 8;
  bool uniform = true;
  if constexpr ((K & TKEY_LOD) != 0)
    uniform = _mm256_movemask_epi8(_mm256_cmpeq_epi32(_mm256_srai_epi32(c.lambda, 8), _mm256_set1_epi32(n0))) == -1;
  __m256i level, offset, wl, hl;
  if (uniform) {
    const int l = t.levelMap[n0];
    level = _mm256_set1_epi32(l);
    offset = _mm256_set1_epi32(int(t.levelOffset[l] >> shift16));
    wl = _mm256_set1_epi32(t.widthLog2[l]);
    hl = _mm256_set1_epi32(t.heightLog2[l]);
  } else {
    alignas(32) int32_t lam[8], lv[8], of[8], w[8], h[8];
    _mm256_store_si256(reinterpret_cast<__m256i *>(lam), c.lambda);
    for (int k = 0; k < 8; ++k) {
      const int l = t.levelMap[lam[k] >> 8];
      lv[k] = l;
      of[k] = int(t.levelOffset[l] >> shift16);
      w[k] = t.widthLog2[l];
      h[k] = t.heightLog2[l];
    }
    level = _mm256_load_si256(reinterpret_cast<const __m256i *>(lv));
    offset = _mm256_load_si256(reinterpret_cast<const __m256i *>(of));
    wl = _mm256_load_si256(reinterpret_cast<const __m256i *>(w));
    hl = _mm256_load_si256(reinterpret_cast<const __m256i *>(h));
  }
  const __m256i one = _mm256_set1_epi32(1), zero = _mm256_setzero_si256();
  const __m256i wmax = _mm256_sub_epi32(_mm256_sllv_epi32(one, wl), one);
  const __m256i hmax = _mm256_sub_epi32(_mm256_sllv_epi32(one, hl), one);
  // wrap_or_clamp on eight lanes.
  auto fold = [&](__m256i i, __m256i max) {
    if constexpr (wrap) return _mm256_and_si256(i, max);
    return _mm256_min_epi32(_mm256_max_epi32(i, zero), max);
  };
  // The decoded texel at (x, row = y << width log2) of each lane's level.
  auto fetch = [&](__m256i row, __m256i x) {
    const __m256i at = _mm256_add_epi32(offset, _mm256_add_epi32(row, x));
    return _mm256_i32gather_epi32(reinterpret_cast<const int *>(t.texels), at, 4);
  };
  __m256i u = _mm256_srav_epi32(c.s, level), v = _mm256_srav_epi32(c.t, level);
  if constexpr ((K & TKEY_BILINEAR) == 0) {
    return fetch(_mm256_sllv_epi32(fold(_mm256_srai_epi32(v, 8), hmax), wl), fold(_mm256_srai_epi32(u, 8), wmax));
  }
  const __m256i half = _mm256_set1_epi32(128), low = _mm256_set1_epi32(255);
  u = _mm256_sub_epi32(u, half);
  v = _mm256_sub_epi32(v, half);
  const __m256i x0 = _mm256_srai_epi32(u, 8), y0 = _mm256_srai_epi32(v, 8);
  const __m256i xa = fold(x0, wmax), xb = fold(_mm256_add_epi32(x0, one), wmax);
  const __m256i ra = _mm256_sllv_epi32(fold(y0, hmax), wl);
  const __m256i rb = _mm256_sllv_epi32(fold(_mm256_add_epi32(y0, one), hmax), wl);
  const __m256i c00 = fetch(ra, xa), c10 = fetch(ra, xb), c01 = fetch(rb, xa), c11 = fetch(rb, xb);
  const __m256i wu = weights8(_mm256_and_si256(u, low)), wv = weights8(_mm256_and_si256(v, low));
  return lerp8(lerp8(c00, c10, wu), lerp8(c01, c11, wu), wv);
}

// The specialised span routine of key K, eight pixels at a time: coordinates and LODs, texels of
// each TMU, then TMU0's combine (a plain decal, the LOD-fraction blend of the two TMUs, or the
// general combine pixel by pixel). Pixels past the end of the span are computed and not stored.
template <unsigned K>
void span_avx2(const TexSetup &ts, const TmuCoords *c, int x, int y, int n, uint32_t *out) {
  constexpr bool two = (K & TKEY_TWO) != 0;
  constexpr bool decal0 = (K & TKEY_DECAL0) != 0, blend0 = (K & TKEY_BLEND0) != 0;
  const TmuSetup &t0 = ts.tmu[0], &t1 = ts.tmu[1];
  // The mipmap dither of pixel x + i + k depends on k alone, i being a multiple of eight.
  const uint8_t *d = kDither[y & 3];
  const __m256i ditherRow = _mm256_setr_epi32(d[x & 3] * 16, d[(x + 1) & 3] * 16, d[(x + 2) & 3] * 16, d[(x + 3) & 3] * 16,
                                              d[x & 3] * 16, d[(x + 1) & 3] * 16, d[(x + 2) & 3] * 16, d[(x + 3) & 3] * 16);
  const Lod8 lod0 = lod_constants(t0, ditherRow);
  const Lod8 lod1 = two ? lod_constants(t1, ditherRow) : lod0;
  const __m256i lane = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  // The blend weight is the LOD fraction or its complement (swapped on odd LODs with the
  // trilinear flag), plus one: local + (other - local) (f + 1) / 256 is a lerp by f + 1.
  const __m256i complement = _mm256_set1_epi32(t0.rgb.oneMinus ? 255 : 0), low = _mm256_set1_epi32(255);
  for (int i = 0; i < n; i += 8) {
    const __m256 fi = _mm256_cvtepi32_ps(_mm256_add_epi32(_mm256_set1_epi32(i), lane));
    const Coords8 a = coords8<K>(c[0], lod0, fi);
    const __m256i local = filter8<K>(t0, a);
    __m256i other = _mm256_setzero_si256();
    if constexpr (two) other = filter8<K>(t1, coords8<K>(c[1], lod1, fi));
    __m256i r;
    if constexpr (decal0) {
      r = local;
    } else if constexpr (blend0) {
      __m256i f = _mm256_xor_si256(_mm256_and_si256(a.lambda, low), complement);
      if (t0.lodBlend) {
        const __m256i odd = _mm256_and_si256(_mm256_srli_epi32(a.lambda, 8), _mm256_set1_epi32(1));
        f = _mm256_and_si256(_mm256_xor_si256(f, _mm256_sub_epi32(_mm256_setzero_si256(), odd)), low);
      }
      f = _mm256_add_epi32(f, _mm256_set1_epi32(1));
      r = lerp8(local, other, weights8(f));
    } else {
      alignas(32) uint32_t res[8], oth[8];
      alignas(32) int32_t lam[8];
      _mm256_store_si256(reinterpret_cast<__m256i *>(res), local);
      _mm256_store_si256(reinterpret_cast<__m256i *>(oth), other);
      _mm256_store_si256(reinterpret_cast<__m256i *>(lam), a.lambda);
      for (int k = 0; k < 8; ++k)
        res[k] = combine_tmu(t0, res[k], oth[k], lam[k] & 255, detail_factor(t0, lam[k]), ((lam[k] >> 8) & 1) != 0);
      r = _mm256_load_si256(reinterpret_cast<const __m256i *>(res));
    }
    if (n - i >= 8)
      _mm256_storeu_si256(reinterpret_cast<__m256i *>(out + i), r);
    else
      _mm256_maskstore_epi32(reinterpret_cast<int *>(out + i), _mm256_cmpgt_epi32(_mm256_set1_epi32(n - i), lane), r);
  }
}

// The routine of key K: the eight-pixel one where the key names a specialised routine.
template <unsigned K>
constexpr TexSpanFn routine_of() {
  if constexpr (key_valid(K)) return &span_avx2<K>;
  else return &tex_span_generic;
}

template <unsigned... Keys>
constexpr std::array<TexSpanFn, sizeof...(Keys)> make_table(std::integer_sequence<unsigned, Keys...>) {
  return {{routine_of<Keys>()...}};
}

constexpr auto kSpanTableAvx2 = make_table(std::make_integer_sequence<unsigned, TKEY_COUNT>{});

}  // namespace

}  // namespace zvb::tex_internal

#pragma GCC pop_options

namespace zvb::tex_internal {

// Built for the baseline (after the target switch ends): asks the machine before handing out
// routines it could not run.
const TexSpanFn *span_table_avx2() {
  __builtin_cpu_init();
  if (!__builtin_cpu_supports("avx2")) return nullptr;
  return kSpanTableAvx2.data();
}

}  // namespace zvb::tex_internal

#else

namespace zvb::tex_internal {

const TexSpanFn *span_table_avx2() { return nullptr; }

}  // namespace zvb::tex_internal

#endif
