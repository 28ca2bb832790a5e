// pixel.h: the pixel half of the software board.
//
// The board's rendering registers (PixelState), its pixel counters and buffers (PixelBoard), and one
// px_ function for every Glide call whose effect is on pixels or pixel state. Each px_ function takes
// the same arguments as its Glide call after a leading PixelBoard &. They run on the board thread (or
// synchronously), never concurrently for one board, and never write outside the buffers whatever the
// input: NaN, huge and off-screen coordinates are clipped.
//
// Colours: every GrColor_t argument arrives in the window's colour format (state.colourFormat) and is
// stored converted to 0xAARRGGBB. Pixels are RGB565; the aux buffer holds 16-bit depth or alpha.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <glide2/glide.h>

#include "pixel/derived.h"

namespace zvb {

// Per-TMU texture state. Filled in by the texturing change; the pixel pipeline reads the texture
// colour as 0 (transparent black, the output of a TMU in its default ZERO combine) until then.
struct PixelTmuState {
  uint32_t regs[24];  // texture mode, LOD, detail, base address, NCC selection, combine, ...
};

// Every rendering register that grGlideGetState saves. Trivially copyable; zero-filled before use,
// padding included, so that two states compare and hash by their bytes.
struct PixelState {
  // Colour and alpha combine units (GrCombineFunction_t, GrCombineFactor_t, local, other, invert).
  uint8_t ccFunction, ccFactor, ccLocal, ccOther, ccInvert;
  uint8_t acFunction, acFactor, acLocal, acOther, acInvert;
  // Frame-buffer blend factors (GrAlphaBlendFnc_t); the alpha factors are already reduced to ONE/ZERO.
  uint8_t blendRgbSrc, blendRgbDst, blendAlphaSrc, blendAlphaDst;
  uint8_t alphaTestFunction;  // GrCmpFnc_t
  uint8_t alphaRef;           // 8-bit reference
  uint8_t depthMode;          // GrDepthBufferMode_t
  uint8_t depthFunction;      // GrCmpFnc_t
  uint8_t auxWrite;           // the one aux-buffer write enable (grDepthMask, grColorMask alpha half)
  uint8_t rgbWrite;           // colour writes on
  uint8_t alphaBuffer;        // aux buffer holds destination alpha (grColorMask a, depth off)
  uint8_t renderBuffer;       // GR_BUFFER_FRONTBUFFER or GR_BUFFER_BACKBUFFER
  uint8_t cullMode;           // GrCullMode_t
  uint8_t ditherMode;         // GrDitherMode_t
  uint8_t chromaMode;         // GrChromakeyMode_t
  uint8_t colourFormat;       // GrColorFormat_t of the window
  uint8_t origin;             // GR_ORIGIN_UPPER_LEFT or GR_ORIGIN_LOWER_LEFT
  uint8_t mipmapDither;       // GR_HINT_ALLOW_MIPMAP_DITHER
  uint8_t lfbAlpha;           // grLfbConstantAlpha
  uint8_t reserved0;
  uint16_t fogMode;           // GrFogMode_t: source in the low byte, MULT2/ADD2 modifiers
  int16_t depthBias;          // grDepthBiasLevel
  uint16_t lfbDepth;          // grLfbConstantDepth
  uint16_t clipMinX, clipMinY, clipMaxX, clipMaxY;  // [min, max), relative to the origin
  uint16_t reserved1;
  uint32_t stwHint;           // GR_STWHINT_* mask
  uint32_t constantColour;    // 0xAARRGGBB
  uint32_t fogColour;         // 0x00RRGGBB
  uint32_t chromaValue;       // 0x00RRGGBB
  PixelTmuState tmu[GLIDE_NUM_TMU];
};
static_assert(std::is_trivially_copyable_v<PixelState>);
static_assert(sizeof(PixelState) <= 280, "PixelState must fit in the board's 312-byte GrState");

// The five pixel counters of grSstPerfStats; each is 24 bits wide and wraps.
struct PerfCounters {
  uint32_t pixelsIn, chromaFail, zFuncFail, aFuncFail, pixelsOut;
};

// Derived form of the state that the rasteriser keeps between primitives. Recomputed whenever the
// state bytes differ from `seen`, so a state restored by plain assignment is picked up too.
struct PixelDerived {
  PixelState seen;     // the state `dec` and `key` were decoded from
  PixelDecoded dec;
  uint32_t key;        // specialisation key of the span loops (SpanKeyBits)
  int width, height;   // the screen size the clip window was clamped to
  uint32_t keyOverride;  // tests only: 1 + the key of the span loop to use instead, 0 for none
  uint8_t valid;       // 0: decode before the next primitive
};

struct PixelBoard {
  PixelState state;
  uint8_t fogTable[GR_FOG_TABLE_SIZE];  // as loaded by grFogTable
  PerfCounters perf;
  uint16_t *colour[3];  // RGB565 colour buffers, allocated by boardcore at window open
  uint16_t *aux;        // 16-bit aux buffer (depth or alpha), may be null
  int width, height;    // screen size in pixels; rows are `width` pixels apart
  int front, back;      // indices into colour[]: the displayed buffer and the back buffer
  int nColBuffers;      // 1..3
  int numTmu;           // 0..2
  PixelDerived derived; // private to the rasteriser
};

// The state after grSstWinOpen (E.15 defaults); counters, buffers and fog table untouched. The
// colour format and origin are kept from the current state (boardcore sets them before or after).
void px_reset(PixelBoard &, int numTmu);

// ---- Buffers ------------------------------------------------------------------------------------
void px_BufferClear(PixelBoard &, GrColor_t color, GrAlpha_t alpha, FxU16 depth);
void px_RenderBuffer(PixelBoard &, GrBuffer_t buffer);
void px_ColorMask(PixelBoard &, FxBool rgb, FxBool a);
void px_DepthMask(PixelBoard &, FxBool mask);
void px_ClipWindow(PixelBoard &, FxU32 minx, FxU32 miny, FxU32 maxx, FxU32 maxy);

// ---- Drawing (polygon lists take a pointer to a copy of the vertices) ---------------------------
void px_DrawTriangle(PixelBoard &, const GrVertex *a, const GrVertex *b, const GrVertex *c);
void px_DrawPlanarPolygonVertexList(PixelBoard &, int nverts, const GrVertex *vlist);
void px_DrawPolygonVertexList(PixelBoard &, int nverts, const GrVertex *vlist);
void px_DrawLine(PixelBoard &, const GrVertex *v1, const GrVertex *v2);
void px_DrawPoint(PixelBoard &, const GrVertex *pt);
void px_AADrawTriangle(PixelBoard &, const GrVertex *a, const GrVertex *b, const GrVertex *c,
                       FxBool ab_antialias, FxBool bc_antialias, FxBool ca_antialias);
void px_AADrawPolygonVertexList(PixelBoard &, int nverts, const GrVertex *vlist);
void px_AADrawLine(PixelBoard &, const GrVertex *v1, const GrVertex *v2);
void px_AADrawPoint(PixelBoard &, const GrVertex *pt);

// ---- Pixel pipeline state -----------------------------------------------------------------------
void px_ColorCombine(PixelBoard &, GrCombineFunction_t function, GrCombineFactor_t factor,
                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert);
void px_AlphaCombine(PixelBoard &, GrCombineFunction_t function, GrCombineFactor_t factor,
                     GrCombineLocal_t local, GrCombineOther_t other, FxBool invert);
void px_ConstantColorValue(PixelBoard &, GrColor_t value);
void px_AlphaBlendFunction(PixelBoard &, GrAlphaBlendFnc_t rgb_sf, GrAlphaBlendFnc_t rgb_df,
                           GrAlphaBlendFnc_t alpha_sf, GrAlphaBlendFnc_t alpha_df);
void px_AlphaTestFunction(PixelBoard &, GrCmpFnc_t function);
void px_AlphaTestReferenceValue(PixelBoard &, GrAlpha_t value);
void px_DepthBufferMode(PixelBoard &, GrDepthBufferMode_t mode);
void px_DepthBufferFunction(PixelBoard &, GrCmpFnc_t function);
void px_DepthBiasLevel(PixelBoard &, FxI16 level);
void px_CullMode(PixelBoard &, GrCullMode_t mode);
void px_FogMode(PixelBoard &, GrFogMode_t mode);
void px_FogColorValue(PixelBoard &, GrColor_t fogcolor);
void px_FogTable(PixelBoard &, const GrFog_t ft[GR_FOG_TABLE_SIZE]);
void px_DitherMode(PixelBoard &, GrDitherMode_t mode);
void px_ChromakeyMode(PixelBoard &, GrChromakeyMode_t mode);
void px_ChromakeyValue(PixelBoard &, GrColor_t value);
void px_SstOrigin(PixelBoard &, GrOriginLocation_t origin);
// Only the hints that touch pixels are kept (GR_HINT_STWHINT, GR_HINT_ALLOW_MIPMAP_DITHER).
void px_Hints(PixelBoard &, GrHint_t type, FxU32 mask);
void px_LfbConstantAlpha(PixelBoard &, GrAlpha_t alpha);
void px_LfbConstantDepth(PixelBoard &, FxU16 depth);

// One pixel of a linear-frame-buffer write through the pixel pipeline. (x, y) are taken relative to
// state.origin like vertex positions (the caller sets state.origin to the lock's origin for the
// duration of a pipelined write); the colour enters as the iterated colour and `depth` is the
// finished 16-bit depth value (Z or W form), used without bias. Clip window, chroma key, alpha and
// depth tests, fog, blending, dithering and masks all apply; pixelsIn/pixelsOut count it.
void px_pipeline_pixel(PixelBoard &, int x, int y, uint8_t r, uint8_t g, uint8_t b, uint8_t a,
                       uint16_t depth);

// ---- Fog utilities (the gu functions of the same names call these) ------------------------------
float px_fog_index_to_w(int i);
void px_fog_generate_exp(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density);
void px_fog_generate_exp2(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density);
void px_fog_generate_linear(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float nearZ, float farZ);

// A GrColor_t in `format` as 0xAARRGGBB.
uint32_t px_colour_to_argb(uint32_t colour, int format);

}  // namespace zvb
