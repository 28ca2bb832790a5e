// Light sources, material, light model, shading, colour material, current colour and
// normal. Every command makes what it can ahead of the vertices: object-space geometry,
// material-times-light products, and the change count that the lit-colour caches watch.
#include "vld/state/state_light.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "support/mth/mat.h"
#include "vld/api/vld_callees.h"
#include "vld/api/vld_capture.h"
#include "vld/api/vld_current.h"
#include "vld/api/vld_error.h"
#include "vld/grxf/vld_dispatch.h"
#include "vld/grxf/vld_geom.h"

namespace {

constexpr double kIntToUnit = 4.656612875245797e-10; // 1 / 2147483647
constexpr double kDegToRad = 0.017453292519943295;

// The print-once flag of refused light-model values, process-wide.
bool vldLightModelRefusalTold = false;

void vld_lanes3(const float v[3], float lanes[3][4])
{
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 4; ++k)
            lanes[c][k] = v[c];
}

void vld_lanes1(float v, float lanes[4])
{
    for (int k = 0; k < 4; ++k)
        lanes[k] = v;
}

float vld_dot3(const float a[3], const float b[3])
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

const float* vld_modelview(const vld_context* ctx)
{
    return ctx->modelviewStack[ctx->modelviewDepth];
}

// The half vector of a directional light: its direction plus the eye direction, unit length
// unless the sum vanishes.
void vld_half_vector(vld_context* ctx, vld_light_object& o)
{
    for (int c = 0; c < 3; ++c)
        o.halfVectorObject[c] = o.directionObject[c] + ctx->eyeObjectUnit[c];
    float l = vld_dot3(o.halfVectorObject, o.halfVectorObject);
    if (l != 0.0f) {
        float f = 1.0f / std::sqrt(l);
        for (float& c : o.halfVectorObject)
            c *= f;
    }
}

void vld_refuse_model_value(vld_context* ctx, GLenum pname)
{
    VLD_GL_ERROR_ENUM(ctx, pname);
    if (!vldLightModelRefusalTold) {
        vldLightModelRefusalTold = true;
        std::fputs("glLightModelfv: unimplemented parameter value attempted\n", stderr);
    }
}

bool vld_color_pname(GLenum pname)
{
    return pname == GL_AMBIENT || pname == GL_DIFFUSE || pname == GL_SPECULAR;
}

} // namespace

float KSP_vld_color_component(GLbyte c) { return (float)c * 0.007874015718698502f; }
float KSP_vld_color_component(GLshort c) { return (float)c * 3.0518509447574615e-05f; }
float KSP_vld_color_component(GLint c) { return (float)((double)c * kIntToUnit); }
float KSP_vld_color_component(GLubyte c) { return (float)c * 0.003921568859368563f; }
float KSP_vld_color_component(GLushort c) { return (float)c * 1.5259021893143654e-05f; }
float KSP_vld_color_component(GLuint c)
{
    return (float)((double)(uint64_t)c * 2.3283064370807974e-10);
}
float KSP_vld_color_component(GLfloat c) { return c; }
float KSP_vld_color_component(GLdouble c) { return (float)c; }

float KSP_vld_shininess_base(float shininess)
{
    if (shininess <= 0.0f)
        return 0.0f;
    return (float)std::pow((double)0.01f, 1.0 / (double)shininess);
}

