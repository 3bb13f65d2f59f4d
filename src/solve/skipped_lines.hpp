#pragma once

#include <string>

#include "base/item_reader.hpp"
#include "run/model_warnings.hpp"

namespace velmor {

/// Lines of one kind in a file that were skipped: how many, and the first of them.
class SkippedLines {
 public:
  void Note(const ItemReader& file, const std::string& what) {
    if (count_++ == 0) first_ = file.Describe(what);
  }
  /// One warning for all of them, if there are any.
  void Tell(Run& run, const std::string& consequence) const {
    if (count_ == 0) return;
    const std::string more = count_ > 1 ? " (and " + std::to_string(count_ - 1) + " more)" : "";
    Warn(run, first_ + more + ": " + consequence);
  }

 private:
  int count_ = 0;
  std::string first_;
};

}  // namespace velmor
