// Golden files, the update switch, and the comparison with Mesa.
#include "image_check.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string goldenPath(const char* name)
{
    return std::string(ZVGL_IMAGES_GOLDEN_DIR) + "/" + name + ".png";
}

// The folder in the build tree that receives the pictures of failing tests.
std::string outputPath(const std::string& file)
{
    std::filesystem::create_directories(ZVGL_IMAGES_OUTPUT_DIR);
    return std::string(ZVGL_IMAGES_OUTPUT_DIR) + "/" + file;
}

bool updatingGoldens()
{
    const char* v = std::getenv("ZVGL_UPDATE_GOLDEN");
    return v && v[0] == '1';
}

// Writes the pictures of a failed comparison and returns the lines that name them.
std::string writeFailure(const std::string& stem, const Image& actual, const Image* reference,
                         const CompareResult* result)
{
    std::string text;
    std::string actualPath = outputPath(stem + ".actual.png");
    if (writePng(actualPath, actual))
        text += "\n  actual:     " + actualPath;
    if (reference) {
        std::string referencePath = outputPath(stem + ".expected.png");
        if (writePng(referencePath, *reference))
            text += "\n  expected:   " + referencePath;
    }
    if (result && result->sameSize) {
        std::string diffPath = outputPath(stem + ".diff.png");
        if (writePng(diffPath, result->difference))
            text += "\n  difference: " + diffPath;
    }
    return text;
}

void checkGolden(const char* name, const Image& actual)
{
    std::string path = goldenPath(name);
    if (updatingGoldens()) {
        ASSERT_TRUE(writePng(path, actual)) << "cannot write " << path;
        std::printf("[ golden ] wrote %s\n", path.c_str());
        return;
    }
    Image golden;
    if (!readPng(path, golden)) {
        ADD_FAILURE() << name << ": no golden picture at " << path
                      << " (ZVGL_UPDATE_GOLDEN=1 writes it)"
                      << writeFailure(name, actual, nullptr, nullptr);
        return;
    }
    CompareResult r = compareImages(actual, golden, fullMask(actual.width, actual.height), 0);
    if (!r.sameSize || r.differing != 0)
        ADD_FAILURE() << name << ": the board's picture differs from " << path << " in "
                      << r.differing << " of " << r.compared << " pixels (worst channel step "
                      << r.worst << ")" << writeFailure(name, actual, &golden, &r);
}

void checkMesa(const char* name, const Scene& scene, const Rendering& board, const MesaCheck& check)
{
    Rendering mesa = renderMesa(scene, board.screenWidth, board.screenHeight);
    if (!mesa.ok) {
        ADD_FAILURE() << name << ": OSMesa: " << mesa.error;
        return;
    }
    PixelMask mask = fullMask(mesa.frame.width, mesa.frame.height);
    dropEdges(mask, mesa.frame, check.edgeStep);
    if (check.exclude)
        check.exclude(mask);
    CompareResult r = compareImages(board.frame, mesa.frame, mask, check.tolerance.channel);
    // Too few pixels left after the edges would make a meaningless pass.
    EXPECT_GE((double)r.compared, check.minCompared * mask.width * mask.height)
        << name << ": the mask leaves too little to compare";
    std::printf("[ mesa   ] %s: %ld of %ld compared pixels beyond %d a channel, worst step %d\n", name,
                r.differing, r.compared, check.tolerance.channel, r.worst);
    if (!withinTolerance(r, check.tolerance))
        ADD_FAILURE() << name << ": the board's picture differs from Mesa's in " << r.differing << " of "
                      << r.compared << " compared pixels by more than " << check.tolerance.channel
                      << " a channel (allowed: " << check.tolerance.fraction * 100.0
                      << "%; worst step " << r.worst << ")"
                      << writeFailure(std::string(name) + ".mesa", board.frame, &mesa.frame, &r);
}

} // namespace

void checkScene(const char* name, const Scene& scene, const MesaCheck* mesa)
{
    Rendering board = renderZvgl(scene);
    ASSERT_TRUE(board.ok) << name << ": " << board.error;
    checkGolden(name, board.frame);
    if (mesa)
        checkMesa(name, scene, board, *mesa);
}
