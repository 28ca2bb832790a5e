// The window system as the GL library's window binding needs it: the window behind a device
// context, the active window, the background brush of a window's class and the thread's
// last-error code. Handles pass as plain pointers; on Windows they are HDC and HWND. Other
// systems have no window handles: there a device context's handle value is itself its
// window, nothing is active, classes have no background, and the last-error code is one
// process-wide word.
#pragma once

#include <cstdint>

extern "C" {

// The window that device context `hdc` draws into, or null when it has none.
void *G_win_window_of_dc(void *hdc);
// The active window of the calling thread, or null.
void *G_win_active_window(void);
// The background brush of the window's class (GCL_HBRBACKGROUND), 0 when it has none or
// for a null window.
uintptr_t G_win_class_background(void *window);
// Gives the window's class the background brush `brush`; returns the previous value
// (0 for a null window, and always 0 where classes have no background).
uintptr_t G_win_set_class_background(void *window, uintptr_t brush);
// The last-error code: set, and read back.
void G_win_set_last_error(uint32_t code);
uint32_t G_win_last_error(void);

} // extern "C"
