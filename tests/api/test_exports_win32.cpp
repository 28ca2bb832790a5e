// The export directory of zvgl2.dll holds exactly the names of the table of entries,
// undecorated, and each resolves through GetProcAddress.
#include <gtest/gtest.h>

#include <windows.h>

#include "export_names.h"

namespace {

// The names of a loaded module's export directory.
std::set<std::string> export_directory(HMODULE module)
{
    std::set<std::string> names;
    const auto* base = reinterpret_cast<const unsigned char*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (dir.VirtualAddress == 0)
        return names;
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + dir.VirtualAddress);
    const auto* name_rvas = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        names.insert(reinterpret_cast<const char*>(base + name_rvas[i]));
    return names;
}

TEST(Exports, DllExportsExactlyTheTable)
{
    HMODULE module = LoadLibraryA("zvgl2.dll");
    ASSERT_NE(module, nullptr);
    const std::set<std::string> want = expected_exports();
    EXPECT_EQ(want.size(), 418u);
    for (const std::string& name : want)
        EXPECT_NE(GetProcAddress(module, name.c_str()), nullptr) << name << " is not exported";
    const std::set<std::string> have = export_directory(module);
    EXPECT_EQ(have.size(), want.size());
    for (const std::string& name : have)
        EXPECT_TRUE(want.count(name)) << name << " is exported but not in the table";
    EXPECT_EQ(GetProcAddress(module, "glMinimizeVELD"), nullptr);
    FreeLibrary(module);
}

} // namespace
