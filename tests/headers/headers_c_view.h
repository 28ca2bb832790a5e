/* What the C side of the header test reports. */
#ifndef ZVGL_TESTS_HEADERS_C_VIEW_H
#define ZVGL_TESTS_HEADERS_C_VIEW_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

struct zvgl_c_layout {
    size_t pfd_size;
    size_t pfd_flags_offset;
    size_t pfd_depth_offset;
    size_t pfd_layer_mask_offset;
    size_t glenum_size;
    size_t glboolean_size;
    size_t gldouble_size;
};

void zvgl_headers_c_layout(struct zvgl_c_layout *out);
unsigned long zvgl_headers_c_enum(int which);

#ifdef __cplusplus
}
#endif

#endif
