// The library's real entry points: the stubs through their exported names, the look-up of
// wglGetProcAddress over the real table, the start-up check of the name table, and the
// folded forms landing in vertex capture.
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "api_test_context.h"
#include "vld/api/vld_entries.h"
#include "vld/api/vld_functab.h"

namespace {

alignas(16) unsigned char gZeros[256];

template <typename T>
T zero_arg()
{
    if constexpr (std::is_pointer_v<T>)
        return (T)(void*)gZeros;
    else
        return T{};
}

// Calls f with zeros and says whether its result, if it has one, is zero.
template <typename R, typename... A>
bool call_with_zeros(R(APIENTRY* f)(A...))
{
    if constexpr (std::is_void_v<R>) {
        f(zero_arg<A>()...);
        return true;
    } else {
        return f(zero_arg<A>()...) == R{};
    }
}

struct StubRow {
    int row;
    const char* name;
    bool (*invoke)();
};
#define TEST_STUB_YES(name) StubRow{VLD_ROW_##name, #name, [] { return call_with_zeros(&::name); }},
#define TEST_STUB_NO(name)
#define TEST_STUB_KIND_STUB TEST_STUB_YES
#define TEST_STUB_KIND_WGL_STUB TEST_STUB_YES
#define TEST_STUB_KIND_ROUTED TEST_STUB_NO
#define TEST_STUB_KIND_ROUTED_ENABLE TEST_STUB_NO
#define TEST_STUB_KIND_ROUTED_STENCILOP TEST_STUB_NO
#define TEST_STUB_KIND_QUERY TEST_STUB_NO
#define TEST_STUB_KIND_QUERY_EXEC TEST_STUB_NO
#define TEST_STUB_KIND_DIRECT TEST_STUB_NO
#define TEST_STUB_KIND_FOLD1 TEST_STUB_NO
#define TEST_STUB_KIND_FOLD2 TEST_STUB_NO
#define TEST_STUB_KIND_FOLD3 TEST_STUB_NO
#define TEST_STUB_KIND_FOLD4 TEST_STUB_NO
#define TEST_STUB_KIND_FOLD_DIVIDE TEST_STUB_NO
#define TEST_STUB_KIND_FOLD_RECT TEST_STUB_NO
#define TEST_STUB_KIND_FOLD_PARAM TEST_STUB_NO
#define TEST_STUB_KIND_FOLD_PARAM_VEC TEST_STUB_NO
#define TEST_STUB_KIND_GDI TEST_STUB_NO
#define TEST_STUB_KIND_WGL TEST_STUB_NO
#define TEST_STUB_KIND_NAME TEST_STUB_NO
#define TEST_STUB_ROW(ret, name, params, args, kind, impl) TEST_STUB_KIND_##kind(name)
const StubRow kStubs[] = {VLD_GL_ENTRIES(TEST_STUB_ROW)};

class EntryPoints : public testing::Test {
protected:
    void SetUp() override { KSP_vld_func_tab_init(); }
    TestContext tc;
};

// glAccum called twice: one line, two errors.
TEST_F(EntryPoints, StubReportsOnceAndSetsTheErrorAtEveryCall)
{
    testing::internal::CaptureStderr();
    glAccum(GL_LOAD, 1.0f);
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_OPERATION);
    tc.ctx->lastError = GL_NO_ERROR;
    glAccum(GL_LOAD, 1.0f);
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_OPERATION);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unimplemented function called one or more times: glAccum\n");
}

// Every stub of the table, gl and wgl, through its exported name: the line names the
// function of its own row, once; the error is set; a result is zero.
TEST_F(EntryPoints, EveryStubNamesItsOwnRow)
{
    EXPECT_EQ(std::size(kStubs), 93u + 9u);
    for (const StubRow& stub : kStubs) {
        for (int call = 0; call < 2; ++call) {
            tc.ctx->lastError = GL_NO_ERROR;
            testing::internal::CaptureStderr();
            EXPECT_TRUE(stub.invoke()) << stub.name << " returns non-zero";
            const std::string out = testing::internal::GetCapturedStderr();
            EXPECT_EQ(out, call == 0 ? "Unimplemented function called one or more times: " +
                                           std::string(stub.name) + "\n"
                                     : "")
                << stub.name;
            EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_OPERATION) << stub.name;
        }
        EXPECT_EQ(vldCallCounters[stub.row], 2u) << stub.name;
    }
}

