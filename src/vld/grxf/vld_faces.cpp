// The eight generic face variants, the per-vertex pieces they share, and where their
// triangles go.
#include "vld/grxf/vldfacex.h"

uint16_t vertexStamp = 0;

#if defined(ZVGL_HAVE_GLIDE)
vld_triangle_sink vldTriangleSink = {grDrawTriangle, grAADrawTriangle};
#else
vld_triangle_sink vldTriangleSink = {nullptr, nullptr};
#endif

// Reduces each unit's texture state for the batch: whether it is on, where its coordinates
// come from, its texture matrix unless that is the identity, and its texture's scales.
void KSP_vld_face_units(vld_context* ctx, const vld_dl_record* r, bool cached, vld_face_unit units[2])
{
    for (int u = 0; u < 2; ++u) {
        vld_face_unit& b = units[u];
        b = vld_face_unit{};
        b.enabled = (ctx->enable.textureEnableBits[u] & VLD_TEX_2D) != 0;
        if (!b.enabled)
            continue;
        b.from_vertex = r->texcoord_offset > 0 && (u == 0 || (r->flags & VLD_DLF_TEX1));
        int index = r->texcoord_offset;
        if (u == 1 && (r->flags & VLD_DLF_TEX0))
            index += (r->flags & VLD_DLF_TEX_WIDE) ? 4 : 2;
        if (cached)
            index = 3 + 2 * u;
        b.s_index = index;
        b.t_index = index + 1;
        b.current = ctx->current.currentTexCoord[u];
        const vld_texture_transform& tt = ctx->textureTransforms[u];
        b.matrix = tt.isIdentity[tt.depth] ? nullptr : tt.matrices[tt.depth];
        float scales[3];
        KSP_vld_txr_unit_scales(ctx, u, scales);
        b.s_scale = scales[0];
        b.t_scale = scales[1];
        b.detail_scale = scales[2];
    }
}

// Texture coordinates of the enabled units, through the texture matrix, t flipped for
// Glide's top-left origin.
void KSP_vld_face_texcoords(const vld_face_unit units[2], const float* vertex, vld_eye_vertex& e)
{
    for (int u = 0; u < 2; ++u) {
        const vld_face_unit& b = units[u];
        if (!b.enabled)
            continue;
        float ss = b.from_vertex ? vertex[b.s_index] : b.current[0];
        float tt = b.from_vertex ? vertex[b.t_index] : b.current[1];
        float q = 1.0f;
        if (b.matrix) {
            const float* m = b.matrix;
            const float s2 = m[0] * ss + m[4] * tt + m[12];
            const float t2 = m[1] * ss + m[5] * tt + m[13];
            const float q2 = m[3] * ss + m[7] * tt + m[15];
            q = (q2 == 1.0f || q2 == 0.0f) ? 1.0f : q2;
            ss = s2;
            tt = t2;
        }
        e.s[u] = ss;
        e.t[u] = q - tt;
        e.q[u] = q;
    }
}

// The TMU fields by textureMode: which GL unit feeds each TMU, a detail TMU scaled from the
// other, and oow multiplied by a q that is not exactly 1.
void KSP_vld_face_tmu(const vld_context* ctx, const vld_face_unit units[2], const vld_eye_vertex& e,
                      float f, vld_tmu_value tmu[2])
{
    auto of_unit = [&](int u) {
        const vld_face_unit& b = units[u];
        vld_tmu_value v;
        v.oow = e.q[u] != 1.0f ? f * e.q[u] : f;
        v.sow = b.s_scale * e.s[u] * f;
        v.tow = b.t_scale * e.t[u] * f;
        return v;
    };
    auto detail = [&](const vld_tmu_value& v, int u) {
        return vld_tmu_value{v.oow, v.sow * units[u].detail_scale, v.tow * units[u].detail_scale};
    };
    switch (ctx->textureMode) {
    case 1:
    case 3:
        tmu[0] = tmu[1] = of_unit(0);
        return;
    case 2:
        tmu[0] = of_unit(0);
        tmu[1] = detail(tmu[0], 0);
        return;
    case 4:
        tmu[0] = of_unit(0);
        tmu[1] = of_unit(1);
        return;
    case 5:
    case 7:
        tmu[0] = tmu[1] = of_unit(1);
        return;
    case 6:
        tmu[0] = of_unit(1);
        tmu[1] = detail(tmu[0], 1);
        return;
    default:
        tmu[0] = tmu[1] = vld_tmu_value{f, 0.0f, 0.0f};
        return;
    }
}

void KSP_vld_issue_triangle(const vld_context* ctx, const GrVertex* a, const GrVertex* b,
                            const GrVertex* c, int ab, int bc, int ca)
{
    if (vld_polygon_smooth(ctx)) {
        if (vldTriangleSink.aaDraw)
            vldTriangleSink.aaDraw(a, b, c, ab, bc, ca);
    } else if (vldTriangleSink.draw) {
        vldTriangleSink.draw(a, b, c);
    }
}

void KSP_vld_dl_faces_variant0(vld_dl_record* r) { vld_face_body<false, false, false>::draw(r); }
void KSP_vld_dl_faces_variant1(vld_dl_record* r) { vld_face_body<true, false, false>::draw(r); }
void KSP_vld_dl_faces_variant2(vld_dl_record* r) { vld_face_body<false, true, false>::draw(r); }
void KSP_vld_dl_faces_variant3(vld_dl_record* r) { vld_face_body<true, true, false>::draw(r); }
void KSP_vld_dl_faces_variant4(vld_dl_record* r) { vld_face_body<false, false, true>::draw(r); }
void KSP_vld_dl_faces_variant5(vld_dl_record* r) { vld_face_body<true, false, true>::draw(r); }
void KSP_vld_dl_faces_variant6(vld_dl_record* r) { vld_face_body<false, true, true>::draw(r); }
void KSP_vld_dl_faces_variant7(vld_dl_record* r) { vld_face_body<true, true, true>::draw(r); }
