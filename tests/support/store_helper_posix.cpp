// The test store on POSIX: a private root folder named by ZVGL_REGISTRY_ROOT.
#include "store_helper.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::filesystem::path root() {
  static std::filesystem::path folder = [] {
    std::filesystem::path p = std::filesystem::temp_directory_path() /
                              ("zvgl-store-test-" + std::to_string(getpid()));
    setenv("ZVGL_REGISTRY_ROOT", p.c_str(), 1);
    return p;
  }();
  return folder;
}

std::filesystem::path key(const char *version) {
  std::filesystem::path p = root() / "SOFTWARE" / "Cordwain" / "Kestrel SDK";
  if (version[0]) p /= version;
  p /= "Env";
  std::filesystem::create_directories(p);
  return p;
}

} // namespace

void store_clear() { std::filesystem::remove_all(root()); }

void store_put_text(const char *version, const char *name, const char *text) {
  std::ofstream(key(version) / name) << text << '\n';
}

void store_put_number(const char *version, const char *name, unsigned value) {
  std::ofstream(key(version) / name) << "dword:0x" << std::hex << value;
}
