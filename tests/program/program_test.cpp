// The first whole program: an application that opens its context through the wgl names
// (choose and set a pixel format, create, make current), draws the demo scene through the
// shared library onto the software board and swaps, with the frames captured by the board as
// PNG files. The frames must equal the golden pictures exactly: the board is deterministic,
// and the same program built for Windows, run under Wine, must give the same bits. On Windows
// the window is real and the board also draws every shown frame into it through GDI; the test
// reads the window back to see that the picture got there.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "app_platform.h"
#include "gl_session.h"
#include "image_check.h"
#include "png_image.h"
#include "scene.h"

using namespace zvgl_tool;
using namespace zvgl_test;

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;
// The animation frames drawn, one swap each: the magenta sphere leaving through the right
// side of the screen; the scene in mid-run; the white sphere cut open by the near plane.
constexpr int kFrames[] = {18, 60, 110};
constexpr int kFrameCount = sizeof kFrames / sizeof kFrames[0];

// Each run writes into its own folder, named after the test filter: ctest runs every test case
// as a program of its own, in parallel, and each of those runs the whole program once.
std::string out_dir() {
  std::string name = ::testing::GTEST_FLAG(filter);
  for (char &c : name)
    if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-')) c = '_';
  if (name.empty() || name == "_") name = "all";
  return std::string(ZVGL_PROGRAM_OUT) + "/" + name;
}
std::string golden_path(int frame) {
  char name[64];
  std::snprintf(name, sizeof name, "/tests/program/golden/scene-%03d.png", frame);
  return std::string(ZVGL_SOURCE_DIR) + name;
}
std::string capture_path(int index) {
  char name[64];
  std::snprintf(name, sizeof name, "/frame-%d.png", index);
  return out_dir() + name;
}

// What one run of the program saw; filled once for the whole suite.
struct Run {
  bool opened = false;
  bool noWindow = false;  // Windows: no display to open a window on
  std::string openError;
  int pixelFormat = 0;
  bool currentContextIsOurs = false;
  bool currentDcIsOurs = false;
  std::string renderer;
  bool swapsShown = false;
  RgbImage frames[kFrameCount];
  std::string frameErrors[kFrameCount];
  // Windows: the window's client area after the last swap, and the picture expected there.
  bool windowRead = false;
  bool windowMatched = false;
  int windowWidth = 0, windowHeight = 0;
  std::vector<uint32_t> window;
  std::vector<uint32_t> windowExpected;
};

Run g_run;
Scene g_scene;

#if defined(_WIN32)
// The live window shows the displayed buffer through the board's gamma table (1.3 for the
// Voodoo2 default): what the window should hold for a captured frame.
std::vector<uint32_t> through_gamma(const RgbImage &frame, double gamma) {
  uint8_t table[256];
  for (int i = 0; i < 256; ++i)
    table[i] = static_cast<uint8_t>(std::floor(std::pow(i / 255.0, 1.0 / gamma) * 255.0 + 0.5));
  std::vector<uint32_t> out(static_cast<size_t>(frame.width) * frame.height);
  for (size_t i = 0; i < out.size(); ++i)
    out[i] = static_cast<uint32_t>(table[frame.rgb[i * 3]]) << 16 | static_cast<uint32_t>(table[frame.rgb[i * 3 + 1]]) << 8 |
             table[frame.rgb[i * 3 + 2]];
  return out;
}

// Pixels of the window that differ from the expected picture by more than one step in a
// channel (the gamma table may round one step differently in another runtime).
size_t window_mismatches(const std::vector<uint32_t> &got, const std::vector<uint32_t> &want) {
  if (got.size() != want.size()) return want.size() + 1;
  size_t bad = 0;
  for (size_t i = 0; i < got.size(); ++i)
    for (int s = 0; s < 24; s += 8) {
      const int d = static_cast<int>((got[i] >> s) & 255) - static_cast<int>((want[i] >> s) & 255);
      if (d > 1 || d < -1) {
        ++bad;
        break;
      }
    }
  return bad;
}

