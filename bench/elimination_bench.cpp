// Elimination of a full band, one load case.

#include <chrono>
#include <cmath>

#include "results/band_product.hpp"
#include "solve/band_solver.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

void NoDisplay(int) {}

/// Largest |K u - f| where every entry of f is 1; K fresh from FillFullBand.
double Residual(const BandMatrix& K, const Grid& u, int equations) {
  Grid product(1, equations);
  MultiplyBand(K, u, product, equations, NoDisplay);
  double largest = 0;
  for (int e = 1; e <= equations; ++e) largest = std::fmax(largest, std::abs(product(1, e) - 1));
  return largest;
}

/// The rate counts equations times width squared: one multiplication and one subtraction for each entry below half of
/// the square that a pivot row changes.
void BM_EliminateFullBand(benchmark::State& state) {
  const int equations = static_cast<int>(state.range(0)), width = static_cast<int>(state.range(1));
  BandMatrix K(equations + 1, width + 1);
  Grid loads(1, equations + 1);
  int zeroPivot = 0;
  for (auto _ : state) {
    FillFullBand(K, equations, width);
    loads.Fill(1);
    const auto start = std::chrono::steady_clock::now();
    zeroPivot = EliminateBand(K, loads, equations, NoDisplay);
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.counters["NE*W^2/s"] =
      benchmark::Counter(static_cast<double>(equations) * width * width, benchmark::Counter::kIsIterationInvariantRate);
  BackSubstitute(K, loads, equations, width, NoDisplay);
  FillFullBand(K, equations, width);
  if (zeroPivot != 0 || !(Residual(K, loads, equations) < 1e-10)) state.SkipWithError("a wrong solution has no speed");
}
BENCHMARK(BM_EliminateFullBand)
    ->ArgNames({"equations", "width"})
    ->Args({30'000, 60})
    ->Args({20'000, 120})
    ->Args({6'000, 300})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmor::bench
