// Windows critical sections and interlocked operations.
#include "support/mt/mt.h"

#include <windows.h>

static_assert(sizeof(CRITICAL_SECTION) <= sizeof(GI_mt_critical_section::storage));

static CRITICAL_SECTION *native(GI_mt_critical_section *section) {
  return reinterpret_cast<CRITICAL_SECTION *>(section->storage);
}

extern "C" {

void GI_mt_critical_section_init(GI_mt_critical_section *section) {
  InitializeCriticalSection(native(section));
}
void GI_mt_critical_section_delete(GI_mt_critical_section *section) {
  DeleteCriticalSection(native(section));
}
void GI_mt_critical_section_enter(GI_mt_critical_section *section) {
  EnterCriticalSection(native(section));
}
void GI_mt_critical_section_leave(GI_mt_critical_section *section) {
  LeaveCriticalSection(native(section));
}

long GI_mt_InterlockedIncrement(volatile long *value) { return InterlockedIncrement(value); }
long GI_mt_InterlockedDecrement(volatile long *value) { return InterlockedDecrement(value); }
long GI_mt_InterlockedExchange(volatile long *target, long value) {
  return InterlockedExchange(target, value);
}

} // extern "C"
