// fog.h: the fog unit of the pixel pipeline (factor look-up and blend with the fog colour).
#pragma once

#include <cstdint>

namespace zvb {

// Fog factor from the 64-entry table for a pixel whose W float is `wf`: entry i = Wf >> 10, and the
// step to the next entry scaled by the 8 bits below it, q = (Wf >> 2) & 0xFF. The last entry has no
// successor, so its step is 0.
inline int fog_table_factor(const uint8_t *table, uint32_t wf) {
  const uint32_t i = (wf >> 10) & 63;
  const int q = static_cast<int>((wf >> 2) & 0xFF);
  const int t0 = table[i];
  const int delta = i < 63 ? table[i + 1] - t0 : 0;
  return t0 + (delta * q) / 256;
}

// One channel of the fog blend with fog colour component `fc` and factor f (0..255). Plain fog is
// the lerp C + ((Fc - C) (f + 1)) >> 8; MULT2 keeps only the fog term, ADD2 only the un-fogged part
// of C, both together give 0.
inline int fog_channel(int c, int fc, int f, bool mult2, bool add2) {
  int v;
  if (mult2 && add2) v = 0;
  else if (mult2) v = (fc * (f + 1)) >> 8;
  else if (add2) v = c - ((c * (f + 1)) >> 8);
  else v = c + (((fc - c) * (f + 1)) >> 8);
  return v < 0 ? 0 : (v > 255 ? 255 : v);
}

}  // namespace zvb
