// Texture memory of the boards' TMUs (see tmu_board.h).
#include "tmu/tmu_board.h"

#include <new>

namespace zvb {

TmuMemory *tmu_board_memory(int board, int tmu, uint32_t bytes) {
  constexpr int kBoards = MAX_NUM_SST;
  static TmuMemory *memories[kBoards][kMaxTmu];
  if (board < 0 || board >= kBoards || tmu < 0 || tmu >= kMaxTmu) return nullptr;
  TmuMemory *&m = memories[board][tmu];
  if (!m) {
    m = new (std::nothrow) TmuMemory();
    if (!m) return nullptr;
    tmu_memory_init(*m, bytes);
  }
  return m;
}

}  // namespace zvb
