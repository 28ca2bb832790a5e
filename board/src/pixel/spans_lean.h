// spans_lean.h: the body of the lean span loops, one template over the vector unit that runs it.
//
// Most pixels of a frame are drawn in a few plain forms: iterated or constant colour, a biased Z or W
// buffer (or none), optionally table fog without modifiers and the SRC_ALPHA / ONE_MINUS_SRC_ALPHA
// blend, with colour writes on and nothing that can reject a pixel but the depth test; the same with
// the colour taken from the texture (decal) or the texture scaled by the iterated colour (modulate).
// For those the keyed loop hands the span to lean_loop, whose settings are all compile-time constants
// or hoisted out of the pixel loop, so that the compiler keeps everything in registers.
//
// The pixels go through the vector unit V a group at a time: V::N pixels (8 with SSE2, 16 with AVX2),
// their colours, depth values and stored words in 16-bit lanes of one register, their iterators in
// 32-bit lanes of two. A group that runs past the end of the span works on a copy of its words with
// the lanes past the end switched off. V is a struct of static functions over one register type; the
// file is included once per vector unit, by a source compiled for that unit (spans_plain.cpp,
// spans_plain_avx2.cpp), and everything in it has internal linkage, so that code built for a wider
// unit never stands in for the narrower one. The arithmetic is the pipeline's own, and the
// differential tests hold every form to the generic loop.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>

#include "pixel/blend.h"
#include "pixel/combine.h"
#include "pixel/fog.h"
#include "pixel/spans_plain.h"

