// The x87 clipper against hand-worked polygons, plane by plane.
#include <gtest/gtest.h>

#include "geometry_context.h"
#include "vld/grxf/vld_clip.h"

namespace {

struct ClipFixture : ::testing::Test {
    GeometryContext g;
    vld_context* c = g.ctx;

    void SetUp() override
    {
        KSP_vld_enlarge_vertex_count(16);
        c->isPerspective = 1;
        c->eyeDepthNear = 1.0f;
        c->eyeDepthFar = 100.0f;
        c->clipVertexNext = c->clipVertexBase;
        c->clipCodes = 0;
    }

    // Vertex slot i at clip position (x, y, z, w) with colour r and texture s.
    void Put(int i, float x, float y, float z, float w, float r, float s = 0)
    {
        vld_eye_vertex& e = *vld_eye_at(c, i);
        e.x = x, e.y = y, e.z = z, e.w = w;
        e.s[0] = s, e.t[0] = 2 * s, e.q[0] = 1;
        e.outcode = KSP_vld_outcode(c, e);
        GrVertex& v = *vld_screen_at(c, i);
        v.r = r, v.g = 2 * r, v.b = 0, v.a = 255;
    }

    const vld_eye_vertex& E(int i) { return *vld_eye_at(c, i); }
    const GrVertex& S(int i) { return *vld_screen_at(c, i); }
};

} // namespace

TEST_F(ClipFixture, RightPlaneCutsACornerIntoAQuadrilateral)
{
    Put(0, 0, 0, 0, 2, 0);
    Put(1, 4, 0, 0, 2, 200);
    Put(2, 0, 1, 0, 2, 0);
    ASSERT_EQ(E(1).outcode, VLD_CLIP_RIGHT);
    const int in[3] = {0, 1, 2};
    int out[100], n = 0;
    KSP_vld_clipper(VLD_CLIP_RIGHT, 3, in, &n, out);
    ASSERT_EQ(n, 4);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[3], 2);
    const vld_eye_vertex& a = E(out[1]);
    const vld_eye_vertex& b = E(out[2]);
    EXPECT_FLOAT_EQ(a.x, 2.0f);
    EXPECT_FLOAT_EQ(a.y, 0.0f);
    EXPECT_FLOAT_EQ(b.x, 2.0f);
    EXPECT_FLOAT_EQ(b.y, 0.5f);
    EXPECT_FLOAT_EQ(S(out[1]).r, 100.0f);
    EXPECT_FLOAT_EQ(S(out[1]).g, 200.0f);
    EXPECT_EQ(a.outcode, 0); // on the plane counts as inside
    EXPECT_EQ(c->clipVertexNext, c->clipVertexBase + 2);
}

TEST_F(ClipFixture, EachPlaneInterpolatesOntoItself)
{
    struct Case {
        int plane;
        float x, y, z, w; // the outside vertex; the others sit at the centre with w 2
    };
    const Case cases[] = {
        {VLD_CLIP_NEAR, 0, 0, 0, 0.5f}, {VLD_CLIP_FAR, 0, 0, 0, 200},
        {VLD_CLIP_LEFT, -6, 0, 0, 2},   {VLD_CLIP_RIGHT, 6, 0, 0, 2},
        {VLD_CLIP_BOTTOM, 0, -6, 0, 2}, {VLD_CLIP_TOP, 0, 6, 0, 2},
    };
    for (const Case& k : cases) {
        c->clipVertexNext = c->clipVertexBase;
        Put(0, k.x, k.y, k.z, k.w, 250, 1);
        Put(1, 0.5f, 0, 0, 2, 0, 0);
        Put(2, 0, 0.5f, 0, 2, 0, 0);
        ASSERT_EQ(E(0).outcode, k.plane);
        const int in[3] = {0, 1, 2};
        int out[100], n = 0;
        KSP_vld_clipper(k.plane, 3, in, &n, out);
        ASSERT_EQ(n, 4) << k.plane;
        for (int i = 0; i < n; ++i) {
            if (out[i] < c->clipVertexBase)
                continue;
            const vld_eye_vertex& e = E(out[i]);
            switch (k.plane) {
            case VLD_CLIP_NEAR: EXPECT_EQ(e.w, 1.0f); break;
            case VLD_CLIP_FAR: EXPECT_FLOAT_EQ(e.w, 100.0f); break;
            case VLD_CLIP_LEFT: EXPECT_FLOAT_EQ(e.x, -e.w); break;
            case VLD_CLIP_RIGHT: EXPECT_FLOAT_EQ(e.x, e.w); break;
            case VLD_CLIP_BOTTOM: EXPECT_FLOAT_EQ(e.y, -e.w); break;
            default: EXPECT_FLOAT_EQ(e.y, e.w); break;
            }
            // The colour lies between its ends; with texturing off no coordinate moves.
            EXPECT_GT(S(out[i]).r, 0.0f) << k.plane;
            EXPECT_LT(S(out[i]).r, 250.0f) << k.plane;
            EXPECT_EQ(e.s[0], 0.0f) << k.plane;
        }
    }
}

