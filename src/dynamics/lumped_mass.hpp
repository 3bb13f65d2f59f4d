#pragma once

#include "base/table.hpp"
#include "base/vector3.hpp"
#include "model/model_sizes.hpp"

namespace velmor {

/// Mass per material, columns: 0 mass; 1, 2, 3 first moments m x, m y, m z; 4 m (z^2 + y^2); 5 m (z^2 + x^2);
/// 6 m (y^2 + x^2). Each element counts as one point mass at its centre.
using MaterialMass = Grid;

/// Adds m to the translations of a node: freedoms 1 and 2, and 3 in the codes of space. In code 2 freedom 3 is the
/// rotation, which is set to 0: it holds only what is added after the last translational mass.
void AddNodeMass(Column& MassVector, const ModelSizes& sizes, int analysisCode, double m, int node);

/// Adds m to freedom k of a node.
void AddRotaryMass(Column& MassVector, const ModelSizes& sizes, double m, int node, int k);

void AddMaterialMass(MaterialMass& byMaterial, int material, double m, const Vector3& centre);

}  // namespace velmor
