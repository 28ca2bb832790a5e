// The table of entries: every row's signature is the prototype of the public headers, the
// name table is in row order, kinds and their targets fit together, and the look-up table
// of wglGetProcAddress leads only to functions that exist.
#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "vld/api/vld_entries.h"

#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

// ---- Signatures, at compile time -----------------------------------------------------------

// Each exported row's (ret, params) must be exactly the header's prototype, calling
// convention included. Rows of kind NAME have no function.
#define ZVGL_SIG_CHECK(ret, name, params)                                                     \
    static_assert(std::is_same_v<decltype(&::name), ret(APIENTRY *) params>,                 \
                  #name " differs from its prototype");
#define ZVGL_SIG_NONE(ret, name, params)
#define ZVGL_SIG_ROUTED ZVGL_SIG_CHECK
#define ZVGL_SIG_ROUTED_ENABLE ZVGL_SIG_CHECK
#define ZVGL_SIG_ROUTED_STENCILOP ZVGL_SIG_CHECK
#define ZVGL_SIG_QUERY ZVGL_SIG_CHECK
#define ZVGL_SIG_QUERY_EXEC ZVGL_SIG_CHECK
#define ZVGL_SIG_DIRECT ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD1 ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD2 ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD3 ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD4 ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD_DIVIDE ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD_RECT ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD_PARAM ZVGL_SIG_CHECK
#define ZVGL_SIG_FOLD_PARAM_VEC ZVGL_SIG_CHECK
#define ZVGL_SIG_STUB ZVGL_SIG_CHECK
#define ZVGL_SIG_GDI ZVGL_SIG_CHECK
#define ZVGL_SIG_WGL ZVGL_SIG_CHECK
#define ZVGL_SIG_WGL_STUB ZVGL_SIG_CHECK
#define ZVGL_SIG_NAME ZVGL_SIG_NONE
#define ZVGL_SIG_IMM_NOTEST ZVGL_SIG_CHECK
#define ZVGL_SIG_OWN ZVGL_SIG_CHECK

#define ZVGL_SIG_ROW(ret, name, params, args, kind, impl) ZVGL_SIG_##kind(ret, name, params)
VLD_GL_ENTRIES(ZVGL_SIG_ROW)
VLD_EXT_ENTRIES(ZVGL_SIG_ROW)
#define ZVGL_SIG_GLU_ROW(ret, name, params, args) ZVGL_SIG_CHECK(ret, name, params)
VLD_GLU_ENTRIES(ZVGL_SIG_GLU_ROW)

// The pointer types that applications give to results of wglGetProcAddress fit the functions.
static_assert(std::is_same_v<decltype(&::glMinimizeVELD), PFNGLMINIMIZEVELDPROC>);
static_assert(std::is_same_v<decltype(&::glTimeoutCallbackSetVELD), PFNGLTIMEOUTCALLBACKSETVELDPROC>);
static_assert(std::is_same_v<decltype(&::glDrawFacesVELD), PFNGLDRAWRECORDVELDPROC>);
static_assert(std::is_same_v<decltype(&::glDrawPointsImmVELD), PFNGLDRAWRECORDVELDPROC>);
static_assert(std::is_same_v<decltype(&::vldSetEnvVELD), PFNVLDSETENVVELDPROC>);
static_assert(std::is_same_v<decltype(&::vldIsListNonEmpty), PFNVLDISLISTNONEMPTYPROC>);
static_assert(std::is_same_v<decltype(&::glMultiTexCoord2fSGIS), PFNGLMULTITEXCOORD2FSGISPROC>);
static_assert(std::is_same_v<decltype(&::glSelectTextureSGIS), PFNGLSELECTTEXTURESGISPROC>);

// Every look-up row leads to a declared function.
#define ZVGL_PROC_DECLARED(name, function) static_assert(sizeof(&::function) != 0);
VLD_PROC_ENTRIES(ZVGL_PROC_DECLARED)

// ---- The rows as data ----------------------------------------------------------------------

enum class Kind {
    ROUTED, ROUTED_ENABLE, ROUTED_STENCILOP, QUERY, QUERY_EXEC, DIRECT,
    FOLD1, FOLD2, FOLD3, FOLD4, FOLD_DIVIDE, FOLD_RECT, FOLD_PARAM, FOLD_PARAM_VEC,
    STUB, GDI, WGL, WGL_STUB, NAME, IMM_NOTEST, OWN,
};

struct Row {
    std::string_view name;
    Kind kind;
    std::string_view impl;
};

#define ZVGL_ROW(ret, name, params, args, kind, impl) Row{#name, Kind::kind, #impl},
constexpr Row kNameTable[] = {VLD_GL_ENTRIES(ZVGL_ROW)};
constexpr Row kExtTable[] = {VLD_EXT_ENTRIES(ZVGL_ROW)};

struct ProcRow {
    std::string_view name;
    std::string_view function;
};
#define ZVGL_PROC_ROW(name, function) ProcRow{#name, #function},
constexpr ProcRow kProcTable[] = {VLD_PROC_ENTRIES(ZVGL_PROC_ROW)};

static_assert(std::size(kNameTable) == 418 && VLD_ROW_COUNT == 418);
static_assert(std::size(kProcTable) == 122 && VLD_PROC_ROW_COUNT == 122);
static_assert(VLD_ROW_NONE == 0 && VLD_ROW_ChoosePixelFormat == 1 && VLD_ROW_glAccum == 6);
static_assert(VLD_ROW_wglUseFontOutlinesW == 417);

constexpr int count_kind(Kind kind)
{
    int n = 0;
    for (const Row &row : kNameTable)
        n += row.kind == kind;
    return n;
}

const Row *find_row(std::string_view name)
{
    for (const Row &row : kNameTable)
        if (row.name == name)
            return &row;
    for (const Row &row : kExtTable)
        if (row.name == name)
            return &row;
    return nullptr;
}

bool in_proc_table(std::string_view name)
{
    for (const ProcRow &row : kProcTable)
        if (row.name == name)
            return true;
    return false;
}

// ---- Tests ---------------------------------------------------------------------------------

// Row numbers follow the ASCII order of the names after NONE: the GDI names (capitals) come
// first, then gl, then wgl. A name out of place would shift every later row number.
TEST(EntryTable, NameTableIsInAsciiOrder)
{
    EXPECT_EQ(kNameTable[0].name, "NONE");
    for (std::size_t i = 2; i < std::size(kNameTable); ++i)
        EXPECT_LT(kNameTable[i - 1].name, kNameTable[i].name) << "row " << i;
}

// The sets of fixed size that the library's behaviour names one by one.
TEST(EntryTable, KindCounts)
{
    EXPECT_EQ(count_kind(Kind::STUB), 93);
    EXPECT_EQ(count_kind(Kind::WGL_STUB), 9);
    EXPECT_EQ(count_kind(Kind::GDI), 5);
    EXPECT_EQ(count_kind(Kind::QUERY), 28);
    EXPECT_EQ(count_kind(Kind::QUERY_EXEC), 1);
    EXPECT_EQ(count_kind(Kind::DIRECT), 6);
    EXPECT_EQ(count_kind(Kind::ROUTED_ENABLE), 1);
    EXPECT_EQ(count_kind(Kind::ROUTED_STENCILOP), 1);
    // glDebugEntry, wglSwapMultipleBuffers and the NONE row have no function.
    EXPECT_EQ(count_kind(Kind::NAME), 3);
}

// A layer stem names the layer functions of the entry itself, or, for an EXT spelling,
// of its OpenGL 1.1 twin: glBindTextureEXT -> BindTexture.
TEST(EntryTable, LayerStemsMatchTheirNames)
{
    for (const Row &row : kNameTable) {
        switch (row.kind) {
        case Kind::ROUTED: case Kind::ROUTED_ENABLE: case Kind::ROUTED_STENCILOP:
        case Kind::QUERY: case Kind::QUERY_EXEC: case Kind::DIRECT: {
            std::string_view stem = row.name.substr(2);
            if (stem.ends_with("EXT"))
                stem.remove_suffix(3);
            EXPECT_EQ(row.impl, stem) << row.name;
            break;
        }
        default:
            break;
        }
    }
}

// Folded forms end in an entry that reaches a layer; a rectangle's vertex form is itself a
// two-component fold; a GDI name forwards to a wgl function with a body.
TEST(EntryTable, ForwardingTargetsExistAndFit)
{
    for (const Row &row : kNameTable) {
        if (row.kind == Kind::NAME || row.kind == Kind::STUB || row.kind == Kind::WGL ||
            row.kind == Kind::WGL_STUB || row.kind == Kind::ROUTED || row.kind == Kind::QUERY ||
            row.kind == Kind::QUERY_EXEC || row.kind == Kind::DIRECT ||
            row.kind == Kind::ROUTED_ENABLE || row.kind == Kind::ROUTED_STENCILOP) {
            continue;
        }
        const Row *target = find_row(row.impl);
        ASSERT_NE(target, nullptr) << row.name << " -> " << row.impl;
        switch (row.kind) {
        case Kind::GDI:
            EXPECT_EQ(target->kind, Kind::WGL) << row.name;
            EXPECT_EQ(row.impl.substr(3), row.name) << "a GDI name forwards to its wgl twin";
            break;
        case Kind::FOLD_RECT:
            EXPECT_EQ(target->kind, Kind::FOLD2) << row.name;
            break;
        default:
            EXPECT_TRUE(target->kind == Kind::ROUTED || target->kind == Kind::DIRECT)
                << row.name << " folds onto " << row.impl << ", which reaches no layer";
            break;
        }
    }
}

// The look-up table: no name twice, every own entry point reachable, nothing that the name
// table marks as name-only, and EXT spellings leading to their SGIS twins.
TEST(EntryTable, LookUpTableRows)
{
    for (std::size_t i = 0; i < std::size(kProcTable); ++i) {
        const ProcRow &row = kProcTable[i];
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(kProcTable[j].name, row.name) << "twice in the look-up table";
        const Row *target = find_row(row.function);
        ASSERT_NE(target, nullptr) << row.name;
        EXPECT_NE(target->kind, Kind::NAME) << row.name;
        EXPECT_NE(target->kind, Kind::STUB) << row.name;
        if (row.name != row.function) {
            ASSERT_TRUE(row.name.ends_with("EXT")) << row.name;
            std::string_view stem = row.name.substr(0, row.name.size() - 3);
            EXPECT_EQ(row.function, std::string(stem) + "SGIS") << row.name;
            EXPECT_EQ(find_row(row.name), nullptr) << row.name << " has a row of its own";
        }
    }
    for (const Row &row : kExtTable)
        EXPECT_TRUE(in_proc_table(row.name)) << row.name << " cannot be reached";

    EXPECT_TRUE(in_proc_table("glBindTextureEXT"));
    EXPECT_TRUE(in_proc_table("glMultiTexCoord2fSGIS"));
    EXPECT_TRUE(in_proc_table("glMultiTexCoord2fEXT"));
    EXPECT_FALSE(in_proc_table("glBegin"));
    EXPECT_EQ(kProcTable[0].name, "glAreTexturesResident");
    EXPECT_EQ(kProcTable[121].name, "KSI_vld_txr_set_state_system");
}

} // namespace
