// SLOTS: functions that the API frame and the draw dispatch call, whose subsystems are not
// written yet. Each stands here empty, under its real name and signature, so that the
// callers are complete and the library links. Each subsystem removes its slots from this
// file as it lands; nothing here is the finished behaviour.
#include "vld/api/vld_callees.h"
#include "vld/state/state_matrix.h"

// Geometry pipeline: points and lines, polygon modes, SSE family and the four optimised
// paths.
void KSP_vld_dl_lines(vld_dl_record*, int) {}
void KSP_vld_dl_points(vld_dl_record*) {}
void KSP_vld_dl_faces_as_points(vld_dl_record*) {}
void KSP_vld_dl_faces_as_lines(vld_dl_record*) {}
void KSP_vld_dl_faces_sse(vld_dl_record*) {}
void KSP_vld_opt_path_vct(vld_dl_record*) {}
void KSP_vld_opt_path_vnt(vld_dl_record*) {}
void KSP_vld_opt_path_vc(vld_dl_record*) {}
void KSP_vld_opt_path_vn(vld_dl_record*) {}
void KSP_vld_sse_assign(float, vld_group4*) {}

// Display lists.
void KSP_vld_flush_update_list(uint32_t) {}
void KSP_vld_build_dl_faces(const vld_vertex*, int) {}
void KSP_vld_create_dl_faces() {}
void* KSP_vld_display_list_alloc(uint32_t) { return nullptr; }

// Textures.
void KSP_vld_txr_unit_scales(vld_context*, int, float scales[3])
{
    scales[0] = scales[1] = scales[2] = 1.0f;
}
vld_detail_function* KSP_vld_txr_detail_function(vld_context*) { return nullptr; }
void KSI_imp_txr_reduce_coords(const char*, const char*, const char*, GLenum, int, float*, int) {}
void KSP_vld_txr_enable() {}
void KSP_vld_update_texture_state() {}

// Process-wide stores of later subsystems.
void KSP_vld_txr_obj_init() {}
void KSP_vld_txr_obj_shutdown() {}
void KSP_vld_init_glide_texmem() {}
void KSP_vld_init_glide_texmem_sst(vld_unit*) {}
void KSP_vld_txr_mem_shutdown() {}
void KSP_vld_reset_glide_textures(int) {}
void KSP_vld_tex_bind(GLenum, void*) {}
void KSP_vld_list_shutdown() {}
void KSP_vld_sse_faces_init() {}
void KSP_vld_sse_constant_init() {}

// The layer functions and entry points of vld_pending.h, each empty and returning zero,
// generated with the signatures of the table of entries.
#include "vld/api/vld_layers.h"
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "vld/api/vld_slots_gen.inc"
#pragma GCC diagnostic pop
