// TMU registers, texture memory layout, memory-required sizes, downloads of texels and tables.
#include "tmu/tmu.h"

#include <cmath>
#include <cstring>

namespace zvb {

namespace {

constexpr uint32_t kTwoMiB = 0x200000;

// log2 of the side ratio of each aspect and whether the long side is the width.
constexpr int kAspectRatioLog2[7] = {3, 2, 1, 0, 1, 2, 3};

bool lod_valid(int lod) { return lod >= GR_LOD_256 && lod <= GR_LOD_1; }
bool aspect_valid(int aspect) { return aspect >= GR_ASPECT_8x1 && aspect <= GR_ASPECT_1x8; }
bool mask_valid(FxU32 evenOdd) { return evenOdd >= 1 && evenOdd <= 3; }

// Whether a level of GR_LOD `lod` is held under the even/odd mask (GR_LOD_256 = 0 is even).
bool level_held(int lod, FxU32 evenOdd) {
  return (evenOdd & ((lod & 1) ? GR_MIPMAPLEVELMASK_ODD : GR_MIPMAPLEVELMASK_EVEN)) != 0;
}

// Bytes a level occupies in board memory: at least 2 texels on each side.
uint32_t level_board_bytes(int lod, int aspect, int format) {
  int w = 0, h = 0;
  tmu_level_size(lod, aspect, &w, &h);
  return uint32_t(w < 2 ? 2 : w) * uint32_t(h < 2 ? 2 : h) * uint32_t(tmu_format_bytes(format));
}

// Offset from the texture's start address of level `lod`: the held levels from largeLod on are
// stored one after the other, largest first, without padding.
uint32_t level_offset(int lod, int largeLod, int aspect, int format, FxU32 evenOdd) {
  uint32_t offset = 0;
  for (int l = largeLod; l < lod; ++l)
    if (level_held(l, evenOdd)) offset += level_board_bytes(l, aspect, format);
  return offset;
}

// Whether [start, start + bytes) lies in texture memory and within one 2 MiB bank.
bool range_writable(const TmuMemory &mem, uint32_t start, uint32_t bytes) {
  if (bytes == 0) return start <= mem.size;
  uint64_t end = uint64_t(start) + bytes;
  if (end > mem.size) return false;
  return start / kTwoMiB == uint32_t((end - 1) / kTwoMiB);
}

int8_t sign_extend6(int v) { return int8_t(((v & 0x3F) ^ 0x20) - 0x20); }

}  // namespace

bool tmu_format_valid(int format) {
  return format >= GR_TEXFMT_8BIT && format <= GR_TEXFMT_AP_88 && format != GR_TEXFMT_RSVD0 &&
         format != GR_TEXFMT_RSVD1;
}

int tmu_format_bytes(int format) { return format >= GR_TEXFMT_16BIT ? 2 : 1; }

bool tmu_level_size(int lod, int aspect, int *width, int *height) {
  if (!lod_valid(lod) || !aspect_valid(aspect)) return false;
  int longSide = 256 >> lod;
  int shortSide = longSide >> kAspectRatioLog2[aspect];
  if (shortSide < 1) shortSide = 1;
  bool wide = aspect <= GR_ASPECT_1x1;
  *width = wide ? longSide : shortSide;
  *height = wide ? shortSide : longSide;
  return true;
}

void tmu_memory_init(TmuMemory &mem, uint32_t sizeBytes) {
  mem.bytes.assign(size_t(sizeBytes) + kTmuMemorySlack, 0);
  mem.size = sizeBytes;
  std::memset(mem.ncc, 0, sizeof mem.ncc);
  std::memset(mem.palette, 0, sizeof mem.palette);
  mem.tableSerial = 1;
  mem.lutFormat = -1;
  mem.setupSerial = 0;
  mem.texels.clear();
  mem.decoded.clear();
  ++mem.writeSerial;
}

// Defaults after grSstWinOpen: clamp, point sampling, no mipmapping, no bias, detail (0, 1, 1.0),
// combine ZERO/ZERO (texel 0), LOD range GR_LOD_1..GR_LOD_1, NCC table 0.
void tmu_reset(TmuState &st) {
  std::memset(&st, 0, sizeof st);
  st.format = GR_TEXFMT_RGB_565;
  st.largeLod = GR_LOD_1;
  st.smallLod = GR_LOD_1;
  st.aspect = GR_ASPECT_1x1;
  st.evenOdd = GR_MIPMAPLEVELMASK_BOTH;
  st.clampS = GR_TEXTURECLAMP_CLAMP;
  st.clampT = GR_TEXTURECLAMP_CLAMP;
  st.minFilter = GR_TEXTUREFILTER_POINT_SAMPLED;
  st.magFilter = GR_TEXTUREFILTER_POINT_SAMPLED;
  st.mipmapMode = GR_MIPMAP_DISABLE;
  st.detailBias = 0;
  st.detailScale = 1;
  st.detailMax = 255;
  st.rgbFunction = GR_COMBINE_FUNCTION_ZERO;
  st.rgbFactor = GR_COMBINE_FACTOR_ZERO;
  st.alphaFunction = GR_COMBINE_FUNCTION_ZERO;
  st.alphaFactor = GR_COMBINE_FACTOR_ZERO;
}

FxU32 tmu_TexTextureMemRequired(FxU32 evenOdd, const GrTexInfo *info) {
  if (!info || !mask_valid(evenOdd) || !lod_valid(info->largeLod) || !lod_valid(info->smallLod) ||
      info->largeLod > info->smallLod || !aspect_valid(info->aspectRatio) ||
      !tmu_format_valid(info->format))
    return 0;
  uint32_t bytes = 0;
  for (int l = info->largeLod; l <= info->smallLod; ++l)
    if (level_held(l, evenOdd)) bytes += level_board_bytes(l, info->aspectRatio, info->format);
  return (bytes + 7u) & ~7u;
}

FxU32 tmu_TexCalcMemRequired(GrLOD_t lodmin, GrLOD_t lodmax, GrAspectRatio_t aspect,
                             GrTextureFormat_t fmt) {
  GrTexInfo info{lodmin, lodmax, aspect, fmt, nullptr};
  return tmu_TexTextureMemRequired(GR_MIPMAPLEVELMASK_BOTH, &info);
}

FxU32 tmu_TexMinAddress(const TmuMemory &) { return 0; }

FxU32 tmu_TexMaxAddress(const TmuMemory &mem) { return mem.size >= 8 ? mem.size - 8 : 0; }

// Binds a texture for sampling. Refused (state unchanged) when the description names no texture
// or the texture does not fit in this TMU's memory. The low three address bits are not stored,
// as in the hardware's base-address register.
bool tmu_TexSource(TmuState &st, const TmuMemory &mem, FxU32 startAddress, FxU32 evenOdd,
                   const GrTexInfo *info) {
  if (!info || !mask_valid(evenOdd) || !lod_valid(info->largeLod) || !lod_valid(info->smallLod) ||
      info->largeLod > info->smallLod || !aspect_valid(info->aspectRatio) ||
      !tmu_format_valid(info->format))
    return false;
  FxU32 bytes = tmu_TexTextureMemRequired(evenOdd, info);
  uint32_t start = startAddress & ~7u;
  if (start > tmu_TexMaxAddress(mem) || uint64_t(start) + bytes > mem.size) return false;
  st.baseAddress = start;
  st.evenOdd = uint8_t(evenOdd);
  st.format = uint8_t(info->format);
  st.largeLod = uint8_t(info->largeLod);
  st.smallLod = uint8_t(info->smallLod);
  st.aspect = uint8_t(info->aspectRatio);
  return true;
}

bool tmu_TexClampMode(TmuState &st, GrTextureClampMode_t s, GrTextureClampMode_t t) {
  st.clampS = s == GR_TEXTURECLAMP_WRAP ? GR_TEXTURECLAMP_WRAP : GR_TEXTURECLAMP_CLAMP;
  st.clampT = t == GR_TEXTURECLAMP_WRAP ? GR_TEXTURECLAMP_WRAP : GR_TEXTURECLAMP_CLAMP;
  return (s == GR_TEXTURECLAMP_WRAP || s == GR_TEXTURECLAMP_CLAMP) &&
         (t == GR_TEXTURECLAMP_WRAP || t == GR_TEXTURECLAMP_CLAMP);
}

bool tmu_TexFilterMode(TmuState &st, GrTextureFilterMode_t minf, GrTextureFilterMode_t magf) {
  st.minFilter = minf == GR_TEXTUREFILTER_BILINEAR ? 1 : 0;
  st.magFilter = magf == GR_TEXTUREFILTER_BILINEAR ? 1 : 0;
  return (minf == 0 || minf == 1) && (magf == 0 || magf == 1);
}

bool tmu_TexMipMapMode(TmuState &st, GrMipMapMode_t mode, FxBool lodBlend) {
  if (mode < GR_MIPMAP_DISABLE || mode > GR_MIPMAP_NEAREST_DITHER) return false;
  st.mipmapMode = uint8_t(mode);
  st.lodBlend = lodBlend ? 1 : 0;
  return true;
}

// The bias register holds a 6-bit count of quarters: q = (int)((bias + 0.125) / 0.25) & 0x3F.
bool tmu_TexLodBiasValue(TmuState &st, float bias) {
  float b = bias == bias ? bias : 0.0f;
  if (b > 1000.0f) b = 1000.0f;
  if (b < -1000.0f) b = -1000.0f;
  st.lodBias = sign_extend6(int((b + 0.125f) / 0.25f));
  return bias >= -8.0f && bias <= 7.75f;
}

// Detail factor fields: bias 6-bit signed whole LODs, scale 3 bits, max 8 bits (max x 255).
bool tmu_TexDetailControl(TmuState &st, int lodBias, FxU8 detailScale, float detailMax) {
  float m = detailMax == detailMax ? detailMax : 0.0f;
  m = m < 0.0f ? 0.0f : (m > 1.0f ? 1.0f : m);
  st.detailBias = sign_extend6(lodBias);
  st.detailScale = uint8_t(detailScale & 7);
  st.detailMax = uint8_t(uint32_t(m * 255.0f));
  return lodBias >= -32 && lodBias <= 31 && detailScale <= 7 && detailMax >= 0.0f &&
         detailMax <= 1.0f;
}

bool tmu_TexCombine(TmuState &st, GrCombineFunction_t rgbFunction, GrCombineFactor_t rgbFactor,
                    GrCombineFunction_t alphaFunction, GrCombineFactor_t alphaFactor,
                    FxBool rgbInvert, FxBool alphaInvert) {
  st.rgbFunction = uint8_t(rgbFunction >= 0 && rgbFunction <= 0x10 ? rgbFunction : 0xF);
  st.rgbFactor = uint8_t(rgbFactor & 0xF);
  st.alphaFunction = uint8_t(alphaFunction >= 0 && alphaFunction <= 0x10 ? alphaFunction : 0xF);
  st.alphaFactor = uint8_t(alphaFactor & 0xF);
  st.rgbInvert = rgbInvert ? 1 : 0;
  st.alphaInvert = alphaInvert ? 1 : 0;
  return rgbFunction >= 0 && rgbFunction <= 0x10 && alphaFunction >= 0 && alphaFunction <= 0x10;
}

// The shorthand table of grTexCombineFunction: the same function and factor for colour and alpha.
bool tmu_TexCombineFunction(TmuState &st, GrTextureCombineFnc_t fnc) {
  struct Row { int function, factor; bool invert; };
  static const Row rows[] = {
      {GR_COMBINE_FUNCTION_ZERO, GR_COMBINE_FACTOR_ZERO, false},                 // ZERO
      {GR_COMBINE_FUNCTION_LOCAL, GR_COMBINE_FACTOR_ZERO, false},                // DECAL
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_ONE, false},           // OTHER
      {GR_COMBINE_FUNCTION_SCALE_OTHER_ADD_LOCAL, GR_COMBINE_FACTOR_ONE, false}, // ADD
      {GR_COMBINE_FUNCTION_SCALE_OTHER, GR_COMBINE_FACTOR_LOCAL, false},         // MULTIPLY
      {GR_COMBINE_FUNCTION_SCALE_OTHER_MINUS_LOCAL, GR_COMBINE_FACTOR_ONE, false},  // SUBTRACT
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_ONE_MINUS_DETAIL_FACTOR, false},  // DETAIL
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_DETAIL_FACTOR, false},       // DETAIL_OTHER
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_ONE_MINUS_LOD_FRACTION, false},  // TRI_ODD
      {GR_COMBINE_FUNCTION_BLEND, GR_COMBINE_FACTOR_LOD_FRACTION, false},        // TRI_EVEN
      {GR_COMBINE_FUNCTION_ZERO, GR_COMBINE_FACTOR_ZERO, true},                  // ONE
  };
  if (fnc < 0 || fnc > GR_TEXTURECOMBINE_ONE) return false;
  const Row &r = rows[fnc];
  return tmu_TexCombine(st, r.function, r.factor, r.function, r.factor, r.invert, r.invert);
}

