// The wgl functions and the pixel formats. The library keeps one small record per device
// context it has seen; its pixel formats are a fixed table of three rows, since the picture
// goes to the board's own output and never to the window. Every refusal returns 0 or FALSE
// with the last-error code 0xC0000000.
#include <cstddef>
#include <cstring>

#include "support/sys/sys.h"
#include "support/window/window.h"
#include "vld/api/vld_export.h"
#include "vld/wsys/vld_wsys.h"

namespace {

// The background brush given to a window class that has none (the system colour index 5
// plus one: the window colour), so that the window is painted behind the board's picture.
constexpr uintptr_t kBackgroundBrush = 6;

constexpr int kFormatCount = 3;

// dwFlags of every format: double-buffered, to a window, OpenGL, accelerated.
constexpr DWORD kFormatFlags =
    PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_GENERIC_ACCELERATED;

// One row of the table: 16-bit RGB 5-6-5, then alpha and depth as given.
constexpr PIXELFORMATDESCRIPTOR vld_format(BYTE alphaBits, BYTE depthBits)
{
    PIXELFORMATDESCRIPTOR f{};
    f.nSize = sizeof(PIXELFORMATDESCRIPTOR);
    f.nVersion = 1;
    f.dwFlags = kFormatFlags;
    f.iPixelType = PFD_TYPE_RGBA;
    f.cColorBits = 16;
    f.cRedBits = 5;
    f.cRedShift = 11;
    f.cGreenBits = 6;
    f.cGreenShift = 5;
    f.cBlueBits = 5;
    f.cBlueShift = 0;
    f.cAlphaBits = alphaBits;
    f.cDepthBits = depthBits;
    f.iLayerType = PFD_MAIN_PLANE;
    return f;
}

// Formats 1 to 3: depth, plain, alpha.
const PIXELFORMATDESCRIPTOR kFormats[kFormatCount] = {vld_format(0, 16), vld_format(0, 0),
                                                      vld_format(8, 0)};

template <typename T>
T vld_refuse(T value)
{
    G_win_set_last_error(VLD_WGL_ERROR);
    return value;
}

// Whether a descriptor of nSize bytes reaches the byte at `offset`.
bool vld_has_field(const PIXELFORMATDESCRIPTOR* pfd, size_t offset)
{
    return pfd->nSize > offset;
}

vld_context* vld_context_of(HGLRC handle)
{
    return reinterpret_cast<vld_context*>(handle);
}

// The best row for a request by the rule of ChoosePixelFormat: among the rows whose flags
// agree with the request's under the match mask, the first that meets every wish for
// colour, alpha and depth bits is taken; before such a row is seen, and against it after, a
// row replaces the best so far only when it has no fewer colour bits and no fewer of the
// wished alpha and depth bits, and more of one of them. So with no wishes the first row
// stays, and rows equal to the best never replace it.
int vld_choose_format(DWORD flags, int wantColor, int wantAlpha, int wantDepth)
{
    DWORD mask = flags & 0x3Cu;
    if (!(flags & PFD_DOUBLEBUFFER_DONTCARE))
        mask |= PFD_DOUBLEBUFFER;
    if (!(flags & PFD_STEREO_DONTCARE))
        mask |= PFD_STEREO;
    int bestColor = 0, bestAlpha = 0, bestDepth = 0, best = 0;
    bool fullMatch = false;
    for (int i = 0; i < kFormatCount; ++i) {
        const PIXELFORMATDESCRIPTOR& row = kFormats[i];
        if ((row.dwFlags & mask) != (flags & mask))
            continue;
        const int c = row.cColorBits, a = row.cAlphaBits, d = row.cDepthBits;
        bool take;
        if (!fullMatch && c >= wantColor && a >= wantAlpha && d >= wantDepth) {
            take = true;
            fullMatch = true;
        } else if (c < bestColor || (wantAlpha && a < bestAlpha) || (wantDepth && d < bestDepth)) {
            take = false;
        } else {
            take = c > bestColor || (wantAlpha && a > bestAlpha) || (wantDepth && d > bestDepth);
        }
        if (take) {
            best = i + 1;
            bestColor = c;
            bestAlpha = a;
            bestDepth = d;
        }
    }
    return best;
}

} // namespace

