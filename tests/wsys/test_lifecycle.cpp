// Context life: the initial values of a new context, make-current and the hand-over of a
// board between contexts (what reaches Glide), destruction and the shutdown cycle.
#include <cstring>

#include "support/env/env.h"
#include "wsys_test.h"

namespace {

using Lifecycle = WsysTest;

TEST_F(Lifecycle, NewContextHasTheInitialValuesAndTakesTheBoardsSizeWhenBound)
{
    HGLRC rc = wglCreateContext(wsys_test_dc(0));
    ASSERT_NE(rc, nullptr);
    vld_context* ctx = ctx_of(rc);
    EXPECT_EQ(ctx->magic, VLD_CONTEXT_MAGIC);
    EXPECT_EQ(ctx->executeFlag, 1);
    EXPECT_EQ(ctx->compileFlag, 0);
    EXPECT_DOUBLE_EQ(ctx->swapTimeout, 5.0);
    EXPECT_EQ(ctx->attrMaskSeed, 0u);
    // A placeholder viewport and scissor until a board is bound.
    EXPECT_EQ(ctx->viewport.viewportWidth, 16);
    EXPECT_EQ(ctx->viewport.viewportHeight, 12);
    EXPECT_EQ(ctx->scissor.scissorBox[2], 16);
    EXPECT_EQ(ctx->scissor.scissorBox[3], 12);
    // The stacks sit on their second slot.
    EXPECT_EQ(ctx->modelviewDepth, 1);
    EXPECT_EQ(ctx->projectionDepth, 1);
    EXPECT_EQ(ctx->textureTransforms[0].depth, 1);
    EXPECT_FLOAT_EQ(ctx->viewport.depthRangeFar, 1.0f);
    // Every light is white, not only light 0.
    for (int i = 0; i < 8; ++i) {
        EXPECT_FLOAT_EQ(ctx->lighting.lights[i].diffuse[1], 1.0f) << "light " << i;
        EXPECT_FLOAT_EQ(ctx->lighting.lights[i].specular[2], 1.0f) << "light " << i;
        EXPECT_FLOAT_EQ(ctx->lighting.lights[i].spotCutoff, 180.0f) << "light " << i;
    }
    EXPECT_EQ(ctx->current.currentTexBit, 128u);
    EXPECT_EQ(ctx->current.currentTexCoordPtr, ctx->current.currentTexCoord[0]);
    EXPECT_EQ(ctx->current.rasterValid, 1u);
    EXPECT_EQ(ctx->texture.units[1].textureUnitId, (int32_t)(GL_TEXTURE0_SGIS + 1));
    EXPECT_EQ(ctx->texture.units[0].envMode, (GLenum)GL_MODULATE);
    EXPECT_EQ(ctx->texture.currentTextureUnit, &ctx->texture.units[0]);
    EXPECT_EQ(ctx->pixelStore[0].alignment, 4);
    EXPECT_EQ(ctx->pixelStore[1].alignment, 4);
    EXPECT_EQ(ctx->renderMode, (GLenum)GL_RENDER);
    EXPECT_EQ(ctx->pixelMode.readBuffer, (GLenum)GL_BACK);
    EXPECT_EQ(ctx->depth.clearDepthPacked, 0xFFFFu);
    EXPECT_FLOAT_EQ(ctx->listDiffuse[0], 0.8f);
    // The pipeline's scratch is there before the first batch.
    EXPECT_GE(ctx->pipelineVertexCapacity, 256);
    for (float* scalars : ctx->sseScratch)
        EXPECT_NE(scalars, nullptr);
    EXPECT_EQ(ctx->boundUnit, nullptr) << "the board opens at make-current, not at creation";

    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(0), rc), TRUE);
    EXPECT_EQ(ctx->boundUnit, &vlddb.units[0]);
    EXPECT_EQ(ctx->viewport.viewportWidth, vlddb.units[0].width);
    EXPECT_EQ(ctx->viewport.viewportHeight, vlddb.units[0].height);
    EXPECT_EQ(ctx->scissor.scissorBox[2], vlddb.units[0].width);
    EXPECT_EQ(vlddb.units[0].needStateInit, 0);
}

