// Start-up, the sequence of the stages, the manual path, and the ends of a run.

#include "run/run_controller.hpp"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <initializer_list>
#include <system_error>
#include <vector>

#include "base/file_system.hpp"
#include "base/interruption.hpp"
#include "model/model_scan.hpp"
#include "run/analysis_options.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "run/summary.hpp"

namespace velmor {
namespace {

constexpr const char* ProgramVersion = "3.2";

std::string Caption() { return std::string("Velmor ") + ProgramVersion; }

/// Defaults and working-space values; nothing of an earlier run stays but the windows' texts.
void StartUp(Run& run) {
  static_cast<RunState&>(run) = RunState{};
  bool readable = true;
  run.modelSizeValues = ReadModelSizeValues(run.programFolder, readable);
  if (!readable) {
    run.display.MessageBox(
        "Error reading Model size. Set your default model size!!  Use [File,Model size..] from the main menu");
  }
  run.form1.Command1.visible = run.form1.Command2.visible = run.form1.Command3.visible = false;
}

/// Deletes the stress results of an earlier run; a file that does not exist is no error.
void CleanUpStressResults(Run& run) {
  for (const char* extension : {".RSA", ".RLA", ".NSR", ".NSL", ".NSA", ".NLA", ".GSR", ".LSR", ".LES"}) {
    if (DeleteFile(run.File(extension))) continue;
    std::error_code error;  // in a folder that lets no file go it is emptied
    std::filesystem::resize_file(FindFile(run.File(extension)), 0, error);
    if (error) Warn(run, run.File(extension) + " of an earlier run cannot be deleted");
  }
}

/// Runs a stage, keeps its time, and notes which of its files it has written.
void RunStage(Run& run, const char* name, void (*stage)(Run&), std::initializer_list<const char*> extensions) {
  std::vector<FileStamp> before;
  for (const char* extension : extensions) before.push_back(StampOf(run.File(extension)));
  const auto start = std::chrono::steady_clock::now();
  stage(run);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  run.report.stages.push_back({name, seconds.count()});
  auto older = before.begin();
  for (const char* extension : extensions) {
    const FileStamp stamp = StampOf(run.File(extension));
    if (stamp == *older++ || stamp == FileStamp{}) continue;
    const std::string file = FindFile(run.File(extension));
    auto& files = run.report.files;
    if (std::find(files.begin(), files.end(), file) == files.end()) files.push_back(file);
  }
}

/// The load routine of the stress window, with which every complete run ends.
[[noreturn]] void LoadNsa(Run& run) {
  run.display.Refresh(run.nsa);
  CleanUpStressResults(run);
  const auto failure = Attempt([&] {
    ItemReader lcd(run.File(".lcd"));
    run.LoadCaseCount = ReadLoadCaseCount(lcd);
    // The count alone will do, unless it is one for which the stages would write empty blocks for hours.
    constexpr int mostUnlisted = 1000;
    if (run.LoadCaseCount > mostUnlisted) lcd.ExpectItems(run.LoadCaseCount, 1, "load cases");
  });
  if (failure) EndAfterFailure(run, *failure, run.nsa.caption);
  if (IsOn(run.flags.LineStressFlag)) RunStage(run, "Line Element stress", RunLineStressStage, {".LES"});
  if (IsOn(run.flags.FEStressFlag)) {
    RunStage(run, "Nodal Stress", RunNodalStressStage, {".NSR", ".NSL"});
    RunStage(run, "Nodal Stress Average", RunStressAverageStage, {".NSA", ".NLA", ".RSA", ".RLA"});
  }
  run.report.isComplete = true;
  EndProgram(run, run.exitStatus);
}

/// The load routine of form2: the run sequence behind the Kol stage.
[[noreturn]] void LoadForm2(Run& run) {
  run.form2.caption = Caption();
  if (IsOn(run.flags.CompileStiffnessFlag)) RunStage(run, "EEM", RunStiffnessStage, {".MAT", ".GPD"});
  if (IsOn(run.flags.MassFlag)) RunStage(run, "Mass", RunMassStage, {".MAS", ".EMS"});
  if (IsOn(run.flags.EigenFlag)) RunStage(run, "Freq", RunEigenStage, {".EIG"});
  if (run.gapFlag) {
    RunStage(run, "Non-Linear", RunGapStage, {".RVP", ".GPD"});
  } else if (IsOn(run.flags.SolveFlag)) {
    RunStage(run, "Sys", RunSysStage, {".RVP"});
    RunStage(run, "Nodal Force", RunNodalForceStage, {".KRT"});
  }
  LoadNsa(run);
}

/// The load routine of the main window; returns only where a person has to go on at the buttons.
void LoadForm1(Run& run) {
  HideFailure(run.form1);
  StartUp(run);
  run.form1.caption = Caption();
  RunStage(run, "Kol", RunKolStage, {});  // the stage learns the model's name, so that its file is noted here
  if (PreparesModel(run.flags) && FileSize(run.File(".DAT")) >= 0)
    run.report.files.push_back(FindFile(run.File(".DAT")));
  if (!run.stopFlag) LoadForm2(run);
  run.form1.Command1.visible = run.form1.Command2.visible = run.form1.Command3.visible = true;
  run.display.Refresh(run.form1);
}

/// Browse: the model path is the chosen path without its last four characters, the extension with its point.
void Browse(Run& run) {
  const auto chosen = run.display.OpenFile(run.form1.CMDialog1);
  if (!chosen) return;
  run.modelName = chosen->substr(0, chosen->size() - std::min<std::size_t>(chosen->size(), 4));
  run.form1.Text4.text = run.modelName;
  run.display.Refresh(run.form1);
}

void ShowOptions(Run& run) {
  OptionsWindow window;
  RestrictOptions(window);
  OpenOptions(window, run.flags, run.twoDimensional);
  run.display.ShowModal(window);
  TakeOptions(window, run.flags, run.twoDimensional);
}

/// Run: settles the analysis code by a scan of the model and writes EEM.CTR, through which alone the options reach the
/// run. Returns false, with the reason on the display, if there is no model to scan.
bool WriteManualControlFile(Run& run) {
  const auto failure = Attempt([&] {
    const ElementTypeTable types = ReadElementTypes(run.programFolder);
    const int code = ScanAnalysisCode(run.File(".tek"), types, run.twoDimensional != 0);
    WriteControlFile(run.programFolder, {run.modelName, code, run.flags});
  });
  if (failure) run.display.Explain(NoticeOf("Run", *failure));
  return !failure;
}

/// The main window with its buttons, until a run ends the program or the window is closed.
[[noreturn]] void ServeMainWindow(Run& run) {
  for (;;) {
    switch (run.display.WaitForUser(run.form1)) {
      case MainWindowAction::Browse:
        Browse(run);
        break;
      case MainWindowAction::Options:
        ShowOptions(run);
        break;
      case MainWindowAction::Run:
        if (WriteManualControlFile(run)) LoadForm1(run);
        break;
      case MainWindowAction::Close:
        EndProgram(run, run.exitStatus != exit_status::Complete ? run.exitStatus : exit_status::StartUp);
    }
  }
}

}  // namespace

int RunProgram(Display& display, const std::string& programFolder) {
  Run run(display, programFolder);
  try {
    LoadForm1(run);
    ServeMainWindow(run);
  } catch (const ProgramEnd& end) {
    if (run.report.isComplete) run.display.ShowSummary(Summary(run));
    return end.status;
  } catch (const Interrupted& interrupted) {
    DeleteControlFile(run);
    return 128 + interrupted.signal;
  }
}

}  // namespace velmor
