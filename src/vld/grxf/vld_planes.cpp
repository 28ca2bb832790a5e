// The planes of the faces of a captured primitive, one triangle at a time by the formula.
#include "vld/grxf/vld_planes.h"

#include <cmath>

#include "vld/api/vld_capture.h"

namespace {

// The plane of a triangle in object coordinates: the unit normal of (b - a) x (c - b) and
// the distance term, or all zeros for a degenerate triangle. Each component of the normal is
// divided by the length in double and rounded to float. A plain scalar body: the divides
// overlap from one face to the next, and it takes fewer instructions than forms that group
// faces into vector lanes (they spend more on moving values between lanes than they save).
__attribute__((always_inline)) inline void vld_plane_tri(const float* a, const float* b, const float* c,
                                                       float* plane)
{
    const float e1[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const float e2[3] = {c[0] - b[0], c[1] - b[1], c[2] - b[2]};
    const float n[3] = {e1[1] * e2[2] - e1[2] * e2[1], e1[2] * e2[0] - e1[0] * e2[2],
                        e1[0] * e2[1] - e1[1] * e2[0]};
    if (n[0] == 0.0f && n[1] == 0.0f && n[2] == 0.0f) {
        plane[0] = plane[1] = plane[2] = plane[3] = 0.0f;
        return;
    }
    const double len = std::sqrt((double)n[0] * n[0] + (double)n[1] * n[1] + (double)n[2] * n[2]);
    plane[0] = (float)(n[0] / len);
    plane[1] = (float)(n[1] / len);
    plane[2] = (float)(n[2] / len);
    plane[3] = -(plane[0] * b[0] + plane[1] * b[1] + plane[2] * b[2]);
}

} // namespace

// The plane of a triangle, for callers outside the face drawer.
void KSP_vld_compute_plane_tri(const float* a, const float* b, const float* c, float* plane)
{
    vld_plane_tri(a, b, c, plane);
}

void KSP_vld_face_planes(vld_face* faces, int32_t t, const uint32_t* indices, const vld_vertex* vertices)
{
    int32_t k = 0;
#if defined(VLD_AVX2_FORMS)
    if (t >= 4 && KSP_vld_vector_level() == VLD_VECTOR_AVX2)
        k = KSP_vld_face_planes_avx2(faces, t, indices, vertices);
#endif
    for (; k < t; ++k) {
        vld_face& f = faces[k];
        const uint32_t* idx = indices + 3 * (size_t)k;
        f.v[0] = idx[0];
        f.v[1] = idx[1];
        f.v[2] = idx[2];
        vld_plane_tri(vertices[f.v[0]].position, vertices[f.v[1]].position, vertices[f.v[2]].position, f.plane);
    }
}
