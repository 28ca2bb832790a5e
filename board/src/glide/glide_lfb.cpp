// glide_lfb.cpp: linear frame buffer locks and region copies.
//
// A read lock gives the buffer itself (upper-left origin) or a flipped copy (lower-left). A
// write lock gives a shadow of the buffer in the lock's write mode; at grLfbUnlock the pixels
// that differ from what the shadow held at lock time travel through the FIFO and are stored,
// directly or through the pixel pipeline. (So a pipelined write of a value equal to the one
// already there is not seen: the board cannot tell it from no write.)
#include <algorithm>
#include <cstdlib>

#include "core/lfb.h"
#include "glide/entry.h"

using namespace zvb;

namespace {

// The buffer a lock or region names: its pixels, or null (no aux buffer, unknown buffer). The
// board thread changes the front and back indices when it shows a swap, under the mutex.
uint16_t *buffer_pixels(Board &b, GrBuffer_t buffer) {
  zvgl::MutexGuard lock(b.mu);
  switch (buffer) {
    case GR_BUFFER_FRONTBUFFER: return b.px.colour[b.px.front];
    case GR_BUFFER_BACKBUFFER: return b.px.colour[b.px.back];
    case GR_BUFFER_AUXBUFFER: return b.px.aux;
    default: return nullptr;
  }
}

// Reads one pixel of the screen in the parts a write mode has: the colour buffer's RGB565,
// the alpha buffer or 255, the depth of the aux buffer or 0.
LfbPixel screen_pixel(Board &b, const uint16_t *colour, size_t at) {
  LfbPixel p{};
  if (colour) {
    const uint32_t v = colour[at], r = v >> 11, g = (v >> 5) & 63, bl = v & 31;
    p.r = static_cast<uint8_t>(r << 3 | r >> 2);
    p.g = static_cast<uint8_t>(g << 2 | g >> 4);
    p.b = static_cast<uint8_t>(bl << 3 | bl >> 2);
  }
  p.a = 255;
  if (b.px.aux) {
    p.depth = b.px.aux[at];
    if (b.px.state.alphaBuffer) p.a = static_cast<uint8_t>(b.px.aux[at]);
  }
  return p;
}

// One row of the screen (`w` pixels from index `at`) in write mode `mode`. The common modes
// are plain copies; the others go pixel by pixel through the format code.
void fill_shadow_row(Board &b, const uint16_t *colour, int mode, size_t at, int w, uint8_t *dst) {
  const uint16_t *aux = b.px.aux;
  if (mode == GR_LFBWRITEMODE_565 && colour) {
    std::memcpy(dst, colour + at, static_cast<size_t>(w) * 2);
    return;
  }
  if (mode == GR_LFBWRITEMODE_ZA16 && aux) {
    std::memcpy(dst, aux + at, static_cast<size_t>(w) * 2);
    return;
  }
  if (mode == GR_LFBWRITEMODE_565_DEPTH && colour) {
    for (int x = 0; x < w; ++x) {
      const uint32_t v = colour[at + static_cast<size_t>(x)] |
                         static_cast<uint32_t>(aux ? aux[at + static_cast<size_t>(x)] : 0) << 16;
      std::memcpy(dst + 4 * x, &v, 4);
    }
    return;
  }
  const int bpp = lfb_bytes_per_pixel(mode);
  for (int x = 0; x < w; ++x) lfb_encode(mode, screen_pixel(b, colour, at + static_cast<size_t>(x)), dst + bpp * x);
}

// Queues the changed pixels of a write (lock shadow or region) as one LFB command.
void queue_write(Board &b, LfbWrite &w) {
  LfbWrite *copy = static_cast<LfbWrite *>(std::malloc(sizeof(LfbWrite)));
  if (!copy) {
    std::free(w.written);
    std::free(w.rgba);
    std::free(w.depth);
    return;
  }
  *copy = w;
  Command *c = fifo_reserve(b);
  c->op = OP_LFB_WRITE;
  c->blob = copy;
  fifo_commit(b);
}

// Allocates the per-pixel arrays of a write covering w x h pixels.
bool alloc_write(LfbWrite &w) {
  const size_t n = static_cast<size_t>(w.w) * static_cast<size_t>(w.h);
  w.written = static_cast<uint8_t *>(std::calloc(n ? n : 1, 1));
  w.rgba = static_cast<uint8_t *>(std::malloc(n ? 4 * n : 4));
  w.depth = static_cast<uint16_t *>(std::malloc(n ? 2 * n : 2));
  if (w.written && w.rgba && w.depth) return true;
  std::free(w.written);
  std::free(w.rgba);
  std::free(w.depth);
  return false;
}

void set_parts(LfbWrite &w, int mode) {
  LfbPixel probe;
  const uint8_t zero[4] = {0, 0, 0, 0};
  lfb_decode(mode, zero, probe);
  w.hasColour = (probe.flags & LFB_COLOUR) != 0;
  w.hasAlpha = (probe.flags & LFB_ALPHA) != 0;
  w.hasDepth = (probe.flags & LFB_DEPTH) != 0;
}

}  // namespace

