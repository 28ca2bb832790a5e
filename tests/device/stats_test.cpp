// Statistics: 64-bit totals from the board's 24-bit pixel counters, their reset, glFinish, and
// the toolkit's texture download record.
#include "device_test.h"

namespace {

class StatsTest : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        board("ZVGL_BOARD_SYNC", "1");
        startBoards();
        ASSERT_EQ(KSP_vld_unit_init(0), 0);
        makeContext();
        ctx->boundUnit = &vlddb.units[0];
        // The clears of the opening count as pixels written: start from zero.
        grSstResetPerfStats();
    }

    // Draws `count` single pixels, each at its own place.
    static void drawPoints(int count)
    {
        for (int i = 0; i < count; ++i) {
            GrVertex v{};
            v.x = 10.0f + (float)i;
            v.y = 20.0f;
            v.oow = 1.0f;
            grDrawPoint(&v);
        }
    }
};

TEST_F(StatsTest, AddCarriesIntoTheHighWord)
{
    vld_int64 v{0xFFFFFFF0u, 1};
    KSP_vld_add_to_G_Int64s(&v, 0x20);
    EXPECT_EQ(v.low, 0x10u);
    EXPECT_EQ(v.high, 2u);
    KSP_vld_add_to_G_Int64s(&v, 0);
    EXPECT_EQ(v.low, 0x10u);
    EXPECT_EQ(v.high, 2u);
}

// A fresh context counts from zero; pixels written count as written and as fragments.
TEST_F(StatsTest, PixelsWritten)
{
    EXPECT_EQ(ctx->pixelsWritten.low, 0u);
    drawPoints(16);
    KSP_vld_update_pixel_fill();
    EXPECT_EQ(ctx->pixelsWritten.low, 16u);
    EXPECT_EQ(ctx->fragmentTotal.low, 16u);
    EXPECT_EQ(ctx->lastReading[0], 16u);
    KSP_vld_update_pixel_fill();
    EXPECT_EQ(ctx->pixelsWritten.low, 16u) << "nothing new";
}

// The counter went round: last reading 0xFFFFF0, new reading 0x10 gives 0x1F.
TEST_F(StatsTest, CounterWrap)
{
    drawPoints(0x10);
    ctx->lastReading[0] = 0xFFFFF0u;
    ctx->pixelsWritten = vld_int64{0xFFFFFFF0u, 0};
    KSP_vld_update_pixel_fill();
    EXPECT_EQ(ctx->pixelsWritten.low, 0x0Fu);
    EXPECT_EQ(ctx->pixelsWritten.high, 1u);
    EXPECT_EQ(ctx->fragmentTotal.low, 0x1Fu);
}

// Fragments that fail the depth test count as fragments only.
TEST_F(StatsTest, RejectedFragments)
{
    grDepthBufferMode(GR_DEPTHBUFFER_WBUFFER);
    grDepthBufferFunction(GR_CMP_NEVER);
    drawPoints(5);
    grDepthBufferFunction(GR_CMP_ALWAYS);
    drawPoints(3);
    KSP_vld_update_pixel_fill();
    EXPECT_EQ(ctx->pixelsWritten.low, 3u);
    EXPECT_EQ(ctx->fragmentTotal.low, 8u);
}

// A reset zeroes the totals and keeps the readings: the next update counts only what came
// after it.
TEST_F(StatsTest, ResetKeepsTheLastReadings)
{
    drawPoints(4);
    KSP_vld_update_pixel_fill();
    ctx->texDownloadBytes = vld_int64{100, 1};
    ctx->texDownloadCount = 3;
    glStatsResetVELD();
    EXPECT_EQ(ctx->pixelsWritten.low, 0u);
    EXPECT_EQ(ctx->fragmentTotal.low, 0u);
    EXPECT_EQ(ctx->texDownloadBytes.high, 0u);
    EXPECT_EQ(ctx->texDownloadCount, 0u);
    EXPECT_EQ(ctx->lastReading[0], 4u);
    drawPoints(2);
    KSP_vld_update_pixel_fill();
    EXPECT_EQ(ctx->pixelsWritten.low, 2u);
}

// glFinish waits for the board, then reads the counters.
TEST_F(StatsTest, FinishWaitsAndCounts)
{
    drawPoints(7);
    calls();
    __vldim_Finish();
    const Calls expected = {"grSstIdle", "grSstPerfStats stats"};
    EXPECT_EQ(calls(), expected);
    EXPECT_EQ(ctx->pixelsWritten.low, 7u);
}

// The toolkit's record: count, then the low word of the bytes, cut to the size given.
TEST_F(StatsTest, DownloadInfo)
{
    ctx->texDownloadCount = 9;
    ctx->texDownloadBytes = vld_int64{4096, 7};
    uint32_t record[3] = {1, 1, 1};
    EXPECT_EQ(KSI_vld_inq_txr_download_info(sizeof record, record), 0);
    EXPECT_EQ(record[0], 9u);
    EXPECT_EQ(record[1], 4096u);
    EXPECT_EQ(record[2], 1u) << "at most 8 bytes are written";

    uint32_t half[2] = {1, 1};
    EXPECT_EQ(KSI_vld_inq_txr_download_info(4, half), 0);
    EXPECT_EQ(half[0], 9u);
    EXPECT_EQ(half[1], 1u);

    vldGc = nullptr;
    EXPECT_EQ(KSI_vld_inq_txr_download_info(sizeof record, record), -1);
    EXPECT_EQ(record[0], 0u);
    EXPECT_EQ(record[2], 0u) << "without a context all of the record is cleared";
}

} // namespace
