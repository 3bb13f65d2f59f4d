#include "support.hpp"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmor::bench {
namespace {

int turnsForAll = 0;

/// The value below which the given part of the values lies.
double Quantile(std::vector<double> values, double part) {
  const auto place = values.begin() + std::lround(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

}  // namespace

double ThreadSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void Register(const std::string& name, int turns, std::function<void(benchmark::State&)> run) {
  benchmark::RegisterBenchmark(name.c_str(), std::move(run))
      ->UseManualTime()
      ->Iterations(turnsForAll > 0 ? turnsForAll : turns);
}

void SetTurns(int turns) { turnsForAll = turns; }

double Median(std::vector<double> values) { return Quantile(std::move(values), 0.5); }

Turn Timed(std::function<void()> work) {
  return [work = std::move(work)] {
    const double start = ThreadSeconds();
    work();
    return ThreadSeconds() - start;
  };
}

void RunInTurn(benchmark::State& state, const Ratio& ratio, const Turn& ours, const Turn& peer) {
  std::vector<double> oursTimes, peerTimes, ratios;
  bool oursFirst = false;
  for (auto _ : state) {
    if (oursFirst) oursTimes.push_back(ours());
    peerTimes.push_back(peer());
    if (!oursFirst) oursTimes.push_back(ours());
    oursFirst = !oursFirst;
    const double a = oursTimes.back(), b = peerTimes.back();
    ratios.push_back(ratio.ofOurs ? a / b : b / a);
    state.SetIterationTime(a);
  }
  state.SetLabel(ratio.what);
  state.counters["ours_ms"] = 1e3 * Median(oursTimes);
  state.counters["peer_ms"] = 1e3 * Median(peerTimes);
  state.counters["ratio"] = Median(ratios);
  state.counters["low"] = Quantile(ratios, 0.25);
  state.counters["high"] = Quantile(ratios, 0.75);
  if (ratio.goal > 0) state.counters["goal"] = ratio.goal;
}

ScratchFile::ScratchFile(const std::string& name)
    : path_((std::filesystem::temp_directory_path() / ("velmor_bench_" + std::to_string(::getpid()) + "_" + name))
                .string()) {}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace velmor::bench
