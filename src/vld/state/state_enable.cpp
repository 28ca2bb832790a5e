// Capabilities: glEnable, glDisable and glIsEnabled.
//
// Most capabilities are one bit of `capabilityBits` that the pipeline tests when it draws.
// A few also programme the board at once through their update function; those marked
// "on change" below do so only when the bit really changes.
#include "vld/api/vld_callees.h"
#include "vld/api/vld_error.h"
#include "vld/state/state.h"
#include "vld/state/state_light.h"

namespace {

// What a change of a capability bit does beyond the bit.
enum vld_cap_effect : uint8_t {
    EFFECT_NONE,
    EFFECT_ALPHA,         // on change
    EFFECT_BLEND,         // on change
    EFFECT_DEPTH,         // on change
    EFFECT_FOG,           // on change
    EFFECT_SMOOTH_LINE,   // every call
    EFFECT_SMOOTH_POINT,  // every call
    EFFECT_SMOOTH_POLY,   // every call
    EFFECT_CULL,          // every call
    EFFECT_SCISSOR,       // every call
    EFFECT_OFFSET_FILL,   // every call
};

struct vld_cap_row {
    GLenum cap;
    uint32_t bit;
    vld_cap_effect effect;
};

// The capabilities of `capabilityBits`. Anything not here (and not a texture or light
// capability) is an unknown value: GL_DITHER, the logic ops, GL_AUTO_NORMAL,
// GL_POLYGON_STIPPLE, the clip planes, the evaluator maps and the client arrays included.
constexpr vld_cap_row kCapabilities[] = {
    {GL_ALPHA_TEST, VLD_CAP_ALPHA_TEST, EFFECT_ALPHA},
    {GL_BLEND, VLD_CAP_BLEND, EFFECT_BLEND},
    {GL_DEPTH_TEST, VLD_CAP_DEPTH_TEST, EFFECT_DEPTH},
    {GL_FOG, VLD_CAP_FOG, EFFECT_FOG},
    {GL_LIGHTING, VLD_CAP_LIGHTING, EFFECT_NONE},
    {GL_COLOR_MATERIAL, VLD_CAP_COLOR_MATERIAL, EFFECT_NONE},
    {GL_LINE_STIPPLE, VLD_CAP_LINE_STIPPLE, EFFECT_NONE},
    {GL_LINE_SMOOTH, VLD_CAP_LINE_SMOOTH, EFFECT_SMOOTH_LINE},
    {GL_POINT_SMOOTH, VLD_CAP_POINT_SMOOTH, EFFECT_SMOOTH_POINT},
    {GL_POLYGON_SMOOTH, VLD_CAP_POLYGON_SMOOTH, EFFECT_SMOOTH_POLY},
    {GL_CULL_FACE, VLD_CAP_CULL_FACE, EFFECT_CULL},
    {GL_SCISSOR_TEST, VLD_CAP_SCISSOR_TEST, EFFECT_SCISSOR},
    {GL_STENCIL_TEST, VLD_CAP_STENCIL_TEST, EFFECT_NONE},
    {GL_NORMALIZE, VLD_CAP_NORMALIZE, EFFECT_NONE},
    {GL_POLYGON_OFFSET_POINT, VLD_CAP_POLYGON_OFFSET_POINT, EFFECT_NONE},
    {GL_POLYGON_OFFSET_LINE, VLD_CAP_POLYGON_OFFSET_LINE, EFFECT_NONE},
    {GL_POLYGON_OFFSET_FILL, VLD_CAP_POLYGON_OFFSET_FILL, EFFECT_OFFSET_FILL},
    {GL_VELD_COLOR_CACHING, VLD_CAP_COLOR_CACHING, EFFECT_NONE},
};

const vld_cap_row* vld_find_cap(GLenum cap)
{
    for (const vld_cap_row& row : kCapabilities)
        if (row.cap == cap)
            return &row;
    return nullptr;
}

// The bit of a texture-unit capability, or 0.
uint32_t vld_texture_cap_bit(GLenum cap)
{
    switch (cap) {
    case GL_TEXTURE_1D: return VLD_TEX_1D;
    case GL_TEXTURE_2D: return VLD_TEX_2D;
    case GL_TEXTURE_GEN_S: return VLD_TEX_GEN_S;
    case GL_TEXTURE_GEN_T: return VLD_TEX_GEN_T;
    case GL_TEXTURE_GEN_R: return VLD_TEX_GEN_R;
    case GL_TEXTURE_GEN_Q: return VLD_TEX_GEN_Q;
    default: return 0;
    }
}

bool vld_is_light(GLenum cap)
{
    return cap >= GL_LIGHT0 && cap <= GL_LIGHT0 + 7;
}

// Runs the side effect of a capability after its bit was written; `changed` tells whether
// the bit differs from before.
void vld_cap_side_effect(vld_context* ctx, vld_cap_effect effect, bool changed)
{
    switch (effect) {
    case EFFECT_NONE: break;
    case EFFECT_ALPHA:
        if (changed)
            KSP_vld_update_AlphaFunc();
        break;
    case EFFECT_BLEND:
        if (changed)
            KSP_vld_update_BlendFunc();
        break;
    case EFFECT_DEPTH:
        if (changed)
            KSP_vld_update_depth_state();
        break;
    case EFFECT_FOG:
        if (changed)
            KSP_vld_update_fog_state(ctx);
        break;
    case EFFECT_SMOOTH_LINE: KSP_vld_update_smooth_line(); break;
    case EFFECT_SMOOTH_POINT: KSP_vld_update_smooth_point(); break;
    case EFFECT_SMOOTH_POLY: KSP_vld_update_smooth_polygon(); break;
    case EFFECT_CULL: KSP_vld_polygon_cull_state(ctx); break;
    case EFFECT_SCISSOR: KSP_vld_realize_glScissor(); break;
    case EFFECT_OFFSET_FILL: KSP_vld_update_polygon_offset(GL_FILL); break;
    }
}

// The word of the selected texture unit's enables.
uint32_t* vld_texture_enable_word(vld_context* ctx)
{
    uint32_t* word = ctx->enable.currentTextureEnable;
    return word ? word : &ctx->enable.textureEnableBits[0];
}

// glEnable and glDisable in one body: `on` says which.
void vld_set_capability(GLenum cap, bool on)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    if (const vld_cap_row* row = vld_find_cap(cap)) {
        uint32_t before = ctx->enable.capabilityBits;
        uint32_t after = on ? before | row->bit : before & ~row->bit;
        ctx->enable.capabilityBits = after;
        vld_cap_side_effect(ctx, row->effect, before != after);
        return;
    }
    if (uint32_t bit = vld_texture_cap_bit(cap)) {
        uint32_t* word = vld_texture_enable_word(ctx);
        if (bit == VLD_TEX_1D) {
            // Accepted, but one-dimensional texturing never switches on.
            if (!on)
                *word &= ~bit;
            return;
        }
        if (bit == VLD_TEX_2D) {
            if (on) {
                if (!ctx->textureSystemOn || (*word & bit))
                    return;
                *word |= bit;
                KSP_vld_txr_enable();
            } else if (*word & bit) {
                *word &= ~bit;
                KSP_vld_update_texture_state();
            }
            return;
        }
        *word = on ? *word | bit : *word & ~bit;
        return;
    }
    if (vld_is_light(cap)) {
        int index = (int)(cap - GL_LIGHT0);
        uint32_t bit = 1u << index;
        uint32_t before = ctx->enable.lightEnableBits;
        uint32_t after = on ? before | bit : before & ~bit;
        ctx->enable.lightEnableBits = after;
        if (before != after)
            KSP_vld_update_light_source(index, (int)bit);
        return;
    }
    VLD_GL_ERROR_ENUM(ctx, cap);
}

} // namespace

void __vldim_Enable(GLenum cap)
{
    vld_set_capability(cap, true);
}

void __vldim_Disable(GLenum cap)
{
    vld_set_capability(cap, false);
}

// Reads one capability. GL_TEXTURE_1D is never on; lights above GL_LIGHT7 answer 0 with
// no error; other unknown values are GL_INVALID_ENUM and answer 0.
GLboolean __vldim_IsEnabled(GLenum cap)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return GL_FALSE;
    if (const vld_cap_row* row = vld_find_cap(cap))
        return (ctx->enable.capabilityBits & row->bit) ? GL_TRUE : GL_FALSE;
    if (uint32_t bit = vld_texture_cap_bit(cap))
        return (*vld_texture_enable_word(ctx) & bit) ? GL_TRUE : GL_FALSE;
    if (cap >= GL_LIGHT0 && cap <= GL_LIGHT0 + 0xFFF) {
        if (!vld_is_light(cap))
            return GL_FALSE;
        return (ctx->enable.lightEnableBits >> (cap - GL_LIGHT0)) & 1 ? GL_TRUE : GL_FALSE;
    }
    VLD_GL_ERROR_ENUM(ctx, cap);
    return GL_FALSE;
}
