// The eigen stage: its elimination against one in every pass, periods against closed forms, and its ways to stop.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>
#include <random>
#include <sstream>

#include "dynamics/eigen_solver.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

constexpr double StagePi = 3.141593;

/// An upper band as a plain table, G[i][c] for row i and column i + c - 1, for calculations that go by the book.
using PlainBand = std::vector<std::vector<double>>;

PlainBand MakePlainBand(int n, int b) {
  return PlainBand(static_cast<std::size_t>(n) + 1, std::vector<double>(static_cast<std::size_t>(b) + 1));
}

double& At(PlainBand& G, int i, int c) { return G[static_cast<std::size_t>(i)][static_cast<std::size_t>(c)]; }

/// One elimination together with its vector, as every pass of the iteration would do it. Returns the equation at which
/// it stops, or 0.
int EliminateWithVector(PlainBand G, Column& v, int n, int b) {
  for (int i = 1; i <= n - 1; ++i) {
    if (std::abs(At(G, i, 1)) < 1e-9) return i;
    const double p = 1 / At(G, i, 1);
    const int w = i > n - b + 1 ? n - i : b - 1;
    for (int j = 1; j <= w; ++j) {
      if (!(std::abs(At(G, i, j + 1)) > 1e-9)) continue;
      const double f = p * At(G, i, j + 1);
      for (int k = 1; k <= w + 1 - j; ++k) At(G, i + j, k) -= f * At(G, i, j + k);
      v(i + j) -= f * v(i);
    }
  }
  for (int i = n; i >= 1; --i) {
    v(i) /= At(G, i, 1);
    for (int l = i - 1; l >= std::max(1, i - (b - 1)); --l) v(l) -= v(i) * At(G, l, i + 1 - l);
  }
  return 0;
}

struct FoundMode {
  double period;
  std::vector<double> shape;  // from 0
};

/// What NAME.EIG holds behind its header.
std::vector<FoundMode> ReadModes(const Folder& folder, int equations) {
  std::string text = folder.Read(".EIG");
  for (char& c : text) c = c == ',' ? ' ' : c;
  std::istringstream items(text);
  double code = 0, nodes = 0;
  EXPECT_TRUE(items >> code >> nodes);
  std::vector<FoundMode> modes;
  for (FoundMode mode; items >> mode.period; modes.push_back(mode)) {
    mode.shape.resize(static_cast<std::size_t>(equations));
    for (double& component : mode.shape) EXPECT_TRUE(items >> component);
  }
  return modes;
}

/// Sets one mass on every freedom of every node, through load case 1.
void SetEqualMasses(Model& model, double mass) {
  model.cases.resize(1);
  for (int node = 1; node <= static_cast<int>(model.nodes.size()); ++node) {
    for (int k = 1; k <= DofPerNodeOf(model.analysisCode); ++k) model.cases[0].nodal.push_back({node, k, mass});
  }
}

