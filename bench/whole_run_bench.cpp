// Whole runs of plates, from files to files with all stages and stresses, beside CalculiX (Debian's calculix-ccx) on
// the same plate with one thread. Times are the processor time of the processes.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "base/item_reader.hpp"
#include "base/memory.hpp"
#include "elements/matrix_file.hpp"
#include "plate_models.hpp"
#include "run/control_file.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

struct Process {
  double seconds;    // processor time, in the program and in the system on its behalf
  double megaBytes;  // largest resident size; never below that of this process
};

/// Takes memory and gives it back. The host of a virtual machine may have to find it first, at 2 to 3 s a GB where
/// these figures were taken, and takes it away again after seconds of rest; so every turn begins with memory that is
/// there.
void WarmMemory() {
  constexpr std::size_t size = std::size_t{1} << 27;
  ZeroedBlock block(size);
  for (std::size_t i = 0; i < size; i += 512) block.Data()[i] = 1;
}

/// Runs a program in a folder with what it says going to the file `said`. It is found in the PATH unless its name holds
/// a folder. A failure leaves the time at 0.
Process RunProcess(const std::string& folder, std::vector<std::string> words, const std::string& said) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  WarmMemory();
  const pid_t child = ::fork();
  if (child == 0) {
    const int output = ::open(said.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const int input = ::open("/dev/null", O_RDONLY);
    ::setenv("OMP_NUM_THREADS", "1", 1);
    if (::chdir(folder.c_str()) == 0 && ::dup2(output, 1) == 1 && ::dup2(output, 2) == 2 && ::dup2(input, 0) == 0) {
      ::execvp(arguments[0], arguments.data());
    }
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) return {};
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return {seconds(usage.ru_utime) + seconds(usage.ru_stime), 1.024e-3 * static_cast<double>(usage.ru_maxrss)};
}

/// Our program in a folder of its own, with a plate to solve.
class OurRun {
 public:
  OurRun(const PlateModel& plate, const std::string& folder) : plate_(plate), program_(folder + "/program/") {
    std::filesystem::copy(VELMOR_PROGRAM_FOLDER, program_, std::filesystem::copy_options::recursive);
    WriteModelFamily(plate, program_ + "plate");
  }

  double Seconds() {
    WriteControlFile(program_, {program_ + "plate", 3, {}});
    const Process process = RunProcess(program_, {program_ + "velmor"}, program_ + "said");
    megaBytes_ = std::max(megaBytes_, process.megaBytes);
    NoteStages();
    return process.seconds;
  }

  double Deflection() const {
    ItemReader rvp(program_ + "plate.RVP");
    for (int skip = 2 + 6 * (plate_.Centre() - 1) + 2; skip > 0; --skip) rvp.Number("displacement");
    return rvp.Number("displacement");
  }

  /// Medians of the stages' seconds as the program tells them, and the memory beyond the band.
  void Show(benchmark::State& state) const {
    for (const auto& [name, seconds] : stages_) state.counters["s of " + name] = Median(seconds);
    const int equations = 6 * plate_.Nodes(), width = 6 * (plate_.Line() + 2);
    state.counters["MB beside the band"] =
        megaBytes_ - 1e-6 * static_cast<double>(MatrixFileSize(equations + 6, width + 6));
  }

 private:
  /// The line "Seconds: Kol 0.012 EEM 0.345 Nodal Force 0.067 ..." of the summary.
  void NoteStages() {
    std::ifstream said(program_ + "said");
    for (std::string line, name; std::getline(said, line);) {
      if (!line.starts_with("Seconds:")) continue;
      std::istringstream words(line.substr(line.find(' ')));
      for (std::string word; words >> word;) {
        if (std::isdigit(static_cast<unsigned char>(word[0])) != 0) {
          stages_[std::exchange(name, "")].push_back(std::stod(word));
        } else {
          name += (name.empty() ? "" : " ") + word;
        }
      }
    }
  }

  PlateModel plate_;
  std::string program_;
  double megaBytes_ = 0;
  std::map<std::string, std::vector<double>> stages_;
};

/// The third displacement of the last line of NAME.dat, which is that of the centre.
double DeflectionOfDeck(const std::string& name) {
  std::ifstream dat(name + ".dat");
  double last = 0;
  for (std::string word; dat >> word;) {
    try {
      last = std::stod(word);
    } catch (const std::exception&) {
      last = 0;  // a word of a heading
    }
  }
  return last;
}

void WholeRun(benchmark::State& state, int elements, const std::string& elementType, double goal) {
  const PlateModel plate{elements};
  const ScratchFile folder("plate");
  std::filesystem::create_directory(folder.Path());
  OurRun ourRun(plate, folder.Path());
  const std::string deck = folder.Path() + "/deck";
  WriteInputDeck(plate, deck, elementType);
  double least = 1;
  RunInTurn(
      state, {"ccx over ours", goal}, [&] { return ourRun.Seconds(); },
      [&] {
        const double seconds = RunProcess(folder.Path(), {"ccx", "-i", "deck"}, folder.Path() + "/said").seconds;
        least = std::min(least, seconds);
        return seconds;
      });
  ourRun.Show(state);
  const double ours = -ourRun.Deflection() / NavierDeflection(), peers = -DeflectionOfDeck(deck) / NavierDeflection();
  state.counters["w/Navier ours"] = ours;
  state.counters["w/Navier ccx"] = peers;
  if (!(std::abs(ours - 1) < 0.01)) state.SkipWithError("a wrong deflection has no speed");
  if (least == 0) state.SetLabel("no ccx");
}

}  // namespace

void RegisterWholeRuns() {
  for (const int elements : {20, 60, 100}) {
    const bool hasGoal = elements > 20;
    for (const auto& [type, goal] : {std::pair{"S4", 3.0}, {"S4R", 2.0}}) {
      Register("WholeRun/plate/" + std::to_string(elements) + "/" + type, 5,
               [=, type = std::string(type), goal = hasGoal ? goal : 0](benchmark::State& state) {
                 WholeRun(state, elements, type, goal);
               });
    }
  }
}

}  // namespace velmor::bench
