#include "elements/line_elements.hpp"

#include <cmath>

#include "elements/assembly.hpp"
#include "elements/small_matrix.hpp"
#include "model/element_records.hpp"
#include "run/run.hpp"

namespace velmor {
namespace {

constexpr int Order = 4;  // two nodes of two local freedoms

void ClearMatrix(Table<12, 12>& K) {
  for (int i = 1; i <= Order; ++i) {
    for (int j = 1; j <= Order; ++j) K(i, j) = 0;
  }
}

/// Reads a line element's record, sets its nodes and makes its material active.
LineRecord BeginLineElement(Run& run, ItemReader& dat, int type) {
  const LineRecord record = ReadLineRecord(dat, type, run.sizes.NodeCount);
  SetElementNodes(run, record.nodes);
  LoadMaterial(run.materials, record.material);
  return record;
}

/// The axial direction and the direction across it, which has no stiffness in a bar; in the plane it is the normal.
void SetBarAxes(Run& run, const Vector3& cosines) {
  ClearElementAxes(run);
  SetTranslationAxis(run, 1, cosines);
  SetTranslationAxis(run, 2, {cosines.y, -cosines.x, cosines.z});
}

void AssembleBar(Run& run, const LineRecord& record) {
  const Material& m = run.materials.active;
  AssembleAxialPiece(run, record.cosines, AxialStiffness(m.E, m.A, record.length));
}

void SetBendingAxes(Run& run, const Vector3& cosines, BendingPlane plane) {
  ClearElementAxes(run);
  if (run.analysisCode == 2) {  // the deflection lies in the plane, the rotation is the third nodal freedom
    SetTranslationAxis(run, 1, {-cosines.y, cosines.x, 0});
    SetTranslationAxis(run, 2, {0, 0, 1});
    return;
  }
  const double angle = run.materials.active.rotation * run.pi / 180;
  const BendingAxes axes = BendingAxesOf(TurnedSectionAxes(cosines, angle), plane);
  SetTranslationAxis(run, 1, axes.deflection);
  SetRotationAxis(run, 2, axes.rotation);
}

void AssembleBending(Run& run, const LineRecord& record, double I, BendingPlane plane) {
  SetBendingMatrix(run.materials.active.E, I, record.length, run.work.ElementStiffness);
  SetBendingAxes(run, record.cosines, plane);
  AddElement(run, 2, 2);
}

void AssembleTorsion(Run& run, const LineRecord& record) {
  const Material& m = run.materials.active;
  SetAxialMatrix(AxialStiffness(ShearModulus(m), m.J, record.length), run.work.ElementStiffness);
  ClearElementAxes(run);
  SetRotationAxis(run, 1, record.cosines);
  AddElement(run, 2, 2);
}

/// The part of a 6 by 6 spring matrix that an analysis code uses; code 2 takes the rotation about z, row 6.
int CopySpringMatrix(const SpringMatrix& spring, int analysisCode, int dofPerNode, Table<12, 12>& K) {
  const auto freedom = [&](int k) { return analysisCode == 2 && k == 3 ? 6 : k; };
  for (int i = 1; i <= dofPerNode; ++i) {
    for (int j = 1; j <= dofPerNode; ++j) K(i, j) = spring(freedom(i), freedom(j));
  }
  return dofPerNode;
}

}  // namespace

double AxialStiffness(double modulus, double section, double L) { return L == 0 ? 0 : section / L * modulus; }

void SetAxialMatrix(double k, Table<12, 12>& K) {
  ClearMatrix(K);
  K(1, 1) = K(3, 3) = k;
  K(1, 3) = K(3, 1) = -k;
}

void SetBendingMatrix(double E, double I, double L, Table<12, 12>& K) {
  const double k = L == 0 ? 0 : I / (L * L * L) * E;
  K(1, 1) = K(3, 3) = 12 * k;
  K(1, 3) = K(3, 1) = -12 * k;
  K(1, 2) = K(2, 1) = K(1, 4) = K(4, 1) = 6 * k * L;
  K(2, 3) = K(3, 2) = K(3, 4) = K(4, 3) = -6 * k * L;
  K(2, 2) = K(4, 4) = 4 * k * L * L;
  K(2, 4) = K(4, 2) = 2 * k * L * L;
}

SectionAxes TurnedSectionAxes(const Vector3& axis, double angle) {
  SectionAxes section = SectionAxesOf(axis);
  RotateAxisPair(angle, section.first, section.second);
  return section;
}

BendingAxes BendingAxesOf(const SectionAxes& section, BendingPlane plane) {
  if (plane == BendingPlane::First) return {section.first, section.second};
  return {section.second, -section.first};
}

double TransverseStiffness(const Material& material, double L) {
  if (L == 0) return 0;
  const double d = material.Iy, N = material.J;
  const double geometric = d == 0 ? 0 : (1 - L / std::sqrt(d * d + L * L)) * material.E * material.A / L;
  return geometric + N / L;
}

void AssembleAxialPiece(Run& run, const Vector3& cosines, double k) {
  SetAxialMatrix(k, run.work.ElementStiffness);
  SetBarAxes(run, cosines);
  AddElement(run, 2, 2);
}

void Bar(Run& run, ItemReader& dat, int type) { AssembleBar(run, BeginLineElement(run, dat, type)); }

void Beam(Run& run, ItemReader& dat, int type) {
  const LineRecord record = BeginLineElement(run, dat, type);
  AssembleBar(run, record);
  AssembleBending(run, record, run.materials.active.Iz, BendingPlane::First);
  if (run.analysisCode != 3) return;
  AssembleBending(run, record, run.materials.active.Iy, BendingPlane::Second);
  AssembleTorsion(run, record);
}

void TransverseBar(Run& run, ItemReader& dat, int type) {
  const LineRecord record = BeginLineElement(run, dat, type);
  const double k = TransverseStiffness(run.materials.active, record.length);
  auto& K = run.work.ElementStiffness;
  ClearMatrix(K);
  K(2, 2) = K(4, 4) = k;
  K(2, 4) = -k;
  SetBarAxes(run, record.cosines);
  AddElement(run, 2, 2);
  AssembleBar(run, record);
}

void NodalSpring(Run& run, ItemReader& dat, int type) {
  const SpringRecord record = ReadSpringRecord(dat, type, run.sizes.NodeCount);
  LoadMaterial(run.materials, record.material);
  run.work.ElementNodes(1) = record.node;
  const SpringMatrix& spring = run.materials.SpringTable[static_cast<std::size_t>(record.material)];
  const int localDof = CopySpringMatrix(spring, run.analysisCode, run.sizes.DofPerNode, run.work.ElementStiffness);
  ClearElementAxes(run);
  for (int k = 1; k <= 6; ++k) run.work.ElementAxes(k, k) = 1;
  AddElement(run, 1, localDof);
}

LineRecord Gap(Run& run, ItemReader& dat, int type, GapList& gaps) {
  const LineRecord record = BeginLineElement(run, dat, type);
  gaps.Add(record, run.materials.active);
  return record;
}

}  // namespace velmor
