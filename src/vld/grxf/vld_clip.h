// Clipping of the x87 paths against the six planes of the view volume.
#pragma once

#include <cstdint>

#include "vld/api/vld_context.h"
#include "vld/grxf/vld_geom.h"

// The outcode of a vertex in clip coordinates: x and y against w, then near and far (on w
// in perspective, on z against the orthographic bounds otherwise).
uint16_t KSP_vld_outcode(const vld_context* ctx, const vld_eye_vertex& e);

// Clips the polygon input[0..count-1] against one plane bit; sets *output_count and
// returns the last index processed.
int KSP_vld_clipper(int plane, int count, const int* input, int* output_count, int* output);

// Makes the vertex where the edge from `outside` to `inside` crosses `plane` in the next
// clip slot and appends it; 1 (nothing made) for an edge parallel to the plane.
int KSP_vld_create_new_clip_node(int plane, int outside, int inside, int* output_count, int* output);

inline vld_eye_vertex* vld_eye_at(vld_context* ctx, int i)
{
    return (vld_eye_vertex*)((char*)ctx->eyeVertices + (size_t)i * VLD_EYE_RECORD_BYTES);
}

inline GrVertex* vld_screen_at(vld_context* ctx, int i)
{
    return (GrVertex*)((char*)ctx->screenVertices + (size_t)i * VLD_SCREEN_SLOT_BYTES);
}
