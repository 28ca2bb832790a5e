// Windows side of the small services: Sleep and the GetVersionExA facts.
#include "support/sys/sys.h"

#include <windows.h>

#include <cstring>

extern "C" int G_sleep(unsigned int milliseconds) {
  Sleep(milliseconds);
  return 0;
}

// Reads the 148-byte version record and names the platform by its id.
int GP_sys_query_os(GP_sys_os_info *info) {
  OSVERSIONINFOA version;
  memset(&version, 0, sizeof version);
  version.dwOSVersionInfoSize = sizeof version;
  if (!GetVersionExA(&version)) {
    info->word = "Win32";
    return -1;
  }
  switch (version.dwPlatformId) {
  case 0: info->word = "Win32s"; break;
  case 1: info->word = version.dwMinorVersion != 0 ? "Win98" : "Win95"; break;
  case 2: info->word = "WinNT"; break;
  default: info->word = "Win32_unknown"; break;
  }
  info->major = static_cast<int>(version.dwMajorVersion);
  info->minor = static_cast<int>(version.dwMinorVersion);
  info->build = version.dwPlatformId == 1 ? static_cast<int>(version.dwBuildNumber & 0xFFFF)
                                          : static_cast<int>(version.dwBuildNumber);
  static_assert(sizeof version.szCSDVersion <= sizeof info->extra);
  memcpy(info->extra, version.szCSDVersion, sizeof version.szCSDVersion);
  info->extra[sizeof info->extra - 1] = '\0';
  return 0;
}
