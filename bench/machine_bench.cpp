// What the machine can do, for judging the others: bandwidth of memory and peak of the arithmetic.

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

typedef double Vector4 __attribute__((vector_size(32)));
typedef double Vector8 __attribute__((vector_size(64)));

/// Twelve independent chains of s = s m + a, in the instructions of the caller. Returns the operations.
template <typename Vector>
__attribute__((always_inline)) inline double Chains(double start) {
  constexpr int rounds = 20'000'000;
  const Vector m = Vector{} + 0.999, a = Vector{} + 0.001;
  Vector s[12];
#pragma GCC unroll 12
  for (Vector& sum : s) sum = Vector{} + (start += 0.1);
  for (int i = 0; i < rounds; ++i) {
#pragma GCC unroll 12
    for (Vector& sum : s) {
      asm volatile("vfmadd213pd %2, %1, %0" : "+v"(sum) : "v"(m), "v"(a));
    }
  }
  Vector total{};
#pragma GCC unroll 12
  for (const Vector& sum : s) total += sum;
  benchmark::DoNotOptimize(total);
  return 2.0 * 12 * rounds * (sizeof(Vector) / sizeof(double));
}
__attribute__((target("avx2,fma"))) double Chains4(double start) { return Chains<Vector4>(start); }
__attribute__((target("avx512f"))) double Chains8(double start) { return Chains<Vector8>(start); }

void Peak(benchmark::State& state, Instructions instructions) {
  if (!Has(instructions)) return state.SkipWithError("not on this processor");
  ShowBest(state, "GFLOP/s", [&] {
    double operations = 0;
    const double seconds =
        Timed([&] { operations = instructions == Instructions::Avx512 ? Chains8(1) : Chains4(1); })();
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
