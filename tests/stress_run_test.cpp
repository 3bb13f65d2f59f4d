// The stress stages as parts of a run: averages, what is read when, and what a failure leaves.

#include <gtest/gtest.h>

#include <map>

#include "results/stress_support.hpp"
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

const AnalysisFlags StressAlone{.MassFlag = 0, .CompileStiffnessFlag = 0, .SolveFlag = 0};
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

TEST(StressStages, RunAloneOnTheFilesOfAnEarlierRun) {
  Folder folder;
  Recover(folder, MixedModel(), {Bulge, Other});
  std::map<std::string, std::string> first;
  for (const char* extension : AllResults) first[extension] = folder.Read(extension);
  folder.Write(".GSR", "of another program");
  folder.WriteControl(3, StressAlone);
  // The line stress stage has read the displacements: they are not needed again.
  MeddlingDisplay display([&](const StressWindow& window) {
    if (window.Frame1.caption == "Nodal Stress 2.1") folder.Remove(".RVP");
  });
  EXPECT_EQ(folder.Run(display), 0);
  for (const char* extension : AllResults) EXPECT_EQ(folder.Read(extension), first[extension]) << extension;
  EXPECT_FALSE(folder.Has(".GSR"));
  EXPECT_EQ(display.nsa.Label6.caption, " 100%");
  EXPECT_EQ(display.nsa.Label7.caption, " 100%");
  EXPECT_EQ(display.nsa.Label8.caption, "3");
  EXPECT_EQ(display.nsa.Label9.caption, "4");

  folder.WriteControl(
      3, {.MassFlag = 0, .CompileStiffnessFlag = 0, .SolveFlag = 0, .LineStressFlag = 0, .FEStressFlag = 0});
  EXPECT_EQ(folder.Run(display), 0);
  for (const char* extension : AllResults) EXPECT_FALSE(folder.Has(extension)) << extension;
}

