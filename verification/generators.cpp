#include "generators.hpp"

#include <cmath>
#include <numbers>

namespace velmor::verification {

Mesh AddMesh(Model& model, int type, int nx, int ny, const std::function<Point(double s, double t)>& place,
             int material) {
  const Mesh mesh{model.NodeCount() + 1, nx, ny};
  for (int i = 0; i <= nx; ++i) {
    for (int j = 0; j <= ny; ++j)
      model.nodes.push_back(place(static_cast<double>(i) / nx, static_cast<double>(j) / ny));
  }
  for (int i = 0; i < nx; ++i) {
    for (int j = 0; j < ny; ++j) {
      const int a = mesh(i, j), b = mesh(i + 1, j), c = mesh(i + 1, j + 1), d = mesh(i, j + 1);
      if (type == 2 || type == 3) {
        model.AddElement(type, {a, b, c}, material);
        model.AddElement(type, {a, c, d}, material);
      } else {
        model.AddElement(type, {a, b, c, d}, material);
      }
    }
  }
  return mesh;
}

Mesh AddRectangle(Model& model, int type, int nx, int ny, double a, double b, int material) {
  return AddMesh(
      model, type, nx, ny,
      [&](double s, double t) {
        return Point{a * s, b * t, 0};
      },
      material);
}

int AddLine(Model& model, int type, int count, const Point& from, const Point& to, int material) {
  const int first = model.NodeCount() + 1;
  for (int i = 0; i <= count; ++i) {
    const double s = static_cast<double>(i) / count;
    model.nodes.push_back((1 - s) * from + s * to);
  }
  for (int i = 0; i < count; ++i) model.AddElement(type, {first + i, first + i + 1}, material);
  return first;
}

Model PatchTest(int type) {
  Model model = WithMaterial(1, {.E = 1e6, .nu = 0.25, .area = 0.001});
  model.nodes = {{0, 0, 0},       {0.24, 0, 0},    {0.24, 0.12, 0}, {0, 0.12, 0},
                 {0.04, 0.02, 0}, {0.18, 0.03, 0}, {0.16, 0.08, 0}, {0.08, 0.08, 0}};
  for (const auto& q : {std::array{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}, {5, 6, 7, 8}}) {
    if (type <= 3) {
      model.AddElement(type, {q[0], q[1], q[2]});
      model.AddElement(type, {q[0], q[2], q[3]});
    } else {
      model.AddElement(type, {q[0], q[1], q[2], q[3]});
    }
  }
  for (int node = 1; node <= 4; ++node) PrescribePatch(model, node);
  return model;
}

void PrescribePatch(Model& model, int node) {
  const auto [x, y, z] = model.At(node);
  model.Prescribe(node, X, (x + y / 2) / 1000);
  model.Prescribe(node, Y, (y + x / 2) / 1000);
}

Mesh AddCylinder(Model& model, int type, int nx, int ny, double R, double L, double angle) {
  return AddMesh(model, type, nx, ny, [&](double s, double t) {
    return Point{L * s, R * std::sin(angle * t), R * std::cos(angle * t)};
  });
}

Model Roof(int type, int n, double E, double load) {
  const double R = 25, L = 25, angle = 40 * std::numbers::pi / 180;
  Model model = WithMaterial(3, {.E = E, .nu = 0, .area = 0.25});
  const Mesh mesh = AddCylinder(model, type, n, n, R, L, angle);
  const double area = L / n * 2 * R * std::sin(angle / (2 * n));
  for (int i = 0; i <= n; ++i) {
    for (int j = 0; j <= n; ++j) {
      const double share = (i == 0 || i == n ? 0.5 : 1) * (j == 0 || j == n ? 0.5 : 1);
      model.Load(mesh(i, j), Z, -load * area * share);
    }
    model.Hold(mesh(i, 0), {Y, RotX, RotZ});  // crown
    model.Hold(mesh(0, i), {Y, Z});           // end wall
    model.Hold(mesh(n, i), {X, RotY, RotZ});  // middle of the length
  }
  return model;
}

void AddEqualMasses(Model& model, double mass) {
  for (int node = 1; node <= model.NodeCount(); ++node) {
    for (int k = 1; k <= model.Freedoms(); ++k) model.Load(node, k, mass);
  }
}

Model WithMaterial(int code, const Material& material) {
  Model model;
  model.analysisCode = code;
  model.AddMaterial(material);
  return model;
}

Point operator*(double factor, const Point& p) { return {factor * p[0], factor * p[1], factor * p[2]}; }
Point operator+(const Point& a, const Point& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
Point Cross(const Point& a, const Point& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Point Unit(const Point& a) { return 1 / std::sqrt(Dot(a, a)) * a; }

}  // namespace velmor::verification
