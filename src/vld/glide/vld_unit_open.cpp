// Opening and closing a board: the window and buffer choice, grSstWinOpen, the pass-through
// switch and the set-up of a freshly opened board.
#include <glide2/glide.h>

#include <cstdint>
#include <cstdio>

#include "support/window/window.h"
#include "vld/api/vld_callees.h"
#include "vld/glide/vld_device_local.h"

vld_unit_selection::vld_unit_selection(vld_unit* unit) : previous(vlddb.currentUnit)
{
    if (unit && unit != previous) {
        grSstSelect(unit->index);
        vlddb.currentUnit = unit;
    }
}

// Goes back to the board that was selected before. With none selected before, the new one
// stays: Glide has it selected, and vlddb.currentUnit says so.
vld_unit_selection::~vld_unit_selection()
{
    if (previous && vlddb.currentUnit != previous) {
        grSstSelect(previous->index);
        vlddb.currentUnit = previous;
    }
}

namespace {

// The window Glide opens on: the record's own, else the active window (unless
// KS_ENV_VLD_MAIN_WINDOW says otherwise), else the toolkit's mouse-arena window, else what the
// toolkit's callback hands out. May stay null: a full-screen board needs none.
void* vld_choose_window(const vld_unit* unit)
{
    void* window = unit->window;
    if (window)
        return window;
    char mainWindow[8];
    if (!KSP_vld_env_text("KS_ENV_VLD_MAIN_WINDOW", mainWindow, sizeof mainWindow) ||
        mainWindow[0] == '1')
        window = G_win_active_window();
    if (!window)
        window = vlddb.mouseArenaWindow;
    if (!window && vlddb.chnMaCallback)
        ((void (*)(void**))vlddb.chnMaCallback)(&window);
    return window;
}

// Colour and auxiliary buffers of the opening, from the environment: two colour buffers or
// three, the auxiliary buffer for depth or for alpha, and none at all with three colour
// buffers, which leave the board no room for it. Returns the auxiliary buffer count.
int vld_choose_buffers(vld_unit* unit)
{
    int colorBuffers = 2;
    if (KSP_vld_env_int("KS_ENV_VLD_COLOR_BUFFERS", 2) > 2) {
        colorBuffers = 3;
        std::printf("Veldra: requesting triple buffering\n");
    }

    unit->alphaBuffer = 0;
    unit->depthBuffer = 1;
    char alpha[8];
    if (KSP_vld_env_text("KS_ENV_ALPHA_BUFFER", alpha, sizeof alpha) && alpha[0] == '1') {
        unit->alphaBuffer = 1;
        unit->depthBuffer = 0;
        std::printf("Veldra: alpha buffer enabled, depth buffer disabled\n");
    }

    int auxBuffers = unit->alphaBuffer + unit->depthBuffer;
    if (auxBuffers > 1 && unit->alphaBuffer && unit->depthBuffer) {
        unit->alphaBuffer = 0;
        --auxBuffers;
        std::printf("Veldra: alpha buffer disabled due to selection of depth buffering\n");
    }
    if (colorBuffers == 3) {
        if (unit->depthBuffer) {
            unit->depthBuffer = 0;
            --auxBuffers;
            std::printf("Veldra: depth buffer disabled due to triple buffering\n");
        }
        if (unit->alphaBuffer) {
            unit->alphaBuffer = 0;
            --auxBuffers;
            std::printf("Veldra: alpha buffer disabled due to triple buffering\n");
        }
    }
    std::fflush(stdout);
    unit->colorBuffers = colorBuffers;
    return auxBuffers;
}

} // namespace

