// Texture memory: sizes of every aspect and level mask, addresses, downloads and their refusals.
#include "tmu_rig.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

using namespace zvb;
using zvb_test::TmuRig;
using zvb_test::chain_bytes;

namespace {

// Level dimensions by GR_LOD (rows) and aspect 8x1 .. 1x8 (columns), as published for the board.
const int kDims[9][7][2] = {
    {{256, 32}, {256, 64}, {256, 128}, {256, 256}, {128, 256}, {64, 256}, {32, 256}},
    {{128, 16}, {128, 32}, {128, 64}, {128, 128}, {64, 128}, {32, 128}, {16, 128}},
    {{64, 8}, {64, 16}, {64, 32}, {64, 64}, {32, 64}, {16, 64}, {8, 64}},
    {{32, 4}, {32, 8}, {32, 16}, {32, 32}, {16, 32}, {8, 32}, {4, 32}},
    {{16, 2}, {16, 4}, {16, 8}, {16, 16}, {8, 16}, {4, 16}, {2, 16}},
    {{8, 1}, {8, 2}, {8, 4}, {8, 8}, {4, 8}, {2, 8}, {1, 8}},
    {{4, 1}, {4, 1}, {4, 2}, {4, 4}, {2, 4}, {1, 4}, {1, 4}},
    {{2, 1}, {2, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 2}, {1, 2}},
    {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}},
};

}  // namespace

TEST(TmuMemory, LevelSizesFollowTheAspectTable) {
  for (int lod = 0; lod <= 8; ++lod)
    for (int a = 0; a <= 6; ++a) {
      int w = 0, h = 0;
      ASSERT_TRUE(tmu_level_size(lod, a, &w, &h));
      EXPECT_EQ(w, kDims[lod][a][0]) << lod << " " << a;
      EXPECT_EQ(h, kDims[lod][a][1]) << lod << " " << a;
    }
  int w, h;
  EXPECT_FALSE(tmu_level_size(9, 3, &w, &h));
  EXPECT_FALSE(tmu_level_size(0, 7, &w, &h));
}

TEST(TmuMemory, RequiredSizeOfEveryAspectRangeAndMask) {
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565), 174768u);
  // Even levels of a full 1x1 chain, 8-bit: 65536 + 4096 + 256 + 16 + 4, rounded up to 8.
  GrTexInfo even{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_P_8, nullptr};
  EXPECT_EQ(tmu_TexTextureMemRequired(GR_MIPMAPLEVELMASK_EVEN, &even), 69912u);
  // 8x1 levels of 8x1, 4x1, 2x1, 1x1 texels take 16, 8, 4 and 4 texels.
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_8, GR_ASPECT_8x1, GR_TEXFMT_RGB_332), 32u);
  for (int a = 0; a <= 6; ++a)
    for (int format : {GR_TEXFMT_INTENSITY_8, GR_TEXFMT_ARGB_4444})
      for (uint32_t mask = 1; mask <= 3; ++mask)
        for (int large = 0; large <= 8; ++large)
          for (int small = large; small <= 8; ++small) {
            uint32_t want = 0;
            for (int l = large; l <= small; ++l) {
              if (!(mask & (l % 2 ? 2u : 1u))) continue;
              int w = std::max(kDims[l][a][0], 2), h = std::max(kDims[l][a][1], 2);
              want += uint32_t(w * h * (format >= 8 ? 2 : 1));
            }
            want = (want + 7) / 8 * 8;
            GrTexInfo info{small, large, a, format, nullptr};
            ASSERT_EQ(tmu_TexTextureMemRequired(mask, &info), want)
                << "aspect " << a << " format " << format << " mask " << mask << " lods " << large
                << ".." << small;
          }
  // Aspects 1xN take the same room as Nx1.
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_64, GR_ASPECT_1x4, GR_TEXFMT_RGB_565),
            tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_64, GR_ASPECT_4x1, GR_TEXFMT_RGB_565));
}

TEST(TmuMemory, RequiredSizeIsZeroForDescriptionsOfNoTexture) {
  GrTexInfo info{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, nullptr};
  EXPECT_EQ(tmu_TexTextureMemRequired(0, &info), 0u);
  EXPECT_EQ(tmu_TexTextureMemRequired(4, &info), 0u);
  EXPECT_EQ(tmu_TexTextureMemRequired(3, nullptr), 0u);
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_256, GR_LOD_1, GR_ASPECT_1x1, GR_TEXFMT_RGB_565), 0u);
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_256, 7, GR_TEXFMT_RGB_565), 0u);
  EXPECT_EQ(tmu_TexCalcMemRequired(GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RSVD2), 0u);
  EXPECT_EQ(tmu_TexCalcMemRequired(9, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565), 0u);
}

