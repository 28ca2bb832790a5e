// Environment look-up with the per-machine store behind it, and environment writes.
#include "support/env/env.h"

#include "support/dll/dll.h"
#include "support/sys/sys.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Versions of the key searched, in order: this build's major.minor, none, "4.2".
const char *const kKeyVersions[] = {nullptr, "", "4.2"};

struct StoreState {
  bool keyTried;
  int keyIndex;
  char keyPath[256];
  int opens;
};

StoreState store = {false, -1, {0}, 0};

void *open_key(const char *path) {
  ++store.opens;
  return GP_env_store_open(path);
}

// Finds the key once per process (the first that opens wins and is remembered); later
// look-ups reopen the remembered key. Returns an open key or null.
void *open_store_key() {
  if (!store.keyTried) {
    store.keyTried = true;
    for (int i = 0; i < 3; ++i) {
      const char *entry = kKeyVersions[i];
      char version[32];
      const char *first = "", *second = "";
      if (!entry) {
        KSI_sys_inq_version_major_minor(version);
        if (version[0]) first = version, second = "\\";
      } else if (entry[0]) {
        first = entry, second = "\\";
      }
      snprintf(store.keyPath, sizeof store.keyPath, "SOFTWARE\\Cordwain\\Kestrel SDK\\%s%sEnv",
               first, second);
      void *key = open_key(store.keyPath);
      if (key) {
        store.keyIndex = i;
        return key;
      }
    }
    return nullptr;
  }
  if (store.keyIndex < 0) return nullptr;
  return open_key(store.keyPath);
}

char *store_lookup(const char *name) {
  void *key = open_store_key();
  if (!key) return nullptr;
  char *value = GP_env_store_read(key, name);
  GP_env_store_close(key);
  return value;
}

// Texts handed to the runtime's putenv; each must live while the runtime may point at it.
struct SetenvNode {
  SetenvNode *next;
  SetenvNode *previous;
  char *text;
};

struct SetenvState {
  SetenvNode *head;
  SetenvNode *tail;
  int putenvCalls;
  bool entryLookedUp;
  void *entry;
  bool inEntry;
};

SetenvState setenvState = {nullptr, nullptr, 0, false, nullptr, false};

SetenvNode *find_node(const char *text) {
  for (SetenvNode *n = setenvState.head; n; n = n->next)
    if (n->text == text) return n;
  return nullptr;
}

void unlink_node(SetenvNode *node) {
  if (node->previous) node->previous->next = node->next;
  else setenvState.head = node->next;
  if (node->next) node->next->previous = node->previous;
  else setenvState.tail = node->previous;
}

// The runtime entry "name=..." for a name given with its length, or null.
char *find_environment_entry(const char *name, size_t nameLength) {
  char **env = GP_env_environ();
  if (!env) return nullptr;
  for (; *env; ++env)
    if (strncmp(*env, name, nameLength) == 0 && (*env)[nameLength] == '=') return *env;
  return nullptr;
}

bool still_in_environment(const char *text) {
  char **env = GP_env_environ();
  if (!env) return false;
  for (; *env; ++env)
    if (*env == text) return true;
  return false;
}

char *copy_counted(const char *text, size_t length) {
  char *copy = static_cast<char *>(G_malloc(length + 1));
  memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

#if defined(_WIN32) && defined(__i386__)
#define GP_ENTRY_CALL __stdcall
#else
#define GP_ENTRY_CALL
#endif
using SetEnvEntry = int(GP_ENTRY_CALL *)(const char *, const char *);

} // namespace

