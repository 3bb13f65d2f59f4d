#include "patterns.hpp"

#include <algorithm>
#include <cmath>
#include <random>

namespace velmor::bench {
namespace {

template <typename Height, typename IsEntry>
Pattern Fill(int equations, int width, Height height, IsEntry isEntry) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> entry(-1, 1);
  Pattern pattern{equations, width, {}};
  for (int e = 0; e < equations; ++e) {
    std::vector<double> row(static_cast<std::size_t>(std::min(height(e), equations - e)));
    for (std::size_t d = 0; d < row.size(); ++d) {
      if (isEntry(e, e + static_cast<int>(d))) row[d] = entry(random);
    }
    row[0] = 2.0 * width;
    pattern.rows.push_back(std::move(row));
  }
  return pattern;
}

bool Always(int, int) { return true; }

}  // namespace

Pattern Full(int equations, int width) {
  return Fill(
      equations, width, [=](int) { return width; }, Always);
}

Pattern Ragged(int equations, int width) {
  std::mt19937_64 random(2);
  std::uniform_int_distribution<int> height(std::max(1, width / 20), width);
  return Fill(
      equations, width, [&](int) { return height(random); }, Always);
}

Pattern Setbacks(int equations, int width) {
  return Fill(
      equations, width, [=](int e) { return width * (3 - 3 * e / equations) / 3; }, Always);
}

Pattern Frame(int nodesAcross, int nodesAlong, int floors) {
  const int floor = nodesAcross * nodesAlong;
  const auto areJoined = [=](int a, int b) {
    const bool sameFloor = a / floor == b / floor, sameLine = a / nodesAcross == b / nodesAcross;
    return a == b || b == a + floor || (sameFloor && (b == a + nodesAcross || (sameLine && b == a + 1)));
  };
  return Fill(
      6 * floor * floors, 6 * (floor + 1), [=](int e) { return 6 * (floor + 1) - e % 6; },
      [=](int e, int j) { return areJoined(e / 6, j / 6); });
}

Pattern Plate(int elements) {
  const int line = elements + 1;
  const auto set = [](int e) { return e % 6 < 2 ? 0 : e % 6 < 5 ? 1 : 2; };
  return Fill(
      6 * line * line, 6 * (line + 2), [=](int e) { return 6 * (line + 2) - e % 6; },
      [=](int e, int j) {
        const int a = e / 6, b = j / 6;
        const bool neighbours = std::abs(a % line - b % line) <= 1 && std::abs(a / line - b / line) <= 1;
        return neighbours && set(e) == set(j) && (set(e) != 2 || e == j);
      });
}

void Restore(const Pattern& pattern, BandMatrix& K) {
  for (int e = 1; e <= pattern.equations; ++e) {
    const std::vector<double>& row = pattern.rows[static_cast<std::size_t>(e - 1)];
    double* const rest = std::copy(row.begin(), row.end(), K.Row(e) + 1);
    std::fill(rest, K.Row(e) + pattern.width + 1, 0.0);
    K(e, 0) = static_cast<double>(row.size());
  }
}

BandMatrix Assembled(const Pattern& pattern) {
  BandMatrix K(pattern.equations + 1, pattern.width + 1);
  for (int e = 1; e <= pattern.equations; ++e) {
    int d = 0;
    for (const double entry : pattern.rows[static_cast<std::size_t>(e - 1)]) K.Add(e, ++d, entry);
  }
  return K;
}

}  // namespace velmor::bench
