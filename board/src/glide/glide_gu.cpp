// glide_gu.cpp: the gu fog utilities; pure functions of the pixel half.
#include "glide/entry.h"

using namespace zvb;

FX_ENTRY float FX_CALL guFogTableIndexToW(int i) {
  ZVB_TRACE("guFogTableIndexToW %d", i);
  if (i < 0 || i >= GR_FOG_TABLE_SIZE) {
    refuse("guFogTableIndexToW", "index outside 0..63", 0);
    return 0.0f;
  }
  return px_fog_index_to_w(i);
}

FX_ENTRY void FX_CALL guFogGenerateExp(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density) {
  ZVB_TRACE("guFogGenerateExp %s %g", fogtable ? "table" : "null", density);
  if (!fogtable) {
    refuse("guFogGenerateExp", "null table", 1);
    return;
  }
  px_fog_generate_exp(fogtable, density);
}

FX_ENTRY void FX_CALL guFogGenerateExp2(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float density) {
  ZVB_TRACE("guFogGenerateExp2 %s %g", fogtable ? "table" : "null", density);
  if (!fogtable) {
    refuse("guFogGenerateExp2", "null table", 1);
    return;
  }
  px_fog_generate_exp2(fogtable, density);
}

FX_ENTRY void FX_CALL guFogGenerateLinear(GrFog_t fogtable[GR_FOG_TABLE_SIZE], float nearZ, float farZ) {
  ZVB_TRACE("guFogGenerateLinear %s %g %g", fogtable ? "table" : "null", nearZ, farZ);
  if (!fogtable) {
    refuse("guFogGenerateLinear", "null table", 1);
    return;
  }
  px_fog_generate_linear(fogtable, nearZ, farZ);
}