TEST_F(Lifecycle, SwapTimeoutAndVertexPoolingComeFromTheEnvironment)
{
    G_sys_setenv("KS_ENV_VLD_SWAP_TIMEOUT", "0.25");
    G_sys_setenv("KS_ENV_VLD_VERTEX_POOLING", "0");
    HGLRC rc = wglCreateContext(wsys_test_dc(0));
    G_sys_setenv("KS_ENV_VLD_SWAP_TIMEOUT", nullptr);
    G_sys_setenv("KS_ENV_VLD_VERTEX_POOLING", nullptr);
    ASSERT_NE(rc, nullptr);
    EXPECT_DOUBLE_EQ(ctx_of(rc)->swapTimeout, 0.25);
    EXPECT_EQ(ctx_of(rc)->attrMaskSeed, 0x80000000u);
}

TEST_F(Lifecycle, FirstMakeCurrentOpensAndProgrammesTheBoard)
{
    HGLRC rc = wglCreateContext(wsys_test_dc(0));
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(0), rc), TRUE);
    const int open = zvbTraceFind("grSstWinOpen", 0);
    ASSERT_GE(open, 0);
    // After the opening the context's own state is programmed: both buffers cleared, the
    // plain combine of iterated colour.
    const int front = zvbTraceFind("grRenderBuffer 0", open);
    ASSERT_GT(front, open);
    EXPECT_GT(zvbTraceFind("grBufferClear", front), front);
    EXPECT_TRUE(traced("grConstantColorValue 0xffffffff")) << traceText();
    EXPECT_TRUE(traced("grColorCombine 1 0 0 2 0")) << traceText();
    EXPECT_EQ(wglGetCurrentContext(), rc);
    EXPECT_EQ(wglGetCurrentDC(), wsys_test_dc(0));
}

TEST_F(Lifecycle, MakeCurrentTwiceMakesNoGlideCall)
{
    HGLRC rc = currentContext(0);
    zvbTraceClear();
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(0), rc), TRUE);
    EXPECT_EQ(zvbTraceCount(), 0) << traceText();
    EXPECT_EQ(vlddb.currentContexts, 1);
}

TEST_F(Lifecycle, SwitchOnOneBoardSavesAndLoadsStateInsteadOfReprogramming)
{
    HGLRC a = currentContext(0);
    HGLRC b = wglCreateContext(wsys_test_dc(1));
    ASSERT_NE(b, nullptr);

    zvbTraceClear();
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(1), b), TRUE);
    // A's state is saved; B has never been on the board, so the board is programmed for it.
    EXPECT_TRUE(traced("grGlideGetState")) << traceText();
    EXPECT_FALSE(traced("grGlideSetState")) << traceText();
    EXPECT_TRUE(traced("grBufferClear")) << traceText();
    EXPECT_FALSE(traced("grSstWinOpen")) << "the board stays open";
    EXPECT_NE(ctx_of(a)->savedGlideState, nullptr);
    EXPECT_EQ(vlddb.units[0].lastContext, ctx_of(a));

    zvbTraceClear();
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(0), a), TRUE);
    const int save = zvbTraceFind("grGlideGetState", 0);
    const int load = zvbTraceFind("grGlideSetState", 0);
    EXPECT_GE(save, 0) << traceText();
    EXPECT_GT(load, save) << traceText();
    EXPECT_FALSE(traced("grBufferClear")) << "no re-initialisation: " << traceText();
    EXPECT_FALSE(traced("grSstSelect")) << "one board: no selection";
    EXPECT_EQ(ctx_of(a)->boundUnit, &vlddb.units[0]);
    EXPECT_EQ(ctx_of(b)->boundUnit, nullptr);
    EXPECT_EQ(ctx_of(b)->lastUnit, &vlddb.units[0]);
}

