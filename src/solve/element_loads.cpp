#include "solve/element_loads.hpp"

#include <array>
#include <cmath>
#include <string>

#include "base/failure.hpp"
#include "base/vector3.hpp"
#include "elements/small_matrix.hpp"
#include "model/element_geometry.hpp"
#include "model/element_types.hpp"
#include "run/run.hpp"

namespace velmor {
namespace {

/// Where an element load goes: the load case's row, and the local axes of the element.
struct LoadedElement {
  Run& run;
  int loadCase;
  int element;
  ElementAxesTriad axes;

  int Node(int position) const { return run.model.elements(element, position); }
  Vector3 Point(int position) const { return run.model.NodeOfElement(element, position); }
  double& LoadAt(int node, int freedom) { return run.LoadTable(loadCase, run.sizes.Equation(node, freedom)); }
};

/// A force along one local axis in local components.
Vector3 LocalForce(double direction, double force) {
  return {direction == 1 ? force : 0, direction == 2 ? force : 0, direction == 3 ? force : 0};
}

/// Turns the axes by the element's angle: line elements and triangles about the first axis by field 6 of their
/// material, in degrees; four-node types about the normal by the rotation table, in radians.
void RotateElementAxes(LoadedElement& target) {
  Run& run = target.run;
  ElementAxesTriad& axes = target.axes;
  const int nodes = NodeCountOf(run.model.types, run.model.elements(target.element, 0));
  if (nodes == 2 || nodes == 3) {
    const int material = run.model.elementMaterial(target.element);
    const double degrees = LoadMaterial(run.materials, material).rotation;
    RotateAxisPair(degrees * run.pi / 180, axes.ey, axes.ez);
  } else {
    // ey' = cos ey + sin ex, ex' = cos ex - sin ey
    RotateAxisPair(run.model.rotations(target.element), axes.ey, axes.ex);
  }
}

/// Adds a force in local components to the translations of a node.
void AddForce(LoadedElement& target, int node, const Vector3& local) {
  const ElementAxesTriad& axes = target.axes;
  const Vector3 force = local.x * axes.ex + local.y * axes.ey + local.z * axes.ez;
  const int freedoms = IsSpatial(target.run.analysisCode) ? 3 : 2;
  for (int k = 1; k <= freedoms; ++k) target.LoadAt(node, k) += force(k);
}

/// Fixed-end moments of a beam under the total load Q in local components.
void AddEndMoments(LoadedElement& target, const Vector3& Q, double L) {
  const Vector3 moment = L / 12 * (Q.y * target.axes.ez - Q.z * target.axes.ey);
  const auto add = [&](int freedom, double m) {
    target.LoadAt(target.Node(1), freedom) -= m;
    target.LoadAt(target.Node(2), freedom) += m;
  };
  if (target.run.analysisCode == 2) add(3, moment.z);
  for (int g = 1; target.run.analysisCode == 3 && g <= 3; ++g) add(3 + g, moment(g));
}

void LoadLine(LoadedElement& target, const ElementLoad& load) {
  const Vector3 v = target.Point(2) - target.Point(1);
  const double L = Length(v);
  target.axes.ex = Normalised(v);
  const SectionAxes section = SectionAxesOf(target.axes.ex);
  target.axes.ey = section.first;
  target.axes.ez = section.second;
  RotateElementAxes(target);
  const Vector3 Q = LocalForce(load.direction, load.value * L);
  for (int end = 1; end <= 2; ++end) AddForce(target, target.Node(end), Q / 2);
  if (target.run.model.elements(target.element, 0) == BeamType) AddEndMoments(target, Q, L);
}

/// A triangle on the element's nodes at three positions; `share` is the part of its load that counts.
void LoadTriangle(LoadedElement& target, const ElementLoad& load, const std::array<int, 3>& at, double share) {
  const TriangleGeometry triangle = TriangleGeometryOf(target.Point(at[0]), target.Point(at[1]), target.Point(at[2]));
  target.axes = triangle.axes;
  RotateElementAxes(target);
  const Vector3 Q = LocalForce(load.direction, share * load.value * triangle.area / 3);
  for (int position : at) AddForce(target, target.Node(position), Q);
}

void LoadTriangles(LoadedElement& target, const ElementLoad& load) {
  if (target.run.model.elements(target.element, 0) != DoubleTriangleType) {
    return LoadTriangle(target, load, {1, 2, 3}, 1);
  }
  for (const auto& positions : TrianglesOfQuadrilateral) LoadTriangle(target, load, positions, 0.5);
}

void LoadQuadrilateral(LoadedElement& target, const ElementLoad& load) {
  const QuadrilateralGeometry quad = QuadrilateralGeometryOf(
      {target.Point(1), target.Point(2), target.Point(3), target.Point(4)}, SecondDirection::FirstSide);
  target.axes = quad.axes;
  const auto& [a1, a2, a3, b1, b2, b3] = quad.map;
  const double J0 = a1 * b2 - a2 * b1, J1 = a1 * b3 - a3 * b1, J2 = a3 * b2 - a2 * b3;
  RotateElementAxes(target);
  for (int corner = 1; corner <= 4; ++corner) {
    const double area = J0 + J1 * CornerS[corner] / 3 + J2 * CornerT[corner] / 3;
    AddForce(target, target.Node(corner), LocalForce(load.direction, load.value * area));
  }
}

}  // namespace

bool AddElementLoad(Run& run, int loadCase, const ElementLoad& load) {
  if (load.element < 0 || load.element > run.model.elementCount) {
    throw Failure(error::SubscriptOutOfRange, "element " + std::to_string(load.element) + " does not exist");
  }
  const int type = load.element == 0 ? 0 : run.model.elements(load.element, 0);
  const RecordForm form = type > 0 ? RecordFormOf(type) : RecordForm::None;
  const bool hasDirection = load.direction == 1 || load.direction == 2 || load.direction == 3;
  const bool takesLoad = form != RecordForm::None && form != RecordForm::Spring && type != TransverseBarType;
  if (!hasDirection || !takesLoad) return false;
  if (loadCase > run.LoadTable.Rows()) {
    throw Failure(error::SubscriptOutOfRange, "there is no load case " + std::to_string(loadCase));
  }
  LoadedElement target{run, loadCase, load.element, {}};
  if (form == RecordForm::Line) {
    if (type == GapType) run.gapFlag = true;
    LoadLine(target, load);
  } else if (form == RecordForm::Triangle) {
    LoadTriangles(target, load);
  } else {
    LoadQuadrilateral(target, load);
  }
  return true;
}

}  // namespace velmor
