// The stress stages as parts of a run: averages, what is read when, and what a failure leaves.

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

/// Two rectangles of types 5 and 12 with one material, a triangle and a quadrilateral of triangles of another, a
/// passive element of none, a beam and a table plate: thirteen lines and more meet at a node.
Model MixedModel() {
  Model model;
  for (const auto& [x, y] : {std::pair{0, 0}, {2, 0}, {4, 0}, {0, 1}, {2, 1}, {4, 1}, {2, 3}, {4, 3}, {9, 9}}) {
    model.AddNode(x, y);
  }
  model.AddElement(5, {1, 2, 5, 4});
  model.AddElement(12, {2, 3, 6, 5});
  model.AddElement(0, {1, 8}, 0);
  model.AddElement(2, {4, 5, 7}, 2);
  model.AddElement(13, {5, 6, 8, 7}, 2);
  model.AddElement(7, {1, 7}, 3);
  model.AddElement(11, {1, 2, 5, 4}, 3);
  model.materials = {{2000, 0.25, 1, 0.4}, {1000, 0.1, 1, 0.4}, {500, 0, 1, 1, 0, 0, 1, 0, 1, 1, 1, 1}};
  return model;
}

const MotionField Bulge = [](const Vector3& p) {
  return Motion{{p.x * p.y, p.x - p.y * p.y, p.x * p.x}, {0.1 * p.x, -2 * p.x, p.y}};
};
const MotionField Other = [](const Vector3& p) { return Motion{{p.y, p.x * p.x, p.x * p.y}, {p.x, -p.y, 1}}; };

const char* const AllResults[] = {".LES", ".NSR", ".NSL", ".NSA", ".NLA", ".RSA", ".RLA"};

TEST(StressAverages, AreMeansOfTheRecordsByMaterialAndNode) {
  const Model model = MixedModel();
  Folder folder;
  Recover(folder, model, {Bulge, Other}, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9});
  struct Files {
    const char *records, *byElement, *byMaterialAndNode;
  };
  for (const auto& files : {Files{".NSR", ".NSA", ".RSA"}, Files{".NSL", ".NLA", ".RLA"}}) {
    for (const int loadCase : {1, 2}) {
      SCOPED_TRACE(files.records + std::to_string(loadCase));
      std::map<std::pair<int, int>, std::vector<std::vector<double>>> recordsOf;  // by material and node
      for (const auto& line : Lines(folder, files.records, loadCase)) {
        recordsOf[{static_cast<int>(line[2]), static_cast<int>(line[1])}].push_back(line);
      }
      EXPECT_EQ((recordsOf[{1, 5}].size()), 2) << "types 5 and 12 are averaged together";
      EXPECT_EQ((recordsOf[{2, 5}].size()), 1 + 3) << "a triangle, and the three of four in a quadrilateral";
      const auto expectMean = [&](const std::vector<double>& line, double element, int node, int material,
                                  double type) {
        ASSERT_EQ(line.size(), 17);
        EXPECT_EQ(line[0], element);
        EXPECT_EQ(line[1], node);
        EXPECT_EQ(line[2], material);
        EXPECT_EQ(line[3], type);
        const auto& records = recordsOf[{material, node}];
        for (std::size_t k = 4; k < 16; ++k) {
          double sum = 0;
          for (const auto& record : records) sum += record[k];
          EXPECT_NEAR(line[k], records.empty() ? 0 : sum / static_cast<double>(records.size()), 1e-10);
        }
        EXPECT_EQ(line[16], 0);
      };
      const auto byElement = Lines(folder, files.byElement, loadCase);
      const auto byNode = Lines(folder, files.byMaterialAndNode, loadCase);
      ASSERT_EQ(byElement.size(), 4 + 4 + 2 + 3 + 4 + 2 + 4);
      ASSERT_EQ(byNode.size(), 3 * 9);
      std::size_t at = 0;
      for (std::size_t e = 1; e <= model.elements.size(); ++e) {
        const auto& [type, nodes, material] = model.elements[e - 1];
        for (const int node : nodes) expectMean(byElement[at++], static_cast<double>(e), node, material, type);
      }
      for (int i = 0; i < 27; ++i) expectMean(byNode[static_cast<std::size_t>(i)], 0, i % 9 + 1, i / 9 + 1, 11);
    }
  }
}

