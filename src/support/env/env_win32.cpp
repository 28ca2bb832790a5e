// Windows side of the environment: the registry under HKEY_LOCAL_MACHINE, the Win32
// environment and the C runtime's.
#include "support/env/env.h"

#include "support/sys/sys.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

void *GP_env_store_open(const char *keyPath) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyPath, 0, 0x20019, &key) != ERROR_SUCCESS) return nullptr;
  return key;
}

// REG_SZ is read into a block of the reported size; REG_DWORD into 20 bytes in decimal.
char *GP_env_store_read(void *key, const char *name) {
  HKEY hkey = static_cast<HKEY>(key);
  DWORD type = 0, size = 0;
  if (RegQueryValueExA(hkey, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return nullptr;
  if (type == REG_SZ) {
    char *text = static_cast<char *>(G_malloc(size + 1));
    DWORD got = size;
    if (RegQueryValueExA(hkey, name, nullptr, &type, reinterpret_cast<BYTE *>(text), &got) !=
        ERROR_SUCCESS) {
      G_free(text);
      return nullptr;
    }
    text[got < size ? got : size] = '\0';
    return text;
  }
  if (type == REG_DWORD) {
    char *text = static_cast<char *>(G_malloc(20));
    DWORD number = 0, got = sizeof number;
    if (RegQueryValueExA(hkey, name, nullptr, &type, reinterpret_cast<BYTE *>(&number), &got) !=
        ERROR_SUCCESS) {
      G_free(text);
      return nullptr;
    }
    _itoa(static_cast<int>(number), text, 10);
    return text;
  }
  return nullptr;
}

void GP_env_store_close(void *key) { RegCloseKey(static_cast<HKEY>(key)); }

int GP_env_native_set(const char *name, const char *value) {
  return SetEnvironmentVariableA(name, value) ? 0 : -1;
}

int GP_env_putenv(char *text) { return _putenv(text) == 0 ? 0 : -1; }

// "NAME=" removes the name from the runtime's environment.
int GP_env_remove(const char *name) {
  size_t length = strlen(name);
  char *text = static_cast<char *>(G_malloc(length + 2));
  memcpy(text, name, length);
  text[length] = '=';
  text[length + 1] = '\0';
  int result = _putenv(text);
  G_free(text);
  return result == 0 ? 0 : -1;
}

char **GP_env_environ(void) { return _environ; }
