// Elimination and back substitution of whole systems beside the Cholesky factorisation of a band in OpenBLAS.

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "patterns.hpp"
#include "peers.hpp"
#include "results/band_product.hpp"
#include "solve/band_solver.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

void NoDisplay(int) {}

/// Largest |K u - f| where every entry of f is 1.
double Residual(const Pattern& pattern, BandMatrix& K, const Grid& u) {
  Grid product(u.Rows(), u.Cols());
  Restore(pattern, K);
  for (int e = 1; e <= pattern.equations; ++e) MultiplyRow(K.Row(e), e, u, product);
  double largest = 0;
  for (int c = 1; c <= u.Rows(); ++c) {
    for (int e = 1; e <= pattern.equations; ++e) largest = std::fmax(largest, std::abs(product(c, e) - 1));
  }
  return largest;
}

struct System {
  std::string name;
  std::function<Pattern()> make;
  int turns = 9, loadCases = 1;
  double goal = 0, goalOfAvx2 = 0;
};

void Solve(benchmark::State& state, const System& system, Instructions instructions) {
  if (!Has(instructions)) return state.SkipWithError("not on this processor");
  const Pattern pattern = system.make();
  BandMatrix K(pattern.equations + 1, pattern.width + 1);
  Grid loads(system.loadCases, pattern.equations + 1);
  const auto solve = [&] {
    EliminateBand(K, loads, pattern.equations, NoDisplay, instructions);
    BackSubstitute(K, loads, pattern.equations, pattern.width, NoDisplay, instructions);
  };
  std::vector<double> rates;
  const auto ours = [&] {
    Restore(pattern, K);
    loads.Fill(1);
    return Timed(solve)();
  };
  const auto peer = [&] {
    rates.push_back(MultiplicationRate());
    return PeerSeconds(pattern, system.loadCases);
  };
  const double goal = instructions == Instructions::Avx2 ? system.goalOfAvx2 : system.goal;
  RunInTurn(state, {"dpbtrf + dpbtrs over ours", goal}, ours, peer);
  double operations = 0;  // a multiplication and a subtraction for half the square that a pivot row changes
  for (const std::vector<double>& row : pattern.rows) operations += static_cast<double>(row.size() * row.size());
  const double rate = 1e-6 * operations / state.counters["ours_ms"].value;
  state.counters["GFLOP/s"] = rate;
  if (const double peers = Median(rates); peers > 0) state.counters["of dgemm(1024)"] = rate / peers;
  if (!(Residual(pattern, K, loads) < 1e-9)) state.SkipWithError("a wrong solution has no speed");
}

/// Every width with about the same number of operations, but at least twice as many equations as the width.
int Equations(int width) { return std::clamp(static_cast<int>(1.5e9 / width / width), 5 * width / 2, 60'000); }

std::vector<System> Systems() {
  struct Goals {
    int width;
    double goal, goalOfAvx2;
  };
  const Goals full[] = {{30, 0, 0},       {60, 3.5, 0},      {120, 2.3, 1.5}, {300, 1.6, 1.1},
                        {600, 1.25, 0.8}, {1200, 1.15, 0.9}, {2400, 1.05, 0}};
  std::vector<System> systems;
  for (const Goals& goals : full) {
    const int width = goals.width, equations = Equations(width);
    systems.push_back({"full/" + std::to_string(width), [=] { return Full(equations, width); }, width > 2000 ? 5 : 11,
                       1, goals.goal, goals.goalOfAvx2});
  }
  systems.push_back({"full/300/cases:20", [] { return Full(Equations(300), 300); }, 5, 20});
  for (const int width : {30, 60, 120, 300, 600, 1200, 2400}) {
    systems.push_back(
        {"ragged/" + std::to_string(width), [=] { return Ragged(Equations(width), width); }, width > 2000 ? 5 : 11});
  }
  for (const int width : {120, 300, 600, 1200}) {
    systems.push_back({"tower/" + std::to_string(width), [=] { return Setbacks(Equations(width), width); }});
  }
  systems.push_back({"frame/floors:40/nodes:6x13", [] { return Frame(6, 13, 40); }});
  for (const auto& [side, goal] : {std::pair{60, 2.0}, {100, 2.6}, {150, 3.5}}) {
    systems.push_back(
        {"plate/" + std::to_string(side), [side = side] { return Plate(side); }, side > 100 ? 3 : 7, 1, goal});
  }
  return systems;
}

}  // namespace

void RegisterBandSolver() {
  for (const System& system : Systems()) {
    for (const auto& [set, instructions] : {std::pair{"AVX-512", Instructions::Avx512}, {"AVX2", Instructions::Avx2}}) {
      Register("Solve/" + system.name + "/" + set, system.turns,
               [=, kind = instructions](benchmark::State& state) { Solve(state, system, kind); });
    }
  }
}

}  // namespace velmor::bench
