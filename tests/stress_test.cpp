// Stresses at the nodes of membranes, plates and shells from given displacement fields, and at the ends of beams.

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "stress_runs.hpp"

namespace velmor::testing {
namespace {

constexpr double E = 2000, nu = 0.25, t = 0.4;
constexpr double Modulus = E / (1 - nu * nu), G = E / (2 * (1 + nu));

// ---- nodes of surfaces

using Corners = std::vector<std::array<double, 2>>;
const Corners Rectangle{{-2, -1}, {2, -1}, {2, 1}, {-2, 1}};  // half sides 2 and 1 about the origin
const Corners Skew{{-2, -1}, {1, -1}, {3, 1.5}, {-1, 2}};
const Corners Parallelogram{{-2.5, -1}, {1.5, -1}, {2.5, 1}, {-1.5, 1}};
const Corners ThreeCorners{{-2, -1}, {1, -1}, {3, 1.5}};

Model OneElement(int type, const Corners& corners, const Plane& plane = Flat, double planeStrain = 0) {
  Model model;
  std::vector<int> nodes;
  for (const auto& [x, y] : corners) {
    const Vector3 p = plane.Point(x, y);
    nodes.push_back(model.AddNode(p.x, p.y, p.z));
  }
  model.AddElement(type, nodes);
  model.materials = {{E, nu, 1, t, planeStrain}};
  return model;
}

/// Motion of an element in a plane: u, v along its axes, w across it; a plate turns by dw/dy and by dw/dx of a sign.
MotionField FieldIn(const Plane& plane, const Polynomial& u, const Polynomial& v, const Polynomial& w = {},
                    double sign = -1) {
  return [=](const Vector3& p) {
    const double x = Dot(p, plane.e1), y = Dot(p, plane.e2);
    return Motion{u.At(x, y) * plane.e1 + v.At(x, y) * plane.e2 + w.At(x, y) * plane.Normal(),
                  w.At(x, y, 0, 1) * plane.e1 + sign * w.At(x, y, 1, 0) * plane.e2};
  };
}

TEST(NodalStress, OfAUniformStrainIsTheSameTensorAtEveryNode) {
  const struct {
    int type;
    const Corners& corners;
    bool knowsPlaneStrain;
  } membranes[] = {
      {2, ThreeCorners, true}, {3, ThreeCorners, true}, {13, Skew, true}, {4, Skew, true},
      {12, Rectangle, true},   {5, Rectangle, false},   {8, Skew, false}, {9, Rectangle, false},
      {10, Rectangle, false},  {11, Rectangle, false},
  };
  // Strains 1e-3, -2e-3 and a change of the right angle of 3e-3, with a shift and a turn of the whole.
  const Polynomial u{{{0.3, 0, 0}, {1e-3, 1, 0}, {5e-3, 0, 1}}}, v{{{-1, 0, 0}, {-2e-3, 1, 0}, {-2e-3, 0, 1}}};
  for (const auto& [type, corners, knowsPlaneStrain] : membranes) {
    for (const int flag : {0, 1, 2}) {
      SCOPED_TRACE("type " + std::to_string(type) + ", flag " + std::to_string(flag));
      const bool planeStrain = knowsPlaneStrain && flag == 1;
      const double lambda = planeStrain ? E * nu / ((1 + nu) * (1 - 2 * nu)) : E * nu / (1 - nu * nu);
      const double sx = 2 * G * 1e-3 + lambda * -1e-3, sy = 2 * G * -2e-3 + lambda * -1e-3, sxy = G * 3e-3;
      Folder folder;
      Recover(folder, OneElement(type, corners, Turned, flag), {FieldIn(Turned, u, v)});
      std::vector<double> columns;
      const auto& [e1, e2] = Turned;
      for (const auto& [i, j] : {std::pair{1, 1}, {2, 2}, {3, 3}, {1, 2}, {1, 3}, {2, 3}}) {
        columns.push_back(sx * e1(i) * e1(j) + sy * e2(i) * e2(j) + sxy * (e1(i) * e2(j) + e2(i) * e1(j)));
      }
      columns.resize(9);
      const auto lines = Lines(folder, ".NSR");
      EXPECT_EQ(lines.size(), type == 13 ? 12 : corners.size());
      for (const auto& line : lines) ExpectItems(line, 5, columns, 1e-11);
    }
  }
}

TEST(NodalStress, OfBendingInPlaneTellsTheRectanglesApart) {
  // u = xi eta, then v = xi eta, on half sides 2 and 1: the incompatible modes feel the modulus of a bar and no shear.
  const Polynomial saddle{{{0.5, 1, 1}}};
  for (const int type : {5, 9, 10, 4, 8, 12, 11}) {
    SCOPED_TRACE("type " + std::to_string(type));
    const bool incompatible = type == 5 || type == 9 || type == 10;
    const double along = incompatible ? E : Modulus, across = incompatible ? 0 : nu * Modulus;
    const double shear = incompatible ? 0 : G;
    Folder folder;
    Recover(folder, OneElement(type, Rectangle), {FieldIn(Flat, saddle, {}), FieldIn(Flat, {}, saddle)});
    for (std::size_t k = 0; k < 4; ++k) {
      const double xi = Rectangle[k][0] / 2, eta = Rectangle[k][1];
      ExpectItems(Lines(folder, ".NSR", 1)[k], 5, {along * eta / 2, across * eta / 2, 0, shear * xi}, 1e-10);
      ExpectItems(Lines(folder, ".NSR", 2)[k], 5, {across * xi, along * xi, 0, shear * eta / 2}, 1e-10);
    }
  }
}

TEST(NodalStress, OfABentPlateIsThatOfItsCurvature) {
  const Polynomial deflections[] = {{{{1, 0, 0}, {2, 1, 0}, {3, 0, 1}, {1, 2, 0}, {-2, 1, 1}, {0.5, 0, 2}}},
                                    {{{1, 3, 0}}},
                                    {{{1, 0, 3}}},
                                    {{{1, 2, 1}, {2, 1, 2}, {3, 3, 1}, {-1, 1, 3}}}};
  const struct {
    int type;
    const Corners& corners;
    double sign;  // of dw/dx in the last freedom of a node
    int exact;    // in the first so many of the deflections
    Plane plane;
    std::array<std::size_t, 3> columns;  // of NAME.NSR: 1 for the stress along the first axis, 2 along the second
  } plates[] = {
      {8, Rectangle, 1, 4, {{0, 1, 0}, {0, 0, 1}}, {0, 0, 1}},
      {8, Parallelogram, 1, 1, {{1, 0, 0}, {0, 0, 1}}, {0, 1, 2}},
      {9, Rectangle, -1, 3, {{1, 0, 0}, {0, 1, 0}}, {2, 1, 0}},
      {10, Rectangle, -1, 3, {{0, 1, 0}, {-1, 0, 0}}, {1, 2, 0}},
      {11, Rectangle, -1, 4, {{1, 0, 0}, {0, 0, 1}}, {0, 1, 2}},
  };
  const double angle = 0.5, cc = std::cos(angle) * std::cos(angle), ss = 1 - cc;  // of the output axes
  for (const auto& [type, corners, sign, exact, plane, columns] : plates) {
    for (int state = 0; state < exact; ++state) {
      SCOPED_TRACE("type " + std::to_string(type) + ", deflection " + std::to_string(state));
      const Polynomial& w = deflections[state];
      // Shear flexibility takes its part of a moment that changes along a side of 2a: from the complementary energy of
      // that moment, 1 / (1 + 12/10 E t^2 / (4 (1 - nu^2) G a^2)).
      const double a = state == 1 ? 2 : 1, shear = 1.2 * Modulus * t * t / (4 * G * a * a);
      const double outer = -Modulus * t / 2 * (type == 10 && state > 0 ? 1 / (1 + shear) : 1);
      Folder folder;
      Recover(folder, OneElement(type, corners, plane), {FieldIn(plane, {}, {}, w, sign)}, {angle});
      for (std::size_t k = 0; k < 4; ++k) {
        const auto [x, y] = corners[k];
        const double cx = w.At(x, y, 2, 0), cy = w.At(x, y, 0, 2);
        const double stress[] = {0, outer * (cx + nu * cy), outer * (cy + nu * cx)};
        ExpectItems(Lines(folder, ".NSR")[k], 11, {stress[columns[0]], stress[columns[1]], stress[columns[2]]}, 1e-8);
        ExpectItems(Lines(folder, ".NSL")[k], 11, {ss * stress[1] + cc * stress[2], cc * stress[1] + ss * stress[2], 0},
                    1e-8);
      }
    }
  }
}

TEST(NodalStress, DoesNotDependOnTheNodeThatComesFirst) {
  // Any motion of the nodes, on the same rectangle from two of its corners: the axes change places.
  const MotionField field = FieldIn(Flat, {{{2, 0, 1}, {1, 1, 1}}}, {{{1, 1, 0}, {-3, 1, 1}}},
                                    {{{1, 2, 0}, {2, 2, 1}, {-1, 1, 2}, {0.5, 3, 1}, {0.7, 1, 3}}});
  for (const int type : {4, 12, 5, 9, 10, 11}) {
    Model model = OneElement(type, Rectangle);
    model.AddElement(type, {2, 3, 4, 1});
    Folder folder;
    Recover(folder, model, {field});
    const auto lines = Lines(folder, ".NSR");
    for (std::size_t k = 0; k < 4; ++k) {
      const auto& other = lines[4 + (k + 3) % 4];
      ExpectItems(lines[k], 5, {other.begin() + 4, other.begin() + 13}, 1e-9);
    }
  }
}

// ---- ends of beams

/// A cantilever from the origin to `axis` times its length, with a force and a torque, which
/// leaves no trace, at its tip.
const double Root = std::sqrt(0.75);
const struct {
  const char* name;
  int code;
  Vector3 axis;
  double degrees;         // rotation of the section
  Vector3 first, second;  // the turned section axes, worked out by hand
  double Wy = 80, Wz = 120;
} Cantilevers[] = {
    {"along x, section turned by 30 degrees", 3, {1, 0, 0}, 30, {0, Root, 0.5}, {0, -0.5, Root}},
    {"along -z", 3, {0, 0, -1}, 0, {0, 1, 0}, {1, 0, 0}},
    {"oblique", 3, {0.6, 0.8, 0}, 0, {-0.8, 0.6, 0}, {0, 0, 1}},
    {"in the plane", 2, {0.6, 0.8, 0}, 30, {-0.8, 0.6, 0}, {0, 0, 1}},
    {"without a section modulus", 3, {1, 0, 0}, 0, {0, 1, 0}, {0, 0, 1}, 0, 0},
};

TEST(LineStress, OfACantileverAreMomentByModulusAndForceByArea) {
  const double A = 50, J = 30, Iy = 400, Iz = 900, L = 10;
  for (const auto& [name, code, axis, degrees, first, second, Wy, Wz] : Cantilevers) {
    SCOPED_TRACE(name);
    const Vector3 tip = L * axis;
    const double N = 700, P = 90, Q = code == 3 ? -40 : 0;  // along the axis and the two section axes
    const Vector3 force = N * axis + P * first + Q * second;
    Model model;
    model.analysisCode = code;
    model.nodes = {{0, 0, 0}, {tip.x, tip.y, tip.z}};
    model.elements = {{7, {1, 2}}};
    model.materials = {{E, nu, 0, A, 0, degrees, J, 0, Iy, Wy, Iz, Wz}};
    for (int k = 1; k <= (code == 3 ? 6 : 3); ++k) {
      model.Prescribe(1, k, 1e-3 * k);  // moves the beam as a whole
      model.Load(2, k, k <= 3 ? force(k) : 25 * axis(k - 3));
    }
    model.flags.LineStressFlag = 1;
    Folder folder;
    folder.Solve(model);

    const bool bends = Wz != 0;
    const double axial = N / A, shear1 = bends ? P / A : 0, shear2 = bends ? Q / A : 0;
    const auto lines = Lines(folder, ".LES");
    ASSERT_EQ(lines.size(), 2);
    for (const int end : {1, 2}) {
      const double arm = end == 1 ? L : 0, b1 = bends ? -P * arm / Wz : 0, b2 = bends ? -Q * arm / Wy : 0;
      const double normal = axial + std::abs(b1) + std::abs(b2);
      const double equivalent = std::sqrt(normal * normal + 3 * (shear1 * shear1 + shear2 * shear2));
      ExpectItems(lines[static_cast<std::size_t>(end - 1)], end == 1 ? 5 : 1,
                  {axial, 0, 0, shear1, shear2, 0, 0, b2, b1, 0, 0, 0, equivalent}, 1e-9);
    }
  }
}

// ---- files

TEST(Stresses, AreWrittenItemByItem) {
  // A triangle, a spring, a bar, a passive element, a type 17, a shell with shear, and the bar from its other end.
  Model model;
  model.nodes = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
  model.elements = {{2, {2, 3, 1}}, {16, {1}, 2},      {1, {1, 2}}, {0, {1, 2}, 0},
                    {17, {1, 2}},   {6, {1, 2, 3, 4}}, {1, {2, 1}}};
  model.materials = {{100, 0, 1, 1}, {}};
  const double angle = 0.5;
  Folder folder;
  Recover(folder, model,
          {FieldIn(Flat, {{{1, 1, 0}}}, {{{2, 0, 1}}}), FieldIn(Flat, {{{-0.5, 1, 0}, {1, 0, 1}}}, {{{0.25, 0, 1}}})},
          {angle, 0, std::acos(0), 0, 0, 0});
  // In each load case the stress of the triangle T, the bars B and the shell O; their mean A at the nodes 1 and 2,
  // where all of them are, and M at node 3, where the bars are not.
  const struct {
    std::map<char, std::string> stresses;
    const char* equivalent;
  } cases[] = {
      {{{'T', "100,200,0,0"}, {'B', "100,0,0,0"}, {'O', "0,0,0,0"}, {'A', "75,50,0,0"}, {'M', "50,100,0,0"}}, "100"},
      {{{'T', "-50,25,0,50"}, {'B', "-50,0,0,0"}, {'O', "0,0,0,0"}, {'A', "-37.5,6.25,0,12.5"}, {'M', "-25,12.5,0,25"}},
       "50"},
  };
  std::string records, byElement, byNode, lines;
  for (const auto& [stresses, equivalent] : cases) {
    const std::string zeros = ",0,0,0,0,0,0,0,0", end = stresses.at('B') + zeros + "," + equivalent + "\n";
    const auto text = [&](const char* rows) {
      std::string all;
      std::istringstream row(rows);
      for (std::string head; row >> head;) {
        all += head.substr(0, head.size() - 1) + stresses.at(head.back()) + zeros + ",0\n";
      }
      return all + "\"END\"\n";
    };
    records += text(
        "1,2,1,2,T 1,3,1,2,T 1,1,1,2,T 3,1,1,1,B 3,2,1,1,B 5,1,1,6,O 5,2,1,6,O 5,3,1,6,O 5,4,1,6,O 6,2,1,1,B "
        "6,1,1,1,B");
    byElement += text(
        "1,2,1,2,A 1,3,1,2,M 1,1,1,2,A 2,1,2,16,O 3,1,1,1,A 3,2,1,1,A 4,1,0,0,O 4,2,0,0,O 5,1,1,17,A 5,2,1,17,A "
        "6,1,1,6,A 6,2,1,6,A 6,3,1,6,M 6,4,1,6,O 7,2,1,1,A 7,1,1,1,A");
    byNode += text("0,1,1,1,A 0,2,1,1,A 0,3,1,1,M 0,4,1,1,O 0,1,2,1,O 0,2,2,1,O 0,3,2,1,O 0,4,2,1,O");
    lines += "3,1,2,0," + end + end + "6,2,1,0," + end + end + "\"END\"\n";
  }
  EXPECT_EQ(folder.Read(".NSR"), records);
  EXPECT_EQ(folder.Read(".NSA"), byElement);
  EXPECT_EQ(folder.Read(".RSA"), byNode);
  EXPECT_EQ(folder.Read(".LES"), lines);

  // In turned axes, by Mohr's circle, the triangle at node 3 (its first axis is Y) and its mean there; the bar across
  // after a quarter turn.
  const double middle = -12.5, radius = 37.5, c = std::cos(2 * angle), s = std::sin(2 * angle);
  const double x = middle + radius * c + 50 * s, y = middle - radius * c - 50 * s, xy = radius * s - 50 * c;
  ExpectItems(Lines(folder, ".NSL", 2)[1], 5, {x, y, 0, xy}, 1e-12);
  for (const auto& line : {Lines(folder, ".NLA", 2)[1], Lines(folder, ".RLA", 2)[2]}) {
    ExpectItems(line, 5, {x / 2, y / 2, 0, xy / 2}, 1e-12);
  }
  ExpectItems(Lines(folder, ".NSL", 2)[3], 5, {0, -50, 0, 0}, 1e-12);
}

}  // namespace
}  // namespace velmor::testing
