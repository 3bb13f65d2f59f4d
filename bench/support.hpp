#pragma once

#include <benchmark/benchmark.h>

#include <filesystem>
#include <functional>
#include <string>

#include "elements/band_matrix.hpp"

namespace velmor::bench {

/// Processor time of this thread, in the program and in the system on its behalf. Others on the machine do not count.
double ThreadSeconds();

/// Times ours and its peer in turn, once each per iteration, so that both meet the same state of a shared machine, and
/// reports the time of ours. The counter `ours_ms` and `peer_ms` are medians; `peer/ours` is the median of the ratios
/// of single turns, and so is `ours/peer`.
void RunInTurn(benchmark::State& state, const std::function<void()>& ours, const std::function<void()>& peer);

/// A file name of this process in the folder for temporary files; the file goes with the object.
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

/// A symmetric positive definite band without a zero in it: entries beside the diagonal from -1 to 1, the same at every
/// call, and a diagonal that exceeds the sum of their sizes. `equations` rows of half bandwidth `width`, in a band with
/// bounds as a model of one freedom per node has them.
void FillFullBand(BandMatrix& K, int equations, int width);

}  // namespace velmor::bench
