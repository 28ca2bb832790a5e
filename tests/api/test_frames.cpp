// The entry frames in front of recording layers: which layers every entry reaches under each
// pair of routing bytes, in which order, and the conversions of the folded families.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "api_test_context.h"
#include "frames_under_test.h"
#include "vld/api/vld_functab.h"

namespace {

// ---- The table as data ---------------------------------------------------------------------

enum class Kind {
    ROUTED, ROUTED_ENABLE, ROUTED_STENCILOP, QUERY, QUERY_EXEC, DIRECT,
    FOLD1, FOLD2, FOLD3, FOLD4, FOLD_DIVIDE, FOLD_RECT, FOLD_PARAM, FOLD_PARAM_VEC,
    STUB, GDI, WGL, WGL_STUB, NAME, IMM_NOTEST, OWN,
};

// Arguments for a call that only tests routing: zeros, and for pointers a zeroed buffer
// large enough for any vector an entry reads.
alignas(16) unsigned char gZeros[256];

template <typename T>
T zero_arg()
{
    if constexpr (std::is_pointer_v<T>)
        return (T)(void*)gZeros;
    else
        return T{};
}

template <typename R, typename... A>
void call_with_zeros(R(APIENTRY* f)(A...))
{
    f(zero_arg<A>()...);
}

struct Row {
    std::string_view name;
    Kind kind;
    std::string_view impl;
    void (*invoke)();
};

#define TEST_INVOKER(name) [] { call_with_zeros(&VLD_FRAME_NAME(name)); }
#define TEST_NO_INVOKER(name) nullptr
#define TEST_INV_ROUTED TEST_INVOKER
#define TEST_INV_ROUTED_ENABLE TEST_INVOKER
#define TEST_INV_ROUTED_STENCILOP TEST_INVOKER
#define TEST_INV_QUERY TEST_INVOKER
#define TEST_INV_QUERY_EXEC TEST_INVOKER
#define TEST_INV_DIRECT TEST_INVOKER
#define TEST_INV_FOLD1 TEST_INVOKER
#define TEST_INV_FOLD2 TEST_INVOKER
#define TEST_INV_FOLD3 TEST_INVOKER
#define TEST_INV_FOLD4 TEST_INVOKER
#define TEST_INV_FOLD_DIVIDE TEST_INVOKER
#define TEST_INV_FOLD_RECT TEST_INVOKER
#define TEST_INV_FOLD_PARAM TEST_INVOKER
#define TEST_INV_FOLD_PARAM_VEC TEST_INVOKER
#define TEST_INV_STUB TEST_INVOKER
#define TEST_INV_GDI TEST_INVOKER
#define TEST_INV_WGL TEST_NO_INVOKER
#define TEST_INV_WGL_STUB TEST_INVOKER
#define TEST_INV_NAME TEST_NO_INVOKER
#define TEST_INV_IMM_NOTEST TEST_INVOKER
#define TEST_INV_OWN TEST_NO_INVOKER
#define TEST_ROW(ret, name, params, args, kind, impl) Row{#name, Kind::kind, #impl, TEST_INV_##kind(name)},
const Row kRows[] = {VLD_GL_ENTRIES(TEST_ROW) VLD_EXT_ENTRIES(TEST_ROW)};

const Row* find_row(std::string_view name)
{
    for (const Row& row : kRows)
        if (row.name == name)
            return &row;
    return nullptr;
}

// The routing bytes of a test, as (compileFlag, executeFlag).
struct Flags {
    uint8_t compile;
    uint8_t execute;
};
constexpr Flags kOutsideList{0, 1};
constexpr Flags kCompile{1, 0};
constexpr Flags kCompileAndExecute{1, 1};

// What an entry must reach, written from the rules of each kind, independently of the
// frames: the layer calls in order, and whether it records GL_INVALID_OPERATION (stubs) or
// GL_INVALID_ENUM (a vector parameter the frame does not know; zero is never one).
struct Expect {
    std::vector<std::string> calls;
    GLenum error = GL_NO_ERROR;
};

void append(Expect& to, const Expect& from)
{
    to.calls.insert(to.calls.end(), from.calls.begin(), from.calls.end());
    if (from.error != GL_NO_ERROR)
        to.error = from.error;
}

Expect expected(const Row& row, Flags f, bool context)
{
    const std::string im = "IM:" + std::string(row.impl);
    const std::string lc = "LC:" + std::string(row.impl);
    Expect e;
    switch (row.kind) {
    case Kind::ROUTED:
    case Kind::ROUTED_ENABLE:
        if (context && f.compile)
            e.calls.push_back(lc);
        if (context && f.execute)
            e.calls.push_back(im);
        break;
    case Kind::ROUTED_STENCILOP:
        if (context && f.compile)
            e.calls.push_back(lc);
        if (context && f.execute)
            e.calls.push_back(lc);
        break;
    case Kind::QUERY:
    case Kind::IMM_NOTEST:
        if (context)
            e.calls.push_back(im);
        break;
    case Kind::QUERY_EXEC:
        if (context && f.execute)
            e.calls.push_back(im);
        break;
    case Kind::DIRECT:
        e.calls.push_back("DO:" + std::string(row.impl));
        break;
    case Kind::FOLD1: case Kind::FOLD2: case Kind::FOLD3: case Kind::FOLD4:
    case Kind::FOLD_DIVIDE: case Kind::FOLD_PARAM:
        append(e, expected(*find_row(row.impl), f, context));
        break;
    case Kind::FOLD_RECT:
        append(e, expected(*find_row("glBegin"), f, context));
        for (int i = 0; i < 4; ++i)
            append(e, expected(*find_row(row.impl), f, context));
        append(e, expected(*find_row("glEnd"), f, context));
        break;
    case Kind::FOLD_PARAM_VEC:
        if (context)
            e.error = GL_INVALID_ENUM;
        break;
    case Kind::STUB:
    case Kind::WGL_STUB:
        if (context)
            e.error = GL_INVALID_OPERATION;
        break;
    case Kind::GDI:
        e.calls.push_back("WGL:" + std::string(row.impl));
        break;
    case Kind::WGL: case Kind::NAME: case Kind::OWN:
        break;
    }
    return e;
}

std::vector<std::string> recorded()
{
    std::vector<std::string> keys;
    for (const LayerCall& c : gLayerCalls)
        keys.push_back(c.key());
    return keys;
}

class Frames : public testing::Test {
protected:
    void SetUp() override
    {
        KSP_vld_func_tab_init();
        vlddb.settings.verbosity = 0;
        gLayerCalls.clear();
        gCompileDropsContext = false;
    }
    void TearDown() override { gCompileDropsContext = false; }

