// spans_table_1.cpp: the span loops for keys 128..255 (blending, no tests).
// The 512 keys are spread over four files so that the build compiles them in parallel.
#include "pixel/spans.h"

namespace zvb {

extern const std::array<SpanFn, 128> kSpanTable1;
constinit const std::array<SpanFn, 128> kSpanTable1 =
    make_span_table<128u>(std::make_integer_sequence<uint32_t, 128>{});

}  // namespace zvb
