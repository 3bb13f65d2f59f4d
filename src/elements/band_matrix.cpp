#include "elements/band_matrix.hpp"

#include <algorithm>
#include <bit>
#include <vector>

#include "base/failure.hpp"
#include "base/file_system.hpp"

namespace velmor {
namespace {

static_assert(std::endian::native == std::endian::little, "NAME.MAT holds little-endian doubles");

constexpr int NumbersInLine = 8;  // doubles in a cache line

/// The least that holds columns 0..bandBound, of the form 8 k + 1 with k odd.
std::size_t OddStride(int bandBound) {
  const std::size_t lines = (static_cast<std::size_t>(bandBound) + NumbersInLine - 1) / NumbersInLine;
  return NumbersInLine * (lines | 1) + 1;
}

/// Columns that are turned at a time: a cache line of every row, so that each row is touched once a strip.
constexpr int StripWidth = NumbersInLine;

ZeroedBlock BandBlock(std::size_t firstPlace, int equationBound, std::size_t stride) {
  try {
    return ZeroedBlock(firstPlace + (static_cast<std::uint64_t>(equationBound) + 1) * stride);
  } catch (const Failure& failure) {
    throw Failure(Cause::BandMemory, failure.number, failure.what(), {});
  }
}

struct Strip {
  int first, columns;
};

Strip StripAt(int d, int bandBound) { return {d, std::min(StripWidth, bandBound + 1 - d)}; }

void CheckHeights(const BandMatrix& K, const std::string& path, int equations, int BandInput,
                  std::source_location where) {
  for (int e = 1; e <= K.EquationBound(); ++e) {
    const double height = K(e, 0);
    const int highest = std::max(0, std::min(BandInput, equations - e + 1));
    if (!(height >= 0 && height <= highest && height == static_cast<int>(height))) {
      throw Failure(error::SubscriptOutOfRange, path + ": the height of row " + std::to_string(e) + " is impossible",
                    where);
    }
  }
}

}  // namespace

BandMatrix::BandMatrix(int equationBound, int bandBound)
    : equationBound_(equationBound),
      bandBound_(bandBound),
      stride_(OddStride(bandBound)),
      block_(BandBlock(FirstPlace, equationBound, stride_)) {}

std::int64_t MatrixFileSize(int equationBound, int bandBound) {
  return 8 * (std::int64_t{equationBound} + 1) * (std::int64_t{bandBound} + 1);
}

void SaveMatrix(const BandMatrix& K, const std::string& path) {
  OutputFile file(path);
  file.RemoveOlder();
  const std::size_t rows = static_cast<std::size_t>(K.EquationBound()) + 1;
  std::vector<double> turned(rows * StripWidth);
  for (int d = 0; d <= K.BandBound(); d += StripWidth) {
    const Strip strip = StripAt(d, K.BandBound());
    for (std::size_t e = 0; e < rows; ++e) {
      const double* const row = K.Row(static_cast<int>(e)) + strip.first;
      for (int c = 0; c < strip.columns; ++c) turned[static_cast<std::size_t>(c) * rows + e] = row[c];
    }
    file.Write(turned.data(), sizeof(double) * rows * static_cast<std::size_t>(strip.columns));
  }
  file.Close();
}

void LoadMatrix(BandMatrix& K, const std::string& path, int equations, int BandInput, std::source_location where) {
  InputFile file(path, where);
  const std::int64_t size = MatrixFileSize(K.EquationBound(), K.BandBound());
  if (file.Size() < size) throw Failure(error::InputPastEnd, path + ": the matrix is cut short", where);
  if (file.Size() > size) throw Failure(error::SubscriptOutOfRange, path + " belongs to another model", where);
  const std::size_t rows = static_cast<std::size_t>(K.EquationBound()) + 1;
  std::vector<double> turned(rows * StripWidth);
  for (int d = 0; d <= K.BandBound(); d += StripWidth) {
    const Strip strip = StripAt(d, K.BandBound());
    file.Read(turned.data(), sizeof(double) * rows * static_cast<std::size_t>(strip.columns));
    for (std::size_t e = 0; e < rows; ++e) {
      double* const row = K.Row(static_cast<int>(e)) + strip.first;
      for (int c = 0; c < strip.columns; ++c) row[c] = turned[static_cast<std::size_t>(c) * rows + e];
    }
  }
  CheckHeights(K, path, equations, BandInput, where);
}

}  // namespace velmor
