// The window system on Windows: user32's own calls.
#include "support/window/window.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

extern "C" {

void *G_win_window_of_dc(void *hdc)
{
  if (!hdc)
    return nullptr;
  return (void *)WindowFromDC((HDC)hdc);
}

void *G_win_active_window(void)
{
  return (void *)GetActiveWindow();
}

uintptr_t G_win_class_background(void *window)
{
  if (!window)
    return 0;
  return (uintptr_t)GetClassLongPtrA((HWND)window, GCLP_HBRBACKGROUND);
}

uintptr_t G_win_set_class_background(void *window, uintptr_t brush)
{
  if (!window)
    return 0;
  return (uintptr_t)SetClassLongPtrA((HWND)window, GCLP_HBRBACKGROUND, (LONG_PTR)brush);
}

void G_win_set_last_error(uint32_t code)
{
  SetLastError((DWORD)code);
}

uint32_t G_win_last_error(void)
{
  return (uint32_t)GetLastError();
}

} // extern "C"
