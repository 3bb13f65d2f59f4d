#pragma once

#include <array>
#include <source_location>
#include <string>
#include <vector>

#include "base/item_reader.hpp"

namespace velmor {

/// The load cases of NAME.lcd, from 1; entry 0 holds nothing.
struct LoadCases {
  std::vector<std::string> LoadCaseName{1};
  std::vector<int> LoadCaseType{1};
  std::vector<std::array<float, 5>> LoadCaseValues{1};  // V0 to V4

  int Count() const { return static_cast<int>(LoadCaseType.size()) - 1; }
};

/// Load case types: 1 to 3 linear acceleration in x, y, z; 4 to 6 angular acceleration about an axis parallel to
/// x, y, z. Every other type is a plain case of nodal and element loads.
constexpr bool IsAcceleration(int loadCaseType) { return 1 <= loadCaseType && loadCaseType <= 6; }

/// Reads the number of load cases, the first item of NAME.lcd; failure 9 if it is negative.
int ReadLoadCaseCount(ItemReader& lcd, std::source_location where = std::source_location::current());

/// Reads name, type and five values of each of `count` load cases, which stand behind the count.
LoadCases ReadLoadCases(ItemReader& lcd, int count, std::source_location where = std::source_location::current());

}  // namespace velmor
