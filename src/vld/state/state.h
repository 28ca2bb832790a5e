// The immediate layer's raster state: the update functions that programme the board from
// the context, the capability bits, and the initial values of the groups kept here.
//
// Every update function reads the current context `vldGc` and the selected unit
// `vlddb.currentUnit`, and calls Glide at once: there is no validation at draw time.
#pragma once

#include "vld/api/vld_context.h"
#include "vld/api/vld_layers.h"

// ---------------------------------------------------------------------------------------
// capabilityBits: one bit a capability.

inline constexpr uint32_t VLD_CAP_ALPHA_TEST = 0x1;
inline constexpr uint32_t VLD_CAP_BLEND = 0x2;
inline constexpr uint32_t VLD_CAP_DEPTH_TEST = 0x10;
inline constexpr uint32_t VLD_CAP_FOG = 0x20;
inline constexpr uint32_t VLD_CAP_LIGHTING = 0x40;
inline constexpr uint32_t VLD_CAP_COLOR_MATERIAL = 0x80;
inline constexpr uint32_t VLD_CAP_LINE_STIPPLE = 0x100;
inline constexpr uint32_t VLD_CAP_LINE_SMOOTH = 0x200;
inline constexpr uint32_t VLD_CAP_POINT_SMOOTH = 0x400;
inline constexpr uint32_t VLD_CAP_POLYGON_SMOOTH = 0x800;
inline constexpr uint32_t VLD_CAP_CULL_FACE = 0x1000;
inline constexpr uint32_t VLD_CAP_POLYGON_STIPPLE = 0x2000;
inline constexpr uint32_t VLD_CAP_SCISSOR_TEST = 0x4000;
inline constexpr uint32_t VLD_CAP_STENCIL_TEST = 0x8000;
inline constexpr uint32_t VLD_CAP_NORMALIZE = 0x10000;
inline constexpr uint32_t VLD_CAP_AUTO_NORMAL = 0x20000;
inline constexpr uint32_t VLD_CAP_POLYGON_OFFSET_POINT = 0x40000;
inline constexpr uint32_t VLD_CAP_POLYGON_OFFSET_LINE = 0x80000;
inline constexpr uint32_t VLD_CAP_POLYGON_OFFSET_FILL = 0x100000;
inline constexpr uint32_t VLD_CAP_COLOR_CACHING = 0x40000000;

// Bits of a texture unit's enable word.
inline constexpr uint32_t VLD_TEX_1D = 0x1;
inline constexpr uint32_t VLD_TEX_2D = 0x2;
inline constexpr uint32_t VLD_TEX_GEN_S = 0x4;
inline constexpr uint32_t VLD_TEX_GEN_T = 0x8;
inline constexpr uint32_t VLD_TEX_GEN_R = 0x10;
inline constexpr uint32_t VLD_TEX_GEN_Q = 0x20;

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
