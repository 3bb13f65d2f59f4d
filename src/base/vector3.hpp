#pragma once

#include <cmath>
#include <source_location>

#include "base/failure.hpp"

namespace velmor {

/// A point or a direction in space. v(1), v(2), v(3) are x, y, z.
struct Vector3 {
  double x = 0, y = 0, z = 0;
  double operator()(int k) const { return k == 1 ? x : k == 2 ? y : z; }
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vector3 operator-(const Vector3& a, const Vector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vector3 operator-(const Vector3& a) { return {-a.x, -a.y, -a.z}; }
inline Vector3 operator*(double f, const Vector3& a) { return {f * a.x, f * a.y, f * a.z}; }
inline Vector3 operator/(const Vector3& a, double f) { return {a.x / f, a.y / f, a.z / f}; }
inline double Dot(const Vector3& a, const Vector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vector3& a) { return std::sqrt(Dot(a, a)); }

/// a at length 1; failure 11 at the line of the caller if a has no length.
inline Vector3 Normalised(const Vector3& a, std::source_location where = std::source_location::current()) {
  const double length = Length(a);
  if (length == 0) throw Failure(error::DivisionByZero, "a direction of no length", where);
  return a / length;
}

}  // namespace velmor
