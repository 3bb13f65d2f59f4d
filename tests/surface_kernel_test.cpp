// Kernels of the surface elements against mechanics: rigid motions, states of known energy, independent integration.

#include <gtest/gtest.h>

#include <cstdio>

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
const Material Cork{.E = 30, .nu = 0, .A = 400};

const MappingTerms Rectangle{300, 0, 0, 0, 180, 0};
const MappingTerms Parallelogram{300, 40, 0, -25, 180, 0};
const MappingTerms Crooked{300, 40, 30, -25, 180, -20};

const PlateTable& Delivered() {
  static const PlateTable table = [] {
    PlateTable t;
    LoadPlateTable(std::string(VELMOR_DATA_FOLDER) + "/", t);
    return t;
  }();
  return table;
}

// ---- membranes

double Area(const MappingTerms& map) {
  return Integral(map, [](double, double) { return 1; });
}

Table<12, 12> TriangleOf(const Material& m, const MappingTerms& map) {  // on the nodes 1, 2, 3
  const auto p = NodesOf(map);
  TriangleRecord record;
  record.x12 = p[0].x - p[1].x, record.x13 = p[0].x - p[2].x, record.x23 = p[1].x - p[2].x;
  record.y12 = p[0].y - p[1].y, record.y13 = p[0].y - p[2].y, record.y23 = p[1].y - p[2].y;
  return TriangleStiffness(m, TriangleSlopesOf(record), Area(map) / 2);
}
Table<12, 12> Incompatible(const Material& m, const MappingTerms& map) {
  return IncompatibleMembraneStiffness(m, map.a1, map.b2);
}
Table<12, 12> Bilinear(const Material& m, const MappingTerms& map) {
  return RectangleMembraneStiffness(m, map.a1, map.b2);
}

struct Membrane {
  const char* name;
  Table<12, 12> (*stiffness)(const Material&, const MappingTerms&);
  MappingTerms map;
  Material material = Steel;
  bool planeStrain = false;
  bool triangle = false;
};
const Membrane Membranes[] = {
    {"triangle", TriangleOf, Parallelogram, Steel, false, true},
    {"type 4", IsoparametricMembraneStiffness, Crooked},
    {"type 4 in plane strain", IsoparametricMembraneStiffness, Crooked, Strained, true},
    {"type 4 without Poisson", IsoparametricMembraneStiffness, Parallelogram, Cork},
    {"type 5", Incompatible, Rectangle},
    {"type 5 in plane strain", Incompatible, Rectangle, Strained, true},
    {"type 12", Bilinear, Rectangle},
    {"type 12 does not read the flag of plane strain", Bilinear, Rectangle, Strained, false},
};

TEST(Membranes, NeedNoForceForARigidMotionAndStoreTheEnergyOfAConstantStrain) {
  for (const Membrane& e : Membranes) {
    SCOPED_TRACE(e.name);
    const Table<12, 12> K = e.stiffness(e.material, e.map);
    auto nodes = NodesOf(e.map);
    if (e.triangle) nodes.pop_back();
    const double area = Area(e.map) / (e.triangle ? 2 : 1);
    const auto& [E, nu, t] = std::tie(e.material.E, e.material.nu, e.material.A);
    for (const PlaneField& motion : PlaneMotions) {
      EXPECT_LT(LargestForce(K, motion.On(nodes)), 1e-12 * E * t * 300) << motion.name;
    }
    // Lame's constants; plane stress lowers the first one.
    const double G = E / 2 / (1 + nu);
    const double lambda = e.planeStrain ? E * nu / (1 + nu) / (1 - 2 * nu) : E * nu / (1 - nu * nu);
    for (const PlaneField& f : PlaneStrains) {
      const double trace = f.ux + f.vy, shear = f.uy + f.vx;
      const double density = lambda * trace * trace / 2 + G * (f.ux * f.ux + f.vy * f.vy + shear * shear / 2);
      EXPECT_NEAR(StrainEnergy(K, f.On(nodes)) / (density * t * area), 1, 1e-9) << f.name;
    }
  }
}

