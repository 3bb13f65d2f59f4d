#include "run/control_file.hpp"

#include <algorithm>

#include "base/failure.hpp"
#include "base/item_reader.hpp"
#include "base/item_writer.hpp"

namespace velmor {

ControlFile ReadControlFile(const std::string& programFolder, std::source_location where) {
  const std::string path = programFolder + ControlFileName;
  try {
    ItemReader file(path, where);
    ControlFile control;
    control.modelName = file.Text("model path", where);
    if (std::any_of(control.modelName.begin(), control.modelName.end(), [](char c) { return 0 <= c && c < ' '; })) {
      throw Failure(error::TypeMismatch, file.Describe("model path holds a control character"), where);
    }
    control.flags.EigenFlag = file.Whole("Eigen flag", where);
    control.flags.MassFlag = file.Whole("Mass flag", where);
    control.analysisCode = file.Whole("analysis code", where);
    control.flags.RenumberFlag = file.Whole("Renumber flag", where);
    control.flags.CompileStiffnessFlag = file.Whole("Compile Stiffness flag", where);
    control.flags.SolveFlag = file.Whole("Solve flag", where);
    control.flags.LineStressFlag = file.Whole("Line stress flag", where);
    control.flags.FEStressFlag = file.Whole("FE stress flag", where);
    return control;
  } catch (const Failure& failure) {
    throw Failure(Cause::ControlFile, failure.number, failure.what(), path, where);
  }
}

void WriteControlFile(const std::string& programFolder, const ControlFile& control) {
  ItemWriter file(programFolder + ControlFileName);
  const AnalysisFlags& flags = control.flags;
  file.Line(control.modelName);
  file.Line(flags.EigenFlag, flags.MassFlag, control.analysisCode, flags.RenumberFlag, flags.CompileStiffnessFlag,
            flags.SolveFlag, flags.LineStressFlag, flags.FEStressFlag);
  file.Close();
}

}  // namespace velmor
