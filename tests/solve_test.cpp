// The Sys stage: supports, elimination, displacements.

#include <gtest/gtest.h>

#include <random>

#include "run/failure_answer.hpp"
#include "solve/band_solver.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

TEST(BandSolver, EqualsADenseSolutionOnRaggedBands) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> number(-1, 1);
  for (const auto& [n, width] : {std::pair{1, 1}, {2, 2}, {3, 1}, {3, 3}, {17, 6}, {60, 13}}) {
    BandMatrix K(n, width);
    Grid load(3, n), rest(3, n), dense(n, n);
    for (int e = 1; e <= n; ++e) {
      const int height = std::min({1 + static_cast<int>(random() % static_cast<unsigned>(width)), n - e + 1});
      K(e, 0) = height;
      for (int d = 1; d <= height; ++d) {
        const double entry = d == 1 ? 2.0 * width : random() % 4 == 0 ? 0 : number(random);  // dominant: definite
        K(e, d) = dense(e, e + d - 1) = dense(e + d - 1, e) = entry;
      }
      for (int c = 1; c <= 3; ++c) rest(c, e) = load(c, e) = random() % 3 == 0 ? 0 : number(random);
    }
    const auto silent = [](int) {};
    ASSERT_EQ(EliminateBand(K, load, n, silent), 0);
    BackSubstitute(K, load, n, width, silent);
    for (int c = 1; c <= 3; ++c) {
      for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) rest(c, i) -= dense(i, j) * load(c, j);
        EXPECT_NEAR(rest(c, i), 0, 1e-13) << n << " equations, case " << c << ", row " << i;
      }
    }
  }
}

TEST(Supports, PrescribeADisplacementInLoadCase1Alone) {
  const double E = 1000, I = 2, L = 4, d = -0.01;
  Model model;
  model.analysisCode = 2;
  model.AddNode(0, 0);
  model.AddNode(L, 0);
  model.AddNode(L, 1);  // no element uses it
  model.AddElement(7, {1, 2});
  model.materials = {{E, 0, 0, 1, 0, 0, 0, 0, 0, 0, I}};
  model.supports = {{1, 1}, {1, 2}, {1, 6}, {2, 1}, {2, 2, 99}, {2, 2, d}, {2, 6}};  // the last line stands; 6 is rz
  model.cases = {{}, {{{2, 2, 5e29}, {3, 1, 7}}, {}}};
  Folder folder;
  folder.Solve(model);
  const NodalValues u = folder.Displacements(), r = folder.Reactions();
  const double V = 12 * E * I * -d / (L * L * L), M = 6 * E * I * -d / (L * L);
  EXPECT_DOUBLE_EQ(u(1, 2, 2), d);
  EXPECT_NEAR(r(1, 1, 2), V, 1e-12);
  EXPECT_NEAR(r(1, 1, 3), M, 1e-12);
  EXPECT_NEAR(r(1, 2, 3), M, 1e-12);
  EXPECT_DOUBLE_EQ(u(2, 2, 2), 0.5);  // a load on a supported freedom over the penalty 1e30
  EXPECT_EQ(u(2, 3, 1), 0);           // a freedom without stiffness is held, its load dropped
  EXPECT_EQ(folder.Read(".RVP").substr(0, 4), "3,2\n");
}

TEST(SysStage, StopsAtAMechanism) {
  for (bool last : {true, false}) {
    Model model;
    model.analysisCode = 1;
    for (int n : {1, 2}) {
      model.AddNode(n, 0);
      model.AddElement(16, {n}, (n == 2) == last ? 1 : 2);
    }
    model.materials = {{.spring = {{{1, 1}, {1, 1}}}}, {.spring = {{{1, 0}, {0, 1}}}}};
    model.cases = {{{{1, 1, 1}}, {}}};
    Folder folder;
    folder.Write(model);
    folder.Write(".RVP", "of an earlier run");
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), exit_status::Model);
    EXPECT_EQ(display.messages, (std::vector<std::string>{"MATRIX IS SINGULAR", "THE CONSTRUCTIE HAS A MECHANISM"}));
    EXPECT_FALSE(folder.Has(".KRT"));
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  }
}

}  // namespace
}  // namespace velmor::testing
