#include "run/working_space.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {
namespace {

ModelSizeValues Defaults() {
  ModelSizeValues sizes;
  for (int i = 1; i <= 6; ++i) sizes.values(i) = ModelSizeValues::DefaultModelSize;
  sizes.values(7) = 2;
  return sizes;
}

}  // namespace

ModelSizeValues ReadModelSizeValues(const std::string& programFolder, bool& readable) {
  ModelSizeValues sizes;
  readable = true;
  try {
    ItemReader file(programFolder + "decmem.DAT");
    for (int i = 1; i <= 7; ++i) sizes.values(i) = file.Count("working-space value");
  } catch (const Failure&) {
    readable = false;
    sizes = Defaults();
  }
  return sizes;
}

}  // namespace velmor
