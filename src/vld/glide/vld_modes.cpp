// Display modes of a board: the refresh and resolution tables, the rules that pick a row for
// any request, the starting mode from the environment, and the toolkit's mode calls.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/sys/sys.h"
#include "vld/api/vld_export.h"
#include "vld/api/vld_frames.h"
#include "vld/glide/vld_device_local.h"

// Refresh rates in table order; the closing row stands for "none" and takes part in the
// selection as a rate of 0.
const vld_refresh_row vldRefreshTable[] = {
    {60, 0}, {70, 1}, {72, 2}, {75, 3}, {80, 4}, {90, 5}, {100, 6}, {85, 7}, {120, 8}, {0, 0xFF},
};
const int vldRefreshTableCount = (int)(sizeof vldRefreshTable / sizeof vldRefreshTable[0]);

// Resolutions in table order, closed by the "none" row of size 0 x 0.
const vld_resolution_row vldResolutionTable[] = {
    {320, 200, 0x0},   {320, 240, 0x1},  {400, 256, 0x2},   {512, 384, 0x3},   {640, 200, 0x4},
    {640, 350, 0x5},   {640, 400, 0x6},  {640, 480, 0x7},   {800, 600, 0x8},   {960, 720, 0x9},
    {1024, 768, 0xC},  {1280, 1024, 0xD}, {1600, 1200, 0xE}, {856, 480, 0xA},   {512, 256, 0xB},
    {400, 300, 0xF},   {0, 0, 0xFF},
};
const int vldResolutionTableCount = (int)(sizeof vldResolutionTable / sizeof vldResolutionTable[0]);

namespace {

constexpr int VLD_REFRESH_DEFAULT_ROW = 0;    // 60 Hz
constexpr int VLD_RESOLUTION_DEFAULT_ROW = 7; // 640 x 480

// The board maker's resolution families, which open at 1024 x 768.
constexpr int32_t VLD_RESOLUTION_SPECIAL_HEIGHT = 0x564C5300;
constexpr int32_t VLD_RESOLUTION_SPECIAL_INDEX = 0x564C5400;

} // namespace

// The refresh row for a rate: the default row for a negative rate, the exact row if any,
// else the highest rate below the request, else the lowest above it, else the first row.
int KSL_vld_pick_refresh(int hz)
{
    if (hz < 0)
        return VLD_REFRESH_DEFAULT_ROW;
    int below = -1, above = -1;
    for (int i = 0; i < vldRefreshTableCount; ++i) {
        const int rate = vldRefreshTable[i].hz;
        if (rate == hz)
            return i;
        if (rate < hz && (below < 0 || rate > vldRefreshTable[below].hz))
            below = i;
        if (rate > hz && (above < 0 || rate < vldRefreshTable[above].hz))
            above = i;
    }
    if (below >= 0)
        return below;
    return above >= 0 ? above : 0;
}

// The resolution row for a size. A negative width asks by height alone. Among the rows at
// least as large as the request in both measures the smallest is kept, among those at most
// as large the largest; the one at or below the request wins, so that the picture always
// fits what was asked for. Widths 1 and 2 name the board maker's own modes.
int KSL_vld_pick_resolution(int width, int height, int32_t* specialCode)
{
    if ((width == 1 || width == 2) && height < 0)
        return VLD_RESOLUTION_DEFAULT_ROW;
    if (width == 2) {
        *specialCode = VLD_RESOLUTION_SPECIAL_HEIGHT + height;
        return -1;
    }
    if (width == 1 && height <= 255) {
        *specialCode = VLD_RESOLUTION_SPECIAL_INDEX + height;
        return -1;
    }
    if (height < 0)
        return VLD_RESOLUTION_DEFAULT_ROW;
    const bool heightOnly = width < 0;

    for (int i = 0; i < vldResolutionTableCount; ++i) {
        const vld_resolution_row& r = vldResolutionTable[i];
        if (r.height == height && (heightOnly || r.width == width))
            return i;
    }

    int above = -1, below = -1;
    for (int i = 0; i < vldResolutionTableCount; ++i) {
        const vld_resolution_row& r = vldResolutionTable[i];
        const bool atLeast = r.height >= height && (heightOnly || r.width >= width);
        const bool atMost = r.height <= height && (heightOnly || r.width <= width);
        if (atLeast) {
            const vld_resolution_row* best = above < 0 ? nullptr : &vldResolutionTable[above];
            if (!best || (r.height <= best->height && (heightOnly || r.width <= best->width)))
                above = i;
        }
        if (atMost) {
            const vld_resolution_row* best = below < 0 ? nullptr : &vldResolutionTable[below];
            if (!best || (r.height >= best->height && (heightOnly || r.width >= best->width)))
                below = i;
        }
    }
    if (below >= 0)
        return below;
    return above >= 0 ? above : 0;
}

