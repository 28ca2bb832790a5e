// The stub reporter, the start-up check of the name table, wglGetProcAddress and the
// extension string.
#include "vld/api/vld_functab.h"

#include <cstdio>
#include <cstring>

#include "vld/api/vld_error.h"
#include "vld/api/vld_frames.h"
#include "vld/api/vld_layers.h"

// The name table: every row of the table of entries, numbered by its position.
#define VLD_NAME_TABLE_ROW(ret, name, params, args, kind, impl) {VLD_ROW_##name, #name},
const vld_name_row vldNameTable[] = {VLD_GL_ENTRIES(VLD_NAME_TABLE_ROW)};
#undef VLD_NAME_TABLE_ROW
const int vldNameTableCount = VLD_ROW_COUNT;
static_assert(VLD_ROW_COUNT == VLD_NAME_ROWS);

// The look-up table of wglGetProcAddress, in search order.
#define VLD_PROC_TABLE_ROW(name, function) {#name, (void (*)(void))&function},
const vld_proc_row vldProcTable[] = {VLD_PROC_ENTRIES(VLD_PROC_TABLE_ROW)};
#undef VLD_PROC_TABLE_ROW
const int vldProcTableCount = VLD_PROC_ROW_COUNT;

uint32_t vldCallCounters[VLD_NAME_ROWS];

const char* const vldExtensionString =
    "GL_EXT_texture_object GL_SGIS_detail_texture GL_SGIS_multitexture GL_VELD_shutdown "
    "GL_VELD_unit_select_wgl GL_VELD_w32_message_callin GL_VELD_texture_lod_bias "
    "GL_VELD_pixel_packing_5_6_5 GL_VELD_color_caching GL_VELD_enable_imm GL_VELD_timeout "
    "GL_VELD_minimize GL_EXT_clip_volume_hint GL_VELD_texture_coord_reduce_imm_hint "
    "GL_VELD_draw_direct GL_VELD_stats GL_VELD_setenv";

// The name of a row, or the row number as text for a row outside the table.
static const char* vld_row_name(int row, char (&buffer)[16])
{
    for (int i = 0; i < vldNameTableCount; ++i)
        if (vldNameTable[i].row == row)
            return vldNameTable[i].name;
    std::snprintf(buffer, sizeof buffer, "%d", row);
    return buffer;
}

// Tells the first call of an unimplemented function (and every call of an unknown row),
// and records GL_INVALID_OPERATION in the current context at every call.
extern "C" void vldFunctionNotImplemented(int row)
{
    bool tell = true;
    if (row >= 0 && row < VLD_NAME_ROWS)
        tell = vldCallCounters[row]++ == 0;
    if (tell && vlddb.settings.verbosity > 0) {
        char buffer[16];
        std::fprintf(stderr, "Unimplemented function called one or more times: %s\n",
                     vld_row_name(row, buffer));
    }
    VLD_GL_ERROR_QUIET(vldGc, GL_INVALID_OPERATION);
}

extern "C" void vldFunctionNotImplementedOK(void) {}

// The texture filter functions of SGIS (sharpen and filter curves) are declared but not
// carried out: the immediate layer reports them as the stubs do, also when a list replays them.
void __vldim_GetSharpenTexFuncSGIS(GLenum, GLfloat*)
{
    vldFunctionNotImplemented(VLD_ROW_glGetSharpenTexFuncSGIS);
}

void __vldim_SharpenTexFuncSGIS(GLenum, GLsizei, const GLfloat*)
{
    vldFunctionNotImplemented(VLD_ROW_glSharpenTexFuncSGIS);
}

void __vldim_GetTexFilterFuncSGIS(GLenum, GLenum, GLfloat*)
{
    vldFunctionNotImplemented(VLD_ROW_glGetTexFilterFuncSGIS);
}

void __vldim_TexFilterFuncSGIS(GLenum, GLenum, GLsizei, const GLfloat*)
{
    vldFunctionNotImplemented(VLD_ROW_glTexFilterFuncSGIS);
}

// True when every row's number is greater than its predecessor's; tells the first fault.
bool KSL_vld_name_table_in_order(const vld_name_row* table, int count)
{
    for (int i = 1; i < count; ++i) {
        if (table[i].row <= table[i - 1].row) {
            std::fprintf(stderr, "KSP_vld_func_tab_init: table entries out of order\n");
            return false;
        }
    }
    return true;
}

void KSP_vld_func_tab_init()
{
    std::memset(vldCallCounters, 0, sizeof vldCallCounters);
    KSL_vld_name_table_in_order(vldNameTable, vldNameTableCount);
}

// Linear search by exact name; the first equal row wins.
void (*KSL_vld_proc_lookup(const vld_proc_row* table, int count, const char* name))(void)
{
    if (!name)
        return nullptr;
    for (int i = 0; i < count; ++i)
        if (std::strcmp(table[i].name, name) == 0)
            return table[i].function;
    return nullptr;
}

// The functions an application may ask for by name. Needs no context and no start-up.
extern "C" PROC WINAPI wglGetProcAddress(LPCSTR name)
{
    return (PROC)KSL_vld_proc_lookup(vldProcTable, vldProcTableCount, name);
}
