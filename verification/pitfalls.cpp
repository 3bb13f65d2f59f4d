// Models that are not for this program, each beside one that is.

#include <cmath>
#include <numbers>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr double Pi = std::numbers::pi;

/// The stress along x of the patch test on skew quadrilaterals where it is farthest from the right one.
double PatchStress(const Program& program, int type, double right) {
  const Results r = program.Solve(PatchTest(type));
  double worst = right;
  for (const auto& line : r.GlobalStresses()) {
    if (std::abs(line.at(4) - right) > std::abs(worst - right)) worst = line.at(4);
  }
  return worst;
}

/// Plate of 3 x 3 parallelograms, w = (x² + x y + y²)/2000 on its border; deflection of an inner node.
double SkewPatch(const Program& program, int type) {
  Model model = WithMaterial(3, {.E = 210000, .nu = 0.3, .area = 2});
  const Mesh mesh = AddMesh(model, type, 3, 3, [](double s, double t) { return Point{300 * s + 200 * t, 200 * t, 0}; });
  for (int i = 0; i <= 3; ++i) {
    for (int j = 0; j <= 3; ++j) {
      const int node = mesh(i, j);
      const auto [x, y, z] = model.At(node);
      const double slope = (2 * x + y) / 2000;
      model.Hold(node, {X, Y});
      if (i > 0 && i < 3 && j > 0 && j < 3) continue;
      model.Prescribe(node, Z, (x * x + x * y + y * y) / 2000);
      model.Prescribe(node, RotX, (x + 2 * y) / 2000);
      model.Prescribe(node, RotY, type == 8 ? slope : -slope);
    }
  }
  return program.Solve(model).Displacement(mesh(1, 1), Z);
}

/// A thin plate twisted by a force on its fourth corner.
double Twist(const Program& program, int type) {
  Model model = WithMaterial(3, {.E = 210000, .nu = 0.3, .area = 6});
  const Mesh mesh = AddRectangle(model, type, 3, 3, 900, 600);
  // Type 6 has a mode without energy, which the held edge keeps out.
  for (int i = 0; i <= 3; ++i) model.Hold(mesh(i, 0), {Y, Z, RotY});
  for (int j = 1; j <= 3; ++j) model.Hold(mesh(0, j), {X, Z, RotX});
  model.Load(mesh.Last(), Z, 100);
  return program.Solve(model).Displacement(mesh.Last(), Z);
}

/// First bending frequency of a simple beam with the masses of its elements, or the same mass everywhere.
double BeamFrequency(const Program& program, bool ownMasses) {
  const double perLength = 3000 * 7.85e-9;
  Model model = WithMaterial(2, {.E = 210000, .density = ownMasses ? 7.85e-9 : 0, .area = 3000, .I1 = 8e6, .W1 = 1});
  model.eigen = true;
  AddLine(model, 7, 8, {0, 0, 0}, {8000, 0, 0});
  for (int node = 1; node <= 9; ++node) model.Hold(node, {X});
  model.Hold(1, {Y});
  model.Hold(9, {Y});
  if (!ownMasses) AddEqualMasses(model, perLength * 1000);
  return program.Solve(model).Frequencies().at(0);
}

/// Third frequency of a mass 0.25 on three springs, all three directions free or one at a time.
double ThirdSpring(const Program& program, bool together) {
  Model model;
  model.analysisCode = 0;
  model.eigen = true;
  Material spring;
  spring.spring[0][0] = 400;
  spring.spring[1][1] = 500;
  spring.spring[2][2] = 600;
  model.AddMaterial(spring);
  model.AddNode(0, 0);
  model.AddElement(16, {1});
  if (!together) model.Hold(1, {X, Y});
  AddEqualMasses(model, 0.25);
  return program.Solve(model).Frequencies().at(together ? 2 : 0);
}

