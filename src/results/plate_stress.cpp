#include "results/plate_stress.hpp"

#include "base/failure.hpp"
#include "elements/polynomial_plate.hpp"
#include "elements/table_plate.hpp"
#include "results/membrane_stress.hpp"

namespace velmor {

Row<double, 12> DeflectionTerms(const Table<12, 12>& T, const Row<double, 12>& g) {
  Row<double, 12> terms;
  for (int k = 1; k <= 12; ++k) {
    for (int j = 1; j <= 12; ++j) terms(k) += T(k, j) * g(j);
  }
  return terms;
}

Table<12, 12> PlateTableCoefficients(const Table<12, 12>& P, double a, double b) {
  Table<12, 12> T;
  for (int j = 1; j <= 12; ++j) {
    const double scale = PlateTableScale(j, a, b) / 8;
    for (int k = 1; k <= 12; ++k) T(k, j) = P(k, j) * scale;
  }
  return T;
}

BendingStress DeflectionStress(const Material& material, const MappingTerms& map, double xi, double eta,
                               const Row<double, 12>& terms) {
  const CurvatureRows rows = PolynomialCurvatureRows(map, xi, eta);
  const auto curvature = [&](int r) {
    double sum = 0;
    for (int k = 4; k <= 12; ++k) sum += rows.Q(r, k) * terms(k);  // the first three terms have no curvature
    return sum;
  };
  const double z = material.A / 2;
  const PlaneStressState stress = StressOf({-z * curvature(1), -z * curvature(2), 0}, material, PlaneState::Stress);
  return {stress.x, stress.y};
}

Row<double, 9> MomentParameters(const HybridPlate& plate, const Row<double, 12>& g) {
  Row<double, 9> work, beta;
  for (int i = 1; i <= 12; ++i) {
    for (int k = 1; k <= 9; ++k) work(k) += plate.L(i, k) * g(i);
  }
  for (int k = 1; k <= 9; ++k) {
    for (int l = 1; l <= 9; ++l) beta(k) += plate.inverseH(k, l) * work(l);
  }
  return beta;
}

BendingStress MomentStress(double thickness, double a, double b, double xi, double eta, const Row<double, 9>& beta) {
  const double x = a * xi, y = b * eta;
  const double m = Divide(12, thickness * thickness * thickness) * thickness / 2;
  return {m * (beta(1) + beta(2) * x + beta(3) * y + beta(4) * (x * y)),
          m * (beta(5) + beta(6) * x + beta(7) * y + beta(8) * (x * y))};
}

}  // namespace velmor
