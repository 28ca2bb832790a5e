// zvgl2 and OSMesa, each opened privately with dlopen (see gl_table.h for why), and the
// read-back of a frame from each.
#include "renderers.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include <dlfcn.h>

#include <zvgl/board_tool.h>
#include <zvgl/wgl.h>

const char* fillGlTable(void* handle, GlTable& table)
{
#define IMG_GL_FILL(name)                                                             \
    table.name = reinterpret_cast<decltype(table.name)>(dlsym(handle, "gl" #name));   \
    if (!table.name)                                                                  \
        return "gl" #name;
    IMG_GL_FUNCTIONS(IMG_GL_FILL)
#undef IMG_GL_FILL
    return nullptr;
}

namespace {

// ---- zvgl2 -------------------------------------------------------------------------------

// The made-up device context of the tests: on POSIX a device context's window is the handle
// value itself, so any non-null value names a window.
HDC const kTestDc = reinterpret_cast<HDC>(static_cast<uintptr_t>(0x1e5));

struct ZvglLibrary {
    void* handle = nullptr;
    std::string error;
    GlTable gl;
    decltype(&::wglChoosePixelFormat) choosePixelFormat = nullptr;
    decltype(&::wglSetPixelFormat) setPixelFormat = nullptr;
    decltype(&::wglCreateContext) createContext = nullptr;
    decltype(&::wglMakeCurrent) makeCurrent = nullptr;
    decltype(&::wglDeleteContext) deleteContext = nullptr;
};

// Opens libzvgl2 once. The board runs in the caller's thread (simpler to reason about in a
// test; the pixels are the same), and the window is 512 x 384, the smallest a Voodoo2 opens.
ZvglLibrary& zvglLibrary()
{
    static ZvglLibrary lib = [] {
        ZvglLibrary l;
        setenv("ZVGL_BOARD_SYNC", "1", 0);
        setenv("KS_ENV_RESOLUTION_DEFAULT", "512x384", 0);
        l.handle = dlopen(ZVGL_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
        if (!l.handle) {
            const char* why = dlerror();
            l.error = std::string("cannot open " ZVGL_LIBRARY_PATH ": ") + (why ? why : "?");
            return l;
        }
        if (const char* missing = fillGlTable(l.handle, l.gl)) {
            l.error = std::string("libzvgl2 lacks ") + missing;
            return l;
        }
        l.choosePixelFormat = reinterpret_cast<decltype(l.choosePixelFormat)>(dlsym(l.handle, "wglChoosePixelFormat"));
        l.setPixelFormat = reinterpret_cast<decltype(l.setPixelFormat)>(dlsym(l.handle, "wglSetPixelFormat"));
        l.createContext = reinterpret_cast<decltype(l.createContext)>(dlsym(l.handle, "wglCreateContext"));
        l.makeCurrent = reinterpret_cast<decltype(l.makeCurrent)>(dlsym(l.handle, "wglMakeCurrent"));
        l.deleteContext = reinterpret_cast<decltype(l.deleteContext)>(dlsym(l.handle, "wglDeleteContext"));
        if (!l.choosePixelFormat || !l.setPixelFormat || !l.createContext || !l.makeCurrent || !l.deleteContext)
            l.error = "libzvgl2 lacks a wgl function";
        return l;
    }();
    return lib;
}

// Expands one RGB565 pixel to 8 bits a channel, replicating the high bits into the low ones.
void expand565(uint16_t p, uint8_t* out)
{
    unsigned r = (p >> 11) & 31, g = (p >> 5) & 63, b = p & 31;
    out[0] = (uint8_t)((r << 3) | (r >> 2));
    out[1] = (uint8_t)((g << 2) | (g >> 4));
    out[2] = (uint8_t)((b << 3) | (b >> 2));
}

// A context of zvgl2 current on the test device context for the life of the object.
struct ZvglContext {
    ZvglLibrary& lib;
    HGLRC ctx = nullptr;
    std::string error;

    explicit ZvglContext(ZvglLibrary& l) : lib(l)
    {
        PIXELFORMATDESCRIPTOR pfd;
        std::memset(&pfd, 0, sizeof pfd);
        pfd.nSize = sizeof pfd;
        pfd.nVersion = 1;
        pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
        pfd.iPixelType = PFD_TYPE_RGBA;
        pfd.cColorBits = 16;
        pfd.cDepthBits = 16;
        int format = lib.choosePixelFormat(kTestDc, &pfd);
        if (format <= 0) {
            error = "wglChoosePixelFormat found no format";
            return;
        }
        if (!lib.setPixelFormat(kTestDc, format, &pfd)) {
            error = "wglSetPixelFormat failed";
            return;
        }
        ctx = lib.createContext(kTestDc);
        if (!ctx) {
            error = "wglCreateContext failed";
            return;
        }
        if (!lib.makeCurrent(kTestDc, ctx))
            error = "wglMakeCurrent failed";
    }

    ~ZvglContext()
    {
        if (ctx) {
            lib.makeCurrent(nullptr, nullptr);
            lib.deleteContext(ctx);
        }
    }
};

// ---- OSMesa ------------------------------------------------------------------------------

using OSMesaContextHandle = void*;
using CreateContextExtFn = OSMesaContextHandle (*)(GLenum format, GLint depthBits, GLint stencilBits,
                                                   GLint accumBits, OSMesaContextHandle share);
using MakeCurrentFn = GLboolean (*)(OSMesaContextHandle ctx, void* buffer, GLenum type, GLsizei width,
                                    GLsizei height);
using DestroyContextFn = void (*)(OSMesaContextHandle ctx);
using GetProcAddressFn = void* (*)(const char* name);

struct MesaLibrary {
    void* handle = nullptr;
    std::string error;
    GlTable gl;
    CreateContextExtFn createContext = nullptr;
    MakeCurrentFn makeCurrent = nullptr;
    DestroyContextFn destroyContext = nullptr;
};

// Opens OSMesa once. Its gl names live in libglapi behind it; OSMesaGetProcAddress gives
// every one of them.
MesaLibrary& mesaLibrary()
{
    static MesaLibrary lib = [] {
        MesaLibrary l;
        l.handle = dlopen("libOSMesa.so.8", RTLD_NOW | RTLD_LOCAL);
        if (!l.handle) {
            const char* why = dlerror();
            l.error = std::string("cannot open libOSMesa.so.8: ") + (why ? why : "?");
            return l;
        }
        l.createContext = reinterpret_cast<CreateContextExtFn>(dlsym(l.handle, "OSMesaCreateContextExt"));
        l.makeCurrent = reinterpret_cast<MakeCurrentFn>(dlsym(l.handle, "OSMesaMakeCurrent"));
        l.destroyContext = reinterpret_cast<DestroyContextFn>(dlsym(l.handle, "OSMesaDestroyContext"));
        auto getProc = reinterpret_cast<GetProcAddressFn>(dlsym(l.handle, "OSMesaGetProcAddress"));
        if (!l.createContext || !l.makeCurrent || !l.destroyContext || !getProc) {
            l.error = "libOSMesa lacks an OSMesa function";
            return l;
        }
#define IMG_GL_MESA(name)                                                              \
    l.gl.name = reinterpret_cast<decltype(l.gl.name)>(getProc("gl" #name));            \
    if (!l.gl.name) {                                                                  \
        l.error = "OSMesa lacks gl" #name;                                             \
        return l;                                                                      \
    }
        IMG_GL_FUNCTIONS(IMG_GL_MESA)
#undef IMG_GL_MESA
        return l;
    }();
    return lib;
}

} // namespace

Rendering renderZvgl(const Scene& scene)
{
    Rendering r;
    ZvglLibrary& lib = zvglLibrary();
    if (!lib.error.empty()) {
        r.error = lib.error;
        return r;
    }
    ZvglContext context(lib);
    if (!context.error.empty()) {
        r.error = context.error;
        return r;
    }
    scene(lib.gl);
    lib.gl.Finish();
    ZvbBuffers buffers;
    if (zvbGetBuffers(0, &buffers) != 0) {
        r.error = "zvbGetBuffers: the board has no open window";
        return r;
    }
    r.screenWidth = buffers.width;
    r.screenHeight = buffers.height;
    if (buffers.width < kFrameWidth || buffers.height < kFrameHeight) {
        r.error = "the window is smaller than the frame";
        return r;
    }
    // The frame is the lower left of the window: GL's row y is the buffer's row
    // height - 1 - y, as the board keeps its rows top-down.
    const uint16_t* colour = buffers.colour[buffers.back];
    r.frame = makeImage(kFrameWidth, kFrameHeight);
    for (int row = 0; row < kFrameHeight; ++row) {
        const uint16_t* src = colour + (size_t)(buffers.height - kFrameHeight + row) * buffers.width;
        for (int x = 0; x < kFrameWidth; ++x)
            expand565(src[x], r.frame.at(x, row));
    }
    r.ok = true;
    return r;
}

Rendering renderMesa(const Scene& scene, int screenWidth, int screenHeight)
{
    Rendering r;
    MesaLibrary& lib = mesaLibrary();
    if (!lib.error.empty()) {
        r.error = lib.error;
        return r;
    }
    OSMesaContextHandle ctx = lib.createContext(GL_RGBA, 24, 0, 0, nullptr);
    if (!ctx) {
        r.error = "OSMesaCreateContextExt failed";
        return r;
    }
    std::vector<uint8_t> pixels((size_t)screenWidth * screenHeight * 4, 0);
    if (!lib.makeCurrent(ctx, pixels.data(), GL_UNSIGNED_BYTE, screenWidth, screenHeight)) {
        lib.destroyContext(ctx);
        r.error = "OSMesaMakeCurrent failed";
        return r;
    }
    scene(lib.gl);
    lib.gl.Finish();
    // OSMesa keeps row 0 at the bottom (GL's order).
    r.frame = makeImage(kFrameWidth, kFrameHeight);
    for (int row = 0; row < kFrameHeight; ++row) {
        const uint8_t* src = &pixels[(size_t)(kFrameHeight - 1 - row) * screenWidth * 4];
        for (int x = 0; x < kFrameWidth; ++x)
            std::memcpy(r.frame.at(x, row), src + x * 4, 3);
    }
    lib.makeCurrent(nullptr, nullptr, GL_UNSIGNED_BYTE, 0, 0);
    lib.destroyContext(ctx);
    r.screenWidth = screenWidth;
    r.screenHeight = screenHeight;
    r.ok = true;
    return r;
}

bool traceZvgl(const Scene& scene, const std::function<void()>& inspect, std::string* error)
{
    ZvglLibrary& lib = zvglLibrary();
    if (!lib.error.empty()) {
        *error = lib.error;
        return false;
    }
    ZvglContext context(lib);
    if (!context.error.empty()) {
        *error = context.error;
        return false;
    }
    zvbTraceClear();
    zvbTraceEnable(1);
    scene(lib.gl);
    lib.gl.Finish();
    zvbTraceEnable(0);
    inspect();
    zvbTraceClear();
    return true;
}
