// The two renderers of the image tests: zvgl2 on the software board, and Mesa's OSMesa.
#pragma once

#include <functional>
#include <string>

#include "gl_table.h"
#include "image_compare.h"

// A scene: GL commands issued through a table, from a fresh context (every state at its
// default). It draws a frame whose picture is the lower-left kFrameWidth x kFrameHeight
// pixels of the window.
using Scene = std::function<void(const GlTable& gl)>;

constexpr int kFrameWidth = 160;
constexpr int kFrameHeight = 160;

// The result of one rendering.
struct Rendering {
    bool ok = false;
    std::string error;      // why not, when !ok
    Image frame;            // the frame region, top row first
    int screenWidth = 0;    // the window the scene ran in
    int screenHeight = 0;
};

// Runs `scene` through libzvgl2 on the software board: a context on a made-up device
// context, made current, the scene, glFinish, and the board's back buffer read with the
// board's tooling. The context is deleted afterwards, which closes the board again.
Rendering renderZvgl(const Scene& scene);

// Runs `scene` through OSMesa into an RGBA buffer of the given window size.
Rendering renderMesa(const Scene& scene, int screenWidth, int screenHeight);

// Runs `scene` through libzvgl2 with the board's trace of Glide calls recorded; `inspect`
// reads the trace (zvbTraceLine and friends) before the context goes away.
bool traceZvgl(const Scene& scene, const std::function<void()>& inspect, std::string* error);
