// The options window and the manual path of the main window.

#include <gtest/gtest.h>

#include "run/analysis_options.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

using enum OptionsBox;

/// The boxes after opening from the flags and a sequence of clicks: value, and '-' where a box is disabled, in the
/// order Check1 0, 1, 2, Check3 1, 2, Check2 0, 1.
std::string AfterClicks(const AnalysisFlags& flags, const std::vector<OptionsBox>& clicks, bool restricted = false) {
  OptionsWindow window;
  if (restricted) RestrictOptions(window);
  OpenOptions(window, flags, 0);
  for (OptionsBox box : clicks) ClickOption(window, box);
  std::string boxes;
  for (OptionsBox box : {CompileStiffness, Solve, Eigen, LineStress, FEStress, Renumber, Mass}) {
    boxes += BoxOf(window, box).value == 1 ? "1" : "0";
    if (!BoxOf(window, box).enabled) boxes += "-";
  }
  return boxes;
}

TEST(Options, KeepTheBoxesConsistent) {
  const AnalysisFlags defaults, renumber{.RenumberFlag = 1};
  const AnalysisFlags solveOnly{.MassFlag = 0, .RenumberFlag = 1, .CompileStiffnessFlag = 0};
  struct {
    const char* name;
    AnalysisFlags flags;
    std::vector<OptionsBox> clicks;
    std::string boxes;
  } const cases[] = {
      {"opened on the defaults", defaults, {}, "1101101"},
      {"opened on a solve-only run",
       solveOnly,
       {},
       "01011"
       "0-0"},
      {"eigen on", defaults, {Eigen}, "10-10-0-01"},
      {"eigen on and off leaves them clear", defaults, {Eigen, Eigen}, "1000001"},
      {"a disabled box takes no click", defaults, {Eigen, Solve, LineStress}, "10-10-0-01"},
      {"compile off: no renumbering",
       renumber,
       {CompileStiffness},
       "01011"
       "0-1"},
      {"compile on again: the box comes back clear", renumber, {CompileStiffness, CompileStiffness}, "1101101"},
      {"solve off with stresses on",
       renumber,
       {Solve},
       "10011"
       "0-1"},
      {"solve off, stresses off", renumber, {LineStress, FEStress, Solve}, "1000011"},
      {"a stress box back on without a solution",
       renumber,
       {LineStress, FEStress, Solve, FEStress},
       "10001"
       "0-1"},
      {"mass and renumber switch alone", defaults, {Mass, Renumber}, "1101110"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(AfterClicks(c.flags, c.clicks), c.boxes);
  }
}

TEST(Options, ClearTheRenumberBoxThoughItIsInvisible) {
  EXPECT_EQ(AfterClicks({.RenumberFlag = 1}, {CompileStiffness, Renumber}, true),
            "01011"
            "0-1");
}

/// A bar in the plane: the scan settles code 1 with the 2-D option and 0 without.
Model Bar() {
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddElement(1, {1, 2});
  model.materials = {{1000, 0, 0, 1}};
  model.supports = {{1, 1}, {1, 2}, {1, 3}, {2, 2}, {2, 3}};
  model.cases = {{{{2, 1, 5}}, {}}};
  return model;
}

struct ManualStart : ::testing::Test {
  void SetUp() override {
    folder.Write(Bar());
    std::filesystem::remove(folder.Program("EEM.CTR"));
  }
  int Run(std::deque<MainWindowAction> actions, std::vector<OptionsBox> clicks = {}) {
    display.actions = std::move(actions);
    display.clicks = std::move(clicks);
    return folder.Run(display);
  }
  Folder folder;
  RecordingDisplay display;
};
using enum MainWindowAction;

TEST_F(ManualStart, WaitsAtTheButtonsWithoutAMessage) {
  EXPECT_NE(Run({}), 0);
  EXPECT_EQ(display.waits, 1);
  EXPECT_TRUE(display.messages.empty());
  EXPECT_TRUE(display.stages.empty());
  EXPECT_TRUE(display.form1.Command1.visible && display.form1.Command2.visible && display.form1.Command3.visible);
  EXPECT_FALSE(display.form1.Text2.visible);
}

TEST_F(ManualStart, RunsTheChosenModelWithTheChosenOptions) {
  display.paths = {folder.File(".tek")};  // the file is spelled .TEK
  EXPECT_EQ(Run({Browse, Options, MainWindowAction::Run}, {TwoDimensional, LineStress, FEStress}), 0);
  EXPECT_EQ(folder.Displacements().freedoms, 2);
  EXPECT_NEAR(folder.Displacements()(1, 2, 1), 5 * 2 / 1000.0, 1e-15);
  EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
}

TEST_F(ManualStart, StaysAtTheButtonsWithoutAModelOrWithABadOne) {
  EXPECT_NE(Run({MainWindowAction::Run}), 0);
  EXPECT_EQ(display.waits, 2);
  EXPECT_EQ(display.notices.size(), 1u);
  folder.Write(".TEK", "2 1 0 0 0 2 0 0 99 1 2 1");
  display.paths = {folder.File(".TEK")};
  EXPECT_NE(Run({Browse, MainWindowAction::Run}), 0);
  EXPECT_EQ(display.notices.back().number, 9);
  EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
}

TEST_F(ManualStart, ReturnsToTheDefaultsWhenTheModelFails) {
  folder.Remove(".VPL");
  display.paths = {folder.File(".TEK")};
  EXPECT_NE(Run({Browse, Options, MainWindowAction::Run}, {Mass}), 0);
  EXPECT_EQ(display.messages, std::vector<std::string>{"NO CONSTRAINS DEFINED"});
  EXPECT_EQ(display.waits, 4);
  EXPECT_TRUE(folder.Has(".DAT"));
  EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));  // gone with the window
}

}  // namespace
}  // namespace velmor::testing
