// Fog through the board's table with its dirty flags, and glClear's passes.
#include "state_test.h"

namespace {

// The calls of a trace whose names start with `prefix`.
Calls only(const Calls& all, const std::string& prefix)
{
    Calls out;
    for (const std::string& line : all)
        if (line.rfind(prefix, 0) == 0)
            out.push_back(line);
    return out;
}

TEST_F(StateTest, FogTableAndColourAreSentOnlyWhenDirty)
{
    __vldim_Enable(GL_FOG);
    Calls got = calls();
    ASSERT_EQ(got.size(), 4u);
    EXPECT_EQ(got[0], "grFogMode 0x2");
    EXPECT_EQ(got[1], "guFogGenerateExp table 1");
    EXPECT_EQ(got[2].rfind("grFogTable ", 0), 0u);
    EXPECT_EQ(got[3], "grFogColorValue 0x00000000");

    __vldim_Fogf(GL_FOG_DENSITY, 1.0f);
    EXPECT_EQ(calls(), (Calls{"grFogMode 0x2"})) << "an unchanged density builds no table";
    __vldim_Fogf(GL_FOG_START, 5.0f);
    EXPECT_EQ(calls(), (Calls{"grFogMode 0x2"})) << "start does not shape an exponential table";
    ctx->depthScale = 4.0f;
    __vldim_Fogf(GL_FOG_DENSITY, 2.0f);
    EXPECT_EQ(only(calls(), "gu"), (Calls{"guFogGenerateExp table 0.5"}))
        << "the density is in units of the w-buffer";
    __vldim_Fogi(GL_FOG_MODE, GL_EXP2);
    EXPECT_EQ(only(calls(), "gu"), (Calls{"guFogGenerateExp2 table 0.5"}));
}

TEST_F(StateTest, LinearFogIsMappedByTheProjectionsDepthMap)
{
    ctx->fogDepthScale = 2.0f;
    ctx->fogDepthOffset = 1.0f;
    __vldim_Fogi(GL_FOG_MODE, GL_LINEAR);
    __vldim_Fogf(GL_FOG_START, 1.0f);
    __vldim_Fogf(GL_FOG_END, 3.0f);
    EXPECT_TRUE(calls().empty()) << "with fog off the board is left alone";
    EXPECT_EQ(ctx->fog.fogTableDirty, 1u);
    __vldim_Enable(GL_FOG);
    EXPECT_EQ(only(calls(), "gu"), (Calls{"guFogGenerateLinear table 3 7"}));
    __vldim_Fogf(GL_FOG_DENSITY, 0.25f);
    EXPECT_EQ(calls(), (Calls{"grFogMode 0x2"})) << "density does not shape a linear table";
    __vldim_Fogf(GL_FOG_END, 4.0f);
    EXPECT_EQ(only(calls(), "gu"), (Calls{"guFogGenerateLinear table 3 9"}));
    __vldim_Disable(GL_FOG);
    EXPECT_EQ(ctx->fog.fogTableDirty, 0u);
}

TEST_F(StateTest, FogColourPacksAndIntegerFormsScale)
{
    __vldim_Enable(GL_FOG);
    calls();
    const GLint colour[4] = {0x7FFFFFFF, 0x40000000, 0, 0x7FFFFFFF};
    __vldim_Fogiv(GL_FOG_COLOR, colour);
    EXPECT_EQ(only(calls(), "grFogColorValue"), (Calls{"grFogColorValue 0xff7f00ff"}));
    __vldim_Fogiv(GL_FOG_COLOR, colour);
    EXPECT_TRUE(only(calls(), "grFogColorValue").empty());
    __vldim_Fogi(GL_FOG_INDEX, 3);
    EXPECT_EQ(ctx->fog.fogIndex, 3.0f);
    calls();
    __vldim_Fogf(0x1234, 1.0f);
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
    EXPECT_TRUE(calls().empty()) << "an unknown parameter is ignored";
}

TEST_F(StateTest, UnknownFogModeLoadsAZeroTable)
{
    __vldim_Fogi(GL_FOG_MODE, 0x1234);
    __vldim_Enable(GL_FOG);
    Calls got = calls();
    EXPECT_TRUE(only(got, "gu").empty());
    Calls table = only(got, "grFogTable");
    ASSERT_EQ(table.size(), 1u);
    std::string zeros = "grFogTable";
    for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i)
        zeros += " 0";
    EXPECT_EQ(table[0], zeros);
}

