#include "elements/band_matrix.hpp"

#include <cstdint>

#include "base/failure.hpp"

namespace velmor {
namespace {

constexpr int NumbersInLine = 8;  // doubles in a cache line

/// The least that holds columns 0..bandBound, of the form 8 k + 1 with k odd.
std::size_t OddStride(int bandBound) {
  const std::size_t lines = (static_cast<std::size_t>(bandBound) + NumbersInLine - 1) / NumbersInLine;
  return NumbersInLine * (lines | 1) + 1;
}

ZeroedBlock BandBlock(std::size_t firstPlace, int equationBound, std::size_t stride) {
  try {
    return ZeroedBlock(firstPlace + (static_cast<std::uint64_t>(equationBound) + 1) * stride);
  } catch (const Failure& failure) {
    throw Failure(Cause::BandMemory, failure.number, failure.what(), {});
  }
}

}  // namespace

BandMatrix::BandMatrix(int equationBound, int bandBound)
    : equationBound_(equationBound),
      bandBound_(bandBound),
      stride_(OddStride(bandBound)),
      block_(BandBlock(FirstPlace, equationBound, stride_)),
      isFilled_(static_cast<std::size_t>(bandBound) + 1) {}

}  // namespace velmor
