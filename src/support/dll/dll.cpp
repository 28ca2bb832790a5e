// Module handles, the search heuristic, stdcall decoration rules and the partner look-ups.
#include "support/dll/dll.h"

#include "support/msg/msg.h"
#include "support/sys/sys.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

const int kTrace = 160;

int failure_severity(int flags) { return (flags & G_DLL_REPORT) ? 80 : kTrace; }
int misuse_severity(int flags) { return (flags & G_DLL_REPORT) ? 40 : kTrace; }

// Records are kept on a free list once closed, never returned to the heap: a stale handle
// then still reads as a record whose magic is 0.
G_dll_record *freeRecords[64];
int freeRecordCount = 0;

G_dll_record *new_record() {
  if (freeRecordCount > 0) return freeRecords[--freeRecordCount];
  return static_cast<G_dll_record *>(G_malloc(sizeof(G_dll_record)));
}

void retire_record(G_dll_record *record) {
  G_free(record->name);
  *record = G_dll_record{0, nullptr, 0, nullptr, 0};
  if (freeRecordCount < 64) freeRecords[freeRecordCount++] = record;
  // Beyond the pool's size a retired record is simply kept: it stays readable and invalid.
}

char *copy_text(const char *text) {
  size_t length = strlen(text);
  char *copy = static_cast<char *>(G_malloc(length + 1));
  memcpy(copy, text, length + 1);
  return copy;
}

// One look-up as the system gives it; with flag 2 a miss is told at 80.
int lookup(G_dll_handle handle, int flags, const char *symbol, void **value) {
  if (GP_dll_os_symbol(handle->module, symbol, value)) return 1;
  *value = nullptr;
  if (flags & G_DLL_REPORT_SYMBOLS)
    mprintf(80, "GetProcAddress did not find symbol \"%s\" in module \"%s\": %s", symbol,
            handle->name, GP_dll_os_error());
  return 0;
}

// True for "_name@digits", the __stdcall decoration; `at` receives the position of '@'.
bool is_decorated(const char *symbol, size_t *at) {
  if (symbol[0] != '_') return false;
  const char *last = strrchr(symbol, '@');
  if (!last || last == symbol + 1 || last[1] == '\0') return false;
  for (const char *p = last + 1; *p; ++p)
    if (!isdigit(static_cast<unsigned char>(*p))) return false;
  *at = static_cast<size_t>(last - symbol);
  return true;
}

const char *default_probe(const char *word) {
  if (G_strncasecmp(word, "opengl", 6) == 0) return "glBegin";
  if (G_strncasecmp(word, "glide", 5) == 0) return "grGlideInit";
  return nullptr;
}

#if defined(_WIN32) && defined(__i386__)
#define GP_PARTNER_CALL __stdcall
#else
#define GP_PARTNER_CALL
#endif
using ProcLookup = void *(GP_PARTNER_CALL *)(const char *);
using SstControl = int(GP_PARTNER_CALL *)(unsigned int);

} // namespace

