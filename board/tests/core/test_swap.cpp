// Swap queue: buffer rotation, pending counts, the simulated retrace, hung and slow swaps.
#include "board_test.h"

namespace {

// Writes one marker pixel at (0, 0) of the back buffer.
void mark_back(uint16_t value) {
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 0, 0, GR_LFB_SRC_FMT_565, 1, 1, 2, &value), FXTRUE);
}

uint16_t read_pixel(int buffer) {
  uint16_t v = 0;
  EXPECT_EQ(grLfbReadRegion(buffer, 0, 0, 1, 1, 2, &v), FXTRUE);
  return v;
}

}  // namespace

TEST_F(BoardTest, DoubleAndTripleBufferRotation) {
  for (int sync = 0; sync < 2; ++sync) {
    for (int buffers = 2; buffers <= 3; ++buffers) {
      zvbSetOption("ZVGL_BOARD_SYNC", sync ? "1" : "0");
      init();
      ASSERT_TRUE(open(buffers, 0));
      ZvbBuffers b;
      for (uint16_t frame = 1; frame <= 7; ++frame) {
        mark_back(frame);
        grBufferSwap(0);
        ASSERT_TRUE(eventually([] { return grBufferNumPending() == 0; }));
        EXPECT_EQ(read_pixel(GR_BUFFER_FRONTBUFFER), frame) << "buffers " << buffers << " sync " << sync;
        ASSERT_EQ(zvbGetBuffers(0, &b), 0);
        EXPECT_EQ(b.colour[b.displayed][0], frame);
        EXPECT_NE(b.back, b.displayed);
        EXPECT_EQ(b.swaps, frame);
      }
      // With three buffers, the back buffer after a swap is the one shown two swaps ago.
      EXPECT_EQ(read_pixel(GR_BUFFER_BACKBUFFER), buffers == 3 ? 5 : 6);
      grGlideShutdown();
    }
  }
}

TEST_F(BoardTest, SwapsWaitForTheRetrace) {
  init();
  // 60 Hz: an interval of 6 puts each swap at least 100 ms after the previous one.
  ASSERT_TRUE(open(3, 0));
  const uint64_t start = zvgl::clock_ns();
  grBufferSwap(6);
  grBufferSwap(6);
  EXPECT_EQ(grBufferNumPending(), 2) << "neither swap can have been shown yet";
  int lowest = 2;
  ASSERT_TRUE(eventually([&] {
    const int n = grBufferNumPending();
    EXPECT_LE(n, lowest) << "the pending count only falls";
    lowest = n;
    return n == 0;
  }));
  EXPECT_GE(zvgl::clock_ns() - start, 180000000u) << "two swaps take at least 12 retraces";
}

TEST_F(BoardTest, HungSwapNeverCompletesAndCloseStillReturns) {
  init();
  ASSERT_TRUE(open());
  zvbFaultSwapDelay(0, -1);
  mark_back(0x1234);
  grBufferSwap(0);
  sleep_ms(100);
  EXPECT_EQ(grBufferNumPending(), 1);
  sleep_ms(100);
  EXPECT_EQ(grBufferNumPending(), 1);
  grSstWinClose();
  EXPECT_EQ(grSstScreenWidth(), 0u);
  zvbFaultSwapDelay(0, 0);
  ASSERT_TRUE(open());
  grBufferSwap(0);
  EXPECT_TRUE(eventually([] { return grBufferNumPending() == 0; }));
}

TEST_F(BoardTest, SlowSwapCompletesAfterItsTime) {
  init();
  ASSERT_TRUE(open());
  zvbFaultSwapDelay(0, 150);
  mark_back(0x4321);
  const uint64_t start = zvgl::clock_ns();
  grBufferSwap(0);
  EXPECT_EQ(grBufferNumPending(), 1);
  ASSERT_TRUE(eventually([] { return grBufferNumPending() == 0; }));
  EXPECT_GE(zvgl::clock_ns() - start, 140000000u);
  EXPECT_EQ(read_pixel(GR_BUFFER_FRONTBUFFER), 0x4321);
}

TEST_F(BoardTest, AtMostSevenSwapsPending) {
  init();
  ASSERT_TRUE(open(3, 0));
  zvbFaultSwapDelay(0, 40);
  int highest = 0;
  for (int i = 0; i < 12; ++i) {
    grBufferSwap(0);
    const int n = grBufferNumPending();
    if (n > highest) highest = n;
    EXPECT_LE(n, 7);
  }
  EXPECT_GE(highest, 2);
  ASSERT_TRUE(eventually([] { return grBufferNumPending() == 0; }, 5.0));
  ZvbBuffers b;
  ASSERT_EQ(zvbGetBuffers(0, &b), 0);
  EXPECT_EQ(b.swaps, 12u);
}

TEST_F(BoardTest, SwapIntervalOverride) {
  zvbSetOption("FX_GLIDE_SWAPINTERVAL", "0");
  init();
  ASSERT_TRUE(open());
  const uint64_t start = zvgl::clock_ns();
  for (int i = 0; i < 10; ++i) grBufferSwap(30);  // half a second each at 60 Hz without the override
  ASSERT_TRUE(eventually([] { return grBufferNumPending() == 0; }));
  EXPECT_LT(zvgl::clock_ns() - start, 2000000000u);
}