    void route(Flags f)
    {
        tc.ctx->compileFlag = f.compile;
        tc.ctx->executeFlag = f.execute;
    }

    TestContext tc;
};

// ---- Routing over the whole table ----------------------------------------------------------

// Every entry with a frame, under the three pairs of routing bytes and without a context,
// reaches exactly the layers its kind promises, in order, and records exactly the error it
// promises. A misplaced kind in the table, a frame that executes before it compiles, or a
// fold that lands on the wrong entry all show here.
TEST_F(Frames, EveryEntryReachesTheLayersOfItsKind)
{
    int checked = 0;
    for (const Row& row : kRows) {
        if (!row.invoke)
            continue;
        for (Flags f : {kOutsideList, kCompile, kCompileAndExecute}) {
            for (bool context : {true, false}) {
                route(f);
                tc.ctx->lastError = GL_NO_ERROR;
                gLayerCalls.clear();
                vldGc = context ? tc.ctx : nullptr;
                row.invoke();
                vldGc = tc.ctx;
                const Expect e = expected(row, f, context);
                EXPECT_EQ(recorded(), e.calls) << row.name << " compile=" << int(f.compile)
                                               << " execute=" << int(f.execute)
                                               << " context=" << context;
                EXPECT_EQ(tc.ctx->lastError, context ? e.error : (GLenum)GL_NO_ERROR) << row.name;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 6 * 400);
}

// The cases that applications meet most, spelt out.
TEST_F(Frames, CompileRecordsOnlyAndCompileAndExecuteRecordsFirst)
{
    route(kCompile);
    vldtest_glColor3f(0.25f, 0.5f, 0.75f);
    ASSERT_EQ(gLayerCalls.size(), 1u);
    EXPECT_EQ(gLayerCalls[0].key(), "LC:Color3f");
    EXPECT_EQ(gLayerCalls[0].values, (std::vector<double>{0.25, 0.5, 0.75}));

    gLayerCalls.clear();
    route(kCompileAndExecute);
    vldtest_glColor3f(0.25f, 0.5f, 0.75f);
    EXPECT_EQ(recorded(), (std::vector<std::string>{"LC:Color3f", "IM:Color3f"}));

    // Queries act at once during compile, and nothing goes into the list.
    gLayerCalls.clear();
    route(kCompile);
    vldtest_glIsEnabled(GL_FOG);
    vldtest_glGetError();
    EXPECT_EQ(recorded(), (std::vector<std::string>{"IM:IsEnabled", "IM:GetError"}));

    // glReadPixels only while executing; glStencilOp records even outside a list.
    gLayerCalls.clear();
    vldtest_glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, gZeros);
    route(kOutsideList);
    vldtest_glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    EXPECT_EQ(recorded(), (std::vector<std::string>{"LC:StencilOp"}));
}

// The context is read again after the compile layer: if it went away, the immediate layer
// is not reached.
TEST_F(Frames, ContextIsReadAgainAfterCompiling)
{
    route(kCompileAndExecute);
    gCompileDropsContext = true;
    vldtest_glShadeModel(GL_FLAT);
    EXPECT_EQ(recorded(), (std::vector<std::string>{"LC:ShadeModel"}));
    EXPECT_EQ(vldGc, nullptr);
    vldGc = tc.ctx;
}

// Compiling glEnable(GL_COLOR_MATERIAL) without executing turns the bit on at once;
// glDisable has no such line, and no other capability is touched.
TEST_F(Frames, EnableColorMaterialWhileOnlyCompiling)
{
    route(kCompile);
    vldtest_glEnable(GL_LIGHTING);
    EXPECT_EQ(tc.ctx->enable.capabilityBits, 0u);
    vldtest_glEnable(GL_COLOR_MATERIAL);
    EXPECT_EQ(tc.ctx->enable.capabilityBits, 0x80u);
    vldtest_glDisable(GL_COLOR_MATERIAL);
    EXPECT_EQ(tc.ctx->enable.capabilityBits, 0x80u);

    // While executing, the immediate layer decides.
    tc.ctx->enable.capabilityBits = 0;
    route(kCompileAndExecute);
    vldtest_glEnable(GL_COLOR_MATERIAL);
    EXPECT_EQ(tc.ctx->enable.capabilityBits, 0u);

    // The Imm forms act on the immediate state even while compiling.
    gLayerCalls.clear();
    route(kCompile);
    vldtest_glEnableImmVELD(GL_FOG);
    vldtest_glDisableImmVELD(GL_FOG);
    EXPECT_EQ(recorded(), (std::vector<std::string>{"IM:Enable", "IM:Disable"}));
}

// ---- Folded families -----------------------------------------------------------------------

// The values of the one layer call that a folded entry made.
std::vector<double> only_values(const char* key)
{
    EXPECT_EQ(gLayerCalls.size(), 1u);
    if (gLayerCalls.size() != 1u)
        return {};
    EXPECT_EQ(gLayerCalls[0].key(), key);
    std::vector<double> v = gLayerCalls[0].values;
    gLayerCalls.clear();
    return v;
}

using V = std::vector<double>;

TEST_F(Frames, VertexFormsFoldOntoVertex3f)
{
    vldtest_glVertex2i(3, -4);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{3, -4, 0}));
    const GLshort s3[3] = {1, 2, 3};
    vldtest_glVertex3sv(s3);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{1, 2, 3}));
    vldtest_glVertex3d(0.1, 0.2, 0.3);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{0.1f, 0.2f, 0.3f}));

    // w divides x, y, z; w = 0 passes them unchanged.
    vldtest_glVertex4f(2, 4, 6, 2);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{1, 2, 3}));
    vldtest_glVertex4f(2, 4, 6, 0);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{2, 4, 6}));
    const GLdouble d4[4] = {1, 2, 3, 4};
    vldtest_glVertex4dv(d4);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{0.25, 0.5, 0.75}));
    const GLint i4[4] = {-8, 8, 16, 0};
    vldtest_glVertex4iv(i4);
    EXPECT_EQ(only_values("DO:Vertex3f"), (V{-8, 8, 16}));
}

