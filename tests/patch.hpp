#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "base/table.hpp"
#include "elements/mapping.hpp"

namespace velmor::testing {

// Fields of displacement whose forces and energy are known, put on the nodes of an element.

struct Point {
  double x, y;
};

/// Nodes 1..4 of a mapped quadrilateral in its own axes.
inline std::vector<Point> NodesOf(const MappingTerms& map) {
  std::vector<Point> nodes;
  for (int i = 1; i <= 4; ++i) {
    const double s = CornerS[i], t = CornerT[i];
    nodes.push_back({map.a1 * s + map.a2 * t + map.a3 * s * t, map.b1 * s + map.b2 * t + map.b3 * s * t});
  }
  return nodes;
}

/// Integral of f(x, y) over a mapped quadrilateral, exact for cubic f on a parallelogram.
inline double Integral(const MappingTerms& map, const std::function<double(double, double)>& f) {
  const double g = 1 / std::sqrt(3.0);
  double sum = 0;
  for (const double s : {-g, g}) {
    for (const double t : {-g, g}) {
      const double x = map.a1 * s + map.a2 * t + map.a3 * s * t, y = map.b1 * s + map.b2 * t + map.b3 * s * t;
      sum += f(x, y) * JacobianAt(map, s, t).det;
    }
  }
  return sum;
}

/// In-plane motion u = u0 + ux x + uy y, v = v0 + vx x + vy y.
struct PlaneField {
  const char* name;
  double u0, ux, uy, v0, vx, vy;
  std::vector<double> On(const std::vector<Point>& nodes) const {
    std::vector<double> q;
    for (const auto& [x, y] : nodes) q.insert(q.end(), {u0 + ux * x + uy * y, v0 + vx * x + vy * y});
    return q;
  }
};
inline const PlaneField PlaneMotions[] = {
    {"shift x", 1, 0, 0, 0, 0, 0}, {"shift y", 0, 0, 0, 1, 0, 0}, {"turn", 0, 0, -1, 0, 1, 0}};
inline const PlaneField PlaneStrains[] = {{"stretch x", 0, 1, 0, 0, 0, 0},
                                          {"stretch y", 0, 0, 0, 0, 0, 1},
                                          {"shear", 0, 0, 1, 0, 0, 0},
                                          {"mixed", 3, 1, 2, -1, 0.5, -0.7}};

/// Deflection w = w0 + x wx + y wy + x^2/2 wxx + x y wxy + y^2/2 wyy + x^3/6 wxxx + y^3/6 wyyy.
struct Deflection {
  const char* name;
  double w0, wx, wy, wxx = 0, wxy = 0, wyy = 0, wxxx = 0, wyyy = 0;
  double SlopeX(double x, double y) const { return wx + wxx * x + wxy * y + wxxx * x * x / 2; }
  double SlopeY(double x, double y) const { return wy + wxy * x + wyy * y + wyyy * y * y / 2; }
  double At(double x, double y) const {
    return w0 + wx * x + wy * y + wxx * x * x / 2 + wxy * x * y + wyy * y * y / 2 + wxxx * x * x * x / 6 +
           wyyy * y * y * y / 6;
  }
  /// w, dw/dy and `sign` times dw/dx at each node.
  std::vector<double> On(const std::vector<Point>& nodes, double sign) const {
    std::vector<double> q;
    for (const auto& [x, y] : nodes) q.insert(q.end(), {At(x, y), SlopeY(x, y), sign * SlopeX(x, y)});
    return q;
  }
  /// Bending energy for the rigidity D.
  double Energy(const MappingTerms& map, double D, double nu) const {
    return D / 2 * Integral(map, [&](double x, double y) {
             const double kx = wxx + wxxx * x, ky = wyy + wyyy * y;
             return kx * kx + ky * ky + 2 * nu * kx * ky + 2 * (1 - nu) * wxy * wxy;
           });
  }
};
inline const Deflection PlateMotions[] = {{"shift", 1, 0, 0}, {"tilt x", 0, 1, 0}, {"tilt y", 0, 0, 1}};

/// K q, with K read from its upper triangle.
inline std::vector<double> Forces(const Table<12, 12>& K, const std::vector<double>& q) {
  const int n = static_cast<int>(q.size());
  std::vector<double> forces;
  for (int i = 1; i <= n; ++i) {
    double sum = 0;
    for (int j = 1; j <= n; ++j) sum += K(std::min(i, j), std::max(i, j)) * q[static_cast<std::size_t>(j - 1)];
    forces.push_back(sum);
  }
  return forces;
}

inline double LargestForce(const Table<12, 12>& K, const std::vector<double>& q) {
  double largest = 0;
  for (const double force : Forces(K, q)) largest = std::max(largest, std::abs(force));
  return largest;
}

inline double StrainEnergy(const Table<12, 12>& K, const std::vector<double>& q) {
  const std::vector<double> forces = Forces(K, q);
  double sum = 0;
  for (std::size_t i = 0; i < q.size(); ++i) sum += q[i] * forces[i] / 2;
  return sum;
}

}  // namespace velmor::testing
