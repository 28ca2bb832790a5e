// gl_session.cpp: opening and closing a rendering context through the wgl names.
#include "gl_session.h"

#include <chrono>
#include <cstdio>
#include <cstring>

namespace zvgl_tool {

namespace {

void say(char *error, int size, const char *what) {
  if (error && size > 0) std::snprintf(error, static_cast<size_t>(size), "%s", what);
}

}  // namespace

bool session_open(GlSession &s, const char *title, int width, int height, char *error, int size) {
  s = GlSession();
  s.window = app_window_open(title, width, height, error, size);
  if (!s.window) {
    s.noWindow = true;
    return false;
  }
  s.dc = app_window_dc(s.window);

  PIXELFORMATDESCRIPTOR pfd;
  std::memset(&pfd, 0, sizeof pfd);
  pfd.nSize = sizeof pfd;
  pfd.nVersion = 1;
  pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
  pfd.iPixelType = PFD_TYPE_RGBA;
  pfd.cColorBits = 16;
  pfd.cDepthBits = 16;
  s.pixelFormat = wglChoosePixelFormat(s.dc, &pfd);
  const char *failed = nullptr;
  if (s.pixelFormat <= 0) {
    failed = "wglChoosePixelFormat found no pixel format";
  } else if (!wglSetPixelFormat(s.dc, s.pixelFormat, &pfd)) {
    failed = "wglSetPixelFormat failed";
  } else if (!(s.rc = wglCreateContext(s.dc))) {
    failed = "wglCreateContext failed";
  } else if (!wglMakeCurrent(s.dc, s.rc)) {
    failed = "wglMakeCurrent failed (no board could be opened?)";
  }
  if (failed) {
    say(error, size, failed);
    session_close(s);
    return false;
  }
  return true;
}

bool session_wait_swaps(double seconds) {
  glFinish();
  auto ready = session_proc<PFNGLISSWAPREADYVELDPROC>("glIsSwapReadyVELD");
  if (!ready) return true;
  const auto start = std::chrono::steady_clock::now();
  while (!ready()) {
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    if (waited.count() > seconds) return false;
  }
  return true;
}

void session_close(GlSession &s) {
  if (s.rc) {
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(s.rc);
  }
  app_window_close(s.window);
  s = GlSession();
}

}  // namespace zvgl_tool
