// Sutherland-Hodgman clipping of one polygon at a time, with new vertices in the slots kept
// behind the batch's vertices. x and y are clipped against w; near and far against the eye
// depths of the projection (perspective) or the orthographic bounds.
#include "vld/grxf/vld_clip.h"

namespace {

// Numerator and denominator of the crossing parameter of the edge a (outside) to b.
bool vld_clip_parameter(const vld_context* ctx, int plane, const vld_eye_vertex& a,
                        const vld_eye_vertex& b, float* t)
{
    float num, den;
    const bool persp = ctx->isPerspective != 0;
    switch (plane) {
    case VLD_CLIP_NEAR:
        num = persp ? ctx->eyeDepthNear - a.w : ctx->orthoClipMin - a.z;
        den = persp ? b.w - a.w : b.z - a.z;
        break;
    case VLD_CLIP_FAR:
        num = persp ? ctx->eyeDepthFar - a.w : ctx->orthoClipMax - a.z;
        den = persp ? b.w - a.w : b.z - a.z;
        break;
    case VLD_CLIP_LEFT:
        num = a.x + a.w;
        den = a.x - b.x + a.w - b.w;
        break;
    case VLD_CLIP_RIGHT:
        num = a.x - a.w;
        den = a.x - b.x - a.w + b.w;
        break;
    case VLD_CLIP_BOTTOM:
        num = a.y + a.w;
        den = a.y - b.y + a.w - b.w;
        break;
    default: // top
        num = a.y - a.w;
        den = a.y - b.y - a.w + b.w;
        break;
    }
    if (den == 0.0f)
        return false;
    float v = num / den;
    *t = v < 0.0f ? 0.0f : (v > 1.0f ? 1.0f : v);
    return true;
}

float vld_lerp(float a, float b, float t)
{
    return a + (b - a) * t;
}

} // namespace

uint16_t KSP_vld_outcode(const vld_context* ctx, const vld_eye_vertex& e)
{
    uint16_t code = 0;
    if (e.x < -e.w)
        code |= VLD_CLIP_LEFT;
    else if (e.x > e.w)
        code |= VLD_CLIP_RIGHT;
    if (e.y < -e.w)
        code |= VLD_CLIP_BOTTOM;
    else if (e.y > e.w)
        code |= VLD_CLIP_TOP;
    if (ctx->isPerspective) {
        if (e.w < ctx->eyeDepthNear)
            code |= VLD_CLIP_NEAR;
        else if (e.w > ctx->eyeDepthFar)
            code |= VLD_CLIP_FAR;
    } else {
        if (e.z < ctx->orthoClipMin)
            code |= VLD_CLIP_NEAR;
        else if (e.z > ctx->orthoClipMax)
            code |= VLD_CLIP_FAR;
    }
    return code;
}

// The edge is always taken from its outside end, so both triangles that share an edge make
// bit-identical vertices on it. The new vertex may lie outside a plane not yet treated; its
// outcode joins clipCodes so that that plane is visited too.
int KSP_vld_create_new_clip_node(int plane, int outside, int inside, int* output_count, int* output)
{
    vld_context* ctx = vldGc;
    const vld_eye_vertex& a = *vld_eye_at(ctx, outside);
    const vld_eye_vertex& b = *vld_eye_at(ctx, inside);
    float t;
    if (!vld_clip_parameter(ctx, plane, a, b, &t))
        return 1;
    const int slot = ctx->clipVertexNext;
    vld_eye_vertex& n = *vld_eye_at(ctx, slot);
    n.x = vld_lerp(a.x, b.x, t);
    n.y = vld_lerp(a.y, b.y, t);
    if (!ctx->isPerspective)
        n.z = vld_lerp(a.z, b.z, t);
    n.w = vld_lerp(a.w, b.w, t);
    n.outcode = KSP_vld_outcode(ctx, n);
    ctx->clipCodes |= n.outcode;

    const GrVertex& sa = *vld_screen_at(ctx, outside);
    const GrVertex& sb = *vld_screen_at(ctx, inside);
    GrVertex& sn = *vld_screen_at(ctx, slot);
    sn.r = vld_lerp(sa.r, sb.r, t);
    sn.g = vld_lerp(sa.g, sb.g, t);
    sn.b = vld_lerp(sa.b, sb.b, t);
    sn.a = vld_lerp(sa.a, sb.a, t);
    for (int u = 0; u < 2; ++u) {
        if (!(ctx->enable.textureEnableBits[u] & VLD_TEX_2D))
            continue;
        n.s[u] = vld_lerp(a.s[u], b.s[u], t);
        n.t[u] = vld_lerp(a.t[u], b.t[u], t);
        n.q[u] = vld_lerp(a.q[u], b.q[u], t);
    }
    output[(*output_count)++] = slot;
    ctx->clipVertexNext = slot + 1;
    return 0;
}

// One plane of Sutherland-Hodgman. A vertex that leaves the volume along an edge for which
// no crossing can be computed is kept, so that the polygon does not lose a corner.
int KSP_vld_clipper(int plane, int count, const int* input, int* output_count, int* output)
{
    vld_context* ctx = vldGc;
    *output_count = 0;
    if (count <= 0)
        return -1;
    int previous = input[count - 1];
    bool previousIn = !(vld_eye_at(ctx, previous)->outcode & plane);
    int current = previous;
    for (int i = 0; i < count; ++i) {
        current = input[i];
        const bool currentIn = !(vld_eye_at(ctx, current)->outcode & plane);
        if (currentIn) {
            if (!previousIn)
                KSP_vld_create_new_clip_node(plane, previous, current, output_count, output);
            output[(*output_count)++] = current;
        } else if (previousIn) {
            if (KSP_vld_create_new_clip_node(plane, current, previous, output_count, output))
                output[(*output_count)++] = current;
        }
        previous = current;
        previousIn = currentIn;
    }
    return current;
}
