// Passes of the inverse iteration: one with the kept factor, beside one that eliminates anew.

#include <algorithm>
#include <cmath>

#include "dynamics/eigen_solver.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

void BM_PassWithKeptFactor(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0)), width = static_cast<int>(state.range(1));
  BandMatrix kept(n + 1, width + 1), anew(n + 1, width + 1);
  FillFullBand(kept, n, width);
  int stopped = FactorBand(kept, n, width);
  Column x(n), y(n);
  const auto ours = [&] {
    x = Column(n, 1.0);
    SolveFactored(kept, x, n, width);
  };
  const auto peer = [&] {
    FillFullBand(anew, n, width);
    y = Column(n, 1.0);
    stopped = std::max(stopped, FactorBand(anew, n, width));
    SolveFactored(anew, y, n, width);
  };
  RunInTurn(state, ours, peer);
  for (int i = 1; i <= n; ++i) {
    if (stopped != 0 || !std::isfinite(x(i)) || x(i) != y(i)) return state.SkipWithError("a wrong pass has no speed");
  }
}
BENCHMARK(BM_PassWithKeptFactor)
    ->ArgNames({"equations", "width"})
    ->Args({20'000, 120})
    ->Args({20'000, 300})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmor::bench
