// The Sys stage: loads, supports, elimination, displacements to NAME.RVP.

#include <cmath>
#include <string>

#include "base/item_writer.hpp"
#include "nonlinear/gap_iteration.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "solve/band_solver.hpp"
#include "solve/load_assembly.hpp"
#include "solve/load_cases.hpp"
#include "solve/supports.hpp"

namespace velmor {
namespace {

constexpr double TinyPivot = 1e-10;  // a diagonal up to here is a freedom without stiffness
constexpr double BigNumber = 1e+30;  // penalty of a support

void ReadLoadCaseTables(Run& run) {
  ItemReader lcd(run.File(".lcd"));
  run.LoadCaseCount = ReadLoadCaseCount(lcd);
  run.loadCases = ReadLoadCases(lcd, run.LoadCaseCount);
  run.LoadTable = Grid(run.LoadCaseCount, run.sizes.EquationBound());
}

/// The band of an earlier run, where the EEM stage did not make one in this run.
void LoadStoredBand(Run& run) {
  run.form2.Label7.caption = "Reading Stiffness Matrix from file";
  ShowMatrixSize(run, run.sizes.EquationBound());
  LoadGlobalBand(run);
}

/// The band in memory belongs to this model; only a control file that was changed during the run makes it another.
void CheckBand(const Run& run) {
  if (run.GlobalBand.EquationBound() == run.sizes.EquationBound() &&
      run.GlobalBand.BandBound() == run.sizes.BandBound()) {
    return;
  }
  throw Failure(error::SubscriptOutOfRange, "the stiffness matrix in memory does not fit " + run.File(".DAT"));
}

void ReportLoads(Run& run) {
  run.report.loadCases.assign(static_cast<std::size_t>(run.LoadCaseCount), {});
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    RunReport::LoadCase& figures = run.report.loadCases[static_cast<std::size_t>(c - 1)];
    figures.name = run.loadCases.LoadCaseName[static_cast<std::size_t>(c)];
    for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
      figures.applied[static_cast<std::size_t>(run.sizes.FreedomOfEquation(e))] += run.LoadTable(c, e);
    }
  }
}

/// The largest translation of each load case.
void ReportDisplacements(Run& run) {
  const int translations = IsSpatial(run.analysisCode) ? 3 : 2;
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    RunReport::LoadCase& figures = run.report.loadCases[static_cast<std::size_t>(c - 1)];
    for (int n = 1; n <= run.sizes.NodeCount; ++n) {
      for (int k = 1; k <= translations; ++k) {
        const double u = run.LoadTable(c, run.sizes.Equation(n, k));
        if (std::abs(u) <= std::abs(figures.largest)) continue;
        figures.largest = u;
        figures.node = n;
        figures.freedom = k;
      }
    }
  }
}

/// A penalty on the diagonal of each supported freedom; its prescribed value acts in load case 1.
void ApplySupports(Run& run) {
  const auto supports = ReadSupports(run, run.File(".vpl"));
  WarnOfPrescribedDisplacements(run, supports);
  for (const Support& support : supports) {
    if (support.direction > run.sizes.DofPerNode) continue;
    if (run.LoadCaseCount < 1) throw Failure(error::SubscriptOutOfRange, "a support needs a load case");
    const int e = run.sizes.Equation(support.node, support.direction);
    run.GlobalBand(e, 1) = BigNumber;
    run.LoadTable(1, e) = support.value * BigNumber;
  }
}

/// Freedoms that no element stiffens are held at zero.
void HoldLooseFreedoms(Run& run) {
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (std::abs(run.GlobalBand(e, 1)) > TinyPivot) continue;
    run.GlobalBand(e, 1) = BigNumber;
    for (int c = 1; c <= run.LoadCaseCount; ++c) run.LoadTable(c, e) = 0;
  }
}

[[noreturn]] void FailAtPivot(const Run& run, int equation) {
  const char* const pivot = run.GlobalBand(equation, 1) == 0 ? " is zero: node " : " is not a number: node ";
  throw Failure(Cause::SingularBand, error::DivisionByZero,
                "the pivot of equation " + std::to_string(equation) + pivot +
                    std::to_string(run.sizes.NodeOfEquation(equation)) + " can move without resistance, direction " +
                    FreedomName(run.analysisCode, run.sizes.FreedomOfEquation(equation)),
                {});
}

void Solve(Run& run) {
  const int equations = run.sizes.EquationCount();
  const auto show = [&](double percent) {
    run.form2.Label8.caption = PercentText(percent);
    run.display.Refresh(run.form2);
  };
  run.form2.Label8.caption = "Busy";
  ShowStatus(run, "Solving System Matrix");
  Column diagonal(equations);
  for (int e = 1; e <= equations; ++e) diagonal(e) = run.GlobalBand(e, 1);
  const double steps = equations - 1.0;
  const int singular =
      EliminateBand(run.GlobalBand, run.LoadTable, equations, [&](int row) { show(row / steps * 100); });
  if (singular != 0) FailAtPivot(run, singular);
  run.weakPivots = WeakPivots(run, diagonal);
  if (!run.gapFlag) WarnOfWeakPivots(run);
  ShowStatus(run, "Back substituting");
  BackSubstitute(run.GlobalBand, run.LoadTable, equations, run.sizes.BandInput, [&](int rows) {
    const double e = equations + 1.0 - rows;
    show((1 + (1 - e) / run.sizes.DofPerNode / run.sizes.NodeCount) * 100);
  });
}

/// NAME.RVP: node count and analysis code; per load case a line of displacements for each node, then "END".
void WriteDisplacements(const Run& run) {
  ItemWriter file(run.File(".RVP"));
  file.Line(run.sizes.NodeCount, run.analysisCode);
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    for (int n = 1; n <= run.sizes.NodeCount; ++n) {
      for (int k = 1; k <= run.sizes.DofPerNode; ++k) file.Item(run.LoadTable(c, run.sizes.Equation(n, k)));
      file.EndLine();
    }
    file.Line("END");
  }
  file.Close();
}

void SolveStatics(Run& run) {
  TakeControlFile(run);
  OpenElementRecords(run);
  ReadLoadCaseTables(run);
  if (!IsOn(run.flags.CompileStiffnessFlag) && !run.gapFlag) LoadStoredBand(run);
  CheckBand(run);

  ShowStatus(run, "Applying boundary Conditions");
  AssembleLoads(run);
  ReportLoads(run);
  ApplySupports(run);
  WarnOfLooseFreedoms(run, TinyPivot);
  HoldLooseFreedoms(run);
  ShowStatus(run, "Check Model");

  Solve(run);

  ShowStatus(run, "Writing Solution to file");
  if (run.gapFlag && run.GapPass != 0) CompareDisplacements(run);
  WriteDisplacements(run);
  ReportDisplacements(run);
  run.GlobalBand = BandMatrix();
}

}  // namespace

void RunSysStage(Run& run) {
  BeginStage(run, "Sys 2.4", "0 %");
  if (const auto failure = Attempt([&] { SolveStatics(run); })) {
    Failure answered = *failure;
    // The start of the run is not this stage's affair: a control file gone by now is a failure like any other.
    if (answered.cause == Cause::ControlFile) answered.cause = Cause::General;
    EndAfterFailure(run, answered);
  }
}

}  // namespace velmor
