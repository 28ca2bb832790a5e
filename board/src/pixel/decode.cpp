// decode.cpp: turns the rendering registers into the decoded form and specialisation key the span
// loops use.
#include <cstring>

#include "pixel/combine.h"
#include "pixel/raster.h"

namespace zvb {

namespace {

void decode_unit(uint8_t function, uint8_t factor, uint8_t local, uint8_t other, uint8_t invert, CombineUnit &u) {
  combine_decode_function(function, u);
  u.factor = factor & 7;
  u.oneMinus = (factor & 8) ? 1 : 0;
  u.invert = invert;
  u.local = local;
  u.other = other;
}

int clamp_to(int v, int lo, int hi) { return v < lo ? lo : (v > hi ? hi : v); }

// Decodes every register the span loops read.
void decode(const PixelState &s, int width, int height, PixelDecoded &d) {
  std::memset(&d, 0, sizeof d);
  decode_unit(s.ccFunction, s.ccFactor, s.ccLocal, s.ccOther, s.ccInvert, d.cc);
  decode_unit(s.acFunction, s.acFactor, s.acLocal, s.acOther, s.acInvert, d.ac);
  d.constA = static_cast<uint8_t>(s.constantColour >> 24);
  d.constR = static_cast<uint8_t>(s.constantColour >> 16);
  d.constG = static_cast<uint8_t>(s.constantColour >> 8);
  d.constB = static_cast<uint8_t>(s.constantColour);
  d.fogR = static_cast<uint8_t>(s.fogColour >> 16);
  d.fogG = static_cast<uint8_t>(s.fogColour >> 8);
  d.fogB = static_cast<uint8_t>(s.fogColour);
  d.fogSource = static_cast<uint8_t>(s.fogMode & 0xFF);
  if (d.fogSource > 3) d.fogSource = 0;
  d.fogMult2 = (s.fogMode & GR_FOG_MULT2) ? 1 : 0;
  d.fogAdd2 = (s.fogMode & GR_FOG_ADD2) ? 1 : 0;
  d.blendSrc = s.blendRgbSrc & 0xF;
  d.blendDst = s.blendRgbDst & 0xF;
  d.blendAlphaSrcOne = s.blendAlphaSrc == GR_BLEND_ONE;
  d.blendAlphaDstOne = s.blendAlphaDst == GR_BLEND_ONE;
  d.alphaFunction = s.alphaTestFunction & 7;
  d.alphaRef = s.alphaRef;
  d.chroma = s.chromaMode ? 1 : 0;
  d.chromaRGB = s.chromaValue & 0xFFFFFFu;
  d.depthMode = s.depthMode <= 4 ? s.depthMode : 0;
  d.depthFunction = s.depthFunction & 7;
  d.depthBias = s.depthBias;
  d.biasCompare = static_cast<uint16_t>(s.depthBias);
  d.rgbWrite = s.rgbWrite ? 1 : 0;
  d.auxWrite = s.auxWrite ? 1 : 0;
  d.alphaBuffer = s.alphaBuffer ? 1 : 0;
  d.ditherMode = s.ditherMode <= 2 ? s.ditherMode : 0;
  d.flip = s.origin != GR_ORIGIN_UPPER_LEFT ? 1 : 0;  // any non-zero origin flips, as px_SstOrigin
  d.clipMaxX = clamp_to(s.clipMaxX, 0, width);
  d.clipMaxY = clamp_to(s.clipMaxY, 0, height);
  d.clipMinX = clamp_to(s.clipMinX, 0, d.clipMaxX);
  d.clipMinY = clamp_to(s.clipMinY, 0, d.clipMaxY);
}

// True when a unit's result is exactly one of its plain inputs: SCALE_OTHER by ONE of `other`, or
// LOCAL of `local`, without invert.
bool passes_through(const CombineUnit &u, uint8_t fn, uint8_t factor, int other, int local) {
  if (u.invert) return false;
  if (fn == GR_COMBINE_FUNCTION_SCALE_OTHER && factor == GR_COMBINE_FACTOR_ONE && u.other == other) return true;
  return fn == GR_COMBINE_FUNCTION_LOCAL && u.local == local;
}

}  // namespace

// Decodes the state when it changed and picks the key of the fastest span loop that computes
// exactly what the generic loop would: stages that are off or in a plain pass-through form get a
// fixed form, anything else stays dynamic.
const PixelDecoded &px_decode(PixelBoard &pb) {
  PixelDerived &dv = pb.derived;
  if (dv.valid && dv.width == pb.width && dv.height == pb.height &&
      std::memcmp(&dv.seen, &pb.state, sizeof(PixelState)) == 0)
    return dv.dec;
  std::memcpy(&dv.seen, &pb.state, sizeof(PixelState));
  dv.width = pb.width;
  dv.height = pb.height;
  decode(pb.state, pb.width, pb.height, dv.dec);
  const PixelState &s = pb.state;
  const PixelDecoded &d = dv.dec;

  uint32_t cc = CC_DYN;
  if (passes_through(d.cc, s.ccFunction, s.ccFactor, GR_COMBINE_OTHER_ITERATED, GR_COMBINE_LOCAL_ITERATED))
    cc = CC_ITER;
  else if (passes_through(d.cc, s.ccFunction, s.ccFactor, GR_COMBINE_OTHER_CONSTANT, GR_COMBINE_LOCAL_CONSTANT))
    cc = CC_CONST;
  uint32_t ac = AC_DYN;
  if (passes_through(d.ac, s.acFunction, s.acFactor, GR_COMBINE_OTHER_ITERATED, GR_COMBINE_LOCAL_ITERATED))
    ac = AC_ITER;
  else if (passes_through(d.ac, s.acFunction, s.acFactor, GR_COMBINE_OTHER_CONSTANT, GR_COMBINE_LOCAL_CONSTANT))
    ac = AC_CONST;
  uint32_t depth = DEPTH_DYN;
  if (d.depthMode == GR_DEPTHBUFFER_ZBUFFER) depth = DEPTH_Z;
  else if (d.depthMode == GR_DEPTHBUFFER_WBUFFER) depth = DEPTH_W;
  else if (d.depthMode == GR_DEPTHBUFFER_DISABLE && !(d.auxWrite && !d.alphaBuffer)) depth = DEPTH_NONE;
  uint32_t key = (cc << KEY_CC_SHIFT) | (ac << KEY_AC_SHIFT) | (depth << KEY_DEPTH_SHIFT);
  if (d.fogSource != GR_FOG_DISABLE) key |= KEY_FOG;
  if (!(d.blendSrc == GR_BLEND_ONE && d.blendDst == GR_BLEND_ZERO && d.blendAlphaSrcOne && !d.blendAlphaDstOne))
    key |= KEY_BLEND;
  if (d.alphaFunction != GR_CMP_ALWAYS || d.chroma) key |= KEY_TESTS;
  dv.key = key;
  dv.valid = 1;
  return dv.dec;
}

}  // namespace zvb
