#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <source_location>
#include <string>

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
  /// Numbers from one row to the next.
  std::ptrdiff_t Stride() const { return static_cast<std::ptrdiff_t>(stride_); }
  int Height(int e) const { return static_cast<int>((*this)(e, 0)); }

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
};

/// Bytes of NAME.MAT for a band of these bounds: 8 (EquationBound + 1) (BandBound + 1).
std::int64_t MatrixFileSize(int equationBound, int bandBound);

/// Writes the whole band, column 0 included, as little-endian doubles with the row index running fastest: K(e, d)
/// stands at byte 8 (d (EquationBound + 1) + e). An older file is replaced. Failure 57 or 75.
void SaveMatrix(const BandMatrix& K, const std::string& path);

/// Reads NAME.MAT into a band allocated with the same bounds; no row may be higher than BandInput or reach
/// beyond `equations`, since the solver relies on that. Failure 53 if the file is missing, 62 if it is too
/// short, 9 if it belongs to a band of other bounds or holds an impossible height.
void LoadMatrix(BandMatrix& K, const std::string& path, int equations, int BandInput,
                std::source_location where = std::source_location::current());

}  // namespace velmor