// Polls the window until it shows the last frame (the board draws it on its own thread after
// the swap is shown) or five seconds pass.
void read_window(AppWindow *window) {
  RgbImage last;
  const auto start = std::chrono::steady_clock::now();
  for (;;) {
    app_window_pump(window);
    std::string error;
    if (last.rgb.empty() && !png_load(capture_path(kFrameCount - 1), last, error)) last = RgbImage();
    if (!last.rgb.empty()) {
      g_run.windowExpected = through_gamma(last, 1.3);
      g_run.windowRead = app_window_read(window, g_run.window, g_run.windowWidth, g_run.windowHeight);
      if (g_run.windowRead && window_mismatches(g_run.window, g_run.windowExpected) == 0) {
        g_run.windowMatched = true;
        return;
      }
    }
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    if (waited.count() > 5.0) return;
  }
}
#endif

class WholeProgram : public ::testing::Test {
 protected:
  // Runs the program once: settings, context, frames, swaps, close; then reads the captures.
  static void SetUpTestSuite() {
    std::error_code ec;
    std::filesystem::remove_all(out_dir(), ec);
    std::filesystem::create_directories(out_dir(), ec);
    app_setenv("ZVGL_BOARD_CAPTURE", (out_dir() + "/frame-%d.png").c_str(), true);
    app_setenv("KS_ENV_RESOLUTION_DEFAULT", "640x480", true);
#if defined(_WIN32)
    app_setenv("ZVGL_BOARD_WINDOW", "1", true);
#endif

    GlSession s;
    char error[256] = "";
    g_run.opened = session_open(s, "zvgl program test", kWidth, kHeight, error, sizeof error);
    if (!g_run.opened) {
      g_run.openError = error;
      g_run.noWindow = s.noWindow;
      return;
    }
    g_run.pixelFormat = s.pixelFormat;
    g_run.currentContextIsOurs = wglGetCurrentContext() == s.rc;
    g_run.currentDcIsOurs = wglGetCurrentDC() == s.dc;
    const GLubyte *renderer = glGetString(GL_RENDERER);
    g_run.renderer = renderer ? reinterpret_cast<const char *>(renderer) : "";
    if (auto interval = session_proc<PFNVLDSWAPINTERVALSETPROC>("vldSwapIntervalSet")) interval(0);

    SceneConfig cfg;
    cfg.width = kWidth;
    cfg.height = kHeight;
    scene_build(g_scene, cfg);
    scene_init_gl(g_scene);
    for (int frame : kFrames) {
      scene_draw(g_scene, frame);
      wglSwapBuffers(s.dc);
      app_window_pump(s.window);
    }
    g_run.swapsShown = session_wait_swaps(20.0);
#if defined(_WIN32)
    read_window(s.window);
#endif
    session_close(s);

    for (int i = 0; i < kFrameCount; ++i)
      if (!png_load(capture_path(i), g_run.frames[i], g_run.frameErrors[i])) g_run.frames[i] = RgbImage();
  }

  void SetUp() override {
    // Under Wine a window needs an X display; scripts/test provides one (Xvfb). A run without
    // one has nothing to test here, which is not a fault of the library.
    if (g_run.noWindow) GTEST_SKIP() << "no window could be opened (" << g_run.openError << "); under Wine this needs an X display";
    ASSERT_TRUE(g_run.opened) << "the program could not open its context: " << g_run.openError;
  }

  static const RgbImage &frame(int index) { return g_run.frames[index]; }
};

TEST_F(WholeProgram, OpensItsContextThroughTheWglNames) {
  // A request for 16 depth bits chooses the first format, which has them.
  EXPECT_EQ(g_run.pixelFormat, 1);
  EXPECT_TRUE(g_run.currentContextIsOurs);
  EXPECT_TRUE(g_run.currentDcIsOurs);
  // A context bound to a board names the board, not the placeholder of a missing one.
  EXPECT_FALSE(g_run.renderer.empty());
  EXPECT_EQ(g_run.renderer.find("No Glide Context"), std::string::npos) << g_run.renderer;
  EXPECT_TRUE(g_run.swapsShown) << "the board did not show every swap in time";
}

TEST_F(WholeProgram, CapturedFramesEqualTheGoldenFrames) {
  for (int i = 0; i < kFrameCount; ++i) {
    SCOPED_TRACE(kFrames[i]);
    ASSERT_FALSE(frame(i).rgb.empty()) << "frame " << i << " was not captured: " << g_run.frameErrors[i];
    char name[32];
    std::snprintf(name, sizeof name, "scene-%03d", kFrames[i]);
    std::string message;
    EXPECT_TRUE(check_golden(frame(i), golden_path(kFrames[i]), out_dir(), name, message)) << message;
  }
}

