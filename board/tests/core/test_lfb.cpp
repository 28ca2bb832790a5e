// Linear frame buffer: region reads and writes (signed strides, clipping), locks in both
// origins and several write modes, the lock rules.
#include "board_test.h"

namespace {

constexpr int kW = 640, kH = 480;

GrLfbInfo_t lfb_info() {
  GrLfbInfo_t info;
  std::memset(&info, 0, sizeof info);
  info.size = sizeof info;
  return info;
}

// A 4 x 3 block of distinct pixels.
std::vector<uint16_t> block() {
  std::vector<uint16_t> v;
  for (int i = 0; i < 12; ++i) v.push_back(static_cast<uint16_t>(0x1111 * (i + 1) + i));
  return v;
}

}  // namespace

TEST_F(BoardTest, RegionReadWithPositiveAndNegativeStride) {
  init();
  ASSERT_TRUE(open());
  const std::vector<uint16_t> src = block();
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 100, 50, GR_LFB_SRC_FMT_565, 4, 3, 8, (void *)src.data()), FXTRUE);

  std::vector<uint16_t> down(12, 0xDEAD);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 100, 50, 4, 3, 8, down.data()), FXTRUE);
  EXPECT_EQ(down, src);

  // Bottom-up: the destination starts at its last row and the stride is negative.
  std::vector<uint16_t> up(12, 0xDEAD);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 100, 50, 4, 3, static_cast<FxU32>(-8), up.data() + 8), FXTRUE);
  for (int row = 0; row < 3; ++row)
    for (int x = 0; x < 4; ++x) EXPECT_EQ(up[(2 - row) * 4 + x], src[row * 4 + x]);

  // A destination stride wider than the row leaves the gap alone.
  std::vector<uint16_t> wide(3 * 6, 0xDEAD);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 100, 50, 4, 3, 12, wide.data()), FXTRUE);
  EXPECT_EQ(wide[4], 0xDEAD);
  EXPECT_EQ(wide[6], src[4]);
}

TEST_F(BoardTest, RegionsAreClippedToTheScreen) {
  init();
  ASSERT_TRUE(open());
  const std::vector<uint16_t> src = block();
  // Only the two columns and two rows on the screen are stored.
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, kW - 2, kH - 2, GR_LFB_SRC_FMT_565, 4, 3, 8, (void *)src.data()), FXTRUE);
  std::vector<uint16_t> out(12, 0xDEAD);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, kW - 2, kH - 2, 4, 3, 8, out.data()), FXTRUE);
  const std::vector<uint16_t> expect = {src[0], src[1], 0, 0, src[4], src[5], 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(out, expect) << "pixels off the screen read as 0";
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 0xFFFFFFF0u, 0, 4, 1, 8, out.data()), FXTRUE);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 5000, 5000, GR_LFB_SRC_FMT_565, 4, 3, 8, (void *)src.data()), FXTRUE);
}

TEST_F(BoardTest, RegionFormats) {
  init();
  ASSERT_TRUE(open());
  const uint32_t argb[2] = {0xFF10FF80u, 0x00FFFFFFu};
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 0, 0, GR_LFB_SRC_FMT_8888, 2, 1, 8, (void *)argb), FXTRUE);
  const uint16_t x555 = (31 << 10) | (16 << 5) | 1;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 2, 0, GR_LFB_SRC_FMT_555, 1, 1, 2, (void *)&x555), FXTRUE);
  const uint32_t withDepth = 0xABCD0000u | 0x001F;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 3, 0, GR_LFB_SRC_FMT_565_DEPTH, 1, 1, 4, (void *)&withDepth), FXTRUE);
  const uint16_t z = 0x7777;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_AUXBUFFER, 4, 0, GR_LFB_SRC_FMT_ZA16, 1, 1, 2, (void *)&z), FXTRUE);
  uint16_t colour[4], aux[5];
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 0, 0, 4, 1, 8, colour), FXTRUE);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_AUXBUFFER, 0, 0, 5, 1, 10, aux), FXTRUE);
  EXPECT_EQ(colour[0], (0x10 >> 3) << 11 | (0xFF >> 2) << 5 | (0x80 >> 3));
  EXPECT_EQ(colour[1], 0xFFFF);
  EXPECT_EQ(colour[2], (31 << 11) | (33 << 5) | 1) << "5-bit green widened to 6 bits";
  EXPECT_EQ(colour[3], 0x001F);
  EXPECT_EQ(aux[3], 0xABCD);
  EXPECT_EQ(aux[4], 0x7777);
  EXPECT_EQ(aux[0], 0) << "formats without depth leave the aux buffer alone";
  // Refused: colour format into the aux buffer, depth into a colour buffer, RLE, null data.
  EXPECT_EQ(grLfbWriteRegion(GR_BUFFER_AUXBUFFER, 0, 0, GR_LFB_SRC_FMT_565, 1, 1, 2, (void *)&z), FXFALSE);
  EXPECT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 0, 0, GR_LFB_SRC_FMT_ZA16, 1, 1, 2, (void *)&z), FXFALSE);
  EXPECT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 0, 0, GR_LFB_SRC_FMT_RLE16, 1, 1, 2, (void *)&z), FXFALSE);
  EXPECT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 0, 0, GR_LFB_SRC_FMT_565, 1, 1, 2, nullptr), FXFALSE);
  EXPECT_EQ(grLfbReadRegion(GR_BUFFER_TRIPLEBUFFER, 0, 0, 1, 1, 2, aux), FXFALSE);
}