TEST(TmuMemory, AddressRangeOfATmu) {
  TmuMemory mem;
  tmu_memory_init(mem, 4u << 20);
  EXPECT_EQ(tmu_TexMinAddress(mem), 0u);
  EXPECT_EQ(tmu_TexMaxAddress(mem), (4u << 20) - 8);
}

// A 256x256 RGB565 chain is 174768 bytes: it may end exactly at 2 MiB or start there, but not
// cross it; it may end exactly at the end of memory, not past it. Refusals write nothing.
TEST(TmuMemory, DownloadsStopAtTheTwoMegabyteBoundaryAndTheEndOfMemory) {
  TmuMemory mem;
  tmu_memory_init(mem, 4u << 20);
  std::vector<uint16_t> texels(chain_bytes(0, 8, GR_ASPECT_1x1, GR_TEXFMT_RGB_565) / 2, 0xFFFF);
  GrTexInfo info{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RGB_565, texels.data()};
  const uint32_t size = 174768, mib2 = 0x200000, end = 4u << 20;
  EXPECT_TRUE(tmu_TexDownloadMipMap(mem, mib2 - size, 3, &info));
  EXPECT_TRUE(tmu_TexDownloadMipMap(mem, mib2, 3, &info));
  EXPECT_TRUE(tmu_TexDownloadMipMap(mem, end - size, 3, &info));
  TmuMemory clean;
  tmu_memory_init(clean, 4u << 20);
  EXPECT_FALSE(tmu_TexDownloadMipMap(clean, mib2 - size + 8, 3, &info));
  EXPECT_FALSE(tmu_TexDownloadMipMap(clean, end - size + 8, 3, &info));
  EXPECT_FALSE(tmu_TexDownloadMipMap(clean, end, 3, &info));
  EXPECT_FALSE(tmu_TexDownloadMipMap(clean, 0xFFFFFFF8u, 3, &info));
  // One level across the boundary is refused as well; the level just below it is accepted.
  EXPECT_FALSE(tmu_TexDownloadMipMapLevel(clean, mib2 - 65536, GR_LOD_256, GR_LOD_256,
                                          GR_ASPECT_1x1, GR_TEXFMT_RGB_565, 3, texels.data()));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevelPartial(clean, mib2 - 512, GR_LOD_256, GR_LOD_256,
                                                 GR_ASPECT_1x1, GR_TEXFMT_RGB_565, 3,
                                                 texels.data(), 0, 1));
  EXPECT_TRUE(std::all_of(clean.bytes.begin(), clean.bytes.end(), [](uint8_t b) { return b == 0; }));
  EXPECT_TRUE(tmu_TexDownloadMipMapLevelPartial(clean, mib2 - 512, GR_LOD_256, GR_LOD_256,
                                                GR_ASPECT_1x1, GR_TEXFMT_RGB_565, 3,
                                                texels.data(), 0, 0));
  // A texture that does not fit in a small TMU at all.
  TmuMemory small;
  tmu_memory_init(small, 65536);
  EXPECT_FALSE(tmu_TexDownloadMipMap(small, 0, 3, &info));
  TmuState st;
  tmu_reset(st);
  EXPECT_FALSE(tmu_TexSource(st, small, 0, 3, &info));
  EXPECT_EQ(st.largeLod, GR_LOD_1);
}

TEST(TmuMemory, BadArgumentsAreRefusedWithoutWriting) {
  TmuMemory mem;
  tmu_memory_init(mem, 1u << 20);
  uint8_t texels[65536] = {1};
  GrTexInfo info{GR_LOD_1, GR_LOD_256, GR_ASPECT_1x1, GR_TEXFMT_RSVD0, texels};
  EXPECT_FALSE(tmu_TexDownloadMipMap(mem, 0, 3, &info));
  info.format = GR_TEXFMT_P_8;
  info.data = nullptr;
  EXPECT_FALSE(tmu_TexDownloadMipMap(mem, 0, 3, &info));
  info.data = texels;
  EXPECT_FALSE(tmu_TexDownloadMipMap(mem, 0, 0, &info));
  EXPECT_FALSE(tmu_TexDownloadMipMap(mem, 0, 3, nullptr));
  // thisLod larger than largeLod, LOD 9, aspect 7, rows outside the level, rows reversed.
  EXPECT_FALSE(tmu_TexDownloadMipMapLevel(mem, 0, GR_LOD_128, GR_LOD_64, 3, GR_TEXFMT_P_8, 3, texels));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevel(mem, 0, 9, 0, 3, GR_TEXFMT_P_8, 3, texels));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevel(mem, 0, 0, 0, 7, GR_TEXFMT_P_8, 3, texels));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevelPartial(mem, 0, 0, 0, 3, GR_TEXFMT_P_8, 3, texels, 0, 256));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevelPartial(mem, 0, 0, 0, 3, GR_TEXFMT_P_8, 3, texels, -1, 2));
  EXPECT_FALSE(tmu_TexDownloadMipMapLevelPartial(mem, 0, 0, 0, 3, GR_TEXFMT_P_8, 3, texels, 5, 4));
  EXPECT_TRUE(std::all_of(mem.bytes.begin(), mem.bytes.end(), [](uint8_t b) { return b == 0; }));
  // Tables: null data, unknown table, bad palette ranges.
  uint32_t pal[256] = {};
  EXPECT_FALSE(tmu_TexDownloadTable(mem, GR_TEXTABLE_NCC0, nullptr));
  EXPECT_FALSE(tmu_TexDownloadTable(mem, 3, pal));
  EXPECT_FALSE(tmu_TexDownloadTablePartial(mem, GR_TEXTABLE_PALETTE, pal, 10, 256));
  EXPECT_FALSE(tmu_TexDownloadTablePartial(mem, GR_TEXTABLE_PALETTE, pal, 10, 9));
}