void KSP_vld_init_light_state(vld_context* ctx)
{
    vld_lighting_attrib& l = ctx->lighting;
    const float modelAmbient[4] = {0.2f, 0.2f, 0.2f, 1.0f};
    std::memcpy(l.lightModelAmbient, modelAmbient, sizeof modelAmbient);
    l.lightModelLocalViewer = 0;
    l.lightModelOneSided = 1;
    l.lightHighestEnabled = -1;
    l.shadeModel = GL_SMOOTH;
    l.colorMaterialFace = GL_FRONT_AND_BACK;
    l.colorMaterialMode = GL_AMBIENT_AND_DIFFUSE;
    const float mAmbient[4] = {0.2f, 0.2f, 0.2f, 1.0f}, mDiffuse[4] = {0.8f, 0.8f, 0.8f, 1.0f},
                black[4] = {0.0f, 0.0f, 0.0f, 1.0f}, white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    std::memcpy(l.materialAmbient, mAmbient, sizeof mAmbient);
    std::memcpy(l.materialDiffuse, mDiffuse, sizeof mDiffuse);
    std::memcpy(l.materialSpecular, black, sizeof black);
    std::memcpy(l.materialEmission, black, sizeof black);
    l.materialShininess = 0.0f;
    l.materialShininessBase = 0.0f;
    vld_light_shadow* shadows = vld_light_shadows(ctx);
    for (int i = 0; i < 8; ++i) {
        vld_light& light = l.lights[i];
        light.name = GL_LIGHT0 + i;
        std::memcpy(light.ambient, black, sizeof black);
        std::memcpy(light.diffuse, i == 0 ? white : black, sizeof black);
        std::memcpy(light.specular, i == 0 ? white : black, sizeof black);
        const float pos[4] = {0, 0, 1, 0}, dir[4] = {0, 0, -1, 0};
        std::memcpy(light.position, pos, sizeof pos);
        std::memcpy(light.spotDirection, dir, sizeof dir);
        light.spotExponent = 0.0f;
        light.spotCutoff = 180.0f;
        light.attenuation[0] = 1.0f;
        light.attenuation[1] = light.attenuation[2] = 0.0f;
        vld_light_object& o = vld_light_obj(light);
        o.spotCosCutoff = -1.0f;
        std::memcpy(o.spotDirectionObject, dir, 3 * sizeof(float));
        std::memcpy(o.directionEyeUnit, pos, 3 * sizeof(float));
        std::memcpy(o.directionObject, pos, 3 * sizeof(float));
        vld_half_vector(ctx, o);
        for (int c = 0; c < 3; ++c)
            vld_lanes1(light.attenuation[c], o.attenuation4[c]);
        vld_lanes1(o.spotCosCutoff, o.spotCosCutoff4);
        vld_lanes3(o.spotDirectionObject, o.spotDirectionObject4);
        vld_lanes3(o.directionObject, o.directionObject4);
        vld_lanes3(o.halfVectorObject, o.halfVectorObject4);

        vld_light_shadow& s = shadows[i];
        std::memcpy(s.ambient, light.ambient, sizeof s.ambient);
        std::memcpy(s.diffuse, light.diffuse, sizeof s.diffuse);
        std::memcpy(s.specular, light.specular, sizeof s.specular);
        std::memcpy(s.position, light.position, sizeof s.position);
        std::memcpy(s.spotDirection, light.spotDirection, sizeof s.spotDirection);
        s.spotExponent = light.spotExponent;
        s.spotCutoff = light.spotCutoff;
        std::memcpy(s.attenuation, light.attenuation, sizeof s.attenuation);
        KSP_vld_mtl_pre_light_amb_one(ctx, i);
        KSP_vld_mtl_pre_light_dif_one(ctx, i);
        KSP_vld_mtl_pre_light_spec_one(ctx, i);
    }
    KSP_vld_mtl_pre_light_ams(ctx);
}

