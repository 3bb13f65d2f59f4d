// The eigen stage: its elimination against one in every pass, modes against closed forms, and its ways to stop.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <sstream>

#include "dynamics/eigen_solver.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// One elimination together with its vector, as every pass of the iteration would do it, by the book. G(i, c) is the
/// entry in row i and column i + c - 1 of an upper band of width b.
void EliminateWithVector(Grid G, Column& v, int n, int b) {
  for (int i = 1; i <= n - 1; ++i) {
    const double p = 1 / G(i, 1);
    const int w = i > n - b + 1 ? n - i : b - 1;
    for (int j = 1; j <= w; ++j) {
      if (!(std::abs(G(i, j + 1)) > 1e-9)) continue;
      const double f = p * G(i, j + 1);
      for (int k = 1; k <= w + 1 - j; ++k) G(i + j, k) -= f * G(i, j + k);
      v(i + j) -= f * v(i);
    }
  }
  for (int i = n; i >= 1; --i) {
    v(i) /= G(i, 1);
    for (int l = i - 1; l >= std::max(1, i - (b - 1)); --l) v(l) -= v(i) * G(l, i + 1 - l);
  }
}

TEST(EigenSolver, KeepsTheBitsOfAnEliminationInEveryPass) {
  std::mt19937 generator(7);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (const auto& [n, b] : {std::pair{1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}, {5, 4}, {9, 2}, {40, 6}, {97, 30}}) {
    SCOPED_TRACE(std::to_string(n) + " equations, width " + std::to_string(b));
    Grid G(n, b);
    BandMatrix K(n + 3, b + 3);
    Column mass(n), x(n);
    for (int i = 1; i <= n; ++i) {
      mass(i) = 1.5 + uniform(generator);
      x(i) = uniform(generator);
      for (int c = 1; c <= std::min(b, n + 1 - i); ++c) {
        const double limit = i % 3 == 0 && c % 2 == 0 ? 2e-9 : 1;  // about that of a multiplier
        K(i, c) = c > 1 ? limit * uniform(generator) : i % 5 == 0 ? 1e20 : i % 7 == 0 ? -2.0 * b : 2.0 * b;
        G(i, c) = K(i, c) / mass(i);
      }
    }
    ASSERT_EQ(ScaleRowsByMass(K, mass, n, b), 0);
    ASSERT_EQ(FactorBand(K, n, b), 0);
    Column expected = x;
    for (int pass = 1; pass <= 3; ++pass) {
      SolveFactored(K, x, n, b);
      EliminateWithVector(G, expected, n, b);
      for (int i = 1; i <= n; ++i) ASSERT_EQ(x(i), expected(i)) << "pass " << pass << ", equation " << i;
    }
  }
}

