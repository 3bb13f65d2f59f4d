// The Line Element stress stage: end stresses of bars, gaps and beams to NAME.LES.

#include "base/item_writer.hpp"
#include "elements/line_elements.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "results/line_stress.hpp"
#include "results/stress_support.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

constexpr int MostMaterials = 500;

/// The element at hand.
struct StressedLine {
  Run& run;
  int loadCase;
  LineRecord record;

  const Material& OwnMaterial() const { return LoadMaterial(run.materials, record.material); }
  Vector3 Translation(std::size_t end) const { return run.displacements.Translation(loadCase, record.nodes[end]); }
  Vector3 Rotation(std::size_t end) const { return run.displacements.Rotation(loadCase, record.nodes[end]); }
};

StressedLine ReadLine(Run& run, ItemReader& dat, int loadCase, int type) {
  return {run, loadCase, ReadLineRecord(dat, type, run.sizes.NodeCount)};
}

double AxialStressOf(const StressedLine& line) {
  const DisplacementTable& U = line.run.displacements;
  U.Require(U.isSpatial ? 3 : 2);
  const Vector3 change = line.Translation(1) - line.Translation(0);
  return AxialStress(line.OwnMaterial().E, Dot(change, line.record.cosines), line.record.length);
}

/// Deflections and rotations of a beam in the plane of the model, or along its turned section axes.
PlaneMotion MotionInPlane(const StressedLine& line) {
  const DisplacementTable& U = line.run.displacements;
  U.Require(3);
  const Vector3 across{-line.record.cosines.y, line.record.cosines.x, 0};
  const auto& [n1, n2] = line.record.nodes;
  return {Dot(line.Translation(0), across), U(line.loadCase, n1, 3), Dot(line.Translation(1), across),
          U(line.loadCase, n2, 3)};
}

PlaneMotion MotionAlongSection(const StressedLine& line, BendingPlane plane) {
  line.run.displacements.Require(6);
  const double angle = line.OwnMaterial().rotation * line.run.pi / 180;
  const BendingAxes axes = BendingAxesOf(TurnedSectionAxes(line.record.cosines, angle), plane);
  return {Dot(line.Translation(0), axes.deflection), Dot(line.Rotation(0), axes.rotation),
          Dot(line.Translation(1), axes.deflection), Dot(line.Rotation(1), axes.rotation)};
}

PlaneEndStress BendingStressOf(const StressedLine& line, BendingPlane plane, double I, double W) {
  const bool inPlane = line.run.analysisCode == 2;
  const PlaneMotion motion = inPlane ? MotionInPlane(line) : MotionAlongSection(line, plane);
  const Material& m = line.OwnMaterial();
  return BeamPlaneStress(motion, m.E, m.A, I, W, line.record.length);
}

void WarnOfStatelessGap(Run& run) {
  if (!run.gapFlag) Warn(run, "model: gaps outside a gap run count as closed: their stress is E times their strain");
}

/// A bar, or a gap open or closed: the state of a gap is the part of its stiffness that holds.
LineStress StressOfBar(const StressedLine& line, int record) {
  LineStress stress;
  stress.axial = AxialStressOf(line) * line.run.model.State(record);
  return stress;
}

LineStress StressOfBeam(const StressedLine& line) {
  const Material& m = line.OwnMaterial();
  LineStress stress;
  stress.first = BendingStressOf(line, BendingPlane::First, m.Iz, m.Wz);
  if (line.run.analysisCode == 3) stress.second = BendingStressOf(line, BendingPlane::Second, m.Iy, m.Wy);
  stress.axial = AxialStressOf(line);
  return stress;
}

/// Items of one end, axial stress to equivalent stress; the second plane stands before the first in shear stress.
void WriteEnd(ItemWriter& les, const LineStress& stress, int end) {
  les.Line(stress.axial, 0, 0, stress.first.shear(end), stress.second.shear(end), 0, 0, stress.second.bending(end),
           stress.first.bending(end), 0, 0, 0, stress.Equivalent(end));
}

void WriteLineStress(ItemWriter& les, int record, const StressedLine& line, const LineStress& stress) {
  for (const int item : {record, line.record.nodes[0], line.record.nodes[1], 0}) les.Item(item);
  WriteEnd(les, stress, 1);
  WriteEnd(les, stress, 2);
}

void WriteElementStress(Run& run, ItemReader& dat, ItemWriter& les, int loadCase, int record, int type) {
  switch (type) {
    case 1:
    case 14: {
      if (type == GapType) WarnOfStatelessGap(run);
      const StressedLine line = ReadLine(run, dat, loadCase, type);
      return WriteLineStress(les, record, line, StressOfBar(line, record));
    }
    case 7: {
      const StressedLine line = ReadLine(run, dat, loadCase, type);
      return WriteLineStress(les, record, line, StressOfBeam(line));
    }
    default:
      break;
  }
  if (RecordFormOf(type) == RecordForm::Quadrilateral) {
    LoadMaterial(run.materials, ReadQuadrilateralRecord(dat, type, run.sizes.NodeCount).material);
  } else {
    PassRecord(dat, type, run.sizes.NodeCount);
  }
}

void WriteLineStresses(Run& run) {
  TakeControlFile(run);
  run.materials = ReadMaterials(run.File(".MLT"), MostMaterials, MaterialPart::Fields);
  if (!run.displacements.isRead) ReadDisplacements(run);
  ItemWriter les(run.File(".LES"), Unfinished::Keep);
  std::optional<ItemReader> file;
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    ItemReader& dat = BeginLoadCase(run, file);
    ForEachElementRecord(run, dat, run.nsa.Label6,
                         [&](int record, int type) { WriteElementStress(run, dat, les, c, record, type); });
    les.Line("END");
  }
  les.Close();
}

}  // namespace

void RunLineStressStage(Run& run) {
  BeginStressStage(run, "Line Element stress 3.1");
  if (const auto failure = Attempt([&] { WriteLineStresses(run); })) {
    ShowStageError(run, *failure);
    run.display.MessageBox("Error occured");
    run.display.Explain(NoticeOf(run.nsa.Frame1.caption, *failure));
    NoteFailure(run, *failure);
  }
}

}  // namespace velmor
