#pragma once

#include <cmath>
#include <vector>

#include "base/vector3.hpp"

namespace velmor::testing {

// Where a test places an element, and fields of displacement whose strains are known.

/// A plane in space: local coordinates x, y along e1, e2.
struct Plane {
  Vector3 e1{1, 0, 0}, e2{0, 1, 0};
  Vector3 Normal() const { return Cross(e1, e2); }
  Vector3 Point(double x, double y) const { return x * e1 + y * e2; }
};
inline const Plane Flat;
inline const Plane Turned{{2.0 / 3, 1.0 / 3, 2.0 / 3}, {-2.0 / 3, 2.0 / 3, 1.0 / 3}};

/// The sum of c x^m y^n over its terms.
struct Polynomial {
  struct Term {
    double c;
    int m, n;
  };
  std::vector<Term> terms;
  /// Its derivative, i times by x and j times by y.
  double At(double x, double y, int i = 0, int j = 0) const {
    double sum = 0;
    for (const auto& [c, m, n] : terms) sum += c * Derivative(x, m, i) * Derivative(y, n, j);
    return sum;
  }
  /// The i-th derivative of x^m.
  static double Derivative(double x, int m, int i) {
    if (i > m) return 0;
    return i == 0 ? std::pow(x, m) : m * Derivative(x, m - 1, i - 1);
  }
};

}  // namespace velmor::testing
