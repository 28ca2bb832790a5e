// Functions that the API frame and the draw dispatch call and that other subsystems own.
// Those not yet written stand as empty slots in vld_slots.cpp.
#pragma once

#include "vld/api/vld_context.h"

// Geometry pipeline: points and lines, polygon modes, the generic face variants and the
// optimised paths.
void KSP_vld_dl_lines(vld_dl_record* record, int mode);
void KSP_vld_dl_points(vld_dl_record* record);
void KSP_vld_dl_faces_as_points(vld_dl_record* record);
void KSP_vld_dl_faces_as_lines(vld_dl_record* record);
void KSP_vld_dl_faces_sse(vld_dl_record* record);
void KSP_vld_dl_faces_variant0(vld_dl_record* record);
void KSP_vld_dl_faces_variant1(vld_dl_record* record);
void KSP_vld_dl_faces_variant2(vld_dl_record* record);
void KSP_vld_dl_faces_variant3(vld_dl_record* record);
void KSP_vld_dl_faces_variant4(vld_dl_record* record);
void KSP_vld_dl_faces_variant5(vld_dl_record* record);
void KSP_vld_dl_faces_variant6(vld_dl_record* record);
void KSP_vld_dl_faces_variant7(vld_dl_record* record);
void KSP_vld_opt_path_vct(vld_dl_record* record);
void KSP_vld_opt_path_vnt(vld_dl_record* record);
void KSP_vld_opt_path_vc(vld_dl_record* record);
void KSP_vld_opt_path_vn(vld_dl_record* record);

// Display lists: the batch builder and the block under construction.
void KSP_vld_flush_update_list(uint32_t mask);
void KSP_vld_build_dl_faces(const vld_vertex* triangle, int kind);
void KSP_vld_create_dl_faces();
void* KSP_vld_display_list_alloc(uint32_t bytes);

// Textures: reduction of texture coordinates into the board's range.
void KSI_imp_txr_reduce_coords(const char* prefix1, const char* prefix2, const char* prefix3,
                               GLenum wrap, int count, float* coords, int stride);

// SSE family: writes a value into four lanes when the SSE paths are in use.
void KSP_vld_sse_assign(float value, vld_group4* destination);

// Raster state: face culling and the fog table, run when the projection changes.
void KSP_vld_polygon_cull_state(vld_context* ctx);
void KSP_vld_update_fog_state(vld_context* ctx);

// Textures: the full re-evaluation of the combine units and TMU assignment, and the update
// after 2D texturing was switched off.
void KSP_vld_txr_enable();
void KSP_vld_update_texture_state();

// Textures: the scales of the texture bound to a GL unit that bring its coordinates to the
// board's 0..256 range along the long side, and its detail ratio: s, t, detail.
void KSP_vld_txr_unit_scales(vld_context* ctx, int unit, float scales[3]);

// Start-up and shutdown of the subsystems that keep process-wide stores: texture objects
// and texture memory, display lists, the SSE family.
void KSP_vld_txr_obj_init();
void KSP_vld_txr_obj_shutdown();      // deletes every texture object, then the name table
void KSP_vld_init_glide_texmem();
void KSP_vld_init_glide_texmem_sst(vld_unit* unit);
void KSP_vld_txr_mem_shutdown();      // frees the memory-node free list and every TMU ring
void KSP_vld_reset_glide_textures(int unitIndex);
void KSP_vld_tex_bind(GLenum target, void* textureObject);
void KSP_vld_list_shutdown();         // frees the list being compiled and every stored list
void KSP_vld_sse_faces_init();
void KSP_vld_sse_constant_init();
// Whether the processor and the system run SSE code.
int KSP_vld_sse_inq_support();
