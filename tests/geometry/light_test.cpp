// Light state, the lighting equation against its formula for each kind of light, colour and
// normal conversions.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry_context.h"
#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_geom.h"
#include "vld/grxf/vld_leq.h"

namespace {

// Enables light i through the capability path's call.
void EnableLight(vld_context* c, int i)
{
    c->enable.lightEnableBits |= 1u << i;
    KSP_vld_update_light_source(i, 1);
}

void DisableLight(vld_context* c, int i)
{
    c->enable.lightEnableBits &= ~(1u << i);
    KSP_vld_update_light_source(i, 0);
}

// A lit scene: perspective, the eye 5 units up the z axis, material with diffuse and
// specular colours, no model ambient.
void LitScene(vld_context* c)
{
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Frustum(-1, 1, -1, 1, 1, 100);
    __vldim_MatrixMode(GL_MODELVIEW);
    __vldim_Translatef(0, 0, -5);
    const float zero[4] = {0, 0, 0, 1};
    __vldim_LightModelfv(GL_LIGHT_MODEL_AMBIENT, zero);
    const float diffuse[4] = {1.0f, 0.5f, 0.25f, 0.75f}, specular[4] = {0.5f, 0.5f, 0.5f, 1};
    __vldim_Materialfv(GL_FRONT, GL_DIFFUSE, diffuse);
    __vldim_Materialfv(GL_FRONT, GL_SPECULAR, specular);
    __vldim_Materialf(GL_FRONT, GL_SHININESS, 10.0f);
    EnableLight(c, 0);
}

float Dot(const float* a, const float* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void Normalize(float* v)
{
    float l = std::sqrt(Dot(v, v));
    for (int i = 0; i < 3; ++i)
        v[i] /= l;
}

} // namespace

TEST(LightingEquation, DirectionalLightDiffuseAndSpecular)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    LitScene(c);
    const float dir[4] = {0, 3, 4, 0};
    __vldim_Lightfv(GL_LIGHT0, GL_POSITION, dir);
    const float pos[3] = {0, 0, 0}, n[3] = {0, 0, 1};
    float out[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, pos, n, 1.0f, out);

    float L[3] = {0, 0.6f, 0.8f};
    float H[3] = {L[0], L[1], L[2] + 1.0f};
    Normalize(H);
    const float spec = (float)std::pow(Dot(H, n), 10.0);
    const float diffuse[3] = {1.0f, 0.5f, 0.25f};
    for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(out[k], 0.8f * diffuse[k] + spec * 0.5f, 1e-5f) << k;

    // A one-sided model lights a back face like a front one; a two-sided one flips it away.
    float back[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, pos, n, -1.0f, back);
    EXPECT_NEAR(back[0], out[0], 1e-6f);
    __vldim_LightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    float flipped[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, pos, n, -1.0f, flipped);
    EXPECT_EQ(flipped[0], 0.0f);
}

TEST(LightingEquation, PointLightWithAttenuation)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    LitScene(c);
    const float none[4] = {0, 0, 0, 1};
    __vldim_Materialfv(GL_FRONT, GL_SPECULAR, none);
    const float pos[4] = {0, 0, 2, 1};
    __vldim_Lightfv(GL_LIGHT0, GL_POSITION, pos);
    __vldim_Lightf(GL_LIGHT0, GL_CONSTANT_ATTENUATION, 0.5f);
    __vldim_Lightf(GL_LIGHT0, GL_LINEAR_ATTENUATION, 0.25f);
    __vldim_Lightf(GL_LIGHT0, GL_QUADRATIC_ATTENUATION, 0.125f);
    const float ambient[4] = {0.1f, 0.1f, 0.1f, 1};
    __vldim_Lightfv(GL_LIGHT0, GL_AMBIENT, ambient);

    const float v[3] = {1, 0, 0}, n[3] = {0, 0, 1};
    float out[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, v, n, 1.0f, out);
    const float d = std::sqrt(5.0f), nl = 2.0f / d;
    const float k = 0.5f + 0.25f * d + 0.125f * 5.0f;
    const float diffuse[3] = {1.0f, 0.5f, 0.25f};
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(out[i], (0.2f * 0.1f + nl * diffuse[i]) / k, 1e-5f) << i;

    // A light exactly at the vertex has no direction: only its ambient term, over the constant
    // attenuation.
    const float at[3] = {0, 0, 2};
    float same[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, at, n, 1.0f, same);
    EXPECT_NEAR(same[0], 0.2f * 0.1f / 0.5f, 1e-6f);
}