TEST(StressAverages, OfAModelWithoutElementsAreZeros) {
  Model model;
  model.AddNode(0, 0);
  model.materials = {{1}};
  Folder folder;
  Recover(folder, model, {Bulge});
  EXPECT_EQ(folder.Read(".RSA"), "0,1,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0\n\"END\"\n");
  for (const char* extension : {".LES", ".NSR", ".NSL", ".NSA", ".NLA"}) EXPECT_EQ(folder.Read(extension), "\"END\"\n");
}

TEST(StressAverages, RefuseATableBeyondTheMemory) {
  const int most = std::numeric_limits<int>::max();
  for (const auto& [materials, nodes] : {std::array{most, most}, {most, 1'000'000}, {1'000'000, 1'000'000}}) {
    try {
      NodalAverages averages(materials, nodes);
      ADD_FAILURE() << materials << " by " << nodes;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number, error::OutOfMemory);
    }
  }
}

TEST(StressStages, RunAloneOnTheFilesOfAnEarlierRun) {
  Folder folder;
  Recover(folder, MixedModel(), {Bulge, Other});
  std::map<std::string, std::string> first;
  for (const char* extension : AllResults) first[extension] = folder.Read(extension);
  folder.Write(".GSR", "of another program");
  // The line stress stage has read the displacements: they are not needed again.
  MeddlingDisplay display([&](const StressWindow& window) {
    if (window.Frame1.caption == "Nodal Stress 2.1") folder.Remove(".RVP");
  });
  EXPECT_EQ(RunStresses(folder, display), 0);
  for (const char* extension : AllResults) EXPECT_EQ(folder.Read(extension), first[extension]) << extension;
  const StressWindow& nsa = display.nsa;
  EXPECT_EQ(nsa.Label6.caption + nsa.Label7.caption + " " + nsa.Label8.caption + " " + nsa.Label9.caption,
            " 100% 100% 3 4");

  folder.WriteControl(
      3, {.MassFlag = 0, .CompileStiffnessFlag = 0, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0});
  EXPECT_EQ(folder.Run(display), 0);
  for (const char* extension : AllResults) EXPECT_FALSE(folder.Has(extension)) << extension;
  EXPECT_FALSE(folder.Has(".GSR"));
}

TEST(StressStages, TakeAGapForABar) {
  // The state of a gap, 1 where no gap stage has run, counts in its end stresses and not in its nodal stresses.
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddElement(1, {1, 2});
  model.materials = {{100, 0, 1, 1}};
  Folder folder;
  Impose(folder, model, {[](const Vector3& p) { return Motion{p, {}}; }});
  folder.Write(".DAT", "2\n12\n1\n14,1,2,1,0,0,2,1\n1,0,0\n");
  RecordingDisplay display;
  velmor::Run run(display, folder.Program());
  run.model.nodeCount = 2;
  run.LoadCaseCount = 1;
  run.gapFlag = true;
  for (const double state : {1.0, 0.25, 0.0}) {
    run.model.elementState = Column(1, state);
    RunLineStressStage(run);
    EXPECT_EQ(Lines(folder, ".LES")[0][4], 100 * state);
    RunNodalStressStage(run);
    EXPECT_EQ(Lines(folder, ".NSR")[1][4], 100);
  }
  EXPECT_TRUE(display.warnings.empty());
  run.gapFlag = false;  // the stresses alone, on the files of an earlier run
  RunLineStressStage(run);
  ASSERT_EQ(display.warnings.size(), 1u);
  EXPECT_NE(display.warnings[0].find("gaps outside a gap run count as closed"), std::string::npos);
}

TEST(StressStages, WriteNothingWithoutLoadCases) {
  Folder folder;
  Impose(folder, MixedModel(), {});
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  for (const char* extension : AllResults) EXPECT_EQ(folder.Read(extension), "") << extension;
  folder.Remove(".lcd");
  EXPECT_NE(RunStresses(folder, display), 0);
  EXPECT_EQ(display.messages,
            (std::vector<std::string>{"FILE NOT FOUND: " + folder.File(".lcd"), "FATAL ERROR, RUN ABORTED"}));
}

// What is done to the files of the mixed model before its stresses are asked for.
using Spoiling = std::function<void(const Folder&)>;

