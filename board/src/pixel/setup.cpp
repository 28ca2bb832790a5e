// setup.cpp: triangle set-up and edge walking.
//
// Positions are 12.4 fixed point (FixPoint). A pixel is covered when its centre lies inside the
// triangle, with the top-left rule: centres on a left or top edge are drawn, on a right or bottom edge
// not. Each edge's crossing of a row's centre line is kept as an exact rational, so the boundary
// pixel is exact and two triangles sharing an edge compute the same boundary: no pixel is drawn twice
// and none is missed. Parameters are planes sampled at pixel centres, converted to fixed point once
// per primitive and stepped per pixel in the span loops.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__) && defined(__SSE2_MATH__)
#include <emmintrin.h>
#endif

#include "pixel/raster.h"
#include "pixel/spans_plain.h"

namespace zvb {

// Truncates to 1/16 pixel and keeps the low 16 bits as a signed number (modulo 4096 pixels).
bool fix_coord(float v, int32_t &out) {
  if (!std::isfinite(v)) return false;
  const double t = static_cast<double>(v) * 16.0;  // exact
  uint32_t bits;
  if (t > -4.0e18 && t < 4.0e18) {
    // The conversion truncates, and the low 16 bits of the two's complement integer are its
    // residue modulo 65536.
    bits = static_cast<uint32_t>(static_cast<uint64_t>(static_cast<int64_t>(t))) & 0xFFFFu;
  } else {
    const double m = std::fmod(std::trunc(t), 65536.0);  // exact; |m| < 65536
    bits = static_cast<uint32_t>(static_cast<int32_t>(m)) & 0xFFFFu;
  }
  out = static_cast<int16_t>(static_cast<uint16_t>(bits));
  return true;
}

bool fix_point(const GrVertex &v, FixPoint &out) { return fix_coord(v.x, out.x) && fix_coord(v.y, out.y); }

namespace {

std::atomic<bool> g_reference{false};

// The plane of each parameter through the three vertices: gradients from the snapped positions and
// the float values, so that they describe the triangle the edges actually cover. With `Paired` two
// parameters go through the SSE2 unit at once where the build has it.
template <bool Paired>
void planes_through(const FixPoint pos[3], const GrVertex *const v[3], Planes &out, bool textured) {
  const double x0 = pos[0].x / 16.0, y0 = pos[0].y / 16.0;
  const double x1 = pos[1].x / 16.0 - x0, y1 = pos[1].y / 16.0 - y0;
  const double x2 = pos[2].x / 16.0 - x0, y2 = pos[2].y / 16.0 - y0;
  const double det = x1 * y2 - x2 * y1;
  const double inv = det != 0.0 ? 1.0 / det : 0.0;
  out.refX = x0;
  out.refY = y0;
#if defined(__SSE2__) && defined(__SSE2_MATH__)
  if constexpr (Paired) {
    // Two parameters a register, each lane with the scalar operations below. The vertex's colour,
    // depth and texture values are floats in pairs that map to consecutive planes of `p` or `t`.
    const __m128d X1 = _mm_set1_pd(x1), Y1 = _mm_set1_pd(y1), X2 = _mm_set1_pd(x2), Y2 = _mm_set1_pd(y2);
    const __m128d INV = _mm_set1_pd(inv);
    auto pair = [&](size_t offset, Plane &lo, Plane &hi) {
      auto load = [&](const GrVertex *q) {
        const auto *bytes = reinterpret_cast<const unsigned char *>(q) + offset;
        return _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i *>(bytes))));
      };
      const __m128d p0 = load(v[0]);
      const __m128d d1 = _mm_sub_pd(load(v[1]), p0), d2 = _mm_sub_pd(load(v[2]), p0);
      const __m128d dx = _mm_mul_pd(_mm_sub_pd(_mm_mul_pd(d1, Y2), _mm_mul_pd(d2, Y1)), INV);
      const __m128d dy = _mm_mul_pd(_mm_sub_pd(_mm_mul_pd(d2, X1), _mm_mul_pd(d1, X2)), INV);
      _mm_storel_pd(&lo.v, p0);
      _mm_storeh_pd(&hi.v, p0);
      _mm_storel_pd(&lo.dx, dx);
      _mm_storeh_pd(&hi.dx, dx);
      _mm_storel_pd(&lo.dy, dy);
      _mm_storeh_pd(&hi.dy, dy);
    };
    static_assert(offsetof(GrVertex, g) == offsetof(GrVertex, r) + 4 && offsetof(GrVertex, ooz) == offsetof(GrVertex, b) + 4 &&
                  offsetof(GrVertex, oow) == offsetof(GrVertex, a) + 4);
    pair(offsetof(GrVertex, r), out.p[P_R], out.p[P_G]);
    pair(offsetof(GrVertex, b), out.p[P_B], out.p[P_Z]);
    pair(offsetof(GrVertex, a), out.p[P_A], out.p[P_W]);
    if (!textured) return;
    static_assert(sizeof(GrTmuVertex) == 3 * sizeof(float));
    const size_t tex = offsetof(GrVertex, tmuvtx);
    for (int p = 0; p < T_COUNT; p += 2) pair(tex + 4 * static_cast<size_t>(p), out.t[p], out.t[p + 1]);
    return;
  }
