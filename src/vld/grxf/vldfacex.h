// The generic face path: transform, light, clip and issue a batch of triangles, one
// triangle at a time. One body, built eight times by three switches so that each copy has
// the tests of its case removed:
//   Clip     outcodes, trivial rejection and clipping (else triangles go out as they are)
//   Persp    plane test with d, divide by w, near and far on w (else on z, w taken as 1)
//   PerTri   the texture scale factor per triangle (else once per batch from the sphere)
// Work is vertex-lazy and guarded by the batch stamp: a vertex is transformed when a
// triangle that survives culling first needs it, given its attributes when one that
// survives rejection needs it, and projected when it is inside the volume.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "support/mth/mat.h"
#include "vld/api/vld_callees.h"
#include "vld/grxf/vld_clip.h"
#include "vld/grxf/vld_dispatch.h"
#include "vld/grxf/vld_geom.h"
#include "vld/grxf/vld_leq.h"

// The texture state of one unit, reduced once per batch.
struct vld_face_unit {
    bool enabled;
    bool from_vertex;
    int s_index, t_index;
    const float* current;
    const float* matrix; // null when the unit's texture matrix is the identity
    float s_scale, t_scale, detail_scale;
};

// The TMU fields of one GL unit's coordinates at one vertex, before scaling by the factor.
struct vld_tmu_value {
    float oow, sow, tow;
};

// Reduces the texture state of the two units for the batch.
void KSP_vld_face_units(vld_context* ctx, const vld_dl_record* r, bool cached,
                        vld_face_unit units[2]);
// The texture coordinates of one vertex for the enabled units, into its eye record.
void KSP_vld_face_texcoords(const vld_face_unit units[2], const float* vertex, vld_eye_vertex& e);
// The TMU fields of a projected vertex by textureMode, each scaled by f (and oow by q).
void KSP_vld_face_tmu(const vld_context* ctx, const vld_face_unit units[2], const vld_eye_vertex& e,
                      float f, vld_tmu_value tmu[2]);
// Sends one triangle, antialiased with the given edge flags when smoothing is on.
void KSP_vld_issue_triangle(const vld_context* ctx, const GrVertex* a, const GrVertex* b,
                            const GrVertex* c, int ab, int bc, int ca);

// The combined matrix of a batch, widened once: every vertex is transformed in double and
// rounded to float, term by term as the matrix helpers do it, so the results are the same.
struct vld_face_matrix {
    double m[16];
};

inline void vld_face_matrix_load(vld_face_matrix& fm, const float* m)
{
    for (int i = 0; i < 16; ++i)
        fm.m[i] = (double)m[i];
}

// Clip coordinates of (x, y, z, 1): x, y and w, and z too when `WithZ`.
template <bool WithZ>
inline void vld_face_transform(const vld_face_matrix& fm, const float* v, vld_eye_vertex& e)
{
    const double* m = fm.m;
    const double x = (double)v[0], y = (double)v[1], z = (double)v[2];
    const double cx = x * m[0] + y * m[4] + z * m[8] + m[12];
    const double cy = x * m[1] + y * m[5] + z * m[9] + m[13];
    const double cw = x * m[3] + y * m[7] + z * m[11] + m[15];
    e.x = (float)cx;
    e.y = (float)cy;
    if (WithZ)
        e.z = (float)(x * m[2] + y * m[6] + z * m[10] + m[14]);
    e.w = (float)cw;
}

// The bounds of the outcode test, taken once for the batch.
struct vld_face_bounds {
    bool perspective;
    float nearDepth, farDepth; // on w in perspective, on z otherwise
};

// The outcode of a transformed vertex, as KSP_vld_outcode computes it.
inline uint16_t vld_face_outcode(const vld_face_bounds& b, const vld_eye_vertex& e)
{
    uint16_t code = 0;
    if (e.x < -e.w)
        code |= VLD_CLIP_LEFT;
    else if (e.x > e.w)
        code |= VLD_CLIP_RIGHT;
    if (e.y < -e.w)
        code |= VLD_CLIP_BOTTOM;
    else if (e.y > e.w)
        code |= VLD_CLIP_TOP;
    const float d = b.perspective ? e.w : e.z;
    if (d < b.nearDepth)
        code |= VLD_CLIP_NEAR;
    else if (d > b.farDepth)
        code |= VLD_CLIP_FAR;
    return code;
}

// How a batch's vertices get their colour, chosen once for the batch.
enum vld_color_route : int {
    VLD_COLOR_GENERAL, // KSP_vld_light_vertex: the vertices bring material of their own
    VLD_COLOR_CACHED,  // the lit colour of the light cache
    VLD_COLOR_UNLIT,   // lighting off: the current colour, taken up from the vertex if it has one
    VLD_COLOR_LIT,     // lighting on with the context's material: normal take-up and the equation
};

