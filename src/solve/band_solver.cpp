#include "solve/band_solver.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/memory.hpp"
#include "solve/band_kernel.hpp"

namespace velmor {
namespace {

bool IsPivot(double entry) { return entry != 0 && !std::isnan(entry); }

/// Takes f times pivot row i, from column j on, off row j = i + d, and lengthens row j to the end of row i.
void ReduceRow(BandMatrix& K, int i, int d, int height, double f) {
  const double* const pivotRow = K.Row(i);
  double* const row = K.Row(i + d);
  for (int m = d + 1; m <= height; ++m) {
    if (pivotRow[m] != 0) row[m - d] = std::fma(-f, pivotRow[m], row[m - d]);
  }
  row[0] = std::max(row[0], static_cast<double>(height - d));
}

#ifdef VELMOR_VECTOR_KERNELS
const BandKernel* Kernel(Instructions instructions) {
  switch (instructions) {
    case Instructions::Avx2: return &Avx2Kernel;
    case Instructions::Avx512: return &Avx512Kernel;
    default: return nullptr;
  }
}
#else
const BandKernel* Kernel(Instructions) { return nullptr; }
#endif

constexpr int RowsPerCall = BandWork::BlockRows;

/// From here on the rows go in blocks.
int wideBand = std::getenv("WB") ? std::atoi(std::getenv("WB")) : 400;

std::uint64_t Numbers(int width) { return 8 * static_cast<std::uint64_t>(width) + (static_cast<std::uint64_t>(width) + 40) / 8 * 8; }

BandWork View(const BandMatrix& K, const Grid& LoadTable, int equations) {
  // The kernels take one view for both sweeps; the back substitution only reads the band.
  BandWork work{};
  double* const origin = const_cast<double*>(K.Row(0));
  work.band = origin + 1;
  work.step = K.Stride() - 1;
  work.width = K.BandBound();
  work.equations = equations;
  work.loadCases = LoadTable.Rows();
  work.loadStep = LoadTable.Cols() + 1;
  if (work.loadCases > 0) work.loads = const_cast<double*>(LoadTable.RowStart(1));
  return work;
}

}  // namespace

bool Has(Instructions instructions) {
#ifdef VELMOR_VECTOR_KERNELS
  switch (instructions) {
    case Instructions::Avx2: return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case Instructions::Avx512: return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("fma");
    default: return true;
  }
#else
  return instructions == Instructions::Plain;
#endif
}

Instructions Fastest() {
  for (const Instructions instructions : {Instructions::Avx512, Instructions::Avx2}) {
    if (Has(instructions)) return instructions;
  }
  return Instructions::Plain;
}

int EliminateBandPlainly(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress) {
  const int loadCases = LoadTable.Rows();
  for (int i = 1; i <= equations; ++i) {
    if (i % RowsPerCall == 0 || i == equations) progress(i);
    if (!IsPivot(K(i, 1))) return i;
    const double p = 1 / K(i, 1);
    const int height = K.Height(i);
    for (int d = 1; d < height; ++d) {
      const double entry = K(i, d + 1);
      if (entry == 0) continue;
      const double f = p * entry;
      ReduceRow(K, i, d, height, f);
      for (int c = 1; c <= loadCases; ++c) {
        if (LoadTable(c, i) != 0) LoadTable(c, i + d) = std::fma(-f, LoadTable(c, i), LoadTable(c, i + d));
      }
    }
  }
  return 0;
}

int EliminateBand(BandMatrix& K, Grid& LoadTable, int equations, const RowProgress& progress,
                  Instructions instructions) {
  const BandKernel* const kernel = Kernel(instructions);
  if (kernel == nullptr) return EliminateBandPlainly(K, LoadTable, equations, progress);

  BandWork work = View(K, LoadTable, equations);
  constexpr int block = BandWork::BlockRows;
  const bool isWide = work.width >= wideBand;
  Column reciprocal(equations), end(equations + 8);
  for (int e = 1; e <= equations; ++e) end(e) = e - 1 + K(e, 0);
  ColumnOf<Pivot> pivots(work.width), groupPivots(isWide ? block * block / 4 : 0);
  ZeroedBlock numbers(Numbers(work.width) + (isWide ? block * (block + 24) : 0));
  work.reciprocal = &reciprocal(0);
  work.end = &end(0);
  work.pivots = &pivots(0);
  work.multipliers = numbers.Data();
  work.spareRow = work.multipliers + 8 * work.width;
  if (isWide) {
    work.groupPivots = &groupPivots(0);
    work.strip = work.multipliers + Numbers(work.width);
    work.groupMultipliers = work.strip + 24 * block;
  }
  for (int first = 1; first <= equations; first += block) {
    const int last = std::min(first + block - 1, equations);
    if (const int failed = kernel->eliminate(work, first, last)) return failed;
    progress(last);
  }
  return 0;
}

void BackSubstitutePlainly(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput,
                           const RowProgress& progress) {
  const int loadCases = LoadTable.Rows();
  for (int e = equations; e >= 1; --e) {
    if (e % RowsPerCall == 1) progress(equations + 1 - e);
    const int lowest = std::max(1, e - (BandInput - 1));
    for (int c = 1; c <= loadCases; ++c) {
      if (LoadTable(c, e) == 0) continue;
      const double u = LoadTable(c, e) /= K(e, 1);
      for (int r = e - 1; r >= lowest; --r) LoadTable(c, r) = std::fma(-K(r, e + 1 - r), u, LoadTable(c, r));
    }
  }
}

void BackSubstitute(const BandMatrix& K, Grid& LoadTable, int equations, int BandInput, const RowProgress& progress,
                    Instructions instructions) {
  const BandKernel* const kernel = Kernel(instructions);
  if (kernel == nullptr) return BackSubstitutePlainly(K, LoadTable, equations, BandInput, progress);

  BandWork work = View(K, LoadTable, equations);
  work.windowRows = work.width + 8;
  const int groups = (work.loadCases + 3) / 4;
  ZeroedBlock window(16 * static_cast<std::uint64_t>(work.windowRows) * groups + 8);
  work.window = window.Data();
  for (int last = equations; last >= 1; last -= RowsPerCall) {
    const int first = std::max(1, last - RowsPerCall + 1);
    kernel->backSubstitute(work, first, last);
    progress(equations + 1 - first);
  }
}

}  // namespace velmor
