// raster.h: what the rasteriser's files share: vertex positions in 12.4 fixed point, parameter
// planes, the span job handed to the span loops, and the triangle/span entry points.
#pragma once

#include <cstdint>

#include "pixel/pixel.h"

namespace zvb {

// A vertex position as the hardware takes it: 12.4 fixed point (units of 1/16 pixel), truncated
// from the float and reduced modulo 4096 pixels into [-2048, 2048), so that adding a multiple of
// 4096 (the 2^19 snap constant) changes nothing.
struct FixPoint {
  int32_t x, y;  // 12.4
};

// Converts one coordinate; false for NaN and infinities (the primitive is then dropped).
bool fix_coord(float v, int32_t &out);
bool fix_point(const GrVertex &v, FixPoint &out);

// The iterated parameters of the pixel pipeline.
enum Param { P_R, P_G, P_B, P_A, P_Z, P_W, P_COUNT };

// The texture parameters: s/w, t/w and 1/w of each TMU's vertex values.
enum TexParam { T_S0, T_T0, T_W0, T_S1, T_T1, T_W1, T_COUNT };
// Vertex value of texture parameter p.
inline float tex_field(const GrVertex &v, int p) {
  const GrTmuVertex &t = v.tmuvtx[p / 3];
  return p % 3 == 0 ? t.sow : (p % 3 == 1 ? t.tow : t.oow);
}

// A parameter as a plane over the screen: value at the reference point plus gradients per pixel.
struct Plane {
  double v, dx, dy;
};
struct Planes {
  double refX, refY;  // reference point in pixels
  Plane p[P_COUNT];
  Plane t[T_COUNT];   // texture planes (read only when the state uses the texture)
};

// The planes through three vertices' values (r, g, b, a, ooz, oow) at the given positions, and the
// texture planes too when `textured` (else they are left unset).
void planes_from_vertices(const FixPoint pos[3], const GrVertex *const v[3], Planes &out, bool textured = true);
// The value of a plane at (x, y) in pixels.
inline double plane_at(const Plane &p, double refX, double refY, double x, double y) {
  return p.v + p.dx * (x - refX) + p.dy * (y - refY);
}

// One run of pixels on one row, with its parameters at the first pixel and their steps along x.
struct SpanJob {
  const PixelDecoded *d;
  const uint8_t *fogTable;
  uint16_t *crow;      // colour row (physical), indexed by x
  uint16_t *arow;      // aux row (physical) or null
  int y;               // row in the application's space (dither position)
  int x0, x1;          // pixels [x0, x1)
  int32_t r, g, b, a;  // 12.12
  int32_t z;           // 20.12
  int64_t w;           // 16.32
  int32_t dr, dg, db, da;  // 12.12 per pixel
  int32_t dz;              // 20.12 per pixel
  int64_t dw;              // 16.32 per pixel
  const TexSetup *tex;     // texture set-up of the primitive, when the state uses the texture
  TmuCoords tc[GLIDE_NUM_TMU];  // each TMU's s/w, t/w, 1/w at x0 and per pixel
};

// Pixel counts of one primitive, added to the board's 24-bit counters when it is done.
struct SpanCounts {
  uint32_t in, chroma, zfail, afail, out;
};

using SpanFn = void (*)(const SpanJob &, SpanCounts &);

// The span loop for a key (SpanKeyBits); KEY_GENERIC gives the all-run-time reference loop.
SpanFn span_function(uint32_t key);

// Decodes the board's state if it changed since the last primitive (pb.derived.key then holds the
// state's specialisation key); returns the decoded form.
const PixelDecoded &px_decode(PixelBoard &pb);

// The part of the choice of a lean span loop (spans_plain.h) that depends on the state only.
struct PlainChoice {
  int32_t index;  // the form's row in the loop table (without the no-clamp bit), or -1 for none
  bool iterated;  // the colour is iterated, so the no-clamp form may apply
  bool readsW;    // the loop reads W (depth or fog)
  uint16_t pad;
};

// The drawing context of one primitive: target buffers, decoded state, span loop, counts.
struct RasterTarget {
  PixelBoard *pb;
  const PixelDecoded *d;
  SpanFn fn;
  uint32_t params;   // the iterators the span loop reads (span_key_params)
  uint32_t key;      // the key of fn
  bool plainFirst;   // fn would try a lean loop first: the set-up asks for it directly
  PlainChoice plain; // the state's part of that choice, made at raster_begin
  uint16_t *colour;  // the draw buffer
  uint16_t *aux;
  SpanCounts counts;
  TexSetup tex;            // texture set-up of the current triangle (or span)
  const Plane *texPlane[GLIDE_NUM_TMU][3];  // the planes giving each TMU's s/w, t/w and 1/w
};

// Starts a primitive: false when there is nothing to draw into. The span loop is the one for the
// state's key, or for pb.derived.keyOverride when a test sets one.
bool raster_begin(PixelBoard &pb, RasterTarget &t);
// Adds the primitive's counts to the board's counters.
void raster_end(RasterTarget &t);
// Rasterises a triangle with the fill rule, clipped to the clip window; no culling.
void raster_triangle(RasterTarget &t, const FixPoint v[3], const Planes &planes);
// Draws pixels [x0, x1) of row y (application space, already clipped) with the planes' values.
void raster_span(RasterTarget &t, int y, int x0, int x1, const Planes &planes);

// Tests: with `on`, triangles take the reference set-up: planes and fixed-point values worked out
// one parameter at a time, and each row's span parameters and lean loop worked out afresh (the fast
// set-up pairs parameters in vector registers, steps the rows and picks the loop once a triangle
// when it can). Returns the previous setting.
bool raster_force_reference(bool on);

// Signed area term of three positions, as Glide computes it: (xa - xb)(yb - yc) - (xb - xc)(ya - yb),
// in 1/256 pixel units.
inline int64_t triangle_area(const FixPoint &a, const FixPoint &b, const FixPoint &c) {
  return int64_t(a.x - b.x) * (b.y - c.y) - int64_t(b.x - c.x) * (a.y - b.y);
}

}  // namespace zvb
