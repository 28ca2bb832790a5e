// Per-fragment raster state and its mapping onto the board: alpha test, blending, the
// w-buffer depth state, polygon offset, face culling signs, polygon modes, smoothing,
// line and point sizes, hints, scissor, colour mask, draw buffer, clear values, stencil.
//
// Write-through: each command stores its state in the context and calls Glide at once.
#include <glide2/glide.h>

#include "vld/api/vld_error.h"
#include "vld/state/state.h"

namespace {

bool vld_has_alpha_buffer(const vld_unit* unit)
{
    return unit && unit->alphaBuffer;
}

bool vld_has_depth_buffer(const vld_unit* unit)
{
    return unit && unit->depthBuffer;
}

bool vld_surface_open(const vld_unit* unit)
{
    return unit && unit->windowOpen;
}

float vld_clamp01(float v)
{
    return v < 0.0f ? 0.0f : (v > 1.0f ? 1.0f : v);
}

// Reports GL_INVALID_OPERATION and answers true between glBegin and glEnd.
bool vld_inside_begin(vld_context* ctx)
{
    if (!ctx->inBeginEnd)
        return false;
    VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
    return true;
}

bool vld_valid_hint_mode(GLenum mode)
{
    return mode == GL_DONT_CARE || mode == GL_FASTEST || mode == GL_NICEST;
}

bool vld_valid_face(GLenum face)
{
    return face == GL_FRONT || face == GL_BACK || face == GL_FRONT_AND_BACK;
}

} // namespace

// ---------------------------------------------------------------------------------------
// Mappings.

int KSP_vld_map_compare(GLenum func)
{
    if (func < GL_NEVER || func > GL_ALWAYS)
        return -1;
    return (int)(func - GL_NEVER);
}

// The board's blend factor for a GL factor. Two rows differ from what the names suggest
// (GL_SRC_COLOR and GL_ONE_MINUS_SRC_COLOR), and without an alpha buffer the factors that
// read destination alpha fall back to a constant: both are kept as the library has always
// programmed them.
int KSP_vld_map_blend_factor(GLenum factor, int hasAlphaBuffer)
{
    switch (factor) {
    case GL_ZERO: return GR_BLEND_ZERO;
    case GL_ONE: return GR_BLEND_ONE;
    case GL_SRC_COLOR: return GR_BLEND_ONE_MINUS_SRC_ALPHA;
    case GL_ONE_MINUS_SRC_COLOR: return hasAlphaBuffer ? GR_BLEND_DST_ALPHA : GR_BLEND_ONE;
    case GL_SRC_ALPHA: return GR_BLEND_SRC_ALPHA;
    case GL_ONE_MINUS_SRC_ALPHA: return GR_BLEND_ONE_MINUS_SRC_ALPHA;
    case GL_DST_ALPHA: return hasAlphaBuffer ? GR_BLEND_DST_ALPHA : GR_BLEND_ONE;
    case GL_ONE_MINUS_DST_ALPHA: return hasAlphaBuffer ? GR_BLEND_ONE_MINUS_DST_ALPHA : GR_BLEND_ZERO;
    case GL_DST_COLOR: return GR_BLEND_DST_COLOR;
    case GL_ONE_MINUS_DST_COLOR: return GR_BLEND_ONE_MINUS_DST_COLOR;
    case GL_SRC_ALPHA_SATURATE: return hasAlphaBuffer ? GR_BLEND_ALPHA_SATURATE : GR_BLEND_ONE;
    default: return GR_BLEND_ONE;
    }
}

// ---------------------------------------------------------------------------------------
// Alpha test and blending.

// Programmes the alpha test: GL_ALWAYS with reference 0 while the test is off.
void KSP_vld_update_AlphaFunc()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    GLenum func = GL_ALWAYS;
    float ref = 0.0f;
    if (ctx->enable.capabilityBits & VLD_CAP_ALPHA_TEST) {
        func = ctx->color.alphaFunc;
        ref = ctx->color.alphaRef;
    }
    int cmp = KSP_vld_map_compare(func);
    grAlphaTestReferenceValue((GrAlpha_t)(int)(ref * 255.0f));
    grAlphaTestFunction(cmp < 0 ? GR_CMP_ALWAYS : cmp);
}

