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

struct RowSolution {
  std::vector<double> u;        // of nodes 2, 3, ...
  std::vector<double> factors;  // of the stops
  int passes = 0;
};

/// Displacements of a row with stop stiffnesses k, by elimination of the chain.
std::vector<double> SolveRow(const Row& row, const std::vector<double>& factors) {
  const std::size_t n = row.bars.size();
  std::vector<double> diagonal(n), load = row.loads;
  for (std::size_t i = 0; i < n; ++i) diagonal[i] = row.bars[i] + (i + 1 < n ? row.bars[i + 1] : 0);
  for (std::size_t s = 0; s < row.stops.size(); ++s) {
    diagonal[static_cast<std::size_t>(row.stops[s].node - 2)] += factors[s] * row.stops[s].stiffness;
  }
  for (std::size_t i = 1; i < n; ++i) {
    const double f = row.bars[i] / diagonal[i - 1];
    diagonal[i] -= f * row.bars[i];
    load[i] += f * load[i - 1];
  }
  for (std::size_t i = n; i-- > 0;) {
    if (i + 1 < n) load[i] += row.bars[i + 1] * load[i + 1];
    load[i] /= diagonal[i];
  }
  return load;
}

/// The passes over a row once more: factors from the solution before, until two solutions agree.
RowSolution IterateByTheBook(const Row& row) {
  RowSolution solution;
  solution.factors.assign(row.stops.size(), 1.0);
  for (;;) {
    const std::vector<double> before = solution.u;
    solution.u = SolveRow(row, solution.factors);
    if (++solution.passes > 1) {
      double change = 0;
      for (std::size_t i = 0; i < before.size(); ++i) change += std::pow(solution.u[i] - before[i], 2);
      if (change < 1e-8 || solution.passes > 1000) return solution;
    }
    for (std::size_t s = 0; s < row.stops.size(); ++s) {
      const double shortening = row.stops[s].Shortening(solution.u);
      solution.factors[s] = shortening > row.stops[s].limit ? 0 : solution.factors[s] * shortening / row.stops[s].limit;
    }
  }
}

// Displacements in thousands, so that the limit of 1e-4 between two passes is small beside them.
TEST(GapStage, SolvesASpringBesideAStop) {
  struct Case {
    const char* name;
    double load, limit, u, force;
  };
  for (const Case& c : {Case{"closes", 1500, 1000, 1000, 500}, Case{"touches lightly", 1100, 1000, 1000, 100},
                        Case{"stays open", 600, 1000, 600, 0}, Case{"opens", -600, 1000, -600, 0},
                        Case{"opens beyond its limit", -2500, 1000, -2500, 0}, Case{"no load", 0, 1000, 0, 0}}) {
    SCOPED_TRACE(c.name);
    const GapRun gap(Row{{1}, {c.load}, {{2, 100, c.limit}}}.ToModel());
    EXPECT_NEAR(gap.u(2, 1), c.u, 0.02);
    EXPECT_NEAR(100 * gap.Factor(2) * gap.u(2, 1), c.force, 0.02);
    EXPECT_EQ(gap.Factor(1), 1);  // the bar's
    EXPECT_EQ(gap.run.report.openGaps, c.force == 0 ? 1 : 0);
    EXPECT_TRUE(gap.display.messages.empty() && gap.display.warnings.empty());
    if (c.load == 0) {
      EXPECT_EQ(gap.Passes(), 2);
    }
  }
}

TEST(GapStage, SolvesABarAgainstAWall) {
  // Chandrupatla, Belegundu, Introduction to Finite Elements in Engineering: mm, N. The wall is 1.2 mm off.
  const double k = 250 * 20e3 / 150;
  const GapRun gap(Row{{k, k}, {60e3, 0}, {{3, 100 * k, 1.2}}}.ToModel());
  EXPECT_NEAR(gap.u(2, 1), 1.5, 2e-4);
  EXPECT_NEAR(gap.u(3, 1), 1.2, 2e-4);
  EXPECT_NEAR(20e3 / 150 * gap.u(2, 1), 200, 0.03);
  EXPECT_NEAR(20e3 / 150 * (gap.u(3, 1) - gap.u(2, 1)), -40, 0.03);
  EXPECT_NEAR(gap.Factor(3) * 100 * k * gap.u(3, 1), 10e3, 10);
}

