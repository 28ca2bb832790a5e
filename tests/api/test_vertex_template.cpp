// The vertex template behind glVertex: whatever path changes a current attribute or the
// material, the next captured record must hold, bit for bit, what the context's sources
// hold at that moment, as if the vertex had been gathered from them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <zvgl/gl.h>

#include "api_test_context.h"
#include "vld/api/vld_capture.h"
#include "vld/api/vld_current.h"

namespace {

// The record a vertex at (x, y, z) must get from the immediate sources of `c`.
vld_vertex Gathered(const vld_context* c, float x, float y, float z)
{
    vld_vertex v;
    std::memset(&v, 0, sizeof v);
    v.position[0] = x;
    v.position[1] = y;
    v.position[2] = z;
    std::memcpy(v.normal, c->current.currentNormal, sizeof v.normal);
    std::memcpy(v.texcoord0, c->current.currentTexCoord[0], sizeof v.texcoord0);
    std::memcpy(v.texcoord1, c->current.currentTexCoord[1], sizeof v.texcoord1);
    std::memcpy(v.color, c->current.currentColor, sizeof v.color);
    std::memcpy(v.ambient, c->lighting.materialAmbient, sizeof v.ambient);
    std::memcpy(v.diffuse, c->lighting.materialDiffuse, sizeof v.diffuse);
    std::memcpy(v.specular, c->lighting.materialSpecular, sizeof v.specular);
    std::memcpy(v.emission, c->lighting.materialEmission, sizeof v.emission);
    v.shininess = c->lighting.materialShininess;
    return v;
}

// The words of a record that differ from what was expected, as text.
std::string Differences(const vld_vertex& got, const vld_vertex& want)
{
    uint32_t g[35], w[35];
    std::memcpy(g, &got, sizeof g);
    std::memcpy(w, &want, sizeof w);
    std::string out;
    for (int i = 0; i < 35; ++i)
        if (g[i] != w[i])
            out += " word " + std::to_string(i);
    return out;
}

// Takes one vertex through the exported glVertex3f and checks its record against the
// sources; `what` names the change made before it.
void ExpectVertexFromSources(vld_context* c, const std::string& what)
{
    const float x = (float)c->vertexCount, y = 2.0f, z = -3.5f;
    const vld_vertex want = Gathered(c, x, y, z);
    glVertex3f(x, y, z);
    ASSERT_GE(c->vertexCount, 1);
    EXPECT_EQ(Differences(c->vertexArray[c->vertexCount - 1], want), "") << what;
}

struct Change {
    std::string name;
    std::function<void()> apply;
};

// glBegin makes the template live, glEnd drops it.
TEST(VertexTemplate, LiveFromGlBeginToGlEnd)
{
    TestContext tc;
    EXPECT_EQ(tc.ctx->vertexTemplateLive, VLD_TEMPLATE_DEAD);
    glBegin(GL_POINTS);
    EXPECT_EQ(tc.ctx->vertexTemplateLive, VLD_TEMPLATE_LIVE);
    glEnd();
    EXPECT_EQ(tc.ctx->vertexTemplateLive, VLD_TEMPLATE_DEAD);
}

// Every setter form and the material calls, each followed by a vertex, in one primitive,
// and again in a fresh primitive where the change comes before glBegin.
TEST(VertexTemplate, EverySetterFormReachesTheNextVertex)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    const GLfloat f4[4] = {0.125f, -2.0f, 3.5f, 0.75f};
    const GLdouble d4[4] = {0.3, 0.6, -0.9, 0.2};
    const GLint i4[4] = {2147483647, -5, 1000000, 0};
    const GLubyte ub4[4] = {255, 0, 128, 7};
    const GLshort s4[4] = {-32767, 1, 300, 9};
    const GLbyte b4[4] = {-127, 64, 3, 100};
    const GLushort us4[4] = {65535, 2, 40000, 1};
    const GLuint ui4[4] = {4294967295u, 7, 123456, 0};
    const GLfloat mat[4] = {0.1f, 0.2f, 0.3f, 0.4f};
    const std::vector<Change> changes = {
        {"glColor3f", [] { glColor3f(0.5f, 0.25f, 0.125f); }},
        {"glColor4f", [] { glColor4f(1.5f, -0.25f, 0.0f, 0.5f); }},
        {"glColor3fv", [&] { glColor3fv(f4); }},
        {"glColor4fv", [&] { glColor4fv(f4); }},
        {"glColor3d", [] { glColor3d(0.1, 0.2, 0.3); }},
        {"glColor4dv", [&] { glColor4dv(d4); }},
        {"glColor3i", [] { glColor3i(1, 2, 3); }},
        {"glColor4iv", [&] { glColor4iv(i4); }},
        {"glColor3ub", [] { glColor3ub(1, 2, 250); }},
        {"glColor4ubv", [&] { glColor4ubv(ub4); }},
        {"glColor3s", [] { glColor3s(-3, 4, 5); }},
        {"glColor4sv", [&] { glColor4sv(s4); }},
        {"glColor3b", [] { glColor3b(-1, 2, 127); }},
        {"glColor4bv", [&] { glColor4bv(b4); }},
        {"glColor3us", [] { glColor3us(1, 65535, 3); }},
        {"glColor4usv", [&] { glColor4usv(us4); }},
        {"glColor3ui", [] { glColor3ui(1u, 2u, 4000000000u); }},
        {"glColor4uiv", [&] { glColor4uiv(ui4); }},
        {"glNormal3f", [] { glNormal3f(0.0f, -1.0f, 0.5f); }},
        {"glNormal3fv", [&] { glNormal3fv(f4); }},
        {"glNormal3d", [] { glNormal3d(0.25, 0.5, 0.75); }},
        {"glNormal3dv", [&] { glNormal3dv(d4); }},
        {"glNormal3b", [] { glNormal3b(-128, 0, 127); }},
        {"glNormal3sv", [&] { glNormal3sv(s4); }},
        {"glNormal3i", [] { glNormal3i(1, -2, 3); }},
        {"glMaterialfv ambient", [&] { glMaterialfv(GL_FRONT, GL_AMBIENT, mat); }},
        {"glMaterialfv diffuse", [&] { glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, f4); }},
        {"glMaterialfv specular", [&] { glMaterialfv(GL_FRONT, GL_SPECULAR, mat); }},
        {"glMaterialfv emission", [&] { glMaterialfv(GL_FRONT, GL_EMISSION, f4); }},
        {"glMaterialfv ambient and diffuse", [&] { glMaterialfv(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, mat); }},
        {"glMaterialf shininess", [] { glMaterialf(GL_FRONT, GL_SHININESS, 17.5f); }},
        {"glMateriali shininess", [] { glMateriali(GL_FRONT, GL_SHININESS, 100); }},
        {"glMaterialiv emission", [&] { glMaterialiv(GL_FRONT, GL_EMISSION, i4); }},
        {"glMaterialfv refused face", [&] { glMaterialfv(GL_BACK, GL_AMBIENT, f4); }},
        {"glMultiTexCoord2fSGIS set 0", [] { glMultiTexCoord2fSGIS(GL_TEXTURE0_SGIS, 0.5f, 0.75f); }},
        {"glMultiTexCoord2fSGIS set 1", [] { glMultiTexCoord2fSGIS(GL_TEXTURE1_SGIS, -4.0f, 8.0f); }},
        {"glTexCoord2f", [] { glTexCoord2f(3.0f, 4.0f); }},
    };
    glBegin(GL_POINTS);
    for (const Change& change : changes) {
        change.apply();
        ExpectVertexFromSources(c, change.name + " inside the primitive");
    }
    glEnd();
    for (const Change& change : changes) {
        change.apply();
        glBegin(GL_POINTS);
        ExpectVertexFromSources(c, change.name + " before glBegin");
        glEnd();
    }
}

