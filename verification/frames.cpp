// Bars, beams and frames.

#include <cmath>
#include <numbers>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr double Pi = std::numbers::pi;

constexpr const char* Text =
    R"(Sources: P: Popov, Engineering Mechanics of Solids, example 2.14. T: Timoshenko, Strength of Materials, part I
(0.182 in and 11400 psi, in three digits). MH: MacNeal, Harder, A proposed standard set of problems to test finite element
accuracy, Finite Elements in Analysis and Design 1 (1985). H: Hetényi, Beams on Elastic Foundation, 1946.

| Closed form | |
|---|---|
| three-bar truss | F1 = P/(2 cos³30° + 1), F2 = F1 cos²30°, v = F1 h/(E A) |
| tripod, legs of length L at the angle a to the vertical | v = P L/(3 E A cos²a) |
| beam with overhangs a, span L | rise q a² L²/(16 E I), stress q a²/(2 W) |
| simple beam | 5 q L⁴/(384 E I); cantilever with tip force P L³/(3 E I) about each principal axis, with torque T L/(G J) |
| equal spans with a force in the middle of each | middle reaction 11 P/8 |
| fixed portal, force P at the eaves | sway P h³ (3 k + 2)/(12 E Ic (6 k + 1)), k = (Ib/L)/(Ic/h); members that do not stretch |
| bent cantilever, arm a, then b at right angles, P across both | P (a³ + b³)/(3 E I) + P a b²/(G J) |
| quarter ring, radius R, thin | in its plane π P R³/(4 E I), across P R³ (π/(4 E I) + (3 π/4 - 2)/(G J)) |
| cantilever with a spring k at its tip | F/(3 E I/L³ + k) |
| settlement d of one end of a fixed beam | V = 12 E I d/L³, M = 6 E I d/L² |
| string of pre-force N | F L1 L2/(N (L1 + L2)) |
| hanging bar | ρ g L²/(2 E) |
| bar that is turned faster and faster about its end, angular acceleration a | 11 ρ A a L⁵/(120 E I) |
| endless beam on a foundation k | P b/(2 k), b = (k/(4 E I))^(1/4) |

The quarter ring is the curved cantilever of MH with its rectangular section 0.2 x 0.1, J = 0.229 x 0.2 x 0.1³
(Timoshenko, Goodier). Its published values are of the thick ring, with shear; beams have none.
)";

Case Truss(const Program& program) {
  const double P = 200, c = std::cos(Pi / 6), F1 = P / (2 * c * c * c + 1);
  Model model = WithMaterial(1, {.E = 3000, .area = 10});
  const double a = 200 * std::tan(Pi / 6);
  const int tip = model.AddNode(a, -200);
  for (const double x : {0.0, a, 2 * a}) {
    const int top = model.AddNode(x, 0);
    model.AddElement(1, {top, tip});
    model.Hold(top, {X, Y});
  }
  model.Load(tip, Y, -P);
  const Results r = program.Solve(model);
  return {"Three-bar truss, A 10, E 3000, h 200, legs at 30°, P 200",
          "P, A",
          "1",
          Class::Exact,
          {{"3 bars", "force of the middle bar", F1, 10 * r.LineStress(2, 1, 5)},
           {"", "force of a leg", F1 * c * c, 10 * r.LineStress(1, 1, 5)},
           {"", "v", -F1 * 200 / (3000 * 10), r.Displacement(tip, Y)}}};
}

Case Tripod(const Program& program) {
  Model model = WithMaterial(0, {.E = 210000, .area = 500});
  const int top = model.AddNode(0, 0, 4000);
  for (int leg = 0; leg < 3; ++leg) {
    const double angle = 2 * Pi * leg / 3 + 0.2;
    const int foot = model.AddNode(3000 * std::cos(angle), 3000 * std::sin(angle), 0);
    model.AddElement(1, {top, foot});
    model.Hold(foot, {X, Y, Z});
  }
  model.Load(top, Z, -50000);
  const Results r = program.Solve(model);
  const double cosine = 0.8;
  return {"Tripod, E 210000, A 500, height 4000, feet on a circle of 3000, P 50000",
          "A",
          "1",
          Class::Exact,
          {{"3 bars", "v", -50000 * 5000 / (3 * 210000.0 * 500 * cosine * cosine), r.Displacement(top, Z)},
           {"", "force of a leg", -50000 / (3 * cosine), 500 * r.LineStress(1, 1, 5)}}};
}

