// Texel formats: expansion of every format to 8-bit A, R, G, B, NCC (YIQ) decoding from the
// packed table, palette look-up, and the 512-entry decoding tables the sampler uses.
#include "tmu/tmu.h"

namespace zvb {

namespace {

// Bit replication to 8 bits.
constexpr uint32_t x3(uint32_t v) { return (v << 5) | (v << 2) | (v >> 1); }
constexpr uint32_t x2(uint32_t v) { return v * 0x55; }
constexpr uint32_t x4(uint32_t v) { return v * 0x11; }
constexpr uint32_t x5(uint32_t v) { return (v << 3) | (v >> 2); }
constexpr uint32_t x6(uint32_t v) { return (v << 2) | (v >> 4); }

constexpr uint32_t argb(uint32_t a, uint32_t r, uint32_t g, uint32_t b) {
  return (a << 24) | (r << 16) | (g << 8) | b;
}

int sign9(uint32_t v) { return int((v & 0x1FF) ^ 0x100) - 0x100; }

int clamp255(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// RGB of an NCC-coded byte: Y[T >> 4] + I[(T >> 2) & 3] + Q[T & 3] per channel, clamped.
uint32_t ncc_rgb(const uint32_t *ncc, uint32_t t) {
  if (!ncc) return 0;
  uint32_t yi = t >> 4, ii = (t >> 2) & 3, qi = t & 3;
  int y = int((ncc[yi >> 2] >> (8 * (yi & 3))) & 0xFF);
  uint32_t iw = ncc[4 + ii], qw = ncc[8 + qi];
  int r = clamp255(y + sign9(iw >> 18) + sign9(qw >> 18));
  int g = clamp255(y + sign9(iw >> 9) + sign9(qw >> 9));
  int b = clamp255(y + sign9(iw) + sign9(qw));
  return argb(0, uint32_t(r), uint32_t(g), uint32_t(b));
}

uint32_t palette_rgb(const uint32_t *palette, uint32_t index) {
  return palette ? palette[index & 0xFF] & 0x00FFFFFFu : 0;
}

}  // namespace

uint32_t tmu_decode_texel(int format, uint32_t v, const uint32_t *ncc, const uint32_t *palette) {
  uint32_t lo = v & 0xFF, hi = (v >> 8) & 0xFF;
  switch (format) {
    case GR_TEXFMT_RGB_332:
      return argb(255, x3(lo >> 5), x3((lo >> 2) & 7), x2(lo & 3));
    case GR_TEXFMT_YIQ_422:
      return 0xFF000000u | ncc_rgb(ncc, lo);
    case GR_TEXFMT_ALPHA_8:
      return argb(lo, lo, lo, lo);
    case GR_TEXFMT_INTENSITY_8:
      return argb(255, lo, lo, lo);
    case GR_TEXFMT_ALPHA_INTENSITY_44:
      return argb(x4(lo >> 4), x4(lo & 15), x4(lo & 15), x4(lo & 15));
    case GR_TEXFMT_P_8:
      return 0xFF000000u | palette_rgb(palette, lo);
    case GR_TEXFMT_ARGB_8332:
      return argb(hi, x3(lo >> 5), x3((lo >> 2) & 7), x2(lo & 3));
    case GR_TEXFMT_AYIQ_8422:
      return (hi << 24) | ncc_rgb(ncc, lo);
    case GR_TEXFMT_RGB_565:
      return argb(255, x5((v >> 11) & 31), x6((v >> 5) & 63), x5(v & 31));
    case GR_TEXFMT_ARGB_1555:
      return argb((v & 0x8000) ? 255 : 0, x5((v >> 10) & 31), x5((v >> 5) & 31), x5(v & 31));
    case GR_TEXFMT_ARGB_4444:
      return argb(x4((v >> 12) & 15), x4((v >> 8) & 15), x4((v >> 4) & 15), x4(v & 15));
    case GR_TEXFMT_ALPHA_INTENSITY_88:
      return argb(hi, lo, lo, lo);
    case GR_TEXFMT_AP_88:
      return (hi << 24) | palette_rgb(palette, lo);
    default:
      return 0;
  }
}

// Builds the sampler's decoding table for `format`: a texel v decodes to
// lut[v & 255] | lut[256 + (v >> 8)]. Every format expands by bit replication, so each result
// bit comes from one texel bit (or is constant) and the two halves combine by OR; the formats
// whose high byte is plain alpha take it as such.
void tmu_build_lut(uint32_t *lut, int format, const uint32_t *ncc, const uint32_t *palette) {
  bool sixteen = tmu_format_bytes(format) == 2;
  bool alphaHigh = format == GR_TEXFMT_ARGB_8332 || format == GR_TEXFMT_AYIQ_8422 ||
                   format == GR_TEXFMT_ALPHA_INTENSITY_88 || format == GR_TEXFMT_AP_88;
  for (uint32_t i = 0; i < 256; ++i) {
    lut[i] = tmu_decode_texel(format, i, ncc, palette);
    if (!sixteen)
      lut[256 + i] = 0;
    else if (alphaHigh)
      lut[256 + i] = i << 24;
    else
      lut[256 + i] = tmu_decode_texel(format, i << 8, ncc, palette);
  }
  if (alphaHigh)
    for (uint32_t i = 0; i < 256; ++i) lut[i] &= 0x00FFFFFFu;
}

namespace {

// The pointer a range's decoded texels are read through: copy[a] for 8-bit texels, copy[a / 2]
// for 16-bit ones (a: byte address, begin a multiple of 8).
const uint32_t *copy_base(const TmuMemory &mem, uint32_t begin, int format) {
  return mem.texels.data() + (tmu_format_bytes(format) == 2 ? begin / 2 : 0u);
}

}  // namespace

// Drops every decoded range that overlaps the written bytes.
void tmu_texels_written(TmuMemory &mem, uint32_t begin, uint32_t end) {
  ++mem.writeSerial;
  size_t keep = 0;
  for (const TmuDecodedRange &r : mem.decoded)
    if (r.end <= begin || r.begin >= end) mem.decoded[keep++] = r;
  mem.decoded.resize(keep);
}

// The copy is current when a listed range has exactly these bytes and decoding; otherwise the
// bytes are decoded again (every texel of the range, with the two-half table look-up the
// reference sampler uses) and the ranges they overlap, decoded some other way, are dropped.
// 16-bit texels are packed into the first half of their range's entries (the texel at byte
// address a at entry begin + (a - begin) / 2), which halves what the sampler reads from memory;
// the range's entries stay its own, as ranges never overlap.
const uint32_t *tmu_texels_decode(TmuMemory &mem, uint32_t begin, uint32_t end, int format, int ncc) {
  const bool nccFormat = format == GR_TEXFMT_YIQ_422 || format == GR_TEXFMT_AYIQ_8422;
  const bool tables = nccFormat || format == GR_TEXFMT_P_8 || format == GR_TEXFMT_AP_88;
  const TmuDecodedRange want{begin, end, format, nccFormat ? ncc : 0, tables ? mem.tableSerial : 0u};
  if (mem.texels.size() != mem.bytes.size()) mem.texels.assign(mem.bytes.size(), 0);
  for (const TmuDecodedRange &r : mem.decoded)
    if (r.begin == want.begin && r.end == want.end && r.format == want.format && r.ncc == want.ncc &&
        r.tableSerial == want.tableSerial)
      return copy_base(mem, begin, format);
  size_t keep = 0;
  for (const TmuDecodedRange &r : mem.decoded)
    if (r.end <= begin || r.begin >= end) mem.decoded[keep++] = r;
  mem.decoded.resize(keep);
  const uint8_t *src = mem.bytes.data();
  uint32_t *dst = mem.texels.data();
  if (tmu_format_bytes(format) == 2) {
    for (uint32_t a = begin; a + 1 < end; a += 2)
      dst[begin + (a - begin) / 2] = mem.lut[src[a]] | mem.lut[256 + src[a + 1]];
  } else {
    for (uint32_t a = begin; a < end; ++a) dst[a] = mem.lut[src[a]];
  }
  mem.decoded.push_back(want);
  return copy_base(mem, begin, format);
}

}  // namespace zvb
