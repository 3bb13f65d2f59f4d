#pragma once

#include <source_location>
#include <string>
#include <vector>

#include "base/table.hpp"

namespace velmor {

/// Fields 1 to 12 of a material of NAME.MLT, in the model's own units.
struct Material {
  double E = 0;            // 1: modulus of elasticity
  double nu = 0;           // 2: Poisson's ratio
  double density = 0;      // 3: mass density
  double A = 0;            // 4: section area of line elements, thickness of surface elements
  double planeStrain = 0;  // 5: zero is plane stress
  double rotation = 0;     // 6: turn of a section or of a triangle's load axes, degrees; limit of a gap
  double J = 0;            // 7: torsion constant of beams; axial pre-force of type 17
  double unused = 0;       // 8
  double Iy = 0;           // 9: second moment of area, second local axis of a beam; offset of type 17
  double Wy = 0;           // 10: section modulus that goes with field 9
  double Iz = 0;           // 11: second moment of area, first local axis of a beam
  double Wz = 0;           // 12: section modulus that goes with field 11
};

// Moduli that element families share; the thickness t is field 4.

/// G = E / (2 (1 + nu)). Failure 11 if nu is -1.
double ShearModulus(const Material& material, std::source_location where = std::source_location::current());
/// E t / (1 - nu^2), the in-plane stiffness of a plate in plane stress. Failure 11 if nu is 1 or -1.
double PlaneStressFactor(const Material& material, std::source_location where = std::source_location::current());
/// D = E t^3 / (12 (1 - nu^2)), the bending stiffness of a plate. Failure 11 if nu is 1 or -1.
double PlateRigidity(const Material& material, std::source_location where = std::source_location::current());

using SpringMatrix = Table<6, 6>;  // single precision values

/// What the stages hold of NAME.MLT, materials from 1, and the one that is active.
struct Materials {
  std::vector<Material> MaterialTable{1};  // row 0 holds nothing
  std::vector<SpringMatrix> SpringTable;   // empty where a stage reads no springs
  Material active;
  int activeNumber = 0;

  int Count() const { return static_cast<int>(MaterialTable.size()) - 1; }
};

/// Which part of NAME.MLT a stage needs.
enum class MaterialPart { Fields, FieldsAndSprings };

/// Reads NAME.MLT: the count, then name and 12 fields of each material, then, if asked for, a 6 by 6 spring
/// matrix for each. Failure 53 if it is missing, Cause::NoMaterials if its count cannot be read, 9 for more
/// materials than `limit`.
Materials ReadMaterials(const std::string& path, int limit, MaterialPart part,
                        std::source_location where = std::source_location::current());

/// Makes row m the active material and returns it; copied only when the number changes. Failure 9 if m is not one
/// of the materials read.
const Material& LoadMaterial(Materials& materials, int m, std::source_location where = std::source_location::current());

}  // namespace velmor