// Stores one light parameter. Positions and directions are taken into eye coordinates by
// the current modelview matrix, as GL requires, and into the object space of the present
// modelview at once; colours renew the light's products.
void KSP_vld_glLightfv(vld_context* ctx, GLenum light, GLenum pname, const GLfloat* params)
{
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    if (light < GL_LIGHT0 || light > GL_LIGHT0 + 7) {
        VLD_GL_ERROR_ENUM(ctx, light);
        return;
    }
    const int index = (int)(light - GL_LIGHT0);
    vld_light& l = ctx->lighting.lights[index];
    vld_light_object& o = vld_light_obj(l);
    const float* mv = vld_modelview(ctx);
    switch (pname) {
    case GL_AMBIENT:
        std::memcpy(l.ambient, params, 4 * sizeof(float));
        KSP_vld_mtl_pre_light_amb(ctx);
        break;
    case GL_DIFFUSE:
        std::memcpy(l.diffuse, params, 4 * sizeof(float));
        KSP_vld_mtl_pre_light_dif(ctx);
        break;
    case GL_SPECULAR:
        std::memcpy(l.specular, params, 4 * sizeof(float));
        KSP_vld_mtl_pre_light_spec(ctx);
        break;
    case GL_POSITION:
        if (params[3] == 0.0f) {
            mat_multiply_by_vector_notrans(params, mv, l.position);
            l.position[3] = 0.0f;
            const float len2 = vld_dot3(l.position, l.position);
            const float f = (len2 == 1.0f || len2 == 0.0f) ? 1.0f : 1.0f / std::sqrt(len2);
            for (int c = 0; c < 3; ++c) {
                o.directionEyeUnit[c] = l.position[c] * f;
                o.directionObject[c] = params[c] * f;
            }
            vld_half_vector(ctx, o);
            vld_lanes3(o.directionObject, o.directionObject4);
            vld_lanes3(o.halfVectorObject, o.halfVectorObject4);
        } else {
            float eye[4];
            G_mat_mult_by_vector_4x4(params, mv, eye);
            if (eye[3] == 0.0f) {
                std::memcpy(l.position, eye, 3 * sizeof(float));
                l.position[3] = 0.0f;
            } else {
                for (int c = 0; c < 3; ++c)
                    l.position[c] = eye[c] / eye[3];
                l.position[3] = 1.0f;
            }
            std::memcpy(o.positionObject, params, 3 * sizeof(float));
            vld_lanes3(o.positionObject, o.positionObject4);
        }
        break;
    case GL_SPOT_DIRECTION:
        mat_multiply_by_vector_notrans(params, mv, l.spotDirection);
        std::memcpy(o.spotDirectionObject, params, 3 * sizeof(float));
        vld_lanes3(o.spotDirectionObject, o.spotDirectionObject4);
        break;
    case GL_SPOT_EXPONENT:
        if (!(params[0] >= 0.0f && params[0] <= 128.0f)) {
            VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
            return;
        }
        l.spotExponent = params[0];
        break;
    case GL_SPOT_CUTOFF:
        if (!((params[0] >= 0.0f && params[0] <= 90.0f) || params[0] == 180.0f)) {
            VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
            return;
        }
        l.spotCutoff = params[0];
        o.spotCosCutoff =
            params[0] == 180.0f ? -1.0f : (float)std::cos((double)params[0] * kDegToRad);
        vld_lanes1(o.spotCosCutoff, o.spotCosCutoff4);
        break;
    case GL_CONSTANT_ATTENUATION:
    case GL_LINEAR_ATTENUATION:
    case GL_QUADRATIC_ATTENUATION: {
        if (!(params[0] >= 0.0f)) {
            VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
            return;
        }
        const int k = (int)(pname - GL_CONSTANT_ATTENUATION);
        l.attenuation[k] = params[0];
        vld_lanes1(params[0], o.attenuation4[k]);
        break;
    }
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
    KSP_vld_lcache_update_light(ctx, index, pname, params);
}

// Compares a light parameter with what the light was last set to, and counts a change only
// when some component differs, so that setting a light to its present value every frame
// leaves the lit-colour caches valid.
void KSP_vld_lcache_update_light(vld_context* ctx, int light, GLenum pname, const GLfloat* params)
{
    vld_light_shadow& s = vld_light_shadows(ctx)[light & 7];
    const vld_light& l = ctx->lighting.lights[light & 7];
    float* shadow;
    const float* value = params;
    int n = 1;
    switch (pname) {
    case GL_AMBIENT: shadow = s.ambient, n = 4; break;
    case GL_DIFFUSE: shadow = s.diffuse, n = 4; break;
    case GL_SPECULAR: shadow = s.specular, n = 4; break;
    case GL_POSITION: shadow = s.position, n = 4; break;
    case GL_SPOT_DIRECTION: shadow = s.spotDirection, n = 3, value = l.spotDirection; break;
    case GL_SPOT_EXPONENT: shadow = &s.spotExponent; break;
    case GL_SPOT_CUTOFF: shadow = &s.spotCutoff; break;
    case GL_CONSTANT_ATTENUATION: shadow = &s.attenuation[0]; break;
    case GL_LINEAR_ATTENUATION: shadow = &s.attenuation[1]; break;
    case GL_QUADRATIC_ATTENUATION: shadow = &s.attenuation[2]; break;
    default:
        KSP_vld_set_gl_error_enum_fl(ctx, pname, "vldcache", __LINE__);
        return;
    }
    bool changed = false;
    for (int c = 0; c < n; ++c)
        changed = changed || shadow[c] != value[c];
    if (!changed)
        return;
    std::memcpy(shadow, value, (size_t)n * sizeof(float));
    ++ctx->lighting.lightChangeCount;
}

void __vldim_Lightfv(GLenum light, GLenum pname, const GLfloat* params)
{
    KSP_vld_glLightfv(vldGc, light, pname, params);
}

void __vldim_Lightf(GLenum light, GLenum pname, GLfloat param)
{
    const float v[4] = {param, 0.0f, 0.0f, 0.0f};
    KSP_vld_glLightfv(vldGc, light, pname, v);
}

// Integer light parameters: colours scaled so that the largest integer is 1.0, everything
// else converted as it is; an unknown parameter is ignored.
void __vldim_Lightiv(GLenum light, GLenum pname, const GLint* params)
{
    if (pname < GL_AMBIENT || pname > GL_QUADRATIC_ATTENUATION)
        return;
    const int n = pname <= GL_SPOT_DIRECTION ? (pname == GL_SPOT_DIRECTION ? 3 : 4) : 1;
    float v[4] = {};
    for (int c = 0; c < n; ++c)
        v[c] = vld_color_pname(pname) ? (float)((double)params[c] * kIntToUnit) : (float)params[c];
    KSP_vld_glLightfv(vldGc, light, pname, v);
}

void __vldim_Lighti(GLenum light, GLenum pname, GLint param)
{
    const float v[4] = {(float)param, 0.0f, 0.0f, 0.0f};
    KSP_vld_glLightfv(vldGc, light, pname, v);
}

// Keeps the lowest-to-highest enabled light index and makes the products of a light that
// comes on.
void KSP_vld_update_light_source(int index, int bit)
{
    vld_context* ctx = vldGc;
    if (!ctx || index < 0 || index > 7)
        return;
    vld_lighting_attrib& l = ctx->lighting;
    if (bit) {
        if (index > l.lightHighestEnabled)
            l.lightHighestEnabled = index;
        KSP_vld_mtl_pre_light_amb_one(ctx, index);
        KSP_vld_mtl_pre_light_dif_one(ctx, index);
        KSP_vld_mtl_pre_light_spec_one(ctx, index);
    } else if (index == l.lightHighestEnabled) {
        int i = index - 1;
        while (i >= 0 && !((ctx->enable.lightEnableBits >> i) & 1))
            --i;
        l.lightHighestEnabled = i;
    }
}

void __vldim_LightModelfv(GLenum pname, const GLfloat* params)
{
    vld_context* ctx = vldGc;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return;
    }
    vld_lighting_attrib& l = ctx->lighting;
    switch (pname) {
    case GL_LIGHT_MODEL_LOCAL_VIEWER:
        if (params[0] != 0.0f)
            vld_refuse_model_value(ctx, pname);
        return;
    case GL_LIGHT_MODEL_TWO_SIDE:
        if (params[0] == 0.0f)
            l.lightModelOneSided = 1;
        else if (params[0] == 1.0f)
            l.lightModelOneSided = 0;
        else
            vld_refuse_model_value(ctx, pname);
        return;
    case GL_LIGHT_MODEL_AMBIENT:
        std::memcpy(l.lightModelAmbient, params, 4 * sizeof(float));
        KSP_vld_mtl_pre_light_ams(ctx);
        return;
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
}

void __vldim_LightModelf(GLenum pname, GLfloat param)
{
    const float v[4] = {param, 0.0f, 0.0f, 0.0f};
    __vldim_LightModelfv(pname, v);
}

void __vldim_LightModeliv(GLenum pname, const GLint* params)
{
    float v[4] = {(float)params[0], 0.0f, 0.0f, 0.0f};
    if (pname == GL_LIGHT_MODEL_AMBIENT)
        for (int c = 0; c < 4; ++c)
            v[c] = (float)((double)params[c] * kIntToUnit);
    __vldim_LightModelfv(pname, v);
}

void __vldim_LightModeli(GLenum pname, GLint param)
{
    const float v[4] = {(float)param, 0.0f, 0.0f, 0.0f};
    __vldim_LightModelfv(pname, v);
}

// Stores the mode even after refusing it: the next primitive sees what was given.
void __vldim_ShadeModel(GLenum mode)
{
    vld_context* ctx = vldGc;
    if (mode != GL_FLAT && mode != GL_SMOOTH)
        VLD_GL_ERROR_ENUM(ctx, mode);
    ctx->lighting.shadeModel = mode;
}

// The one material has no back side: only GL_FRONT and GL_FRONT_AND_BACK are accepted.
void __vldim_Materialfv(GLenum face, GLenum pname, const GLfloat* params)
{
    vld_context* ctx = vldGc;
    if (face != GL_FRONT && face != GL_FRONT_AND_BACK) {
        VLD_GL_ERROR_ENUM(ctx, face);
        return;
    }
    if (pname == GL_SHININESS && !(params[0] >= 0.0f && params[0] <= 128.0f)) {
        VLD_GL_ERROR(ctx, GL_INVALID_VALUE);
        return;
    }
    if (ctx->inBeginEnd) {
        switch (pname) {
        case GL_AMBIENT: ctx->beginAttrMask |= VLD_ATTR_AMBIENT; break;
        case GL_DIFFUSE: ctx->beginAttrMask |= VLD_ATTR_DIFFUSE; break;
        case GL_SPECULAR: ctx->beginAttrMask |= VLD_ATTR_SPECULAR; break;
        case GL_EMISSION: ctx->beginAttrMask |= VLD_ATTR_EMISSION; break;
        case GL_SHININESS: ctx->beginAttrMask |= VLD_ATTR_SHININESS; break;
        case GL_AMBIENT_AND_DIFFUSE: ctx->beginAttrMask |= VLD_ATTR_AMBIENT | VLD_ATTR_DIFFUSE; break;
        default: break;
        }
    }
    __vldex_Materialfv(face, pname, params);
}

// Stores a material colour into the context and into the vertex template.
static void vld_put_material(float* material, float* templateBlock, const GLfloat* params)
{
    std::memcpy(material, params, 4 * sizeof(float));
    std::memcpy(templateBlock, params, 4 * sizeof(float));
    vld_template_steady_changed(vldGc);
}

// Stores a material parameter and renews the products that depend on it.
void __vldex_Materialfv(GLenum, GLenum pname, const GLfloat* params)
{
    vld_context* ctx = vldGc;
    vld_lighting_attrib& l = ctx->lighting;
    vld_vertex_template& t = ctx->vertexTemplate;
    switch (pname) {
    case GL_AMBIENT:
        vld_put_material(l.materialAmbient, t.ambient, params);
        KSP_vld_mtl_pre_light_amb(ctx);
        return;
    case GL_DIFFUSE:
        vld_put_material(l.materialDiffuse, t.diffuse, params);
        KSP_vld_mtl_pre_light_dif(ctx);
        return;
    case GL_SPECULAR:
        vld_put_material(l.materialSpecular, t.specular, params);
        KSP_vld_mtl_pre_light_spec(ctx);
        return;
    case GL_AMBIENT_AND_DIFFUSE:
        vld_put_material(l.materialAmbient, t.ambient, params);
        vld_put_material(l.materialDiffuse, t.diffuse, params);
        KSP_vld_mtl_pre_light_amb(ctx);
        KSP_vld_mtl_pre_light_dif(ctx);
        return;
    case GL_EMISSION:
        vld_put_material(l.materialEmission, t.emission, params);
        for (int c = 0; c < 4; ++c)
            KSP_vld_sse_assign(l.materialEmission[c], &l.materialEmission4[c]);
        return;
    case GL_SHININESS:
        l.materialShininess = params[0];
        t.shininess = params[0];
        vld_template_steady_changed(ctx);
        l.materialShininessBase = KSP_vld_shininess_base(params[0]);
        KSP_vld_sse_assign(l.materialShininessBase, &l.materialShininessBase4);
        return;
    default:
        VLD_GL_ERROR_ENUM(ctx, pname);
        return;
    }
}

void __vldim_Materialf(GLenum face, GLenum pname, GLfloat param)
{
    const float v[4] = {param, 0.0f, 0.0f, 0.0f};
    __vldim_Materialfv(face, pname, v);
}

// Integer material values, colours and shininess alike, scaled so that the largest integer
// is 1.0.
void __vldim_Materialiv(GLenum face, GLenum pname, const GLint* params)
{
    const int n = pname == GL_SHININESS ? 1 : 4;
    float v[4] = {};
    for (int c = 0; c < n; ++c)
        v[c] = (float)((double)params[c] * kIntToUnit);
    __vldim_Materialfv(face, pname, v);
}

void __vldim_Materiali(GLenum face, GLenum pname, GLint param)
{
    const float v[4] = {(float)param, 0.0f, 0.0f, 0.0f};
    __vldim_Materialfv(face, pname, v);
}

void __vldim_ColorMaterial(GLenum face, GLenum mode)
{
    vld_context* ctx = vldGc;
    if (face != GL_FRONT && face != GL_FRONT_AND_BACK) {
        VLD_GL_ERROR_ENUM(ctx, face);
        return;
    }
    if (mode != GL_EMISSION && mode != GL_AMBIENT && mode != GL_DIFFUSE && mode != GL_SPECULAR &&
        mode != GL_AMBIENT_AND_DIFFUSE) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return;
    }
    ctx->lighting.colorMaterialFace = face;
    ctx->lighting.colorMaterialMode = mode;
}

