// The gap iteration: models solved by statics, the passes against a calculation by the book, and how it ends.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// A model run stage by stage up to the Non-Linear stage, so that what it leaves in memory can be looked at.
class GapRun {
 public:
  explicit GapRun(const Model& model) {
    folder.Write(model);
    bool readable = false;
    run.modelSizeValues = ReadModelSizeValues(run.programFolder, readable);
    RunKolStage(run);
    RunStiffnessStage(run);
    RunGapStage(run);
  }
  double u(int node, int freedom) const { return run.LoadTable(1, run.sizes.Equation(node, freedom)); }
  double Factor(int record) const { return run.model.State(record); }
  int Passes() const { return run.report.gapPasses; }

  Folder folder;
  RecordingDisplay display;
  velmor::Run run{display, folder.Program()};
};

/// Bars in a row along x, each with its own stiffness, held at the first node, and gaps from nodes of the row to walls
/// on their right (side 1) or left (side -1). Loads are positive to the right.
struct Row {
  struct Stop {
    int node;
    double stiffness, limit;
    int side = 1;
    double Shortening(const std::vector<double>& u) const { return side * u[static_cast<std::size_t>(node - 2)]; }
  };
  std::vector<double> bars;   // stiffness of the bar to nodes 2, 3, ...
  std::vector<double> loads;  // on nodes 2, 3, ...
  std::vector<Stop> stops;

  Model ToModel() const {
    Model model;
    model.analysisCode = 1;
    model.AddNode(0, 0);
    model.Fix(1, 2);
    model.cases.resize(1);
    for (std::size_t i = 0; i < bars.size(); ++i) {
      const int node = model.AddNode(static_cast<double>(i) + 1, 0);
      model.materials.push_back({bars[i], 0, 0, 1});
      model.AddElement(1, {node - 1, node}, node - 1);
      model.supports.push_back({node, 2});
      model.cases[0].nodal.push_back({node, 1, loads[i]});
    }
    for (const Stop& stop : stops) {
      const int wall = model.AddNode(stop.node - 1 + stop.side, 0);
      model.materials.push_back({stop.stiffness, 0, 0, 1, 0, stop.limit});
      model.AddElement(14, {stop.node, wall}, static_cast<int>(model.materials.size()));
      model.Fix(wall, 2);
    }
    return model;
  }
};

TEST(GapStage, SolvesRowsByStatics) {
  struct Case {
    const char* name;
    Row row;
    std::vector<double> u, forces;  // by statics: nodes 2, 3, ... and stops
  };
  // Displacements in thousands, so that the limit of 1e-4 between two passes is small beside them.
  const Case cases[] = {
      {"closes", {{1}, {1500}, {{2, 100, 1000}}}, {1000}, {500}},
      {"stays open", {{1}, {600}, {{2, 100, 1000}}}, {600}, {0}},
      {"opens", {{1}, {-600}, {{2, 100, 1000}}}, {-600}, {0}},
      {"opens beyond its limit", {{1}, {-2500}, {{2, 100, 1000}}}, {-2500}, {0}},
      {"no load", {{1}, {0}, {{2, 100, 1000}}}, {0}, {0}},
      {"pressed together between stops of different clearance",
       {{1, 2}, {6000, -5000}, {{2, 100, 1000}, {3, 100, 600, -1}}},
       {1000, -600},
       {6000 - 1000 - 2 * 1600, 5000 - 2 * 1600}},
  };
  for (const auto& [name, row, u, forces] : cases) {
    SCOPED_TRACE(name);
    const GapRun gap(row.ToModel());
    for (std::size_t i = 0; i < u.size(); ++i) EXPECT_NEAR(gap.u(static_cast<int>(i) + 2, 1), u[i], 0.05);
    for (std::size_t i = 0; i < row.stops.size(); ++i) {
      const double factor = gap.Factor(static_cast<int>(row.bars.size() + i) + 1);
      EXPECT_NEAR(factor * row.stops[i].stiffness * row.stops[i].Shortening(u), forces[i], 0.05);
    }
    EXPECT_TRUE(gap.display.warnings.empty());
    EXPECT_EQ(gap.Factor(1), 1) << "a bar keeps its stiffness";
  }
}

