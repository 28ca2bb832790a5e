// spans.h: the span loops of the rasteriser, one template body for every pipeline mode.
//
// span_loop<Key> walks one run of pixels on a row and sends each through the pixel pipeline
// (shade_pixel). Each stage named by the key (SpanKeyBits) is either fixed at compile time (iterated
// or constant colour, no depth or a biased Z/W buffer, no fog/blend/tests) or dynamic, i.e. read from
// the decoded state at run time. KEY_GENERIC has every stage dynamic: it is the reference copy that
// the specialised copies must match bit for bit. Only spans_table_*.cpp include this file.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "pixel/blend.h"
#include "pixel/combine.h"
#include "pixel/fog.h"
#include "pixel/raster.h"
#include "pixel/spans_plain.h"

namespace zvb {

// True when the key names a valid combination (the two-bit combine fields use values 0..2 only).
constexpr bool span_key_valid(uint32_t k) {
  return ((k >> KEY_CC_SHIFT) & 3) != 3 && ((k >> KEY_AC_SHIFT) & 3) != 3 && k < KEY_COUNT;
}

// One pixel through the pipeline: chroma key, alpha combine and test, colour combine, depth test,
// fog, blend, dither and write; `cp` and `ap` point at its colour and aux words (ap may be null).
// zc is the clamped Z (0..0xFFFF), wf the W float of the pixel; `dither` points at the dither
// tables of the pixel's row (DitherRow). With LFB set the pixel comes from a frame-buffer write:
// `lfbDepth` is its finished depth value (no bias).
template <uint32_t K, bool LFB>
inline __attribute__((always_inline)) void shade_pixel(const PixelDecoded &d, const uint8_t *fogTable,
                                                       const DitherRow &dither, int x, uint16_t *cp,
                                                       uint16_t *ap, int ir, int ig, int ib, int ia, uint32_t texel,
                                                       uint32_t zc,
                                                       uint32_t wf, uint32_t lfbDepth, SpanCounts &c) {
  constexpr uint32_t CC = (K >> KEY_CC_SHIFT) & 3;
  constexpr uint32_t AC = (K >> KEY_AC_SHIFT) & 3;
  constexpr uint32_t DEPTH = (K >> KEY_DEPTH_SHIFT) & 3;
  constexpr bool FOG = (K & KEY_FOG) != 0;
  constexpr bool BLEND = (K & KEY_BLEND) != 0;
  constexpr bool TESTS = (K & KEY_TESTS) != 0;

  CombineIn in;
  in.ir = ir; in.ig = ig; in.ib = ib; in.ia = ia;
  in.tr = static_cast<int>((texel >> 16) & 0xFF);
  in.tg = static_cast<int>((texel >> 8) & 0xFF);
  in.tb = static_cast<int>(texel & 0xFF);
  in.ta = static_cast<int>(texel >> 24);
  in.cr = d.constR; in.cg = d.constG; in.cb = d.constB; in.ca = d.constA;
  in.depthByte = static_cast<int>(zc >> 8);

  // Depth value written (dv) and value compared (src).
  uint32_t dv = 0, src = 0;
  bool depthTest = false;
  if constexpr (LFB) {
    dv = lfbDepth;
    src = d.depthMode >= GR_DEPTHBUFFER_ZBUFFER_COMPARE_TO_BIAS ? d.biasCompare : dv;
    depthTest = d.depthMode != GR_DEPTHBUFFER_DISABLE;
  } else if constexpr (DEPTH == DEPTH_Z) {
    dv = src = depth_biased(zc, d.depthBias);
    depthTest = true;
  } else if constexpr (DEPTH == DEPTH_W) {
    dv = src = depth_biased(wf, d.depthBias);
    depthTest = true;
  } else if constexpr (DEPTH == DEPTH_DYN) {
    switch (d.depthMode) {
      case GR_DEPTHBUFFER_ZBUFFER: dv = src = depth_biased(zc, d.depthBias); break;
      case GR_DEPTHBUFFER_WBUFFER: dv = src = depth_biased(wf, d.depthBias); break;
      case GR_DEPTHBUFFER_ZBUFFER_COMPARE_TO_BIAS: dv = zc; src = d.biasCompare; break;
      case GR_DEPTHBUFFER_WBUFFER_COMPARE_TO_BIAS: dv = wf; src = d.biasCompare; break;
      default: dv = src = zc; break;
    }
    depthTest = d.depthMode != GR_DEPTHBUFFER_DISABLE;
  }

  if constexpr (TESTS) {
    if (d.chroma) {
      int kr, kg, kb;
      combine_colour_other(d.cc, in, kr, kg, kb);
      if (static_cast<uint32_t>((kr << 16) | (kg << 8) | kb) == d.chromaRGB) {
        ++c.chroma;
        return;
      }
    }
  }

  int A;
  if constexpr (AC == AC_CONST) A = d.constA;
  else if constexpr (AC == AC_ITER) A = ia;
  else A = combine_alpha(d.ac, in);

  if constexpr (TESTS) {
    if (!compare(d.alphaFunction, static_cast<uint32_t>(A), d.alphaRef)) {
      ++c.afail;
      return;
    }
  }

  int R, G, B;
  if constexpr (CC == CC_ITER) { R = ir; G = ig; B = ib; }
  else if constexpr (CC == CC_CONST) { R = d.constR; G = d.constG; B = d.constB; }
  else combine_colour(d.cc, d.ac, in, R, G, B);

  if (depthTest && ap) {
    if (!compare(d.depthFunction, src, *ap)) {
      ++c.zfail;
      return;
    }
  }

  const int preR = R, preG = G, preB = B;
  if constexpr (FOG) {
    if (d.fogSource != GR_FOG_DISABLE) {
      int f;
      switch (d.fogSource) {
        case GR_FOG_WITH_ITERATED_ALPHA: f = ia; break;
        case GR_FOG_WITH_TABLE: f = fog_table_factor(fogTable, wf); break;
        default: f = static_cast<int>(zc >> 8); break;
      }
      R = fog_channel(R, d.fogR, f, d.fogMult2, d.fogAdd2);
      G = fog_channel(G, d.fogG, f, d.fogMult2, d.fogAdd2);
      B = fog_channel(B, d.fogB, f, d.fogMult2, d.fogAdd2);
    }
  }

  int outA = A;
  if constexpr (BLEND) {
    const uint32_t dst = *cp;
    const int dr = expand5(dst >> 11), dg = expand6((dst >> 5) & 0x3F), db = expand5(dst & 0x1F);
    const int ad = (d.alphaBuffer && ap) ? (*ap & 0xFF) : 255;
    if (d.blendSrc == GR_BLEND_SRC_ALPHA && d.blendDst == GR_BLEND_ONE_MINUS_SRC_ALPHA) {
      // The usual transparency pair, the same arithmetic as blend_channel without its factor switches.
      const int ms = A + 1, md = 256 - A;
      R = std::min(255, ((R * ms) >> 8) + ((dr * md) >> 8));
      G = std::min(255, ((G * ms) >> 8) + ((dg * md) >> 8));
      B = std::min(255, ((B * ms) >> 8) + ((db * md) >> 8));
    } else {
      R = blend_channel(d.blendSrc, d.blendDst, R, dr, A, ad, preR);
      G = blend_channel(d.blendSrc, d.blendDst, G, dg, A, ad, preG);
      B = blend_channel(d.blendSrc, d.blendDst, B, db, A, ad, preB);
    }
    outA = (d.blendAlphaSrcOne ? A : 0) + (d.blendAlphaDstOne ? ad : 0);
    if (outA > 255) outA = 255;
  }

  if (d.rgbWrite) *cp = dither.pixel(x, R, G, B);
  if (d.auxWrite && ap) {
    if (d.alphaBuffer) *ap = static_cast<uint16_t>(outA);
    else if (LFB || DEPTH != DEPTH_NONE) *ap = static_cast<uint16_t>(dv);
  }
  ++c.out;
}

// One span [x0, x1) of row j.y through the pipeline for mode key K.
template <uint32_t K>
void span_loop(const SpanJob &j, SpanCounts &c) {
  // The iterators this key reads (the set-up fills only these).
  constexpr bool NEED_RGB = (span_key_params(K) & 7u) != 0;
  constexpr bool NEED_A = (span_key_params(K) & 8u) != 0;
  constexpr bool NEED_Z = (span_key_params(K) & 16u) != 0;
  constexpr bool NEED_W = (span_key_params(K) & 32u) != 0;

  // A private copy: the compiler then knows that pixel stores cannot change the state it reads.
  const PixelDecoded d = *j.d;
  const DitherRow dither(d.ditherMode, j.y);
  const int n = j.x1 - j.x0;
  if (n <= 0) return;
  uint16_t *cp = j.crow + j.x0;
  uint16_t *ap = j.arow ? j.arow + j.x0 : nullptr;

  // Constant colour with nothing that can reject or blend a pixel: every pixel gets one of the
  // four dithered values of this row.
  if constexpr (span_key_fills(K)) {
    if (!(d.auxWrite && ap)) {
      if (d.rgbWrite) {
        uint16_t pattern[4];
        for (int i = 0; i < 4; ++i) pattern[i] = dither.pixel(j.x0 + i, d.constR, d.constG, d.constB);
        for (int i = 0; i < n; ++i) cp[i] = pattern[i & 3];
      }
      c.in += static_cast<uint32_t>(n);
      c.out += static_cast<uint32_t>(n);
      return;
    }
  }

  // The hot plain forms (and the plain textured ones among the dynamic colour combines) go to their
  // lean loops.
  if constexpr (span_key_tries_plain(K)) {
    if (const PlainFn plain = plain_function(j, d, K)) {
      plain(j, d, dither, c);
      return;
    }
  }

  // Iterators in wrapping unsigned arithmetic (formats as in SpanJob).
  uint32_t r = static_cast<uint32_t>(j.r), g = static_cast<uint32_t>(j.g), b = static_cast<uint32_t>(j.b);
  uint32_t a = static_cast<uint32_t>(j.a), z = static_cast<uint32_t>(j.z);
  uint64_t w = static_cast<uint64_t>(j.w);
  const uint32_t dr = static_cast<uint32_t>(j.dr), dg = static_cast<uint32_t>(j.dg), db = static_cast<uint32_t>(j.db);
  const uint32_t da = static_cast<uint32_t>(j.da), dz = static_cast<uint32_t>(j.dz);
  const uint64_t dw = static_cast<uint64_t>(j.dw);
  SpanCounts lc{};
  // Texel colours, a chunk of the span at a time (the TMUs work ahead of the pipeline).
  constexpr int kChunk = 128;
  uint32_t texels[kChunk];
  const bool textured = d.textured && j.tex;
  for (int i = 0; i < n; ++i) {
    if (textured && i % kChunk == 0) {
      TmuCoords tc[GLIDE_NUM_TMU];
      for (int k = 0; k < GLIDE_NUM_TMU; ++k) {
        tc[k] = j.tc[k];
        tc[k].sow += float(i) * tc[k].dsow;
        tc[k].tow += float(i) * tc[k].dtow;
        tc[k].oow += float(i) * tc[k].doow;
      }
      tex_span(*j.tex, tc, j.x0 + i, j.y, n - i < kChunk ? n - i : kChunk, texels);
    }
    const uint32_t texel = textured ? texels[i % kChunk] : 0u;
    int ir = 0, ig = 0, ib = 0, ia = 0;
    uint32_t zc = 0, wf = 0;
    if constexpr (NEED_RGB) {
      ir = clamp255(static_cast<int32_t>(r) >> 12);
      ig = clamp255(static_cast<int32_t>(g) >> 12);
      ib = clamp255(static_cast<int32_t>(b) >> 12);
      r += dr; g += dg; b += db;
    }
    if constexpr (NEED_A) {
      ia = clamp255(static_cast<int32_t>(a) >> 12);
      a += da;
    }
    if constexpr (NEED_Z) {
      zc = z_clamped(static_cast<int32_t>(z));
      z += dz;
    }
    if constexpr (NEED_W) {
      wf = w_float(static_cast<int64_t>(w));
      w += dw;
    }
    shade_pixel<K, false>(d, j.fogTable, dither, j.x0 + i, cp + i, ap ? ap + i : nullptr, ir, ig, ib, ia, texel, zc, wf, 0,
                          lc);
  }
  c.in += static_cast<uint32_t>(n);
  c.chroma += lc.chroma;
  c.afail += lc.afail;
  c.zfail += lc.zfail;
  c.out += lc.out;
}

// The table of span loops for keys [Base, Base + 128); invalid keys hold null.
template <uint32_t Base, uint32_t... I>
constexpr auto make_span_table(std::integer_sequence<uint32_t, I...>) {
  return std::array<SpanFn, sizeof...(I)>{{[]() -> SpanFn {
    if constexpr (span_key_valid(Base + I)) return &span_loop<Base + I>;
    else return nullptr;
  }()...}};
}

}  // namespace zvb
