// The fixture of the window-system tests: the library stopped and the software board reset
// around each test, the board's call trace recorded, and device contexts to bind to.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include <glide2/glide.h>
#include <zvgl/board_tool.h>
#include <zvgl/wgl.h>

#include "support/window/window.h"
#include "vld/wsys/vld_wsys.h"

// Device context number i (distinct for distinct i): a made-up handle where handles are
// opaque, the device context of a hidden window of its own on Windows.
HDC wsys_test_dc(int i);
// The window behind wsys_test_dc(i).
HWND wsys_test_window(int i);

class WsysTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        glShutdownVELD();
        zvbReset();
        KSP_vld_swap_reset_settings();
        G_win_set_last_error(0);
        zvbTraceEnable(1);
        zvbTraceClear();
    }

    void TearDown() override
    {
        glShutdownVELD();
        zvbTraceEnable(0);
        zvbReset();
    }

    // Whether a trace line from `from` on starts with prefix, and how many do.
    static bool traced(const char* prefix, int from = 0) { return zvbTraceFind(prefix, from) >= 0; }
    static int traceCount(const char* prefix)
    {
        int n = 0;
        for (int at = zvbTraceFind(prefix, 0); at >= 0; at = zvbTraceFind(prefix, at + 1))
            ++n;
        return n;
    }
    static std::string traceText()
    {
        std::string text;
        for (int i = 0; i < zvbTraceCount(); ++i)
            text += std::string(zvbTraceLine(i)) + "\n";
        return text;
    }

    // The last-error code, then cleared.
    static uint32_t lastError()
    {
        uint32_t code = G_win_last_error();
        G_win_set_last_error(0);
        return code;
    }

    static vld_context* ctx_of(HGLRC handle) { return reinterpret_cast<vld_context*>(handle); }

    // A new context on device context dc, made current.
    static HGLRC currentContext(int dc)
    {
        HGLRC rc = wglCreateContext(wsys_test_dc(dc));
        EXPECT_NE(rc, nullptr);
        EXPECT_EQ(wglMakeCurrent(wsys_test_dc(dc), rc), TRUE);
        return rc;
    }
};
