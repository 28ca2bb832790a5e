// The window system where there is none: handles are opaque values that the application
// made up, so a device context stands for its own window; no window is active, window
// classes have no background to fix, and the last-error code is one word for the process.
#include "support/window/window.h"

#include <atomic>

namespace {

std::atomic<uint32_t> lastError{0};

} // namespace

extern "C" {

void *G_win_window_of_dc(void *hdc)
{
  return hdc;
}

void *G_win_active_window(void)
{
  return nullptr;
}

uintptr_t G_win_class_background(void *)
{
  return 0;
}

uintptr_t G_win_set_class_background(void *, uintptr_t)
{
  return 0;
}

void G_win_set_last_error(uint32_t code)
{
  lastError.store(code, std::memory_order_relaxed);
}

uint32_t G_win_last_error(void)
{
  return lastError.load(std::memory_order_relaxed);
}

} // extern "C"
