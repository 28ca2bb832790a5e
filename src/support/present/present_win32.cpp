// present_win32.cpp: GDI drawing of a 32-bit picture into a window's client area.
#include "support/present/present.h"

#include <windows.h>

namespace zvgl {

int present_to_window(uintptr_t window, const uint32_t *pixels, int w, int h) {
  HWND hwnd = reinterpret_cast<HWND>(window);
  if (!hwnd || !pixels || w <= 0 || h <= 0 || !IsWindow(hwnd)) return 0;
  RECT client;
  if (!GetClientRect(hwnd, &client)) return 0;
  HDC dc = GetDC(hwnd);
  if (!dc) return 0;
  BITMAPINFO info;
  ZeroMemory(&info, sizeof info);
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = w;
  info.bmiHeader.biHeight = -h;  // top-down rows
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  const int drawn = StretchDIBits(dc, 0, 0, client.right - client.left, client.bottom - client.top, 0, 0, w, h,
                                  pixels, &info, DIB_RGB_COLORS, SRCCOPY);
  ReleaseDC(hwnd, dc);
  return drawn > 0 ? 1 : 0;
}

}  // namespace zvgl
