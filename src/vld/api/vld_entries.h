// vld_entries.h: the one table of the library's entry points.
//
// Every table of entry points derives from the lists below, expanded with X-macros: the
// exported entry frames, the __vldim_ / __vldlc_ / __vlddo_ prototypes, the per-function
// call counters, the name table of the stub reporter, the look-up table of
// wglGetProcAddress and the Windows .def file. No other list of these names may exist.
//
// The lists need no types to be expanded for names alone; an expansion that uses the
// signature columns needs <zvgl/gl.h> and <zvgl/wgl.h> first.
//
// ---------------------------------------------------------------------------------------------
// VLD_GL_ENTRIES(VLD_GL): the name table, 418 rows.
//
//   VLD_GL(ret, name, params, args, kind, impl)
//
//   ret     return type of the exported function
//   name    the function's exported name; its row number is its position (VLD_ROW_<name>).
//           Rows stand in ASCII order within four blocks: NONE, the GDI names, the gl
//           names, the wgl names. The stub reporter passes the row number.
//   params  parenthesised parameter list with names, as in <zvgl/gl.h> / <zvgl/wgl.h>
//   args    parenthesised argument names, to forward params unchanged
//   kind    how the exported function is made (a token, for dispatch by ## pasting):
//
//     ROUTED            the routing rule: vldGc null -> return; compileFlag -> __vldlc_<impl>,
//                       then vldGc is read again; executeFlag -> __vldim_<impl>.
//     ROUTED_ENABLE     ROUTED, and when executeFlag is clear and the capability is
//                       GL_COLOR_MATERIAL, the colour-material bit of enableBits is set
//                       directly (glEnable only; glDisable has no such line).
//     ROUTED_STENCILOP  both branches call __vldlc_<impl>: the compile branch and the
//                       execute branch (glStencilOp).
//     QUERY             vldGc not null -> __vldim_<impl>, whatever the flags; never a list.
//     QUERY_EXEC        as QUERY, but only when executeFlag is set (glReadPixels).
//     DIRECT            __vlddo_<impl>, which does its own routing and null test.
//     FOLD1 .. FOLD4    a form with 1 to 4 components (scalars in args, or one array;
//                       glMultiTexCoord forms pass their target first, unchanged):
//                       each component converted to float by a plain cast, then the
//                       canonical exported entry <impl> is called with what its family
//                       keeps (absent components take the family's defaults).
//     FOLD_DIVIDE       a 4-component homogeneous form (glVertex4*, glTexCoord4*): as FOLD4,
//                       then the leading components are multiplied by 1/last unless last is
//                       0, and <impl> is called without the last.
//     FOLD_RECT         glRect*: glBegin(GL_POLYGON), four <impl> (a glVertex2 form) at
//                       (x1,y1) (x2,y1) (x2,y2) (x1,y2), glEnd.
//     FOLD_PARAM        a scalar parameter call: the value in a one-element float vector,
//                       passed to the vector form <impl>.
//     FOLD_PARAM_VEC    an integer or double vector parameter call converted to the float
//                       vector form <impl>, with the family's own rules per pname (colours
//                       of the iv forms scaled by 1/2147483647; unknown pnames reported).
//     STUB              not implemented: vldFunctionNotImplemented(VLD_ROW_<name>), result 0.
//     GDI               a GDI name: forwards to the wgl function <impl>.
//     WGL               a wgl function with a body of its own (window-system binding).
//     WGL_STUB          a wgl name that is not implemented: vldFunctionNotImplemented with
//                       its row, result 0.
//     NAME              a row of the name table only: nothing is exported under it.
//
//   impl    ROUTED*, QUERY*, DIRECT: the stem of the layer functions (__vldim_<impl> ...).
//           FOLD*: the canonical exported entry.  GDI: the wgl function.  Otherwise NONE.
//
// ---------------------------------------------------------------------------------------------
// VLD_EXT_ENTRIES(VLD_EXT): the library's own entry points, reachable through
// wglGetProcAddress and not in the name table; in the order of the look-up table.
//
//   VLD_EXT(ret, name, params, args, kind, impl)
//
//     IMM_NOTEST        __vldim_<impl> with no test of vldGc at all (glEnableImmVELD...).
//     OWN               a body of its own in the subsystem that owns the name.
//
// ---------------------------------------------------------------------------------------------
// VLD_PROC_ENTRIES(VLD_PROC): the look-up table of wglGetProcAddress, 122 rows in search
// order (first match wins).
//
//   VLD_PROC(name, function)
//
//   name      the text an application asks for
//   function  the function it leads to: a VLD_GL or VLD_EXT row. The EXT spellings of the
//             SGIS multitexture calls lead to the SGIS functions.
//
// ---------------------------------------------------------------------------------------------
// VLD_GLU_ENTRIES(VLD_GLU): the GLU functions the library exports.
//
//   VLD_GLU(ret, name, params, args)
//
// Everything in VLD_GL_ENTRIES except NAME rows, and all of VLD_GLU_ENTRIES, is exported,
// undecorated, with the calling convention APIENTRY (vld_entries_gen.cmake writes the .def
// file and the version script that fix this set). The rows of VLD_EXT_ENTRIES are reached
// through wglGetProcAddress only.
// ---------------------------------------------------------------------------------------------
#ifndef ZVGL_VLD_API_VLD_ENTRIES_H
#define ZVGL_VLD_API_VLD_ENTRIES_H

