#include "support.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fstream>
#include <sstream>

#include "model/model_sizes.hpp"
#include "run/run_controller.hpp"

namespace velmor::testing {
namespace {

namespace fs = std::filesystem;

std::vector<double> NumbersOf(std::string line) {
  for (char& c : line) c = c == ',' ? ' ' : c;
  std::istringstream items(line);
  std::vector<double> numbers;
  for (double x = 0; items >> x;) numbers.push_back(x);
  return numbers;
}

/// Text of a model's files, items parted by blanks and commas in turn, as both must be read.
class Text {
 public:
  Text() { text_.precision(17); }
  template <typename... Items>
  Text& Line(const Items&... items) {
    const char* separator = "";
    ((text_ << std::exchange(separator, comma_ ? "," : " ") << items), ...);
    text_ << "\n";
    comma_ = !comma_;
    return *this;
  }
  template <typename List>
  Text& List_(const List& list) {
    for (const auto& item : list) text_ << item << " ";
    text_ << "\n";
    return *this;
  }
  std::string str() const { return text_.str(); }

 private:
  std::ostringstream text_;
  bool comma_ = false;
};

std::string TekOf(const Model& model) {
  Text tek;
  tek.Line(model.nodes.size(), model.elements.size());
  for (const auto& node : model.nodes) tek.Line(node[0], node[1], node[2]);
  for (const auto& element : model.elements) {
    tek.Line(element.type);
    tek.List_(element.nodes);
    tek.Line(element.material);
  }
  return tek.str();
}

std::string MltOf(const Model& model) {
  Text mlt;
  mlt.Line(model.materials.size());
  for (const auto& fields : model.materials) mlt.Line("\"a material\"").List_(fields);
  for (std::size_t m = 0; m < model.materials.size(); ++m) {
    for (int row = 0; row < 6; ++row) {
      mlt.List_(m < model.springs.size() ? model.springs[m][static_cast<std::size_t>(row)] : std::array<double, 6>{});
    }
  }
  return mlt.str();
}

std::string KnkOf(const Model& model) {
  Text knk;
  for (const auto& loadCase : model.cases) {
    knk.Line(loadCase.nodal.size());
    for (const auto& load : loadCase.nodal) knk.Line(load.node, load.direction, load.value);
  }
  return knk.str();
}

std::string EllOf(const Model& model) {
  Text ell;
  for (const auto& loadCase : model.cases) {
    ell.Line(loadCase.onElements.size());
    for (const auto& load : loadCase.onElements) ell.Line(load.element, load.direction, load.value);
  }
  return ell.str();
}

std::string LcdOf(const Model& model) {
  Text lcd;
  lcd.Line(model.cases.size());
  for (const auto& loadCase : model.cases) lcd.Line("\"load case\"", loadCase.type).List_(loadCase.values);
  return lcd.str();
}

std::string VplOf(const Model& model) {
  Text vpl;
  vpl.Line(model.supports.size());
  for (const auto& support : model.supports) vpl.Line(support.node, support.direction, support.value);
  return vpl.str();
}

}  // namespace

void WriteFile(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

std::string ReadFile(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

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

Folder::Folder() {
  static std::atomic<int> count{0};
  root_ = fs::temp_directory_path() / ("velmor-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
  fs::create_directories(root_ / "program");
  for (const char* file : {"ELTYP.DAT", "decmem.DAT", "PLAT.ELM"}) {
    fs::copy_file(fs::path(VELMOR_DATA_FOLDER) / file, root_ / "program" / file);
  }
}

Folder::~Folder() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Folder::Write(const std::string& extension, const std::string& text) const { WriteFile(File(extension), text); }

std::string Folder::Read(const std::string& extension) const { return ReadFile(File(extension)); }

void Folder::WriteControl(int analysisCode, const AnalysisFlags& flags) const {
  WriteControlFile(Program(), {File(), analysisCode, flags});
}

void Folder::Write(const Model& model) const {
  Write(".TEK", TekOf(model));
  Write(".MLT", MltOf(model));
  Write(".VPL", VplOf(model));
  Write(".lcd", LcdOf(model));
  Write(".KNK", KnkOf(model));
  Write(".ell", EllOf(model));
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

std::vector<std::vector<std::vector<double>>> Folder::Blocks(const std::string& extension) const {
  std::istringstream file(Read(extension));
  std::vector<std::vector<std::vector<double>>> blocks;
  std::vector<std::vector<double>> block;
  for (std::string line; std::getline(file, line);) {
    if (line == "\"END\"") {
      blocks.push_back(std::exchange(block, {}));
    } else {
      block.push_back(NumbersOf(line));
    }
  }
  EXPECT_TRUE(block.empty()) << extension << " does not end with END";
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
  bool first = true;
  for (auto& block : Blocks(".RVP")) {
    if (std::exchange(first, false)) {
      values.nodes = static_cast<int>(block.at(0).at(0));
      values.freedoms = DofPerNodeOf(static_cast<int>(block.at(0).at(1)));
      block.erase(block.begin());
    }
    auto& numbers = values.cases.emplace_back();
    for (const auto& line : block) numbers.insert(numbers.end(), line.begin(), line.end());
  }
  return values;
}

NodalValues Folder::Reactions() const {
  NodalValues values;
  bool first = true;
  for (auto& block : Blocks(".KRT")) {
    if (std::exchange(first, false)) {
      values.nodes = static_cast<int>(block.at(0).at(0));
      values.freedoms = DofPerNodeOf(static_cast<int>(block.at(0).at(1)));
      block.erase(block.begin());
    }
    auto& numbers = values.cases.emplace_back();
    for (const auto& line : block) {
      auto& target = line.at(0) == 0 ? values.totals.emplace_back() : numbers;
      target.insert(target.end(), line.begin() + 1, line.end());
    }
  }
  return values;
}

}  // namespace velmor::testing
