#include "solve/supports.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {

std::vector<Support> ReadSupports(const std::string& path, int analysisCode, int nodeCount,
                                  std::source_location where) {
  ItemReader file(path, where);
  const int count = file.Count("number of supports", where);
  file.ExpectItems(count, 3, "supports", where);
  std::vector<Support> supports;
  for (int i = 1; i <= count; ++i) {
    Support support;
    support.node = file.Index("node of a support", nodeCount, where);
    support.direction = FreedomOf(file.Whole("direction of a support", where), analysisCode);
    if (support.direction < 1) {
      throw Failure(error::SubscriptOutOfRange, file.Describe("direction of a support is below 1"), where);
    }
    support.value = file.Number("value of a support", where);
    supports.push_back(support);
  }
  return supports;
}

}  // namespace velmor
