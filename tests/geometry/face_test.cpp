// The generic face path end to end through the draw dispatch, with the triangles that would
// go to Glide recorded by a sink.
#include <gtest/gtest.h>

#include <vector>

#include "geometry_context.h"
#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_geom.h"

namespace {

struct Issued {
    GrVertex v[3];
    bool aa;
    int flags[3];
};
std::vector<Issued> issued;

void FX_CALL RecordTriangle(const GrVertex* a, const GrVertex* b, const GrVertex* c)
{
    issued.push_back({{*a, *b, *c}, false, {0, 0, 0}});
}

void FX_CALL RecordAATriangle(const GrVertex* a, const GrVertex* b, const GrVertex* c, FxBool ab,
                              FxBool bc, FxBool ca)
{
    issued.push_back({{*a, *b, *c}, true, {ab, bc, ca}});
}

constexpr float kSnap = 524288.0f;

struct FaceFixture : ::testing::Test {
    GeometryContext g;
    vld_context* c = g.ctx;
    std::vector<vld_vertex> vertices;
    std::vector<vld_face> faces;
    vld_dl_record record{};

    void SetUp() override
    {
        issued.clear();
        vldTriangleSink = {RecordTriangle, RecordAATriangle};
        __vldim_MatrixMode(GL_PROJECTION);
        __vldim_Frustum(-1, 1, -1, 1, 1, 100);
        __vldim_MatrixMode(GL_MODELVIEW);
    }

    void TearDown() override { vldTriangleSink = {nullptr, nullptr}; }

    int Vertex(float x, float y, float z, float r = 1, float gr = 1, float b = 1)
    {
        vld_vertex v{};
        v.position[0] = x, v.position[1] = y, v.position[2] = z;
        v.color[0] = r, v.color[1] = gr, v.color[2] = b, v.color[3] = 1;
        vertices.push_back(v);
        return (int)vertices.size() - 1;
    }

    void Face(int a, int b, int cc)
    {
        vld_face f{};
        f.v[0] = (uint32_t)a, f.v[1] = (uint32_t)b, f.v[2] = (uint32_t)cc;
        KSP_vld_compute_plane_tri(vertices[a].position, vertices[b].position, vertices[cc].position,
                                  f.plane);
        faces.push_back(f);
    }

    void Draw(bool withColour = true)
    {
        record = vld_dl_record{};
        record.type = VLD_DL_FACES;
        record.total_size = VLD_DL_HEAD_BYTES;
        record.vertex_count = (int32_t)vertices.size();
        record.face_count = (int32_t)faces.size();
        vld_dl_set_faces_address(&record, faces.data());
        vld_dl_set_vertices_address(&record, vertices.data());
        const uint32_t none = VLD_NO_SPHERE_BITS;
        std::memcpy(&record.radius, &none, 4);
        record.stride = VLD_VX_STRIDE;
        record.position_offset = VLD_VX_POSITION;
        record.color_offset = withColour ? VLD_VX_COLOR : 0;
        KSP_vld_dl_faces(&record);
    }
};

} // namespace

TEST_F(FaceFixture, ProjectsWithSnapConstantAndWBufferDepth)
{
    const int a = Vertex(0, 0, -5), b = Vertex(2.5f, 0, -5), d = Vertex(0, 2.5f, -5);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    const Issued& t = issued[0];
    EXPECT_FALSE(t.aa);
    EXPECT_EQ(t.v[0].x, 320.0f + kSnap);
    EXPECT_EQ(t.v[0].y, 240.0f + kSnap);
    EXPECT_EQ(t.v[1].x, 480.0f + kSnap);
    EXPECT_EQ(t.v[2].y, 360.0f + kSnap);
    // Depth is the projection's map of the eye distance w, as one over it.
    EXPECT_FLOAT_EQ(t.v[0].oow, 1.0f / (g.ctx->depthScale * 5.0f + g.ctx->depthOffset));
    EXPECT_EQ(t.v[0].r, 255.0f);
}

TEST_F(FaceFixture, BackFacesCulledByTheStoredPlane)
{
    const int a = Vertex(0, 0, -5), b = Vertex(2.5f, 0, -5), d = Vertex(0, 2.5f, -5);
    Face(a, d, b); // clockwise seen from the eye
    Face(a, b, d);
    c->enable.capabilityBits |= VLD_CAP_CULL_FACE;
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    EXPECT_EQ(issued[0].v[1].x, 480.0f + kSnap);
    // GL_FRONT_AND_BACK culls everything.
    issued.clear();
    c->polygon.cullFaceMode = GL_FRONT_AND_BACK;
    Draw();
    EXPECT_TRUE(issued.empty());
}

