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
#if defined(__SSE2__)
    // Four floats a load, widened two at a time (every float is exact in double).
#pragma GCC unroll 4
    for (int i = 0; i < 16; i += 4) {
        const __m128 v = _mm_loadu_ps(m + i);
        _mm_storeu_pd(fm.m + i, _mm_cvtps_pd(v));
        _mm_storeu_pd(fm.m + i + 2, _mm_cvtps_pd(_mm_movehl_ps(v, v)));
    }
#else
    for (int i = 0; i < 16; ++i)
        fm.m[i] = (double)m[i];
#endif
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

// What the one-pass vertex stage of a batch works from (see vld_face_body::eager_vertices).
struct vld_eager_batch {
    vld_context* ctx;
    const vld_face_matrix* fm;
    vld_face_bounds bounds;
    const float* vertices;
    int stride, count, position, colorOffset;
    bool trackAttr;
};

#if defined(__SSE2__)
// The one-pass stage of a batch on the widest unit in use.
void KSP_vld_eager_vertices(const vld_eager_batch& b, bool clip, bool persp);
#endif
#if defined(VLD_AVX2_FORMS)
__attribute__((target("avx2"))) void KSP_vld_eager_vertices_avx2(const vld_eager_batch& b, bool clip, bool persp);
#endif
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
    // pass (vld_eager_pass in vld_eager.h says what it does; the form here without a vector
    // unit does the same one vertex at a time).
    static void eager_vertices(vld_context* ctx, const vld_dl_record* r, const vld_face_matrix& fm,
                               const vld_face_bounds& bounds, const float* vertices, int stride, int count,
                               bool trackAttr)
    {
#if defined(__SSE2__)
        const vld_eager_batch b{ctx, &fm, bounds, vertices, stride, count, r->position_offset, r->color_offset,
                                trackAttr};
        KSP_vld_eager_vertices(b, Clip, Persp);
#else
        const uint16_t stamp = vertexStamp;
        const int position = r->position_offset;
        const int colorOffset = r->color_offset;
        GrVertex batchColor;
        vld_face_color4(ctx->current.currentColor, batchColor);
        char* const eyeBase = (char*)ctx->eyeVertices;
        char* const screenBase = (char*)ctx->screenVertices;
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

    // The leading faces of an eager batch that are the run (3f, 3f + 1, 3f + 2), as GL_TRIANGLES
    // captures them, up to face `runEnd` (every index of those below the eager count): returns
    // the first face that is not. No face of the run shares a vertex with an earlier one, so
    // each face that survives rejection takes the attributes of all three of its vertices, in
    // order: with `Track` they get the batch stamp and the last of them is the one to have
    // coloured last, as the lean loop would find from the stamps.
    template <bool Track>
    [[gnu::noinline]] static int run_faces(vld_context* ctx, const vld_face* faces, int runEnd,
                                           vld_draw_triangle_fn draw, const vld_face_unit units[2],
                                           float batchScale, int64_t& lastColored)
    {
        const uint16_t stamp = vertexStamp;
        char* const eyeBase = (char*)ctx->eyeVertices;
        char* e = eyeBase;
        char* s = (char*)ctx->screenVertices;
        const vld_face* face = faces;
        const vld_face* const end = faces + runEnd;
        // The first two indices of face f are compared as one word: 3f, and 3f + 1 above it
        // (x86 is little-endian).
        uint64_t expect01 = (uint64_t)1 << 32;
        for (; face != end; ++face, expect01 += 0x0000000300000003ull, e += 3 * VLD_EYE_RECORD_BYTES,
                            s += 3 * VLD_SCREEN_SLOT_BYTES) {
            uint64_t first01;
            std::memcpy(&first01, face->v, sizeof first01);
            if (first01 != expect01 || face->v[2] != (uint32_t)expect01 + 2)
                break;
            vld_eye_vertex& e0 = *(vld_eye_vertex*)e;
            vld_eye_vertex& e1 = *(vld_eye_vertex*)(e + VLD_EYE_RECORD_BYTES);
            vld_eye_vertex& e2 = *(vld_eye_vertex*)(e + 2 * VLD_EYE_RECORD_BYTES);
            uint32_t codes = 0;
            if (Clip) {
                const uint32_t c0 = e0.outcode, c1 = e1.outcode, c2 = e2.outcode;
                if (c0 & c1 & c2)
                    continue;
                codes = c0 | c1 | c2;
            }
            if (Track) {
                e0.attr_stamp = stamp;
                e1.attr_stamp = stamp;
                e2.attr_stamp = stamp;
            }
            if (codes != 0) {
                ctx->clipCodes = codes;
                clip_and_issue(ctx, units, batchScale, face->v);
                continue;
            }
            draw((const GrVertex*)s, (const GrVertex*)(s + VLD_SCREEN_SLOT_BYTES),
                 (const GrVertex*)(s + 2 * VLD_SCREEN_SLOT_BYTES));
        }
        // The last face kept, found from the end: its last vertex coloured last, and the clip
        // codes end as its own. A clipped face wrote them itself (and the clipper may have added
        // to them); one drawn as it is has codes 0, written here rather than face by face.
        for (const vld_face* k = face; k != faces;) {
            --k;
            const char* ek = eyeBase + (size_t)(k - faces) * 3 * VLD_EYE_RECORD_BYTES;
            uint32_t codes = 0;
            if (Clip) {
                const uint32_t c0 = ((const vld_eye_vertex*)ek)->outcode;
                const uint32_t c1 = ((const vld_eye_vertex*)(ek + VLD_EYE_RECORD_BYTES))->outcode;
                const uint32_t c2 = ((const vld_eye_vertex*)(ek + 2 * VLD_EYE_RECORD_BYTES))->outcode;
                if (c0 & c1 & c2)
                    continue;
                codes = c0 | c1 | c2;
                if (codes == 0)
                    ctx->clipCodes = 0;
            }
            if (Track)
                lastColored = 3 * (int64_t)(k - faces) + 2;
            break;
        }
        return (int)(face - faces);
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
        // Without a 2D texture on either unit both stay disabled, as KSP_vld_face_units leaves them.
        vld_face_unit units[2] = {};
        if ((ctx->enable.textureEnableBits[0] | ctx->enable.textureEnableBits[1]) & VLD_TEX_2D)
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
        // A run of leading faces first (see run_faces); the faces after it by the loops below.
        int first = 0;
        if (eagerCount > 0 && !smooth && vldTriangleSink.draw) {
            const int runEnd = faceCount < eagerCount / 3 ? faceCount : eagerCount / 3;
            first = trackColor
                        ? run_faces<true>(ctx, faces, runEnd, vldTriangleSink.draw, units, batchScale, lastColored)
                        : run_faces<false>(ctx, faces, runEnd, vldTriangleSink.draw, units, batchScale, lastColored);
        }
        if (first < faceCount) {
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
                for (int f = first; f < faceCount; ++f) {
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
        }
        // The current colour ends as the colour of the last vertex that had its attributes
        // taken, as the lazy route leaves it.
        if (lastColored >= 0 && r->color_offset > 0)
            std::memcpy(ctx->current.currentColor, vertices + (size_t)lastColored * stride + r->color_offset,
                        4 * sizeof(float));
        KSP_vld_fpu_single_leave();
    }
};