Model EigenModel(int analysisCode) {
  Model model;
  model.analysisCode = analysisCode;
  model.flags = {.EigenFlag = 1, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  return model;
}

/// Masses on springs in a row along x, fixed at the first node; nothing stiffens y, which is supported.
Model Chain(int masses) {
  Model model = EigenModel(1);
  for (int i = 0; i <= masses; ++i) model.AddNode(i, 0);
  for (int i = 1; i <= masses; ++i) model.AddElement(1, {i, i + 1});
  model.materials = {{1, 0, 0, 1}};
  model.Fix(1, 2);
  for (int i = 2; i <= masses + 1; ++i) model.supports.push_back({i, 2});
  SetEqualMasses(model, 1);
  return model;
}

TEST(EigenSolver, KeepsTheBitsOfAnEliminationInEveryPass) {
  struct Case {
    int n, b;
  };
  std::mt19937 generator(7);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (const auto& [n, b] : {Case{1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}, {5, 4}, {7, 7}, {9, 2}, {40, 6}, {97, 30}}) {
    SCOPED_TRACE(std::to_string(n) + " equations, width " + std::to_string(b));
    PlainBand G = MakePlainBand(n, b);
    BandMatrix K(n + 3, b + 3);
    Column mass(n), x(n);
    for (int i = 1; i <= n; ++i) {
      mass(i) = 1.5 + uniform(generator);
      x(i) = uniform(generator);
      for (int c = 1; c <= std::min(b, n + 1 - i); ++c) {
        double entry = uniform(generator);
        if (i % 3 == 0 && c % 2 == 0) entry *= 2e-9;  // about the limit of a multiplier
        if (c == 1) entry = i % 5 == 0 ? 1e20 : i % 7 == 0 ? -2.0 * b : 2.0 * b;
        K(i, c) = entry;
        At(G, i, c) = entry / mass(i);
      }
    }
    ASSERT_EQ(ScaleRowsByMass(K, mass, n, b), 0);
    ASSERT_EQ(FactorBand(K, n, b), 0);
    Column expected = x;
    for (int pass = 1; pass <= 3; ++pass) {
      SolveFactored(K, x, n, b);
      ASSERT_EQ(EliminateWithVector(G, expected, n, b), 0);
      for (int i = 1; i <= n; ++i) ASSERT_EQ(x(i), expected(i)) << "pass " << pass << ", equation " << i;
    }
  }
}

TEST(EigenStage, FindsTheModesOfAChainOfFourMasses) {
  Folder folder;
  folder.Solve(Chain(4));
  const auto modes = ReadModes(folder, 10);
  ASSERT_EQ(modes.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    const double f = std::sin((2.0 * static_cast<double>(i) + 1) * std::numbers::pi / 18) / std::numbers::pi;
    // The third mode has not settled after its 21 passes.
    EXPECT_NEAR(1 / modes[i].period / f, 1, i == 2 ? 2e-5 : 1e-6) << "mode " << i + 1;
    const auto& shape = modes[i].shape;
    for (std::size_t j = 0; j <= i; ++j) {
      const double product = std::inner_product(shape.begin(), shape.end(), modes[j].shape.begin(), 0.0);
      EXPECT_NEAR(product, i == j ? 1 : 0, 1e-12) << "modes " << i + 1 << " and " << j + 1;
    }
    for (std::size_t e : {0u, 1u, 3u, 5u, 7u, 9u}) EXPECT_EQ(shape[e], 0) << "supported";
  }
}

TEST(EigenStage, FindsTheModesOfAFootbridge) {
  // Unit forces on N - 1 equal steps in the pattern sin(i pi j / N) hold the Fourier terms i + 2 q N of the span, so
  // that the lumped masses lower the frequency of the beam by the root of i^4 sum 1 / (i + 2 q N)^4. The masses on the
  // rotations, 1 mm^2 each, add (i pi / L)^2.
  constexpr double N = 24, L = 24000, EI = 210000 * 6.068e9, perLength = 1.2e-3;
  Folder folder;
  folder.WriteExample("footbridge");
  folder.Solve();
  const auto modes = ReadModes(folder, 75);
  ASSERT_EQ(modes.size(), 10u);
  // Antimetric modes have hardly settled after their 21 passes, and their neighbours pay for it.
  const double tolerance[] = {0, 2e-7, 2e-7, 2e-7, 5e-5, 3e-7, 4e-3, 3e-5, 0.04, 3e-3, 0.08};
  for (std::size_t i = 1; i <= 10; ++i) {
    const double order = static_cast<double>(i), wave = order * std::numbers::pi / L;
    double sum = 0;
    for (int q = -1000; q <= 1000; ++q) sum += std::pow(order / (order + 2 * q * N), 4);
    const double omega = wave * wave * std::sqrt(EI / perLength / sum / (1 + wave * wave));
    EXPECT_NEAR(2 * std::numbers::pi / modes[i - 1].period / omega, 1, tolerance[i]) << "mode " << i;
  }
  // The same masses as weights: point loads, and so a sag of 5 q L^4 / (384 E I) (1 - 0.8 / N^2).
  const double q = perLength * 9810, sag = 5 * q * std::pow(L, 4) / (384 * EI) * (1 - 0.8 / (N * N));
  EXPECT_NEAR(folder.Displacements()(1, 13, 2) / -sag, 1, 1e-6);
  EXPECT_NEAR(folder.Reactions()(1, 1, 2) / (12.5 * 1000 * q), 1, 1e-9);
}

TEST(EigenStage, AddsTheMassesOfLoadCasesThatAreNoPlainForces) {
  // One free mass on a spring of 3: the density gives 0.5 to each end of the bar, the load cases the rest.
  Model model = Chain(1);
  model.materials = {{3, 0, 1, 1}};
  model.cases[0].nodal.push_back({2, 1, 4});
  model.supports[2].value = 2e-19;
  model.cases.resize(4);
  model.cases[1].nodal.push_back({2, 1, 1000});  // forces
  for (const std::size_t accelerated : {2u, 3u}) {
    model.cases[accelerated].nodal.push_back({2, 1, 0.25});
    model.cases[accelerated].type = accelerated == 2 ? -1 : 3;
  }
  Folder folder;
  folder.Solve(model);
  const auto modes = ReadModes(folder, 4);
  ASSERT_EQ(modes.size(), 1u);
  EXPECT_NEAR(modes[0].period, 2 * StagePi * std::sqrt((0.5 + 1 + 4 + 2 * 0.25) / 3), 1e-9);
  EXPECT_NEAR(modes[0].shape[2], 1, 1e-12);
  EXPECT_NEAR(modes[0].shape[3], 20, 1e-9) << "the support's value times the penalty";
}

TEST(EigenStage, FindsAsManyModesAsTheSupportsLeave) {
  struct Case {
    const char* name;
    std::vector<Model::Support> more;
    std::size_t modes;
  };
  // Three masses on springs: 8 equations, 5 supports.
  for (const Case& c : {Case{"as it is", {}, 3},
                        {"a support line without a freedom counts", {{2, 3}}, 2},
                        {"as many as equations", {{2, 3}, {2, 3}, {2, 3}}, 0},
                        {"more than equations", {{2, 3}, {2, 3}, {2, 3}, {2, 3}}, 0}}) {
    SCOPED_TRACE(c.name);
    Folder folder;
    Model model = Chain(3);
    model.supports.insert(model.supports.end(), c.more.begin(), c.more.end());
    folder.Write(model);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.messages.size(), 0u);
    EXPECT_EQ(display.warnings.empty(), c.more.empty());
    const auto modes = ReadModes(folder, 8);
    EXPECT_EQ(modes.size(), c.modes);
    EXPECT_TRUE(folder.Read(".EIG").starts_with("1,4\n"));
    if (c.modes > 0) {
      EXPECT_NEAR(modes[0].period, std::numbers::pi / std::sin(std::numbers::pi / 14), 1e-5);
    }
  }
}

