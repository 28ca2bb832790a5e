// The face path's per-batch shortcuts against the per-vertex functions they stand for: the
// widened matrix against the matrix helpers, the in-line colour routes (lighting off, and
// ambient-and-diffuse lights evaluated in line) against KSP_vld_light_vertex, and the face
// plane against its formula. Random batches, compared bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <ostream>
#include <random>
#include <vector>

#include "geometry_context.h"
#include "support/mth/mat.h"
#include "vld/api/vld_capture.h"
#include "vld/grxf/vld_geom.h"
#include "vld/grxf/vld_leq.h"

namespace {

std::vector<GrVertex> issued;

void FX_CALL Record(const GrVertex* a, const GrVertex* b, const GrVertex* c)
{
    issued.push_back(*a);
    issued.push_back(*b);
    issued.push_back(*c);
}

void EnableLight(int i)
{
    vldGc->enable.lightEnableBits |= 1u << i;
    KSP_vld_update_light_source(i, 1);
}

// What one batch state sets beyond the perspective scene.
struct Scene {
    const char* name;
    bool lighting;
    int lights;          // directional lights 0.. (ambient and diffuse only)
    bool positional;     // one more light, positional: the general equation
    bool specular;       // a specular material: the general equation
    bool twoSided;
    bool normalize;
};

void PrintTo(const Scene& s, std::ostream* os)
{
    *os << s.name;
}

struct BatchRoutes : ::testing::TestWithParam<Scene> {
    GeometryContext g;
    vld_context* c = g.ctx;
    std::mt19937 random{1234};
    std::vector<vld_vertex> vertices;
    std::vector<vld_face> faces;

    void SetUp() override
    {
        issued.clear();
        vldTriangleSink = {Record, nullptr};
        __vldim_MatrixMode(GL_PROJECTION);
        __vldim_Frustum(-1, 1, -0.75, 0.75, 1, 100);
        __vldim_MatrixMode(GL_MODELVIEW);
        __vldim_Translatef(0.1f, -0.2f, -6.0f);
        __vldim_Rotatef(30.0f, 0.3f, 1.0f, 0.2f);
        const Scene& s = GetParam();
        const float ambient[4] = {0.1f, 0.15f, 0.2f, 1.0f};
        __vldim_LightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
        const float emission[4] = {0.05f, 0.0f, 0.1f, 1.0f};
        __vldim_Materialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
        const float diffuse[4] = {0.9f, 0.6f, 0.3f, 0.7f};
        __vldim_Materialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse);
        for (int i = 0; i < s.lights; ++i) {
            const float dir[4] = {0.3f * (float)i - 0.2f, 0.5f, 1.0f - 0.2f * (float)i, 0.0f};
            __vldim_Lightfv(GL_LIGHT0 + (GLenum)i, GL_POSITION, dir);
            const float colour[4] = {1.0f, 0.8f - 0.2f * (float)i, 0.5f, 1.0f};
            __vldim_Lightfv(GL_LIGHT0 + (GLenum)i, GL_DIFFUSE, colour);
            EnableLight(i);
        }
        if (s.positional) {
            const float pos[4] = {1.0f, 2.0f, 1.0f, 1.0f};
            __vldim_Lightfv(GL_LIGHT0 + (GLenum)s.lights, GL_POSITION, pos);
            EnableLight(s.lights);
        }
        if (s.specular) {
            const float specular[4] = {0.6f, 0.6f, 0.6f, 1.0f};
            __vldim_Materialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
            __vldim_Materialf(GL_FRONT_AND_BACK, GL_SHININESS, 12.0f);
            const float white[4] = {1, 1, 1, 1};
            __vldim_Lightfv(GL_LIGHT0, GL_SPECULAR, white);
        }
        __vldim_LightModeli(GL_LIGHT_MODEL_TWO_SIDE, s.twoSided ? 1 : 0);
        if (s.lighting)
            c->enable.capabilityBits |= VLD_CAP_LIGHTING;
        if (s.normalize)
            c->enable.capabilityBits |= VLD_CAP_NORMALIZE;
    }

    void TearDown() override { vldTriangleSink = {nullptr, nullptr}; }

    float Uniform(float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(random); }

    // Triangles of their own vertices in a box well inside the frustum, some facing away,
    // with normals that are not all of unit length and colours outside 0..1 too.
    void MakeBatch(int triangles)
    {
        for (int t = 0; t < triangles; ++t) {
            for (int k = 0; k < 3; ++k) {
                vld_vertex v{};
                for (int i = 0; i < 3; ++i) {
                    v.position[i] = Uniform(-1.0f, 1.0f);
                    v.normal[i] = Uniform(-1.2f, 1.2f);
                    v.color[i] = Uniform(-0.2f, 1.2f);
                }
                v.color[3] = Uniform(0.0f, 1.0f);
                vertices.push_back(v);
            }
            vld_face f{};
            for (int k = 0; k < 3; ++k)
                f.v[k] = (uint32_t)(3 * t + k);
            KSP_vld_compute_plane_tri(vertices[f.v[0]].position, vertices[f.v[1]].position,
                                      vertices[f.v[2]].position, f.plane);
            faces.push_back(f);
        }
    }

