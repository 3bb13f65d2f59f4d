// The Non-Linear stage: the Sys stage once per pass, until the gaps settle.

#include <string>

#include "base/file_system.hpp"
#include "nonlinear/gap_iteration.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

constexpr double GapTolerance = 1e-8;  // of GapChange
constexpr int GapPassLimit = 1000;

/// Solves with the gaps as the pass before left them. Returns true if the solution stayed the same.
bool Pass(Run& run) {
  LoadGlobalBand(run);  // the solution of every pass uses it up
  GapStiffnessPass(run);
  RunSysStage(run);
  run.report.gapPasses = run.GapPass + 1;
  if (run.GapChange < GapTolerance && run.GapPass != 0) return true;
  ReloadSolution(run);
  return false;
}

void IterateGaps(Run& run) {
  TakeControlFile(run);
  OpenElementRecords(run);
  DeleteFile(run.File(".RVP"));
  run.GapPass = 0;
  run.GapChange = 0;
  while (!Pass(run)) {
    if (++run.GapPass <= GapPassLimit) continue;
    const char* const message = "Maximum number of itteration exceeded";
    ShowStatus(run, message);
    run.display.MessageBox(message);
    break;
  }
  ReportGaps(run);
}

}  // namespace

void RunGapStage(Run& run) {
  BeginStage(run, "Non-Linear 1.0");
  if (const auto failure = Attempt([&] { IterateGaps(run); })) EndAfterFailure(run, *failure);
}

}  // namespace velmor