TEST(GapStage, SolvesStopsOfDifferentClearance) {
  // A row that is pressed together between a stop on the right of node 2 and one on the left of node 3.
  const GapRun row(Row{{1, 2}, {6000, -5000}, {{2, 100, 1000}, {3, 100, 600, -1}}}.ToModel());
  EXPECT_NEAR(row.u(2, 1), 1000, 0.1);
  EXPECT_NEAR(row.u(3, 1), -600, 0.1);
  EXPECT_NEAR(row.Factor(3) * 100 * 1000, 6000 - 1000 - 2 * 1600, 0.2);
}

TEST(GapStage, SolvesSupportsInSeries) {
  // Three springs of their own on three nodes, with gaps between the nodes: each closes and brings the next spring in.
  const double k[] = {4, 2, 1}, g1 = 1000, g2 = 400, P = 9000;
  Model model;
  model.analysisCode = 1;
  for (double x : {0.0, 1.0, 2.0}) model.AddNode(x, 0);
  for (int i = 1; i <= 3; ++i) {
    const int ground = model.AddNode(i - 2, 0);
    model.Fix(ground, 2);
    model.AddElement(1, {ground, i}, i);
    model.materials.push_back({k[i - 1], 0, 0, 1});
    model.supports.push_back({i, 2});
  }
  model.materials.push_back({400, 0, 0, 1, 0, g1});
  model.materials.push_back({400, 0, 0, 1, 0, g2});
  model.AddElement(14, {1, 2}, 4);
  model.AddElement(14, {2, 3}, 5);
  model.cases = {{{{1, 1, P}}, {}}};
  const GapRun gaps(model);
  const double u3 = (P - k[0] * (g1 + g2) - k[1] * g2) / (k[0] + k[1] + k[2]);
  EXPECT_NEAR(gaps.u(3, 1), u3, 0.1);
  EXPECT_NEAR(gaps.u(2, 1), u3 + g2, 0.1);
  EXPECT_NEAR(gaps.u(1, 1), u3 + g2 + g1, 0.1);
  EXPECT_NEAR(gaps.Factor(5) * 400 * g2, k[2] * u3, 0.2);
}

