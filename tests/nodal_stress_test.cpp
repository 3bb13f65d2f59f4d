// Stresses at the nodes of bars, membranes, plates and shells, from given displacement fields and from solved models.

#include <gtest/gtest.h>

#include <cmath>

#include "stress_runs.hpp"

namespace velmor::testing {
namespace {

constexpr double E = 2000, nu = 0.25, t = 0.4;
constexpr double Modulus = E / (1 - nu * nu), G = E / (2 * (1 + nu));
const models::Material Steel{E, nu, 1, t};
const models::Material SteelInPlaneStrain{E, nu, 1, t, 1};
const models::Material SteelWithAnotherFlag{E, nu, 1, t, 2};

using Corners = std::vector<std::array<double, 2>>;
const Corners Rectangle{{-2, -1}, {2, -1}, {2, 1}, {-2, 1}};  // half sides 2 and 1 about the origin
const Corners Skew{{-2, -1}, {1, -1}, {3, 1.5}, {-1, 2}};
const Corners Parallelogram{{-2.5, -1}, {1.5, -1}, {2.5, 1}, {-1.5, 1}};
const Corners ThreeCorners{{-2, -1}, {1, -1}, {3, 1.5}};

Model OneElement(int type, const Corners& corners, const Plane& plane = Flat,
                 const models::Material& material = Steel) {
  Model model;
  std::vector<int> nodes;
  for (const auto& [x, y] : corners) {
    const auto p = plane.Point(x, y);
    nodes.push_back(model.AddNode(p[0], p[1], p[2]));
  }
  model.AddElement(type, nodes);
  model.materials = {material};
  return model;
}

/// Motion in a plane: u, v along its axes.
MotionField InPlane(const Plane& plane, const std::function<std::array<double, 2>(double x, double y)>& field) {
  return [=](const Vector3& p) {
    const auto [u, v] = field(Dot(p, plane.e1), Dot(p, plane.e2));
    return Motion{u * plane.e1 + v * plane.e2, {}};
  };
}

struct MembraneCase {
  int type;
  const Corners& corners;
  bool knowsPlaneStrain;
};
const MembraneCase Membranes[] = {
    {2, ThreeCorners, true}, {3, ThreeCorners, true}, {13, Skew, true}, {4, Skew, true},
    {12, Rectangle, true},   {5, Rectangle, false},   {8, Skew, false}, {9, Rectangle, false},
    {10, Rectangle, false},  {11, Rectangle, false},
};

TEST(NodalStress, OfAUniformStrainIsTheSameTensorAtEveryNode) {
  // Strains 1e-3, -2e-3 and a change of the right angle of 3e-3, with a shift and a turn of the whole.
  const auto field = [](double x, double y) { return std::array{0.3 + 1e-3 * x + 5e-3 * y, -2e-3 * x - 2e-3 * y - 1}; };
  for (const MembraneCase& membrane : Membranes) {
    for (const auto& material : {Steel, SteelInPlaneStrain, SteelWithAnotherFlag}) {
      for (const Plane& plane : {Flat, Turned}) {
        SCOPED_TRACE("type " + std::to_string(membrane.type) + ", flag " + std::to_string(material.planeStrain));
        const bool planeStrain = membrane.knowsPlaneStrain && material.planeStrain == 1;
        const double lambda = planeStrain ? E * nu / ((1 + nu) * (1 - 2 * nu)) : E * nu / (1 - nu * nu);
        const double sx = 2 * G * 1e-3 + lambda * -1e-3, sy = 2 * G * -2e-3 + lambda * -1e-3, sxy = G * 3e-3;
        Folder folder;
        Recover(folder, OneElement(membrane.type, membrane.corners, plane, material), {InPlane(plane, field)});
        const auto global = Lines(folder, ".NSR"), turned = Lines(folder, ".NSL");
        ASSERT_EQ(global.size(), membrane.type == 13 ? 12 : membrane.corners.size());
        const auto component = [&](int i, int j) {
          return sx * plane.e1(i) * plane.e1(j) + sy * plane.e2(i) * plane.e2(j) +
                 sxy * (plane.e1(i) * plane.e2(j) + plane.e2(i) * plane.e1(j));
        };
        for (std::size_t i = 0; i < global.size(); ++i) {
          ExpectItems(global[i], 5,
                      {component(1, 1), component(2, 2), component(3, 3), component(1, 2), component(1, 3),
                       component(2, 3), 0, 0, 0},
                      1e-11);
          const double s1 = turned[i][4], s2 = turned[i][5], s12 = turned[i][7];  // the invariants
          EXPECT_NEAR(s1 + s2, sx + sy, 1e-11);
          EXPECT_NEAR(s1 * s2 - s12 * s12, sx * sy - sxy * sxy, 1e-10);
          ExpectItems(turned[i], 5, {s1, s2, 0, s12, 0, 0, 0, 0, 0}, 1e-11);
        }
      }
    }
  }
}

TEST(NodalStress, OfBendingInPlaneTellsTheRectanglesApart) {
  // u = xi eta, then v = xi eta, on half sides 2 and 1: the incompatible modes feel the modulus of a bar and no shear.
  const MotionField u = InPlane(Flat, [](double x, double y) { return std::array{x / 2 * y, 0.0}; });
  const MotionField v = InPlane(Flat, [](double x, double y) { return std::array{0.0, x / 2 * y}; });
  for (const int type : {5, 9, 10, 4, 8, 12, 11}) {
    SCOPED_TRACE("type " + std::to_string(type));
    Folder folder;
    Recover(folder, OneElement(type, Rectangle), {u, v});
    for (std::size_t k = 0; k < 4; ++k) {
      const double xi = Rectangle[k][0] / 2, eta = Rectangle[k][1];
      const auto one = Lines(folder, ".NSR", 1)[k], two = Lines(folder, ".NSR", 2)[k];
      if (type == 5 || type == 9 || type == 10) {
        ExpectItems(one, 5, {E * eta / 2, 0, 0, 0}, 1e-10);
        ExpectItems(two, 5, {0, E * xi, 0, 0}, 1e-10);
      } else {
        ExpectItems(one, 5, {Modulus * eta / 2, nu * Modulus * eta / 2, 0, G * xi}, 1e-10);
        ExpectItems(two, 5, {nu * Modulus * xi, Modulus * xi, 0, G * eta / 2}, 1e-10);
      }
    }
  }
}

/// The deflection x^m y^n, and which plates hold it exactly on a rectangle.
enum class Holds { InAll, WithoutShear, InPolynomials };
struct Deflection {
  int m, n;
  Holds holds;
  double w(double x, double y) const { return Power(x, m) * Power(y, n); }
  double wx(double x, double y) const { return m * Power(x, m - 1) * Power(y, n); }
  double wy(double x, double y) const { return n * Power(x, m) * Power(y, n - 1); }
  double wxx(double x, double y) const { return m * (m - 1) * Power(x, m - 2) * Power(y, n); }
  double wyy(double x, double y) const { return n * (n - 1) * Power(x, m) * Power(y, n - 2); }
  static double Power(double x, int exponent) { return exponent < 0 ? 0 : std::pow(x, exponent); }
};
const Deflection Deflections[] = {
    {0, 0, Holds::InAll},         {1, 0, Holds::InAll},         {0, 1, Holds::InAll},
    {2, 0, Holds::InAll},         {1, 1, Holds::InAll},         {0, 2, Holds::InAll},
    {3, 0, Holds::WithoutShear},  {0, 3, Holds::WithoutShear},  {2, 1, Holds::InPolynomials},
    {1, 2, Holds::InPolynomials}, {3, 1, Holds::InPolynomials}, {1, 3, Holds::InPolynomials},
};

TEST(NodalStress, OfABentPlateIsThatOfItsCurvature) {
  struct Plate {
    int type;
    const Corners& corners;
    double secondRotation;  // the last freedom of a node, as a part of dw/dx
  };
  const Plate plates[] = {
      {8, Rectangle, 1}, {8, Parallelogram, 1}, {9, Rectangle, -1}, {10, Rectangle, -1}, {11, Rectangle, -1}};
  for (const Plate& plate : plates) {
    std::vector<MotionField> fields;
    for (const Deflection& deflection : Deflections) {
      fields.push_back([&](const Vector3& p) {
        const double x = Dot(p, Turned.e1), y = Dot(p, Turned.e2);
        return Motion{deflection.w(x, y) * Turned.Normal(),
                      deflection.wy(x, y) * Turned.e1 + plate.secondRotation * deflection.wx(x, y) * Turned.e2};
      });
    }
    Folder folder;
    Recover(folder, OneElement(plate.type, plate.corners, Turned), fields);
    for (int c = 1; c <= static_cast<int>(fields.size()); ++c) {
      const Deflection& deflection = Deflections[c - 1];
      if (deflection.holds != Holds::InAll && &plate.corners == &Parallelogram) continue;
      if (deflection.holds == Holds::InPolynomials && plate.type != 8 && plate.type != 11) continue;
      SCOPED_TRACE("type " + std::to_string(plate.type) + ", deflection " + std::to_string(c));
      // Shear flexibility takes its part of a moment that changes along a side of 2a: from the complementary energy of
      // that moment, 1 / (1 + 12/10 E t^2 / (4 (1 - nu^2) G a^2)).
      const double a = deflection.m == 3 ? 2 : 1, shear = 1.2 * E * t * t / (4 * (1 - nu * nu) * G * a * a);
      const double part = plate.type == 10 && deflection.holds == Holds::WithoutShear ? 1 / (1 + shear) : 1;
      const auto lines = Lines(folder, ".NSL", c);
      ASSERT_EQ(lines.size(), 4);
      for (std::size_t k = 0; k < 4; ++k) {
        const auto [x, y] = plate.corners[k];
        const double cx = deflection.wxx(x, y), cy = deflection.wyy(x, y);
        const double outer = -part * Modulus * t / 2;
        ExpectItems(lines[k], 5, {0, 0, 0, 0, 0, 0, outer * (cy + nu * cx), outer * (cx + nu * cy), 0}, 1e-8);
      }
    }
  }
}

TEST(NodalStress, DoesNotDependOnTheNodeThatComesFirst) {
  // Any motion of the nodes, on the same rectangle from two of its corners: the axes change places. The third freedom
  // of type 8 belongs to its own first axis, so that its nodes have an order.
  const MotionField field = [](const Vector3& p) {
    const double x = p.x, y = p.y;
    return Motion{{x * y + 2 * y, x - 3 * x * y, 1 + x - x * y}, {0.3 * x * y - y, x + 0.2 * y - 0.7 * x * y, 0.5}};
  };
  for (const int type : {4, 12, 5, 9, 10, 11}) {
    SCOPED_TRACE(type);
    Model model = OneElement(type, Rectangle);
    model.AddElement(type, {2, 3, 4, 1});
    Folder folder;
    Recover(folder, model, {field});
    const auto global = Lines(folder, ".NSR"), local = Lines(folder, ".NSL");
    for (std::size_t k = 0; k < 4; ++k) {
      const std::size_t other = 4 + (k + 3) % 4;
      EXPECT_EQ(global[k][1], global[other][1]);
      ExpectItems(global[k], 5, {global[other].begin() + 4, global[other].begin() + 10}, 1e-9);
      ExpectItems(local[k], 11, {local[other][11], local[other][10]}, 1e-9);
      EXPECT_EQ(type >= 9 && type <= 11, std::abs(local[k][11]) > 1) << "a plate bends";
    }
  }
}

TEST(NodalStress, TurnsWithTheOutputAxesOfEachRecord) {
  // Strains 1e-3, -2e-3, 3e-3 in the plane and curvatures 1, -2 across it.
  const MotionField field = [](const Vector3& p) {
    return Motion{{1e-3 * p.x + 3e-3 * p.y, -2e-3 * p.y, p.x * p.x / 2 - p.y * p.y}, {-2 * p.y, -p.x, 0}};
  };
  Model model = OneElement(9, Rectangle);
  for (int copy = 1; copy <= 3; ++copy) model.elements.push_back(model.elements.front());
  const double degree = std::acos(-1) / 180;
  const std::vector<double> angles{0, 30 * degree, 90 * degree, -0.7};
  Folder folder;
  Recover(folder, model, {field}, angles);
  const auto lines = Lines(folder, ".NSL"), global = Lines(folder, ".NSR");
  ASSERT_EQ(lines.size(), 16);
  const double sx = lines[0][4], sy = lines[0][5], sxy = lines[0][7], bx = lines[0][11], by = lines[0][10];
  EXPECT_NEAR(sxy, G * 3e-3, 1e-10);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double a = angles[i / 4];
    SCOPED_TRACE(a);
    const double r[2][2] = {{std::cos(a), -std::sin(a)}, {std::sin(a), std::cos(a)}};
    const auto along = [&](int p, int q, double x, double y, double xy) {
      return r[p][0] * r[q][0] * x + r[p][1] * r[q][1] * y + (r[p][0] * r[q][1] + r[p][1] * r[q][0]) * xy;
    };
    ExpectItems(lines[i], 5,
                {along(0, 0, sx, sy, sxy), along(1, 1, sx, sy, sxy), 0, along(0, 1, sx, sy, sxy), 0, 0,
                 along(1, 1, bx, by, 0), along(0, 0, bx, by, 0), 0},
                1e-9);
    ExpectItems(global[i], 5, {global[0].begin() + 4, global[0].begin() + 13}, 1e-9);  // global axes do not turn
  }
}

TEST(NodalStress, PutsTheBendingColumnsInTheirPlaces) {
  // Unit curvature along the first axis: bx = b, by = nu b, in four positions of the plate.
  struct Position {
    Plane plane;
    double x, y, z;  // the columns
  };
  const double b = -Modulus * t / 2;
  const Position positions[] = {
      {{{1, 0, 0}, {0, 1, 0}}, b, nu * b, 0},
      {{{0, 1, 0}, {-1, 0, 0}}, nu * b, b, 0},
      {{{1, 0, 0}, {0, 0, 1}}, b, 0, nu * b},
      {{{0, 1, 0}, {0, 0, 1}}, 0, 0, b},
  };
  for (const Position& position : positions) {
    const Plane& plane = position.plane;
    Folder folder;
    Recover(folder, OneElement(11, Rectangle, plane), {[&](const Vector3& p) {
              const double x = Dot(p, plane.e1);
              return Motion{x * x / 2 * plane.Normal(), -x * plane.e2};
            }});
    for (const auto& line : Lines(folder, ".NSR")) ExpectItems(line, 11, {position.y, position.x, position.z}, 1e-10);
  }
}

TEST(Stresses, AreWrittenItemByItem) {
  // A triangle, a spring, a bar, a passive element, a type 17, a shell with shear, and the bar from its other end.
  Model model;
  for (const auto& [x, y] : Corners{{0, 0}, {2, 0}, {2, 2}, {0, 2}}) model.AddNode(x, y);
  model.AddElement(2, {2, 3, 1});
  model.AddElement(16, {1}, 2);
  for (const int type : {1, 0, 17}) model.AddElement(type, {1, 2});
  model.AddElement(6, {1, 2, 3, 4});
  model.AddElement(1, {2, 1});
  model.materials = {{100, 0, 1, 1}, {}};
  const auto stretch = [](double by) { return [=](const Vector3& p) { return Motion{{by * p.x, 0, 0}, {}}; }; };
  Folder folder;
  Recover(folder, model, {stretch(1), stretch(-0.5)}, {0, 0, std::acos(-1) / 2, 0, 0, 0});
  const auto text = [](const std::string& head, const std::string& stress) {
    return head + "," + stress + ",0,0,0,0,0,0,0,0,0,0,0,0\n";
  };
  std::string records, lines;
  for (const std::string stress : {"100", "-50"}) {
    for (const char* node : {"2", "3", "1"}) records += text("1," + std::string(node) + ",1,2", stress);
    for (const char* node : {"1", "2"}) records += text("3," + std::string(node) + ",1,1", stress);
    for (const char* node : {"1", "2", "3", "4"}) records += text("5," + std::string(node) + ",1,6", "0");
    for (const char* node : {"2", "1"}) records += text("6," + std::string(node) + ",1,1", stress);
    records += "\"END\"\n";
    const std::string end = stress + ",0,0,0,0,0,0,0,0,0,0,0," + (stress == "100" ? "100" : "50") + "\n";
    lines += "3,1,2,0," + end + end + "6,2,1,0," + end + end + "\"END\"\n";
  }
  EXPECT_EQ(folder.Read(".NSR"), records);
  EXPECT_EQ(folder.Read(".LES"), lines);
  const auto turned = Lines(folder, ".NSL", 2);
  ExpectItems(turned[3], 5, {0, -50, 0, 0}, 1e-12);  // across the bar after a quarter turn
}

TEST(Stresses, OfABarCountTheFreedomsOfTheAnalysis) {
  // A bar of length 5 along (0, 0.6, 0.8) whose end moves by (0, 3, 4).
  Model model;
  model.AddNode(0, 0, 0);
  model.AddNode(0, 3, 4);
  model.AddElement(1, {1, 2});
  model.materials = {Steel};
  for (const auto& [code, strain] : {std::pair{0, 1.0}, {1, 0.36}, {2, 0.36}, {3, 1.0}}) {
    SCOPED_TRACE(code);
    model.analysisCode = code;
    Folder folder;
    Recover(folder, model, {[](const Vector3& p) { return Motion{p, {7, 7, 7}}; }});
    ExpectItems(Lines(folder, ".NSL")[0], 5, {E * strain}, 1e-9);
    ExpectItems(Lines(folder, ".LES")[0], 5, {E * strain}, 1e-9);
  }
}

}  // namespace
}  // namespace velmor::testing
