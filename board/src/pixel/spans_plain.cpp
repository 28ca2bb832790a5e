// spans_plain.cpp: the choice of a lean span loop, and the loops for SSE2 (or scalar only, on
// builds without SSE2). The loops themselves are in spans_lean.h; the AVX2 ones, where the build has
// them, in spans_plain_avx2.cpp.
#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <climits>
#include <cstdlib>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "pixel/spans_lean.h"

namespace zvb {

std::atomic<int> g_plain_vector_from{1};

namespace {

#if defined(__SSE2__)
// Number of bits set in a byte.
constexpr std::array<uint8_t, 256> kBitCount = [] {
  std::array<uint8_t, 256> t{};
  for (int i = 0; i < 256; ++i) t[static_cast<size_t>(i)] = static_cast<uint8_t>(std::popcount(static_cast<unsigned>(i)));
  return t;
}();

// SSE2: groups of eight pixels. The 32-bit iterators hold pixels 0-3 and 4-7; a W outside the narrow
// range goes through 64-bit lanes, two pixels a register.
struct Sse2 {
  using R = __m128i;
  using Wide = __m128i[5];  // W of pixels 0-1, 2-3, 4-5, 6-7, and the step of a group
  struct FogTable {};
  static constexpr int N = 8;
  static constexpr int kFrom = 4, kFromFog = 5;  // shortest spans worth a group
  static constexpr bool kWide64 = true;