bool tmu_TexNCCTable(TmuState &st, GrNCCTable_t table) {
  if (table > GR_NCCTABLE_NCC1) return false;
  st.nccTable = uint8_t(table);
  return true;
}

// NCC tables arrive as GuNccTable; only their packed form is read, as by the hardware.
bool tmu_TexDownloadTable(TmuMemory &mem, GrTexTable_t type, const void *data) {
  if (!data || type > GR_TEXTABLE_PALETTE) return false;
  if (type == GR_TEXTABLE_PALETTE) return tmu_TexDownloadTablePartial(mem, type, data, 0, 255);
  GuNccTable table;
  std::memcpy(&table, data, sizeof table);
  std::memcpy(mem.ncc[type], table.packed_data, sizeof mem.ncc[type]);
  ++mem.tableSerial;
  return true;
}

// Palette entries start..end; an NCC table is always loaded whole.
bool tmu_TexDownloadTablePartial(TmuMemory &mem, GrTexTable_t type, const void *data, int start,
                                 int end) {
  if (!data || type > GR_TEXTABLE_PALETTE) return false;
  if (type != GR_TEXTABLE_PALETTE) return tmu_TexDownloadTable(mem, type, data);
  if (start < 0 || end > 255 || start > end) return false;
  const uint8_t *src = static_cast<const uint8_t *>(data);
  for (int i = start; i <= end; ++i) {
    uint32_t v;
    std::memcpy(&v, src + 4 * i, 4);
    mem.palette[i] = v & 0x00FFFFFFu;
  }
  ++mem.tableSerial;
  return true;
}