// Colour material carries each colour into the material it names; GL_NORMALIZE makes the
// normal unit length after it was stored. Both happen behind the setter's first store.
TEST(VertexTemplate, ColourMaterialAndNormalizeReachTheNextVertex)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    const GLenum modes[] = {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION, GL_AMBIENT_AND_DIFFUSE};
    glEnable(GL_COLOR_MATERIAL);
    for (GLenum mode : modes) {
        glColorMaterial(GL_FRONT_AND_BACK, mode);
        glBegin(GL_POINTS);
        glColor3f(0.9f, 0.1f, (float)mode / 8192.0f);
        ExpectVertexFromSources(c, "colour material " + std::to_string(mode));
        glColor4ub(10, 20, 30, 40);
        ExpectVertexFromSources(c, "colour material, bytes " + std::to_string(mode));
        glEnd();
    }
    glDisable(GL_COLOR_MATERIAL);

    glEnable(GL_NORMALIZE);
    glBegin(GL_POINTS);
    glNormal3f(3.0f, 0.0f, 4.0f);
    ExpectVertexFromSources(c, "normalised normal");
    EXPECT_FLOAT_EQ(c->vertexArray[c->vertexCount - 1].normal[2], 0.8f);
    glNormal3s(0, 0, 0);
    ExpectVertexFromSources(c, "zero normal");
    glEnd();
    glDisable(GL_NORMALIZE);
}

