// The wgl and GDI functions: pixel formats and their matching, device-context records, and
// the refusals with their error code, bad context handles included.
#include <cstring>

#include "wsys_test.h"

namespace {

using Wgl = WsysTest;

// A request as an application fills it in: size and version, flags, RGBA.
PIXELFORMATDESCRIPTOR request(DWORD flags, BYTE color = 16, BYTE alpha = 0, BYTE depth = 0)
{
    PIXELFORMATDESCRIPTOR pfd;
    std::memset(&pfd, 0, sizeof pfd);
    pfd.nSize = sizeof pfd;
    pfd.nVersion = 1;
    pfd.dwFlags = flags;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = color;
    pfd.cAlphaBits = alpha;
    pfd.cDepthBits = depth;
    return pfd;
}

constexpr DWORD kWindowGL = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;

TEST_F(Wgl, ChoosePixelFormatPicksByDepthAndAlpha)
{
    HDC dc = wsys_test_dc(0);
    PIXELFORMATDESCRIPTOR depth16 = request(kWindowGL, 16, 0, 16);
    EXPECT_EQ(ChoosePixelFormat(dc, &depth16), 1);
    PIXELFORMATDESCRIPTOR alpha8 = request(kWindowGL, 16, 8, 0);
    EXPECT_EQ(wglChoosePixelFormat(dc, &alpha8), 3);
    PIXELFORMATDESCRIPTOR plain = request(kWindowGL, 0, 0, 0);
    EXPECT_EQ(wglChoosePixelFormat(dc, &plain), 1);
    // More than any row has: the best row still wins, with the most colour and depth.
    PIXELFORMATDESCRIPTOR deep = request(kWindowGL, 32, 0, 24);
    EXPECT_EQ(wglChoosePixelFormat(dc, &deep), 1);
    // Single or double buffering left open.
    PIXELFORMATDESCRIPTOR dontCare =
        request(PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER_DONTCARE, 16, 8, 0);
    EXPECT_EQ(wglChoosePixelFormat(dc, &dontCare), 3);
    EXPECT_EQ(lastError(), 0u);
}

TEST_F(Wgl, ChoosePixelFormatRefusesWhatNoRowOffers)
{
    HDC dc = wsys_test_dc(0);
    struct Case {
        const char* what;
        PIXELFORMATDESCRIPTOR pfd;
    };
    PIXELFORMATDESCRIPTOR bitmap = request(PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER);
    PIXELFORMATDESCRIPTOR single = request(PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL);
    PIXELFORMATDESCRIPTOR stereo = request(kWindowGL | PFD_STEREO);
    PIXELFORMATDESCRIPTOR gdi = request(kWindowGL | PFD_SUPPORT_GDI);
    PIXELFORMATDESCRIPTOR index = request(kWindowGL);
    index.iPixelType = PFD_TYPE_COLORINDEX;
    PIXELFORMATDESCRIPTOR overlay = request(kWindowGL);
    overlay.iLayerType = PFD_OVERLAY_PLANE;
    PIXELFORMATDESCRIPTOR version2 = request(kWindowGL);
    version2.nVersion = 2;
    PIXELFORMATDESCRIPTOR tiny = request(kWindowGL);
    tiny.nSize = 7;
    const Case cases[] = {{"draw to bitmap", bitmap}, {"single-buffered", single},
                          {"stereo", stereo},         {"GDI drawing", gdi},
                          {"colour index", index},    {"overlay plane", overlay},
                          {"version 2", version2},    {"size below 8", tiny}};
    for (const Case& c : cases) {
        EXPECT_EQ(wglChoosePixelFormat(dc, &c.pfd), 0) << c.what;
        EXPECT_EQ(lastError(), 0xC0000000u) << c.what;
    }
    PIXELFORMATDESCRIPTOR ok = request(kWindowGL);
    EXPECT_EQ(wglChoosePixelFormat(nullptr, &ok), 0);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglChoosePixelFormat(dc, nullptr), 0);
    EXPECT_EQ(lastError(), 0xC0000000u);
}

TEST_F(Wgl, FieldsBeyondTheDeclaredSizeAreAbsent)
{
    // Declared as 9 bytes long: colour, alpha, depth and layer type are not read, so the
    // depth of 99 and the overlay layer behind that size change nothing.
    PIXELFORMATDESCRIPTOR pfd = request(kWindowGL, 16, 8, 99);
    pfd.iLayerType = PFD_OVERLAY_PLANE;
    pfd.nSize = 9;
    EXPECT_EQ(wglChoosePixelFormat(wsys_test_dc(0), &pfd), 1);
    // 17 bytes reach the alpha bits, not the depth bits.
    pfd.nSize = 17;
    EXPECT_EQ(wglChoosePixelFormat(wsys_test_dc(0), &pfd), 3);
}

TEST_F(Wgl, DescribePixelFormatCountsAndCopiesRows)
{
    HDC dc = wsys_test_dc(0);
    EXPECT_EQ(DescribePixelFormat(dc, 1, 0, nullptr), 3);
    PIXELFORMATDESCRIPTOR pfd;
    std::memset(&pfd, 0xEE, sizeof pfd);
    EXPECT_EQ(wglDescribePixelFormat(dc, 3, sizeof pfd, &pfd), 3);
    EXPECT_EQ(pfd.nSize, sizeof pfd);
    EXPECT_EQ(pfd.dwFlags, (DWORD)0x1025);
    EXPECT_EQ(pfd.cColorBits, 16);
    EXPECT_EQ(pfd.cRedShift, 11);
    EXPECT_EQ(pfd.cGreenBits, 6);
    EXPECT_EQ(pfd.cAlphaBits, 8);
    EXPECT_EQ(pfd.cDepthBits, 0);
    EXPECT_EQ(pfd.dwDamageMask, 0u);
    // A short buffer gets only its own size.
    std::memset(&pfd, 0xEE, sizeof pfd);
    EXPECT_EQ(wglDescribePixelFormat(dc, 1, 4, &pfd), 3);
    EXPECT_EQ(pfd.nSize, sizeof pfd);
    EXPECT_EQ(pfd.dwFlags, (DWORD)0xEEEEEEEE);
    EXPECT_EQ(wglDescribePixelFormat(dc, 0, sizeof pfd, &pfd), 0);
    EXPECT_EQ(wglDescribePixelFormat(dc, 4, sizeof pfd, &pfd), 0);
}

