// The face planes with AVX2, eight or four faces at a time (KSP_vld_face_planes picks this form
// at run time). The normals come from float lanes; their lengths and quotients from the four
// double lanes of a register, each lane rounding as the one-face formula does: one square root
// and three divides serve four faces, where the formula spends them on one.
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

// Eight faces a group: the normals and distance terms in the eight float lanes of one
// register (faces 0 to 3 in the low half, 4 to 7 in the high half), the lengths and quotients
// in two registers of four doubles, each lane rounding as the one-face formula does.
// `Run` is a group whose corners are the vertices 3k to 3k + 23 in order (the table of a
// GL_TRIANGLES primitive): the corners are read at fixed places and the indices written
// from a counter.
template <bool Run>
inline void vld_planes8(const vld_vertex* v, const uint32_t* idx, uint32_t k, vld_face* faces)
{
    // Corner j of face f: the vertex 3k + 3f + j of a run, else the one the table names.
    const vld_vertex* run = v + 3 * (size_t)k;
    auto at = [&](int f, int j) -> const float* {
        return Run ? run[3 * f + j].position : v[idx[3 * f + j]].position;
    };
    // The position of corner j of faces f and f + 4 in one register (and the word after it,
    // the first of the normal in the same record, which the transposition drops).
    auto pair = [&](int f, int j) {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(at(f, j))), _mm_loadu_ps(at(f + 4, j)), 1);
    };
    __m256 cx[3], cy[3], cz[3];
#pragma GCC unroll 3
    for (int j = 0; j < 3; ++j) {
        const __m256 p04 = pair(0, j), p15 = pair(1, j), p26 = pair(2, j), p37 = pair(3, j);
        const __m256 xy01 = _mm256_unpacklo_ps(p04, p15), xy23 = _mm256_unpacklo_ps(p26, p37);
        const __m256 zw01 = _mm256_unpackhi_ps(p04, p15), zw23 = _mm256_unpackhi_ps(p26, p37);
        cx[j] = _mm256_shuffle_ps(xy01, xy23, 0x44);
        cy[j] = _mm256_shuffle_ps(xy01, xy23, 0xEE);
        cz[j] = _mm256_shuffle_ps(zw01, zw23, 0x44);
    }
    const __m256 e1x = _mm256_sub_ps(cx[1], cx[0]), e1y = _mm256_sub_ps(cy[1], cy[0]), e1z = _mm256_sub_ps(cz[1], cz[0]);
    const __m256 e2x = _mm256_sub_ps(cx[2], cx[1]), e2y = _mm256_sub_ps(cy[2], cy[1]), e2z = _mm256_sub_ps(cz[2], cz[1]);
    const __m256 nx = _mm256_sub_ps(_mm256_mul_ps(e1y, e2z), _mm256_mul_ps(e1z, e2y));
    const __m256 ny = _mm256_sub_ps(_mm256_mul_ps(e1z, e2x), _mm256_mul_ps(e1x, e2z));
    const __m256 nz = _mm256_sub_ps(_mm256_mul_ps(e1x, e2y), _mm256_mul_ps(e1y, e2x));

    // The unit normal of four faces from their float normals, in double as the formula has it.
    auto unit4 = [](__m128 nx4, __m128 ny4, __m128 nz4, __m128& fx, __m128& fy, __m128& fz) {
        const __m256d x = _mm256_cvtps_pd(nx4), y = _mm256_cvtps_pd(ny4), z = _mm256_cvtps_pd(nz4);
        __m256d len = _mm256_sqrt_pd(
            _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(x, x), _mm256_mul_pd(y, y)), _mm256_mul_pd(z, z)));
        // A flat face divides by 1 instead of 0; its plane is cleared below.
        len = _mm256_or_pd(len,
                           _mm256_and_pd(_mm256_cmp_pd(len, _mm256_setzero_pd(), _CMP_EQ_OQ), _mm256_set1_pd(1.0)));
        fx = _mm256_cvtpd_ps(_mm256_div_pd(x, len));
        fy = _mm256_cvtpd_ps(_mm256_div_pd(y, len));
        fz = _mm256_cvtpd_ps(_mm256_div_pd(z, len));
    };
    __m128 lx, ly, lz, hx, hy, hz;
    unit4(_mm256_castps256_ps128(nx), _mm256_castps256_ps128(ny), _mm256_castps256_ps128(nz), lx, ly, lz);
    unit4(_mm256_extractf128_ps(nx, 1), _mm256_extractf128_ps(ny, 1), _mm256_extractf128_ps(nz, 1), hx, hy, hz);
    const __m256 fx = _mm256_set_m128(hx, lx), fy = _mm256_set_m128(hy, ly), fz = _mm256_set_m128(hz, lz);

    const __m256 zero = _mm256_setzero_ps();
    const __m256 flat = _mm256_and_ps(_mm256_and_ps(_mm256_cmp_ps(nx, zero, _CMP_EQ_OQ), _mm256_cmp_ps(ny, zero, _CMP_EQ_OQ)),
                                      _mm256_cmp_ps(nz, zero, _CMP_EQ_OQ));
    const __m256 d = _mm256_xor_ps(
        _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(fx, cx[1]), _mm256_mul_ps(fy, cy[1])), _mm256_mul_ps(fz, cz[1])),
        _mm256_set1_ps(-0.0f));
    const __m256 px = _mm256_andnot_ps(flat, fx), py = _mm256_andnot_ps(flat, fy), pz = _mm256_andnot_ps(flat, fz),
                 pd = _mm256_andnot_ps(flat, d);
    // Lane-wise transposition: row f holds the plane of face f low and of face f + 4 high.
    const __m256 t0 = _mm256_unpacklo_ps(px, py), t1 = _mm256_unpacklo_ps(pz, pd);
    const __m256 t2 = _mm256_unpackhi_ps(px, py), t3 = _mm256_unpackhi_ps(pz, pd);
    const __m256 rows[4] = {_mm256_shuffle_ps(t0, t1, 0x44), _mm256_shuffle_ps(t0, t1, 0xEE),
                            _mm256_shuffle_ps(t2, t3, 0x44), _mm256_shuffle_ps(t2, t3, 0xEE)};
    const __m128i first = _mm_add_epi32(_mm_set1_epi32((int)(3 * k)), _mm_setr_epi32(0, 1, 2, 3));
