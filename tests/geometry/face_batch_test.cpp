// The one-pass vertex stage of unlit, untextured batches against the per-face route: the
// same faces drawn once from a record whose faces reach every vertex (one pass) and once
// from the same record padded with vertices no face reaches (per face) must issue the same
// triangles, bit for bit, and leave the same current colour. Every comparison runs the
// one-pass stage on each vector unit this machine has (SSE2, and AVX2 where present).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
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

// What a batch leaves in the eye record of a vertex: its clip coordinates (z only off
// perspective), its outcode, and which of its stamps name the batch.
struct EyeState {
    float x, y, z, w;
    uint16_t outcode;
    bool transformed, attributed, projected;
};

struct Outcome {
    std::vector<GrVertex> triangles;
    float current[4];
    std::vector<EyeState> eye;
};

struct BatchFixture : ::testing::Test {
    GeometryContext g;
    vld_context* c = g.ctx;
    std::vector<vld_vertex> vertices;
    std::vector<vld_face> faces;
    int positionOffset = VLD_VX_POSITION; // where the records of Draw carry their positions

    void SetUp() override { vldTriangleSink = {Keep, KeepAA}; }
    void TearDown() override
    {
        vldTriangleSink = {nullptr, nullptr};
        KSP_vld_force_vector_level(-1);
    }

    // The vector levels of the one-pass stage that this machine runs.
    static std::vector<int> Levels()
    {
        std::vector<int> levels{VLD_VECTOR_SSE2};
        const int top = KSP_vld_force_vector_level(-1);
        if (top > VLD_VECTOR_SSE2)
            levels.push_back(top);
        return levels;
    }

    void Perspective()
    {
        __vldim_MatrixMode(GL_PROJECTION);
        __vldim_LoadIdentity();
        __vldim_Frustum(-1, 1, -1, 1, 1, 100);
        __vldim_MatrixMode(GL_MODELVIEW);
    }

    void Ortho()
    {
        __vldim_MatrixMode(GL_PROJECTION);
        __vldim_LoadIdentity();
        __vldim_Ortho(-2, 2, -2, 2, -10, 10);
        __vldim_MatrixMode(GL_MODELVIEW);
    }

    void Vertex(float x, float y, float z, float r, float gr, float b, float a = 1.0f)
    {
        vld_vertex v{};
        v.position[0] = x, v.position[1] = y, v.position[2] = z;
        v.color[0] = r, v.color[1] = gr, v.color[2] = b, v.color[3] = a;
        vertices.push_back(v);
    }

    void Face(int a, int b, int d)
    {
        vld_face f{};
        f.v[0] = (uint32_t)a, f.v[1] = (uint32_t)b, f.v[2] = (uint32_t)d;
        KSP_vld_compute_plane_tri(vertices[a].position, vertices[b].position, vertices[d].position,
                                  f.plane);
        faces.push_back(f);
    }

    // Draws the faces over the vertices and `padding` more that no face reaches, starting
    // from the given current colour.
    Outcome Draw(bool perVertexColour, int padding, const float* startColour, int undeclared = 0)
    {
        std::vector<vld_vertex> all = vertices;
        for (int i = 0; i < padding; ++i)
            all.push_back(vertices[(size_t)i % vertices.size()]);
        std::memcpy(c->current.currentColor, startColour, 4 * sizeof(float));
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
        r.position_offset = (int16_t)positionOffset;
        if (positionOffset != VLD_VX_POSITION)
            for (vld_vertex& v : all)
                std::memcpy((float*)&v + positionOffset, v.position, sizeof v.position);
        r.color_offset = perVertexColour ? VLD_VX_COLOR : 0;
        sent.clear();
        KSP_vld_dl_faces(&r);
        Outcome o;
        o.triangles = sent;
        std::memcpy(o.current, c->current.currentColor, sizeof o.current);
        for (size_t i = 0; i < vertices.size(); ++i) {
            const vld_eye_vertex& e = *vld_eye_at(c, (int)i);
            const bool persp = c->isPerspective != 0;
            o.eye.push_back({e.x, e.y, persp ? 0.0f : e.z, e.w, e.outcode, e.transform_stamp == vertexStamp,
                             e.attr_stamp == vertexStamp, e.project_stamp == vertexStamp});
        }
        return o;
    }

