// A context with the transformation and lighting state of a new context, made current
// through vldGc for one test.
#pragma once

#include <cstring>

#include "vld/api/vld_context.h"
#include "vld/api/vld_error.h"
#include "vld/grxf/vld_dispatch.h"
#include "vld/state/state_light.h"
#include "vld/state/state_matrix.h"

struct GeometryContext {
    vld_context* ctx;

    GeometryContext()
    {
        KSP_vld_error_reset();
        std::memset((void*)&vlddb, 0, sizeof vlddb);
        vlddb.settings.txrOowScale = -1.0f;
        ctx = (vld_context*)KSP_vld_realloc_aligned(nullptr, sizeof(vld_context));
        std::memset((void*)ctx, 0, sizeof(vld_context));
        ctx->magic = VLD_CONTEXT_MAGIC;
        ctx->executeFlag = 1;
        ctx->polygon.polygonModeFront = ctx->polygon.polygonModeBack = GL_FILL;
        ctx->polygon.cullFaceMode = GL_BACK;
        ctx->polygon.frontFace = GL_CCW;
        ctx->hint.hintClipVolume = GL_DONT_CARE;
        const float white[4] = {1, 1, 1, 1};
        std::memcpy(ctx->current.currentColor, white, sizeof white);
        ctx->current.currentNormal[2] = 1.0f;
        ctx->current.currentTexCoord[0][3] = ctx->current.currentTexCoord[1][3] = 1.0f;
        ctx->current.currentTexBit = 128;
        ctx->texture.currentTextureUnit = &ctx->texture.units[0];
        vldGc = ctx;
        KSP_vld_init_light_state(ctx);
        KSP_vld_init_matrix_state(ctx);
        KSP_vld_execute_glViewport(ctx, 0, 0, 640, 480);
    }

    ~GeometryContext()
    {
        vldGc = nullptr;
        KSP_vld_free_aligned(ctx->screenVertices);
        KSP_vld_free_aligned(ctx->eyeVertices);
        for (float* s : ctx->sseScratch)
            KSP_vld_free_aligned(s);
        KSP_vld_free_aligned(ctx->sseTmuBase);
        KSP_vld_free_aligned(ctx);
        KSP_vld_error_reset();
    }
};
