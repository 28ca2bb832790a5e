// Matrix stacks, products, identity tracking, depth maps and the viewport.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry_context.h"
#include "vld/grxf/vld_geom.h"

namespace {

void ExpectMatrix(const float* actual, const float (&expected)[16], float tol = 1e-6f)
{
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(actual[i], expected[i], tol) << "element " << i;
}

const float* ModelviewTop(vld_context* c) { return c->modelviewStack[c->modelviewDepth]; }

} // namespace

TEST(MatrixStacks, ProductsFollowGlOrder)
{
    GeometryContext g;
    __vldim_Translatef(1, 2, 3);
    __vldim_Rotatef(90, 0, 0, 1);
    __vldim_Scalef(2, 3, 4);
    // T * Rz(90) * S, column-major.
    const float expected[16] = {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 1, 2, 3, 1};
    ExpectMatrix(ModelviewTop(g.ctx), expected);
    // The combined matrix is modelview then projection; with an identity projection the same.
    ExpectMatrix(g.ctx->mvpMatrix, expected);

    __vldim_MatrixMode(GL_PROJECTION);
    const float p[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    __vldim_LoadMatrixf(p);
    const float mvp[16] = {0, 4, 0, 0, -6, 0, 0, 0, 0, 0, 8, 0, 2, 4, 6, 1};
    ExpectMatrix(g.ctx->mvpMatrix, mvp);
}

TEST(MatrixStacks, DepthsStartAtOneAndOverflowSilently)
{
    GeometryContext g;
    EXPECT_EQ(g.ctx->modelviewDepth, 1);
    __vldim_Translatef(5, 0, 0);
    for (int i = 0; i < 40; ++i)
        __vldim_PushMatrix();
    EXPECT_EQ(g.ctx->modelviewDepth, 31);
    for (int i = 0; i < 40; ++i)
        __vldim_PopMatrix();
    EXPECT_EQ(g.ctx->modelviewDepth, 0);
    EXPECT_EQ(ModelviewTop(g.ctx)[12], 0.0f); // slot 0 was never written
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_NO_ERROR);

    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Translatef(0, 7, 0);
    __vldim_PushMatrix(); // no room: depth stays 1
    __vldim_Translatef(0, 1, 0);
    __vldim_PopMatrix();
    EXPECT_EQ(g.ctx->projectionDepth, 0);
    EXPECT_EQ(g.ctx->projectionStack[0][13], 0.0f);
    __vldim_PushMatrix();
    __vldim_PushMatrix();
    EXPECT_EQ(g.ctx->projectionDepth, 1);
    EXPECT_EQ(g.ctx->projectionStack[1][13], 0.0f);
}

TEST(MatrixStacks, TextureIdentityTracking)
{
    GeometryContext g;
    __vldim_MatrixMode(GL_TEXTURE);
    __vldim_Translatef(1, 0, 0);
    EXPECT_EQ(*g.ctx->currentTextureIsIdentity, 0);
    __vldim_Translatef(-1, 0, 0);
    EXPECT_EQ(*g.ctx->currentTextureIsIdentity, 1);
    __vldim_Scalef(2, 1, 1);
    EXPECT_EQ(*g.ctx->currentTextureIsIdentity, 0);
    // An unknown mode is the texture matrix, with no error.
    __vldim_MatrixMode(0);
    __vldim_LoadIdentity();
    EXPECT_EQ(*g.ctx->currentTextureIsIdentity, 1);
    EXPECT_EQ(g.ctx->textureTransforms[0].matrices[1][0], 1.0f);
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_NO_ERROR);

    // Pop reselects the flag of the matrix below; the second set keeps its own.
    __vldim_Scalef(3, 1, 1);
    __vldim_PopMatrix();
    EXPECT_EQ(g.ctx->currentTextureMatrix, g.ctx->textureTransforms[0].matrices[0]);
    EXPECT_EQ(*g.ctx->currentTextureIsIdentity, 1);
    __vldim_SelectTextureTransformSGIS(GL_TEXTURE0_SGIS + 1);
    EXPECT_EQ(g.ctx->currentTextureMatrix, g.ctx->textureTransforms[1].matrices[1]);
    __vldim_SelectTextureTransformSGIS(0x1234);
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_INVALID_ENUM);
}

