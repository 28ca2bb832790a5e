// derived.h: the pixel state decoded into the form the span loops read.
//
// PixelState keeps the registers as Glide sets them; PixelDerived is what the rasteriser computes
// from them once per state change: the combine units reduced to the hardware's switches, colours
// split into channels, the clip window clamped to the screen, and the key that picks a specialised
// span loop. It is rebuilt whenever the state bytes differ from `seen`, so a state restored by plain
// assignment (grGlideSetState) is picked up as well.
#pragma once

#include <cstdint>

namespace zvb {

// One combine unit (colour or alpha) as the hardware's switches.
struct CombineUnit {
  uint8_t zeroOther;  // use 0 instead of the "other" input
  uint8_t subLocal;   // subtract the local input before the multiply
  uint8_t add;        // added after the multiply: 0 nothing, 1 local, 2 local alpha
  uint8_t factor;     // factor & 7: 0 zero, 1 local, 2 other alpha, 3 local alpha, 4 texture alpha, 5 texture rgb
  uint8_t oneMinus;   // factor bit 3: use 255 - f
  uint8_t invert;     // 255 - result
  uint8_t local;      // GrCombineLocal_t (colour unit: iterated or constant)
  uint8_t other;      // GrCombineOther_t
};

// The specialisation key of the span loops: each pipeline stage is either a fixed fast form known
// at compile time or "dynamic" (read from PixelDerived at run time). The key with every stage
// dynamic is the generic loop, the reference the specialised ones are tested against.
enum SpanKeyBits : uint32_t {
  KEY_CC_SHIFT = 0,     // colour combine: 0 iterated colour, 1 constant colour, 2 dynamic
  KEY_AC_SHIFT = 2,     // alpha combine: 0 constant alpha, 1 iterated alpha, 2 dynamic
  KEY_DEPTH_SHIFT = 4,  // depth: 0 none, 1 biased Z buffer, 2 biased W buffer, 3 dynamic
  KEY_FOG = 1u << 6,    // fog on (dynamic)
  KEY_BLEND = 1u << 7,  // frame-buffer blending on (dynamic)
  KEY_TESTS = 1u << 8,  // alpha test or chroma key on (dynamic)
  KEY_COUNT = 1u << 9,
};
enum : uint32_t { CC_ITER = 0, CC_CONST = 1, CC_DYN = 2 };
enum : uint32_t { AC_CONST = 0, AC_ITER = 1, AC_DYN = 2 };
enum : uint32_t { DEPTH_NONE = 0, DEPTH_Z = 1, DEPTH_W = 2, DEPTH_DYN = 3 };
constexpr uint32_t KEY_GENERIC = (CC_DYN << KEY_CC_SHIFT) | (AC_DYN << KEY_AC_SHIFT) |
                                 (DEPTH_DYN << KEY_DEPTH_SHIFT) | KEY_FOG | KEY_BLEND | KEY_TESTS;

// The iterated parameters a span loop of key `key` reads, as bits (1 << Param: r, g, b, a, z, w).
// The set-up converts only these to fixed point; the others stay zero.
constexpr uint32_t span_key_params(uint32_t key) {
  const uint32_t cc = (key >> KEY_CC_SHIFT) & 3, ac = (key >> KEY_AC_SHIFT) & 3, depth = (key >> KEY_DEPTH_SHIFT) & 3;
  const bool fog = (key & KEY_FOG) != 0, tests = (key & KEY_TESTS) != 0;
  uint32_t m = 0;
  if (cc != CC_CONST || tests) m |= 7u;                                                   // r, g, b
  if (ac != AC_CONST || fog || cc == CC_DYN) m |= 8u;                                     // a
  if (depth == DEPTH_Z || depth == DEPTH_DYN || fog || ac == AC_DYN || cc == CC_DYN) m |= 16u;  // z
  if (depth == DEPTH_W || depth == DEPTH_DYN || fog) m |= 32u;                            // w
  return m;
}

// Whether the span loop of `key` hands its spans to a lean loop when one fits (spans_plain.h): no
// stage is read at run time but the colour combine, and nothing but the depth test rejects pixels.
constexpr bool span_key_tries_plain(uint32_t key) {
  const uint32_t ac = (key >> KEY_AC_SHIFT) & 3, depth = (key >> KEY_DEPTH_SHIFT) & 3;
  return ac != AC_DYN && depth != DEPTH_DYN && !(key & KEY_TESTS);
}

// Whether the span loop of `key` fills spans with the constant colour's dither pattern when the aux
// buffer is not written (a form faster than the lean loops).
constexpr bool span_key_fills(uint32_t key) {
  return ((key >> KEY_CC_SHIFT) & 3) == CC_CONST && ((key >> KEY_DEPTH_SHIFT) & 3) == DEPTH_NONE &&
         !(key & (KEY_FOG | KEY_BLEND | KEY_TESTS));
}

struct PixelDecoded {
  CombineUnit cc, ac;
  uint8_t constR, constG, constB, constA;  // constant colour
  uint8_t fogR, fogG, fogB;                // fog colour
  uint8_t fogSource;                       // GR_FOG_* source (0..3)
  uint8_t fogMult2, fogAdd2;               // fog modifiers
  uint8_t blendSrc, blendDst;              // rgb blend factors
  uint8_t blendAlphaSrcOne, blendAlphaDstOne;
  uint8_t alphaFunction, alphaRef;
  uint8_t chroma;                          // chroma key on
  uint8_t depthMode, depthFunction;
  uint8_t rgbWrite, auxWrite, alphaBuffer;  // masks; alphaBuffer: aux holds alpha
  uint8_t ditherMode;
  uint8_t flip;                            // lower-left origin
  uint8_t textured;                        // a combine unit or the chroma key reads the texture
  uint32_t chromaRGB;                      // 0x00RRGGBB
  int32_t depthBias;                       // signed level (biased modes)
  uint32_t biasCompare;                    // 16-bit source of the compare-to-bias modes
  int clipMinX, clipMinY, clipMaxX, clipMaxY;  // clamped to the screen it was decoded for
};

}  // namespace zvb
