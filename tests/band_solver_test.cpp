// The band solver in tiles against the plain loops, bit for bit: entries, heights, loads and solution.

#include "solve/band_solver.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>
#include <vector>

namespace velmor {

/// The name of a set in the names of the tests.
void PrintTo(Instructions instructions, std::ostream* out) {
  *out << (instructions == Instructions::Plain ? "Plain" : instructions == Instructions::Avx2 ? "Avx2" : "Avx512");
}

namespace {

enum class Shape {
  Full,     // every row as high as the band
  Ragged,   // heights at random from 1 on, half of the entries zero
  Steps,    // the height halves twice on the way down
  Sparse,   // one entry in twenty, heights at random
  Plate,    // six freedoms a node in three sets that do not touch
  Halves,   // even and odd equations do not touch, up to a late row that links them
  Islands,  // six sets that do not touch, one of them in a part of the rows
  Loose,    // rows of height 0 and 1 among full ones
  Diagonal  // nothing beside the diagonal
};

struct System {
  const char* name;
  Shape shape;
  int equations, width, loadCases;
  int room = 6;  // columns of the band beyond the width
};

const System Systems[] = {
    {"one equation", Shape::Full, 1, 6, 2},
    {"three equations without loads", Shape::Full, 3, 3, 0},
    {"diagonal", Shape::Diagonal, 30, 1, 3},
    {"width 1 with room for more", Shape::Diagonal, 17, 9, 1},
    {"tridiagonal", Shape::Full, 65, 2, 1},
    {"one tile less one", Shape::Full, 7, 7, 1},
    {"one tile", Shape::Full, 8, 5, 4},
    {"one tile and one", Shape::Full, 9, 9, 5},
    {"narrower than a tile", Shape::Ragged, 63, 5, 2},
    {"full matrix", Shape::Full, 64, 64, 8},
    {"width of a tile, no room beside it", Shape::Full, 50, 8, 1, 0},
    {"full band", Shape::Full, 193, 47, 20},
    {"ragged", Shape::Ragged, 300, 70, 3},
    {"steps", Shape::Steps, 400, 90, 1},
    {"sparse", Shape::Sparse, 500, 120, 2},
    {"plate", Shape::Plate, 480, 102, 4},
    {"plate without loads", Shape::Plate, 606, 204, 0},
    {"two halves linked late", Shape::Halves, 400, 130, 2},
    {"two halves never linked", Shape::Halves, 380, 130, 9},
    {"islands", Shape::Islands, 700, 150, 3},
    {"loose rows", Shape::Loose, 250, 40, 9},
    // From here on in blocks of 96 rows.
    {"room for 1300", Shape::Full, 289, 190, 3, 1110},
    {"wide and ragged", Shape::Ragged, 900, 700, 2, 600},
    {"wide and sparse", Shape::Sparse, 700, 650, 1, 700},
    {"wide with steps", Shape::Steps, 577, 577, 0, 723},
    {"wide plate", Shape::Plate, 960, 480, 1, 900},
    {"wider than the matrix", Shape::Ragged, 600, 1301, 1, 0},
};

/// A system with the band, its loads and nothing singular in it: the diagonal outweighs the rest, now and then it is
/// negative or a penalty.
struct Solvable {
  BandMatrix K;
  Grid loads;
};

int Height(Shape shape, int e, int n, int width, std::mt19937& random) {
  const int longest = std::min(width, n - e + 1);
  switch (shape) {
    case Shape::Full:
    case Shape::Plate:
      return longest;
    case Shape::Ragged:
    case Shape::Sparse:
    case Shape::Islands:
      return std::uniform_int_distribution(1, longest)(random);
    case Shape::Steps:
      return std::min(longest, std::max(1, width >> (3 * e / (n + 1))));
    case Shape::Halves:
      return random() % 20 == 0 ? 0 : longest;  // the diagonal is there also in a row of height 0
    case Shape::Loose:
      return random() % 3 == 0 ? static_cast<int>(random() % 2) : longest;
    case Shape::Diagonal:
      break;
  }
  return 1;
}

bool IsZero(Shape shape, int e, int column, std::mt19937& random) {
  const auto set = [](int equation) { return 0x211100 >> (4 * ((equation - 1) % 6)) & 0xF; };
  switch (shape) {
    case Shape::Ragged:
      return random() % 2 == 0;
    case Shape::Sparse:
      return random() % 20 != 0;
    case Shape::Plate:
      return set(e) != set(column) || set(e) == 2;
    case Shape::Halves:
      return e % 2 != column % 2 && e < 390;
    case Shape::Islands:
      return e % 7 % 6 != column % 7 % 6 || (e % 7 == 5 && e > 300);
    default:
      return false;
  }
}

Solvable Make(const System& system) {
  constexpr int dof = 6;
  const int n = system.equations;
  std::mt19937 random(static_cast<unsigned>(n + system.width));
  std::uniform_real_distribution<double> entry(-1, 1);
  Solvable made{BandMatrix(n + dof, system.width + system.room), Grid(system.loadCases, n + dof)};
  for (int e = 1; e <= n; ++e) {
    const int height = Height(system.shape, e, n, system.width, random);
    made.K(e, 0) = height;
    for (int d = 2; d <= height; ++d) {
      if (!IsZero(system.shape, e, e + d - 1, random)) made.K(e, d) = entry(random);
    }
    made.K(e, 1) = random() % 40 == 0 ? 1e30 : (random() % 10 == 0 ? -1 : 1) * (3.0 * system.width + entry(random));
    for (int c = 1; c <= system.loadCases; ++c) made.loads(c, e) = random() % 3 == 0 ? 0 : 1e3 * entry(random);
  }
  return made;
}

std::int64_t Bits(double x) { return std::bit_cast<std::int64_t>(x); }

/// Rows from..to of the band, heights included, and the loads of these equations.
void ExpectSameBits(const Solvable& a, const Solvable& b, int from, int to) {
  for (int e = from; e <= to; ++e) {
    for (int d = 0; d <= a.K.BandBound(); ++d) {
      ASSERT_EQ(Bits(a.K(e, d)), Bits(b.K(e, d)))
          << "row " << e << " entry " << d << " " << a.K(e, d) << " " << b.K(e, d);
    }
    for (int c = 1; c <= a.loads.Rows(); ++c) {
      ASSERT_EQ(Bits(a.loads(c, e)), Bits(b.loads(c, e))) << "load case " << c << " equation " << e;
    }
  }
}

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// The numbers between the rows, and row 0, belong to nobody: what is put there must neither matter nor change.
template <typename Visit>
void VisitGaps(BandMatrix& K, Visit visit) {
  for (int d = 0; d <= K.BandBound(); ++d) visit(K(0, d));
  for (int e = 1; e < K.EquationBound(); ++e) {
    for (double* gap = K.Row(e) + K.BandBound() + 1; gap != K.Row(e + 1); ++gap) visit(*gap);
  }
}

class BandSolver : public testing::TestWithParam<Instructions> {
 protected:
  void SetUp() override {
    if (!Has(GetParam())) GTEST_SKIP() << "not on this processor";
  }
};

TEST_P(BandSolver, EqualsThePlainLoopsBitForBit) {
  for (const System& system : Systems) {
    SCOPED_TRACE(system.name);
    const int n = system.equations;
    Solvable plain = Make(system);
    Solvable tiled = Make(system);
    VisitGaps(tiled.K, [](double& gap) { gap = NaN; });

    EXPECT_EQ(EliminateBandPlainly(plain.K, plain.loads, n, [](int) {}), 0);
    int done = 0;
    const auto progress = [&](int rows) { done = rows; };
    EXPECT_EQ(EliminateBand(tiled.K, tiled.loads, n, progress, GetParam()), 0);
    EXPECT_EQ(done, n - 1);
    ASSERT_NO_FATAL_FAILURE(ExpectSameBits(tiled, plain, 1, n + 6));

    BackSubstitutePlainly(plain.K, plain.loads, n, system.width, [](int) {});
    BackSubstitute(tiled.K, tiled.loads, n, system.width, progress, GetParam());
    EXPECT_EQ(done, n);
    ASSERT_NO_FATAL_FAILURE(ExpectSameBits(tiled, plain, 1, n + 6));
    VisitGaps(tiled.K, [](double& gap) { ASSERT_TRUE(std::isnan(gap)); });
  }
}

TEST_P(BandSolver, StopsAtTheFirstBadPivot) {
  const System full{"", Shape::Full, 131, 30, 2};
  // Equations 1, 2 of six are one set, 3 to 5 another, 6 hangs alone.
  const System plate{"", Shape::Plate, 480, 102, 2};
  const struct {
    const char* name;
    const System& system;
    std::vector<int> equations;
    double pivot = 0;
  } stops[] = {
      {"first", full, {1}},
      {"not a number", full, {20}, NaN},
      {"end of a tile", full, {48}},
      {"too small", full, {77}, 1e-310},
      {"last", full, {131}},
      {"one in a set, one loose", plate, {469, 477}},
      {"two in a set", plate, {477, 470}},
      {"one loose", plate, {474}},
      {"two loose", plate, {480, 475}},
  };
  for (const auto& [name, system, equations, pivot] : stops) {
    SCOPED_TRACE(name);
    Solvable plain = Make(system);
    for (const int bad : equations) {
      for (int e = std::max(1, bad - system.width + 1); e < bad; ++e)
        plain.K(e, bad - e + 1) = 0;  // nothing reaches it
      plain.K(bad, 1) = pivot;
    }
    Solvable tiled{BandMatrix(plain.K.EquationBound(), plain.K.BandBound()), plain.loads};
    for (int e = 0; e <= plain.K.EquationBound(); ++e) {
      std::copy_n(plain.K.Row(e), plain.K.BandBound() + 1, tiled.K.Row(e));
    }
    const int n = system.equations, first = *std::min_element(equations.begin(), equations.end());
    const auto silent = [](int) {};
    EXPECT_EQ(EliminateBandPlainly(plain.K, plain.loads, n, silent), first);
    EXPECT_EQ(EliminateBand(tiled.K, tiled.loads, n, silent, GetParam()), first);
    ExpectSameBits(tiled, plain, 1, first);
  }
}

INSTANTIATE_TEST_SUITE_P(Instructions, BandSolver,
                         testing::Values(Instructions::Plain, Instructions::Avx2, Instructions::Avx512),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace velmor
