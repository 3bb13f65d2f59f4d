#pragma once

namespace velmor {

/// Degrees of freedom of a node by analysis code: 0 is 3-D, 1 is 2-D, 2 is 2-D with rotation, 3 is 3-D with
/// rotations. 0 for any other code.
constexpr int DofPerNodeOf(int analysisCode) {
  constexpr int dof[] = {3, 2, 3, 6};
  return 0 <= analysisCode && analysisCode <= 3 ? dof[analysisCode] : 0;
}

/// True where the nodes move in all three directions of space (codes 0 and 3).
constexpr bool IsSpatial(int analysisCode) { return analysisCode == 0 || analysisCode == 3; }

/// Name of freedom k (from 1) of a node, for people.
constexpr const char* FreedomName(int analysisCode, int k) {
  constexpr const char* names[] = {"", "x", "y", "z", "rotation about x", "rotation about y", "rotation about z"};
  return names[analysisCode == 2 && k == 3 ? 6 : k];
}

/// Sizes of the model, from the head of NAME.DAT and the analysis code. The two bounds keep DofPerNode more
/// room than the model needs; NAME.MAT depends on exactly these two values.
struct ModelSizes {
  int NodeCount = 0;
  int BandInput = 0;     // half bandwidth
  int ElementCount = 0;  // element records of NAME.DAT
  int DofPerNode = 0;

  int EquationCount() const { return DofPerNode * NodeCount; }
  int EquationBound() const { return EquationCount() + DofPerNode; }
  int BandBound() const { return BandInput + DofPerNode; }
  /// Equation of freedom k (from 1) of node n.
  int Equation(int n, int k) const { return (n - 1) * DofPerNode + k; }
  int NodeOfEquation(int e) const { return (e - 1) / DofPerNode + 1; }
  int FreedomOfEquation(int e) const { return (e - 1) % DofPerNode + 1; }
};

}  // namespace velmor
