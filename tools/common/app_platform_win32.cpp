// app_platform_win32.cpp: the tool programs' platform services on Windows: a real window
// with its device context, the environment of the process and of the C runtime, and a GDI
// read-back of the window's client area.
#include "app_platform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zvgl_tool {

struct AppWindow {
  HWND hwnd;
  HDC dc;
  bool closed;
};

namespace {

const char kClassName[] = "zvgl-tool-window";

// The window's messages: a close marks it closed; painting is the board's (it draws after
// each swap), so WM_PAINT only validates; the background is left alone.
LRESULT CALLBACK window_proc(HWND hwnd, UINT msg, WPARAM wparam, LPARAM lparam) {
  AppWindow *w = reinterpret_cast<AppWindow *>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
  switch (msg) {
    case WM_CLOSE:
      if (w) w->closed = true;
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      BeginPaint(hwnd, &ps);
      EndPaint(hwnd, &ps);
      return 0;
    }
    default:
      return DefWindowProcA(hwnd, msg, wparam, lparam);
  }
}

void say(char *error, int size, const char *what) {
  if (error && size > 0)
    std::snprintf(error, static_cast<size_t>(size), "%s failed (error %lu)", what,
                  static_cast<unsigned long>(GetLastError()));
}

}  // namespace

AppWindow *app_window_open(const char *title, int width, int height, char *error, int size) {
  HINSTANCE instance = GetModuleHandleA(nullptr);
  WNDCLASSA wc;
  std::memset(&wc, 0, sizeof wc);
  wc.style = CS_OWNDC;  // one device context for the window's life, as GL programs use
  wc.lpfnWndProc = window_proc;
  wc.hInstance = instance;
  wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
  wc.lpszClassName = kClassName;
  if (!RegisterClassA(&wc) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
    say(error, size, "RegisterClass");
    return nullptr;
  }
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  RECT r = {0, 0, width, height};
  AdjustWindowRect(&r, style, FALSE);
  AppWindow *w = new (std::nothrow) AppWindow{nullptr, nullptr, false};
  if (!w) return nullptr;
  w->hwnd = CreateWindowA(kClassName, title, style, 0, 0, r.right - r.left, r.bottom - r.top, nullptr,
                          nullptr, instance, nullptr);
  if (!w->hwnd) {
    say(error, size, "CreateWindow");
    delete w;
    return nullptr;
  }
  SetWindowLongPtrA(w->hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(w));
  ShowWindow(w->hwnd, SW_SHOWNORMAL);
  UpdateWindow(w->hwnd);
  w->dc = GetDC(w->hwnd);
  if (!w->dc) {
    say(error, size, "GetDC");
    DestroyWindow(w->hwnd);
    delete w;
    return nullptr;
  }
  app_window_pump(w);
  return w;
}

HDC app_window_dc(AppWindow *window) { return window ? window->dc : nullptr; }

bool app_window_pump(AppWindow *window) {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  return window && !window->closed;
}

// Copies the client area into a 32-bit top-down DIB section through BitBlt, which reads what
// is on the window's surface.
bool app_window_read(AppWindow *window, std::vector<uint32_t> &pixels, int &width, int &height) {
  if (!window || !window->hwnd) return false;
  RECT client;
  if (!GetClientRect(window->hwnd, &client)) return false;
  width = client.right - client.left;
  height = client.bottom - client.top;
  if (width <= 0 || height <= 0) return false;
  BITMAPINFO info;
  std::memset(&info, 0, sizeof info);
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void *bits = nullptr;
  HDC windowDc = GetDC(window->hwnd);
  HDC memory = CreateCompatibleDC(windowDc);
  HBITMAP bitmap = CreateDIBSection(windowDc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  bool ok = memory && bitmap && bits;
  if (ok) {
    HGDIOBJ old = SelectObject(memory, bitmap);
    ok = BitBlt(memory, 0, 0, width, height, windowDc, 0, 0, SRCCOPY) != 0;
    GdiFlush();
    if (ok) {
      const uint32_t *p = static_cast<const uint32_t *>(bits);
      pixels.assign(p, p + static_cast<size_t>(width) * static_cast<size_t>(height));
      for (uint32_t &v : pixels) v &= 0x00FFFFFFu;
    }
    SelectObject(memory, old);
  }
  if (bitmap) DeleteObject(bitmap);
  if (memory) DeleteDC(memory);
  ReleaseDC(window->hwnd, windowDc);
  return ok;
}

void app_window_close(AppWindow *window) {
  if (!window) return;
  if (window->hwnd) {
    if (window->dc) ReleaseDC(window->hwnd, window->dc);
    DestroyWindow(window->hwnd);
    app_window_pump(window);
  }
  delete window;
}

// The C runtime keeps its own copy of the environment (getenv reads it) beside the process
// environment (GetEnvironmentVariable reads that): both are set.
bool app_setenv(const char *name, const char *value, bool overwrite) {
  if (!overwrite && app_env_set(name)) return true;
  const bool crt = _putenv_s(name, value) == 0;
  const bool process = SetEnvironmentVariableA(name, value) != 0;
  return crt && process;
}

bool app_env_set(const char *name) {
  return std::getenv(name) != nullptr || GetEnvironmentVariableA(name, nullptr, 0) != 0;
}

}  // namespace zvgl_tool
