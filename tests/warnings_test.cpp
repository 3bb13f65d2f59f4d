// Warnings about what a model asks of the elements and the solver: each with a model that trips it and one beside it
// that does not.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "solve/supports.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

using Corners = std::array<std::array<double, 3>, 4>;

constexpr Corners Rectangle{{{0, 0, 0}, {40, 0, 0}, {40, 30, 0}, {0, 30, 0}}};
constexpr Corners Parallelogram{{{0, 0, 0}, {40, 0, 0}, {50, 30, 0}, {10, 30, 0}}};
constexpr Corners Trapezoid{{{0, 0, 0}, {40, 0, 0}, {35, 30, 0}, {5, 30, 0}}};
constexpr Corners Twisted{{{0, 0, 0}, {40, 0, 0}, {40, 30, 2}, {0, 30, 0}}};
constexpr Corners Reentrant{{{0, 0, 0}, {40, 0, 0}, {18, 18, 0}, {0, 40, 0}}};

/// Steel in N and mm, 20 thick: as thick as an element is long, nearly.
constexpr models::Material Steel{210000, 0.3, 0, 20, 0, 0, 100, 0, 100, 0, 100};

bool Bends(int type) { return type == 6 || (8 <= type && type <= 11); }

/// A four-node element held at its first two nodes and loaded at the third, turned about z by 30 degrees, so that its
/// axes are not the global ones.
Model Quad(int type, const Corners& corners) {
  Model model;
  model.analysisCode = Bends(type) ? 3 : 1;
  const double c = std::cos(0.5236), s = std::sin(0.5236);
  for (const auto& p : corners) model.AddNode(c * p[0] - s * p[1], s * p[0] + c * p[1], p[2]);
  model.AddElement(type, {1, 2, 3, 4});
  model.materials = {Steel};
  for (int node : {1, 2}) model.Fix(node, DofPerNodeOf(model.analysisCode));
  model.cases = {{{{3, 1, 10}}, {}}};
  return model;
}

template <int type>
Model NoRectangle(bool trips) {
  return Quad(type, trips ? (type % 2 == 0 ? Parallelogram : Trapezoid) : Rectangle);
}

/// Two elements of type 8 side by side; the second begins at another corner.
Model TwoPolynomialPlates(bool trips) {
  Model model = Quad(8, Rectangle);
  const auto at = [&](int node) { return model.nodes[static_cast<std::size_t>(node - 1)]; };
  for (auto [from, to] : {std::pair{1, 2}, std::pair{4, 3}}) {
    model.AddNode(2 * at(to)[0] - at(from)[0], 2 * at(to)[1] - at(from)[1]);
  }
  model.AddElement(8, trips ? std::vector{5, 6, 3, 2} : std::vector{6, 3, 2, 5});
  return model;
}

/// A beam from a corner of a plate of type 8, or from a node of its own.
Model PlateAndBeam(bool trips) {
  Model model = Quad(8, Parallelogram);
  const int start = trips ? 3 : model.AddNode(0, 0, 100);
  const int end = model.AddNode(0, 0, 200);
  model.AddElement(7, {start, end});
  if (!trips) model.Fix(start, 6);
  return model;
}

/// `count` collinear line elements on a line along x, all nodes held across it, the first held whole.
Model Line(int type, int code, int count = 1) {
  Model model;
  model.analysisCode = code;
  model.materials = {Steel};
  model.AddNode(0, 0);
  const int freedoms = DofPerNodeOf(code);
  model.Fix(1, freedoms);
  for (int e = 1; e <= count; ++e) {
    model.AddNode(100.0 * e, 0);
    model.AddElement(type, {e, e + 1});
    for (int k = 2; type != 7 && k <= freedoms; ++k) model.supports.push_back({e + 1, k});
  }
  model.cases = {{{{count + 1, 1, 10}}, {}}};
  return model;
}

Model BeamWithoutRotations(bool trips) { return Line(7, trips ? 1 : 2); }

Model BarOfNoLength(bool trips) {
  Model model = Line(1, 0);
  const int node = model.AddNode(trips ? 100 : 101, 0);
  model.Fix(node, 3);
  model.AddElement(1, {2, node});
  return model;
}

Model NodeOffThePlane(bool trips) {
  Model model = Line(1, trips ? 1 : 0);
  model.nodes[1][2] = 5;
  return model;
}

/// A node with a passive element alone, or with a bar.
Model UnusedNode(bool trips) {
  Model model = Line(1, 1);
  const int node = model.AddNode(0, 100);
  model.Fix(node, 2);
  model.AddElement(trips ? -1 : 1, {node, 2});
  return model;
}

