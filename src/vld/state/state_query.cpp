// The render mode. Selection and feedback do not exist: every call is counted as a call of a
// function not implemented, and only GL_RENDER is taken.
#include "vld/api/vld_error.h"
#include "vld/api/vld_functab.h"
#include "vld/state/state.h"

// glRenderMode: told once and GL_INVALID_OPERATION at every call; then, inside glBegin/glEnd,
// GL_INVALID_OPERATION again, GL_RENDER taken, any other mode GL_INVALID_ENUM. The answer
// is always 0. As ever, the error recorded last is the one glGetError reads.
GLint __vldim_RenderMode(GLenum mode)
{
    vldFunctionNotImplemented(VLD_ROW_glRenderMode);
    vld_context* ctx = vldGc;
    if (!ctx)
        return 0;
    if (ctx->inBeginEnd) {
        VLD_GL_ERROR(ctx, GL_INVALID_OPERATION);
        return 0;
    }
    if (mode != GL_RENDER) {
        VLD_GL_ERROR_ENUM(ctx, mode);
        return 0;
    }
    ctx->renderMode = GL_RENDER;
    return 0;
}
