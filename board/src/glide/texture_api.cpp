// texture_api.cpp: the texture calls (grTex*) and the .3df utilities (gu3df*). Each checks its
// arguments, records its trace line, and changes the TMU registers or texture memory of the
// selected board once the board has finished the work queued before it, so that primitives
// already queued still see the textures of their time.
#include "glide/entry.h"
#include "tmu/tmu_board.h"

using namespace zvb;

namespace {

// The board and TMU a call acts on, or null when there is none (a bad TMU is reported).
Board *tmu_board(const char *call, GrChipID_t tmu) {
  Board *b = selected();
  if (!b) return nullptr;
  if (tmu < 0 || tmu >= b->cfg.numTmu) {
    refuse(call, "no such TMU on this board", 1);
    return nullptr;
  }
  if (b->open) board_idle(*b);
  return b;
}

// Applies a register change to TMU `tmu` of `b` (a refused change leaves the registers as they
// were and is reported).
template <typename Fn>
void change_state(Board &b, GrChipID_t tmu, const char *call, const char *why, int fatal, Fn fn) {
  TmuState st = b.px.state.tmu[tmu];
  if (!fn(st)) {
    refuse(call, why, fatal);
    return;
  }
  b.px.state.tmu[tmu] = st;
}

// Texture memory of TMU `tmu`, or null (reported) when it cannot be allocated. The board's pixels
// see the memory of every TMU from the first texture call on.
TmuMemory *memory(Board &b, GrChipID_t tmu, const char *call) {
  for (int i = 0; i < b.cfg.numTmu && i < GLIDE_NUM_TMU; ++i)
    if (!b.px.tmuMemory[i])
      b.px.tmuMemory[i] = tmu_board_memory(b.index, i, uint32_t(b.cfg.tmuRamMb) << 20);
  TmuMemory *m = b.px.tmuMemory[tmu];
  if (!m) refuse(call, "texture memory cannot be allocated", 1);
  return m;
}

}  // namespace

FX_ENTRY void FX_CALL grTexSource(GrChipID_t tmu, FxU32 startAddress, FxU32 evenOdd,
                                  GrTexInfo *info) {
  ZVB_TRACE("grTexSource %d %u %u %s", tmu, startAddress, evenOdd,
            info ? "info" : "null");
  Board *b = tmu_board("grTexSource", tmu);
  if (!b) return;
  TmuMemory *m = memory(*b, tmu, "grTexSource");
  if (!m) return;
  change_state(*b, tmu, "grTexSource", "no texture of this TMU's memory", 1,
               [&](TmuState &st) { return tmu_TexSource(st, *m, startAddress, evenOdd, info); });
}

FX_ENTRY void FX_CALL grTexClampMode(GrChipID_t tmu, GrTextureClampMode_t s_clampmode,
                                     GrTextureClampMode_t t_clampmode) {
  ZVB_TRACE("grTexClampMode %d %d %d", tmu, s_clampmode, t_clampmode);
  if (Board *b = tmu_board("grTexClampMode", tmu))
    change_state(*b, tmu, "grTexClampMode", "unknown clamp mode", 0, [&](TmuState &st) {
      return tmu_TexClampMode(st, s_clampmode, t_clampmode);
    });
}

FX_ENTRY void FX_CALL grTexFilterMode(GrChipID_t tmu, GrTextureFilterMode_t minfilter_mode,
                                      GrTextureFilterMode_t magfilter_mode) {
  ZVB_TRACE("grTexFilterMode %d %d %d", tmu, minfilter_mode, magfilter_mode);
  if (Board *b = tmu_board("grTexFilterMode", tmu))
    change_state(*b, tmu, "grTexFilterMode", "unknown filter mode", 0, [&](TmuState &st) {
      return tmu_TexFilterMode(st, minfilter_mode, magfilter_mode);
    });
}

FX_ENTRY void FX_CALL grTexMipMapMode(GrChipID_t tmu, GrMipMapMode_t mode, FxBool lodBlend) {
  ZVB_TRACE("grTexMipMapMode %d %d %d", tmu, mode, lodBlend);
  if (Board *b = tmu_board("grTexMipMapMode", tmu))
    change_state(*b, tmu, "grTexMipMapMode", "invalid mipmap mode", 0,
                 [&](TmuState &st) { return tmu_TexMipMapMode(st, mode, lodBlend); });
}

FX_ENTRY void FX_CALL grTexLodBiasValue(GrChipID_t tmu, float bias) {
  ZVB_TRACE("grTexLodBiasValue %d %g", tmu, double(bias));
  if (Board *b = tmu_board("grTexLodBiasValue", tmu))
    change_state(*b, tmu, "grTexLodBiasValue", "bias outside -8.0..7.75", 0,
                 [&](TmuState &st) { return tmu_TexLodBiasValue(st, bias); });
}

