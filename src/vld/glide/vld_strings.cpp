// The texts of glGetString: vendor, the renderer built from the unit the context renders on,
// the version with Glide's own version appended, and the extension list.
#include <glide2/glide.h>

#include <cstdio>
#include <cstring>

#include "support/sys/sys.h"
#include "vld/api/vld_functab.h"
#include "vld/api/vld_layers.h"
#include "vld/glide/vld_device.h"

namespace {

// The process-wide texts, rewritten at every call; a second caller's text replaces the first.
char vldRendererText[160] = "Basalt:Win9x/fb:unk/txr:unk";
char vldVersionText[192] = "1.1 Veldra 4.2 Glide V2.0";

constexpr double VLD_BYTES_TO_MB = 9.5367431640625e-07;

// Whether a text must be quoted to stand in the renderer string: it holds white space.
bool vld_needs_quotes(const char* text)
{
    return std::strpbrk(text, " \t\r\n\v\f") != nullptr;
}

// Appends a formatted piece to the renderer text, cut at its end.
template <typename... Args>
void vld_append(char* text, size_t size, const char* format, Args... args)
{
    const size_t used = std::strlen(text);
    if (used + 1 < size)
        std::snprintf(text + used, size - used, format, args...);
}

// "<board>:<os>" with the memory of the board: "/fb:<MB>", "/tmu:<MB>+<MB>" and "/sli" for a
// scan-line-interleaved pair; "No Glide Context:<os>" when the context has no board.
void vld_build_renderer(const vld_unit* unit)
{
    char os[80] = "";
    KSI_sys_inq_os_string(sizeof os, os, 1);
    const char* osFormat = vld_needs_quotes(os) ? "%s:\"%s\"" : "%s:%s";
    char* text = vldRendererText;
    const size_t size = sizeof vldRendererText;
    text[0] = '\0';
    if (!unit) {
        vld_append(text, size, osFormat, "No Glide Context", os);
        return;
    }

    char name[sizeof unit->boardName];
    std::snprintf(name, sizeof name, "%s", unit->boardName);
    if (std::strncmp(name, "Voodoo3", 7) == 0)
        name[7] = '\0';
    vld_append(text, size, osFormat, name, os);

    if (unit->frameBufferBytes != 0) {
        vld_append(text, size, "/fb:%.4g", unit->frameBufferBytes * VLD_BYTES_TO_MB);
        for (int t = 0; t < unit->tmuCount && t < 2; ++t) {
            const uint32_t bytes = unit->tmu[t].highAddress - unit->tmu[t].lowAddress;
            vld_append(text, size, "%s%.4g", t == 0 ? "/tmu:" : "+", bytes * VLD_BYTES_TO_MB);
        }
    }
    if (unit->sliPair)
        vld_append(text, size, "%s", "/sli");
}

// "1.1 Veldra <library version> Glide <Glide's version>".
void vld_build_version()
{
    char version[32] = "";
    KS_sys_inq_version(version);
    std::snprintf(vldVersionText, sizeof vldVersionText, "1.1 Veldra %s Glide ", version);
    const size_t used = std::strlen(vldVersionText);
    static_assert(sizeof vldVersionText >= 32 + 20 + 80, "room for Glide's 80-byte version");
    grGlideGetVersion(vldVersionText + used);
}

} // namespace

// The texts of glGetString; an unknown name gives the empty text and no error.
const GLubyte* __vldim_GetString(GLenum name)
{
    switch (name) {
    case GL_VENDOR:
        return (const GLubyte*)"Cordwain";
    case GL_RENDERER:
        vld_build_renderer(vldGc ? vldGc->boundUnit : nullptr);
        return (const GLubyte*)vldRendererText;
    case GL_VERSION:
        vld_build_version();
        return (const GLubyte*)vldVersionText;
    case GL_EXTENSIONS:
        return (const GLubyte*)vldExtensionString;
    default:
        return (const GLubyte*)"";
    }
}
