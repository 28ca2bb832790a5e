// The test store on Windows: the registry itself, under HKEY_LOCAL_MACHINE.
#include "../support/store_helper.h"

#include <windows.h>

#include <cstring>
#include <string>

namespace {

const char kBase[] = "SOFTWARE\\Cordwain\\Kestrel SDK";

HKEY create_key(const char *version) {
  std::string path = kBase;
  if (version[0]) path += std::string("\\") + version;
  path += "\\Env";
  HKEY key = nullptr;
  RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                  nullptr);
  return key;
}

} // namespace

void store_clear() {
  HKEY base = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Cordwain", 0, KEY_ALL_ACCESS, &base) ==
      ERROR_SUCCESS) {
    RegDeleteTreeA(base, "Kestrel SDK");
    RegCloseKey(base);
  }
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Cordwain");
}

void store_put_text(const char *version, const char *name, const char *text) {
  HKEY key = create_key(version);
  RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE *>(text),
                 static_cast<DWORD>(strlen(text) + 1));
  RegCloseKey(key);
}

void store_put_number(const char *version, const char *name, unsigned value) {
  HKEY key = create_key(version);
  DWORD number = value;
  RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number), sizeof number);
  RegCloseKey(key);
}
