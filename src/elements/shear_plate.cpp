#include "elements/shear_plate.hpp"

#include "base/failure.hpp"
#include "model/element_geometry.hpp"

namespace velmor {

Table<12, 12> ShearPlateStiffness(const Material& material, double a, double b) {
  const double nu = material.nu, mu = (1 - nu) / 2;
  const double D = PlateRigidity(material) * a * b / 16;
  const double S = ShearModulus(material) * material.A * 4 * a * b / 16;
  const double k = 1.3 * 1.3 / 3;  // 1 in place of 1.3 gives the exact integral of the gradient products
  Table<12, 12> K;
  for (int i = 1; i <= 4; ++i) {
    const double si = CornerS[i], ti = CornerT[i];
    const int w = 3 * i - 2, t1 = 3 * i - 1, t2 = 3 * i;
    for (int j = 1; j <= 4; ++j) {
      const double sj = CornerS[j], tj = CornerT[j];
      const int wj = 3 * j - 2, t1j = 3 * j - 1, t2j = 3 * j;
      const double ss = 4 / (a * a) * si * sj * (1 + ti * tj / 3), tt = 4 / (b * b) * ti * tj * (1 + si * sj / 3);
      K(w, wj) = S * (si * sj * (1 + k * ti * tj) / (a * a) + ti * tj * (1 + k * si * sj) / (b * b));
      K(t1, t1j) = D * (ss * mu + tt) + S;
      K(t2, t2j) = D * (ss + tt * mu) + S;
      K(t1, t2j) = K(t2j, t1) = -D * 4 / (a * b) * (nu * ti * sj + mu * si * tj);
      K(w, t1j) = K(t1j, w) = -S * ti / b;
      K(w, t2j) = K(t2j, w) = S * si / a;
    }
  }
  return K;
}

}  // namespace velmor