Spoiling Without(const std::string& extension) {
  return [=](const Folder& folder) { folder.Remove(extension); };
}
Spoiling With(const std::string& extension, const std::string& text) {
  return [=](const Folder& folder) { folder.Write(extension, text); };
}
Spoiling WithProgramFile(const std::string& name, const std::string& text) {
  return [=](const Folder& folder) { WriteText(folder.Program(name), text); };
}
Spoiling Replaced(const std::string& extension, const std::string& part, const std::string& by) {
  return [=](const Folder& folder) {
    std::string text = folder.Read(extension);
    const auto at = text.rfind(part);
    ASSERT_NE(at, std::string::npos) << extension;
    folder.Write(extension, text.replace(at, part.size(), by));
  };
}
/// One more record at the end of NAME.DAT.
Spoiling Appended(const std::string& record) {
  return [=](const Folder& folder) { folder.Write(".DAT", folder.Read(".DAT") + record); };
}
/// The same, counted in the head and with an angle.
Spoiling Added(const std::string& record) {
  return [=](const Folder& folder) {
    Appended(record)(folder);
    Replaced(".DAT", "9\n48\n9\n", "9\n48\n10\n")(folder);
  };
}
std::string Repeated(int count, const std::string& text) {
  std::string all = std::to_string(count) + "\n";
  for (int i = 1; i <= count; ++i) all += text;
  return all;
}
const std::string OneMaterial = "\"m\" 500 0.1 1 1 0 0 1 0 1 1 1 1\n";

/// `lines` and `records` count the lines that stand in NAME.LES and NAME.NSR, 3 and 28 in a load case of the mixed
/// model; -1 stands for a file that is not there.
enum Failing { InBoth, InBothUnread, InNodal };
struct FailureCase {
  const char* name;
  Spoiling spoil;
  int number;
  Failing failing;
  int lines, records;
};
const FailureCase FailureCases[] = {
    {"no displacements", Without(".RVP"), 9, InBothUnread, 0, 0},
    {"displacements cut short", With(".RVP", "9,3\n1,2,3\n"), 62, InBoth, -1, -1},
    {"no last END", Replaced(".RVP", "\"END\"", ""), 62, InBoth, -1, -1},
    {"another string for END", Replaced(".RVP", "\"END\"", "\"ENDE\""), 13, InBoth, -1, -1},
    {"displacements of another model", Replaced(".RVP", "9,3\n", "8,3\n"), 9, InBoth, -1, -1},
    {"displacements of another analysis", Replaced(".RVP", "9,3\n", "9,0\n"), 9, InBoth, -1, -1},
    {"more load cases than displacements", With(".lcd", "3"), 62, InBoth, -1, -1},
    {"no element records", Without(".DAT"), 53, InBoth, 0, 0},
    {"an unknown type", Appended("15\n"), 9, InBoth, 2, 27},
    {"an item that is no number", Appended("1,1,two\n"), 13, InBoth, 2, 27},
    {"a record cut short", Appended("1,1,2,1,0,0"), 62, InBoth, 2, 27},
    {"a bar of no length", Appended("1,1,2,0,0,0,0,1\n0,0,0\n"), 11, InBoth, 2, 27},
    {"a bar of an unknown material", Appended("1,1,2,1,0,0,2,4\n0,0,0\n"), 9, InBoth, 2, 27},
    {"more records than the head says", Appended("1,1,2,1,0,0,2,1\n0,0,0\n"), 9, InNodal, 10, 27},
    {"a triangle of no area", Added("2,1,2,3,1,1,0,0,1,1\n1,0,0,0,1,0,0,1\n0,0,0\n"), 11, InNodal, 6, 27},
    {"a rectangle of no width", Added("5,1,2,3,4,1,0,0,0,1,0,1\n0,0,0,0,1,0\n0,0,0\n"), 11, InNodal, 6, 27},
    {"a collapsed plate", Added("8,1,2,3,4,1,0,0,0,1,0,1\n1,1,0,1,1,0\n0,0,0\n"), 11, InNodal, 6, 27},
    {"a collapsed corner", Added("4,1,2,3,4,1,0,0,0,1,0,1\n1,0,0.5,0,1,-0.5\n0,0,0\n"), 11, InNodal, 6, 28},
    {"no angles", Without(".rot"), 53, InNodal, 6, 0},
    {"angles cut short", With(".rot", "0,0,0,0,0,0,0,0"), 62, InNodal, 6, 0},
    {"an angle that is no number", With(".rot", "0,0,0,0,0,x,0,0,0"), 13, InNodal, 6, 0},
    {"101 materials", With(".MLT", Repeated(101, OneMaterial)), 9, InNodal, 6, -1},
    {"501 materials", With(".MLT", Repeated(501, OneMaterial)), 9, InBoth, -1, -1},
    {"no materials", Without(".MLT"), 53, InBoth, -1, -1},
    {"22 element types", WithProgramFile("ELTYP.DAT", Repeated(22, "\"t\",4\n")), 9, InNodal, 6, -1},
    {"a plate table cut short", WithProgramFile("PLAT.ELM", "1,2,3"), 62, InNodal, 6, 23},
    {"a passive element of an unknown material", Replaced(".TEK", "\n1 8 \n0\n", "\n1 8 \n4\n"), 9, InNodal, 6, 56},
    {"a passive element of a negative material", Replaced(".TEK", "\n1 8 \n0\n", "\n1 8 \n-1\n"), 9, InNodal, 6, 56},
};