extern "C" {

int G_sys_inq_env(const char *name, char **value, int *flags) {
  char *found = getenv(name);
  int resultFlags = 0;
  if (found) {
    resultFlags = G_SYS_ENV_FROM_PROCESS;
  } else {
    found = store_lookup(name);
    if (found) resultFlags = G_SYS_ENV_FROM_STORE | G_SYS_ENV_ALLOCATED;
  }
  if (value) *value = found;
  else if (resultFlags & G_SYS_ENV_ALLOCATED) G_free(found);
  if (flags) *flags = resultFlags;
  return 0;
}

char *G_sys_getenv(const char *name) {
  char *value = nullptr;
  G_sys_inq_env(name, &value, nullptr);
  return value;
}

int G_sys_free_env_value(char **value, int flags) {
  if ((flags & G_SYS_ENV_ALLOCATED) && *value) {
    G_free(*value);
    *value = nullptr;
  }
  return 0;
}

// Passes the setting to the GL library's own entry point when one is in the process (it may be
// a second copy of this code, or this very one: the flag stops the loop), then sets it here.
int G_sys_setenv(const char *name, const char *value) {
  if (!setenvState.entryLookedUp) {
    setenvState.entryLookedUp = true;
    void *address = nullptr;
    G_dll_inq_procedure_opengl(0, "vldSetEnvVELD", &address);
    setenvState.entry = address;
  }
  if (setenvState.entry && !setenvState.inEntry) {
    setenvState.inEntry = true;
    reinterpret_cast<SetEnvEntry>(setenvState.entry)(name, value);
    setenvState.inEntry = false;
  }
  if (value) return GP_sys_setenv_counted(-1, name, -1, value);
  GP_sys_unsetenv_full(name, 0, 0);
  return 0;
}

// Sets the operating system's copy, then the runtime's unless it already holds exactly this
// value; a text of ours that the runtime no longer points at is freed.
int GP_sys_setenv_counted(int nameLength, const char *name, int valueLength, const char *value) {
  size_t nLength = nameLength < 0 ? strlen(name) : static_cast<size_t>(nameLength);
  size_t vLength = valueLength < 0 ? strlen(value) : static_cast<size_t>(valueLength);

  bool nameTerminated = name[nLength] == '\0';
  bool valueTerminated = value[vLength] == '\0';
  if (!nameTerminated && nLength >= 1024) {
    fputs("G_sys_setenv: symbol name too long\n", stderr);
  } else if (!valueTerminated && vLength >= 1024) {
    fputs("G_sys_setenv: symbol value too long\n", stderr);
  } else {
    char *nameCopy = nameTerminated ? nullptr : copy_counted(name, nLength);
    char *valueCopy = valueTerminated ? nullptr : copy_counted(value, vLength);
    if (GP_env_native_set(nameCopy ? nameCopy : name, valueCopy ? valueCopy : value) != 0)
      fputs("G_sys_setenv: SetEnvironmentVariable failed\n", stderr);
    G_free(nameCopy);
    G_free(valueCopy);
  }

  char *old = find_environment_entry(name, nLength);
  if (old && strlen(old + nLength + 1) == vLength && memcmp(old + nLength + 1, value, vLength) == 0)
    return 0;

  SetenvNode *node = static_cast<SetenvNode *>(G_malloc(sizeof(SetenvNode)));
  node->text = static_cast<char *>(G_malloc(nLength + vLength + 2));
  memcpy(node->text, name, nLength);
  node->text[nLength] = '=';
  memcpy(node->text + nLength + 1, value, vLength);
  node->text[nLength + 1 + vLength] = '\0';
  node->next = nullptr;
  node->previous = setenvState.tail;
  if (setenvState.tail) setenvState.tail->next = node;
  else setenvState.head = node;
  setenvState.tail = node;
  ++setenvState.putenvCalls;
  int failed = GP_env_putenv(node->text);

  if (old && !still_in_environment(old)) {
    SetenvNode *oldNode = find_node(old);
    if (oldNode) {
      unlink_node(oldNode);
      G_free(oldNode->text);
      G_free(oldNode);
    }
  }
  return failed ? -1 : 0;
}

// Without a wildcard: clears the name in both environments and counts nothing. With "stem*":
// every runtime entry that begins with the stem is removed (entries with an empty value are
// counted and kept).
int GP_sys_unsetenv_full(const char *name, int allowWildcard, int verbose) {
  size_t length = strlen(name);
  if (length == 0) return 0;
  int count = 0;
  if (allowWildcard && name[length - 1] == '*') {
    size_t stemLength = length - 1;
    // Names are collected first: removing moves the runtime's array.
    int capacity = 16, n = 0;
    char **names = static_cast<char **>(G_malloc(sizeof(char *) * static_cast<size_t>(capacity)));
    char **env = GP_env_environ();
    for (; env && *env; ++env) {
      if (strncmp(*env, name, stemLength) != 0) continue;
      const char *eq = strchr(*env, '=');
      if (!eq) continue;
      ++count;
      if (eq[1] == '\0') continue;
      if (n == capacity) {
        capacity *= 2;
        names = static_cast<char **>(G_realloc(names, sizeof(char *) * static_cast<size_t>(capacity)));
      }
      names[n++] = copy_counted(*env, static_cast<size_t>(eq - *env));
    }
    for (int i = 0; i < n; ++i) {
      if (verbose) printf("    removing environment variable \"%s\"\n", names[i]);
      GP_env_remove(names[i]);
      G_free(names[i]);
    }
    G_free(names);
  } else {
    GP_env_native_set(name, nullptr);
    GP_env_remove(name);
  }
  if (verbose) printf("removed a total of %d environment variables\n", count);
  return count;
}

} // extern "C"

void GP_sys_env_reset(void) {
  store.keyTried = false;
  store.keyIndex = -1;
  store.keyPath[0] = '\0';
  store.opens = 0;
  setenvState.entryLookedUp = false;
  setenvState.entry = nullptr;
  setenvState.putenvCalls = 0;
}

int GP_sys_env_store_open_count(void) { return store.opens; }
int GP_sys_env_putenv_count(void) { return setenvState.putenvCalls; }
