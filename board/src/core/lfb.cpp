// lfb.cpp: the linear frame buffer's pixel formats and the board-side half of LFB writes:
// pixels handed over by grLfbUnlock or grLfbWriteRegion are stored directly, or sent one by
// one through the pixel pipeline.
#include "core/lfb.h"

#include <cstdlib>
#include <cstring>

namespace zvb {

int lfb_bytes_per_pixel(int mode) {
  switch (mode) {
    case GR_LFBWRITEMODE_565: case GR_LFBWRITEMODE_555: case GR_LFBWRITEMODE_1555:
    case GR_LFBWRITEMODE_ZA16: return 2;
    case GR_LFBWRITEMODE_888: case GR_LFBWRITEMODE_8888: case GR_LFBWRITEMODE_565_DEPTH:
    case GR_LFBWRITEMODE_555_DEPTH: case GR_LFBWRITEMODE_1555_DEPTH: return 4;
    default: return 0;
  }
}

// Splits one pixel of write mode `mode` into its parts; `flags` says which parts it has.
void lfb_decode(int mode, const uint8_t *src, LfbPixel &px) {
  uint32_t v = 0;
  std::memcpy(&v, src, static_cast<size_t>(lfb_bytes_per_pixel(mode)));
  const uint32_t lo = v & 0xFFFF;
  px = LfbPixel{};
  auto from555 = [&](uint32_t c) {
    const uint32_t r = (c >> 10) & 31, g = (c >> 5) & 31, b = c & 31;
    px.r = static_cast<uint8_t>(r << 3 | r >> 2);
    px.g = static_cast<uint8_t>(g << 3 | g >> 2);
    px.b = static_cast<uint8_t>(b << 3 | b >> 2);
  };
  switch (mode) {
    case GR_LFBWRITEMODE_565:
    case GR_LFBWRITEMODE_565_DEPTH: {
      const uint32_t r = lo >> 11, g = (lo >> 5) & 63, b = lo & 31;
      px.r = static_cast<uint8_t>(r << 3 | r >> 2);
      px.g = static_cast<uint8_t>(g << 2 | g >> 4);
      px.b = static_cast<uint8_t>(b << 3 | b >> 2);
      px.flags = LFB_COLOUR;
      break;
    }
    case GR_LFBWRITEMODE_555:
    case GR_LFBWRITEMODE_555_DEPTH: from555(lo); px.flags = LFB_COLOUR; break;
    case GR_LFBWRITEMODE_1555:
    case GR_LFBWRITEMODE_1555_DEPTH:
      from555(lo);
      px.a = (lo & 0x8000) ? 255 : 0;
      px.flags = LFB_COLOUR | LFB_ALPHA;
      break;
    case GR_LFBWRITEMODE_888:
      px.r = static_cast<uint8_t>(v >> 16); px.g = static_cast<uint8_t>(v >> 8); px.b = static_cast<uint8_t>(v);
      px.flags = LFB_COLOUR;
      break;
    case GR_LFBWRITEMODE_8888:
      px.r = static_cast<uint8_t>(v >> 16); px.g = static_cast<uint8_t>(v >> 8); px.b = static_cast<uint8_t>(v);
      px.a = static_cast<uint8_t>(v >> 24);
      px.flags = LFB_COLOUR | LFB_ALPHA;
      break;
    case GR_LFBWRITEMODE_ZA16: px.depth = static_cast<uint16_t>(lo); px.flags = LFB_DEPTH; break;
    default: break;
  }
  if (mode >= GR_LFBWRITEMODE_565_DEPTH && mode <= GR_LFBWRITEMODE_1555_DEPTH) {
    px.depth = static_cast<uint16_t>(v >> 16);
    px.flags |= LFB_DEPTH;
  }
}

// The inverse of lfb_decode: stores the parts in write mode `mode`.
void lfb_encode(int mode, const LfbPixel &px, uint8_t *dst) {
  const uint32_t c565 = (px.r >> 3) << 11 | (px.g >> 2) << 5 | px.b >> 3;
  const uint32_t c555 = (px.r >> 3) << 10 | (px.g >> 3) << 5 | px.b >> 3;
  uint32_t v = 0;
  switch (mode) {
    case GR_LFBWRITEMODE_565: v = c565; break;
    case GR_LFBWRITEMODE_555: v = c555; break;
    case GR_LFBWRITEMODE_1555: v = c555 | (px.a >= 128 ? 0x8000u : 0); break;
    case GR_LFBWRITEMODE_888: v = static_cast<uint32_t>(px.r) << 16 | px.g << 8 | px.b; break;
    case GR_LFBWRITEMODE_8888:
      v = static_cast<uint32_t>(px.a) << 24 | static_cast<uint32_t>(px.r) << 16 | px.g << 8 | px.b;
      break;
    case GR_LFBWRITEMODE_565_DEPTH: v = c565 | static_cast<uint32_t>(px.depth) << 16; break;
    case GR_LFBWRITEMODE_555_DEPTH: v = c555 | static_cast<uint32_t>(px.depth) << 16; break;
    case GR_LFBWRITEMODE_1555_DEPTH:
      v = c555 | (px.a >= 128 ? 0x8000u : 0) | static_cast<uint32_t>(px.depth) << 16;
      break;
    case GR_LFBWRITEMODE_ZA16: v = px.depth; break;
    default: break;
  }
  std::memcpy(dst, &v, static_cast<size_t>(lfb_bytes_per_pixel(mode)));
}

// Stores the written pixels of `w` (board thread). Without the pipeline the colour goes to the
// colour buffer (RGB565, truncated), depth (or alpha, when the aux buffer holds alpha) to the
// aux buffer; with it each pixel runs through px_pipeline_pixel with the lock's origin, and the
// constant alpha and depth stand in for parts the format lacks.
void lfb_apply(Board &b, LfbWrite &w) {
  PixelBoard &p = b.px;
  if (!p.colour[0] || w.w <= 0 || w.h <= 0) return;
  uint16_t *colour = nullptr;
  if (w.buffer == GR_BUFFER_FRONTBUFFER) colour = p.colour[p.front];
  else if (w.buffer == GR_BUFFER_BACKBUFFER) colour = p.colour[p.back];
  const uint8_t savedOrigin = p.state.origin;
  if (w.pipeline) p.state.origin = static_cast<uint8_t>(w.origin);
  for (int j = 0; j < w.h; ++j) {
    const int y = w.y0 + j;
    const int row = w.origin == GR_ORIGIN_LOWER_LEFT ? p.height - 1 - y : y;
    for (int i = 0; i < w.w; ++i) {
      const size_t k = static_cast<size_t>(j) * static_cast<size_t>(w.w) + static_cast<size_t>(i);
      if (!w.written[k]) continue;
      const int x = w.x0 + i;
      if (x < 0 || x >= p.width || row < 0 || row >= p.height) continue;
      const uint8_t *c = w.rgba + 4 * k;
      if (w.pipeline && colour) {
        const uint8_t a = w.hasAlpha ? c[3] : p.state.lfbAlpha;
        const uint16_t d = w.hasDepth ? w.depth[k] : p.state.lfbDepth;
        px_pipeline_pixel(p, x, y, c[0], c[1], c[2], a, d);
        continue;
      }
      const size_t at = static_cast<size_t>(row) * static_cast<size_t>(p.width) + static_cast<size_t>(x);
      if (colour && w.hasColour)
        colour[at] = static_cast<uint16_t>((c[0] >> 3) << 11 | (c[1] >> 2) << 5 | c[2] >> 3);
      if (p.aux) {
        if (w.hasDepth) p.aux[at] = w.depth[k];
        else if (colour && w.hasAlpha && p.state.alphaBuffer) p.aux[at] = c[3];
      }
    }
  }
  p.state.origin = savedOrigin;
}

void lfb_unlock_state(LfbLockState &l) {
  std::free(l.readCopy);
  l.readCopy = nullptr;
  l.held = 0;
}

void lfb_release(LfbLockState &l) {
  std::free(l.shadow);
  std::free(l.initial);
  std::free(l.readCopy);
  l = LfbLockState{};
}

}  // namespace zvb
