// The Glide device layer: settings from the environment, board discovery and the opening
// of a board (a "unit"), the pass-through switch, and the board's statistics counters.
//
// The unit records live in vlddb.units; vlddb.currentUnit mirrors the board Glide has
// selected. Everything here runs on the rendering thread or during start-up.
#pragma once

#include "vld/api/vld_context.h"

// ---------------------------------------------------------------------------------------
// Settings.

// Reads the start-up settings into vlddb.settings (and vlddb.useSse), in their order.
void KSL_vld_init_from_env();

// The forms of a setting: each looks the name up through G_sys_inq_env (environment, then
// the store) and releases the value.
//   flag: unset gives `unsetValue`; set is on unless its first character is '0'; empty is on.
int KSP_vld_env_flag(const char* name, int unsetValue);
//   integer (atoi) and float (atof): unset or empty gives the default.
int KSP_vld_env_int(const char* name, int defaultValue);
float KSP_vld_env_float(const char* name, float defaultValue);
//   text: copies the value into buffer (size bytes, terminated); 0 when unset, 1 when set
//   (an empty value counts as set).
int KSP_vld_env_text(const char* name, char* buffer, int size);

// ---------------------------------------------------------------------------------------
// Boards.

// Start-up of the boards: grGlideInit, the optional functions, enumeration, selection of
// the default unit, swap interval 1. 0, or -1 when no board could be found.
int KSP_vld_init_hw();
// Opens board `unit` (0 .. unitCount-1): window, buffers, grSstWinOpen, pass-through, board
// set-up. 0 when open (or already open), -1 when the number is out of range or the open
// failed (with its message).
int KSP_vld_unit_init(int unit);
// Closes the board's window; the record stays and is opened again by a later make-current.
void KSP_vld_WinClose(vld_unit* unit);

// Mode tables. The selection rules pick a row for a request; the chosen values are stored
// into the unit record (refreshHz/refreshCode, width/height/resolutionCode).
void KSP_vld_select_refresh(vld_unit* unit, int hz);
void KSP_vld_select_resolution(vld_unit* unit, int width, int height);

// The host toolkit's unit calls: count (runs start-up when needed).
int KSI_vld_UnitCountGetVELD(int* count);

// ---------------------------------------------------------------------------------------
// Pass-through switch and small device services.

void KSP_vld_passthru_init(vld_unit* unit, int switchable);
void KSP_vld_passthru_record_time(vld_unit* unit);
void KSP_vld_set_passthru_state(vld_unit* unit, int state);
void KSP_vld_ensure_passthru_state(vld_unit* unit);
// Looks up the board maker's optional functions in the Glide module (null when absent).
void KSP_vld_get_functions();
int KSI_vld_set_mouse_arena_window(void* window);
int KSI_vld_set_chn_ma_callback(void* callback);
int KSI_vld_disable_glide_shutdown(int flag);

// ---------------------------------------------------------------------------------------
// Statistics: reads the board's 24-bit counters into the current context's totals.
void KSP_vld_update_pixel_fill();
// Adds a 32-bit count to a 64-bit pair, carrying into the high word.
void KSP_vld_add_to_G_Int64s(vld_int64* value, uint32_t addend);
// The toolkit's view of the texture downloads of the current context: a record of at most
// `size` (8) bytes, the download count then the low word of the bytes. 0, or -1 without a
// context (the record then cleared).
int KSI_vld_inq_txr_download_info(int size, void* info);
