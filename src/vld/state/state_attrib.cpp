// The server attribute stack: glPushAttrib and glPopAttrib.
//
// An entry holds the mask of the push and a copy of every attribute group, so that a push
// or pop is one assignment per group and needs no allocation. The enable words are saved
// on every push, whatever the mask. A pop restores the groups of its mask, each with the
// capability bits that belong to it, and then runs the board updates once, from the
// difference between the capability bits before and after.
#include "vld/api/vld_callees.h"
#include "vld/api/vld_error.h"
#include "vld/state/state.h"
#include "vld/state/state_light.h"

namespace {

// The capability bits that each group's pop takes from the saved enable words.
constexpr uint32_t kColorBits = 0xA0000F;
constexpr uint32_t kDepthBits = VLD_CAP_DEPTH_TEST;
constexpr uint32_t kEvalBits = VLD_CAP_AUTO_NORMAL;
constexpr uint32_t kFogBits = VLD_CAP_FOG;
constexpr uint32_t kLightingBits = 0x4000C0;
constexpr uint32_t kLineBits = VLD_CAP_LINE_STIPPLE | VLD_CAP_LINE_SMOOTH;
constexpr uint32_t kPointBits = VLD_CAP_POINT_SMOOTH;
constexpr uint32_t kPolygonBits = 0x1C3800;
constexpr uint32_t kPolygonStippleBits = VLD_CAP_POLYGON_STIPPLE;
constexpr uint32_t kScissorBits = VLD_CAP_SCISSOR_TEST;
constexpr uint32_t kStencilBits = VLD_CAP_STENCIL_TEST;
constexpr uint32_t kTransformBits = VLD_CAP_NORMALIZE;

// The texture targets whose binding a pop of GL_TEXTURE_BIT tells the board about, in order.
constexpr GLenum kBindTargets[3] = {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_DETAIL_TEXTURE_2D_SGIS};

// Takes the bits `bits` of `saved` into `live`.
inline void vld_take_bits(uint32_t& live, uint32_t saved, uint32_t bits)
{
    live = (live & ~bits) | (saved & bits);
}

// The bound name of a texture target in the selected texture block of a texture group.
GLuint vld_bound_name(const vld_texture_attrib& tex, GLenum target)
{
    const vld_texture_unit& u = tex.units[tex.currentTextureUnitIndex == 1 ? 1 : 0];
    switch (target) {
    case GL_TEXTURE_1D: return u.boundName1D;
    case GL_TEXTURE_2D: return u.boundName;
    default: return u.boundNameDetail;
    }
}

} // namespace

// Saves the groups of `mask` (and the enable words always) on the attribute stack.
void __vldim_PushAttrib(GLbitfield mask)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    if (ctx->attribDepth >= VLD_ATTRIB_STACK_DEPTH) {
        VLD_GL_ERROR(ctx, GL_STACK_OVERFLOW);
        return;
    }
    vld_attrib_entry& e = ctx->attribStack[ctx->attribDepth++];
    e.mask = mask;
    e.enable = ctx->enable;
    if (mask & GL_CURRENT_BIT)
        e.current = ctx->current;
    if (mask & GL_POINT_BIT)
        e.point = ctx->point;
    if (mask & GL_LINE_BIT)
        e.line = ctx->line;
    if (mask & GL_POLYGON_BIT)
        e.polygon = ctx->polygon;
    if (mask & GL_POLYGON_STIPPLE_BIT)
        e.polygonStipple = ctx->polygonStipple;
    if (mask & GL_PIXEL_MODE_BIT)
        e.pixelMode = ctx->pixelMode;
    if (mask & GL_LIGHTING_BIT)
        e.lighting = ctx->lighting;
    if (mask & GL_FOG_BIT)
        e.fog = ctx->fog;
    if (mask & GL_DEPTH_BUFFER_BIT)
        e.depth = ctx->depth;
    if (mask & GL_ACCUM_BUFFER_BIT)
        e.accum = ctx->accum;
    if (mask & GL_VIEWPORT_BIT)
        e.viewport = ctx->viewport;
    if (mask & GL_STENCIL_BUFFER_BIT)
        e.stencil = ctx->stencil;
    if (mask & GL_TRANSFORM_BIT)
        e.transform = ctx->transform;
    if (mask & GL_COLOR_BUFFER_BIT)
        e.color = ctx->color;
    if (mask & GL_HINT_BIT)
        e.hint = ctx->hint;
    if (mask & GL_EVAL_BIT)
        e.eval = ctx->eval;
    if (mask & GL_LIST_BIT)
        e.list = ctx->list;
    if (mask & GL_TEXTURE_BIT)
        e.texture = ctx->texture;
    if (mask & GL_SCISSOR_BIT)
        e.scissor = ctx->scissor;
}

