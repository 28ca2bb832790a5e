// Light sources, the one material, the light model, shading, colour material and the
// current colour and normal.
#pragma once

#include "vld/api/vld_context.h"
#include "vld/api/vld_layers.h"

// Sets the lighting group of a new context to the standard initial values, with every
// derived value and product made.
void KSP_vld_init_light_state(vld_context* ctx);

// Stores one light parameter (light is GL_LIGHT0 + i) with everything derived from it.
void KSP_vld_glLightfv(vld_context* ctx, GLenum light, GLenum pname, const GLfloat* params);
// A light was switched on or off: keeps lightHighestEnabled and the light's products.
void KSP_vld_update_light_source(int index, int bit);
// The light-parameter change count: raised only when a stored value really changed.
void KSP_vld_lcache_update_light(vld_context* ctx, int light, GLenum pname, const GLfloat* params);

// The shininess threshold of the specular term: below it a cosine's power adds under 1%.
float KSP_vld_shininess_base(float shininess);

void __vldim_Lightfv(GLenum light, GLenum pname, const GLfloat* params);
void __vldim_Lightf(GLenum light, GLenum pname, GLfloat param);
void __vldim_Lightiv(GLenum light, GLenum pname, const GLint* params);
void __vldim_Lighti(GLenum light, GLenum pname, GLint param);
void __vldim_LightModelfv(GLenum pname, const GLfloat* params);
void __vldim_LightModelf(GLenum pname, GLfloat param);
void __vldim_LightModeliv(GLenum pname, const GLint* params);
void __vldim_LightModeli(GLenum pname, GLint param);
void __vldim_ShadeModel(GLenum mode);
void __vldim_Materialfv(GLenum face, GLenum pname, const GLfloat* params);
void __vldim_Materialf(GLenum face, GLenum pname, GLfloat param);
void __vldim_Materialiv(GLenum face, GLenum pname, const GLint* params);
void __vldim_Materiali(GLenum face, GLenum pname, GLint param);
void __vldex_Materialfv(GLenum face, GLenum pname, const GLfloat* params);
void __vldim_ColorMaterial(GLenum face, GLenum mode);
void __vldim_GetMaterialfv(GLenum face, GLenum pname, GLfloat* params);
void __vldim_GetMaterialiv(GLenum face, GLenum pname, GLint* params);

void __vldim_Color4fv(const GLfloat* v);
void __vldex_Color4fv(const GLfloat* v);
void __vldim_Normal3fv(const GLfloat* v);

// The other colour and normal forms, by component type.
#define VLD_COLOR_FORMS(X)                                                                     \
    X(b, GLbyte) X(s, GLshort) X(i, GLint) X(ub, GLubyte) X(us, GLushort) X(ui, GLuint)        \
        X(f, GLfloat) X(d, GLdouble)
#define VLD_DECLARE_COLOR(sfx, T)                                                              \
    void __vldim_Color3##sfx(T r, T g, T b);                                                   \
    void __vldim_Color3##sfx##v(const T* v);                                                   \
    void __vldim_Color4##sfx(T r, T g, T b, T a);                                              \
    void __vldim_Color4##sfx##v(const T* v);
VLD_COLOR_FORMS(VLD_DECLARE_COLOR)
#undef VLD_DECLARE_COLOR
#define VLD_NORMAL_FORMS(X) X(b, GLbyte) X(s, GLshort) X(i, GLint) X(f, GLfloat) X(d, GLdouble)
#define VLD_DECLARE_NORMAL(sfx, T)                                                             \
    void __vldim_Normal3##sfx(T x, T y, T z);
VLD_NORMAL_FORMS(VLD_DECLARE_NORMAL)
#undef VLD_DECLARE_NORMAL
void __vldim_Normal3bv(const GLbyte* v);
void __vldim_Normal3sv(const GLshort* v);
void __vldim_Normal3iv(const GLint* v);
void __vldim_Normal3dv(const GLdouble* v);

// Component conversion of colours and normals, by type.
float KSP_vld_color_component(GLbyte c);
float KSP_vld_color_component(GLshort c);
float KSP_vld_color_component(GLint c);
float KSP_vld_color_component(GLubyte c);
float KSP_vld_color_component(GLushort c);
float KSP_vld_color_component(GLuint c);
float KSP_vld_color_component(GLfloat c);
float KSP_vld_color_component(GLdouble c);
