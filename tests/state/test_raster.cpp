// Raster state: validation, what is stored, and the Glide calls of each command.
#include "state_test.h"

namespace {

TEST_F(StateTest, AlphaFunctionMapsComparisonsAndTruncatesTheReference)
{
    __vldim_Enable(GL_ALPHA_TEST);
    calls();
    __vldim_AlphaFunc(GL_GEQUAL, 0.5f);
    EXPECT_EQ(calls(), (Calls{"grAlphaTestReferenceValue 127", "grAlphaTestFunction 6"}));
    __vldim_AlphaFunc(GL_NEVER, 2.0f);
    EXPECT_EQ(calls(), (Calls{"grAlphaTestReferenceValue 254", "grAlphaTestFunction 0"}))
        << "the reference is not clamped: 510 reaches the 8-bit register as its low byte";
    __vldim_AlphaFunc(GL_ALWAYS + 1, 0.1f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->color.alphaFunc, (GLenum)GL_NEVER);
    EXPECT_TRUE(calls().empty());
}

TEST_F(StateTest, BlendFactorsFollowTheBoardTableWithAndWithoutAlphaBuffer)
{
    const struct {
        GLenum gl;
        int withAlpha, without;
    } rows[] = {
        {GL_ZERO, 0, 0},
        {GL_ONE, 4, 4},
        {GL_SRC_COLOR, 5, 5},
        {GL_ONE_MINUS_SRC_COLOR, 3, 4},
        {GL_SRC_ALPHA, 1, 1},
        {GL_ONE_MINUS_SRC_ALPHA, 5, 5},
        {GL_DST_ALPHA, 3, 4},
        {GL_ONE_MINUS_DST_ALPHA, 7, 0},
        {GL_DST_COLOR, 2, 2},
        {GL_ONE_MINUS_DST_COLOR, 6, 6},
        {GL_SRC_ALPHA_SATURATE, 15, 4},
        {0x1234, 4, 4},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(KSP_vld_map_blend_factor(r.gl, 1), r.withAlpha) << std::hex << r.gl;
        EXPECT_EQ(KSP_vld_map_blend_factor(r.gl, 0), r.without) << std::hex << r.gl;
    }
}

TEST_F(StateTest, BlendFunctionValidatesSourceAndDestinationDifferently)
{
    __vldim_Enable(GL_BLEND);
    calls();
    __vldim_BlendFunc(GL_ONE, GL_ONE_MINUS_SRC_COLOR);
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 4 4 4 0"})) << "no alpha buffer: one, one";
    unit->alphaBuffer = 1;
    __vldim_BlendFunc(GL_SRC_ALPHA_SATURATE, GL_ONE_MINUS_DST_ALPHA);
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 15 7 4 4"}));

    __vldim_BlendFunc(GL_SRC_COLOR, GL_ZERO);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_BlendFunc(GL_ONE_MINUS_SRC_COLOR, GL_ZERO);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_BlendFunc(GL_ONE, GL_SRC_ALPHA_SATURATE + 1);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->color.blendSrc, (GLenum)GL_SRC_ALPHA_SATURATE);
    EXPECT_EQ(ctx->color.blendDst, (GLenum)GL_ONE_MINUS_DST_ALPHA);
    EXPECT_TRUE(calls().empty());

    __vldim_BlendFunc(GL_DST_COLOR, GL_SRC_COLOR);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR) << "destination colour factors are let through";
    __vldim_Disable(GL_BLEND);
    EXPECT_EQ(calls(), (Calls{"grAlphaBlendFunction 2 5 4 0", "grAlphaBlendFunction 4 0 4 0"}));
}

