// demo_math.cpp: platform-independent sine, cosine and square root for the tool programs.
#include "demo_math.h"

#include <cmath>

namespace zvgl_tool {

namespace {

// pi/2 split in two parts (Cody and Waite), so that x - k * pi/2 loses no bits for the
// arguments an animation produces (|x| up to a few thousand).
constexpr double kHalfPiHigh = 1.57079632673412561417;
constexpr double kHalfPiLow = 6.07710050650619224932e-11;

// Taylor series of sin and cos on |r| <= pi/4, evaluated by Horner's rule; the next terms are
// below 1e-17 there.
double sin_poly(double r) {
  const double r2 = r * r;
  return r * (1.0 + r2 * (-1.0 / 6 + r2 * (1.0 / 120 + r2 * (-1.0 / 5040 + r2 * (1.0 / 362880 +
         r2 * (-1.0 / 39916800 + r2 * (1.0 / 6227020800.0 + r2 * (-1.0 / 1307674368000.0))))))));
}

double cos_poly(double r) {
  const double r2 = r * r;
  return 1.0 + r2 * (-1.0 / 2 + r2 * (1.0 / 24 + r2 * (-1.0 / 720 + r2 * (1.0 / 40320 +
         r2 * (-1.0 / 3628800 + r2 * (1.0 / 479001600.0 + r2 * (-1.0 / 87178291200.0)))))));
}

// Reduces x to r in [-pi/4, pi/4] and the quadrant k (mod 4) with x = k * pi/2 + r.
double reduce(double x, long long &k) {
  const double q = x * (2.0 / kPi);
  k = static_cast<long long>(q >= 0 ? q + 0.5 : q - 0.5);
  const double kd = static_cast<double>(k);
  return (x - kd * kHalfPiHigh) - kd * kHalfPiLow;
}

}  // namespace

double dm_sin(double x) {
  long long k;
  const double r = reduce(x, k);
  switch (k & 3) {
    case 0: return sin_poly(r);
    case 1: return cos_poly(r);
    case 2: return -sin_poly(r);
    default: return -cos_poly(r);
  }
}

double dm_cos(double x) {
  long long k;
  const double r = reduce(x, k);
  switch (k & 3) {
    case 0: return cos_poly(r);
    case 1: return -sin_poly(r);
    case 2: return -cos_poly(r);
    default: return sin_poly(r);
  }
}

Vec3 v3_sub(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }

Vec3 v3_cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vec3 v3_normalise(Vec3 a) {
  const double len = std::sqrt(static_cast<double>(a.x) * a.x + static_cast<double>(a.y) * a.y +
                             static_cast<double>(a.z) * a.z);
  if (len == 0.0) return a;
  const double f = 1.0 / len;
  return {static_cast<float>(a.x * f), static_cast<float>(a.y * f), static_cast<float>(a.z * f)};
}

}  // namespace zvgl_tool
