// Prints PLAT.ELM: eight times the inverse of the node matrix of the twelve-term plate on the square of half side 1.
// The rows of the node matrix are w, dw/deta and -dw/dxi of the terms at each node, so that the third freedom is a
// rotation about the second axis. All 144 numbers are whole.

#include <cmath>
#include <cstdio>

#include "elements/small_matrix.hpp"
#include "model/element_geometry.hpp"

int main() {
  using namespace velmor;
  constexpr int exponents[12][2] = {{0, 0}, {1, 0}, {0, 1}, {2, 0}, {1, 1}, {0, 2},
                                    {3, 0}, {2, 1}, {1, 2}, {0, 3}, {3, 1}, {1, 3}};  // of xi and eta
  Table<12, 12> nodes, inverse;
  for (int i = 1; i <= 4; ++i) {
    const int s = CornerS[i], t = CornerT[i];
    for (int k = 1; k <= 12; ++k) {
      const auto [m, n] = exponents[k - 1];
      nodes(3 * i - 2, k) = std::pow(s, m) * std::pow(t, n);
      nodes(3 * i - 1, k) = n == 0 ? 0 : n * std::pow(s, m) * std::pow(t, n - 1);
      nodes(3 * i, k) = m == 0 ? 0 : -m * std::pow(s, m - 1) * std::pow(t, n);
    }
  }
  InvertMatrix(12, nodes, inverse);
  for (int r = 1; r <= 12; ++r) {
    for (int c = 1; c <= 12; ++c) {
      const double whole = std::round(8 * inverse(r, c));
      if (std::abs(8 * inverse(r, c) - whole) > 1e-9) return 1;
      std::printf("%d%s", static_cast<int>(whole), c < 12 ? "," : "\n");
    }
  }
  return 0;
}
