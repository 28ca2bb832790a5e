// glFlush and glFinish. Primitives reach Glide during glEnd, so nothing is queued here; the
// flush only owes the pass-through switch its deferred assertions.
#include <glide2/glide.h>

#include "vld/api/vld_layers.h"
#include "vld/glide/vld_device.h"

void __vldim_Flush(void)
{
    vld_unit* unit = vlddb.currentUnit;
    if (unit && unit->passthruPending > 0)
        KSP_vld_ensure_passthru_state(unit);
}

// Waits until the board has drawn everything, then reads its counters.
void __vldim_Finish(void)
{
    __vldim_Flush();
    grSstIdle();
    KSP_vld_update_pixel_fill();
}
