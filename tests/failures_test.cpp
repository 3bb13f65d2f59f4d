// What wrong input, missing files and a full disk do to a run: exact messages, error numbers, what stays on disk.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstring>
#include <functional>
#include <sstream>

#include "run/failure_answer.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

namespace fs = std::filesystem;
using Spoil = std::function<void(const Folder&)>;
using Messages = std::vector<std::string>;

/// Two beams in space, with a load along y on both and on their nodes.
Model Cantilever() {
  Model model;
  for (double x : {0.0, 1.0, 2.0}) model.AddNode(x, 0);
  model.AddElement(7, {1, 2});
  model.AddElement(7, {2, 3});
  model.materials = {{1000, 0.25, 3, 1, 0, 0, 1, 0, 1, 1, 1, 1}};
  model.Fix(1, 6);
  model.cases = {{{{2, 2, 1}, {3, 2, 1}}, {{1, 2, 1}, {2, 2, 1}}}};
  return model;
}

/// Path of a file of the model, or of the program folder for a name without a point in front.
std::string PathOf(const Folder& f, const std::string& file) { return file[0] == '.' ? f.File(file) : f.Program(file); }
Spoil Text(std::string file, std::string text) {
  return [=](const Folder& f) { WriteText(PathOf(f, file), text); };
}
Spoil Change(std::string file, std::string from, std::string to) {
  return [=](const Folder& f) {
    std::string text = f.Read(file);
    f.Write(file, text.replace(text.find(from), from.size(), to));
  };
}
Spoil Gone(std::string file) {
  return [=](const Folder& f) { fs::remove(PathOf(f, file)); };
}
Spoil Resized(std::string file, std::uintmax_t bytes) {
  return [=](const Folder& f) { fs::resize_file(f.File(file), bytes); };
}
Spoil FullDisk(std::string file) {
  return [=](const Folder& f) { fs::create_symlink("/dev/full", f.File(file)); };
}
Spoil Tek(std::string elements) { return Text(".TEK", "3 1 0 0 0 1 0 0 2 0 0 " + elements); }

/// A height of 2 in the last row of NAME.MAT, which has 1.
void SpoilHeight(const Folder& f) {
  std::string bytes = f.Read(".MAT");
  const double height = 2;
  std::memcpy(&bytes[8 * 18], &height, 8);
  f.Write(".MAT", bytes);
}

/// A bar between the first and the last of 100000 nodes.
Spoil WideModel() {
  std::string text = "100000 1 ";
  for (int i = 0; i < 300000; ++i) text += "0 ";
  return Text(".TEK", text + "1 1 100000 1");
}

struct Fault {
  std::string name;
  Spoil spoil;
  int number;         // of the failure; 0 if none is shown
  std::string files;  // results on disk afterwards
  Messages messages{};
};

/// Runs the cantilever with a fault. With Compile and Mass off a whole run goes before.
void ExpectFault(const char* stage, const Fault& fault, const AnalysisFlags& flags = Cantilever().flags) {
  SCOPED_TRACE(stage + (": " + fault.name));
  Folder folder;
  folder.Write(Cantilever());
  if (!IsOn(flags.CompileStiffnessFlag) && !IsOn(flags.MassFlag)) folder.Solve(Cantilever());
  folder.WriteControl(3, flags);
  fault.spoil(folder);
  RecordingDisplay display;
  const bool resources = fault.number == 7 || fault.number == 57 || fault.number == 75;
  const bool startUp = fault.name.find("EEM.CTR") != std::string::npos;
  EXPECT_EQ(folder.Run(display), resources ? exit_status::Resources
                                 : startUp ? exit_status::StartUp
                                           : exit_status::BadInput);
  Messages messages = fault.messages;
  for (std::string& m : messages) {
    if (m.starts_with("FILE")) m.insert(16, folder.File());
  }
  EXPECT_EQ(display.messages, messages);
  EXPECT_FALSE(fs::exists(folder.Program("EEM.CTR")));
  std::string files;
  for (const char* extension : {".DAT", ".MAT", ".MAS", ".EMS", ".RVP", ".KRT"}) {
    if (folder.Has(extension)) files += extension;
    EXPECT_FALSE(folder.Has(extension + std::string(".part")));
  }
  EXPECT_EQ(files, fault.files);
  const std::string number = std::to_string(fault.number);
  EXPECT_EQ(display.notices.empty() ? "0" : std::to_string(display.notices.back().number), number);
  EXPECT_EQ(display.notices.empty() ? stage : display.notices.back().stage, stage);
  const bool atButtons = stage == std::string("Kol 2.1");
  EXPECT_EQ(display.waits, atButtons ? 1 : 0);
  if (atButtons && fault.number != 0) {
    EXPECT_EQ(display.form1.Label2.caption + number + display.form1.Label3.caption,
              "Error No." + display.form1.Text2.text + "Errorlijn");
    EXPECT_TRUE(display.form1.Text2.visible && display.form1.Text3.visible && display.form1.Command1.visible);
  } else if (messages == Messages{"CALCULATION STOPPED"}) {
    EXPECT_EQ(display.form2.Label5.caption + number + display.form2.Label6.caption,
              "Error No." + display.form2.Text5.text + "Error line");
    EXPECT_TRUE(display.form2.Text5.visible && display.form2.Text6.visible);
  }
}

