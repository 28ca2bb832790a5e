// Windows module loading: LoadLibraryA, GetModuleHandleA, GetProcAddress, FreeLibrary.
#include "support/dll/dll.h"

#include "support/msg/msg.h"

#include <windows.h>

namespace {
const char *const kOpenglNames[] = {"opengl32.dll", "zvgl3.dll", "zvgl2.dll", "zvd3d.dll"};
const char *const kGlideNames[] = {"glide3x.dll", "glide2x.dll"};
} // namespace

const GP_dll_platform GP_dll_platform_names = {kOpenglNames, 4, kGlideNames, 2, "", ".dll"};

void *GP_dll_os_open(const char *name, int load) {
  HMODULE module = load ? LoadLibraryA(name) : GetModuleHandleA(name);
  return reinterpret_cast<void *>(module);
}

// A null address with no error set counts as found: the export's value is null.
int GP_dll_os_symbol(void *module, const char *symbol, void **value) {
  SetLastError(0);
  FARPROC address = GetProcAddress(static_cast<HMODULE>(module), symbol);
  *value = reinterpret_cast<void *>(address);
  return address != nullptr || GetLastError() == 0;
}

int GP_dll_os_close(void *module, int loaded) {
  if (!loaded) return 0;
  return FreeLibrary(static_cast<HMODULE>(module)) ? 0 : -1;
}

const char *GP_dll_os_error(void) { return sysgle(); }

// wglGetProcAddress (or any symbol) from a GL module the process already holds.
void *GP_dll_os_find_loaded(const char *symbol) {
  for (const char *name : kOpenglNames) {
    HMODULE module = GetModuleHandleA(name);
    if (!module) continue;
    FARPROC address = GetProcAddress(module, symbol);
    if (address) return reinterpret_cast<void *>(address);
  }
  return nullptr;
}
