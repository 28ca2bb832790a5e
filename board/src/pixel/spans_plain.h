// spans_plain.h: the lean span loops of the hot modes (spans_plain.cpp, spans_lean.h).
#pragma once

#include "pixel/blend.h"
#include "pixel/raster.h"

namespace zvb {

using PlainFn = void (*)(const SpanJob &, const PixelDecoded &, const DitherRow &, SpanCounts &);

// The lean loop that computes this span exactly as the keyed loop would, or null when the span's
// mode is not one of the plain forms.
PlainFn plain_function(const SpanJob &j, const PixelDecoded &d, uint32_t key);

// The same choice in two steps, for a primitive whose spans share the state: plain_choose reads
// the state once (`textured`: the spans carry texels; `aux`: they have an aux row), plain_pick
// finishes it for one span (the colour's range and W's range along the span). PlainChoice is in
// raster.h.
PlainChoice plain_choose(const PixelDecoded &d, uint32_t key, bool textured, bool aux);
PlainFn plain_pick(const PlainChoice &c, const SpanJob &j);

// The vector units the lean loops can run on, narrowest first. Builds for x86-64 with GCC have the
// AVX2 form (spans_plain_avx2.cpp), chosen at run time; on Windows the build writes every aligned
// vector move unaligned, as the stack there is not kept aligned for 32-byte registers.
#if defined(__GNUC__) && defined(__x86_64__)
#define ZVB_PLAIN_AVX2 1
#endif
enum PlainSimd : int { PLAIN_SCALAR = 0, PLAIN_SSE2 = 1, PLAIN_AVX2 = 2 };

// The unit the lean loops use: the widest this build and machine have, unless the environment
// variable ZVGL_BOARD_SIMD (scalar, sse2) asks for a narrower one.
int plain_simd();
// Tests: makes the lean loops use `level` (at most the widest available; -1 for that widest) and
// returns the level now in use.
int plain_force_simd(int level);

}  // namespace zvb
