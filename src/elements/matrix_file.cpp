#include "elements/matrix_file.hpp"

#include <algorithm>
#include <bit>

#include "base/failure.hpp"

namespace velmor {
namespace {

static_assert(std::endian::native == std::endian::little, "NAME.MAT holds little-endian doubles");

/// So many columns are turned at a time: as many entries as a cache line of the band holds.
constexpr int StripWidth = 8;

/// Rows of a strip that are read and turned at a time, so that they stay in the cache in between.
constexpr int RowsAtOnce = 8192;

/// turned[c * rows + e] = K(e, first + c).
void TurnToColumns(const BandMatrix& K, int first, int columns, double* turned) {
  const std::size_t rows = static_cast<std::size_t>(K.EquationBound()) + 1;
  const auto turn = [&](auto width) {
    for (std::size_t e = 0; e < rows; ++e) {
      const double* const row = K.Row(static_cast<int>(e)) + first;
      for (std::size_t c = 0; c < width; ++c) turned[c * rows + e] = row[c];
    }
  };
  if (columns == StripWidth) return turn(std::integral_constant<std::size_t, StripWidth>());
  turn(static_cast<std::size_t>(columns));
}

/// K(row + e, first + c) = turned[c * RowsAtOnce + e].
void TurnToRows(const double* turned, int rows, int columns, BandMatrix& K, int row, int first) {
  const auto turn = [&](auto width) {
    for (int e = 0; e < rows; ++e) {
      double* const to = K.Row(row + e) + first;
      for (int c = 0; c < width; ++c) to[c] = turned[c * RowsAtOnce + e];
    }
  };
  if (columns == StripWidth) return turn(std::integral_constant<int, StripWidth>());
  turn(columns);
}

/// The first of the turned rows with an entry beyond its height, or -1.
int RowBeyondHeight(const double* turned, const double* heights, int rows, int columns, int first) {
  for (int e = 0; e < rows; ++e) {
    for (int c = columns - 1; first + c > heights[e] && c >= 0; --c) {
      if (turned[c * RowsAtOnce + e] != 0) return e;
    }
  }
  return -1;
}

}  // namespace

std::int64_t MatrixFileSize(int equationBound, int bandBound) {
  return 8 * (std::int64_t{equationBound} + 1) * (std::int64_t{bandBound} + 1);
}

void SaveMatrix(const BandMatrix& K, const std::string& path) {
  OutputFile file(path);
  file.RemoveOlder();
  const std::size_t rows = static_cast<std::size_t>(K.EquationBound()) + 1;
  const int columnsEnd = K.BandBound() + 1;
  std::vector<double> turned(rows * StripWidth);
  for (int first = 0, end = 0; first < columnsEnd; first = end) {
    const auto bytes = [&] { return sizeof(double) * rows * static_cast<std::size_t>(end - first); };
    while (end < columnsEnd && !K.IsFilled(end)) ++end;
    if (end > first) {
      file.Skip(bytes());
      continue;
    }
    while (end < std::min(first + StripWidth, columnsEnd) && K.IsFilled(end)) ++end;
    TurnToColumns(K, first, end - first, turned.data());
    file.Write(turned.data(), bytes());
  }
  file.Close();
}

MatrixReader::MatrixReader(const std::string& path, int equationBound, int bandBound, int equations, int BandInput,
                           std::source_location where)
    : file_(path, where),
      equationBound_(equationBound),
      bandBound_(bandBound),
      heights_(static_cast<std::size_t>(equationBound) + 1),
      turned_(std::size_t{StripWidth} * RowsAtOnce) {
  const std::int64_t size = MatrixFileSize(equationBound, bandBound);
  if (file_.Size() < size) throw Failure(error::InputPastEnd, path + ": the matrix is cut short", where);
  if (file_.Size() > size) throw Failure(error::SubscriptOutOfRange, path + " belongs to another model", where);
  file_.ReadAt(0, heights_.data(), sizeof(double) * heights_.size());
  CheckHeights(equations, BandInput, where);
  FindStrips();
}

void MatrixReader::CheckHeights(int equations, int BandInput, std::source_location where) const {
  for (int e = 1; e <= equationBound_; ++e) {
    const double height = heights_[static_cast<std::size_t>(e)];
    const int highest = std::max(0, std::min(BandInput, equations - e + 1));
    if (!(height >= 0 && height <= highest && height == static_cast<int>(height))) {
      throw Failure(error::SubscriptOutOfRange,
                    file_.Path() + ": the height of row " + std::to_string(e) + " is impossible", where);
    }
  }
}

void MatrixReader::FindStrips() {
  const auto isHole = [&](int d) { return file_.IsHole(Place(0, d), Place(0, d + 1)); };
  for (int first = 1, end = 1; first <= bandBound_; first = end) {
    while (end <= bandBound_ && end < first + StripWidth && !isHole(end)) ++end;
    if (end > first)
      strips_.push_back({first, end - first});
    else
      ++end;
  }
}

void MatrixReader::ReadRows(int first, int last, BandMatrix& window) {
  const int rows = last - first + 1;
  for (int row = 0; row < rows; row += RowsAtOnce) {
    const int count = std::min(RowsAtOnce, rows - row);
    for (int e = 0; e < count; ++e) window(row + e, 0) = heights_[static_cast<std::size_t>(first + row + e)];
    for (const Strip& strip : strips_) {
      for (int c = 0; c < strip.columns; ++c) {
        file_.ReadAt(Place(first + row, strip.first + c),
                     turned_.data() + std::size_t{RowsAtOnce} * static_cast<std::size_t>(c),
                     sizeof(double) * static_cast<std::size_t>(count));
      }
      const double* const heights = heights_.data() + first + row;
      if (const int e = RowBeyondHeight(turned_.data(), heights, count, strip.columns, strip.first); e >= 0) {
        throw Failure(error::SubscriptOutOfRange,
                      file_.Path() + ": row " + std::to_string(first + row + e) + " has an entry beyond its height");
      }
      TurnToRows(turned_.data(), count, strip.columns, window, row, strip.first);
      window.CountAsFilled(strip.first, strip.columns);
    }
  }
}

void LoadMatrix(BandMatrix& K, const std::string& path, int equations, int BandInput, std::source_location where) {
  MatrixReader(path, K.EquationBound(), K.BandBound(), equations, BandInput, where).ReadRows(0, K.EquationBound(), K);
}

}  // namespace velmor
