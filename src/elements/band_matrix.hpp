#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "base/memory.hpp"

namespace velmor {

/// The upper band of the symmetric stiffness matrix, one row per equation, bounds 0..EquationBound by
/// 0..BandBound:
///
///     K(e, d)   d from 1: entry of row e and column e + d - 1; d = 1 is the diagonal
///     K(e, 0)   height of row e: the largest d that has received an addition, as a number
///
/// Rows hold zeros beyond their height; row 0 holds nothing. One block of memory, a row contiguous. The entries of one
/// matrix column lie on the same place within a cache line in every row, and an odd number of lines apart, so that they
/// spread over all sets of a cache; columns 1, 9, 17, ... begin a line.
class BandMatrix {
 public:
  BandMatrix() = default;
  /// All zero. Failure 7 (Cause::BandMemory) if there is no memory for it; nothing is touched then.
  BandMatrix(int equationBound, int bandBound);

  double& operator()(int e, int d) { return block_.Data()[At(e, d)]; }
  double operator()(int e, int d) const { return block_.Data()[At(e, d)]; }
  /// The row of equation e: Row(e)[d] is K(e, d).
  double* Row(int e) { return &(*this)(e, 0); }
  const double* Row(int e) const { return block_.Data() + At(e, 0); }
  int Height(int e) const { return static_cast<int>((*this)(e, 0)); }

  /// Adds to an entry and raises the height of its row, also where the value is zero. Returns the entry.
  double Add(int e, int d, double value) {
    double* const row = Row(e);
    row[0] = std::max(row[0], static_cast<double>(d));
    if (value != 0) isFilled_[static_cast<std::size_t>(d)] = true;
    return row[d] += value;
  }
  /// For entries that came otherwise, as from a file.
  void CountAsFilled(int d, int columns) { std::fill_n(isFilled_.begin() + d, columns, true); }
  /// False for a column to which Add has brought nothing but zeros. Column 0 counts as filled.
  bool IsFilled(int d) const { return d == 0 || isFilled_[static_cast<std::size_t>(d)] != 0; }

  int EquationBound() const { return equationBound_; }
  int BandBound() const { return bandBound_; }
  bool IsThere() const { return equationBound_ >= 0; }

 private:
  static constexpr std::size_t FirstPlace = 6;  // of K(0, 0) in the block: K(1, 1) then begins a cache line
  std::size_t At(int e, int d) const {
    assert(0 <= e && e <= equationBound_ && 0 <= d && d <= bandBound_);
    return FirstPlace + static_cast<std::size_t>(e) * stride_ + static_cast<std::size_t>(d);
  }
  int equationBound_ = -1;
  int bandBound_ = -1;
  std::size_t stride_ = 0;  // an odd number of cache lines and one number, since a row begins a column further right
  ZeroedBlock block_;
  std::vector<unsigned char> isFilled_;  // by column
};

}  // namespace velmor
