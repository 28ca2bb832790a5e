// Clock start-up, counter epochs and the seconds it reads.
#include "support/timer/timer.h"

#include <cmath>
#include <cstdio>

namespace {

struct ClockState {
  bool started;
  int kind; // 1 high-performance, 2 millisecond counter
  double resolution; // picoseconds, 0 when unknown
  bool periodBegun; // the 1 ms period was granted and must be released
  bool skipHighPerformance;
  GP_timer_counter counter;
};

ClockState clockState = {};

// Chooses and starts the clock: the high-performance counter, else the millisecond counter
// (whose 1 ms period request may fail, leaving 100 ms assumed).
int start_clock() {
  uint64_t frequency = 0;
  if (!clockState.skipHighPerformance && GP_timer_hp_frequency(&frequency) == 0 && frequency != 0) {
    clockState.kind = 1;
    clockState.resolution = 1e12 / static_cast<double>(frequency);
    GP_timer_counter_start(&clockState.counter, 64, static_cast<double>(frequency),
                           GP_timer_hp_read());
  } else {
    fputs("timer: time_init_clock_hp_win32: QueryPerformanceFrequency failed\n", stderr);
    if (GP_timer_regular_begin() == 0) {
      clockState.periodBegun = true;
      clockState.resolution = 1e9;
    } else {
      fputs("timer: time_init_clock_regular: timeBeginPeriod failed\n", stderr);
      clockState.resolution = 1e11;
    }
    clockState.kind = 2;
    GP_timer_counter_start(&clockState.counter, 32, 1000.0, GP_timer_regular_read());
  }
  clockState.started = true;
  return 0;
}

uint64_t read_counter() {
  return clockState.kind == 1 ? GP_timer_hp_read() : GP_timer_regular_read();
}

} // namespace

void GP_timer_counter_start(GP_timer_counter *counter, unsigned width, double frequency,
                            uint64_t firstReading) {
  counter->width = width;
  counter->period = 1.0 / frequency;
  counter->mask = width >= 64 ? ~uint64_t(0) : (uint64_t(1) << width) - 1;
  counter->threshold = counter->mask - (counter->mask >> 4);
  counter->last = firstReading & counter->mask;
  counter->accumulated = 0;
  counter->epoch = 0;
}

// The difference from the last reading, within the counter's width, goes onto the tick sum.
// A carry out of the sum is one epoch forward; else a difference above the threshold is read
// as a step backwards and takes one epoch away. An epoch is 2^width ticks.
double GP_timer_counter_advance(GP_timer_counter *counter, uint64_t reading) {
  uint64_t now = reading & counter->mask;
  uint64_t difference = (now - counter->last) & counter->mask;
  counter->last = now;
  uint64_t before = counter->accumulated;
  counter->accumulated += difference;
  if (counter->accumulated < before)
    ++counter->epoch;
  else if (difference > counter->threshold)
    --counter->epoch;
  double epochSeconds = counter->period * std::ldexp(1.0, static_cast<int>(counter->width));
  return static_cast<double>(counter->epoch) * epochSeconds +
         static_cast<double>(counter->accumulated) * counter->period;
}

extern "C" {

int time_facility_init(void) {
  if (clockState.started) return 0;
  return start_clock();
}

int time_read_in_seconds(double *seconds) {
  int error = time_facility_init();
  if (error != 0) {
    *seconds = 0.0;
    return error;
  }
  *seconds = GP_timer_counter_advance(&clockState.counter, read_counter());
  return 0;
}

int G_timer_inq_time(double *seconds) { return time_read_in_seconds(seconds); }

int time_inq_resolution(double *seconds) {
  int error = time_facility_init();
  if (error != 0) {
    *seconds = 0.0;
    return error;
  }
  *seconds = clockState.resolution;
  return clockState.resolution > 0.0 ? 0 : -1;
}

// Releases the 1 ms period if it was granted; the clock may be started again afterwards.
int time_facility_shutdown(void) {
  int result = 0;
  if (clockState.periodBegun && GP_timer_regular_end() != 0) result = -1;
  bool skip = clockState.skipHighPerformance;
  clockState = ClockState{};
  clockState.skipHighPerformance = skip;
  return result;
}

} // extern "C"

void GP_timer_reset(void) { time_facility_shutdown(); }
void GP_timer_skip_high_performance(int skip) { clockState.skipHighPerformance = skip != 0; }
int GP_timer_inq_kind(void) { return clockState.started ? clockState.kind : 0; }
