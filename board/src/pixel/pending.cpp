// pending.cpp: entry points whose rasterising bodies are still in progress. They draw nothing yet;
// each moves to its own file (setup, spans, primitives, aa, fog) as it is written.
#include "pixel/pixel.h"

namespace zvb {

void px_BufferClear(PixelBoard &, GrColor_t, GrAlpha_t, FxU16) {}
void px_DrawTriangle(PixelBoard &, const GrVertex *, const GrVertex *, const GrVertex *) {}
void px_DrawPlanarPolygonVertexList(PixelBoard &, int, const GrVertex *) {}
void px_DrawPolygonVertexList(PixelBoard &, int, const GrVertex *) {}
void px_DrawLine(PixelBoard &, const GrVertex *, const GrVertex *) {}
void px_DrawPoint(PixelBoard &, const GrVertex *) {}
void px_AADrawTriangle(PixelBoard &, const GrVertex *, const GrVertex *, const GrVertex *, FxBool, FxBool,
                       FxBool) {}
void px_AADrawPolygonVertexList(PixelBoard &, int, const GrVertex *) {}
void px_AADrawLine(PixelBoard &, const GrVertex *, const GrVertex *) {}
void px_AADrawPoint(PixelBoard &, const GrVertex *) {}
void px_pipeline_pixel(PixelBoard &, int, int, uint8_t, uint8_t, uint8_t, uint8_t, uint16_t) {}
float px_fog_index_to_w(int) { return 0.0f; }
void px_fog_generate_exp(GrFog_t *, float) {}
void px_fog_generate_exp2(GrFog_t *, float) {}
void px_fog_generate_linear(GrFog_t *, float, float) {}

}  // namespace zvb
