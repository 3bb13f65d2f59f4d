// Passes of the inverse iteration: one with the kept factor, beside one that eliminates anew.

#include <algorithm>
#include <cmath>

#include "dynamics/eigen_solver.hpp"
#include "patterns.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

void Pass(benchmark::State& state, int n, int width) {
  const Pattern pattern = Full(n, width);
  BandMatrix kept(n + 1, width + 1), anew(n + 1, width + 1);
  Restore(pattern, kept);
  int stopped = FactorBand(kept, n, width);
  Column x(n), y(n);
  const auto ours = [&] {
    x = Column(n, 1.0);
    SolveFactored(kept, x, n, width);
  };
  const auto peer = [&] {
    Restore(pattern, anew);
    y = Column(n, 1.0);
    stopped = std::max(stopped, FactorBand(anew, n, width));
    SolveFactored(anew, y, n, width);
  };
  RunInTurn(state, {"elimination in every pass over kept factor"}, Timed(ours), Timed(peer));
  for (int i = 1; i <= n; ++i) {
    if (stopped != 0 || !std::isfinite(x(i)) || x(i) != y(i)) return state.SkipWithError("a wrong pass has no speed");
  }
}

}  // namespace

void RegisterEigenPasses() {
  for (const int width : {120, 300}) {
    Register("EigenPass/20000/" + std::to_string(width), 9,
             [=](benchmark::State& state) { Pass(state, 20'000, width); });
  }
}

}  // namespace velmor::bench
