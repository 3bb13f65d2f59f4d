// Warnings about what a model asks of the elements and the solver: models that trip them, and models beside these that
// are given none at all.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "model/model_sizes.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

using models::Material;

/// Steel in N and mm, 20 thick: as thick as an element is long, nearly.
constexpr Material Steel{210000, 0.3, 0, 20, 0, 0, 100, 0, 100, 0, 100};

Model With(Model model, const std::function<void(Model&)>& change) {
  change(model);
  return model;
}

Model Field(Model model, double Material::*field, double value) {
  model.materials[0].*field = value;
  return model;
}

Model Moved(Model model, const std::vector<int>& nodes, double dx, double dy, double dz = 0) {
  for (int node : nodes) {
    auto& [x, y, z] = model.nodes[static_cast<std::size_t>(node - 1)];
    x += dx, y += dy, z += dz;
  }
  return model;
}

/// A rectangle of 40 by 30 whose axes are not the global ones, its first side along 4, 3; held at its first two nodes
/// and loaded at the third.
Model Quad(int type) {
  Model model;
  model.analysisCode = type == 6 || (8 <= type && type <= 11) ? 3 : 1;
  model.nodes = {{0, 0, 0}, {32, 24, 0}, {14, 48, 0}, {-18, 24, 0}};
  model.AddElement(type, {1, 2, 3, 4});
  model.materials = {Steel};
  for (int node : {1, 2}) model.Fix(node, DofPerNodeOf(model.analysisCode));
  model.cases = {{{{3, 1, 10}}, {}}};
  return model;
}

Model Trapezoid(int type) { return Moved(Quad(type), {3}, 8, 6); }
Model Parallelogram(int type) { return Moved(Quad(type), {3, 4}, 8, 6); }

/// Two plates of type 8 side by side, the second on nodes 2, 5, 6 and 3 in some order.
Model TwoPlates(const std::vector<int>& second) {
  Model model = Quad(8);
  model.AddNode(64, 48);
  model.AddNode(46, 72);
  model.AddElement(8, second);
  return model;
}

/// A plate of type 8, and a beam from one of its corners or from node 5.
Model PlateAndBeam(int start) {
  Model model = Quad(8);
  for (double z : {100.0, 200.0}) model.AddNode(0, 0, z);
  model.Fix(5, 6);
  model.AddElement(7, {start, 6});
  return model;
}

/// `count` line elements of 100 along x, all nodes but those of beams held across it, the first held whole.
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

/// A bar along x whose free end is not held across it, with a load there.
Model Loose(int code) {
  Model model = Line(1, code);
  std::erase_if(model.supports, [](const auto& support) { return support.node == 2; });
  model.cases[0].nodal.push_back({2, 2, 1});
  return model;
}

/// A beam in eight elements along x, loaded from element `first` on.
Model LoadedBeams(int first) {
  Model model = Line(7, 3, 8);
  for (int e = first; e <= 8; ++e) model.cases[0].onElements.push_back({e, 3, -1});
  return model;
}

/// Four bars around a square that stands askew, with or without the diagonal that holds it.
Model Frame(bool diagonal) {
  Model model;
  model.analysisCode = 1;
  model.materials = {Steel};
  model.nodes = {{0, 0, 0}, {88, 48, 0}, {40, 136, 0}, {-48, 88, 0}};
  model.elements = {{1, {1, 2}}, {1, {2, 3}}, {1, {3, 4}}, {1, {4, 1}}};
  if (diagonal) model.AddElement(1, {1, 3});
  model.Fix(1, 2);
  model.Fix(2, 2);
  model.cases = {{{{3, 1, 10}}, {}}};
  return model;
}

Model Prescribed(std::size_t loadCases) {
  Model model = Line(1, 0);
  model.supports[0].value = 0.5;
  model.cases.resize(loadCases);
  return model;
}

/// A bar of stiffness 1000 under a load along x, and a stop that lets it go so far.
Model Stop(double load, double stiffness, double limit) {
  Model model = Line(1, 1);
  const int wall = model.AddNode(200, 0);
  model.Fix(wall, 2);
  model.AddElement(14, {2, wall}, 2);
  model.materials = {{1000, 0, 0, 100}, {stiffness, 0, 0, 100, 0, limit}};
  model.cases[0].nodal[0].value = load;
  return model;
}

/// Bars in a row between held ends, and two stops against the same wall: the second holds back, the first pulls.
Model TwoStops(double limit) {
  Model model = Line(1, 1, 3);
  model.Fix(4, 1);
  model.Fix(model.AddNode(500, 0), 2);
  for (int e : {2, 3}) model.elements[static_cast<std::size_t>(e - 1)].material = e;
  model.AddElement(14, {2, 5}, 4);
  model.AddElement(14, {3, 5}, 5);
  model.materials = {{5, 0, 0, 1}, {50, 0, 0, 1}, {10, 0, 0, 1}, {900, 0, 0, 1, 0, limit}, {300, 0, 0, 1, 0, 500}};
  model.cases = {{{{2, 1, -300}, {3, 1, 300}}, {}}};
  return model;
}

/// Two bars in a row with the same mass on every freedom, for an eigen run.
Model EigenRun() {
  Model model = Line(1, 1, 2);
  model.flags.EigenFlag = 1;
  model.cases[0].nodal = {{1, 1, 1}, {1, 2, 1}, {2, 1, 1}, {2, 2, 1}, {3, 1, 1}, {3, 2, 1}};
  return model;
}

bool Tells(const std::vector<std::string>& warnings, const std::string& part) {
  return std::any_of(warnings.begin(), warnings.end(),
                     [&](const std::string& warning) { return warning.find(part) != std::string::npos; });
}

