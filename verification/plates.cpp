// Flat plates.

#include <cmath>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr const char* Text =
    R"(Sources: N: Navier's double series, summed (Timoshenko, Woinowsky-Krieger, Theory of Plates and Shells, 2nd ed.; they
print 0.00406 and 0.0116). TW: the same book's tables of clamped plates and of plates with two free edges. Z: Zienkiewicz,
The Finite Element Method, the table of the rectangle with twelve terms; its pressure goes to the nodes as forces alone,
as it does here. MH: MacNeal, Harder (1985), as above.

Meshes count elements over the whole plate; a quarter is modelled. Simply supported edges hold the deflection and the
slope along the edge. D = E t³/(12 (1 - ν²)), ν = 0.3, and unless said a = 2000, t = 10, E = 210000. The plates of MH are
1e-4 thick with E 1.7472e7, q 1e-4, P 4e-4; here the unit of force is 1e-9 of theirs, since their D of 1.6e-6 does not go
with this program's drilling stiffness ([limits.md](limits.md)). Deflections do not depend on that unit.

| Closed form | |
|---|---|
| patch | w = (x² + x y + y²)/2000 on the border: the same inside, bending stress E t/(2 (1 - ν))/1000 both ways |
| twist, three corners held and a force P on the fourth | w = P a b/(2 D (1 - ν)) there |
| strip of endless length and width a, clamped on both sides | q a⁴/(384 D) |
| strip, ν = 0, clamped at one end, force P per width at the other | P L³/(3 D) |
)";

/// A quarter of a plate from its corner at the origin to its middle; the edges x = 0 and y = 0 are supported.
struct QuarterPlate {
  double a = 2000, b = 2000, t = 10, E = 210000;
  double q = 0, P = 0;  // pressure, and a force in the middle, along z
  bool clamped = false;
  bool free = false;  // the edges y = 0 and y = b are free

  double D() const { return E * t * t * t / (12 * (1 - 0.09)); }

  /// The model with nx by ny elements over the whole plate.
  Model Build(int type, int nx, int ny) const {
    Model model = WithMaterial(3, {.E = E, .nu = 0.3, .area = t});
    const Mesh mesh = AddRectangle(model, type, nx / 2, ny / 2, a / 2, b / 2);
    for (int i = 0; i <= mesh.nx; ++i) {
      if (!free) model.Hold(mesh(i, 0), {Z, RotY});
      if (clamped) model.Hold(mesh(i, 0), {RotX});
      model.Hold(mesh(i, mesh.ny), {Y, RotX});
    }
    for (int j = 0; j <= mesh.ny; ++j) {
      model.Hold(mesh(0, j), {Z, RotX});
      if (clamped) model.Hold(mesh(0, j), {RotY});
      model.Hold(mesh(mesh.nx, j), {X, RotY});
    }
    if (q != 0) {
      for (int element = 1; element <= model.ElementCount(); ++element) model.LoadElement(element, 3, q);
    }
    if (P != 0) model.Load(mesh.Last(), Z, P / 4);
    return model;
  }

  /// Deflection of the middle.
  double Solve(const Program& program, int type, int nx, int ny) const {
    const Model model = Build(type, nx, ny);
    return program.Solve(model).Displacement(model.NodeCount(), Z);
  }
};

std::string Size(int nx, int ny) { return std::to_string(nx) + " x " + std::to_string(ny); }

/// The four square plates with their deflections in w D/(q a⁴) or w D/(P a²).
struct Square {
  std::string name, source, quantity;
  QuarterPlate plate;
  double reference;
  double table[4];  // of the element with twelve terms, 2 x 2 to 16 x 16
  double Coefficient(const Program& program, int type, int n) const {
    const double a = plate.a;
    const double unit = plate.q != 0 ? plate.q * a * a * a * a : plate.P * a * a;
    return plate.Solve(program, type, n, n) * plate.D() / unit;
  }
};

const Square Squares[] = {
    {"Square plate, simply supported, uniform load",
     "N",
     "w D/(q a⁴)",
     {.q = 0.0078125},
     0.00406235,
     {0.003446, 0.003939, 0.004033, 0.004056}},
    {"Square plate, simply supported, central force",
     "N",
     "w D/(P a²)",
     {.P = 1000},
     0.0116008,
     {0.013784, 0.012327, 0.011829, 0.011671}},
    {"Square plate, clamped, uniform load",
     "TW",
     "w D/(q a⁴)",
     {.q = 0.0078125, .clamped = true},
     0.00126,
     {0.001480, 0.001403, 0.001304, 0.001275}},
    {"Square plate, clamped, central force",
     "TW",
     "w D/(P a²)",
     {.P = 1000, .clamped = true},
     0.00560,
     {0.005919, 0.006134, 0.005803, 0.005672}},
};