  static R zero() { return _mm_setzero_si128(); }
  static R set16(uint32_t v) { return _mm_set1_epi16(static_cast<short>(v)); }
  static R set32(uint32_t v) { return _mm_set1_epi32(static_cast<int>(v)); }
  static constexpr bool kSatW = true;
  static constexpr bool kPartial = false;  // no partial loads: the last pixels of a span go through a copy  // the packs below need the W float inside 0..0xFFFF
  // Lanes v + k d for the pixels k = 0..3 (the first half of a group).
  static R lanes(uint32_t v, uint32_t d) {
    return _mm_set_epi32(static_cast<int>(v + 3 * d), static_cast<int>(v + 2 * d), static_cast<int>(v + d), static_cast<int>(v));
  }
  static R pattern4(uint8_t d0, uint8_t d1, uint8_t d2, uint8_t d3) { return _mm_setr_epi16(d0, d1, d2, d3, d0, d1, d2, d3); }
  static R lane_index() { return _mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7); }
  static R add32(R a, R b) { return _mm_add_epi32(a, b); }
  static R sub32(R a, R b) { return _mm_sub_epi32(a, b); }
  static R srai32(R a, int s) { return _mm_srai_epi32(a, s); }
  static R srli32(R a, int s) { return _mm_srli_epi32(a, s); }
  static R cmpgt32(R a, R b) { return _mm_cmpgt_epi32(a, b); }
  static R float_bits(R a) { return _mm_castps_si128(_mm_cvtepi32_ps(a)); }
  static R packs32(R a, R b) { return _mm_packs_epi32(a, b); }
  static R add16(R a, R b) { return _mm_add_epi16(a, b); }
  static R sub16(R a, R b) { return _mm_sub_epi16(a, b); }
  static R mullo16(R a, R b) { return _mm_mullo_epi16(a, b); }
  static R srli16(R a, int s) { return _mm_srli_epi16(a, s); }
  static R slli16(R a, int s) { return _mm_slli_epi16(a, s); }
  static R min16(R a, R b) { return _mm_min_epi16(a, b); }
  static R max16(R a, R b) { return _mm_max_epi16(a, b); }
  static R cmpgt16(R a, R b) { return _mm_cmpgt_epi16(a, b); }
  static R cmpeq16(R a, R b) { return _mm_cmpeq_epi16(a, b); }
  // a >= b as unsigned 16-bit lanes: nothing is left of b - a, saturated.
  static R ge_u16(R a, R b) { return _mm_cmpeq_epi16(_mm_subs_epu16(b, a), _mm_setzero_si128()); }
  static R clamp16(R v) { return clamp16u<Sse2>(v); }
  // Two registers of 32-bit lanes to 16-bit ones: clamped to 0..0xFFFF, or known inside it.
  static R pack16(R a, R b) { return narrow16<Sse2>(clamp16u<Sse2>(a), clamp16u<Sse2>(b)); }
  static R pack16_in(R a, R b) { return narrow16<Sse2>(a, b); }
  static R and_(R a, R b) { return _mm_and_si128(a, b); }
  static R andnot(R a, R b) { return _mm_andnot_si128(a, b); }
  static R or_(R a, R b) { return _mm_or_si128(a, b); }
  static R xor_(R a, R b) { return _mm_xor_si128(a, b); }
  static R select(R m, R a, R b) { return _mm_or_si128(_mm_and_si128(m, a), _mm_andnot_si128(m, b)); }
  static R load16(const uint16_t *p) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p)); }
  static void store16(uint16_t *p, R v) { _mm_storeu_si128(reinterpret_cast<__m128i *>(p), v); }
  static void load_texels(const uint32_t *t, R &h0, R &h1) {
    h0 = _mm_loadu_si128(reinterpret_cast<const __m128i *>(t));
    h1 = _mm_loadu_si128(reinterpret_cast<const __m128i *>(t + 4));
  }
  // Number of 16-bit lanes set in a mask.
  static uint32_t count16(R m) { return kBitCount[static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(m, m))) & 0xFF]; }

  // The fog factors of a group: the table look-up is scalar.
  static R fog_factor(const FogTable &, const uint8_t *table, R wf0, R wf1) {
    alignas(16) uint32_t w8[8];
    alignas(16) uint16_t f8[8];
    _mm_store_si128(reinterpret_cast<__m128i *>(w8), wf0);
    _mm_store_si128(reinterpret_cast<__m128i *>(w8 + 4), wf1);
    for (int k = 0; k < 8; ++k) f8[k] = static_cast<uint16_t>(fog_table_factor(table, w8[k]));
    return _mm_load_si128(reinterpret_cast<const __m128i *>(f8));
  }
  static void fog_start(FogTable &, const uint8_t *) {}

  // The W float (see w_float) of four 16.32 values in two registers. For oow >= 1 the value is 0,
  // below 2^-16 0xFFFF, else as w_float_bits gives it from the low 32 bits.
  static R w_float4(R w01, R w23) {
    const R a = _mm_shuffle_epi32(w01, _MM_SHUFFLE(3, 1, 2, 0));  // lo0 lo1 hi0 hi1
    const R b = _mm_shuffle_epi32(w23, _MM_SHUFFLE(3, 1, 2, 0));  // lo2 lo3 hi2 hi3
    const R lo = _mm_unpacklo_epi64(a, b), hi = _mm_unpackhi_epi64(a, b);
    const R z = _mm_setzero_si128();
    const R nearest = _mm_cmpgt_epi32(hi, z);  // oow >= 1
    const R farthest = _mm_or_si128(_mm_cmpgt_epi32(z, hi), _mm_and_si128(_mm_cmpeq_epi32(hi, z), _mm_cmpeq_epi32(_mm_srli_epi32(lo, 16), z)));
    R wf = w_float_bits<Sse2, true>(lo);
    wf = _mm_or_si128(_mm_andnot_si128(farthest, wf), _mm_and_si128(farthest, _mm_set1_epi32(0xFFFF)));
    return _mm_andnot_si128(nearest, wf);
  }
  static void wide_start(Wide &w, uint64_t w0, uint64_t dw) {
    for (uint64_t k = 0; k < 4; ++k)
      w[k] = _mm_set_epi64x(static_cast<int64_t>(w0 + (2 * k + 1) * dw), static_cast<int64_t>(w0 + 2 * k * dw));
    w[4] = _mm_set1_epi64x(static_cast<int64_t>(8 * dw));
  }
  static void wide_step(Wide &w, R &wf0, R &wf1) {
    wf0 = w_float4(w[0], w[1]);
    wf1 = w_float4(w[2], w[3]);
    for (int k = 0; k < 4; ++k) w[k] = _mm_add_epi64(w[k], w[4]);
  }
};
using Vector = Sse2;
#else
// Without SSE2 every span goes through the scalar loop.
struct Scalar {
  static constexpr int N = 0;
};
using Vector = Scalar;
#endif

constinit const PlainTable kPlain = make_lean_table<Vector>(std::make_integer_sequence<uint32_t, kPlainCount>{});

// True when an iterated channel stays inside 0..255 (12.12) at both ends of the span, and so on all
// of it (the iterator is linear and cannot wrap in between).
bool channel_in_range(int32_t start, int32_t step, int n) {
  const int64_t last = int64_t(start) + int64_t(step) * (n - 1);
  return start >= 0 && start < (256 << 12) && last >= 0 && last < (256 << 12);
}

