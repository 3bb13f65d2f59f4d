#pragma once

#include <map>
#include <string>
#include <vector>

#include "cases.hpp"

namespace velmor::verification {

/// All that the manual shows.
struct Manual {
  std::vector<Group> groups;
  std::vector<Pitfall> pitfalls;
  std::vector<Refusal> refusals;
};

/// Values by what they are of; a name that comes twice throws.
using ValueTable = std::map<std::string, double>;

/// Every value that the program computed, refusals by their exit status.
ValueTable ValuesOf(const Manual& manual);

/// The same manual with the values of a table in place of its own; names without a value keep theirs.
Manual WithValues(Manual manual, const ValueTable& values);

/// A table as text, a line a value with all its digits, and back.
std::string TextOf(const ValueTable& values);
ValueTable ReadValues(const std::string& path);

/// What does not hold: classes that are not met, pitfalls that are none any more. Empty if all is well.
std::vector<std::string> Faults(const Manual& manual);

/// Values that moved by more than 1e-6 of themselves, that are new, or that are gone.
std::vector<std::string> Moves(const ValueTable& stored, const ValueTable& now);

/// The page docs/verification.md.
std::string PageOf(const Manual& manual);

/// "31 exact, 4 within 1 %, ...".
std::string CountByClass(const Manual& manual);

}  // namespace velmor::verification