TEST_F(StateTest, DepthFunctionIsProgrammedButNeverStored)
{
    __vldim_Enable(GL_DEPTH_TEST);
    calls();
    __vldim_DepthFunc(GL_LEQUAL);
    EXPECT_EQ(calls(), (Calls{"grDepthBufferFunction 3"}));
    EXPECT_EQ(ctx->depth.depthFunc, (GLenum)GL_LESS);
    __vldim_Disable(GL_DEPTH_TEST);
    __vldim_Enable(GL_DEPTH_TEST);
    Calls got = calls();
    ASSERT_EQ(got.size(), 6u);
    EXPECT_EQ(got[4], "grDepthBufferFunction 1") << "back to GL_LESS";

    __vldim_DepthFunc(0x1234);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(calls(), (Calls{"grDepthBufferFunction 1"}));

    __vldim_Disable(GL_DEPTH_TEST);
    calls();
    __vldim_DepthFunc(GL_GREATER);
    EXPECT_TRUE(calls().empty()) << "with the test off, nothing reaches the board";
    unit->depthBuffer = 0;
    __vldim_Enable(GL_DEPTH_TEST);
    __vldim_DepthFunc(GL_GREATER);
    __vldim_DepthMask(GL_FALSE);
    EXPECT_TRUE(calls().empty()) << "no depth buffer, no depth calls";
    EXPECT_EQ(ctx->depth.depthWriteMask, 0u);
}

TEST_F(StateTest, DepthMaskReachesTheBoardOnlyWithTheTestOn)
{
    __vldim_DepthMask(GL_FALSE);
    EXPECT_TRUE(calls().empty());
    __vldim_Enable(GL_DEPTH_TEST);
    EXPECT_EQ(calls(), (Calls{"grDepthBufferMode 2", "grDepthBufferFunction 1", "grDepthMask 0"}));
    __vldim_DepthMask(GL_TRUE);
    EXPECT_EQ(calls(), (Calls{"grDepthMask 1"}));
    ctx->inBeginEnd = 1;
    __vldim_DepthMask(GL_FALSE);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
}

TEST_F(StateTest, PolygonOffsetIsUnitsTimesTheSettingAndIgnoresTheFactor)
{
    __vldim_Enable(GL_POLYGON_OFFSET_FILL);
    calls();
    __vldim_PolygonOffset(5.0f, 0.0f);
    __vldim_PolygonOffset(0.0f, 1.0f);
    __vldim_PolygonOffset(0.0f, -0.5f);
    EXPECT_EQ(calls(), (Calls{"grDepthBiasLevel 0", "grDepthBiasLevel 140", "grDepthBiasLevel -70"}));
    EXPECT_EQ(ctx->polygon.polygonOffsetFactor, 0.0f);

    KSP_vld_update_polygon_offset(GL_LINE);
    __vldim_Enable(GL_POLYGON_OFFSET_POINT);
    KSP_vld_update_polygon_offset(GL_POINT);
    KSP_vld_update_polygon_offset(GL_FILL + 1);
    EXPECT_EQ(calls(), (Calls{"grDepthBiasLevel 0", "grDepthBiasLevel -70", "grDepthBiasLevel 0"}));
}

TEST_F(StateTest, CullSignsFollowModeFrontFaceAndMirroring)
{
    const struct {
        GLenum cull, front;
        float sign;
    } rows[] = {
        {GL_BACK, GL_CCW, 1.0f},  {GL_FRONT, GL_CCW, -1.0f}, {GL_FRONT_AND_BACK, GL_CCW, 0.0f},
        {GL_BACK, GL_CW, -1.0f},  {GL_FRONT, GL_CW, 1.0f},
    };
    ctx->mirrorSign = -1.0f;
    for (const auto& r : rows) {
        __vldim_CullFace(r.cull);
        __vldim_FrontFace(r.front);
        EXPECT_EQ(ctx->polygon.frontSign, r.sign);
        EXPECT_EQ(ctx->polygon.cullSign, -r.sign);
    }
    __vldim_CullFace(GL_LEFT);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_FrontFace(GL_BACK);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->polygon.frontFace, (GLenum)GL_CW);
    EXPECT_TRUE(calls().empty()) << "culling is the host's";
}

