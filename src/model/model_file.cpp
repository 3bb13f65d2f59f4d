#include "model/model_file.hpp"

#include "model/element_types.hpp"

namespace velmor {

void ReadElementNodes(ItemReader& tek, ModelTables& model, int e, std::source_location where) {
  const int nodes = NodeCountOf(model.types, model.elements(e, 0), where);
  for (int j = 1; j <= nodes; ++j) model.elements(e, j) = tek.Index("node of an element", model.nodeCount, where);
  model.elementMaterial(e) = tek.Whole("material of an element", where);
}

void PassSuperElement(ItemReader& tek, int nodeCount, std::source_location where) {
  tek.Skip(1, "name of a super element", where);
  tek.Whole("number of a super element", where);
  const int nodes = tek.Count("node count of a super element", where);
  tek.ExpectItems(nodes, 1, "nodes of a super element", where);
  for (int j = 1; j <= nodes; ++j) tek.Index("node of a super element", nodeCount, where);
}

}  // namespace velmor