// The setters' short way opens inside a primitive once a full call found nothing more to do
// than store, and closes with every call that could change that: the records stay equal to
// the sources throughout, colour material and normalisation work again at once, and a new
// primitive marks its attributes again before any short way.
TEST(VertexTemplate, ShortWaysCloseWhenTheirConditionsChange)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    const int32_t shortBits = VLD_TEMPLATE_COLOR_SHORT | VLD_TEMPLATE_NORMAL_SHORT;
    glBegin(GL_TRIANGLES);
    glColor3f(0.5f, 0.25f, 0.125f);
    glNormal3f(1.0f, 0.0f, 0.0f);
    ExpectVertexFromSources(c, "full way");
    EXPECT_EQ(c->vertexTemplateLive, VLD_TEMPLATE_LIVE | shortBits);
    glColor3f(-1.0f, 2.0f, 0.75f);
    glNormal3f(0.0f, -2.0f, 0.5f);
    ExpectVertexFromSources(c, "short way");

    glColorMaterial(GL_FRONT_AND_BACK, GL_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    glEnable(GL_NORMALIZE);
    EXPECT_EQ(c->vertexTemplateLive, VLD_TEMPLATE_DEAD) << "glEnable inside the primitive drops the template";
    glColor3f(0.2f, 0.4f, 0.25f);
    glNormal3f(0.0f, 0.0f, 2.0f);
    ExpectVertexFromSources(c, "colour material and normalise switched on inside the primitive");
    glEnd();
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < 3; ++i) {
        const float blue = 0.5f + (float)i;
        glColor3f(0.2f, 0.4f, blue);
        glNormal3f(0.0f, 3.0f, 4.0f);
        ExpectVertexFromSources(c, "colour material and normalise, call " + std::to_string(i));
        const vld_vertex& v = c->vertexArray[c->vertexCount - 1];
        EXPECT_EQ(v.diffuse[2], blue);
        EXPECT_FLOAT_EQ(v.normal[2], 0.8f);
        EXPECT_EQ(c->vertexTemplateLive & shortBits, 0);
    }
    glEnd();
    glDisable(GL_COLOR_MATERIAL);
    glDisable(GL_NORMALIZE);

    glBegin(GL_TRIANGLES);
    EXPECT_EQ(c->beginAttrMask, c->attrMaskSeed);
    glColor3f(0.0f, 0.0f, 1.0f);
    glNormal3f(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(c->beginAttrMask & (VLD_ATTR_COLOR | VLD_ATTR_NORMAL), (uint32_t)(VLD_ATTR_COLOR | VLD_ATTR_NORMAL));
    glShadeModel(GL_FLAT);
    EXPECT_EQ(c->vertexTemplateLive, VLD_TEMPLATE_DEAD) << "another call drops the template";
    glColor3f(0.0f, 1.0f, 1.0f);
    ExpectVertexFromSources(c, "after another call");
    glEnd();

    // The list calls, which change the routing, drop the template like any other call.
    for (int call = 0; call < 3; ++call) {
        glBegin(GL_TRIANGLES);
        glColor3f(0.0f, 0.0f, 1.0f);
        glNormal3f(0.0f, 1.0f, 0.0f);
        EXPECT_EQ(c->vertexTemplateLive, VLD_TEMPLATE_LIVE | shortBits);
        if (call == 0)
            glNewList(1, GL_COMPILE_AND_EXECUTE);
        else if (call == 1)
            glEndList();
        else
            glDeleteLists(1, 1);
        EXPECT_EQ(c->vertexTemplateLive, VLD_TEMPLATE_DEAD) << "list call " << call;
        glEnd();
        tc.ctx->lastError = GL_NO_ERROR;
    }

    // While the calls also go into a list, they never take the short way.
    c->compileFlag = 1;
    glBegin(GL_TRIANGLES);
    glColor3f(0.0f, 0.0f, 1.0f);
    glColor3f(0.0f, 1.0f, 1.0f);
    glNormal3f(0.0f, 1.0f, 0.0f);
    glNormal3f(1.0f, 1.0f, 0.0f);
    EXPECT_EQ(c->vertexTemplateLive & shortBits, 0);
    glEnd();
    c->compileFlag = 0;
}