TEST(StressStages, TakeAGapForABar) {
  // The state of a gap, 1 where no gap stage has run, counts in its end stresses and not in its nodal stresses.
  Model model;
  model.AddNode(0, 0);
  model.AddNode(2, 0);
  model.AddElement(1, {1, 2});
  model.materials = {{100, 0, 1, 1}};
  Folder folder;
  Recover(folder, model, {[](const Vector3& p) { return Motion{p, {}}; }});
  folder.Write(".DAT", "2\n12\n1\n14,1,2,1,0,0,2,1\n1,0,0\n");
  folder.WriteControl(3, StressAlone);
  RecordingDisplay display;
  velmor::Run run(display, folder.Program());
  run.model.nodeCount = 2;
  run.LoadCaseCount = 1;
  for (const double state : {1.0, 0.25, 0.0}) {
    run.model.elementState = Column(1, state);
    RunLineStressStage(run);
    EXPECT_EQ(Lines(folder, ".LES")[0][4], 100 * state);
    RunNodalStressStage(run);
    EXPECT_EQ(Lines(folder, ".NSR")[1], (std::vector<double>{1, 2, 1, 14, 100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  }
  EXPECT_TRUE(display.messages.empty());
}

/// Times that a text holds another.
int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

enum Messages { LineAndNodal, NodalAlone, NotFoundTwice };

struct FailureCase {
  const char* name;
  std::function<void(const Folder&)> spoil;
  int number;
  Messages messages;
  int lesEnds, nsrEnds;  // load cases that stand in the files; -1 for a file that is not there
  int lesLines = -1;     // where it matters: lines in NAME.LES
};

/// Replaces a part of a file, which must be there.
void Replace(const Folder& folder, const std::string& extension, const std::string& part, const std::string& by) {
  std::string text = folder.Read(extension);
  const auto at = text.find(part);
  ASSERT_NE(at, std::string::npos) << extension;
  folder.Write(extension, text.replace(at, part.size(), by));
}

std::string MaterialFile(int count) {
  std::string text = std::to_string(count) + "\n";
  for (int m = 1; m <= count; ++m) text += "\"m\" 500 0.1 1 1 0 0 1 0 1 1 1 1\n";
  return text;
}

void Append(const Folder& folder, const std::string& extension, const std::string& text) {
  folder.Write(extension, folder.Read(extension) + text);
}

/// One more element record behind those of the mixed model.
void AddRecord(const Folder& folder, const std::string& record) {
  Replace(folder, ".DAT", "9\n48\n9\n", "9\n48\n10\n");
  Append(folder, ".DAT", record);
  Append(folder, ".rot", "0\n");
}

const FailureCase FailureCases[] = {
    {"no displacements", [](const Folder& f) { f.Remove(".RVP"); }, 9, NotFoundTwice, 0, 0, 0},
    {"displacements cut short", [](const Folder& f) { f.Write(".RVP", f.Read(".RVP").substr(0, 100)); }, 62,
     LineAndNodal, -1, -1},
    {"displacements without the last END",
     [](const Folder& f) { f.Write(".RVP", f.Read(".RVP").erase(f.Read(".RVP").size() - 6)); }, 62, LineAndNodal, -1,
     -1},
    {"no END behind a load case", [](const Folder& f) { Replace(f, ".RVP", "\"END\"", "\"ENDE\""); }, 13, LineAndNodal,
     -1, -1},
    {"displacements of another model", [](const Folder& f) { Replace(f, ".RVP", "9,3", "8,3"); }, 9, LineAndNodal, -1,
     -1},
    {"displacements of another analysis", [](const Folder& f) { Replace(f, ".RVP", "9,3", "9,0"); }, 9, LineAndNodal,
     -1, -1},
    {"more load cases than displacements", [](const Folder& f) { Replace(f, ".lcd", "2", "3"); }, 62, LineAndNodal, -1,
     -1},
    {"no element records", [](const Folder& f) { f.Remove(".DAT"); }, 53, LineAndNodal, 0, 0},
    {"an unknown type", [](const Folder& f) { Append(f, ".DAT", "15\n"); }, 9, LineAndNodal, 0, 0, 2},
    {"an item that is no number", [](const Folder& f) { Append(f, ".DAT", "1,1,two\n"); }, 13, LineAndNodal, 0, 0, 2},
    {"a record cut short", [](const Folder& f) { Append(f, ".DAT", "1,1,2,1,0,0"); }, 62, LineAndNodal, 0, 0, 2},
    {"a bar of no length", [](const Folder& f) { Append(f, ".DAT", "1,1,2,0,0,0,0,1\n0,0,0\n"); }, 11, LineAndNodal, 0,
     0, 2},
    {"a bar of an unknown material", [](const Folder& f) { Append(f, ".DAT", "1,1,2,1,0,0,2,4\n0,0,0\n"); }, 9,
     LineAndNodal, 0, 0, 2},
    {"a triangle of no area", [](const Folder& f) { AddRecord(f, "2,1,2,3,1,1,0,0,1,1\n1,0,0,0,1,0,0,1\n0,0,0\n"); },
     11, NodalAlone, 2, 0},
    {"a rectangle of no width", [](const Folder& f) { AddRecord(f, "5,1,2,3,4,1,0,0,0,1,0,1\n0,0,0,0,1,0\n0,0,0\n"); },
     11, NodalAlone, 2, 0},
    {"a collapsed quadrilateral plate",
     [](const Folder& f) { AddRecord(f, "8,1,2,3,4,1,0,0,0,1,0,1\n1,1,0,1,1,0\n0,0,0\n"); }, 11, NodalAlone, 2, 0},
    {"more records than the head says", [](const Folder& f) { Append(f, ".DAT", "1,1,2,1,0,0,2,1\n0,0,0\n"); }, 9,
     NodalAlone, 2, 0, 10},
    {"no angles", [](const Folder& f) { f.Remove(".rot"); }, 53, NodalAlone, 2, 0},
    {"angles cut short", [](const Folder& f) { f.Write(".rot", "0,0,0,0,0,0,0,0"); }, 62, NodalAlone, 2, 0},
    {"an angle that is no number", [](const Folder& f) { f.Write(".rot", "0,0,0,0,0,x,0,0,0"); }, 13, NodalAlone, 2, 0},
    {"101 materials", [](const Folder& f) { f.Write(".MLT", MaterialFile(101)); }, 9, NodalAlone, 2, -1},
    {"501 materials", [](const Folder& f) { f.Write(".MLT", MaterialFile(501)); }, 9, LineAndNodal, -1, -1},
    {"no materials", [](const Folder& f) { f.Remove(".MLT"); }, 53, LineAndNodal, -1, -1},
    {"22 element types",
     [](const Folder& f) {
       std::string types = "22\n";
       for (const char nodes : std::string("2233444244444422142222")) types += std::string("\"t\",") + nodes + "\n";
       WriteFile(f.Program("ELTYP.DAT"), types);
     },
     9, NodalAlone, 2, -1},
    {"no plate table", [](const Folder& f) { std::filesystem::remove(f.Program("PLAT.ELM")); }, 53, NodalAlone, 2, 0},
    {"a plate table cut short", [](const Folder& f) { WriteFile(f.Program("PLAT.ELM"), "1,2,3"); }, 62, NodalAlone, 2,
     0},
    {"averages of a negative material",
     [](const Folder& f) { Replace(f, ".TEK", "\n0\n1 8 \n0\n", "\n0\n1 8 \n-1\n"); }, 9, NodalAlone, 2, 2},
    {"averages of an unknown material", [](const Folder& f) { Replace(f, ".TEK", "\n0\n1 8 \n0\n", "\n0\n1 8 \n9\n"); },
     9, NodalAlone, 2, 2},
};

TEST(StressStages, EndWithTheirMessagesAndKeepWhatIsWritten) {
  for (const FailureCase& failure : FailureCases) {
    SCOPED_TRACE(failure.name);
    Folder folder;
    Recover(folder, MixedModel(), {Bulge, Other});
    folder.WriteControl(3, StressAlone);
    failure.spoil(folder);
    RecordingDisplay display;
    EXPECT_NE(folder.Run(display), 0);
    std::vector<std::string> expected;
    const std::string notFound = "Displacements not found", error = "Error occured";
    if (failure.messages == NotFoundTwice) expected.push_back(notFound);
    if (failure.messages != NodalAlone) expected.push_back(error);
    if (failure.messages == NotFoundTwice) expected.push_back(notFound);
    expected.insert(expected.end(), {error, " NOT CORRECTLY STARTED"});
    EXPECT_EQ(display.messages, expected);
    ASSERT_FALSE(display.notices.empty());
    const StressWindow& nsa = display.nsa;
    EXPECT_EQ(nsa.Label10.caption, "Error No.");
    EXPECT_EQ(nsa.Label11.caption, "Error line");
    EXPECT_EQ(nsa.Text3.text, std::to_string(failure.number)) << display.notices.back().description;
    EXPECT_EQ(nsa.Text2.text, std::to_string(display.notices.back().line));
    EXPECT_TRUE(nsa.Text2.visible && nsa.Text3.visible);
    const auto ends = [&](const char* extension) {
      return folder.Has(extension) ? Count(folder.Read(extension), "\"END\"") : -1;
    };
    EXPECT_EQ(ends(".LES"), failure.lesEnds);
    EXPECT_EQ(ends(".NSR"), failure.nsrEnds);
    EXPECT_EQ(ends(".NSL"), failure.nsrEnds);
    if (failure.lesLines >= 0) {
      EXPECT_EQ(Count(folder.Read(".LES"), "\n"), failure.lesLines);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.Program("EEM.CTR")));
  }
}

TEST(StressStages, EndWhereTheControlFileIsGone) {
  Folder folder;
  Recover(folder, MixedModel(), {Bulge});
  folder.WriteControl(3, StressAlone);
  MeddlingDisplay display([&](const StressWindow&) { std::filesystem::remove(folder.Program("EEM.CTR")); });
  EXPECT_NE(folder.Run(display), 0);
  EXPECT_EQ(display.messages, (std::vector<std::string>{"Error occured", "Error occured", " NOT CORRECTLY STARTED"}));
}

TEST(StressStages, OfBeamsAndShellsNeedTheRotationsOfTheirNodes) {
  for (const auto& [type, code, number] :
       {std::array{7, 0, 9}, {7, 1, 9}, {7, 2, 0}, {9, 0, 9}, {9, 2, 9}, {6, 0, 0}}) {
    SCOPED_TRACE("type " + std::to_string(type) + " in analysis " + std::to_string(code));
    Model model = MixedModel();
    model.analysisCode = 3;
    model.elements = {{type, type == 7 ? std::vector{1, 2} : std::vector{1, 2, 5, 4}, 3}};
    Folder folder;
    Recover(folder, model, {Bulge});
    const int freedoms = code == 1 ? 2 : 3;
    std::string rvp = "9," + std::to_string(code) + "\n";
    for (int n = 1; n <= 9 * freedoms; ++n) rvp += "1\n";
    folder.Write(".RVP", rvp + "\"END\"\n");
    const std::string width = type == 7 ? "12" : "30";
    Replace(folder, ".DAT", "9\n" + width + "\n", "9\n" + std::to_string(freedoms) + "\n");
    folder.WriteControl(code, StressAlone);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display) == 0, number == 0);
    EXPECT_EQ(display.nsa.Text3.text, number == 0 ? "" : std::to_string(number));
  }
}

TEST(StressStages, CountRecordsInSixteenBits) {
  for (const int records : {32767, 32768}) {
    Model model;
    model.AddNode(0, 0);
    model.AddElement(16, {1});
    model.materials = {{1}};
    Folder folder;
    Recover(folder, model, {Bulge}, std::vector<double>(static_cast<std::size_t>(records)));
    std::string dat = "1\n6\n" + std::to_string(records) + "\n";
    for (int record = 1; record <= records; ++record) dat += "16,1,1\n0,0,0\n";
    folder.Write(".DAT", dat);
    folder.WriteControl(3, StressAlone);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display) == 0, records == 32767);
    EXPECT_EQ(display.nsa.Text3.text, records == 32767 ? "" : "6");
    EXPECT_EQ(display.messages.size(), records == 32767 ? 0 : 3);
  }
}

TEST(StressStages, ShowThePercentageInTheirOwnForm) {
  EXPECT_EQ(StressPercent(1, 200), " 0%");
  EXPECT_EQ(StressPercent(2, 3), " 66%");
  EXPECT_EQ(StressPercent(200, 200), " 100%");
  EXPECT_THROW(StressPercent(1, 0), Failure);
}

}  // namespace
}  // namespace velmor::testing
