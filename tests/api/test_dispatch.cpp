// The draw dispatch: the path chosen for each combination of state, the scratch sizing
// rule, the format rule and the material-times-light products.
#include <gtest/gtest.h>

#include <cstring>

#include "api_test_context.h"
#include "vld/grxf/vld_dispatch.h"

namespace {

vld_dl_record Record(float radius, uint16_t format)
{
    vld_dl_record r;
    std::memset(&r, 0, sizeof r);
    r.type = VLD_DL_FACES;
    r.radius = radius;
    r.format = format;
    return r;
}

TEST(Dispatch, PolygonModeFrontDecidesFirst)
{
    TestContext tc;
    vld_dl_record r = Record(1.0f, 2);
    tc.ctx->polygon.polygonModeFront = GL_POINT;
    EXPECT_EQ(KSP_vld_dl_faces_choose(tc.ctx, &r), VLD_PATH_AS_POINTS);
    tc.ctx->polygon.polygonModeFront = GL_LINE;
    EXPECT_EQ(KSP_vld_dl_faces_choose(tc.ctx, &r), VLD_PATH_AS_LINES);
    tc.ctx->polygon.polygonModeFront = 0x1234;
    EXPECT_EQ(KSP_vld_dl_faces_choose(tc.ctx, &r), VLD_PATH_AS_LINES);
    tc.ctx->polygon.polygonModeFront = GL_FILL;
    tc.ctx->polygon.polygonModeBack = GL_POINT;
    EXPECT_LT(KSP_vld_dl_faces_choose(tc.ctx, &r), 8);
}

TEST(Dispatch, GenericVariantBySphereProjectionAndClipHint)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    vlddb.settings.fastPath = 0;
    c->eyeDepthNear = 1.0f;
    struct Case {
        float radius;
        int perspective;
        GLenum clip;
        int variant;
    };
    const Case cases[] = {
        {-1.0f, 1, GL_FASTEST, 6}, {-1.0f, 1, GL_NICEST, 7},  {-1.0f, 0, GL_FASTEST, 4},
        {-1.0f, 0, GL_DONT_CARE, 5}, {2.0f, 1, GL_FASTEST, 2}, {2.0f, 1, GL_NICEST, 3},
        {2.0f, 0, GL_FASTEST, 4},  {2.0f, 0, GL_NICEST, 5},
    };
    for (const Case& k : cases) {
        vld_dl_record r = Record(k.radius, 0);
        c->isPerspective = k.perspective;
        c->hint.hintClipVolume = k.clip;
        EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), k.variant)
            << "radius " << k.radius << " perspective " << k.perspective << " clip " << k.clip;
    }
}

TEST(Dispatch, SphereAgainstTheLimit)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    vlddb.settings.fastPath = 0;
    c->isPerspective = 1;
    c->hint.hintClipVolume = GL_NICEST;
    vld_dl_record r = Record(0.0f, 0);
    // A set limit replaces the near-plane one; a product equal to it still counts as small.
    vlddb.settings.txrOowScale = 0.0f;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), 3);
    vlddb.settings.txrOowScale = -5.0f;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), 7);
    vlddb.settings.txrOowScale = -1.0f;
    c->eyeDepthNear = -1.0f;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), 7);
}

TEST(Dispatch, OptimisedPathsNeedEveryCondition)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    c->isPerspective = 1;
    c->eyeDepthNear = 1.0f;
    c->hint.hintClipVolume = GL_FASTEST;
    for (uint16_t format = 1; format <= 4; ++format) {
        vld_dl_record r = Record(1.0f, format);
        EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), VLD_PATH_OPT_VCT + format - 1);
    }
    vld_dl_record r = Record(1.0f, VLD_FMT_VNT);
    auto expectGeneric = [&](const char* why) {
        EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), 2) << why;
    };
    r.format = 0;
    expectGeneric("format 0");
    r.format = VLD_FMT_VNT;
    vlddb.settings.fastPath = 0;
    expectGeneric("fast path off");
    vlddb.settings.fastPath = 1;
    c->enable.textureEnableBits[1] = 2;
    expectGeneric("unit 1 enabled");
    // Unit 1 with only its 1D bit and texture generation on counts as disabled.
    c->enable.textureEnableBits[1] = 1 | 4 | 8;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), VLD_PATH_OPT_VNT);
    c->enable.textureEnableBits[1] = 0;
    c->textureMode = 2;
    expectGeneric("texture mode 2");
    c->textureMode = 1;
    expectGeneric("texture mode 1 without the st hint");
    c->stwHintSt = 1;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), VLD_PATH_OPT_VNT);
    c->textureMode = 0;
    c->enable.textureEnableBits[0] = 2 | 4;
    expectGeneric("texture generation on unit 0");
    // Generation on a unit whose 2D texture is off leaves the path open.
    c->enable.textureEnableBits[0] = 1 | 4 | 32;
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &r), VLD_PATH_OPT_VNT);
    c->enable.textureEnableBits[0] = 2;
    c->texture.units[0].textureUnitId = 1;
    expectGeneric("first block not unit 0");
    c->texture.units[0].textureUnitId = 0;
    c->textureTransforms[0].isIdentity[0] = 0;
    expectGeneric("texture matrix not identity");
    c->textureTransforms[0].isIdentity[0] = 1;
    vld_dl_record noSphere = Record(-1.0f, VLD_FMT_VNT);
    EXPECT_EQ(KSP_vld_dl_faces_choose(c, &noSphere), 6);
}

