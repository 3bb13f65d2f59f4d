// The band solver's inner loops in register tiles: the body of band_kernel_avx2.cpp and band_kernel_avx512.cpp.
//
// The plain elimination takes each pivot row off all rows below it, so every entry of the band is loaded and stored
// once for every pivot. Here a tile of rows (as many as a vector has lanes) looks back instead: it collects its
// multipliers of all earlier pivot rows that reach it, and a strip of three vectors by these rows stays in registers
// while the pivot rows run by, one fused multiply-subtract for each entry and pivot, in the order of the pivots.
// Earlier rows are only read. After them the tile eliminates within itself: the square on the diagonal gives the
// multipliers, which are then applied to the strips on its right.
//
//               | square | strip  | strip  | strip  |       columns J.., J + Rows.., ...
//     pivot i   ......xxxxxxxxxxxxxxxxxxxxx.........       its entries in the square's columns, divided by its pivot,
//     pivot i+1   ......xxxxxxxxxxxxxxxxxxxxx.......       are the multipliers of the tile's rows
//     tile       \xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...
//                  \xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx..
//
// - Only pivots with a multiplier other than zero in the tile are listed, and a strip begins with the first one that
//   reaches it. Zeros within a tile are multiplied; that changes no number.
// - Whether an entry is zero is seen while the list is made, so the rows' ends grow there, row by row, by the rule of
// the
//   plain loop.
// - Pivots that end within the first or second vector of a strip leave the others alone. Loads and stores where a row's
//   room in memory begins or ends within a vector are masked: what stands beside a row is neither read nor written.
// - What comes next is fetched while the pivots run by, a line a pivot: a burst of requests would hold up the loads. In
//   tiles it is the next tile (10 to 40 % up to width 120, of which 5 to 8 for one by one), in blocks the next tile of
//   the strip and, into the second cache, the next strip of the pivot rows (10 to 20 %). The back substitution fetches
//   rows far ahead into the second cache (1.2 to 1.8 times the speed of none or of the first cache).
// - In wide bands the pivot rows that a tile reads no longer stay in the cache. There a block of 96 rows takes earlier
//   pivots in groups of 96, of which a strip at a time is copied and serves all tiles of the block; only pivots within
//   the block are left to the tiles (twice the speed at width 2400, a loss below the limits that the kernels name).
//
// These two files are compiled for other processors than the rest. So nothing here may come from a header with inline
// functions of external linkage (the linker would be free to use this copy of them everywhere), and all of it stands in
// an unnamed namespace.
// Literature for tiles and packed strips: Goto, van de Geijn, Anatomy of High-Performance Matrix Multiplication, ACM
// Transactions on Mathematical Software 34 (2008).
#pragma once

#include "solve/band_kernel.hpp"

namespace velmor {
namespace {

/// The pivot rows that a tile of rows loses, with the tile's multipliers of each.
struct PivotList {
  Pivot* pivots;
  double* multipliers;  // as many as the tile has rows, pivot after pivot
  int count = 0;
};

/// All of it for one set of vector instructions S.
template <typename S>
struct Tiles {
  using Vector = typename S::Vector;
  static constexpr int Lanes = S::Lanes;
  static constexpr int Rows = Lanes;  // of a tile
  static constexpr int Strip = 3;     // vectors side by side in a tile
  static constexpr int Columns = Strip * Lanes;
  static constexpr bool FetchByPivot = Lanes == 8;  // with half as much work a pivot it costs a quarter

  /// The rows of a tile: entry j of row r at row[r][j]. Rows that the last tile lacks are zeros of no meaning.
  struct RowTile {
    const BandWork& work;
    int first;  // its first equation
    double* const* row;

    RowTile(const BandWork& w, int firstEquation) : work(w), first(firstEquation), row(w.rows + firstEquation) {}

    /// Lanes of the vector from column C on that belong to row r.
    typename S::Mask Own(int r, int C) const {
      return S::And(S::From(first + r - C), S::First(first + r + work.width - C));
    }
    /// Asks for a vector of the next tile, as far from the diagonal as this tile's strip from column C on: another one
    /// for each k up to Rows * Strip.
    void FetchAhead(int k, int C) const {
      __builtin_prefetch(row[Rows + k % Rows] + Rows + C + k / Rows % Strip * Lanes, 1);
    }
    /// Whether all rows have all columns from C on to the end of a strip.
    bool Holds(int C) const { return C >= first + Rows - 1 && C + Columns <= first + work.width; }
  };

