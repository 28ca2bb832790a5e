// The names the library must export, from the table of entries: every row of the name
// table but the NAME rows, and the GLU functions. The library's own entry points are found
// through wglGetProcAddress only.
#pragma once

#include <set>
#include <string>

#include "vld/api/vld_entries.h"

inline std::set<std::string> expected_exports()
{
    std::set<std::string> names;
#define EXPORT_YES(name) names.insert(#name);
#define EXPORT_NO(name)
#define EXPORT_KIND_NAME EXPORT_NO
#define EXPORT_KIND_ROUTED EXPORT_YES
#define EXPORT_KIND_ROUTED_ENABLE EXPORT_YES
#define EXPORT_KIND_ROUTED_STENCILOP EXPORT_YES
#define EXPORT_KIND_QUERY EXPORT_YES
#define EXPORT_KIND_QUERY_EXEC EXPORT_YES
#define EXPORT_KIND_DIRECT EXPORT_YES
#define EXPORT_KIND_FOLD1 EXPORT_YES
#define EXPORT_KIND_FOLD2 EXPORT_YES
#define EXPORT_KIND_FOLD3 EXPORT_YES
#define EXPORT_KIND_FOLD4 EXPORT_YES
#define EXPORT_KIND_FOLD_DIVIDE EXPORT_YES
#define EXPORT_KIND_FOLD_RECT EXPORT_YES
#define EXPORT_KIND_FOLD_PARAM EXPORT_YES
#define EXPORT_KIND_FOLD_PARAM_VEC EXPORT_YES
#define EXPORT_KIND_STUB EXPORT_YES
#define EXPORT_KIND_GDI EXPORT_YES
#define EXPORT_KIND_WGL EXPORT_YES
#define EXPORT_KIND_WGL_STUB EXPORT_YES
#define EXPORT_ROW(ret, name, params, args, kind, impl) EXPORT_KIND_##kind(name)
#define EXPORT_GLU(ret, name, params, args) EXPORT_YES(name)
    VLD_GL_ENTRIES(EXPORT_ROW)
    VLD_GLU_ENTRIES(EXPORT_GLU)
    return names;
}