// Rows first..last of one level. Host texels are tightly packed rows (1 or 2 bytes each, 16-bit
// texels in host order); board memory keeps the same row stride inside the level's slot, and
// 16-bit texels little-endian.
static bool download_rows(TmuMemory &mem, FxU32 startAddress, GrLOD_t thisLod, GrLOD_t largeLod,
                          GrAspectRatio_t aspect, GrTextureFormat_t format, FxU32 evenOdd,
                          const void *data, int first, int last, bool wholeLevel) {
  if (!data || !lod_valid(thisLod) || !lod_valid(largeLod) || thisLod < largeLod ||
      !aspect_valid(aspect) || !tmu_format_valid(format) || !mask_valid(evenOdd))
    return false;
  int w = 0, h = 0;
  tmu_level_size(thisLod, aspect, &w, &h);
  if (first < 0 || last >= h || first > last) return false;
  if (!level_held(thisLod, evenOdd)) return true;
  uint32_t level = (startAddress & ~7u) + level_offset(thisLod, largeLod, aspect, format, evenOdd);
  uint32_t slot = level_board_bytes(thisLod, aspect, format);
  uint32_t rowBytes = uint32_t(w) * uint32_t(tmu_format_bytes(format));
  if (uint64_t(startAddress) + slot > 0xFFFFFFFFull) return false;
  // A whole level must fit with its slot; rows only need their own bytes.
  uint32_t begin = wholeLevel ? level : level + uint32_t(first) * rowBytes;
  uint32_t bytes = wholeLevel ? slot : uint32_t(last - first + 1) * rowBytes;
  if (!range_writable(mem, begin, bytes)) return false;
  const uint32_t at = level + uint32_t(first) * rowBytes;
  const uint32_t count = uint32_t(last - first + 1) * rowBytes;
  std::memcpy(mem.bytes.data() + at, data, count);
  tmu_texels_written(mem, at, at + count);
  return true;
}