// Programmes blending: (ONE, ZERO) while blending is off. The alpha channel always takes
// the source; GL_SRC_ALPHA_SATURATE also keeps the destination's alpha.
void KSP_vld_update_BlendFunc()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    GLenum src = GL_ONE;
    GLenum dst = GL_ZERO;
    if (ctx->enable.capabilityBits & VLD_CAP_BLEND) {
        src = ctx->color.blendSrc;
        dst = ctx->color.blendDst;
    }
    int hasA = vld_has_alpha_buffer(vlddb.currentUnit) ? 1 : 0;
    grAlphaBlendFunction(KSP_vld_map_blend_factor(src, hasA), KSP_vld_map_blend_factor(dst, hasA),
                         GR_BLEND_ONE,
                         src == GL_SRC_ALPHA_SATURATE ? GR_BLEND_ONE : GR_BLEND_ZERO);
}

void __vldim_AlphaFunc(GLenum func, GLclampf ref)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (KSP_vld_map_compare(func) < 0) {
        VLD_GL_ERROR_ENUM(ctx, func);
        return;
    }
    ctx->color.alphaFunc = func;
    ctx->color.alphaRef = ref;
    KSP_vld_update_AlphaFunc();
}

// Sources GL_SRC_COLOR and GL_ONE_MINUS_SRC_COLOR are refused; as destinations every
// factor up to GL_SRC_ALPHA_SATURATE is let through.
void __vldim_BlendFunc(GLenum sfactor, GLenum dfactor)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    bool srcOk = sfactor == GL_ZERO || sfactor == GL_ONE ||
                 (sfactor >= GL_SRC_ALPHA && sfactor <= GL_SRC_ALPHA_SATURATE);
    if (!srcOk) {
        VLD_GL_ERROR_ENUM(ctx, sfactor);
        return;
    }
    bool dstOk = dfactor == GL_ZERO || dfactor == GL_ONE ||
                 (dfactor >= GL_SRC_COLOR && dfactor <= GL_SRC_ALPHA_SATURATE);
    if (!dstOk) {
        VLD_GL_ERROR_ENUM(ctx, dfactor);
        return;
    }
    ctx->color.blendSrc = sfactor;
    ctx->color.blendDst = dfactor;
    KSP_vld_update_BlendFunc();
}

// ---------------------------------------------------------------------------------------
// Depth: always a w-buffer.

// Programmes the depth buffer from GL_DEPTH_TEST, depthFunc and the write mask; with the
// test off, depth writing is off too. Nothing happens on a board without a depth buffer.
void KSP_vld_update_depth_state()
{
    vld_context* ctx = vldGc;
    if (!ctx || !vld_has_depth_buffer(vlddb.currentUnit))
        return;
    if (ctx->enable.capabilityBits & VLD_CAP_DEPTH_TEST) {
        int cmp = KSP_vld_map_compare(ctx->depth.depthFunc);
        grDepthBufferMode(GR_DEPTHBUFFER_WBUFFER);
        grDepthBufferFunction(cmp < 0 ? GR_CMP_LESS : cmp);
        grDepthMask(ctx->depth.depthWriteMask ? FXTRUE : FXFALSE);
    } else {
        grDepthBufferMode(GR_DEPTHBUFFER_DISABLE);
        grDepthBufferFunction(GR_CMP_ALWAYS);
        grDepthMask(FXFALSE);
    }
}

// Programmes the comparison at once, but does not keep it: depthFunc stays what it was, so
// the next depth-state update goes back to the stored function.
void __vldim_DepthFunc(GLenum func)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    int cmp = KSP_vld_map_compare(func);
    if (cmp < 0) {
        VLD_GL_ERROR_ENUM(ctx, func);
        cmp = GR_CMP_LESS;
    }
    if (vld_has_depth_buffer(vlddb.currentUnit) && (ctx->enable.capabilityBits & VLD_CAP_DEPTH_TEST))
        grDepthBufferFunction(cmp);
}

void __vldim_DepthMask(GLboolean flag)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->depth.depthWriteMask = flag ? 1 : 0;
    if (vld_has_depth_buffer(vlddb.currentUnit) && (ctx->enable.capabilityBits & VLD_CAP_DEPTH_TEST))
        grDepthMask(flag ? FXTRUE : FXFALSE);
}