TEST_F(StateTest, ClearOfColourAndDepthOpensAndRestoresTheMasks)
{
    __vldim_ClearColor(1.0f, 0.5f, 0.0f, 1.0f);
    __vldim_Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 0", "grDepthBufferMode 2", "grDepthMask 1",
                              "grBufferClear 0xff7f00ff 255 65535", "grDepthBufferMode 0",
                              "grDepthMask 0", "grColorMask 1 0"}));
    __vldim_Enable(GL_DEPTH_TEST);
    calls();
    __vldim_Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 0", "grDepthBufferMode 2",
                              "grBufferClear 0xff7f00ff 255 65535", "grColorMask 1 0"}));
    __vldim_DepthMask(GL_FALSE);
    calls();
    __vldim_Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 0", "grDepthBufferMode 2", "grDepthMask 1",
                              "grBufferClear 0xff7f00ff 255 65535", "grDepthMask 0",
                              "grColorMask 1 0"}));
}

TEST_F(StateTest, ClearOfColourAloneKeepsDepthWritesOff)
{
    unit->alphaBuffer = 1;
    __vldim_Enable(GL_DEPTH_TEST);
    __vldim_ColorMask(1, 0, 1, 1);
    calls();
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 1", "grDepthMask 0", "grBufferClear 0x00000000 0 65535",
                              "grDepthMask 1", "grColorMask 0 1"}));
    __vldim_Disable(GL_DEPTH_TEST);
    calls();
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 1 1", "grBufferClear 0x00000000 0 65535", "grColorMask 0 1"}));
}

TEST_F(StateTest, ClearOfDepthAloneNeedsADepthBuffer)
{
    __vldim_ClearDepth(0.25);
    __vldim_Clear(GL_DEPTH_BUFFER_BIT);
    EXPECT_EQ(calls(), (Calls{"grColorMask 0 0", "grDepthBufferMode 2", "grDepthMask 1",
                              "grBufferClear 0x00000000 0 16383", "grDepthBufferMode 0",
                              "grDepthMask 0", "grColorMask 1 0"}));
    unit->depthBuffer = 0;
    __vldim_Clear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_ACCUM_BUFFER_BIT);
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(error(), (GLenum)GL_NO_ERROR);
}

TEST_F(StateTest, ClearOfFrontAndBackRunsTwoPasses)
{
    __vldim_DrawBuffer(GL_FRONT_AND_BACK);
    calls();
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    Calls got = calls();
    ASSERT_EQ(got.size(), 8u);
    EXPECT_EQ(got[0], "grRenderBuffer 1");
    EXPECT_EQ(got[2], "grBufferClear 0x00000000 0 65535");
    EXPECT_EQ(got[4], "grRenderBuffer 0");
    EXPECT_EQ(got[6], "grBufferClear 0x00000000 0 65535");
    unit->integrated2D = 1;
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(only(calls(), "grBufferClear").size(), 1u);
}

// The colour mask does not restrain a clear: with one colour masked no colour is drawn,
// yet the clear still writes all three.
TEST_F(StateTest, ClearWritesColourWhateverTheMask)
{
    __vldim_ColorMask(1, 0, 1, 1);
    __vldim_ClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    __vldim_Clear(GL_COLOR_BUFFER_BIT);
    ZvbBuffers b{};
    ASSERT_EQ(zvbGetBuffers(0, &b), 0);
    const unsigned short* back = b.colour[b.back];
    EXPECT_EQ(back[0], 0xF800u);
    EXPECT_EQ(back[b.width * b.height - 1], 0xF800u);
}

} // namespace
