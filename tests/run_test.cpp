// Whole runs from files to files.

#include <gtest/gtest.h>

#include <cstdlib>

#include "support.hpp"

namespace velmor::testing {
namespace {

/// A beam along x, fixed at its first node.
Model Cantilever() {
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddElement(7, {1, 2});
  model.materials = {{2e11, 0.3, 7850, 0.01, 0, 0, 3e-6, 0, 1e-6, 1e-5, 2e-6, 2e-5}};
  model.Fix(1, 6);
  model.cases = {{{{2, 2, 1000}, {2, 3, 500}, {2, 4, 10}}, {}}};
  return model;
}

TEST(Run, ExamplesGiveTheFiguresOfTheirPages) {
  const struct {
    const char* name;
    int loadCase, node, freedom;
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
      {"roof-truss", 1, 12, 1, false, 1.808973, 3e-7},       // stretch of the tie
      {"roof-truss", 2, 1, 2, true, 780, 1e-12},             // uplift by moments
      {"portal-frame", 1, 11, 2, true, -1012.754, 1e-3},     // settlement
      {"portal-frame", 2, 1, 2, true, 48000, 3e-4},          // half of the roof load
      {"portal-frame", 3, 10, 1, false, 4.545004e-3, 3e-3},  // sway with the spring
      {"portal-frame", 4, 6, 2, false, -0.0163218, 1e-2},    // sag with the end moments mended
      {"space-frame", 2, 0, 1, true, -79795.947, 1e-8},      // total of the base shear
      {"space-frame", 3, 0, 2, true, -49800, 1e-12},
  };
  for (const auto& f : figures) {
    SCOPED_TRACE(::testing::Message() << f.name << ", load case " << f.loadCase);
    Folder folder;
    folder.WriteExample(f.name);
    folder.Solve();
    const NodalValues values = f.reaction ? folder.Reactions() : folder.Displacements();
    const auto at = [](const auto& list, int i) { return list.at(static_cast<std::size_t>(i - 1)); };
    const double total = f.node == 0 ? at(at(values.totals, f.loadCase), f.freedom) : 0;
    EXPECT_NEAR((f.node == 0 ? total : values(f.loadCase, f.node, f.freedom)) / f.byHand, 1, f.tolerance);
  }
}

TEST(Run, ShowsItsStagesAndDeletesTheControlFile) {
  Folder folder;
  folder.Write(Cantilever());
  for (const char* old : {".LES", ".GSR"}) folder.Write(old, "of an earlier run");
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  std::string statuses;
  for (const std::string& status : display.statuses) statuses += status.substr(status.find(':') + 2) + "|";
  EXPECT_EQ(statuses,
            "Calculating Geometrical Element Properties|"
            "Declaring working Space|Generating Stiffness Matrix |Saving Matrix|"
            "Declaring working Space|Generating Mass Matrix |Saving|"
            "Declaring working Space|Applying boundary Conditions|Check Model|Solving System Matrix|Back substituting|"
            "Writing Solution to file|"
            "Declaring working Space|Reading Stiffness Matrix from file|Calculating Nodal Forces|");
  const std::vector<std::string> stages{"Kol 2.1", "EEM 3.1", "Mass 1.0", "Sys 2.4", "Nodal Force 1.0"};
  EXPECT_EQ(display.stages, stages);
  EXPECT_EQ(display.form1.caption + display.form2.caption, "Velmor 3.2Velmor 3.2");
  const ProgressWindow& form2 = display.form2;  // 12 equations, bandwidth 12, 18 / 1024 * 18 * 4 kB
  EXPECT_EQ(form2.Text2.text + " " + form2.Text3.text + " " + form2.Text4.text, "12 12 1 kB");
  EXPECT_EQ(display.form2.Label8.caption, "100 %");
  EXPECT_FALSE(folder.Has(".LES") || folder.Has(".GSR"));
  EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  RecordingDisplay again;
  EXPECT_EQ(folder.Run(again), 1);
  EXPECT_EQ(again.waits, 1);
  EXPECT_TRUE(again.messages.empty() && again.statuses.empty());
}

TEST(Run, FlagsChooseTheStages) {
  const struct {
    int eigen, mass, compile, solve;
    std::vector<std::string> stages;
  } cases[] = {
      {0, 0, 1, 1, {"Kol 2.1", "EEM 3.1", "Sys 2.4", "Nodal Force 1.0"}},
      {0, 1, 0, 0, {"Kol 2.1", "Mass 1.0"}},
      {1, 1, 0, 0, {"Kol 2.1", "Mass 1.0"}},  // the Eigen flag has its value from the EEM stage
      {0, 0, 0, 1, {"Sys 2.4", "Nodal Force 1.0"}},
      {2, 2, 2, 2, {}},
      {-1, 0, 0, -1, {}},
  };
  Folder folder;
  folder.Solve(Cantilever());
  const std::string displacements = folder.Read(".RVP"), reactions = folder.Read(".KRT");
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.eigen << c.mass << c.compile << c.solve);
    const bool prepares = c.compile == 1 || c.mass == 1;
    const std::string dat = folder.Read(".DAT");
    if (!prepares) folder.Write(".DAT", dat + "\n");  // a text of its own, which must stay
    folder.Write(".NSR", "of an earlier run");
    folder.WriteControl(3, {c.eigen, c.mass, 0, c.compile, c.solve, 2, 2});
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.stages, c.stages);
    EXPECT_EQ(folder.Read(".DAT"), prepares ? dat : dat + "\n");
    EXPECT_EQ(folder.Read(".RVP"), displacements);
    EXPECT_EQ(folder.Read(".KRT"), reactions);
    EXPECT_FALSE(folder.Has(".NSR"));
    folder.Write(".DAT", dat);
  }
}

TEST(Program, RunsTwiceAtTheSameTimeFromTwoFolders) {
  Folder truss, portal;
  truss.WriteExample("roof-truss");
  portal.WriteExample("portal-frame");
  std::string command;
  for (Folder* folder : {&truss, &portal}) {
    std::filesystem::copy_file(VELMOR_PROGRAM, folder->Program("velmor"));
    folder->WriteControl(folder == &truss ? 1 : 2, Cantilever().flags);
    command += folder->Program("velmor") + " </dev/null >/dev/null 2>&1 & " + (folder == &truss ? "p=$!; " : "q=$!; ");
  }
  EXPECT_EQ(std::system((command + "wait $p && wait $q").c_str()), 0);
  EXPECT_NEAR(truss.Displacements()(1, 6, 2), -3.978722, 1e-6);
  EXPECT_NEAR(portal.Displacements()(1, 11, 2), -0.01, 1e-12);
}

TEST(Program, TakesARelativeModelPathAndTellsByItsStatus) {
  Folder folder;
  folder.Write(Cantilever());
  folder.Remove(".MLT");
  WriteText(folder.Program("EEM.CTR"), "\"../model\"\r\n0,1,3,0,1,1,0,0\r\n");
  std::filesystem::copy_file(VELMOR_PROGRAM, folder.Program("velmor"));
  const std::string run = "cd " + folder.Program() + " && ./velmor </dev/null >/dev/null 2>errors";
  EXPECT_NE(std::system(run.c_str()), 0);
  EXPECT_TRUE(
      ReadText(folder.Program("errors")).starts_with("FILE NOT FOUND: ../model.MLT\nFATAL ERROR, RUN ABORTED\n"));
  EXPECT_NE(std::system(run.c_str()), 0);  // no EEM.CTR any more, and nobody at the buttons: it ends
  EXPECT_EQ(ReadText(folder.Program("errors")), "");
}

}  // namespace
}  // namespace velmor::testing