// ---------------------------------------------------------------------------------------
// Polygon offset: a constant bias of the depth register, polygonOffsetR per unit.

// Sets the depth bias for drawing in `mode` (GL_FILL, GL_LINE or GL_POINT): the units
// times polygonOffsetR when that mode's offset is on, else 0. The factor has no part.
void KSP_vld_update_polygon_offset(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    uint32_t cap = 0;
    switch (mode) {
    case GL_FILL: cap = VLD_CAP_POLYGON_OFFSET_FILL; break;
    case GL_LINE: cap = VLD_CAP_POLYGON_OFFSET_LINE; break;
    case GL_POINT: cap = VLD_CAP_POLYGON_OFFSET_POINT; break;
    default: break;
    }
    int level = 0;
    if (cap && (ctx->enable.capabilityBits & cap))
        level = (int)(vlddb.settings.polygonOffsetR * ctx->polygon.polygonOffsetUnits);
    grDepthBiasLevel((FxI16)level);
}

void __vldim_PolygonOffset(GLfloat factor, GLfloat units)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    ctx->polygon.polygonOffsetFactor = factor;
    ctx->polygon.polygonOffsetUnits = units;
    KSP_vld_update_polygon_offset(GL_FILL);
}

// ---------------------------------------------------------------------------------------
// Faces: culling is done by the host from the sign of a face's area.

// Derives the signs the face path culls by. frontSign is +1 for GL_BACK, 0 for
// GL_FRONT_AND_BACK and -1 for GL_FRONT, negated when front faces are clockwise; cullSign
// also carries the mirroring of the model-view matrix. GL_CULL_FACE is not looked at here.
void KSP_vld_polygon_cull_state(vld_context* ctx)
{
    if (!ctx)
        return;
    vld_polygon_attrib& p = ctx->polygon;
    float sign = -1.0f;
    if (p.cullFaceMode == GL_BACK)
        sign = 1.0f;
    else if (p.cullFaceMode == GL_FRONT_AND_BACK)
        sign = 0.0f;
    if (p.frontFace != GL_CCW)
        sign = -sign;
    p.frontSign = sign;
    p.cullSign = ctx->mirrorSign * sign;
}

void __vldim_CullFace(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (!vld_valid_face(mode)) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return;
    }
    ctx->polygon.cullFaceMode = mode;
    KSP_vld_polygon_cull_state(ctx);
}

void __vldim_FrontFace(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (mode != GL_CW && mode != GL_CCW) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return;
    }
    ctx->polygon.frontFace = mode;
    KSP_vld_polygon_cull_state(ctx);
}

void __vldim_PolygonMode(GLenum face, GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (mode != GL_POINT && mode != GL_LINE && mode != GL_FILL) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return;
    }
    if (!vld_valid_face(face)) {
        VLD_GL_ERROR_ENUM(ctx, face);
        return;
    }
    if (face != GL_BACK)
        ctx->polygon.polygonModeFront = mode;
    if (face != GL_FRONT)
        ctx->polygon.polygonModeBack = mode;
}

// ---------------------------------------------------------------------------------------
// Smooth primitives: effective when both enabled and allowed.

void KSP_vld_update_smooth_line()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->line.smoothLineActive =
        (ctx->line.smoothLineAllowed && (ctx->enable.capabilityBits & VLD_CAP_LINE_SMOOTH)) ? 1 : 0;
}

void KSP_vld_update_smooth_point()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->point.smoothPointActive =
        (ctx->point.smoothPointAllowed && (ctx->enable.capabilityBits & VLD_CAP_POINT_SMOOTH)) ? 1 : 0;
}

void KSP_vld_update_smooth_polygon()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->polygon.smoothPolygonActive =
        (ctx->polygon.smoothPolygonAllowed && (ctx->enable.capabilityBits & VLD_CAP_POLYGON_SMOOTH))
            ? 1
            : 0;
}

// ---------------------------------------------------------------------------------------
// Lines, points, hints.

void __vldim_LineWidth(GLfloat width)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (!(width > 0.0f)) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    ctx->line.lineWidth = width;
}