const Messages Stopped{"CALCULATION STOPPED"};
const Messages NoMaterials{"NO MATERIALS DEFINED", "FATAL ERROR, RUN ABORTED"};
Messages NotFound(const char* extension) {
  return {std::string("FILE NOT FOUND: ") + extension, "FATAL ERROR, RUN ABORTED"};
}

TEST(Failures, OfTheKolStageWaitAtTheButtons) {
  const Fault faults[] = {
      {"no model", Gone(".TEK"), 53, ""},
      {"cut short", Tek("7 1 2"), 62, ""},
      {"fraction for a node", Tek("7 1 1.5 1"), 13, ""},
      {"node 0", Tek("7 0 1 1"), 9, ""},
      {"node above N, passive", Tek("0 1 4 1"), 9, ""},
      {"negative count", Text(".TEK", "-1 0"), 9, ""},
      {"more nodes than the file can hold", Text(".TEK", "2000000000 1 0 0 0"), 62, ""},
      {"type 15", Tek("15 1 2 1"), 9, ""},
      {"type without a row", Tek("18 1 2 1"), 9, ""},
      {"super element", Tek("100 \"hull\" 1 2 1 2"), 9, "", {"SUPER ELEMENT IS NOT SUPPORTED"}},
      {"triangle on a line", Tek("2 1 2 3 1"), 11, ""},
      {"no ELTYP.DAT", Gone("ELTYP.DAT"), 53, ""},
      {"too many types", Text("ELTYP.DAT", "27 \"Passive\" 2"), 9, ""},
      {"beam of one node", Text("ELTYP.DAT", "8 a 2 b 2 c 3 d 3 e 4 f 4 g 4 h 1"), 9, ""},
      {"EEM.CTR cut short", Text("EEM.CTR", "\"model\" 0 1 3"), 62, ""},
      {"NAME.DAT is a folder", [](const Folder& f) { fs::create_directory(f.File(".DAT")); }, 75, ".DAT"},
      {"disk full", FullDisk(".DAT"), 57, ".DAT"},
      {"no supports", Gone(".VPL"), 0, ".DAT", {"NO CONSTRAINS DEFINED"}},
  };
  for (const Fault& fault : faults) ExpectFault("Kol 2.1", fault);
}

