// Matrix stacks, the projection and modelview updates, viewport, depth range, the SGIS
// selectors and the detail function.
#include "vld/state/state_matrix.h"

#include <cmath>
#include <cstring>

#include "support/mth/mat.h"
#include "vld/api/vld_callees.h"
#include "vld/api/vld_error.h"
#include "vld/grxf/vld_geom.h"

namespace {

const float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

float* vld_modelview_top(vld_context* ctx)
{
    return ctx->modelviewStack[ctx->modelviewDepth];
}

float* vld_projection_top(vld_context* ctx)
{
    return ctx->projectionStack[ctx->projectionDepth];
}

// Points the current texture matrix and its identity flag at the top of the selected set.
void vld_reselect_texture_matrix(vld_context* ctx)
{
    vld_texture_transform& set = ctx->textureTransforms[ctx->textureTransformSet];
    ctx->currentTextureMatrix = set.matrices[set.depth];
    ctx->currentTextureIsIdentity = &set.isIdentity[set.depth];
}

// The matrix that a matrix command changes under the current mode.
float* vld_target_matrix(vld_context* ctx)
{
    switch (ctx->transform.matrixMode) {
    case GL_MODELVIEW:
        return vld_modelview_top(ctx);
    case GL_PROJECTION:
        return vld_projection_top(ctx);
    default:
        return ctx->currentTextureMatrix;
    }
}

// Runs what a change of the matrix in force calls for: one of the two updates, or the
// identity flag of a texture matrix.
void vld_target_changed(vld_context* ctx)
{
    switch (ctx->transform.matrixMode) {
    case GL_MODELVIEW:
        KSP_vld_set_matrix_view(ctx);
        return;
    case GL_PROJECTION:
        KSP_vld_set_matrix_proj(ctx);
        return;
    default:
        *ctx->currentTextureIsIdentity = G_mat_inq_if_identity(ctx->currentTextureMatrix);
        return;
    }
}

void vld_broadcast3(const float v[3], vld_group4* groups)
{
    for (int c = 0; c < 3; ++c)
        KSP_vld_sse_assign(v[c], &groups[c]);
}

void vld_lanes3(const float v[3], float lanes[3][4])
{
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 4; ++k)
            lanes[c][k] = v[c];
}

// v scaled to unit length, left as it is when its squared length is exactly 1 or 0.
void vld_normalize_unless_unit(float v[3])
{
    float l = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    if (l == 1.0f || l == 0.0f)
        return;
    float f = 1.0f / std::sqrt(l);
    v[0] *= f, v[1] *= f, v[2] *= f;
}

bool vld_sgis_unit(vld_context* ctx, GLenum target, int* unit)
{
    if (target != GL_TEXTURE0_SGIS && target != GL_TEXTURE0_SGIS + 1) {
        VLD_GL_ERROR_ENUM(ctx, target);
        return false;
    }
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return false;
    }
    *unit = (int)(target - GL_TEXTURE0_SGIS);
    return true;
}

} // namespace

void KSP_vld_mat_product(const float a[16], const float b[16], float out[16])
{
    float r[16];
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            r[4 * i + j] = a[4 * i] * b[j] + a[4 * i + 1] * b[4 + j] + a[4 * i + 2] * b[8 + j] +
                           a[4 * i + 3] * b[12 + j];
    std::memcpy(out, r, sizeof r);
}

void KSP_vld_init_matrix_state(vld_context* ctx)
{
    for (auto& m : ctx->modelviewStack)
        std::memcpy(m, kIdentity, sizeof kIdentity);
    for (auto& m : ctx->projectionStack)
        std::memcpy(m, kIdentity, sizeof kIdentity);
    for (vld_texture_transform& t : ctx->textureTransforms) {
        for (auto& m : t.matrices)
            std::memcpy(m, kIdentity, sizeof kIdentity);
        t.isIdentity[0] = t.isIdentity[1] = 1;
        t.depth = 1;
    }
    ctx->modelviewDepth = 1;
    ctx->projectionDepth = 1;
    ctx->textureTransformSet = 0;
    vld_reselect_texture_matrix(ctx);
    ctx->transform.matrixMode = GL_MODELVIEW;
    ctx->mirrorSign = 1.0f;
    KSP_vld_set_matrix_proj(ctx);
    KSP_vld_set_matrix_view(ctx);
}

