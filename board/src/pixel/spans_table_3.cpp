// spans_table_3.cpp: the span loops for keys 384..511 (blending and tests).
// The 512 keys are spread over four files so that the build compiles them in parallel.
#include "pixel/spans.h"

namespace zvb {

extern const std::array<SpanFn, 128> kSpanTable3;
constinit const std::array<SpanFn, 128> kSpanTable3 =
    make_span_table<384u>(std::make_integer_sequence<uint32_t, 128>{});

}  // namespace zvb
