// The EEM stage: element records and materials to GlobalBand and NAME.MAT.

#include <string>

#include "elements/assembly.hpp"
#include "elements/four_node.hpp"
#include "elements/gap_list.hpp"
#include "elements/line_elements.hpp"
#include "elements/matrix_file.hpp"
#include "elements/triangle.hpp"
#include "model/element_types.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

/// Reads the rest of an element record and adds the element to GlobalBand. A new family is one line here.
void DispatchElement(Run& run, ItemReader& dat, int type, GapList& gaps) {
  const RecordForm form = RecordFormOf(type);
  if (form == RecordForm::Triangle) return Triangle(run, dat, type);
  if (form == RecordForm::Quadrilateral) return FourNodeElement(run, dat, type);
  switch (type) {
    case 1:
      return Bar(run, dat, type);
    case 7:
      return Beam(run, dat, type);
    case 14:
      Gap(run, dat, type, gaps);
      return;
    case 16:
      return NodalSpring(run, dat, type);
    case 17:
      return TransverseBar(run, dat, type);
    default:
      throw Failure(error::SubscriptOutOfRange,
                    dat.Describe("element type ") + std::to_string(type) + " has no stiffness routine");
  }
}

void AssembleStiffness(Run& run) {
  run.flags.EigenFlag = TakeControlFile(run).flags.EigenFlag;
  ItemReader dat = OpenElementRecords(run);
  ShowMatrixSize(run, run.sizes.EquationBound());
  run.GlobalBand = BandMatrix(run.sizes.EquationBound(), run.sizes.BandBound());
  run.MassVector = Column(run.sizes.EquationBound());
  run.materials = ReadMaterials(run.File(".MLT"), run.modelSizeValues.MaterialLimit(), MaterialPart::FieldsAndSprings);

  ShowStatus(run, "Generating Stiffness Matrix ");
  GapList gaps(run.File(".GPD"));
  run.work.plateTable.loaded = false;
  for (int record = 1; record <= run.sizes.ElementCount; ++record) {
    run.form2.Label8.caption = std::to_string(record);
    run.display.Refresh(run.form2);
    const int type = dat.Whole("element type");
    ClearElementAxes(run);
    WithRecord(record, type, [&] { DispatchElement(run, dat, type, gaps); });
  }
  gaps.Close();
  WarnOfStiffness(run);

  ShowStatus(run, "Saving Matrix");
  SaveMatrix(run.GlobalBand, run.File(".MAT"));
}

}  // namespace

void RunStiffnessStage(Run& run) {
  BeginStage(run, "EEM 3.1");
  if (const auto failure = Attempt([&] { AssembleStiffness(run); })) EndAfterFailure(run, *failure);
}

}  // namespace velmor
