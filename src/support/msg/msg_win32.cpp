// Windows side of the reporting services: the message box and FormatMessageA texts.
#include "support/msg/msg.h"

#include <windows.h>

void GP_msg_popup(const char *title, const char *text, unsigned style) {
  MessageBeep(MB_ICONEXCLAMATION);
  MessageBoxA(nullptr, text, title, style);
}

// The system's text for a code: from-system, ignore-inserts, allocated, lines up to 255 wide.
const char *GP_msg_system_text(unsigned long code) {
  char *buffer = nullptr;
  DWORD n = FormatMessageA(0x11FF, nullptr, code, 0, reinterpret_cast<LPSTR>(&buffer), 0, nullptr);
  const char *copy = GP_msg_scratch_copy(n && buffer ? buffer : "");
  if (buffer) LocalFree(buffer);
  return copy;
}

unsigned long GP_msg_last_error(void) { return GetLastError(); }
