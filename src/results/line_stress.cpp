#include "results/line_stress.hpp"

#include <cmath>

#include "base/failure.hpp"
#include "elements/line_elements.hpp"

namespace velmor {

double AxialStress(double E, double elongation, double L, std::source_location where) {
  return Divide(E * elongation, L, where);
}

PlaneEndStress BeamPlaneStress(const PlaneMotion& motion, double E, double A, double I, double W, double L,
                               std::source_location where) {
  PlaneEndStress stress;
  if (W == 0) return stress;
  Table<12, 12> K;
  SetBendingMatrix(E, I, L, K);
  const auto force = [&](int k) {
    return K(k, 1) * motion.v1 + K(k, 2) * motion.r1 + K(k, 3) * motion.v2 + K(k, 4) * motion.r2;
  };
  stress.bending(1) = force(2) / W;
  stress.shear(1) = Divide(-force(1), A, where);
  stress.bending(2) = -force(4) / W;
  stress.shear(2) = Divide(force(3), A, where);
  return stress;
}

double LineStress::Equivalent(int end) const {
  const double normal = std::abs(axial) + std::abs(first.bending(end)) + std::abs(second.bending(end));
  const double q1 = first.shear(end), q2 = second.shear(end);
  return std::sqrt(normal * normal + 3 * (q1 * q1) + 3 * (q2 * q2));
}

}  // namespace velmor
