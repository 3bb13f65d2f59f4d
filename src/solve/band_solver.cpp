#include "solve/band_solver.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/memory.hpp"
#include "solve/band_kernel.hpp"
#include "solve/equation_sets.hpp"

namespace velmor {
namespace {

bool IsPivot(double entry) { return std::isfinite(1 / entry); }

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

/// The elimination of one band by a kernel, block by block as its rows come in, and the work space for it: a few
/// numbers for each row, and some rows for the tiles.
class TiledElimination {
 public:
  TiledElimination(const BandKernel& kernel, int equations, int width, Grid& loads)
      : kernel_(kernel),
        isWide_(width >= kernel.wideBand),
        spareRow_(static_cast<std::uint64_t>(equations) + RowsBeyond + 32),
        rows_(equations + RowsBeyond, spareRow_.Data()),
        reciprocal_(equations),
        end_(equations + 8),
        pivots_(width),
        groupPivots_(isWide_ ? RowsPerCall * RowsPerCall / 4 : 0),
        multipliers_(8 * static_cast<std::uint64_t>(width)),
        group_(isWide_ ? RowsPerCall * (RowsPerCall + 24) : 1) {
    work_.rows = &rows_(0);
    work_.width = width;
    work_.equations = equations;
    work_.loads = loads.RowStart(0) + loads.Cols() + 1;
    work_.loadStep = loads.Cols() + 1;
    work_.loadCases = loads.Rows();
    work_.reciprocal = &reciprocal_(0);
    work_.end = &end_(0);
    work_.pivots = &pivots_(0);
    work_.multipliers = multipliers_.Data();
    if (!isWide_) return;
    work_.groupPivots = &groupPivots_(0);
    work_.strip = group_.Data();
    work_.groupMultipliers = group_.Data() + RowsPerCall * 24;
  }

  /// Rows come in ascending order: entry (e, j) at row[j], as far as column `end` in use.
  void AddRow(double* row, double end) {
    rows_(++added_) = row;
    end_(added_) = end;
  }
  bool IsBlockThere() const { return added_ >= std::min(done_ + RowsPerCall, work_.equations) && !IsDone(); }
  bool IsDone() const { return done_ == work_.equations; }
  int Done() const { return done_; }
  double* Row(int e) const { return rows_(e); }
  double End(int e) const { return end_(e); }

  /// Eliminates the next block. Returns 0 or the first equation with a bad pivot.
  int EliminateBlock() {
    const int first = done_ + 1;
    done_ = std::min(done_ + RowsPerCall, work_.equations);
    return kernel_.eliminate(work_, first, done_);
  }

 private:
  static constexpr int RowsBeyond = 16;
  const BandKernel& kernel_;
  bool isWide_;
  ZeroedBlock spareRow_;  // for the rows that the last tiles lack: column j at place j
  ColumnOf<double*> rows_;
  Column reciprocal_, end_;
  ColumnOf<Pivot> pivots_, groupPivots_;
  ZeroedBlock multipliers_, group_;  // vectors: these begin a cache line
  BandWork work_{};
  int added_ = 0, done_ = 0;
};

/// A set of equations as a band of its own, which stands at the start of each of its rows in K while the row is in
/// work. The largest column in use is needed both in the set's numbers and, for the height in K, in those of the model
/// (it may be no member); the latter goes along as a fraction, since both grow together.
class PackedSet {
 public:
  PackedSet(const BandKernel& kernel, const EquationSet& set, BandMatrix& K, Grid& LoadTable)
      : set_(set),
        K_(K),
        LoadTable_(LoadTable),
        loads_(LoadTable.Rows(), set.Count()),
        row_(set.width),
        tiles_(kernel, set.Count(), set.width, loads_) {
    for (int c = 1; c <= loads_.Rows(); ++c) {
      for (int k = 1; k <= set.Count(); ++k) loads_(c, k) = LoadTable(c, set.member(k));
    }
  }

  /// Takes in the members up to this equation and eliminates as far as they go. Returns 0 or the first equation of all
  /// with a bad pivot; nothing more is done then.
  int Continue(int equation) {
    while (packed_ < set_.Count() && set_.member(packed_ + 1) <= equation) Pack(++packed_);
    while (failed_ == 0 && tiles_.IsBlockThere()) {
      if (const int failed = tiles_.EliminateBlock()) failed_ = set_.member(failed);
      while (unpacked_ + set_.width <= tiles_.Done()) Unpack(++unpacked_);
    }
    return failed_;
  }

