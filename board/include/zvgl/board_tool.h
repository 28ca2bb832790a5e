/*
 * zvgl/board_tool.h: the software board's tooling interface, beside the Glide API.
 *
 * Tests and tools use it to read the trace of Glide calls, to inject faults, to read the
 * buffers directly, to capture frames and to count primitives without drawing them. Every
 * name starts with `zvb`; the functions are plain C (cdecl) and exported undecorated by
 * libglide2x.so and glide2x.dll on every target.
 *
 * Options: every ZVGL_BOARD_* setting (docs/board.md) is read from the environment, unless
 * zvbSetOption gave it a value first. Board configuration and modes are read at grGlideInit
 * (and by grSstQueryBoards before it); capture and trace paths when a window opens.
 */
#ifndef ZVGL_BOARD_TOOL_H
#define ZVGL_BOARD_TOOL_H

/* ZVGL_BOARD_BUILD is defined while the software board itself is compiled. */
#if defined(ZVGL_BOARD_BUILD)
#  if defined(_WIN32)
#    define ZVB_EXPORT __declspec(dllexport)
#  else
#    define ZVB_EXPORT __attribute__((visibility("default")))
#  endif
#else
#  define ZVB_EXPORT
#endif

#ifdef __cplusplus
#  define ZVB_API extern "C" ZVB_EXPORT
#else
#  define ZVB_API extern ZVB_EXPORT
#endif

/* ---- Options ---------------------------------------------------------------------------- */

/* Gives option `name` (e.g. "ZVGL_BOARD_COUNT") the value `value`, which then wins over the
   environment; a null value removes the override. Returns 0, or -1 for a null or over-long name. */
ZVB_API int zvbSetOption(const char *name, const char *value);
/* Removes every override, every injected fault, the trace and the primitive counts. The boards
   are shut down first (as grGlideShutdown does). */
ZVB_API void zvbReset(void);

/* ---- Trace of Glide calls ---------------------------------------------------------------- */

/* One line per Glide call, in call order: the call's name, then its arguments separated by
   single spaces (integers in decimal, colours and masks in hex, floats with %g, vertices as
   {x y z r g b ooz a oow s0 t0 w0 s1 t1 w1}, null pointers as "null"). Recording in memory is
   off until zvbTraceEnable(1); the file trace (ZVGL_BOARD_TRACE) is independent of it. */
ZVB_API void zvbTraceEnable(int on);
ZVB_API int zvbTraceCount(void);
/* Line i (0-based), or null when out of range; valid until the trace is cleared. */
ZVB_API const char *zvbTraceLine(int i);
/* Index of the first line at or after `from` that starts with `prefix`, or -1. */
ZVB_API int zvbTraceFind(const char *prefix, int from);
ZVB_API void zvbTraceClear(void);

/* ---- Fault injection -------------------------------------------------------------------- */

/* Swaps on `board` complete `ms` milliseconds after the board reaches them instead of at the
   retrace; ms < 0: they never complete (grBufferNumPending stays above 0; closing the window
   drops them); ms == 0 removes the fault. */
ZVB_API void zvbFaultSwapDelay(int board, int ms);
/* grSstWinOpen on `board` fails while `fail` is nonzero. */
ZVB_API void zvbFaultWinOpen(int board, int fail);
/* grSstQueryHardware fails (FXFALSE, num_sst 0) while `fail` is nonzero. */
ZVB_API void zvbFaultQueryHardware(int fail);
/* The number of boards reported at the next grGlideInit, 0..17 (17 reports one more than the
   structure can hold: the 17th board does not exist); -1 goes back to the configuration. */
ZVB_API void zvbFaultBoardCount(int count);

/* ---- Direct buffer access --------------------------------------------------------------- */

typedef struct {
  int width, height;               /* screen size; rows are `width` pixels apart */
  int colourBuffers;               /* 1..3 */
  int displayed;                   /* index of the displayed buffer */
  int back;                        /* index of the buffer drawing goes to as BACK */
  const unsigned short *colour[3]; /* RGB565, row 0 at the top of the screen */
  const unsigned short *aux;       /* depth or alpha, or null */
  unsigned long long swaps;        /* swaps completed since the window opened */
} ZvbBuffers;

/* Waits until `board` has executed every queued command, then describes its buffers. The
   pointers stay valid until the window closes; the board must not be drawing while they are
   read. Returns 0, or -1 when the board does not exist or has no open window. */
ZVB_API int zvbGetBuffers(int board, ZvbBuffers *out);
/* Writes the displayed buffer of `board` as an RGB PNG file; 0 or -1. */
ZVB_API int zvbWritePng(int board, const char *path);

/* ---- Count-only mode -------------------------------------------------------------------- */

typedef struct {
  unsigned long long triangles;   /* grDrawTriangle, grAADrawTriangle, and the polygon fans */
  unsigned long long polygons;    /* polygon-list calls */
  unsigned long long lines;
  unsigned long long points;
  unsigned long long vertices;    /* vertices passed to all of these */
} ZvbPrimitiveCounts;

/* Counts of primitives accepted by `board` since its window opened (in every mode; in
   count-only mode, ZVGL_BOARD_COUNT_ONLY=1, nothing else happens to them). 0 or -1. */
ZVB_API int zvbGetPrimitiveCounts(int board, ZvbPrimitiveCounts *out);

#endif /* ZVGL_BOARD_TOOL_H */
