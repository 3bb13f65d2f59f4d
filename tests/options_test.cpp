// The options window and the manual path of the main window.

#include <gtest/gtest.h>

#include "run/analysis_options.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

using enum OptionsBox;

/// The boxes after opening from the flags and a sequence of clicks: value, and x where a box is disabled, in the
/// order Check1 0, 1, 2, Check3 1, 2, Check2 0, 1.
std::string AfterClicks(const AnalysisFlags& flags, const std::vector<OptionsBox>& clicks, bool restricted = false) {
  OptionsWindow window;
  if (restricted) RestrictOptions(window);
  OpenOptions(window, flags, 0);
  for (OptionsBox box : clicks) ClickOption(window, box);
  std::string boxes;
  for (OptionsBox box : {CompileStiffness, Solve, Eigen, LineStress, FEStress, Renumber, Mass}) {
    boxes += BoxOf(window, box).value == 1 ? "1" : "0";
    if (!BoxOf(window, box).enabled) boxes += "x";
  }
  return boxes;
}

TEST(Options, KeepTheBoxesConsistent) {
  const AnalysisFlags defaults, renumber{.RenumberFlag = 1};
  const AnalysisFlags solveOnly{.MassFlag = 0, .RenumberFlag = 1, .CompileStiffnessFlag = 0};
  const struct {
    const char* name;
    AnalysisFlags flags;
    std::vector<OptionsBox> clicks;
    std::string boxes;
  } cases[] = {
      {"opened on a solve-only run", solveOnly, {}, "010110x0"},
      {"eigen on, and its disabled boxes take no click", defaults, {Eigen, Solve, LineStress}, "10x10x0x01"},
      {"eigen on and off leaves them clear", defaults, {Eigen, Eigen}, "1000001"},
      {"compile off: no renumbering", renumber, {CompileStiffness}, "010110x1"},
      {"compile on again: the box comes back clear", renumber, {CompileStiffness, CompileStiffness}, "1101101"},
      {"solve off with a stress on", renumber, {FEStress, Solve}, "100100x1"},
      {"solve off, stresses off", renumber, {LineStress, FEStress, Solve}, "1000011"},
      {"a stress on without a solution", renumber, {LineStress, FEStress, Solve, FEStress}, "100010x1"},
      {"mass and renumber switch alone", defaults, {Mass, Renumber}, "1101110"},
  };
  for (const auto& c : cases) EXPECT_EQ(AfterClicks(c.flags, c.clicks), c.boxes) << c.name;
  EXPECT_EQ(AfterClicks(renumber, {CompileStiffness, Renumber}, true), "010110x1") << "cleared though it is invisible";
  EXPECT_EQ(AfterClicks(defaults, {Renumber}, true), "1101101") << "an invisible box takes no click";
}

/// A bar in the plane, started at the buttons: the scan settles code 1 with the 2-D option and 0 without.
struct ManualStart : ::testing::Test {
  void SetUp() override {
    Model bar;
    bar.nodes = {{0, 0, 0}, {2, 0, 0}};
    bar.AddElement(1, {1, 2});
    bar.materials = {{1000, 0, 0, 1}};
    bar.supports = {{1, 1}, {1, 2}, {1, 3}, {2, 2}, {2, 3}};
    bar.cases = {{{{2, 1, 5}}, {}}};
    folder.Write(bar);
    std::filesystem::remove(folder.Program("EEM.CTR"));
    display.paths = {folder.File(".tek")};  // the file is spelled .TEK
  }
  int Run(std::deque<MainWindowAction> actions, std::vector<OptionsBox> clicks = {}) {
    display.actions = std::move(actions);
    display.clicks = std::move(clicks);
    const int status = folder.Run(display);
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
    return status;
  }
  Folder folder;
  RecordingDisplay display;
};
using enum MainWindowAction;

TEST_F(ManualStart, RunsTheChosenModelWithTheChosenOptions) {
  EXPECT_EQ(Run({Browse, Options, MainWindowAction::Run}, {TwoDimensional, LineStress, FEStress}), 0);
  EXPECT_EQ(folder.Displacements().freedoms, 2);
  EXPECT_NEAR(folder.Displacements()(1, 2, 1), 5 * 2 / 1000.0, 1e-15);
}

TEST_F(ManualStart, StaysAtTheButtonsWithoutAModelOrWithABadOne) {
  EXPECT_NE(Run({MainWindowAction::Run}), 0);
  EXPECT_EQ(display.waits, 2);
  EXPECT_EQ(display.notices.size(), 1u);
  folder.Remove(".VPL");
  EXPECT_NE(Run({Browse, MainWindowAction::Run}), 0);
  EXPECT_EQ(display.messages, std::vector<std::string>{"NO CONSTRAINS DEFINED"});
  EXPECT_EQ(display.waits, 2 + 3);
  EXPECT_TRUE(display.form1.Command1.visible && display.form1.Command2.visible && display.form1.Command3.visible);
  folder.Write(".TEK", "2 1 0 0 0 2 0 0 99 1 2 1");
  display.paths = {folder.File(".TEK")};
  EXPECT_NE(Run({Browse, MainWindowAction::Run}), 0);
  EXPECT_EQ(display.notices.back().number, 9);
}

}  // namespace
}  // namespace velmor::testing
