// Batches whose leading faces are the run (0, 1, 2), (3, 4, 5), ... that GL_TRIANGLES captures,
// which the face loop draws without looking at the stamps, against the per-face route (the same
// record padded with vertices no face reaches): the same triangles bit for bit and in order, the
// same current colour after the batch, the same clip codes, and the same vertices marked as taken
// up by the batch. Runs that break off part-way (a face going back to a vertex of an earlier face,
// one that reaches past the count) hand over to the general loop with the same record.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "geometry_context.h"
#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_clip.h"
#include "vld/grxf/vld_geom.h"

namespace {

std::vector<GrVertex> sent;

void FX_CALL Keep(const GrVertex* a, const GrVertex* b, const GrVertex* c)
{
    sent.push_back(*a);
    sent.push_back(*b);
    sent.push_back(*c);
}

void FX_CALL KeepAA(const GrVertex* a, const GrVertex* b, const GrVertex* c, FxBool, FxBool, FxBool)
{
    Keep(a, b, c);
}

struct Outcome {
    std::vector<GrVertex> triangles;
    float current[4];
    uint32_t clipCodes;
    std::vector<bool> takenUp; // per vertex of the batch: its attributes taken by this batch
};

struct RunFixture : ::testing::Test {
    GeometryContext g;
    vld_context* c = g.ctx;
    std::vector<vld_vertex> vertices;
    std::vector<vld_face> faces;

    void SetUp() override { vldTriangleSink = {Keep, KeepAA}; }
    void TearDown() override { vldTriangleSink = {nullptr, nullptr}; }

    void Projection(bool perspective)
    {
        __vldim_MatrixMode(GL_PROJECTION);
        __vldim_LoadIdentity();
        if (perspective)
            __vldim_Frustum(-1, 1, -1, 1, 1, 100);
        else
            __vldim_Ortho(-2, 2, -2, 2, -10, 10);
        __vldim_MatrixMode(GL_MODELVIEW);
    }

    void Face(int a, int b, int d)
    {
        vld_face f{};
        f.v[0] = (uint32_t)a, f.v[1] = (uint32_t)b, f.v[2] = (uint32_t)d;
        KSP_vld_compute_plane_tri(vertices[(size_t)a].position, vertices[(size_t)b].position,
                                  vertices[(size_t)d].position, f.plane);
        faces.push_back(f);
    }

    // `count` vertices around the volume: most inside, some beyond one or two sides or the
    // depth bounds, so that faces are drawn, clipped and rejected.
    void Vertices(int count, std::mt19937& random, float z)
    {
        std::uniform_real_distribution<float> inside(-0.8f, 0.8f);
        std::uniform_real_distribution<float> colour(-0.1f, 1.1f);
        std::uniform_int_distribution<int> kind(0, 9);
        for (int i = 0; i < count; ++i) {
            vld_vertex v{};
            const int k = kind(random);
            v.position[0] = k == 7 ? 40.0f : inside(random);
            v.position[1] = k >= 8 ? -30.0f : inside(random);
            v.position[2] = k == 6 ? 500.0f : z + inside(random);
            for (int ch = 0; ch < 4; ++ch)
                v.color[ch] = colour(random);
            vertices.push_back(v);
        }
    }

    // The run (3f, 3f + 1, 3f + 2) for faces `from` to `to` - 1.
    void Run(int from, int to)
    {
        for (int f = from; f < to; ++f)
            Face(3 * f, 3 * f + 1, 3 * f + 2);
    }

    Outcome Draw(bool perVertexColour, int padding, const float* startColour, int undeclared = 0)
    {
        std::vector<vld_vertex> all = vertices;
        for (int i = 0; i < padding; ++i)
            all.push_back(vertices[(size_t)i % vertices.size()]);
        std::memcpy(c->current.currentColor, startColour, 4 * sizeof(float));
        c->clipCodes = 0xABCD;
        vld_dl_record r{};
        r.type = VLD_DL_FACES;
        r.total_size = VLD_DL_HEAD_BYTES;
        r.vertex_count = (int32_t)all.size() - undeclared;
        r.face_count = (int32_t)faces.size();
        vld_dl_set_faces_address(&r, faces.data());
        vld_dl_set_vertices_address(&r, all.data());
        const uint32_t none = VLD_NO_SPHERE_BITS;
        std::memcpy(&r.radius, &none, 4);
        r.stride = VLD_VX_STRIDE;
        r.position_offset = VLD_VX_POSITION;
        r.color_offset = perVertexColour ? VLD_VX_COLOR : 0;
        sent.clear();
        KSP_vld_dl_faces(&r);
        Outcome o;
        o.triangles = sent;
        std::memcpy(o.current, c->current.currentColor, sizeof o.current);
        o.clipCodes = c->clipCodes;
        for (size_t i = 0; i < vertices.size(); ++i)
            o.takenUp.push_back(vld_eye_at(c, (int)i)->attr_stamp == vertexStamp);
        return o;
    }