// Answers with the one material, whichever face is asked for.
void __vldim_GetMaterialfv(GLenum face, GLenum pname, GLfloat* params)
{
    vld_context* ctx = vldGc;
    if (face != GL_FRONT && face != GL_BACK) {
        VLD_GL_ERROR_ENUM(ctx, face);
        return;
    }
    const vld_lighting_attrib& l = ctx->lighting;
    switch (pname) {
    case GL_AMBIENT: std::memcpy(params, l.materialAmbient, 4 * sizeof(float)); return;
    case GL_DIFFUSE: std::memcpy(params, l.materialDiffuse, 4 * sizeof(float)); return;
    case GL_SPECULAR: std::memcpy(params, l.materialSpecular, 4 * sizeof(float)); return;
    case GL_EMISSION: std::memcpy(params, l.materialEmission, 4 * sizeof(float)); return;
    case GL_SHININESS: params[0] = l.materialShininess; return;
    default: VLD_GL_ERROR_ENUM(ctx, pname); return;
    }
}

// Colours as integers of the full range (1.0 is the largest integer), shininess rounded.
void __vldim_GetMaterialiv(GLenum face, GLenum pname, GLint* params)
{
    float v[4] = {};
    const GLenum before = vldGc->lastError;
    vldGc->lastError = GL_NO_ERROR;
    __vldim_GetMaterialfv(face, pname, v);
    const bool failed = vldGc->lastError != GL_NO_ERROR;
    if (!failed)
        vldGc->lastError = before;
    if (failed)
        return;
    if (pname == GL_SHININESS) {
        params[0] = (GLint)std::lround(v[0]);
        return;
    }
    for (int c = 0; c < 4; ++c) {
        double x = (double)v[c] * 2147483647.0;
        x = x > 2147483647.0 ? 2147483647.0 : (x < -2147483648.0 ? -2147483648.0 : x);
        params[c] = (GLint)x;
    }
}

