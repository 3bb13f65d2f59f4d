// What a solution holds: prescribed displacements, and nodal forces in equilibrium.

#include <gtest/gtest.h>

#include <cmath>

#include "base/vector3.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

TEST(Supports, PrescribeADisplacementInLoadCase1Alone) {
  const double E = 1000, I = 2, L = 4, d = -0.01;
  Model model;
  model.analysisCode = 2;
  model.nodes = {{0, 0, 0}, {L, 0, 0}, {L, 1, 0}};  // no element uses the last
  model.AddElement(7, {1, 2});
  model.materials = {{E, 0, 0, 1, 0, 0, 0, 0, 0, 0, I}};
  model.supports = {{1, 1}, {1, 2}, {1, 6}, {2, 1}, {2, 2, 99}, {2, 2, d}, {2, 6}};  // the last line stands; 6 is rz
  model.cases = {{}, {{{2, 2, 5e29}, {3, 1, 7}}, {}}};
  Folder folder;
  folder.Solve(model);
  const NodalValues u = folder.Displacements(), r = folder.Reactions();
  EXPECT_DOUBLE_EQ(u(1, 2, 2), d);
  EXPECT_NEAR(r(1, 1, 2), 12 * E * I * -d / (L * L * L), 1e-12);
  for (int node : {1, 2}) EXPECT_NEAR(r(1, node, 3), 6 * E * I * -d / (L * L), 1e-12);
  EXPECT_DOUBLE_EQ(u(2, 2, 2), 0.5);  // a load on a supported freedom over the penalty 1e30
  EXPECT_EQ(u(2, 3, 1), 0);           // a freedom without stiffness is held, its load dropped
  EXPECT_EQ(folder.Read(".RVP").substr(0, 4), "3,2\n");
}

TEST(NodalForces, BalanceTheLoadsOfEveryLoadCaseByItself) {
  Model model;  // a skew frame of three beams and a bar, out of every plane
  model.nodes = {{0, 0, 0}, {1, 0, 3}, {4, 2, 4}, {5, 3, 0}, {2, 5, 3}};
  for (const auto& [a, b] : {std::pair{1, 2}, {2, 3}, {4, 3}}) model.AddElement(7, {a, b});
  model.AddElement(1, {3, 5});
  model.materials = {{2e5, 0.3, 1, 2, 0, 25, 0.7, 0, 0.4, 0, 0.9}};
  model.Fix(1, 6);
  for (int node : {4, 5}) model.Fix(node, 3);
  const Vector3 F{10, -7, 20}, M{3, 8, -5};
  model.cases = {{{}, {}, 2, {-3, 0, 0, 0, 1}}, {}};  // an acceleration; a force and a couple
  for (int k = 1; k <= 3; ++k) {
    model.cases[1].nodal.push_back({2, k, F(k)});
    model.cases[1].nodal.push_back({3, 3 + k, M(k)});
  }
  Folder folder;
  folder.Solve(model);
  const NodalValues r = folder.Reactions();
  Vector3 force = F, moment = M + Cross({1, 0, 3}, F);
  for (int n = 1; n <= 5; ++n) {
    const auto& [x, y, z] = model.nodes[static_cast<std::size_t>(n - 1)];
    const Vector3 R{r(2, n, 1), r(2, n, 2), r(2, n, 3)};
    EXPECT_NEAR(n == 2 || n == 3 ? Length(R) : 0, 0, 1e-10) << "node " << n << " is free";
    force = force + R;
    moment = moment + Vector3{r(2, n, 4), r(2, n, 5), r(2, n, 6)} + Cross({x, y, z}, R);
  }
  EXPECT_NEAR(Length(force), 0, 1e-10);
  EXPECT_NEAR(Length(moment), 0, 1e-10);
  const double mass = 2 * (std::sqrt(10) + std::sqrt(14) + std::sqrt(18) + std::sqrt(14));
  for (int k = 1; k <= 3; ++k) {
    const auto freedom = static_cast<std::size_t>(k - 1);
    EXPECT_NEAR(r.totals.at(0).at(freedom), k == 2 ? 3 * mass : 0, 1e-10);
    EXPECT_NEAR(r.totals.at(1).at(freedom), -F(k), 1e-10);
  }
}

TEST(NodalForces, BalanceInAMatrixThatIsReadInParts) {
  constexpr int nodes = 900;  // a closed chain: the half bandwidth is the whole system
  Model model;
  model.analysisCode = 1;
  for (int n = 1; n <= nodes; ++n) {
    model.AddNode(n, 0);
    model.AddElement(1, {n, n % nodes + 1});
    model.supports.push_back({n, 2});
  }
  model.materials = {{1000, 0, 0, 1}};
  model.Fix(1, 1);
  model.cases = {{{{300, 1, 1}, {700, 1, 2}}, {}}};
  Folder folder;
  folder.Solve(model);
  const NodalValues r = folder.Reactions();
  for (int n = 1; n <= nodes; ++n) EXPECT_NEAR(r(1, n, 1), n == 1 ? -3 : 0, 1e-9) << "node " << n;
}

}  // namespace
}  // namespace velmor::testing
