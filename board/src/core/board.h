// board.h: the software board's own records: configuration, the per-board command FIFO and
// display, LFB locks, and the process-wide Glide state (boards, selection, error callback).
#pragma once

#include <atomic>
#include <cstdint>

#include <glide2/glide.h>

#include "pixel/pixel.h"
#include "support/thread/thread.h"

namespace zvb {

constexpr int kMaxBoards = MAX_NUM_SST;     // 16 boards exist at most
constexpr int kMaxReportedBoards = 17;      // a fault may report one more than exist
constexpr int kFifoSize = 1024;             // commands in one board's FIFO
constexpr int kMaxPendingSwaps = 7;         // the hardware's 3-bit swap counter

// Board families the configuration can describe.
enum BoardKind { KIND_VOODOO, KIND_RUSH, KIND_VOODOO2, KIND_BANSHEE, KIND_VOODOO3 };

// One board as ZVGL_BOARD_* describes it and grSstQueryHardware reports it.
struct BoardConfig {
  int kind;        // BoardKind
  int sstType;     // GrSstType reported
  int fbRamMb;     // frame-buffer memory per board, MB
  int fbiRev;      // reported FBI revision
  int numTmu;      // 0..2
  int tmuRev;
  int tmuRamMb;    // per TMU, MB
  int sli;         // scan-line interleaved pair: twice the frame-buffer memory
};

// Modes and paths read at grGlideInit.
struct GlobalConfig {
  int sync;            // commands run in the caller's thread
  int countOnly;       // primitives are counted, not drawn
  int swapInterval;    // FX_GLIDE_SWAPINTERVAL, or -1
  int window;          // live window wanted
  int reported;        // boards reported by the query
  int boards;          // boards that exist (<= kMaxBoards)
  int queryFails;
  BoardConfig board[kMaxBoards];
};

// Command codes of the FIFO. Each runs on the board thread (or inline in sync mode).
enum Op : uint8_t {
  OP_NOP, OP_CLEAR, OP_RENDER_BUFFER, OP_COLOR_MASK, OP_DEPTH_MASK, OP_CLIP, OP_TRIANGLE,
  OP_PLANAR_POLY, OP_POLY, OP_LINE, OP_POINT, OP_AA_TRIANGLE, OP_AA_POLY, OP_AA_LINE, OP_AA_POINT,
  OP_COLOR_COMBINE, OP_ALPHA_COMBINE, OP_CONSTANT_COLOR, OP_BLEND, OP_ALPHA_TEST, OP_ALPHA_REF,
  OP_DEPTH_MODE, OP_DEPTH_FUNC, OP_DEPTH_BIAS, OP_CULL, OP_FOG_MODE, OP_FOG_COLOR, OP_FOG_TABLE,
  OP_DITHER, OP_CHROMA_MODE, OP_CHROMA_VALUE, OP_ORIGIN, OP_HINT, OP_LFB_ALPHA, OP_LFB_DEPTH,
  OP_SWAP, OP_RESET_PERF, OP_SET_STATE, OP_LFB_WRITE,
};

// One queued command: integer arguments, up to three vertices inline, or a heap block
// (polygon lists, fog table, saved state, LFB pixels) that the executor frees.
struct Command {
  uint8_t op;
  int32_t i[6];
  union {
    GrVertex v[3];
    uint8_t bytes[sizeof(GrVertex) * 3];
  };
  void *blob;
};

// Pixels of an LFB write as the FIFO carries them: a rectangle in the lock's coordinates, each
// pixel already split into colour, alpha and depth, and a flag per pixel telling whether it
// was written.
struct LfbWrite {
  int buffer;             // GR_BUFFER_FRONTBUFFER, BACKBUFFER or AUXBUFFER
  int origin;             // of the coordinates below
  int pipeline;           // through px_pipeline_pixel
  int hasColour, hasAlpha, hasDepth;
  int x0, y0, w, h;
  // Per pixel, w*h of each: written flag, RGBA, depth.
  uint8_t *written;
  uint8_t *rgba;
  uint16_t *depth;
};

// A write lock in progress: the caller writes into `shadow`; grLfbUnlock hands the changed
// pixels to the FIFO.
struct LfbLockState {
  int held;
  int buffer;
  int writeMode;
  int origin;
  int pipeline;
  int bpp;                // bytes per pixel of the write mode
  uint8_t *shadow;        // what the caller sees
  uint8_t *initial;       // its contents at lock time, to tell written pixels apart
  uint16_t *readCopy;     // read locks with lower-left origin: a flipped copy
  size_t capacity;        // bytes of shadow and initial (kept from lock to lock)
};

struct Board {
  int index;
  BoardConfig cfg;
  PixelBoard px;

