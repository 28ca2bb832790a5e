// The window-system binding on Windows itself (run under Wine): real windows, their device
// contexts and their classes' background brushes.
#include "wsys_test.h"

namespace {

using Win32 = WsysTest;

TEST_F(Win32, ARealWindowsDeviceContextLeadsToItsWindow)
{
    HWND window = wsys_test_window(0);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(G_win_window_of_dc(wsys_test_dc(0)), (void*)window);
    vld_dc_record* record = nullptr;
    KSP_vld_find_hdc(wsys_test_dc(0), &record);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->window, window);
}

TEST_F(Win32, AClassWithoutBackgroundGetsOneAtContextCreation)
{
    HWND window = wsys_test_window(1);
    ASSERT_NE(window, nullptr);
    SetClassLongPtrA(window, GCLP_HBRBACKGROUND, 0);
    ASSERT_EQ(GetClassLongPtrA(window, GCLP_HBRBACKGROUND), 0);
    HGLRC rc = wglCreateContext(wsys_test_dc(1));
    ASSERT_NE(rc, nullptr);
    EXPECT_EQ(GetClassLongPtrA(window, GCLP_HBRBACKGROUND), 6);
    EXPECT_EQ(ctx_of(rc)->dcRecord != nullptr, true);
    // A brush the class already has is left alone.
    SetClassLongPtrA(window, GCLP_HBRBACKGROUND, 3);
    glShutdownVELD();
    HGLRC again = wglCreateContext(wsys_test_dc(1));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(GetClassLongPtrA(window, GCLP_HBRBACKGROUND), 3);
}

TEST_F(Win32, ADeviceContextWithoutWindowIsRefusedButItsContextStays)
{
    HDC memory = CreateCompatibleDC(nullptr);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(G_win_window_of_dc(memory), nullptr);
    SetLastError(0);
    EXPECT_EQ(wglCreateContext(memory), nullptr);
    EXPECT_EQ(GetLastError(), 0xC0000000u);
    EXPECT_NE(vlddb.contextListHead, nullptr) << "the context made for it lives on until shutdown";
    DeleteDC(memory);
}

TEST_F(Win32, TheLastErrorIsTheThreadsOwn)
{
    EXPECT_EQ(wglDeleteContext(nullptr), FALSE);
    EXPECT_EQ(GetLastError(), 0xC0000000u);
}

} // namespace