FX_ENTRY void FX_CALL grTexDetailControl(GrChipID_t tmu, int lod_bias, FxU8 detail_scale,
                                         float detail_max) {
  ZVB_TRACE("grTexDetailControl %d %d %u %g", tmu, lod_bias, detail_scale, double(detail_max));
  if (Board *b = tmu_board("grTexDetailControl", tmu))
    change_state(*b, tmu, "grTexDetailControl",
                 "lod_bias outside -32..31, detail_scale outside 0..7 or detail_max outside 0..1",
                 1, [&](TmuState &st) {
                   return tmu_TexDetailControl(st, lod_bias, detail_scale, detail_max);
                 });
}

FX_ENTRY void FX_CALL grTexCombine(GrChipID_t tmu, GrCombineFunction_t rgb_function,
                                   GrCombineFactor_t rgb_factor,
                                   GrCombineFunction_t alpha_function,
                                   GrCombineFactor_t alpha_factor, FxBool rgb_invert,
                                   FxBool alpha_invert) {
  ZVB_TRACE("grTexCombine %d %d %d %d %d %d %d", tmu, rgb_function, rgb_factor, alpha_function,
            alpha_factor, rgb_invert, alpha_invert);
  if (Board *b = tmu_board("grTexCombine", tmu))
    change_state(*b, tmu, "grTexCombine", "unknown combine function", 1, [&](TmuState &st) {
      return tmu_TexCombine(st, rgb_function, rgb_factor, alpha_function, alpha_factor,
                            rgb_invert, alpha_invert);
    });
}

FX_ENTRY void FX_CALL grTexCombineFunction(GrChipID_t tmu, GrTextureCombineFnc_t fnc) {
  ZVB_TRACE("grTexCombineFunction %d %d", tmu, fnc);
  if (Board *b = tmu_board("grTexCombineFunction", tmu))
    change_state(*b, tmu, "grTexCombineFunction", "unknown texture combine function", 1,
                 [&](TmuState &st) { return tmu_TexCombineFunction(st, fnc); });
}

FX_ENTRY void FX_CALL grTexNCCTable(GrChipID_t tmu, GrNCCTable_t table) {
  ZVB_TRACE("grTexNCCTable %d %u", tmu, table);
  if (Board *b = tmu_board("grTexNCCTable", tmu))
    change_state(*b, tmu, "grTexNCCTable", "unknown NCC table", 1,
                 [&](TmuState &st) { return tmu_TexNCCTable(st, table); });
}

// Tables go to every TMU of a Voodoo2-class board at once (its Glide broadcasts them), to the
// named TMU on a Voodoo Graphics board.
static void download_table(const char *call, GrChipID_t tmu, GrTexTable_t type, void *data,
                           int start, int end, bool partial) {
  Board *b = tmu_board(call, tmu);
  if (!b) return;
  if (!data || type > GR_TEXTABLE_PALETTE) {
    refuse(call, !data ? "null table" : "unknown table type", 1);
    return;
  }
  int first = b->cfg.kind == KIND_VOODOO ? tmu : 0;
  int last = b->cfg.kind == KIND_VOODOO ? tmu : b->cfg.numTmu - 1;
  for (int i = first; i <= last; ++i) {
    TmuMemory *m = memory(*b, i, call);
    if (!m) return;
    bool ok = partial ? tmu_TexDownloadTablePartial(*m, type, data, start, end)
                      : tmu_TexDownloadTable(*m, type, data);
    if (!ok) {
      refuse(call, "palette range outside 0..255", 1);
      return;
    }
  }
}

FX_ENTRY void FX_CALL grTexDownloadTable(GrChipID_t tmu, GrTexTable_t type, void *data) {
  ZVB_TRACE("grTexDownloadTable %d %u %s", tmu, type, data ? "table" : "null");
  download_table("grTexDownloadTable", tmu, type, data, 0, 255, false);
}

FX_ENTRY void FX_CALL grTexDownloadTablePartial(GrChipID_t tmu, GrTexTable_t type, void *data,
                                                int start, int end) {
  ZVB_TRACE("grTexDownloadTablePartial %d %u %s %d %d", tmu, type, data ? "table" : "null",
            start, end);
  download_table("grTexDownloadTablePartial", tmu, type, data, start, end, true);
}

