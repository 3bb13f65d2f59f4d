#pragma once

#include "base/table.hpp"
#include "elements/materials.hpp"
#include "model/element_geometry.hpp"

namespace velmor {

// Type 8: plate of a quadrilateral whose deflection is a polynomial of twelve terms in the natural coordinates:
//
//     k    1  2   3    4     5       6      7     8         9         10     11        12
//     fk   1  xi  eta  xi^2  xi eta  eta^2  xi^3  xi^2 eta  xi eta^2  eta^3  xi^3 eta  xi eta^3
//
// Local freedoms of node i at 3i - 2 to 3i: w along the normal, +dw/dy, +dw/dx. The third has the other sign than
// the rotation about the second in-plane axis of the other plates.
// Source: Adini, Clough, Analysis of Plate Bending by the Finite Element Method, 1960; Melosh, Basis for derivation
// of matrices for the direct stiffness method, AIAA Journal 1, 1963.

/// Coefficients of the shape functions of the unit square's corner (s, t), s and t -1 or 1, times 8: row k is the
/// term fk, column 1 belongs to w, 2 to dw/deta, 3 to dw/dxi. Whole numbers from -4 to 4. With a column 3 of the other
/// sign these are the three columns that PLAT.ELM holds for the corner.
Table<12, 3> UnitPlateShapes(int s, int t);

/// T: the coefficients of the twelve terms are T times the twelve local freedoms. It is the inverse of the matrix of
/// the terms and their slopes at the nodes, in closed form: the unit square's shapes times the Jacobian terms of the
/// nodes. Failure 11 if the Jacobian's det is 0 at a node.
Table<12, 12> PolynomialCoefficients(const MappingTerms& map);

/// Curvatures of the twelve terms at a point.
struct CurvatureRows {
  Table<3, 12> Q;  // rows d2/dx2, d2/dy2, 2 d2/dxdy
  double det = 0;  // of the Jacobian at the point
};
/// Q and det at (xi, eta) in -1..1. The Jacobian is taken as constant near the point: the terms with its derivatives
/// are left out. Failure 11 if det is 0.
CurvatureRows PolynomialCurvatureRows(const MappingTerms& map, double xi, double eta);

/// K by 2 by 2 Gauss points, order 12, upper triangle. Thickness is field 4. Failure 11 if det is 0 at a node or Gauss
/// point, or for a Poisson's ratio of 1 or -1.
Table<12, 12> PolynomialPlateStiffness(const Material& material, const MappingTerms& map);

}  // namespace velmor
