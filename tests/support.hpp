#pragma once

#include <array>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/table.hpp"
#include "models/model.hpp"
#include "models/model_files.hpp"
#include "run/analysis_options.hpp"
#include "run/control_file.hpp"
#include "run/display.hpp"

namespace velmor::testing {

/// A display that keeps what it is shown and answers at the main window from a list.
class RecordingDisplay : public Display {
 public:
  void Refresh(const MainWindow& window) override;
  void Refresh(const ProgressWindow& window) override;
  void Refresh(const StressWindow& window) override;
  void MessageBox(const std::string& text) override { messages.push_back(text); }
  void Warning(const std::string& text) override { warnings.push_back(text); }
  void Explain(const FailureNotice& notice) override { notices.push_back(notice); }
  MainWindowAction WaitForUser(const MainWindow& window) override;
  std::optional<std::string> OpenFile(const FileDialog& dialog) override;
  void ShowModal(OptionsWindow& window) override;
  void ShowSummary(const std::vector<std::string>& lines) override { summary = lines; }

  /// True if a warning tells that something was skipped or left out, not only what the model asks of the elements.
  bool Warned() const;

  std::vector<std::string> messages, warnings;
  std::vector<FailureNotice> notices;
  std::vector<std::string> stages;    // captions of Frame1 in the order in which they came up
  std::vector<std::string> statuses;  // the same of the status lines, as "EEM 3.1: Saving Matrix"
  MainWindow form1;                   // the windows as last shown
  ProgressWindow form2;
  StressWindow nsa;

  std::deque<MainWindowAction> actions;  // what the person does next; Close when there is no more
  std::deque<std::string> paths;         // what the person picks in the file-open dialog
  std::vector<OptionsBox> clicks;        // in the options window
  std::vector<std::string> summary;
  int waits = 0;  // times that the main window waited

 private:
  void Note(const std::string& stage, const std::string& status);
};

using models::ReadText;
using models::WriteText;

/// The text so many times.
std::string Repeated(int count, const std::string& text);

/// A model with the flags of its run; Folder writes its file family.
struct Model : models::Model {
  AnalysisFlags flags{.LineStressFlag = 0, .FEStressFlag = 0};
};

/// The numbers of NAME.RVP or NAME.KRT: value(load case, node, freedom), all from 1.
struct NodalValues {
  int nodes = 0, freedoms = 0;
  std::vector<std::vector<double>> cases;   // node after node
  std::vector<std::vector<double>> totals;  // NAME.KRT alone
  double operator()(int c, int n, int k) const {
    return cases.at(static_cast<std::size_t>(c - 1)).at(static_cast<std::size_t>((n - 1) * freedoms + k - 1));
  }
};

/// A fresh folder with a program folder (ELTYP.DAT, decmem.DAT, PLAT.ELM as delivered) and a model named "model"; gone
/// with the object.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string Program(const std::string& file = "") const { return (root_ / "program").string() + "/" + file; }
  /// Path of the model file with an extension such as ".TEK"; without one the model path of EEM.CTR.
  std::string File(const std::string& extension = "") const { return (root_ / "model").string() + extension; }
  bool Has(const std::string& extension) const { return std::filesystem::exists(File(extension)); }
  void Write(const std::string& extension, const std::string& text) const { WriteText(File(extension), text); }
  /// The text of a file, empty if there is none.
  std::string Read(const std::string& extension) const;
  void Remove(const std::string& extension) const { std::filesystem::remove(File(extension)); }
  void WriteControl(int analysisCode, const AnalysisFlags& flags) const;

  /// Writes the whole family of a model, EEM.CTR included.
  void Write(const Model& model) const;
  /// Takes the file family of a model of examples/, EEM.CTR included.
  void WriteExample(const std::string& name) const;
  /// Runs the program in this process; returns its exit status.
  int Run(RecordingDisplay& display) const;
  /// Runs the program on a model that must come to its end without a message and without anything skipped or left out;
  /// fails the test otherwise. Returns the warnings about the model itself, which a test may look at or leave.
  std::vector<std::string> Solve() const;
  /// Writes a model first, then the same.
  std::vector<std::string> Solve(const Model& model) const;

  NodalValues Displacements() const;  // NAME.RVP
  NodalValues Reactions() const;      // NAME.KRT
  /// The lines of a result file as numbers, by load case, each of which "END" must close.
  using LoadCases = std::vector<std::vector<std::vector<double>>>;
  LoadCases Blocks(const std::string& extension) const;
  /// The whole stiffness matrix of NAME.MAT, both triangles, equations from 1. `dof` freedoms a node.
  Grid Stiffness(int dof) const;

 private:
  LoadCases BlocksBehindHead(const std::string& extension, NodalValues& values) const;

  std::filesystem::path root_;
};

}  // namespace velmor::testing