TEST_F(StateTest, PolygonModeSetsTheNamedFaces)
{
    __vldim_PolygonMode(GL_FRONT, GL_LINE);
    EXPECT_EQ(ctx->polygon.polygonModeFront, (GLenum)GL_LINE);
    EXPECT_EQ(ctx->polygon.polygonModeBack, (GLenum)GL_FILL);
    __vldim_PolygonMode(GL_BACK, GL_POINT);
    EXPECT_EQ(ctx->polygon.polygonModeBack, (GLenum)GL_POINT);
    __vldim_PolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    EXPECT_EQ(ctx->polygon.polygonModeFront, (GLenum)GL_FILL);
    EXPECT_EQ(ctx->polygon.polygonModeBack, (GLenum)GL_FILL);
    __vldim_PolygonMode(GL_FRONT, GL_FRONT);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_PolygonMode(GL_LEFT, GL_LINE);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->polygon.polygonModeFront, (GLenum)GL_FILL);
}

TEST_F(StateTest, SizesMustBePositiveAndHaveNoUpperLimit)
{
    __vldim_LineWidth(0.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_VALUE);
    __vldim_PointSize(-1.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_VALUE);
    __vldim_PointSize(0.0f / 0.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_VALUE);
    EXPECT_EQ(ctx->line.lineWidth, 1.0f);
    EXPECT_EQ(ctx->point.pointSize, 1.0f);
    __vldim_LineWidth(1000.0f);
    __vldim_PointSize(64.5f);
    EXPECT_EQ(ctx->line.lineWidth, 1000.0f);
    EXPECT_EQ(ctx->point.pointSize, 64.5f);
    __vldim_LineStipple(-3, 0xF0F0);
    EXPECT_EQ(ctx->line.lineStippleFactor, -3);
    EXPECT_EQ(ctx->line.lineStipplePattern, 0xF0F0u);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
}

TEST_F(StateTest, HintsStoreTheSevenTargets)
{
    __vldim_Hint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    __vldim_Hint(GL_CLIP_VOLUME_CLIPPING_HINT_EXT, GL_FASTEST);
    __vldim_Hint(GL_VELD_TEXTURE_COORD_REDUCE_HINT, GL_NICEST);
    __vldim_Hint(GL_FOG_HINT, GL_FASTEST);
    EXPECT_EQ(ctx->hint.hintPerspectiveCorrection, (GLenum)GL_NICEST);
    EXPECT_EQ(ctx->hint.hintClipVolume, (GLenum)GL_FASTEST);
    EXPECT_EQ(ctx->hint.hintTexCoordReduce, (GLenum)GL_NICEST);
    EXPECT_EQ(ctx->hint.hintFog, (GLenum)GL_FASTEST);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    __vldim_Hint(GL_FOG_HINT, GL_FOG);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    __vldim_Hint(GL_FOG, GL_NICEST);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(ctx->hint.hintFog, (GLenum)GL_FASTEST);
}

TEST_F(StateTest, ScissorIsTheClipWindowWhileTheTestIsOn)
{
    __vldim_Scissor(10, 20, 30, 40);
    EXPECT_EQ(calls(), (Calls{"grClipWindow 0 0 640 480"}));
    __vldim_Enable(GL_SCISSOR_TEST);
    EXPECT_EQ(calls(), (Calls{"grClipWindow 10 20 40 60"}));
    ctx->inBeginEnd = 1;
    __vldim_Scissor(0, 0, 5, 5);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    EXPECT_EQ(calls(), (Calls{"grClipWindow 0 0 5 5"}));
    ctx->inBeginEnd = 0;
    unit->windowOpen = 0;
    __vldim_Scissor(1, 1, 2, 2);
    EXPECT_TRUE(calls().empty()) << "no surface, no clip window";
    EXPECT_EQ(ctx->scissor.scissorBox[3], 2);
}

TEST_F(StateTest, ColourMaskTurnsAllColoursOffTogether)
{
    __vldim_ColorMask(1, 0, 1, 1);
    EXPECT_EQ(calls(), (Calls{"grColorMask 0 0"}));
    unit->alphaBuffer = 1;
    __vldim_ColorMask(1, 1, 1, 1);
    __vldim_ColorMask(1, 1, 1, 0);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 1", "grColorMask 1 0"}));
    EXPECT_EQ(ctx->color.colorMask[3], 0);
}