// Kept for glGet only: no stipple is drawn.
void __vldim_LineStipple(GLint factor, GLushort pattern)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->line.lineStippleFactor = factor;
    ctx->line.lineStipplePattern = pattern;
}

void __vldim_PointSize(GLfloat size)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (!(size > 0.0f)) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    ctx->point.pointSize = size;
}

void __vldim_Hint(GLenum target, GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    if (!vld_valid_hint_mode(mode)) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return;
    }
    vld_hint_attrib& h = ctx->hint;
    switch (target) {
    case GL_PERSPECTIVE_CORRECTION_HINT: h.hintPerspectiveCorrection = mode; break;
    case GL_POINT_SMOOTH_HINT: h.hintPointSmooth = mode; break;
    case GL_LINE_SMOOTH_HINT: h.hintLineSmooth = mode; break;
    case GL_POLYGON_SMOOTH_HINT: h.hintPolygonSmooth = mode; break;
    case GL_FOG_HINT: h.hintFog = mode; break;
    case GL_CLIP_VOLUME_CLIPPING_HINT_EXT: h.hintClipVolume = mode; break;
    case GL_VELD_TEXTURE_COORD_REDUCE_HINT: h.hintTexCoordReduce = mode; break;
    default: VLD_GL_ERROR_ENUM(ctx, target); break;
    }
}

// ---------------------------------------------------------------------------------------
// Scissor: the board's clip window.

// Sets the clip window to the scissor box while the test is on, else to the whole screen;
// nothing without an open surface.
void KSP_vld_realize_glScissor()
{
    vld_context* ctx = vldGc;
    vld_unit* unit = vlddb.currentUnit;
    if (!ctx || !vld_surface_open(unit))
        return;
    if (ctx->enable.capabilityBits & VLD_CAP_SCISSOR_TEST) {
        const int32_t* b = ctx->scissor.scissorBox;
        grClipWindow((FxU32)b[0], (FxU32)b[1], (FxU32)(b[0] + b[2]), (FxU32)(b[1] + b[3]));
    } else {
        grClipWindow(0, 0, (FxU32)unit->width, (FxU32)unit->height);
    }
}

// Stores the box, unchecked, and realises it.
void KSP_vld_execute_glScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    int32_t* b = ctx->scissor.scissorBox;
    b[0] = x;
    b[1] = y;
    b[2] = width;
    b[3] = height;
    KSP_vld_realize_glScissor();
}

void __vldim_Scissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    KSP_vld_execute_glScissor(x, y, width, height);
}

// ---------------------------------------------------------------------------------------
// Colour mask and draw buffer.

// The board masks the three colours together: any colour off turns all three off.
void __vldim_ColorMask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    uint8_t* m = ctx->color.colorMask;
    m[0] = red;
    m[1] = green;
    m[2] = blue;
    m[3] = alpha;
    FxBool rgb = (red && green && blue) ? FXTRUE : FXFALSE;
    FxBool a = (vld_has_alpha_buffer(vlddb.currentUnit) && alpha) ? FXTRUE : FXFALSE;
    grColorMask(rgb, a);
}

// Stores the mode unchecked; on an open surface the front modes draw to the front buffer
// and everything else to the back, unless the board runs single-buffered.
void __vldim_DrawBuffer(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (!ctx || vld_inside_begin(ctx))
        return;
    ctx->color.drawBuffer = mode;
    if (!vld_surface_open(vlddb.currentUnit))
        return;
    GrBuffer_t buffer = GR_BUFFER_BACKBUFFER;
    switch (mode) {
    case GL_NONE:
    case GL_FRONT_LEFT:
    case GL_FRONT_RIGHT:
    case GL_FRONT:
    case GL_FRONT_AND_BACK: buffer = GR_BUFFER_FRONTBUFFER; break;
    default: break;
    }
    if (vlddb.settings.singleBuffer)
        buffer = GR_BUFFER_FRONTBUFFER;
    grRenderBuffer(buffer);
}

// ---------------------------------------------------------------------------------------
// Clear values.

void __vldim_ClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    float* c = ctx->color.clearColor;
    c[0] = vld_clamp01(red);
    c[1] = vld_clamp01(green);
    c[2] = vld_clamp01(blue);
    c[3] = vld_clamp01(alpha);
}

