// The module loader: finds the Glide and OpenGL partners at run time by a logical word
// ("glide", "opengl"), first in what the process has loaded, then among fixed file names.
// Messages go through mprintf: failures at 80 when the caller sets flag 1, else at 160.
#pragma once

extern "C" {

// Open flags.
enum {
  G_DLL_REPORT = 1, // report failures at severity 80 (misuse at 40); without it at 160
  G_DLL_REPORT_SYMBOLS = 2, // report failed symbol look-ups
  G_DLL_LOAD = 4 // load the module; without it only a module already in the process is found
};

enum { G_DLL_MAGIC = 0x646C6C00u };

struct G_dll_record {
  unsigned int magic; // G_DLL_MAGIC while valid, 0 once closed
  void *module;
  int loaded; // opened by loading: closing releases it
  char *name; // "(base_executable)" for the program itself
  int glideModule; // the name holds "glide" in any case
};
typedef G_dll_record *G_dll_handle;

// A null name opens the program itself. Returns 0 or -1.
int G_dll_open(int flags, const char *name, G_dll_handle *handle);
// Returns 1 found, 0 not found, -1 misuse. A null probe takes the default of the word.
int G_dll_open_with_heuristic(int flags, const char *moduleIdentifier, const char *probeSymbol,
                              G_dll_handle *handle);
// Finds a symbol as given, else stripped of or given __stdcall decorations. 1, 0 or -1.
int G_dll_inq_symbol_value(G_dll_handle handle, int flags, const char *symbol, void **value);
int G_dll_close(G_dll_handle handle, int flags);
int G_dll_inq_procedure_glide(int flags, const char *name, void **address);
int G_dll_inq_procedure_opengl(int flags, const char *name, void **address);
const char *mystrcasestr(const char *haystack, const char *needle);

} // extern "C"

// Platform layer.
struct GP_dll_platform {
  const char *const *openglNames; // file names tried for "opengl", in order
  int openglCount;
  const char *const *glideNames; // the same for "glide"
  int glideCount;
  const char *prefix; // formed file name: prefix, word, suffix
  const char *suffix;
};
extern const GP_dll_platform GP_dll_platform_names;

// Loads (load != 0) or finds an already loaded module; a null name is the program itself.
void *GP_dll_os_open(const char *name, int load);
// 1 when the module has the symbol (its value may be null), 0 when not.
int GP_dll_os_symbol(void *module, const char *symbol, void **value);
// Releases what GP_dll_os_open took. 0, or -1 when the system refused.
int GP_dll_os_close(void *module, int loaded);
// Text of the last failure of the calls above (lives until the next mprintf).
const char *GP_dll_os_error(void);
// Finds a symbol among the modules already in the process without loading anything.
void *GP_dll_os_find_loaded(const char *symbol);