TEST_F(ClipFixture, TextureCoordinatesFollowWhenTheUnitIsOn)
{
    c->enable.textureEnableBits[0] = VLD_TEX_2D;
    Put(0, 0, 0, 0, 0.5f, 0, 1);
    Put(1, 0, 0, 0, 3, 0, 0);
    Put(2, 0, 1, 0, 3, 0, 0);
    const int in[3] = {0, 1, 2};
    int out[100], n = 0;
    KSP_vld_clipper(VLD_CLIP_NEAR, 3, in, &n, out);
    ASSERT_EQ(n, 4);
    const vld_eye_vertex& e = E(out[0]); // made on the edge 2 -> 0
    EXPECT_EQ(e.w, 1.0f);
    EXPECT_FLOAT_EQ(e.s[0], 0.8f); // t = 0.2 from the outside end
    EXPECT_FLOAT_EQ(e.t[0], 1.6f);
    EXPECT_EQ(e.q[0], 1.0f);
}

TEST_F(ClipFixture, SharedEdgeGivesIdenticalVertices)
{
    Put(0, 0.3f, 0.1f, 0, 0.37f, 10);
    Put(1, 0.7f, -0.2f, 0, 5.3f, 90);
    Put(2, -0.4f, 0.9f, 0, 4.1f, 50);
    Put(3, 0.2f, -0.8f, 0, 3.3f, 70);
    int out1[100], n1 = 0, out2[100], n2 = 0;
    const int first[3] = {0, 1, 2}, second[3] = {1, 0, 3};
    KSP_vld_clipper(VLD_CLIP_NEAR, 3, first, &n1, out1);
    c->clipVertexNext = c->clipVertexBase + 10;
    KSP_vld_clipper(VLD_CLIP_NEAR, 3, second, &n2, out2);
    // The vertex on edge 0-1 in each result.
    const vld_eye_vertex& a = E(c->clipVertexBase + 1);
    const vld_eye_vertex& b = E(c->clipVertexBase + 10);
    EXPECT_EQ(a.x, b.x);
    EXPECT_EQ(a.y, b.y);
    EXPECT_EQ(a.w, b.w);
    EXPECT_EQ(S(c->clipVertexBase + 1).r, S(c->clipVertexBase + 10).r);
}

TEST_F(ClipFixture, ParallelEdgeKeepsTheCorner)
{
    // Near plane; edges from the outside vertex have equal w at both ends: no crossing.
    c->eyeDepthNear = 1.0f;
    Put(0, 0, 0, 0, 0.5f, 0);
    Put(1, 1, 0, 0, 0.5f, 0);
    Put(2, 0, 1, 0, 3, 0);
    vld_eye_vertex& e1 = *vld_eye_at(c, 1);
    e1.outcode = 0; // pretend it is inside: the edge 1 -> 0 is parallel to the plane
    const int in[3] = {0, 1, 2};
    int out[100], n = 0;
    int made = 0;
    EXPECT_EQ(KSP_vld_create_new_clip_node(VLD_CLIP_NEAR, 0, 1, &made, out), 1);
    EXPECT_EQ(made, 0);
    KSP_vld_clipper(VLD_CLIP_NEAR, 3, in, &n, out);
    // 0 (outside) after 2: crossing made; 1 (inside) after 0 (outside): parallel, nothing made.
    EXPECT_EQ(n, 3);
}

TEST_F(ClipFixture, OrthographicNearAndFarUseZ)
{
    c->isPerspective = 0;
    c->orthoClipMin = -1.0f;
    c->orthoClipMax = 1.0f;
    Put(0, 0, 0, -3, 1, 0);
    Put(1, 0, 0, 0, 1, 0);
    Put(2, 0.5f, 0, 1, 1, 0);
    EXPECT_EQ(E(0).outcode, VLD_CLIP_NEAR);
    const int in[3] = {0, 1, 2};
    int out[100], n = 0;
    KSP_vld_clipper(VLD_CLIP_NEAR, 3, in, &n, out);
    ASSERT_EQ(n, 4);
    EXPECT_FLOAT_EQ(E(out[0]).z, -1.0f);
}
