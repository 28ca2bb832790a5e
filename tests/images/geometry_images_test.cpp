// Geometry through the whole path: transform, lighting, culling and clipping on the host,
// triangles on the software board. Each scene is compared exactly with its golden picture
// and, where the library follows standard OpenGL, with Mesa's.
//
// Tolerance against Mesa for smooth-shaded, lit scenes: a channel may differ by 12 and 1% of
// the compared pixels may differ more. The board stores RGB565 (steps of 8 in red and blue,
// 4 in green) and dithers with its 4x4 matrix, which together move a channel by up to about
// 10; the lighting equation is the same per vertex in both, and Gouraud interpolation from
// 4 sub-pixel bits differs from Mesa's by a fraction of a step. The 1% covers pixels right
// beside the excluded edges.
#include <gtest/gtest.h>

#include "image_check.h"
#include "scene_kit.h"

namespace {

const MesaCheck kLitCheck{{12, 0.01}, 40, nullptr};

// A lit sphere: one white directional light from the upper right front, a red material with
// a white highlight.
void oneLightSphere(const GlTable& gl, bool ortho)
{
    gl.ClearColor(0.1f, 0.1f, 0.2f, 1.0f);
    gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    beginScene(gl, 0, 0, kFrameWidth, kFrameHeight, ortho);
    gl.Enable(GL_DEPTH_TEST);
    gl.Enable(GL_LIGHTING);
    setLight(gl, 0, v4(0, 0, 0, 1), v4(1, 1, 1, 1), v4(1, 1, 1, 1), v4(1, 1, 1, 0));
    setMaterial(gl, v4(0.2f, 0.05f, 0.05f, 1), v4(0.8f, 0.1f, 0.1f, 1), v4(0.7f, 0.7f, 0.7f, 1), 24.0f);
    gl.Rotatef(20.0f, 1.0f, 0.0f, 0.0f);
    drawSphere(gl, 32, 20);
}

TEST(GeometryImages, SphereOneDirectionalLightPerspective)
{
    checkScene("sphere_one_light_perspective", [](const GlTable& gl) { oneLightSphere(gl, false); },
               &kLitCheck);
}

TEST(GeometryImages, SphereOneDirectionalLightOrthographic)
{
    checkScene("sphere_one_light_ortho", [](const GlTable& gl) { oneLightSphere(gl, true); }, &kLitCheck);
}

// Two lights: a blue directional light from the left and a yellow positional light close to
// the sphere's lower right, with linear attenuation.
TEST(GeometryImages, SphereDirectionalAndAttenuatedPositionalLight)
{
    checkScene("sphere_two_lights", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        beginScene(gl, 0, 0, kFrameWidth, kFrameHeight, false);
        gl.Enable(GL_DEPTH_TEST);
        gl.Enable(GL_LIGHTING);
        setLight(gl, 0, v4(0, 0, 0, 1), v4(0.2f, 0.3f, 0.9f, 1), v4(0, 0, 0, 1), v4(-1, 0.3f, 0.5f, 0));
        setLight(gl, 1, v4(0.1f, 0.1f, 0, 1), v4(1, 0.9f, 0.2f, 1), v4(1, 1, 1, 1), v4(1.2f, -1.0f, 1.5f, 1));
        gl.Lightf(GL_LIGHT1, GL_LINEAR_ATTENUATION, 0.35f);
        setMaterial(gl, v4(0.3f, 0.3f, 0.3f, 1), v4(0.9f, 0.9f, 0.9f, 1), v4(0.5f, 0.5f, 0.5f, 1), 40.0f);
        drawSphere(gl, 32, 20);
    }, &kLitCheck);
}

