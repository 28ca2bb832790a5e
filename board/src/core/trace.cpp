// trace.cpp: the record of Glide calls, one line each: in memory for tests (zvbTrace*), and
// in the file named by ZVGL_BOARD_TRACE.
#include "core/board.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <zvgl/board_tool.h>

namespace zvb {

namespace {

constexpr int kTraceMemory = 1;
constexpr int kTraceFile = 2;

struct TraceStore {
  zvgl::Mutex *mu;
  FILE *file;
  char **lines;
  int count, capacity;
};

TraceStore &store() {
  static TraceStore s;
  static zvgl::Mutex *mu = s.mu = zvgl::mutex_create();
  (void)mu;
  return s;
}

// Turns one of the trace switches on or off.
void set_switch(int bit, bool on) {
  if (on)
    traceSwitches.fetch_or(bit);
  else
    traceSwitches.fetch_and(~bit);
}

}  // namespace

// Which traces are on: kTraceMemory, kTraceFile. A plain word outside the store, so that the
// test at every Glide call is one load with nothing to set up first.
constinit std::atomic<int> traceSwitches{0};

bool trace_active() { return traceSwitches.load(std::memory_order_relaxed) != 0; }

// Formats one line and appends it to the memory trace and the trace file.
void trace_line(const char *fmt, ...) {
  TraceStore &s = store();
  char small[1024];
  va_list ap;
  va_start(ap, fmt);
  int n = std::vsnprintf(small, sizeof small, fmt, ap);
  va_end(ap);
  if (n < 0) return;
  char *text = small;
  if (static_cast<size_t>(n) >= sizeof small) {
    text = static_cast<char *>(std::malloc(static_cast<size_t>(n) + 1));
    if (!text) return;
    va_start(ap, fmt);
    std::vsnprintf(text, static_cast<size_t>(n) + 1, fmt, ap);
    va_end(ap);
  }
  zvgl::MutexGuard lock(s.mu);
  if (s.file) std::fprintf(s.file, "%s\n", text);
  if (traceSwitches.load() & kTraceMemory) {
    if (s.count == s.capacity) {
      int cap = s.capacity ? s.capacity * 2 : 256;
      char **grown = static_cast<char **>(std::realloc(s.lines, sizeof(char *) * static_cast<size_t>(cap)));
      if (grown) {
        s.lines = grown;
        s.capacity = cap;
      }
    }
    if (s.count < s.capacity) {
      char *copy = static_cast<char *>(std::malloc(static_cast<size_t>(n) + 1));
      if (copy) {
        std::memcpy(copy, text, static_cast<size_t>(n) + 1);
        s.lines[s.count++] = copy;
      }
    }
  }
  if (text != small) std::free(text);
}

void trace_open_file() {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  const char *path = option("ZVGL_BOARD_TRACE");
  if (s.file || !path || !*path) return;
  s.file = std::fopen(path, "w");
  if (!s.file) std::fprintf(stderr, "glide2x: cannot write the trace file %s\n", path);
  set_switch(kTraceFile, s.file != nullptr);
}

void trace_close_file() {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  if (s.file) std::fclose(s.file);
  s.file = nullptr;
  set_switch(kTraceFile, false);
}

void trace_flush_file() {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  if (s.file) std::fflush(s.file);
}

void trace_reset() {
  zvbTraceClear();
  zvbTraceEnable(0);
}

}  // namespace zvb

using namespace zvb;

ZVB_API void zvbTraceEnable(int on) { set_switch(kTraceMemory, on != 0); }

ZVB_API int zvbTraceCount(void) {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  return s.count;
}

ZVB_API const char *zvbTraceLine(int i) {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  return i >= 0 && i < s.count ? s.lines[i] : nullptr;
}

ZVB_API int zvbTraceFind(const char *prefix, int from) {
  if (!prefix) return -1;
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  const size_t n = std::strlen(prefix);
  for (int i = from < 0 ? 0 : from; i < s.count; ++i)
    if (std::strncmp(s.lines[i], prefix, n) == 0) return i;
  return -1;
}

ZVB_API void zvbTraceClear(void) {
  TraceStore &s = store();
  zvgl::MutexGuard lock(s.mu);
  for (int i = 0; i < s.count; ++i) std::free(s.lines[i]);
  std::free(s.lines);
  s.lines = nullptr;
  s.count = s.capacity = 0;
}
