#include "support.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "model/model_sizes.hpp"
#include "run/run_controller.hpp"

namespace fs = std::filesystem;

namespace velmor::testing {

void RecordingDisplay::Note(const std::string& stage, const std::string& status) {
  if (!stage.empty() && (stages.empty() || stages.back() != stage)) stages.push_back(stage);
  const std::string line = stage + ": " + status;
  if (!status.empty() && (statuses.empty() || statuses.back() != line)) statuses.push_back(line);
}

void RecordingDisplay::Refresh(const MainWindow& window) {
  form1 = window;
  Note(window.Frame1.caption, window.Label6.caption);
}

void RecordingDisplay::Refresh(const ProgressWindow& window) {
  form2 = window;
  Note(window.Frame1.caption, window.Label7.caption);
}

void RecordingDisplay::Refresh(const StressWindow& window) {
  nsa = window;
  if (window.Frame1.caption != StressWindow{}.Frame1.caption) Note(window.Frame1.caption, "");
}

bool RecordingDisplay::Warned() const {
  return std::any_of(warnings.begin(), warnings.end(), [](const auto& text) { return !text.starts_with("model: "); });
}

MainWindowAction RecordingDisplay::WaitForUser(const MainWindow& window) {
  form1 = window;
  ++waits;
  if (actions.empty()) return MainWindowAction::Close;
  const MainWindowAction action = actions.front();
  actions.pop_front();
  return action;
}

std::optional<std::string> RecordingDisplay::OpenFile(const FileDialog&) {
  if (paths.empty()) return std::nullopt;
  const std::string path = paths.front();
  paths.pop_front();
  return path;
}

void RecordingDisplay::ShowModal(OptionsWindow& window) {
  for (OptionsBox box : clicks) ClickOption(window, box);
}

std::string Repeated(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

Folder::Folder() {
  std::string name = (fs::temp_directory_path() / "velmor-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make the folder " + name);
  root_ = name;
  fs::create_directories(root_ / "program");
  for (const char* file : {"ELTYP.DAT", "decmem.DAT", "PLAT.ELM"}) {
    fs::copy_file(fs::path(VELMOR_DATA_FOLDER) / file, root_ / "program" / file);
  }
}

Folder::~Folder() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

std::string Folder::Read(const std::string& extension) const {
  return Has(extension) ? models::ReadText(File(extension)) : "";
}

void Folder::WriteControl(int analysisCode, const AnalysisFlags& flags) const {
  WriteControlFile(Program(), {File(), analysisCode, flags});
}

void Folder::Write(const Model& model) const {
  models::WriteFamily(model, File());
  WriteControl(model.analysisCode, model.flags);
}

int Folder::Run(RecordingDisplay& display) const { return RunProgram(display, Program()); }

void Folder::WriteExample(const std::string& name) const {
  const fs::path example = fs::path(VELMOR_EXAMPLES_FOLDER) / name;
  for (const char* extension : {".TEK", ".MLT", ".VPL", ".lcd", ".KNK", ".ell", ".rot"}) {
    fs::copy_file(example / (name + extension), File(extension));
  }
  const ControlFile control = ReadControlFile(example.string() + "/");
  WriteControl(control.analysisCode, control.flags);
}

std::vector<std::string> Folder::Solve(const Model& model) const {
  Write(model);
  return Solve();
}

std::vector<std::string> Folder::Solve() const {
  RecordingDisplay display;
  EXPECT_EQ(Run(display), 0);
  for (const std::string& message : display.messages) ADD_FAILURE() << "message box: " << message;
  for (const std::string& warning : display.warnings) {
    if (!warning.starts_with("model: ")) ADD_FAILURE() << "warning: " << warning;
  }
  for (const FailureNotice& notice : display.notices) ADD_FAILURE() << notice.number << ": " << notice.description;
  return display.warnings;
}

Folder::LoadCases Folder::Blocks(const std::string& extension) const {
  LoadCases blocks = models::ReadBlocks(File(extension));
  EXPECT_TRUE(blocks.back().empty()) << extension << " does not end with END";
  blocks.pop_back();
  return blocks;
}

/// The blocks of NAME.RVP or NAME.KRT without the line at the head: the number of nodes and the analysis code.
Folder::LoadCases Folder::BlocksBehindHead(const std::string& extension, NodalValues& values) const {
  LoadCases blocks = Blocks(extension);
  if (blocks.empty()) return blocks;
  values.nodes = static_cast<int>(blocks[0].at(0).at(0));
  values.freedoms = DofPerNodeOf(static_cast<int>(blocks[0].at(0).at(1)));
  blocks[0].erase(blocks[0].begin());
  return blocks;
}

Grid Folder::Stiffness(int dof) const {
  std::istringstream head(Read(".DAT"));
  int nodes = 0, halfBandwidth = 0;
  head >> nodes >> halfBandwidth;
  const std::string bytes = Read(".MAT");
  const auto rows = static_cast<std::size_t>((nodes + 1) * dof + 1);
  EXPECT_EQ(bytes.size(), 8 * rows * static_cast<std::size_t>(halfBandwidth + dof + 1));
  Grid K(nodes * dof, nodes * dof);
  for (int e = 1; e <= nodes * dof; ++e) {
    for (int d = 1; d <= std::min(halfBandwidth, nodes * dof - e + 1); ++d) {
      std::memcpy(&K(e, e + d - 1), &bytes[8 * (static_cast<std::size_t>(d) * rows + static_cast<std::size_t>(e))], 8);
      K(e + d - 1, e) = K(e, e + d - 1);
    }
  }
  return K;
}

NodalValues Folder::Displacements() const {
  NodalValues values;
  for (auto& lines : BlocksBehindHead(".RVP", values)) {
    auto& numbers = values.cases.emplace_back();
    for (const auto& line : lines) numbers.insert(numbers.end(), line.begin(), line.end());
  }
  return values;
}

NodalValues Folder::Reactions() const {
  NodalValues values;
  for (auto& lines : BlocksBehindHead(".KRT", values)) {
    auto& numbers = values.cases.emplace_back();
    for (const auto& line : lines) {  // a node's number or 0, then its values
      auto& target = line.at(0) == 0 ? values.totals.emplace_back() : numbers;
      target.insert(target.end(), line.begin() + 1, line.end());
    }
  }
  return values;
}

}  // namespace velmor::testing
