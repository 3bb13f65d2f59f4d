// The Kol stage: NAME.TEK to NAME.DAT.

#include <gtest/gtest.h>

#include <sstream>

#include "support.hpp"

namespace velmor::testing {
namespace {

using Lines = std::vector<std::vector<double>>;

TEST(KolStage, WritesEveryFormOfRecord) {
  Folder folder;
  folder.Write(".TEK",
               "7 9, 0 0 0, 4 0 0, 4 3 0, 0 3 0, 0 0 -8, 1 0 2, 0,3,4\r\n"
               "1 1 2 3\n"       // bar along x
               "7 1 5 1\n"       // beam downward
               "17 1 7 2\n"      // string along 0, 3, 4
               "1 2 2 3\n"       // a bar of no length
               "2 1 2 3 4\n"     // triangle
               "13 1 2 3 4 5\n"  // quadrilateral of four triangles
               "6 1 2 3 4 6\n"   // shell
               "-5 7 1 9\n"      // passive: widens the band, no record
               "16 6 8");        // nodal spring
  folder.Write(".VPL", "0");
  folder.WriteControl(3, {.MassFlag = 1, .CompileStiffnessFlag = 0, .SolveFlag = 0});
  RecordingDisplay display;
  folder.Run(display);  // the Mass stage fails for want of materials, behind the Kol stage
  EXPECT_EQ(display.form1.Text4.text, folder.File());
  EXPECT_EQ(display.form1.Label7.caption, "100 %");
  EXPECT_EQ(display.form1.Text5.text, "6");

  // clang-format off
  const Lines expected = {
      {7}, {6 * (7 - 1) + 6}, {11},  // nodes, half bandwidth, records
      {1, 1, 2, 1, 0, 0, 4, 3}, {2, 0, 0},
      {7, 1, 5, 0, 0, -1, 8, 1}, {0, 0, -4},
      {17, 1, 7, 0, 0.6, 0.8, 5, 2}, {0, 1.5, 2},
      {1, 2, 2, 0, 0, 0, 0, 3}, {4, 0, 0},
      {2, 1, 2, 3, -4, -4, 0, 0, -3, -3}, {1, 0, 0, 0, 1, 0, 6, 4}, {8.0 / 3, 1, 0},
      {13, 1, 2, 3, -4, -4, 0, 0, -3, -3}, {1, 0, 0, 0, 1, 0, 6, 5}, {8.0 / 3, 1, 0},
      {13, 1, 3, 4, -5, -1.8, 3.2, 0, -2.4, -2.4}, {0.8, 0.6, 0, -0.6, 0.8, 0, 6, 5}, {4.0 / 3, 2, 0},
      {13, 1, 2, 4, -4, 0, 4, 0, -3, -3}, {1, 0, 0, 0, 1, 0, 6, 5}, {4.0 / 3, 1, 0},
      {13, 2, 3, 4, -3, -3, 0, 0, -4, -4}, {0, 1, 0, -1, 0, 0, 6, 5}, {8.0 / 3, 2, 0},
      {6, 1, 2, 3, 4, 1, 0, 0, 0, 1, 0, 6}, {2, 0, 0, 0, 1.5, 0}, {2, 1.5, 0},
      {16, 6, 8}, {1, 0, 2}};
  // clang-format on
  std::istringstream dat(folder.Read(".DAT"));
  for (const auto& items : expected) {
    std::string line, item;
    ASSERT_TRUE(std::getline(dat, line));
    std::istringstream parts(line);
    for (double value : items) {
      ASSERT_TRUE(std::getline(parts, item, ',')) << line;
      EXPECT_NEAR(std::stod(item), value, 4e-15) << line;
    }
    EXPECT_FALSE(std::getline(parts, item)) << line;
  }
  EXPECT_EQ(dat.peek(), EOF);
}

}  // namespace
}  // namespace velmor::testing