#endif
  auto set = [&](Param p, float GrVertex::*field) {
    const double p0 = v[0]->*field;
    const double d1 = v[1]->*field - p0, d2 = v[2]->*field - p0;
    out.p[p].v = p0;
    out.p[p].dx = (d1 * y2 - d2 * y1) * inv;
    out.p[p].dy = (d2 * x1 - d1 * x2) * inv;
  };
  set(P_R, &GrVertex::r);
  set(P_G, &GrVertex::g);
  set(P_B, &GrVertex::b);
  set(P_A, &GrVertex::a);
  set(P_Z, &GrVertex::ooz);
  set(P_W, &GrVertex::oow);
  if (!textured) return;
  for (int p = 0; p < T_COUNT; ++p) {
    const double p0 = tex_field(*v[0], p);
    const double d1 = tex_field(*v[1], p) - p0, d2 = tex_field(*v[2], p) - p0;
    out.t[p].v = p0;
    out.t[p].dx = (d1 * y2 - d2 * y1) * inv;
    out.t[p].dy = (d2 * x1 - d1 * x2) * inv;
  }
}

}  // namespace

void planes_from_vertices(const FixPoint pos[3], const GrVertex *const v[3], Planes &out, bool textured) {
  if (g_reference.load(std::memory_order_relaxed)) planes_through<false>(pos, v, out, textured);
  else planes_through<true>(pos, v, out, textured);
}

// Texture set-up of a primitive: which vertex values feed each TMU (the STW hints), their
// gradients, and the TMUs' per-triangle state.
static void texture_begin(RasterTarget &t, const Planes &planes) {
  const PixelBoard &pb = *t.pb;
  const uint32_t hint = pb.state.stwHint;
  const bool tmu0Samples = tmu_samples_texture(pb.state.tmu[0]);
  const bool st1Own = (hint & GR_STWHINT_ST_DIFF_TMU1) || !tmu0Samples;
  // Without its own w a TMU takes the pixel pipeline's 1/w.
  t.texPlane[0][0] = &planes.t[T_S0];
  t.texPlane[0][1] = &planes.t[T_T0];
  t.texPlane[0][2] = (hint & GR_STWHINT_W_DIFF_TMU0) ? &planes.t[T_W0] : &planes.p[P_W];
  t.texPlane[1][0] = &planes.t[st1Own ? T_S1 : T_S0];
  t.texPlane[1][1] = &planes.t[st1Own ? T_T1 : T_T0];
  t.texPlane[1][2] = (hint & GR_STWHINT_W_DIFF_TMU1) ? &planes.t[T_W1] : &planes.p[P_W];
  TmuGradients grad[GLIDE_NUM_TMU];
  for (int i = 0; i < GLIDE_NUM_TMU; ++i) {
    const Plane &s = *t.texPlane[i][0], &tt = *t.texPlane[i][1];
    grad[i] = {float(s.dx), float(tt.dx), float(s.dy), float(tt.dy)};
  }
  tex_setup(t.tex, pb.state.tmu, pb.tmuMemory, pb.numTmu, grad, pb.state.mipmapDither != 0);
}