Model ThinTypeSix(bool trips) {
  Model model = Quad(6, Rectangle);
  model.materials[0].area = trips ? 10 : 40;
  return model;
}

Model PlaneStrain(bool trips) {
  Model model = Quad(trips ? 5 : 4, Rectangle);
  model.materials[0].planeStrain = 1;
  return model;
}

/// E t^3 / (12 (1 - nu^2)) of 1.9 N mm, or one that drowns 1.0 in rounding; 1.5e8 does neither.
template <int thousandfold>
Model Drilling(bool trips) {
  Model model = Quad(11, Rectangle);
  if (trips) model.materials[0].E *= std::pow(1000.0, thousandfold);
  return model;
}

Model NearlyLoose(bool trips) {
  Model model = Line(1, 0);
  model.materials[0].E = trips ? 1e-7 : 1e-3;  // E A / L = E / 5
  return model;
}

/// A bar along x whose free end is held in x alone, in the plane and in space.
template <int code>
Model LooseFreedoms(bool trips) {
  Model model = Line(1, code);
  if (trips) std::erase_if(model.supports, [](const auto& s) { return s.node == 2; });
  return model;
}

Model LoadOnALooseFreedom(bool trips) {
  Model model = Line(1, 0);
  std::erase_if(model.supports, [&](const auto& s) { return trips && s.node == 2; });
  model.cases[0].nodal.push_back({2, 3, 1});
  return model;
}

Model PrescribedInTwoCases(bool trips) {
  Model model = Line(1, 0);
  model.supports[0].value = 0.5;
  if (trips) model.cases.push_back(model.cases[0]);
  return model;
}

/// A cantilever in four elements, all loaded, or the last alone.
Model LoadedBeams(bool trips) {
  Model model = Line(7, 2, 4);
  for (int e = trips ? 4 : 1; e <= 4; ++e) model.cases[0].onElements.push_back({e, 2, -1});
  return model;
}

/// Three loaded beams and a fourth with the same load round the corner, or further in line and the other way round.
Model LoadedCorner(bool trips) {
  Model model = Line(7, 3, 3);
  model.AddNode(trips ? 300 : 400, trips ? 100 : 0);
  model.AddElement(7, {5, 4});
  for (int e = 1; e <= 4; ++e) model.cases[0].onElements.push_back({e, 3, 2});
  return model;
}

/// A bar that is pushed twice as far as a stop allows, the stop softer or stiffer than the bar.
Model Stop(bool trips) {
  Model model = Line(1, 1);
  const int wall = model.AddNode(200, 0);
  model.Fix(wall, 2);
  model.AddElement(14, {2, wall}, 2);
  model.materials.push_back({Steel.E * (trips ? 0.1 : 100), 0, 0, 20, 0, 500});
  model.cases[0].nodal[0].value = 1000 * Steel.E * 20 / 100;
  return model;
}

/// A bar that just reaches a stop, in metres, where the passes end too early, or in millimetres.
Model UnsettledStop(bool trips) {
  Model model = Line(1, 1);
  const int wall = model.AddNode(200, 0);
  model.Fix(wall, 2);
  model.AddElement(14, {2, wall}, 2);
  model.materials = {{1000, 0, 0, 100}, {2000, 0, 0, 100, 0, trips ? 1e-5 : 1e-2}};
  model.cases[0].nodal[0].value = trips ? 0.02 : 20;
  return model;
}

bool Tells(const std::vector<std::string>& warnings, const std::string& part) {
  return std::any_of(warnings.begin(), warnings.end(),
                     [&](const std::string& warning) { return warning.find(part) != std::string::npos; });
}

