// POSIX side of the small services: nanosleep and the uname facts.
#include "support/sys/sys.h"

#include <sys/utsname.h>
#include <time.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" int G_sleep(unsigned int milliseconds) {
  struct timespec wait;
  wait.tv_sec = milliseconds / 1000;
  wait.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000L;
  while (nanosleep(&wait, &wait) != 0 && errno == EINTR) {
  }
  return 0;
}

// The system name is the short word; the release "6.1.0-18-amd64" gives major 6, minor 1,
// build 0, and the whole release text stands where Windows puts its service pack.
int GP_sys_query_os(GP_sys_os_info *info) {
  static struct utsname names;
  if (uname(&names) != 0) {
    info->word = "POSIX";
    return -1;
  }
  info->word = names.sysname;
  const char *p = names.release;
  info->major = atoi(p);
  p = strchr(p, '.');
  info->minor = p ? atoi(p + 1) : 0;
  p = p ? strchr(p + 1, '.') : nullptr;
  info->build = p ? atoi(p + 1) : 0;
  snprintf(info->extra, sizeof info->extra, "%s", names.release);
  return 0;
}