namespace {

// Fixed-point scale of each parameter: r, g, b, a 12.12; z 20.12; w 16.32.
constexpr double kScale[P_COUNT] = {4096.0, 4096.0, 4096.0, 4096.0, 4096.0, 4294967296.0};
constexpr double kLimit[P_COUNT] = {1073741824.0, 1073741824.0, 1073741824.0, 1073741824.0, 1073741824.0,
                                    4.0e18};

// A value in fixed point, rounded, saturated to +-limit; NaN gives 0. The limits are whole numbers
// below 2^63, so clamping before the floor gives the same as after it, and the floor is the
// truncating conversion stepped down where it rounded up (no library call on baseline x86-64).
inline int64_t to_fixed(double v, double scale, double limit) {
  double f = v * scale + 0.5;
  if (!(f == f)) return 0;
  f = std::clamp(f, -limit, limit);
  const int64_t i = static_cast<int64_t>(f);
  return static_cast<double>(i) > f ? i - 1 : i;
}

// Parameters of one primitive in fixed point: value at the centre of pixel (bx, by) and steps.
struct FixedPlanes {
  int bx, by;
  int64_t base[P_COUNT], dx[P_COUNT], dy[P_COUNT];
};

// The per-pixel steps of the span job: each iterator's x gradient in its fixed-point form.
inline void set_job_steps(SpanJob &j, const FixedPlanes &fp) {
  j.dr = static_cast<int32_t>(fp.dx[P_R]);
  j.dg = static_cast<int32_t>(fp.dx[P_G]);
  j.db = static_cast<int32_t>(fp.dx[P_B]);
  j.da = static_cast<int32_t>(fp.dx[P_A]);
  j.dz = static_cast<int32_t>(fp.dx[P_Z]);
  j.dw = fp.dx[P_W];
}

// Only the parameters in `params` (bits 1 << Param) are converted; the others are zero.
void fix_planes(const Planes &pl, int bx, int by, uint32_t params, FixedPlanes &fp) {
  fp.bx = bx;
  fp.by = by;
  for (int p = 0; p < P_COUNT; ++p) {
    if (!(params & (1u << p))) {
      fp.base[p] = fp.dx[p] = fp.dy[p] = 0;
      continue;
    }
    const double v = plane_at(pl.p[p], pl.refX, pl.refY, bx + 0.5, by + 0.5);
    fp.base[p] = to_fixed(v, kScale[p], kLimit[p]);
    // Steps are limited so that 4096 of them cannot overflow the 64-bit start computation.
    const double stepLimit = p == P_W ? 1.0e15 : 1073741824.0;
    fp.dx[p] = to_fixed(pl.p[p].dx, kScale[p], stepLimit);
    fp.dy[p] = to_fixed(pl.p[p].dy, kScale[p], stepLimit);
  }
}

#if defined(__SSE2__) && defined(__SSE2_MATH__)
// to_fixed of two values at once with the scale and limit that r, g, b, a and z share for their
// values and steps (12.12, +-2^30): the same operations lane by lane, so the same roundings. With the
// limit the truncation fits 32 bits; a NaN lane, clamped first like any other, is zeroed at the end.
inline void to_fixed12_pair(__m128d v, int64_t &lane0, int64_t &lane1) {
  const __m128d f = _mm_add_pd(_mm_mul_pd(v, _mm_set1_pd(4096.0)), _mm_set1_pd(0.5));
  const __m128d ordered = _mm_cmpord_pd(f, f);
  const __m128d c = _mm_min_pd(_mm_max_pd(f, _mm_set1_pd(-1073741824.0)), _mm_set1_pd(1073741824.0));
  const __m128i i = _mm_cvttpd_epi32(c);
  const __m128d roundedUp = _mm_cmpgt_pd(_mm_cvtepi32_pd(i), c);
  // The 64-bit masks to 32-bit lanes 0 and 1: -1 where the truncation went up, where ordered.
  const __m128i up = _mm_shuffle_epi32(_mm_castpd_si128(roundedUp), _MM_SHUFFLE(3, 1, 2, 0));
  const __m128i keep = _mm_shuffle_epi32(_mm_castpd_si128(ordered), _MM_SHUFFLE(3, 1, 2, 0));
  const __m128i r = _mm_and_si128(_mm_add_epi32(i, up), keep);
  lane0 = _mm_cvtsi128_si32(r);
  lane1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(r, _MM_SHUFFLE(1, 1, 1, 1)));
}

