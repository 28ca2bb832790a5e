// Vertex capture between glBegin and glEnd, and the direct draw entries.
#pragma once

#include "vld/api/vld_context.h"
#include "vld/grxf/vld_dispatch.h"

// Bits of beginAttrMask: the attributes set since glBegin.
enum : uint32_t {
    VLD_ATTR_NORMAL = 1,
    VLD_ATTR_COLOR = 2,
    VLD_ATTR_AMBIENT = 4,
    VLD_ATTR_DIFFUSE = 8,
    VLD_ATTR_SPECULAR = 16,
    VLD_ATTR_EMISSION = 32,
    VLD_ATTR_SHININESS = 64,
    VLD_ATTR_TEX0 = 128,
    VLD_ATTR_TEX1 = 256,
    VLD_ATTR_POOLING_OFF = 0x80000000u,
};

void __vlddo_Begin(GLenum mode);
void __vlddo_Vertex3f(GLfloat x, GLfloat y, GLfloat z);
void __vlddo_End();

void KSP_vld_compute_plane_tri(const float* a, const float* b, const float* c, float* plane);
void KSP_vld_draw_captured_faces(vld_context* ctx, int32_t t, int32_t n, const uint32_t* indices,
                                 vld_vertex* vertices, bool strip);
void KSP_vld_draw_lines_or_points(vld_context* ctx, uint32_t type, bool compile, int64_t count,
                                  const vld_vertex* vertices);

// The pieces of glEnd, for the list builder and for tests.
void KSP_vld_capture_sizes(GLenum type, int64_t n, int64_t* t, int64_t* s);
int64_t KSP_vld_capture_expand_lines(GLenum type, const vld_vertex* v, int64_t n, vld_vertex* out);
int64_t KSP_vld_capture_triangle_indices(GLenum type, int64_t n, uint32_t* out);
// Sets the attribute offsets of a draw record from the attribute mask of the primitive.
void KSP_vld_capture_offsets(vld_dl_record& r, uint32_t mask);
