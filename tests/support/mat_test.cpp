// Matrix helpers: tolerances of the scale and inverse rules, axis-angle composition, and the
// SSE forms against the scalar ones.
#include "support/mth/mat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

const float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// The GL rotation about a unit axis: element (row i, column j) at m[4j + i].
void reference_rotation(double angle, double x, double y, double z, double out[16]) {
  double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
  double r[3][3] = {{t * x * x + c, t * x * y - s * z, t * x * z + s * y},
                    {t * x * y + s * z, t * y * y + c, t * y * z - s * x},
                    {t * x * z - s * y, t * y * z + s * x, t * z * z + c}};
  for (int i = 0; i < 16; ++i) out[i] = kIdentity[i];
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) out[4 * j + i] = r[i][j];
}

TEST(Matrix, IdentityIsExact) {
  float m[16];
  memcpy(m, kIdentity, sizeof m);
  EXPECT_EQ(G_mat_inq_if_identity(m), 1);
  m[14] = 1e-30f;
  EXPECT_EQ(G_mat_inq_if_identity(m), 0);
  m[14] = -0.0f; // equal to 0.0
  EXPECT_EQ(G_mat_inq_if_identity(m), 1);
}

TEST(Matrix, NearUnitRowsAreTransposedPlainly) {
  // Row 0 has squared length 0.999995: it counts as unit and is not divided.
  float m[16] = {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 3, 4, 5, 1};
  m[0] = static_cast<float>(std::sqrt(0.999995));
  float inv[16];
  G_mat_invert_SRT(m, inv);
  EXPECT_EQ(inv[0], m[0]);
  float scale[3];
  G_mat_decompose_scale(m, scale);
  EXPECT_FLOAT_EQ(scale[0], static_cast<float>(static_cast<double>(m[0]) * m[0]));
  EXPECT_FLOAT_EQ(scale[1], 1.0f);
}

TEST(Matrix, ScaledRowInvertsToItsReciprocal) {
  // Scale 2 on x, a rotation of 90 degrees about z, then a translation.
  float m[16] = {0, 2, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 7, -3, 2, 1};
  float inv[16];
  G_mat_invert_SRT(m, inv);
  float scale[3];
  G_mat_decompose_scale(inv, scale);
  EXPECT_FLOAT_EQ(scale[0], 1.0f);
  EXPECT_FLOAT_EQ(scale[1], 0.5f);
  EXPECT_FLOAT_EQ(scale[2], 1.0f);
  EXPECT_EQ(inv[3], 0.0f);
  EXPECT_EQ(inv[7], 0.0f);
  EXPECT_EQ(inv[11], 0.0f);
  EXPECT_EQ(inv[15], 1.0f);
  // A point through m and back through the inverse returns.
  const float p[3] = {1.5f, -2.0f, 0.25f};
  float q[3], back[3];
  G_mat_mult_by_vector(p, m, q);
  G_mat_mult_by_vector(q, inv, back);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(back[i], p[i], 1e-5f);
}

TEST(Matrix, ZeroRowPassesThroughAsZeros) {
  float m[16] = {0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1};
  float inv[16];
  G_mat_invert_SRT(m, inv);
  for (float value : inv) ASSERT_FALSE(std::isnan(value));
  EXPECT_EQ(inv[0], 0.0f);
  EXPECT_EQ(inv[4], 0.0f);
  EXPECT_EQ(inv[8], 0.0f);
  EXPECT_FLOAT_EQ(inv[5], 1.0f / 3.0f);
  EXPECT_FLOAT_EQ(inv[13], -2.0f / 3.0f);
}

TEST(Matrix, MirrorShowsOnlyInTheScale) {
  float m[16] = {-2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1};
  float scale[3];
  G_mat_decompose_scale(m, scale);
  EXPECT_FLOAT_EQ(scale[0], -2.0f);
  EXPECT_FLOAT_EQ(scale[1], 3.0f);
  EXPECT_FLOAT_EQ(scale[2], 4.0f);
  // Mirrored on y instead: still reported on x.
  float n[16] = {2, 0, 0, 0, 0, -3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1};
  G_mat_decompose_scale(n, scale);
  EXPECT_FLOAT_EQ(scale[0], -2.0f);
  EXPECT_FLOAT_EQ(scale[1], 3.0f);
}

TEST(Rotation, AngleZeroWinsOverAZeroAxis) {
  const float zero[3] = {0, 0, 0};
  float m[16];
  memset(m, 0xFF, sizeof m);
  EXPECT_EQ(G_mat_compose_R_from_axis(0.0f, zero, m), 0);
  EXPECT_EQ(G_mat_inq_if_identity(m), 1);
  memset(m, 0xFF, sizeof m);
  EXPECT_EQ(G_mat_compose_R_from_axis(1.0f, zero, m), -1);
  EXPECT_EQ(G_mat_inq_if_identity(m), 1);
}

