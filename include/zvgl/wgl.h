/*
 * zvgl/wgl.h: the window-system names of zvgl2.
 *
 * The wgl functions, the five GDI pixel-format and swap functions, and the library's unit
 * selection (GL_VELD_unit_select_wgl). On Windows the types and most of these functions come
 * from <windows.h>, declared there with WINAPI; this header adds the wgl names that
 * <windows.h> lacks. Elsewhere it declares what the library needs of Win32: opaque handle
 * types (HDC, HGLRC, HWND are distinct pointer types), the integer types, the pixel-format
 * descriptor with its flags, and every prototype.
 *
 * The library itself defines the GDI and wgl functions, so it builds with ZVGL_BUILD_LIBRARY
 * defined: then <windows.h> declares them as plain functions instead of imports.
 */
#ifndef ZVGL_WGL_H
#define ZVGL_WGL_H

#include "gl.h"

#if defined(_WIN32)

#if defined(ZVGL_BUILD_LIBRARY) && !defined(_GDI32_)
#define _GDI32_
#endif
#ifndef NOMINMAX
#define NOMINMAX
#define ZVGL_WGL_DEFINED_NOMINMAX
#endif
#include <windows.h>
#ifdef ZVGL_WGL_DEFINED_NOMINMAX
#undef NOMINMAX
#undef ZVGL_WGL_DEFINED_NOMINMAX
#endif

#else /* not Windows: the minimal Win32 vocabulary */

#include <stdint.h>

#ifndef WINAPI
#define WINAPI
#endif

typedef int BOOL;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef unsigned int DWORD;
typedef unsigned int UINT;
typedef int LONG;
typedef float FLOAT;
typedef DWORD COLORREF;
typedef const char *LPCSTR;
typedef char *LPSTR;
typedef void *HANDLE;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/* Handles: distinct incomplete types, so that one cannot be passed for another. */
typedef struct HDC__ *HDC;
typedef struct HGLRC__ *HGLRC;
typedef struct HWND__ *HWND;

/* The result of wglGetProcAddress: any function, cast to its real type by the caller. */
typedef intptr_t (WINAPI *PROC)(void);

typedef struct tagPIXELFORMATDESCRIPTOR {
    WORD nSize;
    WORD nVersion;
    DWORD dwFlags;
    BYTE iPixelType;
    BYTE cColorBits;
    BYTE cRedBits;
    BYTE cRedShift;
    BYTE cGreenBits;
    BYTE cGreenShift;
    BYTE cBlueBits;
    BYTE cBlueShift;
    BYTE cAlphaBits;
    BYTE cAlphaShift;
    BYTE cAccumBits;
    BYTE cAccumRedBits;
    BYTE cAccumGreenBits;
    BYTE cAccumBlueBits;
    BYTE cAccumAlphaBits;
    BYTE cDepthBits;
    BYTE cStencilBits;
    BYTE cAuxBuffers;
    BYTE iLayerType;
    BYTE bReserved;
    DWORD dwLayerMask;
    DWORD dwVisibleMask;
    DWORD dwDamageMask;
} PIXELFORMATDESCRIPTOR, *PPIXELFORMATDESCRIPTOR, *LPPIXELFORMATDESCRIPTOR;

typedef struct tagLAYERPLANEDESCRIPTOR {
    WORD nSize;
    WORD nVersion;
    DWORD dwFlags;
    BYTE iPixelType;
    BYTE cColorBits;
    BYTE cRedBits;
    BYTE cRedShift;
    BYTE cGreenBits;
    BYTE cGreenShift;
    BYTE cBlueBits;
    BYTE cBlueShift;
    BYTE cAlphaBits;
    BYTE cAlphaShift;
    BYTE cAccumBits;
    BYTE cAccumRedBits;
    BYTE cAccumGreenBits;
    BYTE cAccumBlueBits;
    BYTE cAccumAlphaBits;
    BYTE cDepthBits;
    BYTE cStencilBits;
    BYTE cAuxBuffers;
    BYTE iLayerPlane;
    BYTE bReserved;
    COLORREF crTransparent;
} LAYERPLANEDESCRIPTOR, *PLAYERPLANEDESCRIPTOR, *LPLAYERPLANEDESCRIPTOR;

typedef struct _POINTFLOAT {
    FLOAT x;
    FLOAT y;
} POINTFLOAT, *PPOINTFLOAT;

typedef struct _GLYPHMETRICSFLOAT {
    FLOAT gmfBlackBoxX;
    FLOAT gmfBlackBoxY;
    POINTFLOAT gmfptGlyphOrigin;
    FLOAT gmfCellIncX;
    FLOAT gmfCellIncY;
} GLYPHMETRICSFLOAT, *PGLYPHMETRICSFLOAT, *LPGLYPHMETRICSFLOAT;

#ifdef __cplusplus
static_assert(sizeof(PIXELFORMATDESCRIPTOR) == 40, "PIXELFORMATDESCRIPTOR is 40 bytes");
static_assert(sizeof(LAYERPLANEDESCRIPTOR) == 32, "LAYERPLANEDESCRIPTOR is 32 bytes");
static_assert(sizeof(GLYPHMETRICSFLOAT) == 24, "GLYPHMETRICSFLOAT is 24 bytes");
#else
_Static_assert(sizeof(PIXELFORMATDESCRIPTOR) == 40, "PIXELFORMATDESCRIPTOR is 40 bytes");
_Static_assert(sizeof(LAYERPLANEDESCRIPTOR) == 32, "LAYERPLANEDESCRIPTOR is 32 bytes");
_Static_assert(sizeof(GLYPHMETRICSFLOAT) == 24, "GLYPHMETRICSFLOAT is 24 bytes");
#endif

