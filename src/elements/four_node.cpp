#include "elements/four_node.hpp"

#include "elements/assembly.hpp"
#include "elements/hybrid_plate.hpp"
#include "elements/membrane_quad.hpp"
#include "elements/polynomial_plate.hpp"
#include "elements/shear_plate.hpp"
#include "elements/table_plate.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "run/run.hpp"

namespace velmor {
namespace {

/// The membrane of a type: that of a shell, or the type itself.
int MembraneType(int type) {
  if (type == 9 || type == 10) return 5;
  return IsPlate(type) ? 4 : type;
}

Table<12, 12> MembraneStiffness(int type, const Material& material, const MappingTerms& map) {
  switch (MembraneType(type)) {
    case 5:
      return IncompatibleMembraneStiffness(material, map.a1, map.b2);
    case 12:
      return RectangleMembraneStiffness(material, map.a1, map.b2);
    default:
      return IsoparametricMembraneStiffness(material, map);
  }
}

Table<12, 12> HybridStiffness(Run& run, const Material& material, const MappingTerms& map, HybridShear shear) {
  run.work.plateTable.loaded = false;  // a type 11 element that follows reads PLAT.ELM again
  return HybridPlateStiffness(HybridPlateOf(material, map.a1, map.b2, shear));
}

Table<12, 12> TableStiffness(Run& run, const Material& material, const MappingTerms& map) {
  LoadPlateTable(run.programFolder, run.work.plateTable);
  return TablePlateStiffness(material, map.a1, map.b2, run.work.plateTable.P);
}

Table<12, 12> PlateStiffness(Run& run, int type, const Material& material, const MappingTerms& map) {
  switch (type) {
    case 8:
      return PolynomialPlateStiffness(material, map);
    case 9:
      return HybridStiffness(run, material, map, HybridShear::None);
    case 10:
      return HybridStiffness(run, material, map, HybridShear::Included);
    case 11:
      return TableStiffness(run, material, map);
    default:
      return ShearPlateStiffness(material, map.a1, map.b2);
  }
}

/// The deflection along the normal and the rotations about the two in-plane axes.
void AssemblePlate(Run& run, const QuadrilateralRecord& record, const Material& material, const Vector3& normal) {
  run.work.ElementStiffness = PlateStiffness(run, record.type, material, record.map);
  MirrorStiffness(run, 12);
  SetTranslationAxis(run, 1, normal);
  SetRotationAxis(run, 2, record.ex);
  SetRotationAxis(run, 3, record.ey);
  AddElement(run, 4, 3);
}

/// The rotation about the normal, which neither plate nor membrane resists: 1.0 from each node to the ground.
void AssembleDrilling(Run& run, const Vector3& normal) {
  auto& K = run.work.ElementStiffness;
  K.Clear();
  for (int i = 1; i <= 4; ++i) K(i, i) = 1;
  ClearElementAxes(run);
  SetRotationAxis(run, 1, normal);
  AddElement(run, 4, 1);
}

void AssembleMembrane(Run& run, const QuadrilateralRecord& record, const Material& material) {
  run.work.ElementStiffness = MembraneStiffness(record.type, material, record.map);
  MirrorStiffness(run, 8);
  ClearElementAxes(run);
  SetTranslationAxis(run, 1, record.ex);
  SetTranslationAxis(run, 2, record.ey);
  AddElement(run, 4, 2);
}

}  // namespace

void FourNodeElement(Run& run, ItemReader& dat, int type) {
  const QuadrilateralRecord record = ReadQuadrilateralRecord(dat, type, run.sizes.NodeCount);
  const Material& material = LoadMaterial(run.materials, record.material);
  PlaneStressFactor(material);  // an impossible Poisson's ratio fails in every type, also where the element is skipped
  if (record.map.a1 == 0 || record.map.b2 == 0) return;

  SetElementNodes(run, record.nodes);
  if (IsPlate(type)) {
    const Vector3 normal = Cross(record.ex, record.ey);
    AssemblePlate(run, record, material, normal);
    AssembleDrilling(run, normal);
  }
  AssembleMembrane(run, record, material);
}

}  // namespace velmor