// All eight lights at once: three directional, two positional with constant, linear and
// quadratic attenuation, three spot lights of different cutoffs and exponents. The spot
// lights have no ambient part: this library lets a spot light's factor drop to zero where
// the light does not reach the vertex (ambient included), where standard OpenGL keeps the
// ambient part inside the cone; without ambient both agree. The spot directions are given
// as unit vectors: the library normalises a spot direction only when the modelview matrix
// next changes, and uses it as given until then.
TEST(GeometryImages, SphereEightLightsOfEveryKind)
{
    checkScene("sphere_eight_lights", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        beginScene(gl, 0, 0, kFrameWidth, kFrameHeight, false);
        gl.Enable(GL_DEPTH_TEST);
        gl.Enable(GL_LIGHTING);
        V4 none = v4(0, 0, 0, 1);
        setLight(gl, 0, v4(0.05f, 0, 0, 1), v4(0.35f, 0, 0, 1), none, v4(1, 0, 0.3f, 0));
        setLight(gl, 1, v4(0, 0.05f, 0, 1), v4(0, 0.3f, 0, 1), none, v4(0, 1, 0.3f, 0));
        setLight(gl, 2, v4(0, 0, 0.05f, 1), v4(0, 0, 0.3f, 1), v4(0.4f, 0.4f, 0.4f, 1), v4(-1, -1, 1, 0));
        setLight(gl, 3, none, v4(0.6f, 0.6f, 0.2f, 1), none, v4(-1.5f, 1.2f, 1.0f, 1));
        gl.Lightf(GL_LIGHT3, GL_CONSTANT_ATTENUATION, 0.5f);
        gl.Lightf(GL_LIGHT3, GL_QUADRATIC_ATTENUATION, 0.2f);
        setLight(gl, 4, none, v4(0.2f, 0.5f, 0.6f, 1), none, v4(1.4f, -1.4f, 0.8f, 1));
        gl.Lightf(GL_LIGHT4, GL_LINEAR_ATTENUATION, 0.5f);
        float down[3] = {0.0f, -0.928477f, -0.371391f};
        setLight(gl, 5, none, v4(0.7f, 0.3f, 0.7f, 1), none, v4(0.0f, 2.5f, 1.5f, 1));
        gl.Lightfv(GL_LIGHT5, GL_SPOT_DIRECTION, down);
        gl.Lightf(GL_LIGHT5, GL_SPOT_CUTOFF, 30.0f);
        gl.Lightf(GL_LIGHT5, GL_SPOT_EXPONENT, 4.0f);
        float left[3] = {-0.957826f, 0.0f, -0.287348f};
        setLight(gl, 6, none, v4(0.3f, 0.7f, 0.3f, 1), none, v4(2.5f, 0.0f, 1.5f, 1));
        gl.Lightfv(GL_LIGHT6, GL_SPOT_DIRECTION, left);
        gl.Lightf(GL_LIGHT6, GL_SPOT_CUTOFF, 20.0f);
        float back[3] = {0, 0, -1};
        setLight(gl, 7, none, v4(0.5f, 0.5f, 0.5f, 1), v4(1, 1, 1, 1), v4(0.0f, 0.0f, 3.0f, 1));
        gl.Lightfv(GL_LIGHT7, GL_SPOT_DIRECTION, back);
        gl.Lightf(GL_LIGHT7, GL_SPOT_CUTOFF, 12.0f);
        gl.Lightf(GL_LIGHT7, GL_SPOT_EXPONENT, 10.0f);
        setMaterial(gl, v4(0.4f, 0.4f, 0.4f, 1), v4(0.6f, 0.6f, 0.6f, 1), v4(0.5f, 0.5f, 0.5f, 1), 30.0f);
        drawSphere(gl, 40, 24);
    }, &kLitCheck);
}

// glShadeModel(GL_FLAT): the library stores the mode but its face path always hands the
// board per-vertex colours, so the sphere comes out Gouraud-shaded exactly like the smooth
// one. Standard OpenGL would shade each triangle with its provoking vertex's colour, so the
// picture is held against its golden file only.
TEST(GeometryImages, FlatShadeModelKeepsPerVertexColours)
{
    checkScene("sphere_flat_shade_model", [](const GlTable& gl) {
        gl.ShadeModel(GL_FLAT);
        oneLightSphere(gl, false);
    }, nullptr);
}

// Colour material: the per-vertex colour drives ambient and diffuse of the one material.
TEST(GeometryImages, ColourMaterialAmbientAndDiffuse)
{
    checkScene("sphere_colour_material", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        beginScene(gl, 0, 0, kFrameWidth, kFrameHeight, false);
        gl.Enable(GL_DEPTH_TEST);
        gl.Enable(GL_LIGHTING);
        setLight(gl, 0, v4(0.2f, 0.2f, 0.2f, 1), v4(0.9f, 0.9f, 0.9f, 1), v4(0.5f, 0.5f, 0.5f, 1),
                 v4(0.5f, 0.8f, 1, 0));
        setMaterial(gl, v4(0.2f, 0.2f, 0.2f, 1), v4(0.8f, 0.8f, 0.8f, 1), v4(0.4f, 0.4f, 0.4f, 1), 16.0f);
        gl.ColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        gl.Enable(GL_COLOR_MATERIAL);
        gl.Rotatef(-30.0f, 0.0f, 1.0f, 0.0f);
        drawSphere(gl, 32, 20, true);
    }, &kLitCheck);
}

