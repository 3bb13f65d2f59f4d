#include "solve/nodal_loads.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/failure.hpp"
#include "solve/supports.hpp"

namespace velmor {

int ReadNodalLoadCount(ItemReader& knk, std::source_location where) {
  const int count = knk.Count("number of nodal loads", where);
  knk.ExpectItems(count, 3, "nodal loads", where);
  return count;
}

NodalLoad ReadNodalLoad(ItemReader& knk, int analysisCode, int nodeCount, std::source_location where) {
  NodalLoad load;
  load.node = knk.Index("node of a load", nodeCount, where);
  const double direction = knk.Number("direction of a nodal load", where);
  if (direction < 1) {
    throw Failure(error::SubscriptOutOfRange, knk.Describe("direction of a load is below 1"), where);
  }
  constexpr double beyondAnyFreedom = 7, largest = std::numeric_limits<int>::max();
  if (direction < beyondAnyFreedom && direction != std::floor(direction)) {
    throw Failure(error::TypeMismatch, knk.Describe("direction of a load is no whole number"), where);
  }
  load.direction = FreedomOf(static_cast<int>(std::min(direction, largest)), analysisCode);
  load.value = knk.Number("value of a nodal load", where);
  return load;
}

std::string Describe(const NodalLoad& load) {
  return "load on node " + std::to_string(load.node) + ", direction " + std::to_string(load.direction);
}

}  // namespace velmor
