// Capabilities: which bits they set, which board calls they make and when they make none.
#include "state_test.h"

namespace {

TEST_F(StateTest, EveryListedCapabilityIsItsOwnBit)
{
    const struct {
        GLenum cap;
        uint32_t bit;
    } rows[] = {
        {GL_ALPHA_TEST, 0x1},          {GL_BLEND, 0x2},
        {GL_DEPTH_TEST, 0x10},         {GL_FOG, 0x20},
        {GL_LIGHTING, 0x40},           {GL_COLOR_MATERIAL, 0x80},
        {GL_LINE_STIPPLE, 0x100},      {GL_LINE_SMOOTH, 0x200},
        {GL_POINT_SMOOTH, 0x400},      {GL_POLYGON_SMOOTH, 0x800},
        {GL_CULL_FACE, 0x1000},        {GL_SCISSOR_TEST, 0x4000},
        {GL_STENCIL_TEST, 0x8000},     {GL_NORMALIZE, 0x10000},
        {GL_POLYGON_OFFSET_POINT, 0x40000}, {GL_POLYGON_OFFSET_LINE, 0x80000},
        {GL_POLYGON_OFFSET_FILL, 0x100000}, {GL_VELD_COLOR_CACHING, 0x40000000},
    };
    for (const auto& r : rows) {
        ctx->enable.capabilityBits = 0;
        __vldim_Enable(r.cap);
        EXPECT_EQ(ctx->enable.capabilityBits, r.bit) << std::hex << r.cap;
        EXPECT_EQ(__vldim_IsEnabled(r.cap), GL_TRUE);
        ctx->enable.capabilityBits = ~0u;
        __vldim_Disable(r.cap);
        EXPECT_EQ(ctx->enable.capabilityBits, ~r.bit);
        EXPECT_EQ(__vldim_IsEnabled(r.cap), GL_FALSE);
    }
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
}

TEST_F(StateTest, UnlistedCapabilitiesAreInvalidInAllThreeCalls)
{
    const GLenum unknown[] = {GL_DITHER, GL_LOGIC_OP, GL_INDEX_LOGIC_OP, GL_COLOR_LOGIC_OP,
                              GL_AUTO_NORMAL, GL_POLYGON_STIPPLE, GL_CLIP_PLANE0, GL_CLIP_PLANE5,
                              GL_MAP1_VERTEX_3, GL_MAP2_COLOR_4, GL_VERTEX_ARRAY,
                              GL_TEXTURE_COORD_ARRAY, 0x1234};
    for (GLenum cap : unknown) {
        __vldim_Enable(cap);
        EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM) << std::hex << cap;
        __vldim_Disable(cap);
        EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM) << std::hex << cap;
        EXPECT_EQ(__vldim_IsEnabled(cap), GL_FALSE);
        EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM) << std::hex << cap;
    }
    EXPECT_EQ(ctx->enable.capabilityBits, 0u);
    EXPECT_TRUE(calls().empty());
}

TEST_F(StateTest, OneDimensionalTexturingIsAcceptedButNeverOn)
{
    __vldim_Enable(GL_TEXTURE_1D);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    EXPECT_EQ(__vldim_IsEnabled(GL_TEXTURE_1D), GL_FALSE);
    ctx->enable.textureEnableBits[0] = VLD_TEX_1D;
    __vldim_Disable(GL_TEXTURE_1D);
    EXPECT_EQ(ctx->enable.textureEnableBits[0], 0u);
}

TEST_F(StateTest, TextureCapabilitiesUseTheSelectedUnitsWord)
{
    ctx->enable.currentTextureEnable = &ctx->enable.textureEnableBits[1];
    __vldim_Enable(GL_TEXTURE_2D);
    __vldim_Enable(GL_TEXTURE_GEN_S);
    __vldim_Enable(GL_TEXTURE_GEN_Q);
    EXPECT_EQ(ctx->enable.textureEnableBits[1], VLD_TEX_2D | VLD_TEX_GEN_S | VLD_TEX_GEN_Q);
    EXPECT_EQ(ctx->enable.textureEnableBits[0], 0u);
    EXPECT_EQ(__vldim_IsEnabled(GL_TEXTURE_GEN_Q), GL_TRUE);
    __vldim_Disable(GL_TEXTURE_GEN_S);
    EXPECT_EQ(ctx->enable.textureEnableBits[1], VLD_TEX_2D | VLD_TEX_GEN_Q);

    // With texturing switched off for the context, enabling 2D texturing does nothing.
    ctx->textureSystemOn = 0;
    ctx->enable.currentTextureEnable = &ctx->enable.textureEnableBits[0];
    __vldim_Enable(GL_TEXTURE_2D);
    EXPECT_EQ(__vldim_IsEnabled(GL_TEXTURE_2D), GL_FALSE);
}

