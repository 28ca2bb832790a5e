// glClear: one pass of grBufferClear per buffer, with the board's masks opened for it.
//
// Neither the colour mask nor the depth mask restrains a clear; the scissor box does,
// through the clip window. Only the colour and depth bits are looked at.
#include <glide2/glide.h>

#include "vld/state/state.h"

namespace {

// What one clear pass needs to know about the context and the board.
struct vld_clear_job {
    bool colour;
    bool depth;
    bool hasDepth;
    FxBool hasA;
    FxBool rgb;   // the colour mask to put back
    FxBool alpha; // the alpha mask to put back
    bool depthTest;
    bool depthWrite;
    GrColor_t colourValue;
    GrAlpha_t alphaValue;
    FxU16 depthValue;
};

// Clears the buffer in force: colour and depth, colour alone, or depth alone, and puts
// the masks and depth mode back as the context has them.
void vld_clear_pass(const vld_clear_job& j)
{
    if (j.depth) {
        grColorMask(j.colour ? FXTRUE : FXFALSE, j.colour ? j.hasA : FXFALSE);
        grDepthBufferMode(GR_DEPTHBUFFER_WBUFFER);
        if (!(j.depthTest && j.depthWrite))
            grDepthMask(FXTRUE);
        grBufferClear(j.colourValue, j.alphaValue, j.depthValue);
        if (!j.depthTest) {
            grDepthBufferMode(GR_DEPTHBUFFER_DISABLE);
            grDepthMask(FXFALSE);
        } else if (!j.depthWrite) {
            grDepthMask(FXFALSE);
        }
    } else {
        grColorMask(FXTRUE, j.hasA);
        bool maskDepth = j.hasDepth && j.depthTest && j.depthWrite;
        if (maskDepth)
            grDepthMask(FXFALSE);
        grBufferClear(j.colourValue, j.alphaValue, j.depthValue);
        if (maskDepth)
            grDepthMask(FXTRUE);
    }
    grColorMask(j.rgb, j.alpha);
}

} // namespace

void __vldim_Clear(GLbitfield mask)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    vld_unit* unit = vlddb.currentUnit;
    vld_clear_job j{};
    j.hasDepth = unit && unit->depthBuffer;
    j.hasA = (unit && unit->alphaBuffer) ? FXTRUE : FXFALSE;
    j.colour = (mask & GL_COLOR_BUFFER_BIT) != 0;
    j.depth = (mask & GL_DEPTH_BUFFER_BIT) != 0 && j.hasDepth;
    if (!j.colour && !j.depth)
        return;
    const uint8_t* m = ctx->color.colorMask;
    j.rgb = (m[0] && m[1] && m[2]) ? FXTRUE : FXFALSE;
    j.alpha = (j.hasA && m[3]) ? FXTRUE : FXFALSE;
    j.depthTest = (ctx->enable.capabilityBits & VLD_CAP_DEPTH_TEST) != 0;
    j.depthWrite = ctx->depth.depthWriteMask != 0;
    const float* c = ctx->color.clearColor;
    uint32_t packed = 0;
    for (int i = 0; i < 4; ++i)
        packed = (packed << 8) | ((uint32_t)(c[i] * 255.0f) & 0xFFu);
    j.colourValue = packed;
    j.alphaValue = (GrAlpha_t)(uint32_t)(c[3] * 255.0f);
    j.depthValue = (FxU16)ctx->depth.clearDepthPacked;

    if (!(unit && unit->integrated2D) && ctx->color.drawBuffer == GL_FRONT_AND_BACK) {
        grRenderBuffer(GR_BUFFER_BACKBUFFER);
        vld_clear_pass(j);
        grRenderBuffer(GR_BUFFER_FRONTBUFFER);
    }
    vld_clear_pass(j);
}
