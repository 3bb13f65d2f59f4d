#pragma once

#include "base/table.hpp"

namespace velmor {

/// The share of row e of a symmetric upper band K in product = K u, for all load cases (u(c, e), c from 1). An entry
/// serves its own row and, by symmetry, its mirror image. `row` is BandMatrix::Row of it; nothing is read beyond its
/// height. u and product have the same bounds; the product of all rows in ascending order begins with zeros.
void MultiplyRow(const double* row, int e, const Grid& u, Grid& product);

}  // namespace velmor
