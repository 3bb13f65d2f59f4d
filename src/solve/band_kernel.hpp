#pragma once

#include <cstddef>

namespace velmor {

/// A pivot row that reaches a tile of rows.
struct Pivot {
  const double* row;  // row[j] is its entry in column j
  int equation;
  int end;    // last column in use
  int limit;  // first column beyond its place in memory
};

/// What the kernels work on: plain pointers, since they are compiled for processors of their own (see
/// band_kernel_tiles.hpp). Equations and columns count from 1, load cases from 0.
struct BandWork {
  double* const* rows;  // entry (e, j) at rows[e][j], the height of row e at column e - 1; 1..equations + 16
  int width;            // columns that a row has room for, from the diagonal on
  int equations;

  double* loads;  // of load case c and equation e at loads[c * loadStep + e]
  std::ptrdiff_t loadStep;
  int loadCases;

  // Work space of the elimination, zero at the start.
  double* reciprocal;   // 1 / pivot of the rows done; 0..equations
  double* end;          // last column in use of each row, any fraction beside it; 1..equations + 8
  Pivot* pivots;        // width
  double* multipliers;  // 8 width

  // The same for blocks of rows, null if the rows go tile by tile.
  static constexpr int BlockRows = 96;  // and as many pivots at a time
  Pivot* groupPivots;                   // BlockRows for each tile
  double* groupMultipliers;             // BlockRows squared
  double* strip;                        // BlockRows by 24

  // Work space of the back substitution.
  double* window;  // the last unknowns: 2 windowRows by 8 per eight load cases
  int windowRows;  // width + 8: as many as eight rows reach
};

/// The inner routines of the band solver for one kind of processor. What they do beyond the plain loops, and why, is
/// told in band_kernel_tiles.hpp.
struct BandKernel {
  int wideBand;  // from this width on, blocks of rows are faster than single tiles
  /// Eliminates rows first..last, at most BlockRows, given that the rows before are done; first - 1 is a multiple of 8.
  /// Returns 0 or the first equation with a bad pivot, as EliminateBand tells.
  int (*eliminate)(const BandWork& work, int first, int last);
  /// Solves for unknowns first..last, given that those after are done. Rows go in eights from the last one up.
  void (*backSubstitute)(const BandWork& work, int first, int last);
};

extern const BandKernel Avx2Kernel;    // needs AVX2 and FMA
extern const BandKernel Avx512Kernel;  // needs AVX-512F

}  // namespace velmor
