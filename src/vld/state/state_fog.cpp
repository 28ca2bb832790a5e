// Fog: always through the board's 64-entry table, indexed by w.
//
// The table and the colour carry dirty flags: a table is built only when a parameter that
// shapes it changed (or the projection did, which rescales w), and the colour is sent only
// when it changed.
#include <glide2/glide.h>

#include "vld/api/vld_error.h"
#include "vld/state/state.h"

// Programmes fog from the context. With GL_FOG off the board's fog is disabled and the
// dirty flags stay as they are, so that the next enable sends what changed meanwhile. The
// table is made in the units of the w-buffer: densities are divided by depthScale, linear
// limits mapped by fogDepthScale and fogDepthOffset of the projection.
void KSP_vld_update_fog_state(vld_context* ctx)
{
    if (!ctx)
        return;
    vld_fog_attrib& f = ctx->fog;
    if (!(ctx->enable.capabilityBits & VLD_CAP_FOG)) {
        grFogMode(GR_FOG_DISABLE);
        return;
    }
    grFogMode(GR_FOG_WITH_TABLE);
    if (f.fogTableDirty) {
        f.fogTableDirty = 0;
        // An unknown mode leaves the table as it starts: all zero.
        GrFog_t table[GR_FOG_TABLE_SIZE] = {};
        switch (f.fogMode) {
        case GL_EXP: guFogGenerateExp(table, f.fogDensity / ctx->depthScale); break;
        case GL_EXP2: guFogGenerateExp2(table, f.fogDensity / ctx->depthScale); break;
        case GL_LINEAR:
            guFogGenerateLinear(table, f.fogStart * ctx->fogDepthScale + ctx->fogDepthOffset,
                                f.fogEnd * ctx->fogDepthScale + ctx->fogDepthOffset);
            break;
        default: break;
        }
        grFogTable(table);
    }
    if (f.fogColorDirty) {
        f.fogColorDirty = 0;
        GrColor_t packed = 0;
        for (int i = 0; i < 4; ++i)
            packed = (packed << 8) | ((uint32_t)(int)(f.fogColor[i] * 255.0f) & 0xFFu);
        grFogColorValue(packed);
    }
}

// Stores one fog parameter, marks what it invalidates, and reprogrammes the board while
// fog is on. Unknown parameters are ignored without an error, and no value is checked.
void __vldim_Fogfv(GLenum pname, const GLfloat* params)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    if (!params)
        return;
    vld_fog_attrib& f = ctx->fog;
    const float v = params[0];
    switch (pname) {
    case GL_FOG_INDEX: f.fogIndex = (float)(int)v; break;
    case GL_FOG_DENSITY:
        if (v != f.fogDensity && (f.fogMode == GL_EXP || f.fogMode == GL_EXP2))
            f.fogTableDirty = 1;
        f.fogDensity = v;
        break;
    case GL_FOG_START:
        if (v != f.fogStart && f.fogMode == GL_LINEAR)
            f.fogTableDirty = 1;
        f.fogStart = v;
        break;
    case GL_FOG_END:
        if (v != f.fogEnd && f.fogMode == GL_LINEAR)
            f.fogTableDirty = 1;
        f.fogEnd = v;
        break;
    case GL_FOG_MODE: {
        GLenum mode = (GLenum)(int)v;
        if (mode != f.fogMode)
            f.fogTableDirty = 1;
        f.fogMode = mode;
        break;
    }
    case GL_FOG_COLOR:
        for (int i = 0; i < 4; ++i) {
            if (params[i] != f.fogColor[i])
                f.fogColorDirty = 1;
            f.fogColor[i] = params[i];
        }
        break;
    default: return;
    }
    if (ctx->enable.capabilityBits & VLD_CAP_FOG)
        KSP_vld_update_fog_state(ctx);
}

void __vldim_Fogf(GLenum pname, GLfloat param)
{
    __vldim_Fogfv(pname, &param);
}

// Integer parameters: colour channels scale from the full integer range to 0..1, scalars
// convert as they are.
void __vldim_Fogiv(GLenum pname, const GLint* params)
{
    if (!params) {
        __vldim_Fogfv(pname, nullptr);
        return;
    }
    float v[4] = {(float)params[0], 0.0f, 0.0f, 0.0f};
    if (pname == GL_FOG_COLOR)
        for (int i = 0; i < 4; ++i)
            v[i] = (float)((double)params[i] * 4.656612875245797e-10);
    __vldim_Fogfv(pname, v);
}

void __vldim_Fogi(GLenum pname, GLint param)
{
    __vldim_Fogiv(pname, &param);
}
