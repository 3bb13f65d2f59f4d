// End stresses of bars, gaps and beams.

#include <gtest/gtest.h>

#include <cmath>

#include "stress_runs.hpp"

namespace velmor::testing {
namespace {

constexpr double E = 2e5, nu = 0.3, A = 50, J = 30, Iy = 400, Wy = 80, Iz = 900, Wz = 120;

/// The lines of an element, by the names of their items.
struct EndStress {
  double axial, shear2, shear1, bending1, bending2, equivalent;
};
std::array<EndStress, 2> Ends(const Folder& folder) {
  const auto lines = Lines(folder, ".LES");
  EXPECT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[0].size(), 17);
  EXPECT_EQ(lines[1].size(), 13);
  std::array<EndStress, 2> ends{};
  for (std::size_t end = 0; end < 2; ++end) {
    const double* const item = lines[end].data() + (end == 0 ? 4 : 0);
    ends[end] = {item[0], item[3], item[4], item[7], item[8], item[12]};
    for (const int zero : {1, 2, 5, 6, 9, 10, 11}) EXPECT_EQ(item[zero], 0);
  }
  return ends;
}

/// A cantilever from the origin to `axis` times its length, with a force and a torque at its tip.
struct Cantilever {
  const char* name;
  int code;
  Vector3 axis;
  double degrees;         // rotation of the section
  Vector3 first, second;  // the turned section axes, worked out by hand
  double Wy = testing::Wy, Wz = testing::Wz;
};
const double Half = 0.5, Root = std::sqrt(3) / 2, L = 10;
const Cantilever Cantilevers[] = {
    {"along x", 3, {1, 0, 0}, 0, {0, 1, 0}, {0, 0, 1}},
    {"along x, section turned by 30 degrees", 3, {1, 0, 0}, 30, {0, Root, Half}, {0, -Half, Root}},
    {"along x, section turned by 90 degrees", 3, {1, 0, 0}, 90, {0, 0, 1}, {0, -1, 0}},
    {"along z", 3, {0, 0, 1}, 0, {0, 1, 0}, {-1, 0, 0}},
    {"along -z", 3, {0, 0, -1}, 0, {0, 1, 0}, {1, 0, 0}},
    {"oblique", 3, {0.6, 0.8, 0}, 0, {-0.8, 0.6, 0}, {0, 0, 1}},
    {"in the plane", 2, {0.6, 0.8, 0}, 30, {-0.8, 0.6, 0}, {0, 0, 1}},
    {"without a section modulus", 3, {1, 0, 0}, 0, {0, 1, 0}, {0, 0, 1}, 0, 0},
};

TEST(LineStress, OfACantileverAreMomentByModulusAndForceByArea) {
  for (const Cantilever& beam : Cantilevers) {
    SCOPED_TRACE(beam.name);
    Model model;
    model.analysisCode = beam.code;
    const Vector3 tip = L * beam.axis;
    model.AddNode(0, 0, 0);
    model.AddNode(tip.x, tip.y, tip.z);
    model.AddElement(7, {1, 2});
    model.materials = {{E, nu, 0, A, 0, beam.degrees, J, 0, Iy, beam.Wy, Iz, beam.Wz}};
    model.Fix(1, beam.code == 3 ? 6 : 3);
    const double N = 700, P = 90, Q = beam.code == 3 ? -40 : 0;  // along the axis and the two section axes
    const Vector3 force = N * beam.axis + P * beam.first + Q * beam.second;
    model.cases = {{{{2, 1, force.x}, {2, 2, force.y}}, {}}};
    if (beam.code == 3) {
      model.cases[0].nodal.push_back({2, 3, force.z});
      for (int k = 1; k <= 3; ++k) model.cases[0].nodal.push_back({2, 3 + k, 25 * beam.axis(k)});  // leaves no trace
    }
    model.flags.LineStressFlag = 1;
    Folder folder;
    folder.Solve(model);
    const auto [root, end] = Ends(folder);
    const bool bends = beam.Wz != 0;
    for (const EndStress& at : {root, end}) {
      EXPECT_NEAR(at.axial, N / A, 1e-9);
      EXPECT_NEAR(at.shear2, bends ? P / A : 0, 1e-9);
      EXPECT_NEAR(at.shear1, bends ? Q / A : 0, 1e-9);
    }
    const double b2 = bends ? -P * L / Wz : 0, b1 = bends ? -Q * L / Wy : 0;
    EXPECT_NEAR(root.bending2, b2, 1e-9);
    EXPECT_NEAR(root.bending1, b1, 1e-9);
    EXPECT_NEAR(end.bending2, 0, 1e-9);
    EXPECT_NEAR(end.bending1, 0, 1e-9);
    const double shear = bends ? 3 * (P * P + Q * Q) / (A * A) : 0, normal = N / A + std::abs(b1) + std::abs(b2);
    EXPECT_NEAR(root.equivalent, std::sqrt(normal * normal + shear), 1e-9);
    EXPECT_NEAR(end.equivalent, std::sqrt(N / A * N / A + shear), 1e-9);
  }
}

}  // namespace
}  // namespace velmor::testing