TEST(TmuMemory, PartialPaletteDownloadChangesOnlyItsEntries) {
  TmuMemory mem;
  tmu_memory_init(mem, 1u << 16);
  uint32_t pal[256];
  for (int i = 0; i < 256; ++i) pal[i] = 0xFF000000u | uint32_t(i);
  ASSERT_TRUE(tmu_TexDownloadTable(mem, GR_TEXTABLE_PALETTE, pal));
  EXPECT_EQ(mem.palette[200], 200u);
  uint32_t part[256];
  for (int i = 0; i < 256; ++i) part[i] = 0x00ABCD00u | uint32_t(i);
  ASSERT_TRUE(tmu_TexDownloadTablePartial(mem, GR_TEXTABLE_PALETTE, part, 16, 31));
  EXPECT_EQ(mem.palette[15], 15u);
  EXPECT_EQ(mem.palette[16], 0x00ABCD10u);
  EXPECT_EQ(mem.palette[31], 0x00ABCD1Fu);
  EXPECT_EQ(mem.palette[32], 32u);
}

// Levels are laid out one after the other, and only the levels of the mask are stored: a chain
// downloaded with EVEN and bound with EVEN shows each even level's own texels.
TEST(TmuMemory, EvenAndOddChainsHoldTheirOwnLevels) {
  TmuRig rig;
  rig.numTmu = 1;
  std::vector<uint8_t> data(chain_bytes(0, 8, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8));
  size_t at = 0;
  for (int l = 0; l <= 8; ++l) {
    size_t n = size_t(256 >> l) * size_t(256 >> l);
    std::fill(data.begin() + long(at), data.begin() + long(at + n), uint8_t(10 + l));
    at += n;
  }
  for (uint32_t mask : {1u, 2u}) {
    ASSERT_TRUE(rig.load(0, 4096, mask, GR_LOD_256, GR_LOD_1, GR_ASPECT_1x1, GR_TEXFMT_INTENSITY_8,
                         data.data()));
    tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
    tmu_TexMipMapMode(rig.st[0], GR_MIPMAP_NEAREST, FXFALSE);
    for (int l = 0; l <= 8; ++l) {
      rig.gradient(0, float(1 << l));
      int held = (mask == 1u) == (l % 2 == 0) ? l : (l < 8 ? l + 1 : l - 1);
      EXPECT_EQ(rig.sample(100.0f, 100.0f) & 0xFF, uint32_t(10 + held)) << "mask " << mask << " lod " << l;
    }
  }
}

// Partial downloads write rows start..end of one level from data that begins at row start.
TEST(TmuMemory, PartialLevelDownloadWritesOnlyItsRows) {
  TmuRig rig;
  rig.numTmu = 1;
  std::vector<uint16_t> level(8 * 8, 0x1111);
  ASSERT_TRUE(rig.load(0, 0, 3, GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1, GR_TEXFMT_ARGB_4444, level.data()));
  tmu_TexCombineFunction(rig.st[0], GR_TEXTURECOMBINE_DECAL);
  const uint16_t rows[2 * 8] = {0x2222, 0x2222, 0x2222, 0x2222, 0x2222, 0x2222, 0x2222, 0x2222,
                                0x3333, 0x3333, 0x3333, 0x3333, 0x3333, 0x3333, 0x3333, 0x3333};
  ASSERT_TRUE(tmu_TexDownloadMipMapLevelPartial(rig.mem[0], 0, GR_LOD_8, GR_LOD_8, GR_ASPECT_1x1,
                                                GR_TEXFMT_ARGB_4444, 3, rows, 3, 4));
  // Texel rows are 32 units of t apart at GR_LOD_8.
  EXPECT_EQ(rig.sample(16, 2 * 32 + 16), 0x11111111u);
  EXPECT_EQ(rig.sample(16, 3 * 32 + 16), 0x22222222u);
  EXPECT_EQ(rig.sample(16, 4 * 32 + 16), 0x33333333u);
  EXPECT_EQ(rig.sample(16, 5 * 32 + 16), 0x11111111u);
}
