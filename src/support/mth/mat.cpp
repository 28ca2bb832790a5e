// Matrix helpers for rigid placement with scale.
#include "support/mth/mat.h"

#include <cmath>
#include <cstring>
#include <xmmintrin.h>

#if defined(__i386__)
#define GP_SSE_TARGET __attribute__((target("sse")))
#else
#define GP_SSE_TARGET
#endif

namespace {

const float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

double row_length_squared(const float m[16], int r) {
  double x = m[4 * r], y = m[4 * r + 1], z = m[4 * r + 2];
  return x * x + y * y + z * z;
}

// Output element j of (x, y, z, 1) through m.
double transform_component(const float v[3], const float m[16], int j) {
  return static_cast<double>(v[0]) * m[j] + static_cast<double>(v[1]) * m[4 + j] +
         static_cast<double>(v[2]) * m[8 + j] + m[12 + j];
}

} // namespace

extern "C" {

int G_mat_inq_if_identity(const float m[16]) {
  for (int i = 0; i < 16; ++i)
    if (m[i] != kIdentity[i]) return 0;
  return 1;
}

void G_mat_mult_by_vector(const float v[3], const float m[16], float out[3]) {
  double x = transform_component(v, m, 0), y = transform_component(v, m, 1),
         z = transform_component(v, m, 2), w = transform_component(v, m, 3);
  if (w != 1.0 && w != 0.0) {
    double inv = 1.0 / w;
    x *= inv, y *= inv, z *= inv;
  }
  out[0] = static_cast<float>(x);
  out[1] = static_cast<float>(y);
  out[2] = static_cast<float>(z);
}

void G_mat_mult_by_vector_special(const float v[3], const float m[16], float out[3]) {
  double x = transform_component(v, m, 0), y = transform_component(v, m, 1),
         z = transform_component(v, m, 2);
  out[0] = static_cast<float>(x);
  out[1] = static_cast<float>(y);
  out[2] = static_cast<float>(z);
}

void G_mat_mult_by_vector_4x4(const float v[4], const float m[16], float out[4]) {
  double r[4];
  for (int j = 0; j < 4; ++j)
    r[j] = static_cast<double>(v[0]) * m[j] + static_cast<double>(v[1]) * m[4 + j] +
           static_cast<double>(v[2]) * m[8 + j] + static_cast<double>(v[3]) * m[12 + j];
  for (int j = 0; j < 4; ++j) out[j] = static_cast<float>(r[j]);
}

void mat_multiply_by_vector_notrans(const float v[3], const float m[16], float out[3]) {
  double r[3];
  for (int j = 0; j < 3; ++j)
    r[j] = static_cast<double>(v[0]) * m[j] + static_cast<double>(v[1]) * m[4 + j] +
           static_cast<double>(v[2]) * m[8 + j];
  for (int j = 0; j < 3; ++j) out[j] = static_cast<float>(r[j]);
}

void G_mat_mult_TxB_is_B(const float v[3], float m[16]) {
  double r[4];
  for (int j = 0; j < 4; ++j) r[j] = transform_component(v, m, j);
  for (int j = 0; j < 4; ++j) m[12 + j] = static_cast<float>(r[j]);
}

void GI_mat_mult_by_vector4_wo_z(const float v[3], const float m[16], float out[4]) {
  double x = transform_component(v, m, 0), y = transform_component(v, m, 1),
         w = transform_component(v, m, 3);
  out[0] = static_cast<float>(x);
  out[1] = static_cast<float>(y);
  out[3] = static_cast<float>(w);
}

void G_mat_mult_by_vector4(const float v[3], const float m[16], float out[4]) {
  double r[4];
  for (int j = 0; j < 4; ++j) r[j] = transform_component(v, m, j);
  for (int j = 0; j < 4; ++j) out[j] = static_cast<float>(r[j]);
}

// out_r = G[4r]x + G[4r+1]y + G[4r+2]z + G[4r+3], then x, y, z times 1/w (rcp + Newton).
GP_SSE_TARGET void G_mat_mult_by_vectorSse(const float *input, const float *matrix, float *output) {
  __m128 x = _mm_load_ps(input), y = _mm_load_ps(input + 4), z = _mm_load_ps(input + 8);
  __m128 r[4];
  for (int row = 0; row < 4; ++row) {
    const float *g = matrix + 16 * row;
    r[row] = _mm_add_ps(_mm_add_ps(_mm_mul_ps(_mm_load_ps(g), x), _mm_mul_ps(_mm_load_ps(g + 4), y)),
                        _mm_add_ps(_mm_mul_ps(_mm_load_ps(g + 8), z), _mm_load_ps(g + 12)));
  }
  __m128 w = r[3];
  __m128 estimate = _mm_rcp_ps(w);
  __m128 rhw = _mm_sub_ps(_mm_add_ps(estimate, estimate), _mm_mul_ps(_mm_mul_ps(w, estimate), estimate));
  _mm_store_ps(output, _mm_mul_ps(r[0], rhw));
  _mm_store_ps(output + 4, _mm_mul_ps(r[1], rhw));
  _mm_store_ps(output + 8, _mm_mul_ps(r[2], rhw));
}

GP_SSE_TARGET void G_mat_mult_by_vector_4x4Sse(const float *input, const float *matrix, float *output) {
  __m128 x = _mm_load_ps(input), y = _mm_load_ps(input + 4), z = _mm_load_ps(input + 8),
         w = _mm_load_ps(input + 12);
  for (int row = 0; row < 4; ++row) {
    const float *g = matrix + 16 * row;
    __m128 sum = _mm_add_ps(_mm_add_ps(_mm_mul_ps(_mm_load_ps(g), x), _mm_mul_ps(_mm_load_ps(g + 4), y)),
                            _mm_add_ps(_mm_mul_ps(_mm_load_ps(g + 8), z), _mm_mul_ps(_mm_load_ps(g + 12), w)));
    _mm_store_ps(output + 4 * row, sum);
  }
}

// Lanes with a squared length of 0 take 1.0 before the reciprocal square root, so a zero
// vector stays zero. About 12 bits of precision, no refinement.
GP_SSE_TARGET void G_vec_normalizeSse(const float *input, float *output) {
  __m128 x = _mm_load_ps(input), y = _mm_load_ps(input + 4), z = _mm_load_ps(input + 8);
  __m128 length2 = _mm_add_ps(_mm_add_ps(_mm_mul_ps(x, x), _mm_mul_ps(y, y)), _mm_mul_ps(z, z));
  __m128 zero = _mm_cmpeq_ps(length2, _mm_setzero_ps());
  length2 = _mm_or_ps(_mm_andnot_ps(zero, length2), _mm_and_ps(zero, _mm_set1_ps(1.0f)));
  __m128 scale = _mm_rsqrt_ps(length2);
  _mm_store_ps(output, _mm_mul_ps(x, scale));
  _mm_store_ps(output + 4, _mm_mul_ps(y, scale));
  _mm_store_ps(output + 8, _mm_mul_ps(z, scale));
}

// A squared row length within 1e-5 of one is taken as the scale itself (it is 1 within
// rounding); otherwise its square root.
void G_mat_decompose_scale(const float m[16], float scale[3]) {
  for (int r = 0; r < 3; ++r) {
    double s = row_length_squared(m, r);
    scale[r] = static_cast<float>(s > 0.99999 && s < 1.00001 ? s : std::sqrt(s));
  }
  double ax = m[0], ay = m[1], az = m[2], bx = m[4], by = m[5], bz = m[6], cx = m[8], cy = m[9],
         cz = m[10];
  double triple = ax * (by * cz - bz * cy) + ay * (bz * cx - bx * cz) + az * (bx * cy - by * cx);
  if (triple < 0.0) scale[0] = -scale[0];
}

// Transpose with each row divided by its squared length (left alone when it is unit within
// 1e-5, or zero), then the translation taken back through the new 3-by-3 part.
void G_mat_invert_SRT(const float m[16], float inverse[16]) {
  double result[16];
  for (int r = 0; r < 3; ++r) {
    double s = row_length_squared(m, r);
    double factor = ((s <= 0.99999 || s >= 1.00001) && s != 0.0) ? 1.0 / s : 1.0;
    for (int i = 0; i < 3; ++i) result[4 * i + r] = m[4 * r + i] * factor;
  }
  result[3] = result[7] = result[11] = 0.0;
  result[15] = 1.0;
  double tx = -static_cast<double>(m[12]), ty = -static_cast<double>(m[13]),
         tz = -static_cast<double>(m[14]);
  for (int j = 0; j < 3; ++j) result[12 + j] = tx * result[j] + ty * result[4 + j] + tz * result[8 + j];
  for (int i = 0; i < 16; ++i) inverse[i] = static_cast<float>(result[i]);
}

// Axis-angle rotation through an orthonormal frame (u, v, axis): the frame turned by the angle
// gives the matrix, which stays accurate for small angles.
int G_mat_compose_R_from_axis(float angleRadians, const float axis[3], float matrix[16]) {
  memcpy(matrix, kIdentity, sizeof kIdentity);
  if (angleRadians == 0.0f) return 0;
  double a[3] = {axis[0], axis[1], axis[2]};
  if (a[0] == 0.0 && a[1] == 0.0 && a[2] == 0.0) return -1;
  double c = std::cos(static_cast<double>(angleRadians));
  double s = std::sin(static_cast<double>(angleRadians));

  int nonZero = (a[0] != 0.0) + (a[1] != 0.0) + (a[2] != 0.0);
  if (nonZero == 1) {
    // R[row][col] lives at matrix[4 * col + row].
    auto put = [&](int row, int col, double value) { matrix[4 * col + row] = static_cast<float>(value); };
    if (a[0] != 0.0) {
      if (a[0] < 0.0) s = -s;
      put(1, 1, c), put(2, 1, s), put(1, 2, -s), put(2, 2, c);
    } else if (a[1] != 0.0) {
      if (a[1] < 0.0) s = -s;
      put(0, 0, c), put(2, 0, -s), put(0, 2, s), put(2, 2, c);
    } else {
      if (a[2] < 0.0) s = -s;
      put(0, 0, c), put(1, 0, s), put(0, 1, -s), put(1, 1, c);
    }
    return 0;
  }

  double length2 = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
  if (length2 != 1.0) {
    double inv = 1.0 / std::sqrt(length2);
    a[0] *= inv, a[1] *= inv, a[2] *= inv;
  }
  double h[3] = {0.0, 1.0, 0.0};
  if (a[1] <= -0.9 || a[1] >= 0.9) h[1] = 0.0, h[2] = 1.0;
  double u[3] = {a[1] * h[2] - a[2] * h[1], a[2] * h[0] - a[0] * h[2], a[0] * h[1] - a[1] * h[0]};
  double u2 = u[0] * u[0] + u[1] * u[1] + u[2] * u[2];
  if (u2 != 1.0 && u2 != 0.0) {
    double inv = 1.0 / std::sqrt(u2);
    u[0] *= inv, u[1] *= inv, u[2] *= inv;
  }
  double v[3] = {a[1] * u[2] - a[2] * u[1], a[2] * u[0] - a[0] * u[2], a[0] * u[1] - a[1] * u[0]};
  double vr[3], ur[3];
  for (int i = 0; i < 3; ++i) {
    vr[i] = v[i] * c - u[i] * s;
    ur[i] = v[i] * s + u[i] * c;
  }
  for (int row = 0; row < 3; ++row)
    for (int col = 0; col < 3; ++col)
      matrix[4 * col + row] =
          static_cast<float>(ur[row] * u[col] + vr[row] * v[col] + a[row] * a[col]);
  return 0;
}

} // extern "C"
