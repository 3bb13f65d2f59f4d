#include "results/membrane_stress.hpp"

#include "base/failure.hpp"
#include "elements/membrane_quad.hpp"

namespace velmor {

PlaneState PlaneStateOf(const Material& material) {
  return material.planeStrain == 1 ? PlaneState::Strain : PlaneState::Stress;
}

PlaneStressState StressOf(const Strain& strain, const Material& material, PlaneState state) {
  const double E = material.E, nu = material.nu;
  if (state == PlaneState::Strain) {
    const double f = Divide(E, (1 + nu) * (1 - 2 * nu));
    return {f * ((1 - nu) * strain.x + nu * strain.y), f * (nu * strain.x + (1 - nu) * strain.y),
            f * (1 - 2 * nu) / 2 * strain.xy};
  }
  const double f = Divide(E, 1 - nu * nu);
  return {f * (strain.x + nu * strain.y), f * (nu * strain.x + strain.y), f * (1 - nu) / 2 * strain.xy};
}

Strain TriangleStrain(const TriangleSlopes& slopes, double area, const Row<double, 6>& g) {
  const double f = Divide(1, 2 * area);
  Strain strain;
  for (int i = 1; i <= 3; ++i) {
    const double u = g(2 * i - 1), v = g(2 * i);
    strain.x += f * slopes.b(i) * u;
    strain.y += f * slopes.c(i) * v;
    strain.xy += f * (slopes.c(i) * u + slopes.b(i) * v);
  }
  return strain;
}

Strain QuadrilateralStrain(const MappingTerms& map, double xi, double eta, const Row<double, 8>& g) {
  const MembraneRows rows = MembraneStrainRows(map, xi, eta);
  const auto row = [&](int r) {
    double sum = 0;
    for (int j = 1; j <= 8; ++j) sum += rows.B(r, j) * g(j);
    return sum;
  };
  return {row(1), row(2), row(3)};
}

MappingTerms RectangleMap(const MappingTerms& map) { return {.a1 = map.a1, .b2 = map.b2}; }

PlaneStressState IncompatibleStress(const Material& material, double a, double b, double xi, double eta,
                                    const Row<double, 8>& g) {
  const Strain mean = QuadrilateralStrain({.a1 = a, .b2 = b}, 0, 0, g);
  PlaneStressState stress = StressOf(mean, material, PlaneState::Stress);
  const double u = (g(1) - g(3) + g(5) - g(7)) / 4, v = (g(2) - g(4) + g(6) - g(8)) / 4;
  stress.x += material.E * u * eta / a;
  stress.y += material.E * v * xi / b;
  return stress;
}

}  // namespace velmor
