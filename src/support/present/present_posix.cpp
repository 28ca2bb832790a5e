// present_posix.cpp: POSIX systems have no window handle to draw into (the software board shows
// its live window through SDL2 instead).
#include "support/present/present.h"

namespace zvgl {

int present_to_window(uintptr_t, const uint32_t *, int, int) { return 0; }

}  // namespace zvgl