TEST_F(Wgl, SetPixelFormatTwiceTheLastStands)
{
    HDC dc = wsys_test_dc(0);
    EXPECT_EQ(GetPixelFormat(dc), 0) << "no format set yet";
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(SetPixelFormat(dc, 1, nullptr), TRUE);
    EXPECT_EQ(wglSetPixelFormat(dc, 3, nullptr), TRUE);
    EXPECT_EQ(wglGetPixelFormat(dc), 3);
    EXPECT_EQ(GetPixelFormat(wsys_test_dc(1)), 0) << "formats belong to their device context";
    EXPECT_EQ(lastError(), 0xC0000000u);
    for (int bad : {0, 4, -1}) {
        EXPECT_EQ(wglSetPixelFormat(dc, bad, nullptr), FALSE) << bad;
        EXPECT_EQ(lastError(), 0xC0000000u) << bad;
    }
    EXPECT_EQ(wglGetPixelFormat(dc), 3);
    EXPECT_EQ(wglSetPixelFormat(nullptr, 1, nullptr), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglGetPixelFormat(nullptr), 0);
    EXPECT_EQ(lastError(), 0xC0000000u);
}

TEST_F(Wgl, OneRecordPerDeviceContext)
{
    vld_dc_record* first = nullptr;
    vld_dc_record* again = nullptr;
    vld_dc_record* other = nullptr;
    KSP_vld_find_hdc(wsys_test_dc(0), &first);
    KSP_vld_find_hdc(wsys_test_dc(1), &other);
    KSP_vld_find_hdc(wsys_test_dc(0), &again);
    EXPECT_EQ(first, again);
    EXPECT_NE(first, other);
    EXPECT_EQ(first->window, wsys_test_window(0));
    EXPECT_EQ(vlddb.dcListHead, first);
    EXPECT_EQ(vlddb.dcListTail, other);
    glShutdownVELD();
    EXPECT_EQ(vlddb.dcListHead, nullptr);
}

TEST_F(Wgl, RefusalsSetTheErrorCode)
{
    EXPECT_EQ(wglCreateContext(nullptr), nullptr);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglCreateLayerContext(wsys_test_dc(0), 1), nullptr);
    EXPECT_EQ(lastError(), 0xC0000000u);
    HGLRC rc = wglCreateLayerContext(wsys_test_dc(0), 0);
    ASSERT_NE(rc, nullptr);
    EXPECT_EQ(lastError(), 0u);
    EXPECT_EQ(wglMakeCurrent(nullptr, rc), FALSE) << "a context needs a device context";
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglDeleteContext(nullptr), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglShareLists(rc, rc), TRUE);
}

TEST_F(Wgl, BadContextHandlesAreRefused)
{
    HGLRC live = wglCreateContext(wsys_test_dc(0));
    ASSERT_NE(live, nullptr);

    // Something that is no context at all, even one that looks like a zeroed context.
    alignas(16) static unsigned char notContext[sizeof(vld_context)];
    std::memset(notContext, 0, sizeof notContext);
    HGLRC wrongMagic = reinterpret_cast<HGLRC>(notContext);
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(0), wrongMagic), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglDeleteContext(wrongMagic), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    // Even with the right magic word: only the library's own contexts are contexts.
    reinterpret_cast<vld_context*>(notContext)->magic = VLD_CONTEXT_MAGIC;
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(0), wrongMagic), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);

    // A destroyed context.
    HGLRC gone = wglCreateContext(wsys_test_dc(1));
    ASSERT_EQ(wglDeleteContext(gone), TRUE);
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(1), gone), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglDeleteContext(gone), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(vlddb.initialised, 1) << "the refusals left the live context and the library alone";
    EXPECT_EQ(vlddb.contextListHead, ctx_of(live));
}

TEST_F(Wgl, SecondContextWhileOneIsCurrentTakesOver)
{
    HGLRC a = currentContext(0);
    HGLRC b = currentContext(1);
    EXPECT_EQ(wglGetCurrentContext(), b);
    EXPECT_EQ(wglGetCurrentDC(), wsys_test_dc(1));
    EXPECT_EQ(ctx_of(a)->currentCount, 0);
    EXPECT_EQ(vlddb.currentContexts, 1);
}

TEST_F(Wgl, SwapLayerBuffersSwapsOnlyTheMainPlane)
{
    currentContext(0);
    zvbTraceClear();
    EXPECT_EQ(wglSwapLayerBuffers(wsys_test_dc(0), 2), TRUE);
    EXPECT_FALSE(traced("grBufferSwap"));
    EXPECT_EQ(wglSwapLayerBuffers(wsys_test_dc(0), 1), TRUE);
    EXPECT_TRUE(traced("grBufferSwap 1")) << traceText();
    zvbTraceClear();
    EXPECT_EQ(SwapBuffers(nullptr), TRUE) << "the device context is not looked at";
    EXPECT_TRUE(traced("grBufferSwap 1")) << traceText();
}

} // namespace
