#pragma once

#include "base/table.hpp"
#include "elements/materials.hpp"
#include "model/element_geometry.hpp"

namespace velmor {

// Four-node membranes, as elements of their own and as the membranes of the shells. Local freedoms, two per node:
// u along the first and v along the second in-plane axis, node i at 2i - 1 and 2i. Thickness t is field 4.
// The stiffness matrices are of order 8, upper triangle.

/// Elasticity matrix for the strains ex, ey, gxy with the thickness in it, entries 1..3 by 1..3: plane stress where
/// field 5 is 0, else plane strain. Failure 11 for nu = 1 or -1 in plane stress, 0.5 or -1 in plane strain.
Table<3, 3> MembraneElasticity(const Material& material);

/// Strain rows of the bilinear quadrilateral at a point: (ex, ey, gxy)' = B (u1, v1, ..., u4, v4)'.
struct MembraneRows {
  Table<3, 8> B;
  double det = 0;  // of the Jacobian at the point
};
/// B and det at (xi, eta) in -1..1. Failure 11 if det is 0.
MembraneRows MembraneStrainRows(const MappingTerms& map, double xi, double eta);

/// Type 4: bilinear isoparametric quadrilateral of any shape, 2 by 2 Gauss points. A negative det counts with its
/// sign; failure 11 if it is 0 at a Gauss point.
/// Source: Zienkiewicz, The Finite Element Method, 3rd ed., chapters 7 and 8.
Table<12, 12> IsoparametricMembraneStiffness(const Material& material, const MappingTerms& map);

/// Type 5: rectangle of half sides a, b with incompatible modes, in closed form. A constant strain part and the two
/// hourglass modes u = xi eta and v = xi eta, which carry the modulus of a bar: pure bending has no parasitic shear.
/// In plane stress it is the element with two condensed modes per direction of Wilson, Taylor, Doherty, Ghaboussi,
/// Incompatible Displacement Models, 1973; in plane strain the two modes keep the factor E / ((1 + nu)(1 - 2 nu)).
Table<12, 12> IncompatibleMembraneStiffness(const Material& material, double a, double b);

/// Type 12: bilinear rectangle of half sides a, b, exactly integrated in closed form. Plane stress whatever field 5
/// says. Source: Przemieniecki, Theory of Matrix Structural Analysis, section 5.10, with bilinear displacements.
Table<12, 12> RectangleMembraneStiffness(const Material& material, double a, double b);

}  // namespace velmor
