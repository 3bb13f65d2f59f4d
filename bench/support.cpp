#include "support.hpp"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace velmor::bench {
namespace {

double Seconds(const std::function<void()>& work) {
  const double start = ThreadSeconds();
  work();
  return ThreadSeconds() - start;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

double ThreadSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void RunInTurn(benchmark::State& state, const std::function<void()>& ours, const std::function<void()>& peer) {
  std::vector<double> oursTimes, peerTimes, ratios;
  for (auto _ : state) {
    peerTimes.push_back(Seconds(peer));
    oursTimes.push_back(Seconds(ours));
    ratios.push_back(peerTimes.back() / oursTimes.back());
    state.SetIterationTime(oursTimes.back());
  }
  const double ratio = Median(ratios);
  state.counters["ours_ms"] = 1e3 * Median(oursTimes);
  state.counters["peer_ms"] = 1e3 * Median(peerTimes);
  state.counters["peer/ours"] = ratio;
  state.counters["ours/peer"] = 1 / ratio;
}

ScratchFile::ScratchFile(const std::string& name)
    : path_((std::filesystem::temp_directory_path() / ("velmor_bench_" + std::to_string(::getpid()) + "_" + name))
                .string()) {}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

void FillFullBand(BandMatrix& K, int equations, int width) {
  std::uint32_t random = 1;
  const auto entry = [&] {
    random = random * 1664525u + 1013904223u;
    return static_cast<double>(random >> 8) / (1 << 23) - 1;
  };
  for (int e = 1; e <= equations; ++e) {
    const int height = std::min(width, equations - e + 1);
    std::fill_n(K.Row(e), width + 1, 0.0);
    K.Add(e, 1, 2.0 * width);
    for (int d = 2; d <= height; ++d) K.Add(e, d, entry());
  }
}

}  // namespace velmor::bench
