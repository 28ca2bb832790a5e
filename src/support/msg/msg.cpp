// The message channel and the mprintf channel.
#include "support/msg/msg.h"

#include "support/env/env.h"
#include "support/sys/sys.h"

#include <cstdlib>
#include <cstring>

namespace {

struct WordValue {
  const char *word;
  int value;
};

const WordValue kSeverityWords[] = {
    {"NONE", 0}, {"DETAIL", 1},     {"INFO_DETAIL", 1}, {"INFO", 2},
    {"INFO_BRIEF", 3}, {"WARNING", 4}, {"ERROR", 5},     {"FATAL", 6},
};
const char *const kSeverityPrefixes[] = {"G_MSG_SEV_", "MSG_SEV_", "SEV_"};

const WordValue kFlagWords[] = {
    {"NONE", 0},          {"SUPPRESS_INTRO", 1}, {"SUPPRESS_INTRODUCTION", 1},
    {"SUPPRESS_PREFIX", 2}, {"FORCE", 4},
};
const char *const kFlagPrefixes[] = {"G_MSG_FLAG_", "MSG_FLAG_", "FLAG_"};

const char kDefaultPrefix[] = "Kestrel: ";

struct MessageChannel {
  bool initialised;
  int verbosity;
  unsigned flags;
  const char *prefix;
  int prefixLength;
  bool prefixOwned;
  int severityPrevious;
  int statusCodePrevious;
  int severityMax;
};

MessageChannel channel = {false, 2, 0, kDefaultPrefix, 0, false, 0, 0, 0};

// Reads one environment word: unset gives `unsetValue`, empty gives `emptyValue`, otherwise
// the first fitting prefix is stripped and the rest matched case-blind against the table in
// order. An unknown word is told on standard error and gives `unsetValue`.
template <size_t NW, size_t NP>
int read_environment_word(const char *name, const WordValue (&words)[NW],
                          const char *const (&prefixes)[NP], int unsetValue, int emptyValue) {
  char *value = nullptr;
  int envFlags = 0;
  G_sys_inq_env(name, &value, &envFlags);
  if (!value) return unsetValue;
  int result = unsetValue;
  if (value[0] == '\0') {
    result = emptyValue;
  } else {
    const char *rest = value;
    for (const char *prefix : prefixes) {
      size_t n = strlen(prefix);
      if (G_strncasecmp(rest, prefix, n) == 0) {
        rest += n;
        break;
      }
    }
    bool matched = false;
    for (const WordValue &w : words) {
      if (G_strcasecmp(rest, w.word) == 0) {
        result = w.value;
        matched = true;
        break;
      }
    }
    if (!matched) {
      fflush(stdout);
      fprintf(stderr, "Unrecognized value for environment variable: %s = %s\n", name, value);
      fflush(stderr);
    }
  }
  G_sys_free_env_value(&value, envFlags);
  return result;
}

// Runs once before any use of the channel: reads the two environment values and clears the
// record of previous reports.
void ensure_initialised() {
  if (channel.initialised) return;
  channel.initialised = true;
  channel.verbosity = read_environment_word("G_ENV_MSG_VERBOSITY", kSeverityWords,
                                            kSeverityPrefixes, G_MSG_SEV_INFO, G_MSG_SEV_DETAIL);
  channel.flags = static_cast<unsigned>(read_environment_word(
      "G_ENV_MSG_FLAGS", kFlagWords, kFlagPrefixes, 0, G_MSG_FLAG_SUPPRESS_PREFIX));
  channel.severityPrevious = 0;
  channel.severityMax = 0;
  channel.statusCodePrevious = 0;
  if (!channel.prefix) {
    channel.prefix = kDefaultPrefix;
    channel.prefixOwned = false;
  }
  channel.prefixLength = static_cast<int>(strlen(channel.prefix));
}

// Notes the report, filters it, and writes heading and message. `heading` null means the
// channel's prefix; otherwise the caller's name followed by ": ".
int report(FILE *stream, int severity, int statusCode, unsigned callFlags, const char *heading,
           const char *format, va_list args) {
  ensure_initialised();
  channel.statusCodePrevious = statusCode;
  channel.severityPrevious = severity;
  if (severity > channel.severityMax) channel.severityMax = severity;
  unsigned flags = channel.flags | callFlags;
  if (severity < channel.verbosity && !(flags & G_MSG_FLAG_FORCE)) return 0;
  if (!stream) stream = stderr;
  if (stream == stderr) fflush(stdout);
  int total = 0;
  if (!(flags & G_MSG_FLAG_SUPPRESS_PREFIX)) {
    int n = heading ? fprintf(stream, "%s: ", heading) : fprintf(stream, "%s", channel.prefix);
    if (n < 0) return n;
    total += n;
  }
  int n = vfprintf(stream, format, args);
  if (n < 0) return n;
  total += n;
  fflush(stream);
  return total;
}

// mprintf channel state.
struct ScratchNode {
  ScratchNode *next;
  ScratchNode *previous;
  char *text;
};

struct MprintChannel {
  int sevStderr;
  int sevPopup;
  char *msgPrefix;
  ScratchNode *scratchHead;
  ScratchNode *scratchTail;
  GP_mprint_popup_fn popupHook;
};

MprintChannel mprint = {80, 80, nullptr, nullptr, nullptr, nullptr};

void free_scratch_list() {
  ScratchNode *node = mprint.scratchHead;
  while (node) {
    ScratchNode *next = node->next;
    free(node->text);
    free(node);
    node = next;
  }
  mprint.scratchHead = mprint.scratchTail = nullptr;
}

} // namespace