TEST(StressStages, EndWithTheirMessagesAndKeepWhatIsWritten) {
  const std::string notFound = "Displacements not found", error = "Error occured", last = " NOT CORRECTLY STARTED";
  const std::vector<std::string> messages[] = {
      {error, error, last}, {notFound, error, notFound, error, last}, {error, last}};
  for (const FailureCase& failure : FailureCases) {
    SCOPED_TRACE(failure.name);
    Folder folder;
    Recover(folder, MixedModel(), {Bulge, Other});
    failure.spoil(folder);
    RecordingDisplay display;
    EXPECT_NE(RunStresses(folder, display), 0);
    EXPECT_EQ(display.messages, messages[failure.failing]);
    ASSERT_FALSE(display.notices.empty());
    const auto& [stage, number, line, description, advice] = display.notices.back();
    EXPECT_EQ(number, failure.number) << description;
    const StressWindow& nsa = display.nsa;
    EXPECT_EQ(nsa.Label10.caption + " " + nsa.Text3.text, "Error No. " + std::to_string(number));
    EXPECT_EQ(nsa.Label11.caption + " " + nsa.Text2.text, "Error line " + std::to_string(line));
    EXPECT_TRUE(nsa.Text2.visible && nsa.Text3.visible);
    const auto lines = [&](const char* extension) {
      const std::string text = folder.Read(extension);
      return folder.Has(extension) ? static_cast<int>(std::count(text.begin(), text.end(), '\n')) : -1;
    };
    EXPECT_EQ(lines(".LES"), failure.lines);
    EXPECT_EQ(lines(".NSR"), failure.records);
    EXPECT_EQ(lines(".NSL"), failure.records);
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  }
}

TEST(StressStages, EndWhereTheControlFileIsGone) {
  Folder folder;
  Recover(folder, MixedModel(), {Bulge});
  MeddlingDisplay display([&](const StressWindow&) { std::filesystem::remove(folder.Program("EEM.CTR")); });
  EXPECT_NE(RunStresses(folder, display), 0);
  EXPECT_EQ(display.messages, (std::vector<std::string>{"Error occured", "Error occured", " NOT CORRECTLY STARTED"}));
}

TEST(StressStages, OfBeamsAndShellsNeedTheRotationsOfTheirNodes) {
  // A beam stops the line stress stage alone: the run goes on and tells by its status.
  for (const auto& [type, code, number] :
       {std::array{7, 0, 9}, {7, 1, 9}, {7, 2, 0}, {9, 0, 9}, {9, 2, 9}, {6, 0, 0}}) {
    SCOPED_TRACE("type " + std::to_string(type) + " in analysis " + std::to_string(code));
    Model model = MixedModel();
    model.analysisCode = code;
    model.elements = {{type, type == 7 ? std::vector{1, 2} : std::vector{1, 2, 5, 4}, 3}};
    Folder folder;
    Impose(folder, model, {Bulge});
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display) == 0, number == 0);
    EXPECT_EQ(display.nsa.Text3.text, number == 0 ? "" : std::to_string(number));
    EXPECT_EQ(folder.Has(".NSA"), type != 9);
  }
}

TEST(StressStages, CountRecordsInSixteenBits) {
  Model model;
  model.AddNode(0, 0);
  model.AddElement(16, {1});
  model.materials = {{1}};
  for (const int records : {32767, 32768}) {
    Folder folder;
    Recover(folder, model, {Bulge}, std::vector<double>(static_cast<std::size_t>(records)));
    folder.Write(".DAT", "1\n6\n" + Repeated(records, "16,1,1\n0,0,0\n"));
    RecordingDisplay display;
    EXPECT_EQ(RunStresses(folder, display) == 0, records == 32767);
    EXPECT_EQ(display.nsa.Text3.text, records == 32767 ? "" : "6");
  }
}

}  // namespace
}  // namespace velmor::testing