TEST_F(Frames, TexCoordFormsKeepSAndT)
{
    vldtest_glTexCoord1f(0.5f);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{0.5, 0}));
    vldtest_glTexCoord2s(3, 4);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{3, 4}));
    const GLdouble d3[3] = {0.25, 0.75, 9};
    vldtest_glTexCoord3dv(d3);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{0.25, 0.75}));

    // q divides s and t; q = 0 leaves them.
    vldtest_glTexCoord4f(1, 3, 7, 2);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{0.5, 1.5}));
    vldtest_glTexCoord4f(1, 3, 7, 0);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{1, 3}));
    const GLshort s4[4] = {4, 8, 1, 4};
    vldtest_glTexCoord4sv(s4);
    EXPECT_EQ(only_values("IM:TexCoord2fv"), (V{1, 2}));
}

TEST_F(Frames, RasterPosAndMultiTexCoordDefaults)
{
    vldtest_glRasterPos2i(5, 6);
    EXPECT_EQ(only_values("IM:RasterPos4fv"), (V{5, 6, 0, 1}));
    vldtest_glRasterPos3f(1, 2, 3);
    EXPECT_EQ(only_values("IM:RasterPos4fv"), (V{1, 2, 3, 1}));
    const GLshort s4[4] = {1, 2, 3, 4};
    vldtest_glRasterPos4sv(s4);
    EXPECT_EQ(only_values("IM:RasterPos4fv"), (V{1, 2, 3, 4}));

    // The target passes unchanged; one-coordinate forms pass t = 0.
    vldtest_glMultiTexCoord1dSGIS(GL_TEXTURE1_SGIS, 0.5);
    EXPECT_EQ(only_values("IM:MultiTexCoord4fvSGIS"), (V{GL_TEXTURE1_SGIS, 0.5, 0, 0, 1}));
    const GLint i2[2] = {7, 9};
    vldtest_glMultiTexCoord2ivSGIS(GL_TEXTURE0_SGIS, i2);
    EXPECT_EQ(only_values("IM:MultiTexCoord4fvSGIS"), (V{GL_TEXTURE0_SGIS, 7, 9, 0, 1}));
    vldtest_glMultiTexCoord4fSGIS(0x1234, 1, 2, 3, 4);
    EXPECT_EQ(only_values("IM:MultiTexCoord4fvSGIS"), (V{0x1234, 1, 2, 3, 4}));
}

