#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <source_location>
#include <string>

#include "base/failure.hpp"
#include "base/item_reader.hpp"
#include "run/run.hpp"

namespace velmor {

// What the stress stages have in common: their window, their walk over the element records, and how they fail.

/// Shows the stage's name on the stress window.
void BeginStressStage(Run& run, const char* caption);

/// Shows number and line of a failure on the stress window.
void ShowStageError(Run& run, const Failure& failure);

/// How the nodal stress stage and the averaging stage answer a failure: the error display, two messages, the
/// description, the common end of program.
[[noreturn]] void EndStressRun(Run& run, const Failure& failure);

/// " 50%": the whole part of 100 times part by whole. Failure 11 if whole is 0.
std::string StressPercent(int part, int whole, std::source_location where = std::source_location::current());

/// The first element record of NAME.DAT for one more load case. The file is opened at the first one and stays open in
/// `dat`.
ItemReader& BeginLoadCase(Run& run, std::optional<ItemReader>& dat);

/// Walks over the element records up to the end of NAME.DAT, with the percentage in `progress`, and calls
/// element(record number, type) behind the type of each. The record number is that of a signed 16-bit integer:
/// failure 6 beyond 32767.
template <typename Element>
void ForEachElementRecord(Run& run, ItemReader& dat, Label& progress, Element element,
                          std::source_location where = std::source_location::current()) {
  for (int record = 0; !dat.AtEnd();) {
    const int type = dat.Whole("element type", where);
    progress.caption = StressPercent(record + 1, run.sizes.ElementCount, where);
    run.display.Refresh(run.nsa);
    if (record == std::numeric_limits<std::int16_t>::max()) {
      throw Failure(error::Overflow, dat.Describe("element record number") + " is too large", where);
    }
    element(++record, type);
  }
}

}  // namespace velmor