// fix_planes with r, g, b, a and z converted two at a time.
void fix_planes_paired(const Planes &pl, int bx, int by, uint32_t params, FixedPlanes &fp) {
  fp.bx = bx;
  fp.by = by;
  const double ex = (bx + 0.5) - pl.refX, ey = (by + 0.5) - pl.refY;
  const __m128d vx = _mm_set1_pd(ex), vy = _mm_set1_pd(ey);
  const Plane *q = pl.p;
  // Pairs (r, g), (b, a), (z, z): each lane's plane_at, then its steps.
  for (int k = 0; k < 3; ++k) {
    const Plane &p0 = q[2 * k], &p1 = q[2 * k < P_Z ? 2 * k + 1 : P_Z];
    const __m128d v = _mm_add_pd(_mm_add_pd(_mm_setr_pd(p0.v, p1.v), _mm_mul_pd(_mm_setr_pd(p0.dx, p1.dx), vx)),
                                 _mm_mul_pd(_mm_setr_pd(p0.dy, p1.dy), vy));
    int64_t unused;
    int64_t &b1 = 2 * k < P_Z ? fp.base[2 * k + 1] : unused;
    int64_t &dx1 = 2 * k < P_Z ? fp.dx[2 * k + 1] : unused;
    int64_t &dy1 = 2 * k < P_Z ? fp.dy[2 * k + 1] : unused;
    to_fixed12_pair(v, fp.base[2 * k], b1);
    to_fixed12_pair(_mm_setr_pd(p0.dx, p1.dx), fp.dx[2 * k], dx1);
    to_fixed12_pair(_mm_setr_pd(p0.dy, p1.dy), fp.dy[2 * k], dy1);
  }
  for (int p = 0; p < P_W; ++p)
    if (!(params & (1u << p))) fp.base[p] = fp.dx[p] = fp.dy[p] = 0;
  if (params & (1u << P_W)) {
    const Plane &w = q[P_W];
    fp.base[P_W] = to_fixed(w.v + w.dx * ex + w.dy * ey, kScale[P_W], kLimit[P_W]);
    fp.dx[P_W] = to_fixed(w.dx, kScale[P_W], 1.0e15);
    fp.dy[P_W] = to_fixed(w.dy, kScale[P_W], 1.0e15);
  } else {
    fp.base[P_W] = fp.dx[P_W] = fp.dy[P_W] = 0;
  }
}
#else
void fix_planes_paired(const Planes &pl, int bx, int by, uint32_t params, FixedPlanes &fp) {
  fix_planes(pl, bx, by, params, fp);
}
#endif

// The coordinates of the TMUs that take part at the centre of pixel (x, y), and their steps along
// the row (the other TMUs are not read, and zero).
inline void row_tex_coords(const RasterTarget &t, const Planes &planes, int x, int y, SpanJob &j) {
  const double cx = x + 0.5 - planes.refX, cy = y + 0.5 - planes.refY;
  const int active = t.tex.numActive < GLIDE_NUM_TMU ? t.tex.numActive : GLIDE_NUM_TMU;
  for (int i = 0; i < GLIDE_NUM_TMU; ++i) {
    if (i >= active) {
      j.tc[i] = TmuCoords{};
      continue;
    }
    const Plane &s = *t.texPlane[i][0], &tt = *t.texPlane[i][1], &w = *t.texPlane[i][2];
    auto value = [&](const Plane &q) { return float(q.v + q.dx * cx + q.dy * cy); };
    j.tc[i] = {value(s), value(tt), value(w), float(s.dx), float(tt.dx), float(w.dx)};
  }
}

