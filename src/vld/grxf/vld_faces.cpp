// The eight generic face variants, the per-vertex pieces they share, and where their
// triangles go.
#include "vld/grxf/vldfacex.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "vld/grxf/vld_eager.h"

uint16_t vertexStamp = 0;

#if defined(__SSE2__)
namespace {

// The SSE2 part of the one-pass stage. The transform: x and y in one pair of double lanes,
// z and w in the other, each term as the matrix helpers take it.
struct vld_eager_sse2 {
    __m128d xy[4], zw[4];

    explicit vld_eager_sse2(const vld_face_matrix& fm)
    {
        const double* m = fm.m;
        for (int j = 0; j < 4; ++j) {
            xy[j] = _mm_setr_pd(m[4 * j], m[4 * j + 1]);
            zw[j] = _mm_setr_pd(m[4 * j + 2], m[4 * j + 3]);
        }
    }

    __attribute__((always_inline)) __m128 operator()(const float* p) const
    {
        const __m128d x = _mm_set1_pd((double)p[0]), y = _mm_set1_pd((double)p[1]), z = _mm_set1_pd((double)p[2]);
        __m128d a = _mm_add_pd(_mm_mul_pd(x, xy[0]), _mm_mul_pd(y, xy[1]));
        a = _mm_add_pd(_mm_add_pd(a, _mm_mul_pd(z, xy[2])), xy[3]);
        __m128d b = _mm_add_pd(_mm_mul_pd(x, zw[0]), _mm_mul_pd(y, zw[1]));
        b = _mm_add_pd(_mm_add_pd(b, _mm_mul_pd(z, zw[2])), zw[3]);
        return _mm_movelh_ps(_mm_cvtpd_ps(a), _mm_cvtpd_ps(b));
    }

    // The screen fields of a vertex: r, g, b with the slot's own depth behind them, then
    // alpha with 1/w when the vertex is inside the volume (alpha alone otherwise), then x
    // and y (from the high half of `xy` when `high`); o holds 1/w in its low lane.
    __attribute__((always_inline)) static void screen(GrVertex& s, __m128 colour, __m128 xy, bool high, __m128 o,
                                                      bool inside)
    {
        const __m128 bo = _mm_unpacklo_ps(_mm_movehl_ps(colour, colour), _mm_load_ss(&s.ooz));
        _mm_storeu_ps(&s.r, _mm_movelh_ps(colour, bo));
        const __m128 alpha = _mm_shuffle_ps(colour, colour, 0xFF);
        if (!inside) {
            _mm_store_ss(&s.a, alpha);
            return;
        }
        _mm_storel_pi((__m64*)&s.a, _mm_unpacklo_ps(alpha, o));
        if (high)
            _mm_storeh_pi((__m64*)&s.x, xy);
        else
            _mm_storel_pi((__m64*)&s.x, xy);
    }
};

// The widest unit of this build and machine, lowered by ZVGL_VLD_SIMD=sse2.
int vld_detect_vector_level()
{
    int level = VLD_VECTOR_SSE2;
#if defined(VLD_AVX2_FORMS)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2"))
        level = VLD_VECTOR_AVX2;
#endif
    if (const char* v = std::getenv("ZVGL_VLD_SIMD"); v && std::strcmp(v, "sse2") == 0)
        level = VLD_VECTOR_SSE2;
    return level;
}

int vld_detected_vector_level()
{
    static const int level = vld_detect_vector_level();
    return level;
}

std::atomic<int> vectorLevel{-1}; // the level in use; -1 until first asked

} // namespace

int KSP_vld_vector_level()
{
    int level = vectorLevel.load(std::memory_order_relaxed);
    if (level < 0) {
        level = vld_detected_vector_level();
        vectorLevel.store(level, std::memory_order_relaxed);
    }
    return level;
}

int KSP_vld_force_vector_level(int level)
{
    const int top = vld_detected_vector_level();
    level = level < 0 || level > top ? top : level;
    vectorLevel.store(level, std::memory_order_relaxed);
    return level;
}

void KSP_vld_eager_vertices(const vld_eager_batch& b, bool clip, bool persp)
{
#if defined(VLD_AVX2_FORMS)
    if (KSP_vld_vector_level() == VLD_VECTOR_AVX2) {
        KSP_vld_eager_vertices_avx2(b, clip, persp);
        return;
    }
#endif
    vld_eager_dispatch<vld_eager_sse2>(b, clip, persp);
}
#else
int KSP_vld_vector_level()
{
    return VLD_VECTOR_SSE2;
}

int KSP_vld_force_vector_level(int)
{
    return VLD_VECTOR_SSE2;
}
#endif

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