TEST_F(StateTest, DrawBufferPicksFrontOrBack)
{
    const struct {
        GLenum mode;
        int buffer;
    } rows[] = {{GL_NONE, 0},  {GL_FRONT_LEFT, 0}, {GL_FRONT_RIGHT, 0}, {GL_FRONT, 0},
                {GL_FRONT_AND_BACK, 0}, {GL_BACK, 1}, {GL_BACK_LEFT, 1}, {GL_AUX0, 1}, {0x1234, 1}};
    for (const auto& r : rows) {
        __vldim_DrawBuffer(r.mode);
        EXPECT_EQ(calls(), (Calls{"grRenderBuffer " + std::to_string(r.buffer)})) << std::hex << r.mode;
        EXPECT_EQ(ctx->color.drawBuffer, r.mode);
    }
    vlddb.settings.singleBuffer = 1;
    __vldim_DrawBuffer(GL_BACK);
    EXPECT_EQ(calls(), (Calls{"grRenderBuffer 0"}));
}

TEST_F(StateTest, ClearValuesAreClampedAndPacked)
{
    __vldim_ClearColor(-1.0f, 0.5f, 2.0f, 1.0f);
    EXPECT_EQ(ctx->color.clearColor[0], 0.0f);
    EXPECT_EQ(ctx->color.clearColor[2], 1.0f);
    __vldim_ClearDepth(0.5);
    EXPECT_EQ(ctx->depth.clearDepth, 0.5);
    EXPECT_EQ(ctx->depth.clearDepthPacked, 32767u);
    __vldim_ClearDepth(7.0);
    EXPECT_EQ(ctx->depth.clearDepthPacked, 0xFFFFu);
    __vldim_ClearIndex(3.0f);
    EXPECT_TRUE(calls().empty());
}

TEST_F(StateTest, StencilIsStoredOnlyAndUnvalidated)
{
    __vldim_ClearStencil(-2);
    __vldim_StencilFunc(0x1234, 7, 0xF0);
    __vldim_StencilMask(0x3);
    __vldim_StencilOp(GL_INCR, GL_ZERO, 0x99);
    __vldim_Enable(GL_STENCIL_TEST);
    const vld_stencil_attrib& s = ctx->stencil;
    EXPECT_EQ(s.clearStencil, -2);
    EXPECT_EQ(s.stencilFunc, 0x1234u);
    EXPECT_EQ(s.stencilRef, 7);
    EXPECT_EQ(s.stencilValueMask, 0xF0u);
    EXPECT_EQ(s.stencilWriteMask, 0x3u);
    EXPECT_EQ(s.stencilDepthPass, 0x99u);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    EXPECT_TRUE(calls().empty());
}

// Which commands refuse to run between glBegin and glEnd, and which do not.
TEST_F(StateTest, InsideBeginEndTheListedCommandsAreInvalidOperations)
{
    ctx->inBeginEnd = 1;
    GLfloat one = 1.0f;
    __vldim_AlphaFunc(GL_LESS, 0.5f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_BlendFunc(GL_ONE, GL_ONE);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_DepthFunc(GL_LESS);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_DrawBuffer(GL_FRONT);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_Fogfv(GL_FOG_DENSITY, &one);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_FrontFace(GL_CW);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_CullFace(GL_FRONT);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_PolygonMode(GL_FRONT, GL_LINE);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_PolygonOffset(1.0f, 1.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_LineWidth(2.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_PointSize(2.0f);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    __vldim_Hint(GL_FOG_HINT, GL_NICEST);
    EXPECT_EQ(error(), (GLenum)GL_INVALID_OPERATION);
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(ctx->line.lineWidth, 1.0f);

    // These run as usual, and so does glEnable.
    __vldim_ClearColor(1, 1, 1, 1);
    __vldim_ClearDepth(0.0);
    __vldim_ColorMask(1, 1, 1, 1);
    __vldim_LineStipple(2, 0xFF);
    __vldim_StencilMask(1);
    __vldim_Enable(GL_NORMALIZE);
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    EXPECT_EQ(ctx->line.lineStippleFactor, 2);
    EXPECT_EQ(ctx->enable.capabilityBits, VLD_CAP_NORMALIZE);
    EXPECT_FALSE(calls().empty());
}

} // namespace
