// The board with its pixel pipeline: counters, pipelined LFB writes, and the same pixels from
// the board thread as from synchronous execution.
#include "board_test.h"

#include <random>

namespace {

GrVertex vertex(float x, float y, float r, float g, float b, float a = 255.0f, float ooz = 30000.0f) {
  GrVertex v{};
  v.x = x;
  v.y = y;
  v.r = r;
  v.g = g;
  v.b = b;
  v.a = a;
  v.ooz = ooz;
  v.oow = 1.0f;
  return v;
}

}  // namespace

TEST_F(BoardTest, PerfCountersAre24BitsWide) {
  zvbSetOption("ZVGL_BOARD_FBRAM", "8");
  init();
  ASSERT_TRUE(open(2, 1, GR_RESOLUTION_1024x768));
  grSstResetPerfStats();
  for (int i = 0; i < 22; ++i) grBufferClear(0, 0, 0);
  GrSstPerfStats_t s;
  grSstPerfStats(&s);
  EXPECT_EQ(s.pixelsOut, (22u * 1024u * 768u) & 0xFFFFFFu) << "cleared pixels count, modulo 2^24";
  EXPECT_EQ(s.pixelsIn, 0u) << "clears do not enter the pipeline";

  // A triangle whose every pixel fails the depth test.
  grSstResetPerfStats();
  grDepthBufferMode(GR_DEPTHBUFFER_ZBUFFER);
  grDepthBufferFunction(GR_CMP_NEVER);
  const GrVertex a = vertex(10, 10, 255, 0, 0), b = vertex(200, 20, 255, 0, 0), c = vertex(50, 180, 255, 0, 0);
  grDrawTriangle(&a, &b, &c);
  grSstPerfStats(&s);
  EXPECT_GT(s.pixelsIn, 1000u);
  EXPECT_EQ(s.zFuncFail, s.pixelsIn);
  EXPECT_EQ(s.pixelsOut, 0u);
  grSstResetPerfStats();
  grSstPerfStats(&s);
  EXPECT_EQ(s.pixelsIn, 0u);
  EXPECT_EQ(s.zFuncFail, 0u);
}

TEST_F(BoardTest, PipelinedLfbWritesPassTheTestsAndTheClipWindow) {
  init();
  ASSERT_TRUE(open());
  grDepthBufferMode(GR_DEPTHBUFFER_ZBUFFER);
  grDepthBufferFunction(GR_CMP_LESS);
  grDepthMask(FXTRUE);
  grBufferClear(0, 0, 0x8000);
  grClipWindow(0, 0, 100, 100);
  grDitherMode(GR_DITHER_DISABLE);
  grSstResetPerfStats();
  GrLfbInfo_t info;
  std::memset(&info, 0, sizeof info);
  info.size = sizeof info;
  ASSERT_EQ(grLfbLock(GR_LFB_WRITE_ONLY, GR_BUFFER_BACKBUFFER, GR_LFBWRITEMODE_565_DEPTH, GR_ORIGIN_UPPER_LEFT,
                      FXTRUE, &info), FXTRUE);
  auto put = [&](int x, int y, uint32_t v) {
    std::memcpy(static_cast<uint8_t *>(info.lfbPtr) + static_cast<size_t>(y) * info.strideInBytes + 4 * x, &v, 4);
  };
  put(10, 10, 0x1000F800u);   // nearer than the cleared depth: drawn
  put(11, 10, 0x9000F800u);   // fails GR_CMP_LESS
  put(150, 10, 0x1000F800u);  // outside the clip window
  ASSERT_EQ(grLfbUnlock(GR_LFB_WRITE_ONLY, GR_BUFFER_BACKBUFFER), FXTRUE);
  uint16_t colour[2], depth[2];
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 10, 10, 2, 1, 4, colour), FXTRUE);
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_AUXBUFFER, 10, 10, 2, 1, 4, depth), FXTRUE);
  EXPECT_EQ(colour[0], 0xF800);
  EXPECT_EQ(colour[1], 0);
  EXPECT_EQ(depth[0], 0x1000);
  EXPECT_EQ(depth[1], 0x8000);
  uint16_t outside = 1;
  ASSERT_EQ(grLfbReadRegion(GR_BUFFER_BACKBUFFER, 150, 10, 1, 1, 2, &outside), FXTRUE);
  EXPECT_EQ(outside, 0);
  GrSstPerfStats_t s;
  grSstPerfStats(&s);
  EXPECT_EQ(s.pixelsIn, 2u);
  EXPECT_EQ(s.zFuncFail, 1u);
  EXPECT_EQ(s.pixelsOut, 1u);
}

