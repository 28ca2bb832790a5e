// scene.cpp: meshes, matrices and the per-frame drawing of the demo scene (see scene.h).
#include "scene.h"

#include <cmath>

#include <zvgl/gl.h>

namespace zvgl_tool {

namespace {

constexpr float kFovyDegrees = 55.0f;
constexpr float kNear = 0.5f;
constexpr float kFar = 150.0f;
constexpr float kFramesPerSecond = 60.0f;  // animation time of one frame: 1/60 s


// Turns every triangle so that its face normal agrees with its vertices' normals (the
// outside), and drops triangles without area (the poles of a sphere).
void orient(Mesh &m) {
  std::vector<uint32_t> kept;
  kept.reserve(m.tri.size());
  for (size_t i = 0; i + 2 < m.tri.size(); i += 3) {
    uint32_t a = m.tri[i], b = m.tri[i + 1], c = m.tri[i + 2];
    const Vec3 f = v3_cross(v3_sub(m.pos[b], m.pos[a]), v3_sub(m.pos[c], m.pos[a]));
    if (f.x == 0.0f && f.y == 0.0f && f.z == 0.0f) continue;
    const Vec3 n = {m.nrm[a].x + m.nrm[b].x + m.nrm[c].x, m.nrm[a].y + m.nrm[b].y + m.nrm[c].y,
                    m.nrm[a].z + m.nrm[b].z + m.nrm[c].z};
    if (f.x * n.x + f.y * n.y + f.z * n.z < 0.0f) {
      const uint32_t t = b;
      b = c;
      c = t;
    }
    kept.push_back(a);
    kept.push_back(b);
    kept.push_back(c);
  }
  m.tri.swap(kept);
}

// Two triangles for the grid quad whose corner (i, j) has `stride` vertices per row.
void add_quad(Mesh &m, uint32_t i, uint32_t j, uint32_t stride) {
  const uint32_t v00 = i * stride + j, v01 = v00 + 1, v10 = v00 + stride, v11 = v10 + 1;
  const uint32_t q[6] = {v00, v10, v11, v00, v11, v01};
  m.tri.insert(m.tri.end(), q, q + 6);
}

float lerp(float a, float b, float t) { return a + (b - a) * t; }

// Colour of the landscape at height h: meadow in the valley, rock on the slopes, snow on top.
Vec3 terrain_colour(float h) {
  struct Band {
    float h;
    Vec3 c;
  };
  static const Band bands[] = {
      {-2.5f, {0.18f, 0.38f, 0.14f}}, {0.0f, {0.33f, 0.52f, 0.20f}},
      {2.0f, {0.50f, 0.45f, 0.36f}},  {3.6f, {0.62f, 0.60f, 0.58f}},
      {4.6f, {0.93f, 0.93f, 0.96f}},
  };
  const int n = sizeof bands / sizeof bands[0];
  if (h <= bands[0].h) return bands[0].c;
  for (int i = 1; i < n; ++i) {
    if (h <= bands[i].h) {
      const float t = (h - bands[i - 1].h) / (bands[i].h - bands[i - 1].h);
      const Vec3 a = bands[i - 1].c, b = bands[i].c;
      return {lerp(a.x, b.x, t), lerp(a.y, b.y, t), lerp(a.z, b.z, t)};
    }
  }
  return bands[n - 1].c;
}

void set_material(const float ambient[4], const float diffuse[4], const float specular[4],
                  float shininess) {
  glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient);
  glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse);
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
  glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}

// A plastic-like material of one colour with a white highlight.
void set_plastic(float r, float g, float b, float shininess) {
  const float ambient[4] = {r * 0.3f, g * 0.3f, b * 0.3f, 1.0f};
  const float diffuse[4] = {r, g, b, 1.0f};
  const float specular[4] = {0.8f, 0.8f, 0.8f, 1.0f};
  set_material(ambient, diffuse, specular, shininess);
}

