#pragma once

#include <functional>

#include "base/table.hpp"
#include "elements/band_matrix.hpp"

namespace velmor {

/// Called now and then with the number of rows done, at the end with all of them (in the elimination all but the last,
/// which takes no step), for the display.
using RowProgress = std::function<void(int rowsDone)>;

/// The vector instructions that the solver's inner loops use. The results are the same with each of them, bit for bit,
/// as EliminateBand tells.
enum class Instructions { Plain, Avx2, Avx512 };

/// Whether this processor (and this build) has them.
bool Has(Instructions instructions);
/// The fastest that this processor has.
Instructions Fastest();

/// Gaussian elimination of the upper band K in place, without pivoting, together with the right-hand sides of all
/// load cases (LoadTable(c, e), c from 1). `equations` rows are in use. A row is worked on up to its height K(e, 0),
/// which rises where fill-in makes the row longer; zero multipliers are skipped. Rows are not divided by their pivots.
///
/// Each entry receives its updates one by one in ascending order of the pivot rows, each as one fused multiply-subtract
/// directly onto the entry. So the result is that of EliminateBandPlainly in every bit and depends on no block size and
/// no processor, as long as no number of any row overflows, and but for the sign of zeros where zeros with a minus sign
/// were given or an underflow left them.
///
/// Returns 0, or the number s of the first equation whose pivot is zero, too small for its reciprocal to be a number
/// (below 5.6e-309), or not a number; the last one counts too. Then
/// rows 1..s and their loads are reduced and hold what they hold in the plain elimination, row s with its bad pivot;
/// the rows and loads beyond s are of no use.
int EliminateBand(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress,
                  Instructions instructions = Fastest());

/// The same as the loop of the textbooks, row by row forward: what EliminateBand is measured by.
int EliminateBandPlainly(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress);

/// Turns the reduced loads of all load cases into the solution, with the factor that EliminateBand left in K, in one
/// sweep over the band from the last row up. Each unknown loses the share of the later ones in descending order, one
/// fused multiply-subtract each, and is then divided by its pivot. No row is read beyond its height.
void BackSubstitute(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput, const RowProgress& progress,
                    Instructions instructions = Fastest());

/// The same column by column: each unknown is taken off all rows above it within the half bandwidth BandInput.
void BackSubstitutePlainly(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput,
                           const RowProgress& progress);

}  // namespace velmor
