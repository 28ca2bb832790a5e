// glide_render.cpp: buffer, drawing and pixel-state calls. Each checks and copies its
// arguments, records its trace line and queues a command for the board's pixels.
#include <cstdlib>

#include "glide/entry.h"

using namespace zvb;

namespace {

bool in_range(int v, int lo, int hi) { return v >= lo && v <= hi; }

bool valid_function(int f) { return in_range(f, 0, 8) || f == GR_COMBINE_FUNCTION_SCALE_MINUS_LOCAL_ADD_LOCAL_ALPHA; }
bool valid_factor(int f) { return in_range(f, 0, 5) || in_range(f, 8, 0xD); }

// Counts a primitive; true when it should also be drawn (not in count-only mode).
bool count_primitive(Board &b, uint64_t Board::*kind, int vertices, int triangles) {
  b.*kind += 1;
  b.vertices += static_cast<uint64_t>(vertices);
  b.triangles += static_cast<uint64_t>(triangles);
  return !glide().cfg.countOnly;
}

// Queues a primitive whose vertices travel inline.
void queue_vertices(Board &b, Op op, const GrVertex *v0, const GrVertex *v1, const GrVertex *v2,
                    int32_t a0 = 0, int32_t a1 = 0, int32_t a2 = 0) {
  Command *c = fifo_reserve(b);
  c->op = op;
  c->i[0] = a0;
  c->i[1] = a1;
  c->i[2] = a2;
  if (v0) c->v[0] = *v0;
  if (v1) c->v[1] = *v1;
  if (v2) c->v[2] = *v2;
  fifo_commit(b);
}

// Queues a polygon list: up to three vertices inline, longer lists in a copy of their own.
void queue_list(Board &b, Op op, int n, const GrVertex *list) {
  void *copy = nullptr;
  if (n > 3) {
    copy = std::malloc(sizeof(GrVertex) * static_cast<size_t>(n));
    if (!copy) {
      refuse("polygon list", "out of memory", 0);
      return;
    }
    std::memcpy(copy, list, sizeof(GrVertex) * static_cast<size_t>(n));
  }
  Command *c = fifo_reserve(b);
  c->op = op;
  c->i[0] = n;
  c->blob = copy;
  if (!copy) std::memcpy(c->v, list, sizeof(GrVertex) * static_cast<size_t>(n));
  fifo_commit(b);
}

// Traces a polygon-list call with all of its vertices.
void trace_list(const char *name, int n, const GrVertex *list) {
  if (!trace_active()) return;
  if (!list || n <= 0 || n > 4096) {
    trace_line("%s %d %s", name, n, list ? "list" : "null");
    return;
  }
  size_t cap = 64 + static_cast<size_t>(n) * 256;
  char *text = static_cast<char *>(std::malloc(cap));
  if (!text) return;
  size_t len = static_cast<size_t>(std::snprintf(text, cap, "%s %d", name, n));
  for (int i = 0; i < n && len < cap; ++i)
    len += static_cast<size_t>(std::snprintf(text + len, cap - len, " %s", VertexText(&list[i]).text));
  trace_line("%s", text);
  std::free(text);
}

void polygon_call(const char *name, Op op, int nverts, const GrVertex *vlist) {
  trace_list(name, nverts, vlist);
  Board *b = open_board();
  if (!b) return;
  if (!vlist || nverts < 0) {
    refuse(name, "null vertex list or negative count", 1);
    return;
  }
  if (nverts < 3) return;
  if (count_primitive(*b, &Board::polygons, nverts, nverts - 2)) queue_list(*b, op, nverts, vlist);
}

}  // namespace

// ---- Buffers ----------------------------------------------------------------------------

FX_ENTRY void FX_CALL grBufferClear(GrColor_t color, GrAlpha_t alpha, FxU16 depth) {
  ZVB_TRACE("grBufferClear 0x%08x %u %u", color, alpha, depth);
  if (Board *b = open_board()) queue(*b, OP_CLEAR, static_cast<int32_t>(color), alpha, depth);
}

FX_ENTRY void FX_CALL grBufferSwap(int swap_interval) {
  ZVB_TRACE("grBufferSwap %d", swap_interval);
  if (swap_interval < 0 || swap_interval > 255) {
    refuse("grBufferSwap", "swap interval outside 0..255", 1);
    return;
  }
  Board *b = open_board();
  if (!b) return;
  if (glide().cfg.swapInterval >= 0) swap_interval = glide().cfg.swapInterval;
  swap_wait_room(*b);
  b->pendingSwaps.fetch_add(1);
  queue(*b, OP_SWAP, swap_interval);
  trace_flush_file();
}