FX_ENTRY void FX_CALL grTexDownloadMipMap(GrChipID_t tmu, FxU32 startAddress, FxU32 evenOdd,
                                          GrTexInfo *info) {
  ZVB_TRACE("grTexDownloadMipMap %d %u %u %s", tmu, startAddress, evenOdd,
            info ? "info" : "null");
  Board *b = tmu_board("grTexDownloadMipMap", tmu);
  if (!b) return;
  TmuMemory *m = memory(*b, tmu, "grTexDownloadMipMap");
  if (m && !tmu_TexDownloadMipMap(*m, startAddress, evenOdd, info))
    refuse("grTexDownloadMipMap",
           "bad texture, or outside texture memory, or across a 2 MB boundary", 1);
}

FX_ENTRY void FX_CALL grTexDownloadMipMapLevel(GrChipID_t tmu, FxU32 startAddress,
                                               GrLOD_t thisLod, GrLOD_t largeLod,
                                               GrAspectRatio_t aspectRatio,
                                               GrTextureFormat_t format, FxU32 evenOdd,
                                               void *data) {
  ZVB_TRACE("grTexDownloadMipMapLevel %d %u %d %d %d %d %u %s", tmu, startAddress, thisLod,
            largeLod, aspectRatio, format, evenOdd, data ? "data" : "null");
  Board *b = tmu_board("grTexDownloadMipMapLevel", tmu);
  if (!b) return;
  TmuMemory *m = memory(*b, tmu, "grTexDownloadMipMapLevel");
  if (m && !tmu_TexDownloadMipMapLevel(*m, startAddress, thisLod, largeLod, aspectRatio, format,
                                       evenOdd, data))
    refuse("grTexDownloadMipMapLevel",
           "bad level, or outside texture memory, or across a 2 MB boundary", 1);
}

FX_ENTRY void FX_CALL grTexDownloadMipMapLevelPartial(GrChipID_t tmu, FxU32 startAddress,
                                                      GrLOD_t thisLod, GrLOD_t largeLod,
                                                      GrAspectRatio_t aspectRatio,
                                                      GrTextureFormat_t format, FxU32 evenOdd,
                                                      void *data, int start, int end) {
  ZVB_TRACE("grTexDownloadMipMapLevelPartial %d %u %d %d %d %d %u %s %d %d", tmu, startAddress,
            thisLod, largeLod, aspectRatio, format, evenOdd, data ? "data" : "null", start, end);
  Board *b = tmu_board("grTexDownloadMipMapLevelPartial", tmu);
  if (!b) return;
  TmuMemory *m = memory(*b, tmu, "grTexDownloadMipMapLevelPartial");
  if (m && !tmu_TexDownloadMipMapLevelPartial(*m, startAddress, thisLod, largeLod, aspectRatio,
                                              format, evenOdd, data, start, end))
    refuse("grTexDownloadMipMapLevelPartial",
           "bad rows, or outside texture memory, or across a 2 MB boundary", 1);
}

FX_ENTRY FxU32 FX_CALL grTexTextureMemRequired(FxU32 evenOdd, GrTexInfo *info) {
  ZVB_TRACE("grTexTextureMemRequired %u %s", evenOdd, info ? "info" : "null");
  return tmu_TexTextureMemRequired(evenOdd, info);
}

FX_ENTRY FxU32 FX_CALL grTexCalcMemRequired(GrLOD_t lodmin, GrLOD_t lodmax,
                                            GrAspectRatio_t aspect, GrTextureFormat_t fmt) {
  ZVB_TRACE("grTexCalcMemRequired %d %d %d %d", lodmin, lodmax, aspect, fmt);
  return tmu_TexCalcMemRequired(lodmin, lodmax, aspect, fmt);
}

FX_ENTRY FxU32 FX_CALL grTexMinAddress(GrChipID_t tmu) {
  ZVB_TRACE("grTexMinAddress %d", tmu);
  return 0;
}

FX_ENTRY FxU32 FX_CALL grTexMaxAddress(GrChipID_t tmu) {
  ZVB_TRACE("grTexMaxAddress %d", tmu);
  Board *b = selected();
  if (!b || tmu < 0 || tmu >= b->cfg.numTmu) return 0;
  return (FxU32(b->cfg.tmuRamMb) << 20) - 8;
}

FX_ENTRY FxBool FX_CALL gu3dfGetInfo(const char *filename, Gu3dfInfo *info) {
  ZVB_TRACE("gu3dfGetInfo %s %s", filename ? filename : "null", info ? "info" : "null");
  return tmu_3df_get_info(filename, info);
}

FX_ENTRY FxBool FX_CALL gu3dfLoad(const char *filename, Gu3dfInfo *data) {
  ZVB_TRACE("gu3dfLoad %s %s", filename ? filename : "null", data ? "info" : "null");
  return tmu_3df_load(filename, data);
}
