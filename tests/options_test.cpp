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

TEST(ManualStart, StaysAtTheButtonsWithoutAModelOrWithABadOne) {
  using enum MainWindowAction;
  Folder folder;
  folder.WriteExample("roof-truss");
  folder.Remove(".VPL");
  std::filesystem::remove(folder.Program("EEM.CTR"));
  RecordingDisplay display;
  display.actions = {Run, Browse, Run};
  display.paths = {folder.File(".tek")};  // the file is spelled .TEK
  EXPECT_NE(folder.Run(display), 0);
  EXPECT_EQ(display.waits, 4);
  EXPECT_EQ(display.notices.size(), 1u) << "no model chosen";
  EXPECT_EQ(display.messages, std::vector<std::string>{"NO CONSTRAINS DEFINED"});
  EXPECT_TRUE(display.form1.Command1.visible && display.form1.Command2.visible && display.form1.Command3.visible);
  folder.Write(".TEK", "2 1 0 0 0 2 0 0 99 1 2 1");
  display.actions = {Browse, Run};
  display.paths = {folder.File(".TEK")};
  EXPECT_NE(folder.Run(display), 0);
  EXPECT_EQ(display.notices.back().number, 9);
  EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
}

}  // namespace
}  // namespace velmor::testing
