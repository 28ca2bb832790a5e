// The immediate layer's raster state: the update functions that programme the board from
// the context, the initial values of the groups kept here, and (from vld_caps.h) the enable bits.
//
// Every update function reads the current context `vldGc` and the selected unit
// `vlddb.currentUnit`, and calls Glide at once: there is no validation at draw time.
#pragma once

#include "vld/api/vld_caps.h"
#include "vld/api/vld_context.h"
#include "vld/api/vld_layers.h"

// The depth of the attribute stack.
inline constexpr int VLD_ATTRIB_STACK_DEPTH = 16;

// The board's depth values for depth 0.0 and 1.0.
inline constexpr uint32_t VLD_DEPTH_LOW = 0;
inline constexpr uint32_t VLD_DEPTH_HIGH = 0xFFFF;

// ---------------------------------------------------------------------------------------
// Update functions: each programmes one piece of board state from the current context.

void KSP_vld_update_AlphaFunc();
void KSP_vld_update_BlendFunc();
void KSP_vld_update_depth_state();
void KSP_vld_update_fog_state(vld_context* ctx);
void KSP_vld_polygon_cull_state(vld_context* ctx);
void KSP_vld_update_polygon_offset(GLenum mode);
void KSP_vld_update_smooth_line();
void KSP_vld_update_smooth_point();
void KSP_vld_update_smooth_polygon();
void KSP_vld_realize_glScissor();
void KSP_vld_execute_glScissor(GLint x, GLint y, GLsizei width, GLsizei height);

// The Glide comparison (GR_CMP_NEVER .. GR_CMP_ALWAYS) for GL_NEVER .. GL_ALWAYS, or -1.
int KSP_vld_map_compare(GLenum func);
// The Glide blend factor for a GL blend factor, with or without an alpha buffer.
int KSP_vld_map_blend_factor(GLenum factor, int hasAlphaBuffer);

// Sets the initial values of the groups of this layer in a zero-filled context: those of
// OpenGL 1.1, with depthFunc GL_LESS, every smoothing switch allowed and texturing on.
void KSP_vld_state_defaults(vld_context* ctx);
