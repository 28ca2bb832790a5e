/* The public headers seen by a C compiler: what C code sees of them is reported to the
 * C++ test, which compares it with the C++ view. */
#include <stddef.h>

#include <zvgl/gl.h>
#include <zvgl/wgl.h>
#include <zvgl/gl.h> /* a second inclusion adds nothing */

#include "headers_c_view.h"

/* Sizes and offsets of the Win32 records as C lays them out. */
void zvgl_headers_c_layout(struct zvgl_c_layout *out)
{
    out->pfd_size = sizeof(PIXELFORMATDESCRIPTOR);
    out->pfd_flags_offset = offsetof(PIXELFORMATDESCRIPTOR, dwFlags);
    out->pfd_depth_offset = offsetof(PIXELFORMATDESCRIPTOR, cDepthBits);
    out->pfd_layer_mask_offset = offsetof(PIXELFORMATDESCRIPTOR, dwLayerMask);
    out->glenum_size = sizeof(GLenum);
    out->glboolean_size = sizeof(GLboolean);
    out->gldouble_size = sizeof(GLdouble);
}

/* A few enumerants as C sees them (the preprocessor is the same, the integer types not). */
unsigned long zvgl_headers_c_enum(int which)
{
    switch (which) {
    case 0: return GL_CLIENT_ALL_ATTRIB_BITS;
    case 1: return GL_UNSIGNED_SHORT_5_6_5_VELD;
    case 2: return GL_TEX_DOWNLOAD_COUNT_VELD;
    case 3: return PFD_STEREO_DONTCARE;
    default: return 0;
    }
}
