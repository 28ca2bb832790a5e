// The public headers: Win32 record layout, OpenGL enumerant values, and agreement between
// what C and C++ code see of them.
#include <zvgl/gl.h>
#include <zvgl/wgl.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "headers_c_view.h"

namespace {

// The GL scalar types have the widths of the OpenGL ABI.
static_assert(sizeof(GLenum) == 4 && std::is_unsigned_v<GLenum>);
static_assert(sizeof(GLbitfield) == 4 && sizeof(GLint) == 4 && sizeof(GLsizei) == 4);
static_assert(sizeof(GLboolean) == 1 && sizeof(GLubyte) == 1 && std::is_signed_v<GLbyte>);
static_assert(sizeof(GLshort) == 2 && sizeof(GLushort) == 2);
static_assert(sizeof(GLfloat) == 4 && sizeof(GLclampf) == 4);
static_assert(sizeof(GLdouble) == 8 && sizeof(GLclampd) == 8);

// The Win32 records the library fills are laid out as on Windows.
static_assert(sizeof(PIXELFORMATDESCRIPTOR) == 40);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, dwFlags) == 4);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, iPixelType) == 8);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, cColorBits) == 9);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, cAlphaBits) == 16);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, cDepthBits) == 23);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, iLayerType) == 26);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, dwLayerMask) == 28);
static_assert(offsetof(PIXELFORMATDESCRIPTOR, dwDamageMask) == 36);
static_assert(sizeof(DWORD) == 4 && sizeof(WORD) == 2 && sizeof(BYTE) == 1 && sizeof(BOOL) == 4);

// Handles are distinct types: one cannot be passed for another.
static_assert(!std::is_same_v<HDC, HGLRC> && !std::is_same_v<HDC, HWND>);
static_assert(!std::is_convertible_v<HDC, HGLRC> && !std::is_convertible_v<HGLRC, HWND>);

struct NamedValue {
    const char *name;
    unsigned long long value;   // the value the header gives
    unsigned long long expected;
};

#define ZVGL_EXPECT_ENUM(name, expected) NamedValue{#name, static_cast<unsigned long long>(name), expected}

void expect_table(const NamedValue *rows, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        EXPECT_EQ(rows[i].value, rows[i].expected) << rows[i].name;
}

