// zvgl-info: what zvgl2 finds and offers, like glxinfo: the boards (units) with the library's
// configuration dump, each board's mode, the pixel formats, and the GL strings and extensions
// of a context made current on the default board.
#include <cstdio>
#include <cstring>

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "app_platform.h"
#include "gl_session.h"

using namespace zvgl_tool;

namespace {

typedef int (APIENTRY *UnitCountProc)(int *count);
typedef int (APIENTRY *UnitDefaultGetProc)(int *unit);
typedef int (APIENTRY *ResolutionProc)(int unit, int *width, int *height);
typedef int (APIENTRY *RefreshProc)(int unit, int *hz);

const char *text(GLenum name) {
  const GLubyte *s = glGetString(name);
  return s ? reinterpret_cast<const char *>(s) : "(null)";
}

// The extension string, one name a line.
void print_extensions() {
  const char *all = text(GL_EXTENSIONS);
  std::printf("GL_EXTENSIONS:\n");
  const char *p = all;
  int count = 0;
  while (*p) {
    while (*p == ' ') ++p;
    const char *end = p;
    while (*end && *end != ' ') ++end;
    if (end > p) {
      std::printf("    %.*s\n", static_cast<int>(end - p), p);
      ++count;
    }
    p = end;
  }
  if (!count) std::printf("    (none)\n");
}

// The library's pixel formats as wglDescribePixelFormat gives them.
void print_pixel_formats(HDC dc) {
  PIXELFORMATDESCRIPTOR pfd;
  const int n = wglDescribePixelFormat(dc, 1, 0, nullptr);
  std::printf("pixel formats: %d\n", n);
  for (int i = 1; i <= n; ++i) {
    std::memset(&pfd, 0, sizeof pfd);
    if (!wglDescribePixelFormat(dc, i, sizeof pfd, &pfd)) continue;
    std::printf("    %d: flags 0x%04x, colour %d (r%d g%d b%d), alpha %d, depth %d, stencil %d%s\n", i,
                static_cast<unsigned>(pfd.dwFlags), pfd.cColorBits, pfd.cRedBits, pfd.cGreenBits,
                pfd.cBlueBits, pfd.cAlphaBits, pfd.cDepthBits, pfd.cStencilBits,
                (pfd.dwFlags & PFD_DOUBLEBUFFER) ? ", double-buffered" : "");
  }
}

}  // namespace

int main(int argc, char **argv) {
  for (int i = 1; i < argc; ++i) {
    const bool help = !std::strcmp(argv[i], "-h") || !std::strcmp(argv[i], "--help");
    std::fprintf(help ? stdout : stderr,
                 "usage: zvgl-info\nPrints the boards, the library's configuration, the pixel formats and\n"
                 "the GL strings of zvgl2. The library's settings (KS_ENV_*) and the software\n"
                 "board's (ZVGL_BOARD_*) are read from the environment.\n");
    return help ? 0 : 2;
  }
  // The configuration dump is printed by the library's start-up, which the unit count runs.
  app_setenv("KS_ENV_DUMP_CONFIG", "1", false);
  std::fflush(stdout);

  auto unitCount = session_proc<UnitCountProc>("wglUnitCountGetVELD");
  int count = 0;
  if (!unitCount) {
    std::printf("wglGetProcAddress does not know wglUnitCountGetVELD\n");
  } else if (unitCount(&count) != 0) {
    std::printf("boards: the library found none\n");
    count = 0;
  }
  std::fflush(stdout);
  std::printf("boards: %d\n", count);
  int defaultUnit = 0;
  if (auto get = session_proc<UnitDefaultGetProc>("wglUnitDefaultGetVELD")) {
    if (get(&defaultUnit) == 0) std::printf("default board: %d\n", defaultUnit);
  }
  auto resolution = session_proc<ResolutionProc>("KSI_vld_fbf_inq_resolution");
  auto refresh = session_proc<RefreshProc>("KSI_vld_fbf_inq_refresh");
  for (int u = 0; u < count; ++u) {
    int w = -1, h = -1, hz = -1;
    if (resolution) resolution(u, &w, &h);
    if (refresh) refresh(u, &hz);
    std::printf("    board %d: %dx%d at %d Hz\n", u, w, h, hz);
  }

  GlSession s;
  char error[256];
  if (!session_open(s, "zvgl-info", 640, 480, error, sizeof error)) {
    std::printf("no context: %s\n", error);
    return 1;
  }
  print_pixel_formats(s.dc);
  std::printf("pixel format of the window: %d\n", s.pixelFormat);
  std::printf("GL_VENDOR:   %s\n", text(GL_VENDOR));
  std::printf("GL_RENDERER: %s\n", text(GL_RENDERER));
  std::printf("GL_VERSION:  %s\n", text(GL_VERSION));
  print_extensions();
  session_close(s);
  return 0;
}