FX_ENTRY FxBool FX_CALL grLfbLock(GrLock_t type, GrBuffer_t buffer, GrLfbWriteMode_t writeMode,
                                  GrOriginLocation_t origin, FxBool pixelPipeline, GrLfbInfo_t *info) {
  ZVB_TRACE("grLfbLock 0x%x %d %d %d %d %s", type, buffer, writeMode, origin, pixelPipeline,
            info ? "info" : "null");
  Board *bp = open_board();
  if (!bp || !info) return FXFALSE;
  Board &b = *bp;
  const GrLock_t kind = type & ~static_cast<GrLock_t>(GR_LFB_NOIDLE);
  if (kind != GR_LFB_READ_ONLY && kind != GR_LFB_WRITE_ONLY) return FXFALSE;
  if (buffer != GR_BUFFER_FRONTBUFFER && buffer != GR_BUFFER_BACKBUFFER && buffer != GR_BUFFER_AUXBUFFER)
    return FXFALSE;
  if (buffer == GR_BUFFER_AUXBUFFER && !b.px.aux) return FXFALSE;
  if (info->size != 20 && info->size != static_cast<int>(sizeof(GrLfbInfo_t)))
    refuse("grLfbLock", "info->size is not sizeof(GrLfbInfo_t)", 0);
  // Any origin other than upper-left counts as lower-left, as in the vendor's library.
  const int lockOrigin = origin == GR_ORIGIN_UPPER_LEFT ? GR_ORIGIN_UPPER_LEFT : GR_ORIGIN_LOWER_LEFT;
  const int w = b.px.width, h = b.px.height;
  const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);

  if (kind == GR_LFB_READ_ONLY) {
    if (b.lfbRead.held) return FXFALSE;
    board_idle(b);  // a software board always waits: it costs nothing worth skipping
    uint16_t *src = buffer_pixels(b, buffer);
    if (!src) return FXFALSE;
    LfbLockState &l = b.lfbRead;
    l = LfbLockState{};
    if (lockOrigin == GR_ORIGIN_LOWER_LEFT) {
      l.readCopy = static_cast<uint16_t *>(std::malloc(pixels * 2));
      if (!l.readCopy) return FXFALSE;
      for (int y = 0; y < h; ++y)
        std::memcpy(l.readCopy + static_cast<size_t>(y) * static_cast<size_t>(w),
                    src + static_cast<size_t>(h - 1 - y) * static_cast<size_t>(w), static_cast<size_t>(w) * 2);
    }
    l.held = 1;
    l.buffer = buffer;
    l.origin = lockOrigin;
    info->lfbPtr = l.readCopy ? static_cast<void *>(l.readCopy) : static_cast<void *>(src);
    info->strideInBytes = static_cast<FxU32>(w) * 2u;
    info->writeMode = buffer == GR_BUFFER_AUXBUFFER ? GR_LFBWRITEMODE_ZA16 : GR_LFBWRITEMODE_565;
    info->origin = lockOrigin;
    return FXTRUE;
  }

  if (b.lfbWrite.held) return FXFALSE;
  int mode = writeMode;
  if (mode == GR_LFBWRITEMODE_ANY) mode = buffer == GR_BUFFER_AUXBUFFER ? GR_LFBWRITEMODE_ZA16 : GR_LFBWRITEMODE_565;
  const int bpp = lfb_bytes_per_pixel(mode);
  if (!bpp) return FXFALSE;
  if ((buffer == GR_BUFFER_AUXBUFFER) != (mode == GR_LFBWRITEMODE_ZA16)) return FXFALSE;
  board_idle(b);
  LfbLockState &l = b.lfbWrite;
  const size_t bytes = pixels * static_cast<size_t>(bpp);
  if (l.capacity < bytes) {
    std::free(l.shadow);
    std::free(l.initial);
    l.shadow = static_cast<uint8_t *>(std::malloc(bytes));
    l.initial = static_cast<uint8_t *>(std::malloc(bytes));
    l.capacity = bytes;
    if (!l.shadow || !l.initial) {
      lfb_release(l);
      return FXFALSE;
    }
  }
  // The shadow starts as the screen, in the write mode and the lock's row order.
  const uint16_t *colour = buffer == GR_BUFFER_AUXBUFFER ? nullptr : buffer_pixels(b, buffer);
  for (int y = 0; y < h; ++y) {
    const int row = lockOrigin == GR_ORIGIN_LOWER_LEFT ? h - 1 - y : y;
    fill_shadow_row(b, colour, mode, static_cast<size_t>(row) * static_cast<size_t>(w), w,
                    l.initial + static_cast<size_t>(y) * static_cast<size_t>(w) * static_cast<size_t>(bpp));
  }
  std::memcpy(l.shadow, l.initial, bytes);
  l.held = 1;
  l.buffer = buffer;
  l.writeMode = mode;
  l.origin = lockOrigin;
  l.pipeline = pixelPipeline ? 1 : 0;
  l.bpp = bpp;
  info->lfbPtr = l.shadow;
  info->strideInBytes = static_cast<FxU32>(w * bpp);
  info->writeMode = mode;
  info->origin = lockOrigin;
  return FXTRUE;
}

