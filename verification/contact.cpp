// One-sided bars.

#include <cmath>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr const char* Text =
    R"(Source: CB: Chandrupatla, Belegundu, Introduction to Finite Elements in Engineering, the bar against a wall (1.5 and 1.2
mm, 200 and -40 MPa).

N and mm throughout, gaps of 100 times the stiffness of the structure at their place or more. The iteration ends at a
change of about 1e-4 mm, which is the accuracy of these values; forces of gaps are its stiffness times that. Beams that
lie on one-sided supports alone are not here: the supports take over each other's load and are lost, and rounding decides
whether the run ends as a mechanism or with a wrong result.

| Closed form | |
|---|---|
| cantilever with a stop g below its tip | R = P - 3 E I g/L³ |
| simple beam with a stop g below its middle | R = P - 48 E I g/L³ |
| beam on three supports, force P in the middle of the left span L, the right support one-sided | it lifts off by P L³/(16 E I) |
| two gaps in a row behind a bar of stiffness k | u = g1 + g2, R = P - k u |
)";

constexpr double EI = 210000 * 8e6;

/// A plane beam of three to five nodes at steps of 2000.
Model BeamModel(int count) {
  Model model = WithMaterial(2, {.E = 210000, .nu = 0.3, .area = 3000, .I1 = 8e6, .W1 = 80000});
  AddLine(model, 7, count, {0, 0, 0}, {2000.0 * count, 0, 0});
  return model;
}

/// A stop below a node at the clearance g, of stiffness k; returns its element.
int AddStop(Model& model, int node, double g, double k) {
  const Point at = model.At(node);
  const int foot = model.AddNode(at[0], at[1] - 200);
  model.Hold(foot, {X, Y, RotZ});
  return model.AddElement(14, {node, foot}, model.AddMaterial({.E = k, .area = 200, .turn = g}));
}

