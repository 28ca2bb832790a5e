// The pass-through switch of the early boards: a relay on the monitor cable that hands the
// output from the VGA card to the board. It clicks and needs time, so switches are kept half
// a second apart; dual-head machines and plain applications leave it on for good, a hosting
// toolkit switches it when it is ready to show a picture.
#include <glide2/glide.h>

#include <cstdio>

#include "support/env/env.h"
#include "support/sys/sys.h"
#include "support/timer/timer.h"
#include "vld/api/vld_export.h"
#include "vld/api/vld_frames.h"
#include "vld/glide/vld_device_local.h"

namespace {

// The shortest time between two switches of the relay, in seconds.
constexpr double VLD_PASSTHRU_INTERVAL = 0.5;

double vld_now()
{
    double seconds = 0.0;
    G_timer_inq_time(&seconds);
    return seconds;
}

// Waits until the interval since the board's last switch has passed. A board that was
// never switched has nothing to wait for.
void vld_passthru_wait(const vld_unit* unit)
{
    if (unit->passthruLastChange == 0.0)
        return;
    const double target = unit->passthruLastChange + VLD_PASSTHRU_INTERVAL;
    for (double now = vld_now(); now < target; now = vld_now())
        G_sleep((unsigned)((target - now) * 1000.0) + 1);
}

// Sends the state to the board's relay: activate for nonzero, deactivate for zero. A refusal
// is told and not retried here.
void vld_passthru_switch(vld_unit* unit, int state)
{
    vld_unit_selection selection(unit);
    if (!grSstControl(state ? GR_CONTROL_ACTIVATE : GR_CONTROL_DEACTIVATE)) {
        std::fprintf(stderr,
                     "KSL_vld_set_passthru_state: grSstControl failed in pass-through switch\n");
        std::fflush(stderr);
    }
}

// The first character of the first of `names` that is set; false when none is.
bool vld_first_setting(const char* const* names, int count, char* first)
{
    for (int i = 0; i < count; ++i) {
        char text[8];
        if (KSP_vld_env_text(names[i], text, sizeof text)) {
            *first = text[0];
            return true;
        }
    }
    return false;
}

} // namespace

// Decides at each opening whether the relay stays on for good (fixed) or belongs to the
// toolkit: a dual-head machine and KS_ENV_PASSTHRU_IGNORE fix it on, as does a plain
// application that says nothing; a hosted library, or the setting "0", leaves it switchable.
void KSP_vld_passthru_init(vld_unit* unit, int switchable)
{
    if (switchable != 1) {
        unit->passthruFixed = 1;
        unit->passthruInitialised = 1;
        return;
    }

    static const char* const dualHead[] = {"KS_ENV_SST_DUALHEAD", "SST_DUALHEAD", "SSTV2_DUALHEAD"};
    char first = 0;
    bool found = vld_first_setting(dualHead, 3, &first);
    if (found && first != '0') {
        // Glide reads these itself to drive the second head.
        G_sys_setenv("SST_DUALHEAD", "1");
        G_sys_setenv("SSTV2_DUALHEAD", "1");
    } else {
        static const char* const ignore[] = {"KS_ENV_PASSTHRU_IGNORE"};
        found = vld_first_setting(ignore, 1, &first);
    }

    if ((found && first != '0') || (!found && !vlddb.hosted)) {
        unit->passthruFixed = 1;
        vld_passthru_wait(unit);
        vld_passthru_switch(unit, 1);
        KSP_vld_passthru_record_time(unit);
        unit->passthruInitialised = 1;
        return;
    }
    unit->passthruWanted = 1;
    unit->passthruFixed = 0;
    unit->passthruPending = 2;
    unit->passthruInitialised = 1;
}

void KSP_vld_passthru_record_time(vld_unit* unit)
{
    if (unit)
        unit->passthruLastChange = vld_now();
}

// Switches a board's relay, half a second after its last switch at the earliest. Boards whose
// relay is fixed are left alone.
void KSP_vld_set_passthru_state(vld_unit* unit, int state)
{
    if (!unit || unit->passthruFixed)
        return;
    vld_passthru_wait(unit);
    vld_passthru_switch(unit, state);
    KSP_vld_passthru_record_time(unit);
}

// The toolkit's switch for every board. Switching on is asserted twice more later (from the
// swap and glFlush), since a relay may miss one switch.
VLD_EXPORT void VLD_APIENTRY KSI_vld_set_passthru_fbi(int state)
{
    for (int i = 0; i < vlddb.unitCount; ++i) {
        vld_unit* unit = &vlddb.units[i];
        if (unit->passthruInitialised && unit->passthruFixed) {
            unit->passthruPending = 0;
            continue;
        }
        unit->passthruWanted = state;
        KSP_vld_set_passthru_state(unit, state);
        unit->passthruPending = state ? 2 : 0;
    }
}

// The deferred assertion of the wanted state: once the interval has passed since the last
// switch, the state is sent again and one assertion fewer is owed. Never blocks.
void KSP_vld_ensure_passthru_state(vld_unit* unit)
{
    if (!unit || unit->passthruFixed || unit->passthruPending <= 0)
        return;
    if (!unit->passthruWanted) {
        unit->passthruPending = 0;
        return;
    }
    if (vld_now() - unit->passthruLastChange >= VLD_PASSTHRU_INTERVAL) {
        KSP_vld_set_passthru_state(unit, unit->passthruWanted);
        --unit->passthruPending;
    }
}
