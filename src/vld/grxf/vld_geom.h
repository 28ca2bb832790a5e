// Records and helpers shared by the matrix and lighting state and the x87 geometry paths:
// the eye record of a vertex slot, the object-space part of a light record, the shadow
// copy that the light cache compares against.
#pragma once

#include <cstdint>

#include <glide2/glide.h>

#include "vld/api/vld_caps.h"
#include "vld/api/vld_context.h"

// Outcode bits of a vertex against the view volume.
enum : uint16_t {
    VLD_CLIP_NEAR = 1,
    VLD_CLIP_FAR = 2,
    VLD_CLIP_BOTTOM = 4,
    VLD_CLIP_TOP = 8,
    VLD_CLIP_LEFT = 16,
    VLD_CLIP_RIGHT = 32,
};

// The working record of one vertex slot of the x87 paths (one element of eyeVertices).
struct vld_eye_vertex {
    float x, y, z, w; // clip coordinates; z is not computed in perspective
    float s[2];       // per texture unit
    float t[2];       // already flipped for Glide's top-left origin
    float q[2];
    float base_oow[2]; // per-triangle-scale variants: the TMU fields before scaling
    float base_sow[2];
    float base_tow[2];
    uint16_t outcode;
    uint16_t transform_stamp;
    uint16_t attr_stamp;
    uint16_t project_stamp;
};
static_assert(sizeof(vld_eye_vertex) <= VLD_EYE_RECORD_BYTES, "an eye record fits its slot");
static_assert(sizeof(GrVertex) == VLD_GLIDE_VERTEX_BYTES, "a Glide vertex is 15 floats");

// The derived part of a light record (vld_light::derived): its geometry in object space and
// the four-lane copies of the four-wide lighting. The copies are stored as plain groups of
// four floats; the record's place in the context does not make them 16-byte aligned.
struct vld_light_object {
    float spotCosCutoff;
    float spotDirectionObject[3];
    float directionEyeUnit[3];
    float directionObject[3];
    float positionObject[3];
    float halfVectorObject[3];
    float attenuation4[3][4];
    float spotCosCutoff4[4];
    float spotDirectionObject4[3][4];
    float directionObject4[3][4];
    float positionObject4[3][4];
    float halfVectorObject4[3][4];
};
static_assert(sizeof(vld_light_object) <= sizeof(((vld_light*)nullptr)->derived),
              "the object-space light fits the record");

inline vld_light_object& vld_light_obj(vld_light& l)
{
    return *reinterpret_cast<vld_light_object*>(l.derived);
}
inline const vld_light_object& vld_light_obj(const vld_light& l)
{
    return *reinterpret_cast<const vld_light_object*>(l.derived);
}

// What a light was last set to, parameter by parameter, for the change count.
struct vld_light_shadow {
    float ambient[4];
    float diffuse[4];
    float specular[4];
    float position[4]; // the caller's values, before any transform
    float spotDirection[3];
    float spotExponent;
    float spotCutoff;
    float attenuation[3];
};

// The shadow copies of the eight lights stand in the lighting group's spare words.
inline vld_light_shadow* vld_light_shadows(vld_context* ctx)
{
    static_assert(8 * sizeof(vld_light_shadow) <= sizeof(ctx->lighting.lightingWords));
    return reinterpret_cast<vld_light_shadow*>(ctx->lighting.lightingWords);
}

// The sign that a face's object-space facing is multiplied by before the cull test: +1 or
// -1 by glCullFace, glFrontFace and the mirroring of the projection, 0 for
// GL_FRONT_AND_BACK (which culls everything).
inline float vld_cull_sign(const vld_context* ctx)
{
    float front = ctx->polygon.cullFaceMode == GL_BACK             ? 1.0f
                  : ctx->polygon.cullFaceMode == GL_FRONT_AND_BACK ? 0.0f
                                                                    : -1.0f;
    if (ctx->polygon.frontFace != GL_CCW)
        front = -front;
    return ctx->mirrorSign * front;
}

// Whether filled polygons are antialiased.
inline bool vld_polygon_smooth(const vld_context* ctx)
{
    return (ctx->enable.capabilityBits & VLD_CAP_POLYGON_SMOOTH) != 0;
}

// Where the face path sends its triangles: Glide, or a test's recorder.
using vld_draw_triangle_fn = void(FX_CALL*)(const GrVertex*, const GrVertex*, const GrVertex*);
using vld_aa_draw_triangle_fn = void(FX_CALL*)(const GrVertex*, const GrVertex*, const GrVertex*,
                                               FxBool, FxBool, FxBool);
struct vld_triangle_sink {
    vld_draw_triangle_fn draw;
    vld_aa_draw_triangle_fn aaDraw;
};
// Process-wide; points at grDrawTriangle and grAADrawTriangle when the board is linked.
extern VLD_LOCAL vld_triangle_sink vldTriangleSink;

// The 16-bit batch stamp of the x87 paths.
extern VLD_LOCAL uint16_t vertexStamp;
