#pragma once

#include "base/table.hpp"
#include "elements/hybrid_plate.hpp"
#include "elements/materials.hpp"
#include "model/element_geometry.hpp"

namespace velmor {

// Bending stresses of the plates at the outer surface z = t / 2, at a point (xi, eta) of the unit square, -1..1, from
// the twelve local freedoms g of their nodes: w along the normal, then the rotations about the first and the second
// in-plane axis. A family works out once per element what its nodes' displacements make of its field, then the stress
// at each point. The thickness is field 4; the twisting stress is left out.

/// Bending stresses along the element's axes, at z = t / 2.
struct BendingStress {
  double x = 0, y = 0;
};

/// Coefficients of the twelve terms of the deflection, types 8 and 11: T g. Entries 1..12.
Row<double, 12> DeflectionTerms(const Table<12, 12>& T, const Row<double, 12>& g);

/// T of type 11: the table of PLAT.ELM with the scale of a rectangle of half sides a, b.
Table<12, 12> PlateTableCoefficients(const Table<12, 12>& P, double a, double b);

/// Types 8 and 11: stress of the strain -t/2 times the curvature of the terms, in plane stress. For type 11 the map is
/// that of the rectangle. Failure 11 if the map has no area at the point or for a Poisson's ratio of 1 or -1.
BendingStress DeflectionStress(const Material& material, const MappingTerms& map, double xi, double eta,
                               const Row<double, 12>& terms);

/// Parameters 1..9 of the moment field of types 9 and 10: inverse(H) L' g.
Row<double, 9> MomentParameters(const HybridPlate& plate, const Row<double, 12>& g);

/// Types 9 and 10: moments times (12 / t^3) t/2, with half sides a, b. Failure 11 if the thickness is 0.
BendingStress MomentStress(double thickness, double a, double b, double xi, double eta, const Row<double, 9>& beta);

}  // namespace velmor
