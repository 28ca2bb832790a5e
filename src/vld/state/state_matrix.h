// The transformation state of a context: matrix stacks, the products the pipeline reads,
// viewport and depth range, the SGIS multitexture selectors and the detail function.
#pragma once

#include "vld/api/vld_context.h"
#include "vld/api/vld_layers.h"

// Sets the stacks of a new context: identity everywhere, every depth at 1, modelview mode,
// texture set 0 selected; then runs both updates.
void KSP_vld_init_matrix_state(vld_context* ctx);

// The projection update: depth maps, clip bounds, mirror sign and the combined matrix.
void KSP_vld_set_matrix_proj(vld_context* ctx);
// The modelview update: the combined matrix, the eye and the lights in object space.
void KSP_vld_set_matrix_view(vld_context* ctx);

void KSP_vld_execute_glViewport(vld_context* ctx, GLint x, GLint y, GLsizei width, GLsizei height);
void KSP_vld_glDepthRange(vld_context* ctx, GLclampd zNear, GLclampd zFar);

// Turns the points of a detail function into grTexDetailControl's three parameters; -1 (and
// the outputs untouched) when the points give no falling detail curve.
int KSP_vld_glide_compute_detail(int count, const float* points, float* detailMax, int* detailBias,
                                 int* detailScale);

// Row-form product of two API-order matrices: out[i][j] = sum over k of a[i][k] * b[k][j].
void KSP_vld_mat_product(const float a[16], const float b[16], float out[16]);

void __vldim_MatrixMode(GLenum mode);
void __vldim_LoadMatrixf(const GLfloat* m);
void __vldim_LoadMatrixd(const GLdouble* m);
void __vldim_LoadIdentity();
void __vldim_MultMatrixf(const GLfloat* m);
void __vldim_MultMatrixd(const GLdouble* m);
void __vldim_PushMatrix();
void __vldim_PopMatrix();
void __vldim_Frustum(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear,
                     GLdouble zFar);
void __vldim_Ortho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear,
                   GLdouble zFar);
void __vldim_Translatef(GLfloat x, GLfloat y, GLfloat z);
void __vldim_Translated(GLdouble x, GLdouble y, GLdouble z);
void __vldim_Scalef(GLfloat x, GLfloat y, GLfloat z);
void __vldim_Scaled(GLdouble x, GLdouble y, GLdouble z);
void __vldim_Rotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z);
void __vldim_Rotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z);
void __vldim_Viewport(GLint x, GLint y, GLsizei width, GLsizei height);
void __vldim_DepthRange(GLclampd zNear, GLclampd zFar);
void __vldim_SelectTextureSGIS(GLenum target);
void __vldim_SelectTextureCoordSetSGIS(GLenum target);
void __vldim_SelectTextureTransformSGIS(GLenum target);
void __vldim_MultiTexCoord4fvSGIS(GLenum target, const GLfloat* v);
void __vldim_DetailTexFuncSGIS(GLenum target, GLsizei n, const GLfloat* points);
void __vldim_GetDetailTexFuncSGIS(GLenum target, GLfloat* points);

// The detail function of a texture object: the points as given and what the board takes.
struct vld_detail_function {
    int32_t count;
    float points[40];
    float detailMax;
    int32_t detailBias;
    int32_t detailScale;
};
// The detail function of the texture bound to the selected unit, or null when none is bound.
// Owned by the texture objects.
vld_detail_function* KSP_vld_txr_detail_function(vld_context* ctx);
