// Vertex capture: primitive sizes, expansions and triangle order, array growth, the
// sources of a captured vertex, and what glEnd leaves behind.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "api_test_context.h"
#include "vld/api/vld_capture.h"
#include "vld/api/vld_current.h"

namespace {

struct SizeCase {
    GLenum type;
    int64_t n, t, s;
};

TEST(Capture, TriangleCountsAndNeededSizes)
{
    const SizeCase cases[] = {
        {GL_POINTS, 5, 0, 5},          {GL_LINES, 3, 0, 3},          {GL_LINE_LOOP, 1, 0, 2},
        {GL_LINE_LOOP, 4, 0, 8},       {GL_LINE_STRIP, 1, 0, 0},     {GL_LINE_STRIP, 4, 0, 6},
        {GL_TRIANGLES, 2, 0, 2},       {GL_TRIANGLES, 7, 2, 7},      {GL_TRIANGLE_STRIP, 5, 3, 9},
        {GL_TRIANGLE_STRIP, 1, -1, -3}, {GL_TRIANGLE_FAN, 4, 2, 6},   {GL_QUAD_STRIP, 6, 4, 12},
        {GL_QUADS, 6, 3, 9},           {GL_QUADS, 3, 1, 3},          {GL_POLYGON, 5, 3, 9},
        {GL_POLYGON, 2, 0, 0},
    };
    for (const SizeCase& c : cases) {
        int64_t t = -99, s = -99;
        KSP_vld_capture_sizes(c.type, c.n, &t, &s);
        EXPECT_EQ(t, c.t) << "type " << c.type << " n " << c.n;
        EXPECT_EQ(s, c.s) << "type " << c.type << " n " << c.n;
    }
}

std::vector<uint32_t> Indices(GLenum type, int64_t n)
{
    std::vector<uint32_t> out(64, 0xFFFFFFFFu);
    out.resize((size_t)KSP_vld_capture_triangle_indices(type, n, out.data()));
    return out;
}

TEST(Capture, TriangleOrderPerPrimitive)
{
    using V = std::vector<uint32_t>;
    EXPECT_EQ(Indices(GL_TRIANGLES, 5), (V{0, 1, 2, 3, 4}));
    EXPECT_EQ(Indices(GL_TRIANGLE_STRIP, 5), (V{0, 1, 2, 2, 1, 3, 2, 3, 4}));
    EXPECT_EQ(Indices(GL_TRIANGLE_STRIP, 2), V{});
    EXPECT_EQ(Indices(GL_TRIANGLE_FAN, 5), (V{0, 1, 2, 0, 2, 3, 0, 3, 4}));
    EXPECT_EQ(Indices(GL_POLYGON, 4), (V{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(Indices(GL_QUADS, 8), (V{0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7}));
    EXPECT_EQ(Indices(GL_QUADS, 7), (V{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(Indices(GL_QUADS, 3), V{});
    EXPECT_EQ(Indices(GL_QUAD_STRIP, 6), (V{0, 1, 3, 0, 3, 2, 2, 3, 5, 2, 5, 4}));
    EXPECT_EQ(Indices(GL_QUAD_STRIP, 3), V{});
    // Triangles of every count up to 40 (the indices go four at a time where they can).
    for (int64_t n = 0; n <= 40; ++n) {
        V want((size_t)n);
        for (int64_t i = 0; i < n; ++i)
            want[(size_t)i] = (uint32_t)i;
        EXPECT_EQ(Indices(GL_TRIANGLES, n), want) << n << " vertices";
    }
}

std::vector<float> LineXs(GLenum type, int n)
{
    std::vector<vld_vertex> in((size_t)n), out((size_t)(2 * n + 2));
    for (int i = 0; i < n; ++i)
        in[(size_t)i].position[0] = (float)i;
    int64_t k = KSP_vld_capture_expand_lines(type, in.data(), n, out.data());
    std::vector<float> xs;
    for (int64_t i = 0; i < k; ++i)
        xs.push_back(out[(size_t)i].position[0]);
    return xs;
}

TEST(Capture, LineExpansions)
{
    using V = std::vector<float>;
    EXPECT_EQ(LineXs(GL_LINES, 3), (V{0, 1, 2}));
    EXPECT_EQ(LineXs(GL_LINE_STRIP, 3), (V{0, 1, 1, 2}));
    EXPECT_EQ(LineXs(GL_LINE_STRIP, 1), V{});
    EXPECT_EQ(LineXs(GL_LINE_LOOP, 3), (V{0, 1, 1, 2, 2, 0}));
    EXPECT_EQ(LineXs(GL_LINE_LOOP, 1), (V{0, 0}));
}

TEST(Capture, VertexTakesTheSourcesOfItsLayer)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    c->current.currentColor[0] = 0.25f;
    c->current.currentNormal[1] = 0.5f;
    c->current.currentTexCoord[1][0] = 3.0f;
    c->lighting.materialShininess = 12.0f;
    c->listColor[0] = 0.75f;
    c->listShininess = 40.0f;

    // Compile and execute: the immediate sources win.
    c->compileFlag = 1;
    c->executeFlag = 1;
    __vlddo_Begin(GL_POINTS);
    __vlddo_Vertex3f(1, 2, 3);
    EXPECT_FLOAT_EQ(c->vertexArray[0].color[0], 0.25f);
    EXPECT_FLOAT_EQ(c->vertexArray[0].normal[1], 0.5f);
    EXPECT_FLOAT_EQ(c->vertexArray[0].texcoord1[0], 3.0f);
    EXPECT_FLOAT_EQ(c->vertexArray[0].shininess, 12.0f);

    // Compile only: the list-compile layer's attributes.
    c->executeFlag = 0;
    __vlddo_Vertex3f(4, 5, 6);
    EXPECT_FLOAT_EQ(c->vertexArray[1].color[0], 0.75f);
    EXPECT_FLOAT_EQ(c->vertexArray[1].shininess, 40.0f);

    // Neither: only the position is written.
    c->compileFlag = 0;
    c->vertexArray[2].color[0] = -7.0f;
    __vlddo_Vertex3f(7, 8, 9);
    EXPECT_FLOAT_EQ(c->vertexArray[2].position[2], 9.0f);
    EXPECT_FLOAT_EQ(c->vertexArray[2].color[0], -7.0f);
    EXPECT_EQ(c->vertexCount, 3);
}

// At the capture limit a vertex is dropped, whatever room the array still has; below it,
// the vertices go on into the room there is.
TEST(Capture, VerticesStopAtTheCaptureLimit)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    __vlddo_Begin(GL_POINTS);
    __vlddo_Vertex3f(1, 2, 3);
    ASSERT_EQ(c->vertexCapacity, 256);
    c->vertexCount = VLD_CAPTURE_LIMIT;
    __vlddo_Vertex3f(4, 5, 6);
    EXPECT_EQ(c->vertexCount, VLD_CAPTURE_LIMIT);
    EXPECT_EQ(c->vertexCapacity, 256) << "no growth at the limit";
    c->vertexCount = 1;
    __vlddo_Vertex3f(7, 8, 9);
    EXPECT_EQ(c->vertexCount, 2);
    EXPECT_FLOAT_EQ(c->vertexArray[1].position[2], 9.0f);
    c->vertexCount = 0;
    __vlddo_End();
}

TEST(Capture, GrowthKeepsTheVerticesAndZeroesTheNewRecords)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    __vlddo_Begin(GL_POINTS);
    for (int i = 0; i < 256; ++i)
        __vlddo_Vertex3f((float)i, 0, 0);
    EXPECT_EQ(c->vertexCapacity, 256);
    __vlddo_Vertex3f(256, 0, 0);
    EXPECT_EQ(c->vertexCapacity, 512);
    for (int i = 0; i <= 256; ++i)
        ASSERT_FLOAT_EQ(c->vertexArray[i].position[0], (float)i);
    EXPECT_FLOAT_EQ(c->vertexArray[300].position[0], 0.0f);
    __vlddo_End();
    // Lines need twice the count in the expanded array; growth goes to need + 256.
    __vlddo_Begin(GL_LINE_LOOP);
    for (int i = 0; i < 300; ++i)
        __vlddo_Vertex3f(0, 0, 0);
    __vlddo_End();
    EXPECT_EQ(c->expandedCapacity, 600 + 256);
    EXPECT_EQ(c->vertexCount, 0);
}

TEST(Capture, EndDrawsFacesWithPlanesAndKeepsTheQuadsCount)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    __vlddo_Begin(GL_TRIANGLES);
    __vlddo_Vertex3f(0, 0, 0);
    __vlddo_Vertex3f(1, 0, 0);
    __vlddo_Vertex3f(0, 1, 0);
    __vlddo_End();
    ASSERT_GE(c->faceCapacity, 1);
    EXPECT_EQ(c->faceArray[0].v[2], 2u);
    EXPECT_FLOAT_EQ(c->faceArray[0].plane[2], 1.0f);
    EXPECT_FLOAT_EQ(c->faceArray[0].plane[3], 0.0f);
    EXPECT_EQ(c->inBeginEnd, 0);

    // Eight vertices of quads, then six: the six give three faces, the third read from
    // what the eight left in the index array.
    __vlddo_Begin(GL_QUADS);
    for (int i = 0; i < 8; ++i)
        __vlddo_Vertex3f((float)i, (float)(i * i), 0);
    __vlddo_End();
    __vlddo_Begin(GL_QUADS);
    for (int i = 0; i < 6; ++i)
        __vlddo_Vertex3f((float)i, 1, (float)i);
    __vlddo_End();
    EXPECT_EQ(c->faceArray[2].v[0], 4u);
    EXPECT_EQ(c->faceArray[2].v[1], 5u);
    EXPECT_EQ(c->faceArray[2].v[2], 6u);
}

TEST(Capture, DegenerateAndBadPrimitives)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    __vlddo_Begin(GL_TRIANGLES);
    __vlddo_Vertex3f(0, 0, 0);
    __vlddo_Vertex3f(1, 0, 0);
    __vlddo_End();
    EXPECT_EQ(c->vertexCount, 0);
    ASSERT_GE(c->faceCapacity, 1);
    EXPECT_EQ(c->faceArray[0].v[1], 0u) << "no face may be built from two vertices";

    testing::internal::CaptureStderr();
    __vlddo_Begin(57);
    __vlddo_End();
    __vlddo_Begin(57);
    __vlddo_Vertex3f(0, 0, 0);
    __vlddo_End();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "glEnd: ignoring entity of type (unknown)\n");
    EXPECT_EQ(c->vertexCount, 0);

    // glEnd without glBegin draws what was captured outside; nested glBegin restarts.
    __vlddo_Begin(GL_TRIANGLES);
    __vlddo_Vertex3f(9, 9, 9);
    __vlddo_Begin(GL_TRIANGLES);
    EXPECT_EQ(c->vertexCount, 0);
    EXPECT_EQ(c->inBeginEnd, 1);
}

TEST(Capture, AttributeMaskStartsFromTheSeed)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    c->beginAttrMask = VLD_ATTR_COLOR;
    __vlddo_Begin(GL_TRIANGLES);
    EXPECT_EQ(c->beginAttrMask, 0u);
    c->attrMaskSeed = VLD_ATTR_POOLING_OFF;
    __vlddo_Begin(GL_TRIANGLES);
    EXPECT_EQ(c->beginAttrMask, VLD_ATTR_POOLING_OFF);
}

