#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "base/memory.hpp"

namespace velmor {

/// Items 5 to 16 of a stress record.
using AveragedItems = std::array<double, 12>;

/// Sums of stress records by material 0..M and node 0..NN, and their means: each record has the same weight. One
/// allocation, of which only what is touched takes memory: first the number of records of each pair, then their sums.
class NodalAverages {
 public:
  /// All empty. Failure 7 if there is no memory for (M + 1) (NN + 1) pairs.
  NodalAverages(int materials, int nodes);

  int Materials() const { return materials_; }
  int Nodes() const { return nodes_; }
  void Clear();
  void Add(int material, int node, const AveragedItems& record);
  /// Mean of a pair; zeros for a pair without a record.
  AveragedItems Mean(int material, int node) const;

 private:
  static constexpr std::uint64_t Length = std::tuple_size_v<AveragedItems>;
  std::size_t Pair(int material, int node) const;

  int materials_, nodes_;
  std::size_t pairs_;
  ZeroedBlock block_;
};

}  // namespace velmor
