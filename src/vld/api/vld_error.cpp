// GL error reporting: the eight reporting forms, the log of distinct reports, the summary
// and gluErrorString.
#include "vld/api/vld_error.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "vld/api/vld_export.h"
#include "vld/api/vld_layers.h"

namespace {

struct vld_error_name {
    GLenum code;
    const char* name;
};

const vld_error_name kErrorNames[] = {
    {GL_NO_ERROR, "GL_NO_ERROR"},
    {GL_INVALID_ENUM, "GL_INVALID_ENUM"},
    {GL_INVALID_VALUE, "GL_INVALID_VALUE"},
    {GL_INVALID_OPERATION, "GL_INVALID_OPERATION"},
    {GL_STACK_OVERFLOW, "GL_STACK_OVERFLOW"},
    {GL_STACK_UNDERFLOW, "GL_STACK_UNDERFLOW"},
    {GL_OUT_OF_MEMORY, "GL_OUT_OF_MEMORY"},
};

// Writes the name of an error code into `out`: its GL name, or a made-up one for a code
// that is not a GL error.
const char* vld_error_name_of(GLenum code, char (&out)[40])
{
    for (const vld_error_name& e : kErrorNames)
        if (e.code == code)
            return e.name;
    std::snprintf(out, sizeof out, "unknown_gl_error_0x%x", code);
    return out;
}

const char* vld_text(const char* file)
{
    return file ? file : "(null)";
}

// Logs a report without a context and tells it the first time.
void vld_report_no_context(bool isEnum, const char* file, int line, bool withPlace)
{
    if (!KSP_vld_error_log(0, 0, withPlace ? file : nullptr, withPlace ? line : 0))
        return;
    if (isEnum) {
        if (withPlace)
            std::fprintf(stderr,
                         "KSP_vld_set_gl_error_enum: File %s, line %d: reporting GL invalid enum: "
                         "no rendering context\n",
                         vld_text(file), line);
        else
            std::fprintf(stderr,
                         "KSP_vld_set_gl_error_enum: reporting GL invalid enum: no rendering context\n");
    } else {
        if (withPlace)
            std::fprintf(stderr,
                         "KSP_vld_set_gl_error: File %s, line %d: reporting GL error: no rendering "
                         "context\n",
                         vld_text(file), line);
        else
            std::fprintf(stderr, "KSP_vld_set_gl_error: reporting GL error: no rendering context\n");
    }
}

// The common body of every reporting form. `loud` forms log and print the error itself;
// every form stores it in the context, or, without a context, logs and tells that.
void vld_report(vld_context* ctx, GLenum code, uint32_t value, bool isEnum, bool loud,
                const char* file, int line, bool withPlace)
{
    std::fflush(stdout);
    if (loud && vlddb.settings.verbosity >= 1 && code != 0) {
        if (KSP_vld_error_log(code, value, withPlace ? file : nullptr, withPlace ? line : 0)) {
            char buffer[40];
            if (isEnum && withPlace)
                std::fprintf(stderr, "File %s, line %d: setting gl error GL_INVALID_ENUM: 0x%x\n",
                             vld_text(file), line, value);
            else if (isEnum)
                std::fprintf(stderr,
                             "KSP_vld_set_gl_error_enum: setting gl error GL_INVALID_ENUM: 0x%x\n",
                             value);
            else if (withPlace)
                std::fprintf(stderr, "File %s, line %d: setting gl error: %s\n", vld_text(file),
                             line, vld_error_name_of(code, buffer));
            else
                std::fprintf(stderr, "KSP_vld_set_gl_error: setting gl error: %s\n",
                             vld_error_name_of(code, buffer));
        }
    }
    if (ctx)
        ctx->lastError = code;
    else
        vld_report_no_context(isEnum, file, line, withPlace);
    std::fflush(stderr);
}

} // namespace

// Enters a report into the log. Answers true when it is the first of its kind, and also
// when the log is full, so that such reports are told every time though not counted. With
// verbosity below 1 the log is left alone and answers false.
bool KSP_vld_error_log(GLenum code, uint32_t value, const char* file, int line)
{
    if (vlddb.settings.verbosity < 1)
        return false;
    if (file && !*file)
        file = nullptr;
    for (vld_error_log_entry& e : vlddb.errorLog) {
        if (e.count == 0) {
            e.line = line;
            e.code = code;
            e.value = value;
            e.file = nullptr;
            if (file) {
                size_t n = std::strlen(file) + 1;
                e.file = (char*)std::malloc(n);
                if (e.file)
                    std::memcpy(e.file, file, n);
            }
            e.count = 1;
            return true;
        }
        bool sameFile = (!e.file && !file) || (e.file && file && std::strcmp(e.file, file) == 0);
        if (sameFile && e.line == line && e.code == code && e.value == value)
            return ++e.count == 1;
    }
    return true;
}