TEST(GapStage, PassesAsByTheBook) {
  const Row rows[] = {
      {{1}, {1500}, {{2, 100, 1000}}},
      {{1}, {-900}, {{2, 100, 1000}}},  // factors of both signs
      {{1, 2}, {6000, -5000}, {{2, 100, 1000}, {3, 100, 600, -1}}},
      {{1, 1}, {900, 900}, {{2, 100, 1400}, {3, 100, 1500}}},  // two stops on one side: both are lost
      {{1, 2, 1}, {500, -700, 900}, {{2, 30, 100}, {3, 20, 90}, {4, 50, 700}}},
      {{1, 2, 1}, {-500, 1700, -900}, {{2, 30, 1000}, {3, 20, 100}, {4, 50, 70, -1}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.loads[0]);
    const GapRun gap(row.ToModel());
    const RowSolution expected = IterateByTheBook(row);
    EXPECT_EQ(gap.Passes(), expected.passes);
    for (std::size_t i = 0; i < expected.u.size(); ++i) {
      EXPECT_NEAR(gap.u(static_cast<int>(i) + 2, 1) / expected.u[i], 1, 1e-9);
    }
    for (std::size_t s = 0; s < expected.factors.size(); ++s) {
      const double factor = gap.Factor(static_cast<int>(row.bars.size() + s) + 1);
      EXPECT_NEAR(factor, expected.factors[s], 1e-9 * std::abs(expected.factors[s]) + 1e-20);
    }
    bool lost = false;
    for (const Row::Stop& stop : row.stops) lost = lost || stop.Shortening(expected.u) > 1.01 * stop.limit;
    EXPECT_EQ(!gap.display.warnings.empty(), lost);
  }
}

/// A pipe in mm and N on two fixed supports, 8 m apart, with overhangs of 4 m and one-sided rests 8 mm below both ends
/// and the middle.
constexpr double PipeEI = 210e3 * 1.17e7, Clearance = 8, RestStiffness = 1e5;
Model PipeOnRests(double left, double middle, double right) {
  Model model;
  model.analysisCode = 2;
  for (int i = 0; i <= 8; ++i) model.AddNode(2000.0 * i, 0);
  for (int i = 1; i <= 8; ++i) model.AddElement(7, {i, i + 1});
  model.materials = {{210e3, 0.3, 0, 3594, 0, 0, 0, 0, 0, 0, 1.17e7, 0}, {2 * RestStiffness, 0, 0, 100, 0, Clearance}};
  model.supports = {{3, 1}, {3, 2}, {7, 2}};
  for (int node : {1, 5, 9}) {
    const int ground = model.AddNode(model.nodes[static_cast<std::size_t>(node - 1)][0], -200);
    model.AddElement(14, {node, ground}, 2);
    model.Fix(ground, 3);
  }
  model.cases.resize(2);
  model.cases[0].nodal = {{1, 2, left}, {5, 2, middle}, {9, 2, right}};
  model.cases[1].nodal = {{5, 2, -1000}};  // solved with the band that load case 1 has settled
  return model;
}

TEST(GapStage, SolvesABeamThatLiftsOffOneOfThreeRests) {
  Model model = PipeOnRests(-1200, -500, 800);
  const GapRun gap(model);
  const double R = gap.Factor(9) * RestStiffness * Clearance;
  // By hand: a load on an overhang's end moves this end, the other end and, upwards, the middle; one in the middle
  // moves the ends.
  const double a = 4000, L = 8000, own = a * a * (L + a) / (3 * PipeEI), other = a * a * L / (6 * PipeEI);
  const double cross = a * L * L / (16 * PipeEI), middle = L * L * L / (48 * PipeEI);
  EXPECT_NEAR(R, 1200 - (Clearance + 800 * other + 500 * cross) / own, 0.05);
  EXPECT_NEAR(-gap.u(5, 2), 500 * middle - (1200 - R - 800) * cross, 1e-3);
  EXPECT_NEAR(-gap.u(9, 2), -800 * own + (1200 - R) * other - 500 * cross, 1e-3);
  // By statics: the left rest as a support that has settled, the others away, in both load cases but for the
  // settlement.
  model.elements.resize(8);
  model.supports.push_back({1, 2, -Clearance});
  Folder statics;
  statics.Solve(model);
  const NodalValues u = statics.Displacements();
  for (int node = 1; node <= 9; ++node) EXPECT_NEAR(gap.u(node, 2), u(1, node, 2), 1e-3) << "node " << node;
  EXPECT_NEAR(R, statics.Reactions()(1, 1, 2), 0.05);
  EXPECT_GT(R, 0);
  EXPECT_LT(-u(1, 5, 2), Clearance);
  EXPECT_GT(u(1, 9, 2), 0);
  EXPECT_EQ(gap.run.report.openGaps, 2);
  EXPECT_TRUE(gap.display.warnings.empty());
}

TEST(GapStage, RunsThePassesAndThenTheStressStages) {
  Folder folder;
  Model model = PipeOnRests(-1200, -500, 800);
  model.flags.SolveFlag = 0;  // a gap run solves whatever the flag says
  folder.Write(model);
  folder.Write(".RVP", "of an earlier run, with no number in it");
  folder.Write(".GPD", "of an earlier run");
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_TRUE(display.messages.empty() && display.warnings.empty());
  EXPECT_FALSE(folder.Has(".KRT"));
  EXPECT_EQ(folder.Read(".GPD"), "1,10,0,-1,0,200,100\n5,11,0,-1,0,200,100\n9,12,0,-1,0,200,100\n");
  const auto passes = std::count(display.stages.begin(), display.stages.end(), "Gap");
  EXPECT_EQ(std::count(display.stages.begin(), display.stages.end(), "Sys 2.4"), passes);
  EXPECT_EQ(std::count(display.stages.begin(), display.stages.end(), "Non-Linear 1.0"), 1);
  EXPECT_EQ(folder.Displacements().cases.size(), 2u);

  // A second run with the stored matrix: the Mass stage has the gaps found, nothing is assembled.
  const std::string solution = folder.Read(".RVP");
  model.flags.CompileStiffnessFlag = 0;
  folder.Write(model);
  folder.Remove(".GPD");
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_EQ(folder.Read(".RVP"), solution);
  EXPECT_TRUE(folder.Has(".GPD"));

  // Neither stage: the linear path.
  model.flags.MassFlag = 0;
  model.flags.SolveFlag = 1;
  folder.Write(model);
  RecordingDisplay linear;
  EXPECT_EQ(folder.Run(linear), 0);
  EXPECT_EQ(std::count(linear.stages.begin(), linear.stages.end(), "Gap"), 0);
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
         m.materials[1][5] = 0;
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
