// aa.cpp: antialiased triangles, polygons, lines and points.
//
// Antialiasing works as Glide's does: the primitive is drawn normally and fringes one pixel wide are
// added on its outer edges, in which the iterated alpha falls linearly from the edge's alpha to 0;
// every other parameter keeps the plane of the primitive. The application's blend function (normally
// SRC_ALPHA, ONE_MINUS_SRC_ALPHA) turns the alpha into coverage.
#include <cstdlib>

#include "pixel/raster.h"

namespace zvb {

namespace {

constexpr int32_t kOne = 16;  // one pixel in 12.4

// Keeps a moved 12.4 coordinate in the hardware's 16-bit range (modulo 4096 pixels).
int32_t wrap16(int32_t v) { return static_cast<int16_t>(static_cast<uint16_t>(static_cast<uint32_t>(v) & 0xFFFFu)); }

FixPoint moved(const FixPoint &p, int32_t dx, int32_t dy) { return FixPoint{wrap16(p.x + dx), wrap16(p.y + dy)}; }

// The alpha plane through three positions, referred to (refX, refY) like the other planes.
Plane alpha_plane(const FixPoint pos[3], const double alpha[3], double refX, double refY) {
  const double x0 = pos[0].x / 16.0, y0 = pos[0].y / 16.0;
  const double x1 = pos[1].x / 16.0 - x0, y1 = pos[1].y / 16.0 - y0;
  const double x2 = pos[2].x / 16.0 - x0, y2 = pos[2].y / 16.0 - y0;
  const double det = x1 * y2 - x2 * y1;
  Plane p{alpha[0], 0.0, 0.0};
  if (det != 0.0) {
    const double d1 = alpha[1] - alpha[0], d2 = alpha[2] - alpha[0];
    p.dx = (d1 * y2 - d2 * y1) / det;
    p.dy = (d2 * x1 - d1 * x2) / det;
  }
  p.v = alpha[0] + p.dx * (refX - x0) + p.dy * (refY - y0);
  return p;
}

// A triangle whose alpha is given per corner and whose other parameters follow `base`.
void draw_alpha_triangle(RasterTarget &t, const FixPoint a, const FixPoint b, const FixPoint c, double aa,
                         double ab, double ac, const Planes &base) {
  const FixPoint pos[3] = {a, b, c};
  const double alpha[3] = {aa, ab, ac};
  Planes pl = base;
  pl.p[P_A] = alpha_plane(pos, alpha, base.refX, base.refY);
  raster_triangle(t, pos, pl);
}

// The fringe outside edge p-q of a triangle whose third corner is r: a strip one pixel wide, offset
// along y for an x-major edge and along x for a y-major one, away from r; alpha goes from the edge
// vertices' alpha to 0 at the outer side.
void fringe(RasterTarget &t, const FixPoint &p, const FixPoint &q, const FixPoint &r, double ap, double aq,
            const Planes &base) {
  const int64_t ex = q.x - p.x, ey = q.y - p.y;
  const int64_t side = ex * (r.y - p.y) - ey * (r.x - p.x);
  if (side == 0 || (ex == 0 && ey == 0)) return;
  int32_t ox = 0, oy = 0;
  if (std::llabs(ex) >= std::llabs(ey)) oy = ((side > 0) == (ex > 0)) ? -kOne : kOne;
  else ox = ((side > 0) == (ey > 0)) ? kOne : -kOne;
  const FixPoint p2 = moved(p, ox, oy), q2 = moved(q, ox, oy);
  draw_alpha_triangle(t, p, q, q2, ap, aq, 0.0, base);
  draw_alpha_triangle(t, p, q2, p2, ap, 0.0, 0.0, base);
}

// Draws triangle a, b, c (culled as usual) and the fringes of the flagged edges; false when culled.
bool aa_triangle(PixelBoard &pb, const GrVertex *a, const GrVertex *b, const GrVertex *c, bool ab, bool bc,
                 bool ca) {
  if (!a || !b || !c) return false;
  FixPoint p[3];
  if (!fix_point(*a, p[0]) || !fix_point(*b, p[1]) || !fix_point(*c, p[2])) return false;
  const int64_t area = triangle_area(p[0], p[1], p[2]);
  if (area == 0) return false;
  if (pb.state.cullMode == GR_CULL_NEGATIVE && area < 0) return false;
  if (pb.state.cullMode == GR_CULL_POSITIVE && area > 0) return false;
  const GrVertex *v[3] = {a, b, c};
  Planes planes;
  planes_from_vertices(p, v, planes);
  RasterTarget t;
  if (!raster_begin(pb, t)) return true;
  raster_triangle(t, p, planes);
  raster_end(t);
  if (!(ab || bc || ca)) return true;
  // Fringes are drawn with depth (and aux) writes off; the depth test stays as it is.
  const uint8_t auxWrite = pb.state.auxWrite;
  pb.state.auxWrite = 0;
  if (raster_begin(pb, t)) {
    if (ab) fringe(t, p[0], p[1], p[2], a->a, b->a, planes);
    if (bc) fringe(t, p[1], p[2], p[0], b->a, c->a, planes);
    if (ca) fringe(t, p[2], p[0], p[1], c->a, a->a, planes);
    raster_end(t);
  }
  pb.state.auxWrite = auxWrite;
  return true;
}

}  // namespace

void px_AADrawTriangle(PixelBoard &pb, const GrVertex *a, const GrVertex *b, const GrVertex *c,
                       FxBool ab_antialias, FxBool bc_antialias, FxBool ca_antialias) {
  aa_triangle(pb, a, b, c, ab_antialias != 0, bc_antialias != 0, ca_antialias != 0);
}

// Fan (v0, vi, vi+1): each drawn triangle fringes its outer edge (vi, vi+1); the first also (v0, v1)
// and the last also (vn-1, v0), the latter only when n > 3, as Glide does.
void px_AADrawPolygonVertexList(PixelBoard &pb, int nverts, const GrVertex *vlist) {
  if (!vlist || nverts < 3) return;
  for (int i = 1; i + 1 < nverts; ++i)
    aa_triangle(pb, &vlist[0], &vlist[i], &vlist[i + 1], i == 1, true, i == nverts - 2 && nverts > 3);
}

// A band two pixels thick across the minor axis: alpha is the vertices' alpha on the line and falls
// to 0 one pixel away on both sides; the other parameters vary along the major axis only.
void px_AADrawLine(PixelBoard &pb, const GrVertex *v1, const GrVertex *v2) {
  if (!v1 || !v2) return;
  FixPoint a, b;
  if (!fix_point(*v1, a) || !fix_point(*v2, b)) return;
  const int64_t dx = b.x - a.x, dy = b.y - a.y;
  if (dx == 0 && dy == 0) return;
  const bool xMajor = std::llabs(dx) >= std::llabs(dy);
  Planes base;
  base.refX = a.x / 16.0;
  base.refY = a.y / 16.0;
  const double len = (xMajor ? dx : dy) / 16.0;
  const float GrVertex::*fields[P_COUNT] = {&GrVertex::r, &GrVertex::g, &GrVertex::b,
                                            &GrVertex::a, &GrVertex::ooz, &GrVertex::oow};
  for (int p = 0; p < P_COUNT; ++p) {
    const double grad = (v2->*fields[p] - v1->*fields[p]) / len;
    base.p[p] = Plane{v1->*fields[p], xMajor ? grad : 0.0, xMajor ? 0.0 : grad};
  }
  const int32_t ox = xMajor ? 0 : kOne, oy = xMajor ? kOne : 0;
  const FixPoint a1 = moved(a, -ox, -oy), b1 = moved(b, -ox, -oy);  // one side
  const FixPoint a2 = moved(a, ox, oy), b2 = moved(b, ox, oy);      // the other side
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  draw_alpha_triangle(t, a1, b1, b, 0.0, 0.0, v2->a, base);
  draw_alpha_triangle(t, a1, b, a, 0.0, v2->a, v1->a, base);
  draw_alpha_triangle(t, a, b, b2, v1->a, v2->a, 0.0, base);
  draw_alpha_triangle(t, a, b2, a2, v1->a, 0.0, 0.0, base);
  raster_end(t);
}

// A diamond of radius one pixel: alpha is the point's alpha at the centre and 0 at the rim, the
// other parameters are the point's values.
void px_AADrawPoint(PixelBoard &pb, const GrVertex *pt) {
  if (!pt) return;
  FixPoint c;
  if (!fix_point(*pt, c)) return;
  const GrVertex *v[3] = {pt, pt, pt};
  const FixPoint same[3] = {c, c, c};
  Planes base;
  planes_from_vertices(same, v, base);
  const FixPoint right = moved(c, kOne, 0), down = moved(c, 0, kOne), left = moved(c, -kOne, 0),
                 up = moved(c, 0, -kOne);
  RasterTarget t;
  if (!raster_begin(pb, t)) return;
  draw_alpha_triangle(t, c, right, down, pt->a, 0.0, 0.0, base);
  draw_alpha_triangle(t, c, down, left, pt->a, 0.0, 0.0, base);
  draw_alpha_triangle(t, c, left, up, pt->a, 0.0, 0.0, base);
  draw_alpha_triangle(t, c, up, right, pt->a, 0.0, 0.0, base);
  raster_end(t);
}

}  // namespace zvb
