// Windows-only behaviour: the Win32 environment follows the runtime's, system error texts,
// registry value types the store does not understand, the platform's name tables.
#include "support/dll/dll.h"
#include "support/env/env.h"
#include "support/msg/msg.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

std::string win32_variable(const char *name) {
  char buffer[256];
  DWORD n = GetEnvironmentVariableA(name, buffer, sizeof buffer);
  return n ? std::string(buffer, n) : std::string("(unset)");
}

TEST(Win32Environment, BothEnvironmentsSeeTheValue) {
  G_sys_setenv("ZVGLW_BOTH", "v1");
  EXPECT_EQ(win32_variable("ZVGLW_BOTH"), "v1");
  EXPECT_STREQ(getenv("ZVGLW_BOTH"), "v1");
  G_sys_setenv("ZVGLW_BOTH", nullptr);
  EXPECT_EQ(win32_variable("ZVGLW_BOTH"), "(unset)");
  EXPECT_EQ(getenv("ZVGLW_BOTH"), nullptr);
}

TEST(Win32Environment, OverlongCountedNameIsRefusedForWin32Only) {
  std::string name(1100, 'N');
  testing::internal::CaptureStderr();
  GP_sys_setenv_counted(1024, name.c_str(), 1, "xy");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "G_sys_setenv: symbol name too long\n");
}

TEST(Win32Messages, SystemTextOfAKnownCode) {
  std::string text = sysmsg(ERROR_FILE_NOT_FOUND);
  EXPECT_GT(text.size(), 2u);
  EXPECT_EQ(text.find("message_memory_allocation_failed"), std::string::npos);
  SetLastError(ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(std::string(sysgle()), text);
}

TEST(Win32Loader, NameTablesInTheirOrder) {
  const GP_dll_platform &names = GP_dll_platform_names;
  ASSERT_EQ(names.openglCount, 4);
  EXPECT_STREQ(names.openglNames[0], "opengl32.dll");
  EXPECT_STREQ(names.openglNames[1], "zvgl3.dll");
  EXPECT_STREQ(names.openglNames[2], "zvgl2.dll");
  EXPECT_STREQ(names.openglNames[3], "zvd3d.dll");
  ASSERT_EQ(names.glideCount, 2);
  EXPECT_STREQ(names.glideNames[0], "glide3x.dll");
  EXPECT_STREQ(names.glideNames[1], "glide2x.dll");
  EXPECT_STREQ(names.suffix, ".dll");
}

TEST(Win32Loader, ModuleHandleOfTheSystemIsNotFreed) {
  HMODULE kernel = GetModuleHandleA("kernel32.dll");
  ASSERT_NE(kernel, nullptr);
  G_dll_handle handle = nullptr;
  ASSERT_EQ(G_dll_open(0, "kernel32.dll", &handle), 0);
  EXPECT_EQ(handle->module, kernel);
  EXPECT_EQ(handle->loaded, 0);
  void *value = nullptr;
  EXPECT_EQ(G_dll_inq_symbol_value(handle, 0, "GetTickCount", &value), 1);
  EXPECT_EQ(G_dll_close(handle, 0), 0);
  EXPECT_EQ(GetModuleHandleA("kernel32.dll"), kernel);
}

TEST(Win32Store, UnknownValueTypeGivesNothing) {
  GP_sys_env_reset();
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Cordwain\\Kestrel SDK\\4.3\\Env", 0,
                            nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  const BYTE bytes[3] = {1, 2, 3};
  RegSetValueExA(key, "ZVGLW_BINARY", 0, REG_BINARY, bytes, sizeof bytes);
  RegSetValueExA(key, "ZVGLW_EMPTY", 0, REG_SZ, reinterpret_cast<const BYTE *>(""), 1);
  RegCloseKey(key);
  char *value = reinterpret_cast<char *>(1);
  int flags = -1;
  G_sys_inq_env("ZVGLW_BINARY", &value, &flags);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(flags, 0);
  G_sys_inq_env("ZVGLW_EMPTY", &value, &flags);
  ASSERT_NE(value, nullptr);
  EXPECT_STREQ(value, "");
  EXPECT_EQ(flags, 5);
  G_sys_free_env_value(&value, flags);
  HKEY base = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Cordwain", 0, KEY_ALL_ACCESS, &base) ==
      ERROR_SUCCESS) {
    RegDeleteTreeA(base, "Kestrel SDK");
    RegCloseKey(base);
  }
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Cordwain");
  GP_sys_env_reset();
}

} // namespace
