// Element loads, nodal loads and accelerations.

#include <gtest/gtest.h>

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

using Nodes = std::vector<std::array<double, 3>>;

TEST(ElementLoads, GoHalfToEachEndWithTheMomentsOfTheSupportsAnswer) {
  const std::array<double, 3> o{0, 0, 0}, x{2, 0, 0}, y{0, 2, 0}, z{0, 0, 2};
  const struct {
    const char* name;
    int code, type;
    Nodes nodes;
    double degrees;
    int direction;
    std::vector<double> loads;  // q = 12: q L / 2 = 12, q L^2 / 12 = 4
  } cases[] = {
      {"along x, axial", 3, 7, {o, x}, 0, 1, {12, 0, 0, 0, 0, 0, 12, 0, 0, 0, 0, 0}},
      {"along x, turned", 3, 7, {o, x}, 90, 2, {0, 0, 12, 0, 4, 0, 0, 0, 12, 0, -4, 0}},
      {"along y", 3, 7, {o, y}, 0, 2, {-12, 0, 0, 0, 0, -4, -12, 0, 0, 0, 0, 4}},
      {"upright, along y", 3, 7, {o, z}, 0, 2, {0, 12, 0, 4, 0, 0, 0, 12, 0, -4, 0, 0}},
      {"upright, against x", 3, 7, {o, z}, 0, 3, {-12, 0, 0, 0, 4, 0, -12, 0, 0, 0, -4, 0}},
      {"downward", 3, 7, {z, o}, 0, 3, {12, 0, 0, 0, 4, 0, 12, 0, 0, 0, -4, 0}},
      {"in the plane", 2, 7, {o, y}, 0, 2, {-12, 0, -4, -12, 0, 4}},
      {"out of the plane", 2, 7, {o, x}, 0, 3, {0, 0, 0, 0, 0, 0}},
      {"bar in space", 0, 1, {o, x}, 0, 3, {0, 0, 12, 0, 0, 12}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Model model;
    model.analysisCode = c.code;
    model.nodes = c.nodes;
    model.AddElement(c.type, {1, 2});
    model.materials = {{1, 0, 0, 1, 0, c.degrees, 1, 0, 1, 0, 1}};
    model.cases = {{{}, {{1, c.direction, 12}}}};
    ExpectLoads(model, c.loads);
  }
}

TEST(ElementLoads, OfSurfacesFollowTheirShapeFunctionsAndSumToTheArea) {
  const Nodes rectangle{{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}}, triangle{{0, 0, 0}, {3, 0, 0}, {0, 2, 0}};
  const Nodes trapezoid{{0, 0, 0}, {4, 0, 0}, {3, 2, 0}, {1, 2, 0}}, wall{{0, 0, 0}, {0, 4, 0}, {0, 4, 2}, {0, 0, 2}};
  const double wide = 5.0 / 3, narrow = 4.0 / 3;
  const struct {
    std::vector<int> types;
    Nodes nodes;
    int direction, global;      // q = 1 along a local axis gives forces along a global one
    std::vector<double> share;  // of each node
  } cases[] = {
      {{4, 5, 6, 8, 9, 10, 11, 12, 13}, rectangle, 3, 3, {2, 2, 2, 2}},
      {{4, 12}, rectangle, 1, 1, {2, 2, 2, 2}},
      {{4, 13}, trapezoid, 3, 3, {wide, wide, narrow, narrow}},
      {{4, 13}, wall, 3, 1, {2, 2, 2, 2}},
      {{2}, triangle, 2, 2, {1, 1, 1}},
  };
  for (const auto& c : cases) {
    for (int type : c.types) {
      SCOPED_TRACE(::testing::Message() << "type " << type << ", direction " << c.direction);
      Model model;
      model.nodes = c.nodes;
      model.AddElement(type, c.nodes.size() == 3 ? std::vector{1, 2, 3} : std::vector{1, 2, 3, 4});
      model.materials = {{1000, 0.3, 0, 1}};
      model.cases = {{{}, {{1, c.direction, 1}}}};
      std::vector<double> expected(6 * c.nodes.size());
      for (std::size_t n = 0; n < c.share.size(); ++n) {
        expected[6 * n + static_cast<std::size_t>(c.global) - 1] = c.share[n];
      }
      ExpectLoads(model, expected);
    }
  }
}

TEST(NodalLoads, GoToTheFreedomsThatTheCodeHas) {
  const std::vector<double> reactionsOfCode[] = {{1, 2, 3}, {1, 2}, {1, 2, 3 + 6}, {1, 2, 3, 4, 5, 6}};
  for (int code : {0, 1, 2, 3}) {
    Model model;
    model.analysisCode = code;
    model.AddNode(0, 0);
    model.Fix(1, 6);  // code 2 holds the rotation by direction 3 and by 6; what a code lacks is passed over
    model.cases.resize(1);
    for (int k = 1; k <= 6; ++k) model.cases[0].nodal.push_back({1, k, -1.0 * k});
    Folder folder;
    folder.Write(model);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.Warned(), code != 3);
    EXPECT_EQ(folder.Reactions().cases.at(0), reactionsOfCode[code]);
  }
}

TEST(Acceleration, MultipliesWhatStandsAtTheNode) {
  const double A = 2;
  const Vector3 axes[] = {{A, 0, 0}, {0, A, 0}, {0, 0, A}}, r{1 - 0.5, 2 - 0.25, 3 + 1};
  for (int code : {0, 1, 2, 3}) {
    for (int type : {-1, 0, 1, 2, 3, 4, 5, 6, 7}) {
      SCOPED_TRACE(::testing::Message() << "code " << code << ", type " << type);
      Vector3 a{1, 1, 1}, turn{1, 1, 1};  // a plain case leaves all loads as they are
      if (1 <= type && type <= 3) {
        a = axes[type - 1];
        turn = {0, 0, 0};
      } else if (4 <= type && type <= 6) {
        turn = axes[type - 4];
        a = Cross(turn, r);
      }
      Model model;
      model.analysisCode = code;
      model.AddNode(1, 2, 3);
      Model::LoadCase loadCase{{}, {}, type, {A, 0.5, 0.25, -1, 0}};
      std::vector<double> expected;
      for (int k = 1; k <= DofPerNodeOf(code); ++k) {
        loadCase.nodal.push_back({1, k, 10.0 * k});
        const bool translation = k <= (code == 0 || code == 3 ? 3 : 2);
        expected.push_back(10.0 * k * (translation ? a(k) : turn(code == 2 ? 3 : k - 3)));
      }
      model.cases = {loadCase};
      ExpectLoads(model, expected);
    }
  }
}

}  // namespace
}  // namespace velmor::testing