extern "C" {

int G_dll_open(int flags, const char *name, G_dll_handle *handle) {
  const char *shown = name ? name : "(base_executable)";
  mprintf(kTrace, "G_dll_open: trying to open module \"%s\"", shown);
  int load = name && (flags & G_DLL_LOAD);
  void *module = GP_dll_os_open(name, load);
  if (!module) {
    mprintf(failure_severity(flags),
            load ? "G_dll_open: LoadLibrary failed for module \"%s\": %s"
                 : "G_dll_open: GetModuleHandle failed for module \"%s\": %s",
            shown, GP_dll_os_error());
    *handle = nullptr;
    return -1;
  }
  G_dll_record *record = new_record();
  record->magic = G_DLL_MAGIC;
  record->module = module;
  record->loaded = load;
  record->name = copy_text(shown);
  record->glideModule = mystrcasestr(shown, "glide") != nullptr;
  *handle = record;
  mprintf(kTrace, "G_dll_open: opened module \"%s\"", shown);
  return 0;
}

// The program itself first (when a probe symbol tells the partner is linked in), then the
// word's table of file names, then prefix + word + suffix.
int G_dll_open_with_heuristic(int flags, const char *moduleIdentifier, const char *probeSymbol,
                              G_dll_handle *handle) {
  if (!moduleIdentifier) {
    mprintf(misuse_severity(flags), "G_dll_open_with_heuristic: ModuleIdentifier must not be NULL");
    *handle = nullptr;
    return -1;
  }
  mprintf(kTrace, "G_dll_open_with_heuristic: trying heuristic open for module \"%s\"",
          moduleIdentifier);
  if (!probeSymbol) probeSymbol = default_probe(moduleIdentifier);
  if (probeSymbol) {
    G_dll_handle self = nullptr;
    if (G_dll_open(flags & ~(G_DLL_REPORT | G_DLL_REPORT_SYMBOLS | G_DLL_LOAD), nullptr, &self) == 0) {
      void *value = nullptr;
      if (G_dll_inq_symbol_value(self, flags & ~(G_DLL_REPORT | G_DLL_REPORT_SYMBOLS), probeSymbol,
                                 &value) == 1) {
        *handle = self;
        return 1;
      }
      G_dll_close(self, 0);
    }
  }
  const GP_dll_platform &names = GP_dll_platform_names;
  const char *const *table = nullptr;
  int count = 0;
  if (G_strcasecmp(moduleIdentifier, "opengl") == 0) {
    table = names.openglNames;
    count = names.openglCount;
  } else if (G_strcasecmp(moduleIdentifier, "glide") == 0) {
    table = names.glideNames;
    count = names.glideCount;
  }
  for (int i = 0; i < count; ++i) {
    if (G_dll_open(flags & ~(G_DLL_REPORT | G_DLL_REPORT_SYMBOLS), table[i], handle) == 0) return 1;
  }
  char path[1024];
  int needed = snprintf(path, sizeof path, "%s%s%s", names.prefix, moduleIdentifier, names.suffix);
  if (needed < 0 || static_cast<size_t>(needed) >= sizeof path) {
    mprintf(failure_severity(flags),
            "G_dll_open_with_heuristic: File path exceeds buffer size of %d for constructing full "
            "path: %s",
            static_cast<int>(sizeof path), moduleIdentifier);
    *handle = nullptr;
    return -1;
  }
  if (G_dll_open(flags, path, handle) != 0) {
    mprintf(failure_severity(flags), "G_dll_open_with_heuristic: Can't find library identified by: %s",
            moduleIdentifier);
    *handle = nullptr;
    return 0;
  }
  return 1;
}

// The name as given; a decorated "_name@N" then without its decorations; a plain name then
// as "_name@N" for N = 0, 4, ..., 60.
int G_dll_inq_symbol_value(G_dll_handle handle, int flags, const char *symbol, void **value) {
  if (!handle || handle->magic != G_DLL_MAGIC) {
    mprintf(failure_severity(flags),
            "G_dll_inq_symbol_value: invalid handle inquiring for symbol: \"%s\"", symbol);
    *value = nullptr;
    return -1;
  }
  if (lookup(handle, flags, symbol, value)) return 1;
  char buffer[256];
  size_t at = 0;
  if (is_decorated(symbol, &at)) {
    if (at - 1 > 255) {
      mprintf(misuse_severity(flags),
              "G_dll_inq_symbol_value: Symbol name exceeds buffer size of %d while stripping "
              "__stdcall decorations: \"%s\"",
              static_cast<int>(sizeof buffer), symbol);
      return -1;
    }
    memcpy(buffer, symbol + 1, at - 1);
    buffer[at - 1] = '\0';
    return lookup(handle, flags, buffer, value);
  }
  for (int n = 0; n <= 60; n += 4) {
    int needed = snprintf(buffer, sizeof buffer, "_%s@%d", symbol, n);
    if (needed < 0 || static_cast<size_t>(needed) >= sizeof buffer) {
      mprintf(misuse_severity(flags),
              "G_dll_inq_symbol_value: Symbol name exceeds buffer size of %d while stripping "
              "__stdcall decorations: \"%s\"",
              static_cast<int>(sizeof buffer), symbol);
      *value = nullptr;
      return -1;
    }
    if (lookup(handle, flags, buffer, value)) return 1;
  }
  return 0;
}

int G_dll_close(G_dll_handle handle, int flags) {
  if (!handle || handle->magic != G_DLL_MAGIC) {
    mprintf(failure_severity(flags), "G_dll_close: invalid handle");
    return -1;
  }
  int result = 0;
  if (GP_dll_os_close(handle->module, handle->loaded) != 0) {
    mprintf(failure_severity(flags), "G_dll_close: FreeLibrary failed for module \"%s\": %s",
            handle->name, GP_dll_os_error());
    result = -1;
  }
  retire_record(handle);
  return result;
}

// The Glide partner: the name itself, then the partner's own look-up function if it has one,
// then the private grSstControl request that hands out such a function.
int G_dll_inq_procedure_glide(int flags, const char *name, void **address) {
  G_dll_handle handle = nullptr;
  int found = G_dll_open_with_heuristic(flags & ~(G_DLL_REPORT | G_DLL_REPORT_SYMBOLS), "glide",
                                        "grGlideInit", &handle);
  *address = nullptr;
  if (!handle) return found;
  void *value = nullptr;
  if (G_dll_inq_symbol_value(handle, flags, name, &value) == 1) {
    G_dll_close(handle, flags);
    *address = value;
    return 1;
  }
  void *entry = nullptr;
  if (G_dll_inq_symbol_value(handle, flags, "grGetProcAddress", &entry) == 1 && entry) {
    void *answer = reinterpret_cast<ProcLookup>(entry)(name);
    if (answer) {
      G_dll_close(handle, flags);
      *address = answer;
      return 1;
    }
  }
  // The private request answers with a 32-bit word, which can carry an address only where
  // addresses are 32 bits wide.
  if (sizeof(void *) == 4 &&
      G_dll_inq_symbol_value(handle, flags, "grSstControl", &entry) == 1 && entry) {
    SstControl control = reinterpret_cast<SstControl>(entry);
    int known = control(0x5A17C0DEu);
    if (known != 0 && known != 1) {
      uintptr_t function = static_cast<uintptr_t>(static_cast<unsigned int>(control(0x5A17C0DEu)));
      void *answer = function ? reinterpret_cast<ProcLookup>(function)(name) : nullptr;
      if (answer) {
        G_dll_close(handle, flags);
        *address = answer;
        return 1;
      }
    }
  }
  mprintf(failure_severity(flags), "Symbol not found: \"%s\" in module \"%s\"", name, "glide");
  G_dll_close(handle, flags);
  return 0;
}

// The GL partner: its wglGetProcAddress when the process already has one (0 and 1 are no
// answer), else the symbol of the "opengl" module.
int G_dll_inq_procedure_opengl(int flags, const char *name, void **address) {
  void *wglLookup = GP_dll_os_find_loaded("wglGetProcAddress");
  if (wglLookup) {
    void *answer = reinterpret_cast<ProcLookup>(wglLookup)(name);
    if (reinterpret_cast<uintptr_t>(answer) > 1) {
      *address = answer;
      return 1;
    }
  }
  G_dll_handle handle = nullptr;
  int found = G_dll_open_with_heuristic(flags & ~(G_DLL_REPORT | G_DLL_REPORT_SYMBOLS), "opengl",
                                        "glBegin", &handle);
  *address = nullptr;
  if (!handle) return found;
  void *value = nullptr;
  int result = G_dll_inq_symbol_value(handle, flags, name, &value);
  G_dll_close(handle, flags);
  *address = value;
  return result;
}

// Case-blind substring search; an empty needle is found at the start.
const char *mystrcasestr(const char *haystack, const char *needle) {
  size_t n = strlen(needle);
  for (; *haystack; ++haystack) {
    size_t i = 0;
    while (i < n && tolower(static_cast<unsigned char>(haystack[i])) ==
                        tolower(static_cast<unsigned char>(needle[i])))
      ++i;
    if (i == n) return haystack;
  }
  return n == 0 ? haystack : nullptr;
}

} // extern "C"