// A rectangle is a polygon from (x1, y1) counter-clockwise, through the vertex form.
TEST_F(Frames, RectIsAPolygonInCornerOrder)
{
    vldtest_glRectf(1, 2, 3, 4);
    ASSERT_EQ(gLayerCalls.size(), 6u);
    EXPECT_EQ(gLayerCalls[0].key(), "DO:Begin");
    EXPECT_EQ(gLayerCalls[0].values, (V{GL_POLYGON}));
    const V corners[4] = {{1, 2, 0}, {3, 2, 0}, {3, 4, 0}, {1, 4, 0}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(gLayerCalls[1 + i].key(), "DO:Vertex3f");
        EXPECT_EQ(gLayerCalls[1 + i].values, corners[i]) << "corner " << i;
    }
    EXPECT_EQ(gLayerCalls[5].key(), "DO:End");

    gLayerCalls.clear();
    const GLshort a[2] = {-1, -2}, b[2] = {5, 6};
    vldtest_glRectsv(a, b);
    ASSERT_EQ(gLayerCalls.size(), 6u);
    EXPECT_EQ(gLayerCalls[2].values, (V{5, -2, 0}));
    EXPECT_EQ(gLayerCalls[4].values, (V{-1, 6, 0}));
}

TEST_F(Frames, ScalarParametersBecomeVectors)
{
    vldtest_glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL);
    EXPECT_EQ(only_values("IM:TexEnvfv"), (V{GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL, 0, 0, 0}));
    vldtest_glTexGend(GL_S, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP);
    EXPECT_EQ(only_values("IM:TexGenfv"), (V{GL_S, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP, 0, 0, 0}));
    vldtest_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, 0.5f);
    EXPECT_EQ(only_values("IM:TexParameterfv"), (V{GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, 0.5, 0, 0, 0}));
}

