// Windows counters: QueryPerformanceCounter and the multimedia timer.
#include "support/timer/timer.h"

#include <windows.h>
#include <mmsystem.h>

int GP_timer_hp_frequency(uint64_t *frequency) {
  LARGE_INTEGER value;
  if (!QueryPerformanceFrequency(&value)) return -1;
  *frequency = static_cast<uint64_t>(value.QuadPart);
  return 0;
}

uint64_t GP_timer_hp_read(void) {
  LARGE_INTEGER value;
  QueryPerformanceCounter(&value);
  return static_cast<uint64_t>(value.QuadPart);
}

int GP_timer_regular_begin(void) { return timeBeginPeriod(1) == TIMERR_NOERROR ? 0 : -1; }
uint64_t GP_timer_regular_read(void) { return timeGetTime(); }
int GP_timer_regular_end(void) { return timeEndPeriod(1) == TIMERR_NOERROR ? 0 : -1; }
