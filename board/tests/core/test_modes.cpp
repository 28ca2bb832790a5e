// Count-only mode, capture of swapped frames.
#include "board_test.h"

#include <cstdio>

TEST_F(BoardTest, CountOnlyModeCountsWithoutDrawing) {
  zvbSetOption("ZVGL_BOARD_COUNT_ONLY", "1");
  zvbTraceEnable(1);
  init();
  ASSERT_TRUE(open());
  GrVertex v[5] = {};
  for (int i = 0; i < 5; ++i) {
    v[i].x = 100.0f + 50.0f * static_cast<float>(i % 2);
    v[i].y = 100.0f + 40.0f * static_cast<float>(i);
    v[i].r = v[i].g = v[i].b = 255.0f;
  }
  grDrawTriangle(&v[0], &v[1], &v[2]);
  grAADrawTriangle(&v[0], &v[1], &v[2], 1, 1, 1);
  grDrawPolygonVertexList(5, v);
  grDrawPlanarPolygonVertexList(2, v);  // too short: nothing
  grDrawLine(&v[0], &v[1]);
  grAADrawLine(&v[0], &v[1]);
  grDrawPoint(&v[2]);
  ZvbPrimitiveCounts c;
  ASSERT_EQ(zvbGetPrimitiveCounts(0, &c), 0);
  EXPECT_EQ(c.triangles, 2u + 3u);
  EXPECT_EQ(c.polygons, 1u);
  EXPECT_EQ(c.lines, 2u);
  EXPECT_EQ(c.points, 1u);
  EXPECT_EQ(c.vertices, 3u + 3u + 5u + 2u + 2u + 1u);
  EXPECT_NE(zvbTraceFind("grDrawPolygonVertexList 5", 0), -1) << "calls are still traced";
  GrSstPerfStats_t stats;
  grSstPerfStats(&stats);
  EXPECT_EQ(stats.pixelsIn, 0u) << "nothing reached the pixel pipeline";
}

TEST_F(BoardTest, CaptureWritesEachShownFrame) {
  const std::string pattern = testing::TempDir() + "zvgl-capture-%03d.png";
  char first[512], second[512], third[512];
  std::snprintf(first, sizeof first, pattern.c_str(), 0);
  std::snprintf(second, sizeof second, pattern.c_str(), 1);
  std::snprintf(third, sizeof third, pattern.c_str(), 2);
  std::remove(first);
  std::remove(second);
  std::remove(third);
  zvbSetOption("ZVGL_BOARD_CAPTURE", pattern.c_str());
  init();
  ASSERT_TRUE(open());
  grBufferSwap(0);
  grBufferSwap(0);
  grSstWinClose();
  auto size_of = [](const char *path) {
    FILE *f = std::fopen(path, "rb");
    if (!f) return -1L;
    unsigned char sig[8] = {};
    const size_t n = std::fread(sig, 1, 8, f);
    std::fseek(f, 0, SEEK_END);
    const long size = std::ftell(f);
    std::fclose(f);
    return n == 8 && sig[0] == 0x89 && sig[1] == 'P' ? size : -2L;
  };
  EXPECT_GT(size_of(first), 0);
  EXPECT_GT(size_of(second), 0);
  EXPECT_EQ(size_of(third), -1) << "two swaps, two frames";
  std::remove(first);
  std::remove(second);
  // A pattern that does not take exactly one integer is not used.
  zvbSetOption("ZVGL_BOARD_CAPTURE", (testing::TempDir() + "zvgl-capture-%s.png").c_str());
  ASSERT_TRUE(open());
  grBufferSwap(0);
  grSstWinClose();
  EXPECT_EQ(size_of((testing::TempDir() + "zvgl-capture-%s.png").c_str()), -1);
}