// Finds the record of hdc; a device context seen for the first time gets one at the tail of
// the list, with its window, and that window's class gets a background brush if it has none.
int KSP_vld_find_hdc(HDC hdc, vld_dc_record** record)
{
    for (auto* r = (vld_dc_record*)vlddb.dcListHead; r; r = r->next)
        if (r->hdc == hdc) {
            *record = r;
            return 0;
        }
    auto* r = (vld_dc_record*)G_calloc(1, sizeof(vld_dc_record));
    r->hdc = hdc;
    r->window = (HWND)G_win_window_of_dc((void*)hdc);
    r->prev = (vld_dc_record*)vlddb.dcListTail;
    if (r->prev)
        r->prev->next = r;
    else
        vlddb.dcListHead = r;
    vlddb.dcListTail = r;
    if (r->window && G_win_class_background((void*)r->window) == 0)
        r->savedBackground = G_win_set_class_background((void*)r->window, kBackgroundBrush);
    *record = r;
    return 0;
}

void KSP_vld_free_hdc(vld_dc_record* record)
{
    if (record->prev)
        record->prev->next = record->next;
    else
        vlddb.dcListHead = record->next;
    if (record->next)
        record->next->prev = record->prev;
    else
        vlddb.dcListTail = record->prev;
    std::memset((void*)record, 0, sizeof *record);
    G_free(record);
}

extern "C" {

VLD_EXPORT int VLD_APIENTRY wglChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* ppfd)
{
    if (!hdc || !ppfd || ppfd->nSize < 8 || ppfd->nVersion != 1)
        return vld_refuse(0);
    // Fields behind the declared size count as absent.
    const int pixelType = vld_has_field(ppfd, offsetof(PIXELFORMATDESCRIPTOR, iPixelType)) ? ppfd->iPixelType : 0;
    const int layerType = vld_has_field(ppfd, offsetof(PIXELFORMATDESCRIPTOR, iLayerType)) ? ppfd->iLayerType : 0;
    if (pixelType != PFD_TYPE_RGBA || layerType != PFD_MAIN_PLANE)
        return vld_refuse(0);
    const int color = vld_has_field(ppfd, offsetof(PIXELFORMATDESCRIPTOR, cColorBits)) ? ppfd->cColorBits : 0;
    const int alpha = vld_has_field(ppfd, offsetof(PIXELFORMATDESCRIPTOR, cAlphaBits)) ? ppfd->cAlphaBits : 0;
    const int depth = vld_has_field(ppfd, offsetof(PIXELFORMATDESCRIPTOR, cDepthBits)) ? ppfd->cDepthBits : 0;
    const int format = vld_choose_format(ppfd->dwFlags, color, alpha, depth);
    return format ? format : vld_refuse(0);
}

VLD_EXPORT int VLD_APIENTRY wglDescribePixelFormat(HDC, int iPixelFormat, UINT nBytes,
                                                   LPPIXELFORMATDESCRIPTOR ppfd)
{
    if (iPixelFormat < 1 || iPixelFormat > kFormatCount)
        return 0;
    if (ppfd) {
        const UINT size = nBytes < sizeof(PIXELFORMATDESCRIPTOR) ? nBytes : (UINT)sizeof(PIXELFORMATDESCRIPTOR);
        std::memcpy((void*)ppfd, &kFormats[iPixelFormat - 1], size);
    }
    return kFormatCount;
}

