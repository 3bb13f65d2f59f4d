#include "elements/membrane_quad.hpp"

#include "base/failure.hpp"
#include "elements/mapping.hpp"
#include "elements/small_matrix.hpp"

namespace velmor {
namespace {

/// E t / ((1 - 2 nu) (1 + nu)), the factor of plane strain.
double PlaneStrainFactor(const Material& m) { return Divide(Divide(m.E * m.A, 1 - 2 * m.nu), 1 + m.nu); }

/// The twelve constants that the matrices of both rectangles are made of.
struct RectangleConstants {
  double p1, p2, p3, p4, p5, p6, p7, p8;  // first row of K
  double q2, q4, q6, q8;                  // v2 with v1 to v4
};

/// The upper triangle of K. The rectangle's symmetry about its two axes repeats the constants.
Table<12, 12> RectangleMatrix(const RectangleConstants& constants) {
  const auto& [p1, p2, p3, p4, p5, p6, p7, p8, q2, q4, q6, q8] = constants;
  const double rows[8][8] = {{p1, p2, p3, p4, p5, p6, p7, p8},  //
                             {0, q2, p8, q4, p6, q6, p4, q8},   //
                             {0, 0, p1, p6, p7, p4, p5, p2},    //
                             {0, 0, 0, q2, p8, q8, p2, q6},     //
                             {0, 0, 0, 0, p1, p2, p3, p4},      //
                             {0, 0, 0, 0, 0, q2, p8, q4},       //
                             {0, 0, 0, 0, 0, 0, p1, p6},        //
                             {0, 0, 0, 0, 0, 0, 0, q2}};
  Table<12, 12> K;
  for (int i = 1; i <= 8; ++i) {
    for (int j = i; j <= 8; ++j) K(i, j) = rows[i - 1][j - 1];
  }
  return K;
}

}  // namespace

Table<3, 3> MembraneElasticity(const Material& m) {
  const bool planeStrain = m.planeStrain != 0;
  const double f = planeStrain ? PlaneStrainFactor(m) : PlaneStressFactor(m);
  Table<3, 3> D;
  D(1, 1) = D(2, 2) = planeStrain ? (1 - m.nu) * f : f;
  D(1, 2) = D(2, 1) = f * m.nu;
  D(3, 3) = (planeStrain ? 1 - 2 * m.nu : 1 - m.nu) * f / 2;
  return D;
}

MembraneRows MembraneStrainRows(const MappingTerms& map, double xi, double eta) {
  const Jacobian J = JacobianAt(map, xi, eta);
  const NaturalSlopes slopes = NaturalSlopesOf(J);
  MembraneRows rows;
  rows.det = J.det;
  for (int i = 1; i <= 4; ++i) {
    const double s = CornerS[i], t = CornerT[i];
    const double byXi = (1 + t * eta) / 4 * s, byEta = (1 + s * xi) / 4 * t;
    const double byX = byXi * slopes.xix + byEta * slopes.etax, byY = byXi * slopes.xiy + byEta * slopes.etay;
    rows.B(1, 2 * i - 1) = rows.B(3, 2 * i) = byX;
    rows.B(2, 2 * i) = rows.B(3, 2 * i - 1) = byY;
  }
  return rows;
}

Table<12, 12> IsoparametricMembraneStiffness(const Material& material, const MappingTerms& map) {
  const Table<3, 3> D = MembraneElasticity(material);
  Table<12, 12> K;
  for (const double xi : {-GaussAbscissa, GaussAbscissa}) {
    for (const double eta : {-GaussAbscissa, GaussAbscissa}) {
      const MembraneRows rows = MembraneStrainRows(map, xi, eta);
      AddStrainEnergy(8, rows.B, D, rows.det, K);
    }
  }
  return K;
}

Table<12, 12> IncompatibleMembraneStiffness(const Material& material, double a, double b) {
  const double nu = material.nu, r = Divide(a, b), third = 1.0 / 3;
  const bool planeStrain = material.planeStrain != 0;
  const double c1 = planeStrain ? 1 - nu : Divide(1, 1 - nu * nu);
  const double c2 = planeStrain ? nu : Divide(nu, 1 - nu * nu);
  const double c5 = planeStrain ? (1 - 2 * nu) / 2 : Divide(1, 1 + nu) / 2;
  const double F = (planeStrain ? PlaneStrainFactor(material) : material.E * material.A) / 4;
  return RectangleMatrix({F * (c1 / r + third / r + r * c5), F * (c2 + c5), F * (-c1 / r - third / r + r * c5),
                          F * (c2 - c5), F * (-c1 / r + third / r - r * c5), F * (-c2 - c5),
                          F * (c1 / r - third / r - r * c5), F * (-c2 + c5),  //
                          F * (c1 * r + third * r + c5 / r), F * (c1 * r - third * r - c5 / r),
                          F * (-c1 * r + third * r - c5 / r), F * (-c1 * r - third * r + c5 / r)});
}

Table<12, 12> RectangleMembraneStiffness(const Material& material, double a, double b) {
  const double nu = material.nu, mu = 1 - nu, r = Divide(a, b);
  const double F = PlaneStressFactor(material) / 2 / 12;
  return RectangleMatrix({F * (8 / r + 4 * r * mu), F * (3 * nu + 3), F * (-8 / r + 2 * r * mu), F * (9 * nu - 3),
                          F * (-4 / r - 2 * r * mu), F * (-3 - 3 * nu), F * (4 / r - 4 * r * mu), F * (-9 * nu + 3),
                          F * (8 * r + 4 * mu / r), F * (4 * r - 4 * mu / r), F * (-4 * r - 2 * mu / r),
                          F * (-8 * r + 2 * mu / r)});
}

}  // namespace velmor
