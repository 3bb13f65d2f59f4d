// The stress stages as parts of a run: what is read when, and what a failure leaves.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>

#include "results/nodal_averages.hpp"
#include "run/run.hpp"
#include "run/stages.hpp"
#include "stress_runs.hpp"

namespace velmor::testing {
namespace {

/// A passive element, a beam and a table plate: in each load case 3 lines of NAME.LES and 5 of NAME.NSR.
Model MixedModel() {
  Model model;
  model.nodes = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}};
  model.elements = {{0, {1, 3}}, {7, {1, 2}}, {11, {1, 2, 3, 4}}};
  model.materials = {{500, 0, 1, 1, 0, 0, 1, 0, 1, 1, 1, 1}};
  return model;
}

const MotionField Bulge = [](const Vector3& p) {
  return Motion{{p.x * p.y, p.x - p.y * p.y, p.x * p.x}, {0.1 * p.x, -2 * p.x, p.y}};
};

const char* const AllResults[] = {".LES", ".NSR", ".NSL", ".NSA", ".NLA", ".RSA", ".RLA"};

/// The stress stages alone, on the files of an earlier run.
int RunStresses(const Folder& folder, RecordingDisplay& display) {
  folder.WriteControl(3, {.MassFlag = 0, .CompileStiffnessFlag = 0, .SolveFlag = 0});
  return folder.Run(display);
}

TEST(StressStages, RunAloneOnTheFilesOfAnEarlierRun) {
  Folder folder;
  Recover(folder, MixedModel(), {Bulge, Bulge});
  std::map<std::string, std::string> first;
  for (const char* extension : AllResults) first[extension] = folder.Read(extension);
  folder.Write(".lcd", "2");  // of which they read the count
  RecordingDisplay display;
  EXPECT_EQ(RunStresses(folder, display), 0);
  for (const char* extension : AllResults) EXPECT_EQ(folder.Read(extension), first[extension]) << extension;
  const StressWindow& nsa = display.nsa;
  EXPECT_EQ(nsa.Label6.caption + nsa.Label7.caption + " " + nsa.Label8.caption + " " + nsa.Label9.caption,
            " 100% 100% 1 4");

  // The most records that they count, which are not those of the model.
  folder.Write(".DAT", "4\n24\n2\n" + Repeated(32767, "16,1,1\n0,0,0\n"));
  folder.Write(".TEK", "4 0 0 0 0 2 0 0 2 1 0 0 1 0");
  EXPECT_EQ(RunStresses(folder, display), 0);
  EXPECT_NE(display.warnings.at(0).find("make 0 element records, the stresses come from 2"), std::string::npos);
  EXPECT_TRUE(folder.Read(".RSA").starts_with("0,1,1,0,0,0")) << "no element, no type";
}

TEST(StressStages, WriteNothingWithoutLoadCases) {
  Folder folder;
  Recover(folder, MixedModel(), {});
  for (const char* extension : AllResults) EXPECT_TRUE(folder.Has(extension) && folder.Read(extension).empty());
}

TEST(StressStages, TakeAGapForABar) {
  // The state of a gap, 1 where no gap stage has run, counts in its end stresses and not in its nodal stresses.
  Model model;
  model.nodes = {{0, 0, 0}, {2, 0, 0}};
  model.elements = {{1, {1, 2}}};
  model.materials = {{100, 0, 1, 1}};
  Folder folder;
  Impose(folder, model, {[](const Vector3& p) { return Motion{p, {}}; }});
  folder.Write(".DAT", "2\n12\n1\n14,1,2,1,0,0,2,1\n1,0,0\n");
  RecordingDisplay display;
  velmor::Run run(display, folder.Program());
  run.model.nodeCount = 2;
  run.LoadCaseCount = 1;
  run.gapFlag = true;
  run.model.elementState = Column(1, 0.25);
  RunLineStressStage(run);
  EXPECT_EQ(Lines(folder, ".LES")[0][4], 25);
  RunNodalStressStage(run);
  EXPECT_EQ(Lines(folder, ".NSR")[1][4], 100);
  EXPECT_TRUE(display.warnings.empty());
  run.gapFlag = false;  // the stresses alone, on the files of an earlier run
  RunLineStressStage(run);
  EXPECT_NE(display.warnings.at(0).find("gaps outside a gap run count as closed"), std::string::npos);
}

TEST(StressStages, OfBeamsAndShellsNeedTheRotationsOfTheirNodes) {
  // A beam stops the line stress stage alone: the run goes on and tells by its status.
  for (const auto& [type, code, number] :
       {std::array{7, 0, 9}, {7, 1, 9}, {7, 2, 0}, {9, 0, 9}, {9, 2, 9}, {6, 0, 0}}) {
    SCOPED_TRACE("type " + std::to_string(type) + " in analysis " + std::to_string(code));
    Model model = MixedModel();
    model.analysisCode = code;
    model.elements = {{type, type == 7 ? std::vector{1, 2} : std::vector{1, 2, 3, 4}}};
    Folder folder;
    Impose(folder, model, {Bulge});
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display) == 0, number == 0);
    EXPECT_EQ(display.nsa.Text3.text, number == 0 ? "" : std::to_string(number));
    EXPECT_EQ(folder.Has(".NSA"), type != 9);
  }
}

TEST(StressAverages, RefuseATableBeyondTheMemory) {
  for (const int count : {1'000'000, std::numeric_limits<int>::max()}) {
    EXPECT_THROW(NodalAverages(count, count), Failure) << count;
  }
}