/* iPixelType */
#define PFD_TYPE_RGBA                 0
#define PFD_TYPE_COLORINDEX           1

/* iLayerType */
#define PFD_MAIN_PLANE                0
#define PFD_OVERLAY_PLANE             1
#define PFD_UNDERLAY_PLANE            (-1)

/* dwFlags */
#define PFD_DOUBLEBUFFER              0x00000001
#define PFD_STEREO                    0x00000002
#define PFD_DRAW_TO_WINDOW            0x00000004
#define PFD_DRAW_TO_BITMAP            0x00000008
#define PFD_SUPPORT_GDI               0x00000010
#define PFD_SUPPORT_OPENGL            0x00000020
#define PFD_GENERIC_FORMAT            0x00000040
#define PFD_NEED_PALETTE              0x00000080
#define PFD_NEED_SYSTEM_PALETTE       0x00000100
#define PFD_SWAP_EXCHANGE             0x00000200
#define PFD_SWAP_COPY                 0x00000400
#define PFD_SWAP_LAYER_BUFFERS        0x00000800
#define PFD_GENERIC_ACCELERATED       0x00001000
#define PFD_SUPPORT_DIRECTDRAW        0x00002000
#define PFD_DEPTH_DONTCARE            0x20000000
#define PFD_DOUBLEBUFFER_DONTCARE     0x40000000
#define PFD_STEREO_DONTCARE           0x80000000

#ifdef __cplusplus
extern "C" {
#endif

/* The GDI names: on Windows they come from <windows.h>. */
GLAPI int WINAPI ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR *ppfd);
GLAPI int WINAPI DescribePixelFormat(HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd);
GLAPI int WINAPI GetPixelFormat(HDC hdc);
GLAPI BOOL WINAPI SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR *ppfd);
GLAPI BOOL WINAPI SwapBuffers(HDC hdc);

/* The wgl names that <windows.h> declares. */
GLAPI BOOL WINAPI wglCopyContext(HGLRC src, HGLRC dst, UINT mask);
GLAPI HGLRC WINAPI wglCreateContext(HDC hdc);
GLAPI HGLRC WINAPI wglCreateLayerContext(HDC hdc, int layer);
GLAPI BOOL WINAPI wglDeleteContext(HGLRC ctx);
GLAPI BOOL WINAPI wglDescribeLayerPlane(HDC hdc, int format, int layer, UINT nBytes, LPLAYERPLANEDESCRIPTOR plpd);
GLAPI HGLRC WINAPI wglGetCurrentContext(void);
GLAPI HDC WINAPI wglGetCurrentDC(void);
GLAPI int WINAPI wglGetLayerPaletteEntries(HDC hdc, int layer, int start, int count, COLORREF *entries);
GLAPI PROC WINAPI wglGetProcAddress(LPCSTR name);
GLAPI BOOL WINAPI wglMakeCurrent(HDC hdc, HGLRC ctx);
GLAPI BOOL WINAPI wglRealizeLayerPalette(HDC hdc, int layer, BOOL realize);
GLAPI int WINAPI wglSetLayerPaletteEntries(HDC hdc, int layer, int start, int count, const COLORREF *entries);
GLAPI BOOL WINAPI wglShareLists(HGLRC a, HGLRC b);
GLAPI BOOL WINAPI wglSwapLayerBuffers(HDC hdc, UINT planes);
GLAPI BOOL WINAPI wglUseFontBitmapsA(HDC hdc, DWORD first, DWORD count, DWORD listBase);
GLAPI BOOL WINAPI wglUseFontBitmapsW(HDC hdc, DWORD first, DWORD count, DWORD listBase);
GLAPI BOOL WINAPI wglUseFontOutlinesA(HDC hdc, DWORD first, DWORD count, DWORD listBase, FLOAT deviation, FLOAT extrusion, int format, LPGLYPHMETRICSFLOAT metrics);
GLAPI BOOL WINAPI wglUseFontOutlinesW(HDC hdc, DWORD first, DWORD count, DWORD listBase, FLOAT deviation, FLOAT extrusion, int format, LPGLYPHMETRICSFLOAT metrics);

#ifdef __cplusplus
}
#endif

#endif /* _WIN32 */

#ifdef __cplusplus
extern "C" {
#endif

/* The wgl names that the system's OpenGL library exports beside the GDI ones, declared
 * on every platform. */
GLAPI int WINAPI wglChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR *ppfd);
GLAPI int WINAPI wglDescribePixelFormat(HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd);
GLAPI int WINAPI wglGetPixelFormat(HDC hdc);
GLAPI BOOL WINAPI wglSetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR *ppfd);
GLAPI BOOL WINAPI wglSwapBuffers(HDC hdc);
GLAPI PROC WINAPI wglGetDefaultProcAddress(LPCSTR name);

/* GL_VELD_unit_select_wgl: which board (unit) a context renders on. A unit is a board
 * number from 0, or -1 for "none chosen". Results: 0 success, -1 failure. */
GLAPI int WINAPI wglUnitCountGetVELD(int *count);
GLAPI int WINAPI wglUnitCurrentVELD(HGLRC ctx, int unit);
GLAPI int WINAPI wglUnitCurrentGetVELD(HGLRC ctx, int *unit);
GLAPI int WINAPI wglUnitDefaultVELD(int unit);
GLAPI int WINAPI wglUnitDefaultGetVELD(int *unit);

#ifdef __cplusplus
}
#endif

#endif /* ZVGL_WGL_H */