Case Wall(const Program& program) {
  Model model = WithMaterial(1, {.E = 20000, .nu = 0.3, .area = 250});
  const int gap = model.AddMaterial({.E = 1e8, .area = 250, .turn = 1.2});
  AddLine(model, 1, 2, {0, 0, 0}, {300, 0, 0});
  model.AddNode(400, 0);
  model.AddElement(14, {3, 4}, gap);
  for (int node = 1; node <= 4; ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  model.Hold(4, {X});
  model.Load(2, X, 60000);
  const Results r = program.Solve(model);
  return {"Bar against a wall, two bars of 150, A 250, E 20000, P 60000 at the middle, wall 1.2 beyond the end",
          "CB",
          "1, 14",
          Class::Within1,
          {{"2 bars", "u of the middle", 1.5, r.Displacement(2, X)},
           {"", "u of the end", 1.2, r.Displacement(3, X)},
           {"", "stress of the first bar", 200, r.LineStress(1, 1, 5)},
           {"", "stress of the second bar", -40, r.LineStress(2, 1, 5)},
           {"", "force of the wall", -10000, 250 * r.LineStress(3, 1, 5)}}};
}

Case CantileverStop(const Program& program) {
  const double L = 4000, P = 1000, g = 8;
  Model model = BeamModel(2);
  model.Hold(1, {X, Y, RotZ});
  AddStop(model, 3, g, 100 * 3 * EI / (L * L * L));
  model.Load(3, Y, -P);
  const Results r = program.Solve(model);
  return {"Cantilever with a stop 8 below its tip, L 4000, E I 1.68e12, P 1000",
          "A",
          "7, 14",
          Class::Within1,
          {{"2 beams", "tip", -g, r.Displacement(3, Y)},
           {"", "force of the stop", -(P - 3 * EI * g / (L * L * L)), 200 * r.LineStress(3, 1, 5)}}};
}

Case BeamStop(const Program& program) {
  const double L = 4000, P = 5000, g = 2;
  Model model = BeamModel(2);
  model.Hold(1, {X, Y});
  model.Hold(3, {Y});
  AddStop(model, 2, g, 100 * 48 * EI / (L * L * L));
  model.Load(2, Y, -P);
  const Results r = program.Solve(model);
  return {"Simple beam with a stop 2 below its middle, L 4000, E I 1.68e12, P 5000",
          "A",
          "7, 14",
          Class::Within1,
          {{"2 beams", "middle", -g, r.Displacement(2, Y)},
           {"", "force of the stop", -(P - 48 * EI * g / (L * L * L)), 200 * r.LineStress(3, 1, 5)}}};
}

Case StopOutOfReach(const Program& program) {
  const double L = 4000, P = 500, g = 8;
  Model model = BeamModel(2);
  model.Hold(1, {X, Y, RotZ});
  AddStop(model, 3, g, 100 * 3 * EI / (L * L * L));
  model.Load(3, Y, -P);
  return {"The cantilever with P 500, which does not reach the stop",
          "A",
          "7, 14",
          Class::Within1,
          {{"2 beams", "tip", -P * L * L * L / (3 * EI), program.Solve(model).Displacement(3, Y)}}};
}

Case LiftsOff(const Program& program) {
  const double L = 4000, P = 5000;
  Model model = BeamModel(4);
  model.Hold(1, {X, Y});
  model.Hold(3, {Y});
  AddStop(model, 5, 1, 100 * 3 * EI / (L * L * L));
  model.Load(2, Y, -P);
  const Results r = program.Solve(model);
  return {"Beam on three supports, spans 4000, E I 1.68e12, P 5000 in the left span, right support one-sided",
          "A",
          "7, 14",
          Class::Within1,
          {{"4 beams", "rise of the right end", P * L * L * L / (16 * EI), r.Displacement(5, Y)},
           {"", "deflection under P", -P * L * L * L / (48 * EI), r.Displacement(2, Y)}}};
}

/// A bar, a gap, a loose block of no mass and a second gap: they close together.
Case TwoInARow(const Program& program) {
  const double k = 20000.0 * 250 / 150, P = 60000, g1 = 0.5, g2 = 0.7;
  Model model = WithMaterial(1, {.E = 20000, .nu = 0.3, .area = 250});
  for (const double x : {0.0, 150.0, 250.0, 350.0}) model.AddNode(x, 0);
  model.AddElement(1, {1, 2});
  model.AddElement(14, {2, 3}, model.AddMaterial({.E = 100 * k, .area = 100, .turn = g1}));
  model.AddElement(14, {3, 4}, model.AddMaterial({.E = 100 * k, .area = 100, .turn = g2}));
  for (int node = 1; node <= 4; ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  model.Hold(4, {X});
  model.Load(2, X, P);
  const Results r = program.Solve(model);
  return {"Two gaps in a row with the clearances 0.5 and 0.7, behind a bar of 150, A 250, E 20000, P 60000",
          "A",
          "1, 14",
          Class::Within1,
          {{"1 bar", "u of the bar's end", g1 + g2, r.Displacement(2, X)},
           {"", "u between the gaps", g2, r.Displacement(3, X)},
           {"", "force of the first", -(P - k * (g1 + g2)), 100 * r.LineStress(2, 1, 5)},
           {"", "force of the second", -(P - k * (g1 + g2)), 100 * r.LineStress(3, 1, 5)}}};
}

/// Two bars in a row, the first stop, which certainly bears, as a support that has moved by its clearance.
Case StopBesideStop(const Program& program) {
  const double k = 20000.0 * 250 / 150, P = 30000, g1 = 0.5, g2 = 1.2;
  Model model = WithMaterial(1, {.E = 20000, .nu = 0.3, .area = 250});
  AddLine(model, 1, 2, {0, 0, 0}, {300, 0, 0});
  model.AddNode(400, 0);
  model.AddElement(14, {3, 4}, model.AddMaterial({.E = 100 * k, .area = 100, .turn = g2}));
  for (int node = 1; node <= 4; ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  model.Hold(4, {X});
  model.Prescribe(2, X, g1);
  model.Load(3, X, P);
  const Results r = program.Solve(model);
  return {
      "Two bars of 150 in a row with stops 0.5 and 1.2 beyond their ends, A 250, E 20000, P 30000 at the far end; the "
      "first stop as a support that has moved",
      "A",
      "1, 14",
      Class::Within1,
      {{"2 bars", "u of the far end", g2, r.Displacement(3, X)},
       {"", "force of its stop", -(P - k * (g2 - g1)), 100 * r.LineStress(3, 1, 5)}}};
}

}  // namespace

Group Contact(const Program& program) {
  return {"Gaps",
          Text,
          {Wall(program), CantileverStop(program), StopOutOfReach(program), BeamStop(program), LiftsOff(program),
           TwoInARow(program), StopBesideStop(program)}};
}

}  // namespace velmor::verification