// An open bowl (the lower half of the sphere, cut open at the top) tilted towards the
// viewer, so that its inside, made of back faces, shows. Left: one-sided lighting (the
// inside is lit with the outside's normals, hence dark); right: two-sided (the inside is lit
// with reversed normals). One material serves both faces in both renderers.
TEST(GeometryImages, OneAndTwoSidedLightingOfAnOpenBowl)
{
    checkScene("bowl_one_and_two_sided", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Enable(GL_DEPTH_TEST);
        gl.Enable(GL_LIGHTING);
        setMaterial(gl, v4(0.2f, 0.2f, 0.2f, 1), v4(0.2f, 0.8f, 0.4f, 1), v4(0.6f, 0.6f, 0.6f, 1), 20.0f);
        for (int side = 0; side < 2; ++side) {
            beginScene(gl, side * kFrameWidth / 2, 0, kFrameWidth / 2, kFrameHeight, false);
            gl.LightModeli(GL_LIGHT_MODEL_TWO_SIDE, side);
            setLight(gl, 0, v4(0, 0, 0, 1), v4(1, 1, 1, 1), v4(1, 1, 1, 1), v4(0.2f, 1.0f, 0.6f, 0));
            gl.Rotatef(50.0f, 1.0f, 0.0f, 0.0f);
            const double pi = 3.14159265358979323846;
            auto vertex = [&](int i, int j) {
                double theta = 2.0 * pi * i / 28, phi = -pi / 2 + (pi / 2) * j / 8;
                float x = (float)(std::cos(phi) * std::sin(theta)), y = (float)std::sin(phi),
                      z = (float)(std::cos(phi) * std::cos(theta));
                gl.Normal3f(x, y, z);
                gl.Vertex3f(x, y, z);
            };
            gl.Begin(GL_TRIANGLES);
            for (int j = 0; j < 8; ++j)
                for (int i = 0; i < 28; ++i) {
                    vertex(i, j), vertex(i + 1, j), vertex(i + 1, j + 1);
                    vertex(i, j), vertex(i + 1, j + 1), vertex(i, j + 1);
                }
            gl.End();
        }
    }, &kLitCheck);
}

// Culling without a depth test: the sphere's triangles carry a colour from their position,
// drawn back to front and front to back mixed, so any face culling got wrong shows.
// Quadrants: culling GL_BACK; GL_FRONT (the inside shows); GL_BACK under a projection
// mirrored in x (which reverses the winding on screen, so the front faces are the ones
// culled, as in standard OpenGL); GL_BACK with glFrontFace(GL_CW).
TEST(GeometryImages, FaceCullingWithMirroredProjection)
{
    checkScene("culling_mirrored", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Enable(GL_CULL_FACE);
        const int h = kFrameWidth / 2;
        struct Quadrant {
            int x, y;
            GLenum cull, front;
            bool mirrored;
        } quadrants[4] = {{0, h, GL_BACK, GL_CCW, false},
                          {h, h, GL_FRONT, GL_CCW, false},
                          {0, 0, GL_BACK, GL_CCW, true},
                          {h, 0, GL_BACK, GL_CW, false}};
        for (const Quadrant& q : quadrants) {
            beginScene(gl, q.x, q.y, h, h, false);
            gl.MatrixMode(GL_PROJECTION);
            if (q.mirrored)
                gl.Scalef(-1.0f, 1.0f, 1.0f);
            gl.MatrixMode(GL_MODELVIEW);
            gl.CullFace(q.cull);
            gl.FrontFace(q.front);
            gl.Rotatef(35.0f, 1.0f, 1.0f, 0.0f);
            drawSphere(gl, 16, 10, true);
        }
    }, &kLitCheck);
}