/// Force of the wall of a bar, in N, modelled in units of length of `unit` metres.
double WallForce(const Program& program, double unit) {
  const double mm = 0.001 / unit, E = 20e9 * unit * unit, A = 250 * mm * mm;
  Model model = WithMaterial(1, {.E = E, .area = A});
  const int gap = model.AddMaterial({.E = 5000 * E, .area = A, .turn = 1.2 * mm});
  AddLine(model, 1, 2, {0, 0, 0}, {300 * mm, 0, 0});
  model.AddNode(400 * mm, 0);
  model.AddElement(14, {3, 4}, gap);
  for (int node = 1; node <= 4; ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  model.Hold(4, {X});
  model.Load(2, X, 60000);
  return std::abs(A * program.Solve(model).LineStress(3, 1, 5));
}

/// w D/(q a⁴) of a simply supported square plate of given side, thickness and modulus.
double PlateCoefficient(const Program& program, double a, double t, double E, double q) {
  Model model = WithMaterial(3, {.E = E, .nu = 0.3, .area = t});
  const Mesh mesh = AddRectangle(model, 9, 16, 16, a, a);
  for (int i = 0; i <= 16; ++i) {
    for (const int node : {mesh(i, 0), mesh(i, 16)}) model.Hold(node, {X, Y, Z, RotY});
    for (const int node : {mesh(0, i), mesh(16, i)}) model.Hold(node, {X, Y, Z, RotX});
  }
  for (int element = 1; element <= model.ElementCount(); ++element) model.LoadElement(element, 3, q);
  const double D = E * t * t * t / (12 * 0.91);
  return program.Solve(model).Displacement(mesh(8, 8), Z) * D / (q * a * a * a * a);
}

/// The roof of Scordelis and Lo in units of force in which its modulus is E.
double RoofEdge(const Program& program, double E) {
  const Model model = Roof(9, 16, E, 90 * E / 4.32e8);
  return program.Solve(model).Displacement(model.NodeCount(), Z);
}

/// Tip of a cantilever under a uniform load in terms of q L⁴/(E I).
double LoadedCantilever(const Program& program, int count) {
  Model model = WithMaterial(2, {.E = 1e5, .area = 100, .I1 = 1e4, .W1 = 1});
  AddLine(model, 7, count, {0, 0, 0}, {1000, 0, 0});
  model.Hold(1, {X, Y, RotZ});
  for (int element = 1; element <= count; ++element) model.LoadElement(element, Y, 0.5);
  return program.Solve(model).Displacement(count + 1, Y) * 1e9 / (0.5 * 1e12);
}

/// Tip of a cantilever strip, 600 x 100 x 5 and ν = 0, under the force 2 per width; half of it of another type.
double MixedStrip(const Program& program, int type) {
  Model model = WithMaterial(3, {.E = 210000, .nu = 0, .area = 5});
  const Mesh mesh = AddRectangle(model, 9, 6, 1, 600, 100);
  for (int element = 1; element <= 3; ++element) model.elements[static_cast<std::size_t>(element - 1)].type = type;
  for (int j = 0; j <= 1; ++j) {
    model.Hold(mesh(0, j), {X, Y, Z, RotX, RotY});
    model.Load(mesh(6, j), Z, 100);
  }
  return program.Solve(model).Displacement(mesh.Last(), Z);
}

/// Shear force of a fixed beam with a settlement of 10, in a load case.
double SettledBeam(const Program& program, int loadCase) {
  Model model = WithMaterial(2, {.E = 210000, .area = 3000, .I1 = 8e6, .W1 = 1});
  AddLine(model, 7, 2, {0, 0, 0}, {4000, 0, 0});
  model.Hold(1, {X, Y, RotZ});
  model.Hold(3, {X, RotZ});
  model.Prescribe(3, Y, -10);
  model.cases.resize(2);
  return program.Solve(model).Reaction(1, Y, loadCase);
}

/// Tip of a cantilever beam in an analysis code.
double BeamInCode(const Program& program, int code) {
  Model model = WithMaterial(code, {.E = 210000, .area = 3000, .I1 = 8e6, .W1 = 1});
  AddLine(model, 7, 1, {0, 0, 0}, {4000, 0, 0});
  model.Hold(1, {X, Y});
  if (code == 2) model.Hold(1, {RotZ});
  model.Load(2, Y, -100);
  model.lineStresses = false;  // that stage fails at beams without rotations
  return program.Solve(model).Displacement(2, Y);
}

/// Stress along a strip in plane strain under the stress 12.
double PlaneStrainStress(const Program& program, int type) {
  Model model = WithMaterial(1, {.E = 30000, .nu = 0.3, .area = 1, .planeStrain = 1});
  const Mesh mesh = AddRectangle(model, type, 3, 1, 100, 40);
  for (int j = 0; j <= 1; ++j) {
    model.Hold(mesh(0, j), {X});
    model.Load(mesh(3, j), X, 12 * 40 / 2.0);
  }
  model.Hold(mesh(0, 0), {Y});
  return program.Solve(model).GlobalStresses().front().at(4);
}

/// Two bars in a row with one-sided stops: displacement of the far end.
double TwoStops(const Program& program, bool firstAsSupport) {
  const double k = 20000.0 * 250 / 150;
  Model model = WithMaterial(1, {.E = 20000, .area = 250});
  AddLine(model, 1, 2, {0, 0, 0}, {300, 0, 0});
  const double g[] = {0.5, 1.2};
  for (int i = firstAsSupport ? 1 : 0; i < 2; ++i) {
    const int wall = model.AddNode(150 * (i + 1) + 100, 0);
    model.Hold(wall, {X});
    model.AddElement(14, {2 + i, wall}, model.AddMaterial({.E = 100 * k, .area = 100, .turn = g[i]}));
  }
  for (int node = 1; node <= model.NodeCount(); ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  if (firstAsSupport) model.Prescribe(2, X, g[0]);
  model.Load(2, X, 60000);
  model.Load(3, X, 30000);
  return program.Solve(model).Displacement(3, X);
}

}  // namespace

std::vector<Pitfall> Pitfalls(const Program& program) {
  const double skew = (500.0 * 500 + 500 * 200 + 200 * 200) / 9 / 2000;
  const double direct = 1e6 / 0.75 / 1000;
  const double twist = 100 * 900.0 * 600 / (2 * (210000 * 216 / (12 * 0.91)) * 0.7);
  const double beamFrequency = Pi / 2 * std::sqrt(210000 * 8e6 / (3000 * 7.85e-9)) / 64e6;
  return {
      {"Rectangle elements on other shapes: the patch test with type 5", "σXX, worst node", direct,
       PatchStress(program, 5, direct), "type 4", PatchStress(program, 4, direct)},
      {"The same with type 12", "σXX, worst node", direct, PatchStress(program, 12, direct), "type 4",
       PatchStress(program, 4, direct)},
      {"Plates of types 9 to 11 on parallelograms: a patch bent to w = (x² + x y + y²)/2000, type 9",
       "w of an inner node", skew, SkewPatch(program, 9), "type 8", SkewPatch(program, 8)},
      {"The same with type 11", "w of an inner node", skew, SkewPatch(program, 11), "type 8", SkewPatch(program, 8)},
      {"Type 6 in a thin plate, 900 x 600 x 6, twisted", "w of the corner", twist, Twist(program, 6), "type 9",
       Twist(program, 9)},
      {"Type 8 beside another shell: a strip half of type 8, half of type 9", "w of the tip",
       200 * 600.0 * 600 * 600 / (3 * 210000.0 * 100 * 125 / 12), MixedStrip(program, 8), "type 9 alone",
       MixedStrip(program, 9)},
      {"A plate in units E = 1, t = 0.0005, a = 1", "w D/(q a⁴)", 0.00406235,
       PlateCoefficient(program, 1, 0.0005, 1, std::ldexp(1, -30)), "N, mm: E = 210000, t = 2, a = 2000",
       PlateCoefficient(program, 2000, 2, 210000, 1.0 / 1024)},
      {"A shell in units E = 1: the roof above", "w of the middle of the free edge", -0.3024, RoofEdge(program, 1),
       "E = 4.32e8", RoofEdge(program, 4.32e8)},
      {"One beam element under a uniform load", "tip of a cantilever, w E I/(q L⁴)", 0.125,
       LoadedCantilever(program, 1), "eight elements", LoadedCantilever(program, 8)},
      {"A beam in analysis code 1, without rotations", "tip of a cantilever", -100 * 64e9 / (3 * 210000.0 * 8e6),
       BeamInCode(program, 1), "code 2", BeamInCode(program, 2)},
      {"Plane strain in type 5", "stress under the stress 12", 12, PlaneStrainStress(program, 5), "type 4",
       PlaneStrainStress(program, 4)},
      {"A settlement in load case 2", "shear force of a fixed beam", 12 * 210000 * 8e6 * 10 / 64e9,
       SettledBeam(program, 2), "load case 1", SettledBeam(program, 1)},
      {"Unequal masses in an eigen run: a simple beam with the masses of its elements", "f of mode 1", beamFrequency,
       BeamFrequency(program, true), "density 0, equal masses in NAME.KNK", BeamFrequency(program, false)},
      {"Freedoms that do not touch each other in an eigen run: a mass on three springs, 400, 500, 600", "third f",
       std::sqrt(600 / 0.25) / (2 * Pi), ThirdSpring(program, true), "a run for each, the others held",
       ThirdSpring(program, false)},
      {"Gaps in metres: the bar against a wall", "force of the wall", 10000, WallForce(program, 1), "mm",
       WallForce(program, 0.001)},
      {"Two one-sided stops that share a load: two bars in a row with stops 0.5 and 1.2 beyond their ends",
       "u of the far end", 1.2, TwoStops(program, false), "the first stop as a support that has moved",
       TwoStops(program, true)},
  };
}

namespace {

/// The line of standard error that tells what happened: the one below the failure number, or the first message.
std::string Told(const std::string& errors) {
  const std::size_t number = errors.find("Error No. ");
  const std::size_t from = number == std::string::npos ? 0 : errors.find('\n', number) + 1;
  const std::size_t begin = errors.find_first_not_of(' ', from);
  return begin == std::string::npos ? "" : errors.substr(begin, errors.find('\n', begin) - begin);
}

Refusal Refused(const Program& program, const std::string& what, const Model& model) {
  const Ending ending = program.Run(model);
  return {what, ending.status, Told(ending.errors)};
}

/// One surface element of a type on given corners.
Model OneElement(int type, const std::vector<Point>& corners, double nu = 0.3) {
  Model model = WithMaterial(1, {.E = 1000, .nu = nu, .area = 1});
  std::vector<int> nodes;
  nodes.reserve(corners.size());
  for (const Point& p : corners) nodes.push_back(model.AddNode(p[0], p[1]));
  model.AddElement(type, nodes);
  for (const int node : nodes) model.Hold(node, {X, Y});
  return model;
}

Model TwoHinges() {
  Model model = WithMaterial(1, {.E = 1000, .area = 1});
  AddLine(model, 1, 2, {0, 0, 0}, {2, 0, 0});
  model.AddNode(1, 1);
  model.AddElement(1, {2, 4});
  model.Hold(1, {X, Y});
  model.Load(4, X, 1);
  return model;
}

Model WithoutMasses() {
  Model model = WithMaterial(1, {.E = 1, .area = 1});
  model.eigen = true;
  AddLine(model, 1, 2, {0, 0, 0}, {2, 0, 0});
  model.Hold(1, {X, Y});
  return model;
}

}  // namespace

std::vector<Refusal> Refusals(const Program& program) {
  const std::vector<Point> square = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  return {
      Refused(program, "a triangle with its corners on a line", OneElement(2, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}})),
      Refused(program, "a quadrilateral with its corners on a line",
              OneElement(4, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}})),
      Refused(program, "Poisson's ratio 1 in a membrane", OneElement(4, square, 1)),
      Refused(program, "element type 15", OneElement(15, {{0, 0, 0}, {1, 0, 0}})),
      Refused(program, "an eigen run without masses", WithoutMasses()),
      Refused(program, "bars that can fall over", TwoHinges()),
  };
}

}  // namespace velmor::verification