TEST(Dispatch, EnlargeGrowsPastTheNextMultipleOf32)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    KSP_vld_enlarge_vertex_count(1);
    EXPECT_EQ(c->vertexAllocated, 128);
    EXPECT_EQ(c->pipelineVertexCapacity, 28);
    EXPECT_EQ(c->clipVertexBase, 28);
    ((char*)c->eyeVertices)[5] = 42;
    KSP_vld_enlarge_vertex_count(28);
    EXPECT_EQ(c->vertexAllocated, 128) << "a count equal to the capacity needs no growth";
    KSP_vld_enlarge_vertex_count(29);
    EXPECT_EQ(c->vertexAllocated, 160);
    EXPECT_EQ(((char*)c->eyeVertices)[5], 42);
    EXPECT_EQ(((char*)c->eyeVertices)[159 * VLD_EYE_RECORD_BYTES], 0);
    KSP_vld_enlarge_vertex_count(92);
    EXPECT_EQ(c->vertexAllocated, 224) << "92 + 100 is a multiple of 32 and still grows past it";
}

TEST(Dispatch, FormatRule)
{
    vld_dl_record r = Record(1.0f, 0);
    r.normal_offset = 3;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_VN);
    r.texcoord_offset = 6;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_VNT);
    r.lcache_color = 3;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_VCT);
    r.flags = VLD_DLF_TEX1;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_GENERAL);
    r.flags = 0;
    r.texcoord_offset = 0;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_VC);
    r.color_offset = 14;
    EXPECT_EQ(KSP_vld_dl_format_of(&r), VLD_FMT_GENERAL);
}

TEST(Dispatch, MaterialLightProducts)
{
    TestContext tc;
    vld_lighting_attrib& l = tc.ctx->lighting;
    for (int c = 0; c < 4; ++c) {
        l.materialAmbient[c] = 0.5f;
        l.materialDiffuse[c] = 0.25f;
        l.materialSpecular[c] = 1.0f;
        l.lightModelAmbient[c] = 0.2f;
        l.lights[0].ambient[c] = l.lights[2].ambient[c] = 0.4f;
        l.lights[0].diffuse[c] = l.lights[2].diffuse[c] = 0.8f;
    }
    l.materialDiffuse[3] = 0.6f;
    l.lights[2].specular[1] = 0.5f;
    tc.ctx->enable.lightEnableBits = 1 | 4;
    l.lightHighestEnabled = 2;
    l.lightProducts[1].ambient[0] = 9.0f;
    KSP_vld_mtl_pre_light_amb(tc.ctx);
    KSP_vld_mtl_pre_light_dif(tc.ctx);
    KSP_vld_mtl_pre_light_spec(tc.ctx);
    EXPECT_FLOAT_EQ(l.lightProducts[2].ambient[0], 0.2f);
    EXPECT_FLOAT_EQ(l.lightProducts[1].ambient[0], 9.0f) << "disabled lights keep their product";
    EXPECT_FLOAT_EQ(l.lightProducts[0].diffuse[1], 0.2f);
    EXPECT_FLOAT_EQ(l.lightProducts[0].diffuse[3], 0.6f);
    EXPECT_FLOAT_EQ(l.sceneAmbient[2], 0.1f);
    EXPECT_EQ(l.lightProducts[0].specularFlag, 0.0f);
    EXPECT_NE(l.lightProducts[2].specularFlag, 0.0f);
    EXPECT_FLOAT_EQ(l.lightProducts[2].specular[1], 0.5f);

    vlddb.settings.specularDisable = 1;
    l.lightProducts[2].specular[1] = 7.0f;
    KSP_vld_mtl_pre_light_spec_one(tc.ctx, 2);
    EXPECT_EQ(l.lightProducts[2].specularFlag, 0.0f);
    EXPECT_FLOAT_EQ(l.lightProducts[2].specular[1], 7.0f) << "no product is stored";
}

} // namespace
