// The stages that are not built yet. Each says so and writes nothing; a run that needs one is not complete.

#include <string>

#include "run/failure_answer.hpp"
#include "run/run.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

void NotBuiltYet(Run& run, const char* stage) {
  run.display.Warning(std::string("the stage ") + stage + " is not built yet: it writes no results");
  run.exitStatus = exit_status::StartUp;
}

}  // namespace

void RunGapStage(Run& run) { NotBuiltYet(run, "Non-Linear"); }

}  // namespace velmor
