#pragma once

#include <array>
#include <source_location>

#include "base/table.hpp"
#include "base/vector3.hpp"

namespace velmor {

/// Three unit vectors: the local axes of an element in global components.
struct ElementAxesTriad {
  Vector3 ex, ey, ez;
};

/// Direction cosines and length of a line element from p1 to p2; all cosines 0 if the length is 0.
struct LineGeometry {
  Vector3 cosines;
  double length = 0;
  Vector3 centre;
};
LineGeometry LineGeometryOf(const Vector3& p1, const Vector3& p2);

/// Local axes of a triangle a, b, c and its coordinate differences in them: ex from a to b, ez along the normal,
/// xij = xi - xj with 1, 2, 3 for a, b, c. Failure 11 if two nodes coincide or all three lie on one line.
struct TriangleGeometry {
  ElementAxesTriad axes;
  double x12 = 0, x13 = 0, x23 = 0, y12 = 0, y13 = 0, y23 = 0;
  double area = 0;
  Vector3 centre;
};
TriangleGeometry TriangleGeometryOf(const Vector3& a, const Vector3& b, const Vector3& c,
                                    std::source_location where = std::source_location::current());

/// Nodes of the four triangles of a type 13 quadrilateral, as positions 1..4 in the element. Together they cover
/// the quadrilateral twice.
inline constexpr std::array<std::array<int, 3>, 4> TrianglesOfQuadrilateral{
    {{1, 2, 3}, {1, 3, 4}, {1, 2, 4}, {2, 3, 4}}};

/// Terms of the bilinear map from the unit square to local coordinates about the element's centre:
/// x = a1 s + a2 t + a3 s t and y = b1 s + b2 t + b3 s t, with s and t in -1..1.
struct MappingTerms {
  double a1 = 0, a2 = 0, a3 = 0, b1 = 0, b2 = 0, b3 = 0;
};

/// Which second in-plane direction settles the normal of a quadrilateral: the mean of the sides 1-4 and 2-3, or
/// the side 1-4 alone. For a plane element both give the same axes.
enum class SecondDirection { MeanOfSides, FirstSide };

/// Local axes, mapping terms and centre of a quadrilateral. Failure 11 if its sides leave no direction or normal.
struct QuadrilateralGeometry {
  ElementAxesTriad axes;
  MappingTerms map;
  Vector3 centre;
};
QuadrilateralGeometry QuadrilateralGeometryOf(const std::array<Vector3, 4>& nodes, SecondDirection second,
                                              std::source_location where = std::source_location::current());

/// Corner signs (s, t) of the nodes 1..4 of a four-node element; entry 0 holds nothing.
inline constexpr int CornerS[] = {0, -1, 1, 1, -1};
inline constexpr int CornerT[] = {0, -1, -1, 1, 1};

/// Principal axes of the section of a line element along `axis` before the section's own rotation: `first` is
/// horizontal, across the axis, or (0, 1, 0) for a vertical element; `second` = axis x first at length 1, or
/// (0, 0, 1) if that has no length.
struct SectionAxes {
  Vector3 first, second;
};
SectionAxes SectionAxesOf(const Vector3& axis);

}  // namespace velmor