    void Draw(vld_dl_record& r)
    {
        r = vld_dl_record{};
        r.type = VLD_DL_FACES;
        r.total_size = VLD_DL_HEAD_BYTES;
        r.vertex_count = (int32_t)vertices.size();
        r.face_count = (int32_t)faces.size();
        vld_dl_set_faces_address(&r, faces.data());
        vld_dl_set_vertices_address(&r, vertices.data());
        const uint32_t none = VLD_NO_SPHERE_BITS;
        std::memcpy(&r.radius, &none, 4);
        r.stride = VLD_VX_STRIDE;
        r.position_offset = VLD_VX_POSITION;
        r.normal_offset = VLD_VX_NORMAL;
        r.color_offset = VLD_VX_COLOR;
        KSP_vld_dl_faces(&r);
    }
};

TEST_P(BatchRoutes, IssuedVerticesMatchThePerVertexFunctions)
{
    MakeBatch(200);
    for (GLenum hint : {GL_FASTEST, GL_NICEST}) {
        SCOPED_TRACE(hint == GL_FASTEST ? "GL_FASTEST" : "GL_NICEST");
        c->hint.hintClipVolume = hint;
        issued.clear();
        vld_dl_record r;
        Draw(r);
        ASSERT_EQ(issued.size(), vertices.size()) << "every triangle lies inside the volume";
        for (size_t i = 0; i < vertices.size(); ++i) {
            const vld_vertex& v = vertices[i];
            const vld_face& f = faces[i / 3];
            float clip[4];
            GI_mat_mult_by_vector4_wo_z(v.position, c->mvpMatrix, clip);
            const float rhw = 1.0f / clip[3];
            GrVertex want{};
            want.x = c->viewport.viewportHalfWidth * clip[0] * rhw + c->viewport.viewportCenterX + 524288.0f;
            want.y = c->viewport.viewportHalfHeight * clip[1] * rhw + c->viewport.viewportCenterY + 524288.0f;
            want.oow = 1.0f / (c->depthScale * clip[3] + c->depthOffset);
            const float facing = c->eyeObject[0] * f.plane[0] + c->eyeObject[1] * f.plane[1] +
                                 c->eyeObject[2] * f.plane[2] + f.plane[3];
            KSP_vld_light_vertex(r.position_offset, r.normal_offset, r.color_offset, 0, 0, 0, 0, 0,
                                 facing, (const float*)&v, &want);
            const GrVertex& got = issued[i];
            ASSERT_EQ(got.x, want.x) << "vertex " << i;
            ASSERT_EQ(got.y, want.y) << "vertex " << i;
            ASSERT_EQ(got.oow, want.oow) << "vertex " << i;
            ASSERT_EQ(got.r, want.r) << "vertex " << i;
            ASSERT_EQ(got.g, want.g) << "vertex " << i;
            ASSERT_EQ(got.b, want.b) << "vertex " << i;
            ASSERT_EQ(got.a, want.a) << "vertex " << i;
        }
    }
    // The context keeps the attributes of the last vertex reached.
    const vld_vertex& last = vertices.back();
    if (GetParam().lighting) {
        float n[3] = {last.normal[0], last.normal[1], last.normal[2]};
        if (GetParam().normalize) {
            const float q = n[0] * n[0] + n[1] * n[1] + n[2] * n[2];
            const float f = 1.0f / std::sqrt(q);
            n[0] *= f, n[1] *= f, n[2] *= f;
        }
        EXPECT_EQ(0, std::memcmp(c->current.currentNormal, n, sizeof n));
    } else {
        EXPECT_EQ(0, std::memcmp(c->current.currentColor, last.color, sizeof last.color));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, BatchRoutes,
    ::testing::Values(Scene{"Unlit", false, 0, false, false, false, false},
                      Scene{"OneDirectional", true, 1, false, false, false, false},
                      Scene{"ThreeDirectionalTwoSided", true, 3, false, false, true, true},
                      Scene{"NoLightEnabled", true, 0, false, false, false, false},
                      Scene{"WithPositional", true, 2, true, false, true, false},
                      Scene{"WithSpecular", true, 1, false, true, false, true}),
    [](const ::testing::TestParamInfo<Scene>& info) { return std::string(info.param.name); });

// The face plane: unit normal of (b - a) x (c - b) in double, each component rounded to float,
// and the distance term from the rounded normal.
TEST(FacePlane, MatchesItsFormulaOnRandomTriangles)
{
    std::mt19937 random(99);
    std::uniform_real_distribution<float> u(-100.0f, 100.0f);
    for (int t = 0; t < 2000; ++t) {
        float p[3][3];
        for (auto& v : p)
            for (float& x : v)
                x = t % 7 == 0 ? std::round(u(random)) : u(random) * (t % 3 == 0 ? 1e-3f : 1.0f);
        float plane[4];
        KSP_vld_compute_plane_tri(p[0], p[1], p[2], plane);
        const float e1[3] = {p[1][0] - p[0][0], p[1][1] - p[0][1], p[1][2] - p[0][2]};
        const float e2[3] = {p[2][0] - p[1][0], p[2][1] - p[1][1], p[2][2] - p[1][2]};
        const float n[3] = {e1[1] * e2[2] - e1[2] * e2[1], e1[2] * e2[0] - e1[0] * e2[2],
                            e1[0] * e2[1] - e1[1] * e2[0]};
        const double len = std::sqrt((double)n[0] * n[0] + (double)n[1] * n[1] + (double)n[2] * n[2]);
        float want[4];
        for (int i = 0; i < 3; ++i)
            want[i] = (float)(n[i] / len);
        want[3] = -(want[0] * p[1][0] + want[1] * p[1][1] + want[2] * p[1][2]);
        ASSERT_EQ(0, std::memcmp(plane, want, sizeof want)) << "triangle " << t;
    }
}

} // namespace
