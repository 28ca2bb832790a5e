// spans_table_0.cpp: the span loops for keys 0..127 (no blending, no tests).
// The 512 keys are spread over four files so that the build compiles them in parallel.
#include "pixel/spans.h"

namespace zvb {

extern const std::array<SpanFn, 128> kSpanTable0;
constinit const std::array<SpanFn, 128> kSpanTable0 =
    make_span_table<0u>(std::make_integer_sequence<uint32_t, 128>{});

}  // namespace zvb
