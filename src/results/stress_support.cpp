#include "results/stress_support.hpp"

#include "model/element_records.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/stage_support.hpp"

namespace velmor {

void BeginStressStage(Run& run, const char* caption) {
  run.nsa.Frame1.caption = caption;
  run.display.Refresh(run.nsa);
}

void ShowStageError(Run& run, const Failure& failure) {
  run.nsa.Label10 = {"Error No.", true};
  run.nsa.Label11 = {"Error line", true};
  run.nsa.Text2 = {std::to_string(failure.line), true};
  run.nsa.Text3 = {std::to_string(failure.number), true};
  run.display.Refresh(run.nsa);
}

void EndStressRun(Run& run, const Failure& failure) {
  ShowStageError(run, failure);
  run.display.MessageBox("Error occured");
  run.display.MessageBox(" NOT CORRECTLY STARTED");
  run.display.Explain(NoticeOf(run.nsa.Frame1.caption, failure));
  EndProgram(run, ExitStatusOf(failure));
}

std::string StressPercent(int part, int whole, std::source_location where) {
  if (whole == 0) throw Failure(error::DivisionByZero, "element records behind a count of 0", where);
  return " " + std::to_string(100LL * part / whole) + "%";
}

void WarnOfMissingRecords(Run& run, const ItemReader& dat, int records) {
  Warn(run, dat.Path() + ": the file ends after " + std::to_string(records) + " of " +
                std::to_string(run.sizes.ElementCount) + " element records: the rest has no stresses");
}

ItemReader& BeginLoadCase(Run& run, std::optional<ItemReader>& dat) {
  if (!dat) return dat.emplace(OpenElementRecords(run));
  dat->Rewind();
  dat->Skip(3, "head of the element records");
  return *dat;
}

}  // namespace velmor
