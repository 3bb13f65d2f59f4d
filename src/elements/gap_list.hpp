#pragma once

#include <optional>
#include <string>
#include <utility>

#include "base/item_writer.hpp"
#include "elements/materials.hpp"
#include "model/element_records.hpp"

namespace velmor {

/// NAME.GPD, the list of the gap elements: a line each of nodes, direction cosines, length and section area. It is
/// created at the first gap, so that a model without gaps leaves an older list alone.
class GapList {
 public:
  explicit GapList(std::string path) : path_(std::move(path)) {}

  void Add(const LineRecord& gap, const Material& material) {
    if (!file_) file_.emplace(path_);
    file_->Line(gap.nodes[0], gap.nodes[1], gap.cosines.x, gap.cosines.y, gap.cosines.z, gap.length, material.A);
  }
  void Close() {
    if (file_) file_->Close();
  }

 private:
  std::string path_;
  std::optional<ItemWriter> file_;
};

}  // namespace velmor