FX_ENTRY int FX_CALL grBufferNumPending(void) {
  ZVB_TRACE("grBufferNumPending");
  Board *b = open_board();
  if (!b) return 0;
  board_poll_display(*b);
  return b->pendingSwaps.load();
}

FX_ENTRY void FX_CALL grRenderBuffer(GrBuffer_t buffer) {
  ZVB_TRACE("grRenderBuffer %d", buffer);
  if (buffer != GR_BUFFER_FRONTBUFFER && buffer != GR_BUFFER_BACKBUFFER) {
    refuse("grRenderBuffer", "only FRONT or BACK can be drawn to", 1);
    return;
  }
  if (Board *b = open_board()) queue(*b, OP_RENDER_BUFFER, buffer);
}

FX_ENTRY void FX_CALL grColorMask(FxBool rgb, FxBool a) {
  ZVB_TRACE("grColorMask %d %d", rgb, a);
  if (Board *b = open_board()) queue(*b, OP_COLOR_MASK, rgb ? 1 : 0, a ? 1 : 0);
}

FX_ENTRY void FX_CALL grDepthMask(FxBool mask) {
  ZVB_TRACE("grDepthMask %d", mask);
  Board *b = open_board();
  if (!b) return;
  if (mask && !b->px.aux) {
    refuse("grDepthMask", "the window has no aux buffer", 1);
    return;
  }
  queue(*b, OP_DEPTH_MASK, mask ? 1 : 0);
}

FX_ENTRY void FX_CALL grClipWindow(FxU32 minx, FxU32 miny, FxU32 maxx, FxU32 maxy) {
  ZVB_TRACE("grClipWindow %u %u %u %u", minx, miny, maxx, maxy);
  if (Board *b = open_board())
    queue(*b, OP_CLIP, static_cast<int32_t>(minx), static_cast<int32_t>(miny), static_cast<int32_t>(maxx),
          static_cast<int32_t>(maxy));
}

// ---- Drawing ----------------------------------------------------------------------------

namespace {

// The trace line of grDrawTriangle, out of line with its text buffers, so that the call
// itself needs no stack of its own while no trace is on.
[[gnu::noinline]] void trace_triangle(const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  trace_line("grDrawTriangle %s %s %s", VertexText(a).text, VertexText(b).text, VertexText(c).text);
}

// Queues a counted triangle for drawing.
[[gnu::noinline]] void queue_triangle(Board &bd, const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  queue_vertices(bd, OP_TRIANGLE, a, b, c);
}

// A triangle after its trace line: silent without an open board, refused with a null vertex,
// otherwise counted and, unless the board only counts, queued. Every call it makes is its
// last act, so that the counting path needs no stack of its own. The board test is the one
// of open_board(); the selected number is compared unsigned, the board count being 0 or more.
inline void count_triangle(const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  const Glide &g = glide();
  if (!g.initialised || static_cast<unsigned>(g.current) >= static_cast<unsigned>(g.cfg.boards)) return;
  Board *bd = g.boards[g.current];
  if (!bd || !bd->open) return;
  if (!a || !b || !c) return refuse("grDrawTriangle", "null vertex", 1);
  bd->triangles += 1;
  bd->vertices += 3;
  if (!g.cfg.countOnly) queue_triangle(*bd, a, b, c);
}

// grDrawTriangle with a trace switch on: the line first, then the triangle.
[[gnu::noinline]] void traced_triangle(const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  trace_triangle(a, b, c);
  count_triangle(a, b, c);
}

}  // namespace

// A triangle is the most frequent Glide call: it reads the trace switches without a call.
FX_ENTRY void FX_CALL grDrawTriangle(const GrVertex *a, const GrVertex *b, const GrVertex *c) {
  if (traceSwitches.load(std::memory_order_relaxed)) return traced_triangle(a, b, c);
  count_triangle(a, b, c);
}

FX_ENTRY void FX_CALL grDrawPlanarPolygonVertexList(int nverts, const GrVertex vlist[]) {
  polygon_call("grDrawPlanarPolygonVertexList", OP_PLANAR_POLY, nverts, vlist);
}

FX_ENTRY void FX_CALL grDrawPolygonVertexList(int nverts, const GrVertex vlist[]) {
  polygon_call("grDrawPolygonVertexList", OP_POLY, nverts, vlist);
}

FX_ENTRY void FX_CALL grDrawLine(const GrVertex *v1, const GrVertex *v2) {
  ZVB_TRACE("grDrawLine %s %s", VertexText(v1).text, VertexText(v2).text);
  Board *b = open_board();
  if (!b) return;
  if (!v1 || !v2) {
    refuse("grDrawLine", "null vertex", 1);
    return;
  }
  if (count_primitive(*b, &Board::lines, 2, 0)) queue_vertices(*b, OP_LINE, v1, v2, nullptr);
}