// An RGBA colour clamped to 0..1 and scaled to 0..255 into a screen vertex, the four
// channels at once; the same values as vld_color_to_glide channel by channel (a NaN and
// a negative zero pass through unchanged, as they do there).
#if defined(__SSE2__)
__attribute__((always_inline)) inline __m128 vld_face_color4v(const float* c)
{
    // min(1, v) keeps v unless 1 < v, max(0, t) keeps t unless 0 > t: both keep a NaN.
    __m128 v = _mm_loadu_ps(c);
    v = _mm_min_ps(_mm_set1_ps(1.0f), v);
    v = _mm_max_ps(_mm_setzero_ps(), v);
    return _mm_mul_ps(v, _mm_set1_ps(255.0f));
}
#endif

__attribute__((always_inline)) inline void vld_face_color4(const float* c, GrVertex& s)
{
#if defined(__SSE2__)
    const __m128 v = vld_face_color4v(c);
    _mm_storel_pi((__m64*)&s.r, v);
    _mm_store_ss(&s.b, _mm_movehl_ps(v, v));
    _mm_store_ss(&s.a, _mm_shuffle_ps(v, v, 3));
#else
    s.r = vld_color_to_glide(c[0]);
    s.g = vld_color_to_glide(c[1]);
    s.b = vld_color_to_glide(c[2]);
    s.a = vld_color_to_glide(c[3]);
#endif
}

// A vertex's colour for Glide: its own when the record carries one (colorOffset > 0),
// otherwise the batch's, converted once.
__attribute__((always_inline)) inline void vld_face_take_color(const float* vertex, int colorOffset,
                                                               const GrVertex& batchColor, GrVertex& s)
{
    if (colorOffset > 0) {
        vld_face_color4(vertex + colorOffset, s);
        return;
    }
    s.r = batchColor.r;
    s.g = batchColor.g;
    s.b = batchColor.b;
    s.a = batchColor.a;
}

// The outcode bits of the lower bounds (x < -w, y < -w, d < near) and of the upper ones
// (x > w, y > w, d > far), indexed by a three-bit compare mask.
inline constexpr uint16_t kFaceLowCodes[8] = {
    0, VLD_CLIP_LEFT, VLD_CLIP_BOTTOM, VLD_CLIP_LEFT | VLD_CLIP_BOTTOM, VLD_CLIP_NEAR,
    VLD_CLIP_NEAR | VLD_CLIP_LEFT, VLD_CLIP_NEAR | VLD_CLIP_BOTTOM, VLD_CLIP_NEAR | VLD_CLIP_LEFT | VLD_CLIP_BOTTOM};
inline constexpr uint16_t kFaceHighCodes[8] = {
    0, VLD_CLIP_RIGHT, VLD_CLIP_TOP, VLD_CLIP_RIGHT | VLD_CLIP_TOP, VLD_CLIP_FAR,
    VLD_CLIP_FAR | VLD_CLIP_RIGHT, VLD_CLIP_FAR | VLD_CLIP_TOP, VLD_CLIP_FAR | VLD_CLIP_RIGHT | VLD_CLIP_TOP};

template <bool Clip, bool Persp, bool PerTri>
struct vld_face_body {
    // Screen position, depth and TMU fields of a vertex inside the volume.
    static void project(vld_context* ctx, const vld_face_unit units[2], float batchScale,
                        vld_eye_vertex& e, GrVertex& s)
    {
        const float rhw = Persp ? 1.0f / e.w : 1.0f;
        s.oow = 1.0f / (ctx->depthScale * (Persp ? e.w : e.z) + ctx->depthOffset);
        s.x = ctx->viewport.viewportHalfWidth * e.x * rhw + ctx->viewport.viewportCenterX + 524288.0f;
        s.y = ctx->viewport.viewportHalfHeight * e.y * rhw + ctx->viewport.viewportCenterY + 524288.0f;
        if (units[0].enabled || units[1].enabled) {
            vld_tmu_value tmu[2];
            KSP_vld_face_tmu(ctx, units, e, PerTri ? rhw : batchScale * rhw, tmu);
            for (int k = 0; k < 2; ++k) {
                if (PerTri) {
                    e.base_oow[k] = tmu[k].oow;
                    e.base_sow[k] = tmu[k].sow;
                    e.base_tow[k] = tmu[k].tow;
                } else {
                    s.tmuvtx[k].oow = tmu[k].oow;
                    s.tmuvtx[k].sow = tmu[k].sow;
                    s.tmuvtx[k].tow = tmu[k].tow;
                }
            }
        }
        e.project_stamp = vertexStamp;
    }