// clang-format off
#define VLD_GL_ENTRIES(VLD_GL) \
    VLD_GL(void, NONE, (void), (), NAME, NONE) \
    VLD_GL(int, ChoosePixelFormat, (HDC hdc, const PIXELFORMATDESCRIPTOR *ppfd), (hdc, ppfd), GDI, wglChoosePixelFormat) \
    VLD_GL(int, DescribePixelFormat, (HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd), (hdc, iPixelFormat, nBytes, ppfd), GDI, wglDescribePixelFormat) \
    VLD_GL(int, GetPixelFormat, (HDC hdc), (hdc), GDI, wglGetPixelFormat) \
    VLD_GL(BOOL, SetPixelFormat, (HDC hdc, int format, const PIXELFORMATDESCRIPTOR *ppfd), (hdc, format, ppfd), GDI, wglSetPixelFormat) \
    VLD_GL(BOOL, SwapBuffers, (HDC hdc), (hdc), GDI, wglSwapBuffers) \
    VLD_GL(void, glAccum, (GLenum op, GLfloat value), (op, value), STUB, NONE) \
    VLD_GL(void, glAlphaFunc, (GLenum func, GLclampf ref), (func, ref), ROUTED, AlphaFunc) \
    VLD_GL(GLboolean, glAreTexturesResident, (GLsizei n, const GLuint *textures, GLboolean *residences), (n, textures, residences), QUERY, AreTexturesResident) \
    VLD_GL(GLboolean, glAreTexturesResidentEXT, (GLsizei n, const GLuint *textures, GLboolean *residences), (n, textures, residences), QUERY, AreTexturesResident) \
    VLD_GL(void, glArrayElement, (GLint i), (i), STUB, NONE) \
    VLD_GL(void, glBegin, (GLenum mode), (mode), DIRECT, Begin) \
    VLD_GL(void, glBindTexture, (GLenum target, GLuint texture), (target, texture), ROUTED, BindTexture) \
    VLD_GL(void, glBindTextureEXT, (GLenum target, GLuint texture), (target, texture), ROUTED, BindTexture) \
    VLD_GL(void, glBitmap, (GLsizei width, GLsizei height, GLfloat xorig, GLfloat yorig, GLfloat xmove, GLfloat ymove, const GLubyte *bitmap), (width, height, xorig, yorig, xmove, ymove, bitmap), ROUTED, Bitmap) \
    VLD_GL(void, glBlendFunc, (GLenum sfactor, GLenum dfactor), (sfactor, dfactor), ROUTED, BlendFunc) \
    VLD_GL(void, glCallList, (GLuint list), (list), ROUTED, CallList) \
    VLD_GL(void, glCallLists, (GLsizei n, GLenum type, const GLvoid *lists), (n, type, lists), ROUTED, CallLists) \
    VLD_GL(void, glClear, (GLbitfield mask), (mask), ROUTED, Clear) \
    VLD_GL(void, glClearAccum, (GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha), (red, green, blue, alpha), STUB, NONE) \
    VLD_GL(void, glClearColor, (GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha), (red, green, blue, alpha), ROUTED, ClearColor) \
    VLD_GL(void, glClearDepth, (GLclampd depth), (depth), ROUTED, ClearDepth) \
    VLD_GL(void, glClearIndex, (GLfloat c), (c), ROUTED, ClearIndex) \
    VLD_GL(void, glClearStencil, (GLint s), (s), ROUTED, ClearStencil) \
    VLD_GL(void, glClipPlane, (GLenum plane, const GLdouble *equation), (plane, equation), STUB, NONE) \
    VLD_GL(void, glColor3b, (GLbyte red, GLbyte green, GLbyte blue), (red, green, blue), ROUTED, Color3b) \
    VLD_GL(void, glColor3bv, (const GLbyte *v), (v), ROUTED, Color3bv) \
    VLD_GL(void, glColor3d, (GLdouble red, GLdouble green, GLdouble blue), (red, green, blue), ROUTED, Color3d) \
    VLD_GL(void, glColor3dv, (const GLdouble *v), (v), ROUTED, Color3dv) \
    VLD_GL(void, glColor3f, (GLfloat red, GLfloat green, GLfloat blue), (red, green, blue), ROUTED, Color3f) \
    VLD_GL(void, glColor3fv, (const GLfloat *v), (v), ROUTED, Color3fv) \
    VLD_GL(void, glColor3i, (GLint red, GLint green, GLint blue), (red, green, blue), ROUTED, Color3i) \
    VLD_GL(void, glColor3iv, (const GLint *v), (v), ROUTED, Color3iv) \
    VLD_GL(void, glColor3s, (GLshort red, GLshort green, GLshort blue), (red, green, blue), ROUTED, Color3s) \
    VLD_GL(void, glColor3sv, (const GLshort *v), (v), ROUTED, Color3sv) \
    VLD_GL(void, glColor3ub, (GLubyte red, GLubyte green, GLubyte blue), (red, green, blue), ROUTED, Color3ub) \
    VLD_GL(void, glColor3ubv, (const GLubyte *v), (v), ROUTED, Color3ubv) \
    VLD_GL(void, glColor3ui, (GLuint red, GLuint green, GLuint blue), (red, green, blue), ROUTED, Color3ui) \
    VLD_GL(void, glColor3uiv, (const GLuint *v), (v), ROUTED, Color3uiv) \
    VLD_GL(void, glColor3us, (GLushort red, GLushort green, GLushort blue), (red, green, blue), ROUTED, Color3us) \
    VLD_GL(void, glColor3usv, (const GLushort *v), (v), ROUTED, Color3usv) \
    VLD_GL(void, glColor4b, (GLbyte red, GLbyte green, GLbyte blue, GLbyte alpha), (red, green, blue, alpha), ROUTED, Color4b) \
    VLD_GL(void, glColor4bv, (const GLbyte *v), (v), ROUTED, Color4bv) \
    VLD_GL(void, glColor4d, (GLdouble red, GLdouble green, GLdouble blue, GLdouble alpha), (red, green, blue, alpha), ROUTED, Color4d) \
    VLD_GL(void, glColor4dv, (const GLdouble *v), (v), ROUTED, Color4dv) \
    VLD_GL(void, glColor4f, (GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha), (red, green, blue, alpha), ROUTED, Color4f) \
    VLD_GL(void, glColor4fv, (const GLfloat *v), (v), ROUTED, Color4fv) \
    VLD_GL(void, glColor4i, (GLint red, GLint green, GLint blue, GLint alpha), (red, green, blue, alpha), ROUTED, Color4i) \
    VLD_GL(void, glColor4iv, (const GLint *v), (v), ROUTED, Color4iv) \
    VLD_GL(void, glColor4s, (GLshort red, GLshort green, GLshort blue, GLshort alpha), (red, green, blue, alpha), ROUTED, Color4s) \
    VLD_GL(void, glColor4sv, (const GLshort *v), (v), ROUTED, Color4sv) \
    VLD_GL(void, glColor4ub, (GLubyte red, GLubyte green, GLubyte blue, GLubyte alpha), (red, green, blue, alpha), ROUTED, Color4ub) \
    VLD_GL(void, glColor4ubv, (const GLubyte *v), (v), ROUTED, Color4ubv) \
    VLD_GL(void, glColor4ui, (GLuint red, GLuint green, GLuint blue, GLuint alpha), (red, green, blue, alpha), ROUTED, Color4ui) \
    VLD_GL(void, glColor4uiv, (const GLuint *v), (v), ROUTED, Color4uiv) \
    VLD_GL(void, glColor4us, (GLushort red, GLushort green, GLushort blue, GLushort alpha), (red, green, blue, alpha), ROUTED, Color4us) \
    VLD_GL(void, glColor4usv, (const GLushort *v), (v), ROUTED, Color4usv) \
    VLD_GL(void, glColorMask, (GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha), (red, green, blue, alpha), ROUTED, ColorMask) \
    VLD_GL(void, glColorMaterial, (GLenum face, GLenum mode), (face, mode), ROUTED, ColorMaterial) \
    VLD_GL(void, glColorPointer, (GLint size, GLenum type, GLsizei stride, const GLvoid *pointer), (size, type, stride, pointer), STUB, NONE) \
    VLD_GL(void, glCopyPixels, (GLint x, GLint y, GLsizei width, GLsizei height, GLenum type), (x, y, width, height, type), STUB, NONE) \
    VLD_GL(void, glCopyTexImage1D, (GLenum target, GLint level, GLenum internalformat, GLint x, GLint y, GLsizei width, GLint border), (target, level, internalformat, x, y, width, border), STUB, NONE) \
    VLD_GL(void, glCopyTexImage2D, (GLenum target, GLint level, GLenum internalformat, GLint x, GLint y, GLsizei width, GLsizei height, GLint border), (target, level, internalformat, x, y, width, height, border), STUB, NONE) \
    VLD_GL(void, glCopyTexSubImage1D, (GLenum target, GLint level, GLint xoffset, GLint x, GLint y, GLsizei width), (target, level, xoffset, x, y, width), STUB, NONE) \
    VLD_GL(void, glCopyTexSubImage2D, (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint x, GLint y, GLsizei width, GLsizei height), (target, level, xoffset, yoffset, x, y, width, height), STUB, NONE) \
    VLD_GL(void, glCullFace, (GLenum mode), (mode), ROUTED, CullFace) \
    VLD_GL(void, glDebugEntry, (void), (), NAME, NONE) \
    VLD_GL(void, glDeleteLists, (GLuint list, GLsizei range), (list, range), DIRECT, DeleteLists) \
    VLD_GL(void, glDeleteTextures, (GLsizei n, const GLuint *textures), (n, textures), ROUTED, DeleteTextures) \
    VLD_GL(void, glDeleteTexturesEXT, (GLsizei n, const GLuint *textures), (n, textures), ROUTED, DeleteTextures) \
    VLD_GL(void, glDepthFunc, (GLenum func), (func), ROUTED, DepthFunc) \
    VLD_GL(void, glDepthMask, (GLboolean flag), (flag), ROUTED, DepthMask) \
    VLD_GL(void, glDepthRange, (GLclampd zNear, GLclampd zFar), (zNear, zFar), ROUTED, DepthRange) \
    VLD_GL(void, glDetailTexFuncSGIS, (GLenum target, GLsizei n, const GLfloat *points), (target, n, points), ROUTED, DetailTexFuncSGIS) \
    VLD_GL(void, glDisable, (GLenum cap), (cap), ROUTED, Disable) \
    VLD_GL(void, glDisableClientState, (GLenum array), (array), STUB, NONE) \
    VLD_GL(void, glDrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count), STUB, NONE) \
    VLD_GL(void, glDrawBuffer, (GLenum mode), (mode), ROUTED, DrawBuffer) \
    VLD_GL(void, glDrawElements, (GLenum mode, GLsizei count, GLenum type, const GLvoid *indices), (mode, count, type, indices), STUB, NONE) \
    VLD_GL(void, glDrawPixels, (GLsizei width, GLsizei height, GLenum format, GLenum type, const GLvoid *pixels), (width, height, format, type, pixels), STUB, NONE) \
    VLD_GL(void, glEdgeFlag, (GLboolean flag), (flag), STUB, NONE) \
    VLD_GL(void, glEdgeFlagPointer, (GLsizei stride, const GLvoid *pointer), (stride, pointer), STUB, NONE) \
    VLD_GL(void, glEdgeFlagv, (const GLboolean *flag), (flag), STUB, NONE) \
    VLD_GL(void, glEnable, (GLenum cap), (cap), ROUTED_ENABLE, Enable) \
    VLD_GL(void, glEnableClientState, (GLenum array), (array), STUB, NONE) \
    VLD_GL(void, glEnd, (void), (), DIRECT, End) \
    VLD_GL(void, glEndList, (void), (), DIRECT, EndList) \
    VLD_GL(void, glEvalCoord1d, (GLdouble u), (u), STUB, NONE) \
    VLD_GL(void, glEvalCoord1dv, (const GLdouble *u), (u), STUB, NONE) \
    VLD_GL(void, glEvalCoord1f, (GLfloat u), (u), STUB, NONE) \
    VLD_GL(void, glEvalCoord1fv, (const GLfloat *u), (u), STUB, NONE) \
    VLD_GL(void, glEvalCoord2d, (GLdouble u, GLdouble v), (u, v), STUB, NONE) \
    VLD_GL(void, glEvalCoord2dv, (const GLdouble *u), (u), STUB, NONE) \
    VLD_GL(void, glEvalCoord2f, (GLfloat u, GLfloat v), (u, v), STUB, NONE) \
    VLD_GL(void, glEvalCoord2fv, (const GLfloat *u), (u), STUB, NONE) \
    VLD_GL(void, glEvalMesh1, (GLenum mode, GLint i1, GLint i2), (mode, i1, i2), STUB, NONE) \
    VLD_GL(void, glEvalMesh2, (GLenum mode, GLint i1, GLint i2, GLint j1, GLint j2), (mode, i1, i2, j1, j2), STUB, NONE) \
    VLD_GL(void, glEvalPoint1, (GLint i), (i), STUB, NONE) \
    VLD_GL(void, glEvalPoint2, (GLint i, GLint j), (i, j), STUB, NONE) \
    VLD_GL(void, glFeedbackBuffer, (GLsizei size, GLenum type, GLfloat *buffer), (size, type, buffer), STUB, NONE) \
    VLD_GL(void, glFinish, (void), (), QUERY, Finish) \
    VLD_GL(void, glFlush, (void), (), QUERY, Flush) \
    VLD_GL(void, glFogf, (GLenum pname, GLfloat param), (pname, param), ROUTED, Fogf) \
    VLD_GL(void, glFogfv, (GLenum pname, const GLfloat *params), (pname, params), ROUTED, Fogfv) \
    VLD_GL(void, glFogi, (GLenum pname, GLint param), (pname, param), ROUTED, Fogi) \
    VLD_GL(void, glFogiv, (GLenum pname, const GLint *params), (pname, params), ROUTED, Fogiv) \
    VLD_GL(void, glFrontFace, (GLenum mode), (mode), ROUTED, FrontFace) \
    VLD_GL(void, glFrustum, (GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear, GLdouble zFar), (left, right, bottom, top, zNear, zFar), ROUTED, Frustum) \
    VLD_GL(GLuint, glGenLists, (GLsizei range), (range), QUERY, GenLists) \
    VLD_GL(void, glGenTextures, (GLsizei n, GLuint *textures), (n, textures), QUERY, GenTextures) \
    VLD_GL(void, glGenTexturesEXT, (GLsizei n, GLuint *textures), (n, textures), QUERY, GenTextures) \
    VLD_GL(void, glGetBooleanv, (GLenum pname, GLboolean *params), (pname, params), QUERY, GetBooleanv) \
    VLD_GL(void, glGetClipPlane, (GLenum plane, GLdouble *equation), (plane, equation), STUB, NONE) \
    VLD_GL(void, glGetDetailTexFuncSGIS, (GLenum target, GLfloat *points), (target, points), QUERY, GetDetailTexFuncSGIS) \
    VLD_GL(void, glGetDoublev, (GLenum pname, GLdouble *params), (pname, params), QUERY, GetDoublev) \
    VLD_GL(GLenum, glGetError, (void), (), QUERY, GetError) \
    VLD_GL(void, glGetFloatv, (GLenum pname, GLfloat *params), (pname, params), QUERY, GetFloatv) \
    VLD_GL(void, glGetIntegerv, (GLenum pname, GLint *params), (pname, params), QUERY, GetIntegerv) \
    VLD_GL(void, glGetLightfv, (GLenum light, GLenum pname, GLfloat *params), (light, pname, params), STUB, NONE) \
    VLD_GL(void, glGetLightiv, (GLenum light, GLenum pname, GLint *params), (light, pname, params), STUB, NONE) \
    VLD_GL(void, glGetMapdv, (GLenum target, GLenum query, GLdouble *v), (target, query, v), STUB, NONE) \
    VLD_GL(void, glGetMapfv, (GLenum target, GLenum query, GLfloat *v), (target, query, v), STUB, NONE) \
    VLD_GL(void, glGetMapiv, (GLenum target, GLenum query, GLint *v), (target, query, v), STUB, NONE) \
    VLD_GL(void, glGetMaterialfv, (GLenum face, GLenum pname, GLfloat *params), (face, pname, params), QUERY, GetMaterialfv) \
    VLD_GL(void, glGetMaterialiv, (GLenum face, GLenum pname, GLint *params), (face, pname, params), QUERY, GetMaterialiv) \
    VLD_GL(void, glGetPixelMapfv, (GLenum map, GLfloat *values), (map, values), STUB, NONE) \
    VLD_GL(void, glGetPixelMapuiv, (GLenum map, GLuint *values), (map, values), STUB, NONE) \
    VLD_GL(void, glGetPixelMapusv, (GLenum map, GLushort *values), (map, values), STUB, NONE) \
    VLD_GL(void, glGetPointerv, (GLenum pname, GLvoid **params), (pname, params), STUB, NONE) \
    VLD_GL(void, glGetPolygonStipple, (GLubyte *mask), (mask), STUB, NONE) \
    VLD_GL(void, glGetSharpenTexFuncSGIS, (GLenum target, GLfloat *points), (target, points), QUERY, GetSharpenTexFuncSGIS) \
    VLD_GL(const GLubyte *, glGetString, (GLenum name), (name), QUERY, GetString) \
    VLD_GL(void, glGetTexEnvfv, (GLenum target, GLenum pname, GLfloat *params), (target, pname, params), STUB, NONE) \
    VLD_GL(void, glGetTexEnviv, (GLenum target, GLenum pname, GLint *params), (target, pname, params), STUB, NONE) \
    VLD_GL(void, glGetTexFilterFuncSGIS, (GLenum target, GLenum filter, GLfloat *weights), (target, filter, weights), QUERY, GetTexFilterFuncSGIS) \
    VLD_GL(void, glGetTexGendv, (GLenum coord, GLenum pname, GLdouble *params), (coord, pname, params), QUERY, GetTexGendv) \
    VLD_GL(void, glGetTexGenfv, (GLenum coord, GLenum pname, GLfloat *params), (coord, pname, params), QUERY, GetTexGenfv) \
    VLD_GL(void, glGetTexGeniv, (GLenum coord, GLenum pname, GLint *params), (coord, pname, params), QUERY, GetTexGeniv) \
    VLD_GL(void, glGetTexImage, (GLenum target, GLint level, GLenum format, GLenum type, GLvoid *pixels), (target, level, format, type, pixels), STUB, NONE) \
    VLD_GL(void, glGetTexLevelParameterfv, (GLenum target, GLint level, GLenum pname, GLfloat *params), (target, level, pname, params), STUB, NONE) \
    VLD_GL(void, glGetTexLevelParameteriv, (GLenum target, GLint level, GLenum pname, GLint *params), (target, level, pname, params), STUB, NONE) \
    VLD_GL(void, glGetTexParameterfv, (GLenum target, GLenum pname, GLfloat *params), (target, pname, params), STUB, NONE) \
    VLD_GL(void, glGetTexParameteriv, (GLenum target, GLenum pname, GLint *params), (target, pname, params), STUB, NONE) \
    VLD_GL(void, glHint, (GLenum target, GLenum mode), (target, mode), ROUTED, Hint) \
    VLD_GL(void, glIndexMask, (GLuint mask), (mask), STUB, NONE) \
    VLD_GL(void, glIndexPointer, (GLenum type, GLsizei stride, const GLvoid *pointer), (type, stride, pointer), STUB, NONE) \
    VLD_GL(void, glIndexd, (GLdouble c), (c), STUB, NONE) \
    VLD_GL(void, glIndexdv, (const GLdouble *c), (c), STUB, NONE) \
    VLD_GL(void, glIndexf, (GLfloat c), (c), STUB, NONE) \
    VLD_GL(void, glIndexfv, (const GLfloat *c), (c), STUB, NONE) \
    VLD_GL(void, glIndexi, (GLint c), (c), STUB, NONE) \
    VLD_GL(void, glIndexiv, (const GLint *c), (c), STUB, NONE) \
    VLD_GL(void, glIndexs, (GLshort c), (c), STUB, NONE) \
    VLD_GL(void, glIndexsv, (const GLshort *c), (c), STUB, NONE) \
    VLD_GL(void, glIndexub, (GLubyte c), (c), STUB, NONE) \
    VLD_GL(void, glIndexubv, (const GLubyte *c), (c), STUB, NONE) \
    VLD_GL(void, glInitNames, (void), (), STUB, NONE) \
    VLD_GL(void, glInterleavedArrays, (GLenum format, GLsizei stride, const GLvoid *pointer), (format, stride, pointer), STUB, NONE) \
    VLD_GL(GLboolean, glIsEnabled, (GLenum cap), (cap), QUERY, IsEnabled) \
    VLD_GL(GLboolean, glIsList, (GLuint list), (list), QUERY, IsList) \
    VLD_GL(GLboolean, glIsTexture, (GLuint texture), (texture), QUERY, IsTexture) \
    VLD_GL(GLboolean, glIsTextureEXT, (GLuint texture), (texture), QUERY, IsTexture) \
    VLD_GL(void, glLightModelf, (GLenum pname, GLfloat param), (pname, param), ROUTED, LightModelf) \
    VLD_GL(void, glLightModelfv, (GLenum pname, const GLfloat *params), (pname, params), ROUTED, LightModelfv) \
    VLD_GL(void, glLightModeli, (GLenum pname, GLint param), (pname, param), ROUTED, LightModeli) \
    VLD_GL(void, glLightModeliv, (GLenum pname, const GLint *params), (pname, params), ROUTED, LightModeliv) \
    VLD_GL(void, glLightf, (GLenum light, GLenum pname, GLfloat param), (light, pname, param), ROUTED, Lightf) \
    VLD_GL(void, glLightfv, (GLenum light, GLenum pname, const GLfloat *params), (light, pname, params), ROUTED, Lightfv) \
    VLD_GL(void, glLighti, (GLenum light, GLenum pname, GLint param), (light, pname, param), ROUTED, Lighti) \
    VLD_GL(void, glLightiv, (GLenum light, GLenum pname, const GLint *params), (light, pname, params), ROUTED, Lightiv) \
    VLD_GL(void, glLineStipple, (GLint factor, GLushort pattern), (factor, pattern), ROUTED, LineStipple) \
    VLD_GL(void, glLineWidth, (GLfloat width), (width), ROUTED, LineWidth) \
    VLD_GL(void, glListBase, (GLuint base), (base), ROUTED, ListBase) \
    VLD_GL(void, glLoadIdentity, (void), (), ROUTED, LoadIdentity) \
    VLD_GL(void, glLoadMatrixd, (const GLdouble *m), (m), ROUTED, LoadMatrixd) \
    VLD_GL(void, glLoadMatrixf, (const GLfloat *m), (m), ROUTED, LoadMatrixf) \
    VLD_GL(void, glLoadName, (GLuint name), (name), STUB, NONE) \
    VLD_GL(void, glLogicOp, (GLenum opcode), (opcode), STUB, NONE) \
    VLD_GL(void, glMap1d, (GLenum target, GLdouble u1, GLdouble u2, GLint stride, GLint order, const GLdouble *points), (target, u1, u2, stride, order, points), STUB, NONE) \
    VLD_GL(void, glMap1f, (GLenum target, GLfloat u1, GLfloat u2, GLint stride, GLint order, const GLfloat *points), (target, u1, u2, stride, order, points), STUB, NONE) \
    VLD_GL(void, glMap2d, (GLenum target, GLdouble u1, GLdouble u2, GLint ustride, GLint uorder, GLdouble v1, GLdouble v2, GLint vstride, GLint vorder, const GLdouble *points), (target, u1, u2, ustride, uorder, v1, v2, vstride, vorder, points), STUB, NONE) \
    VLD_GL(void, glMap2f, (GLenum target, GLfloat u1, GLfloat u2, GLint ustride, GLint uorder, GLfloat v1, GLfloat v2, GLint vstride, GLint vorder, const GLfloat *points), (target, u1, u2, ustride, uorder, v1, v2, vstride, vorder, points), STUB, NONE) \
    VLD_GL(void, glMapGrid1d, (GLint un, GLdouble u1, GLdouble u2), (un, u1, u2), STUB, NONE) \
    VLD_GL(void, glMapGrid1f, (GLint un, GLfloat u1, GLfloat u2), (un, u1, u2), STUB, NONE) \
    VLD_GL(void, glMapGrid2d, (GLint un, GLdouble u1, GLdouble u2, GLint vn, GLdouble v1, GLdouble v2), (un, u1, u2, vn, v1, v2), STUB, NONE) \
    VLD_GL(void, glMapGrid2f, (GLint un, GLfloat u1, GLfloat u2, GLint vn, GLfloat v1, GLfloat v2), (un, u1, u2, vn, v1, v2), STUB, NONE) \
    VLD_GL(void, glMaterialf, (GLenum face, GLenum pname, GLfloat param), (face, pname, param), ROUTED, Materialf) \
    VLD_GL(void, glMaterialfv, (GLenum face, GLenum pname, const GLfloat *params), (face, pname, params), ROUTED, Materialfv) \
    VLD_GL(void, glMateriali, (GLenum face, GLenum pname, GLint param), (face, pname, param), ROUTED, Materiali) \
    VLD_GL(void, glMaterialiv, (GLenum face, GLenum pname, const GLint *params), (face, pname, params), ROUTED, Materialiv) \
    VLD_GL(void, glMatrixMode, (GLenum mode), (mode), ROUTED, MatrixMode) \
    VLD_GL(void, glMultMatrixd, (const GLdouble *m), (m), ROUTED, MultMatrixd) \
    VLD_GL(void, glMultMatrixf, (const GLfloat *m), (m), ROUTED, MultMatrixf) \
    VLD_GL(void, glMultiTexCoord1dSGIS, (GLenum target, GLdouble s), (target, s), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1dvSGIS, (GLenum target, const GLdouble *v), (target, v), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1fSGIS, (GLenum target, GLfloat s), (target, s), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1fvSGIS, (GLenum target, const GLfloat *v), (target, v), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1iSGIS, (GLenum target, GLint s), (target, s), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1ivSGIS, (GLenum target, const GLint *v), (target, v), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1sSGIS, (GLenum target, GLshort s), (target, s), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord1svSGIS, (GLenum target, const GLshort *v), (target, v), FOLD1, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2dSGIS, (GLenum target, GLdouble s, GLdouble t), (target, s, t), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2dvSGIS, (GLenum target, const GLdouble *v), (target, v), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2fSGIS, (GLenum target, GLfloat s, GLfloat t), (target, s, t), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2fvSGIS, (GLenum target, const GLfloat *v), (target, v), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2iSGIS, (GLenum target, GLint s, GLint t), (target, s, t), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2ivSGIS, (GLenum target, const GLint *v), (target, v), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2sSGIS, (GLenum target, GLshort s, GLshort t), (target, s, t), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord2svSGIS, (GLenum target, const GLshort *v), (target, v), FOLD2, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3dSGIS, (GLenum target, GLdouble s, GLdouble t, GLdouble r), (target, s, t, r), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3dvSGIS, (GLenum target, const GLdouble *v), (target, v), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3fSGIS, (GLenum target, GLfloat s, GLfloat t, GLfloat r), (target, s, t, r), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3fvSGIS, (GLenum target, const GLfloat *v), (target, v), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3iSGIS, (GLenum target, GLint s, GLint t, GLint r), (target, s, t, r), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3ivSGIS, (GLenum target, const GLint *v), (target, v), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3sSGIS, (GLenum target, GLshort s, GLshort t, GLshort r), (target, s, t, r), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord3svSGIS, (GLenum target, const GLshort *v), (target, v), FOLD3, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4dSGIS, (GLenum target, GLdouble s, GLdouble t, GLdouble r, GLdouble q), (target, s, t, r, q), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4dvSGIS, (GLenum target, const GLdouble *v), (target, v), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4fSGIS, (GLenum target, GLfloat s, GLfloat t, GLfloat r, GLfloat q), (target, s, t, r, q), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4fvSGIS, (GLenum target, const GLfloat *v), (target, v), ROUTED, MultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4iSGIS, (GLenum target, GLint s, GLint t, GLint r, GLint q), (target, s, t, r, q), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4ivSGIS, (GLenum target, const GLint *v), (target, v), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4sSGIS, (GLenum target, GLshort s, GLshort t, GLshort r, GLshort q), (target, s, t, r, q), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glMultiTexCoord4svSGIS, (GLenum target, const GLshort *v), (target, v), FOLD4, glMultiTexCoord4fvSGIS) \
    VLD_GL(void, glNewList, (GLuint list, GLenum mode), (list, mode), DIRECT, NewList) \
    VLD_GL(void, glNormal3b, (GLbyte nx, GLbyte ny, GLbyte nz), (nx, ny, nz), ROUTED, Normal3b) \
    VLD_GL(void, glNormal3bv, (const GLbyte *v), (v), ROUTED, Normal3bv) \
    VLD_GL(void, glNormal3d, (GLdouble nx, GLdouble ny, GLdouble nz), (nx, ny, nz), ROUTED, Normal3d) \
    VLD_GL(void, glNormal3dv, (const GLdouble *v), (v), ROUTED, Normal3dv) \
    VLD_GL(void, glNormal3f, (GLfloat nx, GLfloat ny, GLfloat nz), (nx, ny, nz), ROUTED, Normal3f) \
    VLD_GL(void, glNormal3fv, (const GLfloat *v), (v), ROUTED, Normal3fv) \
    VLD_GL(void, glNormal3i, (GLint nx, GLint ny, GLint nz), (nx, ny, nz), ROUTED, Normal3i) \
    VLD_GL(void, glNormal3iv, (const GLint *v), (v), ROUTED, Normal3iv) \
    VLD_GL(void, glNormal3s, (GLshort nx, GLshort ny, GLshort nz), (nx, ny, nz), ROUTED, Normal3s) \
    VLD_GL(void, glNormal3sv, (const GLshort *v), (v), ROUTED, Normal3sv) \
    VLD_GL(void, glNormalPointer, (GLenum type, GLsizei stride, const GLvoid *pointer), (type, stride, pointer), STUB, NONE) \
    VLD_GL(void, glOrtho, (GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble zNear, GLdouble zFar), (left, right, bottom, top, zNear, zFar), ROUTED, Ortho) \
    VLD_GL(void, glPassThrough, (GLfloat token), (token), STUB, NONE) \
    VLD_GL(void, glPixelMapfv, (GLenum map, GLsizei mapsize, const GLfloat *values), (map, mapsize, values), STUB, NONE) \
    VLD_GL(void, glPixelMapuiv, (GLenum map, GLsizei mapsize, const GLuint *values), (map, mapsize, values), STUB, NONE) \
    VLD_GL(void, glPixelMapusv, (GLenum map, GLsizei mapsize, const GLushort *values), (map, mapsize, values), STUB, NONE) \
    VLD_GL(void, glPixelStoref, (GLenum pname, GLfloat param), (pname, param), QUERY, PixelStoref) \
    VLD_GL(void, glPixelStorei, (GLenum pname, GLint param), (pname, param), QUERY, PixelStorei) \
    VLD_GL(void, glPixelTransferf, (GLenum pname, GLfloat param), (pname, param), STUB, NONE) \
    VLD_GL(void, glPixelTransferi, (GLenum pname, GLint param), (pname, param), STUB, NONE) \
    VLD_GL(void, glPixelZoom, (GLfloat xfactor, GLfloat yfactor), (xfactor, yfactor), STUB, NONE) \
    VLD_GL(void, glPointSize, (GLfloat size), (size), ROUTED, PointSize) \
    VLD_GL(void, glPolygonMode, (GLenum face, GLenum mode), (face, mode), ROUTED, PolygonMode) \
    VLD_GL(void, glPolygonOffset, (GLfloat factor, GLfloat units), (factor, units), ROUTED, PolygonOffset) \
    VLD_GL(void, glPolygonStipple, (const GLubyte *mask), (mask), STUB, NONE) \
    VLD_GL(void, glPopAttrib, (void), (), ROUTED, PopAttrib) \
    VLD_GL(void, glPopClientAttrib, (void), (), STUB, NONE) \
    VLD_GL(void, glPopMatrix, (void), (), ROUTED, PopMatrix) \
    VLD_GL(void, glPopName, (void), (), STUB, NONE) \
    VLD_GL(void, glPrioritizeTextures, (GLsizei n, const GLuint *textures, const GLclampf *priorities), (n, textures, priorities), ROUTED, PrioritizeTextures) \
    VLD_GL(void, glPrioritizeTexturesEXT, (GLsizei n, const GLuint *textures, const GLclampf *priorities), (n, textures, priorities), ROUTED, PrioritizeTextures) \
    VLD_GL(void, glPushAttrib, (GLbitfield mask), (mask), ROUTED, PushAttrib) \
    VLD_GL(void, glPushClientAttrib, (GLbitfield mask), (mask), STUB, NONE) \
    VLD_GL(void, glPushMatrix, (void), (), ROUTED, PushMatrix) \
    VLD_GL(void, glPushName, (GLuint name), (name), STUB, NONE) \
    VLD_GL(void, glRasterPos2d, (GLdouble x, GLdouble y), (x, y), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2dv, (const GLdouble *v), (v), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2f, (GLfloat x, GLfloat y), (x, y), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2fv, (const GLfloat *v), (v), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2i, (GLint x, GLint y), (x, y), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2iv, (const GLint *v), (v), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2s, (GLshort x, GLshort y), (x, y), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos2sv, (const GLshort *v), (v), FOLD2, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3d, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3dv, (const GLdouble *v), (v), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3f, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3fv, (const GLfloat *v), (v), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3i, (GLint x, GLint y, GLint z), (x, y, z), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3iv, (const GLint *v), (v), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3s, (GLshort x, GLshort y, GLshort z), (x, y, z), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos3sv, (const GLshort *v), (v), FOLD3, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4d, (GLdouble x, GLdouble y, GLdouble z, GLdouble w), (x, y, z, w), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4dv, (const GLdouble *v), (v), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4f, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4fv, (const GLfloat *v), (v), ROUTED, RasterPos4fv) \
    VLD_GL(void, glRasterPos4i, (GLint x, GLint y, GLint z, GLint w), (x, y, z, w), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4iv, (const GLint *v), (v), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4s, (GLshort x, GLshort y, GLshort z, GLshort w), (x, y, z, w), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glRasterPos4sv, (const GLshort *v), (v), FOLD4, glRasterPos4fv) \
    VLD_GL(void, glReadBuffer, (GLenum mode), (mode), ROUTED, ReadBuffer) \
    VLD_GL(void, glReadPixels, (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, GLvoid *pixels), (x, y, width, height, format, type, pixels), QUERY_EXEC, ReadPixels) \
    VLD_GL(void, glRectd, (GLdouble x1, GLdouble y1, GLdouble x2, GLdouble y2), (x1, y1, x2, y2), FOLD_RECT, glVertex2d) \
    VLD_GL(void, glRectdv, (const GLdouble *v1, const GLdouble *v2), (v1, v2), FOLD_RECT, glVertex2d) \
    VLD_GL(void, glRectf, (GLfloat x1, GLfloat y1, GLfloat x2, GLfloat y2), (x1, y1, x2, y2), FOLD_RECT, glVertex2f) \
    VLD_GL(void, glRectfv, (const GLfloat *v1, const GLfloat *v2), (v1, v2), FOLD_RECT, glVertex2f) \
    VLD_GL(void, glRecti, (GLint x1, GLint y1, GLint x2, GLint y2), (x1, y1, x2, y2), FOLD_RECT, glVertex2i) \
    VLD_GL(void, glRectiv, (const GLint *v1, const GLint *v2), (v1, v2), FOLD_RECT, glVertex2i) \
    VLD_GL(void, glRects, (GLshort x1, GLshort y1, GLshort x2, GLshort y2), (x1, y1, x2, y2), FOLD_RECT, glVertex2s) \
    VLD_GL(void, glRectsv, (const GLshort *v1, const GLshort *v2), (v1, v2), FOLD_RECT, glVertex2s) \
    VLD_GL(GLint, glRenderMode, (GLenum mode), (mode), QUERY, RenderMode) \
    VLD_GL(void, glRotated, (GLdouble angle, GLdouble x, GLdouble y, GLdouble z), (angle, x, y, z), ROUTED, Rotated) \
    VLD_GL(void, glRotatef, (GLfloat angle, GLfloat x, GLfloat y, GLfloat z), (angle, x, y, z), ROUTED, Rotatef) \
    VLD_GL(void, glScaled, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), ROUTED, Scaled) \
    VLD_GL(void, glScalef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), ROUTED, Scalef) \
    VLD_GL(void, glScissor, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height), ROUTED, Scissor) \
    VLD_GL(void, glSelectBuffer, (GLsizei size, GLuint *buffer), (size, buffer), STUB, NONE) \
    VLD_GL(void, glSelectTextureCoordSetSGIS, (GLenum target), (target), ROUTED, SelectTextureCoordSetSGIS) \
    VLD_GL(void, glSelectTextureSGIS, (GLenum target), (target), ROUTED, SelectTextureSGIS) \
    VLD_GL(void, glSelectTextureTransformSGIS, (GLenum target), (target), ROUTED, SelectTextureTransformSGIS) \
    VLD_GL(void, glShadeModel, (GLenum mode), (mode), ROUTED, ShadeModel) \
    VLD_GL(void, glSharpenTexFuncSGIS, (GLenum target, GLsizei n, const GLfloat *points), (target, n, points), ROUTED, SharpenTexFuncSGIS) \
    VLD_GL(void, glStencilFunc, (GLenum func, GLint ref, GLuint mask), (func, ref, mask), ROUTED, StencilFunc) \
    VLD_GL(void, glStencilMask, (GLuint mask), (mask), ROUTED, StencilMask) \
    VLD_GL(void, glStencilOp, (GLenum fail, GLenum zfail, GLenum zpass), (fail, zfail, zpass), ROUTED_STENCILOP, StencilOp) \
    VLD_GL(void, glTagSampleBufferSGIX, (void), (), STUB, NONE) \
    VLD_GL(void, glTexCoord1d, (GLdouble s), (s), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1dv, (const GLdouble *v), (v), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1f, (GLfloat s), (s), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1fv, (const GLfloat *v), (v), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1i, (GLint s), (s), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1iv, (const GLint *v), (v), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1s, (GLshort s), (s), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord1sv, (const GLshort *v), (v), FOLD1, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2d, (GLdouble s, GLdouble t), (s, t), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2dv, (const GLdouble *v), (v), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2f, (GLfloat s, GLfloat t), (s, t), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2fv, (const GLfloat *v), (v), ROUTED, TexCoord2fv) \
    VLD_GL(void, glTexCoord2i, (GLint s, GLint t), (s, t), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2iv, (const GLint *v), (v), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2s, (GLshort s, GLshort t), (s, t), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord2sv, (const GLshort *v), (v), FOLD2, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3d, (GLdouble s, GLdouble t, GLdouble r), (s, t, r), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3dv, (const GLdouble *v), (v), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3f, (GLfloat s, GLfloat t, GLfloat r), (s, t, r), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3fv, (const GLfloat *v), (v), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3i, (GLint s, GLint t, GLint r), (s, t, r), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3iv, (const GLint *v), (v), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3s, (GLshort s, GLshort t, GLshort r), (s, t, r), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord3sv, (const GLshort *v), (v), FOLD3, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4d, (GLdouble s, GLdouble t, GLdouble r, GLdouble q), (s, t, r, q), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4dv, (const GLdouble *v), (v), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4f, (GLfloat s, GLfloat t, GLfloat r, GLfloat q), (s, t, r, q), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4fv, (const GLfloat *v), (v), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4i, (GLint s, GLint t, GLint r, GLint q), (s, t, r, q), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4iv, (const GLint *v), (v), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4s, (GLshort s, GLshort t, GLshort r, GLshort q), (s, t, r, q), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoord4sv, (const GLshort *v), (v), FOLD_DIVIDE, glTexCoord2fv) \
    VLD_GL(void, glTexCoordPointer, (GLint size, GLenum type, GLsizei stride, const GLvoid *pointer), (size, type, stride, pointer), STUB, NONE) \
    VLD_GL(void, glTexEnvf, (GLenum target, GLenum pname, GLfloat param), (target, pname, param), FOLD_PARAM, glTexEnvfv) \
    VLD_GL(void, glTexEnvfv, (GLenum target, GLenum pname, const GLfloat *params), (target, pname, params), ROUTED, TexEnvfv) \
    VLD_GL(void, glTexEnvi, (GLenum target, GLenum pname, GLint param), (target, pname, param), FOLD_PARAM, glTexEnvfv) \
    VLD_GL(void, glTexEnviv, (GLenum target, GLenum pname, const GLint *params), (target, pname, params), FOLD_PARAM_VEC, glTexEnvfv) \
    VLD_GL(void, glTexFilterFuncSGIS, (GLenum target, GLenum filter, GLsizei n, const GLfloat *weights), (target, filter, n, weights), ROUTED, TexFilterFuncSGIS) \
    VLD_GL(void, glTexGend, (GLenum coord, GLenum pname, GLdouble param), (coord, pname, param), FOLD_PARAM, glTexGenfv) \
    VLD_GL(void, glTexGendv, (GLenum coord, GLenum pname, const GLdouble *params), (coord, pname, params), FOLD_PARAM_VEC, glTexGenfv) \
    VLD_GL(void, glTexGenf, (GLenum coord, GLenum pname, GLfloat param), (coord, pname, param), FOLD_PARAM, glTexGenfv) \
    VLD_GL(void, glTexGenfv, (GLenum coord, GLenum pname, const GLfloat *params), (coord, pname, params), ROUTED, TexGenfv) \
    VLD_GL(void, glTexGeni, (GLenum coord, GLenum pname, GLint param), (coord, pname, param), FOLD_PARAM, glTexGenfv) \
    VLD_GL(void, glTexGeniv, (GLenum coord, GLenum pname, const GLint *params), (coord, pname, params), FOLD_PARAM_VEC, glTexGenfv) \
    VLD_GL(void, glTexImage1D, (GLenum target, GLint level, GLint internalformat, GLsizei width, GLint border, GLenum format, GLenum type, const GLvoid *pixels), (target, level, internalformat, width, border, format, type, pixels), STUB, NONE) \
    VLD_GL(void, glTexImage2D, (GLenum target, GLint level, GLint internalformat, GLsizei width, GLsizei height, GLint border, GLenum format, GLenum type, const GLvoid *pixels), (target, level, internalformat, width, height, border, format, type, pixels), ROUTED, TexImage2D) \
    VLD_GL(void, glTexParameterf, (GLenum target, GLenum pname, GLfloat param), (target, pname, param), FOLD_PARAM, glTexParameterfv) \
    VLD_GL(void, glTexParameterfv, (GLenum target, GLenum pname, const GLfloat *params), (target, pname, params), ROUTED, TexParameterfv) \
    VLD_GL(void, glTexParameteri, (GLenum target, GLenum pname, GLint param), (target, pname, param), FOLD_PARAM, glTexParameterfv) \
    VLD_GL(void, glTexParameteriv, (GLenum target, GLenum pname, const GLint *params), (target, pname, params), FOLD_PARAM_VEC, glTexParameterfv) \
    VLD_GL(void, glTexSubImage1D, (GLenum target, GLint level, GLint xoffset, GLsizei width, GLenum format, GLenum type, const GLvoid *pixels), (target, level, xoffset, width, format, type, pixels), STUB, NONE) \
    VLD_GL(void, glTexSubImage1DEXT, (GLenum target, GLint level, GLint xoffset, GLsizei width, GLenum format, GLenum type, const GLvoid *pixels), (target, level, xoffset, width, format, type, pixels), STUB, NONE) \
    VLD_GL(void, glTexSubImage2D, (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width, GLsizei height, GLenum format, GLenum type, const GLvoid *pixels), (target, level, xoffset, yoffset, width, height, format, type, pixels), ROUTED, TexSubImage2D) \
    VLD_GL(void, glTexSubImage2DEXT, (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width, GLsizei height, GLenum format, GLenum type, const GLvoid *pixels), (target, level, xoffset, yoffset, width, height, format, type, pixels), ROUTED, TexSubImage2D) \
    VLD_GL(void, glTranslated, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), ROUTED, Translated) \
    VLD_GL(void, glTranslatef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), ROUTED, Translatef) \
    VLD_GL(void, glVertex2d, (GLdouble x, GLdouble y), (x, y), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2dv, (const GLdouble *v), (v), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2f, (GLfloat x, GLfloat y), (x, y), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2fv, (const GLfloat *v), (v), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2i, (GLint x, GLint y), (x, y), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2iv, (const GLint *v), (v), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2s, (GLshort x, GLshort y), (x, y), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex2sv, (const GLshort *v), (v), FOLD2, glVertex3f) \
    VLD_GL(void, glVertex3d, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3dv, (const GLdouble *v), (v), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3f, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), DIRECT, Vertex3f) \
    VLD_GL(void, glVertex3fv, (const GLfloat *v), (v), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3i, (GLint x, GLint y, GLint z), (x, y, z), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3iv, (const GLint *v), (v), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3s, (GLshort x, GLshort y, GLshort z), (x, y, z), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex3sv, (const GLshort *v), (v), FOLD3, glVertex3f) \
    VLD_GL(void, glVertex4d, (GLdouble x, GLdouble y, GLdouble z, GLdouble w), (x, y, z, w), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4dv, (const GLdouble *v), (v), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4f, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4fv, (const GLfloat *v), (v), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4i, (GLint x, GLint y, GLint z, GLint w), (x, y, z, w), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4iv, (const GLint *v), (v), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4s, (GLshort x, GLshort y, GLshort z, GLshort w), (x, y, z, w), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertex4sv, (const GLshort *v), (v), FOLD_DIVIDE, glVertex3f) \
    VLD_GL(void, glVertexPointer, (GLint size, GLenum type, GLsizei stride, const GLvoid *pointer), (size, type, stride, pointer), STUB, NONE) \
    VLD_GL(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height), ROUTED, Viewport) \
    VLD_GL(int, wglChoosePixelFormat, (HDC hdc, const PIXELFORMATDESCRIPTOR *ppfd), (hdc, ppfd), WGL, NONE) \
    VLD_GL(BOOL, wglCopyContext, (HGLRC src, HGLRC dst, UINT mask), (src, dst, mask), WGL_STUB, NONE) \
    VLD_GL(HGLRC, wglCreateContext, (HDC hdc), (hdc), WGL, NONE) \
    VLD_GL(HGLRC, wglCreateLayerContext, (HDC hdc, int layer), (hdc, layer), WGL, NONE) \
    VLD_GL(BOOL, wglDeleteContext, (HGLRC ctx), (ctx), WGL, NONE) \
    VLD_GL(BOOL, wglDescribeLayerPlane, (HDC hdc, int format, int layer, UINT nBytes, LPLAYERPLANEDESCRIPTOR plpd), (hdc, format, layer, nBytes, plpd), WGL_STUB, NONE) \
    VLD_GL(int, wglDescribePixelFormat, (HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd), (hdc, iPixelFormat, nBytes, ppfd), WGL, NONE) \
    VLD_GL(HGLRC, wglGetCurrentContext, (void), (), WGL, NONE) \
    VLD_GL(HDC, wglGetCurrentDC, (void), (), WGL, NONE) \
    VLD_GL(PROC, wglGetDefaultProcAddress, (LPCSTR name), (name), WGL_STUB, NONE) \
    VLD_GL(int, wglGetLayerPaletteEntries, (HDC hdc, int layer, int start, int count, COLORREF *entries), (hdc, layer, start, count, entries), WGL_STUB, NONE) \
    VLD_GL(int, wglGetPixelFormat, (HDC hdc), (hdc), WGL, NONE) \
    VLD_GL(PROC, wglGetProcAddress, (LPCSTR name), (name), WGL, NONE) \
    VLD_GL(BOOL, wglMakeCurrent, (HDC hdc, HGLRC ctx), (hdc, ctx), WGL, NONE) \
    VLD_GL(BOOL, wglRealizeLayerPalette, (HDC hdc, int layer, BOOL realize), (hdc, layer, realize), WGL_STUB, NONE) \
    VLD_GL(int, wglSetLayerPaletteEntries, (HDC hdc, int layer, int start, int count, const COLORREF *entries), (hdc, layer, start, count, entries), WGL_STUB, NONE) \
    VLD_GL(BOOL, wglSetPixelFormat, (HDC hdc, int format, const PIXELFORMATDESCRIPTOR *ppfd), (hdc, format, ppfd), WGL, NONE) \
    VLD_GL(BOOL, wglShareLists, (HGLRC a, HGLRC b), (a, b), WGL, NONE) \
    VLD_GL(BOOL, wglSwapBuffers, (HDC hdc), (hdc), WGL, NONE) \
    VLD_GL(BOOL, wglSwapLayerBuffers, (HDC hdc, UINT planes), (hdc, planes), WGL, NONE) \
    VLD_GL(void, wglSwapMultipleBuffers, (void), (), NAME, NONE) \
    VLD_GL(BOOL, wglUseFontBitmapsA, (HDC hdc, DWORD first, DWORD count, DWORD listBase), (hdc, first, count, listBase), WGL, NONE) \
    VLD_GL(BOOL, wglUseFontBitmapsW, (HDC hdc, DWORD first, DWORD count, DWORD listBase), (hdc, first, count, listBase), WGL_STUB, NONE) \
    VLD_GL(BOOL, wglUseFontOutlinesA, (HDC hdc, DWORD first, DWORD count, DWORD listBase, FLOAT deviation, FLOAT extrusion, int format, LPGLYPHMETRICSFLOAT metrics), (hdc, first, count, listBase, deviation, extrusion, format, metrics), WGL_STUB, NONE) \
    VLD_GL(BOOL, wglUseFontOutlinesW, (HDC hdc, DWORD first, DWORD count, DWORD listBase, FLOAT deviation, FLOAT extrusion, int format, LPGLYPHMETRICSFLOAT metrics), (hdc, first, count, listBase, deviation, extrusion, format, metrics), WGL_STUB, NONE) \
    /* end of VLD_GL_ENTRIES */

