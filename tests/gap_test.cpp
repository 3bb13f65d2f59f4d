// The gap iteration: a stop by statics, what the passes leave, and the runs that meet gaps.

#include <gtest/gtest.h>

#include <algorithm>

#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// A bar of stiffness 1 along x from node 1, held, to node 2, and a gap (E A of 100) from there to a wall at
/// node 3.
Model BarAndStop(double load, double wall = 2) {
  Model model;
  model.analysisCode = 1;
  for (double x : {0.0, 1.0, wall}) model.AddNode(x, 0);
  model.AddElement(1, {1, 2}, 1);
  model.AddElement(14, {2, 3}, 2);
  model.materials = {{1, 0, 0, 1}, {25, 0, 0, 4, 0, 1000}};
  model.supports = {{2, 2}};
  for (int node : {1, 3}) model.Fix(node, 2);
  model.cases = {{{{2, 1, load}}, {}}};
  model.flags.LineStressFlag = 1;
  return model;
}

TEST(GapStage, HoldsABarAtItsLimitAndNoOther) {
  // Displacements in thousands, so that the limit of 1e-4 between two passes is small beside them.
  for (const auto& [load, u] : {std::pair{1500, 1000}, {600, 600}, {0, 0}, {-600, -600}, {-2500, -2500}}) {
    Folder folder;
    EXPECT_TRUE(folder.Solve(BarAndStop(load)).empty());
    EXPECT_NEAR(folder.Displacements()(1, 2, 1), u, 0.05);
    EXPECT_NEAR(folder.Blocks(".LES").at(0).at(2).at(4) * 4, u - load, 0.05) << "force of the gap under " << load;
  }
}

TEST(GapStage, HandsItsFactorToTheRecordsBehindAGap) {
  Model model = BarAndStop(1500);  // the gap settles at 0.005
  model.AddNode(0, 1);
  model.Fix(4, 2);
  model.materials.resize(3);
  model.materials.push_back({1e-9, 0, 0, 1});
  model.elements.insert(model.elements.begin(), {16, {2}, 3});  // before the gap: 1
  model.AddElement(16, {2}, 3);                                 // takes the gap's factor
  model.AddElement(1, {2, 4}, 4);                               // a bar keeps 1
  model.AddElement(3, {1, 2, 4}, 4);                            // takes the factor, and its box comes up in every pass
  Folder folder;
  folder.Write(model);
  RecordingDisplay display;
  velmor::Run run{display, folder.Program()};
  bool readable = false;
  run.modelSizeValues = ReadModelSizeValues(run.programFolder, readable);
  for (const auto stage : {RunKolStage, RunStiffnessStage, RunGapStage}) stage(run);
  EXPECT_NEAR(run.model.State(3), 0.005, 1e-6);
  for (int record : {1, 2, 5}) EXPECT_EQ(run.model.State(record), 1);
  for (int record : {4, 6}) EXPECT_EQ(run.model.State(record), run.model.State(3));
  const auto boxes = std::count(display.messages.begin(), display.messages.end(), "TRIMS ELEMENT IS NOT SUPPORTED");
  EXPECT_EQ(boxes, 1 + run.report.gapPasses);
}

TEST(GapStage, TakesThePlaceOfTheLinearStagesWhereTheKolStageMeetsGaps) {
  Folder folder;
  folder.Write(BarAndStop(1500, 3));
  folder.Write(".RVP", "of an earlier run, with no number in it");
  std::string solution;
  // The last run needs neither masses nor a matrix, so that the Kol stage does not run.
  for (const auto& [mass, compile, solve, linear] : {std::array{1, 1, 1, 0}, {1, 0, 0, 0}, {0, 0, 1, 1}}) {
    SCOPED_TRACE(::testing::Message() << "flags " << mass << compile << solve);
    folder.WriteControl(1, {0, mass, 0, compile, solve, 0, 0});
    folder.Remove(".GPD");
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_TRUE(display.messages.empty() && display.warnings.empty());
    const auto runs = [&](const char* stage) {
      return std::count(display.stages.begin(), display.stages.end(), stage);
    };
    EXPECT_EQ(runs("Non-Linear 1.0"), 1 - linear);
    EXPECT_EQ(runs("Sys 2.4"), runs("Gap") + linear);
    EXPECT_EQ(folder.Has(".KRT"), linear == 1);
    EXPECT_EQ(folder.Read(".GPD"), linear == 1 ? "" : "2,3,1,0,0,2,4\n");
    if (solution.empty()) solution = folder.Read(".RVP");
    EXPECT_EQ(folder.Read(".RVP") == solution, linear == 0);
  }
}

}  // namespace
}  // namespace velmor::testing