// Values of OpenGL 1.1 that lie off the regular runs of the enumerant space.
TEST(GlEnumerants, CoreValuesOffTheRegularRuns)
{
    const NamedValue rows[] = {
        ZVGL_EXPECT_ENUM(GL_TRIANGLES, 4),
        ZVGL_EXPECT_ENUM(GL_POLYGON, 9),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_2D, 0x0DE1),
        ZVGL_EXPECT_ENUM(GL_COLOR_MATERIAL, 0x0B57),
        ZVGL_EXPECT_ENUM(GL_RGBA, 0x1908),
        ZVGL_EXPECT_ENUM(GL_LUMINANCE_ALPHA, 0x190A),
        ZVGL_EXPECT_ENUM(GL_UNSIGNED_BYTE, 0x1401),
        ZVGL_EXPECT_ENUM(GL_DOUBLE, 0x140A),
        ZVGL_EXPECT_ENUM(GL_NEAREST_MIPMAP_LINEAR, 0x2702),
        ZVGL_EXPECT_ENUM(GL_T2F_C4F_N3F_V3F, 0x2A2C),
        ZVGL_EXPECT_ENUM(GL_POLYGON_OFFSET_FILL, 0x8037),
        ZVGL_EXPECT_ENUM(GL_POLYGON_OFFSET_FACTOR, 0x8038),
        ZVGL_EXPECT_ENUM(GL_POLYGON_OFFSET_UNITS, 0x2A00),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_BINDING_2D, 0x8069),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_PRIORITY, 0x8066),
        ZVGL_EXPECT_ENUM(GL_VERTEX_ARRAY, 0x8074),
        ZVGL_EXPECT_ENUM(GL_EDGE_FLAG_ARRAY_POINTER, 0x8093),
        ZVGL_EXPECT_ENUM(GL_R3_G3_B2, 0x2A10),
        ZVGL_EXPECT_ENUM(GL_RGB5_A1, 0x8057),
        ZVGL_EXPECT_ENUM(GL_INTENSITY, 0x8049),
        ZVGL_EXPECT_ENUM(GL_LUMINANCE16_ALPHA16, 0x8048),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_INTERNAL_FORMAT, 0x1003),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_BORDER_COLOR, 0x1004),
        ZVGL_EXPECT_ENUM(GL_PROXY_TEXTURE_2D, 0x8064),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_ENV_COLOR, 0x2201),
        ZVGL_EXPECT_ENUM(GL_SPHERE_MAP, 0x2402),
        ZVGL_EXPECT_ENUM(GL_COLOR_LOGIC_OP, 0x0BF2),
        ZVGL_EXPECT_ENUM(GL_MAX_CLIENT_ATTRIB_STACK_DEPTH, 0x0D3B),
        ZVGL_EXPECT_ENUM(GL_MAP2_VERTEX_4, 0x0DB8),
        ZVGL_EXPECT_ENUM(GL_SELECTION_BUFFER_SIZE, 0x0DF4),
        ZVGL_EXPECT_ENUM(GL_PIXEL_MAP_A_TO_A_SIZE, 0x0CB9),
        ZVGL_EXPECT_ENUM(GL_UNPACK_ALIGNMENT, 0x0CF5),
        ZVGL_EXPECT_ENUM(GL_PACK_ALIGNMENT, 0x0D05),
        ZVGL_EXPECT_ENUM(GL_ZOOM_Y, 0x0D17),
        ZVGL_EXPECT_ENUM(GL_STENCIL_WRITEMASK, 0x0B98),
        ZVGL_EXPECT_ENUM(GL_CLIP_PLANE5, 0x3005),
        ZVGL_EXPECT_ENUM(GL_LIGHT7, 0x4007),
        ZVGL_EXPECT_ENUM(GL_AMBIENT_AND_DIFFUSE, 0x1602),
        ZVGL_EXPECT_ENUM(GL_QUADRATIC_ATTENUATION, 0x1209),
        ZVGL_EXPECT_ENUM(GL_COMPILE_AND_EXECUTE, 0x1301),
        ZVGL_EXPECT_ENUM(GL_INVALID_OPERATION, 0x0502),
        ZVGL_EXPECT_ENUM(GL_OUT_OF_MEMORY, 0x0505),
        ZVGL_EXPECT_ENUM(GL_EXTENSIONS, 0x1F03),
        ZVGL_EXPECT_ENUM(GL_SRC_ALPHA_SATURATE, 0x0308),
        ZVGL_EXPECT_ENUM(GL_LINE_RESET_TOKEN, 0x0707),
        ZVGL_EXPECT_ENUM(GL_4D_COLOR_TEXTURE, 0x0604),
    };
    expect_table(rows, std::size(rows));
}

// The attribute masks: one bit each, and the all-bits masks cover exactly them.
TEST(GlEnumerants, AttributeMasks)
{
    const NamedValue rows[] = {
        ZVGL_EXPECT_ENUM(GL_CURRENT_BIT, 0x1),
        ZVGL_EXPECT_ENUM(GL_POLYGON_STIPPLE_BIT, 0x10),
        ZVGL_EXPECT_ENUM(GL_DEPTH_BUFFER_BIT, 0x100),
        ZVGL_EXPECT_ENUM(GL_STENCIL_BUFFER_BIT, 0x400),
        ZVGL_EXPECT_ENUM(GL_COLOR_BUFFER_BIT, 0x4000),
        ZVGL_EXPECT_ENUM(GL_HINT_BIT, 0x8000),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_BIT, 0x40000),
        ZVGL_EXPECT_ENUM(GL_SCISSOR_BIT, 0x80000),
        ZVGL_EXPECT_ENUM(GL_CLIENT_VERTEX_ARRAY_BIT, 0x2),
    };
    expect_table(rows, std::size(rows));

    const unsigned long long bits[] = {
        GL_CURRENT_BIT, GL_POINT_BIT, GL_LINE_BIT, GL_POLYGON_BIT, GL_POLYGON_STIPPLE_BIT,
        GL_PIXEL_MODE_BIT, GL_LIGHTING_BIT, GL_FOG_BIT, GL_DEPTH_BUFFER_BIT, GL_ACCUM_BUFFER_BIT,
        GL_STENCIL_BUFFER_BIT, GL_VIEWPORT_BIT, GL_TRANSFORM_BIT, GL_ENABLE_BIT,
        GL_COLOR_BUFFER_BIT, GL_HINT_BIT, GL_EVAL_BIT, GL_LIST_BIT, GL_TEXTURE_BIT, GL_SCISSOR_BIT,
    };
    unsigned long long all = 0;
    for (unsigned long long bit : bits) {
        EXPECT_EQ(bit & (bit - 1), 0u) << std::hex << bit << " is not one bit";
        EXPECT_EQ(all & bit, 0u) << std::hex << bit << " is used twice";
        all |= bit;
    }
    EXPECT_EQ(all, static_cast<unsigned long long>(GL_ALL_ATTRIB_BITS));
    EXPECT_EQ(static_cast<unsigned long long>(GL_CLIENT_ALL_ATTRIB_BITS), 0xFFFFFFFFull);
}