TEST(LightingEquation, SpotLightCone)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    LitScene(c);
    const float none[4] = {0, 0, 0, 1};
    __vldim_Materialfv(GL_FRONT, GL_SPECULAR, none);
    const float pos[4] = {0, 0, 2, 1}, down[3] = {0, 0, -1};
    __vldim_Lightfv(GL_LIGHT0, GL_POSITION, pos);
    __vldim_Lightfv(GL_LIGHT0, GL_SPOT_DIRECTION, down);
    __vldim_Lightf(GL_LIGHT0, GL_SPOT_CUTOFF, 30.0f);
    __vldim_Lightf(GL_LIGHT0, GL_SPOT_EXPONENT, 2.0f);
    const float ambient[4] = {0.5f, 0.5f, 0.5f, 1};
    __vldim_Lightfv(GL_LIGHT0, GL_AMBIENT, ambient);
    // The object-space spot direction is made by the modelview update.
    __vldim_Translatef(0, 0, 0);
    const float n[3] = {0, 0, 1};

    const float inside[3] = {0.5f, 0, 0};
    float out[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, inside, n, 1.0f, out);
    const float d = std::sqrt(4.25f), nl = 2.0f / d, sd = 2.0f / d;
    EXPECT_NEAR(out[0], std::pow(sd, 2.0f) * (0.2f * 0.5f + nl * 1.0f), 1e-5f);

    // Outside the cone even the ambient term goes.
    const float outside[3] = {1.5f, 0, 0};
    float dark[3] = {0, 0, 0};
    KSP_vld_leq_eval(c, outside, n, 1.0f, dark);
    EXPECT_EQ(dark[0], 0.0f);

    EXPECT_NEAR(vld_light_obj(c->lighting.lights[0]).spotCosCutoff, std::cos(30.0 * 0.017453292519943295), 1e-6);
    __vldim_Lightf(GL_LIGHT0, GL_SPOT_CUTOFF, 91.0f);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_VALUE);
    __vldim_Lightf(GL_LIGHT0, GL_SPOT_CUTOFF, 180.0f);
    EXPECT_EQ(vld_light_obj(c->lighting.lights[0]).spotCosCutoff, -1.0f);
}

TEST(LightingEquation, FourWideFormAgreesForIntegerShininess)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    LitScene(c);
    const float pos[4] = {1, 2, 3, 1};
    __vldim_Lightfv(GL_LIGHT0, GL_POSITION, pos);
    __vldim_Translatef(0, 0, 0);
    float p[3][4] = {{0, 0.5f, -1, 2}, {0, 0.25f, 1, -1}, {0, 0, 0.5f, 0}};
    float n[3][4] = {{0, 0, 0.6f, 0}, {0, 0.6f, 0, 0}, {1, 0.8f, 0.8f, 1}};
    const float facing[4] = {1, 1, 1, 1};
    float wide[3][4];
    KSP_vld_compute_leqSse(p, n, facing, wide);
    for (int k = 0; k < 4; ++k) {
        const float pk[3] = {p[0][k], p[1][k], p[2][k]}, nk[3] = {n[0][k], n[1][k], n[2][k]};
        float one[3] = {0, 0, 0};
        KSP_vld_leq_eval(c, pk, nk, 1.0f, one);
        for (int ch = 0; ch < 3; ++ch)
            EXPECT_NEAR(wide[ch][k], one[ch], 2e-3f) << "lane " << k;
    }
}

TEST(LightState, HighestEnabledLight)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    EXPECT_EQ(c->lighting.lightHighestEnabled, -1);
    EnableLight(c, 0);
    EnableLight(c, 2);
    EnableLight(c, 5);
    EXPECT_EQ(c->lighting.lightHighestEnabled, 5);
    DisableLight(c, 5);
    EXPECT_EQ(c->lighting.lightHighestEnabled, 2);
    DisableLight(c, 0);
    EXPECT_EQ(c->lighting.lightHighestEnabled, 2);
    DisableLight(c, 2);
    EXPECT_EQ(c->lighting.lightHighestEnabled, -1);
}

