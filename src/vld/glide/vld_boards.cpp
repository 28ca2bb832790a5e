// Board discovery: Glide's start-up, the hardware query, the classification of each board
// into the unit record (memory, texture units, name, largest mode) and the configuration
// dump.
#include <glide2/glide.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "vld/api/vld_callees.h"
#include "vld/glide/vld_device_local.h"
#include "vld/wsys/vld_wsys.h"

namespace {

// What a board really is. Glide 2 knows only its four types and reports later boards under
// the old ones; the revisions tell them apart.
enum vld_board_class {
    VLD_CLASS_VOODOO,
    VLD_CLASS_SST96,
    VLD_CLASS_AT3D,
    VLD_CLASS_VOODOO2,
    VLD_CLASS_BANSHEE,
    VLD_CLASS_VOODOO3,
    VLD_CLASS_OTHER,
};

// Name and largest resolution of each class; a largest width of 0 means "by memory".
struct vld_class_row {
    const char* name;
    int32_t largestWidth;
    int32_t largestHeight;
};

const vld_class_row vldClassTable[] = {
    {"Voodoo Graphics", 0, 0}, // VLD_CLASS_VOODOO
    {"Voodoo Rush", 640, 480}, // VLD_CLASS_SST96
    {"Unknown", 0, 0},         // VLD_CLASS_AT3D
    {"Voodoo2", 0, 0},         // VLD_CLASS_VOODOO2
    {"Banshee", 1280, 1024},   // VLD_CLASS_BANSHEE
    {"Voodoo3", 1280, 1024},   // VLD_CLASS_VOODOO3
    {"Unknown", 0, 0},         // VLD_CLASS_OTHER
};

constexpr int32_t VLD_MB = 1 << 20;

// The class of board i of the configuration.
vld_board_class vld_classify(const GrHwConfiguration& hw, int i)
{
    switch (hw.SSTs[i].type) {
    case GR_SSTTYPE_VOODOO: {
        const int rev = hw.SSTs[i].sstBoard.VoodooConfig.fbiRev;
        if (rev >= 0x11002)
            return VLD_CLASS_VOODOO3;
        if (rev >= 0x1000)
            return VLD_CLASS_BANSHEE;
        if (rev > 5)
            return VLD_CLASS_VOODOO2;
        return VLD_CLASS_VOODOO;
    }
    case GR_SSTTYPE_SST96: {
        const GrSst96Config_t& c = hw.SSTs[i].sstBoard.SST96Config;
        if (c.tmuConfig.tmuRev >= 0x11002)
            return VLD_CLASS_VOODOO3;
        if (c.fbRam > 8)
            return VLD_CLASS_BANSHEE;
        return VLD_CLASS_SST96;
    }
    case GR_SSTTYPE_AT3D:
        return VLD_CLASS_AT3D;
    case GR_SSTTYPE_Voodoo2:
        return VLD_CLASS_VOODOO2;
    default:
        return VLD_CLASS_OTHER;
    }
}

// The largest resolution a board of this frame-buffer size is taken to drive.
void vld_largest_by_memory(int32_t frameBufferBytes, int32_t* width, int32_t* height)
{
    if (frameBufferBytes >= 8 * VLD_MB) {
        *width = 1024;
        *height = 768;
    } else if (frameBufferBytes >= 4 * VLD_MB) {
        *width = 800;
        *height = 600;
    } else {
        *width = 640;
        *height = 480;
    }
}

// Prints the hardware configuration as Glide reported it, board by board.
void KSL_vld_dump_3dfx(const GrHwConfiguration& hw, int count)
{
    std::printf("KSL_vld_dump_3dfx: 3DFX configuration:\n");
    std::printf("    number of boards: %d\n", hw.num_sst);
    for (int i = 0; i < count; ++i) {
        std::printf("    board %d:\n", i);
        const int type = hw.SSTs[i].type;
        if (type == GR_SSTTYPE_VOODOO || type == GR_SSTTYPE_Voodoo2) {
            const GrVoodooConfig_t& v = hw.SSTs[i].sstBoard.VoodooConfig;
            std::printf("        board type: %s\n", "voodoo");
            std::printf("        FB RAM: %d MB\n", v.fbRam);
            std::printf("        Pixelfx (FB) rev: %d\n", v.fbiRev);
            std::printf("        texelFX chips: %d\n", v.nTexelfx);
            std::printf("        SLI Detect: %d MB\n", v.sliDetect);
            for (int t = 0; t < v.nTexelfx && t < GLIDE_NUM_TMU; ++t) {
                std::printf("        texelFX chip %d:\n", t);
                std::printf("            texelFX chip rev: %d\n", v.tmuConfig[t].tmuRev);
                std::printf("            texelFX chip ram: %d MB\n", v.tmuConfig[t].tmuRam);
            }
        } else if (type == GR_SSTTYPE_SST96) {
            const GrSst96Config_t& s = hw.SSTs[i].sstBoard.SST96Config;
            std::printf("        board type: %s\n", "sst96");
            std::printf("        FB RAM: %d MB\n", s.fbRam);
            std::printf("        texelFX chips: %d\n", s.nTexelfx);
            std::printf("        texelFX chip %d:\n", 0);
            std::printf("            texelFX chip rev: %d\n", s.tmuConfig.tmuRev);
            std::printf("            texelFX chip ram: %d MB\n", s.tmuConfig.tmuRam);
        } else if (type == GR_SSTTYPE_AT3D) {
            std::printf("        board type: %s\n", "at3d");
        } else {
            std::printf("        board type: %s\n", "(unknown)");
            std::printf("        board rev: %d\n", hw.SSTs[i].sstBoard.AT3DConfig.rev);
        }
    }
    std::fflush(stdout);
}

} // namespace

