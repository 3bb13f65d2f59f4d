#include "solve/supports.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"
#include "run/run.hpp"
#include "solve/skipped_lines.hpp"

namespace velmor {

std::vector<Support> ReadSupports(Run& run, const std::string& path, std::source_location where) {
  ItemReader file(path, where);
  const int count = file.Count("number of supports", where);
  file.ExpectItems(count, 3, "supports", where);
  std::vector<Support> supports;
  SkippedLines skipped;
  for (int i = 1; i <= count; ++i) {
    Support support;
    support.node = file.Index("node of a support", run.sizes.NodeCount, where);
    support.direction = FreedomOf(file.Whole("direction of a support", where), run.analysisCode);
    if (support.direction < 1) {
      throw Failure(error::SubscriptOutOfRange, file.Describe("direction of a support is below 1"), where);
    }
    support.value = file.Number("value of a support", where);
    if (support.direction > run.sizes.DofPerNode) {
      skipped.Note(
          file, "support of node " + std::to_string(support.node) + ", direction " + std::to_string(support.direction));
    }
    supports.push_back(support);
  }
  skipped.Tell(run, "the model has no such freedom, it is skipped");
  return supports;
}

}  // namespace velmor
