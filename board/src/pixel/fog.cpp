// fog.cpp: the fog table utilities (the gu fog functions of Glide).
#include <cmath>

#include "pixel/pixel.h"

namespace zvb {

// The W at which fog table entry i starts: entries are spaced by the W float encoding, four per
// power of two: W(i) = 2^(3 + (i >> 2)) / (8 - (i & 3)), so W(0) = 1, W(4) = 2, W(63) = 52428.8.
float px_fog_index_to_w(int i) {
  return std::pow(2.0f, 3.0f + static_cast<float>(i >> 2)) / static_cast<float>(8 - (i & 3));
}

namespace {

// 255 x clamp(v, 0, 1) truncated to a table entry; NaN gives 0.
GrFog_t fog_entry(float v) {
  if (!(v > 0.0f)) return 0;
  if (v > 1.0f) v = 1.0f;
  return static_cast<GrFog_t>(255.0f * v);
}

}  // namespace

// Exponential fog normalised so that the last entry is fully fogged: (1 - e^(-dW)) / (1 - e^(-dW63)).
void px_fog_generate_exp(GrFog_t table[GR_FOG_TABLE_SIZE], float density) {
  const float scale = 1.0f / (1.0f - std::exp(-density * px_fog_index_to_w(GR_FOG_TABLE_SIZE - 1)));
  for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i) {
    const float f = (1.0f - std::exp(-density * px_fog_index_to_w(i))) * scale;
    table[i] = fog_entry(f);
  }
}

// Squared exponential fog, normalised the same way: (1 - e^(-(dW)^2)) / (1 - e^(-(dW63)^2)).
void px_fog_generate_exp2(GrFog_t table[GR_FOG_TABLE_SIZE], float density) {
  const float last = density * px_fog_index_to_w(GR_FOG_TABLE_SIZE - 1);
  const float scale = 1.0f / (1.0f - std::exp(-last * last));
  for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i) {
    const float dw = density * px_fog_index_to_w(i);
    table[i] = fog_entry((1.0f - std::exp(-dw * dw)) * scale);
  }
}

// Linear fog from nearZ (no fog) to farZ (full fog), in W.
void px_fog_generate_linear(GrFog_t table[GR_FOG_TABLE_SIZE], float nearZ, float farZ) {
  for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i) {
    float w = px_fog_index_to_w(i);
    if (w > 65535.0f) w = 65535.0f;
    table[i] = fog_entry((w - nearZ) / (farZ - nearZ));
  }
}

}  // namespace zvb