// The colour-material side of a colour call: the material follows the colour. Out of line,
// so that the common call keeps no frame and no copy of the colour in memory.
[[gnu::noinline]] void KSP_vld_color_material_follows(vld_context* ctx, float r, float g, float b, float a)
{
    const float v[4] = {r, g, b, a};
    __vldim_Materialfv(ctx->lighting.colorMaterialFace, ctx->lighting.colorMaterialMode, v);
}

void __vldim_Color4fv(const GLfloat* v)
{
    vld_set_current_color(vldGc, v[0], v[1], v[2], v[3]);
}

void __vldex_Color4fv(const GLfloat* v)
{
    vld_context* ctx = vldGc;
    std::memcpy(ctx->current.currentColor, v, 4 * sizeof(float));
    std::memcpy(ctx->vertexTemplate.color, v, 4 * sizeof(float));
    if (ctx->enable.capabilityBits & VLD_CAP_COLOR_MATERIAL)
        __vldex_Materialfv(ctx->lighting.colorMaterialFace, ctx->lighting.colorMaterialMode, v);
}

#define VLD_DEFINE_COLOR(sfx, T)                                                               \
    void __vldim_Color3##sfx(T r, T g, T b)                                                    \
    {                                                                                          \
        vld_set_current_color(vldGc, KSP_vld_color_component(r), KSP_vld_color_component(g),   \
                              KSP_vld_color_component(b), 1.0f);                               \
    }                                                                                          \
    void __vldim_Color3##sfx##v(const T* c) { __vldim_Color3##sfx(c[0], c[1], c[2]); }         \
    void __vldim_Color4##sfx(T r, T g, T b, T a)                                               \
    {                                                                                          \
        vld_set_current_color(vldGc, KSP_vld_color_component(r), KSP_vld_color_component(g),   \
                              KSP_vld_color_component(b), KSP_vld_color_component(a));         \
    }
