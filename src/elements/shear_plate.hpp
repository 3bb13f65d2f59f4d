#pragma once

#include "base/table.hpp"
#include "elements/materials.hpp"

namespace velmor {

/// Type 6: plate of a rectangle with half sides a, b, bilinear in the deflection and in both rotations. Bending is
/// integrated exactly, transverse shear is taken at the centre, and the deflection block carries a stabilisation
/// against the hourglass mode.
///
/// Order 12, upper triangle; local freedoms of node i at 3i - 2 to 3i: deflection w along the normal, rotation about
/// the first and about the second in-plane axis (dw/dy and -dw/dx in a rigid tilt). Thickness is field 4.
/// Failure 11 for a Poisson's ratio of 1 or -1.
/// Source: Hughes, Taylor, Kanoknukulchai, A simple and efficient finite element for plate bending, Int. J. Num.
/// Meth. Eng. 11, 1977; the stabilisation is this system's own.
Table<12, 12> ShearPlateStiffness(const Material& material, double a, double b);

}  // namespace velmor
