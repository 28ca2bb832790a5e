// app_platform.h: what the tool programs need of the operating system, behind one plain
// header: a window with a device context for the wgl calls, a setting in the process
// environment, and a read-back of the window's picture.
//
// On Windows the window is real (CreateWindow, GetDC) and its client area has exactly the
// size asked for. Elsewhere the library's wgl handles are opaque and a device context's
// window is the handle value itself, so the "window" is a made-up, non-null handle.
#pragma once

#include <cstdint>
#include <vector>

#include <zvgl/wgl.h>

namespace zvgl_tool {

struct AppWindow;

// Opens a window whose client area is width x height, shown on the screen. Null when the
// system has no display or refused; `error` then says why (when not null, `size` bytes).
AppWindow *app_window_open(const char *title, int width, int height, char *error, int size);
// The window's device context: what wglSetPixelFormat, wglCreateContext and wglMakeCurrent take.
HDC app_window_dc(AppWindow *window);
// Handles the window's pending messages (Windows); false once the user has closed it.
bool app_window_pump(AppWindow *window);
// Reads back the client area as 0x00RRGGBB pixels, row 0 at the top. False where windows are
// made up, or when the read fails.
bool app_window_read(AppWindow *window, std::vector<uint32_t> &pixels, int &width, int &height);
void app_window_close(AppWindow *window);

// Sets `name` in the process environment, where both the library and the board look it up.
// With `overwrite` false an existing value stays. False on failure.
bool app_setenv(const char *name, const char *value, bool overwrite);
// True when `name` is set in the process environment (an empty value counts as set).
bool app_env_set(const char *name);

}  // namespace zvgl_tool
