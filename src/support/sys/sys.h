// Small services of the support library: allocation that cannot fail, the version and
// operating-system texts, the process-wide sequence number, sleeping and case-blind compares.
#pragma once

#include <cstddef>

extern "C" {

// A 64-bit count kept as two 32-bit words (statistics counters carry into `high`).
struct G_Int64 {
  unsigned int low;
  unsigned int high;
};

// Allocation: none of these returns null; on failure the process reports and exits(1).
void *G_malloc(size_t size);
void *G_calloc(size_t count, size_t size);
void *G_realloc(void *block, size_t size);
void *G_calloc_dbg(size_t count, size_t size);
void *G_realloc_dbg(void *block, size_t size);
void G_free(void *block);

// The build's version text "4.3-build161" (13 bytes with the terminator).
int KS_sys_inq_version(char *buffer);
// The leading "major.minor" of the version text ("4.3"); empty when the version is empty.
int KSI_sys_inq_version_major_minor(char *buffer);

// Process-wide sequence counter; the first value handed out is 1. Thread-safe.
int KSI_assign_sequence_number(int *value);

// Blocks the calling thread; returns 0.
int G_sleep(unsigned int milliseconds);

// Names the operating system: the short form ("WinNT", "Linux") or the long one with version,
// build and service-pack text. A size below 80 gives -1 and leaves the buffer untouched.
int KSI_sys_inq_os_string(int size, char *buffer, int shortForm);

// Case-blind compares on signed bytes with results -1, 0 or 1 (the C library's own
// strcasecmp keeps its name; these are the library's versions).
int G_strcasecmp(const char *a, const char *b);
int G_strncasecmp(const char *a, const char *b, size_t n);

} // extern "C"

// Platform layer of the OS text: the platform word and the version details in the shape
// " <major>.<minor> build <n>" plus an optional extra text. Returns -1 when the system
// cannot be asked (the word is then still set).
struct GP_sys_os_info {
  const char *word;
  int major;
  int minor;
  int build;
  char extra[128];
};
int GP_sys_query_os(GP_sys_os_info *info);

// Formats the OS text from queried facts: the shared rule of every platform.
int GP_sys_format_os_string(const GP_sys_os_info *info, int queryResult, int size, char *buffer,
                            int shortForm);