// The projection update. Chooses how depth reaches the board's 16-bit w-buffer: for an
// orthographic projection normalised z from -1 to +1 is mapped onto 1 to 65528; for a
// perspective one the eye distance itself is kept where the near and far planes allow it,
// else mapped linearly onto the same range. Also finds the eye depths of the near and far
// planes (the clip bounds), whether the projection reverses the winding of faces, and
// re-programmes the fog table when its depth map moved.
void KSP_vld_set_matrix_proj(vld_context* ctx)
{
    const float* m = vld_projection_top(ctx);
    const float oldFogScale = ctx->fogDepthScale;
    const float oldFogOffset = ctx->fogDepthOffset;
    const float sz = m[14] <= 0.0f ? -1.0f : 1.0f;
    float t;
    float a, b;
    if (m[3] == 0.0f && m[7] == 0.0f && m[11] == 0.0f) {
        ctx->isPerspective = 0;
        t = sz * m[10] < 0.0f ? -1.0f : 1.0f;
        a = (m[14] - sz) * t / m[10];
        b = (m[14] + sz) * t / m[10];
        float nearD = b < a ? b : a, farD = b < a ? a : b;
        ctx->eyeDepthNear = nearD;
        ctx->eyeDepthFar = farD;
        ctx->orthoClipMin = -1.0f;
        ctx->orthoClipMax = 1.0f;
        ctx->depthOffset = 32764.5f;
        ctx->depthScale = 32763.5f;
        ctx->fogDepthOffset = (nearD * 65528.0f - farD) / (nearD - farD);
        ctx->fogDepthScale = -65527.0f / (nearD - farD);
    } else {
        ctx->isPerspective = 1;
        t = m[11] < 0.0f ? 1.0f : -1.0f;
        const float p = t * sz;
        a = t * m[14] / (p + m[10]);
        b = t * m[14] / (m[10] - p);
        float nearD = b < a ? b : a, farD = b < a ? a : b;
        ctx->eyeDepthNear = nearD;
        ctx->eyeDepthFar = farD;
        if (nearD >= 1.0f && farD <= 65528.0f) {
            ctx->depthScale = 1.0f;
            ctx->depthOffset = 0.0f;
        } else {
            float offset = (nearD * 65528.0f - farD) / (nearD - farD);
            if (offset > 0.0f) {
                ctx->depthScale = -65527.0f / (nearD - farD);
                ctx->depthOffset = offset;
            } else {
                float s = 65528.0f / farD;
                if (s * nearD >= 1.0f) {
                    ctx->depthScale = s;
                    ctx->depthOffset = 0.0f;
                } else {
                    ctx->depthScale = -65527.0f / (nearD - farD);
                    ctx->depthOffset = offset;
                }
            }
        }
        ctx->fogDepthOffset = ctx->perspDepthOffset = ctx->depthOffset;
        ctx->fogDepthScale = ctx->perspDepthScale = ctx->depthScale;
        ctx->perspEyeDepthNear = nearD;
        ctx->perspEyeDepthFar = farD;
    }

    float h = t;
    if (m[0] < 0.0f)
        h = -h;
    if (m[5] < 0.0f)
        h = -h;
    const float sign = h * sz < 0.0f ? 1.0f : -1.0f;
    if (sign != ctx->mirrorSign) {
        ctx->mirrorSign = sign;
        KSP_vld_polygon_cull_state(ctx);
    }

    KSP_vld_mat_product(vld_modelview_top(ctx), m, ctx->mvpMatrix);
    if (ctx->boundUnit &&
        (ctx->fogDepthScale != oldFogScale ||
         (ctx->fog.fogMode == GL_LINEAR && ctx->fogDepthOffset != oldFogOffset))) {
        ctx->fog.fogTableDirty = 1;
        KSP_vld_update_fog_state(ctx);
    }
}

