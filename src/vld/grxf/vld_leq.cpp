// The lighting equation. Everything that does not depend on the vertex was prepared by the
// state commands: lights, half vectors and the eye are in the object's coordinates, and the
// material-times-light products are ready, so the vertex and its normal are used as they
// stand.
#include "vld/grxf/vld_leq.h"

#include <cmath>
#include <cstring>
#include <xmmintrin.h>

#include "vld/api/vld_callees.h"
#include "vld/grxf/vld_dispatch.h"
#include "vld/grxf/vld_geom.h"
#include "vld/state/state_light.h"

namespace {

float vld_dot3(const float a[3], const float b[3])
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// a scaled to unit length unless its squared length is 0.
void vld_normalize_nonzero(float a[3])
{
    float l = vld_dot3(a, a);
    if (l != 0.0f) {
        float f = 1.0f / std::sqrt(l);
        a[0] *= f, a[1] *= f, a[2] *= f;
    }
}

float vld_clamp01(float v)
{
    if (v > 1.0f)
        return 1.0f;
    if (v < 0.0f)
        return 0.0f;
    return v;
}

// x to an integer power, by squaring; the four-wide form's power.
float vld_powi(float x, int n)
{
    float r = 1.0f;
    while (n > 0) {
        if (n & 1)
            r *= x;
        x *= x;
        n >>= 1;
    }
    return r;
}

// Approximate reciprocal square root, as the four-wide form normalises its half vector.
#if defined(__i386__)
__attribute__((target("sse")))
#endif
float vld_rsqrt_approx(float v)
{
    return _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(v)));
}

} // namespace

// The equation for one vertex: for each enabled light, ambient, diffuse by the cosine of
// the light direction, specular by the power of the half-vector cosine, then spot and
// attenuation for positional lights. A back face (facing below 0) in a two-sided model is
// lit with the normal reversed.
void KSP_vld_leq_eval(const vld_context* ctx, const float position[3], const float normal[3],
                      float facing, float out[3])
{
    const vld_lighting_attrib& lg = ctx->lighting;
    const bool flip = lg.lightModelOneSided == 0 && facing < 0.0f;
    for (int i = 0; i <= lg.lightHighestEnabled && i < 8; ++i) {
        if (!((ctx->enable.lightEnableBits >> i) & 1))
            continue;
        const vld_light& light = lg.lights[i];
        const vld_light_object& o = vld_light_obj(light);
        const vld_light_products& p = lg.lightProducts[i];
        float l[3] = {p.ambient[0], p.ambient[1], p.ambient[2]};

        const bool directional = light.position[3] == 0.0f;
        float L[3];
        float dist = 0.0f, s2 = 0.0f;
        if (directional) {
            std::memcpy(L, o.directionObject, sizeof L);
        } else {
            for (int c = 0; c < 3; ++c)
                L[c] = o.positionObject[c] - position[c];
            s2 = vld_dot3(L, L);
            if (s2 != 0.0f) {
                dist = std::sqrt(s2);
                for (float& c : L)
                    c /= dist;
            }
        }
        float nl = vld_dot3(L, normal);
        if (flip)
            nl = -nl;
        if (nl > 0.0f) {
            for (int c = 0; c < 3; ++c)
                l[c] += nl * p.diffuse[c];
            if (p.specularFlag != 0.0f) {
                float H[3];
                if (lg.lightModelLocalViewer) {
                    float V[3];
                    for (int c = 0; c < 3; ++c)
                        V[c] = ctx->eyeObject[c] - position[c];
                    vld_normalize_nonzero(V);
                    for (int c = 0; c < 3; ++c)
                        H[c] = V[c] + L[c];
                    vld_normalize_nonzero(H);
                } else if (directional) {
                    std::memcpy(H, o.halfVectorObject, sizeof H);
                } else {
                    for (int c = 0; c < 3; ++c)
                        H[c] = ctx->eyeObjectUnit[c] + L[c];
                    vld_normalize_nonzero(H);
                }
                float nh = vld_dot3(H, normal);
                if (flip)
                    nh = -nh;
                if (nh > 0.0f) {
                    float pw = nh < lg.materialShininessBase
                                   ? 0.0f
                                   : (float)std::pow((double)nh, (double)lg.materialShininess);
                    for (int c = 0; c < 3; ++c)
                        l[c] += pw * p.specular[c];
                }
            }
        }
        if (directional) {
            for (int c = 0; c < 3; ++c)
                out[c] += l[c];
            continue;
        }
        float f = 1.0f;
        if (light.spotCutoff != 180.0f) {
            if (nl > 0.0f) {
                float sd = -vld_dot3(L, o.spotDirectionObject);
                if (sd < 0.0f)
                    sd = 0.0f;
                f = sd < o.spotCosCutoff ? 0.0f
                                         : (float)std::pow((double)sd, (double)light.spotExponent);
            } else {
                f = 0.0f;
            }
        }
        const float* att = light.attenuation;
        if (!(att[0] == 1.0f && att[1] == 0.0f && att[2] == 0.0f)) {
            float k = att[0] + dist * att[1] + s2 * att[2];
            if (k != 1.0f && k != 0.0f)
                f = f / k;
        }
        for (int c = 0; c < 3; ++c)
            out[c] += f * l[c];
    }
}

