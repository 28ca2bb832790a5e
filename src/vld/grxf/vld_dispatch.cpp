// The draw dispatch of face records, the scratch arrays of the pipeline and the
// material-times-light products that every lighting path reads.
#include "vld/grxf/vld_dispatch.h"

#include <cstring>

#include "support/mth/mat.h"
#include "vld/api/vld_callees.h"
#include "vld/api/vld_caps.h"

namespace {

using vld_face_fn = void (*)(vld_dl_record*);

// The generic family, indexed by variant number: bit 0 clips, bit 1 is perspective, bit 2
// has no per-batch scale (no bounding sphere, or a sphere too large for it).
const vld_face_fn kFaceVariants[8] = {
    KSP_vld_dl_faces_variant0, KSP_vld_dl_faces_variant1, KSP_vld_dl_faces_variant2,
    KSP_vld_dl_faces_variant3, KSP_vld_dl_faces_variant4, KSP_vld_dl_faces_variant5,
    KSP_vld_dl_faces_variant6, KSP_vld_dl_faces_variant7,
};

// The optimised paths, by format 1 to 4.
const vld_face_fn kOptPaths[4] = {
    KSP_vld_opt_path_vct,
    KSP_vld_opt_path_vnt,
    KSP_vld_opt_path_vc,
    KSP_vld_opt_path_vn,
};

bool vld_has_no_sphere(const vld_dl_record* r)
{
    uint32_t bits;
    std::memcpy(&bits, &r->radius, 4);
    return bits == VLD_NO_SPHERE_BITS;
}

// Whether the state lets an optimised path draw a record of a non-zero format.
bool vld_opt_path_allowed(const vld_context* ctx, const vld_dl_record* r)
{
    if (r->format == VLD_FMT_GENERAL || r->format > VLD_FMT_VN)
        return false;
    if (ctx->polygon.polygonModeFront != GL_FILL)
        return false;
    // A unit is enabled by its 2D texture, as everywhere in the pipeline: the 1D bit and
    // texture generation alone draw nothing through it.
    if (ctx->enable.textureEnableBits[1] & VLD_TEX_2D)
        return false;
    if (ctx->textureMode == 2 || (ctx->textureMode == 1 && ctx->stwHintSt != 1))
        return false;
    const uint32_t unit0 = ctx->enable.textureEnableBits[0];
    if ((unit0 & VLD_TEX_2D) && (unit0 & VLD_TEX_GEN_ANY))
        return false;
    if (ctx->texture.units[0].textureUnitId != 0)
        return false;
    const vld_texture_transform& tt = ctx->textureTransforms[0];
    int depth = tt.depth < 0 ? 0 : (tt.depth > 1 ? 1 : tt.depth);
    return tt.isIdentity[depth] != 0;
}

#if defined(__i386__)
unsigned short vldSavedControlWord;
#endif

// One product of a material and a light component: formed in double, kept in single.
inline float vld_product(float a, float b)
{
    return (float)((double)a * (double)b);
}

void vld_ambient_one(vld_context* ctx, int i, bool store)
{
    vld_lighting_attrib& l = ctx->lighting;
    vld_light_products& p = l.lightProducts[i];
    if (store)
        for (int c = 0; c < 3; ++c)
            p.ambient[c] = vld_product(l.materialAmbient[c], l.lights[i].ambient[c]);
    for (int c = 0; c < 3; ++c)
        KSP_vld_sse_assign(p.ambient[c], &p.ambient4[c]);
}

void vld_diffuse_one(vld_context* ctx, int i)
{
    vld_lighting_attrib& l = ctx->lighting;
    vld_light_products& p = l.lightProducts[i];
    for (int c = 0; c < 3; ++c)
        p.diffuse[c] = vld_product(l.materialDiffuse[c], l.lights[i].diffuse[c]);
    p.diffuse[3] = l.materialDiffuse[3];
    for (int c = 0; c < 4; ++c)
        KSP_vld_sse_assign(p.diffuse[c], &p.diffuse4[c]);
}

void vld_specular_one(vld_context* ctx, int i)
{
    vld_lighting_attrib& l = ctx->lighting;
    vld_light_products& p = l.lightProducts[i];
    if (vlddb.settings.specularDisable) {
        p.specularFlag = 0.0f;
        return;
    }
    bool any = false;
    for (int c = 0; c < 3; ++c) {
        p.specular[c] = vld_product(l.materialSpecular[c], l.lights[i].specular[c]);
        any = any || p.specular[c] != 0.0f;
    }
    p.specularFlag = any ? 1.0f : 0.0f;
    for (int c = 0; c < 3; ++c)
        KSP_vld_sse_assign(p.specular[c], &p.specular4[c]);
}

int vld_highest_light(const vld_context* ctx)
{
    int h = ctx->lighting.lightHighestEnabled;
    return h > 7 ? 7 : h;
}

bool vld_light_on(const vld_context* ctx, int i)
{
    return (ctx->enable.lightEnableBits >> i) & 1;
}

} // namespace