  /// The entries of a tile from column C on, in registers. With Edge the rows may begin or end within it.
  template <bool Edge>
  [[gnu::always_inline]] static void LoadStrip(const RowTile& tile, int C, Vector (&x)[Rows][Strip]) {
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) {
#pragma GCC unroll 8
      for (int v = 0; v < Strip; ++v) {
        const int column = C + v * Lanes;
        x[r][v] = Edge ? S::Load(tile.row[r] + column, tile.Own(r, column)) : S::Load(tile.row[r] + column);
      }
    }
  }

  template <bool Edge>
  [[gnu::always_inline]] static void StoreStrip(const RowTile& tile, int C, const Vector (&x)[Rows][Strip]) {
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) {
#pragma GCC unroll 8
      for (int v = 0; v < Strip; ++v) {
        const int column = C + v * Lanes;
        if (Edge) {
          S::Store(tile.row[r] + column, tile.Own(r, column), x[r][v]);
        } else {
          S::Store(tile.row[r] + column, x[r][v]);
        }
      }
    }
  }

  /// Takes f times the pivot row at `place` off the first vectors of a tile. With Edge the row's room in memory, so
  /// many numbers from `place`, may end within the last of these vectors.
  template <int Vectors, bool Edge>
  [[gnu::always_inline]] static void Subtract(Vector (&x)[Rows][Strip], const double* f, const double* place,
                                              int room = Columns) {
    constexpr int last = (Vectors - 1) * Lanes;
    Vector entries[Vectors];
#pragma GCC unroll 8
    for (int v = 0; v < Vectors - 1; ++v) entries[v] = S::Load(place + v * Lanes);
    entries[Vectors - 1] = Edge ? S::Load(place + last, S::First(room - last)) : S::Load(place + last);
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) {
      const Vector multiplier = S::Set(f[r]);
#pragma GCC unroll 8
      for (int v = 0; v < Vectors; ++v) x[r][v] = S::SubtractProduct(x[r][v], multiplier, entries[v]);
    }
  }

  /// Lists the pivot rows from..to that have a multiplier other than zero for a row of the tile of equations J.. and
  /// raises these rows' ends.
  static void ListPivots(const BandWork& work, PivotList& list, int J, int from, int to) {
    double* const* const rows = work.rows;
    const double* const rowEnd = work.end;
    const double* const reciprocal = work.reciprocal;
    const int width = work.width;
    Vector ends = S::Load(rowEnd + J);
    Pivot* pivot = list.pivots;
    double* f = list.multipliers;
    for (int i = from; i <= to; ++i) {
      __builtin_prefetch(rows[i + 8] + J);
      const double end = rowEnd[i];
      if (end < J) continue;
      const double* const row = rows[i];
      const int limit = i + width;
      const Vector entries = J + Lanes <= limit ? S::Load(row + J) : S::Load(row + J, S::First(limit - J));
      const auto nonZero = S::NonZero(entries);
      if (!S::Any(nonZero)) continue;
      S::Store(f, S::Multiply(S::Set(reciprocal[i]), entries));
      ends = S::Max(ends, S::Set(end), nonZero);
      *pivot++ = {row, i, static_cast<int>(end), limit};
      f += Lanes;
    }
    list.count = static_cast<int>(pivot - list.pivots);
    S::Store(work.end + J, ends);
  }

  /// Takes the listed pivots off the loads of Cases load cases, the rows of the tile as one vector.
  template <int Cases>
  static void ReduceLoads(const BandWork& work, const PivotList& list, int J, int firstCase) {
    const auto lanes = S::First(work.equations - J + 1);
    const double* loads[Cases];
    Vector x[Cases];
    for (int c = 0; c < Cases; ++c) {
      loads[c] = work.loads + (firstCase + c) * work.loadStep;
      x[c] = S::Load(loads[c] + J, lanes);
    }
    for (int k = 0; k < list.count; ++k) {
      const Vector multipliers = S::Load(list.multipliers + k * Lanes);
      const int i = list.pivots[k].equation;
      for (int c = 0; c < Cases; ++c) x[c] = S::SubtractProduct(x[c], multipliers, S::Set(loads[c][i]));
    }
    for (int c = 0; c < Cases; ++c) S::Store(work.loads + (firstCase + c) * work.loadStep + J, lanes, x[c]);
  }

  static void ReduceLoadsFrom(int c, const BandWork& work, const PivotList& list, int J) {
    for (; c + 4 <= work.loadCases; c += 4) ReduceLoads<4>(work, list, J, c);
    for (; c < work.loadCases; ++c) ReduceLoads<1>(work, list, J, c);
  }

  // ---- a tile of rows to the end ----

  /// Takes the listed pivots off the square on the diagonal, which is returned, and off the first load case, whose one
  /// chain of operations alone would take as long as the square's eight.
  template <bool WithLoad>
  static void SubtractFromSquare(const RowTile& tile, const PivotList& list, Vector (&square)[Rows]) {
    const int J = tile.first;
    const double* const loads = tile.work.loads;
    const auto lanes = S::First(tile.work.equations - J + 1);
    Vector load = S::Zero();
    if (WithLoad) load = S::Load(loads + J, lanes);
    Vector x[Rows];
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) {
      tile.FetchAhead(r, J);
      x[r] = S::Load(tile.row[r] + J, tile.Own(r, J));
    }
    const double* f = list.multipliers;
    for (int k = 0; k < list.count; ++k, f += Lanes) {
      const Pivot& pivot = list.pivots[k];
      const Vector entries =
          J + Lanes <= pivot.limit ? S::Load(pivot.row + J) : S::Load(pivot.row + J, S::First(pivot.limit - J));
      if (WithLoad) load = S::SubtractProduct(load, S::Load(f), S::Set(loads[pivot.equation]));
#pragma GCC unroll 8
      for (int r = 0; r < Rows; ++r) x[r] = S::SubtractProduct(x[r], S::Set(f[r]), entries);
    }
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) square[r] = x[r];
    if (WithLoad) S::Store(tile.work.loads + J, lanes, load);
  }

  using Triangle = double[Rows][Lanes];  // multipliers of row r for the rows s > r of its own tile, 0 elsewhere

  /// Eliminates within the square on the diagonal. Returns 0 or the equation at which it had to stop.
  static int EliminateSquare(const RowTile& tile, const Vector (&square)[Rows], Triangle& triangle) {
    const BandWork& work = tile.work;
    const int J = tile.first;
    double entries[Rows][Lanes];
    for (int r = 0; r < Rows; ++r) {
      S::Store(entries[r], square[r]);
      S::Store(triangle[r], S::Zero());
    }
    int failed = 0;
    for (int r = 0; r < Rows && J + r <= work.equations; ++r) {
      const double pivot = entries[r][r];
      const double p = 1 / pivot;
      if (p - p != 0) {  // infinite or not a number
        failed = J + r;
        break;
      }
      work.reciprocal[J + r] = p;
      const Vector source = S::Keep(S::Load(entries[r]), S::From(r + 1));
      S::Store(triangle[r], S::Multiply(S::Set(p), source));
      const Vector ends = S::Load(work.end + J);
      S::Store(work.end + J, S::Max(ends, S::Set(work.end[J + r]), S::NonZero(source)));
      for (int s = r + 1; s < Rows; ++s) {
        S::Store(entries[s], S::SubtractProduct(S::Load(entries[s]), S::Set(triangle[r][s]), source));
      }
    }
    for (int r = 0; r < Rows; ++r) S::Store(tile.row[r] + J, tile.Own(r, J), S::Load(entries[r]));
    return failed;
  }

  /// The heights of the tile's rows, as their ends have become. Returns the largest end.
  static int StoreHeights(const RowTile& tile) {
    int largest = 0;
    for (int e = tile.first; e < tile.first + Rows && e <= tile.work.equations; ++e) {
      const int end = static_cast<int>(tile.work.end[e]);
      tile.row[e - tile.first][e - 1] = end - e + 1;
      if (end > largest) largest = end;
    }
    return largest;
  }

  /// The strip from column C on, right of the square: loses the listed pivots from k on, then the rows of its own tile.
  template <bool Edge>
  static void EliminateStrip(const RowTile& tile, const PivotList& list, int k, const Triangle& triangle, int C) {
    const Pivot* const pivots = list.pivots;
    const double* const f = list.multipliers;
    const int count = list.count;
    Vector x[Rows][Strip];
    constexpr bool fetches = FetchByPivot && !Edge;  // at the end of the rows few pivots run by
    if (!fetches) {
#pragma GCC unroll 24
      for (int vector = 0; vector < Rows * Strip; ++vector) tile.FetchAhead(vector, C);
    }
    LoadStrip<Edge>(tile, C, x);
    for (; k < count && pivots[k].end < C + Lanes; ++k) {
      if (fetches) tile.FetchAhead(k, C);
      Subtract<1, true>(x, f + k * Rows, pivots[k].row + C, pivots[k].limit - C);
    }
    for (; k < count && pivots[k].end < C + 2 * Lanes; ++k) {
      if (fetches) tile.FetchAhead(k, C);
      Subtract<2, true>(x, f + k * Rows, pivots[k].row + C, pivots[k].limit - C);
    }
    for (; k < count && pivots[k].limit < C + Columns; ++k) {
      if (fetches) tile.FetchAhead(k, C);
      Subtract<3, true>(x, f + k * Rows, pivots[k].row + C, pivots[k].limit - C);
    }
    if (!Edge) {  // else the tile's first row has no more room than the pivots above it
      for (; k < count; ++k) {
        if (fetches) tile.FetchAhead(k, C);
        Subtract<3, false>(x, f + k * Rows, pivots[k].row + C);
      }
    }
#pragma GCC unroll 8
    for (int r = 0; r < Rows; ++r) {
#pragma GCC unroll 8
      for (int s = r + 1; s < Rows; ++s) {
        const Vector multiplier = S::Set(triangle[r][s]);
#pragma GCC unroll 8
        for (int v = 0; v < Strip; ++v) x[s][v] = S::SubtractProduct(x[s][v], multiplier, x[r][v]);
      }
    }
    StoreStrip<Edge>(tile, C, x);
  }

  /// The loads of the tile lose the rows of the tile itself.
  static void ReduceLoadsInTile(const BandWork& work, const Triangle& triangle, int J) {
    const auto lanes = S::First(work.equations - J + 1);
    for (int c = 0; c < work.loadCases; ++c) {
      double* const loads = work.loads + c * work.loadStep + J;
      double load[Lanes];
      S::Store(load, S::Load(loads, lanes));
      for (int r = 0; r < Rows - 1; ++r) {
        S::Store(load, S::SubtractProduct(S::Load(load), S::Load(triangle[r]), S::Set(load[r])));
      }
      S::Store(loads, lanes, S::Load(load));
    }
  }

  /// Takes the pivots from `from` on off the tile of equations J.. and eliminates within it.
  static int EliminateTile(const BandWork& work, int J, int from) {
    const RowTile tile(work, J);
    PivotList list{work.pivots, work.multipliers};
    Triangle triangle;
    ListPivots(work, list, J, from, J - 1);
    Vector square[Rows];
    if (work.loadCases > 0) {
      SubtractFromSquare<true>(tile, list, square);
    } else {
      SubtractFromSquare<false>(tile, list, square);
    }
    const int failed = EliminateSquare(tile, square, triangle);
    const int end = StoreHeights(tile);
    int k = 0;
    for (int C = J + Rows; C <= end; C += Columns) {
      while (k < list.count && list.pivots[k].end < C) ++k;
      if (tile.Holds(C)) {
        EliminateStrip<false>(tile, list, k, triangle, C);
      } else {
        EliminateStrip<true>(tile, list, k, triangle, C);
      }
    }
    ReduceLoadsFrom(1, work, list, J);
    ReduceLoadsInTile(work, triangle, J);
    return failed;
  }

  // ---- a block of tiles, as far as earlier blocks go ----

  /// Copies columns C.. of the pivot rows from..to one below the other, zeros where a row has no place for them.
  static void CopyStrip(const BandWork& work, int from, int to, int C, double* copy) {
    for (int i = from; i <= to; ++i, copy += Columns) {
      const double* const row = work.rows[i];
#pragma GCC unroll 8
      for (int v = 0; v < Strip; ++v) {
        const int column = C + v * Lanes;
        S::Store(copy + v * Lanes, S::Load(row + column, S::First(i + work.width - column)));
        if (!FetchByPivot) __builtin_prefetch(row + column + Columns);
      }
    }
  }

  /// What is asked for while a strip of a tile loses a group of pivots.
  struct Upcoming {
    double* const* rows;  // of the tile to come next
    int C;                // and the first column of its strip
    double* const* pivotRows;
    int pivotColumn;  // of the pivot rows' next strip

    /// Another vector of the tile for each k.
    void FetchTile(int k) const { __builtin_prefetch(rows[k % Rows] + C + k / Rows % Strip * Lanes, 1); }
    void FetchPivot(int k) const { __builtin_prefetch(pivotRows[k] + pivotColumn, 0, 2); }
  };

  template <bool Edge>
  static void SubtractGroup(const RowTile& tile, const PivotList& list, int k, int C, const Upcoming& upcoming) {
    Vector x[Rows][Strip];
    if (!FetchByPivot) {
#pragma GCC unroll 24
      for (int vector = 0; vector < Rows * Strip; ++vector) upcoming.FetchTile(vector);
    }
    LoadStrip<Edge>(tile, C, x);
    for (; k < list.count; ++k) {
      if (FetchByPivot) {
        upcoming.FetchTile(k);
        upcoming.FetchPivot(k);
      }
      Subtract<3, false>(x, list.multipliers + k * Rows, list.pivots[k].row);
    }
    StoreStrip<Edge>(tile, C, x);
  }

  /// Takes the pivot rows from..to off the block of equations first..last.
  static void SubtractFromBlock(const BandWork& work, int first, int last, int from, int to) {
    PivotList lists[BandWork::BlockRows / Rows];
    int end = 0;
    for (int i = from; i <= to; ++i) {
      if (work.end[i] > end) end = static_cast<int>(work.end[i]);
    }
    int tiles = 0;
    for (int J = first; J <= last; J += Rows, ++tiles) {
      PivotList& list = lists[tiles];
      list = {work.groupPivots + tiles * BandWork::BlockRows,
              work.groupMultipliers + tiles * BandWork::BlockRows * Rows};
      ListPivots(work, list, J, from, to);
      for (int k = 0; k < list.count; ++k) list.pivots[k].row = work.strip + (list.pivots[k].equation - from) * Columns;
      ReduceLoadsFrom(0, work, list, J);
    }
    int reaching = from;
    for (int C = first; C <= end; C += Columns) {
      while (work.end[reaching] < C) ++reaching;
      CopyStrip(work, reaching, to, C, work.strip + (reaching - from) * Columns);
      for (int t = 0; t < tiles && first + t * Rows < C + Columns; ++t) {
        const RowTile tile(work, first + t * Rows);
        const PivotList& list = lists[t];
        int k = 0;
        while (k < list.count && list.pivots[k].equation < reaching) ++k;
        if (k == list.count) continue;
        const bool isLast = t + 1 == tiles || tile.first + Rows >= C + Columns;  // of this strip
        const Upcoming upcoming{isLast ? work.rows + first : tile.row + Rows, isLast ? C + Columns : C,
                                work.rows + from, C + Columns + t % Strip * Lanes};
        if (tile.Holds(C)) {
          SubtractGroup<false>(tile, list, k, C, upcoming);
        } else {
          SubtractGroup<true>(tile, list, k, C, upcoming);
        }
      }
    }
  }

  static int Eliminate(const BandWork& work, int first, int last) {
    const auto highest = [&](int row) { return row > work.width ? row - work.width + 1 : 1; };  // pivot that reaches it
    if (work.strip != nullptr) {
      for (int from = highest(first); from < first; from += BandWork::BlockRows) {
        const int to = from + BandWork::BlockRows < first ? from + BandWork::BlockRows - 1 : first - 1;
        SubtractFromBlock(work, first, last, from, to);
      }
    }
    for (int J = first; J <= last; J += Rows) {
      const int from = work.strip != nullptr ? first : highest(J);
      if (const int failed = EliminateTile(work, J, from)) return failed;
    }
    return 0;
  }
};

