// png_stored.cpp: a small PNG encoder without compression: the pixels go into stored deflate
// blocks, with the CRC-32 of each chunk and the Adler-32 of the zlib stream. Windows builds
// write their frames with it (Debian has no MinGW libpng).
#include "core/png_stored.h"

#include <cstdlib>
#include <cstring>

namespace zvb {

// One RGB565 row as 8-bit RGB triples.
void widen_row(const uint16_t *src, int w, uint8_t *dst) {
  for (int x = 0; x < w; ++x) {
    const uint32_t v = src[x], r = v >> 11, g = (v >> 5) & 63, b = v & 31;
    dst[3 * x + 0] = static_cast<uint8_t>(r << 3 | r >> 2);
    dst[3 * x + 1] = static_cast<uint8_t>(g << 2 | g >> 4);
    dst[3 * x + 2] = static_cast<uint8_t>(b << 3 | b >> 2);
  }
}

// CRC-32 (ISO 3309, as PNG chunks use it), table built once.
uint32_t crc32_update(uint32_t crc, const uint8_t *p, size_t n) {
  static const auto table = [] {
    struct T { uint32_t v[256]; } t{};
    for (uint32_t i = 0; i < 256; ++i) {
      uint32_t c = i;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t.v[i] = c;
    }
    return t;
  }();
  crc = ~crc;
  for (size_t i = 0; i < n; ++i) crc = table.v[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

namespace {

struct ByteWriter {
  uint8_t *data;
  size_t size;
  void u8(uint8_t v) { data[size++] = v; }
  void be32(uint32_t v) { u8(static_cast<uint8_t>(v >> 24)); u8(static_cast<uint8_t>(v >> 16)); u8(static_cast<uint8_t>(v >> 8)); u8(static_cast<uint8_t>(v)); }
  void bytes(const void *p, size_t n) { std::memcpy(data + size, p, n); size += n; }
  // Closes the chunk that started at `start` (its length field) with its CRC.
  void end_chunk(size_t start) {
    const uint32_t len = static_cast<uint32_t>(size - start - 8);
    data[start] = static_cast<uint8_t>(len >> 24);
    data[start + 1] = static_cast<uint8_t>(len >> 16);
    data[start + 2] = static_cast<uint8_t>(len >> 8);
    data[start + 3] = static_cast<uint8_t>(len);
    be32(crc32_update(0, data + start + 4, size - start - 4));
  }
};

}  // namespace

// Encodes the picture as a PNG in memory: IHDR, one IDAT holding a zlib stream of stored
// (uncompressed) deflate blocks of at most 65535 bytes, with its Adler-32, and IEND. The
// caller frees *out.
int png_encode_stored(const uint16_t *pixels, int w, int h, uint8_t **out, size_t *outSize) {
  if (!pixels || w <= 0 || h <= 0 || !out || !outSize) return 0;
  const size_t rowBytes = static_cast<size_t>(w) * 3 + 1;
  const size_t raw = rowBytes * static_cast<size_t>(h);
  const size_t blocks = raw / 65535 + 1;
  const size_t total = 8 + 25 + 12 + 2 + raw + blocks * 5 + 4 + 12;
  uint8_t *row = static_cast<uint8_t *>(std::malloc(rowBytes));
  ByteWriter o{static_cast<uint8_t *>(std::malloc(total)), 0};
  if (!row || !o.data) {
    std::free(row);
    std::free(o.data);
    return 0;
  }
  static const uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  o.bytes(kSignature, 8);
  size_t chunk = o.size;
  o.be32(0);
  o.bytes("IHDR", 4);
  o.be32(static_cast<uint32_t>(w));
  o.be32(static_cast<uint32_t>(h));
  o.u8(8);  // bit depth
  o.u8(2);  // colour type RGB
  o.u8(0);  // deflate
  o.u8(0);  // adaptive filtering (every row uses filter 0)
  o.u8(0);  // no interlace
  o.end_chunk(chunk);

  chunk = o.size;
  o.be32(0);
  o.bytes("IDAT", 4);
  o.u8(0x78);  // zlib: deflate, 32K window
  o.u8(0x01);  // no dictionary, fastest; (0x7801 % 31 == 0)
  uint32_t s1 = 1, s2 = 0;  // Adler-32
  size_t blockLeft = 0, done = 0;
  auto put = [&](uint8_t v) {
    if (blockLeft == 0) {
      const size_t n = raw - done < 65535 ? raw - done : 65535;
      o.u8(done + n == raw ? 1 : 0);  // BFINAL on the last block, BTYPE 00 (stored)
      o.u8(static_cast<uint8_t>(n));
      o.u8(static_cast<uint8_t>(n >> 8));
      o.u8(static_cast<uint8_t>(~n));
      o.u8(static_cast<uint8_t>(~n >> 8));
      blockLeft = n;
    }
    o.u8(v);
    --blockLeft;
    ++done;
    s1 = (s1 + v) % 65521;
    s2 = (s2 + s1) % 65521;
  };
  for (int y = 0; y < h; ++y) {
    row[0] = 0;
    widen_row(pixels + static_cast<size_t>(y) * static_cast<size_t>(w), w, row + 1);
    for (size_t i = 0; i < rowBytes; ++i) put(row[i]);
  }
  o.be32(s2 << 16 | s1);
  o.end_chunk(chunk);

  chunk = o.size;
  o.be32(0);
  o.bytes("IEND", 4);
  o.end_chunk(chunk);
  std::free(row);
  *out = o.data;
  *outSize = o.size;
  return 1;
}

}  // namespace zvb
