// Statistics of the current context: the board's pixel counters turned into 64-bit totals,
// their reset, and the texture download figures for the toolkit.
#include <glide2/glide.h>

#include <cstring>

#include "vld/api/vld_export.h"
#include "vld/api/vld_frames.h"
#include "vld/glide/vld_device.h"

namespace {

// Positions of the last readings in the context, one per Glide counter.
enum { VLD_LAST_PIXELS_OUT, VLD_LAST_CHROMA_FAIL, VLD_LAST_ZFUNC_FAIL, VLD_LAST_AFUNC_FAIL };

// What a 24-bit counter advanced since its last reading. A reading below the last one means
// that the counter went round; the correction is 0xFFFFFF, one less than the counter's range,
// as the library has always counted it.
uint32_t vld_counter_delta(uint32_t reading, uint32_t& last)
{
    uint32_t delta = reading - last;
    if (reading < last)
        delta += 0xFFFFFFu;
    last = reading;
    return delta;
}

} // namespace

void KSP_vld_add_to_G_Int64s(vld_int64* value, uint32_t addend)
{
    const uint32_t low = value->low + addend;
    if (low < value->low)
        ++value->high;
    value->low = low;
}

// Reads the board's counters into the current context: pixels written count as written and
// as fragments, fragments rejected by depth, alpha or chroma test as fragments only.
void KSP_vld_update_pixel_fill()
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    GrSstPerfStats_t stats;
    std::memset(&stats, 0, sizeof stats);
    grSstPerfStats(&stats);

    const uint32_t written = vld_counter_delta(stats.pixelsOut, ctx->lastReading[VLD_LAST_PIXELS_OUT]);
    KSP_vld_add_to_G_Int64s(&ctx->pixelsWritten, written);
    KSP_vld_add_to_G_Int64s(&ctx->fragmentTotal, written);
    KSP_vld_add_to_G_Int64s(&ctx->fragmentTotal,
                            vld_counter_delta(stats.zFuncFail, ctx->lastReading[VLD_LAST_ZFUNC_FAIL]));
    KSP_vld_add_to_G_Int64s(&ctx->fragmentTotal,
                            vld_counter_delta(stats.aFuncFail, ctx->lastReading[VLD_LAST_AFUNC_FAIL]));
    KSP_vld_add_to_G_Int64s(&ctx->fragmentTotal,
                            vld_counter_delta(stats.chromaFail, ctx->lastReading[VLD_LAST_CHROMA_FAIL]));
}

// Zeroes the totals of the current context. The last readings stay, so that the next update
// counts only what the board did after this call.
VLD_EXPORT void VLD_APIENTRY glStatsResetVELD(void)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return;
    ctx->fragmentTotal = vld_int64{0, 0};
    ctx->pixelsWritten = vld_int64{0, 0};
    ctx->texDownloadBytes = vld_int64{0, 0};
    ctx->texDownloadCount = 0;
}

// Fills the toolkit's record (at most 8 bytes of it) with the download count, then the low
// word of the downloaded bytes. Without a context the record is cleared and -1 returned.
int KSI_vld_inq_txr_download_info(int size, void* info)
{
    if (size < 0)
        size = 0;
    vld_context* ctx = vldGc;
    if (!ctx) {
        if (info)
            std::memset(info, 0, (size_t)size);
        return -1;
    }
    const uint32_t record[2] = {ctx->texDownloadCount, ctx->texDownloadBytes.low};
    if (info)
        std::memcpy(info, record, (size_t)size < sizeof record ? (size_t)size : sizeof record);
    return 0;
}
