#include "elements/assembly.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/failure.hpp"
#include "run/run.hpp"

namespace velmor {

void SetElementNodes(Run& run, std::span<const int> nodes) {
  int position = 0;
  for (const int node : nodes) run.work.ElementNodes(++position) = node;
}

namespace {

[[noreturn]] void FailBeyondNumbers(const Run& run) {
  throw Failure(error::Overflow, "a stiffness of the element on node " + std::to_string(run.work.ElementNodes(1)) +
                                     " is no finite number");
}

}  // namespace

void ClearElementAxes(Run& run) { run.work.ElementAxes.Clear(); }

void SetTranslationAxis(Run& run, int column, const Vector3& axis) {
  for (int k = 1; k <= 3; ++k) run.work.ElementAxes(k, column) = axis(k);
}

void SetRotationAxis(Run& run, int column, const Vector3& axis) {
  for (int k = 1; k <= 3; ++k) run.work.ElementAxes(3 + k, column) = axis(k);
}

void MirrorStiffness(Run& run, int n) {
  auto& K = run.work.ElementStiffness;
  for (int i = 1; i <= n; ++i) {
    for (int j = i + 1; j <= n; ++j) K(j, i) = K(i, j);
  }
}

namespace {

/// TransformToGlobal with the global freedoms of a node known to the compiler, so that rows of a block go through
/// vector registers. Every sum runs as in the product T K T'.
template <int f>
void TransformBlocks(ElementWork& work, int nodes, int m) {
  const auto& T = work.ElementAxes;
  const auto& K = work.ElementStiffness;
  double transposed[6][f];
  for (int q = 0; q < m; ++q) {
    for (int j = 0; j < f; ++j) transposed[q][j] = T(j + 1, q + 1);
  }
  for (int a = 0; a < nodes; ++a) {
    for (int b = a; b < nodes; ++b) {
      double KT[6][f] = {};  // K T' of one pair of nodes: a third of the products of the triple sum
      for (int p = 0; p < m; ++p) {
        for (int q = 0; q < m; ++q) {
          const double k = K(a * m + p + 1, b * m + q + 1);
          for (int j = 0; j < f; ++j) KT[p][j] += k * transposed[q][j];
        }
      }
      for (int i = 1; i <= f; ++i) {
        double row[f] = {};
        for (int p = 0; p < m; ++p) {
          for (int j = 0; j < f; ++j) row[j] += T(i, p + 1) * KT[p][j];
        }
        for (int j = 0; j < f; ++j) work.ElementBlock(a * f + i, b * f + j + 1) = row[j];
      }
    }
  }
}

}  // namespace

void TransformToGlobal(Run& run, int nodes, int localDof) {
  switch (run.sizes.DofPerNode) {
    case 2:
      return TransformBlocks<2>(run.work, nodes, localDof);
    case 3:
      return TransformBlocks<3>(run.work, nodes, localDof);
    case 6:
      return TransformBlocks<6>(run.work, nodes, localDof);
    default:  // an unknown analysis code has no freedoms
      return;
  }
}

void NumberEquations(Run& run, int nodes) {
  const int f = run.sizes.DofPerNode;
  int lowest = run.sizes.NodeCount, highest = 1;
  for (int a = 1; a <= nodes; ++a) {
    const int node = run.work.ElementNodes(a);
    lowest = std::min(lowest, node);
    highest = std::max(highest, node);
    for (int k = 1; k <= f; ++k) run.work.EquationMap((a - 1) * f + k) = run.sizes.Equation(node, k);
  }
  if ((highest - lowest + 1) > run.sizes.BandInput / f) {
    throw Failure(error::SubscriptOutOfRange, run.File(".DAT") + ": an element of nodes " + std::to_string(lowest) +
                                                  " to " + std::to_string(highest) +
                                                  " is wider than the half bandwidth of the file");
  }
}

void AssembleElement(Run& run, int n) {
  BandMatrix& K = run.GlobalBand;
  for (int r = 1; r <= n; ++r) {
    for (int c = r; c <= n; ++c) {
      const int e1 = run.work.EquationMap(r), e2 = run.work.EquationMap(c);
      const double sum = K.Add(std::min(e1, e2), std::abs(e2 - e1) + 1, run.work.ElementBlock(r, c));
      if (!std::isfinite(sum)) FailBeyondNumbers(run);
    }
  }
}

void AddElement(Run& run, int nodes, int localDof) {
  TransformToGlobal(run, nodes, localDof);
  NumberEquations(run, nodes);
  AssembleElement(run, nodes * run.sizes.DofPerNode);
}

}  // namespace velmor