// Sends pixels [xl, xr) of row y (both already inside the clip window) to the span loop, with every
// span parameter worked out from the planes afresh (the reference the stepped rows are held to).
void emit(RasterTarget &t, const FixedPlanes &fp, const Planes &planes, int y, int xl, int xr) {
  const PixelBoard &pb = *t.pb;
  SpanJob j;
  j.d = t.d;
  j.fogTable = pb.fogTable;
  const int py = t.d->flip ? pb.height - 1 - y : y;
  j.crow = t.colour + static_cast<size_t>(py) * static_cast<size_t>(pb.width);
  j.arow = t.aux ? t.aux + static_cast<size_t>(py) * static_cast<size_t>(pb.width) : nullptr;
  j.y = y;
  j.x0 = xl;
  j.x1 = xr;
  const uint64_t ox = static_cast<uint64_t>(static_cast<int64_t>(xl - fp.bx));
  const uint64_t oy = static_cast<uint64_t>(static_cast<int64_t>(y - fp.by));
  auto at = [&](int p) {
    return static_cast<uint64_t>(fp.base[p]) + static_cast<uint64_t>(fp.dx[p]) * ox +
           static_cast<uint64_t>(fp.dy[p]) * oy;
  };
  j.r = static_cast<int32_t>(static_cast<uint32_t>(at(P_R)));
  j.g = static_cast<int32_t>(static_cast<uint32_t>(at(P_G)));
  j.b = static_cast<int32_t>(static_cast<uint32_t>(at(P_B)));
  j.a = static_cast<int32_t>(static_cast<uint32_t>(at(P_A)));
  j.z = static_cast<int32_t>(static_cast<uint32_t>(at(P_Z)));
  j.w = static_cast<int64_t>(at(P_W));
  set_job_steps(j, fp);
  j.tex = nullptr;
  if (t.d->textured) {
    j.tex = &t.tex;
    row_tex_coords(t, planes, xl, y, j);
  }
  if (t.plainFirst) {
    if (const PlainFn plain = plain_pick(t.plain, j)) {
      plain(j, *t.d, DitherRow(t.d->ditherMode, y), t.counts);
      return;
    }
  }
  t.fn(j, t.counts);
}

int64_t floor_div(int64_t a, int64_t b) {  // b > 0
  int64_t q = a / b;
  if ((a % b) != 0 && a < 0) --q;
  return q;
}

// The first pixel row whose centre (16 py + 8 in 12.4) is at or below y (12.4).
int first_row(int32_t y) { return static_cast<int>(floor_div(int64_t(y) - 8 + 15, 16)); }

// One edge from a to b (a.y < b.y) on successive row centres. The boundary column is the first
// pixel whose centre is at or right of the edge: ceil((x_edge - 8) / 16) with x_edge in 12.4. It is
// kept as num / den = q + r / den exactly, with den = 16 (b.y - a.y).
struct Edge {
  int32_t q, r, den;  // floor part, remainder 0 <= r < den, denominator
  int32_t sq, sr;     // per-row step of q and r
  int boundary() const { return q + (r != 0 ? 1 : 0); }
  void step() {
    q += sq;
    r += sr;
    if (r >= den) {
      ++q;
      r -= den;
    }
  }
};

void edge_init(Edge &e, const FixPoint &a, const FixPoint &b, int row) {
  const int64_t dy = b.y - a.y, dx = b.x - a.x;
  const int64_t den = 16 * dy;
  const int64_t cy = int64_t(row) * 16 + 8;
  const int64_t num = (int64_t(a.x) - 8) * dy + (cy - a.y) * dx;
  const int64_t q = floor_div(num, den);
  e.q = static_cast<int32_t>(q);
  e.r = static_cast<int32_t>(num - q * den);
  e.den = static_cast<int32_t>(den);
  const int64_t sq = floor_div(16 * dx, den);
  e.sq = static_cast<int32_t>(sq);
  e.sr = static_cast<int32_t>(16 * dx - sq * den);
}

// The corners of a triangle (sorted, as walked) relative to the centre of pixel (bx, by), in 1/16
// pixel.
struct Corners {
  int64_t x[3], y[3];
};

