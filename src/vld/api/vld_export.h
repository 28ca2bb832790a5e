// How the library marks its exported names. Which names leave the library is fixed by the
// lists generated from the table of entries: the .def file on Windows, the version script
// elsewhere; the mark only keeps a definition visible to that list.
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

// The declaration of a variable that only the library's own code reads: with it, position-
// independent code reaches the variable directly instead of through the global offset table
// (every entry frame reads vldGc).
#if defined(_WIN32)
#define VLD_LOCAL
#else
#define VLD_LOCAL __attribute__((visibility("hidden")))
#endif
