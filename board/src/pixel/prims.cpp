// prims.cpp: the drawing entry points: triangles with culling, polygon fans, lines, points, buffer
// clears and frame-buffer writes through the pixel pipeline.
#include <algorithm>
#include <cstdlib>

#include "pixel/spans.h"

namespace zvb {

namespace {

// Culling by the sign of Glide's area term; zero area is never drawn (and not counted as culled).
bool culled(int cullMode, int64_t area) {
  if (area == 0) return true;
  if (cullMode == GR_CULL_NEGATIVE) return area < 0;
  if (cullMode == GR_CULL_POSITIVE) return area > 0;
  return false;
}

// Draws one triangle inside an open primitive; false when it was culled or could not be placed.
bool triangle(RasterTarget &t, const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  if (!a || !b || !c) return false;
  FixPoint p[3];
  if (!fix_point(*a, p[0]) || !fix_point(*b, p[1]) || !fix_point(*c, p[2])) return false;
  if (culled(t.pb->state.cullMode, triangle_area(p[0], p[1], p[2]))) return false;
  const GrVertex *v[3] = {a, b, c};
  Planes planes;
  planes_from_vertices(p, v, planes, t.d->textured != 0);
  raster_triangle(t, p, planes);
  return true;
}

// Planes for a line: every parameter varies along the major axis only, from a to b.
void line_planes(const GrVertex &a, const GrVertex &b, double refX, double refY, double length, bool xMajor,
                 Planes &pl) {
  pl.refX = refX;
  pl.refY = refY;
  const float GrVertex::*fields[P_COUNT] = {&GrVertex::r, &GrVertex::g, &GrVertex::b,
                                            &GrVertex::a, &GrVertex::ooz, &GrVertex::oow};
  for (int p = 0; p < P_COUNT; ++p) {
    const double va = a.*fields[p], vb = b.*fields[p];
    const double grad = (vb - va) / length;
    pl.p[p].v = va;
    pl.p[p].dx = xMajor ? grad : 0.0;
    pl.p[p].dy = xMajor ? 0.0 : grad;
  }
  for (int p = 0; p < T_COUNT; ++p) {
    const double va = tex_field(a, p), grad = (tex_field(b, p) - va) / length;
    pl.t[p] = Plane{va, xMajor ? grad : 0.0, xMajor ? 0.0 : grad};
  }
}

// The smallest integer >= num / den (den > 0).
int64_t ceil_div(int64_t num, int64_t den) {
  int64_t q = num / den;
  if (num % den != 0 && num > 0) ++q;
  return q;
}

}  // namespace

void px_DrawTriangle(PixelBoard &pb, const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  triangle(t, a, b, c);
  raster_end(t);
}

// Fan (v0, vi, vi+1), each triangle culled on its own.
void px_DrawPolygonVertexList(PixelBoard &pb, int nverts, const GrVertex *vlist) {
  if (!vlist || nverts < 3) return;
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  for (int i = 1; i + 1 < nverts; ++i) triangle(t, &vlist[0], &vlist[i], &vlist[i + 1]);
  raster_end(t);
}

// The caller promises planar parameters, so the fan of independent triangles gives the same pixels
// as reusing the first triangle's gradients (what Voodoo2 Glide does too).
void px_DrawPlanarPolygonVertexList(PixelBoard &pb, int nverts, const GrVertex *vlist) {
  px_DrawPolygonVertexList(pb, nverts, vlist);
}

// A one-pixel-wide line. x-major (|dx| >= |dy|): the columns whose centre lies in [xmin, xmax) and in
// each the row whose centre lies in [yline - 0.5, yline + 0.5); y-major the same with x and y
// swapped. Parameters vary along the major axis only. The far end pixel is not drawn.
void px_DrawLine(PixelBoard &pb, const GrVertex *v1, const GrVertex *v2) {
  if (!v1 || !v2) return;
  FixPoint a, b;
  if (!fix_point(*v1, a) || !fix_point(*v2, b)) return;
  const GrVertex *va = v1, *vb = v2;
  const int64_t dx0 = b.x - a.x, dy0 = b.y - a.y;
  if (dx0 == 0 && dy0 == 0) return;
  const bool xMajor = std::llabs(dx0) >= std::llabs(dy0);
  if ((xMajor && dx0 < 0) || (!xMajor && dy0 < 0)) {
    std::swap(a, b);
    std::swap(va, vb);
  }
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  const PixelDecoded &d = *t.d;
  // Work in (major, minor) coordinates; m0/m1 the major ends, n0 the minor start, dm/dn the deltas.
  const int64_t m0 = xMajor ? a.x : a.y, m1 = xMajor ? b.x : b.y;
  const int64_t n0 = xMajor ? a.y : a.x;
  const int64_t dm = m1 - m0, dn = xMajor ? b.y - a.y : b.x - a.x;
  Planes pl;
  line_planes(*va, *vb, a.x / 16.0, a.y / 16.0, dm / 16.0, xMajor, pl);
  const int64_t first = ceil_div(m0 - 8, 16), last = ceil_div(m1 - 8, 16);  // [first, last)
  const int64_t lo = std::max<int64_t>(first, xMajor ? d.clipMinX : d.clipMinY);
  const int64_t hi = std::min<int64_t>(last, xMajor ? d.clipMaxX : d.clipMaxY);
  for (int64_t m = lo; m < hi; ++m) {
    // Minor position of the line at this pixel's centre, and the pixel whose centre is within
    // [line - 0.5, line + 0.5): ceil((line - 16) / 16) in 12.4.
    const int64_t cm = 16 * m + 8;
    const int64_t n = ceil_div((n0 - 16) * dm + (cm - m0) * dn, 16 * dm);
    if (n < -65536 || n > 65536) continue;
    if (xMajor) raster_span(t, static_cast<int>(n), static_cast<int>(m), static_cast<int>(m) + 1, pl);
    else raster_span(t, static_cast<int>(m), static_cast<int>(n), static_cast<int>(n) + 1, pl);
  }
  raster_end(t);
}

// Exactly pixel (floor x, floor y) after the 12.4 reduction, with the vertex's own values.
void px_DrawPoint(PixelBoard &pb, const GrVertex *pt) {
  if (!pt) return;
  FixPoint p;
  if (!fix_point(*pt, p)) return;
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  const int x = p.x >> 4, y = p.y >> 4;
  Planes pl;
  const GrVertex *v[3] = {pt, pt, pt};
  const FixPoint pos[3] = {p, p, p};
  planes_from_vertices(pos, v, pl);
  raster_span(t, y, x, x + 1, pl);
  raster_end(t);
}

// Fills the clip window of the draw buffer: the colour (dithered like any pixel) when colour writes
// are on; the aux buffer when its write enable is on, with `depth` when depth buffering is on, with
// `alpha` when the aux buffer holds alpha, else with the depth-bias register the hardware shares with
// the clear value. No tests, no blending; every pixel of the window counts in pixelsOut.
void px_BufferClear(PixelBoard &pb, GrColor_t color, GrAlpha_t alpha, FxU16 depth) {
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  const PixelDecoded &d = *t.d;
  const uint32_t argb = px_colour_to_argb(color, pb.state.colourFormat);
  const int r = (argb >> 16) & 0xFF, g = (argb >> 8) & 0xFF, b = argb & 0xFF;
  uint16_t auxValue = static_cast<uint16_t>(d.depthBias);
  if (d.depthMode != GR_DEPTHBUFFER_DISABLE) auxValue = depth;
  else if (d.alphaBuffer) auxValue = alpha;
  const bool writeAux = d.auxWrite && t.aux;
  for (int y = d.clipMinY; y < d.clipMaxY; ++y) {
    const size_t row = static_cast<size_t>(d.flip ? pb.height - 1 - y : y) * static_cast<size_t>(pb.width);
    if (d.rgbWrite) {
      uint16_t pattern[4];
      for (int i = 0; i < 4; ++i) pattern[i] = dither565(d.ditherMode, d.clipMinX + i, y, r, g, b);
      uint16_t *cp = t.colour + row;
      for (int x = d.clipMinX, i = 0; x < d.clipMaxX; ++x, ++i) cp[x] = pattern[i & 3];
    }
    if (writeAux) std::fill(t.aux + row + d.clipMinX, t.aux + row + d.clipMaxX, auxValue);
  }
  t.counts.out = static_cast<uint32_t>((d.clipMaxX - d.clipMinX) * (d.clipMaxY - d.clipMinY));
  raster_end(t);
}

void px_pipeline_pixel(PixelBoard &pb, int x, int y, uint8_t r, uint8_t g, uint8_t b, uint8_t a,
                       uint16_t depth) {
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  const PixelDecoded &d = *t.d;
  if (x >= d.clipMinX && x < d.clipMaxX && y >= d.clipMinY && y < d.clipMaxY) {
    const size_t at = static_cast<size_t>(d.flip ? pb.height - 1 - y : y) * static_cast<size_t>(pb.width) +
                      static_cast<size_t>(x);
    ++t.counts.in;
    const DitherRow dither(d.ditherMode, y);
    shade_pixel<KEY_GENERIC, true>(d, pb.fogTable, dither, x, t.colour + at, t.aux ? t.aux + at : nullptr, r, g, b,
                                   a, 0, depth, depth, depth, t.counts);
  }
  raster_end(t);
}

}  // namespace zvb
