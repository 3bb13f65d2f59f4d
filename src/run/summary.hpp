#pragma once

#include <string>
#include <vector>

namespace velmor {

struct Run;

/// What a person wants at a glance after a complete run: sizes of the model, per load case the largest displacement and
/// the sums of loads and reactions, periods, gaps, the result files with their sizes, seconds per stage, warnings. One
/// line each.
std::vector<std::string> Summary(const Run& run);

}  // namespace velmor