Case SquareCase(const Program& program, const Square& square, int type) {
  Case result{square.name, square.source, std::to_string(type), Class::Converging, {}, 0.01};
  for (const int n : {2, 4, 8, 16, 32}) {
    result.values.push_back({Size(n, n), square.quantity, square.reference, square.Coefficient(program, type, n)});
  }
  return result;
}

Case TableCase(const Program& program, const Square& square) {
  Case result{square.name + ", table of the element",        "Z", "11", Class::Within1, {}, 0,
              "2 x 2 to 8 x 8 as printed, 16 x 16 to 0.03 %"};
  int n = 2;
  for (const double reference : square.table) {
    result.values.push_back({Size(n, n), square.quantity, reference, square.Coefficient(program, 11, n)});
    n *= 2;
  }
  return result;
}

struct Standard {
  double length;
  bool clamped, force;
  double w;
  double limit = 0.01;
  std::string source = "MH", why = {};
};

const Standard Standards[] = {
    {2, false, false, 4.062},
    {2, false, true, 11.60},
    {2, true, false, 1.26},
    {2, true, true, 5.60},
    {10, false, false, 12.97},
    {10, false, true, 16.96},
    {10, true, false, 2.56, 0.05, "MH", "the published value is 1.7 % below the endless strip, which is the next case"},
    {10, true, false, 1e5 * 16 / (384 * 1600), 0.01, "A"},
    {10, true, true, 7.23, 0.05},
};

Case StandardPlate(const Program& program, const Standard& s, int type) {
  const QuarterPlate plate{.a = 2,
                           .b = s.length,
                           .t = 1e-4,
                           .E = 1.7472e16,
                           .q = s.force ? 0 : 1e5,
                           .P = s.force ? 4e5 : 0,
                           .clamped = s.clamped};
  Case c{std::string("Plate 2 x ") + (s.length == 2 ? "2, " : "10, ") +
             (s.clamped ? "clamped, " : "simply supported, ") + (s.force ? "central force" : "uniform load") +
             (s.source == "A" ? ", beside the endless strip" : ""),
         s.source,
         std::to_string(type),
         Class::Converging,
         {},
         s.limit,
         s.why};
  for (const int n : {4, 8, 16, 32}) c.values.push_back({Size(n, n), "w", s.w, plate.Solve(program, type, n, n)});
  return c;
}

Case FreeEdges(const Program& program, int type) {
  Case result{"Square plate, two opposite edges simply supported, two free, uniform load",
              "TW",
              std::to_string(type),
              Class::Converging,
              {},
              0.01};
  const QuarterPlate plate{.q = 0.0078125, .free = true};
  for (const int n : {2, 4, 8, 16, 32}) {
    result.values.push_back({Size(n, n), "w D/(q a⁴)", 0.01309,
                             plate.Solve(program, type, n, n) * plate.D() / (plate.q * std::pow(plate.a, 4))});
  }
  return result;
}

Case MiddleStress(const Program& program, int type) {
  Case result{"Square plate, simply supported, uniform load, moment of the middle from its bending stress σ t²/6",
              "TW",
              std::to_string(type),
              Class::Converging,
              {},
              0.01};
  const QuarterPlate plate{.q = 0.0078125};
  for (const int n : {4, 8, 16, 32}) {
    const Model model = plate.Build(type, n, n);
    const double stress = program.Solve(model).AverageLocalStress(model.ElementCount(), model.NodeCount(), 12);
    result.values.push_back(
        {Size(n, n), "M/(q a²)", 0.0479, std::abs(stress) * plate.t * plate.t / 6 / (plate.q * plate.a * plate.a)});
  }
  return result;
}

