// The module loader against two small modules of our own: one with plain exports, one whose
// only export is the decorated "_grBufferClear@12". The program itself exports grGlideInit, as
// a program linked with its Glide partner does.
#include "support/dll/dll.h"
#include "support/msg/msg.h"

#include <gtest/gtest.h>

#include <string>

#if defined(_WIN32)
#define PROGRAM_EXPORT __declspec(dllexport)
#define MISSING_MODULE "zvgl_no_such_module.dll"
#else
#define PROGRAM_EXPORT __attribute__((visibility("default")))
#define MISSING_MODULE "libzvgl_no_such_module.so"
#endif

extern "C" PROGRAM_EXPORT int grGlideInit(void) { return 99; }

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class Loader : public testing::Test {
protected:
  void SetUp() override { mprint_set_sev_popup(-1); }
  void TearDown() override { mprint_set_sev_popup(80); }
};

TEST_F(Loader, DecoratedNameFindsThePlainExport) {
  G_dll_handle handle = nullptr;
  ASSERT_EQ(G_dll_open(G_DLL_LOAD, PLAIN_MODULE, &handle), 0);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(handle->magic, G_DLL_MAGIC);
  EXPECT_EQ(handle->loaded, 1);
  EXPECT_EQ(handle->glideModule, 0);
  void *value = nullptr;
  ASSERT_EQ(G_dll_inq_symbol_value(handle, 0, "_grGlideInit@0", &value), 1);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(reinterpret_cast<int (*)(void)>(value)(), 7);
  ASSERT_EQ(G_dll_inq_symbol_value(handle, 0, "plainTwice", &value), 1);
  EXPECT_EQ(reinterpret_cast<int (*)(int)>(value)(21), 42);
  EXPECT_EQ(G_dll_inq_symbol_value(handle, 0, "plainMissing", &value), 0);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(G_dll_close(handle, G_DLL_REPORT), 0);
}

TEST_F(Loader, PlainNameFindsTheDecoratedExport) {
  G_dll_handle handle = nullptr;
  ASSERT_EQ(G_dll_open(G_DLL_LOAD, DECORATED_MODULE, &handle), 0);
  void *value = nullptr;
  ASSERT_EQ(G_dll_inq_symbol_value(handle, 0, "grBufferClear", &value), 1);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(reinterpret_cast<int (*)(int, int, int)>(value)(1, 2, 3), 1006);
  void *direct = nullptr;
  ASSERT_EQ(G_dll_inq_symbol_value(handle, 0, "_grBufferClear@12", &direct), 1);
  EXPECT_EQ(direct, value);
  // A decorated name whose plain form is absent is not decorated again.
  EXPECT_EQ(G_dll_inq_symbol_value(handle, 0, "_grBufferClear@8", &value), 0);

  // With flag 2 each failed look-up is told.
  mprint_set_sev_stderr(80);
  CaptureStderr();
  EXPECT_EQ(G_dll_inq_symbol_value(handle, G_DLL_REPORT_SYMBOLS, "_grNothing@4", &value), 0);
  std::string said = GetCapturedStderr();
  EXPECT_NE(said.find("GetProcAddress did not find symbol \"_grNothing@4\" in module \""),
            std::string::npos);
  EXPECT_NE(said.find("GetProcAddress did not find symbol \"grNothing\""), std::string::npos);
  G_dll_close(handle, 0);
}

TEST_F(Loader, ClosedHandleFailsItsMagic) {
  G_dll_handle handle = nullptr;
  ASSERT_EQ(G_dll_open(G_DLL_LOAD, PLAIN_MODULE, &handle), 0);
  ASSERT_EQ(G_dll_close(handle, 0), 0);
  void *value = reinterpret_cast<void *>(1);
  CaptureStderr();
  EXPECT_EQ(G_dll_inq_symbol_value(handle, G_DLL_REPORT, "grGlideInit", &value), -1);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(G_dll_close(handle, G_DLL_REPORT), -1);
  EXPECT_EQ(G_dll_close(nullptr, 0), -1);
  EXPECT_EQ(GetCapturedStderr(),
            "G_dll_inq_symbol_value: invalid handle inquiring for symbol: \"grGlideInit\"\n"
            "G_dll_close: invalid handle\n");
}

TEST_F(Loader, ClosingAFoundModuleLeavesItLoaded) {
  G_dll_handle loader = nullptr, finder = nullptr, again = nullptr;
  ASSERT_EQ(G_dll_open(G_DLL_LOAD, PLAIN_MODULE, &loader), 0);
  ASSERT_EQ(G_dll_open(0, PLAIN_MODULE, &finder), 0);
  EXPECT_EQ(finder->loaded, 0);
  EXPECT_EQ(G_dll_close(finder, 0), 0);
  ASSERT_EQ(G_dll_open(0, PLAIN_MODULE, &again), 0);
  void *value = nullptr;
  EXPECT_EQ(G_dll_inq_symbol_value(again, 0, "plainTwice", &value), 1);
  G_dll_close(again, 0);
  G_dll_close(loader, 0);
}