TEST(MatrixStacks, RotationArguments)
{
    GeometryContext g;
    __vldim_Rotatef(0, 0, 0, 0);
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_NO_ERROR);
    __vldim_Rotatef(10, 0, 0, 0);
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_INVALID_VALUE);
    const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    ExpectMatrix(ModelviewTop(g.ctx), identity);
    g.ctx->inBeginEnd = 1;
    g.ctx->lastError = GL_NO_ERROR;
    __vldim_MultMatrixf(identity);
    EXPECT_EQ(g.ctx->lastError, (GLenum)GL_INVALID_OPERATION);
}

TEST(ProjectionUpdate, PerspectiveDepthMaps)
{
    GeometryContext g;
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Frustum(-0.1, 0.1, -0.1, 0.1, 0.1, 1000);
    vld_context* c = g.ctx;
    EXPECT_EQ(c->isPerspective, 1);
    EXPECT_NEAR(c->eyeDepthNear, 0.1f, 1e-5f);
    EXPECT_NEAR(c->eyeDepthFar, 1000.0f, 0.1f);
    // The linear map would need a negative offset: far is scaled onto 65528 instead.
    EXPECT_EQ(c->depthOffset, 0.0f);
    EXPECT_NEAR(c->depthScale, 65.528f, 1e-2f);
    EXPECT_NEAR(c->depthScale * c->eyeDepthFar + c->depthOffset, 65528.0f, 1.0f);
    EXPECT_EQ(c->fogDepthScale, c->depthScale);
    EXPECT_EQ(c->perspDepthOffset, c->depthOffset);
    EXPECT_EQ(c->mirrorSign, 1.0f);

    // A near plane close enough to the eye maps near to 1 and far to 65528.
    __vldim_LoadIdentity();
    __vldim_Frustum(-0.001, 0.001, -0.001, 0.001, 0.001, 1000);
    EXPECT_GT(c->depthOffset, 0.0f);
    EXPECT_NEAR(c->depthScale * c->eyeDepthNear + c->depthOffset, 1.0f, 1e-2f);
    EXPECT_NEAR(c->depthScale * c->eyeDepthFar + c->depthOffset, 65528.0f, 1.0f);

    __vldim_LoadIdentity();
    __vldim_Frustum(-1, 1, -1, 1, 1, 60000);
    EXPECT_EQ(c->depthScale, 1.0f);
    EXPECT_EQ(c->depthOffset, 0.0f);

    // An orthographic projection leaves the perspective copies alone.
    __vldim_LoadIdentity();
    __vldim_Ortho(-1, 1, -1, 1, 2, 10);
    EXPECT_EQ(c->isPerspective, 0);
    EXPECT_EQ(c->perspDepthScale, 1.0f);
    EXPECT_NEAR(c->perspEyeDepthFar, 60000.0f, 150.0f);
}

TEST(ProjectionUpdate, OrthographicDepthMap)
{
    GeometryContext g;
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Ortho(-1, 1, -1, 1, 2, 10);
    vld_context* c = g.ctx;
    EXPECT_EQ(c->isPerspective, 0);
    EXPECT_FLOAT_EQ(c->eyeDepthNear, 2.0f);
    EXPECT_FLOAT_EQ(c->eyeDepthFar, 10.0f);
    EXPECT_EQ(c->depthScale, 32763.5f);
    EXPECT_EQ(c->depthOffset, 32764.5f);
    EXPECT_EQ(c->orthoClipMin, -1.0f);
    EXPECT_EQ(c->orthoClipMax, 1.0f);
    // z of -1 maps to 1 and z of +1 to 65528; the eye depths map onto the same range for fog.
    EXPECT_EQ(-c->depthScale + c->depthOffset, 1.0f);
    EXPECT_EQ(c->depthScale + c->depthOffset, 65528.0f);
    EXPECT_NEAR(c->fogDepthScale * 2.0f + c->fogDepthOffset, 1.0f, 1e-2f);
    EXPECT_NEAR(c->fogDepthScale * 10.0f + c->fogDepthOffset, 65528.0f, 1e-1f);
}

TEST(ProjectionUpdate, MirrorSign)
{
    GeometryContext g;
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Frustum(-1, 1, -1, 1, 1, 100);
    EXPECT_EQ(g.ctx->mirrorSign, 1.0f);
    __vldim_Scalef(-1, 1, 1);
    EXPECT_EQ(g.ctx->mirrorSign, -1.0f);
    __vldim_Scalef(1, -1, 1);
    EXPECT_EQ(g.ctx->mirrorSign, 1.0f);
}

