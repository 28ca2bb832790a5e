// The attribute stack: depth and its errors, what each mask saves and restores, which
// capability bits travel with a group, and the board calls a pop makes.
#include "state_test.h"

namespace {

TEST_F(StateTest, SixteenLevelsThenOverflowAndUnderflow)
{
    __vldim_PopAttrib();
    EXPECT_EQ(error(), (GLenum)GL_STACK_UNDERFLOW);
    EXPECT_EQ(ctx->attribDepth, 0);
    for (int i = 0; i < 16; ++i)
        __vldim_PushAttrib(0);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR) << "a push of no group still takes a level";
    EXPECT_EQ(ctx->attribDepth, 16);
    ctx->color.alphaRef = 0.5f;
    __vldim_PushAttrib(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(error(), (GLenum)GL_STACK_OVERFLOW);
    EXPECT_EQ(ctx->attribDepth, 16);
    EXPECT_EQ(ctx->attribStack[15].mask, 0u) << "nothing is saved on overflow";
    for (int i = 0; i < 16; ++i)
        __vldim_PopAttrib();
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    __vldim_PopAttrib();
    EXPECT_EQ(error(), (GLenum)GL_STACK_UNDERFLOW);
}

TEST_F(StateTest, InsideBeginEndBothCallsAreRefused)
{
    ctx->inBeginEnd = 1;
    __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    EXPECT_EQ(ctx->attribDepth, 0);
    ctx->inBeginEnd = 0;
    __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
    ctx->inBeginEnd = 1;
    __vldim_PopAttrib();
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    EXPECT_EQ(ctx->attribDepth, 1);
}

TEST_F(StateTest, EachMaskRestoresItsOwnGroupOnly)
{
    __vldim_PushAttrib(GL_FOG_BIT | GL_LINE_BIT);
    ctx->fog.fogDensity = 3.0f;
    ctx->line.lineWidth = 4.0f;
    ctx->point.pointSize = 5.0f;
    ctx->hint.hintFog = GL_NICEST;
    __vldim_PopAttrib();
    EXPECT_EQ(ctx->fog.fogDensity, 1.0f);
    EXPECT_EQ(ctx->line.lineWidth, 1.0f);
    EXPECT_EQ(ctx->point.pointSize, 5.0f);
    EXPECT_EQ((GLenum)ctx->hint.hintFog, (GLenum)GL_NICEST);

    // Every group comes back when its bit is in the mask.
    vld_context before = *ctx;
    __vldim_PushAttrib(GL_ALL_ATTRIB_BITS);
    ctx->accum.accumClear = 1.0f;
    ctx->color.blendSrc = GL_SRC_ALPHA;
    ctx->current.currentColor[0] = 0.25f;
    ctx->depth.clearDepth = 0.5;
    ctx->eval.evalWord = 7;
    ctx->hint.hintLineSmooth = GL_FASTEST;
    ctx->list.listBase = 9;
    ctx->pixelMode.readBuffer = GL_FRONT;
    ctx->polygon.polygonModeBack = GL_LINE;
    ctx->polygonStipple.stippleWord = 3;
    ctx->scissor.scissorBox[2] = 100;
    ctx->stencil.stencilRef = 5;
    ctx->transform.matrixMode = GL_PROJECTION;
    ctx->lighting.lights[2].spotCutoff = 45.0f;
    ctx->texture.units[1].envMode = GL_DECAL;
    __vldim_PopAttrib();
#define VLD_SAME(Type, name)                                                                   \
    EXPECT_EQ(std::memcmp(&ctx->name, &before.name, sizeof(Type)), 0) << #name;
    VLD_ATTRIB_GROUPS(VLD_SAME)
#undef VLD_SAME
}

TEST_F(StateTest, ViewportPopRestoresDerivedValuesAsSaved)
{
    ctx->viewport.viewportWidth = 640;
    ctx->viewport.viewportHalfWidth = 320.0f;
    ctx->viewport.viewportInvWidth = 1.0f / 640.0f;
    __vldim_PushAttrib(GL_VIEWPORT_BIT);
    ctx->viewport.viewportWidth = 100;
    ctx->viewport.viewportHalfWidth = 50.0f;
    ctx->viewport.viewportInvWidth = 0.01f;
    __vldim_PopAttrib();
    EXPECT_EQ(ctx->viewport.viewportWidth, 640);
    EXPECT_EQ(ctx->viewport.viewportHalfWidth, 320.0f);
    EXPECT_EQ(ctx->viewport.viewportInvWidth, 1.0f / 640.0f);
}

TEST_F(StateTest, EnableWordsAreSavedAlwaysButRestoredByTheirGroups)
{
    // Saved with a mask of no enable bit...
    __vldim_PushAttrib(GL_HINT_BIT);
    EXPECT_EQ(ctx->attribStack[0].enable.capabilityBits, 0u);
    __vldim_Enable(GL_LIGHTING);
    __vldim_Enable(GL_LIGHT1);
    __vldim_PopAttrib();
    // ...but only a group that owns a bit brings it back.
    EXPECT_EQ(ctx->enable.capabilityBits, VLD_CAP_LIGHTING);
    EXPECT_EQ(ctx->enable.lightEnableBits, 0x2u);

    const struct {
        GLbitfield mask;
        uint32_t bits;
    } owners[] = {
        {GL_COLOR_BUFFER_BIT, 0xA0000F},   {GL_DEPTH_BUFFER_BIT, 0x10},
        {GL_EVAL_BIT, 0x20000},            {GL_FOG_BIT, 0x20},
        {GL_LIGHTING_BIT, 0x4000C0},       {GL_LINE_BIT, 0x300},
        {GL_POINT_BIT, 0x400},             {GL_POLYGON_BIT, 0x1C3800},
        {GL_POLYGON_STIPPLE_BIT, 0x2000},  {GL_SCISSOR_BIT, 0x4000},
        {GL_STENCIL_BUFFER_BIT, 0x8000},   {GL_TRANSFORM_BIT, 0x10000},
        {GL_ENABLE_BIT, 0xFFFFFFFF},       {GL_HINT_BIT, 0},
        {GL_CURRENT_BIT, 0},               {GL_VIEWPORT_BIT, 0},
    };
    for (const auto& o : owners) {
        ctx->enable.capabilityBits = 0;
        __vldim_PushAttrib(o.mask);
        ctx->enable.capabilityBits = 0xFFFFFFFF;
        __vldim_PopAttrib();
        EXPECT_EQ(ctx->enable.capabilityBits, ~o.bits) << std::hex << o.mask;
    }
}

TEST_F(StateTest, LightingPopSwitchesLightsLowestFirst)
{
    __vldim_Enable(GL_LIGHT2);
    __vldim_PushAttrib(GL_LIGHTING_BIT);
    __vldim_Disable(GL_LIGHT2);
    __vldim_Enable(GL_LIGHT5);
    __vldim_PopAttrib();
    EXPECT_EQ(ctx->enable.lightEnableBits, 0x4u);
}

TEST_F(StateTest, PopWithAMaskProgramsBlendAndAlphaTest)
{
    __vldim_PushAttrib(GL_HINT_BIT);
    __vldim_PopAttrib();
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 4 0 4 0", "grAlphaTestReferenceValue 0",
                              "grAlphaTestFunction 7"}));
    __vldim_PushAttrib(0);
    __vldim_PopAttrib();
    EXPECT_TRUE(calls().empty()) << "an empty mask changes nothing and calls nothing";
}

