#include "elements/hybrid_plate.hpp"

#include "base/failure.hpp"
#include "elements/small_matrix.hpp"

namespace velmor {
namespace {

/// H: twice the complementary energy of bending, 12 / (E t^3) (Mx^2 + My^2 - 2 nu Mx My + 2 (1 + nu) Mxy^2), and for
/// a thick plate of shear, 12/10 / (G t) (Qx^2 + Qy^2), over the rectangle.
Table<9, 9> Flexibility(const Material& m, double a, double b, HybridShear shear) {
  const double t = m.A, EbyG = Divide(m.E, ShearModulus(m));
  const double area = Divide(4 * a * b, m.E);
  const double c = Divide(area * 12, t * t * t);
  Table<9, 9> H;
  const double squares[] = {1, a * a / 3, b * b / 3, a * a * b * b / 9};  // mean squares of 1, x, y, xy
  for (int k = 1; k <= 4; ++k) {
    const double term = squares[k - 1] * c;
    H(k, k) = H(k + 4, k + 4) = term;
    H(k, k + 4) = H(k + 4, k) = -m.nu * term;
  }
  H(9, 9) = c * EbyG;
  if (shear == HybridShear::None) return H;
  const double s = Divide(area * 12, t) / 10 * EbyG;
  H(2, 2) += s;
  H(4, 4) += b * b / 3 * s;
  H(7, 7) += s;
  H(8, 8) += a * a / 3 * s;
  return H;
}

/// L: the work of each moment parameter on the boundary under each freedom. Along a side w runs cubically and the
/// normal slope linearly between its two nodes; the 2 of beta9 is the corner force of the twisting moment.
Table<12, 9> BoundaryWork(double a, double b) {
  const double a2 = a * a, b2 = b * b, a3 = a2 * a, b3 = b2 * b, ab = a * b;
  const double rows[12][9] = {
      {0, -b, 0, 2 * b2 / 5, 0, 0, -a, 2 * a2 / 5, 2},
      {0, -b2 / 3, 0, b3 / 15, a, -a2 / 3, -ab, a2 * b / 3, 0},
      {-b, ab, b2 / 3, -a * b2 / 3, 0, 0, a2 / 3, -a3 / 15, 0},
      {0, b, 0, -2 * b2 / 5, 0, 0, -a, -2 * a2 / 5, -2},
      {0, b2 / 3, 0, -b3 / 15, a, a2 / 3, -ab, -a2 * b / 3, 0},
      {b, ab, -b2 / 3, -a * b2 / 3, 0, 0, -a2 / 3, -a3 / 15, 0},
      {0, b, 0, 2 * b2 / 5, 0, 0, a, 2 * a2 / 5, 2},
      {0, -b2 / 3, 0, -b3 / 15, -a, -a2 / 3, -ab, -a2 * b / 3, 0},
      {b, ab, b2 / 3, a * b2 / 3, 0, 0, a2 / 3, a3 / 15, 0},
      {0, -b, 0, -2 * b2 / 5, 0, 0, a, -2 * a2 / 5, -2},
      {0, b2 / 3, 0, b3 / 15, -a, a2 / 3, -ab, a2 * b / 3, 0},
      {-b, ab, -b2 / 3, a * b2 / 3, 0, 0, -a2 / 3, a3 / 15, 0},
  };
  Table<12, 9> L;
  for (int i = 1; i <= 12; ++i) {
    for (int k = 1; k <= 9; ++k) L(i, k) = rows[i - 1][k - 1];
  }
  return L;
}

}  // namespace

HybridPlate HybridPlateOf(const Material& material, double a, double b, HybridShear shear) {
  HybridPlate plate;
  Table<9, 9> H = Flexibility(material, a, b, shear);
  InvertMatrix(9, H, plate.inverseH);
  plate.L = BoundaryWork(a, b);
  return plate;
}

Table<12, 12> HybridPlateStiffness(const HybridPlate& plate) {
  Table<12, 12> K;
  TripleProduct(12, 9, plate.L, plate.inverseH, K);
  return K;
}

}  // namespace velmor
