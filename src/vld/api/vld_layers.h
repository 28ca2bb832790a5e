// vld_layers.h: prototypes of the layer functions behind the entry frames, expanded from the
// table of entries (vld_entries.h), so that a frame and its layers cannot disagree.
//
//   __vldim_<impl>  the immediate layer: carries a call out at once
//   __vldlc_<impl>  the list-compile layer: records it into the list being built
//   __vlddo_<impl>  the direct layer: capture and list control, with routing of its own
//
// Each takes the parameters of its table row and returns the row's type. Several exported
// names may share one stem (glBindTexture and glBindTextureEXT -> BindTexture); the
// repeated declarations are identical.
#pragma once

#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include "vld/api/vld_entries.h"

// The name of a stem's function in each layer. Defined before this header, they build the
// frames against other functions (a test's recording layers).
#ifndef VLD_IM
#define VLD_IM(impl) __vldim_##impl
#endif
#ifndef VLD_LC
#define VLD_LC(impl) __vldlc_##impl
#endif
#ifndef VLD_DO
#define VLD_DO(impl) __vlddo_##impl
#endif

// Which layers each kind of row reaches.
#define VLD_LAYER_DECL_IM_LC(ret, params, impl)                                                \
    ret VLD_IM(impl) params;                                                                   \
    ret VLD_LC(impl) params;
#define VLD_LAYER_DECL_IM(ret, params, impl) ret VLD_IM(impl) params;
#define VLD_LAYER_DECL_DO(ret, params, impl) ret VLD_DO(impl) params;
#define VLD_LAYER_DECL_NONE(ret, params, impl)

#define VLD_LAYER_KIND_ROUTED VLD_LAYER_DECL_IM_LC
#define VLD_LAYER_KIND_ROUTED_ENABLE VLD_LAYER_DECL_IM_LC
#define VLD_LAYER_KIND_ROUTED_STENCILOP VLD_LAYER_DECL_IM_LC
#define VLD_LAYER_KIND_QUERY VLD_LAYER_DECL_IM
#define VLD_LAYER_KIND_QUERY_EXEC VLD_LAYER_DECL_IM
#define VLD_LAYER_KIND_IMM_NOTEST VLD_LAYER_DECL_IM
#define VLD_LAYER_KIND_DIRECT VLD_LAYER_DECL_DO
#define VLD_LAYER_KIND_FOLD1 VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD2 VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD3 VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD4 VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD_DIVIDE VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD_RECT VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD_PARAM VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_FOLD_PARAM_VEC VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_STUB VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_GDI VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_WGL VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_WGL_STUB VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_NAME VLD_LAYER_DECL_NONE
#define VLD_LAYER_KIND_OWN VLD_LAYER_DECL_NONE

#define VLD_LAYER_DECL_ROW(ret, name, params, args, kind, impl)                                \
    VLD_LAYER_KIND_##kind(ret, params, impl)
VLD_GL_ENTRIES(VLD_LAYER_DECL_ROW)
VLD_EXT_ENTRIES(VLD_LAYER_DECL_ROW)
#undef VLD_LAYER_DECL_ROW
