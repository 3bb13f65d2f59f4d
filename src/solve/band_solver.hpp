#pragma once

#include <functional>

#include "base/table.hpp"
#include "elements/band_matrix.hpp"

namespace velmor {

/// Called once per row with the number of rows done, for the display.
using RowProgress = std::function<void(int rowsDone)>;

/// Gaussian elimination of the upper band K in place, without pivoting, together with the right-hand sides of all
/// load cases (LoadTable(c, e), c from 1). `equations` rows are in use. A row is worked on up to its height K(e, 0),
/// which rises where fill-in makes the row longer; zero multipliers and zero loads are skipped. Rows are not divided
/// by their pivots. Each entry receives its updates in ascending order of the pivot rows.
///
/// Returns 0, or the number of the first equation whose pivot is zero or not a number; the last one counts too.
int EliminateBand(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress);

/// Turns the reduced loads into the solution, with the factor that EliminateBand left in K: column by column from the
/// last equation up, within the half bandwidth BandInput.
void BackSubstitute(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput, const RowProgress& progress);

}  // namespace velmor