    // The per-triangle factor: every vertex's TMU fields from its base values.
    static void scale_tmu(vld_context* ctx, const vld_face_unit units[2], const int* idx, int n)
    {
        if (!(units[0].enabled || units[1].enabled))
            return;
        float factor = vld_eye_at(ctx, idx[0])->w;
        for (int i = 1; i < n; ++i)
            if (vld_eye_at(ctx, idx[i])->w < factor)
                factor = vld_eye_at(ctx, idx[i])->w;
        for (int i = 0; i < n; ++i) {
            const vld_eye_vertex& e = *vld_eye_at(ctx, idx[i]);
            GrVertex& s = *vld_screen_at(ctx, idx[i]);
            for (int k = 0; k < 2; ++k) {
                s.tmuvtx[k].oow = factor * e.base_oow[k];
                s.tmuvtx[k].sow = factor * e.base_sow[k];
                s.tmuvtx[k].tow = factor * e.base_tow[k];
            }
        }
    }

    // Clips a triangle whose outcodes straddle the volume and issues what remains as a fan.
    static void clip_and_issue(vld_context* ctx, const vld_face_unit units[2], float batchScale,
                               const uint32_t tri[3])
    {
        static const int kPlanes[6] = {VLD_CLIP_NEAR,  VLD_CLIP_FAR, VLD_CLIP_RIGHT,
                                       VLD_CLIP_LEFT, VLD_CLIP_TOP, VLD_CLIP_BOTTOM};
        int lists[2][100];
        int count = 3;
        int* in = lists[0];
        int* out = lists[1];
        for (int k = 0; k < 3; ++k)
            in[k] = (int)tri[k];
        ctx->clipVertexNext = ctx->clipVertexBase;
        for (int plane : kPlanes) {
            if (!(ctx->clipCodes & (uint32_t)plane))
                continue;
            int outCount = 0;
            KSP_vld_clipper(plane, count, in, &outCount, out);
            if (outCount < 3)
                return;
            count = outCount;
            int* t = in;
            in = out;
            out = t;
        }
        for (int i = 0; i < count; ++i) {
            vld_eye_vertex& e = *vld_eye_at(ctx, in[i]);
            if (in[i] < ctx->clipVertexBase && e.project_stamp == vertexStamp)
                continue;
            project(ctx, units, batchScale, e, *vld_screen_at(ctx, in[i]));
        }
        if (PerTri)
            scale_tmu(ctx, units, in, count);
        for (int i = 2; i < count; ++i) {
            int ab = 1, bc = 1, ca = 1;
            if (count >= 4) {
                ab = i == 2 ? 1 : 0;
                ca = i == count - 1 ? 1 : 0;
            }
            KSP_vld_issue_triangle(ctx, vld_screen_at(ctx, in[0]), vld_screen_at(ctx, in[i - 1]),
                                   vld_screen_at(ctx, in[i]), ab, bc, ca);
        }
    }

    // The colour of one vertex by the batch's route, into its screen vertex.
    __attribute__((always_inline)) static void color(vld_context* ctx, const vld_dl_record* r, vld_color_route route,
                      const vld_leq_batch& lights, const float* vertex, float facing, GrVertex& s)
    {
        switch (route) {
        case VLD_COLOR_CACHED: {
            const float* c = vertex + r->lcache_color;
            s.r = c[2];
            s.g = c[1];
            s.b = c[0];
            s.a = c[3];
            return;
        }
        case VLD_COLOR_UNLIT: {
            float* cur = ctx->current.currentColor;
            if (r->color_offset > 0)
                std::memcpy(cur, vertex + r->color_offset, 4 * sizeof(float));
            vld_face_color4(cur, s);
            return;
        }
        case VLD_COLOR_LIT: {
            float* n = ctx->current.currentNormal;
            if (r->normal_offset > 0) {
                std::memcpy(n, vertex + r->normal_offset, 3 * sizeof(float));
                if (ctx->enable.capabilityBits & VLD_CAP_NORMALIZE) {
                    const float q = n[0] * n[0] + n[1] * n[1] + n[2] * n[2];
                    if ((q < 0.9999f || q > 1.0001f) && q != 0.0f) {
                        const float f = 1.0f / std::sqrt(q);
                        n[0] *= f, n[1] *= f, n[2] *= f;
                    }
                }
            }
            float rgb[3] = {lights.base[0], lights.base[1], lights.base[2]};
            vld_leq_eval_batch(ctx, lights, vertex + r->position_offset, n, facing, rgb);
            s.r = vld_color_to_glide(rgb[0]);
            s.g = vld_color_to_glide(rgb[1]);
            s.b = vld_color_to_glide(rgb[2]);
            s.a = vld_color_to_glide(ctx->lighting.materialDiffuse[3]);
            return;
        }
        default:
            KSP_vld_light_vertex(r->position_offset, r->normal_offset, r->color_offset,
                                 r->ambient_offset, r->emission_offset, r->diffuse_offset,
                                 r->specular_offset, r->shininess_offset, facing, vertex, &s);
            return;
        }
    }