TEST(Failures, OfTheMatrixStagesEndTheProgram) {
  const AnalysisFlags massOnly{.CompileStiffnessFlag = 0, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  const Fault both[] = {
      {"no materials' file", Gone(".MLT"), 53, ".DAT", NotFound(".MLT")},
      {"empty", Text(".MLT", ""), 62, ".DAT", NoMaterials},
      {"no count", Text(".MLT", "steel"), 13, ".DAT", NoMaterials},
      {"negative count", Text(".MLT", "-1"), 9, ".DAT", Stopped},
      {"cut short", Resized(".MLT", 30), 62, ".DAT", Stopped},
      {"number beyond a Double", Change(".MLT", "1000", "1e999"), 6, ".DAT", Stopped},
      {"more materials than MaterialLimit", Text("decmem.DAT", "9 9 9 0 9 9 9"), 9, ".DAT", Stopped},
      {"material 2 of 1", Tek("7 1 2 2"), 9, ".DAT", Stopped},
      {"material 0", Tek("7 1 2 0"), 9, ".DAT", Stopped},
      {"analysis code 4", [](const Folder& f) { f.WriteControl(4, {.EigenFlag = 1}); }, 9, ".DAT", Stopped},
  };
  for (const Fault& fault : both) {
    ExpectFault("EEM 3.1", fault);
    if (fault.name != "analysis code 4") ExpectFault("Mass 1.0", fault, massOnly);
  }
  ExpectFault("EEM 3.1", {"no shear modulus", Change(".MLT", "0.25", "-1"), 11, ".DAT", Stopped});
  ExpectFault("EEM 3.1", {"no memory", WideModel(), 7, ".DAT", {"Out of Memory, Reduce size of declaired model"}});
  ExpectFault("Mass 1.0", {"disk full", FullDisk(".MAS"), 57, ".DAT.MAS", Stopped}, massOnly);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{1000, limit.rlim_max};  // above NAME.DAT, below NAME.MAT
  ExpectFault("EEM 3.1", {"disk full", [&](const Folder&) { setrlimit(RLIMIT_FSIZE, &small); }, 57, ".DAT", Stopped});
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(Failures, OfTheSolutionAndBehindIt) {
  const std::string prepared = ".DAT.MAT.MAS.EMS", all = prepared + ".RVP.KRT";
  const Fault faults[] = {
      {"no load cases' file", Gone(".lcd"), 53, prepared, NotFound(".lcd")},
      {"negative load case count", Text(".lcd", "-1"), 9, prepared, Stopped},
      {"load cases cut short", Text(".lcd", "1 a 0 0 0"), 62, prepared, Stopped},
      {"value beyond a Single", Text(".lcd", "1 a 0 1e39 0 0 0 0"), 6, prepared, Stopped},
      {"no load case for the supports", Text(".lcd", "0"), 9, prepared, Stopped},
      {"negative support count", Text(".VPL", "-2"), 9, prepared, Stopped},
      {"support of node 4", Text(".VPL", "1 4 9 0"), 9, prepared, Stopped},
      {"support of direction 0", Text(".VPL", "1 1 0 0"), 9, prepared, Stopped},
      {"infinite displacement", Text(".VPL", "6 1 1 0 1 2 1e300 1 3 0 1 4 0 1 5 0 1 6 0"), 6, prepared, Stopped},
      {"disk full", FullDisk(".RVP"), 57, prepared + ".RVP", Stopped},
  };
  for (const Fault& fault : faults) ExpectFault("Sys 2.4", fault);
  const AnalysisFlags solveOnly{.MassFlag = 0, .CompileStiffnessFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  const Fault stored[] = {
      {"no NAME.DAT", Gone(".DAT"), 53, ".MAT.MAS.EMS.RVP.KRT", NotFound(".DAT")},
      {"no NAME.MAT", Gone(".MAT"), 53, ".DAT.MAS.EMS.RVP.KRT", NotFound(".MAT")},
      {"no supports", Gone(".VPL"), 53, all, NotFound(".vpl")},
      {"NAME.MAT cut short", Resized(".MAT", 2000), 62, all, Stopped},
      {"NAME.MAT of a larger model", Resized(".MAT", 8 * 25 * 20), 9, all, Stopped},
      {"impossible height", SpoilHeight, 9, all, Stopped},
      {"NAME.DAT of another model", Change(".DAT", "3", "4"), 9, all, Stopped},
      {"NAME.DAT of another code", Change(".DAT", "12", "8"), 9, all, Stopped},
      {"word in NAME.DAT", Change(".DAT", "12", "x"), 13, all, Stopped},
  };
  for (const Fault& fault : stored) ExpectFault("Sys 2.4", fault, solveOnly);
  ExpectFault("Nodal Force 1.0", {"disk full", FullDisk(".KRT"), 57, all, {"PROCESS STOPPED"}});
  const AnalysisFlags noSolve{.SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  ExpectFault("NSA 2.3", {"no load cases at the end", Gone(".lcd"), 53, prepared, NotFound(".lcd")}, noSolve);
}

/// Takes the control file away when a stage comes up.
struct TakingDisplay : RecordingDisplay {
  using RecordingDisplay::Refresh;
  void Refresh(const ProgressWindow& window) override {
    if (window.Frame1.caption == stage) fs::remove(control);
  }
  std::string stage, control;
};

TEST(Failures, OfTheControlFileAreAnsweredByEachStageInItsOwnWay) {
  for (const auto& [stage, message] : {std::pair{"EEM 3.1", "NOT CORRECTLY STARTED"},
                                       {"Mass 1.0", "NOT CORRECTLY STARTED"},
                                       {"Sys 2.4", "CALCULATION STOPPED"},
                                       {"Nodal Force 1.0", "PROCESS STOPPED"}}) {
    Folder folder;
    folder.Write(Cantilever());
    TakingDisplay display;
    display.stage = stage;
    display.control = folder.Program("EEM.CTR");
    EXPECT_NE(folder.Run(display), 0);
    EXPECT_EQ(display.messages, Messages{message}) << stage;
  }
}

TEST(Failures, OfTheLoadAssemblyEndItSilentlyWithAWarning) {
  AnalysisFlags whole = Cantilever().flags, solveOnly = whole;
  solveOnly.CompileStiffnessFlag = solveOnly.MassFlag = 0;
  const auto tip = [](const Spoil& spoil, const AnalysisFlags& flags, bool warned) {
    Folder folder;
    folder.Solve(Cantilever());
    folder.WriteControl(3, flags);
    spoil(folder);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.Warned(), warned);
    EXPECT_TRUE(display.messages.empty());
    return folder.Displacements()(1, 3, 2);
  };
  const Spoil noLoads = [](const Folder& f) { f.Write(".ell", ""), f.Write(".KNK", "0"); };
  const auto with = [&](Spoil loads) { return tip([&](const Folder& f) { noLoads(f), loads(f); }, whole, false); };
  const double onFirst = with(Text(".ell", "1 1 2 1")), onElements = with(Text(".ell", "2 1 2 1 2 2 1"));
  const double onMiddle = with(Text(".KNK", "1 2 2 1")), onNodes = with(Text(".KNK", "2 2 2 1 3 2 1"));
  const struct {
    const char* name;
    Spoil spoil;
    double tip;
    bool warned = true;
  } cases[] = {
      {"no NAME.ell: no nodal loads either", Gone(".ell"), 0},
      {"no NAME.KNK", Gone(".KNK"), onElements},
      {"node above N", Text(".KNK", "2 2 2 1 4 2 1"), onElements + onMiddle},
      {"node 0 in a direction that the model lacks", Text(".KNK", "2 2 2 1 0 9 1"), onElements + onMiddle},
      {"direction 0", Text(".KNK", "2 2 2 1 3 0 1"), onElements + onMiddle},
      {"element above E", Text(".ell", "2 1 2 1 3 2 1"), onFirst},
      {"more blocks than load cases", Text(".ell", "1 1 2 1 1 2 2 1"), onFirst},
      {"more empty blocks than load cases", Text(".ell", "2 1 2 1 2 2 1 0 0"), onElements + onNodes, false},
      {"element 0 and direction 4", Text(".ell", "4 1 2 1 2 2 1 0 2 1 1 4 1"), onElements + onNodes},
      {"the element number is rounded", Text(".ell", "2 0.75 2 1 2.25 2 1"), onElements + onNodes, false},
  };
  for (const auto& c : cases) EXPECT_NEAR(tip(c.spoil, whole, c.warned), c.tip, 1e-15) << c.name;
  EXPECT_NEAR(tip([](const Folder&) {}, solveOnly, true), onNodes, 1e-15) << "no elements known";
  EXPECT_NEAR(tip(Text(".lcd", "1 a 2 5 0 0 0 1"), solveOnly, true), onNodes, 1e-15) << "no masses known";
}

TEST(Failures, OfTheWorkingSpaceFileLeaveTheDefaults) {
  for (const char* text : {"", "9 9 9 0 9 9", "9 9 9 0 9 9 x", "9 9 9 0 9 9 -9"}) {
    Folder folder;
    folder.Write(Cantilever());
    WriteText(folder.Program("decmem.DAT"), text);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0) << text;
    EXPECT_EQ(display.messages, Messages{"Error reading Model size. Set your default model size!!  "
                                         "Use [File,Model size..] from the main menu"});
  }
}

TEST(Failures, NoItemOfAnyFileCanMakeARunLie) {
  // Every number of every input file in turn is a word, missing with all behind it, or a number that may be too much. A
  // run either tells (status, warning) or leaves a whole table of displacements; a word or a cut it must tell.
  Folder folder;
  Model model = Cantilever();
  model.AddElement(16, {3});
  model.AddElement(2, {1, 2, 3});
  model.nodes[1][1] = 1;
  folder.Write(model);
  for (const std::string extension : {".TEK", ".MLT", ".VPL", ".lcd", ".KNK", ".ell"}) {
    const std::string whole = folder.Read(extension);
    for (std::size_t at = 0, end = 0; at < whole.size(); at = whole.find_first_not_of(" ,\n", end)) {
      end = whole.find_first_of(" ,\n", at);
      if (whole.find_first_of("abcdefghijklmnopqrstuvwxyz\"", at) < end) continue;  // a name
      for (const std::string item : {"word", "", "-7", "0", "3", "1e9", "1e300"}) {
        if (item.empty() && extension == ".ell" && at == 0) continue;  // an empty file of element loads is a whole one
        SCOPED_TRACE(::testing::Message() << extension << ", \"" << item << "\" at byte " << at);
        folder.Write(extension, whole.substr(0, at) + (item.empty() ? "" : item + whole.substr(end)));
        folder.Remove(".RVP");
        folder.WriteControl(3, model.flags);
        RecordingDisplay display;
        const bool told = folder.Run(display) != 0 || display.Warned();
        EXPECT_TRUE(told || (!item.empty() && item != "word"));
        EXPECT_TRUE(told || folder.Blocks(".RVP").at(0).size() == 1u + 3);
      }
    }
    folder.Write(extension, whole);
  }
  folder.Solve(model);
}

}  // namespace
}  // namespace velmor::testing