TEST_F(FaceFixture, ClippedTriangleIsIssuedAsAFan)
{
    // One corner far to the right: the right plane cuts it off, leaving four corners.
    const int a = Vertex(0, 0, -5), b = Vertex(20, 0, -5), d = Vertex(0, 2.5f, -5);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 2u);
    // The new corners lie on the right edge of the viewport.
    EXPECT_FLOAT_EQ(issued[0].v[1].x, 640.0f + kSnap);
    EXPECT_FLOAT_EQ(issued[0].v[2].x, 640.0f + kSnap);
    EXPECT_EQ(issued[0].v[0].x, 320.0f + kSnap);

    // Antialiased: only the polygon's outer edges are flagged.
    issued.clear();
    c->enable.capabilityBits |= VLD_CAP_POLYGON_SMOOTH;
    Draw();
    ASSERT_EQ(issued.size(), 2u);
    EXPECT_TRUE(issued[0].aa);
    EXPECT_EQ(issued[0].flags[0], 1);
    EXPECT_EQ(issued[0].flags[2], 0);
    EXPECT_EQ(issued[1].flags[0], 0);
    EXPECT_EQ(issued[1].flags[2], 1);
}

TEST_F(FaceFixture, NearPlaneClipKeepsDepthFinite)
{
    const int a = Vertex(0, 0, -0.5f), b = Vertex(0.5f, 0, -5), d = Vertex(0, 0.5f, -5);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 2u);
    for (const Issued& t : issued)
        for (const GrVertex& v : t.v)
            EXPECT_LE(v.oow, 1.0f); // no vertex in front of the near plane at w = 1
}

TEST_F(FaceFixture, FastestHintIssuesWithoutClipping)
{
    const int a = Vertex(0, 0, -5), b = Vertex(20, 0, -5), d = Vertex(0, 2.5f, -5);
    Face(a, b, d);
    c->hint.hintClipVolume = GL_FASTEST;
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    EXPECT_EQ(issued[0].v[1].x, 320.0f * 5.0f + kSnap);
}

TEST_F(FaceFixture, RejectsTrianglesOutsideOnePlane)
{
    const int a = Vertex(10, 0, -5), b = Vertex(20, 0, -5), d = Vertex(10, 2.5f, -5);
    Face(a, b, d);
    Draw();
    EXPECT_TRUE(issued.empty());
}

TEST_F(FaceFixture, ColourRoutes)
{
    // Lighting off: the vertex colour, clamped, becomes current and is scaled to 0..255.
    const int a = Vertex(0, 0, -5, 2.0f, 0.5f, -1.0f), b = Vertex(2.5f, 0, -5), d = Vertex(0, 2.5f, -5);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    EXPECT_EQ(issued[0].v[0].r, 255.0f);
    EXPECT_EQ(issued[0].v[0].g, 127.5f);
    EXPECT_EQ(issued[0].v[0].b, 0.0f);
    EXPECT_EQ(c->current.currentColor[0], 1.0f); // the last vertex reached

    // Lighting on, with no light: scene ambient plus emission, with the diffuse alpha.
    issued.clear();
    c->enable.capabilityBits |= VLD_CAP_LIGHTING;
    Draw(false);
    ASSERT_EQ(issued.size(), 1u);
    EXPECT_FLOAT_EQ(issued[0].v[0].r, 0.2f * 0.2f * 255.0f);
    EXPECT_EQ(issued[0].v[0].a, 255.0f);
}

TEST_F(FaceFixture, OrthographicUsesZForDepth)
{
    __vldim_MatrixMode(GL_PROJECTION);
    __vldim_LoadIdentity();
    __vldim_Ortho(-1, 1, -1, 1, -1, 1);
    const int a = Vertex(0, 0, 0), b = Vertex(0.5f, 0, 0), d = Vertex(0, 0.5f, 0);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    EXPECT_EQ(issued[0].v[0].x, 320.0f + kSnap);
    EXPECT_EQ(issued[0].v[1].x, 480.0f + kSnap);
    EXPECT_FLOAT_EQ(issued[0].v[0].oow, 1.0f / 32764.5f);
}

TEST_F(FaceFixture, TextureFieldsScaledPerTriangle)
{
    c->enable.textureEnableBits[0] = VLD_TEX_2D;
    c->textureMode = 1;
    c->current.currentTexCoord[0][0] = 0.5f;
    c->current.currentTexCoord[0][1] = 0.25f;
    const int a = Vertex(0, 0, -5), b = Vertex(2.5f, 0, -10), d = Vertex(0, 2.5f, -5);
    Face(a, b, d);
    Draw();
    ASSERT_EQ(issued.size(), 1u);
    // The factor is the least w of the triangle (5): TMU oow = 5 / w; t flipped to q - t.
    const GrVertex& v0 = issued[0].v[0];
    const GrVertex& v1 = issued[0].v[1];
    EXPECT_FLOAT_EQ(v0.tmuvtx[0].oow, 1.0f);
    EXPECT_FLOAT_EQ(v1.tmuvtx[0].oow, 0.5f);
    EXPECT_FLOAT_EQ(v0.tmuvtx[0].sow, 0.5f);
    EXPECT_FLOAT_EQ(v0.tmuvtx[0].tow, 0.75f);
    EXPECT_FLOAT_EQ(v1.tmuvtx[1].sow, 0.25f);
}
