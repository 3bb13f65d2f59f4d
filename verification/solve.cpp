#include "solve.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "models/model_files.hpp"

namespace velmor::verification {
namespace {

namespace fs = std::filesystem;

using models::ReadText, models::ReadBlocks;

constexpr const char* ProgramFiles[] = {"velmor", "ELTYP.DAT", "decmem.DAT", "PLAT.ELM"};

std::vector<std::vector<std::vector<double>>> BlocksOf(const std::string& path) {
  return fs::exists(path) ? ReadBlocks(path) : std::vector<std::vector<std::vector<double>>>{};
}

std::size_t Index(int number) { return static_cast<std::size_t>(number - 1); }

bool IsLine(int type) { return type == 1 || type == 7 || type == 14; }
bool IsSurface(int type) { return type >= 2 && type <= 13 && type != 7; }

/// Writes the control file of a run of all stages that the model needs.
void WriteControl(const Model& model, const std::string& name, const std::string& path) {
  bool masses = model.eigen, surfaces = false, lines = false;
  for (const auto& loadCase : model.cases) masses = masses || loadCase.values[4] != 0;
  for (const auto& element : model.elements) {
    surfaces = surfaces || IsSurface(element.type);
    lines = lines || IsLine(element.type);
  }
  const bool solve = !model.eigen;
  std::ostringstream control;
  control << '"' << name << "\"\n"
          << model.eigen << ',' << masses << ',' << model.analysisCode << ",0,1," << solve << ',';
  control << (solve && lines && model.lineStresses) << ',' << (solve && surfaces) << '\n';
  models::WriteText(path, control.str());
}

/// Starts a program without arguments or input and waits for it; returns its exit status, 128 + n for signal n.
int Start(const std::string& program, const std::string& output, const std::string& errors) {
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&files, 2, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  std::string path = program;
  char* arguments[] = {path.data(), nullptr};
  pid_t process = 0;
  const int failed = posix_spawn(&process, program.c_str(), &files, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&files);
  if (failed != 0) throw std::runtime_error("cannot start " + program);
  int status = 0;
  waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

Results::Results(const std::string& name, int freedoms)
    : freedoms_(freedoms),
      displacements_(BlocksOf(name + ".RVP")),
      reactions_(BlocksOf(name + ".KRT")),
      lines_(BlocksOf(name + ".LES")),
      global_(BlocksOf(name + ".NSR")),
      local_(BlocksOf(name + ".NSL")),
      averages_(BlocksOf(name + ".NLA")),
      modes_(BlocksOf(name + ".EIG")) {
  // The first line of these files is a head, which would shift the first load case.
  for (Blocks* blocks : {&displacements_, &reactions_}) {
    if (!blocks->empty()) blocks->front().erase(blocks->front().begin());
  }
  if (!modes_.empty()) nodes_ = static_cast<int>(modes_.front().front().at(1));
}

std::size_t Results::Column(int direction) const {
  if (freedoms_ == 3 && direction == RotZ) return 2;  // plane frames
  return Index(direction);
}

double Results::Displacement(int node, int direction, int loadCase) const {
  return displacements_.at(Index(loadCase)).at(Index(node)).at(Column(direction));
}

double Results::Along(int node, const Point& direction, int loadCase) const {
  double sum = 0;
  for (int k = 1; k <= std::min(freedoms_, 3); ++k) sum += direction.at(Index(k)) * Displacement(node, k, loadCase);
  return sum;
}

double Results::Reaction(int node, int direction, int loadCase) const {
  return reactions_.at(Index(loadCase)).at(Index(node)).at(1 + Column(direction));
}

double Results::LineStress(int lineElement, int end, int item, int loadCase) const {
  return lines_.at(Index(loadCase)).at(2 * Index(lineElement) + Index(end)).at(Index(item));
}

const std::vector<std::vector<double>>& Results::GlobalStresses(int loadCase) const {
  return global_.at(Index(loadCase));
}

const std::vector<std::vector<double>>& Results::LocalStresses(int loadCase) const {
  return local_.at(Index(loadCase));
}

double Results::AverageLocalStress(int element, int node, int item, int loadCase) const {
  for (const auto& line : averages_.at(Index(loadCase))) {
    if (line.at(0) == element && line.at(1) == node) return line.at(Index(item));
  }
  throw std::runtime_error("no average stress at this node");
}

std::vector<double> Results::Frequencies() const {
  std::vector<double> frequencies;
  const auto& lines = modes_.at(0);
  const std::size_t step = 1 + static_cast<std::size_t>(nodes_ * freedoms_);
  for (std::size_t at = 1; at < lines.size(); at += step) frequencies.push_back(1 / std::abs(lines[at].at(0)));
  return frequencies;
}

Program::Program(const std::string& folder) {
  std::string name = (fs::temp_directory_path() / "velmor-verify-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make the folder " + name);
  folder_ = name + "/";
  for (const char* file : ProgramFiles) fs::copy_file(fs::path(folder) / file, folder_ + file);
}

Program::~Program() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

Ending Program::Run(const Model& model) const {
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path().stem() == "model") fs::remove(entry.path());
  }
  models::WriteFamily(model, folder_ + "model");
  WriteControl(model, folder_ + "model", folder_ + "EEM.CTR");
  const int status = Start(folder_ + "velmor", folder_ + "output", folder_ + "errors");
  std::string told = ReadText(folder_ + "errors");
  for (std::size_t at = told.find(folder_); at != std::string::npos; at = told.find(folder_)) {
    told.erase(at, folder_.size());
  }
  return {status, told};
}

Results Program::Solve(const Model& model) const {
  const Ending ending = Run(model);
  if (ending.status != 0) throw std::runtime_error("the run failed: " + ending.errors);
  return {folder_ + "model", model.Freedoms()};
}

}  // namespace velmor::verification
