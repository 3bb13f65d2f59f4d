// Whole runs from files to files.

#include <gtest/gtest.h>

#include "support.hpp"

namespace velmor::testing {
namespace {

/// A beam along x, fixed at its first node, with unequal second moments of area.
Model Cantilever() {
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddElement(7, {1, 2});
  model.materials = {{2e11, 0.3, 7850, 0.01, 0, 0, 3e-6, 0, 1e-6, 1e-5, 2e-6, 2e-5}};
  model.Fix(1, 6);
  model.cases = {{{{2, 2, 1000}, {2, 3, 500}, {2, 4, 10}}, {}}};
  return model;
}

TEST(Run, SolvesACantileverFromFilesToFiles) {
  Folder folder;
  folder.Solve(Cantilever());
  const NodalValues u = folder.Displacements(), r = folder.Reactions();
  const double L3 = 8, E = 2e11, G = E / 2.6;
  EXPECT_NEAR(u(1, 2, 2) / (1000 * L3 / (3 * E * 2e-6)), 1, 1e-12);
  EXPECT_NEAR(u(1, 2, 3) / (500 * L3 / (3 * E * 1e-6)), 1, 1e-12);
  EXPECT_NEAR(u(1, 2, 4) / (10 * 2 / (G * 3e-6)), 1, 1e-12);
  EXPECT_NEAR(r(1, 1, 2), -1000, 1e-9);
  EXPECT_NEAR(r(1, 1, 5), 1000, 1e-9);
  EXPECT_NEAR(r(1, 1, 6), -2000, 1e-9);
}

}  // namespace
}  // namespace velmor::testing