FX_ENTRY void FX_CALL grDrawPoint(const GrVertex *pt) {
  ZVB_TRACE("grDrawPoint %s", VertexText(pt).text);
  Board *b = open_board();
  if (!b) return;
  if (!pt) {
    refuse("grDrawPoint", "null vertex", 1);
    return;
  }
  if (count_primitive(*b, &Board::points, 1, 0)) queue_vertices(*b, OP_POINT, pt, nullptr, nullptr);
}

FX_ENTRY void FX_CALL grAADrawTriangle(const GrVertex *a, const GrVertex *b, const GrVertex *c,
                                       FxBool ab_antialias, FxBool bc_antialias, FxBool ca_antialias) {
  ZVB_TRACE("grAADrawTriangle %s %s %s %d %d %d", VertexText(a).text, VertexText(b).text,
            VertexText(c).text, ab_antialias, bc_antialias, ca_antialias);
  Board *bd = open_board();
  if (!bd) return;
  if (!a || !b || !c) {
    refuse("grAADrawTriangle", "null vertex", 1);
    return;
  }
  if (count_primitive(*bd, &Board::triangles, 3, 0))
    queue_vertices(*bd, OP_AA_TRIANGLE, a, b, c, ab_antialias ? 1 : 0, bc_antialias ? 1 : 0,
                   ca_antialias ? 1 : 0);
}

FX_ENTRY void FX_CALL grAADrawPolygonVertexList(const int nverts, const GrVertex vlist[]) {
  polygon_call("grAADrawPolygonVertexList", OP_AA_POLY, nverts, vlist);
}

FX_ENTRY void FX_CALL grAADrawLine(const GrVertex *v1, const GrVertex *v2) {
  ZVB_TRACE("grAADrawLine %s %s", VertexText(v1).text, VertexText(v2).text);
  Board *b = open_board();
  if (!b) return;
  if (!v1 || !v2) {
    refuse("grAADrawLine", "null vertex", 1);
    return;
  }
  if (count_primitive(*b, &Board::lines, 2, 0)) queue_vertices(*b, OP_AA_LINE, v1, v2, nullptr);
}

FX_ENTRY void FX_CALL grAADrawPoint(const GrVertex *pt) {
  ZVB_TRACE("grAADrawPoint %s", VertexText(pt).text);
  Board *b = open_board();
  if (!b) return;
  if (!pt) {
    refuse("grAADrawPoint", "null vertex", 1);
    return;
  }
  if (count_primitive(*b, &Board::points, 1, 0)) queue_vertices(*b, OP_AA_POINT, pt, nullptr, nullptr);
}

// ---- Pixel pipeline state ---------------------------------------------------------------

// Shared by the colour and alpha combine calls.
static void combine_call(const char *name, Op op, int function, int factor, int local, int other,
                         FxBool invert) {
  ZVB_TRACE("%s %d %d %d %d %d", name, function, factor, local, other, invert);
  Board *b = open_board();
  if (!b) return;
  if (!valid_function(function) || !valid_factor(factor) || !in_range(local, 0, 2) ||
      !in_range(other, 0, 2)) {
    refuse(name, "unknown function, factor, local or other", 1);
    return;
  }
  queue(*b, op, function, factor, local, other, invert ? 1 : 0);
}

FX_ENTRY void FX_CALL grColorCombine(GrCombineFunction_t function, GrCombineFactor_t factor,
                                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert) {
  combine_call("grColorCombine", OP_COLOR_COMBINE, function, factor, local, other, invert);
}

FX_ENTRY void FX_CALL grAlphaCombine(GrCombineFunction_t function, GrCombineFactor_t factor,
                                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert) {
  combine_call("grAlphaCombine", OP_ALPHA_COMBINE, function, factor, local, other, invert);
}

// Queues a one-argument state command after checking its range.
static void state_call(const char *name, Op op, int value, int lo, int hi) {
  ZVB_TRACE("%s %d", name, value);
  Board *b = open_board();
  if (!b) return;
  if (!in_range(value, lo, hi)) {
    refuse(name, "value out of range", 1);
    return;
  }
  queue(*b, op, value);
}

FX_ENTRY void FX_CALL grConstantColorValue(GrColor_t value) {
  ZVB_TRACE("grConstantColorValue 0x%08x", value);
  if (Board *b = open_board()) queue(*b, OP_CONSTANT_COLOR, static_cast<int32_t>(value));
}

