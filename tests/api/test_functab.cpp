// The stub reporter, the order check of the name table and the look-up by name.
#include <gtest/gtest.h>

#include <string>

#include "api_test_context.h"
#include "vld/api/vld_functab.h"

namespace {

TEST(FunctionTable, StubReportsOnceButSetsTheErrorEveryTime)
{
    TestContext tc;
    KSP_vld_func_tab_init();
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        tc.ctx->lastError = GL_NO_ERROR;
        vldFunctionNotImplemented(6);
        EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_OPERATION);
    }
    std::string out = testing::internal::GetCapturedStderr();
    EXPECT_EQ(out.rfind("Unimplemented function called one or more times: ", 0), 0u);
    EXPECT_EQ(out.find("Unimplemented", 1), std::string::npos) << out;
    EXPECT_EQ(vldCallCounters[6], 2u);

    // A row outside the table prints its number, every time.
    testing::internal::CaptureStderr();
    vldFunctionNotImplemented(900);
    vldFunctionNotImplemented(900);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unimplemented function called one or more times: 900\n"
              "Unimplemented function called one or more times: 900\n");

    // A new start-up tells the function again.
    KSP_vld_func_tab_init();
    testing::internal::CaptureStderr();
    vldFunctionNotImplemented(6);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST(FunctionTable, StubWithoutContextLogsNoRenderingContext)
{
    TestContext tc;
    KSP_vld_func_tab_init();
    vldGc = nullptr;
    testing::internal::CaptureStderr();
    vldFunctionNotImplemented(7);
    vldFunctionNotImplemented(7);
    std::string out = testing::internal::GetCapturedStderr();
    EXPECT_NE(out.find("reporting GL error: no rendering context\n"), std::string::npos);
    EXPECT_EQ(vlddb.errorLog[0].code, 0u);
    EXPECT_EQ(vlddb.errorLog[0].count, 2);
}

TEST(FunctionTable, VerbosityZeroKeepsStubsSilent)
{
    TestContext tc;
    KSP_vld_func_tab_init();
    vlddb.settings.verbosity = 0;
    testing::internal::CaptureStderr();
    vldFunctionNotImplemented(8);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_OPERATION);
}

TEST(FunctionTable, OrderCheckStopsAtTheFirstFault)
{
    const vld_name_row good[] = {{0, "NONE"}, {1, "A"}, {2, "B"}};
    const vld_name_row bad[] = {{0, "NONE"}, {2, "A"}, {2, "B"}, {1, "C"}};
    testing::internal::CaptureStderr();
    EXPECT_TRUE(KSL_vld_name_table_in_order(good, 3));
    EXPECT_FALSE(KSL_vld_name_table_in_order(bad, 4));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "KSP_vld_func_tab_init: table entries out of order\n");
}

void First() {}
void Second() {}

TEST(FunctionTable, LookUpIsExactAndTheFirstRowWins)
{
    const vld_proc_row table[] = {{"glSelectTextureEXT", First}, {"glSelectTextureSGIS", First},
                                  {"glSelectTextureEXT", Second}};
    EXPECT_EQ(KSL_vld_proc_lookup(table, 3, "glSelectTextureEXT"), &First);
    EXPECT_EQ(KSL_vld_proc_lookup(table, 3, "glSelectTexture"), nullptr);
    EXPECT_EQ(KSL_vld_proc_lookup(table, 3, "glselecttextureext"), nullptr);
    EXPECT_EQ(KSL_vld_proc_lookup(table, 3, nullptr), nullptr);
}

TEST(FunctionTable, ExtensionStringOrder)
{
    std::string s = vldExtensionString;
    EXPECT_EQ(s.rfind("GL_EXT_texture_object GL_SGIS_detail_texture ", 0), 0u);
    EXPECT_LT(s.find("GL_EXT_clip_volume_hint"), s.find("GL_VELD_texture_coord_reduce_imm_hint"));
    EXPECT_EQ(s.substr(s.size() - 14), "GL_VELD_setenv");
}

} // namespace
