// zvgl-demo: renders the animated scene through zvgl2 on the board (by default the software
// board), writes every frame as a PNG file and prints the frame rate.
//
// It opens its context as any application does: a window (on Windows a real one; elsewhere a
// made-up handle, which is all the library needs there), wglChoosePixelFormat,
// wglSetPixelFormat, wglCreateContext, wglMakeCurrent; then glClear, the scene and
// wglSwapBuffers for each frame. The frames are written by the software board, which this
// program asks to do so through ZVGL_BOARD_CAPTURE before the library starts (unless the user
// set that variable already).
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "app_platform.h"
#include "gl_session.h"
#include "scene.h"

using namespace zvgl_tool;

namespace {

struct Options {
  int frames = 120;
  int first = 0;
  int width = 640;
  int height = 480;
  std::string output = "zvgl-demo-frames";
  bool capture = true;
  bool fog = true;
  bool window = false;
  int interval = 0;  // swap interval: 0 draws as fast as the board goes
};

void usage(FILE *out) {
  std::fprintf(out,
               "usage: zvgl-demo [options]\n"
               "  -n, --frames N     frames to render (default 120)\n"
               "      --first N      number of the first frame of the animation (default 0)\n"
               "  -o, --output DIR   folder of the PNG frames (default zvgl-demo-frames)\n"
               "  -s, --size WxH     board resolution (default 640x480)\n"
               "      --no-capture   do not write PNG frames\n"
               "      --no-fog       no haze\n"
               "      --interval N   swap interval in retraces (default 0: no waiting)\n"
               "      --window       show the frames in a window (ZVGL_BOARD_WINDOW=1)\n"
               "  -h, --help         this text\n"
               "The software board's own settings (ZVGL_BOARD_*) and the library's (KS_ENV_*)\n"
               "are read from the environment; ZVGL_BOARD_CAPTURE, when set, wins over --output.\n");
}

bool parse_int(const char *text, int lo, int hi, int &out) {
  char *end = nullptr;
  const long v = std::strtol(text, &end, 10);
  if (!text[0] || *end || v < lo || v > hi) return false;
  out = static_cast<int>(v);
  return true;
}

bool parse_size(const char *text, int &w, int &h) {
  char *end = nullptr;
  const long a = std::strtol(text, &end, 10);
  if (end == text || (*end != 'x' && *end != 'X')) return false;
  const char *second = end + 1;
  const long b = std::strtol(second, &end, 10);
  if (end == second || *end || a < 16 || b < 16 || a > 4096 || b > 4096) return false;
  w = static_cast<int>(a);
  h = static_cast<int>(b);
  return true;
}

// Reads the command line; returns 0 to go on, 1 for --help, 2 for an error (reported).
int parse(int argc, char **argv, Options &o) {
  for (int i = 1; i < argc; ++i) {
    const char *a = argv[i];
    const char *value = i + 1 < argc ? argv[i + 1] : nullptr;
    auto needs = [&](const char *what) {
      if (!value) std::fprintf(stderr, "zvgl-demo: %s needs %s\n", a, what);
      return value != nullptr;
    };
    if (!std::strcmp(a, "-h") || !std::strcmp(a, "--help")) return 1;
    if (!std::strcmp(a, "-n") || !std::strcmp(a, "--frames")) {
      if (!needs("a number")) return 2;
      if (!parse_int(value, 1, 1000000, o.frames)) {
        std::fprintf(stderr, "zvgl-demo: bad frame count %s\n", value);
        return 2;
      }
      ++i;
    } else if (!std::strcmp(a, "--first")) {
      if (!needs("a number")) return 2;
      if (!parse_int(value, 0, 100000000, o.first)) {
        std::fprintf(stderr, "zvgl-demo: bad first frame %s\n", value);
        return 2;
      }
      ++i;
    } else if (!std::strcmp(a, "-o") || !std::strcmp(a, "--output")) {
      if (!needs("a folder")) return 2;
      o.output = value;
      ++i;
    } else if (!std::strcmp(a, "-s") || !std::strcmp(a, "--size")) {
      if (!needs("WxH")) return 2;
      if (!parse_size(value, o.width, o.height)) {
        std::fprintf(stderr, "zvgl-demo: bad size %s (want e.g. 640x480)\n", value);
        return 2;
      }
      ++i;
    } else if (!std::strcmp(a, "--interval")) {
      if (!needs("a number")) return 2;
      if (!parse_int(value, 0, 255, o.interval)) {
        std::fprintf(stderr, "zvgl-demo: bad swap interval %s\n", value);
        return 2;
      }
      ++i;
    } else if (!std::strcmp(a, "--no-capture")) {
      o.capture = false;
    } else if (!std::strcmp(a, "--no-fog")) {
      o.fog = false;
    } else if (!std::strcmp(a, "--window")) {
      o.window = true;
    } else {
      std::fprintf(stderr, "zvgl-demo: unknown option %s\n", a);
      return 2;
    }
  }
  return 0;
}

// True when a capture pattern holds exactly one integer conversion, as the board requires
// (it writes nothing otherwise); only then may it be handed to printf here.
bool pattern_ok(const std::string &p) {
  int conversions = 0;
  for (size_t i = 0; i < p.size(); ++i) {
    if (p[i] != '%') continue;
    if (++i < p.size() && p[i] == '%') continue;
    while (i < p.size() && std::strchr("-+ #0", p[i])) ++i;
    while (i < p.size() && p[i] >= '0' && p[i] <= '9') ++i;
    if (i < p.size() && p[i] == '.')
      for (++i; i < p.size() && p[i] >= '0' && p[i] <= '9';) ++i;
    if (i >= p.size() || !std::strchr("diouxX", p[i])) return false;
    ++conversions;
  }
  return conversions == 1;
}

// Settings for the library and the board, made before the library starts. The user's own
// environment wins where it names the same thing. Returns the capture pattern in force (empty
// when frames are not written).
std::string prepare_settings(const Options &o) {
  char resolution[32];
  std::snprintf(resolution, sizeof resolution, "%dx%d", o.width, o.height);
  app_setenv("KS_ENV_RESOLUTION_DEFAULT", resolution, false);
  if (o.window) app_setenv("ZVGL_BOARD_WINDOW", "1", true);
  if (!o.capture) {
    if (app_env_set("ZVGL_BOARD_CAPTURE")) app_setenv("ZVGL_BOARD_CAPTURE", "", true);
    return std::string();
  }
  if (app_env_set("ZVGL_BOARD_CAPTURE")) {
    const char *user = std::getenv("ZVGL_BOARD_CAPTURE");
    return user ? user : "";
  }
  std::error_code ec;
  std::filesystem::create_directories(o.output, ec);
  if (ec) {
    std::fprintf(stderr, "zvgl-demo: cannot make the folder %s: %s\n", o.output.c_str(), ec.message().c_str());
    return std::string();
  }
  const std::string pattern = (std::filesystem::path(o.output) / "frame-%04d.png").generic_string();
  app_setenv("ZVGL_BOARD_CAPTURE", pattern.c_str(), true);
  return pattern;
}

// The board's resolution as the library chose it for the context's unit, so that the
// viewport fits even when the board could not give what was asked for.
void board_size(int &width, int &height) {
  auto unitGet = session_proc<int (APIENTRY *)(HGLRC, int *)>("wglUnitCurrentGetVELD");
  auto inq = session_proc<int (APIENTRY *)(int, int *, int *)>("KSI_vld_fbf_inq_resolution");
  int unit = 0;
  if (unitGet && unitGet(wglGetCurrentContext(), &unit) != 0) unit = 0;
  if (unit < 0) unit = 0;
  int w = 0, h = 0;
  if (inq && inq(unit, &w, &h) == 0 && w > 0 && h > 0) {
    width = w;
    height = h;
  }
}

}  // namespace

