// What the files of the device layer share among themselves and nobody else calls.
#pragma once

#include "vld/glide/vld_device.h"

// One row of the refresh table: the rate in hertz and Glide's code for it.
struct vld_refresh_row {
    int32_t hz;
    int32_t code;
};

// One row of the resolution table: the size and Glide's code for it.
struct vld_resolution_row {
    int32_t width;
    int32_t height;
    int32_t code;
};

// The two tables in their fixed order, each closed by its "none" row, and their counts.
extern const vld_refresh_row vldRefreshTable[];
extern const int vldRefreshTableCount;
extern const vld_resolution_row vldResolutionTable[];
extern const int vldResolutionTableCount;

// The rows the selection rules pick for a request, as positions in the tables, and the
// code of the board maker's special resolutions (width 1 and 2), which stand in no row.
int KSL_vld_pick_refresh(int hz);
// Returns the row; for a special width, -1 and the special code in *specialCode.
int KSL_vld_pick_resolution(int width, int height, int32_t* specialCode);

// The board's starting mode: its largest resolution and 60 Hz, then the two default
// settings of the environment. Leaves the board closed.
void KSL_vld_unit_mode_defaults(vld_unit* unit);

// Runs `unit`'s Glide calls on its own board: selects it when Glide has another board
// selected (vlddb.currentUnit), and selects the previous board again afterwards.
struct vld_unit_selection {
    vld_unit* previous;
    explicit vld_unit_selection(vld_unit* unit);
    ~vld_unit_selection();
    vld_unit_selection(const vld_unit_selection&) = delete;
    vld_unit_selection& operator=(const vld_unit_selection&) = delete;
};

// Board set-up after the window opened: texture address range, hints, gamma, depth and
// colour masks, and the clears of every colour buffer.
void KSL_vld_setup_board(vld_unit* unit);
