#include "solve/band_solver.hpp"

#include <algorithm>
#include <cmath>

namespace velmor {
namespace {

bool IsPivot(double entry) { return entry != 0 && !std::isnan(entry); }

/// Takes f times pivot row i, from column j on, off row j = i + d, and lengthens row j to the end of row i.
void ReduceRow(BandMatrix& K, int i, int d, int height, double f) {
  const double* const pivotRow = K.Row(i);
  double* const row = K.Row(i + d);
  for (int m = d + 1; m <= height; ++m) {
    if (pivotRow[m] != 0) row[m - d] -= f * pivotRow[m];
  }
  row[0] = std::max(row[0], static_cast<double>(height - d));
}

}  // namespace

int EliminateBand(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress) {
  const int loadCases = LoadTable.Rows();
  for (int i = 1; i < equations; ++i) {
    progress(i);
    if (!IsPivot(K(i, 1))) return i;
    const double p = 1 / K(i, 1);
    const int height = K.Height(i);
    for (int d = 1; d < height; ++d) {
      const double entry = K(i, d + 1);
      if (entry == 0) continue;
      const double f = p * entry;
      ReduceRow(K, i, d, height, f);
      for (int c = 1; c <= loadCases; ++c) {
        if (LoadTable(c, i) != 0) LoadTable(c, i + d) -= f * LoadTable(c, i);
      }
    }
  }
  return equations > 0 && !IsPivot(K(equations, 1)) ? equations : 0;
}

void BackSubstitute(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput, const RowProgress& progress) {
  const int loadCases = LoadTable.Rows();
  for (int e = equations; e >= 1; --e) {
    progress(equations + 1 - e);
    const int lowest = std::max(1, e - (BandInput - 1));
    for (int c = 1; c <= loadCases; ++c) {
      if (LoadTable(c, e) == 0) continue;
      const double u = LoadTable(c, e) /= K(e, 1);
      for (int r = e - 1; r >= lowest; --r) LoadTable(c, r) -= K(r, e + 1 - r) * u;
    }
  }
}

}  // namespace velmor
