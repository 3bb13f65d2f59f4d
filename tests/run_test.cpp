// Whole runs from files to files, what chooses their stages, and the buttons from which a person starts them.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

#include "run/analysis_options.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

namespace fs = std::filesystem;

TEST(Run, ExamplesGiveTheFiguresOfTheirPages) {
  const struct {
    const char* name;
    int loadCase, node, freedom;  // node 0: the total of all reactions
    bool reaction;
    double byHand, tolerance;  // relative; what the members' stretch adds in the portal
  } figures[] = {
      {"deep-wall", 2, 239, 2, true, 48559.50208, 1e-9},     // the weight about the other support
      {"floor-slab", 1, 0, 3, true, 2372842.9015, 1e-9},     // total of the own weight
      {"floor-slab", 2, 0, 3, true, 972e3, 1e-9},            // and of the load on the slab
      {"floor-slab", 4, 1, 1, false, 0.325e-3, 0.02},        // sway as frames with strips of a third of the bays
      {"box-girder", 1, 481, 3, false, -0.02043353, 5e-3},   // sag by bending and shear
      {"box-girder", 2, 481, 2, false, 4.29894e-4, 5e-4},    // twist of a thin-walled tube
      {"roof-truss", 1, 6, 2, false, -3.978722, 3e-7},       // sag by a unit load
      {"roof-truss", 2, 1, 2, true, 780, 1e-12},             // uplift by moments
      {"portal-frame", 1, 11, 2, true, -1012.754, 1e-3},     // settlement
      {"portal-frame", 3, 10, 1, false, 4.545004e-3, 3e-3},  // sway with the spring
      {"portal-frame", 4, 6, 2, false, -0.0163218, 1e-2},    // sag with the end moments mended
      {"space-frame", 2, 0, 1, true, -79795.947, 1e-8},      // base shear
      {"space-frame", 3, 0, 2, true, -49800, 1e-12},
      {"footbridge", 1, 13, 2, false, -39.853414, 1e-6},  // sag under its masses as weights, after its modes
      {"pipe-on-rests", 1, 1, 2, false, -8, 2e-5},        // down to the rest
  };
  for (const auto& f : figures) {
    SCOPED_TRACE(::testing::Message() << f.name << ", load case " << f.loadCase);
    Folder folder;
    folder.WriteExample(f.name);
    folder.Solve();
    const NodalValues values = f.reaction ? folder.Reactions() : folder.Displacements();
    const auto at = [](const auto& list, int i) { return list.at(static_cast<std::size_t>(i - 1)); };
    const double value =
        f.node == 0 ? at(at(values.totals, f.loadCase), f.freedom) : values(f.loadCase, f.node, f.freedom);
    EXPECT_NEAR(value / f.byHand, 1, f.tolerance);
  }
}

using Files = std::map<std::string, std::string>;  // text of each by name

/// The blocks of a page that carry the name of a file, ```name to ```, from the EEM.CTR of a model to the next EEM.CTR.
Files FilesOf(const std::string& page, const std::string& model) {
  const std::string text = ReadText(std::string(VELMOR_DOCS_FOLDER) + "/" + page), fence = "```";
  Files files;
  bool belongs = false;
  for (std::size_t open = text.find(fence), close = 0; open < text.size(); open = text.find(fence, close + 4)) {
    const std::size_t start = text.find('\n', open) + 1;
    close = text.find("\n" + fence, start - 1);
    const std::string name = text.substr(open + 3, start - open - 4), block = text.substr(start, close + 1 - start);
    if (name == "EEM.CTR") belongs = block.starts_with('"' + model + '"');
    if (belongs && !name.empty()) files[name] = block;
  }
  return files;
}

/// A folder in which an example of the pages has run, as the working folder, without any message, failure or lost line.
/// Its results have the names that a folder looks for.
struct Example : Folder {
  explicit Example(const std::string& model) : files(FilesOf("input-files.md", model)) {
    const fs::path before = fs::current_path();
    fs::current_path(fs::path(File()).parent_path());
    for (const auto& [name, text] : files) WriteText(name.starts_with(model + ".") ? name : Program(name), text);
    Solve();
    for (const auto& entry : fs::directory_iterator(".")) {
      if (entry.path().stem() == model) fs::rename(entry.path(), File(entry.path().extension()));
    }
    fs::current_path(before);
  }
  const Files files;
};