TEST(Membranes, OfARectangleDifferInBendingAlone) {
  const double a = Rectangle.a1, b = Rectangle.b2, E = Steel.E, t = Steel.A, G = E / 2 / 1.3;
  const std::vector<double> bending{1, 0, -1, 0, 1, 0, -1, 0};  // u = xi eta
  const double bar = E * t * 4 * a * b / (6 * a * a);
  EXPECT_NEAR(StrainEnergy(Incompatible(Steel, Rectangle), bending) / bar, 1, 1e-12);
  EXPECT_NEAR(StrainEnergy(Incompatible(Strained, Rectangle), bending) / bar, 1 / (1.3 * 0.4), 1e-12);
  const double parasitic = G * t * 4 * a * b / (6 * b * b);
  EXPECT_NEAR(StrainEnergy(Bilinear(Steel, Rectangle), bending) / (bar / (1 - 0.09) + parasitic), 1, 1e-12);
  const auto exact = Bilinear(Steel, Rectangle), gauss = IsoparametricMembraneStiffness(Steel, Rectangle);
  for (int i = 1; i <= 8; ++i) {
    for (int j = i; j <= 8; ++j) EXPECT_NEAR(exact(i, j), gauss(i, j), 1e-9 * exact(1, 1)) << i << "," << j;
  }
}

// ---- plates

struct Plate {
  const char* name;
  std::function<Table<12, 12>(const Material&)> stiffness;
  MappingTerms map;
  double thirdFreedom;  // sign of dw/dx in it
  bool twist = true;    // exact in w = x y
  bool cubic = true;    // and in w = x^3 / 6
};
Table<12, 12> Hybrid(const Material& m, HybridShear shear) {
  return HybridPlateStiffness(HybridPlateOf(m, Rectangle.a1, Rectangle.b2, shear));
}
Table<12, 12> OfTable(const Material& m) { return TablePlateStiffness(m, Rectangle.a1, Rectangle.b2, Delivered().P); }
Table<12, 12> WithShear(const Material& m) { return ShearPlateStiffness(m, Rectangle.a1, Rectangle.b2); }
const Plate Plates[] = {
    {"type 6", WithShear, Rectangle, -1, false, false},
    {"type 8", [](const Material& m) { return PolynomialPlateStiffness(m, Rectangle); }, Rectangle, 1},
    {"type 8, parallelogram", [](const Material& m) { return PolynomialPlateStiffness(m, Parallelogram); },
     Parallelogram, 1},
    {"type 9", [](const Material& m) { return Hybrid(m, HybridShear::None); }, Rectangle, -1},
    {"type 10", [](const Material& m) { return Hybrid(m, HybridShear::Included); }, Rectangle, -1, true, false},
    {"type 11", OfTable, Rectangle, -1},
};

double Rigidity(const Material& m) { return m.E * m.A * m.A * m.A / 12 / (1 - m.nu * m.nu); }

TEST(Plates, NeedNoForceForARigidMotion) {
  for (const Plate& e : Plates) {
    const Table<12, 12> K = e.stiffness(Steel);
    for (const Deflection& motion : PlateMotions) {
      EXPECT_LT(LargestForce(K, motion.On(NodesOf(e.map), e.thirdFreedom)), 1e-11 * K(2, 2)) << e.name << motion.name;
    }
    const double bent = LargestForce(K, Deflection{"", 0, 1, 0}.On(NodesOf(e.map), -e.thirdFreedom));
    EXPECT_GT(bent, 1e-2 * K(2, 2)) << e.name << ": the third freedom has a sign";
  }
}

TEST(Plates, OfType8SeeACurvatureInTheTiltOfACrookedElement) {
  const Table<12, 12> K = PolynomialPlateStiffness(Steel, Crooked);
  const auto force = [&](const Deflection& motion) {
    return LargestForce(K, motion.On(NodesOf(Crooked), 1)) / K(2, 2);
  };
  EXPECT_LT(force(PlateMotions[0]), 1e-11);
  for (const Deflection& tilt : {PlateMotions[1], PlateMotions[2]}) {
    EXPECT_GT(force(tilt), 1e-3);
    EXPECT_LT(force(tilt), 0.5);
  }
}

TEST(Plates, StoreTheEnergyOfBendingStates) {
  const Deflection constant[] = {{"x^2", 0, 0, 0, 1}, {"y^2", 0, 0, 0, 0, 0, 1}, {"both", 1, 0, 2, 1, 0, -3}};
  const Deflection twisted[] = {{"xy", 0, 0, 0, 0, 1}, {"all", 1, 2, 3, 1, 2, 3}};
  const Deflection cubic[] = {
      {"x^3", 0, 0, 0, 0, 0, 0, 1}, {"y^3", 0, 0, 0, 0, 0, 0, 0, 1}, {"all", 0, 0, 0, 50, 90, -70, 1, 2}};
  for (const Plate& e : Plates) {
    SCOPED_TRACE(e.name);
    for (const Material& m : {Steel, Cork}) {
      const Table<12, 12> K = e.stiffness(m);
      const auto check = [&](const auto& fields) {
        for (const Deflection& f : fields) {
          const double energy = StrainEnergy(K, f.On(NodesOf(e.map), e.thirdFreedom));
          EXPECT_NEAR(energy / f.Energy(e.map, Rigidity(m), m.nu), 1, 1e-8) << f.name;
        }
      };
      check(constant);
      if (e.twist) check(twisted);
      if (e.cubic) check(cubic);
    }
  }
}

