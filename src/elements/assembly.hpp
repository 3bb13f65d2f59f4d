#pragma once

#include <span>

#include "base/table.hpp"
#include "base/vector3.hpp"

namespace velmor {

struct Run;

// The way of every element into GlobalBand. An element routine fills ElementNodes, ElementStiffness and ElementAxes
// of run.work, then calls TransformToGlobal, NumberEquations and AssembleElement in this order, or AddElement for all
// three.

/// ElementNodes(1..) = the nodes of a record.
void SetElementNodes(Run& run, std::span<const int> nodes);

/// ElementAxes(1..6, 1..6) to zero.
void ClearElementAxes(Run& run);

/// ElementAxes of three freedoms in the given column: rows 1..3 (translations) or 4..6 (rotations).
void SetTranslationAxis(Run& run, int column, const Vector3& axis);
void SetRotationAxis(Run& run, int column, const Vector3& axis);

/// Copies the upper triangle of ElementStiffness(1..n, 1..n) to the lower.
void MirrorStiffness(Run& run, int n);

/// ElementBlock = T K T' node by node, with T = ElementAxes, K = ElementStiffness and `localDof` local freedoms per
/// node. Only the blocks of K on and above the diagonal are read, the diagonal ones whole.
void TransformToGlobal(Run& run, int nodes, int localDof);

/// EquationMap from ElementNodes. Failure 9 if the element is wider than the half bandwidth of the model.
void NumberEquations(Run& run, int nodes);

/// Adds the upper triangle of ElementBlock(1..n, 1..n) to GlobalBand and raises the heights of its rows, also where
/// the value added is zero. The nodes of an element may stand in any order.
void AssembleElement(Run& run, int n);

/// TransformToGlobal, NumberEquations and AssembleElement.
void AddElement(Run& run, int nodes, int localDof);

}  // namespace velmor