// Hands triangles [first, first + count) of a mesh to GL as one glBegin/glEnd block.
void draw_triangles(const Mesh &m, size_t first, size_t count) {
  const bool coloured = !m.col.empty();
  glBegin(GL_TRIANGLES);
  for (size_t t = first; t < first + count; ++t) {
    for (int k = 0; k < 3; ++k) {
      const uint32_t v = m.tri[t * 3 + k];
      if (coloured) glColor3fv(&m.col[v].x);
      glNormal3fv(&m.nrm[v].x);
      glVertex3fv(&m.pos[v].x);
    }
  }
  glEnd();
}

void draw_mesh(const Mesh &m) { draw_triangles(m, 0, m.tri.size() / 3); }

// Draws a mesh under model matrix `model` on top of the view matrix `view`.
void draw_with(const Mat4 &view, const Mat4 &model, const Mesh &m) {
  const Mat4 mv = mat_mul(view, model);
  glLoadMatrixf(mv.m);
  draw_mesh(m);
}

}  // namespace

const float kSceneSky[4] = {0.55f, 0.68f, 0.85f, 1.0f};

// Places of the moving things: time t (seconds of animation) is the frame number over 60.
SceneFrame scene_frame(int frame) {
  const double t = frame / static_cast<double>(kFramesPerSecond);
  SceneFrame f;
  f.eye = {static_cast<float>(6.0 * dm_sin(0.13 * t)), static_cast<float>(4.5 + 0.5 * dm_sin(0.21 * t)),
           14.0f};
  f.centre = {0.0f, 2.5f, -6.0f};
  f.torusCentre = {0.0f, 3.0f, -8.0f};
  f.torusSpin = 25.0 * t;
  f.torusTumble = 40.0 * t;
  for (int i = 0; i < 3; ++i) {
    const double a = 0.8 * t + i * (2.0 * kPi / 3.0);
    f.orbit[i] = {static_cast<float>(f.torusCentre.x + 5.5 * dm_cos(a)),
                  static_cast<float>(f.torusCentre.y + 1.5 * dm_sin(2.0 * a)),
                  static_cast<float>(f.torusCentre.z + 5.5 * dm_sin(a))};
  }
  f.sweep = {static_cast<float>(24.0 * dm_sin(1.6 * t)), 2.0f, -2.0f};
  // The fly-by repeats every two seconds: it comes down the line of sight from far away and
  // passes the viewer 1.3 to the left, closer than the near plane at frame 110 of each round.
  const int period = 2 * static_cast<int>(kFramesPerSecond);
  const double depth = 0.7 + (110 - frame % period) * (80.0 / period);
  const Vec3 forward = v3_normalise(v3_sub(f.centre, f.eye));
  const Vec3 right = v3_normalise(v3_cross(forward, {0.0f, 1.0f, 0.0f}));
  f.flyBy = {static_cast<float>(f.eye.x + depth * forward.x - 1.3 * right.x),
             static_cast<float>(f.eye.y + depth * forward.y - 0.2),
             static_cast<float>(f.eye.z + depth * forward.z - 1.3 * right.z)};
  f.lamp = {static_cast<float>(6.0 * dm_cos(1.3 * t)), 6.0f,
            static_cast<float>(-8.0 + 6.0 * dm_sin(1.3 * t))};
  return f;
}

// ---------------------------------------------------------------------------------------
// Matrices.

Mat4 mat_identity() {
  Mat4 r = {};
  r.m[0] = r.m[5] = r.m[10] = r.m[15] = 1.0f;
  return r;
}

Mat4 mat_mul(const Mat4 &a, const Mat4 &b) {
  Mat4 r;
  for (int c = 0; c < 4; ++c)
    for (int row = 0; row < 4; ++row) {
      float s = 0.0f;
      for (int k = 0; k < 4; ++k) s += a.m[k * 4 + row] * b.m[c * 4 + k];
      r.m[c * 4 + row] = s;
    }
  return r;
}

Mat4 mat_translate(float x, float y, float z) {
  Mat4 r = mat_identity();
  r.m[12] = x;
  r.m[13] = y;
  r.m[14] = z;
  return r;
}

Mat4 mat_scale(float x, float y, float z) {
  Mat4 r = mat_identity();
  r.m[0] = x;
  r.m[5] = y;
  r.m[10] = z;
  return r;
}

