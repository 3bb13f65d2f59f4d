#pragma once

#include <cmath>
#include <utility>

#include "base/table.hpp"
#include "base/vector3.hpp"

namespace velmor {

// Small dense matrices of the element routines, indices from 1. Free of files and screen.

/// Inverse of A of order n by Gauss-Jordan elimination with row exchange. The pivot row of a column is the last row
/// below the diagonal whose entry exceeds the diagonal in size, or the diagonal row itself; a column that is zero
/// from the diagonal down is stepped over, and B is then no inverse. A is destroyed.
template <int Size>
void InvertMatrix(int n, Table<Size, Size>& A, Table<Size, Size>& B) {
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= n; ++j) B(i, j) = i == j ? 1 : 0;
  }
  for (int i = 1; i <= n; ++i) {
    const double diagonal = std::abs(A(i, i));
    int r = i;
    for (int j = i + 1; j <= n; ++j) {
      if (std::abs(A(j, i)) > diagonal) r = j;
    }
    double p = A(r, i);
    if (p == 0) {
      p = 1;
    } else if (r != i) {
      for (int k = 1; k <= n; ++k) {
        std::swap(A(i, k), A(r, k));
        std::swap(B(i, k), B(r, k));
      }
    }
    for (int j = 1; j <= n; ++j) {
      if (j == i) continue;
      const double f = A(j, i) / p;
      for (int k = 1; k <= n; ++k) {
        A(j, k) -= f * A(i, k);
        B(j, k) -= f * B(i, k);
      }
    }
    for (int k = 1; k <= n; ++k) {
      A(i, k) /= p;
      B(i, k) /= p;
    }
  }
}

/// Adds X Y' X' to Z, with X n by m, Y m by m and Z n by n: for symmetric Y the product X Y X'.
template <int XRows, int XCols, int YSize, int ZSize>
void TripleProduct(int n, int m, const Table<XRows, XCols>& X, const Table<YSize, YSize>& Y, Table<ZSize, ZSize>& Z) {
  Row<double, XCols> w;
  for (int i = 1; i <= n; ++i) {
    // w does not depend on j: one row of X Y' serves the whole row of Z.
    for (int k = 1; k <= m; ++k) {
      double sum = 0;
      for (int l = 1; l <= m; ++l) sum += X(i, l) * Y(k, l);
      w(k) = sum;
    }
    for (int j = 1; j <= n; ++j) {
      double sum = 0;
      for (int k = 1; k <= m; ++k) sum += X(j, k) * w(k);
      Z(i, j) += sum;
    }
  }
}

/// Adds the energy product B' D B times det to the upper triangle of K, order n: B is the strain-displacement
/// matrix, 3 by n, D the elasticity matrix, 3 by 3, det the area factor of the integration point, whose weight is 1.
template <int BRows, int BCols, int DSize, int KSize>
void AddStrainEnergy(int n, const Table<BRows, BCols>& B, const Table<DSize, DSize>& D, double det,
                     Table<KSize, KSize>& K) {
  for (int i = 1; i <= n; ++i) {
    const double d1 = B(1, i) * D(1, 1) + B(2, i) * D(1, 2) + B(3, i) * D(1, 3);
    const double d2 = B(1, i) * D(2, 1) + B(2, i) * D(2, 2) + B(3, i) * D(2, 3);
    const double d3 = B(1, i) * D(3, 1) + B(2, i) * D(3, 2) + B(3, i) * D(3, 3);
    for (int j = i; j <= n; ++j) K(i, j) += (d1 * B(1, j) + d2 * B(2, j) + d3 * B(3, j)) * det;
  }
}

/// Turns the pair p, q by an angle in radians: p' = p cos + q sin, q' = -p sin + q cos.
inline void RotateAxisPair(double angle, Vector3& p, Vector3& q) {
  const double c = std::cos(angle), s = std::sin(angle);
  const Vector3 turned = c * p + s * q;
  q = c * q - s * p;
  p = turned;
}

}  // namespace velmor