// The real name table is in order: start-up says nothing and clears the counters.
TEST_F(EntryPoints, StartUpCheckOfTheRealTable)
{
    testing::internal::CaptureStderr();
    glAccum(GL_LOAD, 1.0f);
    testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    KSP_vld_func_tab_init();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(vldCallCounters[VLD_ROW_glAccum], 0u);
    EXPECT_EQ(vldNameTableCount, 418);
    EXPECT_STREQ(vldNameTable[VLD_ROW_glAccum].name, "glAccum");
    EXPECT_STREQ(vldNameTable[417].name, "wglUseFontOutlinesW");
}

PROC as_proc(void* f)
{
    return (PROC)f;
}

// Hits lead to the exported functions, EXT multitexture spellings to their SGIS twins;
// names outside the table miss, exported or not; no context is needed.
TEST_F(EntryPoints, GetProcAddressHitsAndMisses)
{
    vldGc = nullptr;
    EXPECT_EQ(wglGetProcAddress("glBindTextureEXT"), as_proc((void*)&glBindTextureEXT));
    EXPECT_EQ(wglGetProcAddress("glMultiTexCoord2fSGIS"), as_proc((void*)&glMultiTexCoord2fSGIS));
    EXPECT_EQ(wglGetProcAddress("glMultiTexCoord2fEXT"), as_proc((void*)&glMultiTexCoord2fSGIS));
    EXPECT_EQ(wglGetProcAddress("glSelectTextureEXT"), as_proc((void*)&glSelectTextureSGIS));
    EXPECT_EQ(wglGetProcAddress("glEnableImmVELD"), as_proc((void*)&glEnableImmVELD));
    EXPECT_NE(wglGetProcAddress("KSI_vld_txr_set_state_system"), nullptr);
    EXPECT_EQ(wglGetProcAddress("glBegin"), nullptr);
    EXPECT_EQ(wglGetProcAddress("glAccum"), nullptr);
    EXPECT_EQ(wglGetProcAddress("glBindTextureext"), nullptr);
    EXPECT_EQ(wglGetProcAddress("glBindTextureEXT "), nullptr);
    EXPECT_EQ(wglGetProcAddress(""), nullptr);
    EXPECT_EQ(wglGetProcAddress(nullptr), nullptr);
    vldGc = tc.ctx;
}

// Every row of the look-up table is found, and leads to the function the table names.
TEST_F(EntryPoints, GetProcAddressCoversTheWholeTable)
{
    int rows = 0;
#define TEST_PROC_ROW(name, function)                                                         \
    EXPECT_EQ(wglGetProcAddress(#name), as_proc((void*)&::function)) << #name;                 \
    ++rows;
    VLD_PROC_ENTRIES(TEST_PROC_ROW)
#undef TEST_PROC_ROW
    EXPECT_EQ(rows, 122);
    EXPECT_EQ(vldProcTableCount, 122);
}

// Folded forms reach vertex capture through the real direct layer: w = 0 keeps x, y, z;
// a rectangle is captured corner by corner from (x1, y1).
TEST_F(EntryPoints, FoldedVerticesReachCapture)
{
    glBegin(GL_POINTS);
    glVertex4f(2, 4, 6, 0);
    glVertex4f(2, 4, 6, 2);
    glVertex2s(7, 8);
    ASSERT_EQ(tc.ctx->vertexCount, 3);
    const float want[3][3] = {{2, 4, 6}, {1, 2, 3}, {7, 8, 0}};
    for (int i = 0; i < 3; ++i)
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(tc.ctx->vertexArray[i].position[k], want[i][k]) << i << "," << k;
    glEnd();

    glRecti(1, 2, 3, 4);
    EXPECT_EQ(tc.ctx->inBeginEnd, 0);
    const float corners[4][2] = {{1, 2}, {3, 2}, {3, 4}, {1, 4}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(tc.ctx->vertexArray[i].position[0], corners[i][0]) << i;
        EXPECT_EQ(tc.ctx->vertexArray[i].position[1], corners[i][1]) << i;
    }
}

// Without a current context, entries do nothing and record nothing; a stub's error goes
// to the log as "no rendering context".
TEST_F(EntryPoints, NoContextRecordsNothing)
{
    vldGc = nullptr;
    glEnable(GL_FOG);
    glColor3f(1, 0, 0);
    glFlush();
    glBegin(GL_TRIANGLES);
    glVertex3f(0, 0, 0);
    glEnd();
    glTexEnviv(GL_TEXTURE_ENV, 0x1234, (const GLint*)gZeros);
    EXPECT_EQ(glGetError(), (GLenum)GL_NO_ERROR);
    EXPECT_EQ(vlddb.errorLog[0].count, 0);
    testing::internal::CaptureStderr();
    glClipPlane(GL_CLIP_PLANE0, (const GLdouble*)gZeros);
    const std::string out = testing::internal::GetCapturedStderr();
    EXPECT_NE(out.find("no rendering context"), std::string::npos) << out;
    vldGc = tc.ctx;
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_NO_ERROR);
    EXPECT_EQ(tc.ctx->vertexCount, 0);
}

// glGetError reads the error recorded last and clears it; the next read finds none.
TEST_F(EntryPoints, GetErrorReadsTheLastErrorAndClearsIt)
{
    testing::internal::CaptureStderr();
    glPopAttrib(); // an empty stack: GL_STACK_UNDERFLOW
    glLineWidth(-1.0f);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(glGetError(), (GLenum)GL_INVALID_VALUE);
    EXPECT_EQ(glGetError(), (GLenum)GL_NO_ERROR);
    EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_NO_ERROR);
}

