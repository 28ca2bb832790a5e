// thread.h: threads, mutexes, condition variables and a monotonic clock.
//
// The MinGW compilers use the win32 thread model, where std::thread and std::mutex do not exist,
// so the project has its own small service: thread_win32.cpp (Win32 threads, critical sections,
// condition variables) and thread_posix.cpp (pthreads). Objects are opaque and created on the
// heap; every function accepts what the matching create function returned.
#pragma once

#include <cstdint>

namespace zvgl {

struct Thread;
struct Mutex;
struct Cond;

// Starts `fn(arg)` on a new thread; null if the system refuses.
Thread *thread_start(void (*fn)(void *), void *arg);
// Waits for the thread to end and releases it.
void thread_join(Thread *t);

Mutex *mutex_create();
void mutex_destroy(Mutex *m);
void mutex_lock(Mutex *m);
void mutex_unlock(Mutex *m);

Cond *cond_create();
void cond_destroy(Cond *c);
// Releases `m`, waits for a signal, locks `m` again. Spurious wake-ups happen: callers loop.
void cond_wait(Cond *c, Mutex *m);
// Like cond_wait, but gives up after `timeout_ns` nanoseconds; false on time-out.
bool cond_wait_ns(Cond *c, Mutex *m, uint64_t timeout_ns);
void cond_signal(Cond *c);
void cond_broadcast(Cond *c);

// Nanoseconds of a monotonic clock (arbitrary origin).
uint64_t clock_ns();
// Blocks the calling thread for about `ns` nanoseconds.
void sleep_ns(uint64_t ns);

// Locks a mutex for the life of a scope.
struct MutexGuard {
  Mutex *m;
  explicit MutexGuard(Mutex *mu) : m(mu) { mutex_lock(m); }
  ~MutexGuard() { mutex_unlock(m); }
  MutexGuard(const MutexGuard &) = delete;
  MutexGuard &operator=(const MutexGuard &) = delete;
};

}  // namespace zvgl
