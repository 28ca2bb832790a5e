// entry.h: helpers shared by the Glide entry points: the selected board, the trace macro, and
// queueing a command.
#pragma once

#include <cstdio>
#include <cstring>

#include "core/board.h"

namespace zvb {

// The selected board, or null before grGlideInit or when no board exists.
inline Board *selected() {
  Glide &g = glide();
  if (!g.initialised || g.current < 0 || g.current >= g.cfg.boards) return nullptr;
  return g.boards[g.current];
}

// The selected board if its window is open.
inline Board *open_board() {
  Board *b = selected();
  return b && b->open ? b : nullptr;
}

// Formats a vertex for the trace: {x y z r g b ooz a oow s0 t0 w0 s1 t1 w1}.
struct VertexText {
  char text[256];
  explicit VertexText(const GrVertex *v) {
    if (!v) {
      std::snprintf(text, sizeof text, "null");
      return;
    }
    std::snprintf(text, sizeof text, "{%g %g %g %g %g %g %g %g %g %g %g %g %g %g %g}", v->x, v->y,
                  v->z, v->r, v->g, v->b, v->ooz, v->a, v->oow, v->tmuvtx[0].sow, v->tmuvtx[0].tow,
                  v->tmuvtx[0].oow, v->tmuvtx[1].sow, v->tmuvtx[1].tow, v->tmuvtx[1].oow);
  }
};

#define ZVB_TRACE(...)                      \
  do {                                      \
    if (::zvb::trace_active()) ::zvb::trace_line(__VA_ARGS__); \
  } while (0)

// Queues a command with up to six integer arguments on board `b`.
inline void queue(Board &b, Op op, int32_t a0 = 0, int32_t a1 = 0, int32_t a2 = 0, int32_t a3 = 0,
                  int32_t a4 = 0) {
  Command *c = fifo_reserve(b);
  c->op = op;
  c->i[0] = a0;
  c->i[1] = a1;
  c->i[2] = a2;
  c->i[3] = a3;
  c->i[4] = a4;
  fifo_commit(b);
}

// Reports a refused call through the error callback; `fatal` as the vendor's debug build has it.
void refuse(const char *call, const char *why, int fatal);

}  // namespace zvb