TEST(Run, PrintedExamplesGiveTheFiguresOfTheirPages) {
  const Example shelf("shelf");
  for (const char* delivered : {"ELTYP.DAT", "PLAT.ELM"}) {
    EXPECT_EQ(shelf.files.at(delivered), ReadText(std::string(VELMOR_DATA_FOLDER) + "/" + delivered));
  }
  for (const char* extension : {".MAS", ".EMS", ".LES", ".NSR", ".NSL", ".NSA", ".NLA", ".RSA", ".RLA"}) {
    EXPECT_TRUE(shelf.Has(extension)) << extension;
  }
  EXPECT_EQ(shelf.Read(".MAT").size(), 16280u);
  // 0.002 N/mm2 on 400 by 250: what the foot does not carry goes into the wall.
  EXPECT_NEAR(shelf.Reactions().totals.at(0).at(2) - 50 * shelf.Displacements()(1, 5, 3), 200, 1e-5);
  const Example chain("chain"), wall("wall");
  EXPECT_NEAR(std::stod(chain.Read(".EIG").substr(4)), std::numbers::pi / std::sin(std::numbers::pi / 18), 1e-5);
  EXPECT_NEAR(wall.Blocks(".LES").at(0).at(4).at(4) * 250, -10000, 5);  // the gap between bar and wall
}

TEST(Run, ShowsItsSizeAndDeletesTheControlFile) {
  Folder folder;
  folder.WriteExample("roof-truss");
  folder.WriteControl(1, {.LineStressFlag = 0, .FEStressFlag = 0});
  RecordingDisplay display, again;
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_EQ(display.statuses.back(), "Nodal Force 1.0: Calculating Nodal Forces");
  const ProgressWindow& form2 = display.form2;  // 24 equations, bandwidth 8, 26 / 1024 * 10 * 4 kB
  EXPECT_EQ(form2.Text2.text + " " + form2.Text3.text + " " + form2.Text4.text, "24 8 1 kB");
  EXPECT_EQ(display.form1.caption + form2.caption + form2.Label8.caption, "Velmor 3.2Velmor 3.2100 %");
  EXPECT_EQ(folder.Run(again), 1);  // without a control file it stays at the buttons
  EXPECT_EQ(again.waits, 1);
  EXPECT_TRUE(again.messages.empty() && again.statuses.empty());
}

TEST(Run, FlagsChooseTheStages) {
  const struct {
    int eigen, mass, compile, solve;
    std::vector<std::string> stages;
  } cases[] = {
      {0, 1, 1, 1, {"Kol 2.1", "EEM 3.1", "Mass 1.0", "Sys 2.4", "Nodal Force 1.0"}},
      {0, 0, 1, 1, {"Kol 2.1", "EEM 3.1", "Sys 2.4", "Nodal Force 1.0"}},
      {1, 1, 0, 0, {"Kol 2.1", "Mass 1.0"}},  // the Eigen flag has its value from the EEM stage
      {0, 0, 0, 1, {"Sys 2.4", "Nodal Force 1.0"}},
      {-1, 0, 2, -1, {}},
  };
  Folder folder;
  folder.WriteExample("roof-truss");
  folder.Solve();
  const std::string dat = folder.Read(".DAT"), displacements = folder.Read(".RVP"), reactions = folder.Read(".KRT");
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.eigen << c.mass << c.compile << c.solve);
    const bool prepares = c.compile == 1 || c.mass == 1;
    folder.Write(".DAT", prepares ? "of an earlier run" : dat + "\n");  // a text of its own, which must stay
    for (const char* old : {".LES", ".NSR"}) folder.Write(old, "of an earlier run");
    folder.WriteControl(1, {c.eigen, c.mass, 0, c.compile, c.solve, 2, 2});
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.stages, c.stages);
    EXPECT_EQ(folder.Read(".DAT"), prepares ? dat : dat + "\n");
    EXPECT_EQ(folder.Read(".RVP"), displacements);
    EXPECT_EQ(folder.Read(".KRT"), reactions);
    EXPECT_FALSE(folder.Has(".LES") || folder.Has(".NSR"));
  }
}

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
  fs::remove(folder.Program("EEM.CTR"));
  RecordingDisplay display;
  display.actions = {Run, Browse, Run};
  display.paths = {folder.File(".tek")};  // the file is spelled .TEK
  EXPECT_NE(folder.Run(display), 0);
  EXPECT_EQ(display.waits, 4);
  EXPECT_EQ(display.notices.size(), 2u) << "no model chosen, no supports";
  EXPECT_EQ(display.messages, std::vector<std::string>{"NO CONSTRAINS DEFINED"});
  EXPECT_TRUE(display.form1.Command1.visible && display.form1.Command2.visible && display.form1.Command3.visible);
  folder.Write(".TEK", "2 1 0 0 0 2 0 0 99 1 2 1");
  display.actions = {Browse, Run};
  display.paths = {folder.File(".TEK")};
  EXPECT_NE(folder.Run(display), 0);
  EXPECT_EQ(display.notices.back().number, 9);
  EXPECT_FALSE(fs::exists(folder.Program("EEM.CTR")));
}

}  // namespace
}  // namespace velmor::testing