    // The eye records of every vertex the faces reach, as both routes leave them: the
    // outcodes only where the batch clips (the unclipped routes do not keep them), and the
    // attribute stamps only where the vertices bring their colours (otherwise the one-pass
    // stage takes every vertex's attributes at once, rejected or not).
    void ExpectSameEyeRecords(const Outcome& batch, const Outcome& perFace, bool perVertexColour)
    {
        const bool clips = c->hint.hintClipVolume != GL_FASTEST;
        std::vector<bool> reached(vertices.size());
        for (const vld_face& f : faces)
            for (uint32_t v : f.v)
                reached[v] = true;
        for (size_t i = 0; i < vertices.size(); ++i) {
            if (!reached[i])
                continue;
            const EyeState& a = batch.eye[i];
            const EyeState& b = perFace.eye[i];
            EXPECT_EQ(std::memcmp(&a.x, &b.x, 4 * sizeof(float)), 0) << "eye coordinates of vertex " << i;
            if (clips) {
                EXPECT_EQ(a.outcode, b.outcode) << "outcode of vertex " << i;
            }
            EXPECT_TRUE(a.transformed && b.transformed) << "vertex " << i;
            if (perVertexColour) {
                EXPECT_EQ(a.attributed, b.attributed) << "attribute stamp of vertex " << i;
            }
            EXPECT_EQ(a.projected, b.projected) << "projection stamp of vertex " << i;
        }
    }

    bool compareEye = false;

    // Both routes from the same start; the triangles must agree bit for bit. `undeclared`
    // vertices at the end are left out of the batch's count, though faces reach them.
    void ExpectSameAsPerFace(bool perVertexColour, const float* start, size_t expectedTriangles,
                             int undeclared = 0)
    {
        const Outcome perFace = Draw(perVertexColour, 3 * (int)faces.size() + 3, start);
        for (int level : Levels()) {
            SCOPED_TRACE(level == VLD_VECTOR_SSE2 ? "SSE2" : "AVX2");
            ASSERT_EQ(KSP_vld_force_vector_level(level), level);
            const Outcome batch = Draw(perVertexColour, 0, start, undeclared);
            ASSERT_EQ(batch.triangles.size(), perFace.triangles.size());
            EXPECT_EQ(batch.triangles.size(), 3 * expectedTriangles);
            for (size_t i = 0; i < batch.triangles.size(); ++i)
                EXPECT_EQ(std::memcmp(&batch.triangles[i], &perFace.triangles[i], sizeof(GrVertex)), 0)
                    << "vertex " << i;
            EXPECT_EQ(std::memcmp(batch.current, perFace.current, sizeof batch.current), 0);
            if (compareEye)
                ExpectSameEyeRecords(batch, perFace, perVertexColour);
        }
        KSP_vld_force_vector_level(-1);
    }

    // A mesh with vertices inside, outside and across the volume, colours in and out of
    // 0..1, a NaN and a negative zero among them.
    void Mesh(float z)
    {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        Vertex(-0.5f, -0.5f, z, 0.25f, 0.5f, 0.75f);
        Vertex(0.5f, -0.5f, z, 1.5f, -0.25f, 0.0f, 0.5f);
        Vertex(0.0f, 0.5f, z, -0.0f, nan, 1.0f, 2.0f);
        Vertex(6.0f, 0.2f, z, 0.1f, 0.2f, 0.3f);     // beyond the right side
        Vertex(0.3f, -7.0f, z * 0.5f, 0.9f, 0.8f, 0.7f); // beyond the bottom
        Vertex(9.0f, 9.0f, z, 0.4f, 0.4f, 0.4f);     // beyond right and top
        Vertex(8.0f, 10.0f, z, 0.6f, 0.6f, 0.6f);
        Vertex(10.0f, 8.0f, z, 0.3f, 0.2f, 0.1f);
        Face(0, 1, 2);
        Face(0, 3, 2); // clipped on the right
        Face(1, 4, 0); // clipped at the bottom
        Face(5, 6, 7); // wholly outside: rejected
    }
};

const float kWhite[4] = {1.0f, 1.0f, 1.0f, 1.0f};
const float kOdd[4] = {1.25f, -0.5f, 0.5f, 0.75f};

} // namespace

