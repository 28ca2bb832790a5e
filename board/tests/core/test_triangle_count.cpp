// grDrawTriangle's counting path: which board it counts on, when it stays silent and when it
// refuses, with the trace off (the path the library's face loops take).
#include "board_test.h"

namespace {

ZvbPrimitiveCounts counts(int board) {
  ZvbPrimitiveCounts c{};
  EXPECT_EQ(zvbGetPrimitiveCounts(board, &c), 0);
  return c;
}

}  // namespace

TEST_F(BoardTest, TrianglesCountOnTheSelectedOpenBoardOnly) {
  zvbSetOption("ZVGL_BOARD_COUNT_ONLY", "1");
  zvbSetOption("ZVGL_BOARD_COUNT", "2");
  init();
  ASSERT_TRUE(open());
  GrVertex v[3] = {};
  grSstSelect(1);
  grDrawTriangle(&v[0], &v[1], &v[2]);  // board 1 has no window yet: nothing, anywhere
  grDrawTriangle(nullptr, &v[1], &v[2]);  // silent too: no open board comes first
  EXPECT_TRUE(error_messages().empty());
  ASSERT_TRUE(open());
  grDrawTriangle(&v[0], &v[1], &v[2]);
  grDrawTriangle(&v[2], &v[1], &v[0]);
  EXPECT_EQ(counts(1).triangles, 2u);
  EXPECT_EQ(counts(1).vertices, 6u);
  EXPECT_EQ(counts(0).triangles, 0u) << "board 0 was not selected";

  grSstSelect(2);  // no such board: refused, board 1 stays selected
  EXPECT_EQ(error_messages().size(), 1u);
  grDrawTriangle(&v[0], &v[1], &v[2]);
  EXPECT_EQ(counts(1).triangles, 3u);

  grSstSelect(0);
  grDrawTriangle(&v[0], &v[1], &v[2]);
  EXPECT_EQ(counts(0).triangles, 1u);
  EXPECT_EQ(counts(1).triangles, 3u);
  grSstWinClose();
  grDrawTriangle(nullptr, &v[1], &v[2]);
  EXPECT_EQ(error_messages().size(), 1u) << "a closed board draws and refuses nothing";
  EXPECT_EQ(counts(1).triangles, 3u);
}

TEST_F(BoardTest, ATriangleWithAnyNullVertexIsRefusedAndNotCounted) {
  zvbSetOption("ZVGL_BOARD_COUNT_ONLY", "1");
  init();
  ASSERT_TRUE(open());
  GrVertex v[3] = {};
  grDrawTriangle(nullptr, &v[1], &v[2]);
  grDrawTriangle(&v[0], nullptr, &v[2]);
  grDrawTriangle(&v[0], &v[1], nullptr);
  EXPECT_EQ(counts(0).triangles, 0u);
  EXPECT_EQ(counts(0).vertices, 0u);
  ASSERT_EQ(error_messages().size(), 3u);
  for (const std::string &m : error_messages()) EXPECT_EQ(m, "fatal: grDrawTriangle: null vertex");
  grDrawTriangle(&v[0], &v[1], &v[2]);
  EXPECT_EQ(counts(0).triangles, 1u);
}

TEST_F(BoardTest, NoTriangleIsCountedAfterShutdown) {
  zvbSetOption("ZVGL_BOARD_COUNT_ONLY", "1");
  init();
  ASSERT_TRUE(open());
  grGlideShutdown();
  GrVertex v{};
  grDrawTriangle(&v, &v, &v);
  grDrawTriangle(nullptr, nullptr, nullptr);
  EXPECT_TRUE(error_messages().empty());
}