// The format rule: only the record's builders call this, the dispatch reads the result.
uint16_t KSP_vld_dl_format_of(const vld_dl_record* r)
{
    if (r->color_offset || r->ambient_offset || r->diffuse_offset || r->emission_offset ||
        r->specular_offset || r->shininess_offset)
        return VLD_FMT_GENERAL;
    if (r->texcoord_offset) {
        if (r->flags & VLD_DLF_TEX1)
            return VLD_FMT_GENERAL;
        if (r->lcache_color)
            return VLD_FMT_VCT;
        if (r->normal_offset)
            return VLD_FMT_VNT;
        return VLD_FMT_GENERAL;
    }
    if (r->lcache_color)
        return VLD_FMT_VC;
    if (r->normal_offset)
        return VLD_FMT_VN;
    return VLD_FMT_GENERAL;
}

// Picks the path of a face record: polygon mode first, then whether the batch may use a
// per-batch scale (a bounding sphere small enough against the near plane in perspective),
// then the optimised paths for plain formats under the fast clip hint, and otherwise the
// generic variant by clip hint and projection.
vld_face_path KSP_vld_dl_faces_choose(vld_context* ctx, vld_dl_record* r)
{
    GLenum mode = ctx->polygon.polygonModeFront;
    if (mode == GL_POINT)
        return VLD_PATH_AS_POINTS;
    if (mode != GL_FILL)
        return VLD_PATH_AS_LINES;

    int variant = 0;
    if (vld_has_no_sphere(r) || !ctx->isPerspective) {
        variant = 4;
    } else {
        float scale[3];
        G_mat_decompose_scale(ctx->mvpMatrix, scale);
        float greatest = scale[0];
        if (scale[1] > greatest)
            greatest = scale[1];
        if (scale[2] > greatest)
            greatest = scale[2];
        r->scaled_radius = greatest * r->radius;
        float limit = vlddb.settings.txrOowScale != -1.0f ? vlddb.settings.txrOowScale
                                                          : ctx->eyeDepthNear * 8196.0f;
        if (r->scaled_radius > limit)
            variant = 4;
    }
    if (vlddb.settings.fastPath && variant == 0 && ctx->isPerspective &&
        ctx->hint.hintClipVolume == GL_FASTEST && vld_opt_path_allowed(ctx, r))
        return (vld_face_path)(VLD_PATH_OPT_VCT + (r->format - 1));
    if (ctx->hint.hintClipVolume != GL_FASTEST)
        variant += 1;
    if (ctx->isPerspective)
        variant += 2;
    return (vld_face_path)variant;
}

// Draws a type 3 record by the path the current state calls for.
void KSP_vld_dl_faces(vld_dl_record* record)
{
    vld_context* ctx = vldGc;
    if (!ctx || !record)
        return;
    vld_face_path path = KSP_vld_dl_faces_choose(ctx, record);
    switch (path) {
    case VLD_PATH_AS_POINTS:
        KSP_vld_dl_faces_as_points(record);
        return;
    case VLD_PATH_AS_LINES:
        KSP_vld_dl_faces_as_lines(record);
        return;
    case VLD_PATH_OPT_VCT:
    case VLD_PATH_OPT_VNT:
    case VLD_PATH_OPT_VC:
    case VLD_PATH_OPT_VN:
        KSP_vld_fpu_single_enter();
        kOptPaths[path - VLD_PATH_OPT_VCT](record);
        KSP_vld_fpu_single_leave();
        return;
    default:
        kFaceVariants[path](record);
        return;
    }
}

// Loads the x87 control word with precision control at 24 bits, keeping the caller's word
// in one process-wide static.
void KSP_vld_fpu_single_enter()
{
#if defined(__i386__)
    unsigned short word;
    __asm__ __volatile__("fnstcw %0" : "=m"(word));
    vldSavedControlWord = word;
    word &= 0xFCFF;
    __asm__ __volatile__("fldcw %0" : : "m"(word));
#endif
}