Case Overhangs(const Program& program) {
  Model model = WithMaterial(2, {.E = 30e6, .nu = 0.3, .area = 50.65, .I1 = 7892, .W1 = 7892.0 / 15});
  AddLine(model, 7, 8, {-240, 0, 0}, {240, 0, 0});
  const int left = 3, middle = 5, right = 7;
  model.Hold(left, {X, Y});
  model.Hold(right, {Y});
  for (const int element : {1, 2, 7, 8}) model.LoadElement(element, Y, -10000.0 / 12);
  const Results r = program.Solve(model);
  const double M = 10000.0 / 12 * 120 * 120 / 2;
  return {
      "Beam with overhangs, span 240 in, overhangs 120 in, E 30e6, A 50.65, I 7892, depth 30, 10000 lb/ft on the "
      "overhangs",
      "T, A",
      "7",
      Class::Exact,
      {{"8 beams", "rise of the middle", M * 240 * 240 / (8 * 30e6 * 7892), r.Displacement(middle, Y)},
       {"", "bending stress", M / (7892.0 / 15), std::abs(r.LineStress(4, 2, 9))}},
      1e-6};
}

/// Deflection of the middle of a simple beam; the end moments that the program's element loads lack are added if
/// wanted.
Value SimpleBeam(const Program& program, int count, bool withEndMoments) {
  const double L = 1.44, EI = 2e11 * 2.81e-5, p = 1e5, l = L / count;
  Model model = WithMaterial(2, {.E = 2e11, .nu = 0.3, .area = 0.01, .I1 = 2.81e-5, .W1 = 1e-3});
  const int first = AddLine(model, 7, count, {0, 0, 0}, {L, 0, 0});
  model.Hold(first, {X, Y});
  model.Hold(first + count, {Y});
  for (int element = 1; element <= count; ++element) model.LoadElement(element, Y, -p);
  if (withEndMoments) {
    model.Load(first, RotZ, -p * l * l / 6);
    model.Load(first + count, RotZ, p * l * l / 6);
  }
  return {std::to_string(count), "deflection of the middle", -5 * p * L * L * L * L / (384 * EI),
          program.Solve(model).Displacement(first + count / 2, Y)};
}

std::vector<Case> SimpleBeams(const Program& program) {
  Case plain{"Simple beam, L 1.44, E 2e11, I 2.81e-5, p 1e5 as element loads", "A", "7", Class::Converging, {}, 0.01};
  for (const int count : {2, 4, 8, 16, 32}) plain.values.push_back(SimpleBeam(program, count, false));
  return {plain,
          {"The same with the moments p l²/6 at both ends that the element loads lack",
           "A",
           "7",
           Class::Exact,
           {SimpleBeam(program, 4, true)},
           1e-6}};
}

Case TwoSpans(const Program& program) {
  Model model = WithMaterial(2, {.E = 210000, .nu = 0.3, .area = 2850, .I1 = 19.43e6, .W1 = 194e3});
  AddLine(model, 7, 4, {0, 0, 0}, {8000, 0, 0});
  model.Hold(1, {X, Y});
  model.Hold(3, {Y});
  model.Hold(5, {Y});
  for (const int node : {2, 4}) model.Load(node, Y, -10000);
  const Results r = program.Solve(model);
  return {"Beam on three supports, spans 4000, E I 4.08e12, 10000 in the middle of each",
          "A",
          "7",
          Class::Exact,
          {{"4 beams", "middle reaction", 11 * 10000.0 / 8, r.Reaction(3, Y)},
           {"", "stress there, 3 P L/(16 W)", 3 * 10000.0 * 4000 / (16 * 194e3), std::abs(r.LineStress(2, 2, 9))}}};
}