namespace {

// The buffers and counters at the end of a run.
struct Result {
  std::vector<uint16_t> colour[3], aux;
  GrSstPerfStats_t stats;
  uint64_t swaps;
};

// Plays a long random stream of drawing, state, buffer and LFB commands on an open board.
Result play(uint32_t seed) {
  std::mt19937 rng(seed);
  auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<uint32_t>(n)); };
  auto coord = [&](float span) { return std::uniform_real_distribution<float>(-40.0f, span + 40.0f)(rng); };
  auto channel = [&] { return std::uniform_real_distribution<float>(0.0f, 255.0f)(rng); };
  auto random_vertex = [&] {
    GrVertex v = vertex(coord(640), coord(480), channel(), channel(), channel(), channel(),
                        std::uniform_real_distribution<float>(0.0f, 65535.0f)(rng));
    v.oow = std::uniform_real_distribution<float>(0.001f, 1.0f)(rng);
    return v;
  };
  GrState saved;
  grGlideGetState(&saved);
  for (int step = 0; step < 3000; ++step) {
    switch (pick(20)) {
      case 0: case 1: case 2: case 3: {
        const GrVertex a = random_vertex(), b = random_vertex(), c = random_vertex();
        grDrawTriangle(&a, &b, &c);
        break;
      }
      case 4: {
        GrVertex list[6];
        for (GrVertex &v : list) v = random_vertex();
        grDrawPolygonVertexList(3 + pick(4), list);
        break;
      }
      case 5: {
        const GrVertex a = random_vertex(), b = random_vertex();
        if (pick(2)) grDrawLine(&a, &b); else grAADrawLine(&a, &b);
        break;
      }
      case 6: {
        const GrVertex a = random_vertex(), b = random_vertex(), c = random_vertex();
        grAADrawTriangle(&a, &b, &c, pick(2), pick(2), pick(2));
        break;
      }
      case 7: {
        const GrVertex a = random_vertex();
        grDrawPoint(&a);
        break;
      }
      case 8: grColorCombine(pick(9), pick(6), pick(2), pick(3), pick(2)); break;
      case 9: grAlphaCombine(pick(9), pick(6), pick(3), pick(3), pick(2)); break;
      case 10: grAlphaBlendFunction(pick(8), pick(8), pick(2) ? GR_BLEND_ONE : GR_BLEND_ZERO, GR_BLEND_ZERO); break;
      case 11: grDepthBufferMode(pick(5)); grDepthBufferFunction(pick(8)); grDepthMask(pick(2)); break;
      case 12: grFogMode(pick(4) | (pick(4) << 8)); grFogColorValue(rng()); break;
      case 13: {
        GrFog_t table[GR_FOG_TABLE_SIZE];
        for (GrFog_t &f : table) f = static_cast<GrFog_t>(pick(256));
        grFogTable(table);
        break;
      }
      case 14: grClipWindow(pick(200), pick(200), 300 + pick(400), 200 + pick(300)); grCullMode(pick(3)); break;
      case 15: grDitherMode(pick(3)); grConstantColorValue(rng()); grChromakeyMode(pick(2)); grChromakeyValue(rng()); break;
      case 16: grBufferClear(rng(), static_cast<GrAlpha_t>(pick(256)), static_cast<FxU16>(pick(65536))); break;
      case 17: grBufferSwap(0); grRenderBuffer(pick(4) ? GR_BUFFER_BACKBUFFER : GR_BUFFER_FRONTBUFFER); break;
      case 18: {
        uint16_t pixels[8 * 8];
        for (uint16_t &p : pixels) p = static_cast<uint16_t>(rng());
        grLfbWriteRegion(pick(2), pick(640), pick(480), GR_LFB_SRC_FMT_565, 8, 8, 16, pixels);
        break;
      }
      case 19:
        if (pick(2)) grGlideGetState(&saved); else grGlideSetState(&saved);
        grAlphaTestFunction(pick(8));
        grAlphaTestReferenceValue(static_cast<GrAlpha_t>(pick(256)));
        break;
    }
  }
  Result r;
  grSstPerfStats(&r.stats);
  ZvbBuffers b;
  EXPECT_EQ(zvbGetBuffers(0, &b), 0);
  const size_t n = static_cast<size_t>(b.width) * static_cast<size_t>(b.height);
  for (int i = 0; i < b.colourBuffers; ++i) r.colour[i].assign(b.colour[i], b.colour[i] + n);
  if (b.aux) r.aux.assign(b.aux, b.aux + n);
  r.swaps = b.swaps;
  return r;
}

}  // namespace

TEST_F(BoardTest, ThreadedAndSynchronousRunsGiveTheSamePixels) {
  for (uint32_t seed : {1u, 77u}) {
    Result runs[2];
    for (int sync = 0; sync < 2; ++sync) {
      zvbReset();
      zvbSetOption("ZVGL_BOARD_SYNC", sync ? "1" : "0");
      init();
      ASSERT_TRUE(open(3, 0, GR_RESOLUTION_640x480)) << "triple buffered";
      runs[sync] = play(seed);
      grGlideShutdown();
    }
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(runs[0].colour[i] == runs[1].colour[i]) << "seed " << seed << " buffer " << i;
    EXPECT_EQ(runs[0].swaps, runs[1].swaps);
    EXPECT_EQ(std::memcmp(&runs[0].stats, &runs[1].stats, sizeof runs[0].stats), 0);
    EXPECT_GT(runs[0].stats.pixelsOut, 100000u) << "the stream really drew";
  }
  // The same with a depth buffer.
  Result runs[2];
  for (int sync = 0; sync < 2; ++sync) {
    zvbReset();
    zvbSetOption("ZVGL_BOARD_SYNC", sync ? "1" : "0");
    init();
    ASSERT_TRUE(open(2, 1));
    runs[sync] = play(5);
    grGlideShutdown();
  }
  EXPECT_TRUE(runs[0].colour[0] == runs[1].colour[0] && runs[0].colour[1] == runs[1].colour[1]);
  EXPECT_TRUE(runs[0].aux == runs[1].aux);
}
