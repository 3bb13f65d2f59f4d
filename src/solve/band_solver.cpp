#include "solve/band_solver.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

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
    case Instructions::Avx2:
      return &Avx2Kernel;
    case Instructions::Avx512:
      return &Avx512Kernel;
    default:
      return nullptr;
  }
}
#else
const BandKernel* Kernel(Instructions) { return nullptr; }
#endif

constexpr int RowsPerCall = BandWork::BlockRows;

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

/// The work space of an elimination: a few numbers for each row, and some rows for the tiles.
class EliminationSpace {
 public:
  EliminationSpace(const BandMatrix& K, int equations, bool isWide)
      : reciprocal_(equations),
        end_(equations + 8),
        pivots_(K.BandBound()),
        groupPivots_(isWide ? Block * Block / 4 : 0),
        multipliers_(8 * static_cast<std::uint64_t>(K.BandBound())),
        spareRow_(static_cast<std::uint64_t>(K.BandBound()) + 32),
        group_(isWide ? Block * (Block + 24) : 1),
        isWide_(isWide) {
    for (int e = 1; e <= equations; ++e) end_(e) = e - 1 + K(e, 0);
  }

  void Lend(BandWork& work) {
    work.reciprocal = &reciprocal_(0);
    work.end = &end_(0);
    work.pivots = &pivots_(0);
    work.multipliers = multipliers_.Data();
    work.spareRow = spareRow_.Data();
    if (!isWide_) return;
    work.groupPivots = &groupPivots_(0);
    work.strip = group_.Data();
    work.groupMultipliers = group_.Data() + Block * 24;
  }

 private:
  static constexpr int Block = BandWork::BlockRows;
  Column reciprocal_, end_;
  ColumnOf<Pivot> pivots_, groupPivots_;
  ZeroedBlock multipliers_, spareRow_, group_;  // vectors: these begin a cache line
  bool isWide_;
};

}  // namespace

bool Has(Instructions instructions) {
#ifdef VELMOR_VECTOR_KERNELS
  switch (instructions) {
    case Instructions::Avx2:
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case Instructions::Avx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("fma");
    default:
      return true;
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
    if (i % RowsPerCall == 0 || i == equations - 1) progress(i);
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
  EliminationSpace space(K, equations, work.width >= kernel->wideBand);
  space.Lend(work);
  for (int first = 1; first <= equations; first += RowsPerCall) {
    const int last = std::min(first + RowsPerCall - 1, equations);
    if (const int failed = kernel->eliminate(work, first, last)) return failed;
    if (equations > 1) progress(std::min(last, equations - 1));
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
  const auto groups = static_cast<std::uint64_t>(work.loadCases + 7) / 8;
  ZeroedBlock window(16 * static_cast<std::uint64_t>(work.windowRows) * groups + 1);
  work.window = window.Data();
  for (int last = equations; last >= 1; last -= RowsPerCall) {
    const int first = std::max(1, last - RowsPerCall + 1);
    kernel->backSubstitute(work, first, last);
    progress(equations + 1 - first);
  }
}

}  // namespace velmor
