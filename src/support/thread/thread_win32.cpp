// thread_win32.cpp: the thread service on Win32 threads, critical sections and condition
// variables; the clock is QueryPerformanceCounter.
#include "support/thread/thread.h"

#include <windows.h>

#include <new>

namespace zvgl {

struct Thread {
  HANDLE handle;
  void (*fn)(void *);
  void *arg;
};

struct Mutex {
  CRITICAL_SECTION cs;
};

struct Cond {
  CONDITION_VARIABLE cv;
};

// Entry of every thread: runs the function the caller gave.
static DWORD WINAPI thread_entry(LPVOID p) {
  Thread *t = static_cast<Thread *>(p);
  t->fn(t->arg);
  return 0;
}

Thread *thread_start(void (*fn)(void *), void *arg) {
  Thread *t = new (std::nothrow) Thread;
  if (!t) return nullptr;
  t->fn = fn;
  t->arg = arg;
  t->handle = CreateThread(nullptr, 0, thread_entry, t, 0, nullptr);
  if (!t->handle) {
    delete t;
    return nullptr;
  }
  return t;
}

void thread_join(Thread *t) {
  if (!t) return;
  WaitForSingleObject(t->handle, INFINITE);
  CloseHandle(t->handle);
  delete t;
}

Mutex *mutex_create() {
  Mutex *m = new (std::nothrow) Mutex;
  if (m) InitializeCriticalSection(&m->cs);
  return m;
}

void mutex_destroy(Mutex *m) {
  if (!m) return;
  DeleteCriticalSection(&m->cs);
  delete m;
}

void mutex_lock(Mutex *m) { EnterCriticalSection(&m->cs); }
void mutex_unlock(Mutex *m) { LeaveCriticalSection(&m->cs); }

Cond *cond_create() {
  Cond *c = new (std::nothrow) Cond;
  if (c) InitializeConditionVariable(&c->cv);
  return c;
}

void cond_destroy(Cond *c) { delete c; }

void cond_wait(Cond *c, Mutex *m) { SleepConditionVariableCS(&c->cv, &m->cs, INFINITE); }

bool cond_wait_ns(Cond *c, Mutex *m, uint64_t timeout_ns) {
  // Whole milliseconds, rounded up so that a short wait does not become a busy loop.
  uint64_t ms = (timeout_ns + 999999u) / 1000000u;
  if (ms >= INFINITE) ms = INFINITE - 1;
  return SleepConditionVariableCS(&c->cv, &m->cs, static_cast<DWORD>(ms)) != 0;
}

void cond_signal(Cond *c) { WakeConditionVariable(&c->cv); }
void cond_broadcast(Cond *c) { WakeAllConditionVariable(&c->cv); }

uint64_t clock_ns() {
  static LARGE_INTEGER freq = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  uint64_t t = static_cast<uint64_t>(now.QuadPart), f = static_cast<uint64_t>(freq.QuadPart);
  return t / f * 1000000000u + t % f * 1000000000u / f;
}

void sleep_ns(uint64_t ns) { Sleep(static_cast<DWORD>((ns + 999999u) / 1000000u)); }

}  // namespace zvgl