TEST(EigenStage, LeavesTheUnfactoredMatrixWithItsSupportsAndItsPi) {
  Folder folder;
  Model model = Chain(3);
  folder.Write(model);
  RecordingDisplay display;
  velmor::Run run(display, folder.Program());
  bool readable = false;
  run.modelSizeValues = ReadModelSizeValues(run.programFolder, readable);
  RunKolStage(run);
  RunStiffnessStage(run);
  RunMassStage(run);
  RunEigenStage(run);
  const Grid stored = folder.Stiffness(2);
  for (int e = 1; e <= 8; ++e) {
    const bool supported = e == 1 || e % 2 == 0;
    EXPECT_EQ(run.GlobalBand(e, 1), supported ? 1e20 : stored(e, e));
    for (int j = e + 1; j <= std::min(e + 3, 8); ++j) EXPECT_EQ(run.GlobalBand(e, j - e + 1), stored(e, j)) << e;
  }
  EXPECT_EQ(run.pi, StagePi);
  EXPECT_EQ(display.form2.Label8.caption, "3");

  // Without a mode to find the band stays as the stiffness stage made it.
  model.supports.insert(model.supports.end(), 3, {2, 3});
  folder.Write(model);
  RunStiffnessStage(run);
  RunEigenStage(run);
  for (int e = 1; e <= 8; ++e) EXPECT_EQ(run.GlobalBand(e, 1), stored(e, e));
}

TEST(EigenStage, StopsAtOnceAndLeavesTheControlFile) {
  struct Case {
    const char* name;
    std::function<void(Model&)> change;
    const char* missing;  // a file to remove
    int error;            // shown with two boxes; 0 for a box with the equation alone
    const char* box;
  };
  const auto same = [](Model&) {};
  const Case cases[] = {
      {"no mass on a supported freedom", [](Model& m) { m.cases[0].nodal[1].value = 0; }, "", 11,
       "division by zero: node 1, direction y has no mass"},
      {"no stiffness in the middle", [](Model& m) { std::erase_if(m.supports, [](auto& s) { return s.node == 3; }); },
       "", 0, "6"},
      {"no stiffness at the last equation", [](Model& m) { m.supports.pop_back(); }, "", 11, "division by zero"},
      {"no load case", [](Model& m) { m.cases.clear(); }, "", 9, "load case 1"},
      {"no nodal loads", same, ".KNK", 53, ".KNK"},
      {"no load cases file", same, ".lcd", 53, ".lcd"},
      {"a mass at no node", [](Model& m) { m.cases[0].nodal[2].node = 5; }, "", 9, "node of a load"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Folder folder;
    Model model = Chain(3);
    c.change(model);
    folder.Write(model);
    folder.Write(".EIG", "of an earlier run");
    if (*c.missing != 0) folder.Remove(c.missing);
    RecordingDisplay display;
    EXPECT_NE(folder.Run(display), 0);
    EXPECT_TRUE(std::filesystem::exists(folder.Program("EEM.CTR")));
    EXPECT_EQ(display.stages.back(), "Freq 1.0");
    ASSERT_EQ(display.messages.size(), c.error == 0 ? 1u : 2u);
    EXPECT_NE(display.messages[0].find(c.box), std::string::npos) << display.messages[0];
    ASSERT_EQ(display.notices.size(), 1u);
    if (c.error == 0) {
      EXPECT_EQ(display.messages[0], c.box);
    } else {
      EXPECT_EQ(display.notices[0].number, c.error);
      EXPECT_EQ(display.messages[1], std::to_string(display.notices[0].line));
    }
    // What fails behind the masses leaves the header of its own run.
    if (c.error == 0 || c.error == 11) {
      EXPECT_EQ(folder.Read(".EIG"), "1,4\n");
    }
  }
}

}  // namespace
}  // namespace velmor::testing