// Sets up a board whose window has just opened: the texture address range of each TMU (the
// top rounded to 16 bytes), the texture memory manager, the mipmap-dither hint and gamma from
// the settings, no culling, the clip window over the screen, W-buffering when the auxiliary
// buffer holds depth, and every colour buffer cleared, ending with rendering to the back buffer
// (the front one in single-buffer mode).
void KSL_vld_setup_board(vld_unit* unit)
{
    for (int t = 0; t < unit->tmuCount && t < 2; ++t) {
        unit->tmu[t].lowAddress = grTexMinAddress(t);
        unit->tmu[t].highAddress = (grTexMaxAddress(t) + 16) & ~15u;
    }
    KSP_vld_init_glide_texmem_sst(unit);

    if (vlddb.settings.mipmapDither)
        grHints(GR_HINT_ALLOW_MIPMAP_DITHER, 1);
    if (vlddb.settings.gamma > 0.0f)
        grGammaCorrectionValue(vlddb.settings.gamma);

    grCullMode(GR_CULL_DISABLE);
    grClipWindow(0, 0, (FxU32)unit->width, (FxU32)unit->height);
    if (unit->depthBuffer) {
        grDepthBufferMode(GR_DEPTHBUFFER_WBUFFER);
        grDepthMask(FXTRUE);
    } else {
        grDepthBufferMode(GR_DEPTHBUFFER_DISABLE);
        grDepthMask(FXFALSE);
    }
    grDepthBufferFunction(GR_CMP_ALWAYS);
    grColorMask(FXTRUE, unit->alphaBuffer ? FXTRUE : FXFALSE);
    // The clears must not depend on the depth test.
    if (unit->depthBuffer) {
        grDepthBufferMode(GR_DEPTHBUFFER_DISABLE);
        grDepthMask(FXFALSE);
    }

    grBufferClear(0, 0, unit->clearDepth);
    if (unit->colorBuffers > 1) {
        grRenderBuffer(GR_BUFFER_FRONTBUFFER);
        grBufferClear(0, 0, unit->clearDepth);
        if (!vlddb.settings.singleBuffer)
            grRenderBuffer(GR_BUFFER_BACKBUFFER);
    }
}

// Opens board `unit` for rendering, unless it is open already. A failed window open leaves
// the board closed (told on standard error), to be tried again at the next make-current.
// Whatever happens, the board Glide had selected before is selected again afterwards; with
// none selected before, this one stays.
int KSP_vld_unit_init(int unit)
{
    if (unit < 0 || unit >= vlddb.unitCount)
        return -1;
    vld_unit* record = &vlddb.units[unit];
    if (record->opened)
        return 0;

    vld_unit* previous = vlddb.currentUnit;
    grSstSelect(unit);
    vlddb.currentUnit = record;

    void* window = vld_choose_window(record);
    const int auxBuffers = vld_choose_buffers(record);
    int result = 0;
    if (!grSstWinOpen((FxU32)(uintptr_t)window, record->resolutionCode, record->refreshCode,
                      GR_COLORFORMAT_RGBA, GR_ORIGIN_LOWER_LEFT, record->colorBuffers, auxBuffers)) {
        std::fprintf(stderr, "KSP_vld_unit_init: grSstWinOpen failed!\n");
        std::fprintf(stderr,
                     "    grSstWinOpen params: hWnd = 0x%p, res = 0x%lx, ref = 0x%lx, nbufsc = %d, "
                     "nbufsa = %d\n",
                     window, (unsigned long)(uint32_t)record->resolutionCode,
                     (unsigned long)(uint32_t)record->refreshCode, record->colorBuffers, auxBuffers);
        std::fflush(stderr);
        result = -1;
    } else {
        record->windowOpen = 1;
        KSP_vld_passthru_init(record, record->integrated2D == 0);
        if (!record->passthruFixed) {
            // The toolkit switches the output over when it is ready to show something.
            KSP_vld_passthru_record_time(record);
            KSP_vld_set_passthru_state(record, 0);
        }
        const int width = (int)grSstScreenWidth();
        const int height = (int)grSstScreenHeight();
        if (width != record->width || height != record->height) {
            record->width = width;
            record->height = height;
        }
        KSL_vld_setup_board(record);
        record->opened = 1;
        record->needStateInit = 1;
    }

    if (previous && previous != record) {
        grSstSelect(previous->index);
        vlddb.currentUnit = previous;
    }
    return result;
}

// Closes the board's window. The record stays, closed, and a later make-current that reaches
// it opens it again.
void KSP_vld_WinClose(vld_unit* unit)
{
    if (!unit)
        return;
    if (unit->windowOpen) {
        vld_unit_selection selection(unit);
        grSstWinClose();
    }
    unit->windowOpen = 0;
    unit->opened = 0;
}