// The modelview update. Lighting runs in object space, so every change of the modelview
// matrix brings the eye and every light up to the highest enabled one into the object's
// coordinates here, once, instead of transforming each normal.
void KSP_vld_set_matrix_view(vld_context* ctx)
{
    const float* mv = vld_modelview_top(ctx);
    KSP_vld_mat_product(mv, vld_projection_top(ctx), ctx->mvpMatrix);
    float* inv = ctx->modelviewInverse;
    G_mat_invert_SRT(mv, inv);

    const float* eye = ctx->isPerspective ? inv + 12 : inv + 8;
    for (int c = 0; c < 3; ++c)
        ctx->eyeObject[c] = eye[c];
    float len2 = ctx->eyeObject[0] * ctx->eyeObject[0] + ctx->eyeObject[1] * ctx->eyeObject[1] +
                 ctx->eyeObject[2] * ctx->eyeObject[2];
    float f = len2 == 0.0f ? 1.0f : 1.0f / std::sqrt(len2);
    for (int c = 0; c < 3; ++c)
        ctx->eyeObjectUnit[c] = ctx->eyeObject[c] * f;
    vld_broadcast3(ctx->eyeObject, ctx->eyeObject4);
    vld_broadcast3(ctx->eyeObjectUnit, ctx->eyeObject4 + 3);

    vld_lighting_attrib& lg = ctx->lighting;
    for (int i = 0; i <= lg.lightHighestEnabled && i < 8; ++i) {
        vld_light& light = lg.lights[i];
        vld_light_object& o = vld_light_obj(light);
        if (light.position[3] != 0.0f) {
            G_mat_mult_by_vector_special(light.position, inv, o.positionObject);
            vld_lanes3(o.positionObject, o.positionObject4);
            if (light.spotCutoff != 180.0f) {
                mat_multiply_by_vector_notrans(light.spotDirection, inv, o.spotDirectionObject);
                vld_normalize_unless_unit(o.spotDirectionObject);
                vld_lanes3(o.spotDirectionObject, o.spotDirectionObject4);
            }
        } else {
            mat_multiply_by_vector_notrans(o.directionEyeUnit, inv, o.directionObject);
            vld_normalize_unless_unit(o.directionObject);
            for (int c = 0; c < 3; ++c)
                o.halfVectorObject[c] = o.directionObject[c] + ctx->eyeObjectUnit[c];
            float hl = o.halfVectorObject[0] * o.halfVectorObject[0] +
                       o.halfVectorObject[1] * o.halfVectorObject[1] +
                       o.halfVectorObject[2] * o.halfVectorObject[2];
            if (hl != 0.0f) {
                float hf = 1.0f / std::sqrt(hl);
                for (float& c : o.halfVectorObject)
                    c *= hf;
            }
            vld_lanes3(o.directionObject, o.directionObject4);
            vld_lanes3(o.halfVectorObject, o.halfVectorObject4);
        }
    }
    if (ctx->texture.currentTextureUnit) {
        ctx->texture.currentTextureUnit->texgenInverseDirty = 1;
        ctx->texgenInverseDirty = 1;
    }
}

void __vldim_MatrixMode(GLenum mode)
{
    vldGc->transform.matrixMode = mode;
}

void __vldim_LoadMatrixf(const GLfloat* m)
{
    vld_context* ctx = vldGc;
    std::memcpy(vld_target_matrix(ctx), m, 16 * sizeof(float));
    vld_target_changed(ctx);
}

void __vldim_LoadMatrixd(const GLdouble* m)
{
    float f[16];
    for (int i = 0; i < 16; ++i)
        f[i] = (float)m[i];
    __vldim_LoadMatrixf(f);
}