extern "C" {

int G_msg_report_v(FILE *stream, int severity, int statusCode, const char *format,
                   va_list args) {
  return report(stream, severity, statusCode, 0, nullptr, format, args);
}

int G_msg_report(FILE *stream, int severity, int statusCode, const char *format, ...) {
  va_list args;
  va_start(args, format);
  int n = report(stream, severity, statusCode, 0, nullptr, format, args);
  va_end(args);
  return n;
}

int G_msg_report_cont_v(FILE *stream, int severity, int statusCode, const char *format,
                        va_list args) {
  return report(stream, severity, statusCode, G_MSG_FLAG_SUPPRESS_PREFIX, nullptr, format, args);
}

int G_msg_report_cont(FILE *stream, int severity, int statusCode, const char *format, ...) {
  va_list args;
  va_start(args, format);
  int n = report(stream, severity, statusCode, G_MSG_FLAG_SUPPRESS_PREFIX, nullptr, format, args);
  va_end(args);
  return n;
}

int GI_msg_report_flags_v(FILE *stream, int severity, int statusCode, unsigned callFlags,
                          const char *format, va_list args) {
  return report(stream, severity, statusCode, callFlags, nullptr, format, args);
}

int GI_msg_report_flags(FILE *stream, int severity, int statusCode, unsigned callFlags,
                        const char *format, ...) {
  va_list args;
  va_start(args, format);
  int n = report(stream, severity, statusCode, callFlags, nullptr, format, args);
  va_end(args);
  return n;
}

// The format gets "\n\r" appended before use. A format too long for the usual buffer is
// copied to the heap rather than overrunning it.
int G_msg_user(FILE *stream, int severity, int statusCode, const char *name, const char *format,
               ...) {
  char local[288];
  size_t length = strlen(format);
  char *copy = length + 3 <= sizeof local ? local : static_cast<char *>(G_malloc(length + 3));
  memcpy(copy, format, length);
  memcpy(copy + length, "\n\r", 3);
  va_list args;
  va_start(args, format);
  int n = report(stream, severity, statusCode, 0, name ? name : "", copy, args);
  va_end(args);
  if (copy != local) G_free(copy);
  return n;
}

int G_msg_inq_severity_verbosity(int *value) {
  ensure_initialised();
  *value = channel.verbosity;
  return 0;
}

int G_msg_set_status_code_previous(int value) {
  ensure_initialised();
  channel.statusCodePrevious = value;
  return 0;
}

int G_msg_inq_status_code_previous(int *value) {
  ensure_initialised();
  *value = channel.statusCodePrevious;
  return 0;
}

int G_msg_set_severity_previous(int value) {
  ensure_initialised();
  channel.severityPrevious = value;
  return 0;
}

int G_msg_inq_severity_previous(int *value) {
  ensure_initialised();
  *value = channel.severityPrevious;
  return 0;
}

int G_msg_set_severity_max(int value) {
  ensure_initialised();
  channel.severityMax = value;
  return 0;
}

int G_msg_inq_severity_max(int *value) {
  ensure_initialised();
  *value = channel.severityMax;
  return 0;
}

int GI_msg_set_flags(unsigned value) {
  ensure_initialised();
  channel.flags = value;
  return 0;
}

int GI_msg_inq_flags(unsigned *value) {
  ensure_initialised();
  *value = channel.flags;
  return 0;
}

int G_msg_set_prefix(const char *text) {
  ensure_initialised();
  if (channel.prefixOwned) G_free(const_cast<char *>(channel.prefix));
  if (!text) text = "";
  size_t length = strlen(text);
  char *copy = static_cast<char *>(G_malloc(length + 1));
  memcpy(copy, text, length + 1);
  channel.prefix = copy;
  channel.prefixOwned = true;
  channel.prefixLength = static_cast<int>(length);
  return 0;
}

int G_msg_inq_prefix(int size, int *length, char *buffer) {
  ensure_initialised();
  if (length) *length = channel.prefixLength;
  if (buffer && size > 0) {
    int n = channel.prefixLength < size - 1 ? channel.prefixLength : size - 1;
    memcpy(buffer, channel.prefix, static_cast<size_t>(n));
    buffer[n] = '\0';
  }
  return channel.prefixLength >= size ? -1 : 0;
}

const char *GI_msg_prefix(void) {
  ensure_initialised();
  return channel.prefix;
}

// Formats into a 3072-byte buffer (cut, always terminated), writes it with a line break to
// standard error and raises the box by the two thresholds, then frees every scratch text.
int mprintf(int severity, const char *format, ...) {
  char text[3072];
  size_t used = 0;
  if (mprint.msgPrefix) {
    int n = snprintf(text, sizeof text, "%s", mprint.msgPrefix);
    used = n < 0 ? 0 : (static_cast<size_t>(n) < sizeof text ? static_cast<size_t>(n) : sizeof text - 1);
  }
  va_list args;
  va_start(args, format);
  vsnprintf(text + used, sizeof text - used, format, args);
  va_end(args);
  text[sizeof text - 1] = '\0';
  int written = 0;
  if (severity <= mprint.sevStderr) {
    fflush(stdout);
    written = fprintf(stderr, "%s\n", text);
    fflush(stderr);
  }
  if (severity <= mprint.sevPopup) {
    unsigned style = severity >= 1 ? 0x10010u : 0x10040u;
    if (mprint.popupHook)
      mprint.popupHook("Glide Redirector", text, style);
    else
      GP_msg_popup("Glide Redirector", text, style);
  }
  free_scratch_list();
  return written;
}

const char *sysmsg(unsigned long code) { return GP_msg_system_text(code); }

const char *sysgle(void) { return GP_msg_system_text(GP_msg_last_error()); }

int mprint_inq_sev_popup(void) { return mprint.sevPopup; }
int mprint_set_sev_popup(int severity) {
  int old = mprint.sevPopup;
  mprint.sevPopup = severity;
  return old;
}
int mprint_inq_sev_stderr(void) { return mprint.sevStderr; }
int mprint_set_sev_stderr(int severity) {
  int old = mprint.sevStderr;
  mprint.sevStderr = severity;
  return old;
}

int mprint_set_msg_prefix(const char *text) {
  free(mprint.msgPrefix);
  mprint.msgPrefix = nullptr;
  if (text) {
    size_t length = strlen(text);
    mprint.msgPrefix = static_cast<char *>(G_malloc(length + 1));
    memcpy(mprint.msgPrefix, text, length + 1);
  }
  return 0;
}

int mprint_shutdown(void) { return mprint_set_msg_prefix(nullptr); }

} // extern "C"

void GP_msg_reset(void) {
  if (channel.prefixOwned) G_free(const_cast<char *>(channel.prefix));
  channel = MessageChannel{false, 2, 0, kDefaultPrefix, 0, false, 0, 0, 0};
}

void GP_mprint_set_popup_hook(GP_mprint_popup_fn hook) { mprint.popupHook = hook; }

// Keeps a copy on the scratch list; without memory the fixed failure text stands in.
const char *GP_msg_scratch_copy(const char *text) {
  if (!text) text = "";
  size_t length = strlen(text);
  ScratchNode *node = static_cast<ScratchNode *>(malloc(sizeof(ScratchNode)));
  char *copy = static_cast<char *>(malloc(length + 1));
  if (!node || !copy) {
    free(node);
    free(copy);
    return "message_memory_allocation_failed";
  }
  memcpy(copy, text, length + 1);
  node->text = copy;
  node->next = nullptr;
  node->previous = mprint.scratchTail;
  if (mprint.scratchTail)
    mprint.scratchTail->next = node;
  else
    mprint.scratchHead = node;
  mprint.scratchTail = node;
  return copy;
}