// The enabled lights in the order the equation visits them, and whether all of them reduce
// to the ambient and diffuse terms of a directional light.
void KSP_vld_leq_prepare(const vld_context* ctx, vld_leq_batch* batch)
{
    const vld_lighting_attrib& lg = ctx->lighting;
    batch->count = 0;
    batch->diffuseOnly = true;
    batch->twoSided = lg.lightModelOneSided == 0;
    for (int i = 0; i <= lg.lightHighestEnabled && i < 8; ++i) {
        if (!((ctx->enable.lightEnableBits >> i) & 1))
            continue;
        batch->index[batch->count++] = (uint8_t)i;
        if (lg.lights[i].position[3] != 0.0f || lg.lightProducts[i].specularFlag != 0.0f)
            batch->diffuseOnly = false;
    }
    for (int c = 0; c < 3; ++c)
        batch->base[c] = lg.sceneAmbient[c] + lg.materialEmission[c];
}

void KSP_vld_compute_leq(const float* position, float facing, float* out)
{
    vld_context* ctx = vldGc;
    KSP_vld_leq_eval(ctx, position, ctx->current.currentNormal, facing, out);
}

// Takes up a vertex's own normal, colour and material into the context, in the fixed
// order, then lights it (or takes the current colour with lighting off) into 0..255.
void KSP_vld_light_vertex(int position_offset, int normal_offset, int color_offset,
                          int ambient_offset, int emission_offset, int diffuse_offset,
                          int specular_offset, int shininess_offset, float facing,
                          const float* vertex, GrVertex* screen_vertex)
{
    vld_context* ctx = vldGc;
    vld_lighting_attrib& lg = ctx->lighting;
    float rgba[4];
    if (ctx->enable.capabilityBits & VLD_CAP_LIGHTING) {
        if (normal_offset > 0) {
            float* n = ctx->current.currentNormal;
            std::memcpy(n, vertex + normal_offset, 3 * sizeof(float));
            if (ctx->enable.capabilityBits & VLD_CAP_NORMALIZE) {
                float s = vld_dot3(n, n);
                if ((s < 0.9999f || s > 1.0001f) && s != 0.0f) {
                    float f = 1.0f / std::sqrt(s);
                    n[0] *= f, n[1] *= f, n[2] *= f;
                }
            }
        }
        if (emission_offset > 0)
            std::memcpy(lg.materialEmission, vertex + emission_offset, 4 * sizeof(float));
        const int ambient = ambient_offset < 0 ? diffuse_offset : ambient_offset;
        if (ambient > 0) {
            std::memcpy(lg.materialAmbient, vertex + ambient, 4 * sizeof(float));
            KSP_vld_mtl_pre_light_amb(ctx);
        }
        if (diffuse_offset > 0) {
            std::memcpy(lg.materialDiffuse, vertex + diffuse_offset, 4 * sizeof(float));
            KSP_vld_mtl_pre_light_dif(ctx);
        }
        if (specular_offset > 0) {
            std::memcpy(lg.materialSpecular, vertex + specular_offset, 4 * sizeof(float));
            KSP_vld_mtl_pre_light_spec(ctx);
        }
        if (shininess_offset > 0) {
            lg.materialShininess = vertex[shininess_offset];
            lg.materialShininessBase = KSP_vld_shininess_base(lg.materialShininess);
            KSP_vld_sse_assign(lg.materialShininessBase, &lg.materialShininessBase4);
        }
        for (int c = 0; c < 3; ++c)
            rgba[c] = lg.sceneAmbient[c] + lg.materialEmission[c];
        KSP_vld_leq_eval(ctx, vertex + position_offset, ctx->current.currentNormal, facing, rgba);
        rgba[3] = lg.materialDiffuse[3];
    } else {
        if (color_offset > 0)
            std::memcpy(ctx->current.currentColor, vertex + color_offset, 4 * sizeof(float));
        std::memcpy(rgba, ctx->current.currentColor, sizeof rgba);
    }
    screen_vertex->r = vld_clamp01(rgba[0]) * 255.0f;
    screen_vertex->g = vld_clamp01(rgba[1]) * 255.0f;
    screen_vertex->b = vld_clamp01(rgba[2]) * 255.0f;
    screen_vertex->a = vld_clamp01(rgba[3]) * 255.0f;
}

