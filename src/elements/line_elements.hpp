#pragma once

#include "base/item_reader.hpp"
#include "base/table.hpp"
#include "base/vector3.hpp"
#include "elements/gap_list.hpp"
#include "elements/materials.hpp"
#include "model/element_geometry.hpp"
#include "model/element_records.hpp"

namespace velmor {

struct Run;

// Line and nodal elements. A beam is assembled as separate two-node pieces: axial bar, one or two bending planes,
// torsion, each with two local freedoms per node.

/// Stiffness of an elastic bar or shaft between two nodes: (modulus times section) / L; 0 if L is 0.
double AxialStiffness(double modulus, double section, double L);

/// K of a two-node piece with stiffness k in its first local freedom and none in its second, order 4.
void SetAxialMatrix(double k, Table<12, 12>& K);

/// K of a beam in one plane, rows and columns v1, r1, v2, r2 (deflection and rotation of node 1, then of node 2):
///
///     k = E I / L^3;   12k  6kL  -12k  6kL | 4kL^2  -6kL  2kL^2 | 12k  -6kL | 4kL^2
///
/// both triangles; 0 if L is 0. Euler-Bernoulli beam without shear, e.g. Przemieniecki, Theory of Matrix Structural
/// Analysis, section 5.6.
void SetBendingMatrix(double E, double I, double L, Table<12, 12>& K);

/// Principal section axes of a beam along `axis`, turned about it by `angle` in radians.
SectionAxes TurnedSectionAxes(const Vector3& axis, double angle);

/// A bending plane of a beam: deflection along `deflection`, rotation about `rotation`, in global components.
enum class BendingPlane { First, Second };  // deflection along the first or the second section axis
struct BendingAxes {
  Vector3 deflection, rotation;
};
BendingAxes BendingAxesOf(const SectionAxes& section, BendingPlane plane);

/// Transverse stiffness g + s of type 17: g = (1 - L / sqrt(d^2 + L^2)) E A / L from the offset d (field 9), 0 if d
/// or L is 0; s = N / L from the axial pre-force N (field 7), 0 if L is 0.
double TransverseStiffness(const Material& material, double L);

// Element routines: read the rest of a record, load its material and assemble. Failure 9 for a node or material
// outside the model, 13 or 62 for a record that does not read.

void Bar(Run& run, ItemReader& dat, int type);            // type 1
void Beam(Run& run, ItemReader& dat, int type);           // type 7
void TransverseBar(Run& run, ItemReader& dat, int type);  // type 17
void NodalSpring(Run& run, ItemReader& dat, int type);    // type 16
/// Type 14: no stiffness; a line to the gap list. Returns the record, with which the gap iteration goes on.
LineRecord Gap(Run& run, ItemReader& dat, int type, GapList& gaps);

/// Assembles stiffness k along the record's axis, with the axes of a bar.
void AssembleAxialPiece(Run& run, const Vector3& cosines, double k);

}  // namespace velmor
