// tool.cpp: the tooling interface's per-board functions: faults, buffers, PNG, counts.
#include <zvgl/board_tool.h>

#include "core/board.h"

using namespace zvb;

namespace {

// Board `i` if it exists and its window is open.
Board *tool_board(int i) {
  Glide &g = glide();
  if (!g.initialised || i < 0 || i >= g.cfg.boards || !g.boards[i] || !g.boards[i]->open) return nullptr;
  return g.boards[i];
}

}  // namespace

ZVB_API void zvbFaultSwapDelay(int board, int ms) {
  if (board >= 0 && board < kMaxBoards) glide().faultSwapDelay[board].store(ms);
}

ZVB_API void zvbFaultWinOpen(int board, int fail) {
  if (board >= 0 && board < kMaxBoards) glide().faultWinOpen[board] = fail != 0;
}

ZVB_API int zvbGetBuffers(int board, ZvbBuffers *out) {
  Board *b = tool_board(board);
  if (!b || !out) return -1;
  board_idle(*b);
  board_poll_display(*b);
  zvgl::MutexGuard lock(b->mu);
  out->width = b->px.width;
  out->height = b->px.height;
  out->colourBuffers = b->px.nColBuffers;
  out->displayed = b->px.front;
  out->back = b->px.back;
  for (int i = 0; i < 3; ++i) out->colour[i] = b->px.colour[i];
  out->aux = b->px.aux;
  out->swaps = b->swaps;
  return 0;
}

ZVB_API int zvbWritePng(int board, const char *path) {
  Board *b = tool_board(board);
  if (!b || !path) return -1;
  board_idle(*b);
  zvgl::MutexGuard lock(b->mu);
  return write_png_rgb565(path, b->px.colour[b->px.front], b->px.width, b->px.height) ? 0 : -1;
}

ZVB_API int zvbGetPrimitiveCounts(int board, ZvbPrimitiveCounts *out) {
  Board *b = tool_board(board);
  if (!b || !out) return -1;
  out->triangles = b->triangles;
  out->polygons = b->polygons;
  out->lines = b->lines;
  out->points = b->points;
  out->vertices = b->vertices;
  return 0;
}
