#pragma once

#include "base/table.hpp"
#include "elements/materials.hpp"

namespace velmor {

// Types 9 and 10: plate of a rectangle with half sides a, b by assumed moments. The moments have nine parameters beta
// and are in equilibrium inside the element; x, y count from its centre:
//
//     Mx  = beta1 + beta2 x + beta3 y + beta4 x y
//     My  = beta5 + beta6 x + beta7 y + beta8 x y
//     Mxy = -beta9
//     Qx  = beta2 + beta4 y,  Qy = beta7 + beta8 x
//
// Source: Pian, Derivation of Element Stiffness Matrices by Assumed Stress Distributions, AIAA Journal 2, 1964; Pian,
// Tong, Basis of finite element methods for solid continua, Int. J. Num. Meth. Eng. 1, 1969.

/// Which flexibility the moments meet.
enum class HybridShear { None, Included };  // type 9: bending alone; type 10: with transverse shear

/// The two matrices that the stiffness K = L inverse(H) L' and the stresses are made of. beta = inverse(H) L' q, with
/// q the twelve local freedoms: for node i at 3i - 2 to 3i the deflection w along the normal and the rotations about
/// the first and the second in-plane axis (dw/dy and -dw/dx in a rigid tilt).
struct HybridPlate {
  Table<9, 9> inverseH;  // of the flexibility: beta' H beta is twice the complementary energy
  Table<12, 9> L;        // work of the moment field on the boundary: rows freedoms, columns parameters
};

/// Thickness is field 4. Failure 11 if E or the thickness is 0.
HybridPlate HybridPlateOf(const Material& material, double a, double b, HybridShear shear);

/// K, order 12, both triangles.
Table<12, 12> HybridPlateStiffness(const HybridPlate& plate);

}  // namespace velmor
