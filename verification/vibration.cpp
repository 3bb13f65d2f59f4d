// Frequencies, all with the same mass on every freedom.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr double Pi = std::numbers::pi;

constexpr const char* Text =
    R"(Sources: NP: thin square plate, simply supported, of NAFEMS, Selected Benchmarks for Natural Frequency Analysis (2.377,
5.942, 5.942, 9.507 Hz). L: Leissa, Vibration of Plates, 1969 (35.992 for the clamped square plate). B: Blevins, Formulas
for Natural Frequency and Mode Shape, 1979.

All models have the same mass on every freedom of every node, supported ones too, given in NAME.KNK; without that
periods are wrong (see the last section). A mode is the one whose frequency is nearest to the reference: the stage may
find modes out of order. It computes with π = 3.141593, hence limits of 1e-6. In a symmetric model its antimetric modes
grow out of rounding, and if they have not settled after its 21 passes their frequencies depend on the machine: so the
higher modes of the square plate are those of a half and of a quarter, simply supported where the nodal lines are.

| Closed form | |
|---|---|
| chain of four, fixed at one end, k = m = 1 | f = sin((2 i - 1) π/18)/π |
| chain of n - 1 between walls, k, m | f = sqrt(k/m) sin(i π/(2 n))/π; k = E A/l for a bar, N/l for a string |
| mass m on springs | f = sqrt(k/m)/(2 π) |
| simple beam | ω L² sqrt(m'/(E I)) = (i π)²; with n masses m' L/n instead, divided by sqrt(i⁴ Σ 1/(i + 2 q n)⁴), q over all whole numbers |
| beam fixed at both ends, fixed and simply supported (B) | ω L² sqrt(m'/(E I)) = 4.730041² = 22.37329, 3.926602² = 15.41821 |
)";

double Nearest(const std::vector<double>& found, double wanted) {
  return *std::min_element(found.begin(), found.end(),
                           [&](double a, double b) { return std::abs(a - wanted) < std::abs(b - wanted); });
}

std::string ModeName(int i) { return "f of mode " + std::to_string(i); }

Case Chain(const Program& program) {
  Model model = WithMaterial(1, {.E = 1, .area = 1});
  model.eigen = true;
  AddLine(model, 1, 4, {0, 0, 0}, {4, 0, 0});
  for (int node = 1; node <= 5; ++node) model.Hold(node, {Y});
  model.Hold(1, {X});
  AddEqualMasses(model, 1);
  const std::vector<double> found = program.Solve(model).Frequencies();
  Case result{"Chain of four equal masses, k = m = 1, fixed at one end", "A", "1", Class::Exact, {}, 2e-5,
              "the third mode has not settled after 21 passes"};
  for (int i = 1; i <= 4; ++i) {
    const double f = std::sin((2 * i - 1) * Pi / 18) / Pi;
    result.values.push_back({i == 1 ? "4 bars" : "", ModeName(i), f, Nearest(found, f)});
  }
  return result;
}

/// First mode of a bar or string between walls.
Case BetweenWalls(const Program& program, const std::string& name, int type, const Material& material, double L,
                  double k, double m, Direction moving) {
  const int n = 8;
  Model model = WithMaterial(1, material);
  model.eigen = true;
  AddLine(model, type, n, {0, 0, 0}, {L, 0, 0});
  for (int node = 1; node <= n + 1; ++node) model.Hold(node, {moving == X ? Y : X});
  model.Hold(1, {moving});
  model.Hold(n + 1, {moving});
  AddEqualMasses(model, m);
  const double f = std::sqrt(k / m) * std::sin(Pi / (2 * n)) / Pi;
  return {name,
          "A",
          std::to_string(type),
          Class::Exact,
          {{std::to_string(n), ModeName(1), f, Nearest(program.Solve(model).Frequencies(), f)}},
          1e-6};
}

/// One mass with a freedom at a time; freedoms that do not touch are no good case, see the last section of the page.
Case MassOnSprings(const Program& program) {
  const double m = 0.25, k[] = {400, 500, 600};
  Case result{"Mass 0.25 on a nodal spring of 400, 500, 600 along x, y, z, one direction free",
              "A",
              "16",
              Class::Exact,
              {},
              1e-6};
  for (const int direction : {X, Y, Z}) {
    Model model;
    model.analysisCode = 0;
    model.eigen = true;
    Material spring;
    for (std::size_t i = 0; i < 3; ++i) spring.spring[i][i] = k[i];
    model.AddMaterial(spring);
    model.AddNode(0, 0);
    model.AddElement(16, {1});
    for (const int other : {X, Y, Z}) {
      if (other != direction) model.Hold(1, {other});
    }
    AddEqualMasses(model, m);
    result.values.push_back({direction == X ? "1 node" : "", "f along " + std::string(1, "xyz"[direction - 1]),
                             std::sqrt(k[direction - 1] / m) / (2 * Pi), program.Solve(model).Frequencies().at(0)});
  }
  return result;
}

/// ω L² sqrt(m'/(E I)) of a beam's mode, with its rotations held at both, at the first or at no end.
double Beam(const Program& program, int count, int heldEnds, double wanted) {
  const double L = 8000, EI = 210000 * 8e6, perLength = 0.0001;
  Model model = WithMaterial(2, {.E = 210000, .nu = 0.3, .area = 3000, .I1 = 8e6, .W1 = 1});
  model.eigen = true;
  AddLine(model, 7, count, {0, 0, 0}, {L, 0, 0});
  for (int node = 1; node <= count + 1; ++node) model.Hold(node, {X});
  model.Hold(1, {Y});
  model.Hold(count + 1, {Y});
  if (heldEnds > 0) model.Hold(1, {RotZ});
  if (heldEnds > 1) model.Hold(count + 1, {RotZ});
  AddEqualMasses(model, perLength * L / count);
  const double unit = 2 * Pi * L * L * std::sqrt(perLength / EI);
  return Nearest(program.Solve(model).Frequencies(), wanted / unit) * unit;
}

/// What a mode of a simple beam becomes with n equal masses, by the Fourier terms of its nodal inertia forces.
double LumpedBeam(int mode, int n) {
  double sum = 0;
  for (int q = -2000; q <= 2000; ++q) sum += std::pow(static_cast<double>(mode) / (mode + 2 * q * n), 4);
  return mode * mode * Pi * Pi / std::sqrt(sum);
}

std::vector<Case> Beams(const Program& program) {
  const std::string quantity = "ω L² sqrt(m'/(E I))";
  std::vector<Case> cases;
  struct Ends {
    std::string name, source;
    int held, mode;
    double reference;
  };
  for (const Ends& ends : {Ends{"Simple beam", "A", 0, 1, Pi * Pi},
                           {"Simple beam", "A", 0, 2, 4 * Pi * Pi},
                           {"Beam fixed at one end, simply supported at the other", "B", 1, 1, 15.41821},
                           {"Beam fixed at both ends", "B", 2, 1, 22.37329}}) {
    Case c{
        ends.name + ", equal masses, mode " + std::to_string(ends.mode), ends.source, "7", Class::Converging, {}, 0.01};
    for (const int count : {4, 8, 16}) {
      c.values.push_back(
          {std::to_string(count), quantity, ends.reference, Beam(program, count, ends.held, ends.reference)});
    }
    cases.push_back(c);
  }
  Case lumped{"Simple beam of eight equal masses", "A", "7", Class::Exact, {}, 1e-6};
  for (int mode = 1; mode <= 3; ++mode) {
    const double reference = LumpedBeam(mode, 8);
    lumped.values.push_back(
        {mode == 1 ? "8" : "", quantity + ", mode " + std::to_string(mode), reference, Beam(program, 8, 0, reference)});
  }
  cases.push_back(lumped);
  return cases;
}

/// First frequency of a plate of 50 mm, a by b, by nx by ny elements of the same mass, in N, mm, t.
double Plate(const Program& program, int type, int nx, int ny, double a, double b, bool clamped) {
  const double t = 50, density = 8e-9;
  Model model = WithMaterial(3, {.E = 200000, .nu = 0.3, .area = t});
  model.eigen = true;
  const Mesh mesh = AddRectangle(model, type, nx, ny, a, b);
  for (int node = 1; node <= model.NodeCount(); ++node) model.Hold(node, {X, Y, RotZ});
  const auto support = [&](int node, Direction along, Direction across) {
    model.Hold(node, {Z, along});
    if (clamped) model.Hold(node, {across});
  };
  for (int i = 0; i <= nx; ++i) {
    for (const int j : {0, ny}) support(mesh(i, j), RotY, RotX);
  }
  for (int j = 0; j <= ny; ++j) {
    for (const int i : {0, nx}) support(mesh(i, j), RotX, RotY);
  }
  AddEqualMasses(model, density * t * a * b / (nx * ny));
  return program.Solve(model).Frequencies().at(0);
}

std::vector<Case> SquarePlates(const Program& program) {
  const double a = 10000, unit = 2 * Pi * a * a * std::sqrt(8e-9 * 50 * 12 * 0.91 / (200000 * 125000.0));
  std::vector<Case> cases;
  const auto add = [&](const std::string& name, const std::string& source, int type, const std::string& quantity,
                       double reference, const auto& solve) {
    Case c{name, source, std::to_string(type), Class::Converging, {}, 0.01};
    for (const int n : {4, 8, 16}) {
      c.values.push_back({std::to_string(n) + " x " + std::to_string(n), quantity, reference, solve(n)});
    }
    cases.push_back(c);
  };
  const std::string name = "Thin square plate, simply supported, 10 m x 10 m x 50 mm, E 200000, nu 0.3, density 8e-9, ";
  for (const int type : {8, 9, 10, 11}) {
    add(name + "mode 1", "NP", type, "f", 2.377, [&](int n) { return Plate(program, type, n, n, a, a, false); });
    add(name + "modes 2 and 3, one of two halves", "NP", type, "f", 5.942,
        [&](int n) { return Plate(program, type, n / 2, n, a / 2, a, false); });
    add(name + "mode 4, one of four quarters", "NP", type, "f", 9.507,
        [&](int n) { return Plate(program, type, n / 2, n / 2, a / 2, a / 2, false); });
  }
  for (const int type : {9, 11}) {
    add("The same plate clamped, mode 1", "L", type, "ω a² sqrt(ρ t/D)", 35.992,
        [&](int n) { return Plate(program, type, n, n, a, a, true) * unit; });
  }
  return cases;
}

}  // namespace

Group Vibration(const Program& program) {
  Group group{"Frequencies", Text, {Chain(program)}};
  const auto add = [&](const std::vector<Case>& cases) {
    group.cases.insert(group.cases.end(), cases.begin(), cases.end());
  };
  add({BetweenWalls(program, "Bar between walls, L 4000, E A 2.1e7, masses 0.01", 1, {.E = 210000, .area = 100}, 4000,
                    210000 * 100 / 500.0, 0.01, X),
       BetweenWalls(program, "String between walls, L 1000, N 5000, masses 0.001", 17,
                    {.E = 210000, .area = 2, .torsion = 5000}, 1000, 5000 / 125.0, 0.001, Y),
       MassOnSprings(program)});
  add(Beams(program));
  add(SquarePlates(program));
  return group;
}

}  // namespace velmor::verification