TEST_F(BatchFixture, PerVertexColoursMatchThePerFaceRoute)
{
    Mesh(-5.0f);
    for (GLenum hint : {GL_DONT_CARE, GL_FASTEST}) {
        c->hint.hintClipVolume = hint;
        Perspective();
        ExpectSameAsPerFace(true, kWhite, hint == GL_FASTEST ? 4 : 5);
        Ortho();
        ExpectSameAsPerFace(true, kWhite, hint == GL_FASTEST ? 4 : 5);
    }
}

TEST_F(BatchFixture, CurrentColourMatchesThePerFaceRoute)
{
    Mesh(-5.0f);
    Perspective();
    ExpectSameAsPerFace(false, kOdd, 5);
    // The colour is converted again for each batch.
    const Outcome first = Draw(false, 0, kWhite);
    const Outcome second = Draw(false, 0, kOdd);
    ASSERT_FALSE(first.triangles.empty());
    EXPECT_EQ(first.triangles[0].r, 255.0f);
    EXPECT_EQ(second.triangles[0].r, 255.0f);
    EXPECT_EQ(second.triangles[0].g, 0.0f);
    EXPECT_EQ(second.triangles[0].b, 127.5f);
    EXPECT_EQ(second.triangles[0].a, 0.75f * 255.0f);
    EXPECT_EQ(std::memcmp(second.current, kOdd, sizeof kOdd), 0);
}

TEST_F(BatchFixture, CurrentColourEndsAtTheLastVertexTakenUp)
{
    // The last face is rejected, so vertex 2 of the second face is the last one coloured,
    // not the highest-numbered vertex.
    Perspective();
    Vertex(-0.5f, -0.5f, -5, 0.1f, 0.2f, 0.3f);
    Vertex(0.5f, -0.5f, -5, 0.4f, 0.5f, 0.6f);
    Vertex(0.0f, 0.5f, -5, 0.7f, 0.8f, 0.9f);
    Vertex(0.5f, 0.5f, -5, 0.15f, 0.25f, 0.35f);
    Vertex(40.0f, 40.0f, -5, 0.9f, 0.9f, 0.9f);
    Vertex(41.0f, 40.0f, -5, 0.8f, 0.8f, 0.8f);
    Vertex(40.0f, 41.0f, -5, 0.7f, 0.7f, 0.7f);
    Face(0, 1, 3);
    Face(3, 1, 2);
    Face(4, 5, 6);
    const Outcome o = Draw(true, 0, kWhite);
    EXPECT_EQ(o.triangles.size(), 6u);
    EXPECT_EQ(std::memcmp(o.current, vertices[2].color, sizeof o.current), 0);
    ExpectSameAsPerFace(true, kWhite, 2);
    // No face survives: the current colour is left as it was.
    faces.erase(faces.begin(), faces.begin() + 2);
    EXPECT_EQ(std::memcmp(Draw(true, 0, kOdd).current, kOdd, sizeof kOdd), 0);
}

TEST_F(BatchFixture, SmoothPolygonsAndShareVerticesMatchThePerFaceRoute)
{
    // A strip-like sharing of vertices, antialiased.
    Ortho();
    for (int i = 0; i < 10; ++i)
        Vertex((float)i * 0.4f - 2.2f, (i & 1) ? 0.5f : -0.5f, -1.0f, (float)i / 9.0f, 1.0f - (float)i / 9.0f,
               0.5f);
    for (int i = 2; i < 10; ++i)
        Face(i - 2, i - 1, i);
    c->enable.capabilityBits |= VLD_CAP_POLYGON_SMOOTH;
    ExpectSameAsPerFace(true, kWhite, 9);
}