// Triangles crossing the near plane: a floor of large triangles under a perspective camera
// whose near plane cuts them, vertices behind the eye included. Each triangle has one
// colour: the board iterates colours linearly in screen space, as the hardware does, where
// Mesa interpolates them with perspective correction, so graded colours over triangles this
// deep would differ by design. What is compared with Mesa is where the clipped triangles
// cover the frame.
TEST(GeometryImages, TrianglesClippedByTheNearPlane)
{
    checkScene("clip_near_plane", [](const GlTable& gl) {
        gl.ClearColor(0.0f, 0.0f, 0.3f, 1.0f);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Viewport(0, 0, kFrameWidth, kFrameHeight);
        gl.MatrixMode(GL_PROJECTION);
        gl.LoadIdentity();
        perspective(gl, 60.0, 1.0, 0.5, 30.0);
        gl.MatrixMode(GL_MODELVIEW);
        gl.LoadIdentity();
        gl.Rotatef(30.0f, 1.0f, 0.0f, 0.0f);
        gl.Translatef(0.0f, -1.0f, -1.0f);
        gl.Begin(GL_TRIANGLES);
        gl.Color3f(0.9f, 0.3f, 0.2f);
        gl.Vertex3f(-3, 0, 4), gl.Vertex3f(0.5f, 0, 4), gl.Vertex3f(0, 0, -8);
        gl.Color3f(0.2f, 0.8f, 0.3f);
        gl.Vertex3f(0.5f, 0, 4), gl.Vertex3f(3, 0, 4), gl.Vertex3f(0, 0, -8);
        gl.Color3f(1.0f, 1.0f, 0.2f);
        gl.Vertex3f(-0.5f, 2.5f, 0.3f), gl.Vertex3f(0.5f, -0.5f, 0.3f), gl.Vertex3f(0.4f, 1.5f, -3.0f);
        gl.End();
    }, &kLitCheck);
}

// Clipping by every side: an orthographic viewport of 112 x 112 inside the frame, with
// triangles that cross the left, right, bottom and top of it, one far larger than the whole
// view, and one tilted in depth through both the near and the far plane. Nothing may spill
// into the frame's margin around the viewport.
TEST(GeometryImages, TrianglesClippedByEverySide)
{
    checkScene("clip_every_side", [](const GlTable& gl) {
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Viewport(24, 24, 112, 112);
        gl.MatrixMode(GL_PROJECTION);
        gl.LoadIdentity();
        gl.Ortho(-1.0, 1.0, -1.0, 1.0, -1.0, 1.0);
        gl.MatrixMode(GL_MODELVIEW);
        gl.LoadIdentity();
        gl.Begin(GL_TRIANGLES);
        // Larger than the view on every side.
        gl.Color3f(0.2f, 0.2f, 0.2f), gl.Vertex3f(-4, -3, 0);
        gl.Color3f(0.2f, 0.5f, 0.2f), gl.Vertex3f(4, -3, 0);
        gl.Color3f(0.2f, 0.2f, 0.5f), gl.Vertex3f(0, 5, 0);
        // Across the left side.
        gl.Color3f(1, 0, 0), gl.Vertex3f(-1.6f, 0.3f, 0);
        gl.Color3f(1, 1, 0), gl.Vertex3f(-0.4f, 0.6f, 0);
        gl.Color3f(1, 0, 1), gl.Vertex3f(-0.8f, 0.9f, 0);
        // Across the right side and the top corner.
        gl.Color3f(0, 1, 0), gl.Vertex3f(0.5f, 0.5f, 0);
        gl.Color3f(0, 1, 1), gl.Vertex3f(1.5f, 0.7f, 0);
        gl.Color3f(1, 1, 1), gl.Vertex3f(0.9f, 1.6f, 0);
        // Across the bottom.
        gl.Color3f(0, 0, 1), gl.Vertex3f(-0.3f, -1.5f, 0);
        gl.Color3f(1, 0.5f, 0), gl.Vertex3f(0.6f, -0.4f, 0);
        gl.Color3f(0.5f, 0, 1), gl.Vertex3f(-0.6f, -0.3f, 0);
        // Through the near and far planes: z runs from -3 to 3 across its width.
        gl.Color3f(1, 1, 1), gl.Vertex3f(-0.9f, -0.1f, -3);
        gl.Color3f(1, 0, 0), gl.Vertex3f(0.9f, -0.1f, 3);
        gl.Color3f(0, 0, 0), gl.Vertex3f(0.0f, 0.3f, 0);
        gl.End();
    }, &kLitCheck);
}

} // namespace
