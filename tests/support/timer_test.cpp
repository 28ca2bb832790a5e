// The clock's epoch logic on narrow fake counters, and the real clock.
#include "support/sys/sys.h"
#include "support/timer/timer.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CounterEpochs, WrapForwardCountsOn) {
  GP_timer_counter counter;
  GP_timer_counter_start(&counter, 8, 1.0, 250);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 254), 4.0);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 5), 11.0);
  // Bits above the counter's width are ignored.
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 0x700 + 20), 26.0);
  for (int lap = 0; lap < 3; ++lap) {
    GP_timer_counter_advance(&counter, 148);
    GP_timer_counter_advance(&counter, 20);
  }
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 20), 26.0 + 3 * 256.0);
}

TEST(CounterEpochs, SmallStepBackIsTakenAsBackwards) {
  GP_timer_counter counter;
  GP_timer_counter_start(&counter, 8, 1000.0, 0);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 100), 0.1);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 99), 0.099);
  EXPECT_EQ(counter.epoch, -1);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 101), 0.101);
  // A jump just below the threshold (240 of 255) is a forward step.
  GP_timer_counter_start(&counter, 8, 1.0, 0);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 240), 240.0);
  EXPECT_DOUBLE_EQ(GP_timer_counter_advance(&counter, 239), 239.0);
}

TEST(CounterEpochs, SumCarryOfAWideCounterIsAnEpoch) {
  GP_timer_counter counter;
  GP_timer_counter_start(&counter, 64, 1.0, 0);
  uint64_t nearEnd = ~uint64_t(0) - 15;
  GP_timer_counter_advance(&counter, nearEnd >> 1);
  GP_timer_counter_advance(&counter, nearEnd);
  EXPECT_EQ(counter.epoch, 0);
  double t = GP_timer_counter_advance(&counter, 16);
  EXPECT_EQ(counter.epoch, 1);
  EXPECT_DOUBLE_EQ(t, 18446744073709551616.0 + 16.0);
}

TEST(Clock, NeverGoesDown) {
  GP_timer_reset();
  double previous = -1.0;
  for (int i = 0; i < 100000; ++i) {
    double now = 0.0;
    ASSERT_EQ(G_timer_inq_time(&now), 0);
    ASSERT_GE(now, previous);
    previous = now;
  }
  EXPECT_EQ(GP_timer_inq_kind(), 1);
  double resolution = 0.0;
  EXPECT_EQ(time_inq_resolution(&resolution), 0);
  EXPECT_GT(resolution, 0.0);
  EXPECT_LE(resolution, 1e9); // at least millisecond resolution
}

TEST(Clock, FallsBackToTheMillisecondCounter) {
  GP_timer_reset();
  GP_timer_skip_high_performance(1);
  testing::internal::CaptureStderr();
  double start = 0.0, later = 0.0;
  G_timer_inq_time(&start);
  std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(said.rfind("timer: time_init_clock_hp_win32: QueryPerformanceFrequency failed\n", 0), 0u);
  EXPECT_EQ(GP_timer_inq_kind(), 2);
  double resolution = 0.0;
  time_inq_resolution(&resolution);
  EXPECT_TRUE(resolution == 1e9 || resolution == 1e11);
  G_sleep(30);
  G_timer_inq_time(&later);
  EXPECT_GE(later - start, 0.02);
  GP_timer_skip_high_performance(0);
  EXPECT_EQ(time_facility_shutdown(), 0);
  EXPECT_EQ(GP_timer_inq_kind(), 0);
}

} // namespace
