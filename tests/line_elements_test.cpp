// Bars, beams, strings and springs: stiffness by closed forms, and rigid motions without force.

#include <gtest/gtest.h>

#include "base/vector3.hpp"
#include "elements/line_elements.hpp"
#include "model/model_sizes.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

TEST(TransverseBar, IsAStringUnderItsPreForceThatASagStiffens) {
  // The share of the stretch E A that an offset of 4 leaves across a length of 3.
  EXPECT_DOUBLE_EQ(TransverseStiffness({.E = 1000, .A = 7, .J = 5000, .Iy = 4}, 3), ((1 - 3.0 / 5) * 7000 + 5000) / 3);
}

/// NAME.MAT of a model.
Grid StiffnessOf(Model model) {
  model.flags.SolveFlag = 0;
  Folder folder;
  folder.Solve(model);
  return folder.Stiffness(DofPerNodeOf(model.analysisCode));
}

TEST(NodalSpring, TakesTheTermsOfItsMatrixThatFitTheCode) {
  Model model;
  model.AddNode(3, 4, 5);
  model.AddElement(16, {1});
  model.materials = {{}};
  const auto term = [](std::size_t i, std::size_t j) { return static_cast<double>(i + j + 3 * i * j + 1); };
  for (std::size_t i = 0; i < 6; ++i) {
    for (std::size_t j = 0; j < 6; ++j) model.materials[0].spring[i][j] = term(i, j);
  }
  const std::vector<std::size_t> rowsOfCode[] = {{0, 1, 2}, {0, 1}, {0, 1, 5}, {0, 1, 2, 3, 4, 5}};
  for (model.analysisCode = 0; model.analysisCode <= 3; ++model.analysisCode) {
    const Grid K = StiffnessOf(model);
    for (int i = 1; std::size_t row : rowsOfCode[model.analysisCode]) {
      for (int j = 1; std::size_t column : rowsOfCode[model.analysisCode]) EXPECT_EQ(K(i, j++), term(row, column));
      ++i;
    }
  }
}

/// Stiffness of one element between two points out of line with all axes, its section turned by an angle.
Grid OneElement(int type, int code, const Vector3& from, const Vector3& to, double degrees) {
  Model model;
  model.analysisCode = code;
  for (const Vector3& p : {from, to}) model.AddNode(p.x, p.y, p.z);
  model.AddElement(type, {1, 2});
  model.materials = {{2e11, 0.25, 7850, 0.01, 0, degrees, 3e-6, 0, 1e-6, 1e-5, 2e-6, 2e-5}};
  return StiffnessOf(model);
}

TEST(LineElements, NeedNoForceToMoveAsARigidBody) {
  for (const auto& [type, code] : {std::pair{1, 0}, {1, 1}, {1, 2}, {1, 3}, {7, 2}, {7, 3}, {17, 0}, {17, 1}}) {
    SCOPED_TRACE(::testing::Message() << "type " << type << ", code " << code);
    const bool spatial = code == 0 || code == 3;
    const int dof = DofPerNodeOf(code), moves = spatial ? 3 : 2;
    const Vector3 ends[] = {{1, 2, 0}, {4, -1, spatial ? 5.0 : 0.0}};
    Vector3 shift{1, -2, spatial ? 3.0 : 0.0}, turn = spatial ? Vector3{0.3, 0.8, -0.5} : Vector3{0, 0, 0.7};
    if (type == 17) turn = {};  // a string under force does answer a turn
    Column u(2 * dof);
    for (int n = 0; n <= 1; ++n) {
      const Vector3 move = shift + Cross(turn, ends[n]);
      for (int k = 1; k <= dof; ++k) u(n * dof + k) = k <= moves ? move(k) : turn(code == 2 ? 3 : k - 3);
    }
    const Grid K = OneElement(type, code, ends[0], ends[1], 40);
    for (int e = 1; e <= 2 * dof; ++e) {
      double force = 0;
      for (int j = 1; j <= 2 * dof; ++j) force += K(e, j) * u(j);
      EXPECT_NEAR(force, 0, 1e-12 * K(1, 1)) << "equation " << e;
    }
    const Grid there = OneElement(type, code, ends[0], ends[1], 0), back = OneElement(type, code, ends[1], ends[0], 0);
    const auto swapped = [&](int e) { return e <= dof ? e + dof : e - dof; };
    for (int i = 1; i <= 2 * dof; ++i) {
      for (int j = 1; j <= 2 * dof; ++j) EXPECT_NEAR(there(i, j), back(swapped(i), swapped(j)), 1e-14 * K(1, 1));
    }
  }
}

}  // namespace
}  // namespace velmor::testing