int main(int argc, char **argv) {
  Options o;
  switch (parse(argc, argv, o)) {
    case 1: usage(stdout); return 0;
    case 2: usage(stderr); return 2;
    default: break;
  }
  const std::string pattern = prepare_settings(o);
  if (o.capture && pattern.empty()) return 1;

  GlSession s;
  char error[256];
  if (!session_open(s, "zvgl-demo", o.width, o.height, error, sizeof error)) {
    std::fprintf(stderr, "zvgl-demo: %s\n", error);
    return 1;
  }
  if (auto interval = session_proc<PFNVLDSWAPINTERVALSETPROC>("vldSwapIntervalSet")) interval(o.interval);

  SceneConfig cfg;
  cfg.width = o.width;
  cfg.height = o.height;
  board_size(cfg.width, cfg.height);
  if (cfg.width != o.width || cfg.height != o.height)
    std::fprintf(stderr, "zvgl-demo: the board opened at %dx%d instead of %dx%d\n", cfg.width, cfg.height,
                 o.width, o.height);
  cfg.fog = o.fog;
  Scene scene;
  scene_build(scene, cfg);
  scene_init_gl(scene);

  std::printf("zvgl-demo: %s, %dx%d, %d frames of %d triangles\n", reinterpret_cast<const char *>(glGetString(GL_RENDERER)),
              cfg.width, cfg.height, o.frames, scene_triangles(scene));
  std::fflush(stdout);
  const auto start = std::chrono::steady_clock::now();
  int drawn = 0;
  for (; drawn < o.frames; ++drawn) {
    scene_draw(scene, o.first + drawn);
    wglSwapBuffers(s.dc);
    if (!app_window_pump(s.window)) {
      ++drawn;
      break;
    }
  }
  const bool shown = session_wait_swaps(10.0);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  session_close(s);

  const double seconds = elapsed.count();
  std::printf("zvgl-demo: %d frames in %.2f s: %.1f frames per second\n", drawn, seconds,
              seconds > 0 ? drawn / seconds : 0.0);
  if (!shown) std::fprintf(stderr, "zvgl-demo: the board did not show the last frames in time\n");
  if (!pattern.empty() && !pattern_ok(pattern)) {
    std::printf("zvgl-demo: ZVGL_BOARD_CAPTURE=%s lacks one integer conversion: no frames written\n",
                pattern.c_str());
  } else if (!pattern.empty()) {
    char firstName[1024], lastName[1024];
    std::snprintf(firstName, sizeof firstName, pattern.c_str(), 0);
    std::snprintf(lastName, sizeof lastName, pattern.c_str(), drawn - 1);
    std::printf("zvgl-demo: frames written as %s .. %s\n", firstName, lastName);
  }
  return shown ? 0 : 1;
}
