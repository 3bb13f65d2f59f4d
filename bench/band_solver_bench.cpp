// Elimination and back substitution of whole systems beside the Cholesky factorisation of a band in OpenBLAS, in turn
// within each iteration so that both meet the same state of a shared machine. Times are the thread's processor time.

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "results/band_product.hpp"
#include "solve/band_solver.hpp"

#ifdef VELMOR_OPENBLAS
extern "C" {
void dpbtrf_(const char*, const int*, const int*, double*, const int*, int*, std::size_t);
void dpbtrs_(const char*, const int*, const int*, const int*, const double*, const int*, double*, const int*, int*,
             std::size_t);
void openblas_set_num_threads(int);
char* openblas_get_corename();
}
#endif

namespace velmor::bench {
namespace {

void NoDisplay(int) {}

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

/// A band as it is before the elimination.
struct Pattern {
  int equations, width;
  std::vector<std::vector<double>> rows;  // from the diagonal up to the row's height
};

/// Entries from -1 to 1, and a diagonal that outweighs them.
template <typename Height, typename IsEntry>
Pattern Fill(int equations, int width, Height height, IsEntry isEntry) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> entry(-1, 1);
  Pattern pattern{equations, width, {}};
  for (int e = 0; e < equations; ++e) {
    std::vector<double> row(static_cast<std::size_t>(std::min(height(e), equations - e)));
    for (std::size_t d = 0; d < row.size(); ++d) {
      if (isEntry(e, e + static_cast<int>(d))) row[d] = entry(random);
    }
    row[0] = 2.0 * width;
    pattern.rows.push_back(std::move(row));
  }
  return pattern;
}

Pattern Full(int equations, int width) {
  return Fill(
      equations, width, [=](int) { return width; }, [](int, int) { return true; });
}

/// A tower with two setbacks: the rows' height falls to two thirds and to one third of the width.
Pattern Setbacks(int equations, int width) {
  return Fill(
      equations, width, [=](int e) { return width * (3 - 3 * e / equations) / 3; }, [](int, int) { return true; });
}

/// A square plate in a plane with six freedoms a node, numbered line by line: membrane, bending and drilling freedoms
/// do not meet.
Pattern Plate(int elements) {
  const int line = elements + 1;
  const auto set = [](int e) { return e % 6 < 2 ? 0 : e % 6 < 5 ? 1 : 2; };
  return Fill(
      6 * line * line, 6 * (line + 2), [=](int e) { return 6 * (line + 2) - e % 6; },
      [=](int e, int j) {
        const int a = e / 6, b = j / 6;
        const bool neighbours = std::abs(a % line - b % line) <= 1 && std::abs(a / line - b / line) <= 1;
        return neighbours && set(e) == set(j) && (set(e) != 2 || e == j);
      });
}

void Restore(const Pattern& pattern, BandMatrix& K, Grid& loads) {
  for (int e = 1; e <= pattern.equations; ++e) {
    const std::vector<double>& row = pattern.rows[static_cast<std::size_t>(e - 1)];
    double* const rest = std::copy(row.begin(), row.end(), K.Row(e) + 1);
    std::fill(rest, K.Row(e) + pattern.width + 1, 0.0);
    K(e, 0) = static_cast<double>(row.size());
  }
  loads.Fill(1);
}

#ifdef VELMOR_OPENBLAS
/// The same system for the factorisation of a lower band by columns. Returns the time.
double TimePeer(const Pattern& pattern, int loadCases) {
  const int n = pattern.equations, ld = pattern.width, diagonals = ld - 1;
  static std::vector<double> band, loads;
  band.assign(static_cast<std::size_t>(ld) * static_cast<std::size_t>(n), 0.0);
  loads.assign(static_cast<std::size_t>(loadCases) * static_cast<std::size_t>(n), 1.0);
  for (std::size_t e = 0; e < pattern.rows.size(); ++e) {
    std::copy(pattern.rows[e].begin(), pattern.rows[e].end(), band.begin() + static_cast<std::ptrdiff_t>(e) * ld);
  }
  openblas_set_num_threads(1);
  int info = 0;
  const double start = ThreadSeconds();
  dpbtrf_("L", &n, &diagonals, band.data(), &ld, &info, 1);
  dpbtrs_("L", &n, &diagonals, &loadCases, band.data(), &ld, loads.data(), &n, &info, 1);
  return ThreadSeconds() - start;
}
const char* PeerName() { return openblas_get_corename(); }
#else
double TimePeer(const Pattern&, int) { return 0; }
const char* PeerName() { return "no OpenBLAS"; }
#endif

/// Largest |K u - f| where every entry of f is 1.
double Residual(const Pattern& pattern, BandMatrix& K, const Grid& u) {
  Grid product(u.Rows(), u.Cols()), loads(u.Rows(), u.Cols());
  Restore(pattern, K, loads);
  for (int e = 1; e <= pattern.equations; ++e) MultiplyRow(K.Row(e), e, u, product);
  double largest = 0;
  for (int c = 1; c <= u.Rows(); ++c) {
    for (int e = 1; e <= pattern.equations; ++e) largest = std::fmax(largest, std::abs(product(c, e) - 1));
  }
  return largest;
}

void SolveInTurn(benchmark::State& state, const Pattern& pattern, int loadCases, Instructions instructions) {
  if (!Has(instructions)) return state.SkipWithError("not on this processor");
  BandMatrix K(pattern.equations + 1, pattern.width + 1);
  Grid loads(loadCases, pattern.equations + 1);
  std::vector<double> ours, ratios;
  for (auto _ : state) {
    const double peer = TimePeer(pattern, loadCases);
    Restore(pattern, K, loads);
    const double start = ThreadSeconds();
    EliminateBand(K, loads, pattern.equations, NoDisplay, instructions);
    BackSubstitute(K, loads, pattern.equations, pattern.width, NoDisplay, instructions);
    ours.push_back(ThreadSeconds() - start);
    ratios.push_back(peer / ours.back());
    state.SetIterationTime(ours.back());
  }
  double operations = 0;  // a multiplication and a subtraction for half the square that a pivot row changes
  for (const std::vector<double>& row : pattern.rows) operations += static_cast<double>(row.size() * row.size());
  state.counters["ours_ms"] = 1e3 * Median(ours);
  state.counters["GFLOP/s"] = 1e-9 * operations / Median(ours);
  state.counters["peer/ours"] = Median(ratios);
  state.SetLabel(PeerName());
  if (!(Residual(pattern, K, loads) < 1e-9)) state.SkipWithError("a wrong solution has no speed");
}

/// Every width with about the same number of operations, but at least twice as many equations as the width.
int Equations(int width) { return std::clamp(static_cast<int>(1.5e9 / width / width), 5 * width / 2, 60'000); }

void Register(const std::string& name, const std::function<Pattern()>& make, int loadCases, int turns) {
  for (const auto& [set, instructions] : {std::pair{"AVX-512", Instructions::Avx512}, {"AVX2", Instructions::Avx2}}) {
    const std::string full = "Solve/" + name + "/cases:" + std::to_string(loadCases) + "/" + set;
    benchmark::RegisterBenchmark(
        full.c_str(),
        [=, kind = instructions](benchmark::State& state) { SolveInTurn(state, make(), loadCases, kind); })
        ->UseManualTime()
        ->Iterations(turns)
        ->Unit(benchmark::kMillisecond);
  }
}

const bool registered = [] {
  for (const int width : {30, 60, 120, 300, 600, 1200, 2400}) {
    const int n = Equations(width), turns = width > 2000 ? 3 : 9;
    Register(
        "full/width:" + std::to_string(width), [=] { return Full(n, width); }, 1, turns);
  }
  for (const int width : {120, 300, 600, 1200}) {
    Register(
        "setbacks/width:" + std::to_string(width), [=] { return Setbacks(Equations(width), width); }, 1, 9);
  }
  Register(
      "full/width:300", [] { return Full(Equations(300), 300); }, 20, 5);
  for (const int side : {60, 100}) {
    Register(
        "plate/side:" + std::to_string(side), [=] { return Plate(side); }, 1, 5);
  }
  return true;
}();

}  // namespace
}  // namespace velmor::bench