void __vldim_LoadIdentity()
{
    vld_context* ctx = vldGc;
    std::memcpy(vld_target_matrix(ctx), kIdentity, sizeof kIdentity);
    if (ctx->transform.matrixMode != GL_MODELVIEW && ctx->transform.matrixMode != GL_PROJECTION)
        *ctx->currentTextureIsIdentity = 1;
    else
        vld_target_changed(ctx);
}

// The matrix in force becomes m times itself in row form, which is GL's C times M.
void __vldim_MultMatrixf(const GLfloat* m)
{
    vld_context* ctx = vldGc;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    float* top = vld_target_matrix(ctx);
    KSP_vld_mat_product(m, top, top);
    vld_target_changed(ctx);
}

void __vldim_MultMatrixd(const GLdouble* m)
{
    float f[16];
    for (int i = 0; i < 16; ++i)
        f[i] = (float)m[i];
    __vldim_MultMatrixf(f);
}

// Copies the top one place up; a full stack is left as it is, with no error.
void __vldim_PushMatrix()
{
    vld_context* ctx = vldGc;
    switch (ctx->transform.matrixMode) {
    case GL_MODELVIEW:
        if (ctx->modelviewDepth < 31) {
            std::memcpy(ctx->modelviewStack[ctx->modelviewDepth + 1],
                        ctx->modelviewStack[ctx->modelviewDepth], 16 * sizeof(float));
            ++ctx->modelviewDepth;
        }
        return;
    case GL_PROJECTION:
        if (ctx->projectionDepth < 1) {
            std::memcpy(ctx->projectionStack[ctx->projectionDepth + 1],
                        ctx->projectionStack[ctx->projectionDepth], 16 * sizeof(float));
            ++ctx->projectionDepth;
        }
        return;
    default: {
        vld_texture_transform& set = ctx->textureTransforms[ctx->textureTransformSet];
        if (set.depth < 1) {
            std::memcpy(set.matrices[set.depth + 1], set.matrices[set.depth], 16 * sizeof(float));
            set.isIdentity[set.depth + 1] = set.isIdentity[set.depth];
            ++set.depth;
        }
        vld_reselect_texture_matrix(ctx);
        return;
    }
    }
}

// Returns to the matrix below; an empty stack is left as it is, with no error.
void __vldim_PopMatrix()
{
    vld_context* ctx = vldGc;
    switch (ctx->transform.matrixMode) {
    case GL_MODELVIEW:
        if (ctx->modelviewDepth > 0) {
            --ctx->modelviewDepth;
            KSP_vld_set_matrix_view(ctx);
        }
        return;
    case GL_PROJECTION:
        if (ctx->projectionDepth > 0) {
            --ctx->projectionDepth;
            KSP_vld_set_matrix_proj(ctx);
        }
        return;
    default: {
        vld_texture_transform& set = ctx->textureTransforms[ctx->textureTransformSet];
        if (set.depth > 0)
            --set.depth;
        vld_reselect_texture_matrix(ctx);
        return;
    }
    }
}

// The standard perspective matrix, formed in double precision; the planes are not tested.
void __vldim_Frustum(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear,
                     GLdouble zFar)
{
    double m[16] = {};
    m[0] = 2.0 * zNear / (right - left);
    m[5] = 2.0 * zNear / (top - bottom);
    m[8] = (right + left) / (right - left);
    m[9] = (top + bottom) / (top - bottom);
    m[10] = -(zFar + zNear) / (zFar - zNear);
    m[11] = -1.0;
    m[14] = -2.0 * zFar * zNear / (zFar - zNear);
    float f[16];
    for (int i = 0; i < 16; ++i)
        f[i] = (float)m[i];
    __vldim_MultMatrixf(f);
}

