// A default rendering context for tests, built directly, made current through vldGc.
#pragma once

#include <cstring>

#include "vld/api/vld_context.h"
#include "vld/api/vld_error.h"

// Owns one context for the life of a test and clears vlddb around it.
struct TestContext {
    vld_context* ctx;

    TestContext()
    {
        KSP_vld_error_reset();
        std::memset((void*)&vlddb, 0, sizeof vlddb);
        vlddb.settings.verbosity = 1;
        vlddb.settings.fastPath = 1;
        vlddb.settings.txrOowScale = -1.0f;
        ctx = (vld_context*)KSP_vld_realloc_aligned(nullptr, sizeof(vld_context));
        std::memset((void*)ctx, 0, sizeof(vld_context));
        ctx->magic = VLD_CONTEXT_MAGIC;
        ctx->executeFlag = 1;
        ctx->polygon.polygonModeFront = ctx->polygon.polygonModeBack = GL_FILL;
        vld_hint_attrib& h = ctx->hint;
        h.hintPerspectiveCorrection = h.hintPointSmooth = h.hintLineSmooth = h.hintPolygonSmooth =
            h.hintFog = h.hintClipVolume = h.hintTexCoordReduce = GL_DONT_CARE;
        float white[4] = {1, 1, 1, 1};
        std::memcpy(ctx->current.currentColor, white, sizeof white);
        ctx->current.currentNormal[2] = 1.0f;
        ctx->current.currentTexCoord[0][3] = ctx->current.currentTexCoord[1][3] = 1.0f;
        ctx->current.currentTexBit = 128;
        ctx->lighting.lightHighestEnabled = -1;
        ctx->textureTransforms[0].isIdentity[0] = ctx->textureTransforms[0].isIdentity[1] = 1;
        ctx->textureTransforms[0].depth = 0;
        vldGc = ctx;
    }

    ~TestContext()
    {
        vldGc = nullptr;
        KSP_vld_free_aligned(ctx->vertexArray);
        KSP_vld_free_aligned(ctx->indexArray);
        KSP_vld_free_aligned(ctx->expandedArray);
        KSP_vld_free_aligned(ctx->faceArray);
        KSP_vld_free_aligned(ctx->screenVertices);
        KSP_vld_free_aligned(ctx->eyeVertices);
        for (float* s : ctx->sseScratch)
            KSP_vld_free_aligned(s);
        KSP_vld_free_aligned(ctx->sseTmuBase);
        KSP_vld_free_aligned(ctx);
        KSP_vld_error_reset();
        vlddb.settings.verbosity = 0;
    }
};
