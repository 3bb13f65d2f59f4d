// The exact forms of NAME.DAT, NAME.MAS and NAME.EMS.

#include <gtest/gtest.h>

#include <sstream>

#include "support.hpp"

namespace velmor::testing {
namespace {

TEST(KolStage, WritesEveryFormOfRecord) {
  Folder folder;
  folder.Write(".TEK",
               "7 7, 0 0 0, 4 0 0, 4 3 0, 0 3 0, 0 0 -8, 1 0 2, 0,3,4\r\n"
               "1 1 2 3\n"       // bar along x
               "17 1 7 2\n"      // string along 0, 3, 4
               "2 1 2 3 4\n"     // triangle
               "13 1 2 3 4 5\n"  // quadrilateral of four triangles
               "6 1 2 3 4 6\n"   // shell
               "-5 7 1 9\n"      // passive: widens the band, no record
               "16 6 8");        // nodal spring
  folder.Write(".VPL", "0");
  folder.WriteControl(3, {.MassFlag = 1, .CompileStiffnessFlag = 0, .SolveFlag = 0});
  RecordingDisplay display;
  folder.Run(display);  // the Mass stage fails for want of materials, behind the Kol stage
  EXPECT_EQ(display.form1.Text4.text + display.form1.Label7.caption, folder.File() + "100 %");

  // clang-format off
  const std::vector<std::vector<double>> expected = {
      {7}, {6 * (7 - 1) + 6}, {9},  // nodes, half bandwidth, records
      {1, 1, 2, 1, 0, 0, 4, 3}, {2, 0, 0},
      {17, 1, 7, 0, 0.6, 0.8, 5, 2}, {0, 1.5, 2},
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

/// NAME.MAS of elements on a rectangle of 4 by 2 beyond the point 1, 1, 2; NAME.EMS stays in the folder. Field 4 times
/// the density is 3 for material 2 and 6 for material 3.
std::string Masses(const Folder& folder, int code, const std::vector<Model::Element>& elements) {
  Model model;
  model.analysisCode = code;
  model.nodes = {{1, 1, 2}, {5, 1, 2}, {5, 3, 2}, {1, 3, 2}};
  model.elements = elements;
  model.materials = {{}, {1, 0, 6, 0.5, 0, 0, 1, 0, 1, 0, 1}, {1, 0, 1.5, 4, 0, 0, 1, 0, 1, 0, 1}};
  model.flags.SolveFlag = 0;
  folder.Solve(model);
  return folder.Read(".MAS");
}

TEST(MassStage, SharesEveryElementEquallyAmongItsNodes) {
  const Folder folder;
  EXPECT_TRUE(Masses(folder, 1, {{17, {3, 2}, 3}}).starts_with("0,0\n6,6\n6,6\n0,0\n"));
  EXPECT_TRUE(Masses(folder, 1, {{2, {1, 2, 3}, 3}}).starts_with("8,8\n8,8\n8,8\n0,0\n"));
  const std::vector<Model::Element> halves{{4, {1, 2, 3, 4}, 2}, {13, {1, 2, 3, 4}, 2}};
  EXPECT_TRUE(Masses(folder, 1, halves).starts_with("12,12\n12,12\n12,12\n12,12\n"));
}

TEST(MassStage, SumsBeamsByFreedomAndMaterial) {
  // Masses 12 along x and 12 along y, half to each node, rotary L^2 m / 48 of 4 and 1.
  const Folder folder;
  const Model::Element along{7, {1, 2}, 2}, across{7, {2, 3}, 3}, spring{16, {2}, 1};
  EXPECT_EQ(Masses(folder, 3, {along, across, spring}),
            "6,6,6,4,4,4\n12,12,12,5,5,5\n6,6,6,1,1,1\n0,0,0,0,0,0\n"
            "24,96,4\n24,36,1.5\n24,48,2\n10,0,0\n10,0,0\n10,0,0\n");
  EXPECT_EQ(folder.Read(".EMS"),
            "1,\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\"\n"
            "2,\"1.20E+01\",\"3.60E+01\",\"1.20E+01\",\"2.40E+01\",\"6.00E+01\",\"1.56E+02\",\"1.20E+02\"\n"
            "3,\"1.20E+01\",\"6.00E+01\",\"2.40E+01\",\"2.40E+01\",\"9.60E+01\",\"3.48E+02\",\"3.48E+02\"\n");
  // At a plane node the rotary mass of the last beam stands.
  EXPECT_TRUE(Masses(folder, 2, {along, across}).starts_with("6,6,4\n12,12,1\n6,6,1\n0,0,0\n"));
  EXPECT_TRUE(Masses(folder, 2, {across, along}).starts_with("6,6,4\n12,12,4\n6,6,1\n0,0,0\n"));
}

}  // namespace
}  // namespace velmor::testing