/// Unit masses on unit springs in a row along x, fixed at the first node; nothing stiffens y, which is supported.
Model Chain(int masses) {
  Model model;
  model.analysisCode = 1;
  model.flags = {.EigenFlag = 1, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  model.materials = {{1, 0, 0, 1}};
  for (int node = 1; node <= masses + 1; ++node) {
    model.AddNode(node, 0);
    if (node > 1) model.AddElement(1, {node - 1, node});
    model.supports.push_back({node, 2});
    for (int k : {1, 2}) model.cases[0].nodal.push_back({node, k, 1});
  }
  model.supports.push_back({1, 1});
  return model;
}

struct FoundMode {
  double period;
  std::vector<double> shape;  // from 0
};

/// The modes of a chain in NAME.EIG, behind the analysis code and the number of nodes.
std::vector<FoundMode> ReadModes(const Folder& folder, int nodes) {
  std::istringstream items(folder.Read(".EIG"));
  std::string head;
  EXPECT_TRUE(items >> head);
  EXPECT_EQ(head, "1," + std::to_string(nodes));
  std::vector<FoundMode> modes;
  for (FoundMode mode; items >> mode.period; modes.push_back(mode)) {
    mode.shape.resize(static_cast<std::size_t>(2 * nodes));
    for (double& component : mode.shape) EXPECT_TRUE(items >> component);
  }
  return modes;
}

TEST(EigenStage, FindsAsManyModesOfAChainAsTheSupportsLeave) {
  const struct {
    int masses, linesMore;  // support lines of a freedom that the model has not
    std::size_t modes;
  } cases[] = {{4, 0, 4}, {12, 0, 10}, {3, 1, 2}, {3, 3, 0}, {3, 4, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.masses) + " masses, lines more: " + std::to_string(c.linesMore));
    Model model = Chain(c.masses);
    model.supports.insert(model.supports.end(), static_cast<std::size_t>(c.linesMore), {2, 3});
    Folder folder;
    folder.Write(model);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_TRUE(display.messages.empty());
    const std::string lines = "that the model has not: " + std::to_string(c.linesMore) + ", first node 2:";
    const auto tells = [&](const std::string& warning) { return warning.find(lines) != std::string::npos; };
    EXPECT_EQ(std::any_of(display.warnings.begin(), display.warnings.end(), tells), c.linesMore > 0);
    const auto modes = ReadModes(folder, c.masses + 1);
    ASSERT_EQ(modes.size(), c.modes);
    for (std::size_t i = 0; i < c.modes; ++i) {
      const auto& [period, shape] = modes[i];
      const double angle = (2.0 * static_cast<double>(i) + 1) * std::numbers::pi / (4 * c.masses + 2);
      if (c.masses <= 4) {  // the third mode of four has not settled after its 21 passes, nor have many of twelve
        EXPECT_NEAR(std::sin(angle) / std::numbers::pi * period, 1, i == 2 ? 2e-5 : 1e-6) << "mode " << i + 1;
      }
      EXPECT_EQ(shape[0], 0) << "supported";
      for (std::size_t e = 1; e < shape.size(); e += 2) EXPECT_EQ(shape[e], 0) << "supported";
      for (std::size_t j = 0; j <= i; ++j) {
        const double product = std::inner_product(shape.begin(), shape.end(), modes[j].shape.begin(), 0.0);
        EXPECT_NEAR(product, i == j ? 1 : 0, 1e-12) << "modes " << i + 1 << " and " << j + 1;
      }
    }
  }
}

TEST(EigenStage, AddsTheMassesOfLoadCasesThatAreNoPlainForces) {
  // One free mass on a spring of 3: the density gives 0.5 to each end of the bar, the load cases the rest.
  Model model = Chain(1);
  model.materials = {{3, 0, 1, 1}};
  model.supports[1].value = 2e-19;
  model.cases.push_back({{{2, 1, 1000}}, {}});  // forces
  model.cases.push_back({{{2, 1, 4}}, {}, -1});
  model.cases.push_back({{{2, 1, 0.5}}, {}, 3});
  Folder folder;
  folder.Solve(model);
  const FoundMode mode = ReadModes(folder, 2).at(0);
  EXPECT_NEAR(mode.period, 2 * 3.141593 * std::sqrt((0.5 + 1 + 4 + 0.5) / 3), 1e-9) << "with the pi of the stage";
  EXPECT_NEAR(mode.shape[2], 1, 1e-12);
  EXPECT_NEAR(mode.shape[3], 20, 1e-9) << "the support's value times the penalty";
}

TEST(EigenStage, StopsAtOnceAndLeavesTheControlFile) {
  const struct {
    void (*spoil)(Model&);
    int error;
    std::string box;  // the equation alone, or a description and a second box with the line
    const char* file;
  } cases[] = {
      {[](Model& m) { m.supports.erase(m.supports.begin() + 2); }, 11, "6", "1,4\n"},                 // in the middle
      {[](Model& m) { m.supports.erase(m.supports.begin() + 3); }, 11, "division by zero", "1,4\n"},  // at the end
      {[](Model& m) { m.cases[0].nodal[0].value = 0; }, 11, "has no mass", "1,4\n"},
      {[](Model& m) { m.cases.clear(); }, 9, "load case 1", "of an earlier run"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.box);
    Model model = Chain(3);
    c.spoil(model);
    Folder folder;
    folder.Write(model);
    folder.Write(".EIG", "of an earlier run");
    RecordingDisplay display;
    EXPECT_NE(folder.Run(display), 0);
    EXPECT_TRUE(std::filesystem::exists(folder.Program("EEM.CTR")));
    ASSERT_EQ(display.notices.size(), 1u);
    EXPECT_EQ(display.notices[0].stage, "Freq 1.0");
    EXPECT_EQ(display.notices[0].number, c.error);
    EXPECT_TRUE(display.messages.at(0).find(c.box) != std::string::npos) << display.messages[0];
    EXPECT_EQ(display.messages.back(), c.box == "6" ? c.box : std::to_string(display.notices[0].line));
    EXPECT_EQ(folder.Read(".EIG"), c.file);
  }
}

}  // namespace
}  // namespace velmor::testing