TEST_F(BoardTest, ReadLockInBothOrigins) {
  init();
  ASSERT_TRUE(open());
  const uint16_t top = 0x1234, bottom = 0x4321;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 7, 0, GR_LFB_SRC_FMT_565, 1, 1, 2, (void *)&top), FXTRUE);
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 7, kH - 1, GR_LFB_SRC_FMT_565, 1, 1, 2, (void *)&bottom), FXTRUE);
  for (int origin : {GR_ORIGIN_UPPER_LEFT, GR_ORIGIN_LOWER_LEFT}) {
    GrLfbInfo_t info = lfb_info();
    ASSERT_EQ(grLfbLock(GR_LFB_READ_ONLY, GR_BUFFER_BACKBUFFER, GR_LFBWRITEMODE_ANY, origin, FXFALSE, &info), FXTRUE);
    ASSERT_GE(info.strideInBytes, static_cast<FxU32>(kW * 2));
    EXPECT_EQ(info.origin, origin);
    const uint8_t *base = static_cast<const uint8_t *>(info.lfbPtr);
    auto at = [&](int x, int y) {
      uint16_t v;
      std::memcpy(&v, base + static_cast<size_t>(y) * info.strideInBytes + 2 * static_cast<size_t>(x), 2);
      return v;
    };
    EXPECT_EQ(at(7, 0), origin == GR_ORIGIN_UPPER_LEFT ? top : bottom);
    EXPECT_EQ(at(7, kH - 1), origin == GR_ORIGIN_UPPER_LEFT ? bottom : top);
    EXPECT_EQ(grLfbLock(GR_LFB_READ_ONLY, GR_BUFFER_FRONTBUFFER, GR_LFBWRITEMODE_ANY, origin, FXFALSE, &info), FXFALSE)
        << "one read lock at a time";
    EXPECT_EQ(grLfbUnlock(GR_LFB_READ_ONLY, GR_BUFFER_FRONTBUFFER), FXFALSE) << "not the locked buffer";
    EXPECT_EQ(grLfbUnlock(GR_LFB_READ_ONLY | GR_LFB_NOIDLE, GR_BUFFER_BACKBUFFER), FXTRUE);
    EXPECT_EQ(grLfbUnlock(GR_LFB_READ_ONLY, GR_BUFFER_BACKBUFFER), FXFALSE) << "already unlocked";
  }
}