void KSP_vld_set_gl_error(vld_context* ctx, GLenum code)
{
    vld_report(ctx, code, 0, false, true, nullptr, 0, false);
}

void KSP_vld_set_gl_error_fl(vld_context* ctx, GLenum code, const char* file, int line)
{
    vld_report(ctx, code, 0, false, true, file, line, true);
}

void KSP_vld_set_gl_error_quiet(vld_context* ctx, GLenum code)
{
    vld_report(ctx, code, 0, false, false, nullptr, 0, false);
}

void KSP_vld_set_gl_error_quiet_fl(vld_context* ctx, GLenum code, const char* file, int line)
{
    vld_report(ctx, code, 0, false, false, file, line, true);
}

void KSP_vld_set_gl_error_enum(vld_context* ctx, uint32_t value)
{
    vld_report(ctx, GL_INVALID_ENUM, value, true, true, nullptr, 0, false);
}

void KSP_vld_set_gl_error_enum_fl(vld_context* ctx, uint32_t value, const char* file, int line)
{
    vld_report(ctx, GL_INVALID_ENUM, value, true, true, file, line, true);
}

void KSP_vld_set_gl_error_enum_quiet(vld_context* ctx, uint32_t value)
{
    vld_report(ctx, GL_INVALID_ENUM, value, true, false, nullptr, 0, false);
}

void KSP_vld_set_gl_error_enum_quiet_fl(vld_context* ctx, uint32_t value, const char* file,
                                        int line)
{
    vld_report(ctx, GL_INVALID_ENUM, value, true, false, file, line, true);
}

// Prints every logged report with its count, in the order of first occurrence.
void KSP_vld_error_summary()
{
    std::fflush(stdout);
    std::fflush(stderr);
    bool first = true;
    for (const vld_error_log_entry& e : vlddb.errorLog) {
        if (e.count <= 0)
            continue;
        if (first)
            std::fprintf(stderr, "\n\nVeldra: Error Summary:\n");
        first = false;
        if (e.file)
            std::fprintf(stderr, "File %s, line %d: ", e.file, e.line);
        std::fprintf(stderr, "%d occurence%s of ", e.count, e.count == 1 ? "" : "s");
        if (e.code == 0) {
            std::fprintf(stderr, "no rendering context");
        } else if (e.code == GL_INVALID_ENUM) {
            std::fprintf(stderr, "GL_INVALID_ENUM = 0x%x\n", e.value);
        } else {
            char buffer[40];
            std::fprintf(stderr, "%s\n", vld_error_name_of(e.code, buffer));
        }
    }
    std::fflush(stderr);
}

void KSP_vld_error_reset()
{
    for (vld_error_log_entry& e : vlddb.errorLog) {
        std::free(e.file);
        e = vld_error_log_entry{};
    }
}

// glGetError: the error recorded last, which reading clears (the frame answers 0 without a
// context).
GLenum __vldim_GetError(void)
{
    vld_context* ctx = vldGc;
    if (!ctx)
        return GL_NO_ERROR;
    const GLenum code = ctx->lastError;
    ctx->lastError = GL_NO_ERROR;
    return code;
}

// The text of a GL error code.
extern "C" VLD_EXPORT const GLubyte* VLD_APIENTRY gluErrorString(GLenum code)
{
    const char* text;
    switch (code) {
    case GL_NO_ERROR: text = "no error"; break;
    case GL_INVALID_ENUM: text = "invalid enumerant"; break;
    case GL_INVALID_VALUE: text = "invalid value"; break;
    case GL_INVALID_OPERATION: text = "invalid operation"; break;
    case GL_STACK_OVERFLOW: text = "stack overflow"; break;
    case GL_STACK_UNDERFLOW: text = "stack underflow"; break;
    case GL_OUT_OF_MEMORY: text = "out of memory"; break;
    default: text = "unknown OpenGL error"; break;
    }
    return (const GLubyte*)text;
}
