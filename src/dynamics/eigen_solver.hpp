#pragma once

#include <source_location>
#include <vector>

#include "base/table.hpp"
#include "elements/band_matrix.hpp"

namespace velmor {

// Inverse vector iteration on an upper band, one mode at a time (Bathe, Finite Element Procedures, section 11.2).
// Vectors count from 1 to n; the band has n rows and `width` columns in use, diagonal included:
//
//     K(i, c)   row i, column i + c - 1,   c = 1..min(width, n + 1 - i)

/// A pivot below it stops the elimination, and an entry of a row up to it in size is no multiplier.
inline constexpr double PivotLimit = 1e-9;

/// Divides each row of K by the mass of its equation. Returns 0, or the first equation whose mass is zero.
int ScaleRowsByMass(BandMatrix& K, const Column& MassDiagonal, int n, int width);

/// Gaussian elimination of the band in place, without pivoting, the upper triangle taken as symmetric. Rows are not
/// divided by their pivots. Each entry receives its updates in ascending order of the pivot rows.
///
/// Returns 0, or the first equation whose pivot is below PivotLimit in size; the last pivot is not tested.
int FactorBand(BandMatrix& K, int n, int width);

/// Turns the right-hand side x into the solution, with the factor that FactorBand left in K. The steps and their order
/// are those of an elimination that carries x along, so that a solution with a factor that is kept has the same bits as
/// one with a matrix that is eliminated anew. Failure 11 for a last pivot of zero.
void SolveFactored(const BandMatrix& K, Column& x, int n, int width,
                   std::source_location where = std::source_location::current());

/// Takes the components along the stored modes out of x (Gram-Schmidt, all of them from x as it stood). The products
/// are plain Euclidean ones, without the masses.
void Deflate(Column& x, const std::vector<Column>& modes, int n);

/// Divides x by its component of largest size, the first of several, and returns that component with its sign.
/// Failure 11 if x is zero.
double NormaliseByLargest(Column& x, int n, std::source_location where = std::source_location::current());

/// Divides x by its Euclidean length; failure 11 if x is zero.
void NormaliseByLength(Column& x, int n, std::source_location where = std::source_location::current());

/// The largest component of the iterate over the last three passes; it approaches 1 / omega^2. The values are carried
/// from mode to mode.
struct IterationHistory {
  double L0 = 0, L1 = 0, L2 = 0;  // newest first

  /// Takes the value of a pass and tells whether the iteration has converged, by Aitken's delta-squared correction
  /// (L0 - L1)^2 / D, D = L0 - 2 L1 + L2 (Wilkinson, The Algebraic Eigenvalue Problem, chapter 9), against 1e-9 L2, or
  /// because the value of two passes ago came back. Never where D is zero.
  bool Converges(double newest);
};

/// Period 2 pi sqrt(|L|) with the sign of L = 1 / omega^2; failure 11 if L is 0.
double PeriodOf(double L, double pi, std::source_location where = std::source_location::current());

}  // namespace velmor
