// Stresses at the nodes of bars, membranes, plates and shells, from given displacement fields and from solved models.

#include <gtest/gtest.h>

#include <cmath>

#include "stress_runs.hpp"

namespace velmor::testing {
namespace {

constexpr double E = 2000, nu = 0.25, t = 0.4;
constexpr double Modulus = E / (1 - nu * nu), G = E / (2 * (1 + nu));
const std::array<double, 12> Steel{E, nu, 1, t};
const std::array<double, 12> SteelInPlaneStrain{E, nu, 1, t, 1};
const std::array<double, 12> SteelWithAnotherFlag{E, nu, 1, t, 2};

using Corners = std::vector<std::array<double, 2>>;
const Corners Rectangle{{-2, -1}, {2, -1}, {2, 1}, {-2, 1}};  // half sides 2 and 1 about the origin
const Corners Skew{{-2, -1}, {1, -1}, {3, 1.5}, {-1, 2}};
const Corners Parallelogram{{-2.5, -1}, {1.5, -1}, {2.5, 1}, {-1.5, 1}};
const Corners ThreeCorners{{-2, -1}, {1, -1}, {3, 1.5}};

Model OneElement(int type, const Corners& corners, const Plane& plane = Flat,
                 const std::array<double, 12>& material = Steel) {
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
        SCOPED_TRACE("type " + std::to_string(membrane.type) + ", flag " + std::to_string(material[4]));
        const bool planeStrain = membrane.knowsPlaneStrain && material[4] == 1;
        const double lambda = planeStrain ? E * nu / ((1 + nu) * (1 - 2 * nu)) : E * nu / (1 - nu * nu);
        const double sx = 2 * G * 1e-3 + lambda * -1e-3, sy = 2 * G * -2e-3 + lambda * -1e-3, sxy = G * 3e-3;
        Folder folder;
        Recover(folder, OneElement(membrane.type, membrane.corners, plane, material), {InPlane(plane, field)});
        const auto global = Lines(folder, ".NSR"), turned = Lines(folder, ".NSL");
        ASSERT_EQ(global.size(), membrane.type == 13 ? 12 : membrane.corners.size());
        for (std::size_t i = 0; i < global.size(); ++i) {
          const int at[6][2] = {{1, 1}, {2, 2}, {3, 3}, {1, 2}, {1, 3}, {2, 3}};
          for (std::size_t k = 0; k < 6; ++k) {
            const auto [r, c] = at[k];
            const double expected = sx * plane.e1(r) * plane.e1(c) + sy * plane.e2(r) * plane.e2(c) +
                                    sxy * (plane.e1(r) * plane.e2(c) + plane.e2(r) * plane.e1(c));
            EXPECT_NEAR(global[i][4 + k], expected, 1e-11) << "item " << 5 + k;
          }
          const auto& l = turned[i];  // in the element's own axes: the invariants
          EXPECT_NEAR(l[4] + l[5], sx + sy, 1e-11);
          EXPECT_NEAR(l[4] * l[5] - l[7] * l[7], sx * sy - sxy * sxy, 1e-10);
          for (const std::size_t zero : {6, 8, 9, 10, 11, 12}) EXPECT_NEAR(l[zero], 0, 1e-11);
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
    const bool incompatible = type == 5 || type == 9 || type == 10;
    Folder folder;
    Recover(folder, OneElement(type, Rectangle), {u, v});
    for (std::size_t k = 0; k < 4; ++k) {
      const double xi = Rectangle[k][0] / 2, eta = Rectangle[k][1];
      const double ex = eta / 2, ey = xi;
      const auto one = Lines(folder, ".NSR", 1)[k], two = Lines(folder, ".NSR", 2)[k];
      EXPECT_NEAR(one[4], (incompatible ? E : Modulus) * ex, 1e-10);
      EXPECT_NEAR(one[5], incompatible ? 0 : nu * Modulus * ex, 1e-10);
      EXPECT_NEAR(one[7], incompatible ? 0 : G * xi, 1e-10);
      EXPECT_NEAR(two[4], incompatible ? 0 : nu * Modulus * ey, 1e-10);
      EXPECT_NEAR(two[5], (incompatible ? E : Modulus) * ey, 1e-10);
      EXPECT_NEAR(two[7], incompatible ? 0 : G * eta / 2, 1e-10);
    }
  }
}

/// Which plates hold a deflection exactly on a rectangle.
enum class Holds { InAll, WithoutShear, InPolynomials };

/// A deflection with its slopes and the curvatures along x and y.
struct Deflection {
  Holds holds;
  std::function<double(double x, double y)> w, wx, wy, curvatureX, curvatureY;
};
#define OF_XY(formula) [](double x, double y) { return static_cast<void>(x), static_cast<void>(y), 1.0 * (formula); }
const Deflection Deflections[] = {
    {Holds::InAll, OF_XY(1 + 2 * x - y), OF_XY(2), OF_XY(-1), OF_XY(0), OF_XY(0)},
    {Holds::InAll, OF_XY(x* x / 2 - y * y + x * y), OF_XY(x + y), OF_XY(x - 2 * y), OF_XY(1), OF_XY(-2)},
    {Holds::WithoutShear, OF_XY(x* x* x / 6), OF_XY(x* x / 2), OF_XY(0), OF_XY(x), OF_XY(0)},
    {Holds::InPolynomials, OF_XY(x* x* y / 2), OF_XY(x* y), OF_XY(x* x / 2), OF_XY(y), OF_XY(0)},
    {Holds::InPolynomials, OF_XY(x* y* y / 2), OF_XY(y* y / 2), OF_XY(x* y), OF_XY(0), OF_XY(x)},
    {Holds::InPolynomials, OF_XY(x* x* x* y / 6), OF_XY(x* x* y / 2), OF_XY(x* x* x / 6), OF_XY(x* y), OF_XY(0)},
    {Holds::InPolynomials, OF_XY(x* y* y* y / 6), OF_XY(y* y* y / 6), OF_XY(x* y* y / 2), OF_XY(0), OF_XY(x* y)},
};
#undef OF_XY

TEST(NodalStress, OfABentPlateIsThatOfItsCurvature) {
  struct Plate {
    int type;
    const Corners& corners;
    double secondRotation;  // the last freedom of a node, as a part of dw/dx
  };
  for (const auto& [type, corners, secondRotation] :
       {Plate{8, Rectangle, 1}, Plate{8, Parallelogram, 1}, Plate{9, Rectangle, -1}, Plate{10, Rectangle, -1},
        Plate{11, Rectangle, -1}}) {
    for (const Deflection& deflection : Deflections) {
      if (deflection.holds != Holds::InAll && &corners == &Parallelogram) continue;
      if (deflection.holds == Holds::InPolynomials && (type == 9 || type == 10)) continue;
      SCOPED_TRACE("type " + std::to_string(type));
      const double last = secondRotation;
      const MotionField field = [&](const Vector3& p) {
        const double x = Dot(p, Turned.e1), y = Dot(p, Turned.e2);
        return Motion{deflection.w(x, y) * Turned.Normal(),
                      deflection.wy(x, y) * Turned.e1 + last * deflection.wx(x, y) * Turned.e2};
      };
      Folder folder;
      Recover(folder, OneElement(type, corners, Turned), {field});
      const auto lines = Lines(folder, ".NSL");
      ASSERT_EQ(lines.size(), 4);
      // Shear flexibility takes its part of a moment that changes along x: 1 / (1 + 12/10 E t^2 / (4 G' a^2)), with
      // G' = (1 - nu^2) G, from the complementary energy of that moment.
      const double a = 2, part = type == 10 && deflection.holds == Holds::WithoutShear
                                     ? 1 / (1 + 0.6 * t * t / (a * a * (1 - nu)))
                                     : 1;
      for (std::size_t k = 0; k < 4; ++k) {
        const auto [x, y] = corners[k];
        const double cx = deflection.curvatureX(x, y), cy = deflection.curvatureY(x, y);
        EXPECT_NEAR(lines[k][11], -part * Modulus * t / 2 * (cx + nu * cy), 1e-9);
        EXPECT_NEAR(lines[k][10], -part * Modulus * t / 2 * (cy + nu * cx), 1e-9);
        for (const std::size_t zero : {4, 5, 6, 7, 8, 9, 12}) EXPECT_NEAR(lines[k][zero], 0, 1e-10);
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
      for (std::size_t item = 4; item < 10; ++item) EXPECT_NEAR(global[k][item], global[other][item], 1e-9);
      EXPECT_NEAR(local[k][10], local[other][11], 1e-9);
      EXPECT_NEAR(local[k][11], local[other][10], 1e-9);
      EXPECT_EQ(type >= 9 && type <= 11, std::abs(local[k][11]) > 1) << "a plate bends";
    }
  }
}

TEST(NodalStress, OfAShellWithShearIsZero) {
  Folder folder;
  Recover(folder, OneElement(6, Rectangle), {[](const Vector3& p) { return Motion{p, p}; }});
  const auto lines = Lines(folder, ".NSR");
  ASSERT_EQ(lines.size(), 4);
  for (const auto& line : lines) {
    for (std::size_t k = 4; k < 17; ++k) EXPECT_EQ(line[k], 0);
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
    const auto along = [&](int p, int q) {
      return r[p][0] * r[q][0] * sx + r[p][1] * r[q][1] * sy + (r[p][0] * r[q][1] + r[p][1] * r[q][0]) * sxy;
    };
    EXPECT_NEAR(lines[i][4], along(0, 0), 1e-10);
    EXPECT_NEAR(lines[i][5], along(1, 1), 1e-10);
    EXPECT_NEAR(lines[i][7], along(0, 1), 1e-10);
    EXPECT_NEAR(lines[i][11], r[0][0] * r[0][0] * bx + r[0][1] * r[0][1] * by, 1e-9);
    EXPECT_NEAR(lines[i][10], r[1][0] * r[1][0] * bx + r[1][1] * r[1][1] * by, 1e-9);
    for (std::size_t k = 4; k < 13; ++k) EXPECT_EQ(global[i][k], global[i % 4][k]) << "global axes do not turn";
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
    for (const auto& line : Lines(folder, ".NSR")) {
      EXPECT_NEAR(line[11], position.x, 1e-10);
      EXPECT_NEAR(line[10], position.y, 1e-10);
      EXPECT_NEAR(line[12], position.z, 1e-10);
    }
  }
}

TEST(NodalStress, WritesItsFilesItemByItem) {
  // A beam, a bar, a spring, a passive element, a type 17 and a bar on two nodes along x, in two load cases.
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  for (const int type : {7, 1, 16, 0, 17, 1}) {
    model.AddElement(type, type == 16 ? std::vector{2} : std::vector{1, 2}, type == 16 ? 2 : 1);
  }
  model.materials = {{100, 0, 1, 1, 0, 0, 1, 0, 1, 1, 1, 1}, {}};
  const auto stretch = [](double by) { return [=](const Vector3& p) { return Motion{{by * p.x, 0, 0}, {}}; }; };
  Folder folder;
  Recover(folder, model, {stretch(1), stretch(-0.5)}, {0.3, std::acos(-1) / 2, 0, 0, 0});
  const auto block = [](const std::string& axial) {
    const std::string tail = ",1,1," + axial + ",0,0,0,0,0,0,0,0,0,0,0,0\n";
    return "2,1" + tail + "2,2" + tail + "5,1" + tail + "5,2" + tail + "\"END\"\n";
  };
  EXPECT_EQ(folder.Read(".NSR"), block("100") + block("-50"));
  const auto turned = Lines(folder, ".NSL", 2);
  ASSERT_EQ(turned.size(), 4);
  EXPECT_NEAR(turned[0][5], -50, 1e-12) << "across the bar after a quarter turn";
  EXPECT_NEAR(turned[0][4], 0, 1e-12);
  EXPECT_NEAR(turned[0][7], 0, 1e-12);
  EXPECT_EQ(turned[2][4], -50);
}

TEST(NodalStress, OfABarCountsTheFreedomsOfTheAnalysis) {
  struct Analysis {
    int code;
    double elongation;  // of a bar along (0, 0.6, 0.8) that is moved by (0, 3, 4)
  };
  for (const auto& [code, elongation] : {Analysis{0, 5}, Analysis{1, 1.8}, Analysis{2, 1.8}, Analysis{3, 5}}) {
    SCOPED_TRACE(code);
    Model model;
    model.analysisCode = code;
    model.AddNode(0, 0, 0);
    model.AddNode(0, 3, 4);
    model.AddElement(1, {1, 2});
    model.materials = {Steel};
    Folder folder;
    Recover(folder, model, {[](const Vector3& p) { return Motion{p, {7, 7, 7}}; }});
    EXPECT_NEAR(Lines(folder, ".NSL")[0][4], E * elongation / 5, 1e-9);
    EXPECT_NEAR(Lines(folder, ".LES")[0][4], E * elongation / 5, 1e-9);
  }
}

TEST(NodalStress, PassesThePatchTestOfASolvedMesh) {
  // MacNeal, Harder, A proposed standard set of problems, 1985: stresses 1333.33, 1333.33, 400 everywhere.
  for (const int type : {4, 13, 2}) {
    SCOPED_TRACE(type);
    Model model;
    model.analysisCode = 1;
    for (const auto& [x, y] :
         Corners{{0, 0}, {0.24, 0}, {0.24, 0.12}, {0, 0.12}, {0.04, 0.02}, {0.18, 0.03}, {0.16, 0.08}, {0.08, 0.08}}) {
      model.AddNode(x, y);
    }
    for (const auto& q : {std::vector{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}, {5, 6, 7, 8}}) {
      if (type != 2) model.AddElement(type, q);
      if (type == 2) model.AddElement(type, {q[0], q[1], q[2]});
      if (type == 2) model.AddElement(type, {q[0], q[2], q[3]});
    }
    model.materials = {{1e6, 0.25, 1, 0.001}};
    for (int n = 1; n <= 4; ++n) {
      const auto& [x, y, z] = model.nodes[static_cast<std::size_t>(n - 1)];
      model.supports.push_back({n, 1, (x + y / 2) / 1000});
      model.supports.push_back({n, 2, (y + x / 2) / 1000});
    }
    model.cases.resize(1);
    model.flags.FEStressFlag = 1;
    Folder folder;
    WriteAngles(folder, std::vector<double>(20));
    folder.Solve(model);
    for (const char* extension : {".NSR", ".NSA", ".RSA"}) {
      const auto lines = Lines(folder, extension);
      EXPECT_GE(lines.size(), 8);
      for (const auto& line : lines) {
        EXPECT_NEAR(line[4], 4000.0 / 3, 1e-6);
        EXPECT_NEAR(line[5], 4000.0 / 3, 1e-6);
        EXPECT_NEAR(line[7], 400, 1e-6);
      }
    }
  }
}

}  // namespace
}  // namespace velmor::testing