bool tmu_TexDownloadMipMapLevel(TmuMemory &mem, FxU32 startAddress, GrLOD_t thisLod,
                                GrLOD_t largeLod, GrAspectRatio_t aspect,
                                GrTextureFormat_t format, FxU32 evenOdd, const void *data) {
  int w = 0, h = 0;
  if (!tmu_level_size(thisLod, aspect, &w, &h)) return false;
  return download_rows(mem, startAddress, thisLod, largeLod, aspect, format, evenOdd, data, 0,
                       h - 1, true);
}

bool tmu_TexDownloadMipMapLevelPartial(TmuMemory &mem, FxU32 startAddress, GrLOD_t thisLod,
                                       GrLOD_t largeLod, GrAspectRatio_t aspect,
                                       GrTextureFormat_t format, FxU32 evenOdd, const void *data,
                                       int start, int end) {
  return download_rows(mem, startAddress, thisLod, largeLod, aspect, format, evenOdd, data, start,
                       end, false);
}

// Every level largeLod..smallLod from consecutive host data; levels outside the mask are
// stepped over. The whole texture is checked first, so a refusal writes nothing.
bool tmu_TexDownloadMipMap(TmuMemory &mem, FxU32 startAddress, FxU32 evenOdd,
                           const GrTexInfo *info) {
  FxU32 bytes = tmu_TexTextureMemRequired(evenOdd, info);
  if (!info || !info->data || !mask_valid(evenOdd) || !lod_valid(info->largeLod)) return false;
  if (bytes == 0 && tmu_TexTextureMemRequired(GR_MIPMAPLEVELMASK_BOTH, info) == 0) return false;
  if (!range_writable(mem, startAddress & ~7u, bytes)) return false;
  const uint8_t *src = static_cast<const uint8_t *>(info->data);
  for (int l = info->largeLod; l <= info->smallLod; ++l) {
    if (!tmu_TexDownloadMipMapLevel(mem, startAddress, l, info->largeLod, info->aspectRatio,
                                    info->format, evenOdd, src))
      return false;
    int w = 0, h = 0;
    tmu_level_size(l, info->aspectRatio, &w, &h);
    src += size_t(w) * size_t(h) * size_t(tmu_format_bytes(info->format));
  }
  return true;
}

}  // namespace zvb
