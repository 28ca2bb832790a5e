// glide_board.cpp: library, board and window calls: init and shutdown, version, hardware
// query, board selection, window open and close, control, idle, screen size, counters,
// origin, gamma, hints, state save and restore, error callback.
#include <cstdlib>
#include <new>

#include <zvgl/board_tool.h>

#include "glide/entry.h"

namespace zvb {

constinit Glide theGlide{};

void refuse(const char *call, const char *why, int fatal) {
  char text[256];
  std::snprintf(text, sizeof text, "%s: %s", call, why);
  report_error(text, fatal);
}

namespace {

// The saved-state block: a tag that identifies this board implementation, then the registers.
struct SavedState {
  uint32_t magic;
  uint32_t size;
  PixelState state;
};
constexpr uint32_t kStateMagic = 0x5A564253;  // "ZVBS"
static_assert(sizeof(SavedState) <= GLIDE_STATE_PAD_SIZE, "the saved state fits in GrState");

// Closes the window of `b`: the queued work is finished, then the buffers are released.
void close_window(Board &b) {
  if (!b.open) return;
  board_stop(b);
  lfb_release(b.lfbRead);
  lfb_release(b.lfbWrite);
  live_window_close(b);
  std::free(b.memory);
  b.memory = nullptr;
  for (uint16_t *&c : b.px.colour) c = nullptr;
  b.px.aux = nullptr;
  b.open = 0;
  trace_flush_file();
}

// The version of the vendor's build that matches the first board's family.
const char *version_text() {
  GlobalConfig cfg;
  const GlobalConfig *c = &glide().cfg;
  if (!glide().initialised) {
    read_config(cfg);
    c = &cfg;
  }
  if (c->boards == 0) return "2.56";
  switch (c->board[0].kind) {
    case KIND_VOODOO:
    case KIND_RUSH: return "2.46";
    case KIND_BANSHEE:
    case KIND_VOODOO3: return "2.60.00.0415";
    default: return "2.56";
  }
}

}  // namespace

}  // namespace zvb

using namespace zvb;

FX_ENTRY void FX_CALL grGlideInit(void) {
  Glide &g = glide();
  if (g.initialised) return;
  read_config(g.cfg);
  trace_open_file();
  ZVB_TRACE("grGlideInit");
  for (int i = 0; i < g.cfg.boards; ++i) {
    Board *b = new (std::nothrow) Board();
    if (!b) break;
    b->index = i;
    b->cfg = g.cfg.board[i];
    b->gamma = b->cfg.kind == KIND_VOODOO ? 1.7f : 1.3f;
    b->px.colour[0] = b->px.colour[1] = b->px.colour[2] = nullptr;
    px_reset(b->px, b->cfg.numTmu);
    g.boards[i] = b;
  }
  g.current = 0;
  g.initialised = 1;
}

FX_ENTRY void FX_CALL grGlideShutdown(void) {
  Glide &g = glide();
  if (!g.initialised) return;
  ZVB_TRACE("grGlideShutdown");
  for (int i = 0; i < kMaxBoards; ++i) {
    if (!g.boards[i]) continue;
    close_window(*g.boards[i]);
    delete g.boards[i];
    g.boards[i] = nullptr;
  }
  g.initialised = 0;
  trace_close_file();
}

FX_ENTRY void FX_CALL grGlideGetVersion(char version[80]) {
  ZVB_TRACE("grGlideGetVersion %s", version ? "buffer" : "null");
  if (!version) {
    refuse("grGlideGetVersion", "null buffer", 1);
    return;
  }
  std::snprintf(version, 80, "%s", version_text());
}

FX_ENTRY void FX_CALL grErrorSetCallback(GrErrorCallbackFnc_t fnc) {
  ZVB_TRACE("grErrorSetCallback %s", fnc ? "function" : "null");
  glide().errorCallback = fnc;
}

