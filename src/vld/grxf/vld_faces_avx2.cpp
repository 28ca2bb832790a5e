// The one-pass vertex stage of vld_eager.h with AVX2, for machines that have it
// (KSP_vld_eager_vertices picks it at run time). Batches of eight vertices or more go eight
// at a time, the lanes holding vertices: positions widened to double and transformed four
// vertices a register, then outcodes, stamps, projection and 1/w eight float lanes a
// register, and the records written field by field from the lanes. Smaller batches, and
// records whose position ends the vertex, take the four-wide body of vld_eager.h, whose
// transform here takes x, y, z and w of a vertex in the four double lanes of one register.
// No fused multiply-add: the target below leaves it off, so every product and sum rounds as
// it does in the SSE2 form and in the per-face route.
//
// Everything this file includes before the target switch is built for the baseline; what
// follows the switch, vld_eager.h included, is built for AVX2 and has internal linkage.
#include "vld/grxf/vldfacex.h"

#if defined(VLD_AVX2_FORMS)

#include <immintrin.h>
#include <type_traits>

#pragma GCC push_options
#pragma GCC target("avx2")

#include "vld/grxf/vld_eager.h"

namespace {

// The AVX2 part of the four-wide body. Clip coordinates of a position: column j of the
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

// Lane K of v into *p, by one extract-to-memory (a plain store for lane 0).
template <int K>
__attribute__((always_inline)) inline void vld_store_lane(float* p, __m128 v)
{
    if (K == 0) {
        _mm_store_ss(p, v);
    } else {
        const int bits = _mm_extract_ps(v, K);
        std::memcpy(p, &bits, sizeof bits);
    }
}

// A float constant given by its bits, in all eight lanes.
__attribute__((always_inline)) inline __m256 vld_bits8(uint32_t bits)
{
    return _mm256_castsi256_ps(_mm256_set1_epi32((int)bits));
}

// The four terms of one clip coordinate, each in four double lanes: the matrix entries
// that multiply x, y and z, and the one added.
struct vld_terms4 {
    __m256d x, y, z, one;
};

__attribute__((always_inline)) inline vld_terms4 vld_terms_of(const double* m)
{
    return {_mm256_set1_pd(m[0]), _mm256_set1_pd(m[4]), _mm256_set1_pd(m[8]), _mm256_set1_pd(m[12])};
}

// The outcode bits of one axis from its two compare masks: the lower bound's bit `low`
// where below it, else the upper bound's (twice the lower one) where above it.
__attribute__((always_inline)) inline __m256 vld_outcode_axis(__m256 below, __m256 above, uint32_t low)
{
    return _mm256_blendv_ps(_mm256_and_ps(above, vld_bits8(2 * low)), vld_bits8(low), below);
}

// The eight-wide pass over a batch of at least eight vertices whose positions can be read
// as four floats (the fourth, not a part of the position, is read and left unused). The
// results are those of vld_eager_pass, bit for bit: the same operations in the same order
// for every value, lanes holding vertices instead of coordinates. When the count is not a
// multiple of eight, the last group (of eight, or of four when at most four are left) ends
// at the last vertex and repeats some vertices of the group before it, which get the same
// values again. `OwnColour`: the vertices carry their colour (colorOffset > 0), else all
// take the current colour.
template <bool Clip, bool Persp, bool OwnColour>
void vld_eager_pass8(const vld_eager_batch& b)
{
    vld_context* const ctx = b.ctx;
    const int count = b.count;
    const size_t step = (size_t)b.stride * sizeof(float);
    const char* const positions = (const char*)(b.vertices + b.position);
    const char* const colours = (const char*)(b.vertices + b.colorOffset);
    char* const eyeBase = (char*)ctx->eyeVertices;
    char* const screenBase = (char*)ctx->screenVertices;

    // The terms of each clip coordinate in four double lanes, summed in the order of the
    // matrix helpers: x = ((x m[0] + y m[4]) + z m[8]) + m[12], and so on.
    const double* m = b.fm->m;
    const vld_terms4 tx = vld_terms_of(m), ty = vld_terms_of(m + 1), tz = vld_terms_of(m + 2),
                     tw = vld_terms_of(m + 3);
    const __m256 halfX = _mm256_set1_ps(ctx->viewport.viewportHalfWidth);
    const __m256 halfY = _mm256_set1_ps(ctx->viewport.viewportHalfHeight);
    const __m256 centreX = _mm256_set1_ps(ctx->viewport.viewportCenterX);
    const __m256 centreY = _mm256_set1_ps(ctx->viewport.viewportCenterY);
    const __m256 bias = _mm256_set1_ps(524288.0f);
    const __m256 scale = _mm256_set1_ps(ctx->depthScale), offset = _mm256_set1_ps(ctx->depthOffset);
    const __m256 one = _mm256_set1_ps(1.0f), sign = _mm256_set1_ps(-0.0f);
    const __m256 nearV = _mm256_set1_ps(b.bounds.nearDepth), farV = _mm256_set1_ps(b.bounds.farDepth);
    const __m128 batchColour = vld_face_color4v(ctx->current.currentColor);

    // The four stamps of an eye record as one 64-bit value: the outcode and the transform
    // stamp in the low half, the attribute stamp (unset when the faces track it) and the
    // projection stamp (a stale one unless the vertex is projected here) in the high one.
    const uint16_t stamp = vertexStamp;
    const uint32_t attrStamp = b.trackAttr ? (uint16_t)(stamp - 1) : stamp;
    const uint32_t lowStamps = (uint32_t)stamp << 16;
    const uint32_t highInside = attrStamp | (uint32_t)stamp << 16;
    const uint32_t highOutside = attrStamp | (uint32_t)(uint16_t)(stamp - 1) << 16;
    const uint64_t stampsInside = (uint64_t)highInside << 32 | lowStamps;
    const __m256i stampLow8 = _mm256_set1_epi32((int)lowStamps);
    const __m256 highInside8 = vld_bits8(highInside), highOutside8 = vld_bits8(highOutside);
    const size_t stampsAt = offsetof(vld_eye_vertex, outcode);

    // Vertices i to i + 7, or i to i + 3 when not `full` (the upper lanes then repeat the
    // lower ones and are not written).
    auto group = [&](int i, auto full) __attribute__((always_inline)) {
        constexpr bool Full = decltype(full)::value;
        constexpr int N = Full ? 8 : 4;
        const char* const p = positions + (size_t)i * step;
        char* const eye = eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES;
        char* const scr = screenBase + (size_t)i * VLD_SCREEN_SLOT_BYTES;
        // Clip coordinates of four vertices from q on, one vertex a lane: each position
        // widened whole, then turned.
        __m128 cx[2], cy[2], cz[2], cw[2];
        #pragma GCC unroll 8
        for (int h = 0; h < N / 4; ++h) {
            const char* q = p + (size_t)(4 * h) * step;
            const __m256d a0 = _mm256_cvtps_pd(_mm_loadu_ps((const float*)q));
            const __m256d a1 = _mm256_cvtps_pd(_mm_loadu_ps((const float*)(q + step)));
            const __m256d a2 = _mm256_cvtps_pd(_mm_loadu_ps((const float*)(q + 2 * step)));
            const __m256d a3 = _mm256_cvtps_pd(_mm_loadu_ps((const float*)(q + 3 * step)));
            const __m256d u0 = _mm256_unpacklo_pd(a0, a1); // x0 x1 | z0 z1
            const __m256d u1 = _mm256_unpackhi_pd(a0, a1); // y0 y1 | -
            const __m256d u2 = _mm256_unpacklo_pd(a2, a3); // x2 x3 | z2 z3
            const __m256d u3 = _mm256_unpackhi_pd(a2, a3); // y2 y3 | -
            const __m256d X = _mm256_permute2f128_pd(u0, u2, 0x20);
            const __m256d Y = _mm256_permute2f128_pd(u1, u3, 0x20);
            const __m256d Z = _mm256_permute2f128_pd(u0, u2, 0x31);
            auto coord = [&](const vld_terms4& t) __attribute__((always_inline)) {
                __m256d c = _mm256_add_pd(_mm256_mul_pd(X, t.x), _mm256_mul_pd(Y, t.y));
                c = _mm256_add_pd(_mm256_add_pd(c, _mm256_mul_pd(Z, t.z)), t.one);
                return _mm256_cvtpd_ps(c);
            };
            cx[h] = coord(tx);
            cy[h] = coord(ty);
            cw[h] = coord(tw);
            if (!Persp)
                cz[h] = coord(tz);
        }
        const int u = Full ? 1 : 0;
        const __m256 X = _mm256_set_m128(cx[u], cx[0]), Y = _mm256_set_m128(cy[u], cy[0]);
        const __m256 W = _mm256_set_m128(cw[u], cw[0]);
        const __m256 Z = Persp ? W : _mm256_set_m128(cz[u], cz[0]);

        // The eye records: x, y and w, and z too when not in perspective.
        if (!Persp) {
            const __m256 xy01 = _mm256_unpacklo_ps(X, Y), xy23 = _mm256_unpackhi_ps(X, Y);
            const __m256 zw01 = _mm256_unpacklo_ps(Z, W), zw23 = _mm256_unpackhi_ps(Z, W);
            const __m256 v0 = _mm256_shuffle_ps(xy01, zw01, _MM_SHUFFLE(1, 0, 1, 0));
            const __m256 v1 = _mm256_shuffle_ps(xy01, zw01, _MM_SHUFFLE(3, 2, 3, 2));
            const __m256 v2 = _mm256_shuffle_ps(xy23, zw23, _MM_SHUFFLE(1, 0, 1, 0));
            const __m256 v3 = _mm256_shuffle_ps(xy23, zw23, _MM_SHUFFLE(3, 2, 3, 2));
            const __m256 v[4] = {v0, v1, v2, v3};
            #pragma GCC unroll 8
            for (int k = 0; k < 4; ++k) {
                _mm_storeu_ps((float*)(eye + k * VLD_EYE_RECORD_BYTES), _mm256_castps256_ps128(v[k]));
                if (Full)
                    _mm_storeu_ps((float*)(eye + (k + 4) * VLD_EYE_RECORD_BYTES), _mm256_extractf128_ps(v[k], 1));
            }
        } else {
            #pragma GCC unroll 8
            for (int h = 0; h < N / 4; ++h) {
                char* const e = eye + 4 * h * VLD_EYE_RECORD_BYTES;
                const __m128 xy01 = _mm_unpacklo_ps(cx[h], cy[h]), xy23 = _mm_unpackhi_ps(cx[h], cy[h]);
                _mm_storel_pi((__m64*)e, xy01);
                _mm_storeh_pi((__m64*)(e + VLD_EYE_RECORD_BYTES), xy01);
                _mm_storel_pi((__m64*)(e + 2 * VLD_EYE_RECORD_BYTES), xy23);
                _mm_storeh_pi((__m64*)(e + 3 * VLD_EYE_RECORD_BYTES), xy23);
                vld_store_lane<0>((float*)e + 3, cw[h]);
                vld_store_lane<1>((float*)(e + VLD_EYE_RECORD_BYTES) + 3, cw[h]);
                vld_store_lane<2>((float*)(e + 2 * VLD_EYE_RECORD_BYTES) + 3, cw[h]);
                vld_store_lane<3>((float*)(e + 3 * VLD_EYE_RECORD_BYTES) + 3, cw[h]);
            }
        }

        // Outcodes and stamps.
        int insideMask = 0xFF;
        if (Clip) {
            const __m256 negW = _mm256_xor_ps(W, sign);
            const __m256 codeX = vld_outcode_axis(_mm256_cmp_ps(X, negW, _CMP_LT_OS), _mm256_cmp_ps(X, W, _CMP_GT_OS),
                                      VLD_CLIP_LEFT);
            const __m256 codeY = vld_outcode_axis(_mm256_cmp_ps(Y, negW, _CMP_LT_OS), _mm256_cmp_ps(Y, W, _CMP_GT_OS),
                                      VLD_CLIP_BOTTOM);
            const __m256 codeD = vld_outcode_axis(_mm256_cmp_ps(Z, nearV, _CMP_LT_OS), _mm256_cmp_ps(Z, farV, _CMP_GT_OS),
                                      VLD_CLIP_NEAR);
            const __m256i code = _mm256_castps_si256(_mm256_or_ps(_mm256_or_ps(codeX, codeY), codeD));
            const __m256 inside = _mm256_castsi256_ps(_mm256_cmpeq_epi32(code, _mm256_setzero_si256()));
            insideMask = _mm256_movemask_ps(inside) | (Full ? 0 : 0xF0);
            const __m256i low = _mm256_or_si256(code, stampLow8);
            const __m256i high = _mm256_castps_si256(_mm256_blendv_ps(highOutside8, highInside8, inside));
            const __m256i s01 = _mm256_unpacklo_epi32(low, high), s23 = _mm256_unpackhi_epi32(low, high);
            #pragma GCC unroll 8
            for (int h = 0; h < N / 4; ++h) {
                char* const e = eye + 4 * h * VLD_EYE_RECORD_BYTES + stampsAt;
                const __m128i a = h ? _mm256_extracti128_si256(s01, 1) : _mm256_castsi256_si128(s01);
                const __m128i c = h ? _mm256_extracti128_si256(s23, 1) : _mm256_castsi256_si128(s23);
                _mm_storel_epi64((__m128i*)e, a);
                _mm_storeh_pd((double*)(e + VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(a));
                _mm_storel_epi64((__m128i*)(e + 2 * VLD_EYE_RECORD_BYTES), c);
                _mm_storeh_pd((double*)(e + 3 * VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(c));
            }
        } else {
            #pragma GCC unroll 8
            for (int k = 0; k < N; ++k)
                std::memcpy(eye + k * VLD_EYE_RECORD_BYTES + stampsAt, &stampsInside, sizeof stampsInside);
        }

        // The projection, for every lane; only the lanes inside the volume are kept.
        __m256 sx = _mm256_mul_ps(halfX, X), sy = _mm256_mul_ps(halfY, Y);
        if (Persp) {
            const __m256 rhw = _mm256_div_ps(one, W);
            sx = _mm256_mul_ps(sx, rhw);
            sy = _mm256_mul_ps(sy, rhw);
        }
        sx = _mm256_add_ps(_mm256_add_ps(sx, centreX), bias);
        sy = _mm256_add_ps(_mm256_add_ps(sy, centreY), bias);
        const __m256 oow = _mm256_div_ps(one, _mm256_add_ps(_mm256_mul_ps(scale, Z), offset));
        const __m256 xy01 = _mm256_unpacklo_ps(sx, sy), xy23 = _mm256_unpackhi_ps(sx, sy);

        // The screen slots: the colour of every vertex (r, g and b, then alpha past the slot's
        // own depth), and x, y and 1/w of those inside.
        #pragma GCC unroll 8
        for (int k = 0; k < N; ++k) {
            GrVertex& s = *(GrVertex*)(scr + k * VLD_SCREEN_SLOT_BYTES);
            const __m128 colour =
                OwnColour ? vld_face_color4v((const float*)(colours + (size_t)(i + k) * step)) : batchColour;
            _mm_storel_pi((__m64*)&s.r, colour);
            vld_store_lane<2>(&s.b, colour);
            vld_store_lane<3>(&s.a, colour);
        }
        auto place = [&](int k) __attribute__((always_inline)) {
            GrVertex& s = *(GrVertex*)(scr + k * VLD_SCREEN_SLOT_BYTES);
            const int h = k >> 2, j = k & 3;
            const __m128 pair = h ? _mm256_extractf128_ps(j < 2 ? xy01 : xy23, 1)
                                  : _mm256_castps256_ps128(j < 2 ? xy01 : xy23);
            if (j & 1)
                _mm_storeh_pi((__m64*)&s.x, pair);
            else
                _mm_storel_pi((__m64*)&s.x, pair);
            const __m128 o = h ? _mm256_extractf128_ps(oow, 1) : _mm256_castps256_ps128(oow);
            switch (j) {
            case 0: vld_store_lane<0>(&s.oow, o); break;
            case 1: vld_store_lane<1>(&s.oow, o); break;
            case 2: vld_store_lane<2>(&s.oow, o); break;
            default: vld_store_lane<3>(&s.oow, o); break;
            }
        };
        if (insideMask == 0xFF) {
            #pragma GCC unroll 8
            for (int k = 0; k < N; ++k)
                place(k);
        } else {
            #pragma GCC unroll 8
            for (int k = 0; k < N; ++k)
                if (insideMask >> k & 1)
                    place(k);
        }
    };

    int i = 0;
    for (; i + 8 <= count; i += 8)
        group(i, std::true_type{});
    if (count - i > 4)
        group(count - 8, std::true_type{});
    else if (i < count)
        group(count - 4, std::false_type{});
}

// The eight variants of the eight-wide pass, by clipping, projection and colour source.
template <bool Clip, bool Persp>
void vld_eager_pass8_of(const vld_eager_batch& b)
{
    if (b.colorOffset > 0)
        vld_eager_pass8<Clip, Persp, true>(b);
    else
        vld_eager_pass8<Clip, Persp, false>(b);
}

} // namespace

void KSP_vld_eager_vertices_avx2(const vld_eager_batch& b, bool clip, bool persp)
{
    // The eight-wide pass reads a position as four floats and its depth bounds apply to
    // the projection's own depth; anything else goes four at a time.
    if (b.count < 8 || b.position + 4 > b.stride || (clip && persp != b.bounds.perspective)) {
        vld_eager_dispatch<vld_eager_avx2>(b, clip, persp);
        return;
    }
    if (clip)
        persp ? vld_eager_pass8_of<true, true>(b) : vld_eager_pass8_of<true, false>(b);
    else
        persp ? vld_eager_pass8_of<false, true>(b) : vld_eager_pass8_of<false, false>(b);
}

#pragma GCC pop_options

#endif
