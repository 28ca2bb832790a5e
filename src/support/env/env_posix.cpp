// POSIX side of the environment. The per-machine store is a directory tree: the key
// "SOFTWARE\Cordwain\Kestrel SDK\4.3\Env" is the folder <root>/SOFTWARE/Cordwain/Kestrel SDK/4.3/Env,
// and each value is one file named like the value. A file whose text begins with "dword:" holds a
// 32-bit number (decimal, or hexadecimal after 0x), read back in decimal; any other file is text,
// with one final line break dropped. The root is $ZVGL_REGISTRY_ROOT, or /etc/zvgl.
#include "support/env/env.h"

#include "support/sys/sys.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

extern char **environ;

void *GP_env_store_open(const char *keyPath) {
  const char *root = getenv("ZVGL_REGISTRY_ROOT");
  std::string path = root && root[0] ? root : "/etc/zvgl";
  path += '/';
  for (const char *p = keyPath; *p; ++p) path += *p == '\\' ? '/' : *p;
  struct stat info;
  if (stat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return nullptr;
  char *handle = static_cast<char *>(G_malloc(path.size() + 1));
  memcpy(handle, path.c_str(), path.size() + 1);
  return handle;
}

char *GP_env_store_read(void *key, const char *name) {
  if (!name[0] || strchr(name, '/') || strcmp(name, ".") == 0 || strcmp(name, "..") == 0)
    return nullptr;
  std::string path = static_cast<const char *>(key);
  path += '/';
  path += name;
  FILE *file = fopen(path.c_str(), "rb");
  if (!file) return nullptr;
  std::string content;
  char chunk[512];
  size_t n;
  while ((n = fread(chunk, 1, sizeof chunk, file)) > 0) content.append(chunk, n);
  bool failed = ferror(file) != 0;
  fclose(file);
  if (failed) return nullptr;
  if (content.compare(0, 6, "dword:") == 0) {
    unsigned long number = strtoul(content.c_str() + 6, nullptr, 0);
    char *text = static_cast<char *>(G_malloc(20));
    snprintf(text, 20, "%d", static_cast<int>(static_cast<unsigned int>(number)));
    return text;
  }
  if (!content.empty() && content.back() == '\n') content.pop_back();
  if (!content.empty() && content.back() == '\r') content.pop_back();
  char *text = static_cast<char *>(G_malloc(content.size() + 1));
  memcpy(text, content.c_str(), content.size() + 1);
  return text;
}

void GP_env_store_close(void *key) { G_free(key); }

// POSIX has one environment: the C runtime's is the operating system's.
int GP_env_native_set(const char *, const char *) { return 0; }

int GP_env_putenv(char *text) { return putenv(text) == 0 ? 0 : -1; }

int GP_env_remove(const char *name) { return unsetenv(name) == 0 ? 0 : -1; }

char **GP_env_environ(void) { return environ; }
