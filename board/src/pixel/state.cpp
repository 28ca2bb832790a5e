// state.cpp: the pixel-state registers of the board: defaults, setters and the colour-format rule.
#include "pixel/pixel.h"

#include <cstring>

namespace zvb {

// A GrColor_t in `format` (GrColorFormat_t) as 0xAARRGGBB. Unknown formats are taken as ARGB.
uint32_t px_colour_to_argb(uint32_t c, int format) {
  uint32_t a, r, g, b;
  switch (format) {
    case GR_COLORFORMAT_ABGR: a = c >> 24; b = (c >> 16) & 0xFF; g = (c >> 8) & 0xFF; r = c & 0xFF; break;
    case GR_COLORFORMAT_RGBA: r = c >> 24; g = (c >> 16) & 0xFF; b = (c >> 8) & 0xFF; a = c & 0xFF; break;
    case GR_COLORFORMAT_BGRA: b = c >> 24; g = (c >> 16) & 0xFF; r = (c >> 8) & 0xFF; a = c & 0xFF; break;
    default: return c;
  }
  return (a << 24) | (r << 16) | (g << 8) | b;
}

// Resets every rendering register to its value after grSstWinOpen. The colour format and origin
// chosen at window open are kept; the fog table, counters and buffers are not touched.
void px_reset(PixelBoard &pb, int numTmu) {
  const uint8_t format = pb.state.colourFormat;
  const uint8_t origin = pb.state.origin;
  std::memset(&pb.state, 0, sizeof pb.state);
  PixelState &s = pb.state;
  s.colourFormat = format;
  s.origin = origin;
  s.renderBuffer = GR_BUFFER_BACKBUFFER;
  s.blendRgbSrc = GR_BLEND_ONE;
  s.blendRgbDst = GR_BLEND_ZERO;
  s.blendAlphaSrc = GR_BLEND_ONE;
  s.blendAlphaDst = GR_BLEND_ZERO;
  s.alphaTestFunction = GR_CMP_ALWAYS;
  s.constantColour = 0xFFFFFFFFu;
  s.clipMaxX = static_cast<uint16_t>(pb.width > 0 ? pb.width : 0);
  s.clipMaxY = static_cast<uint16_t>(pb.height > 0 ? pb.height : 0);
  s.ccFunction = GR_COMBINE_FUNCTION_SCALE_OTHER;
  s.ccFactor = GR_COMBINE_FACTOR_ONE;
  s.ccLocal = GR_COMBINE_LOCAL_ITERATED;
  s.ccOther = GR_COMBINE_OTHER_ITERATED;
  s.acFunction = GR_COMBINE_FUNCTION_SCALE_OTHER;
  s.acFactor = GR_COMBINE_FACTOR_ONE;
  s.acLocal = GR_COMBINE_LOCAL_CONSTANT;
  s.acOther = GR_COMBINE_OTHER_CONSTANT;
  s.rgbWrite = 1;
  s.depthFunction = GR_CMP_LESS;
  s.ditherMode = GR_DITHER_4x4;
  s.lfbAlpha = 0xFF;
  pb.numTmu = numTmu < 0 ? 0 : (numTmu > GLIDE_NUM_TMU ? GLIDE_NUM_TMU : numTmu);
  pb.derived.valid = 0;
}

// Render target: FRONT or BACK; other values are refused by Glide and ignored here.
void px_RenderBuffer(PixelBoard &pb, GrBuffer_t buffer) {
  if (buffer == GR_BUFFER_FRONTBUFFER || buffer == GR_BUFFER_BACKBUFFER)
    pb.state.renderBuffer = static_cast<uint8_t>(buffer);
}

// Colour write enable; the alpha half turns the alpha buffer and the shared aux write enable on or
// off together, but only while depth buffering is off and the board is not triple-buffered.
void px_ColorMask(PixelBoard &pb, FxBool rgb, FxBool a) {
  pb.state.rgbWrite = rgb ? 1 : 0;
  if (pb.state.depthMode == GR_DEPTHBUFFER_DISABLE && pb.nColBuffers < 3) {
    pb.state.alphaBuffer = a ? 1 : 0;
    pb.state.auxWrite = a ? 1 : 0;
  }
}

void px_DepthMask(PixelBoard &pb, FxBool mask) { pb.state.auxWrite = mask ? 1 : 0; }

// Clip rectangle [minx, maxx) x [miny, maxy): max clamped to the screen, an inverted rectangle
// becomes empty by lowering min to max.
void px_ClipWindow(PixelBoard &pb, FxU32 minx, FxU32 miny, FxU32 maxx, FxU32 maxy) {
  const FxU32 w = pb.width > 0 ? static_cast<FxU32>(pb.width) : 0;
  const FxU32 h = pb.height > 0 ? static_cast<FxU32>(pb.height) : 0;
  if (maxx > w) maxx = w;
  if (maxy > h) maxy = h;
  if (minx > maxx) minx = maxx;
  if (miny > maxy) miny = maxy;
  pb.state.clipMinX = static_cast<uint16_t>(minx);
  pb.state.clipMinY = static_cast<uint16_t>(miny);
  pb.state.clipMaxX = static_cast<uint16_t>(maxx);
  pb.state.clipMaxY = static_cast<uint16_t>(maxy);
}

void px_ColorCombine(PixelBoard &pb, GrCombineFunction_t function, GrCombineFactor_t factor,
                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert) {
  PixelState &s = pb.state;
  s.ccFunction = static_cast<uint8_t>(function & 0x1F);
  s.ccFactor = static_cast<uint8_t>(factor & 0xF);
  s.ccLocal = static_cast<uint8_t>(local & 3);
  s.ccOther = static_cast<uint8_t>(other & 3);
  s.ccInvert = invert ? 1 : 0;
}

void px_AlphaCombine(PixelBoard &pb, GrCombineFunction_t function, GrCombineFactor_t factor,
                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert) {
  PixelState &s = pb.state;
  s.acFunction = static_cast<uint8_t>(function & 0x1F);
  s.acFactor = static_cast<uint8_t>(factor & 0xF);
  s.acLocal = static_cast<uint8_t>(local & 3);
  s.acOther = static_cast<uint8_t>(other & 3);
  s.acInvert = invert ? 1 : 0;
}

void px_ConstantColorValue(PixelBoard &pb, GrColor_t value) {
  pb.state.constantColour = px_colour_to_argb(value, pb.state.colourFormat);
}

// Blend factors. Reserved colour factors (8..14) act as ZERO; alpha factors other than ZERO/ONE are
// replaced as Glide does: source by ONE, destination by ZERO.
void px_AlphaBlendFunction(PixelBoard &pb, GrAlphaBlendFnc_t rgb_sf, GrAlphaBlendFnc_t rgb_df,
                           GrAlphaBlendFnc_t alpha_sf, GrAlphaBlendFnc_t alpha_df) {
  auto colourFactor = [](GrAlphaBlendFnc_t f) -> uint8_t {
    if (f < 0 || f > 0xF || (f >= 8 && f < 0xF)) return GR_BLEND_ZERO;
    return static_cast<uint8_t>(f);
  };
  PixelState &s = pb.state;
  s.blendRgbSrc = colourFactor(rgb_sf);
  s.blendRgbDst = colourFactor(rgb_df);
  s.blendAlphaSrc = alpha_sf == GR_BLEND_ZERO ? GR_BLEND_ZERO : GR_BLEND_ONE;
  s.blendAlphaDst = alpha_df == GR_BLEND_ONE ? GR_BLEND_ONE : GR_BLEND_ZERO;
}

void px_AlphaTestFunction(PixelBoard &pb, GrCmpFnc_t function) {
  pb.state.alphaTestFunction = static_cast<uint8_t>(function & 7);
}

void px_AlphaTestReferenceValue(PixelBoard &pb, GrAlpha_t value) { pb.state.alphaRef = value; }

void px_DepthBufferMode(PixelBoard &pb, GrDepthBufferMode_t mode) {
  pb.state.depthMode = static_cast<uint8_t>(mode >= 0 && mode <= 4 ? mode : GR_DEPTHBUFFER_DISABLE);
}

void px_DepthBufferFunction(PixelBoard &pb, GrCmpFnc_t function) {
  pb.state.depthFunction = static_cast<uint8_t>(function & 7);
}

void px_DepthBiasLevel(PixelBoard &pb, FxI16 level) { pb.state.depthBias = level; }

void px_CullMode(PixelBoard &pb, GrCullMode_t mode) {
  pb.state.cullMode = static_cast<uint8_t>(mode >= 0 && mode <= 2 ? mode : GR_CULL_DISABLE);
}

// Fog source in the low byte (0..3, others off) and the MULT2/ADD2 modifier bits.
void px_FogMode(PixelBoard &pb, GrFogMode_t mode) {
  const int source = mode & 0xFF;
  pb.state.fogMode = static_cast<uint16_t>((source <= 3 ? source : 0) | (mode & (GR_FOG_MULT2 | GR_FOG_ADD2)));
}

void px_FogColorValue(PixelBoard &pb, GrColor_t fogcolor) {
  pb.state.fogColour = px_colour_to_argb(fogcolor, pb.state.colourFormat) & 0xFFFFFFu;
}

void px_FogTable(PixelBoard &pb, const GrFog_t ft[GR_FOG_TABLE_SIZE]) {
  std::memcpy(pb.fogTable, ft, GR_FOG_TABLE_SIZE);
}

void px_DitherMode(PixelBoard &pb, GrDitherMode_t mode) {
  pb.state.ditherMode = static_cast<uint8_t>(mode >= 0 && mode <= 2 ? mode : GR_DITHER_DISABLE);
}

void px_ChromakeyMode(PixelBoard &pb, GrChromakeyMode_t mode) { pb.state.chromaMode = mode ? 1 : 0; }

void px_ChromakeyValue(PixelBoard &pb, GrColor_t value) {
  pb.state.chromaValue = px_colour_to_argb(value, pb.state.colourFormat) & 0xFFFFFFu;
}

// Any origin other than upper-left is taken as lower-left, as the hardware's single flip bit does.
void px_SstOrigin(PixelBoard &pb, GrOriginLocation_t origin) {
  pb.state.origin = origin == GR_ORIGIN_UPPER_LEFT ? GR_ORIGIN_UPPER_LEFT : GR_ORIGIN_LOWER_LEFT;
}

void px_Hints(PixelBoard &pb, GrHint_t type, FxU32 mask) {
  if (type == GR_HINT_STWHINT)
    pb.state.stwHint = mask;
  else if (type == GR_HINT_ALLOW_MIPMAP_DITHER)
    pb.state.mipmapDither = mask ? 1 : 0;
}

void px_LfbConstantAlpha(PixelBoard &pb, GrAlpha_t alpha) { pb.state.lfbAlpha = alpha; }

void px_LfbConstantDepth(PixelBoard &pb, FxU16 depth) { pb.state.lfbDepth = depth; }

}  // namespace zvb