/// A cantilever in space along a direction, its section turned by 30 degrees: the beam's axes by the rule of the model
/// files, each loaded alone.
Case Cantilever(const Program& program, const std::string& name, const Point& towards) {
  const double L = 2000, E = 210000, nu = 0.3, I1 = 8e6, I2 = 2e6, J = 1.5e6, P = 1000, T = 2e5;
  const Point axis = Unit(towards);
  const bool vertical = axis[0] == 0 && axis[1] == 0;
  const Point flat = vertical ? Point{0, 1, 0} : Unit({-axis[1], axis[0], 0});
  const Point up = Cross(axis, flat);
  const double c = std::cos(Pi / 6), s = std::sin(Pi / 6);
  const Point first = c * flat + s * up, second = Cross(axis, first);
  Model model =
      WithMaterial(3, {.E = E, .nu = nu, .area = 3000, .turn = 30, .torsion = J, .I2 = I2, .W2 = 1, .I1 = I1, .W1 = 1});
  AddLine(model, 7, 2, {0, 0, 0}, L * axis);
  model.Hold(1, {X, Y, Z, RotX, RotY, RotZ});
  for (int k = 0; k < 3; ++k) {
    const auto at = static_cast<std::size_t>(k);
    model.Load(3, X + k, P * first.at(at), 1);
    model.Load(3, X + k, P * second.at(at), 2);
    model.Load(3, RotX + k, T * axis.at(at), 3);
  }
  const Results r = program.Solve(model);
  const double turn = axis[0] * r.Displacement(3, RotX, 3) + axis[1] * r.Displacement(3, RotY, 3) +
                      axis[2] * r.Displacement(3, RotZ, 3);
  const double G = E / (2 * (1 + nu));
  return {"Cantilever " + name + ", section turned 30°, L 2000, E 210000, I 8e6 and 2e6, J 1.5e6, P 1000, T 2e5",
          "A",
          "7",
          Class::Exact,
          {{"2 beams", "along the first axis", P * L * L * L / (3 * E * I1), r.Along(3, first, 1)},
           {"", "along the second axis", P * L * L * L / (3 * E * I2), r.Along(3, second, 2)},
           {"", "twist", T * L / (G * J), turn}}};
}

Case Portal(const Program& program) {
  const double h = 4000, L = 6000, Ic = 25e6, Ib = 40e6, E = 210000, P = 20000, k = (Ib / L) / (Ic / h);
  Model model = WithMaterial(2, {.E = E, .nu = 0.3, .area = 1e9, .I1 = Ic, .W1 = 1});
  const int beam = model.AddMaterial({.E = E, .nu = 0.3, .area = 1e9, .I1 = Ib, .W1 = 1});
  AddLine(model, 7, 2, {0, 0, 0}, {0, h, 0});
  for (const Point& p : {Point{L / 2, h, 0}, Point{L, h, 0}, Point{L, h / 2, 0}, Point{L, 0, 0}}) {
    model.nodes.push_back(p);
  }
  model.AddElement(7, {3, 4}, beam);
  model.AddElement(7, {4, 5}, beam);
  model.AddElement(7, {5, 6});
  model.AddElement(7, {6, 7});
  model.Hold(1, {X, Y, RotZ});
  model.Hold(7, {X, Y, RotZ});
  model.Load(3, X, P / 2);
  model.Load(5, X, P / 2);
  return {"Fixed portal, h 4000, L 6000, Ic 25e6, Ib 40e6, E 210000, P 20000, areas of 1e9",
          "A",
          "7",
          Class::Exact,
          {{"6 beams", "sway", P * h * h * h * (3 * k + 2) / (12 * E * Ic * (6 * k + 1)),
            program.Solve(model).Displacement(3, X)}},
          1e-6};
}

Case BentCantilever(const Program& program) {
  const double a = 3000, b = 1000, E = 210000, nu = 0.3, I = 6e6, J = 9e6, P = 500, G = E / (2 * (1 + nu));
  Model model = WithMaterial(3, {.E = E, .nu = nu, .area = 2000, .torsion = J, .I2 = I, .W2 = 1, .I1 = I, .W1 = 1});
  model.AddNode(0, 0);
  model.AddNode(a, 0);
  model.AddNode(a, b);
  model.AddElement(7, {1, 2});
  model.AddElement(7, {2, 3});
  model.Hold(1, {X, Y, Z, RotX, RotY, RotZ});
  model.Load(3, Z, -P);
  return {"Bent cantilever, a 3000, b 1000, E 210000, I 6e6, J 9e6, P 500",
          "A",
          "7",
          Class::Exact,
          {{"2 beams", "tip", -P * ((a * a * a + b * b * b) / (3 * E * I) + a * b * b / (G * J)),
            program.Solve(model).Displacement(3, Z)}}};
}

constexpr double RingRadius = 4.22, RingE = 1e7, RingI = 0.1 * 0.008 / 12, RingIacross = 0.2 * 0.001 / 12,
                 RingJ = 0.229 * 0.2 * 0.001;

