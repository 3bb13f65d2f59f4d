// Bars, beams, strings and springs: closed forms, and rigid motions without force.

#include <gtest/gtest.h>

#include <cmath>

#include "base/vector3.hpp"
#include "elements/line_elements.hpp"
#include "model/model_sizes.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

constexpr double E = 2e11, nu = 0.25, A = 0.01, J = 3e-6, Iy = 1e-6, Iz = 2e-6, L = 2.5;
models::Material Section(double degrees = 0) { return {E, nu, 7850, A, 0, degrees, J, 0, Iy, 1e-5, Iz, 2e-5}; }

void AddLoads(Model::LoadCase& loads, int node, int first, const Vector3& v) {
  for (int k = 1; k <= 3; ++k) loads.nodal.push_back({node, first - 1 + k, v(k)});
}

Vector3 Read(const NodalValues& u, int c, int n, int first) {
  return {u(c, n, first), u(c, n, first + 1), u(c, n, first + 2)};
}

void ExpectVector(const Vector3& got, const Vector3& expected, double size) {
  EXPECT_LT(Length(got - expected), 1e-11 * size)
      << got.x << " " << got.y << " " << got.z << " not " << expected.x << " " << expected.y << " " << expected.z;
}

TEST(Beam, CantileverInSpaceFollowsTheClosedForms) {
  const Vector3 ex{1, 0, 0}, ey{0, 1, 0}, ez{0, 0, 1};
  // The direction of the beam, and its first section axis (level, or y for an upright beam) before it is turned.
  const struct {
    Vector3 axis, first;
  } beams[] = {{ex, ey},
               {ey, -ex},
               {-ex, -ey},
               {ez, ey},
               {-ez, ey},
               {Vector3{3, 0, 4} / 5, ey},
               {Vector3{1, 1, 1} / std::sqrt(3), Vector3{-1, 1, 0} / std::sqrt(2)}};
  for (const auto& [axis, first] : beams) {
    for (double degrees : {0.0, 30.0, 90.0, -135.0}) {
      SCOPED_TRACE(::testing::Message() << axis.x << " " << axis.y << " " << axis.z << " turned " << degrees);
      const double angle = degrees * M_PI / 180;
      const Vector3 second = Cross(axis, first);
      const Vector3 a = std::cos(angle) * first + std::sin(angle) * second;
      const Vector3 b = std::cos(angle) * second - std::sin(angle) * first;
      Model model;
      model.AddNode(1, -2, 3);
      model.AddNode(1 + L * axis.x, -2 + L * axis.y, 3 + L * axis.z);
      model.AddElement(7, {1, 2});
      model.materials = {Section(degrees)};
      model.Fix(1, 6);
      model.cases.resize(4);
      AddLoads(model.cases[0], 2, 1, a);  // a tip force of 1 along each section axis,
      AddLoads(model.cases[1], 2, 1, b);
      AddLoads(model.cases[2], 2, 1, axis);  // along the beam,
      AddLoads(model.cases[3], 2, 4, axis);  // and a torque
      Folder folder;
      folder.Solve(model);
      const NodalValues u = folder.Displacements(), r = folder.Reactions();
      const double w = L * L * L / 3 / E, slope = L * L / 2 / E, size = w / Iy;
      ExpectVector(Read(u, 1, 2, 1), w / Iz * a, size);
      ExpectVector(Read(u, 1, 2, 4), slope / Iz * b, size);
      ExpectVector(Read(u, 2, 2, 1), w / Iy * b, size);
      ExpectVector(Read(u, 2, 2, 4), -slope / Iy * a, size);
      ExpectVector(Read(u, 3, 2, 1), L / (E * A) * axis, size);
      ExpectVector(Read(u, 4, 2, 4), L * 2 * (1 + nu) / (E * J) * axis, size);
      ExpectVector(Read(r, 1, 1, 1), -a, 1);
      ExpectVector(Read(r, 1, 1, 4), -L * b, L);
      ExpectVector(Read(r, 2, 1, 4), L * a, L);
      ExpectVector(Read(r, 4, 1, 4), -axis, 1);
    }
  }
}