// Stores the refresh row chosen for `hz` into the record.
void KSP_vld_select_refresh(vld_unit* unit, int hz)
{
    const vld_refresh_row& row = vldRefreshTable[KSL_vld_pick_refresh(hz)];
    unit->refreshHz = row.hz;
    unit->refreshCode = row.code;
}

// Stores the resolution chosen for (width, height) into the record; the special modes keep
// the 1024 x 768 they open at.
void KSP_vld_select_resolution(vld_unit* unit, int width, int height)
{
    int32_t special = 0;
    const int row = KSL_vld_pick_resolution(width, height, &special);
    if (row < 0) {
        unit->width = 1024;
        unit->height = 768;
        unit->resolutionCode = special;
        return;
    }
    unit->width = vldResolutionTable[row].width;
    unit->height = vldResolutionTable[row].height;
    unit->resolutionCode = vldResolutionTable[row].code;
}

namespace {

// Reads "<width><sep><height>" with each number as strtol reads it with base 0 and the
// separator one of ',', ':', 'x' or 'X'. False when the text is not of that shape.
bool vld_parse_size(const char* text, int* width, int* height)
{
    char* end = nullptr;
    const long w = std::strtol(text, &end, 0);
    if (end == text || (*end != ',' && *end != ':' && *end != 'x' && *end != 'X'))
        return false;
    const char* second = end + 1;
    const long h = std::strtol(second, &end, 0);
    if (end == second)
        return false;
    *width = (int)w;
    *height = (int)h;
    return true;
}

} // namespace

// The starting mode of a board: its largest resolution at 60 Hz, unless the environment names
// another refresh rate ("default" or a number) or resolution ("default" or two numbers).
void KSL_vld_unit_mode_defaults(vld_unit* unit)
{
    KSP_vld_select_resolution(unit, unit->defaultWidth, unit->defaultHeight);
    KSP_vld_select_refresh(unit, 60);

    char text[128];
    if (KSP_vld_env_text("KS_ENV_REFRESH_DEFAULT", text, sizeof text) && text[0]) {
        if (G_strcasecmp(text, "default") == 0)
            KSP_vld_select_refresh(unit, vldRefreshTable[VLD_REFRESH_DEFAULT_ROW].hz);
        else
            KSP_vld_select_refresh(unit, std::atoi(text));
    }
    if (KSP_vld_env_text("KS_ENV_RESOLUTION_DEFAULT", text, sizeof text) && text[0]) {
        int width = 0, height = 0;
        if (G_strcasecmp(text, "default") == 0) {
            const vld_resolution_row& row = vldResolutionTable[VLD_RESOLUTION_DEFAULT_ROW];
            KSP_vld_select_resolution(unit, row.width, row.height);
        } else if (vld_parse_size(text, &width, &height)) {
            KSP_vld_select_resolution(unit, width, height);
        } else {
            std::fprintf(stderr,
                         "KSL_vld_unit_mode_defaults: KS_ENV_RESOLUTION_DEFAULT \"%s\" is not "
                         "\"default\" or width and height; unit %d keeps %d x %d\n",
                         text, unit->index, unit->width, unit->height);
            std::fflush(stderr);
        }
    }
    unit->opened = 0;
}

namespace {

// The record of board number `unit`, or null when there is no such board.
vld_unit* vld_unit_at(int unit)
{
    if (unit < 0 || unit >= vlddb.unitCount)
        return nullptr;
    return &vlddb.units[unit];
}

} // namespace

// Chooses the refresh rate of a board. An open board whose code changes is closed; the next
// make-current that reaches it opens it again in the new mode.
VLD_EXPORT int VLD_APIENTRY KSI_vld_fbf_set_refresh(int unit, int hz)
{
    vld_unit* record = vld_unit_at(unit);
    if (!record)
        return -1;
    const int32_t oldCode = record->refreshCode;
    KSP_vld_select_refresh(record, hz);
    if (record->opened && record->refreshCode != oldCode)
        KSP_vld_WinClose(record);
    return 0;
}

VLD_EXPORT int VLD_APIENTRY KSI_vld_fbf_inq_refresh(int unit, int* hz)
{
    vld_unit* record = vld_unit_at(unit);
    if (hz)
        *hz = record ? record->refreshHz : -1;
    return record ? 0 : -1;
}

// Chooses the resolution of a board, with the same closing rule as the refresh rate.
VLD_EXPORT int VLD_APIENTRY KSI_vld_fbf_set_resolution(int unit, int width, int height)
{
    vld_unit* record = vld_unit_at(unit);
    if (!record)
        return -1;
    const int32_t oldCode = record->resolutionCode;
    KSP_vld_select_resolution(record, width, height);
    if (record->opened && record->resolutionCode != oldCode)
        KSP_vld_WinClose(record);
    return 0;
}

VLD_EXPORT int VLD_APIENTRY KSI_vld_fbf_inq_resolution(int unit, int* width, int* height)
{
    vld_unit* record = vld_unit_at(unit);
    if (width)
        *width = record ? record->width : -1;
    if (height)
        *height = record ? record->height : -1;
    return record ? 0 : -1;
}