// The four-wide equation, lane by lane with the rounding choices of the SSE paths: exact
// distance, approximate half-vector normalisation, integer exponents, and the diffuse and
// specular terms of a light skipped when no lane faces it.
void KSP_vld_compute_leqSse(const float position[3][4], const float normal[3][4],
                            const float facing[4], float out[3][4])
{
    const vld_context* ctx = vldGc;
    const vld_lighting_attrib& lg = ctx->lighting;
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 4; ++k)
            out[c][k] = lg.sceneAmbient[c] + lg.materialEmission[c];
    const int shin = (int)lg.materialShininess;
    for (int i = 0; i <= lg.lightHighestEnabled && i < 8; ++i) {
        if (!((ctx->enable.lightEnableBits >> i) & 1))
            continue;
        const vld_light& light = lg.lights[i];
        const vld_light_object& o = vld_light_obj(light);
        const vld_light_products& p = lg.lightProducts[i];
        const bool directional = light.position[3] == 0.0f;
        float L[4][3], nl[4], dist[4], s2[4];
        bool any = false;
        for (int k = 0; k < 4; ++k) {
            const float n[3] = {normal[0][k], normal[1][k], normal[2][k]};
            dist[k] = s2[k] = 0.0f;
            if (directional) {
                std::memcpy(L[k], o.directionObject, 3 * sizeof(float));
            } else {
                for (int c = 0; c < 3; ++c)
                    L[k][c] = o.positionObject[c] - position[c][k];
                s2[k] = vld_dot3(L[k], L[k]);
                dist[k] = s2[k] == 0.0f ? 0.0f : std::sqrt(s2[k]);
                const float inv = 1.0f / (s2[k] == 0.0f ? 1.0f : dist[k]);
                for (float& c : L[k])
                    c *= inv;
            }
            nl[k] = vld_dot3(L[k], n);
            if (lg.lightModelOneSided == 0 && facing[k] < 0.0f)
                nl[k] = -nl[k];
            any = any || nl[k] > 0.0f;
        }
        for (int k = 0; k < 4; ++k) {
            const float n[3] = {normal[0][k], normal[1][k], normal[2][k]};
            float l[3] = {p.ambient[0], p.ambient[1], p.ambient[2]};
            if (any && nl[k] > 0.0f) {
                for (int c = 0; c < 3; ++c)
                    l[c] += nl[k] * p.diffuse[c];
                if (p.specularFlag != 0.0f) {
                    float H[3];
                    if (directional) {
                        std::memcpy(H, o.halfVectorObject, sizeof H);
                    } else {
                        for (int c = 0; c < 3; ++c)
                            H[c] = ctx->eyeObjectUnit[c] + L[k][c];
                        const float h2 = vld_dot3(H, H);
                        if (h2 != 0.0f) {
                            const float f = vld_rsqrt_approx(h2);
                            H[0] *= f, H[1] *= f, H[2] *= f;
                        }
                    }
                    float nh = vld_dot3(H, n);
                    if (lg.lightModelOneSided == 0 && facing[k] < 0.0f)
                        nh = -nh;
                    if (nh > 0.0f && nh >= lg.materialShininessBase) {
                        const float pw = vld_powi(nh, shin);
                        for (int c = 0; c < 3; ++c)
                            l[c] += pw * p.specular[c];
                    }
                }
            }
            float f = 1.0f;
            if (!directional) {
                if (light.spotCutoff != 180.0f) {
                    if (nl[k] > 0.0f) {
                        float sd = -vld_dot3(L[k], o.spotDirectionObject);
                        sd = sd < 0.0f ? 0.0f : sd;
                        f = sd < o.spotCosCutoff ? 0.0f : vld_powi(sd, (int)light.spotExponent);
                    } else {
                        f = 0.0f;
                    }
                }
                const float* att = light.attenuation;
                if (!(att[0] == 1.0f && att[1] == 0.0f && att[2] == 0.0f)) {
                    const float kk = att[0] + dist[k] * att[1] + s2[k] * att[2];
                    if (kk != 1.0f && kk != 0.0f)
                        f = f / kk;
                }
            }
            for (int c = 0; c < 3; ++c)
                out[c][k] += f * l[c];
        }
    }
}

