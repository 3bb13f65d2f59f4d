#pragma once

#include <source_location>

#include "base/table.hpp"
#include "elements/materials.hpp"

namespace velmor {

/// Stress of a bar, positive where it is longer: E elongation / L. Failure 11 if L is 0.
double AxialStress(double E, double elongation, double L, std::source_location where = std::source_location::current());

/// Deflection and rotation at both ends of a beam in one of its bending planes.
struct PlaneMotion {
  double v1 = 0, r1 = 0, v2 = 0, r2 = 0;
};

/// Bending stress at the outer fibre and mean shear stress at the ends 1 and 2, in one bending plane.
struct PlaneEndStress {
  Row<double, 2> bending, shear;
};

/// M / W and V / A from the end forces f = K (v1, r1, v2, r2) of a beam with section area A, second moment of area I
/// and section modulus W: f2 / W and -f1 / A at end 1, -f4 / W and f3 / A at end 2. All zero where W is 0; failure 11
/// if A is 0 and W is not.
PlaneEndStress BeamPlaneStress(const PlaneMotion& motion, double E, double A, double I, double W, double L,
                               std::source_location where = std::source_location::current());

/// End stresses of a line element. The planes are those in which a beam deflects along its first and its second section
/// axis; a bar has none.
struct LineStress {
  double axial = 0;
  PlaneEndStress first, second;

  /// Equivalent stress at an end by von Mises, with the extremes of all parts added as if they met in one point:
  /// the root of (|axial| + |bending| + |bending|)^2 + 3 (shear^2 + shear^2).
  double Equivalent(int end) const;
};

}  // namespace velmor