// Restores the groups of the top entry's mask in the fixed order, then programmes the board
// for what changed. What it leaves undone is deliberate: no matrix update runs (a popped
// light keeps the object-space values it was saved with), fog parameters and a depth mask
// reach the board only with a change of their capability, the colour mask not at all, and
// the scissor box is not reprogrammed.
void __vldim_PopAttrib()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    if (ctx->attribDepth <= 0) {
        VLD_GL_ERROR(ctx, GL_STACK_UNDERFLOW);
        return;
    }
    const vld_attrib_entry& e = ctx->attribStack[--ctx->attribDepth];
    const GLbitfield mask = e.mask;
    const vld_enable_attrib before = ctx->enable;
    const uint32_t texBefore = *(before.currentTextureEnable ? before.currentTextureEnable
                                                             : &ctx->enable.textureEnableBits[0]);
    uint32_t& caps = ctx->enable.capabilityBits;
    const uint32_t saved = e.enable.capabilityBits;

    if (mask & GL_ENABLE_BIT)
        ctx->enable = e.enable;
    if (mask & GL_ACCUM_BUFFER_BIT)
        ctx->accum = e.accum;
    if (mask & GL_COLOR_BUFFER_BIT) {
        ctx->color = e.color;
        vld_take_bits(caps, saved, kColorBits);
    }
    if (mask & GL_CURRENT_BIT)
        ctx->current = e.current;
    if (mask & GL_DEPTH_BUFFER_BIT) {
        ctx->depth = e.depth;
        vld_take_bits(caps, saved, kDepthBits);
    }
    if (mask & GL_EVAL_BIT) {
        ctx->eval = e.eval;
        vld_take_bits(caps, saved, kEvalBits);
        ctx->enable.evalEnable[0] = e.enable.evalEnable[0];
        ctx->enable.evalEnable[1] = e.enable.evalEnable[1];
    }
    if (mask & GL_FOG_BIT) {
        ctx->fog = e.fog;
        vld_take_bits(caps, saved, kFogBits);
    }
    if (mask & GL_HINT_BIT)
        ctx->hint = e.hint;
    if (mask & GL_LIGHTING_BIT) {
        ctx->lighting = e.lighting;
        vld_take_bits(caps, saved, kLightingBits);
        ctx->enable.lightEnableBits = e.enable.lightEnableBits;
    }
    if (mask & GL_LINE_BIT) {
        ctx->line = e.line;
        vld_take_bits(caps, saved, kLineBits);
    }
    if (mask & GL_LIST_BIT)
        ctx->list = e.list;
    if (mask & GL_PIXEL_MODE_BIT)
        ctx->pixelMode = e.pixelMode;
    if (mask & GL_POINT_BIT) {
        ctx->point = e.point;
        vld_take_bits(caps, saved, kPointBits);
    }
    if (mask & GL_POLYGON_BIT) {
        ctx->polygon = e.polygon;
        vld_take_bits(caps, saved, kPolygonBits);
    }
    if (mask & GL_POLYGON_STIPPLE_BIT) {
        ctx->polygonStipple = e.polygonStipple;
        vld_take_bits(caps, saved, kPolygonStippleBits);
    }
    if (mask & GL_SCISSOR_BIT) {
        ctx->scissor = e.scissor;
        vld_take_bits(caps, saved, kScissorBits);
    }
    if (mask & GL_STENCIL_BUFFER_BIT) {
        ctx->stencil = e.stencil;
        vld_take_bits(caps, saved, kStencilBits);
    }
    if (mask & GL_TEXTURE_BIT) {
        GLuint names[3];
        for (int i = 0; i < 3; ++i)
            names[i] = vld_bound_name(ctx->texture, kBindTargets[i]);
        ctx->texture = e.texture;
        uint32_t* word = ctx->enable.currentTextureEnable ? ctx->enable.currentTextureEnable
                                                          : &ctx->enable.textureEnableBits[0];
        int unit = (int)(word - ctx->enable.textureEnableBits);
        uint32_t savedWord = (unit == 1) ? e.enable.textureEnableBits[1] : e.enable.textureEnableBits[0];
        *word = (*word & ~0x3Fu) | (savedWord & 0x3Fu);
        for (int i = 0; i < 3; ++i) {
            GLuint now = vld_bound_name(ctx->texture, kBindTargets[i]);
            if (now != names[i])
                __vldim_BindTexture(kBindTargets[i], now);
        }
    }
    if (mask & GL_TRANSFORM_BIT) {
        ctx->transform = e.transform;
        vld_take_bits(caps, saved, kTransformBits);
    }
    if (mask & GL_VIEWPORT_BIT)
        ctx->viewport = e.viewport;

    const uint32_t changed = before.capabilityBits ^ caps;
    if (changed & VLD_CAP_CULL_FACE)
        KSP_vld_polygon_cull_state(ctx);
    if (changed & VLD_CAP_LINE_SMOOTH)
        KSP_vld_update_smooth_line();
    if (changed & VLD_CAP_POINT_SMOOTH)
        KSP_vld_update_smooth_point();
    if (changed & VLD_CAP_POLYGON_SMOOTH)
        KSP_vld_update_smooth_polygon();
    if (changed & VLD_CAP_DEPTH_TEST)
        KSP_vld_update_depth_state();
    if (changed & VLD_CAP_FOG)
        KSP_vld_update_fog_state(ctx);
    if ((changed & VLD_CAP_BLEND) || mask != 0)
        KSP_vld_update_BlendFunc();
    if ((changed & VLD_CAP_ALPHA_TEST) || mask != 0)
        KSP_vld_update_AlphaFunc();
    const uint32_t* wordAfter = ctx->enable.currentTextureEnable ? ctx->enable.currentTextureEnable
                                                                 : &ctx->enable.textureEnableBits[0];
    if ((*wordAfter ^ texBefore) & VLD_TEX_2D)
        KSP_vld_update_texture_state();
    const uint32_t lightsChanged = before.lightEnableBits ^ ctx->enable.lightEnableBits;
    for (int i = 0; i < 8; ++i)
        if (lightsChanged & (1u << i))
            KSP_vld_update_light_source(i, 1 << i);
}
