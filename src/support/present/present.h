// present.h: shows a picture in an application's window (Windows: GDI into the window's
// client area, scaled to it). Other systems have no such window handle; there the call does
// nothing and says so.
#pragma once

#include <cstdint>

namespace zvgl {

// Draws `pixels` (w x h, 0xAARRGGBB, row 0 at the top) into window `window`. Returns 1 when
// drawn, 0 when there is no window to draw into or the system refused.
int present_to_window(uintptr_t window, const uint32_t *pixels, int w, int h);

}  // namespace zvgl