TEST(GapStage, TellsOfAStopThatItLoses) {
  // Both stops are pressed beyond their limits in the first pass and open for good: the row is as if without them.
  const Row row{{1, 1}, {900, 900}, {{2, 1, 1400}, {3, 1, 1500}}};
  const GapRun gap(row.ToModel());
  EXPECT_NEAR(gap.Factor(3), 0, 1e-9);
  EXPECT_FALSE(gap.display.warnings.empty());
}

TEST(GapStage, SolvesAPipeThatLiftsOffOneOfThreeRests) {
  Folder folder;
  folder.WriteExample("pipe-on-rests");
  folder.Write(".RVP", "of an earlier run, with no number in it");
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_TRUE(display.messages.empty() && display.warnings.empty());
  // By hand: a load on an overhang's end moves this end, the other end and, upwards, the middle; one in the middle
  // moves the ends. N, mm; R is the force of the left rest.
  const double EI = 210e3 * 1.17e7, a = 4000, L = 8000, own = a * a * (L + a) / (3 * EI), other = a * a * L / (6 * EI);
  const double cross = a * L * L / (16 * EI), middle = L * L * L / (48 * EI);
  const double R = 1200 - (8 + 800 * other + 500 * cross) / own;
  const NodalValues u = folder.Displacements();
  EXPECT_NEAR(-u(1, 1, 2), 8, 1e-4);
  EXPECT_NEAR(-u(1, 5, 2), 500 * middle - (1200 - R - 800) * cross, 1e-4);
  EXPECT_NEAR(-u(1, 9, 2), -800 * own + (1200 - R) * other - 500 * cross, 1e-4);
  const auto stresses = folder.Blocks(".LES").at(0);  // two lines an element, the rests behind eight beams
  EXPECT_NEAR(stresses.at(16).at(4) * 100, -R, 0.01);
  EXPECT_NEAR(stresses.at(18).at(4) * 100, 0, 0.01);
  EXPECT_NEAR(stresses.at(20).at(4) * 100, 0, 0.01);

  const auto runs = [&](const RecordingDisplay& shown, const char* stage) {
    return std::count(shown.stages.begin(), shown.stages.end(), stage);
  };
  EXPECT_EQ(runs(display, "Non-Linear 1.0"), 1);
  EXPECT_EQ(runs(display, "Gap"), runs(display, "Sys 2.4"));
  EXPECT_FALSE(folder.Has(".KRT"));
  const std::string list = "1,10,0,-1,0,200,100\n5,11,0,-1,0,200,100\n9,12,0,-1,0,200,100\n";
  EXPECT_EQ(folder.Read(".GPD"), list);

  // With the stored matrix and no Solve flag: the Kol stage runs for the masses and meets the gaps.
  const std::string solution = folder.Read(".RVP");
  folder.Remove(".GPD");
  folder.WriteControl(2, {.CompileStiffnessFlag = 0, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0});
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_EQ(folder.Read(".RVP"), solution);
  EXPECT_EQ(folder.Read(".GPD"), list);

  // Nor masses: the gaps are not met, the linear path runs.
  folder.WriteControl(2, {.MassFlag = 0, .CompileStiffnessFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0});
  RecordingDisplay linear;
  EXPECT_EQ(folder.Run(linear), 0);
  EXPECT_EQ(runs(linear, "Gap"), 0);
  EXPECT_TRUE(folder.Has(".KRT"));
}