TEST_F(StateTest, LightsAreBitsAndHighNumbersAnswerQuietly)
{
    __vldim_Enable(GL_LIGHT0 + 3);
    __vldim_Enable(GL_LIGHT7);
    EXPECT_EQ(ctx->enable.lightEnableBits, 0x88u);
    EXPECT_EQ(__vldim_IsEnabled(GL_LIGHT3), GL_TRUE);
    __vldim_Disable(GL_LIGHT3);
    EXPECT_EQ(ctx->enable.lightEnableBits, 0x80u);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);

    EXPECT_EQ(__vldim_IsEnabled(GL_LIGHT0 + 8), GL_FALSE);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    __vldim_Enable(GL_LIGHT0 + 8);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_Disable(GL_LIGHT0 + 8);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->enable.lightEnableBits, 0x80u);
}

TEST_F(StateTest, FogBlendAlphaAndDepthProgramTheBoardOnlyOnAChange)
{
    __vldim_Enable(GL_FOG);
    Calls first = calls();
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(first[0], "grFogMode 0x2");
    __vldim_Enable(GL_FOG);
    EXPECT_TRUE(calls().empty()) << "a second enable changes nothing";
    __vldim_Disable(GL_FOG);
    EXPECT_EQ(calls(), (Calls{"grFogMode 0x0"}));
    __vldim_Disable(GL_FOG);
    EXPECT_TRUE(calls().empty());

    __vldim_Enable(GL_BLEND);
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 4 0 4 0"}));
    __vldim_Enable(GL_BLEND);
    __vldim_Enable(GL_ALPHA_TEST);
    EXPECT_EQ(calls(), (Calls{"grAlphaTestReferenceValue 0", "grAlphaTestFunction 7"}));
    __vldim_Enable(GL_ALPHA_TEST);
    EXPECT_TRUE(calls().empty());

    __vldim_Enable(GL_DEPTH_TEST);
    EXPECT_EQ(calls(), (Calls{"grDepthBufferMode 2", "grDepthBufferFunction 1", "grDepthMask 1"}));
    __vldim_Enable(GL_DEPTH_TEST);
    EXPECT_TRUE(calls().empty());
    __vldim_Disable(GL_DEPTH_TEST);
    EXPECT_EQ(calls(), (Calls{"grDepthBufferMode 0", "grDepthBufferFunction 7", "grDepthMask 0"}));
}

TEST_F(StateTest, CullScissorOffsetAndSmoothingUpdateOnEveryCall)
{
    ctx->polygon.frontSign = 99.0f;
    __vldim_Enable(GL_CULL_FACE);
    EXPECT_EQ(ctx->polygon.frontSign, 1.0f);
    ctx->polygon.frontSign = 99.0f;
    __vldim_Enable(GL_CULL_FACE);
    EXPECT_EQ(ctx->polygon.frontSign, 1.0f) << "the cull update runs again";

    __vldim_Enable(GL_SCISSOR_TEST);
    __vldim_Enable(GL_SCISSOR_TEST);
    EXPECT_EQ(calls(), (Calls{"grClipWindow 0 0 0 0", "grClipWindow 0 0 0 0"}));
    __vldim_Disable(GL_SCISSOR_TEST);
    EXPECT_EQ(calls(), (Calls{"grClipWindow 0 0 640 480"}));

    ctx->polygon.polygonOffsetUnits = 2.0f;
    __vldim_Enable(GL_POLYGON_OFFSET_FILL);
    __vldim_Enable(GL_POLYGON_OFFSET_FILL);
    EXPECT_EQ(calls(), (Calls{"grDepthBiasLevel 280", "grDepthBiasLevel 280"}));
    __vldim_Enable(GL_POLYGON_OFFSET_LINE);
    EXPECT_TRUE(calls().empty());

    __vldim_Enable(GL_LINE_SMOOTH);
    __vldim_Enable(GL_POINT_SMOOTH);
    EXPECT_EQ(ctx->line.smoothLineActive, 1u);
    EXPECT_EQ(ctx->point.smoothPointActive, 1u);
    EXPECT_EQ(ctx->polygon.smoothPolygonActive, 0u);
    ctx->polygon.smoothPolygonAllowed = 0;
    __vldim_Enable(GL_POLYGON_SMOOTH);
    EXPECT_EQ(ctx->polygon.smoothPolygonActive, 0u) << "refused smoothing stays off";
    __vldim_Disable(GL_LINE_SMOOTH);
    EXPECT_EQ(ctx->line.smoothLineActive, 0u);
}

TEST_F(StateTest, NoContextMeansNothingHappens)
{
    vldGc = nullptr;
    __vldim_Enable(GL_FOG);
    EXPECT_EQ(__vldim_IsEnabled(GL_FOG), GL_FALSE);
    __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
    vldGc = ctx;
    EXPECT_EQ(ctx->enable.capabilityBits, 0u);
    EXPECT_EQ(ctx->attribDepth, 0);
    EXPECT_TRUE(calls().empty());
}

} // namespace