TEST(Rotation, MatchesTheStandardAxisAngleForm) {
  const float axes[][3] = {{0, 0, 1},  {0, 0, -5}, {2, 0, 0}, {0, -1, 0}, {1, 1, 1},
                           {0.1f, 0.95f, 0.2f}, {-0.3f, -0.92f, 0.1f}, {3, -4, 12}};
  const float angles[] = {1e-4f, 0.5f, -1.2f, 3.14159f};
  for (const auto &axis : axes) {
    double length = std::sqrt(double(axis[0]) * axis[0] + double(axis[1]) * axis[1] +
                              double(axis[2]) * axis[2]);
    for (float angle : angles) {
      float m[16];
      ASSERT_EQ(G_mat_compose_R_from_axis(angle, axis, m), 0);
      double expected[16];
      reference_rotation(angle, axis[0] / length, axis[1] / length, axis[2] / length, expected);
      for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(m[i], expected[i], 2e-6) << "axis " << axis[0] << "," << axis[1] << ","
                                             << axis[2] << " angle " << angle << " element " << i;
    }
  }
}

TEST(Transform, VariantsAgree) {
  float m[16];
  const float axis[3] = {1, 2, 3};
  G_mat_compose_R_from_axis(0.7f, axis, m);
  m[12] = 4, m[13] = -1, m[14] = 2;
  const float v[3] = {0.5f, -1.5f, 2.0f};
  float out4[4], out3[3], special[3];
  G_mat_mult_by_vector4(v, m, out4);
  G_mat_mult_by_vector(v, m, out3);
  G_mat_mult_by_vector_special(v, m, special);
  for (int i = 0; i < 3; ++i) {
    EXPECT_FLOAT_EQ(out3[i], out4[i]);
    EXPECT_FLOAT_EQ(special[i], out4[i]);
  }
  float wo[4] = {0, 123.0f, -7.0f, 0};
  GI_mat_mult_by_vector4_wo_z(v, m, wo);
  EXPECT_FLOAT_EQ(wo[0], out4[0]);
  EXPECT_FLOAT_EQ(wo[1], out4[1]);
  EXPECT_EQ(wo[2], -7.0f);
  EXPECT_FLOAT_EQ(wo[3], out4[3]);

  // A projective w divides; a w of exactly 0 does not.
  float p[16];
  memcpy(p, kIdentity, sizeof p);
  p[11] = 1.0f, p[15] = 0.0f; // w = z
  const float deep[3] = {2, 4, 2};
  G_mat_mult_by_vector(deep, p, out3);
  EXPECT_FLOAT_EQ(out3[0], 1.0f);
  EXPECT_FLOAT_EQ(out3[2], 1.0f);
  const float flat[3] = {2, 4, 0};
  G_mat_mult_by_vector(flat, p, out3);
  EXPECT_FLOAT_EQ(out3[0], 2.0f);

  // Translating in place equals translating the point first.
  float moved[16];
  memcpy(moved, m, sizeof m);
  const float t[3] = {1, 2, -3};
  G_mat_mult_TxB_is_B(t, moved);
  const float origin[3] = {0, 0, 0};
  float a[3], b[3];
  G_mat_mult_by_vector(origin, moved, a);
  G_mat_mult_by_vector(t, m, b);
  for (int i = 0; i < 3; ++i) EXPECT_FLOAT_EQ(a[i], b[i]);
  float direction[3];
  mat_multiply_by_vector_notrans(t, m, direction);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(direction[i], b[i] - m[12 + i], 1e-5f);
}

TEST(Transform, SseFormsFollowTheScalarOnes) {
  float m[16];
  const float axis[3] = {-2, 1, 0.5f};
  G_mat_compose_R_from_axis(1.1f, axis, m);
  m[3] = 0.1f, m[7] = -0.05f, m[11] = 0.2f, m[12] = 1, m[13] = 2, m[14] = -3, m[15] = 2;
  alignas(16) float expanded[64];
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      for (int lane = 0; lane < 4; ++lane) expanded[16 * r + 4 * c + lane] = m[4 * c + r];
  const float points[4][3] = {{1, 2, 3}, {-1, 0.5f, 2}, {0, 0, 0}, {4, -4, 1}};
  alignas(16) float groups[16], out[12], out4[16];
  for (int lane = 0; lane < 4; ++lane) {
    for (int k = 0; k < 3; ++k) groups[4 * k + lane] = points[lane][k];
    groups[12 + lane] = 1.0f;
  }
  G_mat_mult_by_vectorSse(groups, expanded, out);
  G_mat_mult_by_vector_4x4Sse(groups, expanded, out4);
  for (int lane = 0; lane < 4; ++lane) {
    float expected[3], expected4[4];
    G_mat_mult_by_vector(points[lane], m, expected);
    G_mat_mult_by_vector4(points[lane], m, expected4);
    for (int k = 0; k < 3; ++k)
      EXPECT_NEAR(out[4 * k + lane], expected[k], 1e-5f * (1 + std::fabs(expected[k])));
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(out4[4 * k + lane], expected4[k], 1e-5f);
  }

  alignas(16) float normals[12] = {3, 0, 0, 1, 4, 0, 0, 1, 0, 0, 0, 1};
  alignas(16) float unit[12];
  G_vec_normalizeSse(normals, unit);
  EXPECT_NEAR(unit[0], 0.6f, 1e-3f);
  EXPECT_NEAR(unit[4], 0.8f, 1e-3f);
  EXPECT_EQ(unit[1], 0.0f); // the zero vector stays zero
  EXPECT_EQ(unit[5], 0.0f);
  EXPECT_EQ(unit[9], 0.0f);
  EXPECT_NEAR(unit[3], 0.57735f, 1e-3f);
}

} // namespace
