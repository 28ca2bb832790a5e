// Device contexts on Windows: each is the device context of a hidden window of its own, of
// a class registered without a background brush (as many GL programs register theirs).
#include "wsys_test.h"

namespace {

constexpr int kWindows = 8;
HWND windows[kWindows];
HDC contexts[kWindows];

LRESULT CALLBACK wsys_window_procedure(HWND window, UINT message, WPARAM w, LPARAM l)
{
    return DefWindowProcA(window, message, w, l);
}

void wsys_make_window(int i)
{
    static bool registered = false;
    if (!registered) {
        WNDCLASSA c{};
        c.style = CS_OWNDC;
        c.lpfnWndProc = wsys_window_procedure;
        c.hInstance = GetModuleHandleA(nullptr);
        c.lpszClassName = "zvgl_wsys_test";
        c.hbrBackground = nullptr;
        RegisterClassA(&c);
        registered = true;
    }
    windows[i] = CreateWindowA("zvgl_wsys_test", "wsys", WS_OVERLAPPEDWINDOW, 0, 0, 320, 240, nullptr,
                               nullptr, GetModuleHandleA(nullptr), nullptr);
    contexts[i] = windows[i] ? GetDC(windows[i]) : nullptr;
}

} // namespace

HDC wsys_test_dc(int i)
{
    if (!windows[i])
        wsys_make_window(i);
    return contexts[i];
}

HWND wsys_test_window(int i)
{
    if (!windows[i])
        wsys_make_window(i);
    return windows[i];
}
