// Kernels of the surface elements against mechanics: rigid motions and states of known energy.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "elements/four_node.hpp"
#include "elements/hybrid_plate.hpp"
#include "elements/membrane_quad.hpp"
#include "elements/polynomial_plate.hpp"
#include "elements/shear_plate.hpp"
#include "elements/table_plate.hpp"
#include "elements/triangle.hpp"
#include "patch.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

const Material Steel{.E = 210e3, .nu = 0.3, .A = 12};
const Material Strained{.E = 210e3, .nu = 0.3, .A = 12, .planeStrain = 1};

const MappingTerms Rectangle{300, 0, 0, 0, 180, 0};
const MappingTerms Parallelogram{300, 40, 0, -25, 180, 0};
const MappingTerms Crooked{300, 40, 30, -25, 180, -20};

double Area(const MappingTerms& map) { return 4 * (map.a1 * map.b2 - map.a2 * map.b1); }

/// Point xi, eta of an element in its own axes.
std::array<double, 2> PointOf(const MappingTerms& map, double xi, double eta) {
  const auto& [a1, a2, a3, b1, b2, b3] = map;
  return {a1 * xi + a2 * eta + a3 * xi * eta, b1 * xi + b2 * eta + b3 * xi * eta};
}

/// Displacements of the nodes of an element, node after node, from those of a point.
template <typename Field>
std::vector<double> OnNodes(const MappingTerms& map, Field field) {
  std::vector<double> q;
  for (int i = 1; i <= 4; ++i) {
    const auto [x, y] = PointOf(map, CornerS[i], CornerT[i]);
    for (const double value : field(x, y)) q.push_back(value);
  }
  return q;
}

/// The answer of an element to displacements of its nodes.
struct Answer {
  double largestForce = 0, energy = 0;
};
Answer AnswerOf(const Table<12, 12>& K, const std::vector<double>& q) {  // K by its upper triangle
  Answer answer;
  const int n = static_cast<int>(q.size());
  for (int i = 1; i <= n; ++i) {
    double force = 0;
    for (int j = 1; j <= n; ++j) force += K(std::min(i, j), std::max(i, j)) * q[static_cast<std::size_t>(j - 1)];
    answer.largestForce = std::max(answer.largestForce, std::abs(force));
    answer.energy += q[static_cast<std::size_t>(i - 1)] * force / 2;
  }
  return answer;
}

const double E = Steel.E, nu = Steel.nu, t = Steel.A, G = E / 2 / (1 + nu), a = Rectangle.a1, b = Rectangle.b2;

// ---- membranes

Table<12, 12> TriangleOf(const Material& m, const MappingTerms& map) {  // on the nodes 1, 2, 3; node 4 has no stiffness
  const auto q = OnNodes(map, [](double x, double y) { return std::array{x, y}; });
  const double x12 = q[0] - q[2], x13 = q[0] - q[4], x23 = q[2] - q[4];
  const double y12 = q[1] - q[3], y13 = q[1] - q[5], y23 = q[3] - q[5];
  const TriangleRecord record{2, {1, 2, 3}, x12, x13, x23, y12, y13, y23, {}, {}, Area(map) / 2, 1, {}};
  return TriangleStiffness(m, TriangleSlopesOf(record), record.area);
}