TEST(Capture, PlaneOfATriangle)
{
    float a[3] = {0, 0, 2}, b[3] = {0, 2, 2}, c[3] = {2, 0, 2}, p[4];
    KSP_vld_compute_plane_tri(a, b, c, p);
    EXPECT_FLOAT_EQ(p[2], -1.0f);
    EXPECT_FLOAT_EQ(p[3], 2.0f);
    KSP_vld_compute_plane_tri(a, a, c, p);
    EXPECT_EQ(p[0], 0.0f);
    EXPECT_EQ(p[3], 0.0f);
}

// The face drawer builds its planes two at a time where it can: every plane after glEnd
// must have the bits of the one-triangle form, for normals of every size and direction,
// flat triangles and NaN positions among them, and for odd triangle counts.
TEST(Capture, FacePlanesMatchThePlaneOfEachTriangle)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    std::mt19937 random(7);
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    std::uniform_int_distribution<int> exponent(-60, 60);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (int round = 0; round < 40; ++round) {
        const int triangles = 1 + round * 7 % 23;
        __vlddo_Begin(GL_TRIANGLES);
        for (int i = 0; i < 3 * triangles; ++i) {
            const float scale = std::ldexp(1.0f, exponent(random) / (1 + round % 3));
            float p[3] = {unit(random) * scale, unit(random) * scale, unit(random) * scale};
            if (i % 11 == 4)
                p[i % 3] = 0.0f; // axis-aligned edges: zero normal components
            if (round % 5 == 1 && i % 6 == 2)
                std::memcpy(p, &c->vertexArray[c->vertexCount - 1].position, sizeof p); // flat
            if (round == 13 && i == 7)
                p[1] = nan;
            __vlddo_Vertex3f(p[0], p[1], p[2]);
        }
        std::vector<vld_vertex> captured(c->vertexArray, c->vertexArray + 3 * triangles);
        __vlddo_End();
        for (int k = 0; k < triangles; ++k) {
            float expected[4];
            KSP_vld_compute_plane_tri(captured[3 * k].position, captured[3 * k + 1].position,
                                      captured[3 * k + 2].position, expected);
            EXPECT_EQ(std::memcmp(c->faceArray[k].plane, expected, sizeof expected), 0)
                << "round " << round << " face " << k;
        }
    }
}

} // namespace