VLD_EXPORT int VLD_APIENTRY wglGetPixelFormat(HDC hdc)
{
    if (!hdc)
        return vld_refuse(0);
    vld_dc_record* record;
    KSP_vld_find_hdc(hdc, &record);
    if (record->pixelFormat == 0)
        return vld_refuse(0);
    return record->pixelFormat;
}

VLD_EXPORT BOOL VLD_APIENTRY wglSetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR*)
{
    if (!hdc || format < 1 || format > kFormatCount)
        return vld_refuse(FALSE);
    vld_dc_record* record;
    KSP_vld_find_hdc(hdc, &record);
    record->pixelFormat = format;
    record->pixelFormatDescriptor = kFormats[format - 1];
    return TRUE;
}

// A new context bound to hdc's record. A device context without a window is refused, but
// the context made for it stays in the list until shutdown.
VLD_EXPORT HGLRC VLD_APIENTRY wglCreateContext(HDC hdc)
{
    if (!hdc)
        return vld_refuse<HGLRC>(nullptr);
    vld_context* ctx = nullptr;
    KSP_vld_context_create(&ctx);
    vld_dc_record* record;
    KSP_vld_find_hdc(hdc, &record);
    if (!record->window)
        return vld_refuse<HGLRC>(nullptr);
    ctx->dcRecord = record;
    return reinterpret_cast<HGLRC>(ctx);
}

VLD_EXPORT HGLRC VLD_APIENTRY wglCreateLayerContext(HDC hdc, int layer)
{
    if (layer != 0)
        return vld_refuse<HGLRC>(nullptr);
    return wglCreateContext(hdc);
}

// Destroys a context; the last one takes the library down with it, boards included.
VLD_EXPORT BOOL VLD_APIENTRY wglDeleteContext(HGLRC handle)
{
    vld_context* ctx = vld_context_of(handle);
    if (!KSP_vld_context_alive(ctx))
        return vld_refuse(FALSE);
    if (KSP_vld_context_destroy(ctx) != 0)
        return vld_refuse(FALSE);
    if (!vlddb.contextListHead)
        KSP_vld_shutdown();
    return TRUE;
}

VLD_EXPORT HGLRC VLD_APIENTRY wglGetCurrentContext(void)
{
    return reinterpret_cast<HGLRC>(vldGc);
}

VLD_EXPORT HDC VLD_APIENTRY wglGetCurrentDC(void)
{
    vld_context* ctx = vldGc;
    if (!ctx || ctx->magic != VLD_CONTEXT_MAGIC || !ctx->dcRecord)
        return nullptr;
    return ((vld_dc_record*)ctx->dcRecord)->hdc;
}

// Binds ctx to hdc's record and makes it current; with a null ctx, releases the current
// context whatever hdc is.
VLD_EXPORT BOOL VLD_APIENTRY wglMakeCurrent(HDC hdc, HGLRC handle)
{
    vld_context* ctx = vld_context_of(handle);
    if (ctx) {
        if ((ctx != vldGc && !KSP_vld_context_alive(ctx)) || !hdc)
            return vld_refuse(FALSE);
        vld_dc_record* record;
        KSP_vld_find_hdc(hdc, &record);
        ctx->dcRecord = record;
    }
    if (KSP_vld_context_make_current(ctx) == 0)
        return TRUE;
    if (ctx)
        ctx->dcRecord = nullptr;
    return vld_refuse(FALSE);
}

// Lists and texture objects belong to the process: every context shares them already.
VLD_EXPORT BOOL VLD_APIENTRY wglShareLists(HGLRC, HGLRC)
{
    return TRUE;
}

VLD_EXPORT BOOL VLD_APIENTRY wglSwapBuffers(HDC)
{
    KSI_vld_swap_buffers();
    return TRUE;
}

VLD_EXPORT BOOL VLD_APIENTRY wglSwapLayerBuffers(HDC, UINT planes)
{
    if (planes & 1u)
        KSI_vld_swap_buffers();
    return TRUE;
}

} // extern "C"
