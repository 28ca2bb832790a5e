// The GL types and enumerants that the API frame needs. They come from the public header;
// until that header is part of the tree, the few that the frame uses are declared here.
#pragma once

#if __has_include(<zvgl/gl.h>)
#include <zvgl/gl.h>
#else
#include <stdint.h>
typedef unsigned int GLenum; typedef unsigned char GLboolean; typedef unsigned int GLbitfield;
typedef signed char GLbyte; typedef short GLshort; typedef int GLint; typedef int GLsizei;
typedef unsigned char GLubyte; typedef unsigned short GLushort; typedef unsigned int GLuint;
typedef float GLfloat; typedef float GLclampf; typedef double GLdouble; typedef double GLclampd; typedef void GLvoid;
#define GL_NO_ERROR 0
#define GL_INVALID_ENUM 0x0500
#define GL_INVALID_VALUE 0x0501
#define GL_INVALID_OPERATION 0x0502
#define GL_STACK_OVERFLOW 0x0503
#define GL_STACK_UNDERFLOW 0x0504
#define GL_OUT_OF_MEMORY 0x0505
#define GL_POINTS 0
#define GL_LINES 1
#define GL_LINE_LOOP 2
#define GL_LINE_STRIP 3
#define GL_TRIANGLES 4
#define GL_TRIANGLE_STRIP 5
#define GL_TRIANGLE_FAN 6
#define GL_QUADS 7
#define GL_QUAD_STRIP 8
#define GL_POLYGON 9
#define GL_POINT 0x1B00
#define GL_LINE 0x1B01
#define GL_FILL 0x1B02
#define GL_DONT_CARE 0x1100
#define GL_FASTEST 0x1101
#define GL_NICEST 0x1102
#define GL_CLAMP 0x2900
#define GL_COLOR_MATERIAL 0x0B57
#define GL_TEXTURE_ENV_MODE 0x2200
#define GL_TEXTURE_ENV_COLOR 0x2201
#define GL_TEXTURE_BORDER_COLOR 0x1004
#define GL_TEXTURE0_SGIS 0x835E
#define GL_COMPILE 0x1300
#define GL_COMPILE_AND_EXECUTE 0x1301
#define GL_MODELVIEW 0x1700
#define GL_LIGHT0 0x4000
#endif
