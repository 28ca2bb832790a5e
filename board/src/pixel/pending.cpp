// pending.cpp: antialiased primitives, still in progress; they draw nothing yet.
#include "pixel/pixel.h"

namespace zvb {

void px_AADrawTriangle(PixelBoard &, const GrVertex *, const GrVertex *, const GrVertex *, FxBool, FxBool,
                       FxBool) {}
void px_AADrawPolygonVertexList(PixelBoard &, int, const GrVertex *) {}
void px_AADrawLine(PixelBoard &, const GrVertex *, const GrVertex *) {}
void px_AADrawPoint(PixelBoard &, const GrVertex *) {}

}  // namespace zvb
