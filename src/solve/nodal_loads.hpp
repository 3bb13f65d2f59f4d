#pragma once

#include <source_location>
#include <string>

#include "base/item_reader.hpp"

namespace velmor {

/// A line of NAME.KNK: a load on a freedom of a node, or a mass in the eigen stage and in acceleration cases.
struct NodalLoad {
  int node = 0;
  int direction = 0;  // from 1, in the model's own order; one above DofPerNode is of no freedom and is skipped
  double value = 0;
};

/// Reads the number of lines in the block of one load case.
int ReadNodalLoadCount(ItemReader& knk, std::source_location where = std::source_location::current());

/// Reads one line. Failure 9 for a node outside 1..nodeCount or a direction below 1, 13 for a direction between
/// two freedoms.
NodalLoad ReadNodalLoad(ItemReader& knk, int analysisCode, int nodeCount,
                        std::source_location where = std::source_location::current());

/// "load on node 3, direction 5", for messages.
std::string Describe(const NodalLoad& load);

}  // namespace velmor
