// The Glide calls themselves, read from the board's trace: what culling leaves out and how a
// clipped polygon is issued.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <zvgl/board_tool.h>

#include "renderers.h"
#include "scene_kit.h"

namespace {

// One drawing call of the trace: its name, its vertices' 15 floats, and the antialias flags
// of grAADrawTriangle.
struct DrawCall {
    std::string name;
    std::vector<std::vector<float>> vertices;
    std::vector<int> flags;
};

// Parses "name {x y ...} {x y ...} ... f0 f1 f2".
DrawCall parseDrawCall(const std::string& line)
{
    DrawCall call;
    size_t pos = line.find(' ');
    call.name = line.substr(0, pos);
    while (pos != std::string::npos && pos < line.size()) {
        size_t open = line.find('{', pos);
        if (open == std::string::npos)
            break;
        size_t close = line.find('}', open);
        std::vector<float> v;
        const char* p = line.c_str() + open + 1;
        const char* end = line.c_str() + close;
        while (p < end) {
            char* next = nullptr;
            float f = std::strtof(p, &next);
            if (next == p)
                break;
            v.push_back(f);
            p = next;
        }
        call.vertices.push_back(v);
        pos = close + 1;
    }
    int a, b, c;
    if (pos != std::string::npos && std::sscanf(line.c_str() + pos, " %d %d %d", &a, &b, &c) == 3)
        call.flags = {a, b, c};
    return call;
}

// The triangle calls of the current trace, in order.
std::vector<DrawCall> triangleCalls()
{
    std::vector<DrawCall> calls;
    for (int i = 0; i < zvbTraceCount(); ++i) {
        std::string line = zvbTraceLine(i);
        if (line.rfind("grDrawTriangle ", 0) == 0 || line.rfind("grAADrawTriangle ", 0) == 0)
            calls.push_back(parseDrawCall(line));
    }
    return calls;
}

// Runs a scene with the trace on and hands its triangle calls to `check`.
void traceScene(const Scene& scene, const std::function<void(const std::vector<DrawCall>&)>& check)
{
    std::string error;
    bool ran = traceZvgl(scene, [&] { check(triangleCalls()); }, &error);
    ASSERT_TRUE(ran) << error;
}

// A pixel-unit orthographic projection of the frame (no perspective, no depth scaling).
void orthoFrame(const GlTable& gl)
{
    gl.Viewport(0, 0, kFrameWidth, kFrameHeight);
    gl.MatrixMode(GL_PROJECTION);
    gl.LoadIdentity();
    gl.Ortho(-1.0, 1.0, -1.0, 1.0, -1.0, 1.0);
    gl.MatrixMode(GL_MODELVIEW);
    gl.LoadIdentity();
}

// One counter-clockwise and one clockwise triangle side by side.
void twoWindings(const GlTable& gl)
{
    gl.Begin(GL_TRIANGLES);
    gl.Vertex2f(-0.9f, -0.5f), gl.Vertex2f(-0.1f, -0.5f), gl.Vertex2f(-0.5f, 0.5f);
    gl.Vertex2f(0.1f, -0.5f), gl.Vertex2f(0.5f, 0.5f), gl.Vertex2f(0.9f, -0.5f);
    gl.End();
}

TEST(TraceImages, CulledTrianglesReachNoGlideCall)
{
    struct Case {
        const char* what;
        GLenum cull, front;
        bool enabled;
        size_t calls;
        float keptLeftX;  // the x of the first vertex of the kept triangle, in the frame
    } cases[] = {
        {"no culling", GL_BACK, GL_CCW, false, 2, -1},
        {"GL_BACK keeps the counter-clockwise one", GL_BACK, GL_CCW, true, 1, 0.05f * kFrameWidth},
        {"GL_FRONT keeps the clockwise one", GL_FRONT, GL_CCW, true, 1, 0.55f * kFrameWidth},
        {"GL_BACK with GL_CW keeps the clockwise one", GL_BACK, GL_CW, true, 1, 0.55f * kFrameWidth},
        {"GL_FRONT_AND_BACK keeps none", GL_FRONT_AND_BACK, GL_CCW, true, 0, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        traceScene([&](const GlTable& gl) {
            orthoFrame(gl);
            if (c.enabled)
                gl.Enable(GL_CULL_FACE);
            gl.CullFace(c.cull);
            gl.FrontFace(c.front);
            twoWindings(gl);
        }, [&](const std::vector<DrawCall>& calls) {
            ASSERT_EQ(calls.size(), c.calls);
            if (c.keptLeftX >= 0) {
                EXPECT_EQ(calls[0].name, "grDrawTriangle");
                ASSERT_EQ(calls[0].vertices.size(), 3u);
                // Screen x carries the library's snap offset of 2^19.
                EXPECT_NEAR(calls[0].vertices[0][0] - 524288.0f, c.keptLeftX, 1.0f);
            }
        });
    }
}

// A mirrored projection reverses the winding on the screen: with GL_BACK culling the
// triangle that is counter-clockwise in object space is now the one culled.
TEST(TraceImages, MirroredProjectionCullsTheOtherWinding)
{
    traceScene([](const GlTable& gl) {
        orthoFrame(gl);
        gl.MatrixMode(GL_PROJECTION);
        gl.Scalef(-1.0f, 1.0f, 1.0f);
        gl.MatrixMode(GL_MODELVIEW);
        gl.Enable(GL_CULL_FACE);
        gl.CullFace(GL_BACK);
        twoWindings(gl);
    }, [](const std::vector<DrawCall>& calls) {
        ASSERT_EQ(calls.size(), 1u);
        // The clockwise triangle, mirrored to the left half.
        EXPECT_LT(calls[0].vertices[0][0] - 524288.0f, kFrameWidth / 2.0f);
    });
}

// The triangle (-2, -0.5), (2, -0.5), (0, 0.8) crosses the left and the right side: clipping
// leaves a pentagon, issued as a fan of three triangles around its first vertex.
void pentagonScene(const GlTable& gl, bool smooth)
{
    orthoFrame(gl);
    if (smooth)
        gl.Enable(GL_POLYGON_SMOOTH);
    gl.Begin(GL_TRIANGLES);
    gl.Vertex2f(-2.0f, -0.5f), gl.Vertex2f(2.0f, -0.5f), gl.Vertex2f(0.0f, 0.8f);
    gl.End();
}

// Checks that the calls form one fan: vertex 0 shared by all, each triangle's third vertex
// the next one's second, every vertex inside the viewport.
void expectFan(const std::vector<DrawCall>& calls)
{
    for (size_t i = 0; i < calls.size(); ++i) {
        ASSERT_EQ(calls[i].vertices.size(), 3u);
        EXPECT_EQ(calls[i].vertices[0], calls[0].vertices[0]) << "triangle " << i;
        if (i > 0) {
            EXPECT_EQ(calls[i].vertices[1], calls[i - 1].vertices[2]) << "triangle " << i;
        }
        for (const std::vector<float>& v : calls[i].vertices) {
            ASSERT_GE(v.size(), 2u);
            EXPECT_GE(v[0] - 524288.0f, -0.01f);
            EXPECT_LE(v[0] - 524288.0f, kFrameWidth + 0.01f);
        }
    }
}

TEST(TraceImages, ClippedPolygonIsIssuedAsAFan)
{
    traceScene([](const GlTable& gl) { pentagonScene(gl, false); },
               [](const std::vector<DrawCall>& calls) {
                   ASSERT_EQ(calls.size(), 3u);
                   for (const DrawCall& c : calls)
                       EXPECT_EQ(c.name, "grDrawTriangle");
                   expectFan(calls);
               });
}

// With GL_POLYGON_SMOOTH the fan antialiases only the polygon's outer edges: flags 1 1 0 for
// the first triangle, 0 1 0 for the middle ones, 0 1 1 for the last; an unclipped triangle,
// and a clipped polygon of three corners, get 1 1 1.
TEST(TraceImages, ClippedPolygonFanCarriesOuterEdgeAntialiasFlags)
{
    traceScene([](const GlTable& gl) { pentagonScene(gl, true); },
               [](const std::vector<DrawCall>& calls) {
                   ASSERT_EQ(calls.size(), 3u);
                   for (const DrawCall& c : calls)
                       EXPECT_EQ(c.name, "grAADrawTriangle");
                   expectFan(calls);
                   EXPECT_EQ(calls[0].flags, (std::vector<int>{1, 1, 0}));
                   EXPECT_EQ(calls[1].flags, (std::vector<int>{0, 1, 0}));
                   EXPECT_EQ(calls[2].flags, (std::vector<int>{0, 1, 1}));
               });
    traceScene([](const GlTable& gl) {
        orthoFrame(gl);
        gl.Enable(GL_POLYGON_SMOOTH);
        gl.Begin(GL_TRIANGLES);
        // Inside the view.
        gl.Vertex2f(-0.5f, -0.5f), gl.Vertex2f(0.5f, -0.5f), gl.Vertex2f(0.0f, 0.5f);
        // Two corners beyond the right side: the clipped polygon is again a triangle.
        gl.Vertex2f(0.5f, 0.0f), gl.Vertex2f(3.0f, -0.2f), gl.Vertex2f(3.0f, 0.2f);
        gl.End();
    }, [](const std::vector<DrawCall>& calls) {
        ASSERT_EQ(calls.size(), 2u);
        for (const DrawCall& c : calls) {
            EXPECT_EQ(c.name, "grAADrawTriangle");
            EXPECT_EQ(c.flags, (std::vector<int>{1, 1, 1}));
        }
    });
}

// A triangle through the near plane of a perspective projection: the polygon left after
// clipping is a quadrilateral (two triangles), and every vertex the board gets has a finite,
// positive oow no greater than that of the near plane.
TEST(TraceImages, NearPlaneClipGivesFiniteDepths)
{
    traceScene([](const GlTable& gl) {
        gl.Viewport(0, 0, kFrameWidth, kFrameHeight);
        gl.MatrixMode(GL_PROJECTION);
        gl.LoadIdentity();
        perspective(gl, 60.0, 1.0, 1.0, 100.0);
        gl.MatrixMode(GL_MODELVIEW);
        gl.LoadIdentity();
        gl.Begin(GL_TRIANGLES);
        gl.Vertex3f(-0.5f, -0.3f, 0.5f), gl.Vertex3f(0.5f, -0.3f, -5.0f), gl.Vertex3f(-0.5f, 0.3f, -5.0f);
        gl.End();
    }, [](const std::vector<DrawCall>& calls) {
        ASSERT_EQ(calls.size(), 2u);
        expectFan(calls);
        for (const DrawCall& c : calls)
            for (const std::vector<float>& v : c.vertices) {
                ASSERT_GE(v.size(), 9u);
                float oow = v[8];
                EXPECT_GT(oow, 0.0f);
                EXPECT_LE(oow, 1.0001f);  // w at least the near plane's 1.0
            }
    });
}

} // namespace
