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
  model.nodes = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  model.elements = {{7, {1, 2}}, {7, {2, 3}}};
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
Spoil Gone(std::string file) {
  return [=](const Folder& f) { fs::remove(PathOf(f, file)); };
}
void Nothing(const Folder&) {}
Spoil FullDisk(std::string file) {
  return [=](const Folder& f) { fs::create_symlink("/dev/full", f.File(file)); };
}
Spoil Tek(std::string elements) { return Text(".TEK", "3 1 0 0 0 1 0 0 2 0 0 " + elements); }
/// A bar between the first and the last of 100000 nodes.
Spoil WideModel() { return Text(".TEK", "100000 1 " + Repeated(300000, "0 ") + "1 1 100000 1"); }
/// A beam, and a gap without a limit behind it.
void WithGap(const Folder& f) { f.Write(".TEK", "3 2 0 0 0 1 0 0 2 0 0 7 1 2 1 14 2 3 1"); }
/// A 2 in the last row of NAME.MAT, in the place of its height or of its second entry: it has a height of 1.
Spoil SpoiltRow(std::size_t column) {
  return [=](const Folder& f) {
    std::string bytes = f.Read(".MAT");
    const double two = 2;
    std::memcpy(&bytes[8 * (25 * column + 18)], &two, 8);
    f.Write(".MAT", bytes);
  };
}

const Messages Stopped{"CALCULATION STOPPED"}, Unstarted{"NOT CORRECTLY STARTED"};
const Messages NoMaterials{"NO MATERIALS DEFINED", "FATAL ERROR, RUN ABORTED"};
const Messages Mechanism{"MATRIX IS SINGULAR", "THE CONSTRUCTIE HAS A MECHANISM"};
Messages NotFound(const char* extension) {
  return {std::string("FILE NOT FOUND: ") + extension, "FATAL ERROR, RUN ABORTED"};
}

struct Fault {
  std::string name;
  Spoil spoil;
  int number;         // of the failure; 0 if none is shown
  std::string files;  // results on disk afterwards
  Messages messages{};
};

int StatusOf(const Fault& fault) {
  if (fault.number == 7 || fault.number == 57 || fault.number == 75) return exit_status::Resources;
  if (fault.name.starts_with("EEM.CTR")) return exit_status::StartUp;
  return fault.messages == Mechanism ? exit_status::Model : exit_status::BadInput;
}

/// Takes the control file away when a stage comes up.
struct TakingDisplay : RecordingDisplay {
  using RecordingDisplay::Refresh;
  void Refresh(const ProgressWindow& window) override {
    RecordingDisplay::Refresh(window);
    if (window.Frame1.caption == stage) fs::remove(control);
  }
  std::string stage, control;
};

/// Runs the cantilever with a fault. With Compile and Mass off a whole run goes before.
void ExpectFault(const std::string& stage, const Fault& fault, const AnalysisFlags& flags = Cantilever().flags) {
  SCOPED_TRACE(stage + ": " + fault.name);
  Folder folder;
  folder.Write(Cantilever());
  if (!IsOn(flags.CompileStiffnessFlag) && !IsOn(flags.MassFlag)) folder.Solve();
  folder.WriteControl(3, flags);
  fault.spoil(folder);
  TakingDisplay display;
  display.control = folder.Program("EEM.CTR");
  if (fault.name.ends_with(" gone")) display.stage = stage;
  EXPECT_EQ(folder.Run(display), StatusOf(fault));
  Messages messages = fault.messages;
  if (!messages.empty() && messages[0].starts_with("FILE")) messages[0].insert(16, folder.File());
  EXPECT_EQ(display.messages, messages);
  EXPECT_FALSE(fs::exists(display.control));
  std::string files;
  for (const char* extension : {".DAT", ".MAT", ".MAS", ".EMS", ".RVP", ".KRT"}) {
    if (folder.Has(extension)) files += extension;
    EXPECT_FALSE(folder.Has(extension + std::string(".part")));
  }
  EXPECT_EQ(files, fault.files);
  const bool atButtons = stage == "Kol 2.1";
  EXPECT_EQ(display.waits, atButtons ? 1 : 0);
  if (fault.number == 0) return;
  ASSERT_EQ(display.notices.size(), 1u);
  const std::string number = std::to_string(fault.number), line = std::to_string(display.notices[0].line);
  EXPECT_EQ(std::to_string(display.notices[0].number), number) << display.notices[0].description;
  EXPECT_EQ(display.notices[0].stage, stage);
  const std::string atKol = display.form1.Text2.text + " " + display.form1.Text3.text;
  const std::string behind = display.form2.Text5.text + " " + display.form2.Text6.text;
  EXPECT_EQ(atButtons ? atKol : behind, atButtons || messages == Stopped ? number + " " + line : behind);
}

