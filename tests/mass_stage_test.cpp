// The Mass stage: MassVector, NAME.MAS, NAME.EMS.

#include <gtest/gtest.h>

#include "support.hpp"

namespace velmor::testing {
namespace {

/// Two beams of 2 and 4 along x with A rho = 3: masses 6 and 12, half to each node, rotary L^2 m / 24 of 0.5 and 4.
Model TwoBeams(int code) {
  Model model;
  model.analysisCode = code;
  for (double x : {1.0, 3.0, 7.0}) model.AddNode(x, 1, 0);
  model.AddElement(7, {1, 2}, 2);
  model.AddElement(7, {2, 3}, 3);
  model.AddElement(16, {2}, 1);
  model.materials = {{}, {1, 0, 6, 0.5, 0, 0, 1, 0, 1, 0, 1}, {1, 0, 1.5, 2, 0, 0, 1, 0, 1, 0, 1}};
  model.flags.SolveFlag = 0;
  model.cases.resize(1);
  return model;
}

TEST(MassStage, LumpsBeamsAndSumsThemByFreedomAndMaterial) {
  Folder folder;
  folder.Solve(TwoBeams(3));
  EXPECT_EQ(folder.Read(".MAS"),
            "3,3,3,0.5,0.5,0.5\n9,9,9,4.5,4.5,4.5\n6,6,6,4,4,4\n"
            "18,72,4\n18,18,1\n18,0,0\n9,0,0\n9,0,0\n9,0,0\n");
  EXPECT_EQ(folder.Read(".EMS"),
            "1,\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\",\"0.00E+00\"\n"
            "2,\"6.00E+00\",\"1.20E+01\",\"6.00E+00\",\"0.00E+00\",\"6.00E+00\",\"2.40E+01\",\"3.00E+01\"\n"
            "3,\"1.20E+01\",\"6.00E+01\",\"1.20E+01\",\"0.00E+00\",\"1.20E+01\",\"3.00E+02\",\"3.12E+02\"\n");
}

TEST(MassStage, KeepsTheRotaryMassOfTheLastBeamAtAPlaneNode) {
  Folder folder;
  folder.Solve(TwoBeams(2));
  EXPECT_EQ(folder.Read(".MAS"), "3,3,0.5\n9,9,4\n6,6,4\n18,72,4\n18,18,1\n8.5,0,0\n");
  Model reversed = TwoBeams(2);
  std::swap(reversed.elements[0], reversed.elements[1]);
  folder.Solve(reversed);
  EXPECT_EQ(folder.Read(".MAS"), "3,3,0.5\n9,9,0.5\n6,6,4\n18,72,4\n18,18,1\n5,0,0\n");
}

TEST(MassStage, SharesEveryElementEquallyAmongItsNodes) {
  // On a rectangle of 4 by 2; field 4 times the density is 6.
  const struct {
    int type;
    std::vector<int> nodes;
    const char* lines;
  } elements[] = {{1, {1, 2}, "12,12\n12,12\n0,0\n0,0\n"},
                  {17, {3, 2}, "0,0\n6,6\n6,6\n0,0\n"},
                  {2, {1, 2, 3}, "8,8\n8,8\n8,8\n0,0\n"},
                  {4, {1, 2, 3, 4}, "12,12\n12,12\n12,12\n12,12\n"},
                  {13, {1, 2, 3, 4}, "12,12\n12,12\n12,12\n12,12\n"}};
  for (const auto& e : elements) {
    Model model = TwoBeams(1);
    model.nodes = {{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}};
    model.elements = {{e.type, e.nodes, 1}};
    model.materials = {{1, 0, 3, 2}};
    Folder folder;
    folder.Solve(model);
    EXPECT_TRUE(folder.Read(".MAS").starts_with(e.lines)) << "type " << e.type << "\n" << folder.Read(".MAS");
  }
}

}  // namespace
}  // namespace velmor::testing
