// Where a board keeps its texture units: the registers of each TMU live in the room the pixel
// state leaves for them (so that grGlideGetState saves them with the rest), the texture memory
// and tables beside the board.
#ifndef ZVGL_BOARD_TMU_TMU_BOARD_H
#define ZVGL_BOARD_TMU_TMU_BOARD_H

#include "pixel/pixel.h"
#include "tmu/tmu.h"

namespace zvb {

// The registers of TMU `tmu` (0 or 1) held in `ps`. A slot that was zero-filled (the pixel
// state's reset) reads as the TMU's reset state.
TmuState tmu_state_of(const PixelState &ps, int tmu);
void tmu_state_set(PixelState &ps, int tmu, const TmuState &st);

// Texture memory of TMU `tmu` of board `board`, allocated (zero-filled, `bytes` long) on first
// use; null when it cannot be allocated or the indices are out of range.
TmuMemory *tmu_board_memory(int board, int tmu, uint32_t bytes);

}  // namespace zvb

#endif  // ZVGL_BOARD_TMU_TMU_BOARD_H