// The extension names the library accepts, which come from several extension documents.
TEST(GlEnumerants, ExtensionValues)
{
    const NamedValue rows[] = {
        ZVGL_EXPECT_ENUM(GL_ABGR_EXT, 0x8000),
        ZVGL_EXPECT_ENUM(GL_BGR_EXT, 0x80E0),
        ZVGL_EXPECT_ENUM(GL_BGRA_EXT, 0x80E1),
        ZVGL_EXPECT_ENUM(GL_RGB2_EXT, 0x804E),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_WRAP_R_EXT, 0x8072),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_PRIORITY_EXT, 0x8066),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_2D_BINDING_EXT, 0x8069),
        ZVGL_EXPECT_ENUM(GL_CLIP_VOLUME_CLIPPING_HINT_EXT, 0x80F0),
        ZVGL_EXPECT_ENUM(GL_DETAIL_TEXTURE_2D_SGIS, 0x8095),
        ZVGL_EXPECT_ENUM(GL_LINEAR_DETAIL_SGIS, 0x8097),
        ZVGL_EXPECT_ENUM(GL_LINEAR_DETAIL_COLOR_SGIS, 0x8099),
        ZVGL_EXPECT_ENUM(GL_DETAIL_TEXTURE_LEVEL_SGIS, 0x809A),
        ZVGL_EXPECT_ENUM(GL_DETAIL_TEXTURE_MODE_SGIS, 0x809B),
        ZVGL_EXPECT_ENUM(GL_DUAL_ALPHA4_SGIS, 0x8110),
        ZVGL_EXPECT_ENUM(GL_QUAD_ALPHA8_SGIS, 0x811F),
        ZVGL_EXPECT_ENUM(GL_DUAL_TEXTURE_SELECT_SGIS, 0x8124),
        ZVGL_EXPECT_ENUM(GL_QUAD_TEXTURE_SELECT_SGIS, 0x8125),
        ZVGL_EXPECT_ENUM(GL_SELECTED_TEXTURE_SGIS, 0x83C0),
        ZVGL_EXPECT_ENUM(GL_SELECTED_TEXTURE_TRANSFORM_SGIS, 0x83C2),
        ZVGL_EXPECT_ENUM(GL_MAX_TEXTURES_SGIS, 0x83C3),
        ZVGL_EXPECT_ENUM(GL_TEXTURE_ENV_COORD_SET_SGIS, 0x83C5),
        ZVGL_EXPECT_ENUM(GL_TEXTURE0_SGIS, 0x83C6),
        ZVGL_EXPECT_ENUM(GL_TEXTURE1_SGIS, 0x83C7),
    };
    expect_table(rows, std::size(rows));
}