#pragma GCC unroll 4
    for (int f = 0; f < 4; ++f) {
        if (Run) {
            // 3k + 3f + (0, 1, 2, 3): the fourth word lands on the plane's first, written next.
            _mm_storeu_si128((__m128i*)faces[f].v, _mm_add_epi32(first, _mm_set1_epi32(3 * f)));
            _mm_storeu_si128((__m128i*)faces[f + 4].v, _mm_add_epi32(first, _mm_set1_epi32(3 * f + 12)));
        } else {
            std::memcpy(faces[f].v, idx + 3 * f, sizeof faces[f].v);
            std::memcpy(faces[f + 4].v, idx + 3 * (f + 4), sizeof faces[f + 4].v);
        }
        _mm_storeu_ps(faces[f].plane, _mm256_castps256_ps128(rows[f]));
        _mm_storeu_ps(faces[f + 4].plane, _mm256_extractf128_ps(rows[f], 1));
    }
}

// Whether the 24 indices of the group at face k are 3k to 3k + 23 in order.
inline bool vld_group_is_run(const uint32_t* idx, uint32_t k)
{
    const __m256i base = _mm256_set1_epi32((int)(3 * k));
    const __m256i a = _mm256_xor_si256(_mm256_loadu_si256((const __m256i*)idx),
                                       _mm256_add_epi32(base, _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7)));
    const __m256i b = _mm256_xor_si256(_mm256_loadu_si256((const __m256i*)(idx + 8)),
                                       _mm256_add_epi32(base, _mm256_setr_epi32(8, 9, 10, 11, 12, 13, 14, 15)));
    const __m256i c = _mm256_xor_si256(_mm256_loadu_si256((const __m256i*)(idx + 16)),
                                       _mm256_add_epi32(base, _mm256_setr_epi32(16, 17, 18, 19, 20, 21, 22, 23)));
    const __m256i any = _mm256_or_si256(_mm256_or_si256(a, b), c);
    return _mm256_testz_si256(any, any) != 0;
}

// The group of eight at face k, by the run form when its indices allow.
inline void vld_planes8_at(const vld_vertex* v, const uint32_t* indices, uint32_t k, vld_face* faces)
{
    const uint32_t* idx = indices + 3 * (size_t)k;
    if (vld_group_is_run(idx, k))
        vld_planes8<true>(v, idx, k, faces + k);
    else
        vld_planes8<false>(v, idx, k, faces + k);
}

} // namespace

// Groups of eight; a remainder of three or more faces behind at least one group is covered by
// one more group ending at the last face (its first faces are written again with the same
// values); then groups of four.
int32_t KSP_vld_face_planes_avx2(vld_face* faces, int32_t t, const uint32_t* indices, const vld_vertex* vertices)
{
    int32_t k = 0;
    for (; k + 8 <= t; k += 8)
        vld_planes8_at(vertices, indices, (uint32_t)k, faces);
    if (k > 0 && t - k >= 3) {
        vld_planes8_at(vertices, indices, (uint32_t)(t - 8), faces);
        return t;
    }
    for (; k + 4 <= t; k += 4) {
        vld_planes4 work;
        vld_planes4_start(vertices, indices + 3 * (size_t)k, work);
        vld_planes4_finish(work, indices + 3 * (size_t)k, faces + k);
    }
    return k;
}

#pragma GCC pop_options

#endif