// The rotation glRotate describes: `degrees` counter-clockwise about the axis (x, y, z).
Mat4 mat_rotate(double degrees, float x, float y, float z) {
  const Vec3 a = v3_normalise({x, y, z});
  const double rad = degrees * (kPi / 180.0);
  const float c = static_cast<float>(dm_cos(rad)), s = static_cast<float>(dm_sin(rad));
  const float t = 1.0f - c;
  Mat4 r = mat_identity();
  r.m[0] = t * a.x * a.x + c;
  r.m[1] = t * a.x * a.y + s * a.z;
  r.m[2] = t * a.x * a.z - s * a.y;
  r.m[4] = t * a.x * a.y - s * a.z;
  r.m[5] = t * a.y * a.y + c;
  r.m[6] = t * a.y * a.z + s * a.x;
  r.m[8] = t * a.x * a.z + s * a.y;
  r.m[9] = t * a.y * a.z - s * a.x;
  r.m[10] = t * a.z * a.z + c;
  return r;
}

Mat4 mat_look_at(Vec3 eye, Vec3 centre, Vec3 up) {
  const Vec3 f = v3_normalise(v3_sub(centre, eye));
  const Vec3 s = v3_normalise(v3_cross(f, up));
  const Vec3 u = v3_cross(s, f);
  Mat4 r = mat_identity();
  r.m[0] = s.x;
  r.m[4] = s.y;
  r.m[8] = s.z;
  r.m[1] = u.x;
  r.m[5] = u.y;
  r.m[9] = u.z;
  r.m[2] = -f.x;
  r.m[6] = -f.y;
  r.m[10] = -f.z;
  return mat_mul(r, mat_translate(-eye.x, -eye.y, -eye.z));
}

// ---------------------------------------------------------------------------------------
// Meshes.

Mesh mesh_sphere(int slices, int stacks) {
  Mesh m;
  for (int i = 0; i <= stacks; ++i) {
    const double theta = kPi * i / stacks;  // from the north pole down
    const double st = dm_sin(theta), ct = dm_cos(theta);
    for (int j = 0; j <= slices; ++j) {
      const double phi = 2.0 * kPi * j / slices;
      const Vec3 p = {static_cast<float>(st * dm_cos(phi)), static_cast<float>(ct),
                      static_cast<float>(-st * dm_sin(phi))};
      m.pos.push_back(p);
      m.nrm.push_back(p);
    }
  }
  for (int i = 0; i < stacks; ++i)
    for (int j = 0; j < slices; ++j) add_quad(m, i, j, slices + 1);
  orient(m);
  return m;
}

Mesh mesh_torus(float R, float r, int rings, int sides) {
  Mesh m;
  for (int i = 0; i <= rings; ++i) {
    const double u = 2.0 * kPi * i / rings;
    const double cu = dm_cos(u), su = dm_sin(u);
    for (int j = 0; j <= sides; ++j) {
      const double v = 2.0 * kPi * j / sides;
      const double cv = dm_cos(v), sv = dm_sin(v);
      m.pos.push_back({static_cast<float>((R + r * cv) * cu), static_cast<float>(r * sv),
                       static_cast<float>((R + r * cv) * su)});
      m.nrm.push_back({static_cast<float>(cv * cu), static_cast<float>(sv), static_cast<float>(cv * su)});
    }
  }
  for (int i = 0; i < rings; ++i)
    for (int j = 0; j < sides; ++j) add_quad(m, i, j, sides + 1);
  orient(m);
  return m;
}

float terrain_height(float x, float z) {
  // A valley along z, hills on both sides, small bumps everywhere.
  const double valley = x * x / (14.0 * 14.0);
  const double open = valley < 1.0 ? valley : 1.0;
  const double hills = 3.0 + 2.2 * dm_sin(0.11 * x + 0.5) * dm_cos(0.09 * z) + 1.2 * dm_sin(0.23 * x - 0.17 * z);
  const double bumps = 0.35 * dm_cos(0.41 * x + 0.37 * z) + 0.25 * dm_sin(0.53 * z - 0.29 * x);
  return static_cast<float>(-2.0 + open * hills + bumps);
}

