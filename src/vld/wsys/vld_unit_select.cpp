// Choosing the board (unit) a context renders on: the wgl calls of applications and the
// one call of a hosting toolkit. A unit is a board number from 0, or -1 for none.
#include "vld/api/vld_export.h"
#include "vld/glide/vld_device.h"
#include "vld/wsys/vld_wsys.h"

namespace {

// Whether unit is -1 or a board of the table.
bool vld_unit_or_none(int unit)
{
    return unit >= -1 && unit < vlddb.unitCount;
}

vld_unit* vld_unit_record(int unit)
{
    return unit < 0 ? nullptr : &vlddb.units[unit];
}

} // namespace

extern "C" {

VLD_EXPORT int VLD_APIENTRY wglUnitCountGetVELD(int* count)
{
    if (!count)
        return -1;
    return KSI_vld_UnitCountGetVELD(count);
}

// Chooses the unit of ctx. A context that sits on a board without being current can't move;
// the current one moves at once when its board changes.
VLD_EXPORT int VLD_APIENTRY wglUnitCurrentVELD(HGLRC handle, int unit)
{
    auto* ctx = reinterpret_cast<vld_context*>(handle);
    if (!vlddb.initialised || !ctx || (ctx != vldGc && !KSP_vld_context_alive(ctx)))
        return -1;
    if (ctx != vldGc && ctx->boundUnit)
        return -1;
    if (!vld_unit_or_none(unit))
        return -1;
    ctx->chosenUnit = vld_unit_record(unit);
    ctx->unitExplicit = 1;
    if (ctx == vldGc && ctx->boundUnit != ctx->chosenUnit)
        return KSP_vld_context_make_current(ctx);
    return 0;
}

VLD_EXPORT int VLD_APIENTRY wglUnitCurrentGetVELD(HGLRC handle, int* unit)
{
    auto* ctx = reinterpret_cast<vld_context*>(handle);
    if (!vlddb.initialised) {
        if (unit)
            *unit = -1;
        return -1;
    }
    if (!ctx || !unit || (ctx != vldGc && !KSP_vld_context_alive(ctx)))
        return -1;
    *unit = ctx->chosenUnit ? ctx->chosenUnit->index : -1;
    return 0;
}

// The unit that contexts without a choice of their own take at their first make-current.
VLD_EXPORT int VLD_APIENTRY wglUnitDefaultVELD(int unit)
{
    if (!vlddb.initialised)
        KSP_vld_init_vld();
    if (!vld_unit_or_none(unit))
        return -1;
    vlddb.defaultUnit = unit;
    return 0;
}

VLD_EXPORT int VLD_APIENTRY wglUnitDefaultGetVELD(int* unit)
{
    if (!unit)
        return -1;
    *unit = vlddb.defaultUnit;
    return 0;
}

// The toolkit's choice of board for its rendering: -1 for none. A context already bound to
// the board only becomes explicit; a board that another context is current on is left to
// it; otherwise some context is made current on the board, created if need be.
VLD_EXPORT int VLD_APIENTRY KSI_vld_set_unit(int unit)
{
    vld_context* current = vldGc;
    if (unit == -1) {
        if (current && !current->boundUnit) {
            current->unitExplicit = 1;
            return 0;
        }
        return KSP_vld_context_sst_default(nullptr);
    }
    if (unit < 0 || unit >= vlddb.unitCount)
        return -1;
    vld_unit* record = &vlddb.units[unit];
    if (current && current->boundUnit == record) {
        current->unitExplicit = 1;
        return 0;
    }
    if (record->currentContext)
        return 0;
    return KSP_vld_context_sst_default(record);
}

} // extern "C"
