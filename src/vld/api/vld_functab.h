// The tables of names: the 418-row name table of the stub reporter with its call counters,
// the look-up table of wglGetProcAddress, and the extension string.
#pragma once

#include <cstdint>

struct vld_name_row {
    int32_t row;
    const char* name;
};

struct vld_proc_row {
    const char* name;
    void (*function)(void);
};

inline constexpr int VLD_NAME_ROWS = 418;

// The tables, generated from the table of entries.
extern const vld_name_row vldNameTable[];
extern const int vldNameTableCount;
extern const vld_proc_row vldProcTable[];
extern const int vldProcTableCount;
extern uint32_t vldCallCounters[VLD_NAME_ROWS];

// The text of glGetString(GL_EXTENSIONS).
extern const char* const vldExtensionString;

// Reports an unimplemented function: its name once per start-up, GL_INVALID_OPERATION at
// every call.
extern "C" void vldFunctionNotImplemented(int row);
// Marks a function that is accepted and ignored without error.
extern "C" void vldFunctionNotImplementedOK(void);

// Clears the counters and checks that the name table is in row order.
void KSP_vld_func_tab_init();

// The checks and searches over explicit tables, for the generated tables and for tests.
bool KSL_vld_name_table_in_order(const vld_name_row* table, int count);
void (*KSL_vld_proc_lookup(const vld_proc_row* table, int count, const char* name))(void);
