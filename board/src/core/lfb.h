// lfb.h: pixel formats of the linear frame buffer.
#pragma once

#include "core/board.h"

namespace zvb {

enum LfbParts { LFB_COLOUR = 1, LFB_ALPHA = 2, LFB_DEPTH = 4 };

// One pixel of an LFB write, split into its parts.
struct LfbPixel {
  uint8_t r, g, b, a;
  uint16_t depth;
  int flags;       // LfbParts present in the format
};

int lfb_bytes_per_pixel(int mode);   // 0 for reserved or unknown modes
void lfb_decode(int mode, const uint8_t *src, LfbPixel &px);
void lfb_encode(int mode, const LfbPixel &px, uint8_t *dst);

}  // namespace zvb