const struct {
  const char* text;
  Model (*model)(bool trips);
} Kinds[] = {
    {"that are no rectangles: 1, first element 1:", NoRectangle<5>},
    {"that are no rectangles: 1, first element 1:", NoRectangle<6>},
    {"that are no rectangles: 1, first element 1:", NoRectangle<9>},
    {"that are no rectangles: 1, first element 1:", NoRectangle<10>},
    {"that are no rectangles: 1, first element 1:", NoRectangle<11>},
    {"that are no rectangles: 1, first element 1:", NoRectangle<12>},
    {"that are no parallelograms: 1,", [](bool trips) { return Quad(8, trips ? Trapezoid : Parallelogram); }},
    {"with other local axes: 1, first element 2:", TwoPolynomialPlates},
    {"beside other shells or beams: 1, first element 1:", PlateAndBeam},
    {"do not lie in one plane: 1, first element 1:", [](bool trips) { return Quad(4, trips ? Twisted : Rectangle); }},
    {"with a corner of 180 degrees", [](bool trips) { return Quad(4, trips ? Reentrant : Trapezoid); }},
    {"without their rotations: 1, first element 1:", BeamWithoutRotations},
    {"line elements of no length: 1, first element 2:", BarOfNoLength},
    {"off the plane of node 1: 1, first node 2:", NodeOffThePlane},
    {"nodes that no element stiffens: 1, first node 3:", UnusedNode},
    {"type 6 that are thin for their size: 1, first element 1:", ThinTypeSix},
    {"plane strain (field 5)", PlaneStrain},
    {"drilling stiffness of 1.0", Drilling<-2>},
    {"drilling stiffness of 1.0", Drilling<2>},
    {"freedoms with a stiffness below 1e-6: 2, first node 1 in x:", NearlyLoose},
    {"translations without stiffness: 1, first node 2 in y:", LooseFreedoms<1>},
    {"translations without stiffness: 2, first node 2 in y:", LooseFreedoms<3>},
    {"rotations without stiffness: 3, first node 2 in rotation about x:", LooseFreedoms<3>},
    {"loaded freedoms without stiffness: 1, first node 2 in z:", LoadOnALooseFreedom},
    {"prescribed displacements: 1, first node 1 in x:", PrescribedInTwoCases},
    {"in runs of fewer than 4 elements: 1, first element 4:", LoadedBeams},
    {"in runs of fewer than 4 elements: 4, first element 1:", LoadedCorner},
    {"gaps shortened beyond their limit (field 6): 1, first record 2:", Stop},
    {"gaps that had not settled when the passes ended: 1, first record 2:", UnsettledStop},
};

TEST(Warnings, TellWhatAModelAsksTooMuch) {
  Folder folder;
  for (const auto& kind : Kinds) {
    SCOPED_TRACE(kind.text);
    EXPECT_TRUE(Tells(folder.Solve(kind.model(true)), kind.text));
    const std::string withoutCount = std::string(kind.text).substr(0, std::string(kind.text).find(':'));
    EXPECT_FALSE(Tells(folder.Solve(kind.model(false)), withoutCount));
  }
}

TEST(Warnings, AreToldOnceAndAgainInTheSummary) {
  Folder folder;
  folder.Write(LoadedBeams(true));  // the loads are assembled by two stages
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  ASSERT_EQ(display.warnings.size(), 1u);
  EXPECT_TRUE(Tells(display.summary, display.warnings[0]));
}

/// A model of two nodes in the plane, for the stages that look at masses and gaps.
struct PlaneModel {
  PlaneModel() {
    run.analysisCode = 1;
    run.sizes = {2, 4, 1, 2};
  }
  RecordingDisplay display;
  Run run{display, ""};
};

TEST(Warnings, TellUnequalMassesOfFreeFreedoms) {
  PlaneModel model;
  auto& [display, run] = model;
  Column masses(6, 3.0);
  masses(1) = 1;
  masses(6) = 0;  // beyond the equations
  WarnOfUnequalMasses(run, masses, {{1, 1, 0}, {1, 3, 0}});
  EXPECT_TRUE(display.warnings.empty());
  masses(4) = 2.9;
  WarnOfUnequalMasses(run, masses, {{1, 1, 0}, {1, 3, 0}});
  EXPECT_TRUE(Tells(display.warnings, "less mass than the heaviest: 1, first node 2 in y:"));
}

TEST(Warnings, TellWhatAnEigenRunMakesOfItsSupports) {
  PlaneModel model;
  auto& [display, run] = model;
  WarnOfEigenModel(run, {{1, 1, 0}, {1, 2, 0}});
  EXPECT_TRUE(display.warnings.empty());
  WarnOfEigenModel(run, {{2, 1, 0.5}, {1, 3, 0}, {2, 3, 0}});
  EXPECT_TRUE(Tells(display.warnings, "supports with a value in an eigen run: 1, first node 2 in x:"));
  EXPECT_TRUE(Tells(display.warnings, "supports of freedoms that the model has not: 2, first node 1:"));
  EXPECT_FALSE(Tells(display.warnings, "no mode is looked for"));
  run.gapFlag = true;
  WarnOfEigenModel(run, std::vector<Support>(static_cast<std::size_t>(run.sizes.EquationCount()), Support{1, 1, 0}));
  EXPECT_TRUE(Tells(display.warnings, "no mode is looked for"));
  EXPECT_TRUE(Tells(display.warnings, "gaps in an eigen run"));
}

}  // namespace
}  // namespace velmor::testing
