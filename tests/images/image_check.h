// The checks an image test makes: the board's picture against its golden PNG (exact), and,
// where standard OpenGL 1.1 semantics apply, against Mesa's picture of the same commands.
#pragma once

#include <functional>

#include "renderers.h"

// How a scene is held against Mesa's rendering. Pixels next to an edge of Mesa's picture
// (a channel step above `edgeStep`) are left out, since the board places edges to a
// sixteenth of a pixel and Mesa to a 256th; `exclude` drops further regions where the
// library differs from standard OpenGL by design.
struct MesaCheck {
    Tolerance tolerance;
    int edgeStep = 40;
    std::function<void(PixelMask&)> exclude;
    // Least share of the frame that must remain compared after edges and exclusions.
    double minCompared = 0.25;
};

// Renders `scene` on the board and compares it exactly with tests/images/golden/<name>.png.
// With ZVGL_UPDATE_GOLDEN=1 in the environment the golden file is written instead. When
// `mesa` is given, the picture is also compared with OSMesa's. Failures are reported to
// GoogleTest; the actual picture and a difference picture go into the build tree, and
// their paths are printed.
void checkScene(const char* name, const Scene& scene, const MesaCheck* mesa);
