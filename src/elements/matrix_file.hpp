#pragma once

#include <cstdint>
#include <source_location>
#include <string>
#include <vector>

#include "base/file_system.hpp"
#include "elements/band_matrix.hpp"

namespace velmor {

// NAME.MAT: a whole band, column 0 included, as little-endian doubles with the row index running fastest: K(e, d)
// stands at byte 8 (d (EquationBound + 1) + e). Columns without an entry, most of them in a plate, are holes of the
// file: they read as zeros, and neither memory nor disk holds them.

/// Bytes of NAME.MAT for a band of these bounds: 8 (EquationBound + 1) (BandBound + 1).
std::int64_t MatrixFileSize(int equationBound, int bandBound);

/// Writes a band whose entries have all come by Add or from such a file. An older file is replaced. Failure 57 or 75.
void SaveMatrix(const BandMatrix& K, const std::string& path);

/// NAME.MAT opened for reading, for bands of the given bounds. No row may be higher than BandInput or reach beyond
/// `equations`, since the users of the band rely on that. Failure 53 if the file is missing, 62 if it is too short, 9
/// if it belongs to a band of other bounds or holds an impossible height or an entry beyond one.
class MatrixReader {
 public:
  MatrixReader(const std::string& path, int equationBound, int bandBound, int equations, int BandInput,
               std::source_location where = std::source_location::current());

  /// Reads rows first..last to the rows 0, 1, ... of `window`. Columns that are holes of the file are passed over: the
  /// window has the reader's BandBound and is new, or has been filled by this reader before.
  void ReadRows(int first, int last, BandMatrix& window);

 private:
  struct Strip {
    int first, columns;
  };
  std::int64_t Place(int e, int d) const { return 8 * (std::int64_t{d} * (equationBound_ + 1) + e); }
  void CheckHeights(int equations, int BandInput, std::source_location where) const;
  void FindStrips();

  InputFile file_;
  int equationBound_, bandBound_;
  std::vector<double> heights_;  // column 0
  std::vector<Strip> strips_;    // the columns that are no holes
  std::vector<double> turned_;
};

/// Reads NAME.MAT into a new band of its bounds. Failures of MatrixReader.
void LoadMatrix(BandMatrix& K, const std::string& path, int equations, int BandInput,
                std::source_location where = std::source_location::current());

}  // namespace velmor
