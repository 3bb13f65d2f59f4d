#include "nonlinear/gap_iteration.hpp"

#include <cmath>

#include "elements/assembly.hpp"
#include "elements/gap_list.hpp"
#include "elements/line_elements.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "results/displacements.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"

namespace velmor {
namespace {

constexpr int MostMaterials = 500;
constexpr double SettledFactor = 0.01;  // change of a gap's factor in one more pass: below, the gap has settled
constexpr double LimitMargin = 0.01;    // of a gap's limit: what counts as reaching it when the passes are over

/// Displacement of a node in load case 1, as the pass before left it.
Vector3 NodeDisplacement(const Run& run, int node) {
  const auto u = [&](int k) { return run.LoadTable(1, run.sizes.Equation(node, k)); };
  return {u(1), u(2), IsSpatial(run.analysisCode) ? u(3) : 0};
}

double Elongation(const Run& run, const LineRecord& gap) {
  return Dot(NodeDisplacement(run, gap.nodes[1]) - NodeDisplacement(run, gap.nodes[0]), gap.cosines);
}

/// Adds a gap element and returns its factor.
double AddGap(Run& run, ItemReader& dat, int record, GapList& gaps) {
  const LineRecord gap = Gap(run, dat, GapType, gaps);
  const Material& m = run.materials.active;
  const double s = run.GapPass == 0 ? 1 : GapFactor(Elongation(run, gap), m.rotation, run.model.State(record));
  AssembleAxialPiece(run, gap.cosines, AxialStiffness(m.E, m.A, gap.length) * s);
  return s;
}

void PassOtherRecord(Run& run, ItemReader& dat, int type) {
  if (type == TrimsType) run.display.MessageBox("TRIMS ELEMENT IS NOT SUPPORTED");
  PassRecord(dat, type, run.sizes.NodeCount);
}

}  // namespace

double GapFactor(double D, double g, double factor, std::source_location where) {
  if (-D > g) return 0;
  return -(factor * Divide(D, g, where));
}

void GapStiffnessPass(Run& run) {
  run.form2.Frame1.caption = "Gap";
  ShowStatus(run, "Declaring working Space");
  TakeControlFile(run);
  ItemReader dat = OpenElementRecords(run);
  ShowMatrixSize(run, run.sizes.EquationBound());
  run.materials = ReadMaterials(run.File(".MLT"), MostMaterials, MaterialPart::Fields);
  if (run.model.elementState.Size() < run.sizes.ElementCount) {
    throw Failure(error::SubscriptOutOfRange, dat.Path() + " has more element records than the model");
  }

  ShowStatus(run, "Generating Stiffness Matrix ");
  GapList gaps(run.File(".GPD"));
  double s = 1;
  for (int record = 1; record <= run.sizes.ElementCount; ++record) {
    run.form2.Label8.caption = Percent(record, run.sizes.ElementCount);
    run.display.Refresh(run.form2);
    const int type = dat.Whole("element type");
    ClearElementAxes(run);
    WithRecord(record, type, [&] {
      if (type == GapType) {
        s = AddGap(run, dat, record, gaps);
      } else {
        PassOtherRecord(run, dat, type);
      }
    });
    run.model.elementState(record) = type == BarType ? 1 : s;
  }
  gaps.Close();
  ShowStatus(run, "Saving Matrix");  // nothing is saved: the band stays in memory
}

void ReportGaps(Run& run) {
  ItemReader dat = OpenElementRecords(run);
  Finding lost, pulling, unsettled;
  for (int record = 1; record <= run.sizes.ElementCount; ++record) {
    const int type = dat.Whole("element type");
    if (type != GapType) {
      PassRecord(dat, type, run.sizes.NodeCount);
      continue;
    }
    const LineRecord gap = ReadLineRecord(dat, type, run.sizes.NodeCount);
    const double limit = LoadMaterial(run.materials, gap.material).rotation;
    const double shortening = -Elongation(run, gap);
    ++run.report.gaps;
    const double factor = run.model.State(record);
    const bool settled = limit == 0 || std::abs(factor - GapFactor(-shortening, limit, factor)) < SettledFactor;
    if (!settled) {
      unsettled.Note(record);
    } else if (shortening < limit * (1 - LimitMargin)) {
      ++run.report.openGaps;
    } else if (shortening > limit * (1 + LimitMargin)) {
      lost.Note(record);
    } else if (factor < 0) {
      pulling.Note(record);
    }
  }
  WarnOfGaps(run, lost, pulling, unsettled);
  WarnOfWeakPivots(run);
}

void CompareDisplacements(Run& run) {
  DisplacementFile before(run);
  Column old(before.CaseLength());
  before.ReadCase(&old(0));
  run.GapChange = 0;
  for (int e = 1; e <= old.Size(); ++e) {
    const double difference = old(e) - run.LoadTable(1, e);
    run.GapChange += difference * difference;
  }
}

void ReloadSolution(Run& run) {
  if (run.LoadCaseCount < 1) throw Failure(error::SubscriptOutOfRange, "a gap needs a load case");
  DisplacementFile solution(run);
  solution.ExpectCases(run.LoadCaseCount);
  for (int c = 1; c <= run.LoadCaseCount; ++c) solution.ReadCase(run.LoadTable.RowStart(c));
}

}  // namespace velmor
