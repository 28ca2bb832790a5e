// POSIX counters: CLOCK_MONOTONIC in nanoseconds as the high-performance counter, and a
// 32-bit millisecond count of the same clock as the regular one.
#include "support/timer/timer.h"

#include <time.h>

int GP_timer_hp_frequency(uint64_t *frequency) {
  struct timespec now;
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return -1;
  *frequency = 1000000000u;
  return 0;
}

uint64_t GP_timer_hp_read(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

// The millisecond resolution is granted when the clock's own resolution is at least that fine.
int GP_timer_regular_begin(void) {
  struct timespec resolution;
  if (clock_getres(CLOCK_MONOTONIC, &resolution) != 0) return -1;
  return resolution.tv_sec == 0 && resolution.tv_nsec <= 1000000 ? 0 : -1;
}

uint64_t GP_timer_regular_read(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  uint64_t ms = static_cast<uint64_t>(now.tv_sec) * 1000u + static_cast<uint64_t>(now.tv_nsec) / 1000000u;
  return ms & 0xFFFFFFFFu;
}

int GP_timer_regular_end(void) { return 0; }
