// glGetString: the vendor, the renderer built from the unit record, the version with Glide's
// own, and the extensions.
#include "device_test.h"

#include "support/sys/sys.h"
#include "vld/api/vld_functab.h"

namespace {

using StringsTest = DeviceTest;

std::string osText()
{
    char os[80] = "";
    KSI_sys_inq_os_string(sizeof os, os, 1);
    return os;
}

std::string text(GLenum name)
{
    return (const char*)__vldim_GetString(name);
}

TEST_F(StringsTest, RendererWithoutABoard)
{
    makeContext();
    const std::string os = osText();
    ASSERT_FALSE(os.empty());
    EXPECT_EQ(text(GL_RENDERER), "No Glide Context:" + os);
}

// The board's name, the system, then frame buffer and each TMU in megabytes.
TEST_F(StringsTest, RendererOfAVoodoo2)
{
    startBoards();
    ASSERT_EQ(KSP_vld_unit_init(0), 0);
    makeContext()->boundUnit = &vlddb.units[0];
    EXPECT_EQ(text(GL_RENDERER), "Voodoo2:" + osText() + "/fb:4/tmu:4+4");
}

TEST_F(StringsTest, RendererOfAnSliPairAndOneTmu)
{
    board("ZVGL_BOARD_SLI", "1");
    board("ZVGL_BOARD_TMUS", "1");
    board("ZVGL_BOARD_TMURAM", "2");
    startBoards();
    makeContext()->boundUnit = &vlddb.units[0];
    EXPECT_EQ(text(GL_RENDERER), "Voodoo2:" + osText() + "/fb:8/tmu:2/sli");
}

// A Voodoo3 name is cut to "Voodoo3"; a system text with blanks is quoted; a board without
// memory figures has no memory part.
TEST_F(StringsTest, RendererNameAndQuoting)
{
    makeContext();
    vld_unit u{};
    std::strcpy(u.boardName, "Voodoo3 3000 AGP");
    u.frameBufferBytes = 16 << 20;
    u.tmuCount = 1;
    u.tmu[0].highAddress = 12u << 20;
    u.tmu[0].lowAddress = 2u << 20;
    ctx->boundUnit = &u;
    const std::string os = osText();
    const bool quoted = os.find_first_of(" \t\r\n\v\f") != std::string::npos;
    const std::string shown = quoted ? "\"" + os + "\"" : os;
    EXPECT_EQ(text(GL_RENDERER), "Voodoo3:" + shown + "/fb:16/tmu:10");
    u.frameBufferBytes = 0;
    std::strcpy(u.boardName, "Unknown");
    EXPECT_EQ(text(GL_RENDERER), "Unknown:" + shown);
}

TEST_F(StringsTest, VersionVendorExtensions)
{
    startBoards();
    makeContext();
    char version[32] = "";
    KS_sys_inq_version(version);
    EXPECT_EQ(text(GL_VERSION), std::string("1.1 Veldra ") + version + " Glide 2.56");
    EXPECT_EQ(text(GL_VENDOR), "Cordwain");
    EXPECT_EQ(text(GL_EXTENSIONS), vldExtensionString);
    EXPECT_EQ(text(GL_EXTENSIONS).rfind("GL_EXT_texture_object ", 0), 0u);
    EXPECT_EQ(text(0x1234), "");
}

} // namespace