FX_ENTRY FxBool FX_CALL grLfbUnlock(GrLock_t type, GrBuffer_t buffer) {
  ZVB_TRACE("grLfbUnlock 0x%x %d", type, buffer);
  Board *bp = open_board();
  if (!bp) return FXFALSE;
  Board &b = *bp;
  const GrLock_t kind = type & ~static_cast<GrLock_t>(GR_LFB_NOIDLE);
  if (kind == GR_LFB_READ_ONLY) {
    if (!b.lfbRead.held || b.lfbRead.buffer != buffer) return FXFALSE;
    lfb_unlock_state(b.lfbRead);
    return FXTRUE;
  }
  if (kind != GR_LFB_WRITE_ONLY || !b.lfbWrite.held || b.lfbWrite.buffer != buffer) return FXFALSE;
  LfbLockState &l = b.lfbWrite;
  const int w = b.px.width, h = b.px.height;
  // The rectangle around the changed pixels.
  int x0 = w, y0 = h, x1 = -1, y1 = -1;
  const size_t rowBytes = static_cast<size_t>(w) * static_cast<size_t>(l.bpp);
  for (int y = 0; y < h; ++y) {
    if (std::memcmp(l.shadow + static_cast<size_t>(y) * rowBytes, l.initial + static_cast<size_t>(y) * rowBytes,
                    rowBytes) == 0)
      continue;
    for (int x = 0; x < w; ++x) {
      const size_t at = (static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)) * static_cast<size_t>(l.bpp);
      if (std::memcmp(l.shadow + at, l.initial + at, static_cast<size_t>(l.bpp)) == 0) continue;
      if (x < x0) x0 = x;
      if (x > x1) x1 = x;
      if (y < y0) y0 = y;
      if (y > y1) y1 = y;
    }
  }
  if (x1 >= 0) {
    LfbWrite wr{};
    wr.buffer = buffer;
    wr.origin = l.origin;
    wr.pipeline = l.pipeline;
    set_parts(wr, l.writeMode);
    wr.x0 = x0;
    wr.y0 = y0;
    wr.w = x1 - x0 + 1;
    wr.h = y1 - y0 + 1;
    if (alloc_write(wr)) {
      for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x) {
          const size_t at = (static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)) * static_cast<size_t>(l.bpp);
          const size_t k = static_cast<size_t>(y - y0) * static_cast<size_t>(wr.w) + static_cast<size_t>(x - x0);
          if (std::memcmp(l.shadow + at, l.initial + at, static_cast<size_t>(l.bpp)) == 0) continue;
          LfbPixel p;
          lfb_decode(l.writeMode, l.shadow + at, p);
          wr.written[k] = 1;
          wr.rgba[4 * k] = p.r;
          wr.rgba[4 * k + 1] = p.g;
          wr.rgba[4 * k + 2] = p.b;
          wr.rgba[4 * k + 3] = p.a;
          wr.depth[k] = p.depth;
        }
      queue_write(b, wr);
    }
  }
  lfb_unlock_state(l);
  return FXTRUE;
}

