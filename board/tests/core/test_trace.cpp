// The trace of Glide calls, in memory and in the trace file.
#include "board_test.h"

#include <cstdio>
#include <fstream>

namespace {

std::vector<std::string> trace_lines() {
  std::vector<std::string> lines;
  for (int i = 0; i < zvbTraceCount(); ++i) lines.push_back(zvbTraceLine(i));
  return lines;
}

}  // namespace

TEST_F(BoardTest, TraceRecordsEveryCallWithItsArguments) {
  zvbTraceEnable(1);
  init();
  ASSERT_TRUE(open());
  grCullMode(GR_CULL_NEGATIVE);
  grConstantColorValue(0x80FF0010u);
  GrVertex a{}, b{}, c{};
  a.x = 1.5f;
  b.x = 10.0f;
  b.y = -2.25f;
  c.oow = 1.0f;
  c.tmuvtx[1].tow = 7.0f;
  grDrawTriangle(&a, &b, &c);
  grDrawTriangle(&a, nullptr, &c);  // refused, still traced
  grBufferSwap(1);
  grSstWinClose();
  const std::vector<std::string> expect = {
      "grGlideInit",
      "grErrorSetCallback function",
      "grSstWinOpen 0x0 7 0 0 0 2 1",
      "grCullMode 1",
      "grConstantColorValue 0x80ff0010",
      "grDrawTriangle {1.5 0 0 0 0 0 0 0 0 0 0 0 0 0 0} {10 -2.25 0 0 0 0 0 0 0 0 0 0 0 0 0} "
      "{0 0 0 0 0 0 0 0 1 0 0 0 0 7 0}",
      "grDrawTriangle {1.5 0 0 0 0 0 0 0 0 0 0 0 0 0 0} null {0 0 0 0 0 0 0 0 1 0 0 0 0 7 0}",
      "grBufferSwap 1",
      "grSstWinClose",
  };
  EXPECT_EQ(trace_lines(), expect);
  EXPECT_EQ(zvbTraceFind("grDrawTriangle", 0), 5);
  EXPECT_EQ(zvbTraceFind("grDrawTriangle", 6), 6);
  EXPECT_EQ(zvbTraceFind("grSstIdle", 0), -1);
  EXPECT_EQ(zvbTraceLine(expect.size()), nullptr);
  zvbTraceClear();
  EXPECT_EQ(zvbTraceCount(), 0);
  grSstIdle();
  EXPECT_EQ(trace_lines(), std::vector<std::string>{"grSstIdle"});
  zvbTraceEnable(0);
  grSstIdle();
  EXPECT_EQ(zvbTraceCount(), 1) << "recording stopped";
}

TEST_F(BoardTest, PolygonAndTableCallsTraceTheirContents) {
  zvbTraceEnable(1);
  init();
  ASSERT_TRUE(open());
  zvbTraceClear();
  GrVertex v[4] = {};
  for (int i = 0; i < 4; ++i) v[i].x = static_cast<float>(i);
  grDrawPolygonVertexList(4, v);
  GrFog_t table[GR_FOG_TABLE_SIZE];
  for (int i = 0; i < GR_FOG_TABLE_SIZE; ++i) table[i] = static_cast<GrFog_t>(i * 4);
  grFogTable(table);
  grLfbReadRegion(GR_BUFFER_FRONTBUFFER, 1, 2, 3, 4, static_cast<FxU32>(-8), nullptr);
  ASSERT_EQ(zvbTraceCount(), 3);
  const std::string poly = zvbTraceLine(0);
  EXPECT_EQ(poly.rfind("grDrawPolygonVertexList 4 {0 ", 0), 0u);
  EXPECT_NE(poly.find(" {3 0 0 0 0 0 0 0 0 0 0 0 0 0 0}"), std::string::npos);
  const std::string fog = zvbTraceLine(1);
  EXPECT_EQ(fog.rfind("grFogTable 0 4 8 12 ", 0), 0u);
  EXPECT_EQ(fog.substr(fog.size() - 4), " 252");
  EXPECT_STREQ(zvbTraceLine(2), "grLfbReadRegion 0 1 2 3 4 -8 null") << "strides are signed";
}

TEST_F(BoardTest, TraceFile) {
  const std::string path = testing::TempDir() + "zvgl-board-trace.txt";
  std::remove(path.c_str());
  zvbSetOption("ZVGL_BOARD_TRACE", path.c_str());
  zvbTraceEnable(1);
  init();
  ASSERT_TRUE(open());
  grDepthBiasLevel(-3);
  grHints(GR_HINT_STWHINT, GR_STWHINT_ST_DIFF_TMU1);
  grGlideShutdown();
  std::ifstream in(path);
  std::vector<std::string> fileLines;
  for (std::string line; std::getline(in, line);) fileLines.push_back(line);
  EXPECT_EQ(fileLines, trace_lines());
  ASSERT_GE(fileLines.size(), 5u);
  EXPECT_EQ(fileLines[3], "grDepthBiasLevel -3");
  EXPECT_EQ(fileLines[4], "grHints 0 0x10");
  std::remove(path.c_str());
}
