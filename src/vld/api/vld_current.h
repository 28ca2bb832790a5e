// The per-vertex calls of immediate mode: the setters of the current colour and normal, the
// vertex template that they keep, and the capture of one vertex from it. The bodies are
// inline so that the entry frames carry them out in place, with the context they have
// already read; the layer functions use the same bodies.
//
// The vertex template (vld_vertex_template in the context) is a copy of the immediate
// sources of a captured vertex, laid out as the record is. glBegin builds it from the
// context and makes it live; from then on every call that changes one of the sources either
// writes the template too (the colour, normal and material setters) or makes it dead (every
// other entry frame, the direct draws, glEnd). A vertex taken while it is live is one copy of
// aligned blocks; otherwise the vertex is gathered from the sources, as always.
#pragma once

#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "vld/api/vld_capture.h"
#include "vld/api/vld_context.h"
#include "vld/grxf/vld_geom.h"

// Four floats as one value: one load or store of 16 bytes where the machine has them. Only
// ever a local, never passed or returned, so that no calling convention depends on it.
typedef float vld_f4 __attribute__((vector_size(16)));

// Copies four floats as one block.
__attribute__((always_inline)) inline void vld_f4_copy(float* to, const float* from)
{
    vld_f4 v;
    std::memcpy(&v, from, sizeof v);
    std::memcpy(to, &v, sizeof v);
}

#if defined(__SSE2__)
// A float argument's register as a vector, with no instruction: lane 0 holds the float, the
// other lanes whatever the register held. Only for values whose upper lanes are shifted
// out or never stored.
__attribute__((always_inline)) inline __m128 vld_lane0(float f)
{
    __m128 v;
    __asm__("" : "=x"(v) : "0"(f));
    return v;
}
#endif

// The colour-material side of a colour call (state_light.cpp), and GL_NORMALIZE's
// renormalisation of the current normal, which renews the template's normal.
void KSP_vld_color_material_follows(vld_context* ctx, float r, float g, float b, float a);
void KSP_vld_normalize_current(vld_context* ctx);
// glVertex3f with a full vertex array: grows it, then captures (vld_capture.cpp).
void KSP_vld_capture_vertex_grown(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z);

// The bits of vertexTemplateLive. Writing VLD_TEMPLATE_DEAD drops them all at once.
//   LIVE          the template equals the immediate sources (from glBegin on)
//   COLOR_SHORT   glColor3f may take its short way: executing only, inside the primitive,
//                 its attribute bit already set and colour material off
//   NORMAL_SHORT  glNormal3f likewise, with GL_NORMALIZE off
// A short bit is set by its setter after a full call that found those conditions; any call
// that could change one of them (glEnable, glDisable, glPopAttrib, list calls, and whatever
// sets the routing bytes) goes through a frame that drops the template, which ends the short
// ways with it.
enum : int32_t {
    VLD_TEMPLATE_DEAD = 0,
    VLD_TEMPLATE_LIVE = 1,
    VLD_TEMPLATE_COLOR_SHORT = 0x100,
    VLD_TEMPLATE_NORMAL_SHORT = 0x10000,
};

// Whether the full form of a setter leaves its short way open: the template is live, the
// call executes only, and the setter has nothing more to do than store.
inline bool vld_template_short_allowed(const vld_context* ctx)
{
    return ctx->vertexTemplateLive && ctx->executeFlag && !ctx->compileFlag;
}

// The template's lead block from a normal: the normal in lanes 1 to 3.
inline void vld_template_normal(vld_context* ctx, float x, float y, float z)
{
    const vld_f4 lead = {0.0f, x, y, z};
    std::memcpy(ctx->vertexTemplate.lead, &lead, sizeof lead);
}

// The template's steady blocks were written with new values: no record holds them yet.
inline void vld_template_steady_changed(vld_context* ctx)
{
    ctx->vertexSteady = 0;
}

// Copies `bytes` from `from` to `to` unless they hold the same bits already; tells whether
// it did.
inline bool vld_copy_if_changed(void* to, const void* from, size_t bytes)
{
    if (std::memcmp(to, from, bytes) == 0)
        return false;
    std::memcpy(to, from, bytes);
    return true;
}