// Facts about the pictures that hold whatever the golden files say: they catch a wrong golden
// as much as a wrong picture.
TEST_F(WholeProgram, FramesShowTheSceneWhereItIs) {
  for (int i = 0; i < kFrameCount; ++i) ASSERT_FALSE(frame(i).rgb.empty()) << g_run.frameErrors[i];
  for (int i = 0; i < kFrameCount; ++i) {
    SCOPED_TRACE(kFrames[i]);
    const RgbImage &img = frame(i);
    ASSERT_EQ(img.width, kWidth);
    ASSERT_EQ(img.height, kHeight);
    // Many colours: lit, smooth-shaded, fogged.
    std::vector<bool> seen(1 << 16, false);
    int distinct = 0;
    for (int y = 0; y < img.height; ++y)
      for (int x = 0; x < img.width; ++x) {
        const uint32_t v = img.at(x, y);
        const uint32_t key = (v >> 8 & 0xF800) | (v >> 5 & 0x07E0) | (v >> 3 & 0x001F);
        if (!seen[key]) {
          seen[key] = true;
          ++distinct;
        }
      }
    EXPECT_GT(distinct, 200);
    // Sky at the top, in the clear colour (16 bits per pixel, dithered: a few steps off).
    const uint32_t sky = img.at(img.width / 2, 4);
    EXPECT_NEAR((sky >> 16) & 255, 255 * kSceneSky[0], 12);
    EXPECT_NEAR((sky >> 8) & 255, 255 * kSceneSky[1], 12);
    EXPECT_NEAR(sky & 255, 255 * kSceneSky[2], 12);
    // Land at the bottom: green above red and blue.
    const uint32_t land = img.at(img.width / 2, img.height - 4);
    EXPECT_GT((land >> 8) & 255, (land >> 16) & 255);
    EXPECT_GT((land >> 8) & 255, land & 255);
    // The red sphere circling the torus is red where its centre lands, and lit.
    const SceneFrame f = scene_frame(kFrames[i]);
    float x, y;
    if (scene_project(g_scene, kFrames[i], f.orbit[0], x, y) && x >= 2 && y >= 2 && x < kWidth - 2 && y < kHeight - 2) {
      const uint32_t red = img.at(static_cast<int>(x), static_cast<int>(y));
      EXPECT_GT((red >> 16) & 255, 2 * ((red >> 8) & 255)) << std::hex << red;
      EXPECT_GT((red >> 16) & 255, 2 * (red & 255)) << std::hex << red;
    }
  }
  // Frame 110: the white sphere passes the viewer on the left, cut open by the near plane: its
  // grey inside and outside fill the left quarter of the screen (sky and land are coloured).
  const RgbImage &cut = frame(2);
  int grey = 0;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth / 4; ++x) {
      const uint32_t v = cut.at(x, y);
      const int r = (v >> 16) & 255, g = (v >> 8) & 255, b = v & 255;
      const int hi = r > g ? (r > b ? r : b) : (g > b ? g : b), lo = r < g ? (r < b ? r : b) : (g < b ? g : b);
      if (hi - lo < 40) ++grey;
    }
  EXPECT_GT(grey, kWidth / 4 * kHeight * 3 / 4) << "expected the near sphere over the left quarter";
  // Frame 18: the magenta sphere is cut by the right edge of the screen.
  const RgbImage &side = frame(0);
  int magenta = 0;
  for (int y = 0; y < kHeight; ++y) {
    const uint32_t v = side.at(kWidth - 1, y);
    if (((v >> 16) & 255) > ((v >> 8) & 255) + 40 && (v & 255) > ((v >> 8) & 255) + 40) ++magenta;
  }
  EXPECT_GT(magenta, 10) << "expected the magenta sphere on the right edge";
}

#if defined(_WIN32)
TEST_F(WholeProgram, TheWindowShowsTheLastFrame) {
  ASSERT_TRUE(g_run.windowRead) << "the window's client area could not be read back";
  ASSERT_EQ(g_run.windowWidth, kWidth);
  ASSERT_EQ(g_run.windowHeight, kHeight);
  ASSERT_FALSE(g_run.windowExpected.empty());
  EXPECT_TRUE(g_run.windowMatched) << window_mismatches(g_run.window, g_run.windowExpected)
                                   << " pixels of the window differ from the last frame through the gamma table";
}
#endif

}  // namespace