// The library's own enumerants: high 16 bits 0x564C ("VL"), values as the library reads them.
TEST(GlEnumerants, LibraryOwnValues)
{
    const NamedValue rows[] = {
        ZVGL_EXPECT_ENUM(GL_TEXTURE_LOD_BIAS_VELD, 0x564C0002),
        ZVGL_EXPECT_ENUM(GL_UNSIGNED_SHORT_5_6_5_VELD, 0x564C0003),
        ZVGL_EXPECT_ENUM(GL_VELD_COLOR_CACHING, 0x564C0004),
        ZVGL_EXPECT_ENUM(GL_MINIMIZE_DEFAULT_VELD, 0x564C0006),
        ZVGL_EXPECT_ENUM(GL_MINIMIZE_OFF_VELD, 0x564C0007),
        ZVGL_EXPECT_ENUM(GL_MINIMIZE_ON_VELD, 0x564C0008),
        ZVGL_EXPECT_ENUM(GL_SWAP_TIMEOUT_VELD, 0x564C000A),
        ZVGL_EXPECT_ENUM(GL_VELD_TEXTURE_COORD_REDUCE_HINT, 0x564C000B),
        ZVGL_EXPECT_ENUM(GL_PIXELS_WRITTEN_LOW_VELD, 0x564C8000),
        ZVGL_EXPECT_ENUM(GL_PIXELS_WRITTEN_HIGH_VELD, 0x564C8001),
        ZVGL_EXPECT_ENUM(GL_FRAGMENT_TOTAL_LOW_VELD, 0x564C8002),
        ZVGL_EXPECT_ENUM(GL_FRAGMENT_TOTAL_HIGH_VELD, 0x564C8003),
        ZVGL_EXPECT_ENUM(GL_TEX_DOWNLOAD_BYTES_LOW_VELD, 0x564C8004),
        ZVGL_EXPECT_ENUM(GL_TEX_DOWNLOAD_BYTES_HIGH_VELD, 0x564C8005),
        ZVGL_EXPECT_ENUM(GL_TEX_DOWNLOAD_COUNT_VELD, 0x564C8006),
    };
    expect_table(rows, std::size(rows));
    for (const NamedValue &row : rows)
        EXPECT_EQ(row.value >> 16, 0x564Cu) << row.name;
}

// The pixel-format flags, among them the four that make up the library's 0x1025.
TEST(WglHeader, PixelFormatFlags)
{
    const NamedValue rows[] = {
        ZVGL_EXPECT_ENUM(PFD_DOUBLEBUFFER, 0x1),
        ZVGL_EXPECT_ENUM(PFD_STEREO, 0x2),
        ZVGL_EXPECT_ENUM(PFD_DRAW_TO_WINDOW, 0x4),
        ZVGL_EXPECT_ENUM(PFD_DRAW_TO_BITMAP, 0x8),
        ZVGL_EXPECT_ENUM(PFD_SUPPORT_GDI, 0x10),
        ZVGL_EXPECT_ENUM(PFD_SUPPORT_OPENGL, 0x20),
        ZVGL_EXPECT_ENUM(PFD_GENERIC_ACCELERATED, 0x1000),
        ZVGL_EXPECT_ENUM(PFD_DEPTH_DONTCARE, 0x20000000),
        ZVGL_EXPECT_ENUM(PFD_DOUBLEBUFFER_DONTCARE, 0x40000000),
        ZVGL_EXPECT_ENUM(PFD_STEREO_DONTCARE, 0x80000000),
        ZVGL_EXPECT_ENUM(PFD_TYPE_RGBA, 0),
        ZVGL_EXPECT_ENUM(PFD_MAIN_PLANE, 0),
    };
    expect_table(rows, std::size(rows));
    EXPECT_EQ(PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_GENERIC_ACCELERATED, 0x1025u);
}

// C code sees the same records and values as C++ code.
TEST(Headers, CAndCppAgree)
{
    zvgl_c_layout c{};
    zvgl_headers_c_layout(&c);
    EXPECT_EQ(c.pfd_size, sizeof(PIXELFORMATDESCRIPTOR));
    EXPECT_EQ(c.pfd_flags_offset, offsetof(PIXELFORMATDESCRIPTOR, dwFlags));
    EXPECT_EQ(c.pfd_depth_offset, offsetof(PIXELFORMATDESCRIPTOR, cDepthBits));
    EXPECT_EQ(c.pfd_layer_mask_offset, offsetof(PIXELFORMATDESCRIPTOR, dwLayerMask));
    EXPECT_EQ(c.glenum_size, sizeof(GLenum));
    EXPECT_EQ(c.glboolean_size, sizeof(GLboolean));
    EXPECT_EQ(c.gldouble_size, sizeof(GLdouble));

    EXPECT_EQ(zvgl_headers_c_enum(0), 0xFFFFFFFFul);
    EXPECT_EQ(zvgl_headers_c_enum(1), 0x564C0003ul);
    EXPECT_EQ(zvgl_headers_c_enum(2), 0x564C8006ul);
    EXPECT_EQ(zvgl_headers_c_enum(3), 0x80000000ul);
}

} // namespace