TEST_F(Lifecycle, ContextsOnTwoBoardsSwitchBySelection)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "2");
    HGLRC a = wglCreateContext(wsys_test_dc(0));
    HGLRC b = wglCreateContext(wsys_test_dc(1));
    ASSERT_EQ(vlddb.unitCount, 2);
    ASSERT_EQ(wglUnitCurrentVELD(b, 1), 0);
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(0), a), TRUE);
    zvbTraceClear();
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(1), b), TRUE);
    EXPECT_TRUE(traced("grSstSelect 1")) << traceText();
    EXPECT_TRUE(traced("grSstWinOpen")) << "board 1 opens at its first use";
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[1]);
    EXPECT_EQ(vlddb.units[0].lastContext, ctx_of(a));

    // Back to A: board 0 still holds A's state, so selecting it is all there is to do.
    zvbTraceClear();
    ASSERT_EQ(wglMakeCurrent(wsys_test_dc(0), a), TRUE);
    EXPECT_TRUE(traced("grSstSelect 0")) << traceText();
    EXPECT_FALSE(traced("grGlideSetState")) << traceText();
    EXPECT_FALSE(traced("grBufferClear")) << traceText();
    EXPECT_EQ(vlddb.currentUnit, &vlddb.units[0]);
}

TEST_F(Lifecycle, ABoardThatWillNotOpenLeavesTheContextCurrentWithoutAUnit)
{
    HGLRC rc = wglCreateContext(wsys_test_dc(0));
    zvbFaultWinOpen(0, 1);
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(0), rc), FALSE);
    EXPECT_EQ(lastError(), 0xC0000000u);
    EXPECT_EQ(wglGetCurrentContext(), rc);
    EXPECT_EQ(ctx_of(rc)->boundUnit, nullptr);
    EXPECT_EQ(wglGetCurrentDC(), nullptr) << "the failed binding forgets its device context";

    // The opening is tried again at the next make-current.
    zvbFaultWinOpen(0, 0);
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(0), rc), TRUE);
    EXPECT_EQ(ctx_of(rc)->boundUnit, &vlddb.units[0]);
    EXPECT_EQ(vlddb.currentContexts, 1);
}

TEST_F(Lifecycle, ReleaseWithNullContextIgnoresTheDeviceContext)
{
    HGLRC rc = currentContext(0);
    EXPECT_EQ(wglMakeCurrent(nullptr, nullptr), TRUE);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(vlddb.currentContexts, 0);
    EXPECT_EQ(ctx_of(rc)->currentCount, 0);
    EXPECT_EQ(vlddb.units[0].currentContext, nullptr);
    EXPECT_EQ(vlddb.units[0].lastContext, ctx_of(rc));
}

TEST_F(Lifecycle, DeletingTheLastContextClosesTheBoardAndStopsTheLibrary)
{
    HGLRC a = currentContext(0);
    HGLRC b = wglCreateContext(wsys_test_dc(1));
    zvbTraceClear();
    EXPECT_EQ(wglDeleteContext(b), TRUE);
    EXPECT_FALSE(traced("grSstWinClose")) << "another context is alive";
    EXPECT_EQ(vlddb.initialised, 1);

    EXPECT_EQ(wglDeleteContext(a), TRUE);
    const int close = zvbTraceFind("grSstWinClose", 0);
    ASSERT_GE(close, 0) << traceText();
    EXPECT_GT(zvbTraceFind("grGlideShutdown", close), close) << traceText();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(vlddb.initialised, 0);
    EXPECT_EQ(vlddb.contextListHead, nullptr);
    EXPECT_EQ(vlddb.dcListHead, nullptr);
}

