#include "elements/triangle.hpp"

#include "elements/assembly.hpp"
#include "model/element_types.hpp"
#include "run/run.hpp"

namespace velmor {

TriangleSlopes TriangleSlopesOf(const TriangleRecord& triangle) {
  TriangleSlopes slopes;
  slopes.b(1) = triangle.y23;
  slopes.b(2) = -triangle.y13;
  slopes.b(3) = triangle.y12;
  slopes.c(1) = -triangle.x23;
  slopes.c(2) = triangle.x13;
  slopes.c(3) = -triangle.x12;
  return slopes;
}

Table<12, 12> TriangleStiffness(const Material& material, const TriangleSlopes& slopes, double area) {
  const auto& [b, c] = slopes;
  const double nu = material.nu;
  const double g = (1 - nu) / 2;
  const double C = PlaneStressFactor(material) / 4 / area;
  Table<12, 12> K;
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) {
      K(2 * i - 1, 2 * j - 1) = C * (b(i) * b(j) + g * c(i) * c(j));
      K(2 * i, 2 * j) = C * (c(i) * c(j) + g * b(i) * b(j));
      K(2 * i - 1, 2 * j) = K(2 * j, 2 * i - 1) = C * (nu * b(i) * c(j) + g * c(i) * b(j));
    }
  }
  return K;
}

void Triangle(Run& run, ItemReader& dat, int type) {
  if (type == TrimsType) run.display.MessageBox("TRIMS ELEMENT IS NOT SUPPORTED");
  const TriangleRecord record = ReadTriangleRecord(dat, type, run.sizes.NodeCount);
  Material material = LoadMaterial(run.materials, record.material);
  if (record.area == 0) return;
  if (type == DoubleTriangleType) material.E /= 2;  // four triangles cover the quadrilateral twice

  SetElementNodes(run, record.nodes);
  run.work.ElementStiffness = TriangleStiffness(material, TriangleSlopesOf(record), record.area);
  SetTranslationAxis(run, 1, record.ex);
  SetTranslationAxis(run, 2, record.ey);
  AddElement(run, 3, 2);
}

}  // namespace velmor