/// Tip of the curved cantilever under a unit force in or across its plane.
double Ring(const Program& program, int count, Direction direction) {
  Model model = WithMaterial(
      3, {.E = RingE, .nu = 0.25, .area = 0.02, .torsion = RingJ, .I2 = RingIacross, .W2 = 1, .I1 = RingI, .W1 = 1});
  for (int i = 0; i <= count; ++i) {
    const double angle = Pi / 2 * i / count;
    model.AddNode(RingRadius * std::sin(angle), RingRadius * std::cos(angle));
    if (i > 0) model.AddElement(7, {i, i + 1});
  }
  model.Hold(1, {X, Y, Z, RotX, RotY, RotZ});
  model.Load(count + 1, direction, 1);
  return program.Solve(model).Displacement(count + 1, direction);
}

std::vector<Case> Rings(const Program& program) {
  const double cube = RingRadius * RingRadius * RingRadius, GJ = RingE / 2.5 * RingJ;
  const double inPlane = Pi * cube / (4 * RingE * RingI);
  const double across = cube * (Pi / (4 * RingE * RingIacross) + (3 * Pi / 4 - 2) / GJ);
  const std::string data = "Curved cantilever, radii 4.12 and 4.32, t 0.1, 90°, E 1e7, nu 0.25, P 1, ";
  Case thin{data + "in its plane", "A", "7", Class::Converging, {}, 0.01};
  Case thinAcross{data + "across", "A", "7", Class::Converging, {}, 0.01};
  for (const int count : {6, 12, 24, 48}) {
    thin.values.push_back({std::to_string(count), "tip", inPlane, Ring(program, count, X)});
    thinAcross.values.push_back({std::to_string(count), "tip", across, Ring(program, count, Z)});
  }
  return {thin,
          {data + "in its plane", "MH", "7", Class::Within1, {{"6 beams", "tip", 0.08734, thin.values[0].ours}}},
          thinAcross,
          {data + "across", "MH", "7", Class::Within5, {{"6 beams", "tip", 0.5022, thinAcross.values[0].ours}}}};
}

Case OnSpring(const Program& program) {
  const double E = 210000, I = 8e6, L = 2000, F = 1000, k = 500;
  Model model = WithMaterial(2, {.E = E, .nu = 0.3, .area = 3000, .I1 = I, .W1 = 1});
  Material spring;
  spring.spring[1][1] = k;
  const int s = model.AddMaterial(spring);
  AddLine(model, 7, 1, {0, 0, 0}, {L, 0, 0});
  model.AddElement(16, {2}, s);
  model.Hold(1, {X, Y, RotZ});
  model.Load(2, Y, -F);
  return {"Cantilever on a nodal spring, L 2000, E 210000, I 8e6, k 500, F 1000",
          "A",
          "7, 16",
          Class::Exact,
          {{"1 beam", "tip", -F / (3 * E * I / (L * L * L) + k), program.Solve(model).Displacement(2, Y)}}};
}

Case Settlement(const Program& program) {
  const double E = 210000, I = 8e6, L = 4000, d = 10;
  Model model = WithMaterial(2, {.E = E, .nu = 0.3, .area = 3000, .I1 = I, .W1 = 80000});
  AddLine(model, 7, 2, {0, 0, 0}, {L, 0, 0});
  model.Hold(1, {X, Y, RotZ});
  model.Hold(3, {X, RotZ});
  model.Prescribe(3, Y, -d);
  const Results r = program.Solve(model);
  return {"Fixed beam with a settlement of 10, L 4000, E 210000, I 8e6",
          "A",
          "7",
          Class::Exact,
          {{"2 beams", "V", 12 * E * I * d / (L * L * L), r.Reaction(1, Y)},
           {"", "M", 6 * E * I * d / (L * L), r.Reaction(1, RotZ)},
           {"", "bending stress", 6 * E * I * d / (L * L) / 80000, std::abs(r.LineStress(1, 1, 13))}}};
}