TEST_F(BoardTest, WriteLockStoresOnlyWrittenPixels) {
  init();
  ASSERT_TRUE(open());
  const uint16_t keep = 0xAAAA;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 1, kH - 1, GR_LFB_SRC_FMT_565, 1, 1, 2, (void *)&keep), FXTRUE);
  GrLfbInfo_t info = lfb_info();
  ASSERT_EQ(grLfbLock(GR_LFB_WRITE_ONLY, GR_BUFFER_BACKBUFFER, GR_LFBWRITEMODE_8888, GR_ORIGIN_LOWER_LEFT, FXFALSE, &info),
            FXTRUE);
  EXPECT_EQ(info.writeMode, GR_LFBWRITEMODE_8888);
  GrLfbInfo_t second = lfb_info();
  EXPECT_EQ(grLfbLock(GR_LFB_WRITE_ONLY, GR_BUFFER_FRONTBUFFER, GR_LFBWRITEMODE_565, GR_ORIGIN_UPPER_LEFT, FXFALSE, &second),
            FXFALSE) << "one write lock at a time";
  uint8_t *base = static_cast<uint8_t *>(info.lfbPtr);
  const uint32_t red = 0xFFFF0000u;
  std::memcpy(base + 0 * info.strideInBytes + 4 * 0, &red, 4);  // bottom-left corner
  std::memcpy(base + 2 * info.strideInBytes + 4 * 3, &red, 4);  // (3, 2) above the bottom
  EXPECT_EQ(grLfbUnlock(GR_LFB_WRITE_ONLY, GR_BUFFER_BACKBUFFER), FXTRUE);
  uint16_t row[4];
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 0, kH - 1, 4, 1, 8, row), FXTRUE);
  EXPECT_EQ(row[0], 0xF800);
  EXPECT_EQ(row[1], keep) << "pixels the lock did not write stay";
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 3, kH - 3, 1, 1, 2, row), FXTRUE);
  EXPECT_EQ(row[0], 0xF800);
}

TEST_F(BoardTest, WriteLockModesAndBuffers) {
  init();
  ASSERT_TRUE(open(2, 0));
  GrLfbInfo_t info = lfb_info();
  auto lock = [&](int buffer, int mode) {
    info = lfb_info();
    return grLfbLock(GR_LFB_WRITE_ONLY, buffer, mode, GR_ORIGIN_UPPER_LEFT, FXFALSE, &info);
  };
  EXPECT_EQ(lock(GR_BUFFER_BACKBUFFER, GR_LFBWRITEMODE_ZA16), FXFALSE);
  EXPECT_EQ(lock(GR_BUFFER_BACKBUFFER, GR_LFBWRITEMODE_RESERVED1), FXFALSE);
  EXPECT_EQ(lock(GR_BUFFER_BACKBUFFER, 0x10), FXFALSE);
  EXPECT_EQ(lock(GR_BUFFER_AUXBUFFER, GR_LFBWRITEMODE_ZA16), FXFALSE) << "no aux buffer opened";
  EXPECT_EQ(lock(GR_BUFFER_DEPTHBUFFER, GR_LFBWRITEMODE_565), FXFALSE);
  ASSERT_EQ(lock(GR_BUFFER_FRONTBUFFER, GR_LFBWRITEMODE_ANY), FXTRUE);
  EXPECT_EQ(info.writeMode, GR_LFBWRITEMODE_565);
  const uint16_t v = 0x0F0F;
  std::memcpy(static_cast<uint8_t *>(info.lfbPtr) + info.strideInBytes * 9 + 2 * 8, &v, 2);
  EXPECT_EQ(grLfbUnlock(GR_LFB_READ_ONLY, GR_BUFFER_FRONTBUFFER), FXFALSE) << "the lock is a write lock";
  EXPECT_EQ(grLfbUnlock(GR_LFB_WRITE_ONLY | GR_LFB_NOIDLE, GR_BUFFER_FRONTBUFFER), FXTRUE);
  uint16_t out = 0;
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_FRONTBUFFER, 8, 9, 1, 1, 2, &out), FXTRUE);
  EXPECT_EQ(out, v);
  grSstWinClose();
  ASSERT_TRUE(open(2, 1));
  ASSERT_EQ(lock(GR_BUFFER_AUXBUFFER, GR_LFBWRITEMODE_ANY), FXTRUE);
  EXPECT_EQ(info.writeMode, GR_LFBWRITEMODE_ZA16);
  std::memcpy(static_cast<uint8_t *>(info.lfbPtr) + info.strideInBytes * 2 + 2 * 3, &v, 2);
  EXPECT_EQ(grLfbUnlock(GR_LFB_WRITE_ONLY, GR_BUFFER_AUXBUFFER), FXTRUE);
  ZvbBuffers b;
  ASSERT_EQ(zvbGetBuffers(0, &b), 0);
  EXPECT_EQ(b.aux[2 * kW + 3], v);
}
