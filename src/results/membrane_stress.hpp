#pragma once

#include "base/table.hpp"
#include "elements/materials.hpp"
#include "elements/triangle.hpp"
#include "model/element_geometry.hpp"

namespace velmor {

// Stresses of the membranes at a point, from the displacements g of their nodes along the element's axes: u1, v1, u2,
// v2 and so on. Quadrilaterals are asked at a point (xi, eta) of the unit square, -1..1.

/// Strains in the plane of an element; xy is the whole change of the right angle.
struct Strain {
  double x = 0, y = 0, xy = 0;
};

/// Stresses in the plane of an element.
struct PlaneStressState {
  double x = 0, y = 0, xy = 0;
};

/// What holds across the plane: no stress, or no strain.
enum class PlaneState { Stress, Strain };

/// State that field 5 of a material asks for in stress recovery: plane strain for the value 1 alone. The stiffness
/// takes any value but 0 for it.
PlaneState PlaneStateOf(const Material& material);

/// Stresses of an isotropic material. Failure 11 for a Poisson's ratio of 1 or -1 in plane stress, 0.5 or -1 in plane
/// strain. Source: Timoshenko, Goodier, Theory of Elasticity, 3rd ed., sections 10 and 11.
PlaneStressState StressOf(const Strain& strain, const Material& material, PlaneState state);

/// The constant strain of a triangle. Failure 11 if its area is 0.
Strain TriangleStrain(const TriangleSlopes& slopes, double area, const Row<double, 6>& g);

/// Strain of the bilinear quadrilateral, types 4 and 12 (for a rectangle of half sides a, b the map is x = a xi,
/// y = b eta). Failure 11 if the map has no area at the point.
Strain QuadrilateralStrain(const MappingTerms& map, double xi, double eta, const Row<double, 8>& g);

/// Map of a rectangle with half sides a1 and b2, whatever the other terms.
MappingTerms RectangleMap(const MappingTerms& map);

/// Stress of the rectangle with incompatible modes, type 5, always of plane stress: that of the mean strain, and
/// E u eta / a and E v xi / b of the two hourglass modes u xi eta and v xi eta, without Poisson or shear part. Failure
/// 11 for a or b of 0 or a Poisson's ratio of 1 or -1.
PlaneStressState IncompatibleStress(const Material& material, double a, double b, double xi, double eta,
                                    const Row<double, 8>& g);

}  // namespace velmor
