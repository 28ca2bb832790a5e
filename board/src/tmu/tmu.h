// The board's texture units (TMUs): texture memory, texel formats, NCC tables and palettes,
// filtering, mipmapping, the per-TMU texture combine and the TMU1 -> TMU0 chain.
//
// Two halves:
//  - TmuState: the registers of one TMU that a saved Glide state holds. Plain bytes, zero-filled,
//    so that saved states compare and hash by bytes.
//  - TmuMemory: the TMU's texture memory, its two NCC tables and its palette, plus the texel
//    decoding tables derived from them. Not part of a saved state.
//
// The tmu_* set-up functions take the arguments of the Glide call they serve after the
// TmuState& / TmuMemory&; they return false when they refuse the arguments (nothing changed).
//
// Sampling is split the way the rasteriser needs it: tex_setup() runs once per triangle (which
// TMUs are active, LOD base from the gradients, level addresses, the specialised span routine)
// and tex_span() runs per span, writing one ARGB texel colour (after the texture combine of
// every TMU, TMU1 feeding TMU0) for each pixel of the span.
#ifndef ZVGL_BOARD_TMU_TMU_H
#define ZVGL_BOARD_TMU_TMU_H

#include <glide2/glide.h>

#include <cstdint>
#include <type_traits>
#include <vector>