TEST(Membranes, NeedNoForceForARigidMotionAndStoreTheEnergyOfStrains) {
  const double lambda = E * nu / (1 - nu * nu), strained = E * nu / (1 + nu) / (1 - 2 * nu);
  const struct {
    const char* name;
    Table<12, 12> K;
    const MappingTerms& map;
    double lambda;              // Lame's first constant
    double bendingModulus = 0;  // of a rectangle
    double part = 1;            // of the area
  } membranes[] = {
      {"triangle", TriangleOf(Steel, Parallelogram), Parallelogram, lambda, 0, 0.5},
      {"type 4", IsoparametricMembraneStiffness(Steel, Crooked), Crooked, lambda},
      {"type 4 in plane strain", IsoparametricMembraneStiffness(Strained, Crooked), Crooked, strained},
      {"type 4, rectangle", IsoparametricMembraneStiffness(Steel, Rectangle), Rectangle, lambda, lambda / nu + G},
      {"type 5", IncompatibleMembraneStiffness(Steel, a, b), Rectangle, lambda, E},
      {"type 5 in plane strain", IncompatibleMembraneStiffness(Strained, a, b), Rectangle, strained, strained / nu},
      {"type 12, always in plane stress", RectangleMembraneStiffness(Strained, a, b), Rectangle, lambda,
       lambda / nu + G},
  };
  const auto motion = [](double x, double y) { return std::array{1 - 2 * y, 3 + 2 * x}; };
  const auto strain = [](double x, double y) { return std::array{3 + x + 2 * y, 0.5 * x - 0.7 * y - 1}; };
  const std::vector<double> bending{1, 1, -1, -1, 1, 1, -1, -1};  // u = v = xi eta
  for (const auto& membrane : membranes) {
    SCOPED_TRACE(membrane.name);
    const double volume = t * Area(membrane.map) * membrane.part;
    EXPECT_LT(AnswerOf(membrane.K, OnNodes(membrane.map, motion)).largestForce, 1e-12 * E * t * 600);
    const double density = membrane.lambda * 0.3 * 0.3 / 2 + G * (1 + 0.7 * 0.7 + 2.5 * 2.5 / 2);
    EXPECT_NEAR(AnswerOf(membrane.K, OnNodes(membrane.map, strain)).energy / (density * volume), 1, 1e-9);
    if (membrane.bendingModulus == 0) continue;
    const double energy = membrane.bendingModulus * volume / 6 * (1 / (a * a) + 1 / (b * b));
    EXPECT_NEAR(AnswerOf(membrane.K, bending).energy / energy, 1, 1e-9);
  }
}

// ---- plates

Table<12, 12> Hybrid(HybridShear shear, const Material& m = Steel) {
  return HybridPlateStiffness(HybridPlateOf(m, a, b, shear));
}

double Rigidity(const Material& m) { return m.E * m.A * m.A * m.A / 12 / (1 - m.nu * m.nu); }

/// Displacements of the nodes for the deflection w: w, dw/dy and `sign` times dw/dx.
std::vector<double> Bent(const MappingTerms& map, const Polynomial& w, double sign) {
  return OnNodes(map, [&](double x, double y) {
    return std::array{w.At(x, y), w.At(x, y, 0, 1), sign * w.At(x, y, 1, 0)};
  });
}

/// Gauss points and their weights in the mean.
using Rule = std::vector<std::pair<double, double>>;
const Rule TwoPoints{{-std::sqrt(1.0 / 3), 0.5}, {std::sqrt(1.0 / 3), 0.5}};
const Rule ThreePoints{{-std::sqrt(0.6), 5.0 / 18}, {0, 4.0 / 9}, {std::sqrt(0.6), 5.0 / 18}};

/// Energy of the curvatures of w in an element with straight sides.
double BendingEnergy(const MappingTerms& map, const Polynomial& w, const Rule& rule) {
  double mean = 0;
  for (const auto& [xi, weightXi] : rule) {
    for (const auto& [eta, weightEta] : rule) {
      const auto [x, y] = PointOf(map, xi, eta);
      const double kx = w.At(x, y, 2, 0), ky = w.At(x, y, 0, 2), kxy = w.At(x, y, 1, 1);
      mean += weightXi * weightEta * (kx * kx + ky * ky + 2 * nu * kx * ky + 2 * (1 - nu) * kxy * kxy);
    }
  }
  return Rigidity(Steel) / 2 * Area(map) * mean;
}

TEST(Plates, NeedNoForceForARigidMotionAndStoreTheEnergyOfBending) {
  PlateTable delivered;
  LoadPlateTable(std::string(VELMOR_DATA_FOLDER) + "/", delivered);
  const Polynomial rigid{{{1, 0, 0}, {2, 1, 0}, {3, 0, 1}}};
  const Polynomial states[] = {{{{2, 0, 1}, {0.5, 2, 0}, {-1.5, 0, 2}}},
                               {{{1, 0, 0}, {0.5, 2, 0}, {2, 1, 1}, {1.5, 0, 2}}},
                               {{{25, 2, 0}, {90, 1, 1}, {-35, 0, 2}, {0.2, 3, 0}, {0.3, 0, 3}}},
                               {{{9e4, 1, 1}, {1, 3, 1}, {2, 1, 3}, {200, 2, 1}, {300, 1, 2}}}};
  const struct {
    const char* name;
    Table<12, 12> stiffness;
    MappingTerms map;
    double thirdFreedom;  // sign of dw/dx in it
    int exact = 3;        // in the first so many of the states
    const Rule& rule = TwoPoints;
  } plates[] = {
      {"type 6", ShearPlateStiffness(Steel, a, b), Rectangle, -1, 1},
      {"type 8, which integrates by two points", PolynomialPlateStiffness(Steel, Rectangle), Rectangle, 1, 4},
      {"type 8, parallelogram", PolynomialPlateStiffness(Steel, Parallelogram), Parallelogram, 1},
      {"type 9", Hybrid(HybridShear::None), Rectangle, -1},
      {"type 10", Hybrid(HybridShear::Included), Rectangle, -1, 2},
      {"type 11", TablePlateStiffness(Steel, a, b, delivered.P), Rectangle, -1, 4, ThreePoints},
  };
  for (const auto& [name, K, map, thirdFreedom, exact, rule] : plates) {
    SCOPED_TRACE(name);
    EXPECT_LT(AnswerOf(K, Bent(map, rigid, thirdFreedom)).largestForce, 1e-11 * K(2, 2));
    for (int state = 0; state < exact; ++state) {
      const double energy = AnswerOf(K, Bent(map, states[state], thirdFreedom)).energy;
      EXPECT_NEAR(energy / BendingEnergy(map, states[state], rule), 1, 1e-8) << state;
    }
  }
}

