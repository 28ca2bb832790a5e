// combine.h: the colour and alpha combine units of the pixel pipeline.
//
// Each unit computes  invert( clamp( f' x (other' - local') + add ) )  where the hardware's three
// switches choose other' (the other input or 0), local' (the local input or 0) and add (nothing, the
// local input, or the local alpha), and f' is the 8-bit factor after the "one minus" choice. The
// multiply is the hardware's 8-bit one: (x * (f + 1)) >> 8 with an arithmetic shift.
#pragma once

#include <cstdint>

#include "pixel/derived.h"

namespace zvb {

// The texture colour seen by the combine units. Until the TMUs are emulated the board behaves as a
// board whose TMU0 is in its power-up ZERO combine: the texel is transparent black.
constexpr int kTextureAbsent = 0;

// Inputs of both combine units at one pixel, each 0..255.
struct CombineIn {
  int ir, ig, ib, ia;  // iterated colour and alpha (clamped)
  int tr, tg, tb, ta;  // texture (TMU0 result)
  int cr, cg, cb, ca;  // constant colour
  int depthByte;       // clamped Z >> 8, the alpha unit's GR_COMBINE_LOCAL_DEPTH
};

inline int clamp255(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// The hardware's 8-bit multiply of a signed value x by a factor f in 0..255.
inline int mul8(int x, int f) { return (x * (f + 1)) >> 8; }

// Decodes a combine function into the unit's switches; undefined functions act as SCALE_OTHER.
inline void combine_decode_function(int function, CombineUnit &u) {
  u.zeroOther = u.subLocal = u.add = 0;
  switch (function) {
    case 0x0: u.zeroOther = 1; break;                             // ZERO
    case 0x1: u.zeroOther = 1; u.add = 1; break;                  // LOCAL
    case 0x2: u.zeroOther = 1; u.add = 2; break;                  // LOCAL_ALPHA
    case 0x4: u.add = 1; break;                                   // SCALE_OTHER_ADD_LOCAL
    case 0x5: u.add = 2; break;                                   // SCALE_OTHER_ADD_LOCAL_ALPHA
    case 0x6: u.subLocal = 1; break;                              // SCALE_OTHER_MINUS_LOCAL
    case 0x7: u.subLocal = 1; u.add = 1; break;                   // ..._ADD_LOCAL (BLEND)
    case 0x8: u.subLocal = 1; u.add = 2; break;                   // ..._ADD_LOCAL_ALPHA
    case 0x9: u.zeroOther = 1; u.subLocal = 1; u.add = 1; break;  // SCALE_MINUS_LOCAL_ADD_LOCAL
    case 0x10: u.zeroOther = 1; u.subLocal = 1; u.add = 2; break; // ..._ADD_LOCAL_ALPHA
    default: break;                                               // SCALE_OTHER
  }
}

// The alpha unit's local input Al.
inline int combine_alpha_local(const CombineUnit &u, const CombineIn &in) {
  switch (u.local) {
    case 1: return in.ca;
    case 2: return in.depthByte;
    default: return in.ia;
  }
}

// The alpha unit's other input Ao.
inline int combine_alpha_other(const CombineUnit &u, const CombineIn &in) {
  switch (u.other) {
    case 0: return in.ia;
    case 1: return in.ta;
    case 2: return in.ca;
    default: return 0;
  }
}

// One unit's arithmetic for one channel, given its inputs and its factor before "one minus".
inline int combine_channel(const CombineUnit &u, int other, int local, int localAlpha, int f) {
  if (u.oneMinus) f = 255 - f;
  int v = u.zeroOther ? 0 : other;
  if (u.subLocal) v -= local;
  v = mul8(v, f);
  if (u.add == 1) v += local;
  else if (u.add == 2) v += localAlpha;
  v = clamp255(v);
  return u.invert ? 255 - v : v;
}

// The alpha combine unit: the pixel's alpha before the alpha test.
inline int combine_alpha(const CombineUnit &u, const CombineIn &in) {
  const int al = combine_alpha_local(u, in);
  const int ao = combine_alpha_other(u, in);
  int f;
  switch (u.factor) {
    case 1: case 3: f = al; break;
    case 2: f = ao; break;
    case 4: f = in.ta; break;
    default: f = 0; break;
  }
  return combine_channel(u, ao, al, al, f);
}

// The colour unit's other input Co (also what the chroma key compares).
inline void combine_colour_other(const CombineUnit &cc, const CombineIn &in, int &r, int &g, int &b) {
  switch (cc.other) {
    case 0: r = in.ir; g = in.ig; b = in.ib; break;
    case 1: r = in.tr; g = in.tg; b = in.tb; break;
    case 2: r = in.cr; g = in.cg; b = in.cb; break;
    default: r = g = b = 0; break;
  }
}

// The colour combine unit. Its alpha-valued factors and the *_ADD_LOCAL_ALPHA functions read Al and
// Ao as the alpha unit `ac` selects them, not as the colour unit's own local/other arguments.
inline void combine_colour(const CombineUnit &cc, const CombineUnit &ac, const CombineIn &in, int &r, int &g,
                           int &b) {
  int or_, og, ob;
  combine_colour_other(cc, in, or_, og, ob);
  const bool localConst = (cc.local & 1) != 0;
  const int lr = localConst ? in.cr : in.ir;
  const int lg = localConst ? in.cg : in.ig;
  const int lb = localConst ? in.cb : in.ib;
  const int al = combine_alpha_local(ac, in);
  int fr, fg, fb;
  switch (cc.factor) {
    case 1: fr = lr; fg = lg; fb = lb; break;
    case 2: fr = fg = fb = combine_alpha_other(ac, in); break;
    case 3: fr = fg = fb = al; break;
    case 4: fr = fg = fb = in.ta; break;
    case 5: fr = in.tr; fg = in.tg; fb = in.tb; break;
    default: fr = fg = fb = 0; break;
  }
  r = combine_channel(cc, or_, lr, al, fr);
  g = combine_channel(cc, og, lg, al, fg);
  b = combine_channel(cc, ob, lb, al, fb);
}

}  // namespace zvb
