// The bits of the enable group: one bit of `capabilityBits` a capability, and the bits of
// each texture unit's word of `textureEnableBits`. The state calls set them; the pipeline
// tests them when it draws.
#pragma once

#include <cstdint>

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

// A unit is enabled by its 2D texture; 1D textures do not exist, and generation alone
// draws nothing through a unit.
inline constexpr uint32_t VLD_TEX_1D = 0x1;
inline constexpr uint32_t VLD_TEX_2D = 0x2;
inline constexpr uint32_t VLD_TEX_GEN_S = 0x4;
inline constexpr uint32_t VLD_TEX_GEN_T = 0x8;
inline constexpr uint32_t VLD_TEX_GEN_R = 0x10;
inline constexpr uint32_t VLD_TEX_GEN_Q = 0x20;
inline constexpr uint32_t VLD_TEX_GEN_ANY = VLD_TEX_GEN_S | VLD_TEX_GEN_T | VLD_TEX_GEN_R | VLD_TEX_GEN_Q;