#define VLD_EXT_ENTRIES(VLD_EXT) \
    VLD_EXT(void, glMinimizeVELD, (GLenum target, GLenum value), (target, value), OWN, NONE) \
    VLD_EXT(void, glShutdownVELD, (void), (), OWN, NONE) \
    VLD_EXT(void, glStatsResetVELD, (void), (), OWN, NONE) \
    VLD_EXT(int, wglUnitCountGetVELD, (int *count), (count), OWN, NONE) \
    VLD_EXT(int, wglUnitCurrentVELD, (HGLRC ctx, int unit), (ctx, unit), OWN, NONE) \
    VLD_EXT(int, wglUnitCurrentGetVELD, (HGLRC ctx, int *unit), (ctx, unit), OWN, NONE) \
    VLD_EXT(int, wglUnitDefaultVELD, (int unit), (unit), OWN, NONE) \
    VLD_EXT(int, wglUnitDefaultGetVELD, (int *unit), (unit), OWN, NONE) \
    VLD_EXT(void, glDisableImmVELD, (GLenum cap), (cap), IMM_NOTEST, Disable) \
    VLD_EXT(void, glEnableImmVELD, (GLenum cap), (cap), IMM_NOTEST, Enable) \
    VLD_EXT(GLboolean, glIsSwapReadyVELD, (void), (), OWN, NONE) \
    VLD_EXT(GLtimeoutcallbackVELD, glTimeoutCallbackSetVELD, (GLtimeoutcallbackVELD callback), (callback), OWN, NONE) \
    VLD_EXT(void, glTimeoutPeriodSetVELD, (GLfloat seconds), (seconds), OWN, NONE) \
    VLD_EXT(int, vldSetEnvVELD, (const char *name, const char *value), (name, value), OWN, NONE) \
    VLD_EXT(void, vldAppendList, (GLuint list, GLenum mode), (list, mode), OWN, NONE) \
    VLD_EXT(GLboolean, vldIsListNonEmpty, (GLuint list), (list), OWN, NONE) \
    VLD_EXT(int, KSI_vld_init, (void), (), OWN, NONE) \
    VLD_EXT(void, glDrawFacesImmVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, glDrawLinesImmVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, glDrawPointsImmVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, glDrawFacesVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, glDrawLinesVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, glDrawPointsVELD, (GLvoid *record), (record), OWN, NONE) \
    VLD_EXT(void, KSI_vld_swap_buffers, (void), (), OWN, NONE) \
    VLD_EXT(int, vldSwapIntervalSet, (int interval), (interval), OWN, NONE) \
    VLD_EXT(int, KSI_vld_fbf_inq_refresh, (int unit, int *hz), (unit, hz), OWN, NONE) \
    VLD_EXT(int, KSI_vld_fbf_inq_resolution, (int unit, int *width, int *height), (unit, width, height), OWN, NONE) \
    VLD_EXT(int, KSI_vld_fbf_set_refresh, (int unit, int hz), (unit, hz), OWN, NONE) \
    VLD_EXT(int, KSI_vld_fbf_set_resolution, (int unit, int width, int height), (unit, width, height), OWN, NONE) \
    VLD_EXT(void, KSI_vld_glide_3df_free_info, (GLvoid *info), (info), OWN, NONE) \
    VLD_EXT(int, KSI_vld_glide_3df_import, (const GLvoid *request, GLvoid *result), (request, result), OWN, NONE) \
    VLD_EXT(int, KSI_vld_set_unit, (int unit), (unit), OWN, NONE) \
    VLD_EXT(void, KSI_vld_set_passthru_fbi, (int state), (state), OWN, NONE) \
    VLD_EXT(int, KSI_vld_txr_set_state_system, (int state), (state), OWN, NONE) \
    /* end of VLD_EXT_ENTRIES */

