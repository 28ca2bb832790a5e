// board_test.h: the fixture of the board's own tests: every test starts from a reset board
// library (no overrides, faults or trace) and collects the messages of the error callback.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <glide2/glide.h>
#include <zvgl/board_tool.h>

#include "support/thread/thread.h"

inline std::vector<std::string> &error_messages() {
  static std::vector<std::string> messages;
  return messages;
}

inline void collect_error(const char *text, FxBool fatal) {
  error_messages().push_back(std::string(fatal ? "fatal: " : "warning: ") + (text ? text : ""));
}

class BoardTest : public ::testing::Test {
 protected:
  void SetUp() override {
    zvbReset();
    error_messages().clear();
  }
  void TearDown() override { zvbReset(); }

  // grGlideInit with the error callback collecting messages.
  static void init() {
    grGlideInit();
    grErrorSetCallback(collect_error);
  }

  // Opens the selected board: 640 x 480, ARGB, upper-left origin.
  static bool open(int colourBuffers = 2, int auxBuffers = 1, int res = GR_RESOLUTION_640x480,
                   int refresh = GR_REFRESH_60Hz) {
    return grSstWinOpen(0, res, refresh, GR_COLORFORMAT_ARGB, GR_ORIGIN_UPPER_LEFT, colourBuffers,
                        auxBuffers) == FXTRUE;
  }

  static GrState state() {
    GrState s;
    grGlideGetState(&s);
    return s;
  }

  static bool same(const GrState &a, const GrState &b) { return std::memcmp(&a, &b, sizeof a) == 0; }
};

// Polls `done` until it holds or `seconds` pass; true if it held.
template <typename F>
bool eventually(F done, double seconds = 3.0) {
  const uint64_t end = zvgl::clock_ns() + static_cast<uint64_t>(seconds * 1e9);
  while (zvgl::clock_ns() < end) {
    if (done()) return true;
    zvgl::sleep_ns(2000000);
  }
  return done();
}

inline void sleep_ms(int ms) { zvgl::sleep_ns(static_cast<uint64_t>(ms) * 1000000u); }