// Applies the texture-unit settings of the environment to a board: a count above 2 is told
// (and left for the binder to ignore); KS_ENV_GLIDE_TMU_MIN forces a lowest unit count;
// KS_ENV_GLIDE_TMU_COUNT lowers the count, never below 1 nor above 2.
void KSL_vld_config_unit_tmu_counts(vld_unit* unit)
{
    static const char* const name = "KSL_vld_config_unit_tmu_counts";
    if (unit->tmuCount > 2)
        std::fprintf(stderr, "%s: unit %d: Glide's value for nTexelfx forced from %d to %d\n", name,
                     unit->index, unit->tmuCount, 2);

    unit->tmuMin = 0;
    const int tmuMin = KSP_vld_env_int("KS_ENV_GLIDE_TMU_MIN", 0);
    if (tmuMin >= 1 && tmuMin < unit->tmuCount) {
        unit->tmuMin = tmuMin;
        std::printf("%s: unit %d: TMU min forced to %d\n", name, unit->index, tmuMin);
    }

    char text[32];
    if (KSP_vld_env_text("KS_ENV_GLIDE_TMU_COUNT", text, sizeof text) && text[0]) {
        int count = std::atoi(text);
        if (count < unit->tmuCount) {
            if (count < 1 || count > 2)
                count = 1;
            std::printf("%s: unit %d: TMU count forced from %d to %d\n", name, unit->index,
                        unit->tmuCount, count);
            unit->tmuCount = count;
        }
    }
    std::fflush(stdout);
    std::fflush(stderr);
}

