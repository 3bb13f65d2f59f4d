#include "results/nodal_averages.hpp"

#include <algorithm>
#include <cassert>

namespace velmor {

NodalAverages::NodalAverages(int materials, int nodes)
    : materials_(materials),
      nodes_(nodes),
      pairs_((static_cast<std::size_t>(materials) + 1) * (static_cast<std::size_t>(nodes) + 1)),
      block_(std::min<std::uint64_t>(pairs_, std::uint64_t{1} << 56) * (Length + 1)) {}  // never wraps around

std::size_t NodalAverages::Pair(int material, int node) const {
  assert(0 <= material && material <= materials_ && 0 <= node && node <= nodes_);
  return static_cast<std::size_t>(material) * (static_cast<std::size_t>(nodes_) + 1) + static_cast<std::size_t>(node);
}

void NodalAverages::Clear() { std::fill_n(block_.Data(), pairs_, 0.0); }

void NodalAverages::Add(int material, int node, const AveragedItems& record) {
  const std::size_t pair = Pair(material, node);
  double& count = block_.Data()[pair];
  double* const sums = block_.Data() + pairs_ + pair * Length;
  if (count == 0) {  // what an earlier load case left is overwritten, not cleared
    std::copy(record.begin(), record.end(), sums);
  } else {
    for (std::size_t k = 0; k < Length; ++k) sums[k] += record[k];
  }
  count += 1;
}

AveragedItems NodalAverages::Mean(int material, int node) const {
  const std::size_t pair = Pair(material, node);
  const double count = block_.Data()[pair];
  const double* const sums = block_.Data() + pairs_ + pair * Length;
  AveragedItems mean{};
  if (count == 0) return mean;
  for (std::size_t k = 0; k < Length; ++k) mean[k] = sums[k] / count;
  return mean;
}

}  // namespace velmor
