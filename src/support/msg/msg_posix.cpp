// POSIX side of the reporting services: no message box (the text already went to standard
// error), and strerror for system codes.
#include "support/msg/msg.h"

#include <cerrno>
#include <cstring>

void GP_msg_popup(const char *, const char *, unsigned) {}

const char *GP_msg_system_text(unsigned long code) {
  return GP_msg_scratch_copy(strerror(static_cast<int>(code)));
}

unsigned long GP_msg_last_error(void) { return static_cast<unsigned long>(errno); }
