// The per-vertex lighting equation in object space, its four-wide form, and the cache of
// lit colours of compiled batches.
#pragma once

#include <glide2/glide.h>

#include "vld/api/vld_context.h"

// Lights one vertex with the context's current normal; accumulates r, g, b into `out`, which
// the caller has preset to the scene ambient plus the emission.
void KSP_vld_compute_leq(const float* position, float facing, float* out);

// The same equation with an explicit normal, for callers that hold one.
void KSP_vld_leq_eval(const vld_context* ctx, const float position[3], const float normal[3],
                      float facing, float out[3]);

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
