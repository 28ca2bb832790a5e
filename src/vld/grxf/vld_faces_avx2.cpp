// The one-pass vertex stage of vld_eager.h with AVX2, for machines that have it
// (KSP_vld_eager_vertices picks it at run time): the transform takes x, y, z and w of a vertex
// in the four double lanes of one register, and a vertex's screen fields go out in one 32-byte
// store. No fused multiply-add: the target below leaves it off, so every product and sum
// rounds as it does in the SSE2 form.
//
// Everything this file includes before the target switch is built for the baseline; what
// follows the switch, vld_eager.h included, is built for AVX2 and has internal linkage.
#include "vld/grxf/vldfacex.h"

#if defined(VLD_AVX2_FORMS)

#include <immintrin.h>

#pragma GCC push_options
#pragma GCC target("avx2")

#include "vld/grxf/vld_eager.h"

namespace {

// The AVX2 part of the one-pass stage. Clip coordinates of a position: column j of the
// matrix in the lanes, and the sum taken in the order of the matrix helpers,
// ((x m0 + y m1) + z m2) + m3 lane by lane.
struct vld_eager_avx2 {
    __m256d column[4];

    explicit vld_eager_avx2(const vld_face_matrix& fm)
    {
        for (int j = 0; j < 4; ++j)
            column[j] = _mm256_loadu_pd(fm.m + 4 * j);
    }

    __attribute__((always_inline)) __m128 operator()(const float* p) const
    {
        const __m256d x = _mm256_set1_pd((double)p[0]), y = _mm256_set1_pd((double)p[1]),
                      z = _mm256_set1_pd((double)p[2]);
        __m256d c = _mm256_add_pd(_mm256_mul_pd(x, column[0]), _mm256_mul_pd(y, column[1]));
        c = _mm256_add_pd(_mm256_add_pd(c, _mm256_mul_pd(z, column[2])), column[3]);
        return _mm256_cvtpd_ps(c);
    }

    // The screen fields of a vertex in one 32-byte store: x, y, the slot's own z, r, g, b,
    // the slot's own depth and alpha (the slot's own x and y too when the vertex is outside
    // the volume), then 1/w when it is inside; the same fields as the SSE2 form writes.
    __attribute__((always_inline)) static void screen(GrVertex& s, __m128 colour, __m128 xy, bool high, __m128 o,
                                                      bool inside)
    {
        const __m256 old = _mm256_loadu_ps(&s.x);
        const __m128 pair = high ? _mm_movehl_ps(xy, xy) : xy;
        const __m128 low = _mm_shuffle_ps(pair, colour, _MM_SHUFFLE(0, 0, 1, 0));    // x y r r
        const __m128 high4 = _mm_shuffle_ps(colour, colour, _MM_SHUFFLE(3, 2, 2, 1)); // g b b a
        const __m256 fresh = _mm256_insertf128_ps(_mm256_castps128_ps256(low), high4, 1);
        if (inside) {
            _mm256_storeu_ps(&s.x, _mm256_blend_ps(fresh, old, 0x44));
            _mm_store_ss(&s.oow, o);
        } else {
            _mm256_storeu_ps(&s.x, _mm256_blend_ps(fresh, old, 0x47));
        }
    }
};

} // namespace

void KSP_vld_eager_vertices_avx2(const vld_eager_batch& b, bool clip, bool persp)
{
    vld_eager_dispatch<vld_eager_avx2>(b, clip, persp);
}

#pragma GCC pop_options

#endif
