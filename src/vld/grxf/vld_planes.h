// The face table of a captured primitive: each face's three vertex indices and its plane in
// object space, the unit normal of (b - a) x (c - b) and the distance term.
#pragma once

#include <cstdint>

#include "vld/api/vld_context.h"
#include "vld/grxf/vld_dispatch.h"

// Fills `t` faces from `indices` (three a face) with the planes of their triangles over the
// positions of `vertices`; every plane has the bits of KSP_vld_compute_plane_tri.
void KSP_vld_face_planes(vld_face* faces, int32_t t, const uint32_t* indices, const vld_vertex* vertices);


#if defined(VLD_AVX2_FORMS)
// The AVX2 form (vld_planes_avx2.cpp): the faces in groups of four from the start of the
// table; returns how many it did (a multiple of four), the rest being left to the caller.
__attribute__((target("avx2"))) int32_t KSP_vld_face_planes_avx2(vld_face* faces, int32_t t, const uint32_t* indices,
                                                                 const vld_vertex* vertices);
#endif
