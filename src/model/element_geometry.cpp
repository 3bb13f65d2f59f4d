#include "model/element_geometry.hpp"

#include <cmath>

namespace velmor {
namespace {

/// Axes with ex along `first` and ez along ex x `second`.
ElementAxesTriad TriadFrom(const Vector3& first, const Vector3& second, std::source_location where) {
  ElementAxesTriad axes;
  axes.ex = Normalised(first, where);
  axes.ez = Normalised(Cross(axes.ex, second), where);
  axes.ey = Normalised(Cross(axes.ez, axes.ex), where);
  return axes;
}

}  // namespace

LineGeometry LineGeometryOf(const Vector3& p1, const Vector3& p2) {
  LineGeometry line;
  line.centre = (p1 + p2) / 2;
  line.length = Length(p1 - p2);
  if (line.length != 0) line.cosines = (p2 - p1) / line.length;
  return line;
}

TriangleGeometry TriangleGeometryOf(const Vector3& a, const Vector3& b, const Vector3& c, std::source_location where) {
  TriangleGeometry triangle;
  triangle.centre = (a + b + c) / 3;
  triangle.axes = TriadFrom(b - a, Normalised(c - a, where), where);
  const auto x = [&](const Vector3& p) { return Dot(p - triangle.centre, triangle.axes.ex); };
  const auto y = [&](const Vector3& p) { return Dot(p - triangle.centre, triangle.axes.ey); };
  const double x1 = x(a), x2 = x(b), x3 = x(c);
  const double y1 = y(a), y2 = y(b), y3 = y(c);
  triangle.x12 = x1 - x2;
  triangle.x13 = x1 - x3;
  triangle.x23 = x2 - x3;
  triangle.y12 = y1 - y2;
  triangle.y13 = y1 - y3;
  triangle.y23 = y2 - y3;
  triangle.area = std::abs(x1 * triangle.y23 - x2 * triangle.y13 + x3 * triangle.y12) / 2;
  return triangle;
}

QuadrilateralGeometry QuadrilateralGeometryOf(const std::array<Vector3, 4>& nodes, SecondDirection second,
                                              std::source_location where) {
  const Vector3 &p1 = nodes[0], &p2 = nodes[1], &p3 = nodes[2], &p4 = nodes[3];
  const Vector3 across = second == SecondDirection::MeanOfSides ? (p3 + p4 - p1 - p2) / 2 : (p4 - p1) / 2;
  QuadrilateralGeometry quad;
  quad.axes = TriadFrom((p2 + p3 - p1 - p4) / 2, across, where);
  quad.centre = p1 / 4 + p2 / 4 + p3 / 4 + p4 / 4;
  const auto terms = [&](const Vector3& axis, double& s, double& t, double& st) {
    const double v1 = Dot(p1 - quad.centre, axis), v2 = Dot(p2 - quad.centre, axis);
    const double v3 = Dot(p3 - quad.centre, axis), v4 = Dot(p4 - quad.centre, axis);
    s = (-v1 + v2 + v3 - v4) / 4;
    t = (-v1 - v2 + v3 + v4) / 4;
    st = (v1 - v2 + v3 - v4) / 4;
  };
  terms(quad.axes.ex, quad.map.a1, quad.map.a2, quad.map.a3);
  terms(quad.axes.ey, quad.map.b1, quad.map.b2, quad.map.b3);
  return quad;
}

SectionAxes SectionAxesOf(const Vector3& axis) {
  SectionAxes section;
  const Vector3 across{-axis.y, axis.x, 0};
  const double length = Length(across);
  section.first = length == 0 ? Vector3{0, 1, 0} : across / length;
  const Vector3 normal = Cross(axis, section.first);
  const double normalLength = Length(normal);
  section.second = normalLength == 0 ? Vector3{0, 0, 1} : normal / normalLength;
  return section;
}

}  // namespace velmor
