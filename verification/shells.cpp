// Shells of flat elements, and plates turned in space.

#include <cmath>
#include <numbers>

#include "cases.hpp"
#include "generators.hpp"

namespace velmor::verification {
namespace {

constexpr double Degree = std::numbers::pi / 180;

constexpr const char* Text =
    R"(Sources: SL: the roof of Scordelis and Lo (1964) as MacNeal, Harder (1985) give it, 0.3024. PC: pinched cylinder with end
diaphragms, 1.8248e-5; Belytschko and others, Computer Methods in Applied Mechanics and Engineering 51 (1985).

Curved surfaces are facets: rectangles whose corners lie on the cylinder. A quarter of the roof and an eighth of the
cylinder are modelled.

| Closed form | |
|---|---|
| ring under inner pressure | p R²/(E t), outwards |
| plate turned in space | the deflection along its normal is that of the plate in the X-Y plane |
)";

Case RoofCase(const Program& program, int type) {
  Case result{"Roof, R 25, L 50, t 0.25, 80°, E 4.32e8, nu 0, 90 per area down",
              "SL",
              std::to_string(type),
              Class::Converging,
              {},
              0.01};
  for (const int n : {2, 4, 8, 16, 32}) {
    const Model model = Roof(type, n, 4.32e8, 90);
    result.values.push_back({std::to_string(n) + " x " + std::to_string(n), "w of the middle of the free edge", -0.3024,
                             program.Solve(model).Displacement(model.NodeCount(), Z)});
  }
  return result;
}

Case PinchedCylinder(const Program& program, int type) {
  Case result{"Pinched cylinder, R 300, L 600, t 3, E 3e6, nu 0.3, P 1",
              "PC",
              std::to_string(type),
              Class::Converging,
              {},
              0.05};
  for (const int n : {4, 8, 16, 32}) {
    Model model = WithMaterial(3, {.E = 3e6, .nu = 0.3, .area = 3});
    const Mesh mesh = AddCylinder(model, type, n, n, 300, 300, 90 * Degree);
    for (int i = 0; i <= n; ++i) {
      model.Hold(mesh(i, 0), {Y, RotX, RotZ});
      model.Hold(mesh(i, n), {Z, RotX, RotY});
      model.Hold(mesh(0, i), {Y, Z});
      model.Hold(mesh(n, i), {X, RotY, RotZ});
    }
    model.Load(mesh(n, 0), Z, -0.25);
    result.values.push_back({std::to_string(n) + " x " + std::to_string(n), "w under the force", -1.8248e-5,
                             program.Solve(model).Displacement(mesh(n, 0), Z)});
  }
  return result;
}

Case Ring(const Program& program, int type) {
  const double R = 400, t = 4, E = 210000, p = 2, width = 50;
  Case result{"Ring under inner pressure, R 400, t 4, E 210000, nu 0, p 2",
              "A",
              std::to_string(type),
              Class::Converging,
              {},
              0.01};
  for (const int n : {4, 8, 16, 32}) {
    Model model = WithMaterial(3, {.E = E, .nu = 0, .area = t});
    const Mesh mesh = AddCylinder(model, type, 1, n, R, width, 90 * Degree);
    const double chord = 2 * R * std::sin(45 * Degree / n);
    for (int i = 0; i <= 1; ++i) {
      for (int j = 0; j < n; ++j) {
        const double middle = 90 * Degree * (j + 0.5) / n, force = p * chord * width / 4;
        for (const int node : {mesh(i, j), mesh(i, j + 1)}) {
          model.Load(node, Y, force * std::sin(middle));
          model.Load(node, Z, force * std::cos(middle));
        }
      }
      for (int j = 0; j <= n; ++j) model.Hold(mesh(i, j), {X});
      model.Hold(mesh(i, 0), {Y, RotX, RotZ});
      model.Hold(mesh(i, n), {Z, RotX, RotY});
    }
    result.values.push_back({std::to_string(n) + " facets of 90°", "outward displacement", p * R * R / (E * t),
                             program.Solve(model).Displacement(mesh(0, 0), Z)});
  }
  return result;
}

/// Deflection along the normal of the middle of a clamped plate that is spanned by two directions.
double ClampedPlate(const Program& program, int type, const Point& along, const Point& across) {
  Model model = WithMaterial(3, {.E = 210000, .nu = 0.3, .area = 10});
  const Mesh mesh =
      AddMesh(model, type, 4, 6, [&](double s, double t) { return 1000 * s * along + 1500 * t * across; });
  for (int i = 0; i <= mesh.nx; ++i) {
    for (int j = 0; j <= mesh.ny; ++j) {
      if (i == 0 || j == 0 || i == mesh.nx || j == mesh.ny) model.Hold(mesh(i, j), {X, Y, Z, RotX, RotY, RotZ});
    }
  }
  for (int element = 1; element <= model.ElementCount(); ++element) model.LoadElement(element, 3, 0.125);
  return program.Solve(model).Along(mesh(2, 3), Cross(along, across));
}

Case Turned(const Program& program, int type) {
  const Point along = Unit({2, -1, 3}), across = Unit(Cross({1, 1, 0.3}, along));
  return {"Clamped plate turned in space, 1000 x 1500 x 10, E 210000, nu 0.3, q 0.125 as element loads",
          "A",
          std::to_string(type),
          Class::Exact,
          {{"4 x 6", "w along the normal", ClampedPlate(program, type, {1, 0, 0}, {0, 1, 0}),
            ClampedPlate(program, type, along, across)}}};
}

}  // namespace

Group Shells(const Program& program) {
  Group group{"Shells", Text, {}};
  for (const int type : {9, 10, 11}) group.cases.push_back(RoofCase(program, type));
  for (const int type : {9, 10, 11}) group.cases.push_back(PinchedCylinder(program, type));
  for (const int type : {9, 11}) group.cases.push_back(Ring(program, type));
  for (const int type : {8, 9, 10, 11}) group.cases.push_back(Turned(program, type));
  return group;
}

}  // namespace velmor::verification
