#include "solve/supports.hpp"

#include <algorithm>

#include "base/failure.hpp"
#include "base/item_reader.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"

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

void WarnOfSkippedSupports(Run& run, const std::string& path, const std::vector<Support>& supports) {
  const auto isSkipped = [&](const Support& support) { return support.direction > run.sizes.DofPerNode; };
  const auto first = std::find_if(supports.begin(), supports.end(), isSkipped);
  if (first == supports.end()) return;
  const auto count = std::count_if(first, supports.end(), isSkipped);
  const std::string more = count > 1 ? " (and " + std::to_string(count - 1) + " more)" : "";
  Warn(run, path + ": support of node " + std::to_string(first->node) + ", direction " +
                std::to_string(first->direction) + more + ": the model has no such freedom, it is skipped");
}

}  // namespace velmor
