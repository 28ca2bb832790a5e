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

#include <cstring>

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
// The attributes of one vertex: texture coordinates into its eye record, colour into its
// screen vertex.
void KSP_vld_face_attributes(vld_context* ctx, const vld_dl_record* r, const vld_face_unit units[2],
                             const float* vertex, bool cached, float facing, vld_eye_vertex& e,
                             GrVertex& s);
// The TMU fields of a projected vertex by textureMode, each scaled by f (and oow by q).
void KSP_vld_face_tmu(const vld_context* ctx, const vld_face_unit units[2], const vld_eye_vertex& e,
                      float f, vld_tmu_value tmu[2]);
// Sends one triangle, antialiased with the given edge flags when smoothing is on.
void KSP_vld_issue_triangle(const vld_context* ctx, const GrVertex* a, const GrVertex* b,
                            const GrVertex* c, int ab, int bc, int ca);

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
        const bool cull = (ctx->enable.capabilityBits & VLD_CAP_CULL_FACE) != 0;
        const float cullSign = vld_cull_sign(ctx);

        for (int f = 0; f < r->face_count; ++f) {
            const vld_face& face = faces[f];
            float facing = ctx->eyeObject[0] * face.plane[0] + ctx->eyeObject[1] * face.plane[1] +
                           ctx->eyeObject[2] * face.plane[2];
            if (Persp)
                facing += face.plane[3];
            if (cull && !(facing * cullSign > 0.0f))
                continue;

            for (int k = 0; k < 3; ++k) {
                vld_eye_vertex& e = *vld_eye_at(ctx, (int)face.v[k]);
                if (e.transform_stamp == stamp)
                    continue;
                const float* p = vertices + (size_t)face.v[k] * stride + position;
                if (Persp)
                    GI_mat_mult_by_vector4_wo_z(p, ctx->mvpMatrix, &e.x);
                else
                    G_mat_mult_by_vector4(p, ctx->mvpMatrix, &e.x);
                if (Clip)
                    e.outcode = KSP_vld_outcode(ctx, e);
                e.transform_stamp = stamp;
            }
            uint32_t codes = 0;
            if (Clip) {
                const uint16_t c0 = vld_eye_at(ctx, (int)face.v[0])->outcode;
                const uint16_t c1 = vld_eye_at(ctx, (int)face.v[1])->outcode;
                const uint16_t c2 = vld_eye_at(ctx, (int)face.v[2])->outcode;
                if (c0 & c1 & c2)
                    continue;
                codes = (uint32_t)(c0 | c1 | c2);
                ctx->clipCodes = codes;
            }
            for (int k = 0; k < 3; ++k) {
                const int i = (int)face.v[k];
                vld_eye_vertex& e = *vld_eye_at(ctx, i);
                if (e.attr_stamp == stamp)
                    continue;
                GrVertex& s = *vld_screen_at(ctx, i);
                KSP_vld_face_attributes(ctx, r, units, vertices + (size_t)i * stride, cached, facing,
                                        e, s);
                if (!Clip || e.outcode == 0)
                    project(ctx, units, batchScale, e, s);
                e.attr_stamp = stamp;
            }
            if (codes == 0) {
                const int idx[3] = {(int)face.v[0], (int)face.v[1], (int)face.v[2]};
                if (PerTri)
                    scale_tmu(ctx, units, idx, 3);
                KSP_vld_issue_triangle(ctx, vld_screen_at(ctx, idx[0]), vld_screen_at(ctx, idx[1]),
                                       vld_screen_at(ctx, idx[2]), 1, 1, 1);
            } else {
                clip_and_issue(ctx, units, batchScale, face.v);
            }
        }
        KSP_vld_fpu_single_leave();
    }
};