// Fills the board entries of a hardware configuration from the board descriptions.
static void describe_boards(const GlobalConfig &cfg, GrHwConfiguration *hw) {
  std::memset(hw, 0, sizeof *hw);
  hw->num_sst = cfg.reported;
  for (int i = 0; i < cfg.boards; ++i) {
    const BoardConfig &b = cfg.board[i];
    hw->SSTs[i].type = b.sstType;
    if (b.sstType == GR_SSTTYPE_SST96) {
      GrSst96Config_t &s = hw->SSTs[i].sstBoard.SST96Config;
      s.fbRam = b.fbRamMb;
      s.nTexelfx = b.numTmu;
      s.tmuConfig.tmuRev = b.tmuRev;
      s.tmuConfig.tmuRam = b.numTmu > 0 ? b.tmuRamMb : 0;
    } else if (b.sstType == GR_SSTTYPE_AT3D) {
      hw->SSTs[i].sstBoard.AT3DConfig.rev = b.fbiRev;
    } else {
      GrVoodooConfig_t &v = hw->SSTs[i].sstBoard.VoodooConfig;
      v.fbRam = b.fbRamMb;
      v.fbiRev = b.fbiRev;
      v.nTexelfx = b.numTmu;
      v.sliDetect = b.sli ? FXTRUE : FXFALSE;
      for (int t = 0; t < b.numTmu && t < GLIDE_NUM_TMU; ++t) {
        v.tmuConfig[t].tmuRev = b.tmuRev;
        v.tmuConfig[t].tmuRam = b.tmuRamMb;
      }
    }
  }
}

FX_ENTRY FxBool FX_CALL grSstQueryHardware(GrHwConfiguration *hwconfig) {
  ZVB_TRACE("grSstQueryHardware %s", hwconfig ? "config" : "null");
  if (!hwconfig) {
    refuse("grSstQueryHardware", "null configuration", 1);
    return FXFALSE;
  }
  GlobalConfig local;
  const GlobalConfig *cfg = &glide().cfg;
  if (!glide().initialised) {
    read_config(local);
    cfg = &local;
  }
  if (cfg->queryFails) {
    std::memset(hwconfig, 0, sizeof *hwconfig);
    return FXFALSE;
  }
  describe_boards(*cfg, hwconfig);
  return hwconfig->num_sst > 0 ? FXTRUE : FXFALSE;
}

FX_ENTRY FxBool FX_CALL grSstQueryBoards(GrHwConfiguration *hwconfig) {
  ZVB_TRACE("grSstQueryBoards %s", hwconfig ? "config" : "null");
  if (!hwconfig) {
    refuse("grSstQueryBoards", "null configuration", 1);
    return FXFALSE;
  }
  GlobalConfig cfg;
  read_config(cfg);
  hwconfig->num_sst = cfg.reported;
  return FXTRUE;
}

FX_ENTRY void FX_CALL grSstSelect(int which_sst) {
  ZVB_TRACE("grSstSelect %d", which_sst);
  Glide &g = glide();
  if (!g.initialised || which_sst < 0 || which_sst >= g.cfg.boards || !g.boards[which_sst]) {
    refuse("grSstSelect", "no such board", 1);
    return;
  }
  g.current = which_sst;
}