TEST(Failures, OfTheKolStageWaitAtTheButtons) {
  for (const Fault& fault : {
           Fault{"no model", Gone(".TEK"), 53, ""},
           {"node above N, passive", Tek("0 1 4 1"), 9, ""},
           {"more nodes than the file can hold", Text(".TEK", "2000000000 1 0 0 0"), 62, ""},
           {"type 15", Tek("15 1 2 1"), 9, ""},
           {"super element", Tek("100 \"hull\" 1 2 1 2"), 9, "", {"SUPER ELEMENT IS NOT SUPPORTED"}},
           {"no ELTYP.DAT", Gone("ELTYP.DAT"), 53, ""},
           {"too many types", Text("ELTYP.DAT", "27 \"Passive\" 2"), 9, ""},
           {"type without a row", Text("ELTYP.DAT", "2 a 2 b 2"), 9, ""},
           {"type of five nodes", Text("ELTYP.DAT", "1 a 5"), 9, ""},
           {"beam of one node", Text("ELTYP.DAT", "8 a 2 b 2 c 3 d 3 e 4 f 4 g 4 h 1"), 9, ""},
           {"EEM.CTR cut short", Text("EEM.CTR", "\"model\" 0 1 3"), 62, ""},
           {"NAME.DAT is a folder", [](const Folder& f) { fs::create_directory(f.File(".DAT")); }, 75, ".DAT"},
           {"disk full", FullDisk(".DAT"), 57, ".DAT"},
           {"no supports", Gone(".VPL"), 0, ".DAT", {"NO CONSTRAINS DEFINED"}},
       }) {
    ExpectFault("Kol 2.1", fault);
  }
}

