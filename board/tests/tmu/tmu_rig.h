// A pair of TMUs with their memory, for sampling tests: textures are downloaded through the tmu_
// calls and sampled one pixel at a time through the per-triangle set-up and the span routine.
#pragma once

#include "tmu/tmu.h"

#include <vector>

namespace zvb_test {

struct TmuRig {
  zvb::TmuState st[2];
  zvb::TmuMemory mem[2];
  zvb::TmuGradients grad[2] = {};
  int numTmu = 2;
  bool hintMipDither = false;

  explicit TmuRig(uint32_t bytes = 1u << 20) {
    for (int i = 0; i < 2; ++i) {
      zvb::tmu_memory_init(mem[i], bytes);
      zvb::tmu_reset(st[i]);
    }
  }

  // Sets both texel gradients of TMU i to `g` texels (256 scale) per pixel.
  void gradient(int i, float g) { grad[i] = {g, 0.0f, 0.0f, g}; }

  // The texel colour at texture coordinates (s, t) seen through 1/w = oow, at pixel (x, y).
  // Both TMUs get the same coordinates.
  uint32_t sample(float s, float t, float oow = 1.0f, int x = 0, int y = 0) {
    zvb::TexSetup ts;
    zvb::TmuMemory *m[2] = {&mem[0], &mem[1]};
    zvb::tex_setup(ts, st, m, numTmu, grad, hintMipDither);
    zvb::TmuCoords c[2];
    for (auto &ci : c) ci = {s * oow, t * oow, oow, 0.0f, 0.0f, 0.0f};
    uint32_t out = 0;
    zvb::tex_span(ts, c, x, y, 1, &out);
    return out;
  }

  // Downloads a whole chain (levels largeLod..smallLod, host layout) and binds it on TMU i.
  bool load(int i, uint32_t address, uint32_t evenOdd, int largeLod, int smallLod, int aspect,
            int format, const void *data) {
    GrTexInfo info{smallLod, largeLod, aspect, format, const_cast<void *>(data)};
    return zvb::tmu_TexDownloadMipMap(mem[i], address, evenOdd, &info) &&
           zvb::tmu_TexSource(st[i], mem[i], address, evenOdd, &info);
  }
};

// Host bytes of every level of a chain.
inline size_t chain_bytes(int largeLod, int smallLod, int aspect, int format) {
  size_t n = 0;
  for (int l = largeLod; l <= smallLod; ++l) {
    int w = 0, h = 0;
    zvb::tmu_level_size(l, aspect, &w, &h);
    n += size_t(w) * size_t(h) * size_t(zvb::tmu_format_bytes(format));
  }
  return n;
}

}  // namespace zvb_test
