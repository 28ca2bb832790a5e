// scene.h: the animated scene of zvgl-demo and of the whole-program tests. A lit landscape
// under haze, a spinning torus, spheres circling it, one sphere sweeping across the view and
// one flying at the viewer through the near plane. Every mesh is built here and drawn as
// glBegin/glEnd triangles with normals; the picture of frame n depends on n alone, never on
// the clock, so runs repeat bit for bit.
#pragma once

#include <cstdint>
#include <vector>

#include "demo_math.h"

namespace zvgl_tool {

// A triangle mesh: per-vertex position, unit normal and (for meshes coloured per vertex)
// colour; three indices per triangle, counter-clockwise seen from the outside.
struct Mesh {
  std::vector<Vec3> pos;
  std::vector<Vec3> nrm;
  std::vector<Vec3> col;  // empty: the mesh takes the current material
  std::vector<uint32_t> tri;
};

struct SceneConfig {
  int width = 640;    // viewport, as the board's window
  int height = 480;
  bool fog = true;    // linear haze in the clear colour
};

struct Scene {
  SceneConfig cfg;
  Mesh terrain;
  Mesh sphere;  // unit sphere, scaled by the model matrix
  Mesh torus;
};

// Mesh builders. Sphere of radius 1 with `slices` around and `stacks` from pole to pole;
// torus around the y axis with ring radius R and tube radius r; terrain: a height field of
// cells x cells quads over [-half, half] in x and [zNear - 2 half, zNear] in z, coloured
// by height.
Mesh mesh_sphere(int slices, int stacks);
Mesh mesh_torus(float R, float r, int rings, int sides);
Mesh mesh_terrain(int cells, float half, float zNear);
// Height of the landscape at (x, z); the terrain mesh samples it.
float terrain_height(float x, float z);

// Builds the meshes of the scene (no GL calls).
void scene_build(Scene &scene, const SceneConfig &cfg);
// Sets the GL state that stays for the whole run: viewport, projection, lights, fog, depth
// test, culling. Needs a current context.
void scene_init_gl(const Scene &scene);
// Clears and draws frame `frame` (0, 1, ...); the caller swaps.
void scene_draw(const Scene &scene, int frame);
// Triangles scene_draw hands to GL per frame (for the tools' report).
int scene_triangles(const Scene &scene);

// Where the moving things are in frame `frame` (world coordinates), for tests that look
// for them in the picture.
struct SceneFrame {
  Vec3 eye, centre;
  Vec3 torusCentre;
  double torusSpin, torusTumble;  // degrees
  Vec3 orbit[3];                  // red, blue, green spheres circling the torus (radius 0.9)
  Vec3 sweep;                     // magenta sphere crossing the screen's sides (radius 1.5)
  Vec3 flyBy;                     // white sphere passing the viewer (radius 1.2)
  Vec3 lamp;                      // the orange point light
};
SceneFrame scene_frame(int frame);
// Window position of world point p in frame `frame`: x from the left, y from the top, in
// pixels of the scene's viewport. False when p is behind the near plane.
bool scene_project(const Scene &scene, int frame, Vec3 p, float &x, float &y);
// The clear and fog colour.
extern const float kSceneSky[4];

// Column-major 4x4 matrices as glLoadMatrixf takes them, computed with the functions of
// demo_math.h so that the library receives the same numbers on every platform.
struct Mat4 {
  float m[16];
};
Mat4 mat_identity();
Mat4 mat_mul(const Mat4 &a, const Mat4 &b);  // a * b
Mat4 mat_translate(float x, float y, float z);
Mat4 mat_scale(float x, float y, float z);
Mat4 mat_rotate(double degrees, float x, float y, float z);  // axis need not be unit
// The view matrix of an eye at `eye` looking at `centre` with `up` roughly upwards.
Mat4 mat_look_at(Vec3 eye, Vec3 centre, Vec3 up);

}  // namespace zvgl_tool
