// The Freq stage: periods and shapes of up to ten modes, to NAME.EIG.

#include <string>
#include <vector>

#include "base/file_system.hpp"
#include "base/item_writer.hpp"
#include "dynamics/eigen_solver.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "solve/load_cases.hpp"
#include "solve/nodal_loads.hpp"
#include "solve/skipped_lines.hpp"
#include "solve/supports.hpp"

namespace velmor {
namespace {

constexpr double ShortPi = 3.141593;  // the pi of this stage and of all stages after it
constexpr double Penalty = 1e20;      // diagonal of a supported freedom
constexpr int MostModes = 10;
constexpr int MostPasses = 21;

/// Load case types, of which load case 1 counts as an acceleration: its nodal loads are masses.
std::vector<int> ReadLoadCaseTypes(Run& run) {
  ItemReader lcd(run.File(".lcd"));
  std::vector<int> types = ReadLoadCases(lcd, ReadLoadCaseCount(lcd)).LoadCaseType;
  if (types.size() < 2) throw Failure(error::SubscriptOutOfRange, lcd.Path() + ": there is no load case 1");
  types[1] = 1;
  return types;
}

/// MassVector and the nodal loads of every load case whose type is not 0.
Column AssembleMasses(Run& run, const std::vector<int>& loadCaseTypes) {
  const ModelSizes& sizes = run.sizes;
  if (run.MassVector.Size() < sizes.EquationCount()) {
    throw Failure(error::SubscriptOutOfRange, "there is no mass vector of this model");
  }
  Column MassDiagonal = run.MassVector;
  SkippedLines skipped;
  ItemReader knk(run.File(".KNK"));
  for (std::size_t c = 1; c < loadCaseTypes.size(); ++c) {
    const int count = ReadNodalLoadCount(knk);
    for (int i = 1; i <= count; ++i) {
      const NodalLoad mass = ReadNodalLoad(knk, run.analysisCode, sizes.NodeCount);
      if (loadCaseTypes[c] == 0) continue;
      if (mass.direction > sizes.DofPerNode) {
        skipped.Note(knk, Describe(mass));
      } else {
        MassDiagonal(sizes.Equation(mass.node, mass.direction)) += mass.value;
      }
    }
  }
  skipped.Tell(run, "the model has no such freedom, the load is dropped");
  return MassDiagonal;
}

template <typename Action>
void ForEachSupport(const Run& run, const std::vector<Support>& supports, Action action) {
  for (const Support& support : supports) {
    if (support.direction > run.sizes.DofPerNode) continue;
    action(run.sizes.Equation(support.node, support.direction), support.value * Penalty);
  }
}

/// GlobalBand as NAME.MAT has it, with the supports in its diagonal.
void LoadSupportedMatrix(Run& run, const std::vector<Support>& supports) {
  LoadGlobalBand(run);
  ForEachSupport(run, supports, [&](int e, double) { run.GlobalBand(e, 1) = Penalty; });
}

std::string NameOfEquation(const Run& run, int e) {
  return "node " + std::to_string(run.sizes.NodeOfEquation(e)) + ", direction " +
         FreedomName(run.analysisCode, run.sizes.FreedomOfEquation(e));
}

/// The end of a model that can move without resistance: a box with the number of the equation alone.
[[noreturn]] void EndAtPivot(Run& run, int equation) {
  const Failure failure(Cause::SingularBand, error::DivisionByZero,
                        "the pivot of equation " + std::to_string(equation) +
                            " is zero or nearly so: " + NameOfEquation(run, equation) + " can move without resistance",
                        {});
  run.display.MessageBox(std::to_string(equation));
  run.display.Explain(NoticeOf(run.form2.Frame1.caption, failure));
  throw ProgramEnd{ExitStatusOf(failure)};
}

/// Leaves the factor of the mass-scaled matrix in GlobalBand. Every pass solves with this one matrix, so that a single
/// elimination serves them all.
void FactorMatrix(Run& run, const std::vector<Support>& supports, const Column& MassDiagonal) {
  const int n = run.sizes.EquationCount(), width = run.sizes.BandInput;
  ShowStatus(run, "Reading Stiffness Matrix from file");
  LoadSupportedMatrix(run, supports);
  if (const int equation = ScaleRowsByMass(run.GlobalBand, MassDiagonal, n, width)) {
    throw Failure(error::DivisionByZero, "division by zero: " + NameOfEquation(run, equation) + " has no mass");
  }
  if (const int equation = FactorBand(run.GlobalBand, n, width)) EndAtPivot(run, equation);
}

void SetSupportedComponents(const Run& run, const std::vector<Support>& supports, Column& ModeVector) {
  ForEachSupport(run, supports, [&](int e, double value) { ModeVector(e) = value; });
}

/// Finds the next mode and leaves its 1 / omega^2 in history.L0.
Column IterateMode(Run& run, const std::vector<Support>& supports, const std::vector<Column>& modes,
                   IterationHistory& history) {
  const int n = run.sizes.EquationCount(), width = run.sizes.BandInput;
  Column ModeVector(n, 1.0);
  for (int pass = 1; pass <= MostPasses; ++pass) {
    ShowStatus(run, "Reading Stiffness Matrix from file");
    SetSupportedComponents(run, supports, ModeVector);
    Deflate(ModeVector, modes, n);
    SolveFactored(run.GlobalBand, ModeVector, n, width);
    if (history.Converges(NormaliseByLargest(ModeVector, n))) break;
  }
  Deflate(ModeVector, modes, n);
  NormaliseByLength(ModeVector, n);
  SetSupportedComponents(run, supports, ModeVector);
  return ModeVector;
}

void WriteMode(ItemWriter& eig, double period, const Column& mode) {
  eig.Line(period);
  for (int i = 1; i <= mode.Size(); ++i) eig.Line(mode(i));
}

/// The modes of GlobalBand, which is left as NAME.MAT has it, with the supports in its diagonal.
void FindModes(Run& run, int count, const std::vector<Support>& supports, const Column& MassDiagonal, ItemWriter& eig) {
  std::vector<Column> modes;
  IterationHistory history;
  for (int mode = 1; mode <= count; ++mode) {
    run.form2.Label8.caption = std::to_string(mode);
    run.display.Refresh(run.form2);
    if (mode == 1) FactorMatrix(run, supports, MassDiagonal);
    modes.push_back(IterateMode(run, supports, modes, history));
    run.report.periods.push_back(PeriodOf(history.L0, run.pi));
    WriteMode(eig, run.report.periods.back(), modes.back());
  }
  if (count > 0) LoadSupportedMatrix(run, supports);
}

void SolveEigenModes(Run& run) {
  run.pi = ShortPi;
  TakeControlFile(run);
  OpenElementRecords(run);
  const std::vector<int> loadCaseTypes = ReadLoadCaseTypes(run);
  const Column MassDiagonal = AssembleMasses(run, loadCaseTypes);
  ShowStatus(run, "Loading mass matrix");

  DeleteFile(run.File(".EIG"));
  ItemWriter eig(run.File(".EIG"), Unfinished::Keep);
  eig.Line(run.analysisCode, run.sizes.NodeCount);
  const std::vector<Support> supports = ReadSupports(run, run.File(".VPL"));
  const int free = run.sizes.EquationCount() - static_cast<int>(supports.size());
  WarnOfUnequalMasses(run, MassDiagonal, supports);
  WarnOfEigenModel(run, supports);
  FindModes(run, std::min(MostModes, free), supports, MassDiagonal, eig);
  eig.Close();
}

}  // namespace

void RunEigenStage(Run& run) {
  BeginStage(run, "Freq 1.0", "0 %");
  if (const auto failure = Attempt([&] { SolveEigenModes(run); })) {
    run.display.MessageBox(failure->what());
    run.display.MessageBox(std::to_string(failure->line));
    run.display.Explain(NoticeOf(run.form2.Frame1.caption, *failure));
    throw ProgramEnd{ExitStatusOf(*failure)};
  }
}

}  // namespace velmor
