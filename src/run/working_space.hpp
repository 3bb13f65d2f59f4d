#pragma once

#include <string>

#include "base/table.hpp"

namespace velmor {

/// The seven working-space values of decmem.DAT. Value 4 is MaterialLimit, the largest number of materials; the
/// others are read and kept for whoever writes the file.
struct ModelSizeValues {
  static constexpr int DefaultModelSize = 1000;
  Row<int, 7> values;
  int MaterialLimit() const { return values(4); }
};

/// Reads decmem.DAT from the program folder. If that fails, all seven values take their defaults and `readable`
/// becomes false.
ModelSizeValues ReadModelSizeValues(const std::string& programFolder, bool& readable);

}  // namespace velmor