// Builds the template from the immediate sources and makes it live. The steady blocks
// (texture coordinates, then the material from ambient to shininess, the same run of words
// in the context and in the template) only count as new when their bits changed.
inline void vld_template_refresh(vld_context* ctx)
{
    vld_vertex_template& t = ctx->vertexTemplate;
    const vld_current_attrib& c = ctx->current;
    const vld_lighting_attrib& l = ctx->lighting;
    static_assert(offsetof(vld_vertex_template, texcoord1) - offsetof(vld_vertex_template, texcoord0) == 16 &&
                      offsetof(vld_vertex_template, shininess) - offsetof(vld_vertex_template, ambient) ==
                          offsetof(vld_lighting_attrib, materialShininess) -
                              offsetof(vld_lighting_attrib, materialAmbient),
                  "the steady blocks are one run of words on both sides");
    vld_template_normal(ctx, c.currentNormal[0], c.currentNormal[1], c.currentNormal[2]);
    std::memcpy(t.color, c.currentColor, sizeof t.color);
    const bool coords = vld_copy_if_changed(t.texcoord0, c.currentTexCoord, 8 * sizeof(float));
    const bool material = vld_copy_if_changed(t.ambient, l.materialAmbient, 17 * sizeof(float));
    if (coords || material)
        vld_template_steady_changed(ctx);
    ctx->vertexTemplateLive = VLD_TEMPLATE_LIVE;
}

// The texture coordinates of both sets into the template, after a call that set them.
inline void vld_template_texcoords(vld_context* ctx)
{
    std::memcpy(ctx->vertexTemplate.texcoord0, ctx->current.currentTexCoord[0], 4 * sizeof(float));
    std::memcpy(ctx->vertexTemplate.texcoord1, ctx->current.currentTexCoord[1], 4 * sizeof(float));
    vld_template_steady_changed(ctx);
}

// The current colour, unclamped; colour material follows it into the material. The
// attribute bit is only written when it is not set yet, as every colour of a primitive
// after its first finds it set. The colour is built once in registers and stored as one
// block into the context and into the template.
__attribute__((always_inline)) inline void vld_set_current_color(vld_context* ctx, float r, float g, float b,
                                                                 float a)
{
    if (ctx->inBeginEnd && !(ctx->beginAttrMask & VLD_ATTR_COLOR))
        ctx->beginAttrMask |= VLD_ATTR_COLOR;
    const vld_f4 value = {r, g, b, a};
    std::memcpy(ctx->current.currentColor, &value, sizeof value);
    std::memcpy(ctx->vertexTemplate.color, &value, sizeof value);
    if (ctx->enable.capabilityBits & VLD_CAP_COLOR_MATERIAL)
        KSP_vld_color_material_follows(ctx, r, g, b, a);
    else if (ctx->inBeginEnd && vld_template_short_allowed(ctx))
        ctx->vertexTemplateLive |= VLD_TEMPLATE_COLOR_SHORT;
}

// The short way of the colour setter: the colour into the context and the template, when
// the template says that is all the call has to do (see VLD_TEMPLATE_COLOR_SHORT).
__attribute__((always_inline)) inline bool vld_set_current_color_short(vld_context* ctx, float r, float g,
                                                                      float b, float a)
{
    if (!(ctx->vertexTemplateLive & VLD_TEMPLATE_COLOR_SHORT))
        return false;
    const vld_f4 value = {r, g, b, a};
    std::memcpy(ctx->current.currentColor, &value, sizeof value);
    std::memcpy(ctx->vertexTemplate.color, &value, sizeof value);
    return true;
}

// The current normal. With GL_NORMALIZE on it is made unit length here, once, as given:
// lighting runs in object space, where the normal is used as it stands. The attribute bit
// is only written when it is not set yet.
__attribute__((always_inline)) inline void vld_set_current_normal(vld_context* ctx, float x, float y, float z)
{
    if (ctx->inBeginEnd && !(ctx->beginAttrMask & VLD_ATTR_NORMAL))
        ctx->beginAttrMask |= VLD_ATTR_NORMAL;
    float* n = ctx->current.currentNormal;
    n[0] = x;
    n[1] = y;
    n[2] = z;
    vld_template_normal(ctx, x, y, z);
    if (ctx->enable.capabilityBits & VLD_CAP_NORMALIZE)
        KSP_vld_normalize_current(ctx);
    else if (ctx->inBeginEnd && vld_template_short_allowed(ctx))
        ctx->vertexTemplateLive |= VLD_TEMPLATE_NORMAL_SHORT;
}

