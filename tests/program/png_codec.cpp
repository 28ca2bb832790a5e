// png_codec.cpp: the tests' own PNG reader (zlib inflate, PNG filters) and stored writer.
#include "png_image.h"

#include <cstdio>
#include <cstring>

namespace zvgl_test {

namespace {

// ---------------------------------------------------------------------------------------
// Inflate (RFC 1951).

// Bits of the compressed stream, least significant first.
struct BitReader {
  const uint8_t *data;
  size_t size;
  size_t pos;      // next byte
  uint32_t bits;   // bits not yet used
  int count;       // how many of them
  bool overrun;

  int need(int n) {
    while (count < n) {
      if (pos >= size) {
        overrun = true;
        return 0;
      }
      bits |= static_cast<uint32_t>(data[pos++]) << count;
      count += 8;
    }
    const int v = static_cast<int>(bits & ((1u << n) - 1));
    bits >>= n;
    count -= n;
    return v;
  }
};

constexpr int kMaxBits = 15;

// A canonical Huffman code: how many codes have each length, and the symbols in code order.
struct Huffman {
  uint16_t counts[kMaxBits + 1];
  uint16_t symbols[320];
};

// Builds the code from the code lengths of n symbols. False when the lengths over-subscribe
// the code space (an incomplete code is allowed, as for a single distance code).
bool huffman_build(Huffman &h, const uint8_t *lengths, int n) {
  std::memset(h.counts, 0, sizeof h.counts);
  for (int s = 0; s < n; ++s) ++h.counts[lengths[s]];
  int left = 1;
  for (int len = 1; len <= kMaxBits; ++len) {
    left <<= 1;
    left -= h.counts[len];
    if (left < 0) return false;
  }
  uint16_t offsets[kMaxBits + 2];
  offsets[1] = 0;
  for (int len = 1; len <= kMaxBits; ++len) offsets[len + 1] = static_cast<uint16_t>(offsets[len] + h.counts[len]);
  for (int s = 0; s < n; ++s)
    if (lengths[s]) h.symbols[offsets[lengths[s]]++] = static_cast<uint16_t>(s);
  return true;
}

// Reads one symbol: the code is read bit by bit (codes are stored most significant bit
// first), compared with the first code of each length. -1 for a code that does not exist.
int huffman_decode(BitReader &in, const Huffman &h) {
  int code = 0, first = 0, index = 0;
  for (int len = 1; len <= kMaxBits; ++len) {
    code |= in.need(1);
    if (in.overrun) return -1;
    const int count = h.counts[len];
    if (code - first < count) return h.symbols[index + (code - first)];
    index += count;
    first = (first + count) << 1;
    code <<= 1;
  }
  return -1;
}

const uint16_t kLengthBase[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                  31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
const uint8_t kLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                  2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
const uint16_t kDistBase[30] = {1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
                                193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
const uint8_t kDistExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6,
                                6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

// Decodes the symbols of one compressed block into out.
bool inflate_codes(BitReader &in, const Huffman &lit, const Huffman &dist, std::vector<uint8_t> &out,
                   std::string &error) {
  for (;;) {
    int sym = huffman_decode(in, lit);
    if (sym < 0) {
      error = "bad literal/length code";
      return false;
    }
    if (sym < 256) {
      out.push_back(static_cast<uint8_t>(sym));
      continue;
    }
    if (sym == 256) return true;
    sym -= 257;
    if (sym >= 29) {
      error = "bad length symbol";
      return false;
    }
    const size_t len = kLengthBase[sym] + static_cast<size_t>(in.need(kLengthExtra[sym]));
    const int dsym = huffman_decode(in, dist);
    if (dsym < 0 || dsym >= 30) {
      error = "bad distance code";
      return false;
    }
    const size_t d = kDistBase[dsym] + static_cast<size_t>(in.need(kDistExtra[dsym]));
    if (in.overrun || d > out.size()) {
      error = "distance beyond the start of the data";
      return false;
    }
    const size_t from = out.size() - d;
    for (size_t k = 0; k < len; ++k) out.push_back(out[from + k]);
  }
}

// The code lengths of a dynamic block, then its codes.
bool inflate_dynamic(BitReader &in, std::vector<uint8_t> &out, std::string &error) {
  static const uint8_t order[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
  const int nlen = in.need(5) + 257, ndist = in.need(5) + 1, ncode = in.need(4) + 4;
  if (in.overrun || nlen > 286 || ndist > 30) {
    error = "bad dynamic block header";
    return false;
  }
  uint8_t lengths[320] = {};
  for (int i = 0; i < ncode; ++i) lengths[order[i]] = static_cast<uint8_t>(in.need(3));
  Huffman lencode;
  if (!huffman_build(lencode, lengths, 19)) {
    error = "bad code-length code";
    return false;
  }
  std::memset(lengths, 0, sizeof lengths);
  int index = 0;
  while (index < nlen + ndist) {
    const int sym = huffman_decode(in, lencode);
    if (sym < 0) {
      error = "bad code-length symbol";
      return false;
    }
    if (sym < 16) {
      lengths[index++] = static_cast<uint8_t>(sym);
      continue;
    }
    uint8_t value = 0;
    int repeat;
    if (sym == 16) {
      if (index == 0) {
        error = "repeat with no previous length";
        return false;
      }
      value = lengths[index - 1];
      repeat = 3 + in.need(2);
    } else if (sym == 17) {
      repeat = 3 + in.need(3);
    } else {
      repeat = 11 + in.need(7);
    }
    if (index + repeat > nlen + ndist) {
      error = "too many code lengths";
      return false;
    }
    while (repeat--) lengths[index++] = value;
  }
  if (lengths[256] == 0) {
    error = "no end-of-block code";
    return false;
  }
  Huffman lit, dist;
  if (!huffman_build(lit, lengths, nlen) || !huffman_build(dist, lengths + nlen, ndist)) {
    error = "bad literal or distance code lengths";
    return false;
  }
  return inflate_codes(in, lit, dist, out, error);
}

bool inflate_fixed(BitReader &in, std::vector<uint8_t> &out, std::string &error) {
  static Huffman lit, dist;
  static bool built = false;
  if (!built) {
    uint8_t lengths[288];
    for (int s = 0; s < 288; ++s) lengths[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
    huffman_build(lit, lengths, 288);
    for (int s = 0; s < 30; ++s) lengths[s] = 5;
    huffman_build(dist, lengths, 30);
    built = true;
  }
  return inflate_codes(in, lit, dist, out, error);
}

// Inflates a whole deflate stream.
bool inflate(const uint8_t *data, size_t size, std::vector<uint8_t> &out, std::string &error) {
  BitReader in = {data, size, 0, 0, 0, false};
  for (;;) {
    const int last = in.need(1);
    const int type = in.need(2);
    if (in.overrun) {
      error = "deflate stream ends early";
      return false;
    }
    if (type == 0) {
      in.bits = 0;  // a stored block starts at a byte boundary
      in.count = 0;
      if (in.pos + 4 > in.size) {
        error = "stored block header cut off";
        return false;
      }
      const size_t len = data[in.pos] | data[in.pos + 1] << 8;
      const size_t nlen = data[in.pos + 2] | data[in.pos + 3] << 8;
      in.pos += 4;
      if (len != (~nlen & 0xFFFF) || in.pos + len > in.size) {
        error = "bad stored block";
        return false;
      }
      out.insert(out.end(), data + in.pos, data + in.pos + len);
      in.pos += len;
    } else if (type == 1) {
      if (!inflate_fixed(in, out, error)) return false;
    } else if (type == 2) {
      if (!inflate_dynamic(in, out, error)) return false;
    } else {
      error = "bad block type";
      return false;
    }
    if (last) return true;
  }
}

// ---------------------------------------------------------------------------------------
// Checksums of the PNG format: CRC-32 of each chunk, Adler-32 of the zlib stream.

uint32_t crc32(const uint8_t *p, size_t n, uint32_t crc = 0) {
  static uint32_t table[256];
  static bool built = false;
  if (!built) {
    for (uint32_t i = 0; i < 256; ++i) {
      uint32_t c = i;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      table[i] = c;
    }
    built = true;
  }
  crc = ~crc;
  for (size_t i = 0; i < n; ++i) crc = table[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

uint32_t adler32(const uint8_t *p, size_t n) {
  uint32_t a = 1, b = 0;
  for (size_t i = 0; i < n; ++i) {
    a = (a + p[i]) % 65521u;
    b = (b + a) % 65521u;
  }
  return b << 16 | a;
}

uint32_t be32(const uint8_t *p) {
  return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 | static_cast<uint32_t>(p[2]) << 8 | p[3];
}

void put32(std::vector<uint8_t> &out, uint32_t v) {
  for (int s = 24; s >= 0; s -= 8) out.push_back(static_cast<uint8_t>(v >> s));
}

void put_chunk(std::vector<uint8_t> &out, const char type[5], const uint8_t *data, size_t n) {
  put32(out, static_cast<uint32_t>(n));
  const size_t start = out.size();
  out.insert(out.end(), type, type + 4);
  out.insert(out.end(), data, data + n);
  put32(out, crc32(&out[start], n + 4));
}

const uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

// The Paeth predictor of PNG filter type 4.
uint8_t paeth(int a, int b, int c) {
  const int p = a + b - c;
  const int pa = p > a ? p - a : a - p, pb = p > b ? p - b : b - p, pc = p > c ? p - c : c - p;
  if (pa <= pb && pa <= pc) return static_cast<uint8_t>(a);
  return static_cast<uint8_t>(pb <= pc ? b : c);
}

}  // namespace

bool png_decode(const uint8_t *data, size_t size, RgbImage &out, std::string &error) {
  if (size < 8 || std::memcmp(data, kSignature, 8) != 0) {
    error = "not a PNG file";
    return false;
  }
  size_t pos = 8;
  uint32_t width = 0, height = 0;
  int channels = 0;
  bool header = false, ended = false;
  std::vector<uint8_t> z;
  while (pos + 12 <= size && !ended) {
    const uint32_t len = be32(data + pos);
    if (len > size - pos - 12) {
      error = "chunk runs past the end of the file";
      return false;
    }
    const uint8_t *type = data + pos + 4;
    const uint8_t *body = data + pos + 8;
    if (be32(body + len) != crc32(type, len + 4)) {
      error = "chunk CRC mismatch";
      return false;
    }
    if (!std::memcmp(type, "IHDR", 4)) {
      if (len != 13) {
        error = "bad IHDR";
        return false;
      }
      width = be32(body);
      height = be32(body + 4);
      const int depth = body[8], colour = body[9], interlace = body[12];
      channels = colour == 0 ? 1 : colour == 2 ? 3 : colour == 4 ? 2 : colour == 6 ? 4 : 0;
      if (depth != 8 || !channels || interlace != 0 || !width || !height || width > 16384 || height > 16384) {
        error = "unsupported PNG (needs 8-bit grey or RGB, with or without alpha, not interlaced)";
        return false;
      }
      header = true;
    } else if (!std::memcmp(type, "IDAT", 4)) {
      z.insert(z.end(), body, body + len);
    } else if (!std::memcmp(type, "IEND", 4)) {
      ended = true;
    }
    pos += 12 + len;
  }
  if (!header || !ended) {
    error = header ? "no IEND chunk" : "no IHDR chunk";
    return false;
  }
  if (z.size() < 6 || (z[0] & 0x0F) != 8 || ((z[0] << 8) | z[1]) % 31 != 0 || (z[1] & 0x20)) {
    error = "bad zlib header";
    return false;
  }
  std::vector<uint8_t> raw;
  const size_t stride = static_cast<size_t>(width) * channels;
  raw.reserve((stride + 1) * height);
  if (!inflate(z.data() + 2, z.size() - 2, raw, error)) return false;
  if (raw.size() != (stride + 1) * height) {
    error = "pixel data of the wrong size";
    return false;
  }
  if (adler32(raw.data(), raw.size()) != be32(z.data() + z.size() - 4)) {
    error = "zlib checksum mismatch";
    return false;
  }
  // Undo the filters, row by row, in place.
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t *row = &raw[y * (stride + 1)];
    const int filter = row[0];
    uint8_t *cur = row + 1;
    const uint8_t *prev = y ? cur - (stride + 1) : nullptr;
    for (size_t i = 0; i < stride; ++i) {
      const int a = i >= static_cast<size_t>(channels) ? cur[i - channels] : 0;
      const int b = prev ? prev[i] : 0;
      const int c = prev && i >= static_cast<size_t>(channels) ? prev[i - channels] : 0;
      switch (filter) {
        case 0: break;
        case 1: cur[i] = static_cast<uint8_t>(cur[i] + a); break;
        case 2: cur[i] = static_cast<uint8_t>(cur[i] + b); break;
        case 3: cur[i] = static_cast<uint8_t>(cur[i] + ((a + b) >> 1)); break;
        case 4: cur[i] = static_cast<uint8_t>(cur[i] + paeth(a, b, c)); break;
        default: error = "bad filter type"; return false;
      }
    }
  }
  out.width = static_cast<int>(width);
  out.height = static_cast<int>(height);
  out.rgb.resize(static_cast<size_t>(width) * height * 3);
  for (uint32_t y = 0; y < height; ++y) {
    const uint8_t *src = &raw[y * (stride + 1) + 1];
    uint8_t *dst = &out.rgb[static_cast<size_t>(y) * width * 3];
    for (uint32_t x = 0; x < width; ++x, src += channels, dst += 3) {
      if (channels <= 2) {
        dst[0] = dst[1] = dst[2] = src[0];
      } else {
        dst[0] = src[0];
        dst[1] = src[1];
        dst[2] = src[2];
      }
    }
  }
  return true;
}

void png_encode_stored(const RgbImage &image, std::vector<uint8_t> &out) {
  out.assign(kSignature, kSignature + 8);
  uint8_t ihdr[13];
  const uint32_t w = static_cast<uint32_t>(image.width), h = static_cast<uint32_t>(image.height);
  for (int k = 0; k < 4; ++k) {
    ihdr[k] = static_cast<uint8_t>(w >> (24 - 8 * k));
    ihdr[4 + k] = static_cast<uint8_t>(h >> (24 - 8 * k));
  }
  ihdr[8] = 8;   // bits per sample
  ihdr[9] = 2;   // RGB
  ihdr[10] = 0;  // deflate
  ihdr[11] = 0;  // adaptive filters (all rows use none)
  ihdr[12] = 0;  // not interlaced
  put_chunk(out, "IHDR", ihdr, sizeof ihdr);

  std::vector<uint8_t> raw;
  const size_t stride = static_cast<size_t>(w) * 3;
  raw.reserve((stride + 1) * h);
  for (uint32_t y = 0; y < h; ++y) {
    raw.push_back(0);
    raw.insert(raw.end(), image.rgb.begin() + y * stride, image.rgb.begin() + (y + 1) * stride);
  }
  std::vector<uint8_t> z = {0x78, 0x01};
  size_t pos = 0;
  do {
    const size_t n = raw.size() - pos < 65535 ? raw.size() - pos : 65535;
    z.push_back(pos + n == raw.size() ? 1 : 0);
    z.push_back(static_cast<uint8_t>(n));
    z.push_back(static_cast<uint8_t>(n >> 8));
    z.push_back(static_cast<uint8_t>(~n));
    z.push_back(static_cast<uint8_t>(~n >> 8));
    z.insert(z.end(), raw.begin() + pos, raw.begin() + pos + n);
    pos += n;
  } while (pos < raw.size());
  put32(z, adler32(raw.data(), raw.size()));
  put_chunk(out, "IDAT", z.data(), z.size());
  put_chunk(out, "IEND", nullptr, 0);
}

bool read_file(const std::string &path, std::vector<uint8_t> &out) {
  FILE *f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  out.clear();
  uint8_t buffer[65536];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) out.insert(out.end(), buffer, buffer + n);
  const bool ok = !std::ferror(f);
  std::fclose(f);
  return ok;
}

}  // namespace zvgl_test
