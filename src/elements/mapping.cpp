#include "elements/mapping.hpp"

#include "base/failure.hpp"

namespace velmor {

Jacobian JacobianAt(const MappingTerms& map, double xi, double eta) {
  Jacobian J;
  J.J11 = map.a1 + map.a3 * eta;
  J.J12 = map.b1 + map.b3 * eta;
  J.J21 = map.a2 + map.a3 * xi;
  J.J22 = map.b2 + map.b3 * xi;
  J.det = J.J11 * J.J22 - J.J12 * J.J21;
  return J;
}

NaturalSlopes NaturalSlopesOf(const Jacobian& J, std::source_location where) {
  return {Divide(J.J22, J.det, where), Divide(-J.J12, J.det, where), Divide(-J.J21, J.det, where),
          Divide(J.J11, J.det, where)};
}

}  // namespace velmor