TEST_F(Loader, MissingModuleFailsCleanlyWithItsMessage) {
  G_dll_handle handle = reinterpret_cast<G_dll_handle>(1);
  CaptureStderr();
  EXPECT_EQ(G_dll_open(G_DLL_LOAD | G_DLL_REPORT, MISSING_MODULE, &handle), -1);
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(G_dll_open(0, MISSING_MODULE, &handle), -1); // unreported: severity 160
  std::string said = GetCapturedStderr();
  EXPECT_EQ(said.rfind("G_dll_open: LoadLibrary failed for module \"" MISSING_MODULE "\": ", 0), 0u);
  EXPECT_EQ(said.find("GetModuleHandle"), std::string::npos);

  CaptureStderr();
  EXPECT_EQ(G_dll_open_with_heuristic(G_DLL_REPORT, "zvgl_no_such_module", nullptr, &handle), 0);
  EXPECT_EQ(handle, nullptr);
  said = GetCapturedStderr();
  EXPECT_NE(said.find("G_dll_open_with_heuristic: Can't find library identified by: "
                      "zvgl_no_such_module\n"),
            std::string::npos);
}

TEST_F(Loader, NullIdentifierIsMisuse) {
  G_dll_handle handle = reinterpret_cast<G_dll_handle>(1);
  CaptureStderr();
  EXPECT_EQ(G_dll_open_with_heuristic(0, nullptr, nullptr, &handle), -1);
  EXPECT_EQ(GetCapturedStderr(), "");
  EXPECT_EQ(handle, nullptr);
  // Misuse is told at 40, which still passes a stricter threshold than failures.
  mprint_set_sev_stderr(40);
  CaptureStderr();
  EXPECT_EQ(G_dll_open_with_heuristic(G_DLL_REPORT, nullptr, nullptr, &handle), -1);
  EXPECT_EQ(GetCapturedStderr(), "G_dll_open_with_heuristic: ModuleIdentifier must not be NULL\n");
  mprint_set_sev_stderr(80);
}

TEST_F(Loader, GlideWordFindsThePartnerLinkedIntoTheProgram) {
  G_dll_handle handle = nullptr;
  ASSERT_EQ(G_dll_open_with_heuristic(0, "GLIDE", nullptr, &handle), 1);
  ASSERT_NE(handle, nullptr);
  EXPECT_STREQ(handle->name, "(base_executable)");
  G_dll_close(handle, 0);

  void *address = nullptr;
  ASSERT_EQ(G_dll_inq_procedure_glide(0, "grGlideInit", &address), 1);
  EXPECT_EQ(reinterpret_cast<int (*)(void)>(address)(), 99);

  CaptureStderr();
  EXPECT_EQ(G_dll_inq_procedure_glide(G_DLL_REPORT, "grNoSuchCall", &address), 0);
  EXPECT_EQ(address, nullptr);
  EXPECT_EQ(GetCapturedStderr(), "Symbol not found: \"grNoSuchCall\" in module \"glide\"\n");
}

TEST_F(Loader, TracingShowsTheGlideTableInOrder) {
  mprint_set_sev_stderr(160);
  G_dll_handle handle = nullptr;
  CaptureStderr();
  G_dll_open_with_heuristic(0, "glide", "grNoSuchProbe", &handle);
  std::string said = GetCapturedStderr();
  mprint_set_sev_stderr(80);
  if (handle) G_dll_close(handle, 0);
  const GP_dll_platform &names = GP_dll_platform_names;
  size_t at = 0;
  for (int i = 0; i < names.glideCount; ++i) {
    std::string line = std::string("G_dll_open: trying to open module \"") + names.glideNames[i] + "\"";
    size_t found = said.find(line, at);
    ASSERT_NE(found, std::string::npos) << line;
    at = found;
  }
  EXPECT_NE(said.find("trying heuristic open for module \"glide\""), std::string::npos);
}

TEST_F(Loader, OpenglPartnerAbsentIsNotFound) {
  void *address = reinterpret_cast<void *>(1);
  EXPECT_EQ(G_dll_inq_procedure_opengl(0, "vldSetEnvVELD", &address), 0);
  EXPECT_EQ(address, nullptr);
}

TEST(LoaderText, CaseBlindSubstring) {
  const char *hay = "libGlide2x.so";
  EXPECT_EQ(mystrcasestr(hay, "GLIDE"), hay + 3);
  EXPECT_EQ(mystrcasestr(hay, "glide3"), nullptr);
  EXPECT_EQ(mystrcasestr(hay, ""), hay);
  EXPECT_EQ(mystrcasestr("", "a"), nullptr);
}

} // namespace
