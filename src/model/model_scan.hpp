#pragma once

#include <string>

#include "model/element_types.hpp"

namespace velmor {

/// Analysis code that a model needs: 1 in two dimensions and 0 in three, raised to 2 or 3 by an element of type 6 to
/// 11, the beams and plates. Knows neither super elements nor the types of 0 and below, whose failure 9 or whose row it
/// takes as it comes. Failures of the reader.
int ScanAnalysisCode(const std::string& path, const ElementTypeTable& types, bool twoDimensional);

}  // namespace velmor