TEST_F(BatchFixture, DepthBoundsAndCornersMatchThePerFaceRoute)
{
    // Eleven vertices, so that both the four-wide stage and the vertices after it are used:
    // beyond near and far, beyond two sides at once, and exactly on the bounds.
    const float z[3] = {-0.5f, -150.0f, -5.0f};
    for (int shape = 0; shape < 2; ++shape) {
        vertices.clear();
        faces.clear();
        for (int i = 0; i < 11; ++i) {
            const float x = (i % 4 == 3) ? -30.0f : (float)(i % 5) * 0.3f - 0.6f;
            const float y = (i % 4 == 3) ? 30.0f : (float)(i % 3) * 0.4f - 0.4f;
            Vertex(x, y, shape == 0 ? z[i % 3] : -(float)i, (float)i / 10.0f, 0.5f, 1.0f - (float)i / 10.0f);
        }
        Vertex(1.0f, -1.0f, -1.0f, 0.2f, 0.2f, 0.2f); // on the corner of the near plane
        for (int i = 2; i < 12; ++i)
            Face(i - 2, i - 1, i);
        for (int projection = 0; projection < 2; ++projection) {
            if (projection == 0)
                Perspective();
            else
                Ortho();
            const size_t drawn = Draw(true, 3 * (int)faces.size() + 3, kWhite).triangles.size() / 3;
            EXPECT_GT(drawn, 0u);
            ExpectSameAsPerFace(true, kWhite, drawn);
            ExpectSameAsPerFace(false, kOdd, drawn);
        }
    }
}

TEST_F(BatchFixture, FacesBeyondTheCountMatchThePerFaceRoute)
{
    // A face that reaches past the record's vertex count takes its vertices one by one; the
    // colour it takes up is the last one, after those of the one-pass stage.
    Perspective();
    for (int i = 0; i < 7; ++i)
        Vertex((float)(i % 3) * 0.3f - 0.3f, (float)(i % 2) * 0.4f - 0.2f, -3.0f, 0.1f * (float)i, 0.3f, 0.6f);
    Face(0, 1, 2);
    Face(4, 5, 6);
    Face(3, 4, 5);
    ExpectSameAsPerFace(true, kWhite, 3, 1);
    const Outcome o = Draw(true, 0, kWhite, 1);
    EXPECT_EQ(std::memcmp(o.current, vertices[3].color, sizeof o.current), 0);
    faces.pop_back();
    EXPECT_EQ(std::memcmp(Draw(true, 0, kWhite, 1).current, vertices[6].color, sizeof o.current), 0);
}

TEST_F(BatchFixture, OnePassBatchesLeaveNoStampForALaterBatchToMistake)
{
    // The batch stamp wraps after 65536 batches; a one-pass batch must leave stamps such
    // that a per-face batch drawn at the wrap still takes every vertex up afresh.
    Mesh(-5.0f);
    Perspective();
    const Outcome fresh = Draw(true, 3 * (int)faces.size() + 3, kWhite);
    for (int i = 0; i < 65535; ++i)
        Draw(true, 0, kWhite);
    const Outcome wrapped = Draw(true, 3 * (int)faces.size() + 3, kWhite);
    ASSERT_EQ(fresh.triangles.size(), wrapped.triangles.size());
    for (size_t i = 0; i < fresh.triangles.size(); ++i)
        EXPECT_EQ(std::memcmp(&fresh.triangles[i], &wrapped.triangles[i], sizeof(GrVertex)), 0) << "vertex " << i;
}

TEST_F(BatchFixture, RandomBatchesUnderTurnedMatricesMatchThePerFaceRoute)
{
    // Larger batches under rotated, scaled and shifted matrices, in both projections, with
    // positions of every size inside and around the volume and a vertex count that leaves a
    // remainder after the groups of four: the transform's roundings in every lane, the
    // outcodes on both sides of each bound, and the projection must all agree.
    std::mt19937 random(2718);
    std::uniform_real_distribution<float> spread(-3.0f, 3.0f);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::uniform_int_distribution<int> pick(0, 60);
    for (int round = 0; round < 12; ++round) {
        vertices.clear();
        faces.clear();
        const int count = 45 + round;
        for (int i = 0; i < count; ++i) {
            const float scale = (i % 7 == 0) ? 40.0f : 1.0f;
            Vertex(spread(random) * scale, spread(random) * scale, spread(random) - (round % 2 ? 6.0f : 0.0f),
                   unit(random) * 1.2f - 0.1f, unit(random), unit(random), unit(random));
        }
        for (int i = 0; i + 2 < count; i += 2)
            Face(i, i + 1, i + 2);
        Face(count - 1, 0, count - 2);
        for (int f = 0; f < 6; ++f)
            Face(pick(random) % count, pick(random) % count, pick(random) % count);
        if (round % 2)
            Perspective();
        else
            Ortho();
        __vldim_LoadIdentity();
        __vldim_Translatef(0.25f * (float)round, -0.125f, round % 2 ? -1.5f : 0.5f);
        __vldim_Rotatef(17.0f + 23.0f * (float)round, 0.3f, 1.0f, -0.6f);
        __vldim_Scalef(1.0f + 0.1f * (float)round, 0.9f, 1.1f);
        c->hint.hintClipVolume = round % 3 == 2 ? GL_FASTEST : GL_DONT_CARE;
        const size_t drawn = Draw(true, 3 * (int)faces.size() + 3, kWhite).triangles.size() / 3;
        if (c->hint.hintClipVolume != GL_FASTEST) {
            EXPECT_GT(drawn, 0u);
        }
        ExpectSameAsPerFace(true, kWhite, drawn);
        ExpectSameAsPerFace(false, kOdd, drawn);
    }
    c->hint.hintClipVolume = GL_DONT_CARE;
}

