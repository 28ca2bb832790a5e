// The two reporting services of the support library.
//
// The message channel (G_msg_*): a severity (higher is more serious), a status code, a printf
// format and a prefix, filtered by a verbosity taken from G_ENV_MSG_VERBOSITY and global flags
// from G_ENV_MSG_FLAGS. No line end is added: each format carries its own.
//
// The mprintf channel serves the module loader: its own scale, where a LOWER number is more
// serious (40 misuse, 80 failure, 160 tracing); it writes to standard error and may raise a
// message box. The two channels never call each other.
#pragma once

#include <cstdarg>
#include <cstdio>

extern "C" {

enum {
  G_MSG_SEV_NONE = 0,
  G_MSG_SEV_DETAIL = 1,
  G_MSG_SEV_INFO = 2,
  G_MSG_SEV_INFO_BRIEF = 3,
  G_MSG_SEV_WARNING = 4,
  G_MSG_SEV_ERROR = 5,
  G_MSG_SEV_FATAL = 6
};

// Report flags, global (GI_msg_set_flags) or per call.
enum {
  G_MSG_FLAG_NONE = 0,
  G_MSG_FLAG_SUPPRESS_INTRO = 1,
  G_MSG_FLAG_SUPPRESS_PREFIX = 2,
  G_MSG_FLAG_FORCE = 4
};

// Reports: the number of characters written, 0 when filtered out, negative on a write
// failure. A null stream is standard error.
int G_msg_report(FILE *stream, int severity, int statusCode, const char *format, ...);
int G_msg_report_v(FILE *stream, int severity, int statusCode, const char *format, va_list args);
// A continuation line: no prefix.
int G_msg_report_cont(FILE *stream, int severity, int statusCode, const char *format, ...);
int G_msg_report_cont_v(FILE *stream, int severity, int statusCode, const char *format,
                        va_list args);
int GI_msg_report_flags(FILE *stream, int severity, int statusCode, unsigned callFlags,
                        const char *format, ...);
int GI_msg_report_flags_v(FILE *stream, int severity, int statusCode, unsigned callFlags,
                          const char *format, va_list args);
// A report headed by the caller's own name ("name: ") in place of the prefix; "\n\r" follows
// the message.
int G_msg_user(FILE *stream, int severity, int statusCode, const char *name, const char *format,
               ...);

int G_msg_inq_severity_verbosity(int *value);
int G_msg_set_status_code_previous(int value);
int G_msg_inq_status_code_previous(int *value);
int G_msg_set_severity_previous(int value);
int G_msg_inq_severity_previous(int *value);
int G_msg_set_severity_max(int value);
int G_msg_inq_severity_max(int *value);
int GI_msg_set_flags(unsigned value);
int GI_msg_inq_flags(unsigned *value);
// A null text is the empty prefix. The text is copied.
int G_msg_set_prefix(const char *text);
// Copies at most size - 1 characters and a terminator; `length` is always the full length.
// Returns -1 when the prefix's length is size or more.
int G_msg_inq_prefix(int size, int *length, char *buffer);
const char *GI_msg_prefix(void);

// mprintf channel. Returns the length of the text written.
int mprintf(int severity, const char *format, ...);
// The text of a system error code, and of the last error of the calling thread. The text lives
// until the next mprintf has finished.
const char *sysmsg(unsigned long code);
const char *sysgle(void);
int mprint_inq_sev_popup(void);
int mprint_set_sev_popup(int severity);
int mprint_inq_sev_stderr(void);
int mprint_set_sev_stderr(int severity);
int mprint_set_msg_prefix(const char *text);
int mprint_shutdown(void);

} // extern "C"

// Returns the message channel to its state before the first call (the prefix it owns is
// freed), so that the next call reads the environment again. For tests.
void GP_msg_reset(void);

// Replaces the message box of mprintf (null restores the platform's). For tests and for
// programs that must never block on a box.
using GP_mprint_popup_fn = void (*)(const char *title, const char *text, unsigned style);
void GP_mprint_set_popup_hook(GP_mprint_popup_fn hook);

// Copies a text into a block that lives until the next mprintf has finished.
const char *GP_msg_scratch_copy(const char *text);

// Platform layer: shows the box (beep first); and the system's text of an error code, copied
// with GP_msg_scratch_copy.
void GP_msg_popup(const char *title, const char *text, unsigned style);
const char *GP_msg_system_text(unsigned long code);
unsigned long GP_msg_last_error(void);
