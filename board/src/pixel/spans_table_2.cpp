// spans_table_2.cpp: the span loops for keys 256..383 (tests, no blending).
// The 512 keys are spread over four files so that the build compiles them in parallel.
#include "pixel/spans.h"

namespace zvb {

extern const std::array<SpanFn, 128> kSpanTable2;
constinit const std::array<SpanFn, 128> kSpanTable2 =
    make_span_table<256u>(std::make_integer_sequence<uint32_t, 128>{});

}  // namespace zvb
