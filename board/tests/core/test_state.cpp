// Saved state, per-board state and buffers, window-open defaults.
#include "board_test.h"

TEST_F(BoardTest, StateSaveAndRestore) {
  init();
  ASSERT_TRUE(open());
  const GrState defaults = state();
  grCullMode(GR_CULL_NEGATIVE);
  grDepthBufferMode(GR_DEPTHBUFFER_WBUFFER);
  grDepthBufferFunction(GR_CMP_GEQUAL);
  grFogColorValue(0x00123456);
  grClipWindow(10, 20, 300, 200);
  grAlphaBlendFunction(GR_BLEND_SRC_ALPHA, GR_BLEND_ONE_MINUS_SRC_ALPHA, GR_BLEND_ONE, GR_BLEND_ZERO);
  const GrState changed = state();
  EXPECT_FALSE(same(defaults, changed));
  grGlideSetState(&defaults);
  EXPECT_TRUE(same(defaults, state()));
  grGlideSetState(&changed);
  EXPECT_TRUE(same(changed, state()));
  // Opening the window again starts from the defaults.
  grSstWinClose();
  ASSERT_TRUE(open());
  EXPECT_TRUE(same(defaults, state()));
}

TEST_F(BoardTest, EachBoardHasItsOwnStateAndBuffers) {
  zvbSetOption("ZVGL_BOARD_COUNT", "2");
  init();
  grSstSelect(0);
  ASSERT_TRUE(open());
  grSstSelect(1);
  ASSERT_TRUE(open(2, 1, GR_RESOLUTION_800x600));
  const GrState defaults1 = state();
  grCullMode(GR_CULL_POSITIVE);
  uint16_t pixel = 0xF800;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 5, 5, GR_LFB_SRC_FMT_565, 1, 1, 2, &pixel), FXTRUE);
  const GrState changed1 = state();

  grSstSelect(0);
  EXPECT_EQ(grSstScreenWidth(), 640u);
  GrState s0 = state();
  EXPECT_FALSE(same(s0, changed1));
  pixel = 0x07E0;
  ASSERT_EQ(grLfbWriteRegion(GR_BUFFER_BACKBUFFER, 5, 5, GR_LFB_SRC_FMT_565, 1, 1, 2, &pixel), FXTRUE);
  grCullMode(GR_CULL_NEGATIVE);

  grSstSelect(1);
  EXPECT_EQ(grSstScreenWidth(), 800u);
  EXPECT_TRUE(same(changed1, state()));
  uint16_t read = 0;
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 5, 5, 1, 1, 2, &read), FXTRUE);
  EXPECT_EQ(read, 0xF800);
  grGlideSetState(&defaults1);
  grSstSelect(0);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 5, 5, 1, 1, 2, &read), FXTRUE);
  EXPECT_EQ(read, 0x07E0);
  EXPECT_FALSE(same(s0, state())) << "board 0 kept its own cull mode";
}