TEST(LightState, ChangeCountSeesOnlyRealChanges)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    const uint32_t start = c->lighting.lightChangeCount;
    const float red[4] = {1, 0, 0, 1};
    __vldim_Lightfv(GL_LIGHT0 + 3, GL_DIFFUSE, red);
    EXPECT_EQ(c->lighting.lightChangeCount, start + 1);
    __vldim_Lightfv(GL_LIGHT0 + 3, GL_DIFFUSE, red);
    EXPECT_EQ(c->lighting.lightChangeCount, start + 1);
    const float p[4] = {0, 0, 1, 0};
    __vldim_Lightfv(GL_LIGHT0 + 3, GL_POSITION, p); // the initial position
    EXPECT_EQ(c->lighting.lightChangeCount, start + 1);
    __vldim_Lightf(GL_LIGHT0 + 3, GL_SPOT_EXPONENT, 200.0f); // refused, nothing stored
    EXPECT_EQ(c->lighting.lightChangeCount, start + 1);
    __vldim_Lightf(GL_LIGHT0 + 8, GL_SPOT_EXPONENT, 2.0f);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_ENUM);
}

TEST(LightState, ModelRefusalsPrintOnce)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    testing::internal::CaptureStderr();
    __vldim_LightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    EXPECT_EQ(c->lighting.lightModelOneSided, 0);
    __vldim_LightModeli(GL_LIGHT_MODEL_TWO_SIDE, 2);
    EXPECT_EQ(c->lighting.lightModelOneSided, 0);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_ENUM);
    __vldim_LightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1);
    __vldim_LightModeli(GL_LIGHT_MODEL_TWO_SIDE, 3);
    const std::string err = testing::internal::GetCapturedStderr();
    const std::string line = "glLightModelfv: unimplemented parameter value attempted\n";
    EXPECT_EQ(err.find(line), err.rfind(line)); // at most once per process
    EXPECT_EQ(c->lighting.lightModelLocalViewer, 0);
}

TEST(MaterialState, OneMaterialAndProducts)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    const float m[4] = {0.5f, 0.25f, 1, 1};
    __vldim_Materialfv(GL_BACK, GL_DIFFUSE, m);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_ENUM);
    __vldim_Materialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, m);
    float got[4];
    __vldim_GetMaterialfv(GL_BACK, GL_AMBIENT, got);
    EXPECT_EQ(got[1], 0.25f);
    EXPECT_FLOAT_EQ(c->lighting.sceneAmbient[0], 0.5f * 0.2f);
    EnableLight(c, 0);
    EXPECT_FLOAT_EQ(c->lighting.lightProducts[0].diffuse[1], 0.25f);
    EXPECT_EQ(c->lighting.lightProducts[0].diffuse[3], 1.0f);

    __vldim_Materialf(GL_FRONT, GL_SHININESS, 129.0f);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_VALUE);
    __vldim_Materialf(GL_FRONT, GL_SHININESS, 20.0f);
    EXPECT_NEAR(std::pow(c->lighting.materialShininessBase, 20.0f), 0.01f, 1e-6f);
    __vldim_Materialf(GL_FRONT, GL_SHININESS, 0.0f);
    EXPECT_EQ(c->lighting.materialShininessBase, 0.0f);

    // Colour material follows glColor into the material.
    c->enable.capabilityBits |= VLD_CAP_COLOR_MATERIAL;
    __vldim_ColorMaterial(GL_FRONT, GL_EMISSION);
    __vldim_Color3f(0.25f, 0.5f, 0.75f);
    EXPECT_EQ(c->lighting.materialEmission[2], 0.75f);
    EXPECT_EQ(c->lighting.materialEmission[3], 1.0f);

    __vldim_ShadeModel(0);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(c->lighting.shadeModel, 0u);
}