TEST(GapStage, HandsItsFactorToTheRecordsBehindAGap) {
  Model model;
  model.analysisCode = 1;
  for (double x : {0.0, 1.0, 2.0}) model.AddNode(x, 0);
  model.AddNode(0, 1);
  model.AddElement(16, {2}, 1);       // before the gap: 1
  model.AddElement(14, {2, 3}, 2);    // settles at 0.005
  model.AddElement(16, {2}, 3);       // takes the gap's factor
  model.AddElement(1, {1, 2}, 1);     // a bar keeps 1
  model.AddElement(3, {1, 2, 4}, 4);  // takes the gap's factor, and its box comes up in every pass
  model.materials = {{1, 0, 0, 1}, {100, 0, 0, 1, 0, 1000}, {}, {1e-9, 0, 0, 1}};
  model.supports = {{2, 2}};
  for (int node : {1, 3, 4}) model.Fix(node, 2);
  model.cases = {{{{2, 1, 1500}}, {}}};
  const GapRun gap(model);
  EXPECT_NEAR(gap.Factor(2), 0.005, 1e-6);
  EXPECT_EQ(gap.Factor(1), 1);
  EXPECT_EQ(gap.Factor(3), gap.Factor(2));
  EXPECT_EQ(gap.Factor(4), 1);
  EXPECT_EQ(gap.Factor(5), gap.Factor(2));
  const auto boxes =
      std::count(gap.display.messages.begin(), gap.display.messages.end(), "TRIMS ELEMENT IS NOT SUPPORTED");
  EXPECT_EQ(boxes, 1 + gap.Passes());
}

TEST(GapStage, StopsAtTheLimitOfPassesAndGoesOn) {
  // Lifted by its limit exactly, with a stiffness equal to the spring's, the factor jumps between 1 and -1/2.
  Model model = Row{{1}, {-1024}, {{2, 1, 1024}}}.ToModel();
  Folder folder;
  folder.Write(model);
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_EQ(display.messages, std::vector<std::string>{"Maximum number of itteration exceeded"});
  EXPECT_EQ(display.form2.Label7.caption, "Maximum number of itteration exceeded");
  EXPECT_EQ(std::count(display.stages.begin(), display.stages.end(), "Gap"), 1001);
  EXPECT_NEAR(folder.Displacements()(1, 2, 1), -512, 1e-9);  // of the last pass
}

TEST(GapStage, FailsThroughItsMessages) {
  struct Case {
    const char* name;
    std::function<void(Model&)> change;
    std::function<void(const Folder&)> spoil;
    int error;
    std::vector<std::string> messages;  // "*" stands for the path of a file
    std::string stage;
  };
  const auto same = [](Model&) {};
  const auto keep = [](const Folder&) {};
  const std::vector<std::string> stopped{"CALCULATION STOPPED"};
  const Case cases[] = {
      {"a gap without a limit",
       [](Model& m) {
         m.materials[1].turn = 0;
         m.cases[0].nodal[0].value = -1;
       },
       keep, 11, stopped, "Gap"},
      {"more than 500 materials", [](Model& m) { m.materials.resize(501); }, keep, 9, stopped, "Gap"},
      {"a material that is not there", [](Model& m) { m.elements[1].material = 3; }, keep, 9, stopped, "EEM 3.1"},
      {"no load case", [](Model& m) { m.cases.clear(); }, keep, 9, stopped, "Sys 2.4"},
      {"no load case file",
       same,
       [](const Folder& f) { f.Remove(".lcd"); },
       53,
       {"FILE NOT FOUND: *.lcd", "FATAL ERROR, RUN ABORTED"},
       "Sys 2.4"},
      {"a mechanism",
       [](Model& m) {
         m.supports.erase(m.supports.begin());
         m.elements[1].nodes = {3, m.AddNode(5, 0)};
         m.Fix(4, 2);
       },
       keep,
       11,
       {"MATRIX IS SINGULAR", "THE CONSTRUCTIE HAS A MECHANISM"},
       "Sys 2.4"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Folder folder;
    Model model = Row{{1}, {1500}, {{2, 100, 1000}}}.ToModel();
    model.flags.MassFlag = 0;
    c.change(model);
    folder.Write(model);
    c.spoil(folder);
    RecordingDisplay display;
    EXPECT_NE(folder.Run(display), 0);
    std::vector<std::string> messages = c.messages;
    for (auto& message : messages) {
      if (const auto star = message.find('*'); star != std::string::npos) message.replace(star, 1, folder.File());
    }
    EXPECT_EQ(display.messages, messages);
    ASSERT_EQ(display.notices.size(), 1u);
    EXPECT_EQ(display.notices[0].number, c.error);
    EXPECT_EQ(display.notices[0].stage, c.stage);
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  }
}

}  // namespace
}  // namespace velmor::testing
