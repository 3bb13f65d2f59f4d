#include "run/stage_support.hpp"

#include <string>

#include "base/file_system.hpp"
#include "elements/matrix_file.hpp"
#include "model/element_records.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"

namespace velmor {

ControlFile TakeControlFile(Run& run, std::source_location where) {
  ControlFile control = ReadControlFile(run.programFolder, where);
  run.modelName = control.modelName;
  run.analysisCode = control.analysisCode;
  run.DofPerNode = DofPerNodeOf(control.analysisCode);
  const int eigenFlag = run.flags.EigenFlag;
  run.flags = control.flags;
  run.flags.EigenFlag = eigenFlag;
  return control;
}

ItemReader OpenElementRecords(Run& run, std::source_location where) {
  ItemReader dat(run.File(".DAT"), where);
  run.sizes = ReadModelSizes(dat, run.DofPerNode, run.model.nodeCount, where);
  return dat;
}

void LoadGlobalBand(Run& run, std::source_location where) {
  run.GlobalBand = BandMatrix();
  run.GlobalBand = BandMatrix(run.sizes.EquationBound(), run.sizes.BandBound());
  LoadMatrix(run.GlobalBand, run.File(".MAT"), run.sizes.EquationCount(), run.sizes.BandInput, where);
}

void BeginStage(Run& run, const char* caption, const char* percent) {
  run.form2.Frame1.caption = caption;
  HideFailure(run.form2);
  if (percent != nullptr) run.form2.Label8.caption = percent;
  ShowStatus(run, "Declaring working Space");
}

void ShowStatus(Run& run, const char* status) {
  run.form2.Label7.caption = status;
  run.display.Refresh(run.form2);
}

void ShowMatrixSize(Run& run, int bound) {
  const ModelSizes& sizes = run.sizes;
  run.form2.Text2.text = std::to_string(bound - sizes.DofPerNode);
  run.form2.Text3.text = std::to_string(sizes.BandInput);
  run.form2.Text4.text = std::to_string(static_cast<long long>(bound / 1024.0 * sizes.BandBound() * 4)) + " kB";
  run.display.Refresh(run.form2);
}

Failure OfRecord(const Failure& failure, int record, int type) {
  Failure named = failure;
  static_cast<std::runtime_error&>(named) = std::runtime_error(
      "element record " + std::to_string(record) + " of type " + std::to_string(type) + ": " + failure.what());
  return named;
}

void NoteFailure(Run& run, const Failure& failure) {
  if (run.exitStatus == exit_status::Complete) run.exitStatus = ExitStatusOf(failure);
}

void ShowFailure(Run& run, const Failure& failure) {
  run.form2.Label5 = {"Error No.", true};
  run.form2.Label6 = {"Error line", true};
  run.form2.Text5 = {std::to_string(failure.number), true};
  run.form2.Text6 = {std::to_string(failure.line), true};
  run.display.Refresh(run.form2);
}

void EndAfterFailure(Run& run, const Failure& failure, const std::string& stage) {
  const auto tell = [&](std::initializer_list<std::string> messages) {
    for (const std::string& message : messages) run.display.MessageBox(message);
  };
  switch (failure.cause) {
    case Cause::MissingFile:
      tell({"FILE NOT FOUND: " + failure.path, "FATAL ERROR, RUN ABORTED"});
      break;
    case Cause::ControlFile:
      tell({"NOT CORRECTLY STARTED"});
      break;
    case Cause::NoMaterials:
      tell({"NO MATERIALS DEFINED", "FATAL ERROR, RUN ABORTED"});
      break;
    case Cause::BandMemory:
      tell({"Out of Memory, Reduce size of declaired model"});
      break;
    case Cause::SingularBand:
      tell({"MATRIX IS SINGULAR", "THE CONSTRUCTIE HAS A MECHANISM"});
      break;
    case Cause::NoPlateTable:
      tell({"PLAT.ELM NOT FOUND"});
      break;
    case Cause::General:
      ShowFailure(run, failure);
      tell({"CALCULATION STOPPED"});
      break;
  }
  run.display.Explain(NoticeOf(stage, failure));
  EndProgram(run, ExitStatusOf(failure));
}

void EndAfterFailure(Run& run, const Failure& failure) { EndAfterFailure(run, failure, run.form2.Frame1.caption); }

void DeleteControlFile(Run& run) {
  if (DeleteFile(run.programFolder + ControlFileName)) return;
  Warn(run, std::string(ControlFileName) + " cannot be deleted: the next start would run its model again");
}

void EndProgram(Run& run, int status) {
  DeleteControlFile(run);
  throw ProgramEnd{status};
}

}  // namespace velmor