TEST_F(Lifecycle, ShutdownWithLiveContextsThenANewStart)
{
    zvbSetOption("ZVGL_BOARD_COUNT", "2");
    currentContext(0);
    wglCreateContext(wsys_test_dc(1));
    ASSERT_EQ(wglUnitDefaultVELD(1), 0);
    glShutdownVELD();
    EXPECT_EQ(vlddb.initialised, 0);
    EXPECT_EQ(vlddb.contextListHead, nullptr);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(traced("grGlideShutdown"));

    // The library comes up again, with the default unit back at 0.
    zvbTraceClear();
    HGLRC again = currentContext(0);
    EXPECT_EQ(vlddb.initialised, 1);
    int unit = -2;
    EXPECT_EQ(wglUnitDefaultGetVELD(&unit), 0);
    EXPECT_EQ(unit, 0);
    EXPECT_EQ(ctx_of(again)->boundUnit, &vlddb.units[0]);
    EXPECT_TRUE(traced("grGlideInit"));
    EXPECT_TRUE(traced("grSstWinOpen"));
}

TEST_F(Lifecycle, DestroyOfAContextOffEveryBoardOnlyFreesIt)
{
    HGLRC a = currentContext(0);
    vld_context* b = nullptr;
    ASSERT_EQ(KSP_vld_context_create(&b), 0);
    zvbTraceClear();
    EXPECT_EQ(KSP_vld_context_destroy(b), 0);
    EXPECT_EQ(zvbTraceCount(), 0) << traceText();
    EXPECT_EQ(wglGetCurrentContext(), a);
    EXPECT_EQ(vlddb.contextListHead, ctx_of(a));
    EXPECT_EQ(vlddb.contextListTail, ctx_of(a));
    EXPECT_EQ(KSP_vld_context_destroy(b), -1) << "a destroyed context is a bad handle";
}

TEST_F(Lifecycle, DestroyOfTheCurrentContextReleasesItFirst)
{
    HGLRC a = currentContext(0);
    HGLRC b = wglCreateContext(wsys_test_dc(1));
    EXPECT_EQ(KSP_vld_context_destroy(ctx_of(a)), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(vlddb.currentContexts, 0);
    EXPECT_EQ(vlddb.units[0].lastContext, nullptr);
    EXPECT_EQ(vlddb.units[0].currentContext, nullptr);
    // The next context on the board is programmed from scratch.
    zvbTraceClear();
    EXPECT_EQ(wglMakeCurrent(wsys_test_dc(1), b), TRUE);
    EXPECT_TRUE(traced("grBufferClear"));
}

TEST_F(Lifecycle, StartUpRunsOnce)
{
    KSP_vld_init_vld();
    ASSERT_EQ(vlddb.initialised, 1);
    EXPECT_EQ(traceCount("grGlideInit"), 1);
    void* lock = vlddb.criticalSections[1];
    KSP_vld_init_vld();
    EXPECT_EQ(traceCount("grGlideInit"), 1);
    EXPECT_EQ(vlddb.criticalSections[1], lock);
    for (int i = 0; i < VLD_MAX_UNITS; ++i)
        EXPECT_EQ(vlddb.units[i].index, i);
}

TEST_F(Lifecycle, HostedStartIsCurrentOnNoBoardUntilTheToolkitChooses)
{
    ASSERT_EQ(KSI_vld_init(), 0);
    vld_context* hosted = vldGc;
    ASSERT_NE(hosted, nullptr);
    EXPECT_EQ(vlddb.hosted, 1);
    EXPECT_EQ(hosted->boundUnit, nullptr);
    EXPECT_EQ(hosted->unitExplicit, 1);
    EXPECT_FALSE(traced("grSstWinOpen"));
    // State calls work without a board.
    glMatrixMode(GL_PROJECTION);
    EXPECT_EQ(hosted->transform.matrixMode, (GLenum)GL_PROJECTION);
}

} // namespace
