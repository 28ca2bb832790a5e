// app_platform_posix.cpp: the tool programs' platform services where the library's window
// handles are opaque values: a made-up window, setenv.
#include "app_platform.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace zvgl_tool {

// The made-up window: the library takes a device context's window to be the handle value,
// so any non-null value unique to this window serves. Its own address is one.
struct AppWindow {
  int width, height;
};

AppWindow *app_window_open(const char *, int width, int height, char *error, int size) {
  AppWindow *w = new (std::nothrow) AppWindow{width, height};
  if (!w && error && size > 0) std::snprintf(error, static_cast<size_t>(size), "out of memory");
  return w;
}

HDC app_window_dc(AppWindow *window) { return reinterpret_cast<HDC>(window); }

bool app_window_pump(AppWindow *) { return true; }

bool app_window_read(AppWindow *, std::vector<uint32_t> &, int &, int &) { return false; }

void app_window_close(AppWindow *window) { delete window; }

bool app_setenv(const char *name, const char *value, bool overwrite) {
  return setenv(name, value, overwrite ? 1 : 0) == 0;
}

bool app_env_set(const char *name) { return std::getenv(name) != nullptr; }

}  // namespace zvgl_tool
