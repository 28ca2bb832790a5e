// GL error reporting: what is printed, what is logged and counted, what glGetError sees.
#include <gtest/gtest.h>

#include <string>

#include "api_test_context.h"

extern "C" const GLubyte* gluErrorString(GLenum code);

namespace {

std::string StderrOf(void (*body)())
{
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
}

TEST(GlErrors, SamePlaceIsToldOnceAndCounted)
{
    TestContext tc;
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i)
        KSP_vld_set_gl_error_fl(tc.ctx, GL_INVALID_VALUE, "state.cpp", 12);
    KSP_vld_set_gl_error_fl(tc.ctx, GL_INVALID_VALUE, "state.cpp", 13);
    std::string out = testing::internal::GetCapturedStderr();
    EXPECT_EQ(out, "File state.cpp, line 12: setting gl error: GL_INVALID_VALUE\n"
                   "File state.cpp, line 13: setting gl error: GL_INVALID_VALUE\n");
    EXPECT_EQ(vlddb.errorLog[0].count, 2);
    EXPECT_EQ(vlddb.errorLog[1].count, 1);
}

TEST(GlErrors, LastErrorWinsAndEveryFormStoresIt)
{
    TestContext tc;
    testing::internal::CaptureStderr();
    KSP_vld_set_gl_error(tc.ctx, GL_INVALID_VALUE);
    KSP_vld_set_gl_error_quiet(tc.ctx, GL_STACK_OVERFLOW);
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_STACK_OVERFLOW);
    KSP_vld_set_gl_error_enum_quiet_fl(tc.ctx, 0x1234, "a.cpp", 1);
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_ENUM);
    KSP_vld_set_gl_error_enum(tc.ctx, 0xBEEF);
    std::string out = testing::internal::GetCapturedStderr();
    EXPECT_EQ(out, "KSP_vld_set_gl_error: setting gl error: GL_INVALID_VALUE\n"
                   "KSP_vld_set_gl_error_enum: setting gl error GL_INVALID_ENUM: 0xbeef\n");
    // Quiet forms neither print nor log the error itself.
    EXPECT_EQ(vlddb.errorLog[2].count, 0);
}

TEST(GlErrors, NoContextIsLoggedAndToldOncePerPlace)
{
    TestContext tc;
    std::string out = StderrOf([] {
        KSP_vld_set_gl_error_quiet_fl(nullptr, GL_INVALID_OPERATION, "stub.cpp", 7);
        KSP_vld_set_gl_error_quiet_fl(nullptr, GL_INVALID_OPERATION, "stub.cpp", 7);
        KSP_vld_set_gl_error_enum_quiet_fl(nullptr, 5, "e.cpp", 9);
        KSP_vld_set_gl_error_quiet(nullptr, GL_INVALID_OPERATION);
    });
    EXPECT_EQ(out, "KSP_vld_set_gl_error: File stub.cpp, line 7: reporting GL error: no rendering context\n"
                   "KSP_vld_set_gl_error_enum: File e.cpp, line 9: reporting GL invalid enum: no "
                   "rendering context\n"
                   "KSP_vld_set_gl_error: reporting GL error: no rendering context\n");
    EXPECT_EQ(vlddb.errorLog[0].code, 0u);
    EXPECT_EQ(vlddb.errorLog[0].count, 2);
}

TEST(GlErrors, VerbosityZeroSilencesButKeepsLastError)
{
    TestContext tc;
    vlddb.settings.verbosity = 0;
    testing::internal::CaptureStderr();
    KSP_vld_set_gl_error_fl(tc.ctx, GL_INVALID_VALUE, "x.cpp", 1);
    KSP_vld_set_gl_error_quiet_fl(nullptr, GL_INVALID_VALUE, "x.cpp", 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_VALUE);
    EXPECT_EQ(vlddb.errorLog[0].count, 0);
}

TEST(GlErrors, FullLogTellsEveryTimeAndSummaryOmitsTheOverflow)
{
    TestContext tc;
    testing::internal::CaptureStderr();
    for (int line = 1; line <= 32; ++line)
        KSP_vld_set_gl_error_fl(tc.ctx, GL_INVALID_VALUE, "f.cpp", line);
    testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    KSP_vld_set_gl_error_fl(tc.ctx, GL_OUT_OF_MEMORY, "f.cpp", 99);
    KSP_vld_set_gl_error_fl(tc.ctx, GL_OUT_OF_MEMORY, "f.cpp", 99);
    std::string out = testing::internal::GetCapturedStderr();
    EXPECT_EQ(out, "File f.cpp, line 99: setting gl error: GL_OUT_OF_MEMORY\n"
                   "File f.cpp, line 99: setting gl error: GL_OUT_OF_MEMORY\n");
    std::string summary = StderrOf(KSP_vld_error_summary);
    EXPECT_EQ(summary.find("line 99"), std::string::npos);
    EXPECT_NE(summary.find("File f.cpp, line 32: 1 occurence of GL_INVALID_VALUE\n"), std::string::npos);
}

TEST(GlErrors, SummaryTexts)
{
    TestContext tc;
    testing::internal::CaptureStderr();
    KSP_vld_set_gl_error_fl(tc.ctx, GL_STACK_UNDERFLOW, "m.cpp", 4);
    KSP_vld_set_gl_error_fl(tc.ctx, GL_STACK_UNDERFLOW, "m.cpp", 4);
    KSP_vld_set_gl_error_enum_fl(tc.ctx, 0x1B04, "m.cpp", 5);
    KSP_vld_set_gl_error(tc.ctx, 0x9999);
    KSP_vld_set_gl_error_quiet_fl(nullptr, GL_INVALID_OPERATION, "n.cpp", 6);
    testing::internal::GetCapturedStderr();
    std::string summary = StderrOf(KSP_vld_error_summary);
    EXPECT_EQ(summary, "\n\nVeldra: Error Summary:\n"
                       "File m.cpp, line 4: 2 occurences of GL_STACK_UNDERFLOW\n"
                       "File m.cpp, line 5: 1 occurence of GL_INVALID_ENUM = 0x1b04\n"
                       "1 occurence of unknown_gl_error_0x9999\n"
                       "File n.cpp, line 6: 1 occurence of no rendering context");
    KSP_vld_error_reset();
    EXPECT_EQ(StderrOf(KSP_vld_error_summary), "");
    EXPECT_EQ(vlddb.errorLog[0].file, nullptr);
}

TEST(GlErrors, GluErrorStringTexts)
{
    EXPECT_STREQ((const char*)gluErrorString(GL_NO_ERROR), "no error");
    EXPECT_STREQ((const char*)gluErrorString(GL_INVALID_ENUM), "invalid enumerant");
    EXPECT_STREQ((const char*)gluErrorString(GL_OUT_OF_MEMORY), "out of memory");
    EXPECT_STREQ((const char*)gluErrorString(GL_STACK_UNDERFLOW), "stack underflow");
    EXPECT_STREQ((const char*)gluErrorString(1290), "unknown OpenGL error");
}

} // namespace
