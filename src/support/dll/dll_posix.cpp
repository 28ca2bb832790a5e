// POSIX module loading on the dynamic loader: dlopen in place of LoadLibraryA, dlopen with
// RTLD_NOLOAD in place of GetModuleHandleA, dlsym, dlclose. The partners are our own libraries.
#include "support/dll/dll.h"

#include "support/msg/msg.h"

#include <dlfcn.h>

#include <cstdio>

namespace {
const char *const kOpenglNames[] = {"libzvgl2.so"};
const char *const kGlideNames[] = {"libglide2x.so"};
char lastError[512];

void keep_error() {
  const char *text = dlerror();
  snprintf(lastError, sizeof lastError, "%s", text ? text : "no error text");
}
} // namespace

const GP_dll_platform GP_dll_platform_names = {kOpenglNames, 1, kGlideNames, 1, "lib", ".so"};

void *GP_dll_os_open(const char *name, int load) {
  void *module = dlopen(name, load ? RTLD_NOW | RTLD_LOCAL : RTLD_NOW | RTLD_NOLOAD);
  if (!module) keep_error();
  return module;
}

// dlerror tells a symbol whose value is null apart from a missing one.
int GP_dll_os_symbol(void *module, const char *symbol, void **value) {
  dlerror();
  *value = dlsym(module, symbol);
  if (*value) return 1;
  const char *error = dlerror();
  if (!error) return 1;
  snprintf(lastError, sizeof lastError, "%s", error);
  return 0;
}

// Every dlopen took a reference, a mere look-up (RTLD_NOLOAD) included; each is given back,
// which unloads only what this handle loaded.
int GP_dll_os_close(void *module, int) {
  if (dlclose(module) != 0) {
    keep_error();
    return -1;
  }
  return 0;
}

const char *GP_dll_os_error(void) { return GP_msg_scratch_copy(lastError); }

void *GP_dll_os_find_loaded(const char *symbol) { return dlsym(RTLD_DEFAULT, symbol); }
