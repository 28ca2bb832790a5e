// The exported entry frames, every one of them expanded from the table of entries
// (vld_entries.h). A frame reads vldGc, decides by the two routing bytes of the context
// which layers receive the call, and forwards the arguments unchanged; the folded families
// convert their arguments once and forward to their one canonical entry.
//
// Names are spelt through VLD_FRAME_NAME and the layer macros of vld_layers.h, so that the
// frames can also be built under other names against recording layers (tests/api).
// Built against the library's own layers (not a test's recording layers): the per-vertex
// calls are then carried out inside their frames.
#if !defined(VLD_IM)
#define VLD_FRAMES_INLINE_LAYERS 1
#endif

#include "vld/api/vld_frames.h"

#include <type_traits>

#include "vld/api/vld_current.h"
#include "vld/api/vld_error.h"
#include "vld/api/vld_functab.h"

namespace {

// The colour-material bit of the capability word.
constexpr uint32_t kCapabilityColorMaterial = 0x80;

// The scale of the integer vector forms of colours: the largest GLint maps to 1.0.
constexpr float kIntColorScale = 1.0f / 2147483647.0f;

// The result of a frame that does not reach its layer: 0 of the function's type.
template <typename T>
T vld_zero()
{
    if constexpr (!std::is_void_v<T>)
        return T{};
}

// Arguments that a stub takes and ignores.
template <typename... A>
void vld_unused(const A&...)
{
}

// Gathers the first N components of a fold into c, as floats by a plain cast: from N scalar
// arguments or from one array. Components beyond N keep what the caller put there.
template <int N, typename... A>
void vld_components(float* c, A... a)
{
    if constexpr (sizeof...(A) == 1 && (std::is_pointer_v<A> && ...)) {
        const auto* v = (a, ...);
        for (int i = 0; i < N; ++i)
            c[i] = (float)v[i];
    } else {
        static_assert(sizeof...(A) == N, "a scalar fold passes one argument per component");
        int i = 0;
        ((c[i++] = (float)a), ...);
    }
}

// glVertex2*, glVertex3*: x, y and z (0 when absent) to glVertex3f.
template <int N, typename... A>
void vld_fold_glVertex3f(A... a)
{
    float c[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    vld_components<N>(c, a...);
    VLD_FRAME_NAME(glVertex3f)(c[0], c[1], c[2]);
}

// glRasterPos*: four floats, z = 0 and w = 1 where absent.
template <int N, typename... A>
void vld_fold_glRasterPos4fv(A... a)
{
    float c[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    vld_components<N>(c, a...);
    VLD_FRAME_NAME(glRasterPos4fv)(c);
}

// glTexCoord1* to glTexCoord3*: s and t survive (t = 0 for one coordinate), r is dropped.
template <int N, typename... A>
void vld_fold_glTexCoord2fv(A... a)
{
    float c[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    vld_components<N>(c, a...);
    const float st[2] = {c[0], c[1]};
    VLD_FRAME_NAME(glTexCoord2fv)(st);
}

// glMultiTexCoord*SGIS: the target unchanged, then s, t, r, q (t = 0, r = 0, q = 1 where
// absent); the layer keeps s and t of the set that the target selects.
template <int N, typename... A>
void vld_fold_glMultiTexCoord4fvSGIS(GLenum target, A... a)
{
    float c[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    vld_components<N>(c, a...);
    VLD_FRAME_NAME(glMultiTexCoord4fvSGIS)(target, c);
}

// The factor of a homogeneous form: 1/last, or 1 when last is 0 (the leading components
// then pass unchanged).
inline float vld_homogeneous_factor(float last)
{
    return last != 0.0f ? 1.0f / last : 1.0f;
}

// glVertex4*: x, y, z times 1/w, w dropped.
template <typename... A>
void vld_divide_glVertex3f(A... a)
{
    float c[4];
    vld_components<4>(c, a...);
    const float f = vld_homogeneous_factor(c[3]);
    VLD_FRAME_NAME(glVertex3f)(c[0] * f, c[1] * f, c[2] * f);
}

// glTexCoord4*: s, t times 1/q, r and q dropped.
template <typename... A>
void vld_divide_glTexCoord2fv(A... a)
{
    float c[4];
    vld_components<4>(c, a...);
    const float f = vld_homogeneous_factor(c[3]);
    const float st[2] = {c[0] * f, c[1] * f};
    VLD_FRAME_NAME(glTexCoord2fv)(st);
}

// glRect*: a polygon of four corners, counter-clockwise from (x1, y1), through the
// glVertex2 form of the same type; so a rectangle is recorded into a list as a polygon.
template <typename T>
void vld_rect(void(APIENTRY* vertex)(T, T), T x1, T y1, T x2, T y2)
{
    VLD_FRAME_NAME(glBegin)(GL_POLYGON);
    vertex(x1, y1);
    vertex(x2, y1);
    vertex(x2, y2);
    vertex(x1, y2);
    VLD_FRAME_NAME(glEnd)();
}

template <typename T>
void vld_rect(void(APIENTRY* vertex)(T, T), const T* v1, const T* v2)
{
    vld_rect(vertex, v1[0], v1[1], v2[0], v2[1]);
}

// A scalar parameter call: the value as the first of four floats, so that a layer reading a
// two-value parameter from a scalar form reads zeros, not beyond the value.
template <typename T>
void vld_fold_param(void(APIENTRY* vector)(GLenum, GLenum, const GLfloat*), GLenum a, GLenum pname,
                    T param)
{
    const float v[4] = {(float)param, 0.0f, 0.0f, 0.0f};
    vector(a, pname, v);
}

// Converts n values of an integer or double vector by a plain cast, or, with scale, by
// multiplying each by it.
template <typename T>
void vld_convert(const T* in, int n, float* out, float scale = 0.0f)
{
    for (int i = 0; i < n; ++i)
        out[i] = scale != 0.0f ? (float)in[i] * scale : (float)in[i];
}

// glTexEnviv: the colour as four words scaled to 0..1, the mode as a scalar; any other
// parameter is an error of the frame.
void vld_param_vec_glTexEnvfv(GLenum target, GLenum pname, const GLint* params)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    float v[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    switch (pname) {
    case GL_TEXTURE_ENV_COLOR:
        vld_convert(params, 4, v, kIntColorScale);
        break;
    case GL_TEXTURE_ENV_MODE:
        vld_convert(params, 1, v);
        break;
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
    VLD_FRAME_NAME(glTexEnvfv)(target, pname, v);
}

// glTexParameteriv: the border colour scaled to 0..1, the library's level-of-detail bias as
// its two words, the other parameters that textures know as a scalar; anything else is an
// error of the frame.
void vld_param_vec_glTexParameterfv(GLenum target, GLenum pname, const GLint* params)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    float v[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    switch (pname) {
    case GL_TEXTURE_BORDER_COLOR:
        vld_convert(params, 4, v, kIntColorScale);
        break;
    case GL_TEXTURE_LOD_BIAS_VELD:
        vld_convert(params, 2, v);
        break;
    case GL_TEXTURE_MIN_FILTER:
    case GL_TEXTURE_MAG_FILTER:
    case GL_TEXTURE_WRAP_S:
    case GL_TEXTURE_WRAP_T:
    case GL_TEXTURE_WRAP_R_EXT:
    case GL_TEXTURE_PRIORITY:
    case GL_DETAIL_TEXTURE_LEVEL_SGIS:
    case GL_DETAIL_TEXTURE_MODE_SGIS:
    // Parameters of other extensions that textures accept and ignore.
    case 0x80BF: case 0x8124: case 0x8125: case 0x8137: case 0x813A: case 0x813B:
    case 0x813C: case 0x813D: case 0x8172: case 0x819A: case 0x819B:
        vld_convert(params, 1, v);
        break;
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
    VLD_FRAME_NAME(glTexParameterfv)(target, pname, v);
}

// glTexGeniv, glTexGendv: the mode as a scalar, a plane as four values, by a plain cast;
// anything else is an error of the frame.
template <typename T>
void vld_param_vec_glTexGenfv(GLenum coord, GLenum pname, const T* params)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    float v[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    switch (pname) {
    case GL_TEXTURE_GEN_MODE:
        vld_convert(params, 1, v);
        break;
    case GL_OBJECT_PLANE:
    case GL_EYE_PLANE:
        vld_convert(params, 4, v);
        break;
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
    VLD_FRAME_NAME(glTexGenfv)(coord, pname, v);
}

// glEnable's one line beyond the routing rule: a list compiled without being executed
// still turns colour material on at once, because the list compiler needs to know it while
// it builds faces. glDisable has no such line.
inline void vld_enable_compiled_only(GLenum cap)
{
    if (cap == GL_COLOR_MATERIAL)
        vldGc->enable.capabilityBits |= kCapabilityColorMaterial;
}

// How a frame calls an immediate-layer function `Layer`, as to the vertex template
// (vld_current.h): the call may change an attribute that the template copies, so the frame
// drops the template first, and then jumps to the layer.
// Whether a call was carried out on a short way before any routing: only the per-vertex
// setters below have one.
struct vld_no_shortcut {
    template <typename... A>
    static bool shortcut(vld_context*, A...)
    {
        return false;
    }
};

template <auto Layer>
struct vld_immediate : vld_no_shortcut {
    template <typename... A>
    static auto call(vld_context* ctx, A... a)
    {
        ctx->vertexTemplateLive = VLD_TEMPLATE_DEAD;
        return Layer(a...);
    }
};

// The direct layer: capture keeps the template by itself (glBegin builds it, glEnd drops
// it, glVertex3f reads it). The list calls change the routing bytes, on which the setters'
// short ways depend, so their frames drop the template first.
template <auto Layer>
inline constexpr bool vld_capture_call = false;
template <>
inline constexpr bool vld_capture_call<&VLD_DO(Begin)> = true;
template <>
inline constexpr bool vld_capture_call<&VLD_DO(End)> = true;
template <>
inline constexpr bool vld_capture_call<&VLD_DO(Vertex3f)> = true;

template <auto Layer>
struct vld_direct {
    template <typename... A>
    static auto call(A... a)
    {
        if constexpr (!vld_capture_call<Layer>) {
            if (vld_context* ctx = vldGc)
                ctx->vertexTemplateLive = VLD_TEMPLATE_DEAD;
        }
        return Layer(a...);
    }
};

#if VLD_FRAMES_INLINE_LAYERS
// Setters that keep the template current themselves: the frame leaves it as it is.
template <auto Layer>
struct vld_immediate_keeping : vld_no_shortcut {
    template <typename... A>
    static auto call(vld_context*, A... a)
    {
        return Layer(a...);
    }
};

#define VLD_KEEPS_TEMPLATE(impl)                                                               \
    template <>                                                                                \
    struct vld_immediate<&__vldim_##impl> : vld_immediate_keeping<&__vldim_##impl> {           \
    };
// Every colour and normal form but glColor3f and glNormal3f, which follow in full.
#define VLD_KEEPING_COLOR(sfx)                                                                 \
    VLD_KEEPS_TEMPLATE(Color3##sfx) VLD_KEEPS_TEMPLATE(Color3##sfx##v)                         \
    VLD_KEEPS_TEMPLATE(Color4##sfx) VLD_KEEPS_TEMPLATE(Color4##sfx##v)
VLD_KEEPING_COLOR(b)
VLD_KEEPING_COLOR(s)
VLD_KEEPING_COLOR(i)
VLD_KEEPING_COLOR(ub)
VLD_KEEPING_COLOR(us)
VLD_KEEPING_COLOR(ui)
VLD_KEEPING_COLOR(d)
VLD_KEEPS_TEMPLATE(Color3fv)
VLD_KEEPS_TEMPLATE(Color4f)
VLD_KEEPS_TEMPLATE(Color4fv)
#define VLD_KEEPING_NORMAL(sfx) VLD_KEEPS_TEMPLATE(Normal3##sfx) VLD_KEEPS_TEMPLATE(Normal3##sfx##v)
VLD_KEEPING_NORMAL(b)
VLD_KEEPING_NORMAL(s)
VLD_KEEPING_NORMAL(i)
VLD_KEEPING_NORMAL(d)
VLD_KEEPS_TEMPLATE(Normal3fv)
VLD_KEEPS_TEMPLATE(Materialf)
VLD_KEEPS_TEMPLATE(Materialfv)
VLD_KEEPS_TEMPLATE(Materiali)
VLD_KEEPS_TEMPLATE(Materialiv)
VLD_KEEPS_TEMPLATE(ColorMaterial)
#undef VLD_KEEPING_COLOR
#undef VLD_KEEPING_NORMAL
#undef VLD_KEEPS_TEMPLATE

// The texture-coordinate calls set coordinates that the template copies: they renew its
// coordinates after the call.
template <auto Layer>
struct vld_immediate_texcoords : vld_no_shortcut {
    template <typename... A>
    static void call(vld_context* ctx, A... a)
    {
        Layer(a...);
        if ((ctx = vldGc))
            vld_template_texcoords(ctx);
    }
};
template <>
struct vld_immediate<&__vldim_TexCoord2fv> : vld_immediate_texcoords<&__vldim_TexCoord2fv> {
};
template <>
struct vld_immediate<&__vldim_MultiTexCoord4fvSGIS> : vld_immediate_texcoords<&__vldim_MultiTexCoord4fvSGIS> {
};

// The per-vertex calls, carried out in the frame with the context it has read. Inside a
// primitive whose template allows it, the call takes its short way before the routing: the
// value goes straight into the context and the template.
template <>
struct vld_immediate<&__vldim_Color3f> {
    static void call(vld_context* ctx, GLfloat r, GLfloat g, GLfloat b)
    {
        vld_set_current_color(ctx, r, g, b, 1.0f);
    }
    static bool shortcut(vld_context* ctx, GLfloat r, GLfloat g, GLfloat b)
    {
        return vld_set_current_color_short(ctx, r, g, b, 1.0f);
    }
};
template <>
struct vld_immediate<&__vldim_Normal3f> {
    static void call(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z)
    {
        vld_set_current_normal(ctx, x, y, z);
    }
    static bool shortcut(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z)
    {
        return vld_set_current_normal_short(ctx, x, y, z);
    }
};
template <>
struct vld_direct<&__vlddo_Vertex3f> {
    static void call(GLfloat x, GLfloat y, GLfloat z)
    {
        if (vld_context* ctx = vldGc)
            vld_vertex3f(ctx, x, y, z);
    }
};
#endif

} // namespace

#define VLD_UNPAREN(...) __VA_ARGS__

// A layer's arguments behind the context: (ctx, a, b...) from (a, b...).
#define VLD_WITH_CTX(...) (ctx __VA_OPT__(, ) __VA_ARGS__)
#define VLD_CALL_IM(impl, args) vld_immediate<&VLD_IM(impl)>::call VLD_WITH_CTX args

// ---- One macro a kind ----------------------------------------------------------------------

// The shared head of the routed frames: no context, nothing; while compiling, the list layer
// first, then vldGc is read again (the list layer may have ended the context).
#define VLD_FRAME_COMPILE_FIRST(impl, args)                                                    \
        vld_context* ctx = vldGc;                                                              \
        if (!ctx)                                                                              \
            return;                                                                            \
        if (ctx->compileFlag) {                                                                \
            VLD_LC(impl) args;                                                                 \
            if (!(ctx = vldGc))                                                                \
                return;                                                                        \
        }

// The routing rule: no context, nothing; compile first, then execute, reading vldGc again
// between the two. The compiling case is a function of its own, so that the frame of a
// call that only executes saves nothing and ends in a jump to its layer.
#define VLD_FRAME_KIND_ROUTED(ret, name, params, args, impl)                                   \
    [[gnu::noinline]] static ret vld_compiling_##name params                                   \
    {                                                                                          \
        VLD_LC(impl) args;                                                                     \
        vld_context* ctx = vldGc;                                                              \
        if (ctx && ctx->executeFlag)                                                           \
            VLD_CALL_IM(impl, args);                                                           \
    }                                                                                          \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        vld_context* ctx = vldGc;                                                              \
        if (!ctx)                                                                              \
            return;                                                                            \
        if (vld_immediate<&VLD_IM(impl)>::shortcut VLD_WITH_CTX args)                          \
            return;                                                                            \
        if (ctx->compileFlag)                                                                  \
            return vld_compiling_##name args;                                                  \
        if (ctx->executeFlag)                                                                  \
            VLD_CALL_IM(impl, args);                                                           \
    }

#define VLD_FRAME_KIND_ROUTED_ENABLE(ret, name, params, args, impl)                            \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        VLD_FRAME_COMPILE_FIRST(impl, args)                                                    \
        if (ctx->executeFlag)                                                                  \
            VLD_CALL_IM(impl, args);                                                           \
        else                                                                                   \
            vld_enable_compiled_only args;                                                     \
    }

// glStencilOp: both branches record; the immediate form is reached only from a list.
#define VLD_FRAME_KIND_ROUTED_STENCILOP(ret, name, params, args, impl)                         \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        VLD_FRAME_COMPILE_FIRST(impl, args)                                                    \
        if (ctx->executeFlag)                                                                  \
            VLD_LC(impl) args;                                                                 \
    }

// Queries and other calls that act at once whatever the flags, and never go into a list.
#define VLD_FRAME_KIND_QUERY(ret, name, params, args, impl)                                    \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        vld_context* ctx = vldGc;                                                              \
        if (!ctx)                                                                              \
            return vld_zero<ret>();                                                            \
        return VLD_CALL_IM(impl, args);                                                        \
    }

// glReadPixels: as a query, but only while executing.
#define VLD_FRAME_KIND_QUERY_EXEC(ret, name, params, args, impl)                               \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        vld_context* ctx = vldGc;                                                              \
        if (!ctx || !ctx->executeFlag)                                                         \
            return vld_zero<ret>();                                                            \
        return VLD_CALL_IM(impl, args);                                                        \
    }

// The direct layer tests the context and routes by itself.
#define VLD_FRAME_KIND_DIRECT(ret, name, params, args, impl)                                   \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        return vld_direct<&VLD_DO(impl)>::call args;                                           \
    }

// glEnableImmVELD, glDisableImmVELD: the immediate layer even while compiling. The caller
// must have a current context; without one the call is dropped rather than followed.
#define VLD_FRAME_KIND_IMM_NOTEST(ret, name, params, args, impl)                               \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        vld_context* ctx = vldGc;                                                              \
        if (!ctx)                                                                              \
            return vld_zero<ret>();                                                            \
        return VLD_CALL_IM(impl, args);                                                        \
    }

#define VLD_FRAME_FOLD_N(n, name, params, args, impl)                                          \
    extern "C" void APIENTRY VLD_FRAME_NAME(name) params                                       \
    {                                                                                          \
        vld_fold_##impl<n>(VLD_UNPAREN args);                                                  \
    }
#define VLD_FRAME_KIND_FOLD1(ret, name, params, args, impl) VLD_FRAME_FOLD_N(1, name, params, args, impl)
#define VLD_FRAME_KIND_FOLD2(ret, name, params, args, impl) VLD_FRAME_FOLD_N(2, name, params, args, impl)
#define VLD_FRAME_KIND_FOLD3(ret, name, params, args, impl) VLD_FRAME_FOLD_N(3, name, params, args, impl)
#define VLD_FRAME_KIND_FOLD4(ret, name, params, args, impl) VLD_FRAME_FOLD_N(4, name, params, args, impl)

#define VLD_FRAME_KIND_FOLD_DIVIDE(ret, name, params, args, impl)                              \
    extern "C" void APIENTRY VLD_FRAME_NAME(name) params { vld_divide_##impl(VLD_UNPAREN args); }

#define VLD_FRAME_KIND_FOLD_RECT(ret, name, params, args, impl)                                \
    extern "C" void APIENTRY VLD_FRAME_NAME(name) params                                       \
    {                                                                                          \
        vld_rect(&VLD_FRAME_NAME(impl), VLD_UNPAREN args);                                     \
    }

#define VLD_FRAME_KIND_FOLD_PARAM(ret, name, params, args, impl)                               \
    extern "C" void APIENTRY VLD_FRAME_NAME(name) params                                       \
    {                                                                                          \
        vld_fold_param(&VLD_FRAME_NAME(impl), VLD_UNPAREN args);                               \
    }

#define VLD_FRAME_KIND_FOLD_PARAM_VEC(ret, name, params, args, impl)                           \
    extern "C" void APIENTRY VLD_FRAME_NAME(name) params { vld_param_vec_##impl(VLD_UNPAREN args); }

// Not implemented: reported once per start-up, GL_INVALID_OPERATION at every call.
#define VLD_FRAME_KIND_STUB(ret, name, params, args, impl)                                     \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        vld_unused args;                                                                       \
        vldFunctionNotImplemented(VLD_ROW_##name);                                             \
        return vld_zero<ret>();                                                                \
    }
#define VLD_FRAME_KIND_WGL_STUB VLD_FRAME_KIND_STUB

// The GDI names are their wgl twins.
#define VLD_FRAME_KIND_GDI(ret, name, params, args, impl)                                      \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params { return VLD_FRAME_NAME(impl) args; }

// Bodies of their own elsewhere, or no function at all.
#define VLD_FRAME_KIND_WGL(ret, name, params, args, impl)
#define VLD_FRAME_KIND_OWN(ret, name, params, args, impl)
#define VLD_FRAME_KIND_NAME(ret, name, params, args, impl)

#define VLD_FRAME_ROW(ret, name, params, args, kind, impl)                                     \
    VLD_FRAME_KIND_##kind(ret, name, params, args, impl)

VLD_GL_ENTRIES(VLD_FRAME_ROW)
VLD_EXT_ENTRIES(VLD_FRAME_ROW)