namespace {

// How many texture coordinate sets a batch's cache entries keep.
int vld_lcache_sets(const vld_dl_record* r)
{
    if (r->texcoord_offset <= 0)
        return 0;
    return (r->flags & VLD_DLF_TEX1) ? 2 : 1;
}

// Float index of unit 1's coordinates inside a vertex of the record.
int vld_unit1_index(const vld_dl_record* r)
{
    if (!(r->flags & VLD_DLF_TEX0))
        return r->texcoord_offset;
    return r->texcoord_offset + ((r->flags & VLD_DLF_TEX_WIDE) ? 4 : 2);
}

// Reads element k of vertex i of an array laid out as the record's type says: structures
// for type 3, transposed blocks of four for type 4.
float* vld_element(float* base, const vld_dl_record* r, int stride, int i, int k)
{
    if (r->type == VLD_DL_FACES_SSE)
        return base + (i / 4) * 4 * stride + k * 4 + i % 4;
    return base + i * stride + k;
}

} // namespace

// Bytes of one cache entry (position, the batch's texture coordinates, colour b, g, r, a),
// and the float index of its colour.
int KSP_vld_lcache_entry_size(vld_dl_record* record)
{
    const int sets = vld_lcache_sets(record);
    record->lcache_color = 3 + 2 * sets;
    return (record->lcache_color + 4) * 4;
}

// Fills the cache entries of a batch with their positions and texture coordinates; the
// colours are left for the first refresh (stamp 0).
void KSP_vld_lcache_add_list_data(vld_dl_record* record)
{
    const int size = KSP_vld_lcache_entry_size(record);
    record->lcache_stride = size / 4;
    record->lcache_stamp = 0;
    float* cache = (float*)((char*)record + record->lcache_offset);
    float* vertices = vld_dl_vertices_of(record);
    const int sets = vld_lcache_sets(record);
    const int tex[2] = {record->texcoord_offset, vld_unit1_index(record)};
    for (int i = 0; i < record->vertex_count; ++i) {
        for (int k = 0; k < 3; ++k)
            *vld_element(cache, record, record->lcache_stride, i, k) =
                *vld_element(vertices, record, record->stride, i, record->position_offset + k);
        for (int s = 0; s < sets; ++s)
            for (int k = 0; k < 2; ++k)
                *vld_element(cache, record, record->lcache_stride, i, 3 + 2 * s + k) =
                    *vld_element(vertices, record, record->stride, i, tex[s] + k);
    }
}

// Lights every vertex of a batch again, as if front facing, and keeps the colours, in the
// 0..255 scale and b, g, r, a order, in the cache; then takes the change count as stamp.
void KSP_vld_lcache_update_list_data(vld_dl_record* record)
{
    vld_context* ctx = vldGc;
    float* cache = (float*)((char*)record + record->lcache_offset);
    float* vertices = vld_dl_vertices_of(record);
    float scratch[64];
    const int stride = record->stride < 64 ? record->stride : 64;
    for (int i = 0; i < record->vertex_count; ++i) {
        for (int k = 0; k < stride; ++k)
            scratch[k] = *vld_element(vertices, record, record->stride, i, k);
        GrVertex out{};
        KSP_vld_light_vertex(record->position_offset, record->normal_offset, record->color_offset,
                             record->ambient_offset, record->emission_offset,
                             record->diffuse_offset, record->specular_offset,
                             record->shininess_offset, 1.0f, scratch, &out);
        const float bgra[4] = {out.b, out.g, out.r, out.a};
        for (int k = 0; k < 4; ++k)
            *vld_element(cache, record, record->lcache_stride, i, record->lcache_color + k) = bgra[k];
    }
    record->lcache_stamp = ctx->lighting.lightChangeCount;
}