// The short way of the normal setter (see VLD_TEMPLATE_NORMAL_SHORT).
__attribute__((always_inline)) inline bool vld_set_current_normal_short(vld_context* ctx, float x, float y,
                                                                       float z)
{
    if (!(ctx->vertexTemplateLive & VLD_TEMPLATE_NORMAL_SHORT))
        return false;
    float* n = ctx->current.currentNormal;
#if defined(__SSE2__)
    // (x, y, z, 0) once: its low half and z into the context, and moved up one lane as the
    // template's lead block.
    const __m128 xyz = _mm_movelh_ps(_mm_unpacklo_ps(vld_lane0(x), vld_lane0(y)), vld_lane0(z));
    _mm_storel_pi((__m64*)n, xyz);
    n[2] = z;
    _mm_storeu_ps(ctx->vertexTemplate.lead, _mm_castsi128_ps(_mm_slli_si128(_mm_castps_si128(xyz), 4)));
#else
    n[0] = x;
    n[1] = y;
    n[2] = z;
    vld_template_normal(ctx, x, y, z);
#endif
    return true;
}

// Fills the record at vertexCount with (x, y, z) and the current attributes of the layer
// that will consume it (the immediate ones win when both layers do), and counts it. With a
// live template the immediate attributes are its blocks: the lead block carries the normal
// and takes z in its first lane, and the seven four-word blocks after it are aligned; a
// record that holds the steady blocks already (below vertexSteady) only takes the others.
__attribute__((always_inline)) inline void vld_capture_vertex(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z)
{
    const int32_t n = ctx->vertexCount++;
    vld_vertex& v = ctx->vertexArray[n];
    if (ctx->executeFlag && ctx->vertexTemplateLive) {
        const vld_vertex_template& t = ctx->vertexTemplate;
        vld_f4 lead;
        std::memcpy(&lead, t.lead, sizeof lead);
        lead[0] = z;
        std::memcpy(&v.position[2], &lead, sizeof lead);
        v.position[0] = x;
        v.position[1] = y;
        vld_f4_copy(v.color, t.color);
        if (n < ctx->vertexSteady)
            return;
        vld_f4_copy(v.texcoord0, t.texcoord0);
        vld_f4_copy(v.texcoord1, t.texcoord1);
        vld_f4_copy(v.ambient, t.ambient);
        vld_f4_copy(v.diffuse, t.diffuse);
        vld_f4_copy(v.specular, t.specular);
        vld_f4_copy(v.emission, t.emission);
        v.shininess = t.shininess;
        if (n == ctx->vertexSteady)
            ctx->vertexSteady = n + 1;
        return;
    }
    // Any other capture writes the steady fields from elsewhere, or leaves them as they were.
    if (n < ctx->vertexSteady)
        ctx->vertexSteady = n;
    v.position[0] = x;
    v.position[1] = y;
    v.position[2] = z;
    if (ctx->executeFlag) {
        const vld_current_attrib& c = ctx->current;
        const vld_lighting_attrib& l = ctx->lighting;
        std::memcpy(v.normal, c.currentNormal, sizeof v.normal);
        std::memcpy(v.texcoord0, c.currentTexCoord[0], sizeof v.texcoord0);
        std::memcpy(v.texcoord1, c.currentTexCoord[1], sizeof v.texcoord1);
        std::memcpy(v.color, c.currentColor, sizeof v.color);
        std::memcpy(v.ambient, l.materialAmbient, sizeof v.ambient);
        std::memcpy(v.diffuse, l.materialDiffuse, sizeof v.diffuse);
        std::memcpy(v.specular, l.materialSpecular, sizeof v.specular);
        std::memcpy(v.emission, l.materialEmission, sizeof v.emission);
        v.shininess = l.materialShininess;
    } else if (ctx->compileFlag) {
        std::memcpy(v.normal, ctx->listNormal, sizeof v.normal);
        std::memcpy(v.texcoord0, ctx->listTexCoord[0], sizeof v.texcoord0);
        std::memcpy(v.texcoord1, ctx->listTexCoord[1], sizeof v.texcoord1);
        std::memcpy(v.color, ctx->listColor, sizeof v.color);
        std::memcpy(v.ambient, ctx->listAmbient, sizeof v.ambient);
        std::memcpy(v.diffuse, ctx->listDiffuse, sizeof v.diffuse);
        std::memcpy(v.specular, ctx->listSpecular, sizeof v.specular);
        std::memcpy(v.emission, ctx->listEmission, sizeof v.emission);
        v.shininess = ctx->listShininess;
    }
}

// The vertex count at which capture stops taking vertices.
inline constexpr int32_t VLD_CAPTURE_LIMIT = 0x7FFFFFFF - 256;

// glVertex3f on a context: captures one whole vertex, growing the array when it is full
// (the grower also stops at the limit).
__attribute__((always_inline)) inline void vld_vertex3f(vld_context* ctx, GLfloat x, GLfloat y, GLfloat z)
{
    if (ctx->vertexCount >= ctx->vertexRoom)
        return KSP_vld_capture_vertex_grown(ctx, x, y, z);
    vld_capture_vertex(ctx, x, y, z);
}
