// The fixture of the state tests: a context with the initial state, current on a unit
// whose board is a software board with an open window, and the board's call trace.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <glide2/glide.h>
#include <zvgl/board_tool.h>

#include "api_test_context.h"
#include "vld/state/state.h"

class StateTest : public ::testing::Test {
protected:
    TestContext tc;
    vld_context* ctx = tc.ctx;
    vld_unit* unit = nullptr;

    void SetUp() override
    {
        zvbReset();
        grGlideInit();
        grSstSelect(0);
        ASSERT_EQ(grSstWinOpen(0, GR_RESOLUTION_640x480, GR_REFRESH_60Hz, GR_COLORFORMAT_RGBA,
                               GR_ORIGIN_LOWER_LEFT, 2, 1),
                  FXTRUE);
        KSP_vld_state_defaults(ctx);
        ctx->mirrorSign = 1.0f;
        ctx->depthScale = 1.0f;
        ctx->fogDepthScale = 1.0f;
        unit = &vlddb.units[0];
        unit->opened = unit->windowOpen = 1;
        unit->depthBuffer = 1;
        unit->width = 640;
        unit->height = 480;
        vlddb.unitCount = 1;
        vlddb.currentUnit = unit;
        vlddb.settings.polygonOffsetR = 140.0f;
        zvbTraceEnable(1);
        zvbTraceClear();
    }

    void TearDown() override
    {
        zvbTraceEnable(0);
        zvbReset();
    }

    // The Glide calls made since the last look, and the trace cleared.
    static std::vector<std::string> calls()
    {
        std::vector<std::string> lines;
        for (int i = 0; i < zvbTraceCount(); ++i)
            lines.push_back(zvbTraceLine(i));
        zvbTraceClear();
        return lines;
    }

    // The error of the context, cleared.
    GLenum error()
    {
        GLenum e = ctx->lastError;
        ctx->lastError = GL_NO_ERROR;
        return e;
    }
};

using Calls = std::vector<std::string>;
