// The fixture of the device tests: vlddb cleared, every setting the device layer reads
// removed, the software board reset to its configuration from options, and helpers for the
// board's call trace and a bare current context.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <glide2/glide.h>
#include <zvgl/board_tool.h>

#include "support/env/env.h"
#include "vld/api/vld_frames.h"
#include "vld/glide/vld_device.h"

using Calls = std::vector<std::string>;

// Whether a setting can hold the empty value. The Windows runtime has none: setting a name to
// the empty text removes it.
#if defined(_WIN32)
inline constexpr bool kEmptySettingsExist = false;
#else
inline constexpr bool kEmptySettingsExist = true;
#endif

class DeviceTest : public ::testing::Test {
protected:
    vld_context* ctx = nullptr;

    void SetUp() override
    {
        zvbReset();
        clearSettings();
        std::memset((void*)&vlddb, 0, sizeof vlddb);
        vlddb.settings.verbosity = 1;
        vldGc = nullptr;
    }

    void TearDown() override
    {
        zvbTraceEnable(0);
        zvbReset();
        clearSettings();
        vldGc = nullptr;
        KSP_vld_free_aligned(ctx);
        ctx = nullptr;
        std::memset((void*)&vlddb, 0, sizeof vlddb);
    }

    static void clearSettings()
    {
        static const char* const names[] = {
            "VELDRA_VERBOSITY", "KS_ENV_TEXTURE_LOD_BLEND", "KS_ENV_TEXTURE_MIPMAP",
            "KS_ENV_VLD_VERTEX_POOLING", "KS_ENV_SINGLE_BUFFER", "KS_ENV_MIPMAP_DITHER",
            "KS_ENV_SPECULAR_DISABLE", "KS_ENV_VLD_DETAIL_VIA_IA", "KS_ENV_TEXTURE_ONE_TMU_EACH",
            "KS_ENV_GAMMA", "KS_ENV_VLD_FAST_PATH", "KS_ENV_VLD_TXR_OOW_SCALE", "KS_ENV_VLD_SSE",
            "KS_ENV_VLD_POLYGON_OFFSET_R", "KS_ENV_VLD_TEX_LOD_BIAS", "KS_ENV_DUMP_CONFIG",
            "KS_ENV_GLIDE_TMU_MIN", "KS_ENV_GLIDE_TMU_COUNT", "KS_ENV_REFRESH_DEFAULT",
            "KS_ENV_RESOLUTION_DEFAULT", "KS_ENV_VLD_MAIN_WINDOW", "KS_ENV_VLD_COLOR_BUFFERS",
            "KS_ENV_ALPHA_BUFFER", "KS_ENV_SST_DUALHEAD", "SST_DUALHEAD", "SSTV2_DUALHEAD",
            "KS_ENV_PASSTHRU_IGNORE", "ZVGL_DEVICE_TEST_VALUE",
        };
        for (const char* name : names)
            G_sys_setenv(name, nullptr);
    }

    static void setting(const char* name, const char* value) { G_sys_setenv(name, value); }
    static void board(const char* name, const char* value) { zvbSetOption(name, value); }

    // Starts Glide and enumerates the boards; the trace starts recording afterwards.
    void startBoards()
    {
        ASSERT_EQ(KSP_vld_init_hw(), 0);
        zvbTraceEnable(1);
        zvbTraceClear();
    }

    // A zeroed context, made current.
    vld_context* makeContext()
    {
        ctx = (vld_context*)KSP_vld_realloc_aligned(nullptr, sizeof(vld_context));
        std::memset((void*)ctx, 0, sizeof(vld_context));
        ctx->magic = VLD_CONTEXT_MAGIC;
        vldGc = ctx;
        return ctx;
    }

    // The Glide calls made since the last look; the trace is cleared.
    static Calls calls()
    {
        Calls lines;
        for (int i = 0; i < zvbTraceCount(); ++i)
            lines.push_back(zvbTraceLine(i));
        zvbTraceClear();
        return lines;
    }

    // The first call that starts with `prefix`, or the empty text.
    static std::string firstCall(const Calls& lines, const std::string& prefix)
    {
        for (const std::string& line : lines)
            if (line.compare(0, prefix.size(), prefix) == 0)
                return line;
        return "";
    }

    static int countCalls(const Calls& lines, const std::string& prefix)
    {
        int n = 0;
        for (const std::string& line : lines)
            n += line.compare(0, prefix.size(), prefix) == 0;
        return n;
    }
};
