#include "model/model_scan.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {

int ScanAnalysisCode(const std::string& path, const ElementTypeTable& types, bool twoDimensional) {
  ItemReader tek(path);
  const int nodes = tek.Count("node count");
  const int elements = tek.Count("element count");
  tek.ExpectItems(nodes, 3, "nodes");
  for (int n = 1; n <= nodes; ++n) tek.Skip(3, "node coordinate");
  int code = twoDimensional ? 1 : 0;
  for (int e = 1; e <= elements; ++e) {
    const int type = tek.Whole("element type");
    if (type < 0 || type >= types.rows) {
      throw Failure(error::SubscriptOutOfRange,
                    tek.Describe("element type ") + std::to_string(type) + " has no row in ELTYP.DAT");
    }
    if (6 <= type && type <= 11) code = twoDimensional ? 2 : 3;
    tek.Skip(types.nodeCount[static_cast<std::size_t>(type)] + 1, "node of an element");
  }
  return code;
}

}  // namespace velmor
