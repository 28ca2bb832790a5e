// Small device services: the board maker's optional Glide functions, and the setters through
// which a hosting toolkit hands the library its windows and its wishes.
#include "support/dll/dll.h"
#include "vld/glide/vld_device.h"

// Looks up the optional functions of the board maker's Glide; each stays null when the Glide
// module lacks it, and every user tests the pointer first.
void KSP_vld_get_functions()
{
    static const char* const names[4] = {"grGetFloatVLT", "grGetIntegerVLT", "grSetFloatVLT",
                                         "grSetIntegerVLT"};
    void** slots[4] = {&vlddb.grGetFloatVLT, &vlddb.grGetIntegerVLT, &vlddb.grSetFloatVLT,
                       &vlddb.grSetIntegerVLT};
    for (int i = 0; i < 4; ++i) {
        void* address = nullptr;
        if (G_dll_inq_procedure_glide(0, names[i], &address) != 1)
            address = nullptr;
        *slots[i] = address;
    }
}

// The toolkit's window for boards that have none of their own.
int KSI_vld_set_mouse_arena_window(void* window)
{
    vlddb.mouseArenaWindow = window;
    return 0;
}

// The toolkit's last resort for a window: called with the address of the handle to fill.
int KSI_vld_set_chn_ma_callback(void* callback)
{
    vlddb.chnMaCallback = callback;
    return 0;
}

// Nonzero keeps Glide running when the library shuts down (the host goes on using it).
int KSI_vld_disable_glide_shutdown(int flag)
{
    vlddb.glideShutdownDisabled = flag;
    return 0;
}
