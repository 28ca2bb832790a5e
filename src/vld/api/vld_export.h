// How the library marks its exported names. On Windows the generated .def file lists the
// exports; elsewhere the library is built with hidden visibility and these are opened.
#pragma once

#if defined(_WIN32)
#define VLD_EXPORT
#if defined(_WIN64)
#define VLD_APIENTRY
#else
#define VLD_APIENTRY __stdcall
#endif
#else
#define VLD_EXPORT __attribute__((visibility("default")))
#define VLD_APIENTRY
#endif
