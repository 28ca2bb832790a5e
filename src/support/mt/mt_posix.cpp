// POSIX critical sections (recursive mutexes, as a Win32 critical section is re-entrant for
// its owner) and interlocked operations on the compiler's atomic builtins.
#include "support/mt/mt.h"

#include <pthread.h>

static_assert(sizeof(pthread_mutex_t) <= sizeof(GI_mt_critical_section::storage));

static pthread_mutex_t *native(GI_mt_critical_section *section) {
  return reinterpret_cast<pthread_mutex_t *>(section->storage);
}

extern "C" {

void GI_mt_critical_section_init(GI_mt_critical_section *section) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(native(section), &attributes);
  pthread_mutexattr_destroy(&attributes);
}
void GI_mt_critical_section_delete(GI_mt_critical_section *section) {
  pthread_mutex_destroy(native(section));
}
void GI_mt_critical_section_enter(GI_mt_critical_section *section) {
  pthread_mutex_lock(native(section));
}
void GI_mt_critical_section_leave(GI_mt_critical_section *section) {
  pthread_mutex_unlock(native(section));
}

long GI_mt_InterlockedIncrement(volatile long *value) {
  return __atomic_add_fetch(value, 1, __ATOMIC_SEQ_CST);
}
long GI_mt_InterlockedDecrement(volatile long *value) {
  return __atomic_sub_fetch(value, 1, __ATOMIC_SEQ_CST);
}
long GI_mt_InterlockedExchange(volatile long *target, long value) {
  return __atomic_exchange_n(target, value, __ATOMIC_SEQ_CST);
}

} // extern "C"
