// The per-vertex lighting equation in object space, its four-wide form, and the cache of
// lit colours of compiled batches.
#pragma once

#include <glide2/glide.h>

#include "vld/api/vld_context.h"
#include "vld/grxf/vld_geom.h"

// Lights one vertex with the context's current normal; accumulates r, g, b into `out`, which
// the caller has preset to the scene ambient plus the emission.
void KSP_vld_compute_leq(const float* position, float facing, float* out);

// The same equation with an explicit normal, for callers that hold one.
void KSP_vld_leq_eval(const vld_context* ctx, const float position[3], const float normal[3],
                      float facing, float out[3]);

// The lights of one batch, gathered once so that the per-vertex code walks only the enabled
// ones. Valid while no vertex brings its own material (the products then stay as they are).
struct vld_leq_batch {
    int count;          // enabled lights, in order
    uint8_t index[8];   // their numbers
    bool diffuseOnly;   // every one directional with no specular term: ambient and diffuse only
    bool twoSided;      // a back face is lit with the normal reversed
    float base[3];      // scene ambient plus emission: where every vertex's sum starts
};

// Gathers the enabled lights of the current state for a batch.
void KSP_vld_leq_prepare(const vld_context* ctx, vld_leq_batch* batch);

// The equation of one vertex over a prepared batch: the same sums in the same order as
// KSP_vld_leq_eval, with the directional, diffuse-only lights written out in line.
inline void vld_leq_eval_batch(const vld_context* ctx, const vld_leq_batch& batch,
                               const float position[3], const float normal[3], float facing,
                               float out[3])
{
    if (!batch.diffuseOnly) {
        KSP_vld_leq_eval(ctx, position, normal, facing, out);
        return;
    }
    const vld_lighting_attrib& lg = ctx->lighting;
    const bool flip = batch.twoSided && facing < 0.0f;
    for (int k = 0; k < batch.count; ++k) {
        const int i = batch.index[k];
        const vld_light_object& o = vld_light_obj(lg.lights[i]);
        const vld_light_products& p = lg.lightProducts[i];
        const float* L = o.directionObject;
        float nl = L[0] * normal[0] + L[1] * normal[1] + L[2] * normal[2];
        if (flip)
            nl = -nl;
        float l[3] = {p.ambient[0], p.ambient[1], p.ambient[2]};
        if (nl > 0.0f) {
            l[0] += nl * p.diffuse[0];
            l[1] += nl * p.diffuse[1];
            l[2] += nl * p.diffuse[2];
        }
        out[0] += l[0];
        out[1] += l[1];
        out[2] += l[2];
    }
}

// A colour component clamped to 0..1, upper bound first, and scaled to Glide's 0..255.
inline float vld_color_to_glide(float v)
{
    if (v > 1.0f)
        v = 1.0f;
    else if (v < 0.0f)
        v = 0.0f;
    return v * 255.0f;
}

// The whole colour of one vertex into a screen vertex: takes up the vertex's own attributes
// (offsets of 0 are absent), evaluates or, with lighting off, takes the current colour,
// clamps to 0..1 and scales to 0..255.
void KSP_vld_light_vertex(int position_offset, int normal_offset, int color_offset,
                          int ambient_offset, int emission_offset, int diffuse_offset,
                          int specular_offset, int shininess_offset, float facing,
                          const float* vertex, GrVertex* screen_vertex);

// Four vertices at once: position and normal are three groups of four lanes (x, y, z),
// facing four lanes; fills out with three groups r, g, b, from the scene ambient plus
// emission up. No alpha, no clamp. Powers take integer exponents.
void KSP_vld_compute_leqSse(const float position[3][4], const float normal[3][4],
                            const float facing[4], float out[3][4]);

// The light cache of a compiled batch.
int KSP_vld_lcache_entry_size(vld_dl_record* record);
void KSP_vld_lcache_add_list_data(vld_dl_record* record);
void KSP_vld_lcache_update_list_data(vld_dl_record* record);