FX_ENTRY void FX_CALL grAlphaBlendFunction(GrAlphaBlendFnc_t rgb_sf, GrAlphaBlendFnc_t rgb_df,
                                           GrAlphaBlendFnc_t alpha_sf, GrAlphaBlendFnc_t alpha_df) {
  ZVB_TRACE("grAlphaBlendFunction %d %d %d %d", rgb_sf, rgb_df, alpha_sf, alpha_df);
  Board *b = open_board();
  if (!b) return;
  if (!in_range(rgb_sf, 0, 15) || !in_range(rgb_df, 0, 15) || !in_range(alpha_sf, 0, 15) ||
      !in_range(alpha_df, 0, 15)) {
    refuse("grAlphaBlendFunction", "unknown blend factor", 1);
    return;
  }
  queue(*b, OP_BLEND, rgb_sf, rgb_df, alpha_sf, alpha_df);
}

FX_ENTRY void FX_CALL grAlphaTestFunction(GrCmpFnc_t function) {
  state_call("grAlphaTestFunction", OP_ALPHA_TEST, function, 0, 7);
}

FX_ENTRY void FX_CALL grAlphaTestReferenceValue(GrAlpha_t value) {
  state_call("grAlphaTestReferenceValue", OP_ALPHA_REF, value, 0, 255);
}

FX_ENTRY void FX_CALL grDepthBufferMode(GrDepthBufferMode_t mode) {
  state_call("grDepthBufferMode", OP_DEPTH_MODE, mode, 0, 4);
}

FX_ENTRY void FX_CALL grDepthBufferFunction(GrCmpFnc_t function) {
  state_call("grDepthBufferFunction", OP_DEPTH_FUNC, function, 0, 7);
}

FX_ENTRY void FX_CALL grDepthBiasLevel(FxI16 level) {
  state_call("grDepthBiasLevel", OP_DEPTH_BIAS, level, -32768, 32767);
}

FX_ENTRY void FX_CALL grCullMode(GrCullMode_t mode) { state_call("grCullMode", OP_CULL, mode, 0, 2); }

FX_ENTRY void FX_CALL grFogMode(GrFogMode_t mode) {
  ZVB_TRACE("grFogMode 0x%x", mode);
  Board *b = open_board();
  if (!b) return;
  if ((mode & 0xFF) > GR_FOG_WITH_ITERATED_Z || (mode & ~0x3FF) != 0) {
    refuse("grFogMode", "unknown fog mode", 1);
    return;
  }
  queue(*b, OP_FOG_MODE, mode);
}

FX_ENTRY void FX_CALL grFogColorValue(GrColor_t fogcolor) {
  ZVB_TRACE("grFogColorValue 0x%08x", fogcolor);
  if (Board *b = open_board()) queue(*b, OP_FOG_COLOR, static_cast<int32_t>(fogcolor));
}

FX_ENTRY void FX_CALL grFogTable(const GrFog_t ft[GR_FOG_TABLE_SIZE]) {
  if (trace_active()) {
    if (!ft) {
      trace_line("grFogTable null");
    } else {
      char text[64 * 4 + 16] = "grFogTable";
      size_t len = std::strlen(text);
      for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i)
        len += static_cast<size_t>(std::snprintf(text + len, sizeof text - len, " %u", ft[i]));
      trace_line("%s", text);
    }
  }
  Board *b = open_board();
  if (!b) return;
  if (!ft) {
    refuse("grFogTable", "null table", 1);
    return;
  }
  Command *c = fifo_reserve(*b);
  c->op = OP_FOG_TABLE;
  std::memcpy(c->bytes, ft, GR_FOG_TABLE_SIZE);
  fifo_commit(*b);
}

FX_ENTRY void FX_CALL grDitherMode(GrDitherMode_t mode) { state_call("grDitherMode", OP_DITHER, mode, 0, 2); }

FX_ENTRY void FX_CALL grChromakeyMode(GrChromakeyMode_t mode) {
  state_call("grChromakeyMode", OP_CHROMA_MODE, mode, 0, 1);
}

FX_ENTRY void FX_CALL grChromakeyValue(GrColor_t value) {
  ZVB_TRACE("grChromakeyValue 0x%08x", value);
  if (Board *b = open_board()) queue(*b, OP_CHROMA_VALUE, static_cast<int32_t>(value));
}

FX_ENTRY void FX_CALL grLfbConstantAlpha(GrAlpha_t alpha) {
  ZVB_TRACE("grLfbConstantAlpha %u", alpha);
  if (Board *b = open_board()) queue(*b, OP_LFB_ALPHA, alpha);
}

FX_ENTRY void FX_CALL grLfbConstantDepth(FxU16 depth) {
  ZVB_TRACE("grLfbConstantDepth %u", depth);
  if (Board *b = open_board()) queue(*b, OP_LFB_DEPTH, depth);
}