TEST(Plates, OfHybridTypeTakeShearInSeriesWithBending) {
  // Under the bending moment of w = x^3 / 6 the flexibilities a^2 / (3 D) and 6 / (5 G t) of the work (a^2 / 3) add up;
  // with the thickness the second one goes and type 10 is type 9.
  const double third = Rectangle.a1 * Rectangle.a1 / 3, area = 4 * Rectangle.a1 * Rectangle.b2;
  const std::vector<double> q = Deflection{"", 0, 0, 0, 0, 0, 0, 1}.On(NodesOf(Rectangle), -1);
  for (const double t : {0.01, 4.0, 400.0}) {
    const Material m{.E = 210e3, .nu = 0.3, .A = t};
    const double shear = 6 / (5 * ShearModulus(m) * t);
    const double energy = area / 2 * third * third / (third / Rigidity(m) + shear);
    EXPECT_NEAR(StrainEnergy(Hybrid(m, HybridShear::Included), q) / energy, 1, 1e-11);
  }
}

TEST(Plates, HaveTheTableThatTheToolMakesAnew) {
  std::string made;
  FILE* tool = ::popen(VELMOR_PLATE_TABLE, "r");
  ASSERT_NE(tool, nullptr);
  for (int c = std::fgetc(tool); c != EOF; c = std::fgetc(tool)) made += static_cast<char>(c);
  EXPECT_EQ(::pclose(tool), 0);
  EXPECT_EQ(made, ReadText(std::string(VELMOR_DATA_FOLDER) + "/PLAT.ELM"));
  for (int column = 1; column <= 12; ++column) {
    const int node = (column + 2) / 3, freedom = column - 3 * (node - 1);
    const Table<12, 3> shapes = UnitPlateShapes(CornerS[node], CornerT[node]);
    for (int k = 1; k <= 12; ++k) {
      EXPECT_EQ(Delivered().P(k, column), (freedom == 3 ? -1 : 1) * shapes(k, freedom)) << k << "," << column;
    }
  }
}

TEST(Plates, WithShearStoreTheEnergyOfTheirModes) {
  const double a = Rectangle.a1, b = Rectangle.b2, D = Rigidity(Steel), Gt = Steel.E / 2.6 * Steel.A;
  const auto stretch = [&](double k) { return D * k * k / 3; };       // mean energies of a bending curvature that runs
  const auto twist = [&](double k) { return 0.35 * D * k * k / 3; };  // linearly to k, of a slope of one rotation
  const auto slide = [&](double gamma) { return Gt * gamma * gamma; };
  const struct {
    const char* name;
    int freedom;                // 1: w, 2: rotation about x, 3: about y
    double one, xi, eta, both;  // coefficients of 1, xi, eta, xi eta in it
    double energy;              // twice the mean
  } modes[] = {
      {"w = xi", 1, 0, 1, 0, 0, slide(1 / a)},
      {"w = eta", 1, 0, 0, 1, 0, slide(1 / b)},
      {"w = xi eta, stabilised", 1, 0, 0, 0, 1, 1.69 / 3 * (slide(1 / a) + slide(1 / b))},
      {"turn about x", 2, 1, 0, 0, 0, slide(1)},
      {"turn about y", 3, 1, 0, 0, 0, slide(1)},
      {"turn about x = xi eta", 2, 0, 0, 0, 1, stretch(1 / b) + twist(1 / a)},
      {"turn about y = xi eta", 3, 0, 0, 0, 1, stretch(1 / a) + twist(1 / b)},
  };
  for (const auto& mode : modes) {
    std::vector<double> q(12);
    for (int i = 1; i <= 4; ++i) {
      const int s = CornerS[i], t = CornerT[i];
      q[static_cast<std::size_t>(3 * i - 4 + mode.freedom)] = mode.one + mode.xi * s + mode.eta * t + mode.both * s * t;
    }
    EXPECT_NEAR(StrainEnergy(WithShear(Steel), q) / (4 * a * b * mode.energy / 2), 1, 1e-12) << mode.name;
  }
}

}  // namespace
}  // namespace velmor::testing
