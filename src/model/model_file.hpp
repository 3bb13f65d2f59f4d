#pragma once

#include <source_location>

#include "base/item_reader.hpp"
#include "model/model_tables.hpp"

namespace velmor {

// Records of NAME.TEK behind the element's type.

/// Reads the node numbers and the material of element e, whose type stands in column 0 of the element table. Failure 9
/// for a type without a row in ELTYP.DAT or a node outside 1..nodeCount.
void ReadElementNodes(ItemReader& tek, ModelTables& model, int e,
                      std::source_location where = std::source_location::current());

/// Passes the rest of a super element's record: name, number, node count and nodes. Failure 9 for a node outside
/// 1..nodeCount.
void PassSuperElement(ItemReader& tek, int nodeCount, std::source_location where = std::source_location::current());

}  // namespace velmor