  void Finish() {
    while (unpacked_ < packed_) Unpack(++unpacked_);
    for (int c = 1; c <= loads_.Rows(); ++c) {
      for (int k = 1; k <= set_.Count(); ++k) LoadTable_(c, set_.member(k)) = loads_(c, k);
    }
  }

 private:
  static constexpr double Fraction = 0.5 / EquationSets::MostEquations;

  /// Puts the row of member k together: its columns begin a cache line where those of K do. The diagonal goes along
  /// also where the height is 0.
  void Pack(int k) {
    const int e = set_.member(k);
    const double* const row = K_.Row(e) - e + 1;
    double* const packed = K_.Row(e) + 1 + ((k - e) & 7) - k;
    const int height = K_.Height(e), end = std::min(set_.Rank(e + height - 1), k + set_.width - 1);
    const int last = std::max(end, k);
    for (int j = k; j <= last; ++j) row_(j - k) = row[set_.member(j)];
    std::copy(&row_(0), &row_(0) + (last - k + 1), packed + k);
    std::fill(packed + last + 1, packed + k + set_.width, 0.0);
    tiles_.AddRow(packed, end + (e + height - 1) * Fraction);
  }

  void Unpack(int k) {
    const int e = set_.member(k), end = static_cast<int>(tiles_.End(k)), last = std::max(end, k);
    const auto height = static_cast<int>((tiles_.End(k) - end) / Fraction) - e + 1;
    double* const row = K_.Row(e) - e + 1;
    double* const packed = tiles_.Row(k);
    std::copy(packed + k, packed + last + 1, &row_(0));
    std::fill(K_.Row(e) + 1, packed + k + set_.width, 0.0);
    for (int j = k; j <= last; ++j) row[set_.member(j)] = row_(j - k);
    K_(e, 0) = height;
  }

  const EquationSet& set_;
  BandMatrix& K_;
  Grid& LoadTable_;
  Grid loads_;
  Column row_;
  TiledElimination tiles_;
  int packed_ = 0, unpacked_ = 0, failed_ = 0;
};

int EliminateWhole(const BandKernel& kernel, BandMatrix& K, Grid& LoadTable, int equations,
                   const RowProgress& progress) {
  TiledElimination tiles(kernel, equations, K.BandBound(), LoadTable);
  for (int e = 1; e <= equations; ++e) tiles.AddRow(K.Row(e) + 1 - e, e - 1 + K(e, 0));
  while (!tiles.IsDone()) {
    if (const int failed = tiles.EliminateBlock()) return failed;
    if (equations > 1) progress(std::min(tiles.Done(), equations - 1));
  }
  return 0;
}

/// The same set by set. If one of them fails the others go on to their end, for an earlier equation may be bad as well.
int EliminateSets(const BandKernel& kernel, const EquationSets& found, BandMatrix& K, Grid& LoadTable, int equations,
                  const RowProgress& progress) {
  const auto isBad = [&](int e) { return !IsPivot(K(e, 1)); };
  const auto bad = std::find_if(found.loose.begin(), found.loose.end(), isBad);
  int failed = bad == found.loose.end() ? equations + 1 : *bad;
  std::vector<std::unique_ptr<PackedSet>> packed;
  packed.reserve(found.sets.size());
  for (const EquationSet& set : found.sets) packed.push_back(std::make_unique<PackedSet>(kernel, set, K, LoadTable));
  for (int last = 0; last < equations;) {
    last = std::min(last + RowsPerCall, equations);
    for (const auto& set : packed) {
      if (const int stop = set->Continue(last)) failed = std::min(failed, stop);
    }
    progress(std::min(last, equations - 1));
  }
  for (const auto& set : packed) set->Finish();
  return failed <= equations ? failed : 0;
}

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
    if (i < equations && (i % RowsPerCall == 0 || i == equations - 1)) progress(i);
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

  const EquationSets found = SeparateSets(K, equations);
  return found.sets.empty() ? EliminateWhole(*kernel, K, LoadTable, equations, progress)
                            : EliminateSets(*kernel, found, K, LoadTable, equations, progress);
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

  // One view serves both sweeps; this one only reads the band.
  ColumnOf<double*> rows(equations + 16, const_cast<double*>(K.Row(0)));
  for (int e = 1; e <= equations; ++e) rows(e) = const_cast<double*>(K.Row(e)) + 1 - e;
  BandWork work{};
  work.rows = &rows(0);
  work.width = K.BandBound();
  work.equations = equations;
  work.loads = LoadTable.RowStart(0) + LoadTable.Cols() + 1;
  work.loadStep = LoadTable.Cols() + 1;
  work.loadCases = LoadTable.Rows();
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