/// A quadratic deflection on the border of unequal rectangles has to go on inside.
Case Patch(const Program& program, int type) {
  const double E = 210000, t = 2, ofX[] = {0, 50, 160, 240}, ofY[] = {0, 30, 70, 120};
  Model model = WithMaterial(3, {.E = E, .nu = 0.3, .area = t});
  AddMesh(model, type, 3, 3, [&](double s, double q) {
    return Point{ofX[std::lround(3 * s)], ofY[std::lround(3 * q)], 0};
  });
  const auto deflection = [](const Point& p) { return (p[0] * p[0] + p[0] * p[1] + p[1] * p[1]) / 2000; };
  std::vector<int> inner;
  for (int node = 1; node <= model.NodeCount(); ++node) {
    const auto [x, y, z] = model.At(node);
    model.Hold(node, {X, Y});
    if (x != 0 && x != 240 && y != 0 && y != 120) {
      inner.push_back(node);
      continue;
    }
    const double slope = (2 * x + y) / 2000;
    model.Prescribe(node, Z, deflection({x, y, 0}));
    model.Prescribe(node, RotX, (x + 2 * y) / 2000);
    model.Prescribe(node, RotY, type == 8 ? slope : -slope);
  }
  const Results r = program.Solve(model);
  double ratio = 1;
  for (const int node : inner) {
    const double here = r.Displacement(node, Z) / deflection(model.At(node));
    if (std::abs(here - 1) > std::abs(ratio - 1)) ratio = here;
  }
  const double stress = E * t / (2 * 0.7) / 1000;
  double worstStress = stress;
  for (const auto& line : r.LocalStresses()) {
    for (const std::size_t item : {10U, 11U}) {
      const double size = std::abs(line.at(item));
      if (std::abs(size - stress) > std::abs(worstStress - stress)) worstStress = size;
    }
  }
  return {"Plate patch, 240 x 120 x 2",
          "A",
          std::to_string(type),
          Class::Exact,
          {{"3 x 3 unequal", "w over its right value, worst inner node", 1, ratio},
           {"", "bending stress, worst corner", stress, worstStress}}};
}

Case Twist(const Program& program, int type) {
  const double a = 900, b = 600, t = 6, E = 210000, P = 100, D = E * t * t * t / (12 * 0.91);
  Model model = WithMaterial(3, {.E = E, .nu = 0.3, .area = t});
  const Mesh mesh = AddRectangle(model, type, 3, 3, a, b);
  model.Hold(mesh(0, 0), {X, Y, Z});
  model.Hold(mesh(3, 0), {Y, Z});
  model.Hold(mesh(0, 3), {Z});
  model.Load(mesh.Last(), Z, P);
  return {"Plate twisted by a force on its fourth corner, 900 x 600 x 6, P 100",
          "A",
          std::to_string(type),
          Class::Exact,
          {{"3 x 3", "w", P * a * b / (2 * D * 0.7), program.Solve(model).Displacement(mesh.Last(), Z)}}};
}

Case Strip(const Program& program, int type) {
  const double L = 500, b = 100, t = 5, E = 210000, P = 2, D = E * t * t * t / 12;
  Model model = WithMaterial(3, {.E = E, .nu = 0, .area = t});
  const Mesh mesh = AddRectangle(model, type, 5, 1, L, b);
  for (int j = 0; j <= 1; ++j) {
    model.Hold(mesh(0, j), {X, Y, Z, RotX, RotY});
    model.Load(mesh(5, j), Z, -P * b / 2);
  }
  return {"Cantilever strip, ν = 0, 500 x 100 x 5, P 2",
          "A",
          std::to_string(type),
          type == 8 || type == 11 ? Class::Exact : Class::Within1,
          {{"5 x 1", "w", -P * L * L * L / (3 * D), program.Solve(model).Displacement(mesh.Last(), Z)}}};
}

}  // namespace

Group Plates(const Program& program) {
  Group group{"Plates", Text, {}};
  for (const int type : {8, 9, 10, 11}) group.cases.push_back(Patch(program, type));
  for (const int type : {8, 9, 10, 11}) group.cases.push_back(Twist(program, type));
  for (const int type : {8, 9, 10, 11}) group.cases.push_back(Strip(program, type));
  for (const Square& square : Squares) {
    for (const int type : {8, 9, 10, 11}) group.cases.push_back(SquareCase(program, square, type));
    group.cases.push_back(TableCase(program, square));
  }
  for (const int type : {9, 10, 11}) group.cases.push_back(MiddleStress(program, type));
  for (const int type : {9, 10, 11}) group.cases.push_back(FreeEdges(program, type));
  for (const Standard& standard : Standards) {
    for (const int type : {8, 9, 10, 11}) {
      if (standard.length == 2 && type != 9) continue;  // the square plates above in other units
      group.cases.push_back(StandardPlate(program, standard, type));
    }
  }
  return group;
}

}  // namespace velmor::verification