// The standard orthographic matrix, by the reciprocals of the three extents.
void __vldim_Ortho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear,
                   GLdouble zFar)
{
    const double rl = 1.0 / (right - left), tb = 1.0 / (top - bottom), fn = 1.0 / (zFar - zNear);
    double m[16] = {};
    m[0] = 2.0 * rl;
    m[5] = 2.0 * tb;
    m[10] = -2.0 * fn;
    m[12] = -(right + left) * rl;
    m[13] = -(top + bottom) * tb;
    m[14] = -(zFar + zNear) * fn;
    m[15] = 1.0;
    float f[16];
    for (int i = 0; i < 16; ++i)
        f[i] = (float)m[i];
    __vldim_MultMatrixf(f);
}

void __vldim_Translatef(GLfloat x, GLfloat y, GLfloat z)
{
    vld_context* ctx = vldGc;
    const float v[3] = {x, y, z};
    G_mat_mult_TxB_is_B(v, vld_target_matrix(ctx));
    vld_target_changed(ctx);
}

void __vldim_Translated(GLdouble x, GLdouble y, GLdouble z)
{
    __vldim_Translatef((float)x, (float)y, (float)z);
}

// Scales the first three rows, which is GL's C times a diagonal scale.
void __vldim_Scalef(GLfloat x, GLfloat y, GLfloat z)
{
    vld_context* ctx = vldGc;
    float* m = vld_target_matrix(ctx);
    const float s[3] = {x, y, z};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c)
            m[4 * r + c] *= s[r];
    vld_target_changed(ctx);
}

void __vldim_Scaled(GLdouble x, GLdouble y, GLdouble z)
{
    __vldim_Scalef((float)x, (float)y, (float)z);
}

void __vldim_Rotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z)
{
    if (angle == 0.0f)
        return;
    vld_context* ctx = vldGc;
    if (x == 0.0f && y == 0.0f && z == 0.0f) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    const float axis[3] = {x, y, z};
    float m[16];
    G_mat_compose_R_from_axis((float)(angle * 0.017453292519943295), axis, m);
    __vldim_MultMatrixf(m);
}

void __vldim_Rotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z)
{
    __vldim_Rotatef((float)angle, (float)x, (float)y, (float)z);
}

// Stores the viewport and the values the pipeline maps clip coordinates with. A negative
// size is refused; the width is stored before the height is looked at.
void KSP_vld_execute_glViewport(vld_context* ctx, GLint x, GLint y, GLsizei width, GLsizei height)
{
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    vld_viewport_attrib& v = ctx->viewport;
    if (width < 0) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    v.viewportInvWidth = width == 0 ? 1.0f : 1.0f / (float)width;
    if (height < 0) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    v.viewportInvHeight = height == 0 ? 1.0f : 1.0f / (float)height;
    v.viewportX = x;
    v.viewportY = y;
    v.viewportWidth = width;
    v.viewportHeight = height;
    v.viewportHalfWidth = (float)width * 0.5f;
    v.viewportHalfHeight = (float)height * 0.5f;
    v.viewportCenterX = (float)x + v.viewportHalfWidth;
    v.viewportCenterY = (float)y + v.viewportHalfHeight;
}

void __vldim_Viewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    KSP_vld_execute_glViewport(vldGc, x, y, width, height);
}

// Remembers the depth range unclamped; only the raster position reads it.
void KSP_vld_glDepthRange(vld_context* ctx, GLclampd zNear, GLclampd zFar)
{
    vld_viewport_attrib& v = ctx->viewport;
    v.depthRangeNear = (float)zNear;
    v.depthRangeFar = (float)zFar;
    v.depthRangeHalfExtent = (float)((zFar - zNear) * 0.5);
    v.depthRangeCenter = (float)((zFar + zNear) * 0.5);
}

void __vldim_DepthRange(GLclampd zNear, GLclampd zFar)
{
    vld_context* ctx = vldGc;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    KSP_vld_glDepthRange(ctx, zNear, zFar);
}