TEST(TransverseBar, IsAStringUnderItsPreForceThatASagStiffens) {
  const double N = 5000, length = 3;
  EXPECT_DOUBLE_EQ(TransverseStiffness({.E = 1000, .A = 7, .J = N}, length), N / length);
  // The share of the stretch E A that an offset of 4 leaves across.
  EXPECT_DOUBLE_EQ(TransverseStiffness({.E = 1000, .A = 7, .J = N, .Iy = 4}, length), (1 - 3.0 / 5) * 7000 / 3 + N / 3);
}

TEST(NodalSpring, TakesTheTermsOfItsMatrixThatFitTheCode) {
  Model model;
  model.AddNode(3, 4, 5);
  model.AddElement(16, {1});
  model.materials = {{}};
  for (std::size_t i = 0; i < 6; ++i) {
    for (std::size_t j = 0; j < 6; ++j) {
      model.materials[0].spring[i][j] = static_cast<double>(i == j ? 100 * (i + 1) : i + j + 3 * i * j);
    }
  }
  const std::vector<std::size_t> rowsOfCode[] = {{0, 1, 2}, {0, 1}, {0, 1, 5}, {0, 1, 2, 3, 4, 5}};
  for (int code : {0, 1, 2, 3}) {
    const auto& rows = rowsOfCode[code];
    model.analysisCode = code;
    model.cases = {{}};
    for (std::size_t row : rows) model.cases[0].nodal.push_back({1, static_cast<int>(row) + 1, 10.0});
    Folder folder;
    folder.Solve(model);
    const NodalValues u = folder.Displacements();
    for (std::size_t row : rows) {
      double force = 0;
      for (int k = 1; std::size_t column : rows) force += model.materials[0].spring[row][column] * u(1, 1, k++);
      EXPECT_NEAR(force, 10, 1e-11) << "code " << code << ", row " << row;
    }
  }
}

/// Stiffness of one element between two points out of line with all axes.
Grid OneElement(int type, int code, double degrees, std::vector<int> nodes = {1, 2}) {
  Model model;
  model.analysisCode = code;
  model.nodes = {{1, 2, 0}, {4, -1, code == 0 || code == 3 ? 5.0 : 0.0}};
  model.AddElement(type, std::move(nodes));
  model.materials = {Section(degrees)};
  model.flags.SolveFlag = 0;
  model.cases.resize(1);
  Folder folder;
  folder.Solve(model);
  return folder.Stiffness(DofPerNodeOf(code));
}

TEST(LineElements, NeedNoForceToMoveAsARigidBody) {
  const Vector3 unit[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (const auto& [type, code] : {std::pair{1, 0}, {1, 1}, {1, 2}, {1, 3}, {7, 2}, {7, 3}, {17, 0}, {17, 1}}) {
    SCOPED_TRACE(::testing::Message() << "type " << type << ", code " << code);
    const Grid K = OneElement(type, code, 40);
    const int dof = DofPerNodeOf(code), moves = code == 0 || code == 3 ? 3 : 2;
    for (int motion = 0; motion < 6; ++motion) {
      if (moves == 2 && 2 <= motion && motion <= 4) continue;  // out of the plane
      if (type == 17 && motion > 2) continue;                  // a string under force does answer a turn
      const Vector3 shift = motion < 3 ? unit[motion] : Vector3{}, turn = motion < 3 ? Vector3{} : unit[motion - 3];
      Column u(2 * dof);
      for (int n = 0; n <= 1; ++n) {
        const Vector3 move = shift + Cross(turn, n == 0 ? Vector3{1, 2, 0} : Vector3{4, -1, moves == 3 ? 5.0 : 0.0});
        for (int k = 1; k <= dof; ++k) u(n * dof + k) = k <= moves ? move(k) : turn(code == 2 ? 3 : k - 3);
      }
      for (int e = 1; e <= 2 * dof; ++e) {
        double force = 0;
        for (int j = 1; j <= 2 * dof; ++j) force += K(e, j) * u(j);
        EXPECT_NEAR(force, 0, 1e-12 * K(1, 1)) << "motion " << motion << ", equation " << e;
      }
    }
    const Grid straight = OneElement(type, code, 0), reversed = OneElement(type, code, 0, {2, 1});
    for (int i = 1; i <= 2 * dof; ++i) {
      for (int j = 1; j <= 2 * dof; ++j) EXPECT_NEAR(straight(i, j), reversed(i, j), 1e-14 * K(1, 1));
    }
  }
}

}  // namespace
}  // namespace velmor::testing
