// GL errors: the error code of the context, and the process-wide log that tells each
// failing place once, counts it, and sums everything up at shutdown.
#pragma once

#include "vld/api/vld_context.h"

// Every report names its place; these macros pass it.
#define VLD_GL_ERROR(ctx, code) KSP_vld_set_gl_error_fl((ctx), (code), __FILE__, __LINE__)
#define VLD_GL_ERROR_QUIET(ctx, code) KSP_vld_set_gl_error_quiet_fl((ctx), (code), __FILE__, __LINE__)
#define VLD_GL_ERROR_ENUM(ctx, value) KSP_vld_set_gl_error_enum_fl((ctx), (value), __FILE__, __LINE__)
#define VLD_GL_ERROR_ENUM_QUIET(ctx, value)                                                    \
    KSP_vld_set_gl_error_enum_quiet_fl((ctx), (value), __FILE__, __LINE__)

void KSP_vld_set_gl_error(vld_context* ctx, GLenum code);
void KSP_vld_set_gl_error_fl(vld_context* ctx, GLenum code, const char* file, int line);
void KSP_vld_set_gl_error_quiet(vld_context* ctx, GLenum code);
void KSP_vld_set_gl_error_quiet_fl(vld_context* ctx, GLenum code, const char* file, int line);
void KSP_vld_set_gl_error_enum(vld_context* ctx, uint32_t value);
void KSP_vld_set_gl_error_enum_fl(vld_context* ctx, uint32_t value, const char* file, int line);
void KSP_vld_set_gl_error_enum_quiet(vld_context* ctx, uint32_t value);
void KSP_vld_set_gl_error_enum_quiet_fl(vld_context* ctx, uint32_t value, const char* file, int line);

// Prints the summary of the log to standard error.
void KSP_vld_error_summary();
// Frees the log's texts and clears it.
void KSP_vld_error_reset();

// The log itself: records (code, value, file, line) and tells whether this is its first
// occurrence. Exposed for the statistics dump and for tests.
bool KSP_vld_error_log(GLenum code, uint32_t value, const char* file, int line);