namespace zvb {

// The colour forms of the lean loops: the iterated or constant colour, the texel (decal), and the
// texel scaled by the iterated colour (modulate).
enum : uint32_t { PCC_ITER = 0, PCC_CONST = 1, PCC_DECAL = 2, PCC_MODULATE = 3, PCC_COUNT = 4 };

constexpr uint32_t kPlainCount = PCC_COUNT * 2 * 3 * 2 * 2 * 2 * 2;
using PlainTable = std::array<PlainFn, kPlainCount>;

// The loops of one vector unit, by plain_index.
const PlainTable &plain_table_vector();  // SSE2 (spans_plain.cpp), or scalar only without SSE2
const PlainTable &plain_table_avx2();    // AVX2 (spans_plain_avx2.cpp); only where ZVB_PLAIN_AVX2

// Spans shorter than this go through the scalar loop; a very large value keeps every span there
// (the scalar level of plain_force_simd).
extern std::atomic<int> g_plain_vector_from;

namespace {

// Index of a lean loop: cc, ac, depth (0..2), write, fog, blend, noclamp.
constexpr uint32_t plain_index(uint32_t cc, uint32_t ac, uint32_t depth, bool write, bool fog, bool blend,
                               bool noclamp) {
  return ((((((cc * 2 + ac) * 3 + depth) * 2 + write) * 2 + fog) * 2 + blend) * 2) + noclamp;
}

// True when every W of a span of n pixels is inside [2^16, 2^32) in 16.32 (W is linear and cannot
// wrap), so that its low 32 bits alone give the W float.
inline bool w_narrow(const SpanJob &j, int n) {
  const int64_t first = j.w, last = j.w + j.dw * (n - 1);
  auto inside = [](int64_t v) { return v >= (int64_t(1) << 16) && v < (int64_t(1) << 32); };
  return inside(first) && inside(last);
}

// The words [0, m) of s to d, 1 <= m <= 16, as two (possibly overlapping) fixed-size copies.
inline __attribute__((always_inline)) void copy_words(uint16_t *d, const uint16_t *s, int m) {
  if (m >= 8) {
    std::memcpy(d, s, 16);
    std::memcpy(d + m - 8, s + m - 8, 16);
  } else if (m >= 4) {
    std::memcpy(d, s, 8);
    std::memcpy(d + m - 4, s + m - 4, 8);
  } else if (m >= 2) {
    std::memcpy(d, s, 4);
    std::memcpy(d + m - 2, s + m - 2, 4);
  } else {
    d[0] = s[0];
  }
}

#if defined(__SSE2__)
// The state of a span's vector groups. Each iterator is one register holding the first half of the
// group's pixels (in the order V::lanes gives them); the second half, four pixels further along in
// every lane, is that plus the half step, and the whole moves by the group step. The constants of the span are in 16-bit lanes.
template <class V>
struct Group {
  using R = typename V::R;
  R r, g, b, a, z;             // 12.12, 20.12
  R hr, hg, hb, ha, hz;        // half steps (4 pixels)
  R dr, dg, db, da, dz;        // group steps (N pixels)
  R wl, hwl, dwl;              // low 32 bits of the 16.32 W, when W stays inside [2^-16, 1) (wNarrow)
  typename V::Wide w;          // the full 16.32 W otherwise (V::kWide64)
  R bias;                      // depth bias, 32-bit lanes
  R testGe, testEq, testInv;   // depth function: pass = (ge & testGe) ^ (eq & testEq) ^ testInv
  R cr, cg, cb, ca;            // constant colour
  R fr, fg, fb;                // fog colour
  R dither;                    // dither value of each lane
  typename V::FogTable fog;    // the fog table as the unit reads it
  bool ditherOn, biasZero, wNarrow;
};

// An iterator of the groups from its value v at the span's first pixel and step d per pixel.
template <class V>
inline __attribute__((always_inline)) void iter_start(typename V::R &first, typename V::R &half, typename V::R &step,
                                                      uint32_t v, uint32_t d) {
  first = V::lanes(v, d);
  half = V::set32(d * 4);
  step = V::set32(d * V::N);
}

// The set-up of a span's groups, of only the parts the form uses.
template <class V, uint32_t CC, uint32_t AC, uint32_t DEPTH, bool FOG, bool BLEND>
inline __attribute__((always_inline)) void group_start(Group<V> &q, const SpanJob &j, const PixelDecoded &d,
                                                       int n) {
  if constexpr (CC == PCC_ITER || CC == PCC_MODULATE) {
    iter_start<V>(q.r, q.hr, q.dr, static_cast<uint32_t>(j.r), static_cast<uint32_t>(j.dr));
    iter_start<V>(q.g, q.hg, q.dg, static_cast<uint32_t>(j.g), static_cast<uint32_t>(j.dg));
    iter_start<V>(q.b, q.hb, q.db, static_cast<uint32_t>(j.b), static_cast<uint32_t>(j.db));
  } else if constexpr (CC == PCC_CONST) {
    q.cr = V::set16(d.constR); q.cg = V::set16(d.constG); q.cb = V::set16(d.constB);
  }
  q.ca = V::set16(d.constA);
  if constexpr (BLEND && AC == AC_ITER)
    iter_start<V>(q.a, q.ha, q.da, static_cast<uint32_t>(j.a), static_cast<uint32_t>(j.da));
  if constexpr (DEPTH == DEPTH_Z) iter_start<V>(q.z, q.hz, q.dz, static_cast<uint32_t>(j.z), static_cast<uint32_t>(j.dz));
  if constexpr (DEPTH == DEPTH_W || FOG) {
    const uint64_t w0 = static_cast<uint64_t>(j.w), dw = static_cast<uint64_t>(j.dw);
    q.wNarrow = w_narrow(j, n);
    if constexpr (V::kWide64) {
      if (!q.wNarrow) V::wide_start(q.w, w0, dw);
    }
    iter_start<V>(q.wl, q.hwl, q.dwl, static_cast<uint32_t>(w0), static_cast<uint32_t>(dw));
  }
  if constexpr (DEPTH != DEPTH_NONE) {
    q.bias = V::set32(static_cast<uint32_t>(d.depthBias));
    q.biasZero = d.depthBias == 0;
    // With L, E, G the function's less, equal and greater bits: a less outcome (ge = eq = 0) gives
    // testInv = L, an equal one (both set) testGe ^ testEq ^ testInv = E, a greater one (ge only)
    // testGe ^ testInv = G.
    const uint32_t f = static_cast<uint32_t>(d.depthFunction);
    const uint32_t less = f & 1, equal = (f >> 1) & 1, greater = (f >> 2) & 1;
    q.testGe = V::set16((less ^ greater) ? 0xFFFF : 0);
    q.testEq = V::set16((equal ^ greater) ? 0xFFFF : 0);
    q.testInv = V::set16(less ? 0xFFFF : 0);
  }
  if constexpr (FOG) {
    q.fr = V::set16(d.fogR); q.fg = V::set16(d.fogG); q.fb = V::set16(d.fogB);
    V::fog_start(q.fog, j.fogTable);
  }
  const auto &m = kDitherMatrix[d.ditherMode][j.y & 3];
  q.dither = V::pattern4(m[j.x0 & 3], m[(j.x0 + 1) & 3], m[(j.x0 + 2) & 3], m[(j.x0 + 3) & 3]);
  q.ditherOn = d.ditherMode != 0;
}

// Two registers of 12.12 iterators to their integer parts clamped to 0..255 (known to be inside with
// NOCLAMP), in 16-bit lanes.
template <class V, bool NOCLAMP>
inline typename V::R colour_lanes(typename V::R v0, typename V::R v1) {
  const typename V::R p = V::packs32(V::srai32(v0, 12), V::srai32(v1, 12));
  if constexpr (NOCLAMP) return p;
  return V::min16(V::max16(p, V::zero()), V::set16(255));
}

// Wf = 647168 - (bits >> 11) for u = oow >> 1 converted exactly to a float; with SAT, 65536 (the
// largest exponent, zero mantissa) is saturated to 0xFFFF (else the caller's pack does it). For
// 2^16 <= oow < 2^32 (as 0.32 fixed point) u has its leading one at bit L (15..30): the W float's
// exponent is 30 - L and its mantissa the 12 bits below that one. Converted exactly to a float (u
// itself below 2^24, else u with its low 8 bits cleared, which leaves at most 23 bits below the
// leading one), u has the exponent field 127 + L and those 12 bits on top of its mantissa, so
// Wf = 4096 (31 - L) - mantissa = 647168 - (bits >> 11).
template <class V, bool SAT>
inline typename V::R w_float_bits(typename V::R lo) {
  using R = typename V::R;
  const R u = V::srli32(lo, 1);
  const R x = V::andnot(V::and_(V::cmpgt32(u, V::set32(0x00FFFFFF)), V::set32(0xFF)), u);
  const R wf = V::sub32(V::set32(647168), V::srli32(V::float_bits(x), 11));
  if constexpr (!SAT) return wf;
  return V::add32(wf, V::cmpgt32(wf, V::set32(0xFFFF)));
}

// 32-bit lanes clamped to 0..0xFFFF.
template <class V>
inline typename V::R clamp16u(typename V::R v) {
  using R = typename V::R;
  const R neg = V::cmpgt32(V::zero(), v);
  const R big = V::cmpgt32(v, V::set32(0xFFFF));
  v = V::andnot(neg, v);
  return V::or_(V::andnot(big, v), V::and_(big, V::set32(0xFFFF)));
}

// Two registers of 32-bit lanes 0..0xFFFF to 16-bit lanes.
template <class V>
inline typename V::R narrow16(typename V::R v0, typename V::R v1) {
  const typename V::R bias = V::set32(0x8000);
  return V::xor_(V::packs32(V::sub32(v0, bias), V::sub32(v1, bias)), V::set16(0x8000));
}

// The dithered 5- or 6-bit field of 8-bit channels: (((v << s) - (v >> 4) + (v >> t) + d) >> s) >> k.
template <class V, int S, int T, int K>
inline typename V::R dither_field(typename V::R v, typename V::R d, bool on) {
  if (!on) return V::srli16(v, 8 - (K == 3 ? 5 : 6));
  const typename V::R x = V::add16(V::sub16(V::slli16(v, S), V::srli16(v, 4)), V::add16(V::srli16(v, T), d));
  return V::srli16(x, S + K);
}

// One channel (at bit `Shift`) of a group's 0xAARRGGBB texels (two registers in iterator order) as
// 16-bit lanes.
template <class V, int Shift>
inline typename V::R texel_channel(typename V::R t0, typename V::R t1) {
  const typename V::R m = V::set32(0xFF);
  return V::packs32(V::and_(V::srli32(t0, Shift), m), V::and_(V::srli32(t1, Shift), m));
}

// One group of pixels at cp / ap through the plain pipeline: the `lanes` first ones, whose 16-bit
// lanes are set in `valid`. With PART only those words are read and written (V::load_part,
// V::store_part), else all N. The iterators step to the next group.
template <class V, uint32_t CC, uint32_t AC, uint32_t DEPTH, bool WRITE, bool FOG, bool BLEND, bool NOCLAMP,
          bool PART = false>
inline __attribute__((always_inline)) void group_pixels(Group<V> &q, uint16_t *cp, uint16_t *ap, const uint32_t *tx,
                                                        const uint8_t *fogTable, typename V::R valid, uint32_t lanes,
                                                        uint32_t &out, uint32_t &zfail) {
  using R = typename V::R;
  auto load = [lanes](const uint16_t *p) {
    if constexpr (PART) return V::load_part(p, lanes);
    else return V::load16(p);
  };
  auto store = [lanes](uint16_t *p, R v) {
    if constexpr (PART) V::store_part(p, v, lanes);
    else V::store16(p, v);
  };
  R Rc = V::zero(), Gc = Rc, Bc = Rc;
  if constexpr (CC == PCC_ITER || CC == PCC_MODULATE) {
    Rc = colour_lanes<V, NOCLAMP>(q.r, V::add32(q.r, q.hr));
    Gc = colour_lanes<V, NOCLAMP>(q.g, V::add32(q.g, q.hg));
    Bc = colour_lanes<V, NOCLAMP>(q.b, V::add32(q.b, q.hb));
    q.r = V::add32(q.r, q.dr);
    q.g = V::add32(q.g, q.dg);
    q.b = V::add32(q.b, q.db);
  } else if constexpr (CC == PCC_CONST) {
    Rc = q.cr; Gc = q.cg; Bc = q.cb;
  }
  if constexpr (CC == PCC_DECAL || CC == PCC_MODULATE) {
    R t0, t1;
    V::load_texels(tx, t0, t1);
    const R tr = texel_channel<V, 16>(t0, t1), tg = texel_channel<V, 8>(t0, t1), tb = texel_channel<V, 0>(t0, t1);
    if constexpr (CC == PCC_DECAL) {
      Rc = tr; Gc = tg; Bc = tb;
    } else {
      // (t (i + 1)) >> 8: at most 255 x 256, which fits 16 unsigned bits.
      const R one = V::set16(1);
      Rc = V::srli16(V::mullo16(tr, V::add16(Rc, one)), 8);
      Gc = V::srli16(V::mullo16(tg, V::add16(Gc, one)), 8);
      Bc = V::srli16(V::mullo16(tb, V::add16(Bc, one)), 8);
    }
  }
  R A = q.ca;
  if constexpr (BLEND && AC == AC_ITER) {
    A = colour_lanes<V, false>(q.a, V::add32(q.a, q.ha));
    q.a = V::add32(q.a, q.da);
  }
  // The W floats, saturated to 0xFFFF here where the unit's pack does not do it.
  R wf0 = V::zero(), wf1 = wf0;
  if constexpr (DEPTH == DEPTH_W || FOG) {
    bool narrow = true;
    if constexpr (V::kWide64) narrow = q.wNarrow;
    if (narrow) {
      wf0 = w_float_bits<V, V::kSatW>(q.wl);
      wf1 = w_float_bits<V, V::kSatW>(V::add32(q.wl, q.hwl));
      q.wl = V::add32(q.wl, q.dwl);
    } else if constexpr (V::kWide64) {
      V::wide_step(q.w, wf0, wf1);
    }
  }
  R pass = valid, dv = V::zero(), stored = dv;
  if constexpr (DEPTH != DEPTH_NONE) {
    R d0, d1;
    if constexpr (DEPTH == DEPTH_Z) {
      d0 = V::srai32(q.z, 12);
      d1 = V::srai32(V::add32(q.z, q.hz), 12);
      q.z = V::add32(q.z, q.dz);
    } else {
      d0 = wf0;
      d1 = wf1;
    }
    // The value clamped to 16 bits, the bias added and the sum clamped again.
    if (q.biasZero) {
      dv = DEPTH == DEPTH_W && V::kSatW ? V::pack16_in(d0, d1) : V::pack16(d0, d1);
    } else {
      if (DEPTH == DEPTH_Z || !V::kSatW) {
        d0 = V::clamp16(d0);
        d1 = V::clamp16(d1);
      }
      dv = V::pack16(V::add32(d0, q.bias), V::add32(d1, q.bias));
    }
    stored = load(ap);
    const R ge = V::ge_u16(dv, stored), eq = V::cmpeq16(dv, stored);
    pass = V::and_(valid, V::xor_(V::xor_(V::and_(ge, q.testGe), V::and_(eq, q.testEq)), q.testInv));
    const uint32_t passed = V::count16(pass);
    out += passed;
    zfail += lanes - passed;
    if (passed == 0) return;
  } else {
    out += lanes;
  }
  const R old = load(cp);
  if constexpr (FOG) {
    const R f1 = V::add16(V::fog_factor(q.fog, fogTable, wf0, wf1), V::set16(1));
    const R f0 = V::sub16(V::set16(256), f1);
    // C + ((Fc - C) f1 >> 8) = (C (256 - f1) + Fc f1) >> 8: every term fits in 16 unsigned bits.
    Rc = V::srli16(V::add16(V::mullo16(Rc, f0), V::mullo16(q.fr, f1)), 8);
    Gc = V::srli16(V::add16(V::mullo16(Gc, f0), V::mullo16(q.fg, f1)), 8);
    Bc = V::srli16(V::add16(V::mullo16(Bc, f0), V::mullo16(q.fb, f1)), 8);
  }
  if constexpr (BLEND) {
    const R ms = V::add16(A, V::set16(1)), md = V::sub16(V::set16(256), A);
    const R r5 = V::srli16(old, 11), g6 = V::and_(V::srli16(old, 5), V::set16(63));
    const R b5 = V::and_(old, V::set16(31));
    const R dr = V::or_(V::slli16(r5, 3), V::srli16(r5, 2));
    const R dg = V::or_(V::slli16(g6, 2), V::srli16(g6, 4));
    const R db = V::or_(V::slli16(b5, 3), V::srli16(b5, 2));
    const R max = V::set16(255);
    Rc = V::min16(max, V::add16(V::srli16(V::mullo16(Rc, ms), 8), V::srli16(V::mullo16(dr, md), 8)));
    Gc = V::min16(max, V::add16(V::srli16(V::mullo16(Gc, ms), 8), V::srli16(V::mullo16(dg, md), 8)));
    Bc = V::min16(max, V::add16(V::srli16(V::mullo16(Bc, ms), 8), V::srli16(V::mullo16(db, md), 8)));
  }
  const R r5 = dither_field<V, 1, 7, 3>(Rc, q.dither, q.ditherOn);
  const R g6 = dither_field<V, 2, 6, 2>(Gc, q.dither, q.ditherOn);
  const R b5 = dither_field<V, 1, 7, 3>(Bc, q.dither, q.ditherOn);
  const R colour = V::or_(V::or_(V::slli16(r5, 11), V::slli16(g6, 5)), b5);
  store(cp, V::select(pass, colour, old));
  if constexpr (WRITE) store(ap, V::select(pass, dv, stored));
}
#endif

// The texels of pixels [c0, c1) of the span, with the same coordinates as the keyed loop, so that
// the texture units see the same calls.
inline void fetch_texels(const SpanJob &j, int c0, int c1, uint32_t *texels) {
  TmuCoords tc[GLIDE_NUM_TMU];
  for (int k = 0; k < GLIDE_NUM_TMU; ++k) {
    tc[k] = j.tc[k];
    tc[k].sow += float(c0) * tc[k].dsow;
    tc[k].tow += float(c0) * tc[k].dtow;
    tc[k].oow += float(c0) * tc[k].doow;
  }
  tex_span(*j.tex, tc, j.x0 + c0, j.y, c1 - c0, texels);
}

// The texels are fetched a chunk at a time (as the keyed loop does).
constexpr int kTexChunk = 128;

// Pixels [i, c1) of the span one at a time; texels holds those of [c0, c1).
// (Kept out of line, so that its registers are allocated apart from the vector groups'.)
template <uint32_t CC, uint32_t AC, uint32_t DEPTH, bool WRITE, bool FOG, bool BLEND, bool NOCLAMP>
__attribute__((noinline)) void scalar_pixels(const SpanJob &j, const PixelDecoded &dref,
                                                         const DitherRow &dither, int i, int c0, int c1,
                                                         const uint32_t *texels, uint32_t &out, uint32_t &zfail) {
  constexpr bool TEX = CC == PCC_DECAL || CC == PCC_MODULATE;
  constexpr bool ITER = CC == PCC_ITER || CC == PCC_MODULATE;
  uint16_t *const cp = j.crow + j.x0;
  uint16_t *const ap = j.arow ? j.arow + j.x0 : nullptr;
  const uint8_t *const fogTable = j.fogTable;
    const int32_t bias = dref.depthBias;
    const int function = dref.depthFunction;
    const int cr = dref.constR, cg = dref.constG, cb = dref.constB, ca = dref.constA;
    const int fr = dref.fogR, fg = dref.fogG, fb = dref.fogB;
    const uint32_t dr = static_cast<uint32_t>(j.dr), dg = static_cast<uint32_t>(j.dg), db = static_cast<uint32_t>(j.db);
    const uint32_t da = static_cast<uint32_t>(j.da), dz = static_cast<uint32_t>(j.dz);
    const uint64_t dw = static_cast<uint64_t>(j.dw);
    // The scalar iterators start at pixel i (wrapping sums, as stepping them would give).
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

// CC: a PCC_ form; AC: AC_CONST or AC_ITER (read by the blend only); DEPTH: DEPTH_NONE, _Z or _W;
// WRITE: store the depth value; FOG: table fog; BLEND: the transparency pair; NOCLAMP: the iterated
// colour stays inside 0..255 over the whole span. Spans long enough go through groups of the vector
// unit (their last pixels through a group with the lanes past the end off), shorter ones through
// the scalar loop.
template <class V, uint32_t CC, uint32_t AC, uint32_t DEPTH, bool WRITE, bool FOG, bool BLEND, bool NOCLAMP>
void lean_loop(const SpanJob &j, const PixelDecoded &dref, const DitherRow &dither, SpanCounts &c) {
  constexpr bool TEX = CC == PCC_DECAL || CC == PCC_MODULATE;
  constexpr int N = V::N;
  constexpr int kChunk = TEX ? kTexChunk : 1 << 30;
  const int n = j.x1 - j.x0;
  uint32_t out = 0, zfail = 0;
  // A group at the end of a chunk reads up to N - 1 texels past it, into lanes that are off.
  alignas(32) uint32_t texels[TEX ? kTexChunk + (N > 0 ? N : 1) : 1];
  bool groups = false;
#if defined(__SSE2__)
  // The set-up of the groups costs more than a few scalar pixels, and more with the fog table.
  groups = n >= std::max(FOG ? V::kFromFog : V::kFrom, g_plain_vector_from.load(std::memory_order_relaxed));
  if (groups) {
    uint16_t *const cp = j.crow + j.x0;
    uint16_t *const ap = j.arow ? j.arow + j.x0 : nullptr;
    Group<V> q;
    group_start<V, CC, AC, DEPTH, FOG, BLEND>(q, j, dref, n);
    for (int c0 = 0; c0 < n; c0 += kChunk) {
      const int c1 = n - c0 < kChunk ? n : c0 + kChunk;
      if constexpr (TEX) fetch_texels(j, c0, c1, texels);
      int i = c0;
      const typename V::R all = V::set16(0xFFFF);
      for (; i + N <= c1; i += N)
        group_pixels<V, CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP>(q, cp + i, ap ? ap + i : nullptr,
                                                                   TEX ? texels + (i - c0) : nullptr, j.fogTable, all,
                                                                   N, out, zfail);
      if (i < c1) {
        // The last pixels go through a group with the lanes past the end off, reading and writing
        // only their words where the unit can, else through a copy of them.
        const int m = c1 - i;
        const typename V::R valid = V::cmpgt16(V::set16(static_cast<uint32_t>(m)), V::lane_index());
        if constexpr (V::kPartial) {
          group_pixels<V, CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP, true>(
              q, cp + i, ap ? ap + i : nullptr, TEX ? texels + (i - c0) : nullptr, j.fogTable, valid,
              static_cast<uint32_t>(m), out, zfail);
        } else {
          alignas(32) uint16_t cbuf[N] = {}, abuf[N] = {};
          copy_words(cbuf, cp + i, m);
          if (ap) copy_words(abuf, ap + i, m);
          group_pixels<V, CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP>(q, cbuf, ap ? abuf : nullptr,
                                                                     TEX ? texels + (i - c0) : nullptr, j.fogTable,
                                                                     valid, static_cast<uint32_t>(m), out, zfail);
          copy_words(cp + i, cbuf, m);
          if (ap) copy_words(ap + i, abuf, m);
        }
      }
    }
  }
#endif
  if (!groups) {
    for (int c0 = 0; c0 < n; c0 += kChunk) {
      const int c1 = n - c0 < kChunk ? n : c0 + kChunk;
      if constexpr (TEX) fetch_texels(j, c0, c1, texels);
      scalar_pixels<CC, AC, DEPTH, WRITE, FOG, BLEND, NOCLAMP>(j, dref, dither, c0, c0, c1, texels, out, zfail);
    }
  }
  c.in += static_cast<uint32_t>(n);
  c.zfail += zfail;
  c.out += out;
}

// The loop of table index I. Settings that a form does not read are folded into one loop: the
// iterated alpha matters to the blend only, and NOCLAMP to the iterated colour forms only.
template <class V, uint32_t I>
constexpr PlainFn lean_entry() {
  constexpr uint32_t noclamp = I & 1, blend = (I >> 1) & 1, fog = (I >> 2) & 1, write = (I >> 3) & 1;
  constexpr uint32_t depth = (I >> 4) % 3, ac = ((I >> 4) / 3) & 1, cc = (I >> 4) / 6;
  constexpr bool iter = cc == PCC_ITER || cc == PCC_MODULATE;
  return &lean_loop<V, cc, blend ? ac : 0, depth, write != 0, fog != 0, blend != 0, iter && noclamp != 0>;
}

template <class V, uint32_t... I>
constexpr PlainTable make_lean_table(std::integer_sequence<uint32_t, I...>) {
  return {{lean_entry<V, I>()...}};
}

}  // namespace
}  // namespace zvb
