// Critical sections and interlocked operations with the Win32 meanings: a critical section
// may be entered again by the thread that holds it; the interlocked calls return the new
// value (increment, decrement) or the old one (exchange).
#pragma once

extern "C" {

// Storage for one critical section, owned by the caller. Large enough for the platform's own
// object, which lives inside it.
struct GI_mt_critical_section {
  alignas(16) unsigned char storage[64];
};

void GI_mt_critical_section_init(GI_mt_critical_section *section);
void GI_mt_critical_section_delete(GI_mt_critical_section *section);
void GI_mt_critical_section_enter(GI_mt_critical_section *section);
void GI_mt_critical_section_leave(GI_mt_critical_section *section);

long GI_mt_InterlockedIncrement(volatile long *value);
long GI_mt_InterlockedDecrement(volatile long *value);
long GI_mt_InterlockedExchange(volatile long *target, long value);

} // extern "C"
