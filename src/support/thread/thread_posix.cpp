// thread_posix.cpp: the thread service on pthreads; waits with a time-out use CLOCK_MONOTONIC.
#include "support/thread/thread.h"

#include <pthread.h>
#include <time.h>

#include <cerrno>
#include <new>

namespace zvgl {

struct Thread {
  pthread_t id;
  void (*fn)(void *);
  void *arg;
};

struct Mutex {
  pthread_mutex_t m;
};

struct Cond {
  pthread_cond_t c;
};

// Entry of every thread: runs the function the caller gave.
static void *thread_entry(void *p) {
  Thread *t = static_cast<Thread *>(p);
  t->fn(t->arg);
  return nullptr;
}

Thread *thread_start(void (*fn)(void *), void *arg) {
  Thread *t = new (std::nothrow) Thread;
  if (!t) return nullptr;
  t->fn = fn;
  t->arg = arg;
  if (pthread_create(&t->id, nullptr, thread_entry, t) != 0) {
    delete t;
    return nullptr;
  }
  return t;
}

void thread_join(Thread *t) {
  if (!t) return;
  pthread_join(t->id, nullptr);
  delete t;
}

Mutex *mutex_create() {
  Mutex *m = new (std::nothrow) Mutex;
  if (m) pthread_mutex_init(&m->m, nullptr);
  return m;
}

void mutex_destroy(Mutex *m) {
  if (!m) return;
  pthread_mutex_destroy(&m->m);
  delete m;
}

void mutex_lock(Mutex *m) { pthread_mutex_lock(&m->m); }
void mutex_unlock(Mutex *m) { pthread_mutex_unlock(&m->m); }

Cond *cond_create() {
  Cond *c = new (std::nothrow) Cond;
  if (!c) return nullptr;
  pthread_condattr_t attr;
  pthread_condattr_init(&attr);
  pthread_condattr_setclock(&attr, CLOCK_MONOTONIC);
  pthread_cond_init(&c->c, &attr);
  pthread_condattr_destroy(&attr);
  return c;
}

void cond_destroy(Cond *c) {
  if (!c) return;
  pthread_cond_destroy(&c->c);
  delete c;
}

void cond_wait(Cond *c, Mutex *m) { pthread_cond_wait(&c->c, &m->m); }

bool cond_wait_ns(Cond *c, Mutex *m, uint64_t timeout_ns) {
  timespec ts;
  clock_gettime(CLOCK_MONOTONIC, &ts);
  uint64_t ns = static_cast<uint64_t>(ts.tv_nsec) + timeout_ns % 1000000000u;
  ts.tv_sec += static_cast<time_t>(timeout_ns / 1000000000u + ns / 1000000000u);
  ts.tv_nsec = static_cast<long>(ns % 1000000000u);
  return pthread_cond_timedwait(&c->c, &m->m, &ts) != ETIMEDOUT;
}

void cond_signal(Cond *c) { pthread_cond_signal(&c->c); }
void cond_broadcast(Cond *c) { pthread_cond_broadcast(&c->c); }

uint64_t clock_ns() {
  timespec ts;
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<uint64_t>(ts.tv_sec) * 1000000000u + static_cast<uint64_t>(ts.tv_nsec);
}

void sleep_ns(uint64_t ns) {
  timespec ts;
  ts.tv_sec = static_cast<time_t>(ns / 1000000000u);
  ts.tv_nsec = static_cast<long>(ns % 1000000000u);
  while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
  }
}

}  // namespace zvgl
