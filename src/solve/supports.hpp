#pragma once

#include <source_location>
#include <string>
#include <vector>

namespace velmor {

struct Run;

/// A line of the constraint file: a prescribed displacement on a freedom of a node.
struct Support {
  int node = 0;
  int direction = 0;  // 1..DofPerNode; the support of any other freedom is skipped
  double value = 0;
};

/// A freedom as a support or load line names it: in code 2 the rotation about z may be called 6, it is freedom 3.
constexpr int FreedomOf(int direction, int analysisCode) { return analysisCode == 2 && direction == 6 ? 3 : direction; }

/// Reads the constraint file whole, every line with its freedom in the model's own order, and warns of the supports
/// whose freedom the model does not have. Failure 53 if it is missing, 9 for a negative count, a node
/// outside 1..NodeCount or a direction below 1.
std::vector<Support> ReadSupports(Run& run, const std::string& path,
                                  std::source_location where = std::source_location::current());

}  // namespace velmor
