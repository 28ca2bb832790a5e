// spans.cpp: picks the span loop for a key from the four instantiation tables.
#include <array>

#include "pixel/raster.h"

namespace zvb {

extern const std::array<SpanFn, 128> kSpanTable0;
extern const std::array<SpanFn, 128> kSpanTable1;
extern const std::array<SpanFn, 128> kSpanTable2;
extern const std::array<SpanFn, 128> kSpanTable3;

SpanFn span_function(uint32_t key) {
  static const std::array<SpanFn, 128> *const tables[4] = {&kSpanTable0, &kSpanTable1, &kSpanTable2, &kSpanTable3};
  key &= KEY_COUNT - 1;
  SpanFn fn = (*tables[key >> 7])[key & 127];
  return fn ? fn : (*tables[KEY_GENERIC >> 7])[KEY_GENERIC & 127];
}

}  // namespace zvb