// ---- back substitution ----

/// One number in place of a vector, for a single load case: half the time of a vector with one lane in use.
struct Scalar {
  using Vector = double;
  using Mask = bool;
  static constexpr int Lanes = 1;

  static Vector Zero() { return 0; }
  static Vector Set(double x) { return x; }
  static Vector Load(const double* p) { return *p; }
  static void Store(double* p, Vector x) { *p = x; }
  static Vector Choose(Vector a, Vector b, Mask lanes) { return lanes ? b : a; }
  static Vector SubtractProduct(Vector x, Vector a, Vector b) { return __builtin_fma(-a, b, x); }
  static Vector Divide(Vector a, Vector b, Mask lanes) { return lanes ? a / b : a; }
  static Mask First(int n) { return n > 0; }
  static Mask NonZero(Vector a) { return a != 0; }
};

/// Solves for the Count unknowns from equation J on, the load cases of a group as one vector. The unknowns of a group
/// stand in a ring, twice, so that as many as a row can reach follow each other without a break.
template <typename S, int Count>
void SolveRows(const BandWork& work, int J) {
  using Vector = typename S::Vector;
  constexpr int Lanes = S::Lanes;
  const double* row[Count];
  int end[Count];
  int common = work.equations;  // up to here all rows have entries
  for (int r = 0; r < Count; ++r) {
    row[r] = work.rows[J + r];
    end[r] = J + r - 1 + static_cast<int>(row[r][J + r - 1]);
    if (end[r] < common) common = end[r];
  }
  if (common < J + Count - 1) common = J + Count - 1;
  constexpr int ahead = 32;
  double* const* const next = work.rows + (J > ahead ? J - ahead : J);  // the rows to be fetched
  const int place = J % work.windowRows;
  double* ring = work.window;
  for (int first = 0; first < work.loadCases; first += Lanes, ring += 2 * work.windowRows * Lanes) {
    const int cases = work.loadCases - first < Lanes ? work.loadCases - first : Lanes;
    double* const loads = work.loads + first * work.loadStep + J;
    const double* const later = ring + place * Lanes;  // unknown J + k at later[k * Lanes]
    Vector x[Count];
    for (int r = 0; r < Count; ++r) {
      x[r] = S::Zero();
      for (int c = 0; c < cases; ++c) x[r] = S::Choose(S::Set(loads[c * work.loadStep + r]), x[r], S::First(c));
      for (int j = end[r]; j > common; --j) {
        x[r] = S::SubtractProduct(x[r], S::Set(row[r][j]), S::Load(later + (j - J) * Lanes));
      }
    }
    for (int j = common; j >= J + Count; --j) {
      __builtin_prefetch(next[j & 7] + j - ahead, 0, 2);
      const Vector unknown = S::Load(later + (j - J) * Lanes);
#pragma GCC unroll 8
      for (int r = 0; r < Count; ++r) x[r] = S::SubtractProduct(x[r], S::Set(row[r][j]), unknown);
    }
#pragma GCC unroll 8
    for (int r = Count - 1; r >= 0; --r) {
#pragma GCC unroll 8
      for (int s = Count - 1; s > r; --s) {
        if (J + s <= end[r]) x[r] = S::SubtractProduct(x[r], S::Set(row[r][J + s]), x[s]);
      }
      x[r] = S::Divide(x[r], S::Set(row[r][J + r]), S::NonZero(x[r]));
    }
    for (int r = 0; r < Count; ++r) {
      double* const solved = ring + (place + r < work.windowRows ? place + r : place + r - work.windowRows) * Lanes;
      S::Store(solved, x[r]);
      S::Store(solved + work.windowRows * Lanes, x[r]);
      for (int c = 0; c < cases; ++c) loads[c * work.loadStep + r] = solved[c];
    }
  }
}

template <typename S>
void SolveAllRows(const BandWork& work, int first, int last) {
  int e = last;
  for (; e - 7 >= first; e -= 8) SolveRows<S, 8>(work, e - 7);
  for (; e >= first; --e) SolveRows<S, 1>(work, e);
}

template <typename S>
void BackSubstitute(const BandWork& work, int first, int last) {
  if (work.loadCases == 1) return SolveAllRows<Scalar>(work, first, last);
  SolveAllRows<S>(work, first, last);
}

template <typename S>
constexpr BandKernel MakeBandKernel(int wideBand) {
  return {wideBand, Tiles<S>::Eliminate, BackSubstitute<S>};
}

}  // namespace
}  // namespace velmor