// Restores the control word saved at entry.
void KSP_vld_fpu_single_leave()
{
#if defined(__i386__)
    __asm__ __volatile__("fldcw %0" : : "m"(vldSavedControlWord));
#endif
}

// Grows the scratch arrays of the pipeline to hold `count` vertices plus the 100 slots kept
// for vertices made by clipping. The allocation always moves to the next multiple of 32
// strictly above count + 100. Eye records start cleared, since their stamps must not match
// the running batch stamp by accident.
void KSP_vld_enlarge_vertex_count(int32_t count)
{
    vld_context* ctx = vldGc;
    if (!ctx || count <= ctx->pipelineVertexCapacity)
        return;
    if (count > 0x7FFFFFFF - 164)
        return;
    int64_t old = ctx->vertexAllocated;
    int64_t allocated = ((int64_t)count + 100 + 32) / 32 * 32;
    ctx->vertexAllocated = (int32_t)allocated;
    ctx->pipelineVertexCapacity = (int32_t)(allocated - 100);

    ctx->screenVertices =
        KSP_vld_realloc_aligned(ctx->screenVertices, (size_t)allocated * VLD_SCREEN_SLOT_BYTES);
    ctx->eyeVertices = KSP_vld_realloc_aligned(ctx->eyeVertices, (size_t)allocated * VLD_EYE_RECORD_BYTES);
    for (float*& scalars : ctx->sseScratch)
        scalars = (float*)KSP_vld_realloc_aligned(scalars, (size_t)allocated * sizeof(float));
    ctx->sseTmuBase = KSP_vld_realloc_aligned(ctx->sseTmuBase, (size_t)allocated * 32);

    size_t added = (size_t)(allocated - old);
    std::memset((char*)ctx->screenVertices + old * VLD_GLIDE_VERTEX_BYTES, 0, added * VLD_GLIDE_VERTEX_BYTES);
    std::memset((char*)ctx->eyeVertices + old * VLD_EYE_RECORD_BYTES, 0, added * VLD_EYE_RECORD_BYTES);
    for (float* scalars : ctx->sseScratch)
        std::memset(scalars + old, 0, added * sizeof(float));
    std::memset((char*)ctx->sseTmuBase + old * 32, 0, added * 32);
    ctx->clipVertexBase = (int32_t)(allocated - 100);
}

// Scene ambient: material ambient times the light model's ambient.
void KSP_vld_mtl_pre_light_ams(vld_context* ctx)
{
    vld_lighting_attrib& l = ctx->lighting;
    for (int c = 0; c < 3; ++c) {
        l.sceneAmbient[c] = vld_product(l.materialAmbient[c], l.lightModelAmbient[c]);
        KSP_vld_sse_assign(l.sceneAmbient[c], &l.sceneAmbient4[c]);
    }
}

// Ambient products of the enabled lights; the broadcast groups of every light up to the
// highest enabled one; then the scene ambient.
void KSP_vld_mtl_pre_light_amb(vld_context* ctx)
{
    for (int i = 0; i <= vld_highest_light(ctx); ++i)
        vld_ambient_one(ctx, i, vld_light_on(ctx, i));
    KSP_vld_mtl_pre_light_ams(ctx);
}

// Diffuse products of the enabled lights.
void KSP_vld_mtl_pre_light_dif(vld_context* ctx)
{
    for (int i = 0; i <= vld_highest_light(ctx); ++i)
        if (vld_light_on(ctx, i))
            vld_diffuse_one(ctx, i);
}

// Specular products and flags of the enabled lights.
void KSP_vld_mtl_pre_light_spec(vld_context* ctx)
{
    for (int i = 0; i <= vld_highest_light(ctx); ++i)
        if (vld_light_on(ctx, i))
            vld_specular_one(ctx, i);
}

void KSP_vld_mtl_pre_light_amb_one(vld_context* ctx, int light)
{
    if (light >= 0 && light < 8)
        vld_ambient_one(ctx, light, true);
}

void KSP_vld_mtl_pre_light_dif_one(vld_context* ctx, int light)
{
    if (light >= 0 && light < 8)
        vld_diffuse_one(ctx, light);
}

void KSP_vld_mtl_pre_light_spec_one(vld_context* ctx, int light)
{
    if (light >= 0 && light < 8)
        vld_specular_one(ctx, light);
}
