// GlobalBand and its file NAME.MAT.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "elements/matrix_file.hpp"
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

/// Rows enough for columns of several pages, of which most hold nothing.
constexpr int Equations = 9000, Width = 60;

BandMatrix BandWithEmptyColumns() {
  BandMatrix K(Equations + 1, Width + 1);
  for (int e = 1; e <= Equations; ++e) {
    for (const int d : {1, 2, 3, 18, 19, 20, 21, 22, 23, 24, 25, 26, 57}) {
      if (d <= Equations - e + 1) K.Add(e, d, d == 57 ? 0 : 100 * d + e);  // column 57: heights, and zeros
    }
  }
  K.Add(8999, 2, -1e300);
  return K;
}

TEST(BandMatrix, FileReadsTheSameWithAndWithoutHoles) {
  const BandMatrix K = BandWithEmptyColumns();
  const Folder folder;
  const std::string path = folder.File(".MAT");
  std::string plain;  // the same bytes, without a hole
  for (int d = 0; d <= Width + 1; ++d) {
    for (int e = 0; e <= Equations + 1; ++e) {
      const double value = K(e, d);
      plain.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
  }
  SaveMatrix(K, path);
  EXPECT_TRUE(folder.Read(".MAT") == plain);
  const auto hasRow = [&](const BandMatrix& band, int row, int e) {
    return std::equal(K.Row(e), K.Row(e) + Width + 2, band.Row(row));
  };
  for (const bool holes : {true, false}) {
    if (!holes) WriteText(path, plain);
    BandMatrix back(Equations + 1, Width + 1);
    LoadMatrix(back, path, Equations, Width);
    for (int e = 0; e <= Equations + 1; ++e) {
      ASSERT_TRUE(hasRow(back, e, e)) << "row " << e;
    }
    MatrixReader reader(path, Equations + 1, Width + 1, Equations, Width);
    BandMatrix window(70, Width + 1);
    for (const int first : {1, 40, 8940}) {  // a few rows at a time into one window
      reader.ReadRows(first, first + 61, window);
      for (int e = first; e < first + 62; ++e) {
        ASSERT_TRUE(hasRow(window, e - first, e)) << "row " << e;
      }
    }
  }
}

TEST(BandMatrix, FileIsWrittenAlsoWhereNothingCanBeSkipped) {
  const Folder folder;
  const std::string path = folder.File(".MAT");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  OutputFile file(path);
  file.Append("begin");
  file.Skip(5000);
  file.Write("end", 3);
  file.Close();
  std::string bytes(6000, 'x');
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(reader, bytes.data(), bytes.size()), 0)));
  ::close(reader);
  EXPECT_EQ(bytes, "begin" + std::string(5000, '\0') + "end");
}

TEST(OutputFile, IsWrittenByOneRunAtATime) {
  const Folder folder;
  folder.Write(".RVP.part", "what a killed run has left");
  OutputFile file(folder.File(".RVP"));
  EXPECT_THROW(OutputFile(folder.File(".RVP")), Failure);
  file.Append("whole");
  file.Close();
  EXPECT_EQ(folder.Read(".RVP"), "whole");
}

}  // namespace
}  // namespace velmor::testing
