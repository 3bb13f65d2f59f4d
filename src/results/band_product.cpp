#include "results/band_product.hpp"

namespace velmor {
namespace {

/// The share of one row: `entries` right of the diagonal times the unknowns below, and the mirror image of these
/// entries times the row's own unknown, added to the products below. Returns the sum of the first; it is taken in four
/// parts, as a single one would wait for each addition.
double AddRow(const double* __restrict row, int entries, double own, const double* __restrict below,
              double* __restrict products) {
  double part[4] = {};
  int d = 0;
  for (; d + 4 <= entries; d += 4) {
    for (int k = 0; k < 4; ++k) part[k] += row[d + k] * below[d + k];
    for (int k = 0; k < 4; ++k) products[d + k] += row[d + k] * own;
  }
  for (; d < entries; ++d) {
    part[0] += row[d] * below[d];
    products[d] += row[d] * own;
  }
  return part[0] + part[1] + (part[2] + part[3]);
}

}  // namespace

void MultiplyRow(const double* row, int e, const Grid& u, Grid& product) {
  const int height = static_cast<int>(row[0]);
  if (height == 0) return;
  for (int c = 1; c <= u.Rows(); ++c) {
    const double* const unknown = u.RowStart(c) + e;
    double* const sum = product.RowStart(c) + e;
    *sum += row[1] * *unknown + AddRow(row + 2, height - 1, *unknown, unknown + 1, sum + 1);
  }
}

}  // namespace velmor
