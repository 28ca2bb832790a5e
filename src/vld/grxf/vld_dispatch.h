// The draw dispatch: the one place where the pipeline picks the path that draws a batch,
// the sizing of the pipeline's scratch arrays, and the material-times-light products.
#pragma once

#include "vld/api/vld_context.h"

// The vector units the one-pass vertex stage of the face path and the face planes can run
// on, narrowest first. Builds for x86-64 with GCC have the AVX2 forms (vld_faces_avx2.cpp,
// vld_planes_avx2.cpp), chosen at run time; on Windows the build writes every aligned vector
// move unaligned, as the stack there is not kept aligned for 32-byte registers.
#if defined(__GNUC__) && defined(__x86_64__)
#define VLD_AVX2_FORMS 1
#endif
enum vld_vector_level : int { VLD_VECTOR_SSE2 = 0, VLD_VECTOR_AVX2 = 1 };

// The unit those forms use: the widest this build and machine have, unless the environment
// variable ZVGL_VLD_SIMD=sse2 asks for the narrower one.
int KSP_vld_vector_level();
// Tests: makes them use `level` (at most the widest available; -1 for that widest) and
// returns the level now in use.
int KSP_vld_force_vector_level(int level);

// What the dispatch chose for a record of type 3.
enum vld_face_path : int {
    VLD_PATH_VARIANT0 = 0, // 0 to 7: the generic variant of that number
    VLD_PATH_OPT_VCT = 8,  // the optimised paths, by format
    VLD_PATH_OPT_VNT = 9,
    VLD_PATH_OPT_VC = 10,
    VLD_PATH_OPT_VN = 11,
    VLD_PATH_AS_POINTS = 12,
    VLD_PATH_AS_LINES = 13,
};

// Chooses the path for a type 3 record under the current state of `ctx`; writes the
// record's scaled_radius on the way, as the paths read it.
vld_face_path KSP_vld_dl_faces_choose(vld_context* ctx, vld_dl_record* record);

// Draws a type 3 record under the current state.
void KSP_vld_dl_faces(vld_dl_record* record);

// Guarantees room for `count` vertices in the pipeline's scratch arrays.
void KSP_vld_enlarge_vertex_count(int32_t count);

// The vertex format of a record, from its offsets, flags and light cache.
uint16_t KSP_vld_dl_format_of(const vld_dl_record* record);

// Material-times-light products.
void KSP_vld_mtl_pre_light_ams(vld_context* ctx);
void KSP_vld_mtl_pre_light_amb(vld_context* ctx);
void KSP_vld_mtl_pre_light_dif(vld_context* ctx);
void KSP_vld_mtl_pre_light_spec(vld_context* ctx);
void KSP_vld_mtl_pre_light_amb_one(vld_context* ctx, int light);
void KSP_vld_mtl_pre_light_dif_one(vld_context* ctx, int light);
void KSP_vld_mtl_pre_light_spec_one(vld_context* ctx, int light);

// The x87 precision bracket of the face paths: 24-bit precision inside, the caller's
// control word restored after. Real on i386; SSE arithmetic elsewhere is single already.
void KSP_vld_fpu_single_enter();
void KSP_vld_fpu_single_leave();