TEST(Failures, OfTheMatrixStagesEndTheProgram) {
  const AnalysisFlags massOnly{.CompileStiffnessFlag = 0, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  for (const Fault& fault : {
           Fault{"no materials' file", Gone(".MLT"), 53, ".DAT", NotFound(".MLT")},
           {"no count", Text(".MLT", "steel"), 13, ".DAT", NoMaterials},
           {"more materials than MaterialLimit", Text("decmem.DAT", "9 9 9 0 9 9 9"), 9, ".DAT", Stopped},
           {"material 2 of 1", Tek("7 1 2 2"), 9, ".DAT", Stopped},
           {"material 0", Tek("7 1 2 0"), 9, ".DAT", Stopped},
           {"EEM.CTR gone", Nothing, 53, ".DAT", Unstarted},
       }) {
    ExpectFault("EEM 3.1", fault);
    ExpectFault("Mass 1.0", fault, massOnly);
  }
  const Spoil noShear = Text(".MLT", "1 m 1000 -1 0 1 0 0 1 0 1 0 1 0 " + Repeated(36, "0 "));
  const Spoil otherCode = [](const Folder& f) { f.WriteControl(4, {.EigenFlag = 1}); };
  ExpectFault("EEM 3.1", {"analysis code 4", otherCode, 9, ".DAT", Stopped});
  const Spoil tooStiff = Text(".MLT", "1 m 1e300 0 0 1e300 0 0 1 0 1 0 1 0 " + Repeated(36, "0 "));
  ExpectFault("EEM 3.1", {"no shear modulus", noShear, 11, ".DAT", Stopped});
  ExpectFault("EEM 3.1", {"stiffness beyond all numbers", tooStiff, 6, ".DAT", Stopped});
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
  for (const Fault& fault : {
           Fault{"no load cases' file", Gone(".lcd"), 53, prepared, NotFound(".lcd")},
           {"no load case for the supports", Text(".lcd", "0"), 9, prepared, Stopped},
           {"support of node 4", Text(".VPL", "1 4 9 0"), 9, prepared, Stopped},
           {"support of direction 0", Text(".VPL", "1 1 0 0"), 9, prepared, Stopped},
           {"free along x", Text(".VPL", "5 1 2 0 1 3 0 1 4 0 1 5 0 1 6 0"), 11, prepared, Mechanism},
           {"infinite", Text(".VPL", "6 1 1 0 1 2 1e300 1 3 0 1 4 0 1 5 0 1 6 0"), 6, prepared, Stopped},
           {"disk full", FullDisk(".RVP"), 57, prepared + ".RVP", Stopped},
           {"control file gone", Nothing, 53, prepared, Stopped},
       }) {
    ExpectFault("Sys 2.4", fault);
  }
  const AnalysisFlags solveOnly{.MassFlag = 0, .CompileStiffnessFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  for (const Fault& fault : {
           Fault{"no NAME.DAT", Gone(".DAT"), 53, ".MAT.MAS.EMS.RVP.KRT", NotFound(".DAT")},
           {"no NAME.MAT", Gone(".MAT"), 53, ".DAT.MAS.EMS.RVP.KRT", NotFound(".MAT")},
           {"no supports", Gone(".VPL"), 53, all, NotFound(".vpl")},
           {"NAME.MAT cut short", Text(".MAT", std::string(2000, 0)), 62, all, Stopped},
           {"NAME.MAT of a larger model", Text(".MAT", std::string(8 * 25 * 20, 0)), 9, all, Stopped},
           {"impossible height", SpoiltRow(0), 9, all, Stopped},
           {"entry beyond a height", SpoiltRow(2), 9, all, Stopped},
           {"NAME.DAT of another model", Text(".DAT", "4 12 2"), 9, all, Stopped},
           {"NAME.DAT of another code", Text(".DAT", "3 8 2"), 9, all, Stopped},
       }) {
    ExpectFault("Sys 2.4", fault, solveOnly);
  }
  const std::string materials = "501 " + Repeated(501, "m 1 0 0 1 0 0 1 0 1 0 1 0 ") + Repeated(501 * 36, "0 ");
  const Spoil manyMaterials = [&](const Folder& f) { WithGap(f), f.Write(".MLT", materials); };
  ExpectFault("Gap", {"more than 500 materials", manyMaterials, 9, prepared, Stopped});
  ExpectFault("Gap", {"a gap without a limit", WithGap, 11, prepared + ".RVP", Stopped});
  ExpectFault("Nodal Force 1.0", {"disk full", FullDisk(".KRT"), 57, all, {"PROCESS STOPPED"}});
  ExpectFault("Nodal Force 1.0", {"EEM.CTR gone", Nothing, 53, prepared + ".RVP", {"PROCESS STOPPED"}});
  const AnalysisFlags noSolve{.SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0};
  const Spoil manyCases = Text(".lcd", "2000000000");
  ExpectFault("NSA 2.3", {"more load cases than the file can hold", manyCases, 62, prepared, Stopped}, noSolve);
  ExpectFault("NSA 2.3", {"no load cases at the end", Gone(".lcd"), 53, prepared, NotFound(".lcd")}, noSolve);
}

TEST(Failures, OfTheLoadAssemblyEndItSilentlyWithAWarning) {
  // Deflections of the tip in L^3 / (6 E I): 5 by the force on the middle, 16 by that on the tip. A load on an element
  // goes half to its ends with moments of 1 / 12 that turn against it: 3.25 by that on the first, 14 by both.
  const struct {
    const char* name;
    Spoil spoil;
    double tip;
    bool warned = true, solveOnly = false;
  } cases[] = {
      {"no NAME.ell: no nodal loads either", Gone(".ell"), 0},
      {"no NAME.KNK", Gone(".KNK"), 14},
      {"node 0 in a direction that the model lacks", Text(".KNK", "2 2 2 1 0 9 1"), 14 + 5},
      {"element above E", Text(".ell", "2 1 2 1 3 2 1"), 3.25},
      {"more blocks than load cases", Text(".ell", "1 1 2 1 1 2 2 1"), 3.25},
      {"more empty blocks than load cases", Text(".ell", "2 1 2 1 2 2 1 0 0"), 14 + 21, false},
      {"element 0 and direction 4", Text(".ell", "4 1 2 1 2 2 1 0 2 1 1 4 1"), 14 + 21},
      {"the element number is rounded", Text(".ell", "2 0.75 2 1 2.25 2 1"), 14 + 21, false},
      {"no elements known", Nothing, 21, true, true},
      {"no masses known", Text(".lcd", "1 a 2 5 0 0 0 1"), 21, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Folder folder;
    folder.Solve(Cantilever());
    AnalysisFlags flags = Cantilever().flags;
    if (c.solveOnly) flags.CompileStiffnessFlag = flags.MassFlag = 0;
    folder.WriteControl(3, flags);
    c.spoil(folder);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.Warned(), c.warned);
    EXPECT_TRUE(display.messages.empty());
    EXPECT_NEAR(folder.Displacements()(1, 3, 2), c.tip / (6 * 1000), 1e-15);
  }
}

TEST(Failures, OfTheWorkingSpaceFileLeaveTheDefaults) {
  Folder folder;
  folder.Write(Cantilever());
  WriteText(folder.Program("decmem.DAT"), "9 9 9 0 9 9 -9");
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  EXPECT_EQ(display.messages, Messages{"Error reading Model size. Set your default model size!!  "
                                       "Use [File,Model size..] from the main menu"});
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
