// The face planes with AVX2, four faces at a time (KSP_vld_face_planes picks this form at run
// time). The normals of four faces come from float lanes; their lengths and quotients from
// the four double lanes of one register, each lane rounding as the one-face formula does: one
// square root and three divides serve four faces, where the formula spends them on one.
//
// Everything this file includes is read before the target switch below, so that only the code
// of this file is built for AVX2; its helpers have internal linkage.
#include "vld/grxf/vld_planes.h"

#if defined(VLD_AVX2_FORMS)

#include <immintrin.h>

#include <cstring>

#pragma GCC push_options
#pragma GCC target("avx2")

namespace {

// Position x, y and z of corner j of four faces, face k in lane k. The loads take the word
// after the position too (the first of the normal, inside the same record), which the
// transposition drops.
struct vld_corner4 {
    __m128 x, y, z;
};

inline vld_corner4 vld_corner_of(const vld_vertex* v, const uint32_t* idx, int j)
{
    const __m128 p0 = _mm_loadu_ps(v[idx[j]].position);
    const __m128 p1 = _mm_loadu_ps(v[idx[3 + j]].position);
    const __m128 p2 = _mm_loadu_ps(v[idx[6 + j]].position);
    const __m128 p3 = _mm_loadu_ps(v[idx[9 + j]].position);
    const __m128 xy01 = _mm_unpacklo_ps(p0, p1), xy23 = _mm_unpacklo_ps(p2, p3);
    const __m128 zw01 = _mm_unpackhi_ps(p0, p1), zw23 = _mm_unpackhi_ps(p2, p3);
    return {_mm_movelh_ps(xy01, xy23), _mm_movehl_ps(xy23, xy01), _mm_movelh_ps(zw01, zw23)};
}

// What the first pass keeps of four faces: the normals, (b - a) x (c - b) in float, and the
// middle corners for the distance term.
struct vld_planes4 {
    __m128 nx, ny, nz;
    __m128 bx, by, bz;
};

inline void vld_planes4_start(const vld_vertex* v, const uint32_t* idx, vld_planes4& w)
{
    const vld_corner4 a = vld_corner_of(v, idx, 0), b = vld_corner_of(v, idx, 1), c = vld_corner_of(v, idx, 2);
    const __m128 e1x = _mm_sub_ps(b.x, a.x), e1y = _mm_sub_ps(b.y, a.y), e1z = _mm_sub_ps(b.z, a.z);
    const __m128 e2x = _mm_sub_ps(c.x, b.x), e2y = _mm_sub_ps(c.y, b.y), e2z = _mm_sub_ps(c.z, b.z);
    w.nx = _mm_sub_ps(_mm_mul_ps(e1y, e2z), _mm_mul_ps(e1z, e2y));
    w.ny = _mm_sub_ps(_mm_mul_ps(e1z, e2x), _mm_mul_ps(e1x, e2z));
    w.nz = _mm_sub_ps(_mm_mul_ps(e1x, e2y), _mm_mul_ps(e1y, e2x));
    w.bx = b.x;
    w.by = b.y;
    w.bz = b.z;
}

// The second pass: the length in double, the three quotients rounded to float, the distance
// term in float, a flat face (a zero normal) written as zeros; then the indices and planes of
// the four faces into the table.
inline void vld_planes4_finish(const vld_planes4& w, const uint32_t* idx, vld_face* faces)
{
    const __m256d x = _mm256_cvtps_pd(w.nx), y = _mm256_cvtps_pd(w.ny), z = _mm256_cvtps_pd(w.nz);
    __m256d len =
        _mm256_sqrt_pd(_mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(x, x), _mm256_mul_pd(y, y)), _mm256_mul_pd(z, z)));
    // A flat face divides by 1 instead of 0; its plane is cleared below.
    len = _mm256_or_pd(len, _mm256_and_pd(_mm256_cmp_pd(len, _mm256_setzero_pd(), _CMP_EQ_OQ), _mm256_set1_pd(1.0)));
    const __m128 fx = _mm256_cvtpd_ps(_mm256_div_pd(x, len));
    const __m128 fy = _mm256_cvtpd_ps(_mm256_div_pd(y, len));
    const __m128 fz = _mm256_cvtpd_ps(_mm256_div_pd(z, len));
    const __m128 zero = _mm_setzero_ps();
    const __m128 flat =
        _mm_and_ps(_mm_and_ps(_mm_cmpeq_ps(w.nx, zero), _mm_cmpeq_ps(w.ny, zero)), _mm_cmpeq_ps(w.nz, zero));
    const __m128 d = _mm_xor_ps(
        _mm_add_ps(_mm_add_ps(_mm_mul_ps(fx, w.bx), _mm_mul_ps(fy, w.by)), _mm_mul_ps(fz, w.bz)), _mm_set1_ps(-0.0f));
    __m128 px = _mm_andnot_ps(flat, fx), py = _mm_andnot_ps(flat, fy), pz = _mm_andnot_ps(flat, fz),
           pd = _mm_andnot_ps(flat, d);
    _MM_TRANSPOSE4_PS(px, py, pz, pd);
    const __m128 rows[4] = {px, py, pz, pd};
    for (int k = 0; k < 4; ++k) {
        std::memcpy(faces[k].v, idx + 3 * k, sizeof faces[k].v);
        _mm_storeu_ps(faces[k].plane, rows[k]);
    }
}

} // namespace

// Up to sixteen groups at a time through the two passes: in two passes the root-and-divide
// chain of one group does not hold up the loads and products of the next.
int32_t KSP_vld_face_planes_avx2(vld_face* faces, int32_t t, const uint32_t* indices, const vld_vertex* vertices)
{
    int32_t k = 0;
    vld_planes4 work[16];
    while (k + 4 <= t) {
        const int groups = (t - k) / 4 < 16 ? (t - k) / 4 : 16;
        for (int g = 0; g < groups; ++g)
            vld_planes4_start(vertices, indices + 3 * (size_t)(k + 4 * g), work[g]);
        for (int g = 0; g < groups; ++g, k += 4)
            vld_planes4_finish(work[g], indices + 3 * (size_t)k, faces + k);
    }
    return k;
}

#pragma GCC pop_options

#endif