FX_ENTRY FxBool FX_CALL grLfbReadRegion(GrBuffer_t src_buffer, FxU32 src_x, FxU32 src_y, FxU32 src_width,
                                        FxU32 src_height, FxU32 dst_stride, void *dst_data) {
  ZVB_TRACE("grLfbReadRegion %d %u %u %u %u %d %s", src_buffer, src_x, src_y, src_width, src_height,
            static_cast<int32_t>(dst_stride), dst_data ? "data" : "null");
  Board *bp = open_board();
  if (!bp || !dst_data || bp->lfbRead.held) return FXFALSE;
  Board &b = *bp;
  board_idle(b);
  const uint16_t *src = buffer_pixels(b, src_buffer);
  if (!src) return FXFALSE;
  // The stride is a signed byte step (negative: rows stored bottom-up). Pixels outside the
  // screen read as 0.
  const int64_t stride = static_cast<int32_t>(dst_stride);
  uint8_t *row = static_cast<uint8_t *>(dst_data);
  for (uint64_t j = 0; j < src_height; ++j, row += stride) {
    const uint64_t y = static_cast<uint64_t>(src_y) + j;
    for (uint64_t i = 0; i < src_width; ++i) {
      const uint64_t x = static_cast<uint64_t>(src_x) + i;
      uint16_t v = 0;
      if (x < static_cast<uint64_t>(b.px.width) && y < static_cast<uint64_t>(b.px.height))
        v = src[y * static_cast<uint64_t>(b.px.width) + x];
      std::memcpy(row + 2 * i, &v, 2);
    }
  }
  return FXTRUE;
}

FX_ENTRY FxBool FX_CALL grLfbWriteRegion(GrBuffer_t dst_buffer, FxU32 dst_x, FxU32 dst_y, GrLfbSrcFmt_t src_format,
                                         FxU32 src_width, FxU32 src_height, FxI32 src_stride, void *src_data) {
  ZVB_TRACE("grLfbWriteRegion %d %u %u 0x%x %u %u %d %s", dst_buffer, dst_x, dst_y, src_format, src_width,
            src_height, src_stride, src_data ? "data" : "null");
  Board *bp = open_board();
  if (!bp || !src_data || bp->lfbWrite.held) return FXFALSE;
  Board &b = *bp;
  const int mode = static_cast<int>(src_format);
  const int bpp = src_format == GR_LFB_SRC_FMT_RLE16 ? 0 : lfb_bytes_per_pixel(mode);
  if (!bpp) return FXFALSE;
  if (dst_buffer != GR_BUFFER_FRONTBUFFER && dst_buffer != GR_BUFFER_BACKBUFFER && dst_buffer != GR_BUFFER_AUXBUFFER)
    return FXFALSE;
  if ((dst_buffer == GR_BUFFER_AUXBUFFER) != (mode == GR_LFBWRITEMODE_ZA16)) return FXFALSE;
  if (dst_buffer == GR_BUFFER_AUXBUFFER && !b.px.aux) return FXFALSE;
  // Only the part on the screen is stored.
  const uint64_t xEnd = std::min<uint64_t>(static_cast<uint64_t>(dst_x) + src_width, static_cast<uint64_t>(b.px.width));
  const uint64_t yEnd = std::min<uint64_t>(static_cast<uint64_t>(dst_y) + src_height, static_cast<uint64_t>(b.px.height));
  if (dst_x >= xEnd || dst_y >= yEnd) return FXTRUE;
  LfbWrite wr{};
  wr.buffer = dst_buffer;
  wr.origin = GR_ORIGIN_UPPER_LEFT;
  set_parts(wr, mode);
  wr.x0 = static_cast<int>(dst_x);
  wr.y0 = static_cast<int>(dst_y);
  wr.w = static_cast<int>(xEnd - dst_x);
  wr.h = static_cast<int>(yEnd - dst_y);
  if (!alloc_write(wr)) return FXFALSE;
  const uint8_t *srcRow = static_cast<const uint8_t *>(src_data);
  for (int j = 0; j < wr.h; ++j, srcRow += src_stride)
    for (int i = 0; i < wr.w; ++i) {
      const size_t k = static_cast<size_t>(j) * static_cast<size_t>(wr.w) + static_cast<size_t>(i);
      LfbPixel p;
      lfb_decode(mode, srcRow + static_cast<size_t>(i) * static_cast<size_t>(bpp), p);
      wr.written[k] = 1;
      wr.rgba[4 * k] = p.r;
      wr.rgba[4 * k + 1] = p.g;
      wr.rgba[4 * k + 2] = p.b;
      wr.rgba[4 * k + 3] = p.a;
      wr.depth[k] = p.depth;
    }
  queue_write(b, wr);
  return FXTRUE;
}
