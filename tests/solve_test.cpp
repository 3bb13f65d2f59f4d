// Loads as they reach the nodes, prescribed displacements, and nodal forces in equilibrium.

#include <gtest/gtest.h>

#include <cmath>

#include "base/vector3.hpp"
#include "model/model_sizes.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// Checks the loads that reach the nodes of a model in load case 1: with every freedom held, the reactions are their
/// opposite.
void ExpectLoads(Model model, const std::vector<double>& expected) {
  for (int n = static_cast<int>(model.nodes.size()); n >= 1; --n) model.Fix(n, DofPerNodeOf(model.analysisCode));
  Folder folder;
  folder.Solve(model);
  const std::vector<double> reactions = folder.Reactions().cases.at(0);
  ASSERT_EQ(reactions.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(-reactions[i], expected[i], 1e-13) << "item " << i;
}

/// Forces along one axis on nodes of six freedoms.
std::vector<double> Along(std::size_t axis, const std::vector<double>& forces) {
  std::vector<double> loads(6 * forces.size());
  for (std::size_t n = 0; n < forces.size(); ++n) loads[6 * n + axis - 1] = forces[n];
  return loads;
}

TEST(ElementLoads, FollowShapeFunctionsWithTheEndMomentsOfTheSupportsAnswer) {
  using Nodes = std::vector<std::array<double, 3>>;
  const std::array<double, 3> o{0, 0, 0}, x{2, 0, 0}, y{0, 2, 0}, z{0, 0, 2};
  const Nodes rectangle{{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}}, triangle{{0, 0, 0}, {3, 0, 0}, {0, 2, 0}};
  const Nodes trapezoid{{0, 0, 0}, {4, 0, 0}, {3, 2, 0}, {1, 2, 0}}, wall{{0, 0, 0}, {0, 4, 0}, {0, 4, 2}, {0, 0, 2}};
  const struct {
    const char* name;
    int code;
    std::vector<int> types;
    Nodes nodes;
    double degrees;
    int direction;
    std::vector<double> loads;  // q = 12: for lines q L / 2 = 12 and q L^2 / 12 = 4
  } cases[] = {
      {"along x, axial", 3, {7}, {o, x}, 0, 1, {12, 0, 0, 0, 0, 0, 12, 0, 0, 0, 0, 0}},
      {"along x, turned", 3, {7}, {o, x}, 90, 2, {0, 0, 12, 0, 4, 0, 0, 0, 12, 0, -4, 0}},
      {"along y", 3, {7}, {o, y}, 0, 2, {-12, 0, 0, 0, 0, -4, -12, 0, 0, 0, 0, 4}},
      {"upright, along y", 3, {7}, {o, z}, 0, 2, {0, 12, 0, 4, 0, 0, 0, 12, 0, -4, 0, 0}},
      {"upright, against x", 3, {7}, {o, z}, 0, 3, {-12, 0, 0, 0, 4, 0, -12, 0, 0, 0, -4, 0}},
      {"downward", 3, {7}, {z, o}, 0, 3, {12, 0, 0, 0, 4, 0, 12, 0, 0, 0, -4, 0}},
      {"in the plane", 2, {7}, {o, y}, 0, 2, {-12, 0, -4, -12, 0, 4}},
      {"out of the plane", 2, {7}, {o, x}, 0, 3, {0, 0, 0, 0, 0, 0}},
      {"bar in space", 0, {1}, {o, x}, 0, 3, {0, 0, 12, 0, 0, 12}},
      {"rectangle", 3, {4, 5, 6, 8, 9, 10, 11, 12, 13}, rectangle, 0, 3, Along(3, {24, 24, 24, 24})},
      {"rectangle, in its plane", 3, {4, 12}, rectangle, 0, 1, Along(1, {24, 24, 24, 24})},
      {"trapezoid", 3, {4, 13}, trapezoid, 0, 3, Along(3, {20, 20, 16, 16})},
      {"wall", 3, {4, 13}, wall, 0, 3, Along(1, {24, 24, 24, 24})},
      {"triangle", 3, {2}, triangle, 0, 2, Along(2, {12, 12, 12})},
  };
  for (const auto& c : cases) {
    for (int type : c.types) {
      SCOPED_TRACE(::testing::Message() << c.name << ", type " << type);
      Model model;
      model.analysisCode = c.code;
      model.nodes = c.nodes;
      std::vector<int> nodes{1, 2, 3, 4};
      nodes.resize(c.nodes.size());
      model.AddElement(type, nodes);
      model.materials = {{1000, 0.3, 0, 1, 0, c.degrees, 1, 0, 1, 0, 1}};
      model.cases = {{{}, {{1, c.direction, 12}}}};
      ExpectLoads(model, c.loads);
    }
  }
}

/// The freedoms of each analysis code among x, y, z and the rotations about them, from 0.
const std::vector<std::size_t> FreedomsOfCode[] = {{0, 1, 2}, {0, 1}, {0, 1, 5}, {0, 1, 2, 3, 4, 5}};

TEST(NodalLoads, GoToTheFreedomsThatTheCodeHas) {
  const std::vector<double> reactionsOfCode[] = {{1, 2, 3}, {1, 2}, {1, 2, 3 + 6}, {1, 2, 3, 4, 5, 6}};
  for (int code : {0, 1, 2, 3}) {
    Model model;
    model.analysisCode = code;
    model.AddNode(0, 0);
    model.Fix(1, 6);  // code 2 holds the rotation by direction 3 and by 6; what a code lacks is passed over
    model.cases = {{{{1, 1, -1}, {1, 2, -2}, {1, 3, -3}, {1, 4, -4}, {1, 5, -5}, {1, 6, -6}}, {}}};
    Folder folder;
    folder.Write(model);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.Warned(), code != 3);
    EXPECT_EQ(folder.Reactions().cases.at(0), reactionsOfCode[code]);
  }
}

