// Small pieces the scenes share: projections, a tessellated sphere, light set-up.
#pragma once

#include <cmath>

#include "gl_table.h"

// A symmetric perspective projection (as gluPerspective makes it) on the current matrix.
inline void perspective(const GlTable& gl, double fovyDegrees, double aspect, double zNear, double zFar)
{
    double top = zNear * std::tan(fovyDegrees * 3.14159265358979323846 / 360.0);
    gl.Frustum(-top * aspect, top * aspect, -top, top, zNear, zFar);
}

// Starts a scene: viewport, projection (perspective looking down -z from the origin, or an
// orthographic box of half size 1.6 around the origin), identity modelview, cleared buffers.
inline void beginScene(const GlTable& gl, int x, int y, int w, int h, bool ortho)
{
    gl.Viewport(x, y, w, h);
    gl.MatrixMode(GL_PROJECTION);
    gl.LoadIdentity();
    if (ortho)
        gl.Ortho(-1.6, 1.6, -1.6, 1.6, -10.0, 10.0);
    else
        perspective(gl, 40.0, (double)w / h, 1.0, 20.0);
    gl.MatrixMode(GL_MODELVIEW);
    gl.LoadIdentity();
    if (!ortho)
        gl.Translatef(0.0f, 0.0f, -4.5f);
}

// Four floats for the vector forms.
struct V4 {
    float v[4];
};
inline V4 v4(float a, float b, float c, float d) { return V4{{a, b, c, d}}; }

// A unit sphere of `slices` x `stacks` quads, as separate triangles (no vertex shared
// between triangles), wound counter-clockwise seen from outside, with the point's own
// direction as its normal. `colour` (optional) gives each vertex a colour from its position.
inline void drawSphere(const GlTable& gl, int slices, int stacks, bool colour = false)
{
    const double pi = 3.14159265358979323846;
    auto vertex = [&](int i, int j) {
        double theta = 2.0 * pi * i / slices;
        double phi = -pi / 2 + pi * j / stacks;
        float x = (float)(std::cos(phi) * std::sin(theta));
        float y = (float)std::sin(phi);
        float z = (float)(std::cos(phi) * std::cos(theta));
        if (colour)
            gl.Color3f(0.5f + 0.5f * x, 0.5f + 0.5f * y, 0.5f - 0.5f * z);
        gl.Normal3f(x, y, z);
        gl.Vertex3f(x, y, z);
    };
    gl.Begin(GL_TRIANGLES);
    for (int j = 0; j < stacks; ++j)
        for (int i = 0; i < slices; ++i) {
            vertex(i, j), vertex(i + 1, j), vertex(i + 1, j + 1);
            vertex(i, j), vertex(i + 1, j + 1), vertex(i, j + 1);
        }
    gl.End();
}

// Sets every parameter of light `index`, so that both renderers start from the same light
// whatever their defaults for lights 1 to 7. Spot cutoff 180 and attenuation (1, 0, 0)
// unless the caller changes them afterwards.
inline void setLight(const GlTable& gl, int index, V4 ambient, V4 diffuse, V4 specular, V4 position)
{
    GLenum light = GL_LIGHT0 + index;
    gl.Lightfv(light, GL_AMBIENT, ambient.v);
    gl.Lightfv(light, GL_DIFFUSE, diffuse.v);
    gl.Lightfv(light, GL_SPECULAR, specular.v);
    gl.Lightfv(light, GL_POSITION, position.v);
    gl.Lightf(light, GL_SPOT_CUTOFF, 180.0f);
    gl.Lightf(light, GL_SPOT_EXPONENT, 0.0f);
    gl.Lightf(light, GL_CONSTANT_ATTENUATION, 1.0f);
    gl.Lightf(light, GL_LINEAR_ATTENUATION, 0.0f);
    gl.Lightf(light, GL_QUADRATIC_ATTENUATION, 0.0f);
    gl.Enable(light);
}

// The material of the lit scenes, on both faces.
inline void setMaterial(const GlTable& gl, V4 ambient, V4 diffuse, V4 specular, float shininess)
{
    gl.Materialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient.v);
    gl.Materialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse.v);
    gl.Materialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.v);
    gl.Materialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}
