// The clock: seconds since it was started, as a double, never wrapping. It starts on first
// use with the first counter that works: the high-performance counter (kind 1, 64 bits), else
// the millisecond counter (kind 2, 32 bits, 1000 per second). Read from one thread at a time.
#pragma once

#include <cstdint>

extern "C" {

// Seconds since the start. Returns 0, or the start-up's error (the time is then 0).
int G_timer_inq_time(double *seconds);
int time_read_in_seconds(double *seconds);
// The counter's resolution in picoseconds (1e12 over the frequency); 0 and -1 when unknown.
int time_inq_resolution(double *seconds);
int time_facility_init(void);
int time_facility_shutdown(void);

} // extern "C"

// Turns readings of a counter `width` bits wide into ticks since the first reading. A
// difference of nearly the full range is a small step backwards, not a wrap; a wrap of the
// 64-bit tick sum moves the epoch forward.
struct GP_timer_counter {
  unsigned width;
  double period; // seconds per tick
  uint64_t mask;
  uint64_t threshold;
  uint64_t last;
  uint64_t accumulated;
  int64_t epoch;
};
void GP_timer_counter_start(GP_timer_counter *counter, unsigned width, double frequency,
                            uint64_t firstReading);
// Takes in one raw reading and returns the seconds since the first.
double GP_timer_counter_advance(GP_timer_counter *counter, uint64_t reading);

// Test hooks: forget the started clock; make the next start pass over the high-performance
// counter as if it had failed; which kind of clock is running (0 none, 1, 2).
void GP_timer_reset(void);
void GP_timer_skip_high_performance(int skip);
int GP_timer_inq_kind(void);

// Platform layer.
// The high-performance counter's frequency (0 on success) and reading.
int GP_timer_hp_frequency(uint64_t *frequency);
uint64_t GP_timer_hp_read(void);
// The millisecond counter: ask for 1 ms resolution (0 on success), read, release.
int GP_timer_regular_begin(void);
uint64_t GP_timer_regular_read(void);
int GP_timer_regular_end(void);