// One change to the files of an earlier run, and what it leads to.
const char* const Gone = "gone";  // the file
const char* const Whole = "all";  // of its text
const char* const End = "";       // behind its text
enum Failing { InBoth, WithoutDisplacements, InNodal };
const std::string OneMaterial = "\"m\" 500 0.1 1 1 0 0 1 0 1 1 1 1\n";
const struct {
  const char* name;
  const char* file;  // without a point in front one of the program folder
  std::string part;  // where it stands last
  std::string by;
  int number;
  Failing failing;
  int lines, records;  // that stand in NAME.LES and NAME.NSR; -1 for a file that is not there
} Faults[] = {
    {"no displacements", ".RVP", Gone, "", 9, WithoutDisplacements, 0, 0},
    {"displacements cut short", ".RVP", Whole, "4,3\n1,2,3\n", 62, InBoth, -1, -1},
    {"another string for END", ".RVP", "\"END\"", "\"ENDE\"", 13, InBoth, -1, -1},
    {"displacements of another model", ".RVP", "4,3\n", "3,3\n", 9, InBoth, -1, -1},
    {"displacements of another analysis", ".RVP", "4,3\n", "4,0\n", 9, InBoth, -1, -1},
    {"no element records", ".DAT", Gone, "", 53, InBoth, 0, 0},
    {"an unknown type", ".DAT", End, "15\n", 9, InBoth, 2, 4},
    {"a bar of no length", ".DAT", End, "1,1,2,0,0,0,0,1\n0,0,0\n", 11, InBoth, 2, 4},
    {"a bar of an unknown material", ".DAT", End, "1,1,2,1,0,0,2,4\n0,0,0\n", 9, InBoth, 2, 4},
    {"more records than the head says", ".DAT", End, "1,1,2,1,0,0,2,1\n0,0,0\n", 9, InNodal, 10, 4},
    {"records behind a count of 0", ".DAT", "24\n2\n", "24\n0\n", 11, InBoth, 0, 0},
    {"32768 records", ".DAT", Whole, "4\n24\n2\n" + Repeated(32768, "16,1,1\n0,0,0\n"), 6, InBoth, 0, 0},
    {"a flat triangle", ".DAT", Whole, "4\n24\n1\n2,1,2,3,1,1,0,0,1,1\n1,0,0,0,1,0,0,1\n0,0,0\n", 11, InNodal, 2, 0},
    {"a flat rectangle", ".DAT", Whole, "4\n24\n1\n5,1,2,3,4,1,0,0,0,1,0,1\n0,0,0,0,1,0\n0,0,0\n", 11, InNodal, 2, 0},
    {"a flat plate", ".DAT", Whole, "4\n24\n1\n8,1,2,3,4,1,0,0,0,1,0,1\n1,1,0,1,1,0\n0,0,0\n", 11, InNodal, 2, 0},
    {"no angles", ".rot", Gone, "", 53, InNodal, 6, 0},
    {"101 materials", ".MLT", Whole, "101\n" + Repeated(101, OneMaterial), 9, InNodal, 6, -1},
    {"501 materials", ".MLT", Whole, "501\n" + Repeated(501, OneMaterial), 9, InBoth, -1, -1},
    {"22 element types", "ELTYP.DAT", Whole, "22\n" + Repeated(22, "\"t\",4\n"), 9, InNodal, 6, -1},
    {"a plate table cut short", "PLAT.ELM", Whole, "1,2,3", 62, InNodal, 6, 0},
    {"a passive element of an unknown material", ".TEK", "\n1 3 \n1\n", "\n1 3 \n2\n", 9, InNodal, 6, 10},
    {"a passive element of a negative material", ".TEK", "\n1 3 \n1\n", "\n1 3 \n-1\n", 9, InNodal, 6, 10},
};

TEST(StressStages, EndWithTheirMessagesAndKeepWhatIsWritten) {
  const std::string notFound = "Displacements not found", error = "Error occured", last = " NOT CORRECTLY STARTED";
  const std::vector<std::string> messages[] = {
      {error, error, last}, {notFound, error, notFound, error, last}, {error, last}};
  for (const auto& fault : Faults) {
    SCOPED_TRACE(fault.name);
    Folder folder;
    Recover(folder, MixedModel(), {Bulge, Bulge});
    const std::string path = fault.file[0] == '.' ? folder.File(fault.file) : folder.Program(fault.file);
    std::string text = ReadText(path);
    if (fault.part != Whole && fault.part != Gone) text.replace(text.rfind(fault.part), fault.part.size(), fault.by);
    WriteText(path, fault.part == Whole ? fault.by : text);
    if (fault.part == Gone) std::filesystem::remove(path);

    RecordingDisplay display;
    EXPECT_NE(RunStresses(folder, display), 0);
    EXPECT_EQ(display.messages, messages[fault.failing]);
    ASSERT_FALSE(display.notices.empty());
    const auto& [stage, number, line, description, advice] = display.notices.back();
    EXPECT_EQ(number, fault.number) << description;
    const StressWindow& nsa = display.nsa;
    EXPECT_EQ(nsa.Label10.caption + " " + nsa.Text3.text, "Error No. " + std::to_string(number));
    EXPECT_EQ(nsa.Label11.caption + " " + nsa.Text2.text, "Error line " + std::to_string(line));
    EXPECT_TRUE(nsa.Text2.visible && nsa.Text3.visible);
    for (const auto& [file, count] :
         {std::pair{".LES", fault.lines}, {".NSR", fault.records}, {".NSL", fault.records}}) {
      const std::string written = folder.Has(file) ? folder.Read(file) : "";
      EXPECT_EQ(folder.Has(file) ? std::count(written.begin(), written.end(), '\n') : -1, count) << file;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  }
}

}  // namespace
}  // namespace velmor::testing
