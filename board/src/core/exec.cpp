// exec.cpp: runs one FIFO command on the board's pixels (board thread, or inline in sync
// mode). Arguments were checked and copied by the Glide entry points.
#include "core/board.h"

#include <cstring>

namespace zvb {

void execute(Board &b, Command &c) {
  PixelBoard &p = b.px;
  const int32_t *a = c.i;
  switch (c.op) {
    case OP_NOP: break;
    case OP_CLEAR: px_BufferClear(p, static_cast<GrColor_t>(a[0]), static_cast<GrAlpha_t>(a[1]),
                                  static_cast<FxU16>(a[2])); break;
    case OP_RENDER_BUFFER: px_RenderBuffer(p, a[0]); break;
    case OP_COLOR_MASK: px_ColorMask(p, a[0], a[1]); break;
    case OP_DEPTH_MASK: px_DepthMask(p, a[0]); break;
    case OP_CLIP: px_ClipWindow(p, static_cast<FxU32>(a[0]), static_cast<FxU32>(a[1]),
                                static_cast<FxU32>(a[2]), static_cast<FxU32>(a[3])); break;
    case OP_TRIANGLE: px_DrawTriangle(p, &c.v[0], &c.v[1], &c.v[2]); break;
    case OP_LINE: px_DrawLine(p, &c.v[0], &c.v[1]); break;
    case OP_POINT: px_DrawPoint(p, &c.v[0]); break;
    case OP_AA_TRIANGLE: px_AADrawTriangle(p, &c.v[0], &c.v[1], &c.v[2], a[0], a[1], a[2]); break;
    case OP_AA_LINE: px_AADrawLine(p, &c.v[0], &c.v[1]); break;
    case OP_AA_POINT: px_AADrawPoint(p, &c.v[0]); break;
    case OP_PLANAR_POLY:
    case OP_POLY:
    case OP_AA_POLY: {
      // Short lists travel inline, longer ones in a block of their own.
      const GrVertex *list = c.blob ? static_cast<const GrVertex *>(c.blob) : c.v;
      if (c.op == OP_PLANAR_POLY) px_DrawPlanarPolygonVertexList(p, a[0], list);
      else if (c.op == OP_POLY) px_DrawPolygonVertexList(p, a[0], list);
      else px_AADrawPolygonVertexList(p, a[0], list);
      break;
    }
    case OP_COLOR_COMBINE: px_ColorCombine(p, a[0], a[1], a[2], a[3], a[4]); break;
    case OP_ALPHA_COMBINE: px_AlphaCombine(p, a[0], a[1], a[2], a[3], a[4]); break;
    case OP_CONSTANT_COLOR: px_ConstantColorValue(p, static_cast<GrColor_t>(a[0])); break;
    case OP_BLEND: px_AlphaBlendFunction(p, a[0], a[1], a[2], a[3]); break;
    case OP_ALPHA_TEST: px_AlphaTestFunction(p, a[0]); break;
    case OP_ALPHA_REF: px_AlphaTestReferenceValue(p, static_cast<GrAlpha_t>(a[0])); break;
    case OP_DEPTH_MODE: px_DepthBufferMode(p, a[0]); break;
    case OP_DEPTH_FUNC: px_DepthBufferFunction(p, a[0]); break;
    case OP_DEPTH_BIAS: px_DepthBiasLevel(p, static_cast<FxI16>(a[0])); break;
    case OP_CULL: px_CullMode(p, a[0]); break;
    case OP_FOG_MODE: px_FogMode(p, a[0]); break;
    case OP_FOG_COLOR: px_FogColorValue(p, static_cast<GrColor_t>(a[0])); break;
    case OP_FOG_TABLE: px_FogTable(p, c.bytes); break;
    case OP_DITHER: px_DitherMode(p, a[0]); break;
    case OP_CHROMA_MODE: px_ChromakeyMode(p, a[0]); break;
    case OP_CHROMA_VALUE: px_ChromakeyValue(p, static_cast<GrColor_t>(a[0])); break;
    case OP_ORIGIN: px_SstOrigin(p, a[0]); break;
    case OP_HINT: px_Hints(p, static_cast<GrHint_t>(a[0]), static_cast<FxU32>(a[1])); break;
    case OP_LFB_ALPHA: px_LfbConstantAlpha(p, static_cast<GrAlpha_t>(a[0])); break;
    case OP_LFB_DEPTH: px_LfbConstantDepth(p, static_cast<FxU16>(a[0])); break;
    case OP_RESET_PERF: std::memset(&p.perf, 0, sizeof p.perf); break;
    case OP_SET_STATE:
      // The rasteriser notices the new register bytes by itself (see PixelDerived).
      if (c.blob) std::memcpy(&p.state, c.blob, sizeof p.state);
      break;
    case OP_LFB_WRITE:
      if (c.blob) lfb_apply(b, *static_cast<LfbWrite *>(c.blob));
      break;
    case OP_SWAP: break;  // handled by the FIFO itself
  }
}

}  // namespace zvb