// Whether parameter p's fixed-point value lies inside [lo, hi) at every pixel centre of the
// triangle. The value at pixel (x, y) is the affine base + dx (x - bx) + dy (y - by); a covered
// centre lies in the closed triangle, so its value is a weighted mean of the affine function's
// values at the corners. Those are taken 16 times over, exactly in 64 bits; parameters too large for
// that count as not inside.
inline bool inside_over_triangle(const FixedPlanes &fp, int p, const Corners &c, int64_t lo, int64_t hi) {
  constexpr int64_t kMax = int64_t(1) << 40;
  const int64_t base = fp.base[p], dx = fp.dx[p], dy = fp.dy[p];
  if (base <= -kMax || base >= kMax || dx <= -kMax || dx >= kMax || dy <= -kMax || dy >= kMax) return false;
  bool inside = true;
  for (int k = 0; k < 3; ++k) {
    const int64_t v16 = 16 * base + dx * c.x[k] + dy * c.y[k];
    inside &= v16 >= 16 * lo && v16 < 16 * hi;
  }
  return inside;
}

// Whether every span of the triangle s gets the same lean loop from plain_pick, which looks at each
// span's colour range (for the no-clamp forms) and W range (for the narrow W forms): true when no
// loop applies at all, or when the colour and W that the choice reads stay inside their ranges over
// the whole triangle.
bool one_loop_for_all_rows(const RasterTarget &t, const FixedPlanes &fp, const FixPoint s[3]) {
  const PlainChoice &ch = t.plain;
  if (ch.index < 0) return true;
  Corners c;
  for (int k = 0; k < 3; ++k) {
    c.x[k] = int64_t(s[k].x) - (16 * int64_t(fp.bx) + 8);
    c.y[k] = int64_t(s[k].y) - (16 * int64_t(fp.by) + 8);
  }
  constexpr int64_t kColourEnd = int64_t(256) << 12;
  if (ch.iterated && !(inside_over_triangle(fp, P_R, c, 0, kColourEnd) && inside_over_triangle(fp, P_G, c, 0, kColourEnd) &&
                       inside_over_triangle(fp, P_B, c, 0, kColourEnd)))
    return false;
  return !ch.readsW || inside_over_triangle(fp, P_W, c, int64_t(1) << 16, int64_t(1) << 32);
}

// Four 32-bit lanes, for the r, g, b, a iterators stepped together (wrapping like uint32_t). Kept as
// one value so that it is stored and loaded whole.
using Lanes4 = uint32_t __attribute__((vector_size(16)));

// The rows of one triangle with their span parameters stepped: each iterator's value at column bx
// is carried from row to row (in the wrapping arithmetic of emit, whose sums it equals) and moved
// along to the span's first pixel; the span job's fixed fields are filled once; and the lean loop is
// chosen once when one_loop_for_all_rows says every row would get the same.
struct SteppedRows {
  RasterTarget &t;
  const Planes &planes;
  SpanJob &j;
  Lanes4 rgba, rgbaDx, rgbaDy;  // r, g, b, a at column bx of the current row, steps along x and y
  uint32_t z, zDx, zDy;         // the same for z
  uint64_t w, wDx, wDy;         // and W
  int bx;
  ptrdiff_t row, pitch;  // offset of the current row in the buffers, and to the next row
  PlainFn plain;         // the lean loop of every row, once chosen
  bool pick;             // choose the lean loop at the next span
  bool pickOnce;         // ... and keep it for the rest of the triangle

  SteppedRows(RasterTarget &target, const Planes &pl, const FixedPlanes &fp, const FixPoint s[3], int y0, SpanJob &job)
      : t(target), planes(pl), j(job) {
    const PixelBoard &pb = *t.pb;
    const PixelDecoded &d = *t.d;
    j.d = t.d;
    j.fogTable = pb.fogTable;
    set_job_steps(j, fp);
    j.tex = d.textured ? &t.tex : nullptr;
    const uint64_t oy = static_cast<uint64_t>(static_cast<int64_t>(y0 - fp.by));
    auto at = [&](int p) {
      return static_cast<uint64_t>(fp.base[p]) + static_cast<uint64_t>(fp.dy[p]) * oy;
    };
    auto low = [&](int64_t v) { return static_cast<uint32_t>(static_cast<uint64_t>(v)); };
    rgba = Lanes4{low(static_cast<int64_t>(at(P_R))), low(static_cast<int64_t>(at(P_G))),
                  low(static_cast<int64_t>(at(P_B))), low(static_cast<int64_t>(at(P_A)))};
    rgbaDx = Lanes4{low(fp.dx[P_R]), low(fp.dx[P_G]), low(fp.dx[P_B]), low(fp.dx[P_A])};
    rgbaDy = Lanes4{low(fp.dy[P_R]), low(fp.dy[P_G]), low(fp.dy[P_B]), low(fp.dy[P_A])};
    z = low(static_cast<int64_t>(at(P_Z)));
    zDx = low(fp.dx[P_Z]);
    zDy = low(fp.dy[P_Z]);
    w = at(P_W);
    wDx = static_cast<uint64_t>(fp.dx[P_W]);
    wDy = static_cast<uint64_t>(fp.dy[P_W]);
    bx = fp.bx;
    const ptrdiff_t width = pb.width;
    row = (d.flip ? pb.height - 1 - y0 : y0) * width;
    pitch = d.flip ? -width : width;
    plain = nullptr;
    pick = t.plainFirst;
    pickOnce = pick && one_loop_for_all_rows(t, fp, s);
  }

