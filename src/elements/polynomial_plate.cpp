#include "elements/polynomial_plate.hpp"

#include "elements/mapping.hpp"
#include "elements/small_matrix.hpp"

namespace velmor {

Table<12, 3> UnitPlateShapes(int s, int t) {
  // The products of
  //     w         (1 + s xi) (1 + t eta) (2 + s xi + t eta - xi^2 - eta^2)
  //     dw/deta   t (1 + s xi) (1 + t eta)^2 (t eta - 1)
  //     dw/dxi    s (1 + s xi)^2 (1 + t eta) (s xi - 1)
  // multiplied out, with s^2 = t^2 = 1.
  const int st = s * t;
  const int rows[12][3] = {
      {2, -t, -s},       // 1
      {3 * s, -st, -1},  // xi
      {3 * t, -1, -st},  // eta
      {0, 0, s},         // xi^2
      {4 * st, -s, -t},  // xi eta
      {0, t, 0},         // eta^2
      {-s, 0, 1},        // xi^3
      {0, 0, st},        // xi^2 eta
      {0, st, 0},        // xi eta^2
      {-t, 1, 0},        // eta^3
      {-st, 0, t},       // xi^3 eta
      {-st, s, 0},       // xi eta^3
  };
  Table<12, 3> shapes;
  for (int k = 1; k <= 12; ++k) {
    for (int j = 1; j <= 3; ++j) shapes(k, j) = rows[k - 1][j - 1];
  }
  return shapes;
}

Table<12, 12> PolynomialCoefficients(const MappingTerms& map) {
  Table<12, 12> T;
  for (int i = 1; i <= 4; ++i) {
    const int s = CornerS[i], t = CornerT[i];
    const Jacobian J = JacobianAt(map, s, t);
    if (J.det == 0) throw Failure(error::DivisionByZero, "the map of a quadrilateral has no area at a node");
    const Table<12, 3> unit = UnitPlateShapes(s, t);
    // dw/deta = J21 dw/dx + J22 dw/dy and dw/dxi = J11 dw/dx + J12 dw/dy
    for (int k = 1; k <= 12; ++k) {
      T(k, 3 * i - 2) = unit(k, 1) / 8;
      T(k, 3 * i - 1) = (unit(k, 2) * J.J22 + unit(k, 3) * J.J12) / 8;
      T(k, 3 * i) = (unit(k, 2) * J.J21 + unit(k, 3) * J.J11) / 8;
    }
  }
  return T;
}

CurvatureRows PolynomialCurvatureRows(const MappingTerms& map, double xi, double eta) {
  const Jacobian J = JacobianAt(map, xi, eta);
  const auto [xix, etax, xiy, etay] = NaturalSlopesOf(J);
  // Factors of d2/dxi2, d2/deta2 and d2/dxideta in each row.
  const double factors[3][3] = {{xix * xix, etax * etax, 2 * xix * etax},
                                {xiy * xiy, etay * etay, 2 * xiy * etay},
                                {2 * xix * xiy, 2 * etax * etay, 2 * (xix * etay + xiy * etax)}};
  CurvatureRows rows;
  rows.det = J.det;
  auto& Q = rows.Q;
  for (int r = 1; r <= 3; ++r) {
    const auto& [c1, c2, c3] = factors[r - 1];
    Q(r, 4) = 2 * c1;
    Q(r, 5) = c3;
    Q(r, 6) = 2 * c2;
    Q(r, 7) = 6 * xi * c1;
    Q(r, 8) = 2 * eta * c1 + 2 * xi * c3;
    Q(r, 9) = 2 * xi * c2 + 2 * eta * c3;
    Q(r, 10) = 6 * eta * c2;
    Q(r, 11) = 3 * xi * xi * c3 + 6 * xi * eta * c1;
    Q(r, 12) = 3 * eta * eta * c3 + 6 * xi * eta * c2;
  }
  return rows;
}

Table<12, 12> PolynomialPlateStiffness(const Material& material, const MappingTerms& map) {
  const double D = PlateRigidity(material);
  Table<3, 3> elasticity;
  elasticity(1, 1) = elasticity(2, 2) = D;
  elasticity(1, 2) = elasticity(2, 1) = D * material.nu;
  elasticity(3, 3) = (1 - material.nu) * D / 2;

  const Table<12, 12> T = PolynomialCoefficients(map);
  Table<12, 12> K;
  for (const double xi : {-GaussAbscissa, GaussAbscissa}) {
    for (const double eta : {-GaussAbscissa, GaussAbscissa}) {
      const CurvatureRows rows = PolynomialCurvatureRows(map, xi, eta);
      Table<3, 12> B;
      for (int r = 1; r <= 3; ++r) {
        for (int k = 4; k <= 12; ++k) {  // the first three terms have no curvature
          for (int j = 1; j <= 12; ++j) B(r, j) += rows.Q(r, k) * T(k, j);
        }
      }
      AddStrainEnergy(12, B, elasticity, rows.det, K);
    }
  }
  return K;
}

}  // namespace velmor
