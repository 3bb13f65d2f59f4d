#pragma once

#include "base/item_reader.hpp"
#include "base/table.hpp"
#include "elements/materials.hpp"
#include "model/element_records.hpp"

namespace velmor {

struct Run;

// Constant strain membrane triangles: types 2 and 3, and the four halved triangles of a type 13 quadrilateral.

/// Slopes of the three shape functions times twice the area A: b(i) = 2A dNi/dx, c(i) = 2A dNi/dy, i = 1..3. The
/// strains of the node displacements u, v in the element's axes are ex = sum b(i) u(i) / (2A),
/// ey = sum c(i) v(i) / (2A), gxy = sum (c(i) u(i) + b(i) v(i)) / (2A).
/// Source: Zienkiewicz, The Finite Element Method, 3rd ed., section 4.2.
struct TriangleSlopes {
  Row<double, 3> b, c;
};
TriangleSlopes TriangleSlopesOf(const TriangleRecord& triangle);

/// K of a triangle of plane stress, whole, order 6: u1, v1, u2, v2, u3, v3 along the element's axes. `area` is above
/// 0. Failure 11 for a Poisson's ratio of 1 or -1.
Table<12, 12> TriangleStiffness(const Material& material, const TriangleSlopes& slopes, double area);

/// Reads the rest of a triangle's record and adds the element to GlobalBand: nothing if the area is 0, half the
/// stiffness for a type 13. Type 3 shows first that it is not supported and goes on as type 2.
void Triangle(Run& run, ItemReader& dat, int type);

}  // namespace velmor