// Records that kept the steady blocks (texture coordinates, material) from an earlier
// primitive take only the position, normal and colour. Random runs of primitives, with the
// material and coordinates changed between them, inside them, or through the attribute
// stack, must still give every record exactly the sources' values, and no record taken
// earlier in the primitive may change.
TEST(VertexTemplate, RecordsKeepingTheSteadyBlocksMatchTheSources)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    std::mt19937 rng(20261122);
    auto pick = [&](int n) { return (int)(rng() % (uint32_t)n); };
    auto value = [&] { return (float)pick(9) * 0.25f - 1.0f; };
    const GLenum materials[] = {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION, GL_AMBIENT_AND_DIFFUSE};
    // One change of a steady source, by the call that a program would make.
    auto changeSteady = [&](bool inside) {
        switch (pick(inside ? 4 : 5)) {
        case 0: {
            const GLfloat m[4] = {value(), value(), value(), value()};
            glMaterialfv(GL_FRONT_AND_BACK, materials[pick(5)], m);
            break;
        }
        case 1: glMaterialf(GL_FRONT, GL_SHININESS, (float)pick(128)); break;
        case 2: glTexCoord2f(value(), value()); break;
        case 3: glMultiTexCoord2fSGIS(GL_TEXTURE1_SGIS, value(), value()); break;
        default: glPushAttrib(GL_LIGHTING_BIT); {
                const GLfloat m[4] = {value(), value(), value(), value()};
                glMaterialfv(GL_FRONT, GL_SPECULAR, m);
            }
            glPopAttrib();
            break;
        }
    };
    std::vector<vld_vertex> taken;
    int steadyTaken = 0;
    for (int primitive = 0; primitive < 400; ++primitive) {
        if (pick(4) == 0)
            changeSteady(false);
        glBegin(GL_TRIANGLES);
        taken.clear();
        const int count = 1 + pick(40);
        for (int i = 0; i < count; ++i) {
            glColor3f(value(), value(), value());
            glNormal3f(value(), value(), value());
            if (pick(200) == 0)
                changeSteady(true);
            const bool steady = c->vertexCount < c->vertexSteady;
            steadyTaken += steady ? 1 : 0;
            ExpectVertexFromSources(c, "primitive " + std::to_string(primitive) + ", vertex " + std::to_string(i) +
                                           (steady ? " (steady)" : ""));
            taken.push_back(c->vertexArray[c->vertexCount - 1]);
        }
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(Differences(c->vertexArray[i], taken[(size_t)i]), "") << "vertex " << i << " changed later";
        glEnd();
    }
    EXPECT_GT(steadyTaken, 4000) << "most vertices took the short copy";

    // Vertices taken for a list alone carry the list's attributes into the records; the
    // next primitive that executes must write its own over them.
    c->executeFlag = 0;
    c->compileFlag = 1;
    for (float& f : c->listAmbient)
        f = -3.0f;
    c->listTexCoord[1][0] = 7.0f;
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < 6; ++i)
        __vlddo_Vertex3f(1, 2, 3);
    EXPECT_EQ(c->vertexArray[0].ambient[0], -3.0f);
    c->vertexCount = 0;
    c->executeFlag = 1;
    c->compileFlag = 0;
    glEnd();
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < 6; ++i)
        ExpectVertexFromSources(c, "after a list's vertices, vertex " + std::to_string(i));
    glEnd();

    // The coordinate reduction rewrites the records' coordinates at glEnd: none keeps them then.
    glHint(GL_VELD_TEXTURE_COORD_REDUCE_HINT, GL_NICEST);
    glBegin(GL_TRIANGLES);
    glVertex3f(0, 0, 0);
    EXPECT_GT(c->vertexSteady, 0);
    glEnd();
    EXPECT_EQ(c->vertexSteady, 0);
    glHint(GL_VELD_TEXTURE_COORD_REDUCE_HINT, GL_DONT_CARE);
}

// Values of every kind keep their bits: negative zero, infinities, NaNs with payloads,
// denormals and random values, through colours, normals and materials.
TEST(VertexTemplate, EveryBitPatternIsCopiedUnchanged)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    std::mt19937 random(11);
    auto pick = [&](int i) {
        uint32_t bits = random();
        switch (i % 6) {
        case 0: bits = 0x80000000u; break;              // -0
        case 1: bits = 0x7F800000u; break;              // +inf
        case 2: bits = 0x7FC00000u | (bits & 0xFFFF); break; // quiet NaN with a payload
        case 3: bits &= 0x007FFFFFu; break;             // denormal
        default: break;
        }
        float f;
        std::memcpy(&f, &bits, 4);
        return f;
    };
    glBegin(GL_POINTS);
    for (int i = 0; i < 300; ++i) {
        const float v[4] = {pick(i), pick(i + 1), pick(i + 2), pick(i + 3)};
        switch (i % 4) {
        case 0: glColor4fv(v); break;
        case 1: glNormal3f(v[0], v[1], v[2]); break;
        case 2: glMaterialfv(GL_FRONT, GL_AMBIENT + (GLenum)(i % 3), v); break;
        default: glMaterialfv(GL_FRONT, GL_EMISSION, v); break;
        }
        ExpectVertexFromSources(c, "pattern " + std::to_string(i));
    }
    glEnd();
    EXPECT_GT(c->vertexCapacity, 256) << "the primitive crossed a growth of the array";
}