    // The vertex work of an unlit, untextured batch for its first `count` vertices, in one
    // pass: transform and outcode, the colour (the vertex's own, or the current colour
    // converted once), and the projection of those inside the volume. The results are those
    // the lazy route gives a vertex; a vertex that no face reaches only fills its scratch
    // slots, which nothing reads. The current colour is left to the caller. With `trackAttr`
    // the attribute stamps are left unset, so that the faces can tell which vertex they reach
    // first; without it they are set here.
    static void eager_vertices(vld_context* ctx, const vld_dl_record* r, const vld_face_matrix& fm,
                               const vld_face_bounds& bounds, const float* vertices, int stride, int count,
                               bool trackAttr)
    {
        const uint16_t stamp = vertexStamp;
        const int position = r->position_offset;
        const int colorOffset = r->color_offset;
        GrVertex batchColor;
        vld_face_color4(ctx->current.currentColor, batchColor);
        char* const eyeBase = (char*)ctx->eyeVertices;
        char* const screenBase = (char*)ctx->screenVertices;
#if defined(__SSE2__)
        // Two lanes of double for the matrix terms, four lanes of float for what follows:
        // every lane does the operations of the scalar form in the same order.
        const double* m = fm.m;
        const __m128d mxy[4] = {_mm_setr_pd(m[0], m[1]), _mm_setr_pd(m[4], m[5]), _mm_setr_pd(m[8], m[9]),
                                _mm_setr_pd(m[12], m[13])};
        const __m128d mzw[4] = {_mm_setr_pd(m[2], m[3]), _mm_setr_pd(m[6], m[7]),
                                _mm_setr_pd(m[10], m[11]), _mm_setr_pd(m[14], m[15])};
        const __m128 half = _mm_setr_ps(ctx->viewport.viewportHalfWidth, ctx->viewport.viewportHalfHeight, 0.0f, 0.0f);
        const __m128 centre = _mm_setr_ps(ctx->viewport.viewportCenterX, ctx->viewport.viewportCenterY, 0.0f, 0.0f);
        const __m128 bias = _mm_set1_ps(524288.0f);
        const __m128 sign = _mm_set1_ps(-0.0f);
        const float depthScale = ctx->depthScale, depthOffset = ctx->depthOffset;
        // The outcode from two compare masks over (x, y, d): the lower bounds (-w, -w, near)
        // and the upper ones (w, w, far), an upper bit only where its lower one is clear.
        const __m128 nearV = _mm_set1_ps(bounds.nearDepth), farV = _mm_set1_ps(bounds.farDepth);
        const bool perspective = bounds.perspective;
        // The four stamps of an eye record in one store: the outcode, the transform stamp,
        // the attribute stamp (taken when the faces do not track it) and the projection stamp
        // (a stale one unless the vertex is projected here).
        const uint64_t attrStamp = trackAttr ? (uint16_t)(stamp - 1) : stamp;
        const uint64_t stampsInside = (uint64_t)stamp << 16 | attrStamp << 32 | (uint64_t)stamp << 48;
        const uint64_t stampsOutside = (uint64_t)stamp << 16 | attrStamp << 32 | (uint64_t)(uint16_t)(stamp - 1) << 48;
        int i = 0;
        // Four vertices at a time: each transformed as below, then their outcodes, stamps and
        // projections side by side in the lanes, every lane doing what the loop below does.
        const __m128 halfX = _mm_set1_ps(ctx->viewport.viewportHalfWidth);
        const __m128 halfY = _mm_set1_ps(ctx->viewport.viewportHalfHeight);
        const __m128 centreX = _mm_set1_ps(ctx->viewport.viewportCenterX);
        const __m128 centreY = _mm_set1_ps(ctx->viewport.viewportCenterY);
        const __m128 scale4 = _mm_set1_ps(depthScale), offset4 = _mm_set1_ps(depthOffset);
        const __m128 one = _mm_set1_ps(1.0f);
        const __m128i stampLow = _mm_set1_epi32((int)((uint32_t)stamp << 16));
        const __m128i highInside = _mm_set1_epi32((int)(uint32_t)(stampsInside >> 32));
        const __m128i highOutside = _mm_set1_epi32((int)(uint32_t)(stampsOutside >> 32));
        const __m128 batchColor4 = vld_face_color4v(ctx->current.currentColor);
        const size_t stampsAt = offsetof(vld_eye_vertex, outcode);
        for (; i + 4 <= count; i += 4) {
            __m128 c[4];
            for (int k = 0; k < 4; ++k) {
                const float* p = vertices + (size_t)(i + k) * stride + position;
                const __m128d x = _mm_set1_pd((double)p[0]), y = _mm_set1_pd((double)p[1]),
                              z = _mm_set1_pd((double)p[2]);
                __m128d xy = _mm_add_pd(_mm_mul_pd(x, mxy[0]), _mm_mul_pd(y, mxy[1]));
                xy = _mm_add_pd(_mm_add_pd(xy, _mm_mul_pd(z, mxy[2])), mxy[3]);
                __m128d zw = _mm_add_pd(_mm_mul_pd(x, mzw[0]), _mm_mul_pd(y, mzw[1]));
                zw = _mm_add_pd(_mm_add_pd(zw, _mm_mul_pd(z, mzw[2])), mzw[3]);
                c[k] = _mm_movelh_ps(_mm_cvtpd_ps(xy), _mm_cvtpd_ps(zw));
                float* e = (float*)(eyeBase + (size_t)(i + k) * VLD_EYE_RECORD_BYTES);
                if (!Persp) {
                    _mm_storeu_ps(e, c[k]);
                } else {
                    _mm_storel_pi((__m64*)e, c[k]);
                    _mm_store_ss(e + 3, _mm_shuffle_ps(c[k], c[k], 0xFF));
                }
            }
            __m128 X = c[0], Y = c[1], Z = c[2], W = c[3];
            _MM_TRANSPOSE4_PS(X, Y, Z, W);
            __m128i code = _mm_setzero_si128();
            if (Clip) {
                const __m128 D = perspective ? W : Z;
                const __m128 negW = _mm_xor_ps(W, sign);
                const __m128 left = _mm_cmplt_ps(X, negW);
                const __m128 bottom = _mm_cmplt_ps(Y, negW);
                const __m128 nearOut = _mm_cmplt_ps(D, nearV);
                const __m128 right = _mm_andnot_ps(left, _mm_cmpgt_ps(X, W));
                const __m128 top = _mm_andnot_ps(bottom, _mm_cmpgt_ps(Y, W));
                const __m128 farOut = _mm_andnot_ps(nearOut, _mm_cmpgt_ps(D, farV));
                auto bit = [](__m128 mask, int value) {
                    return _mm_and_si128(_mm_castps_si128(mask), _mm_set1_epi32(value));
                };
                code = _mm_or_si128(_mm_or_si128(_mm_or_si128(bit(left, VLD_CLIP_LEFT), bit(right, VLD_CLIP_RIGHT)),
                                                 _mm_or_si128(bit(bottom, VLD_CLIP_BOTTOM), bit(top, VLD_CLIP_TOP))),
                                    _mm_or_si128(bit(nearOut, VLD_CLIP_NEAR), bit(farOut, VLD_CLIP_FAR)));
            }
            const __m128i inside = _mm_cmpeq_epi32(code, _mm_setzero_si128());
            const __m128i low = _mm_or_si128(code, stampLow);
            const __m128i high = _mm_or_si128(_mm_and_si128(inside, highInside), _mm_andnot_si128(inside, highOutside));
            const __m128i stamps01 = _mm_unpacklo_epi32(low, high), stamps23 = _mm_unpackhi_epi32(low, high);
            char* const eye0 = eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES + stampsAt;
            _mm_storel_epi64((__m128i*)eye0, stamps01);
            _mm_storeh_pd((double*)(eye0 + VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(stamps01));
            _mm_storel_epi64((__m128i*)(eye0 + 2 * VLD_EYE_RECORD_BYTES), stamps23);
            _mm_storeh_pd((double*)(eye0 + 3 * VLD_EYE_RECORD_BYTES), _mm_castsi128_pd(stamps23));
            __m128 sx = _mm_mul_ps(halfX, X), sy = _mm_mul_ps(halfY, Y);
            if (Persp) {
                const __m128 rhw = _mm_div_ps(one, W);
                sx = _mm_mul_ps(sx, rhw);
                sy = _mm_mul_ps(sy, rhw);
            }
            sx = _mm_add_ps(_mm_add_ps(sx, centreX), bias);
            sy = _mm_add_ps(_mm_add_ps(sy, centreY), bias);
            float oows[4];
            _mm_storeu_ps(oows, _mm_div_ps(one, _mm_add_ps(_mm_mul_ps(scale4, Persp ? W : Z), offset4)));
            const __m128 xy01 = _mm_unpacklo_ps(sx, sy), xy23 = _mm_unpackhi_ps(sx, sy);
            const int insideMask = _mm_movemask_ps(_mm_castsi128_ps(inside));
            // Per vertex: r, g, b with the slot's own depth behind them, then alpha with 1/w
            // when the vertex is inside (alpha alone otherwise), then x and y.
            for (int k = 0; k < 4; ++k) {
                GrVertex& s = *(GrVertex*)(screenBase + (size_t)(i + k) * VLD_SCREEN_SLOT_BYTES);
                const __m128 colour = colorOffset > 0 ? vld_face_color4v(vertices + (size_t)(i + k) * stride + colorOffset)
                                                      : batchColor4;
                const __m128 bo = _mm_unpacklo_ps(_mm_movehl_ps(colour, colour), _mm_load_ss(&s.ooz));
                _mm_storeu_ps(&s.r, _mm_movelh_ps(colour, bo));
                const __m128 alpha = _mm_shuffle_ps(colour, colour, 0xFF);
                if (!(insideMask >> k & 1)) {
                    _mm_store_ss(&s.a, alpha);
                    continue;
                }
                _mm_storel_pi((__m64*)&s.a, _mm_unpacklo_ps(alpha, _mm_load_ss(oows + k)));
                const __m128 xy = k < 2 ? xy01 : xy23;
                if (k & 1)
                    _mm_storeh_pi((__m64*)&s.x, xy);
                else
                    _mm_storel_pi((__m64*)&s.x, xy);
            }
        }
        for (; i < count; ++i) {
            char* const eyeSlot = eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES;
            GrVertex& s = *(GrVertex*)(screenBase + (size_t)i * VLD_SCREEN_SLOT_BYTES);
            const float* vertex = vertices + (size_t)i * stride;
            const float* p = vertex + position;
            const __m128d x = _mm_set1_pd((double)p[0]), y = _mm_set1_pd((double)p[1]),
                          z = _mm_set1_pd((double)p[2]);
            __m128d xy = _mm_add_pd(_mm_mul_pd(x, mxy[0]), _mm_mul_pd(y, mxy[1]));
            xy = _mm_add_pd(_mm_add_pd(xy, _mm_mul_pd(z, mxy[2])), mxy[3]);
            __m128d zw = _mm_add_pd(_mm_mul_pd(x, mzw[0]), _mm_mul_pd(y, mzw[1]));
            zw = _mm_add_pd(_mm_add_pd(zw, _mm_mul_pd(z, mzw[2])), mzw[3]);
            const __m128 c = _mm_movelh_ps(_mm_cvtpd_ps(xy), _mm_cvtpd_ps(zw));
            const __m128 w = _mm_shuffle_ps(c, c, 0xFF);
            if (!Persp) {
                _mm_storeu_ps((float*)eyeSlot, c);
            } else {
                _mm_storel_pi((__m64*)eyeSlot, c);
                _mm_store_ss((float*)eyeSlot + 3, w);
            }
            // (x, y, d, d) with d the depth that the near and far bounds apply to.
            const __m128 depth = perspective ? w : _mm_shuffle_ps(c, c, 0xAA);
            uint32_t code = 0;
            if (Clip) {
                const __m128 v = _mm_movelh_ps(c, depth);
                const int low = _mm_movemask_ps(_mm_cmplt_ps(v, _mm_movelh_ps(_mm_xor_ps(w, sign), nearV))) & 7;
                const int high = _mm_movemask_ps(_mm_cmpgt_ps(v, _mm_movelh_ps(w, farV))) & 7 & ~low;
                code = kFaceLowCodes[low] | kFaceHighCodes[high];
            }
            const uint64_t stamps = (code == 0 ? stampsInside : stampsOutside) | code;
            std::memcpy(eyeSlot + offsetof(vld_eye_vertex, outcode), &stamps, sizeof stamps);
            vld_face_take_color(vertex, colorOffset, batchColor, s);
            if (code == 0) {
                __m128 q = _mm_mul_ps(half, c);
                if (Persp)
                    q = _mm_mul_ps(q, _mm_div_ps(_mm_set1_ps(1.0f), w));
                q = _mm_add_ps(_mm_add_ps(q, centre), bias);
                const float d = Persp ? _mm_cvtss_f32(w) : _mm_cvtss_f32(_mm_movehl_ps(c, c));
                s.oow = 1.0f / (depthScale * d + depthOffset);
                _mm_storel_pi((__m64*)&s.x, q);
            }
        }
#else
        const vld_face_unit noUnits[2] = {};
        for (int i = 0; i < count; ++i) {
            vld_eye_vertex& e = *(vld_eye_vertex*)(eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES);
            GrVertex& s = *(GrVertex*)(screenBase + (size_t)i * VLD_SCREEN_SLOT_BYTES);
            const float* vertex = vertices + (size_t)i * stride;
            vld_face_transform<!Persp>(fm, vertex + position, e);
            if (Clip)
                e.outcode = vld_face_outcode(bounds, e);
            e.transform_stamp = stamp;
            vld_face_take_color(vertex, colorOffset, batchColor, s);
            e.attr_stamp = trackAttr ? (uint16_t)(stamp - 1) : stamp;
            if (!Clip || e.outcode == 0)
                project(ctx, noUnits, 1.0f, e, s);
            else
                e.project_stamp = (uint16_t)(stamp - 1);
        }
#endif
    }

    // The route of a batch: the cache when it has one; otherwise by lighting, with the
    // general take-up whenever a vertex may bring material of its own.
    static vld_color_route route_of(const vld_context* ctx, const vld_dl_record* r, bool cached)
    {
        if (cached)
            return VLD_COLOR_CACHED;
        if (!(ctx->enable.capabilityBits & VLD_CAP_LIGHTING))
            return VLD_COLOR_UNLIT;
        if (r->ambient_offset || r->diffuse_offset || r->specular_offset || r->emission_offset ||
            r->shininess_offset)
            return VLD_COLOR_GENERAL;
        return VLD_COLOR_LIT;
    }

    static void draw(vld_dl_record* r)
    {
        vld_context* ctx = vldGc;
        if (!ctx)
            return;
        KSP_vld_fpu_single_enter();
        float batchScale = 1.0f;
        if (!PerTri) {
            float c[4];
            GI_mat_mult_by_vector4_wo_z(r->centre, ctx->mvpMatrix, c);
            batchScale = c[3] - r->scaled_radius;
            if (batchScale < ctx->eyeDepthNear)
                batchScale = ctx->eyeDepthNear;
        }
        if (r->vertex_count > ctx->pipelineVertexCapacity)
            KSP_vld_enlarge_vertex_count(r->vertex_count);
        const bool cached = r->lcache_color != 0;
        if (cached && r->lcache_stamp != ctx->lighting.lightChangeCount)
            KSP_vld_lcache_update_list_data(r);
        ++vertexStamp;
        const uint16_t stamp = vertexStamp;

        const vld_face* faces = (const vld_face*)vld_dl_faces_of(r);
        const float* vertices = cached ? (const float*)((const char*)r + r->lcache_offset)
                                       : vld_dl_vertices_of(r);
        const int stride = cached ? r->lcache_stride : r->stride;
        const int position = cached ? 0 : r->position_offset;
        vld_face_unit units[2];
        KSP_vld_face_units(ctx, r, cached, units);
        const bool textured = units[0].enabled || units[1].enabled;
        const bool cull = (ctx->enable.capabilityBits & VLD_CAP_CULL_FACE) != 0;
        const float cullSign = vld_cull_sign(ctx);
        const bool smooth = vld_polygon_smooth(ctx);
        const float eye[3] = {ctx->eyeObject[0], ctx->eyeObject[1], ctx->eyeObject[2]};
        const vld_color_route route = route_of(ctx, r, cached);
        vld_leq_batch lights{};
        if (route == VLD_COLOR_LIT)
            KSP_vld_leq_prepare(ctx, &lights);
        vld_face_matrix fm;
        vld_face_matrix_load(fm, ctx->mvpMatrix);
        vld_face_bounds bounds;
        bounds.perspective = ctx->isPerspective != 0;
        bounds.nearDepth = bounds.perspective ? ctx->eyeDepthNear : ctx->orthoClipMin;
        bounds.farDepth = bounds.perspective ? ctx->eyeDepthFar : ctx->orthoClipMax;
        char* const eyeBase = (char*)ctx->eyeVertices;
        char* const screenBase = (char*)ctx->screenVertices;
        auto eyeAt = [eyeBase](uint32_t i) -> vld_eye_vertex& {
            return *(vld_eye_vertex*)(eyeBase + (size_t)i * VLD_EYE_RECORD_BYTES);
        };
        auto screenAt = [screenBase](uint32_t i) -> GrVertex& {
            return *(GrVertex*)(screenBase + (size_t)i * VLD_SCREEN_SLOT_BYTES);
        };

        const int faceCount = r->face_count;
        // Unlit, untextured and unculled, a batch whose faces reach every vertex takes its
        // vertices in one pass ahead of the faces (see eager_vertices); the faces then only
        // mark which vertex had its attributes taken last.
        const int eagerCount = route == VLD_COLOR_UNLIT && !textured && !cull &&
                                       r->vertex_count <= ctx->pipelineVertexCapacity &&
                                       (int64_t)faceCount * 3 + 2 >= (int64_t)r->vertex_count
                                   ? r->vertex_count
                                   : 0;
        const bool trackColor = r->color_offset > 0;
        if (eagerCount > 0)
            eager_vertices(ctx, r, fm, bounds, vertices, stride, eagerCount, trackColor);
        int64_t lastColored = -1;
        const bool needFacing = cull || route == VLD_COLOR_LIT || route == VLD_COLOR_GENERAL;
        auto generalFace = [&](const vld_face& face) {
            float facing = 0.0f;
            if (needFacing) {
                facing = eye[0] * face.plane[0] + eye[1] * face.plane[1] + eye[2] * face.plane[2];
                if (Persp)
                    facing += face.plane[3];
                if (cull && !(facing * cullSign > 0.0f))
                    return;
            }

            vld_eye_vertex* e[3];
            for (int k = 0; k < 3; ++k) {
                e[k] = &eyeAt(face.v[k]);
                if (e[k]->transform_stamp == stamp)
                    continue;
                const float* p = vertices + (size_t)face.v[k] * stride + position;
                vld_face_transform<!Persp>(fm, p, *e[k]);
                if (Clip)
                    e[k]->outcode = vld_face_outcode(bounds, *e[k]);
                e[k]->transform_stamp = stamp;
            }
            uint32_t codes = 0;
            if (Clip) {
                const uint16_t c0 = e[0]->outcode, c1 = e[1]->outcode, c2 = e[2]->outcode;
                if (c0 & c1 & c2)
                    return;
                codes = (uint32_t)(c0 | c1 | c2);
                ctx->clipCodes = codes;
            }
            for (int k = 0; k < 3; ++k) {
                if (e[k]->attr_stamp == stamp)
                    continue;
                e[k]->attr_stamp = stamp;
                const uint32_t i = face.v[k];
                if ((int64_t)i < eagerCount) {
                    lastColored = i;
                    continue;
                }
                // This vertex sets the current colour itself, after any taken in one pass.
                lastColored = -1;
                GrVertex& s = screenAt(i);
                const float* vertex = vertices + (size_t)i * stride;
                if (textured)
                    KSP_vld_face_texcoords(units, vertex, *e[k]);
                color(ctx, r, route, lights, vertex, facing, s);
                if (!Clip || e[k]->outcode == 0)
                    project(ctx, units, batchScale, *e[k], s);
            }
            if (codes == 0) {
                const int idx[3] = {(int)face.v[0], (int)face.v[1], (int)face.v[2]};
                if (PerTri)
                    scale_tmu(ctx, units, idx, 3);
                if (smooth) {
                    if (vldTriangleSink.aaDraw)
                        vldTriangleSink.aaDraw(&screenAt(face.v[0]), &screenAt(face.v[1]),
                                               &screenAt(face.v[2]), 1, 1, 1);
                } else if (vldTriangleSink.draw) {
                    vldTriangleSink.draw(&screenAt(face.v[0]), &screenAt(face.v[1]),
                                         &screenAt(face.v[2]));
                }
            } else {
                clip_and_issue(ctx, units, batchScale, face.v);
            }
        };

        if (eagerCount == 0) {
            for (int f = 0; f < faceCount; ++f)
                generalFace(faces[f]);
        } else {
            // Every vertex below eagerCount is transformed, coloured and projected already:
            // a face of those only needs its rejection test, the record of which vertex it
            // reaches first, and its issue. A face reaching beyond takes the general route.
            const uint32_t limit = (uint32_t)eagerCount;
            for (int f = 0; f < faceCount; ++f) {
                const vld_face& face = faces[f];
                const uint32_t i0 = face.v[0], i1 = face.v[1], i2 = face.v[2];
                if (i0 >= limit || i1 >= limit || i2 >= limit) {
                    generalFace(face);
                    continue;
                }
                vld_eye_vertex& e0 = eyeAt(i0);
                vld_eye_vertex& e1 = eyeAt(i1);
                vld_eye_vertex& e2 = eyeAt(i2);
                uint32_t codes = 0;
                if (Clip) {
                    if (e0.outcode & e1.outcode & e2.outcode)
                        continue;
                    codes = (uint32_t)(e0.outcode | e1.outcode | e2.outcode);
                    ctx->clipCodes = codes;
                }
                if (trackColor) {
                    if (e0.attr_stamp != stamp)
                        e0.attr_stamp = stamp, lastColored = i0;
                    if (e1.attr_stamp != stamp)
                        e1.attr_stamp = stamp, lastColored = i1;
                    if (e2.attr_stamp != stamp)
                        e2.attr_stamp = stamp, lastColored = i2;
                }
                if (codes != 0)
                    clip_and_issue(ctx, units, batchScale, face.v);
                else if (smooth) {
                    if (vldTriangleSink.aaDraw)
                        vldTriangleSink.aaDraw(&screenAt(i0), &screenAt(i1), &screenAt(i2), 1, 1, 1);
                } else if (vldTriangleSink.draw) {
                    vldTriangleSink.draw(&screenAt(i0), &screenAt(i1), &screenAt(i2));
                }
            }
        }
        // The current colour ends as the colour of the last vertex that had its attributes
        // taken, as the lazy route leaves it.
        if (lastColored >= 0 && r->color_offset > 0)
            std::memcpy(ctx->current.currentColor, vertices + (size_t)lastColored * stride + r->color_offset,
                        4 * sizeof(float));
        KSP_vld_fpu_single_leave();
    }
};
