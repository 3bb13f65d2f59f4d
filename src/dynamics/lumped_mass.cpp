#include "dynamics/lumped_mass.hpp"

namespace velmor {

void AddNodeMass(Column& MassVector, const ModelSizes& sizes, int analysisCode, double m, int node) {
  MassVector(sizes.Equation(node, 1)) += m;
  MassVector(sizes.Equation(node, 2)) += m;
  if (IsSpatial(analysisCode)) MassVector(sizes.Equation(node, 3)) += m;
  if (analysisCode == 2) MassVector(sizes.Equation(node, 3)) = 0;
}

void AddRotaryMass(Column& MassVector, const ModelSizes& sizes, double m, int node, int k) {
  MassVector(sizes.Equation(node, k)) += m;
}

void AddMaterialMass(MaterialMass& byMaterial, int material, double m, const Vector3& centre) {
  const auto& [x, y, z] = centre;
  const double columns[] = {m, m * x, m * y, m * z, m * (z * z + y * y), m * (z * z + x * x), m * (y * y + x * x)};
  for (int column = 0; column <= 6; ++column) byMaterial(material, column) += columns[column];
}

}  // namespace velmor