FX_ENTRY FxBool FX_CALL grSstWinOpen(FxU32 hWnd, GrScreenResolution_t res, GrScreenRefresh_t ref,
                                     GrColorFormat_t cformat, GrOriginLocation_t origin,
                                     int nColBuffers, int nAuxBuffers) {
  ZVB_TRACE("grSstWinOpen 0x%x %d %d %d %d %d %d", hWnd, res, ref, cformat, origin, nColBuffers,
            nAuxBuffers);
  Board *bp = selected();
  if (!bp) {
    refuse("grSstWinOpen", "no board selected (grGlideInit first)", 1);
    return FXFALSE;
  }
  Board &b = *bp;
  if (b.open) {
    refuse("grSstWinOpen", "the board's window is already open", 1);
    return FXFALSE;
  }
  if (glide().faultWinOpen[b.index]) return FXFALSE;
  int w = 0, h = 0;
  if (res == GR_RESOLUTION_NONE && b.cfg.kind == KIND_RUSH) {
    w = 640;  // a windowed board without a window size of its own
    h = 480;
  } else if (!resolution_size(res, &w, &h)) {
    return FXFALSE;
  }
  const bool refreshOk = (ref >= GR_REFRESH_60Hz && ref <= GR_REFRESH_120Hz) || ref == GR_REFRESH_NONE;
  if (!refreshOk || cformat < GR_COLORFORMAT_ARGB || cformat > GR_COLORFORMAT_BGRA) return FXFALSE;
  if (origin != GR_ORIGIN_UPPER_LEFT && origin != GR_ORIGIN_LOWER_LEFT) return FXFALSE;
  if (nColBuffers < 1 || nColBuffers > 3 || nAuxBuffers < 0 || nAuxBuffers > 1) return FXFALSE;
  // Family limits of the vendor's Glide: no triple buffering on Voodoo Graphics; Voodoo2 does
  // not open below 512 x 384 (nor 512 x 256 or 400 x 300).
  if (b.cfg.kind == KIND_VOODOO && nColBuffers >= 3) return FXFALSE;
  if (b.cfg.kind == KIND_VOODOO2 && (w * h < 512 * 384 || res == GR_RESOLUTION_512x256))
    return FXFALSE;
  // Every buffer must fit in the frame-buffer memory (twice as much for an SLI pair, each
  // board holding half of the lines).
  const uint64_t bufferBytes = static_cast<uint64_t>(w) * static_cast<uint64_t>(h) * 2u;
  const uint64_t memory = static_cast<uint64_t>(b.cfg.fbRamMb) << 20 << (b.cfg.sli ? 1 : 0);
  if (bufferBytes * static_cast<uint64_t>(nColBuffers + nAuxBuffers) > memory) return FXFALSE;

  const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
  b.memory = static_cast<uint16_t *>(std::calloc(pixels * static_cast<size_t>(nColBuffers + nAuxBuffers), 2));
  if (!b.memory) return FXFALSE;
  PixelBoard &p = b.px;
  for (int i = 0; i < 3; ++i) p.colour[i] = i < nColBuffers ? b.memory + pixels * static_cast<size_t>(i) : nullptr;
  p.aux = nAuxBuffers ? b.memory + pixels * static_cast<size_t>(nColBuffers) : nullptr;
  p.width = w;
  p.height = h;
  p.front = 0;
  p.back = nColBuffers > 1 ? 1 : 0;
  p.nColBuffers = nColBuffers;
  p.state.colourFormat = static_cast<uint8_t>(cformat);
  p.state.origin = static_cast<uint8_t>(origin);
  px_reset(p, b.cfg.numTmu);
  b.hwnd = hWnd;
  b.resolution = res;
  b.refresh = ref;
  b.gamma = b.cfg.kind == KIND_VOODOO ? 1.7f : 1.3f;
  b.triangles = b.polygons = b.lines = b.points = b.vertices = 0;
  b.open = 1;
  if (!board_start(b)) {
    close_window(b);
    return FXFALSE;
  }
  live_window_open(b);
  return FXTRUE;
}

FX_ENTRY void FX_CALL grSstWinClose(void) {
  ZVB_TRACE("grSstWinClose");
  if (Board *b = selected()) close_window(*b);
}

FX_ENTRY FxBool FX_CALL grSstControl(GrControl_t code) {
  ZVB_TRACE("grSstControl %u", code);
  Board *b = open_board();
  if (!b) return FXTRUE;
  if (code >= GR_CONTROL_ACTIVATE && code <= GR_CONTROL_MOVE) return FXTRUE;
  // Voodoo Graphics and Voodoo2 accept every code; the others refuse unknown ones.
  return b->cfg.kind == KIND_VOODOO || b->cfg.kind == KIND_VOODOO2 ? FXTRUE : FXFALSE;
}

FX_ENTRY void FX_CALL grSstIdle(void) {
  ZVB_TRACE("grSstIdle");
  if (Board *b = open_board()) board_idle(*b);
}

FX_ENTRY FxU32 FX_CALL grSstScreenWidth(void) {
  ZVB_TRACE("grSstScreenWidth");
  Board *b = open_board();
  return b ? static_cast<FxU32>(b->px.width) : 0;
}

FX_ENTRY FxU32 FX_CALL grSstScreenHeight(void) {
  ZVB_TRACE("grSstScreenHeight");
  Board *b = open_board();
  return b ? static_cast<FxU32>(b->px.height) : 0;
}

FX_ENTRY void FX_CALL grSstPerfStats(GrSstPerfStats_t *pStats) {
  ZVB_TRACE("grSstPerfStats %s", pStats ? "stats" : "null");
  if (!pStats) {
    refuse("grSstPerfStats", "null statistics record", 1);
    return;
  }
  Board *b = selected();
  if (!b) {
    std::memset(pStats, 0, sizeof *pStats);
    return;
  }
  if (b->open) board_idle(*b);
  // The hardware counters are 24 bits wide.
  const PerfCounters &c = b->px.perf;
  pStats->pixelsIn = c.pixelsIn & 0xFFFFFFu;
  pStats->chromaFail = c.chromaFail & 0xFFFFFFu;
  pStats->zFuncFail = c.zFuncFail & 0xFFFFFFu;
  pStats->aFuncFail = c.aFuncFail & 0xFFFFFFu;
  pStats->pixelsOut = c.pixelsOut & 0xFFFFFFu;
}