    // The batch as it is against the per-face route; returns the triangles drawn.
    size_t ExpectSameAsPerFace(bool perVertexColour, const float* start, int undeclared = 0)
    {
        const Outcome perFace = Draw(perVertexColour, 3 * (int)faces.size() + 3, start);
        const Outcome batch = Draw(perVertexColour, 0, start, undeclared);
        EXPECT_EQ(batch.triangles.size(), perFace.triangles.size());
        for (size_t i = 0; i < batch.triangles.size() && i < perFace.triangles.size(); ++i)
            EXPECT_EQ(std::memcmp(&batch.triangles[i], &perFace.triangles[i], sizeof(GrVertex)), 0) << "vertex " << i;
        EXPECT_EQ(std::memcmp(batch.current, perFace.current, sizeof batch.current), 0);
        EXPECT_EQ(batch.clipCodes, perFace.clipCodes);
        if (perVertexColour) {
            EXPECT_EQ(batch.takenUp, perFace.takenUp);
        }
        return batch.triangles.size() / 3;
    }
};

const float kOdd[4] = {1.25f, -0.5f, 0.5f, 0.75f};

} // namespace

TEST_F(RunFixture, RunBatchesMatchThePerFaceRoute)
{
    std::mt19937 random(31);
    size_t drawn = 0;
    for (int round = 0; round < 24; ++round) {
        vertices.clear();
        faces.clear();
        const int t = 1 + round * 3 % 37;
        Vertices(3 * t + round % 3, random, round % 2 ? -4.0f : 0.0f); // 0 to 2 vertices no face reaches
        Run(0, t);
        Projection(round % 2 != 0);
        c->hint.hintClipVolume = round % 4 == 3 ? GL_FASTEST : GL_DONT_CARE;
        SCOPED_TRACE(round);
        drawn += ExpectSameAsPerFace(true, kOdd);
        ExpectSameAsPerFace(false, kOdd);
    }
    EXPECT_GT(drawn, 100u);
}

TEST_F(RunFixture, RunsThatBreakOffMatchThePerFaceRoute)
{
    std::mt19937 random(7);
    Projection(true);
    for (int round = 0; round < 12; ++round) {
        vertices.clear();
        faces.clear();
        Vertices(30, random, -4.0f);
        // Vertices 6 to 8 lie beyond one side, so the run's third face is rejected and its
        // vertices are not taken up by it.
        for (int i = 6; i < 9; ++i)
            vertices[(size_t)i].position[0] = 50.0f + (float)i;
        // Vertices 12 to 14 inside, so that the face that breaks the run is drawn unclipped.
        for (int i = 12; i < 15; ++i) {
            vertices[(size_t)i].position[0] = 0.2f * (float)(i - 13);
            vertices[(size_t)i].position[1] = i == 13 ? 0.5f : -0.25f;
            vertices[(size_t)i].position[2] = -4.0f;
        }
        Run(0, 4);
        switch (round % 4) {
        case 0: Face(7, 12, 13); break; // back to a vertex of the rejected face
        case 1: Face(1, 13, 12); break; // back to a vertex already taken up
        case 2: Face(12, 14, 13); break; // the next vertices, out of order
        default: Face(29, 0, 28); break; // the last vertices first
        }
        Run(5, 9); // run-shaped again, but after the break
        Face(27, 28, 29);
        SCOPED_TRACE(round);
        ExpectSameAsPerFace(true, kOdd);
        ExpectSameAsPerFace(false, kOdd);
        // A face reaching past the count (the last vertex undeclared) ends the run too.
        faces.erase(faces.begin() + 4, faces.end());
        Face(27, 28, 29);
        ExpectSameAsPerFace(true, kOdd, 1);
    }
}

TEST_F(RunFixture, TheCurrentColourEndsAtTheLastFaceThatSurvived)
{
    std::mt19937 random(3);
    Projection(true);
    Vertices(9, random, -4.0f);
    for (int i = 0; i < 9; ++i)
        vertices[(size_t)i].position[0] = 0.1f * (float)i - 0.4f, vertices[(size_t)i].position[1] = 0.0f,
        vertices[(size_t)i].position[2] = -4.0f;
    vertices[1].position[1] = 0.5f;
    vertices[4].position[1] = 0.5f;
    for (int i = 6; i < 9; ++i)
        vertices[(size_t)i].position[1] = 60.0f; // the last face is rejected
    Run(0, 3);
    Outcome o = Draw(true, 0, kOdd);
    EXPECT_EQ(o.triangles.size(), 6u);
    EXPECT_EQ(std::memcmp(o.current, vertices[5].color, sizeof o.current), 0);
    EXPECT_EQ(o.takenUp, (std::vector<bool>{true, true, true, true, true, true, false, false, false}));
    // Nothing survives: the colour stays as it was.
    for (int i = 0; i < 6; ++i)
        vertices[(size_t)i].position[1] = 60.0f;
    o = Draw(true, 0, kOdd);
    EXPECT_TRUE(o.triangles.empty());
    EXPECT_EQ(std::memcmp(o.current, kOdd, sizeof kOdd), 0);
    EXPECT_EQ(o.clipCodes, 0xABCDu) << "no face set the clip codes";
}
