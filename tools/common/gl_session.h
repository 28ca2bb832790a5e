// gl_session.h: a window and a current rendering context, opened the way an application opens
// them with the wgl names (choose and set a pixel format, create a context, make it current),
// and the library's own entry points that the tools reach through wglGetProcAddress.
#pragma once

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "app_platform.h"

namespace zvgl_tool {

struct GlSession {
  AppWindow *window = nullptr;
  HDC dc = nullptr;
  HGLRC rc = nullptr;
  int pixelFormat = 0;
  bool noWindow = false;  // set by a failed session_open when the window itself failed
};

// Opens a window of width x height and makes a new context current on it, with a double
// buffered RGBA format with a depth buffer. False, with the reason in `error`, when any step
// fails; what was opened is closed again.
bool session_open(GlSession &s, const char *title, int width, int height, char *error, int size);
// Waits (up to `seconds`) until every swap asked for has been shown, so that the board has
// captured the last frame. False on time-out.
bool session_wait_swaps(double seconds);
// Releases and deletes the context (the last one: the library stops and closes the board),
// then closes the window.
void session_close(GlSession &s);

// An entry point of the library found by name through wglGetProcAddress, as type F; null when
// the library does not offer it.
template <class F>
F session_proc(const char *name) {
  return reinterpret_cast<F>(reinterpret_cast<void (*)(void)>(wglGetProcAddress(name)));
}

}  // namespace zvgl_tool
