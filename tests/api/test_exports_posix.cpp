// The dynamic symbols of libzvgl2.so are exactly the names of the table of entries.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "export_names.h"

namespace {

// The defined dynamic symbols of a shared object, as nm lists them.
std::set<std::string> dynamic_symbols(const std::string& nm, const std::string& library)
{
    std::set<std::string> names;
    const std::string command = nm + " -D --defined-only '" + library + "'";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return names;
    char line[512];
    while (std::fgets(line, sizeof line, pipe)) {
        std::istringstream fields(line);
        std::string address, type, name;
        if (fields >> address >> type >> name)
            names.insert(name);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return names;
}

TEST(Exports, SharedLibraryExportsExactlyTheTable)
{
    const std::set<std::string> want = expected_exports();
    const std::set<std::string> have = dynamic_symbols(ZVGL_NM, ZVGL_LIBRARY);
    EXPECT_EQ(want.size(), 418u);
    for (const std::string& name : want)
        EXPECT_TRUE(have.count(name)) << name << " is not exported";
    for (const std::string& name : have)
        EXPECT_TRUE(want.count(name)) << name << " is exported but not in the table";
    EXPECT_FALSE(have.count("glMinimizeVELD"));
    EXPECT_FALSE(have.count("wglSwapMultipleBuffers"));
}

} // namespace
