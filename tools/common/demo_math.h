// demo_math.h: the small mathematics of the tool programs, computed the same way on every
// platform. Scene geometry and animation must give the same bits on Linux and on Windows, so
// they do not call the C library's sin and cos, whose last bits differ between runtimes; the
// functions here use only the four basic operations, which IEEE arithmetic rounds the same
// everywhere. (Square roots are fine: IEEE requires them correctly rounded.)
#pragma once

namespace zvgl_tool {

constexpr double kPi = 3.14159265358979323846;

// Sine and cosine of x (radians), accurate to a few units in the last place of a double.
double dm_sin(double x);
double dm_cos(double x);

// Three-component float vector helpers for building meshes.
struct Vec3 {
  float x, y, z;
};

Vec3 v3_sub(Vec3 a, Vec3 b);
Vec3 v3_cross(Vec3 a, Vec3 b);
// a scaled to length 1; a zero vector stays zero.
Vec3 v3_normalise(Vec3 a);

}  // namespace zvgl_tool