FX_ENTRY void FX_CALL grSstResetPerfStats(void) {
  ZVB_TRACE("grSstResetPerfStats");
  Board *b = selected();
  if (!b) return;
  if (b->open) queue(*b, OP_RESET_PERF);
  else std::memset(&b->px.perf, 0, sizeof b->px.perf);
}

FX_ENTRY void FX_CALL grSstOrigin(GrOriginLocation_t origin) {
  ZVB_TRACE("grSstOrigin %d", origin);
  if (origin != GR_ORIGIN_UPPER_LEFT && origin != GR_ORIGIN_LOWER_LEFT) {
    refuse("grSstOrigin", "unknown origin", 1);
    return;
  }
  if (Board *b = open_board()) queue(*b, OP_ORIGIN, origin);
}

FX_ENTRY void FX_CALL grGammaCorrectionValue(float value) {
  ZVB_TRACE("grGammaCorrectionValue %g", value);
  if (!(value > 0.0f) || value > 20.0f) {
    refuse("grGammaCorrectionValue", "gamma out of range", 0);
    return;
  }
  // The gamma table is read by the display (board thread) only at swaps.
  if (Board *b = selected()) b->gamma = value;
}

FX_ENTRY void FX_CALL grHints(GrHint_t hintType, FxU32 hintMask) {
  ZVB_TRACE("grHints %u 0x%x", hintType, hintMask);
  if (hintType > GR_HINTTYPE_MAX) {
    refuse("grHints", "unknown hint type", 1);
    return;
  }
  // Only the texture-coordinate and mipmap-dither hints reach the pixels; the FIFO, FPU and
  // LFB hints have nothing to act on in a software board.
  if (hintType != GR_HINT_STWHINT && hintType != GR_HINT_ALLOW_MIPMAP_DITHER) return;
  if (Board *b = open_board()) queue(*b, OP_HINT, static_cast<int32_t>(hintType), static_cast<int32_t>(hintMask));
}

FX_ENTRY void FX_CALL grGlideGetState(GrState *state) {
  ZVB_TRACE("grGlideGetState %s", state ? "state" : "null");
  if (!state) {
    refuse("grGlideGetState", "null state", 1);
    return;
  }
  Board *b = selected();
  std::memset(state, 0, sizeof *state);
  if (!b) return;
  if (b->open) board_idle(*b);
  SavedState s;
  std::memset(&s, 0, sizeof s);
  s.magic = kStateMagic;
  s.size = sizeof(SavedState);
  s.state = b->px.state;
  std::memcpy(state, &s, sizeof s);
}

FX_ENTRY void FX_CALL grGlideSetState(const GrState *state) {
  ZVB_TRACE("grGlideSetState %s", state ? "state" : "null");
  if (!state) {
    refuse("grGlideSetState", "null state", 1);
    return;
  }
  SavedState s;
  std::memcpy(&s, state, sizeof s);
  if (s.magic != kStateMagic || s.size != sizeof(SavedState)) {
    refuse("grGlideSetState", "the block was not saved by grGlideGetState of this board", 1);
    return;
  }
  Board *b = selected();
  if (!b) return;
  if (!b->open) {
    b->px.state = s.state;
    return;
  }
  void *copy = std::malloc(sizeof(PixelState));
  if (!copy) return;
  std::memcpy(copy, &s.state, sizeof(PixelState));
  Command *c = fifo_reserve(*b);
  c->op = OP_SET_STATE;
  c->blob = copy;
  fifo_commit(*b);
}

// ---- Tooling interface: resets, faults, buffers, counts ---------------------------------

ZVB_API void zvbReset(void) {
  grGlideShutdown();
  Glide &g = glide();
  g.faultBoardCount = -1;
  g.faultQuery = 0;
  g.errorCallback = nullptr;
  for (int i = 0; i < kMaxBoards; ++i) {
    g.faultSwapDelay[i].store(0);
    g.faultWinOpen[i] = 0;
  }
  trace_reset();
  clear_overrides();
}

ZVB_API void zvbFaultQueryHardware(int fail) {
  glide().faultQuery = fail != 0;
  glide().cfg.queryFails = fail != 0;
}

ZVB_API void zvbFaultBoardCount(int count) {
  glide().faultBoardCount = count < 0 ? -1 : (count > kMaxReportedBoards ? kMaxReportedBoards : count);
}
