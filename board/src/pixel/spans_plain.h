// spans_plain.h: the lean span loops of the hot modes (spans_plain.cpp).
#pragma once

#include "pixel/blend.h"
#include "pixel/raster.h"

namespace zvb {

using PlainFn = void (*)(const SpanJob &, const PixelDecoded &, const DitherRow &, SpanCounts &);

// The lean loop that computes this span exactly as the keyed loop would, or null when the span's
// mode is not one of the plain forms.
PlainFn plain_function(const SpanJob &j, const PixelDecoded &d, uint32_t key);

}  // namespace zvb
