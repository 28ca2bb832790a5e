// The face table of a captured primitive against the one-triangle plane, on every vector unit
// of the machine: random triangles of every size and direction, flat ones, axis-aligned ones,
// NaN and infinite corners, shared and repeated indices, and table sizes that leave a
// remainder after the groups of four. The planes must have the same bits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_planes.h"

namespace {

struct PlaneTable : ::testing::Test {
    void TearDown() override { KSP_vld_force_vector_level(-1); }

    // The levels this machine runs.
    static std::vector<int> Levels()
    {
        std::vector<int> levels{VLD_VECTOR_SSE2};
        const int top = KSP_vld_force_vector_level(-1);
        if (top > VLD_VECTOR_SSE2)
            levels.push_back(top);
        return levels;
    }

    // Builds the table of `indices` over `vertices` on each level and compares every face with
    // the one-triangle plane of its corners.
    static void ExpectFormulaPlanes(const std::vector<vld_vertex>& vertices, const std::vector<uint32_t>& indices)
    {
        const int32_t t = (int32_t)(indices.size() / 3);
        for (int level : Levels()) {
            SCOPED_TRACE(level == VLD_VECTOR_SSE2 ? "SSE2" : "AVX2");
            ASSERT_EQ(KSP_vld_force_vector_level(level), level);
            std::vector<vld_face> faces((size_t)t + 1);
            std::memset((void*)faces.data(), 0x5A, faces.size() * sizeof(vld_face));
            KSP_vld_face_planes(faces.data(), t, indices.data(), vertices.data());
            for (int32_t k = 0; k < t; ++k) {
                const uint32_t* idx = &indices[3 * (size_t)k];
                float expected[4];
                KSP_vld_compute_plane_tri(vertices[idx[0]].position, vertices[idx[1]].position,
                                          vertices[idx[2]].position, expected);
                EXPECT_EQ(std::memcmp(faces[(size_t)k].v, idx, sizeof faces[(size_t)k].v), 0) << "face " << k;
                EXPECT_EQ(std::memcmp(faces[(size_t)k].plane, expected, sizeof expected), 0)
                    << "face " << k << ": " << faces[(size_t)k].plane[0] << " " << faces[(size_t)k].plane[1] << " "
                    << faces[(size_t)k].plane[2] << " " << faces[(size_t)k].plane[3];
            }
            // Nothing is written beyond the table.
            const vld_face& after = faces[(size_t)t];
            EXPECT_EQ(after.v[0], 0x5A5A5A5Au);
        }
    }
};

vld_vertex At(float x, float y, float z)
{
    vld_vertex v{};
    v.position[0] = x;
    v.position[1] = y;
    v.position[2] = z;
    v.normal[0] = 1234.5f; // read by the grouped loads, never used
    return v;
}

} // namespace

TEST_F(PlaneTable, RandomTrianglesOfEverySizeMatchTheFormula)
{
    std::mt19937 random(99);
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    std::uniform_int_distribution<int> exponent(-70, 70);
    for (int round = 0; round < 30; ++round) {
        std::vector<vld_vertex> vertices;
        const int count = 3 + round * 5;
        for (int i = 0; i < count; ++i) {
            const float scale = std::ldexp(1.0f, exponent(random) / (1 + round % 4));
            vertices.push_back(At(unit(random) * scale, unit(random) * scale, unit(random) * scale));
            if (i % 9 == 5)
                vertices.back().position[i % 3] = 0.0f; // edges along the axes
        }
        std::uniform_int_distribution<int> pick(0, count - 1);
        std::vector<uint32_t> indices;
        const int faces = 1 + round * 3;
        for (int f = 0; f < faces; ++f)
            for (int j = 0; j < 3; ++j)
                indices.push_back((uint32_t)pick(random));
        ExpectFormulaPlanes(vertices, indices);
    }
}

TEST_F(PlaneTable, FlatAxisAlignedAndNonFiniteFacesMatchTheFormula)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    std::vector<vld_vertex> vertices = {
        At(0, 0, -0.5f), At(1, 0, -0.5f), At(0, 1, -0.5f),  // in a plane of constant z
        At(2, 2, 2), At(4, 4, 4), At(8, 8, 8),              // on one line: flat
        At(1e-30f, 0, 0), At(0, 1e-30f, 0), At(0, 0, 1e-30f), // tiny normal, subnormal products
        At(3e37f, 0, 0), At(0, 3e37f, 0), At(0, 0, 3e37f),  // normal components overflow float
        At(nan, 0, 0), At(0, inf, 0), At(-0.0f, -0.0f, 1),
    };
    std::vector<uint32_t> indices = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1, 2, 0, 13, 14,
                                     1, 1, 2, 14, 14, 14, 2, 1, 0, 13, 13, 0, 12, 12, 12};
    ExpectFormulaPlanes(vertices, indices);
}