void __vldim_SelectTextureSGIS(GLenum target)
{
    vld_context* ctx = vldGc;
    int unit;
    if (!vld_sgis_unit(ctx, target, &unit))
        return;
    ctx->texture.currentTextureUnit = &ctx->texture.units[unit];
    ctx->texture.currentTextureUnitIndex = unit;
    ctx->enable.currentTextureEnable = &ctx->enable.textureEnableBits[unit];
    ctx->enable.textureEnableIndex = unit;
}

void __vldim_SelectTextureCoordSetSGIS(GLenum target)
{
    vld_context* ctx = vldGc;
    int unit;
    if (!vld_sgis_unit(ctx, target, &unit))
        return;
    ctx->current.currentTexSet = unit;
    ctx->current.currentTexCoordPtr = ctx->current.currentTexCoord[unit];
    ctx->current.currentTexBit = 128u << unit;
}

void __vldim_SelectTextureTransformSGIS(GLenum target)
{
    vld_context* ctx = vldGc;
    int unit;
    if (!vld_sgis_unit(ctx, target, &unit))
        return;
    ctx->textureTransformSet = unit;
    vld_reselect_texture_matrix(ctx);
}

// Keeps s and t of either set; any target other than the first unit's addresses set 1.
void __vldim_MultiTexCoord4fvSGIS(GLenum target, const GLfloat* v)
{
    vld_context* ctx = vldGc;
    const int set = target == GL_TEXTURE0_SGIS ? 0 : 1;
    if (ctx->inBeginEnd)
        ctx->beginAttrMask |= 128u << set;
    ctx->current.currentTexCoord[set][0] = v[0];
    ctx->current.currentTexCoord[set][1] = v[1];
}

// From the points (level, weight) of a detail curve, the three detail parameters of the
// board: the weight at the lowest level as the maximum, and a scale and bias that make the
// board's linear ramp fall as the curve falls from the lowest to the highest level.
int KSP_vld_glide_compute_detail(int count, const float* points, float* detailMax, int* detailBias,
                                 int* detailScale)
{
    if (count <= 0)
        return -1;
    float lMax = points[0], vMax = points[1], lMin = points[0], vMin = points[1];
    for (int i = 1; i < count; ++i) {
        float l = points[2 * i], v = points[2 * i + 1];
        if (l > lMax)
            lMax = l, vMax = v;
        if (l < lMin)
            lMin = l, vMin = v;
    }
    if (lMin == lMax || vMin < vMax)
        return -1;
    *detailMax = vMin > 1.0f ? 1.0f : vMin;
    const float x = (vMin - vMax) / (lMax - lMin) * 256.0f;
    int i = 0;
    while (i < 64 && std::ldexp(1.0, i) < x)
        ++i;
    int scale = i - 1;
    scale = scale < 0 ? 0 : (scale > 7 ? 7 : scale);
    *detailScale = scale;
    *detailBias = (int)(lMax + vMax * 256.0f / (float)std::ldexp(1.0, scale) + 0.5f);
    return 0;
}

void __vldim_DetailTexFuncSGIS(GLenum target, GLsizei n, const GLfloat* points)
{
    vld_context* ctx = vldGc;
    if (target != GL_TEXTURE_2D) {
        VLD_GL_ERROR_ENUM(ctx, target);
        return;
    }
    if (n < 0 || n > 20) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    vld_detail_function* d = KSP_vld_txr_detail_function(ctx);
    if (!d)
        return;
    d->count = n;
    std::memcpy(d->points, points, (size_t)n * 2 * sizeof(float));
    KSP_vld_glide_compute_detail(n, d->points, &d->detailMax, &d->detailBias, &d->detailScale);
}

void __vldim_GetDetailTexFuncSGIS(GLenum target, GLfloat* points)
{
    vld_context* ctx = vldGc;
    if (target != GL_TEXTURE_2D) {
        VLD_GL_ERROR_ENUM(ctx, target);
        return;
    }
    const vld_detail_function* d = KSP_vld_txr_detail_function(ctx);
    if (d && points)
        std::memcpy(points, d->points, (size_t)d->count * 2 * sizeof(float));
}