#define VLD_PROC_ENTRIES(VLD_PROC) \
    VLD_PROC(glAreTexturesResident, glAreTexturesResident) \
    VLD_PROC(glAreTexturesResidentEXT, glAreTexturesResidentEXT) \
    VLD_PROC(glBindTexture, glBindTexture) \
    VLD_PROC(glBindTextureEXT, glBindTextureEXT) \
    VLD_PROC(glDeleteTextures, glDeleteTextures) \
    VLD_PROC(glDeleteTexturesEXT, glDeleteTexturesEXT) \
    VLD_PROC(glDetailTexFuncSGIS, glDetailTexFuncSGIS) \
    VLD_PROC(glGenTextures, glGenTextures) \
    VLD_PROC(glGenTexturesEXT, glGenTexturesEXT) \
    VLD_PROC(glGetDetailTexFuncSGIS, glGetDetailTexFuncSGIS) \
    VLD_PROC(glGetSharpenTexFuncSGIS, glGetSharpenTexFuncSGIS) \
    VLD_PROC(glGetTexFilterFuncSGIS, glGetTexFilterFuncSGIS) \
    VLD_PROC(glIsTexture, glIsTexture) \
    VLD_PROC(glIsTextureEXT, glIsTextureEXT) \
    VLD_PROC(glMultiTexCoord1dEXT, glMultiTexCoord1dSGIS) \
    VLD_PROC(glMultiTexCoord1dSGIS, glMultiTexCoord1dSGIS) \
    VLD_PROC(glMultiTexCoord1dvEXT, glMultiTexCoord1dvSGIS) \
    VLD_PROC(glMultiTexCoord1dvSGIS, glMultiTexCoord1dvSGIS) \
    VLD_PROC(glMultiTexCoord1fEXT, glMultiTexCoord1fSGIS) \
    VLD_PROC(glMultiTexCoord1fSGIS, glMultiTexCoord1fSGIS) \
    VLD_PROC(glMultiTexCoord1fvEXT, glMultiTexCoord1fvSGIS) \
    VLD_PROC(glMultiTexCoord1fvSGIS, glMultiTexCoord1fvSGIS) \
    VLD_PROC(glMultiTexCoord1iEXT, glMultiTexCoord1iSGIS) \
    VLD_PROC(glMultiTexCoord1iSGIS, glMultiTexCoord1iSGIS) \
    VLD_PROC(glMultiTexCoord1ivEXT, glMultiTexCoord1ivSGIS) \
    VLD_PROC(glMultiTexCoord1ivSGIS, glMultiTexCoord1ivSGIS) \
    VLD_PROC(glMultiTexCoord1sEXT, glMultiTexCoord1sSGIS) \
    VLD_PROC(glMultiTexCoord1sSGIS, glMultiTexCoord1sSGIS) \
    VLD_PROC(glMultiTexCoord1svEXT, glMultiTexCoord1svSGIS) \
    VLD_PROC(glMultiTexCoord1svSGIS, glMultiTexCoord1svSGIS) \
    VLD_PROC(glMultiTexCoord2dEXT, glMultiTexCoord2dSGIS) \
    VLD_PROC(glMultiTexCoord2dSGIS, glMultiTexCoord2dSGIS) \
    VLD_PROC(glMultiTexCoord2dvEXT, glMultiTexCoord2dvSGIS) \
    VLD_PROC(glMultiTexCoord2dvSGIS, glMultiTexCoord2dvSGIS) \
    VLD_PROC(glMultiTexCoord2fEXT, glMultiTexCoord2fSGIS) \
    VLD_PROC(glMultiTexCoord2fSGIS, glMultiTexCoord2fSGIS) \
    VLD_PROC(glMultiTexCoord2fvEXT, glMultiTexCoord2fvSGIS) \
    VLD_PROC(glMultiTexCoord2fvSGIS, glMultiTexCoord2fvSGIS) \
    VLD_PROC(glMultiTexCoord2iEXT, glMultiTexCoord2iSGIS) \
    VLD_PROC(glMultiTexCoord2iSGIS, glMultiTexCoord2iSGIS) \
    VLD_PROC(glMultiTexCoord2ivEXT, glMultiTexCoord2ivSGIS) \
    VLD_PROC(glMultiTexCoord2ivSGIS, glMultiTexCoord2ivSGIS) \
    VLD_PROC(glMultiTexCoord2sEXT, glMultiTexCoord2sSGIS) \
    VLD_PROC(glMultiTexCoord2sSGIS, glMultiTexCoord2sSGIS) \
    VLD_PROC(glMultiTexCoord2svEXT, glMultiTexCoord2svSGIS) \
    VLD_PROC(glMultiTexCoord2svSGIS, glMultiTexCoord2svSGIS) \
    VLD_PROC(glMultiTexCoord3dEXT, glMultiTexCoord3dSGIS) \
    VLD_PROC(glMultiTexCoord3dSGIS, glMultiTexCoord3dSGIS) \
    VLD_PROC(glMultiTexCoord3dvEXT, glMultiTexCoord3dvSGIS) \
    VLD_PROC(glMultiTexCoord3dvSGIS, glMultiTexCoord3dvSGIS) \
    VLD_PROC(glMultiTexCoord3fEXT, glMultiTexCoord3fSGIS) \
    VLD_PROC(glMultiTexCoord3fSGIS, glMultiTexCoord3fSGIS) \
    VLD_PROC(glMultiTexCoord3fvEXT, glMultiTexCoord3fvSGIS) \
    VLD_PROC(glMultiTexCoord3fvSGIS, glMultiTexCoord3fvSGIS) \
    VLD_PROC(glMultiTexCoord3iEXT, glMultiTexCoord3iSGIS) \
    VLD_PROC(glMultiTexCoord3iSGIS, glMultiTexCoord3iSGIS) \
    VLD_PROC(glMultiTexCoord3ivEXT, glMultiTexCoord3ivSGIS) \
    VLD_PROC(glMultiTexCoord3ivSGIS, glMultiTexCoord3ivSGIS) \
    VLD_PROC(glMultiTexCoord3sEXT, glMultiTexCoord3sSGIS) \
    VLD_PROC(glMultiTexCoord3sSGIS, glMultiTexCoord3sSGIS) \
    VLD_PROC(glMultiTexCoord3svEXT, glMultiTexCoord3svSGIS) \
    VLD_PROC(glMultiTexCoord3svSGIS, glMultiTexCoord3svSGIS) \
    VLD_PROC(glMultiTexCoord4dEXT, glMultiTexCoord4dSGIS) \
    VLD_PROC(glMultiTexCoord4dSGIS, glMultiTexCoord4dSGIS) \
    VLD_PROC(glMultiTexCoord4dvEXT, glMultiTexCoord4dvSGIS) \
    VLD_PROC(glMultiTexCoord4dvSGIS, glMultiTexCoord4dvSGIS) \
    VLD_PROC(glMultiTexCoord4fEXT, glMultiTexCoord4fSGIS) \
    VLD_PROC(glMultiTexCoord4fSGIS, glMultiTexCoord4fSGIS) \
    VLD_PROC(glMultiTexCoord4fvEXT, glMultiTexCoord4fvSGIS) \
    VLD_PROC(glMultiTexCoord4fvSGIS, glMultiTexCoord4fvSGIS) \
    VLD_PROC(glMultiTexCoord4iEXT, glMultiTexCoord4iSGIS) \
    VLD_PROC(glMultiTexCoord4iSGIS, glMultiTexCoord4iSGIS) \
    VLD_PROC(glMultiTexCoord4ivEXT, glMultiTexCoord4ivSGIS) \
    VLD_PROC(glMultiTexCoord4ivSGIS, glMultiTexCoord4ivSGIS) \
    VLD_PROC(glMultiTexCoord4sEXT, glMultiTexCoord4sSGIS) \
    VLD_PROC(glMultiTexCoord4sSGIS, glMultiTexCoord4sSGIS) \
    VLD_PROC(glMultiTexCoord4svEXT, glMultiTexCoord4svSGIS) \
    VLD_PROC(glMultiTexCoord4svSGIS, glMultiTexCoord4svSGIS) \
    VLD_PROC(glPrioritizeTexturesEXT, glPrioritizeTexturesEXT) \
    VLD_PROC(glSelectTextureCoordSetEXT, glSelectTextureCoordSetSGIS) \
    VLD_PROC(glSelectTextureCoordSetSGIS, glSelectTextureCoordSetSGIS) \
    VLD_PROC(glSelectTextureEXT, glSelectTextureSGIS) \
    VLD_PROC(glSelectTextureSGIS, glSelectTextureSGIS) \
    VLD_PROC(glSelectTextureTransformEXT, glSelectTextureTransformSGIS) \
    VLD_PROC(glSelectTextureTransformSGIS, glSelectTextureTransformSGIS) \
    VLD_PROC(glSharpenTexFuncSGIS, glSharpenTexFuncSGIS) \
    VLD_PROC(glMinimizeVELD, glMinimizeVELD) \
    VLD_PROC(glShutdownVELD, glShutdownVELD) \
    VLD_PROC(glStatsResetVELD, glStatsResetVELD) \
    VLD_PROC(glTexFilterFuncSGIS, glTexFilterFuncSGIS) \
    VLD_PROC(glTexSubImage2DEXT, glTexSubImage2DEXT) \
    VLD_PROC(wglUnitCountGetVELD, wglUnitCountGetVELD) \
    VLD_PROC(wglUnitCurrentVELD, wglUnitCurrentVELD) \
    VLD_PROC(wglUnitCurrentGetVELD, wglUnitCurrentGetVELD) \
    VLD_PROC(wglUnitDefaultVELD, wglUnitDefaultVELD) \
    VLD_PROC(wglUnitDefaultGetVELD, wglUnitDefaultGetVELD) \
    VLD_PROC(glDisableImmVELD, glDisableImmVELD) \
    VLD_PROC(glEnableImmVELD, glEnableImmVELD) \
    VLD_PROC(glIsSwapReadyVELD, glIsSwapReadyVELD) \
    VLD_PROC(glTimeoutCallbackSetVELD, glTimeoutCallbackSetVELD) \
    VLD_PROC(glTimeoutPeriodSetVELD, glTimeoutPeriodSetVELD) \
    VLD_PROC(vldSetEnvVELD, vldSetEnvVELD) \
    VLD_PROC(vldAppendList, vldAppendList) \
    VLD_PROC(vldIsListNonEmpty, vldIsListNonEmpty) \
    VLD_PROC(KSI_vld_init, KSI_vld_init) \
    VLD_PROC(glDrawFacesImmVELD, glDrawFacesImmVELD) \
    VLD_PROC(glDrawLinesImmVELD, glDrawLinesImmVELD) \
    VLD_PROC(glDrawPointsImmVELD, glDrawPointsImmVELD) \
    VLD_PROC(glDrawFacesVELD, glDrawFacesVELD) \
    VLD_PROC(glDrawLinesVELD, glDrawLinesVELD) \
    VLD_PROC(glDrawPointsVELD, glDrawPointsVELD) \
    VLD_PROC(KSI_vld_swap_buffers, KSI_vld_swap_buffers) \
    VLD_PROC(vldSwapIntervalSet, vldSwapIntervalSet) \
    VLD_PROC(KSI_vld_fbf_inq_refresh, KSI_vld_fbf_inq_refresh) \
    VLD_PROC(KSI_vld_fbf_inq_resolution, KSI_vld_fbf_inq_resolution) \
    VLD_PROC(KSI_vld_fbf_set_refresh, KSI_vld_fbf_set_refresh) \
    VLD_PROC(KSI_vld_fbf_set_resolution, KSI_vld_fbf_set_resolution) \
    VLD_PROC(KSI_vld_glide_3df_free_info, KSI_vld_glide_3df_free_info) \
    VLD_PROC(KSI_vld_glide_3df_import, KSI_vld_glide_3df_import) \
    VLD_PROC(KSI_vld_set_unit, KSI_vld_set_unit) \
    VLD_PROC(KSI_vld_set_passthru_fbi, KSI_vld_set_passthru_fbi) \
    VLD_PROC(KSI_vld_txr_set_state_system, KSI_vld_txr_set_state_system) \
    /* end of VLD_PROC_ENTRIES */