TEST(CurrentValues, ColourConversions)
{
    GeometryContext g;
    const float* cur = g.ctx->current.currentColor;
    __vldim_Color4b(-128, 127, 0, 64);
    EXPECT_LT(cur[0], -1.0f);
    EXPECT_FLOAT_EQ(cur[1], 1.0f);
    EXPECT_FLOAT_EQ(cur[3], 64.0f / 127.0f);
    __vldim_Color3ub(255, 0, 128);
    EXPECT_FLOAT_EQ(cur[0], 1.0f);
    EXPECT_FLOAT_EQ(cur[2], 128.0f / 255.0f);
    EXPECT_EQ(cur[3], 1.0f);
    __vldim_Color4ui(0xFFFFFFFFu, 0x80000000u, 0, 0);
    EXPECT_FLOAT_EQ(cur[0], 1.0f);
    EXPECT_NEAR(cur[1], 0.5f, 1e-6f);
    __vldim_Color4i(2147483647, -2147483647, 0, 0);
    EXPECT_FLOAT_EQ(cur[0], 1.0f);
    EXPECT_FLOAT_EQ(cur[1], -1.0f);
    const GLushort us[4] = {65535, 0, 0, 32768};
    __vldim_Color4usv(us);
    EXPECT_FLOAT_EQ(cur[0], 1.0f);
    const GLshort s[3] = {32767, -32767, 0};
    __vldim_Color3sv(s);
    EXPECT_FLOAT_EQ(cur[1], -1.0f);
    __vldim_Color4f(2, 2, 2, 2); // no clamp at the command
    EXPECT_EQ(cur[0], 2.0f);
    g.ctx->inBeginEnd = 1;
    __vldim_Color4d(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(cur[0], (float)0.1);
    EXPECT_EQ(g.ctx->beginAttrMask & 2u, 2u);
}

TEST(CurrentValues, NormalsNormalisedOnceAtInput)
{
    GeometryContext g;
    const float* n = g.ctx->current.currentNormal;
    __vldim_Normal3f(3, 0, 4);
    EXPECT_EQ(n[0], 3.0f);
    g.ctx->enable.capabilityBits |= VLD_CAP_NORMALIZE;
    __vldim_Normal3f(3, 0, 4);
    EXPECT_FLOAT_EQ(n[0], 0.6f);
    EXPECT_FLOAT_EQ(n[2], 0.8f);
    __vldim_Normal3f(0, 0, 0);
    EXPECT_EQ(n[2], 0.0f);
    __vldim_Normal3b(127, 0, 0);
    EXPECT_FLOAT_EQ(n[0], 1.0f);
    __vldim_Normal3s(0, 0, 16384); // normalised whatever its scale
    EXPECT_FLOAT_EQ(n[2], 1.0f);
}

// The colour and normal calls mark their attribute in the primitive's mask only between
// glBegin and glEnd, keep the other bits, and every form of colour carries colour material.
TEST(CurrentValues, AttributeBitsAndColourMaterialOfEveryForm)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    c->beginAttrMask = 0x100u;
    __vldim_Color3f(0.5f, 0.5f, 0.5f);
    __vldim_Normal3f(0, 1, 0);
    EXPECT_EQ(c->beginAttrMask, 0x100u);
    c->inBeginEnd = 1;
    __vldim_Normal3f(0, 0, 1);
    EXPECT_EQ(c->beginAttrMask, 0x100u | VLD_ATTR_NORMAL);
    __vldim_Color3f(0.25f, 0.5f, 0.75f);
    __vldim_Color3f(0.25f, 0.5f, 0.75f);
    EXPECT_EQ(c->beginAttrMask, 0x100u | VLD_ATTR_NORMAL | VLD_ATTR_COLOR);
    c->inBeginEnd = 0;

    c->enable.capabilityBits |= VLD_CAP_COLOR_MATERIAL;
    __vldim_ColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
    const float rgba[4] = {0.125f, 0.25f, 0.375f, 0.5f};
    __vldim_Color4fv(rgba);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(c->lighting.materialAmbient[i], rgba[i]);
        EXPECT_EQ(c->lighting.materialDiffuse[i], rgba[i]);
        EXPECT_EQ(c->current.currentColor[i], rgba[i]);
    }
    __vldim_Color4ub(255, 0, 255, 0);
    EXPECT_EQ(c->lighting.materialDiffuse[0], 1.0f);
    EXPECT_EQ(c->lighting.materialDiffuse[1], 0.0f);
    EXPECT_EQ(c->lighting.materialDiffuse[3], 0.0f);
    __vldim_Color3d(0.5, 0.25, 1.0);
    EXPECT_EQ(c->lighting.materialAmbient[1], 0.25f);
    EXPECT_EQ(c->lighting.materialAmbient[3], 1.0f);
    c->enable.capabilityBits &= ~VLD_CAP_COLOR_MATERIAL;
    __vldim_Color3f(0.0f, 0.0f, 0.0f);
    EXPECT_EQ(c->lighting.materialAmbient[1], 0.25f);
}
