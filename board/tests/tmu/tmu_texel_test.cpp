// Texel formats: expansion to 8-bit channels, NCC decoding from the packed table, palettes.
#include "tmu/tmu.h"

#include <gtest/gtest.h>

using namespace zvb;

namespace {

struct TexelCase {
  int format;
  uint32_t value;
  uint32_t argb;
};

// Hand-expanded values: bit replication of every field width, alpha rules of each format.
const TexelCase kTexelCases[] = {
    {GR_TEXFMT_ALPHA_8, 0x5A, 0x5A5A5A5A},
    {GR_TEXFMT_INTENSITY_8, 0x5A, 0xFF5A5A5A},
    {GR_TEXFMT_ALPHA_INTENSITY_44, 0x3C, 0x33CCCCCC},
    {GR_TEXFMT_ARGB_8332, 0x80E3, 0x80FF00FF},
    {GR_TEXFMT_RGB_565, 0xF800, 0xFFFF0000},
    {GR_TEXFMT_RGB_565, 0x07E0, 0xFF00FF00},
    {GR_TEXFMT_RGB_565, 0x8410, 0xFF848284},        // 10000 100000 10000
    {GR_TEXFMT_ARGB_1555, 0x8000, 0xFF000000},
    {GR_TEXFMT_ARGB_1555, 0x7C1F, 0x00FF00FF},
    {GR_TEXFMT_ARGB_1555, 0x4210, 0x00848484},      // 10000 in each field
    {GR_TEXFMT_ARGB_4444, 0x1E5A, 0x11EE55AA},
    {GR_TEXFMT_ALPHA_INTENSITY_88, 0x40C8, 0x40C8C8C8},
};

}  // namespace

TEST(TmuTexel, ExpandsEveryDirectFormatByBitReplication) {
  // 0xE3 = 111 000 11: R 7 -> 0xFF, G 0 -> 0, B 3 -> 0xFF.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_RGB_332, 0xE3, nullptr, nullptr), 0xFFFF00FFu);
  // 0x49 = 010 010 01: 3-bit 2 -> 01001001 = 0x49, 2-bit 1 -> 0x55.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_RGB_332, 0x49, nullptr, nullptr), 0xFF494955u);
  for (const TexelCase &c : kTexelCases) {
    EXPECT_EQ(tmu_decode_texel(c.format, c.value, nullptr, nullptr), c.argb)
        << "format " << c.format << " value " << std::hex << c.value;
  }
}

// The NCC table below has Y[i] = 16 i, I and Q vectors with negative components, and is packed as
// the board receives it.
static void make_ncc(uint32_t packed[12]) {
  uint8_t y[16];
  for (int i = 0; i < 16; ++i) y[i] = uint8_t(i * 16);
  for (int k = 0; k < 4; ++k)
    packed[k] = y[4 * k] | y[4 * k + 1] << 8 | y[4 * k + 2] << 16 | uint32_t(y[4 * k + 3]) << 24;
  const int iv[4][3] = {{0, 0, 0}, {40, -20, -256}, {-100, 255, 10}, {5, 5, 5}};
  const int qv[4][3] = {{0, 0, 0}, {-1, 1, -1}, {200, -200, 0}, {-30, 0, 30}};
  for (int k = 0; k < 4; ++k) {
    packed[4 + k] = (uint32_t(iv[k][0]) & 0x1FF) << 18 | (uint32_t(iv[k][1]) & 0x1FF) << 9 |
                    (uint32_t(iv[k][2]) & 0x1FF);
    packed[8 + k] = (uint32_t(qv[k][0]) & 0x1FF) << 18 | (uint32_t(qv[k][1]) & 0x1FF) << 9 |
                    (uint32_t(qv[k][2]) & 0x1FF);
  }
}

TEST(TmuTexel, DecodesNccFromThePackedTableWithSignedVectorsAndClamping) {
  uint32_t ncc[12];
  make_ncc(ncc);
  // Y 8 (128), I 1 (40, -20, -256), Q 2 (200, -200, 0): R 368 -> 255, G -92 -> 0, B -128 -> 0.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_YIQ_422, 0x86, ncc, nullptr), 0xFFFF0000u);
  // Y 3 (48), I 2 (-100, 255, 10), Q 1 (-1, 1, -1): R -53 -> 0, G 304 -> 255, B 57.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_YIQ_422, 0x39, ncc, nullptr), 0xFF00FF39u);
  // Y 10 (160), I 3 (5, 5, 5), Q 3 (-30, 0, 30): 135, 165, 195.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_YIQ_422, 0xAF, ncc, nullptr), 0xFF87A5C3u);
  // AYIQ takes alpha from the high byte, the same colour from the low byte.
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_AYIQ_8422, 0x7FAF, ncc, nullptr), 0x7F87A5C3u);
}

TEST(TmuTexel, LooksUpPaletteColourWithAlphaFromTheFormat) {
  uint32_t pal[256] = {};
  pal[7] = 0xAB123456;  // the top byte is not part of the colour
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_P_8, 7, nullptr, pal), 0xFF123456u);
  EXPECT_EQ(tmu_decode_texel(GR_TEXFMT_AP_88, 0x3007, nullptr, pal), 0x30123456u);
}

// The sampler decodes through two 256-entry halves; every value of every format must decode as the
// reference does, with tables that make the halves interact (NCC, palette).
TEST(TmuTexel, DecodingTableMatchesTheReferenceForEveryValueOfEveryFormat) {
  uint32_t ncc[12], pal[256];
  make_ncc(ncc);
  for (int i = 0; i < 256; ++i) pal[i] = uint32_t(i * 0x010307) ^ 0xFF5A3C00u;
  for (int format = 0; format <= GR_TEXFMT_AP_88; ++format) {
    if (!tmu_format_valid(format)) continue;
    uint32_t lut[512];
    tmu_build_lut(lut, format, ncc, pal);
    uint32_t limit = tmu_format_bytes(format) == 2 ? 65536 : 256;
    int bad = 0;
    for (uint32_t v = 0; v < limit && bad < 3; ++v) {
      uint32_t got = lut[v & 255] | lut[256 + (v >> 8)];
      uint32_t want = tmu_decode_texel(format, v, ncc, pal);
      if (got != want) {
        ++bad;
        ADD_FAILURE() << "format " << format << " value " << std::hex << v << ": " << got
                      << " != " << want;
      }
    }
  }
}

TEST(TmuTexel, ReservedFormatsAreRefused) {
  for (int format : {GR_TEXFMT_RSVD0, GR_TEXFMT_RSVD1, GR_TEXFMT_RSVD2, -1, 16})
    EXPECT_FALSE(tmu_format_valid(format)) << format;
  EXPECT_EQ(tmu_format_bytes(GR_TEXFMT_P_8), 1);
  EXPECT_EQ(tmu_format_bytes(GR_TEXFMT_ARGB_8332), 2);
}