// Integer colours scale so that the largest GLint is 1.0; the mode is a scalar; the
// library's two-value parameter converts both words; an unknown parameter is an error of the
// frame and reaches no layer.
TEST_F(Frames, IntegerVectorParameters)
{
    const GLint color[4] = {2147483647, 0, -2147483647, 1073741824};
    vldtest_glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color);
    V v = only_values("IM:TexEnvfv");
    ASSERT_EQ(v.size(), 6u);
    EXPECT_EQ(v[2], 1.0);
    EXPECT_EQ(v[3], 0.0);
    EXPECT_EQ(v[4], -1.0);
    EXPECT_NEAR(v[5], 0.5, 1e-7);

    const GLint mode[4] = {GL_MODULATE, 99, 99, 99};
    vldtest_glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, mode);
    EXPECT_EQ(only_values("IM:TexEnvfv"), (V{GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE, 0, 0, 0}));

    vldtest_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, color);
    v = only_values("IM:TexParameterfv");
    ASSERT_EQ(v.size(), 6u);
    EXPECT_EQ(v[2], 1.0);
    EXPECT_EQ(v[4], -1.0);

    const GLint bias[4] = {1, -3, 99, 99};
    vldtest_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_LOD_BIAS_VELD, bias);
    EXPECT_EQ(only_values("IM:TexParameterfv"), (V{GL_TEXTURE_2D, GL_TEXTURE_LOD_BIAS_VELD, 1, -3, 0, 0}));
    const GLint filter[4] = {GL_LINEAR, 99, 99, 99};
    vldtest_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    EXPECT_EQ(only_values("IM:TexParameterfv"), (V{GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR, 0, 0, 0}));

    const GLdouble plane[4] = {1, 2, 3, 4};
    vldtest_glTexGendv(GL_T, GL_OBJECT_PLANE, plane);
    EXPECT_EQ(only_values("IM:TexGenfv"), (V{GL_T, GL_OBJECT_PLANE, 1, 2, 3, 4}));

    for (auto call : {+[] { vldtest_glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COORD_SET_SGIS, (const GLint*)gZeros); },
                      +[] { vldtest_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_ENV_MODE, (const GLint*)gZeros); },
                      +[] { vldtest_glTexGeniv(GL_S, GL_TEXTURE_ENV_MODE, (const GLint*)gZeros); }}) {
        tc.ctx->lastError = GL_NO_ERROR;
        call();
        EXPECT_TRUE(gLayerCalls.empty());
        EXPECT_EQ(tc.ctx->lastError, (GLenum)GL_INVALID_ENUM);
    }
}

} // namespace