TEST(Plates, OfType8HoldTheTiltOfACrookedElement) {  // w = x + 2 y in its terms
  const auto q = Bent(Crooked, {{{1, 1, 0}, {2, 0, 1}}}, 1);
  const Table<12, 12> T = PolynomialCoefficients(Crooked);
  const double terms[] = {0, 250, 400, 0, -10, 0, 0, 0, 0, 0, 0, 0};
  for (int k = 1; k <= 12; ++k) {
    double term = 0;
    for (int j = 1; j <= 12; ++j) term += T(k, j) * q[static_cast<std::size_t>(j - 1)];
    EXPECT_NEAR(term, terms[k - 1], 1e-10) << k;
  }
}

TEST(Plates, OfHybridTypeTakeShearInSeriesWithBending) {
  // Under the bending moment of w = x^3 / 6 the flexibilities a^2 / (3 D) and 6 / (5 G t) of the work (a^2 / 3) add up;
  // with the thickness the second one goes and type 10 is type 9. Along y alike.
  const Material thin{.E = E, .nu = nu, .A = 0.01}, thick{.E = E, .nu = nu, .A = 400};
  const std::pair<double, Polynomial> directions[] = {{a, {{{1.0 / 6, 3, 0}}}}, {b, {{{1.0 / 6, 0, 3}}}}};
  for (const auto& [side, w] : directions) {
    for (const Material& m : {thin, Steel, thick}) {
      const double third = side * side / 3, shear = 6 / (5 * G * m.A);
      const double energy = Area(Rectangle) / 2 * third * third / (third / Rigidity(m) + shear);
      EXPECT_NEAR(AnswerOf(Hybrid(HybridShear::Included, m), Bent(Rectangle, w, -1)).energy / energy, 1, 1e-11);
    }
  }
}

TEST(Plates, HaveTheTableThatTheToolMakesAnew) {
  Folder folder;
  const std::string made = folder.File(".ELM");
  EXPECT_EQ(std::system((VELMOR_PLATE_TABLE " > " + made).c_str()), 0);
  EXPECT_EQ(ReadText(made), ReadText(std::string(VELMOR_DATA_FOLDER) + "/PLAT.ELM"));
}

TEST(Plates, WithShearStoreTheEnergyOfTheirModes) {
  // w = xi + eta + 2 xi eta, turns of 3 xi eta and 5 xi eta about x and y, whose energies add up: tilts are slides, the
  // saddle is stabilised, the curvatures of turns run linearly.
  const MappingTerms unit{1, 0, 0, 0, 1, 0};
  const auto q = OnNodes(unit, [](double x, double y) { return std::array{x + y + 2 * x * y, 3 * x * y, 5 * x * y}; });
  const double aa = 1 / (a * a), bb = 1 / (b * b);
  const double slides = G * t * (aa + bb) * (1 + 4 * 1.69 / 3);
  const double turns = Rigidity(Steel) / 3 * (9 * (bb + 0.35 * aa) + 25 * (aa + 0.35 * bb));
  const double energy = Area(Rectangle) / 2 * (slides + turns);
  EXPECT_NEAR(AnswerOf(ShearPlateStiffness(Steel, a, b), q).energy / energy, 1, 1e-12);
}

}  // namespace
}  // namespace velmor::testing
