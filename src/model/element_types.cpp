#include "model/element_types.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {

ElementTypeTable ReadElementTypes(const std::string& programFolder, int lastRow, std::source_location where) {
  ItemReader file(programFolder + "ELTYP.DAT", where);
  ElementTypeTable types;
  types.rows = file.Count("number of element types", where);
  if (types.rows > lastRow + 1) {
    throw Failure(error::SubscriptOutOfRange,
                  file.Describe("number of element types") + " is above " + std::to_string(lastRow + 1), where);
  }
  for (int t = 0; t < types.rows; ++t) {
    const auto row = static_cast<std::size_t>(t);
    types.name[row] = file.Text("name of an element type", where);
    types.nodeCount[row] = file.Count("node count of an element type", where);
    if (types.nodeCount[row] > MostNodesInElement) {
      throw Failure(error::SubscriptOutOfRange, file.Describe("node count of an element type") + " is above 4", where);
    }
  }
  return types;
}

int NodeCountOf(const ElementTypeTable& types, int type, std::source_location where) {
  if (type <= 0) return 2;
  if (type >= types.rows) {
    throw Failure(error::SubscriptOutOfRange, "element type " + std::to_string(type) + " has no row in ELTYP.DAT",
                  where);
  }
  return types.nodeCount[static_cast<std::size_t>(type)];
}

}  // namespace velmor