TEST_F(BatchFixture, EveryCountFromOneToSeventeenMatchesThePerFaceRoute)
{
    // Counts below a group of eight, between groups and past them, each with a last group
    // that overlaps the one before it (or a last half group): every vertex's triangles,
    // eye record and stamps must be those of the per-face route, in both projections, with
    // the vertices' colours or the current one, clipped or not.
    std::mt19937 random(31415);
    std::uniform_real_distribution<float> spread(-2.6f, 2.6f);
    std::uniform_real_distribution<float> unit(-0.2f, 1.2f);
    compareEye = true;
    for (int count : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 23, 100}) {
        SCOPED_TRACE(count);
        vertices.clear();
        faces.clear();
        for (int i = 0; i < count; ++i)
            Vertex(spread(random), spread(random), -1.0f - 4.0f * unit(random), unit(random), unit(random),
                   unit(random), unit(random));
        for (int i = 0; i < count; ++i)
            Face(i, (i + 1) % count, (i + 2) % count);
        for (int projection = 0; projection < 2; ++projection) {
            if (projection == 0)
                Perspective();
            else
                Ortho();
            for (GLenum hint : {GL_DONT_CARE, GL_FASTEST}) {
                c->hint.hintClipVolume = hint;
                const size_t drawn = Draw(true, 3 * (int)faces.size() + 3, kWhite).triangles.size() / 3;
                ExpectSameAsPerFace(true, kWhite, drawn);
                ExpectSameAsPerFace(false, kOdd, drawn);
            }
        }
    }
    c->hint.hintClipVolume = GL_DONT_CARE;
}

TEST_F(BatchFixture, PositionsAnywhereInTheRecordMatchThePerFaceRoute)
{
    // Positions read from other words of the vertex: with a word after them in the record,
    // and as the last three words, where the position cannot be read as four floats.
    std::mt19937 random(1618);
    std::uniform_real_distribution<float> spread(-2.5f, 2.5f);
    for (int i = 0; i < 21; ++i)
        Vertex(spread(random), spread(random), -2.0f + spread(random), 0.1f * (float)(i % 10), 0.5f, 0.25f);
    for (int i = 0; i + 2 < 21; ++i)
        Face(i, i + 1, i + 2);
    compareEye = true;
    for (int offset : {VLD_VX_STRIDE - 4, VLD_VX_STRIDE - 3}) {
        SCOPED_TRACE(offset);
        positionOffset = offset;
        for (int projection = 0; projection < 2; ++projection) {
            if (projection == 0)
                Perspective();
            else
                Ortho();
            const size_t drawn = Draw(true, 3 * (int)faces.size() + 3, kWhite).triangles.size() / 3;
            EXPECT_GT(drawn, 0u);
            ExpectSameAsPerFace(true, kWhite, drawn);
        }
    }
}

#if defined(__x86_64__)
// Every x86-64 build carries the AVX2 forms, the Windows one as the Linux one: a machine
// that has AVX2 runs them unless ZVGL_VLD_SIMD narrows the unit.
TEST(VectorLevel, AnAvx2MachineRunsTheAvx2Forms)
{
    if (!__builtin_cpu_supports("avx2") || std::getenv("ZVGL_VLD_SIMD"))
        GTEST_SKIP() << "no AVX2 here, or the unit narrowed";
    EXPECT_EQ(KSP_vld_force_vector_level(-1), VLD_VECTOR_AVX2);
}
#endif