  // Window.
  int open;
  FxU32 hwnd;
  int resolution, refresh, hz;
  uint16_t *memory;            // one block for every colour buffer and the aux buffer
  float gamma;
  void *liveWindow;            // the live window's own record, if one is shown

  // FIFO: commands [tail, head) are queued. The host (one thread) writes a slot and publishes
  // it by advancing `head`; the board thread runs the command at `tail`, then advances it. The
  // mutex guards the display and the sleeping/waiting hand-shakes, not the ring.
  zvgl::Mutex *mu;
  zvgl::Cond *wake;            // the board thread waits here for commands or a due swap
  zvgl::Cond *progress;        // hosts wait here for room, idle, or swaps to complete
  zvgl::Thread *thread;
  Command *ring;
  alignas(64) std::atomic<uint64_t> head;  // own cache lines: written by different threads
  alignas(64) std::atomic<uint64_t> tail;
  alignas(64) int spare;
  std::atomic<int> boardSleeping;  // the board thread waits (or is about to) on `wake`
  std::atomic<int> hostWaiting;    // a host waits on `progress`
  std::atomic<int> stop;       // the window is closing: drop waits and end the thread
  std::atomic<int> pendingSwaps;  // queued swaps not yet shown

  // Display: swaps taken from the FIFO whose buffer is not shown yet.
  struct PendingDisplay { int buffer; uint64_t due; int never; } display[kMaxPendingSwaps + 1];
  int displayCount;
  int shown;                   // buffer on the screen
  uint64_t retraceOrigin;      // time of retrace 0, ns
  uint64_t retracePeriod;      // ns
  int64_t lastSwapRetrace;     // retrace index of the last swap
  uint64_t swaps;              // swaps shown since the window opened

  LfbLockState lfbRead, lfbWrite;
  uint64_t triangles, polygons, lines, points, vertices;
};

// Process-wide Glide state.
struct Glide {
  int initialised;
  int current;                 // selected board
  GrErrorCallbackFnc_t errorCallback;
  GlobalConfig cfg;
  Board *boards[kMaxBoards];   // allocated at grGlideInit
  int faultBoardCount = -1;    // -1 or 0..17
  int faultQuery;
  std::atomic<int> faultSwapDelay[kMaxBoards];  // ms: 0 none, > 0 delay, < 0 never
  int faultWinOpen[kMaxBoards];
};

// The one Glide record, built at compile time (no guard on each look-up, none of the order
// questions of start-up: it is valid before any constructor runs).
extern constinit Glide theGlide;
inline Glide &glide() { return theGlide; }

// ---- configuration (config.cpp) ----
const char *option(const char *name);                 // override, else environment, else null
int option_int(const char *name, int fallback);
void clear_overrides();
void read_config(GlobalConfig &cfg);
int resolution_size(int code, int *w, int *h);        // 1 when the code names a size

// ---- error reporting ----
void report_error(const char *message, int fatal);

// ---- FIFO and display (fifo.cpp) ----
int board_start(Board &b);                            // thread and FIFO at window open
void board_stop(Board &b);                            // drops what is pending, ends the thread
Command *fifo_reserve(Board &b);                      // room for one command (waits)
void fifo_commit(Board &b);                           // hands it to the board thread
void board_idle(Board &b);                            // waits until every command has run
void board_poll_display(Board &b);                    // sync mode: completes due swaps
void swap_wait_room(Board &b);                        // waits while 7 swaps are pending
void execute(Board &b, Command &c);                   // runs one command

// ---- capture and live window (capture.cpp, window*.cpp) ----
void capture_frame(Board &b);                         // at each swap, if a pattern is set
int write_png_rgb565(const char *path, const uint16_t *pixels, int w, int h);
void live_window_open(Board &b);
void live_window_show(Board &b);
void live_window_close(Board &b);

// ---- trace (trace.cpp) ----
// Which traces are on (a bit each); the frequent calls read it directly to skip the trace.
extern std::atomic<int> traceSwitches;
bool trace_active();
void trace_line(const char *fmt, ...);
void trace_open_file();
void trace_close_file();
void trace_flush_file();
void trace_reset();

// ---- LFB application (lfb.cpp) ----
void lfb_apply(Board &b, LfbWrite &w);
void lfb_release(LfbLockState &l);   // frees everything (window close)
void lfb_unlock_state(LfbLockState &l);  // ends a lock, keeping the memory for the next one

}  // namespace zvb
