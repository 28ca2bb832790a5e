// The window-system binding: start-up and shutdown of the library, the life of a rendering
// context, device-context records and pixel formats, and the buffer swap with its hang
// watch. The wgl and GDI entry points of the table of entries lead here.
#pragma once

#include <zvgl/wgl.h>

#include "vld/api/vld_context.h"

// ---------------------------------------------------------------------------------------
// Start-up, contexts, shutdown.

// One-time start-up (lazy: run by the first call that needs it).
void KSP_vld_init_vld();
// Creates a context with every default; 0.
int KSP_vld_context_create(vld_context** out);
// Makes ctx (or nothing, for null) current; opens its board on first use. 0 or -1.
int KSP_vld_context_make_current(vld_context* ctx);
// Destroys a context; -1 for a bad handle.
int KSP_vld_context_destroy(vld_context* ctx);
// Makes some context current on unit (null: any), creating one if need be.
int KSP_vld_context_sst_default(vld_unit* unit);
// Programmes the board bound to the current context from scratch.
void KSP_vld_context_init_hw();
// Resets the list-compile attributes of ctx (also at each glNewList).
void KSP_vld_init_dlos(vld_context* ctx);
// Stores the current context.
void KSP_vld_ctx_set(vld_context* ctx);
// Whether ctx is a live context of the list (a handle an application may pass in any state:
// null, freed, or not a context at all, is only compared, never read, unless it is listed).
bool KSP_vld_context_alive(const vld_context* ctx);
// Stops everything; the library can start again afterwards.
void KSP_vld_shutdown();
void KSI_vld_hdl_shutdown();

// ---------------------------------------------------------------------------------------
// Device-context records.

struct vld_dc_record {
    vld_dc_record* next;
    vld_dc_record* prev;
    HDC hdc;
    HWND window;
    int32_t pixelFormat;
    PIXELFORMATDESCRIPTOR pixelFormatDescriptor;
    uintptr_t savedBackground;
};

// Finds the record of hdc, creating it (with the window background rule) on a miss. 0.
int KSP_vld_find_hdc(HDC hdc, vld_dc_record** record);
void KSP_vld_free_hdc(vld_dc_record* record);

// The error code of every refusal of the wgl functions.
inline constexpr uint32_t VLD_WGL_ERROR = 0xC0000000u;

// ---------------------------------------------------------------------------------------
// Buffer swap.

// The frame counter of the swap (16 bits), read by the spatial path.
extern uint16_t vldSpatialUpdateCount;
// Forgets the pending-swap limit read from the environment, so that the next test of the
// swap queue reads KS_ENV_VLD_SWAP_PENDING_MAX again (tests).
void KSP_vld_swap_reset_settings();