// The widest form this machine runs, lowered by ZVGL_BOARD_SIMD (scalar, sse2).
int detect_simd() {
  int level = PLAIN_SCALAR;
#if defined(__SSE2__)
  level = PLAIN_SSE2;
#endif
#if defined(ZVB_PLAIN_AVX2)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt")) level = PLAIN_AVX2;
#endif
  if (const char *v = std::getenv("ZVGL_BOARD_SIMD")) {
    if (std::strcmp(v, "scalar") == 0) level = PLAIN_SCALAR;
    else if (std::strcmp(v, "sse2") == 0) level = std::min(level, int(PLAIN_SSE2));
  }
  return level;
}

int detected_simd() {
  static const int level = detect_simd();
  return level;
}

std::atomic<int> g_simd{-1};  // the level in use; -1 until first asked

int simd_level() {
  int level = g_simd.load(std::memory_order_relaxed);
  if (level < 0) {
    level = detected_simd();
    g_simd.store(level, std::memory_order_relaxed);
    g_plain_vector_from.store(level == PLAIN_SCALAR ? INT_MAX : 1, std::memory_order_relaxed);
  }
  return level;
}

}  // namespace

int plain_simd() { return simd_level(); }

int plain_force_simd(int level) {
  const int top = detected_simd();
  level = level < 0 || level > top ? top : level;
  g_simd.store(level, std::memory_order_relaxed);
  g_plain_vector_from.store(level == PLAIN_SCALAR ? INT_MAX : 1, std::memory_order_relaxed);
  return level;
}

PlainChoice plain_choose(const PixelDecoded &d, uint32_t key, bool textured, bool aux) {
  PlainChoice none{-1, false, false, 0};
  const uint32_t cc = (key >> KEY_CC_SHIFT) & 3, ac = (key >> KEY_AC_SHIFT) & 3;
  const uint32_t depth = (key >> KEY_DEPTH_SHIFT) & 3;
  if (ac == AC_DYN || depth == DEPTH_DYN || (key & KEY_TESTS) || !d.rgbWrite) return none;
  uint32_t form = cc == CC_CONST ? PCC_CONST : PCC_ITER;
  if (cc == CC_DYN) {
    // The texel alone (SCALE_OTHER by ONE of the texture) or scaled by the iterated colour
    // (SCALE_OTHER by LOCAL, the local input iterated).
    const CombineUnit &u = d.cc;
    if (!textured || !d.textured || u.other != GR_COMBINE_OTHER_TEXTURE || u.zeroOther || u.subLocal || u.add ||
        u.invert)
      return none;
    if (u.factor == 0 && u.oneMinus) form = PCC_DECAL;
    else if (u.factor == 1 && !u.oneMinus && (u.local & 1) == 0) form = PCC_MODULATE;
    else return none;
  }
  const bool auxWrites = d.auxWrite && aux;
  if (auxWrites && d.alphaBuffer) return none;
  if (depth != DEPTH_NONE && !aux) return none;
  bool fog = false, blend = false;
  if (key & KEY_FOG) {
    if (d.fogSource != GR_FOG_WITH_TABLE || d.fogMult2 || d.fogAdd2) return none;
    fog = true;
  }
  if (key & KEY_BLEND) {
    if (d.blendSrc != GR_BLEND_SRC_ALPHA || d.blendDst != GR_BLEND_ONE_MINUS_SRC_ALPHA) return none;
    blend = true;
  }
  const bool write = auxWrites && depth != DEPTH_NONE;
  PlainChoice c;
  c.index = static_cast<int32_t>(plain_index(form, ac == AC_ITER ? 1 : 0, depth, write, fog, blend, false));
  c.iterated = form == PCC_ITER || form == PCC_MODULATE;
  c.readsW = depth == DEPTH_W || fog;
  c.pad = 0;
  return c;
}

PlainFn plain_pick(const PlainChoice &c, const SpanJob &j) {
  if (c.index < 0) return nullptr;
  const int n = j.x1 - j.x0;
  const bool noclamp = c.iterated && channel_in_range(j.r, j.dr, n) && channel_in_range(j.g, j.dg, n) &&
                       channel_in_range(j.b, j.db, n);
  const uint32_t index = static_cast<uint32_t>(c.index) + (noclamp ? 1u : 0u);
#if defined(ZVB_PLAIN_AVX2)
  // The AVX2 groups read W through its low 32 bits only.
  if (simd_level() == PLAIN_AVX2 && (!c.readsW || w_narrow(j, n))) return plain_table_avx2()[index];
#else
  simd_level();
#endif
  return kPlain[index];
}

PlainFn plain_function(const SpanJob &j, const PixelDecoded &d, uint32_t key) {
  return plain_pick(plain_choose(d, key, j.tex != nullptr, j.arow != nullptr), j);
}

const PlainTable &plain_table_vector() { return kPlain; }

}  // namespace zvb
