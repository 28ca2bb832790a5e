// 4-by-4 float matrices in OpenGL order: elements 12..14 are the translation, "row" r is the
// group m[4r..4r+3], and a point (x, y, z) goes through m as x*row0 + y*row1 + z*row2 + row3.
// Meant for rigid placement with scale; tolerances accept a float rotation that is not quite
// orthonormal. Arithmetic is in double inside; results are stored as floats.
//
// The SSE forms work on groups of four lanes (16-byte aligned) and on an expanded matrix of 16
// groups where group 4r + c holds the element of output r for input c (the transposed GL
// order: group 4r + c = m[4c + r]).
#pragma once

extern "C" {

int G_mat_inq_if_identity(const float m[16]);
// (x, y, z, 1) through m, divided by the resulting w unless w is 1.0 or 0.0.
void G_mat_mult_by_vector(const float v[3], const float m[16], float out[3]);
// The same for a matrix whose w column is known to be (0, 0, 0, 1): no w, no divide.
void G_mat_mult_by_vector_special(const float v[3], const float m[16], float out[3]);
void G_mat_mult_by_vector_4x4(const float v[4], const float m[16], float out[4]);
// The 3-by-3 part only (directions, normals).
void mat_multiply_by_vector_notrans(const float v[3], const float m[16], float out[3]);
// m's translation row becomes that of translate(v) times m: v is applied in place.
void G_mat_mult_TxB_is_B(const float v[3], float m[16]);
// (x, y, z, 1) through m for x, y and w only; out[2] is not written.
void GI_mat_mult_by_vector4_wo_z(const float v[3], const float m[16], float out[4]);
// (x, y, z, 1) through m, four outputs, no divide, no branch.
void G_mat_mult_by_vector4(const float v[3], const float m[16], float out[4]);
// Four points (groups x, y, z) through an expanded matrix, divided by w with the approximate
// reciprocal refined by one Newton step. Stores x, y, z.
void G_mat_mult_by_vectorSse(const float *input, const float *matrix, float *output);
// Four 4-vectors (groups x, y, z, w) through an expanded matrix, no divide.
void G_mat_mult_by_vector_4x4Sse(const float *input, const float *matrix, float *output);
// Normalises four vectors (groups x, y, z) by the approximate reciprocal square root; a zero
// vector stays zero.
void G_vec_normalizeSse(const float *input, float *output);
// Scale of each row; a mirror (negative triple product) shows as a negative x scale.
void G_mat_decompose_scale(const float m[16], float scale[3]);
// Inverse of scale * rotation * translation with mutually orthogonal rows.
void G_mat_invert_SRT(const float m[16], float inverse[16]);
// Rotation by angle (radians) about an axis. 0, or -1 for a zero axis with a non-zero angle.
int G_mat_compose_R_from_axis(float angleRadians, const float axis[3], float matrix[16]);

} // extern "C"