  // Pixels [xl, xr) of row y (inside the clip window; none when xl >= xr), then on to row y + 1.
  inline __attribute__((always_inline)) void operator()(int y, int xl, int xr) {
    if (xl < xr) {
      const uint32_t ox = static_cast<uint32_t>(xl - bx);
      const Lanes4 first = rgba + rgbaDx * Lanes4{ox, ox, ox, ox};
      static_assert(offsetof(SpanJob, a) == offsetof(SpanJob, r) + 3 * sizeof(int32_t));
      std::memcpy(reinterpret_cast<char *>(&j) + offsetof(SpanJob, r), &first, sizeof first);
      j.z = static_cast<int32_t>(z + zDx * ox);
      j.w = static_cast<int64_t>(w + wDx * static_cast<uint64_t>(static_cast<int64_t>(xl - bx)));
      j.crow = t.colour + row;
      j.arow = t.aux ? t.aux + row : nullptr;
      j.y = y;
      j.x0 = xl;
      j.x1 = xr;
      if (j.tex) row_tex_coords(t, planes, xl, y, j);
      if (pick) {
        plain = plain_pick(t.plain, j);
        pick = !pickOnce;
      }
      if (plain) plain(j, *t.d, DitherRow(t.d->ditherMode, y), t.counts);
      else t.fn(j, t.counts);
    }
    rgba += rgbaDy;
    z += zDy;
    w += wDy;
    row += pitch;
  }
};

// Walks rows [y0, y1) of the triangle s (sorted by y; the middle vertex left of the long edge when
// midLeft), clipped to the clip window in x, calling rows(y, xl, xr) for every row in order. The
// long edge (top to bottom vertex) is on one side; the two short edges take the other side in turn.
// With `reinit` the long edge is set up afresh for the lower part; without, it carries on from the
// upper part, which leaves it in the same state.
template <class Rows>
inline __attribute__((always_inline)) void walk_rows(const PixelDecoded &d, const FixPoint s[3], int y0, int y1,
                                                     int rowMid, bool midLeft, bool reinit, Rows &rows) {
  Edge longEdge, shortEdge;
  bool longReady = false;
  for (int seg = 0; seg < 2; ++seg) {
    const int segTop = seg == 0 ? y0 : std::max(y0, rowMid);
    const int segBot = seg == 0 ? std::min(y1, rowMid) : y1;
    if (segTop >= segBot) continue;
    if (!longReady || reinit) edge_init(longEdge, s[0], s[2], segTop);
    longReady = true;
    if (seg == 0) edge_init(shortEdge, s[0], s[1], segTop);
    else edge_init(shortEdge, s[1], s[2], segTop);
    const Edge &left = midLeft ? shortEdge : longEdge;
    const Edge &right = midLeft ? longEdge : shortEdge;
    for (int y = segTop; y < segBot; ++y) {
      const int xl = std::max(left.boundary(), d.clipMinX);
      const int xr = std::min(right.boundary(), d.clipMaxX);
      rows(y, xl, xr);
      shortEdge.step();
      longEdge.step();
    }
  }
}

}  // namespace

bool raster_force_reference(bool on) { return g_reference.exchange(on, std::memory_order_relaxed); }

