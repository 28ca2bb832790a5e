// config.cpp: options (ZVGL_BOARD_* from the environment or zvbSetOption), the board
// configuration they describe, the resolution codes, and the error reporter.
#include "core/board.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <zvgl/board_tool.h>

namespace zvb {

namespace {

// Overrides given by zvbSetOption. A small fixed table: tests set a handful of options.
struct OptionOverride {
  char name[64];
  char value[256];
  int used;
};
OptionOverride g_overrides[32];

// Case-insensitive comparison that does not need a platform header.
bool same_text(const char *a, const char *b) {
  for (;; ++a, ++b) {
    char x = *a, y = *b;
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
    if (!x) return true;
  }
}

// Defaults of each board family: reported type and revisions, memory, TMUs.
struct KindDefaults {
  const char *name;
  int kind, sstType, fbRamMb, fbiRev, numTmu, tmuRev, tmuRamMb;
};
// Voodoo2 and later report type 0 with telling FBI revisions, as their Glide 2 does: Voodoo2
// chip revision 2 + 0x100 (two TMUs), Banshee 0x1000, Voodoo3 0x11002.
const KindDefaults kKinds[] = {
    {"voodoo", KIND_VOODOO, GR_SSTTYPE_VOODOO, 4, 2, 1, 1, 4},
    {"rush", KIND_RUSH, GR_SSTTYPE_SST96, 4, 1, 1, 1, 4},
    {"voodoo2", KIND_VOODOO2, GR_SSTTYPE_VOODOO, 4, 0x102, 2, 2, 4},
    {"banshee", KIND_BANSHEE, GR_SSTTYPE_VOODOO, 16, 0x1000, 1, 0x1000, 16},
    {"voodoo3", KIND_VOODOO3, GR_SSTTYPE_VOODOO, 16, 0x11002, 2, 0x11002, 16},
};

const KindDefaults *find_kind(const char *name) {
  for (const KindDefaults &k : kKinds)
    if (same_text(k.name, name)) return &k;
  return nullptr;
}

// Reads one per-board setting: ZVGL_BOARD<i>_<KEY> first, then ZVGL_BOARD_<KEY>.
const char *board_option(int board, const char *key) {
  char name[64];
  std::snprintf(name, sizeof name, "ZVGL_BOARD%d_%s", board, key);
  if (const char *v = option(name)) return v;
  std::snprintf(name, sizeof name, "ZVGL_BOARD_%s", key);
  return option(name);
}

int board_int(int board, const char *key, int fallback, int lo, int hi) {
  const char *v = board_option(board, key);
  if (!v || !*v) return fallback;
  char *end = nullptr;
  long n = std::strtol(v, &end, 0);
  if (end == v || *end || n < lo || n > hi) {
    std::fprintf(stderr, "glide2x: ignoring %s=%s for board %d (allowed %d..%d)\n", key, v, board,
                 lo, hi);
    return fallback;
  }
  return static_cast<int>(n);
}

}  // namespace

const char *option(const char *name) {
  for (const OptionOverride &o : g_overrides)
    if (o.used && std::strcmp(o.name, name) == 0) return o.value;
  return std::getenv(name);
}

void clear_overrides() {
  for (OptionOverride &o : g_overrides) o.used = 0;
}

int option_int(const char *name, int fallback) {
  const char *v = option(name);
  if (!v || !*v) return fallback;
  char *end = nullptr;
  long n = std::strtol(v, &end, 0);
  return end == v ? fallback : static_cast<int>(n);
}

// Reads the whole configuration: modes, board count, and each board's description.
void read_config(GlobalConfig &cfg) {
  std::memset(&cfg, 0, sizeof cfg);
  cfg.sync = option_int("ZVGL_BOARD_SYNC", 0) != 0;
  cfg.countOnly = option_int("ZVGL_BOARD_COUNT_ONLY", 0) != 0;
  cfg.window = option_int("ZVGL_BOARD_WINDOW", 0) != 0;
  cfg.swapInterval = -1;
  if (const char *si = option("FX_GLIDE_SWAPINTERVAL"); si && *si) {
    int n = std::atoi(si);
    cfg.swapInterval = n < 0 ? 0 : (n > 255 ? 255 : n);
  }
  int count = option_int("ZVGL_BOARD_COUNT", 1);
  if (count < 0) count = 0;
  if (count > kMaxReportedBoards) count = kMaxReportedBoards;
  if (glide().faultBoardCount >= 0) count = glide().faultBoardCount;
  cfg.reported = count;
  cfg.boards = count > kMaxBoards ? kMaxBoards : count;
  cfg.queryFails = glide().faultQuery;
  for (int i = 0; i < cfg.boards; ++i) {
    const KindDefaults *k = &kKinds[2];
    if (const char *t = board_option(i, "TYPE"); t && *t) {
      if (const KindDefaults *found = find_kind(t))
        k = found;
      else
        std::fprintf(stderr, "glide2x: unknown board type \"%s\" for board %d, using voodoo2\n", t, i);
    }
    BoardConfig &b = cfg.board[i];
    b.kind = k->kind;
    const int maxTmu = k->kind == KIND_RUSH || k->kind == KIND_BANSHEE ? 1 : 2;
    b.numTmu = board_int(i, "TMUS", k->numTmu, 0, maxTmu);
    b.fbRamMb = board_int(i, "FBRAM", k->fbRamMb, 1, 64);
    b.tmuRamMb = board_int(i, "TMURAM", k->tmuRamMb, 1, 64);
    b.sli = board_int(i, "SLI", 0, 0, 1) && (k->kind == KIND_VOODOO || k->kind == KIND_VOODOO2);
    int fbiRev = k->fbiRev;
    if (k->kind == KIND_VOODOO2) fbiRev = 2 + (b.numTmu >= 2 ? 0x100 : 0x80);
    b.fbiRev = board_int(i, "FBIREV", fbiRev, 0, 0x7FFFFFFF);
    b.tmuRev = board_int(i, "TMUREV", k->tmuRev, 0, 0x7FFFFFFF);
    b.sstType = board_int(i, "SSTTYPE", k->sstType, 0, 4);
  }
}

// Screen size of a resolution code. Besides Glide's codes 0x0..0xF the board accepts the board
// maker's two private families, which open at 1024 x 768: 0x564C5300 + a height (any height up
// to 65535 here) and 0x564C5400 + n (n = 0..255), which the first family's range contains.
int resolution_size(int code, int *w, int *h) {
  static const short kSizes[16][2] = {
      {320, 200}, {320, 240}, {400, 256}, {512, 384}, {640, 200}, {640, 350},
      {640, 400}, {640, 480}, {800, 600}, {960, 720}, {856, 480}, {512, 256},
      {1024, 768}, {1280, 1024}, {1600, 1200}, {400, 300}};
  const uint32_t u = static_cast<uint32_t>(code);
  if (u < 16) {
    *w = kSizes[u][0];
    *h = kSizes[u][1];
    return 1;
  }
  if (u >= 0x564C5300u && u <= 0x564C5300u + 0xFFFFu) {
    *w = 1024;
    *h = 768;
    return 1;
  }
  return 0;
}

// The error callback in force, or the default: the message to standard error. Unlike the
// vendor's default, a fatal error does not end the program: the call is refused instead.
void report_error(const char *message, int fatal) {
  GrErrorCallbackFnc_t cb = glide().errorCallback;
  if (cb) {
    cb(message, fatal ? FXTRUE : FXFALSE);
    return;
  }
  std::fprintf(stderr, "glide2x: %s%s\n", fatal ? "error: " : "warning: ", message);
}

}  // namespace zvb

using namespace zvb;

ZVB_API int zvbSetOption(const char *name, const char *value) {
  if (!name || std::strlen(name) >= sizeof g_overrides[0].name) return -1;
  if (value && std::strlen(value) >= sizeof g_overrides[0].value) return -1;
  OptionOverride *slot = nullptr;
  for (OptionOverride &o : g_overrides)
    if (o.used && std::strcmp(o.name, name) == 0) slot = &o;
  if (!value) {
    if (slot) slot->used = 0;
    return 0;
  }
  if (!slot)
    for (OptionOverride &o : g_overrides)
      if (!o.used) {
        slot = &o;
        break;
      }
  if (!slot) return -1;
  std::snprintf(slot->name, sizeof slot->name, "%s", name);
  std::snprintf(slot->value, sizeof slot->value, "%s", value);
  slot->used = 1;
  return 0;
}
