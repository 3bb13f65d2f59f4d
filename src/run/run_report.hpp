#pragma once

#include <array>
#include <string>
#include <vector>

namespace velmor {

/// Figures of a run that a person wants at a glance. The stages fill them as they compute; the display shows them at
/// the end. Nothing here changes a result.
struct RunReport {
  struct Stage {
    std::string caption;
    double seconds;
  };
  struct LoadCase {
    std::string name;
    double largest = 0;                // displacement of largest size, with its sign; translations only
    int node = 0, freedom = 0;         // where it is; 0 where nothing moves
    std::array<double, 7> applied{};   // sum of the loads per freedom, from 1
    std::array<double, 7> reaction{};  // sum of the nodal forces per freedom, from 1; by the Nodal Force stage
  };

  bool isComplete = false;  // the run came to its end, perhaps past a stage that failed
  std::vector<Stage> stages;
  std::vector<LoadCase> loadCases;
  bool hasReactions = false;
  std::vector<double> periods;     // of the modes found, in seconds for consistent units
  int gapPasses = 0;               // of the Non-Linear stage
  int gaps = 0, openGaps = 0;      // gap elements, and those short of their limit
  std::vector<std::string> files;  // result files written, as paths
  std::vector<std::string> warnings;
};

}  // namespace velmor