TEST(Warnings, TellWhatAModelAsksTooMuch) {
  const std::string noRectangle = "that are no rectangles: 1, first element 1:", drilling = "drilling stiffness of 1.0";
  const Model passive = With(Line(1, 1), [](Model& m) { m.AddElement(-1, {m.AddNode(0, 100), 2}); });
  const Model turnedBeam = With(LoadedBeams(1), [](Model& m) { m.elements[1].nodes = {3, 2}; });
  const Model unequal = With(EigenRun(), [](Model& m) { m.cases[0].nodal[2].value = 0.999; });
  const Model loaded = With(EigenRun(), [](Model& m) { m.supports[0].value = 1e-20; });
  const Model full = With(EigenRun(), [](Model& m) { m.supports.resize(6, {1, 1}); });
  const Model withGap = With(Field(Stop(20, 2000, 1e-2), &Material::density, 1), [](Model& m) {
    m.flags.EigenFlag = 1;
    m.materials[1].density = 1;
  });
  const struct {
    std::string text;
    Model tripping, beside;  // the second without any warning
  } kinds[] = {
      {noRectangle, Trapezoid(5), Quad(5)},
      {noRectangle, Parallelogram(6), Field(Quad(6), &Material::area, 40)},
      {noRectangle, Trapezoid(9), Quad(9)},
      {noRectangle, Parallelogram(12), Quad(12)},
      {"that are no parallelograms: 1, first element 1:", Trapezoid(8), Parallelogram(8)},
      {"with other local axes: 1, first element 2:", TwoPlates({5, 6, 3, 2}), TwoPlates({2, 5, 6, 3})},
      {"beside other shells or beams: 1, first element 1:", PlateAndBeam(3), PlateAndBeam(5)},
      {"do not lie in one plane: 1, first element 1:", Moved(Quad(4), {3}, 0, 0, 2), Quad(4)},
      {"with a corner of 180 degrees or more: 1, first", Moved(Quad(4), {3}, -12, -34), Trapezoid(4)},
      {"without their rotations: 1, first element 1:", Line(7, 1), Line(7, 2)},
      {"line elements of no length: 1, first element 2:", Moved(Line(1, 0, 2), {3}, -100, 0), Line(1, 0, 2)},
      {"off the plane of node 1: 1, first node 2:", Moved(Line(1, 1), {2}, 0, 0, 5), Moved(Line(1, 0), {2}, 0, 0, 5)},
      {"nodes that no element stiffens: 1, first node 3:", passive, Line(1, 1)},
      {"type 6 that are thin for their size: 1, first", Quad(6), Field(Quad(6), &Material::area, 40)},
      {"plane strain (field 5) in elements of another", Field(Quad(5), &Material::planeStrain, 1),
       Field(Quad(4), &Material::planeStrain, 1)},
      // E t^3 / (12 (1 - nu^2)) of 154 N mm, or one that drowns 1.0 in rounding; 1.5e8 does neither.
      {drilling, Field(Quad(11), &Material::E, 0.21), Quad(11)},
      {drilling, Field(Quad(11), &Material::E, 2.1e11), Quad(11)},
      {"stiffness below 1e-6: 2, first node 1 in x:", Field(Line(1, 0), &Material::E, 1e-7),
       Field(Line(1, 0), &Material::E, 1e-3)},
      {"stiffness above 1e20: 2, first node 1 in x:", Field(Line(1, 1), &Material::E, 1e22), Line(1, 1)},
      {"keep less than 1e-11 of their stiffness when all others may move: 1,", Frame(false), Frame(true)},
      {"translations without stiffness: 1, first node 2 in y:", Loose(1), Line(1, 1)},
      {"translations without stiffness: 2, first node 2 in y:", Loose(3), Line(1, 3)},
      {"rotations without stiffness: 3, first node 2 in rotation about x:", Loose(3), Line(1, 3)},
      {"loaded freedoms without stiffness: 1, first node 2 in y:", Loose(3), Line(1, 3)},
      {"prescribed displacements: 1, first node 1 in x:", Prescribed(2), Prescribed(1)},
      {"in runs of fewer than 8 elements: 7, first element 2:", LoadedBeams(2), LoadedBeams(1)},
      // A corner between the second and the third, or one of them the other way round.
      {"in runs of fewer than 8 elements: 8, first", Moved(LoadedBeams(1), {8, 9}, 0, 100), turnedBeam},
      {"gaps shortened beyond their limit (field 6): 1, first record 2:", Stop(1e6, 100, 500), Stop(1e6, 1e5, 500)},
      {"gaps that pull at their limit (field 6): 1, first record 4:", TwoStops(80), TwoStops(300)},
      // In metres the passes end too early, in millimetres they do not.
      {"gaps that had not settled when the passes ended: 1,", Stop(0.02, 2000, 1e-5), Stop(20, 2000, 1e-2)},
      {"less mass than the heaviest: 1, first node 2 in x:", unequal, EigenRun()},
      {"supports with a value in an eigen run: 1, first node 1 in x:", loaded, EigenRun()},
      {"as many support lines as equations: no mode is looked for", full, EigenRun()},
      {"gaps in an eigen run", withGap, EigenRun()},
  };
  Folder folder;
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.text);
    EXPECT_TRUE(Tells(folder.Solve(kind.tripping), kind.text));
    EXPECT_EQ(folder.Solve(kind.beside), std::vector<std::string>{});
  }
}

TEST(Warnings, AreToldOnceAndAgainInTheSummary) {
  Folder folder;
  folder.Write(LoadedBeams(4));  // the loads are assembled by two stages
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  ASSERT_EQ(display.warnings.size(), 1u);
  EXPECT_TRUE(Tells(display.summary, display.warnings[0]));
}

}  // namespace
}  // namespace velmor::testing
