// Small dense matrices of the element routines.

#include "elements/small_matrix.hpp"

#include <gtest/gtest.h>

#include <random>

namespace velmor::testing {
namespace {

using Matrix = Table<12, 12>;

TEST(SmallMatrix, InverseTimesMatrixIsUnity) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> number(-1, 1);
  for (int n : {1, 2, 3, 9, 12}) {
    Matrix A, original, B;
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= n; ++j) A(i, j) = original(i, j) = number(random);
    }
    if (n > 1) A(1, 1) = original(1, 1) = 0;  // rows to exchange
    InvertMatrix(n, A, B);
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= n; ++j) {
        double sum = 0;
        for (int k = 1; k <= n; ++k) sum += B(i, k) * original(k, j);
        EXPECT_NEAR(sum, i == j ? 1 : 0, 1e-12) << n;
      }
    }
  }
}

TEST(SmallMatrix, PivotIsTheLastEntryAboveTheDiagonalNotTheLargest) {
  // 3, 9, 4 stand at and below the first diagonal. With the pivot 4 every step is exact in binary; 3 or 9 would leave
  // rounding in the result.
  const double rows[3][3] = {{3, -3, -2}, {9, -2, -2}, {4, 2, 0}};
  const double inverse[3][3] = {{-0.25, 0.25, -0.125}, {0.5, -0.5, 0.75}, {-1.625, 1.125, -1.3125}};
  Matrix A, B;
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) A(i, j) = rows[i - 1][j - 1];
  }
  InvertMatrix(3, A, B);
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(B(i, j), inverse[i - 1][j - 1]) << i << " " << j;
  }
}

}  // namespace
}  // namespace velmor::testing