bool raster_begin(PixelBoard &pb, RasterTarget &t) {
  t.pb = &pb;
  t.counts = SpanCounts{};
  if (pb.width <= 0 || pb.height <= 0) return false;
  t.d = &px_decode(pb);
  const int index = pb.state.renderBuffer == GR_BUFFER_FRONTBUFFER ? pb.front : pb.back;
  if (index < 0 || index > 2 || !pb.colour[index]) return false;
  t.colour = pb.colour[index];
  t.aux = pb.aux;
  const uint32_t key = pb.derived.keyOverride ? pb.derived.keyOverride - 1 : pb.derived.key;
  t.fn = span_function(key);
  t.params = span_key_params(key);
  t.key = key;
  // The span loop itself decides when it would fill with the constant colour first.
  t.plainFirst = span_key_tries_plain(key) && !(span_key_fills(key) && !(t.d->auxWrite && pb.aux));
  if (t.plainFirst) t.plain = plain_choose(*t.d, key, t.d->textured != 0, pb.aux != nullptr);
  return true;
}

void raster_end(RasterTarget &t) {
  PerfCounters &p = t.pb->perf;
  p.pixelsIn = (p.pixelsIn + t.counts.in) & 0xFFFFFFu;
  p.chromaFail = (p.chromaFail + t.counts.chroma) & 0xFFFFFFu;
  p.zFuncFail = (p.zFuncFail + t.counts.zfail) & 0xFFFFFFu;
  p.aFuncFail = (p.aFuncFail + t.counts.afail) & 0xFFFFFFu;
  p.pixelsOut = (p.pixelsOut + t.counts.out) & 0xFFFFFFu;
  t.counts = SpanCounts{};
}

// Rasterises the triangle row by row from top to bottom (walk_rows), with the paired fixed-point
// conversion and the stepped rows or, for the tests, the one-at-a-time conversion and reference rows.
void raster_triangle(RasterTarget &t, const FixPoint v[3], const Planes &planes) {
  const PixelDecoded &d = *t.d;
  FixPoint s[3] = {v[0], v[1], v[2]};
  if (s[1].y < s[0].y) std::swap(s[0], s[1]);
  if (s[2].y < s[1].y) std::swap(s[1], s[2]);
  if (s[1].y < s[0].y) std::swap(s[0], s[1]);
  const int rowTop = first_row(s[0].y), rowMid = first_row(s[1].y), rowBot = first_row(s[2].y);
  const int y0 = std::max(rowTop, d.clipMinY), y1 = std::min(rowBot, d.clipMaxY);
  if (y0 >= y1 || d.clipMinX >= d.clipMaxX) return;
  // The middle vertex is left of the long edge when (mid - top) x (bottom - top) < 0.
  const int64_t cross = int64_t(s[1].x - s[0].x) * (s[2].y - s[0].y) - int64_t(s[1].y - s[0].y) * (s[2].x - s[0].x);
  if (cross == 0) return;
  const bool midLeft = cross < 0;

  FixedPlanes fp;
  const bool reference = g_reference.load(std::memory_order_relaxed);
  if (reference) fix_planes(planes, s[0].x >> 4, rowTop, t.params, fp);
  else fix_planes_paired(planes, s[0].x >> 4, rowTop, t.params, fp);
  if (d.textured) texture_begin(t, planes);

  if (reference) {
    auto rows = [&](int y, int xl, int xr) {
      if (xl < xr) emit(t, fp, planes, y, xl, xr);
    };
    walk_rows(d, s, y0, y1, rowMid, midLeft, true, rows);
    return;
  }
  SpanJob job;
  SteppedRows rows(t, planes, fp, s, y0, job);
  walk_rows(d, s, y0, y1, rowMid, midLeft, false, rows);
}

void raster_span(RasterTarget &t, int y, int x0, int x1, const Planes &planes) {
  const PixelDecoded &d = *t.d;
  if (y < d.clipMinY || y >= d.clipMaxY) return;
  x0 = std::max(x0, d.clipMinX);
  x1 = std::min(x1, d.clipMaxX);
  if (x0 >= x1) return;
  FixedPlanes fp;
  fix_planes(planes, x0, y, t.params, fp);
  if (d.textured) texture_begin(t, planes);
  emit(t, fp, planes, y, x0, x1);
}

}  // namespace zvb