namespace {

// Fills the record of board i from the configuration, closed, in its starting mode.
void vld_fill_unit(vld_unit* unit, const GrHwConfiguration& hw, int i)
{
    unit->index = i;
    unit->glideStateSize = 312;
    unit->integrated2D = 0;

    const vld_board_class cls = vld_classify(hw, i);
    if (cls == VLD_CLASS_VOODOO3 || cls == VLD_CLASS_BANSHEE)
        unit->integrated2D = 1;

    const int type = hw.SSTs[i].type;
    int32_t tmuRamMb[2] = {0, 0};
    if (type == GR_SSTTYPE_VOODOO || type == GR_SSTTYPE_Voodoo2) {
        const GrVoodooConfig_t& v = hw.SSTs[i].sstBoard.VoodooConfig;
        unit->sliPair = v.sliDetect ? 1 : 0;
        unit->frameBufferBytes = v.fbRam * VLD_MB * (unit->sliPair ? 2 : 1);
        unit->tmuCount = v.nTexelfx;
        tmuRamMb[0] = v.tmuConfig[0].tmuRam;
        tmuRamMb[1] = v.tmuConfig[1].tmuRam;
    } else if (type == GR_SSTTYPE_SST96) {
        const GrSst96Config_t& s = hw.SSTs[i].sstBoard.SST96Config;
        unit->integrated2D = 1;
        unit->frameBufferBytes = s.fbRam * VLD_MB;
        unit->tmuCount = 1;
        unit->sliPair = 0;
        tmuRamMb[0] = tmuRamMb[1] = s.tmuConfig.tmuRam;
    } else {
        unit->frameBufferBytes = 0;
        unit->tmuCount = 0;
        unit->sliPair = 0;
    }

    KSL_vld_config_unit_tmu_counts(unit);
    for (int t = 0; t < 2; ++t) {
        unit->tmu[t].lowAddress = 0;
        unit->tmu[t].highAddress = t < unit->tmuCount ? (uint32_t)tmuRamMb[t] * (uint32_t)VLD_MB : 0;
    }

    const vld_class_row& row = vldClassTable[cls];
    std::snprintf(unit->boardName, sizeof unit->boardName, "%s", row.name);
    if (row.largestWidth) {
        unit->defaultWidth = row.largestWidth;
        unit->defaultHeight = row.largestHeight;
    } else {
        vld_largest_by_memory(unit->frameBufferBytes, &unit->defaultWidth, &unit->defaultHeight);
    }

    unit->notRush = cls == VLD_CLASS_SST96 ? 0 : 1;
    unit->clearStencil = 0;
    unit->clearDepth = 0xFFFF;
    KSL_vld_unit_mode_defaults(unit);
}

// Queries the boards and fills a record for each. 0, or -1 (told) when Glide finds none.
int KSL_vld_enumerate_boards()
{
    GrHwConfiguration hw;
    std::memset(&hw, 0, sizeof hw);
    if (!grSstQueryHardware(&hw)) {
        std::fprintf(stderr, "KSP_vld_init_hw: grSstQueryHardware failed\n");
        std::fflush(stderr);
        return -1;
    }
    int count = hw.num_sst;
    if (count < 1) {
        std::fprintf(stderr, "Glide's grSstQueryHardware num_sst returned as %d\n", count);
        std::fflush(stderr);
        return -1;
    }
    if (count > VLD_MAX_UNITS) {
        std::fprintf(stderr, "Glide's grSstQueryHardware num_sst forced from %d to %d\n", count,
                     VLD_MAX_UNITS);
        std::fflush(stderr);
        count = VLD_MAX_UNITS;
    }

    char dump[8];
    if (KSP_vld_env_text("KS_ENV_DUMP_CONFIG", dump, sizeof dump) && dump[0] != '0')
        KSL_vld_dump_3dfx(hw, count);

    vlddb.unitCount = count;
    for (int i = 0; i < count; ++i) {
        vld_unit* unit = &vlddb.units[i];
        vld_fill_unit(unit, hw, i);
        const int spare = unit->tmuCount - unit->tmuMin;
        if (i == 0 || spare < vlddb.minimumSpareUnits)
            vlddb.minimumSpareUnits = spare;
    }
    return 0;
}

} // namespace

// Starts Glide and finds the boards, once per start-up: the optional functions, the texture
// memory manager, the unit records, then the default unit selected and a swap interval of 1.
// -1 when no board was found; the library then runs with contexts that cannot bind.
int KSP_vld_init_hw()
{
    if (vlddb.glideInitialised)
        return 0;
    grGlideInit();
    vlddb.glideInitialised = 1;
    KSP_vld_get_functions();
    KSP_vld_init_glide_texmem();
    if (KSL_vld_enumerate_boards() != 0)
        return -1;
    int unit = vlddb.defaultUnit;
    if (unit < 0 || unit >= vlddb.unitCount)
        unit = 0;
    grSstSelect(unit);
    vlddb.currentUnit = &vlddb.units[unit];
    vlddb.swapInterval = 1;
    return 0;
}

// The number of boards, for the toolkit; runs start-up first when nothing has started yet.
int KSI_vld_UnitCountGetVELD(int* count)
{
    if (!vlddb.initialised)
        KSP_vld_init_vld();
    if (count)
        *count = vlddb.unitCount;
    return 0;
}
