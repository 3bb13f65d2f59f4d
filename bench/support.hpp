#pragma once

#include <benchmark/benchmark.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace velmor::bench {

/// Processor time of this thread, in the program and in the system on its behalf. Others on the machine do not count.
double ThreadSeconds();

/// Adds a benchmark that takes its times itself, with so many turns unless SetTurns has set a number for all.
void Register(const std::string& name, int turns, std::function<void(benchmark::State&)> run);
void SetTurns(int turns);

// One for each file of benchmarks.
void RegisterMachine();
void RegisterBandSolver();
void RegisterEigenPasses();
void RegisterMatrixFile();
void RegisterText();
void RegisterWholeRuns();

double Median(std::vector<double> values);

/// What a benchmark shows as its ratio, and the goal for it; 0 if there is none.
struct Ratio {
  const char* what;
  double goal = 0;
  bool ofOurs = false;  // ours over the peer's, which is to be small; otherwise the peer's over ours
};

/// Runs a piece of work once and returns the seconds that it took.
using Turn = std::function<double()>;

/// Work that is timed by ThreadSeconds.
Turn Timed(std::function<void()> work);

/// Times ours and its peer, once each per iteration in alternating order, so that both meet the same state of a shared
/// machine. The counters `ours_ms` and `peer_ms` are medians, `ratio`, `low` and `high` the median and the quartiles of
/// the ratios of single turns.
void RunInTurn(benchmark::State& state, const Ratio& ratio, const Turn& ours, const Turn& peer);

/// A file name of this process in the folder for temporary files; the file, or the folder with what is in it, goes with
/// the object.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& name);
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& Path() const { return path_; }
  double MegaBytes() const { return static_cast<double>(std::filesystem::file_size(path_)) / 1e6; }

 private:
  std::string path_;
};

}  // namespace velmor::bench
