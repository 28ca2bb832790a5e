// Allocation, version texts, sequence numbers, case-blind compares and the OS text rule.
#include "support/sys/sys.h"

#include "support/mt/mt.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char kVersion[] = "4.3-build161";

// Reports an allocation failure the way the failing function names it and ends the process.
[[noreturn]] void fail_allocation(const char *text, size_t bytes, bool flush) {
  fprintf(stderr, text, static_cast<unsigned>(bytes));
  if (flush) fflush(stderr);
  exit(1);
}

volatile long sequenceCounter = 0;

} // namespace

extern "C" {

void *G_malloc(size_t size) {
  void *block = malloc(size);
  if (!block) fail_allocation("G_malloc: Fatal: failed to allocate %u bytes\n", size, true);
  return block;
}

void *G_calloc(size_t count, size_t size) {
  void *block = calloc(count, size);
  if (!block) fail_allocation("G_calloc: Fatal: failed to allocate %u bytes\n", count * size, true);
  return block;
}

void *G_realloc(void *block, size_t size) {
  void *grown = realloc(block, size);
  if (!grown) fail_allocation("G_malloc: Fatal: failed to allocate %u bytes\n", size, true);
  return grown;
}

void *G_calloc_dbg(size_t count, size_t size) {
  void *block = calloc(count, size);
  if (!block) {
    fputs("G_calloc_dbg: Out of memory, Fatal error\n", stderr);
    exit(1);
  }
  return block;
}

void *G_realloc_dbg(void *block, size_t size) {
  void *grown = realloc(block, size);
  if (!grown) {
    fputs("G_realloc_dbg: Out of memory, Fatal error\n", stderr);
    exit(1);
  }
  return grown;
}

void G_free(void *block) { free(block); }

int KS_sys_inq_version(char *buffer) {
  memcpy(buffer, kVersion, sizeof kVersion);
  return 0;
}

// Copies the leading digits of the version with at most one '.', so "4.3-build161" gives "4.3".
int KSI_sys_inq_version_major_minor(char *buffer) {
  size_t n = 0;
  bool dotSeen = false;
  for (; kVersion[n]; ++n) {
    char c = kVersion[n];
    if (c == '.' && !dotSeen) {
      dotSeen = true;
    } else if (!isdigit(static_cast<unsigned char>(c))) {
      break;
    }
  }
  memcpy(buffer, kVersion, n);
  buffer[n] = '\0';
  return 0;
}

int KSI_assign_sequence_number(int *value) {
  *value = static_cast<int>(GI_mt_InterlockedIncrement(&sequenceCounter));
  return 0;
}

// Compares case-blind: a byte that is upper case goes through tolower; the difference of the
// first unequal pair, as signed bytes, decides the sign.
int G_strcasecmp(const char *a, const char *b) {
  for (;; ++a, ++b) {
    int ca = *a, cb = *b;
    if (isupper(static_cast<unsigned char>(ca))) ca = tolower(static_cast<unsigned char>(ca));
    if (isupper(static_cast<unsigned char>(cb))) cb = tolower(static_cast<unsigned char>(cb));
    ca = static_cast<signed char>(ca);
    cb = static_cast<signed char>(cb);
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) return 0;
  }
}

int G_strncasecmp(const char *a, const char *b, size_t n) {
  for (; n > 0; --n, ++a, ++b) {
    int ca = *a, cb = *b;
    if (isupper(static_cast<unsigned char>(ca))) ca = tolower(static_cast<unsigned char>(ca));
    if (isupper(static_cast<unsigned char>(cb))) cb = tolower(static_cast<unsigned char>(cb));
    ca = static_cast<signed char>(ca);
    cb = static_cast<signed char>(cb);
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) return 0;
  }
  return 0;
}

int KSI_sys_inq_os_string(int size, char *buffer, int shortForm) {
  if (size < 80) return -1;
  GP_sys_os_info info{};
  int queried = GP_sys_query_os(&info);
  return GP_sys_format_os_string(&info, queried, size, buffer, shortForm);
}

} // extern "C"

// Builds "<word>[ <major>.<minor> build <n>[ <extra>]]". The extra text is trimmed of blanks
// at both ends; if the whole would not fit in `size` the result is -1 (the short part stays).
int GP_sys_format_os_string(const GP_sys_os_info *info, int queryResult, int size, char *buffer,
                            int shortForm) {
  if (size < 80) return -1;
  snprintf(buffer, static_cast<size_t>(size), "%s", info->word);
  if (queryResult != 0) return -1;
  if (shortForm) return 0;
  size_t used = strlen(buffer);
  used += static_cast<size_t>(snprintf(buffer + used, static_cast<size_t>(size) - used, " %d.%d",
                                       info->major, info->minor));
  used += static_cast<size_t>(
      snprintf(buffer + used, static_cast<size_t>(size) - used, " build %d", info->build));
  const char *extra = info->extra;
  size_t extraLength = strnlen(extra, sizeof info->extra);
  while (extraLength > 0 && *extra == ' ') ++extra, --extraLength;
  while (extraLength > 0 && extra[extraLength - 1] == ' ') --extraLength;
  size_t total = used + (extraLength ? 1 + extraLength : 0);
  if (total >= static_cast<size_t>(size)) return -1;
  if (extraLength)
    snprintf(buffer + used, static_cast<size_t>(size) - used, " %.*s", static_cast<int>(extraLength),
             extra);
  return 0;
}