TEST(Acceleration, MultipliesWhatStandsAtTheNode) {
  // Under an acceleration of 2, for angular ones about a point from which the node lies 0.5, 1.75 and 4 away. Types
  // beyond 1 to 6 are plain cases.
  const double factors[][6] = {{1, 1, 1, 1, 1, 1},    {2, 0, 0, 0, 0, 0},  {0, 2, 0, 0, 0, 0},    {0, 0, 2, 0, 0, 0},
                               {0, -8, 3.5, 2, 0, 0}, {8, 0, -1, 0, 2, 0}, {-3.5, 1, 0, 0, 0, 2}, {1, 1, 1, 1, 1, 1}};
  for (int code : {0, 1, 2, 3}) {
    for (int type = 0; type <= 7; ++type) {
      SCOPED_TRACE(::testing::Message() << "code " << code << ", type " << type);
      Model model;
      model.analysisCode = code;
      model.AddNode(1, 2, 3);
      model.cases = {{{}, {}, type, {2, 0.5, 0.25, -1, 0}}};
      std::vector<double> expected;
      for (std::size_t freedom : FreedomsOfCode[code]) {
        model.cases[0].nodal.push_back({1, static_cast<int>(expected.size()) + 1, 10.0 + static_cast<double>(freedom)});
        expected.push_back((10.0 + static_cast<double>(freedom)) * factors[type][freedom]);
      }
      ExpectLoads(model, expected);
    }
  }
}

TEST(Supports, PrescribeADisplacementInLoadCase1AloneAndAnswerInTheirFormOfText) {
  Model model;
  model.analysisCode = 1;
  model.nodes = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0}};  // no element uses the last
  model.AddElement(1, {1, 2});
  model.materials = {{1024, 0, 0, 1}};
  model.supports = {{1, 1}, {1, 2}, {2, 1, 99}, {2, 1, -0.5}, {2, 2}};  // the last line of a freedom stands
  // A load on a supported freedom goes over the penalty of 1e30; a freedom without stiffness is held, its load dropped.
  model.cases = {{}, {{{2, 1, 5e29}, {3, 1, 7}}, {}}};
  Folder folder;
  folder.Solve(model);
  const NodalValues u = folder.Displacements();
  EXPECT_EQ((std::array{u(1, 2, 1), u(2, 2, 1), u(2, 3, 1)}), (std::array{-0.5, 0.5, 0.0}));
  EXPECT_TRUE(folder.Read(".RVP").starts_with("3,1\n"));
  EXPECT_EQ(folder.Read(".KRT"),
            " 3             1            \n"
            " 1 128,0\n 2 -128,0\n 3 0,0\n0,0,0\n\"END\"\n"
            " 1 -128,0\n 2 -5e+29,0\n 3 -7,0\n0,-5e+29,0\n\"END\"\n");
}

TEST(NodalForces, BalanceTheLoadsOfEveryLoadCaseByItself) {
  Model model;  // a skew frame of three beams and a bar, out of every plane
  model.nodes = {{0, 0, 0}, {1, 0, 3}, {4, 2, 4}, {5, 3, 0}, {2, 5, 3}};
  model.elements = {{7, {1, 2}}, {7, {2, 3}}, {7, {4, 3}}, {1, {3, 5}}};
  model.materials = {{2e5, 0.3, 1, 2, 0, 25, 0.7, 0, 0.4, 0, 0.9}};
  model.Fix(1, 6);
  for (int node : {4, 5}) model.Fix(node, 3);
  // An acceleration; forces with couples on a node that is held in nothing.
  model.cases = {{{}, {}, 2, {-3, 0, 0, 0, 1}},
                 {{{2, 1, 10}, {2, 2, -7}, {2, 3, 20}, {3, 4, 3}, {3, 5, 8}, {3, 6, -5}}, {}}};
  Folder folder;
  folder.Solve(model);
  const NodalValues r = folder.Reactions();
  for (int node : {2, 3}) {
    for (int k = 1; k <= 6; ++k) EXPECT_NEAR(r(2, node, k), 0, 1e-10) << "node " << node << " is free";
  }
  // Moments about the origin of the loads, and of the reactions at nodes 1, 4 and 5.
  Vector3 moment = Vector3{3, 8, -5} + Cross({1, 0, 3}, {10, -7, 20}) + Vector3{r(2, 1, 4), r(2, 1, 5), r(2, 1, 6)};
  moment = moment + Cross({5, 3, 0}, {r(2, 4, 1), r(2, 4, 2), r(2, 4, 3)});
  moment = moment + Cross({2, 5, 3}, {r(2, 5, 1), r(2, 5, 2), r(2, 5, 3)});
  EXPECT_NEAR(Length(moment), 0, 1e-10);
  const double mass = 2 * (std::sqrt(10) + std::sqrt(14) + std::sqrt(18) + std::sqrt(14));
  const double expected[2][3] = {{0, 3 * mass, 0}, {-10, 7, -20}};
  for (std::size_t c : {0u, 1u}) {
    for (std::size_t k : {0u, 1u, 2u}) EXPECT_NEAR(r.totals.at(c).at(k), expected[c][k], 1e-10);
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