#define VLD_GLU_ENTRIES(VLD_GLU) \
    VLD_GLU(GLint, gluBuild2DMipmaps, (GLenum target, GLint components, GLint width, GLint height, GLenum format, GLenum type, const void *data), (target, components, width, height, format, type, data)) \
    VLD_GLU(const GLubyte *, gluErrorString, (GLenum error), (error)) \
    VLD_GLU(GLint, gluScaleImage, (GLenum format, GLint widthin, GLint heightin, GLenum typein, const void *datain, GLint widthout, GLint heightout, GLenum typeout, void *dataout), (format, widthin, heightin, typein, datain, widthout, heightout, typeout, dataout)) \
    /* end of VLD_GLU_ENTRIES */
// clang-format on

// Row numbers of the name table, as the stub reporter and the call counters use them.
enum vld_entry_row : int {
#define VLD_ENTRY_ROW_ENUM(ret, name, params, args, kind, impl) VLD_ROW_##name,
    VLD_GL_ENTRIES(VLD_ENTRY_ROW_ENUM)
#undef VLD_ENTRY_ROW_ENUM
    VLD_ROW_COUNT
};

// Positions in the look-up table of wglGetProcAddress.
enum vld_proc_index : int {
#define VLD_ENTRY_PROC_ENUM(name, function) VLD_PROC_ROW_##name,
    VLD_PROC_ENTRIES(VLD_ENTRY_PROC_ENUM)
#undef VLD_ENTRY_PROC_ENUM
    VLD_PROC_ROW_COUNT
};

static_assert(VLD_ROW_COUNT == 418, "the name table has 418 rows");
static_assert(VLD_PROC_ROW_COUNT == 122, "the look-up table of wglGetProcAddress has 122 rows");

#endif // ZVGL_VLD_API_VLD_ENTRIES_H