Mesh mesh_terrain(int cells, float half, float zNear) {
  Mesh m;
  const float step = 2.0f * half / cells;
  const float e = 0.25f * step;  // for the slope by central differences
  for (int i = 0; i <= cells; ++i) {
    const float z = zNear - step * i;
    for (int j = 0; j <= cells; ++j) {
      const float x = -half + step * j;
      const float h = terrain_height(x, z);
      m.pos.push_back({x, h, z});
      const float dx = (terrain_height(x + e, z) - terrain_height(x - e, z)) / (2.0f * e);
      const float dz = (terrain_height(x, z + e) - terrain_height(x, z - e)) / (2.0f * e);
      m.nrm.push_back(v3_normalise({-dx, 1.0f, -dz}));
      m.col.push_back(terrain_colour(h));
    }
  }
  for (int i = 0; i < cells; ++i)
    for (int j = 0; j < cells; ++j) add_quad(m, i, j, cells + 1);
  orient(m);
  return m;
}

// ---------------------------------------------------------------------------------------
// The scene.

void scene_build(Scene &scene, const SceneConfig &cfg) {
  scene.cfg = cfg;
  scene.terrain = mesh_terrain(48, 60.0f, 20.0f);
  scene.sphere = mesh_sphere(24, 16);
  scene.torus = mesh_torus(2.6f, 0.8f, 36, 16);
}

int scene_triangles(const Scene &scene) {
  return static_cast<int>((scene.terrain.tri.size() + 5 * scene.sphere.tri.size() + scene.torus.tri.size()) / 3);
}

// Half the height of the near plane's window onto the scene.
static double frustum_top() {
  const double halfFovy = 0.5 * kFovyDegrees * (kPi / 180.0);
  return kNear * dm_sin(halfFovy) / dm_cos(halfFovy);
}

bool scene_project(const Scene &scene, int frame, Vec3 p, float &x, float &y) {
  const SceneFrame f = scene_frame(frame);
  const Mat4 view = mat_look_at(f.eye, f.centre, {0.0f, 1.0f, 0.0f});
  const float *m = view.m;
  const double ex = m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12];
  const double ey = m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13];
  const double ez = m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14];
  if (-ez < kNear) return false;
  const double top = frustum_top();
  const double right = top * scene.cfg.width / scene.cfg.height;
  const double nx = (ex * kNear / -ez) / right;  // -1 .. 1 across the window
  const double ny = (ey * kNear / -ez) / top;
  x = static_cast<float>((nx + 1.0) * 0.5 * scene.cfg.width);
  y = static_cast<float>((1.0 - ny) * 0.5 * scene.cfg.height);
  return true;
}

void scene_init_gl(const Scene &scene) {
  const int w = scene.cfg.width, h = scene.cfg.height;
  glViewport(0, 0, w, h);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  const double top = frustum_top();
  const double right = top * w / h;
  glFrustum(-right, right, -top, top, kNear, kFar);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();

  glClearColor(kSceneSky[0], kSceneSky[1], kSceneSky[2], kSceneSky[3]);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LESS);
  glEnable(GL_CULL_FACE);
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  glShadeModel(GL_SMOOTH);
  glEnable(GL_NORMALIZE);

  const float ambient[4] = {0.25f, 0.25f, 0.30f, 1.0f};
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
  glEnable(GL_LIGHTING);
  const float black[4] = {0.0f, 0.0f, 0.0f, 1.0f};
  const float sun[4] = {1.0f, 0.95f, 0.85f, 1.0f};
  const float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
  glLightfv(GL_LIGHT0, GL_AMBIENT, black);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, sun);
  glLightfv(GL_LIGHT0, GL_SPECULAR, white);
  glEnable(GL_LIGHT0);
  const float lampDiffuse[4] = {0.9f, 0.55f, 0.25f, 1.0f};
  const float lampSpecular[4] = {0.6f, 0.45f, 0.3f, 1.0f};
  glLightfv(GL_LIGHT1, GL_AMBIENT, black);
  glLightfv(GL_LIGHT1, GL_DIFFUSE, lampDiffuse);
  glLightfv(GL_LIGHT1, GL_SPECULAR, lampSpecular);
  glLightf(GL_LIGHT1, GL_CONSTANT_ATTENUATION, 1.0f);
  glLightf(GL_LIGHT1, GL_LINEAR_ATTENUATION, 0.06f);
  glEnable(GL_LIGHT1);
  glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);

  if (scene.cfg.fog) {
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, 25.0f);
    glFogf(GL_FOG_END, 95.0f);
    glFogfv(GL_FOG_COLOR, kSceneSky);
    glEnable(GL_FOG);
  } else {
    glDisable(GL_FOG);
  }
}

