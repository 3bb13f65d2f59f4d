// What the machine can do, for judging the others: bandwidth of memory and peak of the arithmetic.

#include <immintrin.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "peers.hpp"
#include "solve/band_solver.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

/// The benchmark of a rate, of which the best turn counts.
void ShowBest(benchmark::State& state, const char* unit, const std::function<double()>& rate) {
  double best = 0;
  for (auto _ : state) {
    best = std::max(best, rate());
    state.SetIterationTime(1e-9);
  }
  state.counters[unit] = best;
}

/// a = b + s c over arrays far beyond the caches; three of them move.
void Triad(benchmark::State& state) {
  constexpr std::size_t n = 1 << 24;
  std::vector<double> a(n), b(n, 1), c(n, 2);
  ShowBest(state, "GB/s", [&] {
    const double seconds = Timed([&] {
      for (std::size_t i = 0; i < n; ++i) a[i] = b[i] + 3 * c[i];
      benchmark::DoNotOptimize(a.data());
      benchmark::ClobberMemory();
    })();
    return 24e-9 * static_cast<double>(n) / seconds;
  });
}

// Twelve independent chains of s = s m + a fill both pipelines of a core; each returns its operations.
constexpr int Rounds = 20'000'000, Chains = 12;

__attribute__((target("avx2,fma"))) double ChainsOfFour() {
  const __m256d m = _mm256_set1_pd(0.999), a = _mm256_set1_pd(0.001);
  __m256d s[Chains], total{};
#pragma GCC unroll 12
  for (int k = 0; k < Chains; ++k) s[k] = _mm256_set1_pd(k);  // no two alike
  for (int i = 0; i < Rounds; ++i) {
#pragma GCC unroll 12
    for (__m256d& sum : s) sum = _mm256_fmadd_pd(sum, m, a);
  }
#pragma GCC unroll 12
  for (const __m256d& sum : s) total = _mm256_add_pd(total, sum);
  benchmark::DoNotOptimize(total);
  return 2.0 * Rounds * Chains * 4;
}

__attribute__((target("avx512f"))) double ChainsOfEight() {
  const __m512d m = _mm512_set1_pd(0.999), a = _mm512_set1_pd(0.001);
  __m512d s[Chains], total{};
#pragma GCC unroll 12
  for (int k = 0; k < Chains; ++k) s[k] = _mm512_set1_pd(k);  // no two alike
  for (int i = 0; i < Rounds; ++i) {
#pragma GCC unroll 12
    for (__m512d& sum : s) sum = _mm512_fmadd_pd(sum, m, a);
  }
#pragma GCC unroll 12
  for (const __m512d& sum : s) total = _mm512_add_pd(total, sum);
  benchmark::DoNotOptimize(total);
  return 2.0 * Rounds * Chains * 8;
}

void Peak(benchmark::State& state, Instructions instructions) {
  if (!Has(instructions)) return state.SkipWithError("not on this processor");
  ShowBest(state, "GFLOP/s", [&] {
    double operations = 0;
    const double seconds =
        Timed([&] { operations = instructions == Instructions::Avx512 ? ChainsOfEight() : ChainsOfFour(); })();
    return 1e-9 * operations / seconds;
  });
}

void Multiplication(benchmark::State& state) {
  ShowBest(state, "GFLOP/s", MultiplicationRate);
  state.SetLabel(std::string("OpenBLAS kernel ") + PeerName());
}

}  // namespace

void RegisterMachine() {
  Register("Machine/triad", 9, Triad);
  Register("Machine/peak/AVX-512", 5, [](benchmark::State& state) { Peak(state, Instructions::Avx512); });
  Register("Machine/peak/AVX2", 5, [](benchmark::State& state) { Peak(state, Instructions::Avx2); });
  Register("Machine/dgemm/1024", 9, Multiplication);
}

}  // namespace velmor::bench