Case String(const Program& program) {
  const double L1 = 300, L2 = 700, N = 5000, F = 40;
  // Type 17: pre-force in field 7.
  Model model = WithMaterial(1, {.E = 210000, .area = 2, .torsion = N});
  for (const double x : {0.0, L1, L1 + L2}) model.AddNode(x, 0);
  model.AddElement(17, {1, 2});
  model.AddElement(17, {2, 3});
  model.Hold(1, {X, Y});
  model.Hold(3, {X, Y});
  model.Load(2, Y, -F);
  return {"Pre-tensioned string, L1 300, L2 700, N 5000, F 40",
          "A",
          "17",
          Class::Exact,
          {{"2 elements", "deflection", -F * L1 * L2 / (N * (L1 + L2)), program.Solve(model).Displacement(2, Y)}}};
}

Case HangingBar(const Program& program) {
  const double E = 210000, rho = 7.85e-9, L = 50000, g = 9810;
  Model model = WithMaterial(0, {.E = E, .density = rho, .area = 100});
  AddLine(model, 1, 4, {0, 0, 0}, {0, 0, -L});
  model.Hold(1, {X, Y, Z});
  model.cases[0].type = 3;
  model.cases[0].values = {-g, 0, 0, 0, 1};
  const Results r = program.Solve(model);
  return {"Hanging bar under its own weight, L 50000, E 210000, density 7.85e-9, g 9810",
          "A",
          "1",
          Class::Exact,
          {{"4 bars", "tip", -rho * g * L * L / (2 * E), r.Displacement(5, Z)},
           {"", "top reaction, the whole weight", rho * 100 * g * L, r.Reaction(1, Z)}},
          1e-6};
}

Case TurnedBar(const Program& program) {
  const double E = 210000, rho = 7.85e-9, L = 1000, A = 100, I = 833.333, a = 50;
  Case result{"Bar turned about its fixed end with 50 rad/s², L 1000, 10 x 10, E 210000, density 7.85e-9",
              "A",
              "7",
              Class::Converging,
              {},
              0.01};
  for (const int count : {2, 4, 8, 16}) {
    Model model = WithMaterial(2, {.E = E, .nu = 0.3, .density = rho, .area = A, .I1 = I, .W1 = 1});
    AddLine(model, 7, count, {0, 0, 0}, {L, 0, 0});
    model.Hold(1, {X, Y, RotZ});
    model.cases[0].type = 6;
    model.cases[0].values = {a, 0, 0, 0, 1};
    result.values.push_back({std::to_string(count), "tip", 11 * rho * A * a * std::pow(L, 5) / (120 * E * I),
                             program.Solve(model).Displacement(count + 1, Y)});
  }
  return result;
}

Case Foundation(const Program& program) {
  const double E = 210000, I = 8e6, P = 50000, k = 10, b = std::pow(k / (4 * E * I), 0.25), half = 10 / b;
  Case result{"Endless beam on a foundation k 10 per length, E 210000, I 8e6, P 50000; a length of 20/b modelled",
              "H, A",
              "7, 16",
              Class::Converging,
              {},
              0.01};
  for (const int count : {20, 40, 80, 160}) {
    Model model = WithMaterial(2, {.E = E, .nu = 0.3, .area = 3000, .I1 = I, .W1 = 1});
    Material spring;
    spring.spring[1][1] = k * 2 * half / count;
    const int s = model.AddMaterial(spring);
    AddLine(model, 7, count, {-half, 0, 0}, {half, 0, 0});
    for (int node = 1; node <= count + 1; ++node) model.AddElement(16, {node}, s);
    model.Hold(1, {X});
    model.Load(count / 2 + 1, Y, -P);
    result.values.push_back({std::to_string(count), "deflection under P", -P * b / (2 * k),
                             program.Solve(model).Displacement(count / 2 + 1, Y)});
  }
  return result;
}

}  // namespace

Group Frames(const Program& program) {
  Group group{"Bars, beams, frames", Text, {Truss(program), Tripod(program), Overhangs(program)}};
  const auto add = [&](const std::vector<Case>& cases) {
    group.cases.insert(group.cases.end(), cases.begin(), cases.end());
  };
  add(SimpleBeams(program));
  add({TwoSpans(program), Cantilever(program, "along x", {1, 0, 0}), Cantilever(program, "along z", {0, 0, 1}),
       Cantilever(program, "along (1,1,1)", {1, 1, 1}), Portal(program), BentCantilever(program)});
  add(Rings(program));
  add({OnSpring(program), Settlement(program), String(program), HangingBar(program), TurnedBar(program),
       Foundation(program)});
  return group;
}

}  // namespace velmor::verification