void scene_draw(const Scene &scene, int frame) {
  const SceneFrame f = scene_frame(frame);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

  const Mat4 view = mat_look_at(f.eye, f.centre, {0.0f, 1.0f, 0.0f});
  glMatrixMode(GL_MODELVIEW);
  glLoadMatrixf(view.m);
  // Light positions go through the model-view matrix of the moment: the view alone.
  const float sunDirection[4] = {0.5f, 1.0f, 0.6f, 0.0f};
  glLightfv(GL_LIGHT0, GL_POSITION, sunDirection);
  const float lamp[4] = {f.lamp.x, f.lamp.y, f.lamp.z, 1.0f};
  glLightfv(GL_LIGHT1, GL_POSITION, lamp);

  // The landscape, coloured per vertex, in bands of rows as an application would cut it.
  const float dull[4] = {0.0f, 0.0f, 0.0f, 1.0f};
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, dull);
  glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 0.0f);
  glEnable(GL_COLOR_MATERIAL);
  const size_t total = scene.terrain.tri.size() / 3;
  const size_t band = 2 * 48 * 4;  // four rows of cells
  for (size_t first = 0; first < total; first += band)
    draw_triangles(scene.terrain, first, first + band <= total ? band : total - first);
  glDisable(GL_COLOR_MATERIAL);

  // The torus: gold, spinning and tumbling.
  {
    const float ambient[4] = {0.25f, 0.20f, 0.07f, 1.0f};
    const float diffuse[4] = {0.75f, 0.61f, 0.23f, 1.0f};
    const float specular[4] = {0.63f, 0.56f, 0.37f, 1.0f};
    set_material(ambient, diffuse, specular, 40.0f);
    const Mat4 model = mat_mul(mat_translate(f.torusCentre.x, f.torusCentre.y, f.torusCentre.z),
                               mat_mul(mat_rotate(f.torusSpin, 0.0f, 1.0f, 0.0f),
                                       mat_rotate(f.torusTumble, 1.0f, 0.3f, 0.0f)));
    draw_with(view, model, scene.torus);
  }

  // Three spheres circling the torus.
  static const float orbitColours[3][3] = {{0.85f, 0.15f, 0.12f}, {0.15f, 0.35f, 0.9f}, {0.2f, 0.75f, 0.3f}};
  for (int i = 0; i < 3; ++i) {
    set_plastic(orbitColours[i][0], orbitColours[i][1], orbitColours[i][2], 60.0f);
    const Mat4 model = mat_mul(mat_translate(f.orbit[i].x, f.orbit[i].y, f.orbit[i].z), mat_scale(0.9f, 0.9f, 0.9f));
    draw_with(view, model, scene.sphere);
  }

  // One sphere sweeping out of the screen's sides and back.
  set_plastic(0.8f, 0.2f, 0.75f, 30.0f);
  draw_with(view, mat_mul(mat_translate(f.sweep.x, f.sweep.y, f.sweep.z), mat_scale(1.5f, 1.5f, 1.5f)),
            scene.sphere);

  // One sphere flying at the viewer: the near plane cuts it open as it passes. Its inside is
  // drawn too, lit on its own side, so that the cut shows.
  set_plastic(0.9f, 0.9f, 0.85f, 80.0f);
  glDisable(GL_CULL_FACE);
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
  draw_with(view, mat_mul(mat_translate(f.flyBy.x, f.flyBy.y, f.flyBy.z), mat_scale(1.2f, 1.2f, 1.2f)),
            scene.sphere);
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_FALSE);
  glEnable(GL_CULL_FACE);
}

}  // namespace zvgl_tool
