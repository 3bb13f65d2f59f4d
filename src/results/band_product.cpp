#include "results/band_product.hpp"

#include <algorithm>

namespace velmor {

void MultiplyBand(const BandMatrix& K, const double* u, double* product, int equations, const RowProgress& progress) {
  std::fill(product + 1, product + equations + 1, 0.0);
  for (int e = 1; e <= equations; ++e) {
    progress(e);
    const double* const row = K.Row(e);
    const int height = K.Height(e);
    double sum = product[e] + row[1] * u[e];  // rows above have added their share of the lower triangle
    for (int d = 2; d <= height; ++d) {
      sum += row[d] * u[e + d - 1];
      product[e + d - 1] += row[d] * u[e];
    }
    product[e] = sum;
  }
}

}  // namespace velmor
