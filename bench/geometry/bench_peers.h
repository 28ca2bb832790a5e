// The two peers of the immediate-mode benchmarks, driven through one table of GL calls so
// that both receive exactly the same commands:
//   - the library, on a context made through wgl, its triangles ending in the software
//     board in count-only mode (the board counts what it is given and draws nothing);
//   - Mesa through OSMesa (llvmpipe with one thread), loaded at run time with its names kept
//     local, drawing into a 1x1 buffer and viewport.
#pragma once

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>

#include <cstdint>

#include <zvgl/board_tool.h>
#include <zvgl/gl.h>
#include <zvgl/wgl.h>

// The GL calls of one peer.
struct GlTable {
    void(APIENTRY* begin)(GLenum);
    void(APIENTRY* end)();
    void(APIENTRY* color3f)(GLfloat, GLfloat, GLfloat);
    void(APIENTRY* normal3f)(GLfloat, GLfloat, GLfloat);
    void(APIENTRY* vertex3f)(GLfloat, GLfloat, GLfloat);
    void(APIENTRY* viewport)(GLint, GLint, GLsizei, GLsizei);
    void(APIENTRY* matrixMode)(GLenum);
    void(APIENTRY* loadIdentity)();
    void(APIENTRY* frustum)(GLdouble, GLdouble, GLdouble, GLdouble, GLdouble, GLdouble);
    void(APIENTRY* enable)(GLenum);
    void(APIENTRY* disable)(GLenum);
    void(APIENTRY* lightfv)(GLenum, GLenum, const GLfloat*);
    void(APIENTRY* shadeModel)(GLenum);
    void(APIENTRY* hint)(GLenum, GLenum);
    void(APIENTRY* finish)();
    const GLubyte*(APIENTRY* getString)(GLenum);
};

// Process set-up shared by both peers: Mesa's rasteriser on one thread, the board counting
// instead of drawing. Must run before either peer starts.
inline void bench_environment()
{
    setenv("LP_NUM_THREADS", "1", 1);
    setenv("ZVGL_BOARD_COUNT_ONLY", "1", 1);
}

// The library's peer: a context made through wgl on a made-up device context (handles are
// opaque here), which opens the software board, in count-only mode, at make-current.
struct ZvglPeer {
    HDC dc = reinterpret_cast<HDC>((uintptr_t)0x1000);
    HGLRC rc = nullptr;
    bool boardOpen = false;
    GlTable gl{};

    ZvglPeer()
    {
        zvbSetOption("ZVGL_BOARD_COUNT_ONLY", "1");
        rc = wglCreateContext(dc);
        boardOpen = rc && wglMakeCurrent(dc, rc) == TRUE;
        gl = GlTable{glBegin,  glEnd,     glColor3f,  glNormal3f,  glVertex3f, glViewport,
                     glMatrixMode, glLoadIdentity, glFrustum, glEnable, glDisable, glLightfv,
                     glShadeModel, glHint,    glFinish,   glGetString};
    }

    ~ZvglPeer()
    {
        wglMakeCurrent(nullptr, nullptr);
        if (rc)
            wglDeleteContext(rc);
    }

    // Triangles the board has been handed since its window opened.
    uint64_t triangles() const
    {
        ZvbPrimitiveCounts c{};
        return zvbGetPrimitiveCounts(0, &c) == 0 ? c.triangles : 0;
    }
};

// Mesa's peer: OSMesa opened at run time, a 1x1 RGBA buffer with a 16-bit depth buffer.
struct MesaPeer {
    using Context = void*;
    void* module = nullptr;
    Context context = nullptr;
    unsigned char pixel[4] = {};
    GlTable gl{};
    const char* error = nullptr;

    MesaPeer()
    {
        module = dlopen("libOSMesa.so.8", RTLD_NOW | RTLD_LOCAL);
        if (!module)
            module = dlopen("libOSMesa.so", RTLD_NOW | RTLD_LOCAL);
        if (!module) {
            error = "OSMesa is not installed (libosmesa6-dev)";
            return;
        }
        auto create = (Context(*)(GLenum, GLint, GLint, GLint, Context))dlsym(module, "OSMesaCreateContextExt");
        auto makeCurrent = (GLboolean(*)(Context, void*, GLenum, GLsizei, GLsizei))dlsym(module, "OSMesaMakeCurrent");
        context = create ? create(GL_RGBA, 16, 0, 0, nullptr) : nullptr;
        if (!context || !makeCurrent || !makeCurrent(context, pixel, GL_UNSIGNED_BYTE, 1, 1)) {
            error = "no OSMesa context";
            return;
        }
        load(gl.begin, "glBegin");
        load(gl.end, "glEnd");
        load(gl.color3f, "glColor3f");
        load(gl.normal3f, "glNormal3f");
        load(gl.vertex3f, "glVertex3f");
        load(gl.viewport, "glViewport");
        load(gl.matrixMode, "glMatrixMode");
        load(gl.loadIdentity, "glLoadIdentity");
        load(gl.frustum, "glFrustum");
        load(gl.enable, "glEnable");
        load(gl.disable, "glDisable");
        load(gl.lightfv, "glLightfv");
        load(gl.shadeModel, "glShadeModel");
        load(gl.hint, "glHint");
        load(gl.finish, "glFinish");
        load(gl.getString, "glGetString");
    }

    ~MesaPeer()
    {
        if (context) {
            auto destroy = (void (*)(Context))dlsym(module, "OSMesaDestroyContext");
            if (destroy)
                destroy(context);
        }
        if (module)
            dlclose(module);
    }

    template <typename F>
    void load(F& f, const char* name)
    {
        f = (F)dlsym(module, name);
        if (!f)
            error = "OSMesa lacks a GL call the benchmark makes";
    }
};
