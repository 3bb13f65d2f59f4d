// GlobalBand and its file NAME.MAT.

#include <gtest/gtest.h>

#include <cstring>

#include "support.hpp"

namespace velmor::testing {
namespace {

TEST(BandMatrix, FileHoldsTheWholeBandColumnByColumn) {
  Model model;  // a bar, and one of no length between nodes 3 and 2
  model.analysisCode = 1;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddNode(2, 0);
  model.AddElement(1, {1, 2});
  model.AddElement(1, {3, 2});
  model.materials = {{1000, 0, 0, 1}};
  model.cases.resize(1);
  model.flags.SolveFlag = 0;
  Folder folder;
  folder.Solve(model);
  const std::string bytes = folder.Read(".MAT");
  const std::size_t rows = 2 * 3 + 2 + 1;           // 0..EquationBound
  ASSERT_EQ(bytes.size(), 8 * rows * (4 + 2 + 1));  // half bandwidth 4, columns 0..BandBound
  // Heights in column 0: zero additions count, a bar raises them as a full block of two nodes.
  const double heights[rows] = {0, 4, 3, 4, 3, 2, 1, 0, 0};
  for (std::size_t d = 0; d <= 6; ++d) {
    for (std::size_t e = 0; e < rows; ++e) {
      double value = 0, expected = d == 0 ? heights[e] : 0;
      std::memcpy(&value, &bytes[8 * (d * rows + e)], 8);
      if (d == 1 && (e == 1 || e == 3)) expected = 500;
      if (d == 3 && e == 1) expected = -500;
      EXPECT_EQ(value, expected) << "row " << e << ", column " << d;
    }
  }
}

}  // namespace
}  // namespace velmor::testing