// Keeps the depth clamped, and as the board's 16-bit value between its depths for 0 and 1.
void __vldim_ClearDepth(GLclampd depth)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    double d = depth < 0.0 ? 0.0 : (depth > 1.0 ? 1.0 : depth);
    ctx->depth.clearDepth = d;
    ctx->depth.clearDepthPacked =
        (uint32_t)(VLD_DEPTH_LOW + (double)(VLD_DEPTH_HIGH - VLD_DEPTH_LOW) * d);
}

// Colour-index mode does not exist on these boards.
void __vldim_ClearIndex(GLfloat)
{
}

// ---------------------------------------------------------------------------------------
// Stencil: no board has a stencil buffer; the values are kept for glGet only.

void __vldim_ClearStencil(GLint s)
{
    if (vld_context* ctx = vldGc)
        ctx->stencil.clearStencil = s;
}

void __vldim_StencilFunc(GLenum func, GLint ref, GLuint mask)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->stencil.stencilFunc = func;
    ctx->stencil.stencilRef = ref;
    ctx->stencil.stencilValueMask = mask;
}

void __vldim_StencilMask(GLuint mask)
{
    if (vld_context* ctx = vldGc)
        ctx->stencil.stencilWriteMask = mask;
}

void __vldim_StencilOp(GLenum fail, GLenum zfail, GLenum zpass)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->stencil.stencilFail = fail;
    ctx->stencil.stencilDepthFail = zfail;
    ctx->stencil.stencilDepthPass = zpass;
}

// ---------------------------------------------------------------------------------------
// Initial values.

void KSP_vld_state_defaults(vld_context* ctx)
{
    vld_color_attrib& c = ctx->color;
    c.alphaFunc = GL_ALWAYS;
    c.alphaRef = 0.0f;
    c.blendSrc = GL_ONE;
    c.blendDst = GL_ZERO;
    c.drawBuffer = GL_BACK;
    for (int i = 0; i < 4; ++i) {
        c.clearColor[i] = 0.0f;
        c.colorMask[i] = 1;
    }
    c.dither = 1;

    vld_depth_attrib& d = ctx->depth;
    d.depthFunc = GL_LESS;
    d.clearDepth = 1.0;
    d.depthWriteMask = 1;
    d.clearDepthPacked = VLD_DEPTH_HIGH;

    vld_enable_attrib& e = ctx->enable;
    e.currentTextureEnable = &e.textureEnableBits[0];
    e.textureEnableIndex = 0;

    vld_fog_attrib& f = ctx->fog;
    f.fogMode = GL_EXP;
    f.fogDensity = 1.0f;
    f.fogStart = 0.0f;
    f.fogEnd = 1.0f;
    f.fogTableDirty = 1;
    f.fogColorDirty = 1;

    vld_hint_attrib& h = ctx->hint;
    h.hintPerspectiveCorrection = h.hintPointSmooth = h.hintLineSmooth = h.hintPolygonSmooth =
        h.hintFog = h.hintClipVolume = h.hintTexCoordReduce = GL_DONT_CARE;

    ctx->line.lineWidth = 1.0f;
    ctx->line.lineStipplePattern = 0xFFFF;
    ctx->line.lineStippleFactor = 1;
    ctx->line.smoothLineAllowed = 1;
    ctx->point.pointSize = 1.0f;
    ctx->point.smoothPointAllowed = 1;

    vld_polygon_attrib& p = ctx->polygon;
    p.polygonModeFront = p.polygonModeBack = GL_FILL;
    p.frontFace = GL_CCW;
    p.cullFaceMode = GL_BACK;
    p.smoothPolygonAllowed = 1;
    p.frontSign = 1.0f;
    p.cullSign = ctx->mirrorSign;

    vld_stencil_attrib& s = ctx->stencil;
    s.stencilFunc = GL_ALWAYS;
    s.stencilRef = 0;
    s.stencilValueMask = 0xFFFFFFFFu;
    s.stencilWriteMask = 0xFFFFFFFFu;
    s.stencilFail = s.stencilDepthFail = s.stencilDepthPass = GL_KEEP;
    s.clearStencil = 0;

    ctx->attribDepth = 0;
    ctx->textureSystemOn = 1;
}