TEST(ModelviewUpdate, EyeAndLightsInObjectSpace)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_Frustum(-1, 1, -1, 1, 1, 100);
    __vldim_MatrixMode(GL_MODELVIEW);
    c->enable.lightEnableBits = 1;
    KSP_vld_update_light_source(0, 1);
    const float dir[4] = {0, 0, 1, 0};
    __vldim_Lightfv(GL_LIGHT0, GL_POSITION, dir);
    const float pos[4] = {0, 0, 2, 1};
    __vldim_Lightfv(GL_LIGHT0 + 1, GL_POSITION, pos);

    __vldim_Translatef(0, 0, -5);
    EXPECT_FLOAT_EQ(c->eyeObject[2], 5.0f);
    EXPECT_FLOAT_EQ(c->eyeObjectUnit[2], 1.0f);
    __vldim_Rotatef(90, 0, 1, 0);
    // The eye-space direction (0, 0, 1) seen from an object turned 90 degrees about y.
    const vld_light_object& o = vld_light_obj(c->lighting.lights[0]);
    EXPECT_NEAR(o.directionObject[0], -1.0f, 1e-6f);
    EXPECT_NEAR(o.directionObject[2], 0.0f, 1e-6f);
    EXPECT_NEAR(c->eyeObject[0], -5.0f, 1e-5f);
    // Light 1 is above the highest enabled light: left as it was given.
    EXPECT_EQ(vld_light_obj(c->lighting.lights[1]).positionObject[2], 2.0f);
}

TEST(Viewport, DerivedValuesAndRefusals)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    __vldim_Viewport(10, 20, 0, 100);
    EXPECT_EQ(c->viewport.viewportHalfWidth, 0.0f);
    EXPECT_EQ(c->viewport.viewportInvWidth, 1.0f);
    EXPECT_EQ(c->viewport.viewportCenterY, 70.0f);
    __vldim_Viewport(0, 0, -1, 10);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_VALUE);
    EXPECT_EQ(c->viewport.viewportX, 10);
    EXPECT_EQ(c->viewport.viewportHeight, 100);

    __vldim_DepthRange(0.5, 0.5);
    EXPECT_EQ(c->viewport.depthRangeHalfExtent, 0.0f);
    EXPECT_EQ(c->viewport.depthRangeCenter, 0.5f);
}

TEST(Selectors, CoordinateSetsAndMultiTexCoord)
{
    GeometryContext g;
    vld_context* c = g.ctx;
    __vldim_SelectTextureCoordSetSGIS(GL_TEXTURE0_SGIS + 1);
    EXPECT_EQ(c->current.currentTexCoordPtr, c->current.currentTexCoord[1]);
    EXPECT_EQ(c->current.currentTexBit, 256u);
    __vldim_SelectTextureSGIS(GL_TEXTURE0_SGIS + 1);
    EXPECT_EQ(c->enable.currentTextureEnable, &c->enable.textureEnableBits[1]);
    c->inBeginEnd = 1;
    __vldim_SelectTextureSGIS(GL_TEXTURE0_SGIS);
    EXPECT_EQ(c->lastError, (GLenum)GL_INVALID_OPERATION);
    const float v[4] = {0.25f, 0.5f, 7, 9};
    __vldim_MultiTexCoord4fvSGIS(0x9999, v); // anything but unit 0 is set 1
    EXPECT_EQ(c->current.currentTexCoord[1][0], 0.25f);
    EXPECT_EQ(c->current.currentTexCoord[1][1], 0.5f);
    EXPECT_EQ(c->current.currentTexCoord[1][2], 0.0f);
    EXPECT_EQ(c->beginAttrMask & 256u, 256u);
}

TEST(DetailFunction, ParametersFromPoints)
{
    float mx = -1;
    int bias = -1, scale = -1;
    const float falling[4] = {0, 1, 4, 0};
    ASSERT_EQ(KSP_vld_glide_compute_detail(2, falling, &mx, &bias, &scale), 0);
    EXPECT_EQ(mx, 1.0f);
    EXPECT_EQ(scale, 5); // slope 64 per level: 2^6 >= 64, one below
    EXPECT_EQ(bias, 4);
    const float rising[4] = {0, 0, 4, 1};
    mx = -1;
    EXPECT_EQ(KSP_vld_glide_compute_detail(2, rising, &mx, &bias, &scale), -1);
    EXPECT_EQ(mx, -1.0f);
    const float flat[4] = {2, 1, 2, 0};
    EXPECT_EQ(KSP_vld_glide_compute_detail(2, flat, &mx, &bias, &scale), -1);
}