namespace zvb {

constexpr int kMaxTmu = 2;

// Registers of one TMU, as saved by grGlideGetState. Every field is a plain integer in the
// board's own encoding; the comment gives the range.
struct TmuState {
  uint32_t baseAddress;   // start address of the bound texture (multiple of 8)
  uint8_t format;         // GR_TEXFMT_* of the bound texture
  uint8_t largeLod;       // GR_LOD_* of the largest level (0 = 256)
  uint8_t smallLod;       // GR_LOD_* of the smallest level (8 = 1)
  uint8_t aspect;         // GR_ASPECT_*
  uint8_t evenOdd;        // GR_MIPMAPLEVELMASK_*: which levels the TMU holds
  uint8_t minFilter;      // GR_TEXTUREFILTER_*
  uint8_t magFilter;
  uint8_t clampS;         // GR_TEXTURECLAMP_*
  uint8_t clampT;
  uint8_t mipmapMode;     // GR_MIPMAP_*
  uint8_t lodBlend;       // trilinear flag: odd LODs invert the "one minus" of the factors
  int8_t lodBias;         // LOD bias in quarters, -32..31 (6-bit two's complement)
  uint8_t nccTable;       // 0 or 1: the NCC table that decodes YIQ/AYIQ texels
  int8_t detailBias;      // detail factor LOD bias, -32..31 whole LODs
  uint8_t detailScale;    // 0..7
  uint8_t detailMax;      // 0..255
  uint8_t rgbFunction;    // GR_COMBINE_FUNCTION_* of the texture combine, colour part
  uint8_t rgbFactor;      // GR_COMBINE_FACTOR_* (4 bits)
  uint8_t alphaFunction;
  uint8_t alphaFactor;
  uint8_t rgbInvert;      // 0/1
  uint8_t alphaInvert;    // 0/1
  uint8_t reserved[2];    // keeps the record a multiple of 4; always 0
};
static_assert(std::is_trivially_copyable_v<TmuState>, "TmuState is saved by copying bytes");
static_assert(sizeof(TmuState) <= 64, "TmuState fits the room left in the saved state");

struct TmuMemory;  // below, after the sampler's set-up records

// Reads past the end of a bound texture near the top of memory fall into this many zero bytes,
// so that the sampler needs no bounds test per texel (largest texture, all levels, 16-bit).
constexpr uint32_t kTmuMemorySlack = 180224;

// ---- State and memory set-up (one function per Glide call) --------------------------------

void tmu_memory_init(TmuMemory &mem, uint32_t sizeBytes);  // zero-filled, tables cleared
void tmu_reset(TmuState &st);                              // the defaults after grSstWinOpen

bool tmu_TexSource(TmuState &st, const TmuMemory &mem, FxU32 startAddress, FxU32 evenOdd,
                   const GrTexInfo *info);
bool tmu_TexClampMode(TmuState &st, GrTextureClampMode_t s, GrTextureClampMode_t t);
bool tmu_TexFilterMode(TmuState &st, GrTextureFilterMode_t minf, GrTextureFilterMode_t magf);
bool tmu_TexMipMapMode(TmuState &st, GrMipMapMode_t mode, FxBool lodBlend);
bool tmu_TexLodBiasValue(TmuState &st, float bias);
bool tmu_TexDetailControl(TmuState &st, int lodBias, FxU8 detailScale, float detailMax);
bool tmu_TexCombine(TmuState &st, GrCombineFunction_t rgbFunction, GrCombineFactor_t rgbFactor,
                    GrCombineFunction_t alphaFunction, GrCombineFactor_t alphaFactor,
                    FxBool rgbInvert, FxBool alphaInvert);
bool tmu_TexCombineFunction(TmuState &st, GrTextureCombineFnc_t fnc);
bool tmu_TexNCCTable(TmuState &st, GrNCCTable_t table);

bool tmu_TexDownloadTable(TmuMemory &mem, GrTexTable_t type, const void *data);
bool tmu_TexDownloadTablePartial(TmuMemory &mem, GrTexTable_t type, const void *data, int start,
                                 int end);
bool tmu_TexDownloadMipMap(TmuMemory &mem, FxU32 startAddress, FxU32 evenOdd,
                           const GrTexInfo *info);
bool tmu_TexDownloadMipMapLevel(TmuMemory &mem, FxU32 startAddress, GrLOD_t thisLod,
                                GrLOD_t largeLod, GrAspectRatio_t aspect,
                                GrTextureFormat_t format, FxU32 evenOdd, const void *data);
bool tmu_TexDownloadMipMapLevelPartial(TmuMemory &mem, FxU32 startAddress, GrLOD_t thisLod,
                                       GrLOD_t largeLod, GrAspectRatio_t aspect,
                                       GrTextureFormat_t format, FxU32 evenOdd, const void *data,
                                       int start, int end);

// grTexTextureMemRequired / grTexCalcMemRequired; 0 for arguments that name no texture.
FxU32 tmu_TexTextureMemRequired(FxU32 evenOdd, const GrTexInfo *info);
FxU32 tmu_TexCalcMemRequired(GrLOD_t lodmin, GrLOD_t lodmax, GrAspectRatio_t aspect,
                             GrTextureFormat_t fmt);
FxU32 tmu_TexMinAddress(const TmuMemory &mem);
FxU32 tmu_TexMaxAddress(const TmuMemory &mem);

// ---- Texel formats -----------------------------------------------------------------------

bool tmu_format_valid(int format);           // one of the 13 defined formats
int tmu_format_bytes(int format);            // 1 or 2
// Level size in texels of GR_LOD `lod` for `aspect` (E.5 table); false for bad arguments.
bool tmu_level_size(int lod, int aspect, int *width, int *height);
// Decodes one texel value of `format` to 0xAARRGGBB, with the given packed NCC table and
// palette (either may be null when the format does not use it). The reference for the tables.
uint32_t tmu_decode_texel(int format, uint32_t value, const uint32_t *ncc, const uint32_t *palette);
// Fills the sampler's 512-entry decoding table for `format` (see TmuMemory::lut).
void tmu_build_lut(uint32_t *lut, int format, const uint32_t *ncc, const uint32_t *palette);

// Marks the bytes begin..end-1 of texture memory as written: decoded copies overlapping them are
// no longer current.
void tmu_texels_written(TmuMemory &mem, uint32_t begin, uint32_t end);
// Makes the decoded copy of the bytes begin..end-1 current for `format` with the decoding table
// mem.lut (built for that format, NCC selection `ncc` and the present tables). Returns the
// pointer the range's texels are read through: the texel at byte address a (relative to the
// start of memory) is at [a] for 8-bit formats, at [a / 2] for 16-bit ones.
const uint32_t *tmu_texels_decode(TmuMemory &mem, uint32_t begin, uint32_t end, int format, int ncc);

// ---- Sampling ------------------------------------------------------------------------------

// What the rasteriser gives per TMU: the screen-space gradients of s/w and t/w of the triangle
// (texel units of the 256-wide virtual map, per pixel).
struct TmuGradients {
  float dsdx, dtdx, dsdy, dtdy;
};

// Parameters of one TMU at a pixel (the start of a span) and their change per pixel along x.
struct TmuCoords {
  float sow, tow, oow;
  float dsow, dtow, doow;
};

// One half (colour or alpha) of a texture combine unit, decoded from the function and factor:
// result = ((zeroOther ? 0 : Co) - (subLocal ? Cl : 0)) x f' + (add 1: Cl, 2: Al), clamped,
// then inverted if asked. f' is the factor (`factor` 0..7) or 255 minus it (`oneMinus`).
struct TexCombineUnit {
  uint8_t zeroOther, subLocal, add, factor, oneMinus, invert;
};

// Per-TMU part of a triangle's set-up.
struct TmuSetup {
  const uint8_t *mem;            // texture memory of this TMU (with its zero slack)
  const uint32_t *lut;           // 512-entry decoding table of the bound format
  const uint32_t *texels;        // decoded copy of the bound texture (see tmu_texels_decode); null: none
  uint32_t levelOffset[9];       // byte offset in mem of each level, by GR_LOD
  int8_t levelMap[9];            // level used for integer LOD n (the next held one); -1: none
  uint8_t widthLog2[9], heightLog2[9];
  int32_t lodBase;               // log2 of the largest texel gradient (s/w, t/w units), 8.8
  int32_t lodMin, lodMax;        // clamp range, 8.8 (GR_LOD units)
  int32_t lodBias;               // 8.8
  int32_t detailBias;            // 8.8
  int32_t detailScale, detailMax;
  int bytesPerTexel;             // 1 or 2
  bool hasTexture;               // the bound texture is valid and inside memory
  bool perPixelLod;              // the clamped LOD can vary over the triangle
  bool dither;                   // mipmap dither on (mode and hint)
  bool lodBlend;                 // trilinear flag
  bool minBilinear, magBilinear;
  bool wrapS, wrapT;
  bool sampleLocal;              // the combine reads this TMU's texel
  bool decal;                    // the combine is exactly "local texel"
  TexCombineUnit rgb, alpha;
};

using TexSpanFn = void (*)(const struct TexSetup &, const TmuCoords *, int x, int y, int n,
                           uint32_t *out);

struct TexSetup {
  TmuSetup tmu[kMaxTmu];
  int numActive;                 // 0: no texturing, 1: TMU0 only, 2: TMU1 feeds TMU0
  TexSpanFn span;                // routine chosen for this state
};

// A range of texture memory whose decoded copy is current: the bytes begin..end-1 decoded as
// `format` with the tables of `tableSerial` and NCC table `ncc` (both 0 for formats without
// tables).
struct TmuDecodedRange {
  uint32_t begin, end;
  int format, ncc;
  uint32_t tableSerial;
};

// Texture memory and tables of one TMU. The texel decoding table is a cache rebuilt when the
// bound format, the NCC selection or a table changes (see tex_setup).
struct TmuMemory {
  std::vector<uint8_t> bytes;   // size + kTmuMemorySlack bytes, the slack always zero
  uint32_t size = 0;            // usable texture memory in bytes
  uint32_t ncc[2][12] = {};     // the two NCC tables in their packed (hardware) form
  uint32_t palette[256] = {};   // 0x00RRGGBB
  uint32_t tableSerial = 1;     // bumped by every table download
  // Decoding cache: a texel value v decodes to lut[v & 255] | lut[256 + (v >> 8)].
  uint32_t lut[512] = {};
  int lutFormat = -1;           // format, NCC selection and table serial of the cached table
  int lutNcc = -1;
  uint32_t lutSerial = 0;
  // Decoded copy of texture memory for the fast span routines: a range of bytes [b, e) decoded
  // as one format has the entries b..e-1 (8-bit texels: one entry a byte; 16-bit: packed into
  // b..b+(e-b)/2-1, see tmu_texels_decode). Made on first use
  // (4 bytes per byte of memory and slack) and filled per bound texture; `decoded` lists the
  // ranges that are current. Every download drops the ranges it overlaps and bumps writeSerial.
  std::vector<uint32_t> texels;
  std::vector<TmuDecodedRange> decoded;
  uint32_t writeSerial = 1;
  // Set-up cache: the registers and mipmap dither hint of the last per-triangle set-up on this
  // memory and its result (all but the LOD base), valid while setupSerial equals tableSerial
  // and setupWrites equals writeSerial.
  TmuState setupState = {};
  bool setupHint = false;
  uint32_t setupSerial = 0;
  uint32_t setupWrites = 0;
  TmuSetup setup = {};
};

// Per-triangle set-up. `hintMipDither` is the GR_HINT_ALLOW_MIPMAP_DITHER hint. `mem` holds
// numTmu pointers (their decoding caches are refreshed here); a null one gives a TMU without
// texture memory, whose texels read as 0.
void tex_setup(TexSetup &ts, const TmuState *st, TmuMemory *const *mem, int numTmu,
               const TmuGradients *grad, bool hintMipDither);

// Whether a TMU's combine reads its own texel (decides whose s and t TMU1 takes without the
// GR_STWHINT_ST_DIFF_TMU1 hint).
bool tmu_samples_texture(const TmuState &st);

// Texel colours (0xAARRGGBB after TMU0's texture combine) of the n pixels (x..x+n-1, y).
// coords[i] are TMU i's parameters at pixel x. Out of range TMUs (i >= numActive) are not read.
inline void tex_span(const TexSetup &ts, const TmuCoords *coords, int x, int y, int n,
                     uint32_t *out) {
  ts.span(ts, coords, x, y, n, out);
}

// The vector unit of the specialised span routines tex_setup chooses: TEX_SIMD_BASE, the build's
// own (SSE2 on x86), or TEX_SIMD_AVX2 on x86-64 builds running on a machine that has it. The
// environment variable ZVGL_BOARD_SIMD (scalar, sse2) keeps the build's own.
enum TexSimd : int { TEX_SIMD_BASE = 1, TEX_SIMD_AVX2 = 2 };
int tex_simd();
// Tests: makes tex_setup choose the routines of `level` (at most the widest available; -1 for that
// widest) and returns the level now in use.
int tex_force_simd(int level);

// The generic (unspecialised) span routine, the reference for the specialised ones.
void tex_span_generic(const TexSetup &ts, const TmuCoords *coords, int x, int y, int n,
                      uint32_t *out);

// The bilinear blend of four texels (two horizontal 8-bit lerps by fu, one vertical by fv) in
// plain integer form; the sampler's vector form must match it.
uint32_t tmu_bilerp_reference(uint32_t c00, uint32_t c10, uint32_t c01, uint32_t c11, uint32_t fu,
                              uint32_t fv);

// ---- .3df texture files -------------------------------------------------------------------

FxBool tmu_3df_get_info(const char *filename, Gu3dfInfo *info);
FxBool tmu_3df_load(const char *filename, Gu3dfInfo *info);

}  // namespace zvb

#endif  // ZVGL_BOARD_TMU_TMU_H
