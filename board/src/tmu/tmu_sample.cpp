// Texture sampling: per-triangle set-up, LOD, point and bilinear filtering, clamp and wrap, the
// texture combine unit of each TMU and the TMU1 -> TMU0 chain.
//
// Fixed-point formats: LOD values are 8.8 (whole GR_LOD steps, 8 fractional bits); texel
// coordinates are 24.8 at the chosen level (8 fractional bits, as Voodoo2's bilinear weights).
#include "tmu/tmu.h"
#include "tmu/tmu_sample.h"

#include <array>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The per-pixel helpers must be inlined into each span routine for the routine to be fast.
#define ZVB_TEX_INLINE inline __attribute__((always_inline))

namespace zvb {

namespace tex_internal {

namespace {

Log2Table make_log2_table() {
  Log2Table t{};
  for (int m = 0; m < 256; ++m) t.v[m] = int32_t(std::lround(256.0 * std::log2(1.0 + m / 256.0)));
  return t;
}

}  // namespace

const Log2Table kTexLog2 = make_log2_table();

}  // namespace tex_internal

using namespace tex_internal;

namespace {

// Two texels blended by an 8-bit weight f (0..255) on all four channels at once:
// (a x (256 - f) + b x f) >> 8 per channel, in two 16-bit lanes.
ZVB_TEX_INLINE uint32_t lerp_argb(uint32_t a, uint32_t b, uint32_t f) {
  uint32_t g = 256 - f;
  uint32_t rb = (((a & 0x00FF00FFu) * g + (b & 0x00FF00FFu) * f) >> 8) & 0x00FF00FFu;
  uint32_t ag = (((a >> 8) & 0x00FF00FFu) * g + ((b >> 8) & 0x00FF00FFu) * f) & 0xFF00FF00u;
  return rb | ag;
}

}  // namespace

// Bilinear blend of four texels: two horizontal lerps by fu, then one vertical by fv, each
// (a (256 - f) + b f) >> 8 per channel. The SSE2 form computes the same integers.
uint32_t tmu_bilerp_reference(uint32_t c00, uint32_t c10, uint32_t c01, uint32_t c11, uint32_t fu,
                              uint32_t fv) {
  return lerp_argb(lerp_argb(c00, c10, fu), lerp_argb(c01, c11, fu), fv);
}

namespace {

ZVB_TEX_INLINE uint32_t tmu_bilerp(uint32_t c00, uint32_t c10, uint32_t c01, uint32_t c11,
                                   uint32_t fu, uint32_t fv) {
#if defined(__SSE2__)
  // Each channel of the two texels of a row side by side in 16-bit lanes, so that one multiply-add
  // by the weight pairs (256 - f, f) gives the four lerps x 256 in 32-bit lanes. The two rows then
  // share the 32-bit lanes (top in the low half) for the vertical multiply-add.
  const __m128i zero = _mm_setzero_si128();
  const __m128i wu = _mm_set1_epi32(int((fu << 16) | (256 - fu)));
  const __m128i wv = _mm_set1_epi32(int((fv << 16) | (256 - fv)));
  const __m128i top = _mm_unpacklo_epi8(_mm_unpacklo_epi8(_mm_cvtsi32_si128(int(c00)), _mm_cvtsi32_si128(int(c10))), zero);
  const __m128i bottom = _mm_unpacklo_epi8(_mm_unpacklo_epi8(_mm_cvtsi32_si128(int(c01)), _mm_cvtsi32_si128(int(c11))), zero);
  const __m128i t = _mm_srli_epi32(_mm_madd_epi16(top, wu), 8);
  const __m128i b = _mm_srli_epi32(_mm_madd_epi16(bottom, wu), 8);
  __m128i v = _mm_srli_epi32(_mm_madd_epi16(_mm_or_si128(t, _mm_slli_epi32(b, 16)), wv), 8);
  v = _mm_packs_epi32(v, v);
  return uint32_t(_mm_cvtsi128_si32(_mm_packus_epi16(v, v)));
#else
  return lerp_argb(lerp_argb(c00, c10, fu), lerp_argb(c01, c11, fu), fv);
#endif
}

// floor(v x 256) as an integer, saturated (NaN gives the lower bound). Truncation corrected by
// hand, since a floor call costs more than the whole texel on a plain x86-64 target.
ZVB_TEX_INLINE int32_t to_fix8(float v) {
  float f = v * 256.0f;
  if (!(f > -1073741824.0f)) return -1073741824;
  if (f > 1073741824.0f) return 1073741824;
  int32_t i = int32_t(f);
  return float(i) > f ? i - 1 : i;
}

TexCombineUnit decode_unit(int function, int factor, int invert) {
  TexCombineUnit u{};
  switch (function) {
    case GR_COMBINE_FUNCTION_ZERO: u.zeroOther = 1; break;
    case GR_COMBINE_FUNCTION_LOCAL: u.zeroOther = 1; u.add = 1; break;
    case GR_COMBINE_FUNCTION_LOCAL_ALPHA: u.zeroOther = 1; u.add = 2; break;
    case GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL: u.add = 1; break;
    case GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL_ALPHA: u.add = 2; break;
    case GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL: u.subLocal = 1; break;
    case GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL: u.subLocal = 1; u.add = 1; break;
    case GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL_ADD_LOCAL_ALPHA:
      u.subLocal = 1; u.add = 2; break;
    case GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL:
      u.zeroOther = 1; u.subLocal = 1; u.add = 1; break;
    case GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL_ALPHA:
      u.zeroOther = 1; u.subLocal = 1; u.add = 2; break;
    default: break;  // SCALE_OTHER, and the undefined codes that behave as it
  }
  u.factor = uint8_t(factor & 7);
  u.oneMinus = (factor & 8) ? 1 : 0;
  u.invert = invert ? 1 : 0;
  return u;
}

// Whether a unit reads the local texel. The factor matters only when the operand it multiplies
// is not constantly zero.
bool unit_reads_local(const TexCombineUnit &u) {
  bool factorUsed = !u.zeroOther || u.subLocal;
  return u.subLocal || u.add != 0 || (factorUsed && (u.factor == 1 || u.factor == 3));
}

// Whether a unit reads the upstream TMU's result.
bool unit_reads_other(const TexCombineUnit &u) {
  return !u.zeroOther || (u.subLocal && u.factor == 2);
}

ZVB_TEX_INLINE int wrap_or_clamp(int i, int sizeLog2, bool wrap) {
  int size = 1 << sizeLog2;
  if (wrap) return i & (size - 1);
  return i < 0 ? 0 : (i >= size ? size - 1 : i);
}

// The texel (x, y) of the level at byte offset `level`. The specialised routines read the
// decoded copy; the generic one decodes the bytes.
template <unsigned K, bool Sixteen>
ZVB_TEX_INLINE uint32_t fetch(const TmuSetup &t, uint32_t level, int x, int y, int wl) {
  const size_t at = size_t(level) + ((size_t(y) << wl) + size_t(x)) * (Sixteen ? 2 : 1);
  if constexpr ((K & TKEY_SPECIAL) != 0) {
    return t.texels[Sixteen ? at / 2 : at];
  } else if constexpr (Sixteen) {
    uint16_t v;
    std::memcpy(&v, t.mem + at, 2);  // little-endian memory
    return t.lut[v & 0xFF] | t.lut[256 + (v >> 8)];
  } else {
    return t.lut[t.mem[at]];
  }
}

// Filtered texel of one TMU at 24.8 coordinates (virtual 256 map) for the given level.
template <unsigned K>
ZVB_TEX_INLINE uint32_t filter_texel(const TmuSetup &t, int32_t sfix, int32_t tfix, int level,
                             bool bilinear) {
  constexpr bool special = (K & TKEY_SPECIAL) != 0;
  const bool sixteen = special ? (K & TKEY_SIXTEEN) != 0 : t.bytesPerTexel == 2;
  const bool wrapS = special ? (K & TKEY_WRAP) != 0 : t.wrapS;
  const bool wrapT = special ? (K & TKEY_WRAP) != 0 : t.wrapT;
  const uint32_t base = t.levelOffset[level];
  int wl = t.widthLog2[level], hl = t.heightLog2[level];
  int32_t u = sfix >> level, v = tfix >> level;
  auto get = [&](int x, int y) {
    return sixteen ? fetch<K, true>(t, base, x, y, wl) : fetch<K, false>(t, base, x, y, wl);
  };
  if (!bilinear) return get(wrap_or_clamp(u >> 8, wl, wrapS), wrap_or_clamp(v >> 8, hl, wrapT));
  u -= 128;
  v -= 128;
  int x0 = u >> 8, y0 = v >> 8;
  uint32_t fu = uint32_t(u & 255), fv = uint32_t(v & 255);
  int xa = wrap_or_clamp(x0, wl, wrapS), xb = wrap_or_clamp(x0 + 1, wl, wrapS);
  int ya = wrap_or_clamp(y0, hl, wrapT), yb = wrap_or_clamp(y0 + 1, hl, wrapT);
  return tmu_bilerp(get(xa, ya), get(xb, ya), get(xa, yb), get(xb, yb), fu, fv);
}

// One TMU at one pixel: LOD, level, filter, texel, combine with the upstream colour.
template <unsigned K>
ZVB_TEX_INLINE uint32_t sample_tmu(const TmuSetup &t, float sow, float tow, float oow, int x, int y,
                           uint32_t other, bool decal) {
  constexpr bool special = (K & TKEY_SPECIAL) != 0;
  const bool perPixelLod = special ? (K & TKEY_LOD) != 0 : t.perPixelLod;
  int32_t lambda = t.lodMin;
  bool wPositive = oow > 0.0f;
  if (perPixelLod) {
    if (wPositive && oow < 3.0e38f) {
      lambda = t.lodBase - log2_fix(oow) + t.lodBias;
      if (t.dither) lambda += kDither[y & 3][x & 3] * 16;
    }
    if (lambda < t.lodMin) lambda = t.lodMin;
    if (lambda > t.lodMax) lambda = t.lodMax;
  }
  int n = lambda >> 8;
  uint32_t local = 0;
  if (t.sampleLocal && t.hasTexture && t.levelMap[n] >= 0) {
    float s = 0.0f, tt = 0.0f;
    if (wPositive) {
      float w = 1.0f / oow;
      s = sow * w;
      tt = tow * w;
    }
    bool bilinear;
    if constexpr (special) bilinear = (K & TKEY_BILINEAR) != 0;
    else bilinear = lambda == t.lodMin ? t.magBilinear : t.minBilinear;
    local = filter_texel<K>(t, to_fix8(s), to_fix8(tt), t.levelMap[n], bilinear);
  }
  if (decal) return local;
  return combine_tmu(t, local, other, lambda & 255, detail_factor(t, lambda), (n & 1) != 0);
}

template <unsigned K>
void span_impl(const TexSetup &ts, const TmuCoords *c, int x, int y, int n, uint32_t *out) {
  constexpr bool special = (K & TKEY_SPECIAL) != 0;
  const int active = special ? ((K & TKEY_TWO) ? 2 : 1) : ts.numActive;
  const bool decal0 = special ? (K & TKEY_DECAL0) != 0 : ts.tmu[0].decal;
  const bool decal1 = special ? true : ts.tmu[1].decal;
  if (active == 0) {
    for (int i = 0; i < n; ++i) out[i] = 0;
    return;
  }
  for (int i = 0; i < n; ++i) {
    float fi = float(i);
    uint32_t other = 0;
    if (active == 2) {
      const TmuCoords &c1 = c[1];
      other = sample_tmu<K>(ts.tmu[1], c1.sow + fi * c1.dsow, c1.tow + fi * c1.dtow,
                            c1.oow + fi * c1.doow, x + i, y, 0, decal1);
    }
    const TmuCoords &c0 = c[0];
    out[i] = sample_tmu<K>(ts.tmu[0], c0.sow + fi * c0.dsow, c0.tow + fi * c0.dtow,
                           c0.oow + fi * c0.doow, x + i, y, other, decal0);
  }
}

// The coordinates of one TMU at pixels i..i+3 of a span, as sample_tmu computes them: s and t in
// 24.8 (0 where 1/w <= 0) and the LOD in 8.8. The four divisions and conversions run side by side.
template <unsigned K>
ZVB_TEX_INLINE void coords4(const TmuSetup &t, const TmuCoords &c, int i, int x, int y, int32_t *sfix,
                            int32_t *tfix, int32_t *lambda) {
  alignas(16) float oow[4];
#if defined(__SSE2__)
  const __m128 fi = _mm_cvtepi32_ps(_mm_setr_epi32(i, i + 1, i + 2, i + 3));
  const __m128 o = _mm_add_ps(_mm_set1_ps(c.oow), _mm_mul_ps(fi, _mm_set1_ps(c.doow)));
  const __m128 so = _mm_add_ps(_mm_set1_ps(c.sow), _mm_mul_ps(fi, _mm_set1_ps(c.dsow)));
  const __m128 to = _mm_add_ps(_mm_set1_ps(c.tow), _mm_mul_ps(fi, _mm_set1_ps(c.dtow)));
  const __m128 positive = _mm_cmpgt_ps(o, _mm_setzero_ps());
  const __m128 w = _mm_div_ps(_mm_set1_ps(1.0f), o);
  // to_fix8 lane by lane: max/min return the bound for NaN, and a truncation above the value
  // steps down by one.
  auto fix8 = [&](__m128 v) {
    const __m128 f = _mm_mul_ps(_mm_and_ps(positive, v), _mm_set1_ps(256.0f));
    const __m128 b = _mm_min_ps(_mm_max_ps(f, _mm_set1_ps(-1073741824.0f)), _mm_set1_ps(1073741824.0f));
    const __m128i n = _mm_cvttps_epi32(b);
    return _mm_add_epi32(n, _mm_castps_si128(_mm_cmpgt_ps(_mm_cvtepi32_ps(n), b)));
  };
  _mm_store_si128(reinterpret_cast<__m128i *>(sfix), fix8(_mm_mul_ps(so, w)));
  _mm_store_si128(reinterpret_cast<__m128i *>(tfix), fix8(_mm_mul_ps(to, w)));
  _mm_store_ps(oow, o);
#else
  for (int k = 0; k < 4; ++k) {
    const float fk = float(i + k);
    oow[k] = c.oow + fk * c.doow;
    float s = 0.0f, tt = 0.0f;
    if (oow[k] > 0.0f) {
      const float w = 1.0f / oow[k];
      s = (c.sow + fk * c.dsow) * w;
      tt = (c.tow + fk * c.dtow) * w;
    }
    sfix[k] = to_fix8(s);
    tfix[k] = to_fix8(tt);
  }
#endif
  for (int k = 0; k < 4; ++k) {
    int32_t l = t.lodMin;
    if constexpr ((K & TKEY_LOD) != 0) {
      if (oow[k] > 0.0f && oow[k] < 3.0e38f) {
        l = t.lodBase - log2_fix(oow[k]) + t.lodBias;
        if (t.dither) l += kDither[y & 3][(x + i + k) & 3] * 16;
      }
      if (l < t.lodMin) l = t.lodMin;
      if (l > t.lodMax) l = t.lodMax;
    }
    lambda[k] = l;
  }
}

// One TMU's result at one pixel of a specialised routine, from the coordinates coords4 gave (the
// key guarantees a valid texture whose every reachable level is held).
template <unsigned K>
ZVB_TEX_INLINE uint32_t texel_at(const TmuSetup &t, int32_t sfix, int32_t tfix, int32_t lambda, uint32_t other,
                                 bool decal) {
  const int n = lambda >> 8;
  const uint32_t local = filter_texel<K>(t, sfix, tfix, t.levelMap[n], (K & TKEY_BILINEAR) != 0);
  if (decal) return local;
  return combine_tmu(t, local, other, lambda & 255, detail_factor(t, lambda), (n & 1) != 0);
}

#if defined(__SSE2__)
// Four texels blended by four 8-bit weights, pixel by pixel: (a (256 - f) + b f) >> 8 on every
// channel, f in 0..256 given once in each 16-bit half of its pixel's lane. Every product and sum
// stays below 65536, so plain 16-bit multiplies give the integers lerp_argb gives.
ZVB_TEX_INLINE __m128i lerp4(__m128i a, __m128i b, __m128i f) {
  const __m128i low = _mm_set1_epi32(0x00FF00FF);
  const __m128i g = _mm_sub_epi16(_mm_set1_epi16(256), f);
  const __m128i rb = _mm_srli_epi16(
      _mm_add_epi16(_mm_mullo_epi16(_mm_and_si128(a, low), g), _mm_mullo_epi16(_mm_and_si128(b, low), f)), 8);
  const __m128i ag = _mm_add_epi16(_mm_mullo_epi16(_mm_srli_epi16(a, 8), g), _mm_mullo_epi16(_mm_srli_epi16(b, 8), f));
  return _mm_or_si128(rb, _mm_andnot_si128(low, ag));
}

// A weight per pixel (four 32-bit values) copied into both 16-bit halves of its lane.
ZVB_TEX_INLINE __m128i weights4(const uint32_t *f) {
  const __m128i v = _mm_load_si128(reinterpret_cast<const __m128i *>(f));
  return _mm_or_si128(v, _mm_slli_epi32(v, 16));
}

// The filtered texels of one TMU at four pixels that do not share one level, pixel by pixel.
template <unsigned K>
__attribute__((noinline)) __m128i filter4_mixed(const TmuSetup &t, const int32_t *sfix, const int32_t *tfix, const int32_t *lambda) {
  constexpr bool sixteen = (K & TKEY_SIXTEEN) != 0, wrap = (K & TKEY_WRAP) != 0;
  alignas(16) uint32_t c00[4], c10[4], c01[4], c11[4], fu[4], fv[4];
  for (int k = 0; k < 4; ++k) {
    const int level = t.levelMap[lambda[k] >> 8];
    const uint32_t base = t.levelOffset[level];
    const int wl = t.widthLog2[level], hl = t.heightLog2[level];
    auto get = [&](int xi, int yi) {
      return sixteen ? fetch<K, true>(t, base, xi, yi, wl) : fetch<K, false>(t, base, xi, yi, wl);
    };
    int32_t u = sfix[k] >> level, v = tfix[k] >> level;
    if constexpr ((K & TKEY_BILINEAR) == 0) {
      c00[k] = get(wrap_or_clamp(u >> 8, wl, wrap), wrap_or_clamp(v >> 8, hl, wrap));
      continue;
    }
    u -= 128;
    v -= 128;
    const int x0 = u >> 8, y0 = v >> 8;
    fu[k] = uint32_t(u & 255);
    fv[k] = uint32_t(v & 255);
    const int xa = wrap_or_clamp(x0, wl, wrap), xb = wrap_or_clamp(x0 + 1, wl, wrap);
    const int ya = wrap_or_clamp(y0, hl, wrap), yb = wrap_or_clamp(y0 + 1, hl, wrap);
    c00[k] = get(xa, ya);
    c10[k] = get(xb, ya);
    c01[k] = get(xa, yb);
    c11[k] = get(xb, yb);
  }
  auto load = [](const uint32_t *p) { return _mm_load_si128(reinterpret_cast<const __m128i *>(p)); };
  if constexpr ((K & TKEY_BILINEAR) == 0) return load(c00);
  const __m128i wu = weights4(fu);
  return lerp4(lerp4(load(c00), load(c10), wu), lerp4(load(c01), load(c11), wu), weights4(fv));
}

// Decoded texels at four positions (texel indexes in a level) as one vector.
ZVB_TEX_INLINE __m128i gather4(const uint32_t *base, __m128i index) {
  alignas(16) int32_t i[4];
  _mm_store_si128(reinterpret_cast<__m128i *>(i), index);
  return _mm_setr_epi32(int(base[i[0]]), int(base[i[1]]), int(base[i[2]]), int(base[i[3]]));
}

// The filtered texels of one TMU at four pixels, from the coordinates coords4 gave. When the
// four share one level (the rule inside a triangle), positions, weights and wrapping or clamping
// are computed side by side and only the texel reads go one at a time.
template <unsigned K>
ZVB_TEX_INLINE __m128i filter4(const TmuSetup &t, const int32_t *sfix, const int32_t *tfix, const int32_t *lambda) {
  constexpr bool sixteen = (K & TKEY_SIXTEEN) != 0, wrap = (K & TKEY_WRAP) != 0;
  const int level = t.levelMap[lambda[0] >> 8];
  if constexpr ((K & TKEY_LOD) != 0) {
    if (t.levelMap[lambda[1] >> 8] != level || t.levelMap[lambda[2] >> 8] != level ||
        t.levelMap[lambda[3] >> 8] != level)
      return filter4_mixed<K>(t, sfix, tfix, lambda);
  }
  const uint32_t *base = t.texels + (sixteen ? t.levelOffset[level] / 2 : t.levelOffset[level]);
  const int wl = t.widthLog2[level], hl = t.heightLog2[level];
  const __m128i shift = _mm_cvtsi32_si128(level), rowShift = _mm_cvtsi32_si128(wl);
  const __m128i wmax = _mm_set1_epi32((1 << wl) - 1), hmax = _mm_set1_epi32((1 << hl) - 1);
  // wrap_or_clamp on four lanes.
  auto fold = [](__m128i i, __m128i max) {
    if constexpr (wrap) return _mm_and_si128(i, max);
    i = _mm_andnot_si128(_mm_srai_epi32(i, 31), i);
    const __m128i over = _mm_cmpgt_epi32(i, max);
    return _mm_or_si128(_mm_andnot_si128(over, i), _mm_and_si128(over, max));
  };
  __m128i u = _mm_sra_epi32(_mm_load_si128(reinterpret_cast<const __m128i *>(sfix)), shift);
  __m128i v = _mm_sra_epi32(_mm_load_si128(reinterpret_cast<const __m128i *>(tfix)), shift);
  if constexpr ((K & TKEY_BILINEAR) == 0) {
    const __m128i xi = fold(_mm_srai_epi32(u, 8), wmax), yi = fold(_mm_srai_epi32(v, 8), hmax);
    return gather4(base, _mm_add_epi32(_mm_sll_epi32(yi, rowShift), xi));
  }
  const __m128i half = _mm_set1_epi32(128), one = _mm_set1_epi32(1), low = _mm_set1_epi32(255);
  u = _mm_sub_epi32(u, half);
  v = _mm_sub_epi32(v, half);
  const __m128i x0 = _mm_srai_epi32(u, 8), y0 = _mm_srai_epi32(v, 8);
  const __m128i xa = fold(x0, wmax), xb = fold(_mm_add_epi32(x0, one), wmax);
  const __m128i ra = _mm_sll_epi32(fold(y0, hmax), rowShift);
  const __m128i rb = _mm_sll_epi32(fold(_mm_add_epi32(y0, one), hmax), rowShift);
  const __m128i c00 = gather4(base, _mm_add_epi32(ra, xa));
  const __m128i c10 = gather4(base, _mm_add_epi32(ra, xb));
  const __m128i c01 = gather4(base, _mm_add_epi32(rb, xa));
  const __m128i c11 = gather4(base, _mm_add_epi32(rb, xb));
  const __m128i fu = _mm_and_si128(u, low), fv = _mm_and_si128(v, low);
  const __m128i wu = _mm_or_si128(fu, _mm_slli_epi32(fu, 16)), wv = _mm_or_si128(fv, _mm_slli_epi32(fv, 16));
  return lerp4(lerp4(c00, c10, wu), lerp4(c01, c11, wu), wv);
}

// The specialised span routine of key K (TKEY_SPECIAL set), four pixels at a time: coordinates
// and LODs, texels of each TMU, then TMU0's combine (a plain decal, the LOD-fraction blend of the
// two TMUs, or the general combine pixel by pixel). Computes exactly what span_impl<0> computes for
// the states the key stands for. Pixels past the end of the span are computed and dropped: their
// coordinates are clamped or wrapped into the texture like any other.
template <unsigned K>
void span_special(const TexSetup &ts, const TmuCoords *c, int x, int y, int n, uint32_t *out) {
  constexpr bool two = (K & TKEY_TWO) != 0;
  constexpr bool decal0 = (K & TKEY_DECAL0) != 0, blend0 = (K & TKEY_BLEND0) != 0;
  const TmuSetup &t0 = ts.tmu[0];
  alignas(16) int32_t s0[4], q0[4], l0[4], s1[4], q1[4], l1[4];
  alignas(16) uint32_t res[4], oth[4];
  // The blend weight is the LOD fraction or its complement (swapped on odd LODs with the
  // trilinear flag), plus one: local + (other - local) (f + 1) / 256 is a lerp by f + 1.
  const uint32_t complement = t0.rgb.oneMinus ? 255u : 0u;
  for (int i = 0; i < n; i += 4) {
    coords4<K>(t0, c[0], i, x, y, s0, q0, l0);
    const __m128i local = filter4<K>(t0, s0, q0, l0);
    __m128i other = _mm_setzero_si128();
    if constexpr (two) {
      coords4<K>(ts.tmu[1], c[1], i, x, y, s1, q1, l1);
      other = filter4<K>(ts.tmu[1], s1, q1, l1);
    }
    __m128i r;
    if constexpr (decal0) {
      r = local;
    } else if constexpr (blend0) {
      const __m128i lod = _mm_load_si128(reinterpret_cast<const __m128i *>(l0));
      __m128i f = _mm_xor_si128(_mm_and_si128(lod, _mm_set1_epi32(255)), _mm_set1_epi32(int(complement)));
      if (t0.lodBlend) {
        const __m128i odd = _mm_and_si128(_mm_srli_epi32(lod, 8), _mm_set1_epi32(1));
        f = _mm_xor_si128(f, _mm_sub_epi32(_mm_setzero_si128(), odd));
        f = _mm_and_si128(f, _mm_set1_epi32(255));
      }
      f = _mm_add_epi32(f, _mm_set1_epi32(1));
      r = lerp4(local, other, _mm_or_si128(f, _mm_slli_epi32(f, 16)));
    } else {
      _mm_store_si128(reinterpret_cast<__m128i *>(res), local);
      _mm_store_si128(reinterpret_cast<__m128i *>(oth), other);
      for (int k = 0; k < 4; ++k) {
        const int lodN = l0[k] >> 8;
        res[k] = combine_tmu(t0, res[k], oth[k], l0[k] & 255, detail_factor(t0, l0[k]), (lodN & 1) != 0);
      }
      r = _mm_load_si128(reinterpret_cast<const __m128i *>(res));
    }
    if (n - i >= 4) {
      _mm_storeu_si128(reinterpret_cast<__m128i *>(out + i), r);
    } else {
      _mm_store_si128(reinterpret_cast<__m128i *>(res), r);
      for (int k = 0; k < n - i; ++k) out[i + k] = res[k];
    }
  }
}
#else
// The specialised span routine of key K (TKEY_SPECIAL set): coordinates four pixels at a time,
// then the texels. Computes exactly what span_impl<0> computes for the states the key stands for.
template <unsigned K>
void span_special(const TexSetup &ts, const TmuCoords *c, int x, int y, int n, uint32_t *out) {
  constexpr bool two = (K & TKEY_TWO) != 0;
  constexpr bool decal0 = (K & TKEY_DECAL0) != 0;
  alignas(16) int32_t s0[4], t0[4], l0[4], s1[4], t1[4], l1[4];
  for (int i = 0; i < n; i += 4) {
    coords4<K>(ts.tmu[0], c[0], i, x, y, s0, t0, l0);
    if constexpr (two) coords4<K>(ts.tmu[1], c[1], i, x, y, s1, t1, l1);
    const int m = n - i < 4 ? n - i : 4;
    for (int k = 0; k < m; ++k) {
      uint32_t other = 0;
      if constexpr (two) other = texel_at<K>(ts.tmu[1], s1[k], t1[k], l1[k], 0, true);
      out[i + k] = texel_at<K>(ts.tmu[0], s0[k], t0[k], l0[k], other, decal0);
    }
  }
}
#endif

template <unsigned... Keys>
constexpr std::array<TexSpanFn, sizeof...(Keys)> make_table(std::integer_sequence<unsigned, Keys...>) {
  return {{(key_valid(Keys) ? &span_special<Keys> : &tex_span_generic)...}};
}

constexpr auto kSpanTable = make_table(std::make_integer_sequence<unsigned, TKEY_COUNT>{});

// The widest vector unit this build and machine run the span routines on, lowered by
// ZVGL_BOARD_SIMD (scalar or sse2: the build's own).
int detect_tex_simd() {
  int level = TEX_SIMD_BASE;
  if (span_table_avx2() != nullptr) level = TEX_SIMD_AVX2;
  if (const char *v = std::getenv("ZVGL_BOARD_SIMD")) {
    if (std::strcmp(v, "scalar") == 0 || std::strcmp(v, "sse2") == 0) level = TEX_SIMD_BASE;
  }
  return level;
}

int widest_tex_simd() {
  static const int level = detect_tex_simd();
  return level;
}

// The routines tex_setup picks from; null until the first set-up.
std::atomic<const TexSpanFn *> g_span_table{nullptr};

const TexSpanFn *span_table() {
  const TexSpanFn *table = g_span_table.load(std::memory_order_relaxed);
  if (table == nullptr) {
    table = widest_tex_simd() == TEX_SIMD_AVX2 ? span_table_avx2() : kSpanTable.data();
    g_span_table.store(table, std::memory_order_relaxed);
  }
  return table;
}

// The modes of one TMU as key bits, or false when they need the generic routine.
bool mode_bits(const TmuSetup &t, unsigned *bits) {
  if (!t.hasTexture || !t.sampleLocal || t.wrapS != t.wrapT) return false;
  if (t.perPixelLod && t.minBilinear != t.magBilinear) return false;
  for (int n = t.lodMin >> 8; n <= (t.lodMax >> 8); ++n)
    if (t.levelMap[n] < 0) return false;
  *bits = (t.magBilinear ? TKEY_BILINEAR : 0u) | (t.bytesPerTexel == 2 ? TKEY_SIXTEEN : 0u) |
          (t.perPixelLod ? TKEY_LOD : 0u) | (t.wrapS ? TKEY_WRAP : 0u);
  return true;
}

// The key bits of a TMU whose set-up is done: its modes, when the decoded copy is there too.
bool tmu_key_bits(const TmuSetup &t, unsigned *bits) { return t.texels && mode_bits(t, bits); }

// Whether a TMU's combine is local + (other - local) x the LOD fraction (or one minus it) on
// colour and alpha alike, without inversion: the blend of trilinear filtering.
bool lod_blend(const TmuSetup &t) {
  const TexCombineUnit &u = t.rgb, &a = t.alpha;
  return !u.zeroOther && u.subLocal && u.add == 1 && u.factor == 5 && !u.invert &&
         a.zeroOther == u.zeroOther && a.subLocal == u.subLocal && a.add == u.add &&
         a.factor == u.factor && a.oneMinus == u.oneMinus && !a.invert;
}

unsigned choose_key(const TexSetup &ts) {
  unsigned b0 = 0, b1 = 0;
  if (ts.numActive == 0 || !tmu_key_bits(ts.tmu[0], &b0)) return 0;
  if (ts.numActive == 1) return TKEY_SPECIAL | b0 | (ts.tmu[0].decal ? TKEY_DECAL0 : 0u);
  if (!tmu_key_bits(ts.tmu[1], &b1) || b1 != b0 || !ts.tmu[1].decal) return 0;
  return TKEY_SPECIAL | TKEY_TWO | b0 | (ts.tmu[0].decal ? TKEY_DECAL0 : 0u) |
         (lod_blend(ts.tmu[0]) ? TKEY_BLEND0 : 0u);
}

// Per-TMU set-up: validates the registers (a restored state may hold anything), refreshes the
// decoding table and lays out the levels. Everything but the LOD base, which the caller adds.
void setup_tmu(TmuSetup &t, const TmuState &st, TmuMemory &mem, bool hintMipDither) {
  std::memset(&t, 0, sizeof t);
  t.mem = mem.bytes.data();
  t.lut = mem.lut;
  t.rgb = decode_unit(st.rgbFunction, st.rgbFactor, st.rgbInvert);
  t.alpha = decode_unit(st.alphaFunction, st.alphaFactor, st.alphaInvert);
  t.sampleLocal = unit_reads_local(t.rgb) || unit_reads_local(t.alpha);
  auto plainLocal = [](const TexCombineUnit &u) { return u.zeroOther && !u.subLocal && u.add == 1 &&
                                                       !u.invert; };
  t.decal = plainLocal(t.rgb) && plainLocal(t.alpha);
  t.lodBlend = st.lodBlend != 0;
  t.minBilinear = st.minFilter == GR_TEXTUREFILTER_BILINEAR;
  t.magBilinear = st.magFilter == GR_TEXTUREFILTER_BILINEAR;
  t.wrapS = st.clampS == GR_TEXTURECLAMP_WRAP;
  t.wrapT = st.clampT == GR_TEXTURECLAMP_WRAP;
  t.detailBias = int32_t(st.detailBias) * 256;
  t.detailScale = st.detailScale & 7;
  t.detailMax = st.detailMax;
  t.lodBias = int32_t(st.lodBias) * 64;
  t.dither = st.mipmapMode == GR_MIPMAP_NEAREST_DITHER && hintMipDither;
  for (int n = 0; n < 9; ++n) t.levelMap[n] = -1;

  int large = st.largeLod, small = st.smallLod;
  bool valid = tmu_format_valid(st.format) && large <= small && small <= GR_LOD_1 &&
               st.aspect <= GR_ASPECT_1x8 && st.evenOdd >= 1 && st.evenOdd <= 3;
  uint64_t need = 0;
  if (valid) {
    GrTexInfo info{small, large, st.aspect, st.format, nullptr};
    need = tmu_TexTextureMemRequired(st.evenOdd, &info);
    valid = uint64_t(st.baseAddress) + need <= mem.size;
  }
  if (!valid) {
    large = small = GR_LOD_1;
  }
  t.lodMin = large * 256;
  t.lodMax = (st.mipmapMode == GR_MIPMAP_DISABLE ? large : small) * 256;
  t.perPixelLod = t.lodMax > t.lodMin;
  if (!valid) return;

  t.hasTexture = true;
  t.bytesPerTexel = tmu_format_bytes(st.format);
  if (mem.lutFormat != st.format || mem.lutNcc != (st.nccTable & 1) ||
      mem.lutSerial != mem.tableSerial) {
    tmu_build_lut(mem.lut, st.format, mem.ncc[st.nccTable & 1], mem.palette);
    mem.lutFormat = st.format;
    mem.lutNcc = st.nccTable & 1;
    mem.lutSerial = mem.tableSerial;
  }
  uint32_t offset = st.baseAddress;
  bool held[9] = {};
  for (int l = large; l <= small; ++l) {
    int w = 1, h = 1;
    tmu_level_size(l, st.aspect, &w, &h);
    uint8_t wl = 0, hl = 0;
    while ((1 << wl) < w) ++wl;
    while ((1 << hl) < h) ++hl;
    t.widthLog2[l] = wl;
    t.heightLog2[l] = hl;
    held[l] = (st.evenOdd & ((l & 1) ? 2 : 1)) != 0;
    if (!held[l]) continue;
    t.levelOffset[l] = offset;
    offset += uint32_t(w < 2 ? 2 : w) * uint32_t(h < 2 ? 2 : h) * uint32_t(t.bytesPerTexel);
  }
  // A LOD whose level is not held uses the next smaller level held; past the end, the last one.
  for (int n = large; n <= small; ++n) {
    for (int l = n; l <= small && t.levelMap[n] < 0; ++l)
      if (held[l]) t.levelMap[n] = int8_t(l);
    for (int l = n; l >= large && t.levelMap[n] < 0; --l)
      if (held[l]) t.levelMap[n] = int8_t(l);
  }
  // The specialised routines read the decoded copy of the texture: brought up to date here for
  // the states they serve (tmu_key_bits tests it is there).
  unsigned bits = 0;
  if (mode_bits(t, &bits))
    t.texels = tmu_texels_decode(mem, st.baseAddress, st.baseAddress + uint32_t(need), st.format,
                                 st.nccTable & 1);

}

// The LOD base of a triangle: log2 of the larger of the two texel gradients (x and y), in 8.8.
int32_t lod_base(const TmuGradients &g) {
  float lx = g.dsdx * g.dsdx + g.dtdx * g.dtdx;
  float ly = g.dsdy * g.dsdy + g.dtdy * g.dtdy;
  float m = lx > ly ? lx : ly;
  if (!(m > 0.0f)) return -(1 << 20);        // no gradient (or NaN): magnified
  if (m > 3.0e38f) return 1 << 20;           // overflow: smallest level
  return log2_fix(m) >> 1;
}

}  // namespace

void tex_span_generic(const TexSetup &ts, const TmuCoords *coords, int x, int y, int n,
                      uint32_t *out) {
  span_impl<0>(ts, coords, x, y, n, out);
}

int tex_simd() { return span_table() == kSpanTable.data() ? TEX_SIMD_BASE : TEX_SIMD_AVX2; }

int tex_force_simd(int level) {
  const int top = widest_tex_simd();
  if (level < 0 || level > top) level = top;
  g_span_table.store(level == TEX_SIMD_AVX2 ? span_table_avx2() : kSpanTable.data(), std::memory_order_relaxed);
  return level == TEX_SIMD_AVX2 ? TEX_SIMD_AVX2 : TEX_SIMD_BASE;
}

bool tmu_samples_texture(const TmuState &st) {
  return unit_reads_local(decode_unit(st.rgbFunction, st.rgbFactor, st.rgbInvert)) ||
         unit_reads_local(decode_unit(st.alphaFunction, st.alphaFactor, st.alphaInvert));
}

void tex_setup(TexSetup &ts, const TmuState *st, TmuMemory *const *mem, int numTmu,
               const TmuGradients *grad, bool hintMipDither) {
  if (numTmu > kMaxTmu) numTmu = kMaxTmu;
  if (numTmu < 0) numTmu = 0;
  for (int i = 0; i < numTmu; ++i) {
    if (mem[i]) {
      // Successive triangles mostly share the registers: the last result is reused while the
      // registers, the hint and the tables are those it was made from.
      TmuMemory &m = *mem[i];
      if (m.setupSerial == m.tableSerial && m.setupWrites == m.writeSerial &&
          m.setupHint == hintMipDither &&
          std::memcmp(&m.setupState, &st[i], sizeof st[i]) == 0) {
        ts.tmu[i] = m.setup;
      } else {
        setup_tmu(ts.tmu[i], st[i], m, hintMipDither);
        m.setup = ts.tmu[i];
        m.setupState = st[i];
        m.setupHint = hintMipDither;
        m.setupSerial = m.tableSerial;
        m.setupWrites = m.writeSerial;
      }
      ts.tmu[i].lodBase = lod_base(grad[i]);
    } else {
      std::memset(&ts.tmu[i], 0, sizeof ts.tmu[i]);
      ts.tmu[i].rgb = decode_unit(GR_COMBINE_FUNCTION_ZERO, 0, 0);
      ts.tmu[i].alpha = ts.tmu[i].rgb;
      for (int8_t &l : ts.tmu[i].levelMap) l = -1;
      ts.tmu[i].lodMin = ts.tmu[i].lodMax = GR_LOD_1 * 256;
    }
  }
  for (int i = numTmu; i < kMaxTmu; ++i) std::memset(&ts.tmu[i], 0, sizeof ts.tmu[i]);
  if (numTmu == 0) ts.numActive = 0;
  else if (numTmu >= 2 && (unit_reads_other(ts.tmu[0].rgb) || unit_reads_other(ts.tmu[0].alpha)))
    ts.numActive = 2;
  else ts.numActive = 1;
  ts.span = span_table()[choose_key(ts)];
}

}  // namespace zvb