// A change that no setter makes (the drawing code, the attribute stack, code that writes
// the context directly) is seen by the next vertex once any other entry has been called, or
// a new primitive has begun, and always outside a primitive.
TEST(VertexTemplate, OtherCallsAndNewPrimitivesTakeTheSourcesAgain)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    auto poke = [&](float value) {
        c->current.currentColor[1] = value;
        c->current.currentNormal[0] = value;
        c->current.currentTexCoord[1][3] = value;
        c->lighting.materialSpecular[2] = value;
        c->lighting.materialShininess = value;
    };
    const std::vector<Change> calls = {
        {"glGetError", [] { (void)glGetError(); }},
        {"glShadeModel", [] { glShadeModel(GL_SMOOTH); }},
        {"glEnable", [] { glEnable(GL_NORMALIZE); }},
        {"glDisable", [] { glDisable(GL_NORMALIZE); }},
        {"glIsEnabled", [] { (void)glIsEnabled(GL_LIGHTING); }},
        {"glDrawPointsImmVELD", [] {
             alignas(16) unsigned char record[256] = {};
             glDrawPointsImmVELD(record);
         }},
        {"glDrawPointsVELD", [] {
             alignas(16) unsigned char record[256] = {};
             glDrawPointsVELD(record);
         }},
    };
    float value = 0.5f;
    for (const Change& call : calls) {
        glBegin(GL_POINTS);
        glColor3f(0.0f, 0.0f, 0.0f);
        ExpectVertexFromSources(c, call.name + ": first vertex");
        poke(value += 1.0f);
        call.apply();
        ExpectVertexFromSources(c, call.name + ": after the call");
        glEnd();
    }

    poke(value += 1.0f);
    glBegin(GL_POINTS);
    ExpectVertexFromSources(c, "written before glBegin");
    glEnd();

    // Outside a primitive, after glEnd, a vertex is captured all the same.
    poke(value += 1.0f);
    ExpectVertexFromSources(c, "written after glEnd");
    glEnd();

    // The attribute stack puts back what a setter inside the primitive changed.
    glColor3f(0.25f, 0.5f, 0.75f);
    glMaterialf(GL_FRONT, GL_SHININESS, 3.0f);
    glPushAttrib(GL_CURRENT_BIT | GL_LIGHTING_BIT);
    glBegin(GL_POINTS);
    glColor3f(1.0f, 1.0f, 0.0f);
    glMaterialf(GL_FRONT, GL_SHININESS, 90.0f);
    glPopAttrib();
    ExpectVertexFromSources(c, "glPopAttrib inside the primitive");
    glEnd();
    glPopAttrib();
    glBegin(GL_POINTS);
    ExpectVertexFromSources(c, "glPopAttrib before glBegin");
    glEnd();
}

// The template stands for the immediate sources only: a vertex taken while only compiling
// reads the list-compile layer's attributes, and one taken while neither layer runs writes
// its position alone.
TEST(VertexTemplate, RoutingDecidesAtEveryVertex)
{
    TestContext tc;
    vld_context* c = tc.ctx;
    glBegin(GL_POINTS);
    glColor3f(0.5f, 0.5f, 0.5f);
    c->listColor[2] = 0.875f;
    c->executeFlag = 0;
    c->compileFlag = 1;
    __vlddo_Vertex3f(1, 2, 3);
    EXPECT_EQ(c->vertexArray[0].color[2], 0.875f);
    c->compileFlag = 0;
    c->vertexArray[1].color[0] = -9.0f;
    __vlddo_Vertex3f(4, 5, 6);
    EXPECT_EQ(c->vertexArray[1].color[0], -9.0f);
    EXPECT_EQ(c->vertexArray[1].position[2], 6.0f);
    c->executeFlag = 1;
    ExpectVertexFromSources(c, "executing again");
    glEnd();
}

} // namespace
