// Texture memory of a board's TMUs. It is allocated on a board's first texture call and kept for
// the life of the process, like the memory of a board that stays in the machine; the board's
// PixelBoard points at it.
#ifndef ZVGL_BOARD_TMU_TMU_BOARD_H
#define ZVGL_BOARD_TMU_TMU_BOARD_H

#include "tmu/tmu.h"

namespace zvb {

// Texture memory of TMU `tmu` of board `board`, allocated (zero-filled, `bytes` long) on first
// use; null when it cannot be allocated or the indices are out of range.
TmuMemory *tmu_board_memory(int board, int tmu, uint32_t bytes);

}  // namespace zvb

#endif  // ZVGL_BOARD_TMU_TMU_BOARD_H