TEST_F(StateTest, PopRunsTheUpdatesOfChangedCapabilitiesInOrder)
{
    __vldim_PushAttrib(GL_ENABLE_BIT);
    __vldim_Enable(GL_CULL_FACE);
    __vldim_Enable(GL_DEPTH_TEST);
    __vldim_Enable(GL_FOG);
    __vldim_Enable(GL_LINE_SMOOTH);
    ctx->polygon.frontSign = 99.0f;
    calls();
    __vldim_PopAttrib();
    Calls got = calls();
    EXPECT_EQ(ctx->polygon.frontSign, 1.0f) << "the cull update ran";
    EXPECT_EQ(ctx->line.smoothLineActive, 0u);
    EXPECT_EQ(got, (Calls{"grDepthBufferMode 0", "grDepthBufferFunction 7", "grDepthMask 0",
                          "grFogMode 0x0", "grAlphaBlendFunction 4 0 4 0",
                          "grAlphaTestReferenceValue 0", "grAlphaTestFunction 7"}));
}

TEST_F(StateTest, PopLeavesFogDepthMaskAndScissorUnprogrammedWithoutACapabilityChange)
{
    __vldim_Enable(GL_FOG);
    __vldim_Enable(GL_DEPTH_TEST);
    __vldim_Enable(GL_SCISSOR_TEST);
    __vldim_PushAttrib(GL_FOG_BIT | GL_DEPTH_BUFFER_BIT | GL_SCISSOR_BIT);
    GLfloat red[4] = {1, 0, 0, 1};
    __vldim_Fogfv(GL_FOG_COLOR, red);
    __vldim_DepthMask(GL_FALSE);
    __vldim_Scissor(1, 2, 3, 4);
    calls();
    __vldim_PopAttrib();
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 4 0 4 0", "grAlphaTestReferenceValue 0",
                              "grAlphaTestFunction 7"}));
    EXPECT_EQ(ctx->fog.fogColor[0], 0.0f);
    EXPECT_EQ(ctx->depth.depthWriteMask, 1u);
    EXPECT_EQ(ctx->scissor.scissorBox[0], 0);
}

TEST_F(StateTest, TexturePopTakesTheLowSixEnableBitsAndRebindsChangedNames)
{
    ctx->enable.textureEnableBits[0] = 0x40 | VLD_TEX_GEN_S;
    ctx->texture.units[0].boundName = 3;
    __vldim_PushAttrib(GL_TEXTURE_BIT);
    ctx->enable.textureEnableBits[0] = 0x80 | VLD_TEX_2D | VLD_TEX_GEN_T;
    ctx->texture.units[0].boundName = 4;
    __vldim_PopAttrib();
    EXPECT_EQ(ctx->enable.textureEnableBits[0], 0x80u | VLD_TEX_GEN_S)
        << "the bits above the six capabilities stay";
    EXPECT_EQ(ctx->texture.units[0].boundName, 3u);
}

} // namespace