VLD_COLOR_FORMS(VLD_DEFINE_COLOR)
#undef VLD_DEFINE_COLOR
void __vldim_Color4bv(const GLbyte* c) { __vldim_Color4b(c[0], c[1], c[2], c[3]); }
void __vldim_Color4sv(const GLshort* c) { __vldim_Color4s(c[0], c[1], c[2], c[3]); }
void __vldim_Color4iv(const GLint* c) { __vldim_Color4i(c[0], c[1], c[2], c[3]); }
void __vldim_Color4ubv(const GLubyte* c) { __vldim_Color4ub(c[0], c[1], c[2], c[3]); }
void __vldim_Color4usv(const GLushort* c) { __vldim_Color4us(c[0], c[1], c[2], c[3]); }
void __vldim_Color4uiv(const GLuint* c) { __vldim_Color4ui(c[0], c[1], c[2], c[3]); }
void __vldim_Color4dv(const GLdouble* c) { __vldim_Color4d(c[0], c[1], c[2], c[3]); }

// Makes the current normal unit length (GL_NORMALIZE), unless it is so already or zero, and
// the template's normal with it. Out of line, so that the common call keeps no frame.
[[gnu::noinline]] void KSP_vld_normalize_current(vld_context* ctx)
{
    float* n = ctx->current.currentNormal;
    const float l = vld_dot3(n, n);
    if ((l < 0.9999f || l > 1.0001f) && l != 0.0f) {
        const float f = 1.0f / std::sqrt(l);
        n[0] *= f, n[1] *= f, n[2] *= f;
    }
    vld_template_normal(ctx, n[0], n[1], n[2]);
}

void __vldim_Normal3fv(const GLfloat* v)
{
    vld_set_current_normal(vldGc, v[0], v[1], v[2]);
}

#define VLD_DEFINE_NORMAL(sfx, T)                                                              \
    void __vldim_Normal3##sfx(T x, T y, T z)                                                   \
    {                                                                                          \
        vld_set_current_normal(vldGc, KSP_vld_color_component(x), KSP_vld_color_component(y), \
                               KSP_vld_color_component(z));                                    \
    }
VLD_NORMAL_FORMS(VLD_DEFINE_NORMAL)
#undef VLD_DEFINE_NORMAL
void __vldim_Normal3bv(const GLbyte* v) { __vldim_Normal3b(v[0], v[1], v[2]); }
void __vldim_Normal3sv(const GLshort* v) { __vldim_Normal3s(v[0], v[1], v[2]); }
void __vldim_Normal3iv(const GLint* v) { __vldim_Normal3i(v[0], v[1], v[2]); }
void __vldim_Normal3dv(const GLdouble* v) { __vldim_Normal3d(v[0], v[1], v[2]); }