// glRenderMode counts as not implemented at every call, told once, and answers 0; GL_RENDER
// is taken, inside glBegin/glEnd nothing is, any other mode is a bad enumerant. The error
// glGetError sees is the last of the call.
TEST_F(EntryPoints, RenderModeTakesOnlyRenderAndAlwaysReportsTheCall)
{
    testing::internal::CaptureStderr();
    tc.ctx->renderMode = 0;
    EXPECT_EQ(glRenderMode(GL_RENDER), 0);
    EXPECT_EQ(tc.ctx->renderMode, (GLenum)GL_RENDER);
    EXPECT_EQ(glGetError(), (GLenum)GL_INVALID_OPERATION);
    EXPECT_EQ(glRenderMode(GL_SELECT), 0);
    EXPECT_EQ(glGetError(), (GLenum)GL_INVALID_ENUM);
    EXPECT_EQ(glRenderMode(GL_FEEDBACK), 0);
    EXPECT_EQ(tc.ctx->renderMode, (GLenum)GL_RENDER);
    glBegin(GL_POINTS);
    tc.ctx->renderMode = 0;
    EXPECT_EQ(glRenderMode(GL_RENDER), 0);
    EXPECT_EQ(tc.ctx->renderMode, 0u);
    EXPECT_EQ(glGetError(), (GLenum)GL_INVALID_OPERATION);
    glEnd();
    const std::string out = testing::internal::GetCapturedStderr();
    EXPECT_EQ(out.find("Unimplemented function called one or more times: glRenderMode\n"), 0u) << out;
    EXPECT_EQ(out.find("Unimplemented", 1), std::string::npos) << out;
    EXPECT_NE(out.find("setting gl error GL_INVALID_ENUM: 0x1c01"), std::string::npos) << out;
    EXPECT_EQ(vldCallCounters[VLD_ROW_glRenderMode], 4u);
}

// The SGIS filter-curve functions pass their frames and are reported by the immediate layer
// as the stubs are: told once, an error at every call.
TEST_F(EntryPoints, FilterCurveFunctionsReportLikeStubs)
{
    const GLfloat points[4] = {0, 0, 1, 1};
    GLfloat out[4] = {};
    testing::internal::CaptureStderr();
    for (int call = 0; call < 2; ++call) {
        glSharpenTexFuncSGIS(GL_TEXTURE_2D, 2, points);
        glGetSharpenTexFuncSGIS(GL_TEXTURE_2D, out);
        glTexFilterFuncSGIS(GL_TEXTURE_2D, GL_LINEAR, 4, points);
        tc.ctx->lastError = GL_NO_ERROR;
        glGetTexFilterFuncSGIS(GL_TEXTURE_2D, GL_LINEAR, out);
        EXPECT_EQ(glGetError(), (GLenum)GL_INVALID_OPERATION);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unimplemented function called one or more times: glSharpenTexFuncSGIS\n"
              "Unimplemented function called one or more times: glGetSharpenTexFuncSGIS\n"
              "Unimplemented function called one or more times: glTexFilterFuncSGIS\n"
              "Unimplemented function called one or more times: glGetTexFilterFuncSGIS\n");
    for (int row : {VLD_ROW_glSharpenTexFuncSGIS, VLD_ROW_glGetSharpenTexFuncSGIS, VLD_ROW_glTexFilterFuncSGIS,
                    VLD_ROW_glGetTexFilterFuncSGIS})
        EXPECT_EQ(vldCallCounters[row], 2u) << row;
    EXPECT_EQ(out[0], 0.0f);
}

} // namespace
