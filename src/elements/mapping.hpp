#pragma once

#include <source_location>

#include "model/element_geometry.hpp"

namespace velmor {

/// Abscissa of the two-point Gauss rule in -1..1, the same ten digits wherever the system integrates; the weights
/// are 1.
inline constexpr double GaussAbscissa = 0.5773502691;

/// Derivatives of the bilinear map of a quadrilateral at a point (xi, eta) of the unit square, -1..1 by -1..1.
struct Jacobian {
  double J11 = 0;  // dx / dxi
  double J12 = 0;  // dy / dxi
  double J21 = 0;  // dx / deta
  double J22 = 0;  // dy / deta
  double det = 0;  // area of the element per area of the unit square; negative in a reversed corner
};
Jacobian JacobianAt(const MappingTerms& map, double xi, double eta);

/// Derivatives of the natural coordinates: xix is dxi / dx, and so on, so that df/dx = xix df/dxi + etax df/deta.
struct NaturalSlopes {
  double xix = 0, etax = 0, xiy = 0, etay = 0;
};
/// The inverse of J. Failure 11 if det is 0.
NaturalSlopes NaturalSlopesOf(const Jacobian& J, std::source_location where = std::source_location::current());

}  // namespace velmor
