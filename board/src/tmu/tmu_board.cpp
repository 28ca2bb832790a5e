// The texture units' place on a board (see tmu_board.h).
#include "tmu/tmu_board.h"

#include <cstring>
#include <new>

namespace zvb {

static_assert(sizeof(TmuState) <= sizeof(PixelTmuState), "TMU registers fit their room");

TmuState tmu_state_of(const PixelState &ps, int tmu) {
  TmuState st;
  std::memcpy(&st, &ps.tmu[tmu], sizeof st);
  static const TmuState zero{};
  if (std::memcmp(&st, &zero, sizeof st) == 0) tmu_reset(st);
  return st;
}

void tmu_state_set(PixelState &ps, int tmu, const TmuState &st) {
  std::memcpy(&ps.tmu[tmu], &st, sizeof st);
}

TmuMemory *tmu_board_memory(int board, int tmu, uint32_t bytes) {
  constexpr int kBoards = MAX_NUM_SST;
  static TmuMemory *memories[kBoards][GLIDE_NUM_TMU];
  if (board < 0 || board >= kBoards || tmu < 0 || tmu >= GLIDE_NUM_TMU) return nullptr;
  TmuMemory *&m = memories[board][tmu];
  if (!m) {
    m = new (std::nothrow) TmuMemory();
    if (!m) return nullptr;
    tmu_memory_init(*m, bytes);
  }
  return m;
}

}  // namespace zvb
