// The GL functions a scene may call, as one table of pointers.
//
// Both renderers of the image tests live in one process: zvgl2 (libzvgl2.so) and Mesa's
// OSMesa (libOSMesa.so.8) export the same gl names, so neither is linked into the test
// program. Each is opened with dlopen(RTLD_NOW | RTLD_LOCAL), which keeps its names out of
// the global scope (and so out of the other's symbol resolution), and the table below is
// filled from each handle with dlsym. A scene is written once against the table and run
// twice. The prototypes come from zvgl/gl.h; nothing of it is linked, decltype only reads
// the types.
#pragma once

#include <zvgl/gl.h>

// Every entry: IMG_GL(Name) stands for glName.
#define IMG_GL_FUNCTIONS(X) \
    X(AlphaFunc)            \
    X(Begin)                \
    X(BlendFunc)            \
    X(Clear)                \
    X(ClearColor)           \
    X(ClearDepth)           \
    X(Color3f)              \
    X(Color4f)              \
    X(ColorMaterial)        \
    X(CullFace)             \
    X(DepthFunc)            \
    X(DepthMask)            \
    X(Disable)              \
    X(Enable)               \
    X(End)                  \
    X(Finish)               \
    X(Fogf)                 \
    X(Fogfv)                \
    X(Fogi)                 \
    X(FrontFace)            \
    X(Frustum)              \
    X(Hint)                 \
    X(LightModelfv)         \
    X(LightModeli)          \
    X(Lightf)               \
    X(Lightfv)              \
    X(LoadIdentity)         \
    X(Materialf)            \
    X(Materialfv)           \
    X(MatrixMode)           \
    X(Normal3f)             \
    X(Ortho)                \
    X(PolygonOffset)        \
    X(PopMatrix)            \
    X(PushMatrix)           \
    X(Rotatef)              \
    X(Scalef)               \
    X(Scissor)              \
    X(ShadeModel)           \
    X(Translatef)           \
    X(Vertex2f)             \
    X(Vertex3f)             \
    X(Viewport)

struct GlTable {
#define IMG_GL_FIELD(name) decltype(&::gl##name) name = nullptr;
    IMG_GL_FUNCTIONS(IMG_GL_FIELD)
#undef IMG_GL_FIELD
};

// Fills `table` from an open library handle; returns the name of the first missing
// function, or null when all were found.
const char* fillGlTable(void* handle, GlTable& table);
