// The Nodal Force stage: stiffness times displacements less the loads, to NAME.KRT.

#include <algorithm>
#include <string>

#include "base/item_writer.hpp"
#include "elements/matrix_file.hpp"
#include "results/band_product.hpp"
#include "run/failure_answer.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "solve/load_assembly.hpp"

namespace velmor {
namespace {

/// A number as print statements have it, a blank (or minus) before it and a blank after.
std::string Printed(int value) {
  std::string text = value < 0 ? "" : " ";
  text += std::to_string(value);
  return text += " ";
}

/// The same, padded with blanks to a print zone of 14 columns.
std::string PrintZone(int value) {
  constexpr std::size_t width = 14;
  std::string text = Printed(value);
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

/// Stiffness times displacements. The matrix passes through the cache a few rows at a time and is never in memory as a
/// whole.
Grid MultiplyByDisplacements(Run& run, MatrixReader& matrix) {
  constexpr int cacheSize = 1 << 19, leastRows = 512;  // numbers; so many of a column fill a page of the file
  constexpr int rowsPerRefresh = 100;
  const int equations = run.sizes.EquationCount();
  BandMatrix window(std::max(cacheSize / (run.sizes.BandBound() + 1), leastRows), run.sizes.BandBound());
  Grid forces(run.LoadCaseCount, run.sizes.EquationBound());
  for (int first = 1; first <= equations; first += window.EquationBound()) {
    const int last = std::min(first + window.EquationBound() - 1, equations);
    matrix.ReadRows(first, last, window);
    for (int e = first; e <= last; ++e) {
      if (e % rowsPerRefresh == 0 || e == equations) {
        run.form2.Label8.caption =
            PercentText(static_cast<double>(e) / run.sizes.NodeCount / run.sizes.DofPerNode * 100);
        run.display.Refresh(run.form2);
      }
      MultiplyRow(window.Row(e - first), e, run.LoadTable, forces);
    }
  }
  return forces;
}

void WriteNodalForces(Run& run, const Grid& forces) {
  const ModelSizes& sizes = run.sizes;
  ItemWriter file(run.File(".KRT"), Unfinished::Keep);
  file.Print(PrintZone(sizes.NodeCount) + PrintZone(run.analysisCode));
  file.EndLine();
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    Row<double, 6> totals;
    for (int n = 1; n <= sizes.NodeCount; ++n) {
      file.Print(Printed(n));
      for (int k = 1; k <= sizes.DofPerNode; ++k) {
        const int e = sizes.Equation(n, k);
        const double force = forces(c, e) - run.LoadTable(c, e);
        totals(k) += force;
        file.Item(force);
      }
      file.EndLine();
    }
    file.Item(0);
    for (int k = 1; k <= sizes.DofPerNode; ++k) {
      file.Item(totals(k));
      run.report.loadCases[static_cast<std::size_t>(c - 1)].reaction[static_cast<std::size_t>(k)] = totals(k);
    }
    file.EndLine();
    file.Line("END");
  }
  file.Close();
  run.report.hasReactions = true;
}

void ComputeNodalForces(Run& run) {
  TakeControlFile(run);
  OpenElementRecords(run);
  run.form2.Label7.caption = "Reading Stiffness Matrix from file";
  ShowMatrixSize(run, run.sizes.EquationBound());
  if (run.LoadTable.Cols() != run.sizes.EquationBound()) {
    throw Failure(error::SubscriptOutOfRange, "the displacements in memory do not fit " + run.File(".DAT"));
  }
  run.GlobalBand = BandMatrix();
  MatrixReader matrix(run.File(".MAT"), run.sizes.EquationBound(), run.sizes.BandBound(), run.sizes.EquationCount(),
                      run.sizes.BandInput);

  ShowStatus(run, "Calculating Nodal Forces");
  const Grid forces = MultiplyByDisplacements(run, matrix);
  AssembleLoads(run);
  WriteNodalForces(run, forces);
}

}  // namespace

void RunNodalForceStage(Run& run) {
  BeginStage(run, "Nodal Force 1.0", "0 %");
  if (const auto failure = Attempt([&] { ComputeNodalForces(run); })) {
    ShowFailure(run, *failure);
    run.display.MessageBox("PROCESS STOPPED");
    run.display.Explain(NoticeOf("Nodal Force 1.0", *failure));
    NoteFailure(run, *failure);
  }
}

}  // namespace velmor
