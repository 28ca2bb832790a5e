// The face table of GL_TRIANGLES-like index runs (0, 1, 2, 3, ...), which the wide plane form
// reads without the index table, against the one-triangle plane on every vector unit of the
// machine: every table size from one face to past five groups of eight, tables where only some
// groups are runs, runs that start at the wrong vertex, and the last group that overlaps the one
// before it. Faces, indices and planes must have the same bits as the formula's, and nothing may
// be written past the table.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_planes.h"

namespace {

struct PlaneRun : ::testing::Test {
    void TearDown() override { KSP_vld_force_vector_level(-1); }

    static std::vector<int> Levels()
    {
        std::vector<int> levels{VLD_VECTOR_SSE2};
        const int top = KSP_vld_force_vector_level(-1);
        if (top > VLD_VECTOR_SSE2)
            levels.push_back(top);
        return levels;
    }

    // Vertices of every scale, some on the axes, some repeated (flat faces), a few not finite.
    static std::vector<vld_vertex> Vertices(int count, unsigned seed)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
        std::uniform_int_distribution<int> exponent(-40, 40);
        std::vector<vld_vertex> v((size_t)count);
        for (int i = 0; i < count; ++i) {
            const float scale = std::ldexp(1.0f, exponent(random));
            for (int c = 0; c < 3; ++c)
                v[(size_t)i].position[c] = unit(random) * scale;
            v[(size_t)i].normal[0] = 777.0f;
            if (i % 11 == 4)
                v[(size_t)i].position[i % 3] = 0.0f;
            if (i % 13 == 7 && i > 0)
                v[(size_t)i] = v[(size_t)i - 1]; // a face with two equal corners: flat
        }
        if (count > 40) {
            v[40].position[1] = std::numeric_limits<float>::quiet_NaN();
            v[41].position[2] = std::numeric_limits<float>::infinity();
        }
        return v;
    }

    static void ExpectFormulaPlanes(const std::vector<vld_vertex>& vertices, const std::vector<uint32_t>& indices)
    {
        const int32_t t = (int32_t)(indices.size() / 3);
        for (int level : Levels()) {
            SCOPED_TRACE(level == VLD_VECTOR_SSE2 ? "SSE2" : "wide");
            ASSERT_EQ(KSP_vld_force_vector_level(level), level);
            std::vector<vld_face> faces((size_t)t + 1);
            std::memset((void*)faces.data(), 0x5A, faces.size() * sizeof(vld_face));
            KSP_vld_face_planes(faces.data(), t, indices.data(), vertices.data());
            for (int32_t k = 0; k < t; ++k) {
                const uint32_t* idx = &indices[3 * (size_t)k];
                float expected[4];
                KSP_vld_compute_plane_tri(vertices[idx[0]].position, vertices[idx[1]].position,
                                          vertices[idx[2]].position, expected);
                const vld_face& f = faces[(size_t)k];
                ASSERT_EQ(std::memcmp(f.v, idx, sizeof f.v), 0)
                    << "t " << t << " face " << k << ": " << f.v[0] << " " << f.v[1] << " " << f.v[2];
                ASSERT_EQ(std::memcmp(f.plane, expected, sizeof expected), 0)
                    << "t " << t << " face " << k << ": " << f.plane[0] << " " << f.plane[1] << " " << f.plane[2]
                    << " " << f.plane[3];
            }
            const unsigned char* after = (const unsigned char*)&faces[(size_t)t];
            for (size_t b = 0; b < sizeof(vld_face); ++b)
                ASSERT_EQ(after[b], 0x5A) << "t " << t << ": written past the table";
        }
    }

    static std::vector<uint32_t> Run(int32_t t, uint32_t start = 0)
    {
        std::vector<uint32_t> indices(3 * (size_t)t);
        for (size_t i = 0; i < indices.size(); ++i)
            indices[i] = start + (uint32_t)i;
        return indices;
    }
};

} // namespace

TEST_F(PlaneRun, RunsOfEveryLengthMatchTheFormula)
{
    const std::vector<vld_vertex> vertices = Vertices(3 * 45, 5);
    for (int32_t t = 1; t <= 45; ++t)
        ExpectFormulaPlanes(vertices, Run(t));
}

TEST_F(PlaneRun, TablesThatAreRunsOnlyInPlacesMatchTheFormula)
{
    const std::vector<vld_vertex> vertices = Vertices(3 * 40 + 3, 17);
    // One index off in each position of the second group of eight.
    for (int at = 24; at < 48; ++at) {
        std::vector<uint32_t> indices = Run(40);
        indices[(size_t)at] = (uint32_t)(at * 7 % 100);
        ExpectFormulaPlanes(vertices, indices);
    }
    // A run that starts one face late is not the run of its place in the table.
    ExpectFormulaPlanes(vertices, Run(40, 3));
    // Runs in the groups of eight, random faces in the overlapping last group and the other way round.
    for (int32_t t : {11, 13, 15, 19, 23, 29, 31, 37}) {
        std::vector<uint32_t> tail = Run(t);
        std::vector<uint32_t> head = Run(t);
        for (size_t i = 3 * (size_t)(t / 8 * 8); i < tail.size(); ++i)
            tail[i] = (uint32_t)((i * 37) % (3 * 40));
        for (size_t i = 0; i < 24; ++i)
            head[i] = (uint32_t)((i * 53) % (3 * 40));
        ExpectFormulaPlanes(vertices, tail);
        ExpectFormulaPlanes(vertices, head);
    }
}
