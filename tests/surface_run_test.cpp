// Surface elements through the stages: whole runs of patches and plates, and the stiffness stage on records by hand.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>

#include "base/item_writer.hpp"
#include "base/vector3.hpp"
#include "elements/membrane_quad.hpp"
#include "model/element_records.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

using Fields = models::Material;
Fields Surface(double E, double nu, double t, double planeStrain = 0) { return {E, nu, 0, t, planeStrain}; }

// ---- where the plane of a model lies

/// Local x, y, z of a flat model in global components.
struct Plane {
  Vector3 ex, ey, ez;
  Vector3 At(double x, double y, double z = 0) const { return x * ex + y * ey + z * ez; }
};
const Plane Flat{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
const Plane Tilted{{2.0 / 3, -2.0 / 3, 1.0 / 3}, {2.0 / 3, 1.0 / 3, -2.0 / 3}, {1.0 / 3, 2.0 / 3, 2.0 / 3}};

int AddNode(Model& model, const Vector3& p) { return model.AddNode(p.x, p.y, p.z); }

/// A nodal spring on every node of a tilted model that resists motion along the normal: whole numbers, since spring
/// matrices are single precision.
void AddNormalSprings(Model& model) {
  const int material = model.AddMaterial({.spring = {{{100, 200, 200}, {200, 400, 400}, {200, 400, 400}}}});
  for (int node = 1; node <= static_cast<int>(model.nodes.size()); ++node) model.AddElement(16, {node}, material);
}

/// Node numbers 1..n in their own order, from behind, and shuffled: numbers[old] is the new number.
enum class Numbers { Ascending, Descending, Shuffled };
std::vector<int> NumbersOf(Numbers kind, std::size_t count) {
  std::vector<int> numbers(count + 1);
  std::iota(numbers.begin(), numbers.end(), 0);
  if (kind == Numbers::Descending) std::reverse(numbers.begin() + 1, numbers.end());
  if (kind == Numbers::Shuffled) std::shuffle(numbers.begin() + 1, numbers.end(), std::mt19937(11));
  return numbers;
}

Model Renumbered(Model model, const std::vector<int>& numbers) {
  const auto number = [&](int old) { return numbers[static_cast<std::size_t>(old)]; };
  const auto nodes = model.nodes;
  for (std::size_t n = 1; n <= nodes.size(); ++n) model.nodes[static_cast<std::size_t>(numbers[n] - 1)] = nodes[n - 1];
  for (auto& element : model.elements)
    std::transform(element.nodes.begin(), element.nodes.end(), element.nodes.begin(), number);
  for (auto& support : model.supports) support.node = number(support.node);
  for (auto& loadCase : model.cases) {
    for (auto& load : loadCase.nodal) load.node = number(load.node);
  }
  return model;
}

/// Solves the model under each numbering and hands the displacement (load case 1) of the model's own nodes to `check`.
using Motion = std::function<double(int node, int freedom)>;
void SolveUnderEachNumbering(const Model& model, const std::function<void(const Motion&)>& check) {
  for (const Numbers kind : {Numbers::Ascending, Numbers::Descending, Numbers::Shuffled}) {
    SCOPED_TRACE(static_cast<int>(kind));
    const std::vector<int> numbers = NumbersOf(kind, model.nodes.size());
    Folder folder;
    folder.Solve(Renumbered(model, numbers));
    const NodalValues u = folder.Displacements();
    check([&](int node, int freedom) { return u(1, numbers[static_cast<std::size_t>(node)], freedom); });
  }
}

/// Adds a quadrilateral of the type; triangles (2, 3) come as two.
void AddFace(Model& model, int type, const std::array<int, 4>& n) {
  if (type == 2 || type == 3) {
    model.AddElement(type, {n[0], n[1], n[2]});
    model.AddElement(type, {n[2], n[3], n[0]});
  } else {
    model.AddElement(type, {n[0], n[1], n[2], n[3]});
  }
}

// ---- patch tests

TEST(SurfacePatch, OfMembranesIsExactWhereverThePlaneLies) {
  // MacNeal, Harder, 1985: five crooked quadrilaterals, u = (x + y/2)/1000, v = (y + x/2)/1000 on the border.
  const double points[8][2] = {{0, 0}, {.24, 0}, {.24, .12}, {0, .12}, {.04, .02}, {.18, .03}, {.16, .08}, {.08, .08}};
  const std::array<int, 4> faces[] = {{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}, {5, 6, 7, 8}};
  const struct {
    const char* name;
    int analysisCode;
    Plane plane;
  } places[] = {
      {"2-D", 1, Flat}, {"2-D with rotation", 2, Flat}, {"3-D", 0, Tilted}, {"3-D with rotations", 3, Tilted}};
  for (const auto& place : places) {
    for (const int type : {2, 4, 13}) {
      SCOPED_TRACE(std::string(place.name) + ", type " + std::to_string(type));
      Model model;
      model.analysisCode = place.analysisCode;
      model.materials = {Surface(1e6, 0.25, 0.001)};
      const int directions = place.analysisCode == 0 || place.analysisCode == 3 ? 3 : 2;
      const auto moved = [&](int n) {
        const auto [x, y] = points[n - 1];
        return place.plane.At((x + y / 2) / 1000, (y + x / 2) / 1000);
      };
      for (const auto& [x, y] : points) AddNode(model, place.plane.At(x, y));
      for (const auto& face : faces) AddFace(model, type, face);
      for (int n = 1; n <= 4; ++n) {
        for (int k = 1; k <= directions; ++k) model.supports.push_back({n, k, moved(n)(k)});
      }
      model.cases = {{}};
      if (directions == 3) AddNormalSprings(model);
      SolveUnderEachNumbering(model, [&](const Motion& u) {
        for (int n = 5; n <= 8; ++n) {
          for (int k = 1; k <= directions; ++k) EXPECT_NEAR(u(n, k), moved(n)(k), 1e-14) << n << "," << k;
        }
      });
    }
  }
}

/// Columns and rows of rectangles over the lines x and y in a plane; node i, j (from 0) is j * (columns + 1) + i + 1.
struct Mesh {
  std::vector<double> x, y;
  int Columns() const { return static_cast<int>(x.size()) - 1; }
  int Rows() const { return static_cast<int>(y.size()) - 1; }
  int Node(int i, int j) const { return j * (Columns() + 1) + i + 1; }
  template <typename Action>  // action(node, x, y, i, j)
  void EachNode(Action action) const {
    for (int j = 0; j <= Rows(); ++j) {
      for (int i = 0; i <= Columns(); ++i) {
        action(Node(i, j), x[static_cast<std::size_t>(i)], y[static_cast<std::size_t>(j)], i, j);
      }
    }
  }
  Model Build(int type, const Fields& material, const Plane& plane = Flat) const {
    Model model;
    model.materials = {material};
    model.cases = {{}};
    EachNode([&](int, double px, double py, int, int) { AddNode(model, plane.At(px, py)); });
    for (int j = 0; j < Rows(); ++j) {
      for (int i = 0; i < Columns(); ++i) {
        AddFace(model, type, {Node(i, j), Node(i + 1, j), Node(i + 1, j + 1), Node(i, j + 1)});
      }
    }
    return model;
  }
};

// ---- plates and lines

TEST(SquarePlate, BendsAlikeWhereverItLiesAndHoweverItIsNumbered) {
  const Mesh mesh{{0, 200, 500, 800, 1000}, {0, 200, 500, 800, 1000}};
  for (const int type : {6, 8, 9, 10, 11}) {
    SCOPED_TRACE(type);
    const auto clampedUnderCentralForce = [&](const Plane& plane) {
      Model model = mesh.Build(type, Surface(210e3, 0.3, 10), plane);
      mesh.EachNode([&](int n, double, double, int i, int j) {
        if (i % 4 == 0 || j % 4 == 0) model.Fix(n, 6);
      });
      for (int k = 1; k <= 3; ++k) model.cases[0].nodal.push_back({mesh.Node(2, 2), k, 1000 * plane.ez(k)});
      return model;
    };
    Folder folder;
    folder.Solve(clampedUnderCentralForce(Flat));
    const NodalValues flat = folder.Displacements();
    const double middle = flat(1, mesh.Node(2, 2), 3);
    EXPECT_GT(middle, 0);
    SolveUnderEachNumbering(clampedUnderCentralForce(Tilted), [&](const Motion& u) {
      mesh.EachNode([&](int n, double, double, int, int) {
        for (const int first : {1, 4}) {  // displacements, rotations
          const Vector3 expected =
              flat(1, n, first) * Tilted.ex + flat(1, n, first + 1) * Tilted.ey + flat(1, n, first + 2) * Tilted.ez;
          // The drilling term of 1.0 beside bending terms of 1e8 costs a turned plate digits.
          for (int k = 0; k < 3; ++k) EXPECT_NEAR(u(n, first + k), expected(k + 1), 1e-8 * middle) << n << "," << k;
        }
      });
    });
  }
}

TEST(SurfaceElements, ShareATensionWithBarsAndBeamsInAnyDirection) {
  const double E = 210e3, L = 40, width = 25, t = 1.5, A = 7, force = 1e4;
  for (const int type : {2, 4, 5, 12, 13, 6, 8, 9, 10, 11}) {
    for (const int line : {1, 7}) {
      SCOPED_TRACE("type " + std::to_string(type) + " with type " + std::to_string(line));
      const bool shell = type == 6 || (8 <= type && type <= 11);
      Model model = Mesh{{0, L}, {0, width}}.Build(type, Surface(E, 0, t), Tilted);
      model.analysisCode = line == 7 || shell ? 3 : 0;
      model.materials.push_back({E, 0, 0, A, 0, 0, 10, 0, 20, 1, 20, 1});
      model.AddElement(line, {1, 2}, 2);
      model.AddElement(line, {4, 3}, 2);
      if (!shell) AddNormalSprings(model);
      for (const int n : {1, 3}) model.Fix(n, model.analysisCode == 3 ? 6 : 3);
      for (const int n : {2, 4}) {
        for (int k = 1; k <= 3; ++k) model.cases[0].nodal.push_back({n, k, force / 2 * Tilted.ex(k)});
      }
      const double u = force * L / (E * (t * width + 2 * A));
      SolveUnderEachNumbering(model, [&](const Motion& moved) {
        for (const int n : {2, 4}) {
          for (int k = 1; k <= 3; ++k) EXPECT_NEAR(moved(n, k), u * Tilted.ex(k), 1e-9 * u) << n << "," << k;
        }
      });
    }
  }
}

// ---- the examples, each run whole

TEST(Examples, OfSurfacesHaveTheirFiguresCheckedByHand) {
  const double g = static_cast<double>(9.81f);  // NAME.lcd holds single precision
  const double b = 1.2, t = 0.012, L = 12, E = 2.1e11, I = b * b * b * t * 2 / 3;
  enum Result { Displacement, Reaction, Total };
  struct Figure {
    Result result;
    int loadCase, node, freedom;
    double value, tolerance;  // relative
  };
  const std::pair<const char*, std::vector<Figure>> examples[] = {
      {"deep-wall",
       {{Reaction, 1, 239, 2, 180e3, 1e-9}, {Reaction, 2, 239, 2, 20.25 * 500 * g * (2.94 - 0.3) / 5.4, 1e-9}}},
      {"floor-slab",
       {{Total, 1, 0, 3, 241880 * g, 1e-9},
        {Total, 2, 0, 3, 972e3, 1e-9},
        {Displacement, 4, 1, 1, 0.325e-3, 0.02}}},  // frames with strips of a third of the bays
      {"box-girder",
       {{Displacement, 1, 481, 3, -1e5 * L / E * (L * L / 3 / I + 2.6 / (0.43551 * 4 * b * t)), 0.005},
        {Displacement, 2, 481, 2, 1e5 * L * 2.6 / (E * b * b * b * t) * b / 2, 0.0005},
        {Total, 3, 0, 3, 7850 * g * (4 * b * t * L + b * b * 0.02), 1e-9}}},
  };
  for (const auto& [name, figures] : examples) {
    Folder folder;
    folder.WriteExample(name);
    folder.Solve();
    const NodalValues u = folder.Displacements(), r = folder.Reactions();
    for (const auto& [result, loadCase, node, freedom, value, tolerance] : figures) {
      const double found =
          result == Displacement ? u(loadCase, node, freedom)
          : result == Reaction
              ? r(loadCase, node, freedom)
              : r.totals.at(static_cast<std::size_t>(loadCase - 1)).at(static_cast<std::size_t>(freedom - 1));
      EXPECT_NEAR(found / value, 1, tolerance) << name << ", load case " << loadCase;
    }
  }
}

// ---- the stiffness stage on records written by hand

/// The stiffness stage alone, on a model of four nodes and one material.
class Stage {
 public:
  explicit Stage(const Fields& material, int analysisCode = 3) {
    Model model;
    model.analysisCode = analysisCode;
    for (int n = 1; n <= 4; ++n) model.AddNode(0, 0);
    model.materials = {material};
    folder.Write(model);
    run.model.nodeCount = 4;
    run.modelSizeValues.values(4) = 1;
  }
  Stage& With(int type, const MappingTerms& map) {
    quadrilaterals.push_back({type, {4, 2, 1, 3}, {1, 0, 0}, {0, 1, 0}, 1, map, {}});
    return *this;
  }
  Stage& WithTriangle(int type, double area) {
    triangles.push_back({type, {4, 2, 1}, -1, 0, 1, 0, -1, -1, {1, 0, 0}, {0, 1, 0}, area, 1, {}});
    return *this;
  }
  /// Number of the failure that ended the stage, 0 if it came to its end.
  int FailureNumber() {
    ItemWriter dat(folder.File(".DAT"));
    const int freedoms = DofPerNodeOf(ReadControlFile(folder.Program()).analysisCode);
    WriteModelSizes(dat, {4, 4 * freedoms, static_cast<int>(quadrilaterals.size() + triangles.size()), freedoms});
    for (const auto& record : quadrilaterals) velmor::Write(dat, record);
    for (const auto& record : triangles) velmor::Write(dat, record);
    dat.Close();
    try {
      RunStiffnessStage(run);
      return 0;
    } catch (const ProgramEnd& end) {
      EXPECT_NE(end.status, 0);
      return display.notices.empty() ? -1 : display.notices.back().number;
    }
  }
  /// Largest height and largest entry of GlobalBand.
  std::array<double, 2> Largest() const {
    std::array<double, 2> largest{};
    for (int e = 1; e <= run.GlobalBand.EquationBound(); ++e) {
      for (int d = 0; d <= run.GlobalBand.BandBound(); ++d) {
        largest[d > 0] = std::max(largest[d > 0], std::abs(run.GlobalBand(e, d)));
      }
    }
    return largest;
  }

  Folder folder;
  RecordingDisplay display;
  velmor::Run run{display, folder.Program()};
  std::vector<QuadrilateralRecord> quadrilaterals;
  std::vector<TriangleRecord> triangles;
};

TEST(SurfaceStage, AnswersTheValuesThatAnElementCannotTake) {
  const MappingTerms square{1, 0, 0, 0, 1, 0}, noA{0, 1, 0, 0, 1, 0}, noB{1, 0, 0, 1, 0, 0};
  const MappingTerms atGaussPoint{1, 0, 0, 0, 0.5773502691, 1}, atNode{1, 0, 0, 0, 1, 1};
  const Fields steel = Surface(210, 0.3, 2);
  enum Outcome { Adds, AddsZeros, AddsOnes, Skips, Divides };
  const struct {
    const char* name;
    std::vector<int> types;
    Fields material;
    MappingTerms map;
    Outcome outcome;
    int analysisCode = 3;
  } rows[] = {
      {"an ordinary square", {4, 5, 6, 8, 9, 10, 11, 12}, steel, square, Adds},
      {"with code 0", {4, 5, 6, 8, 9, 10, 11, 12}, steel, square, Adds, 0},
      {"with code 1", {4, 5, 6, 8, 9, 10, 11, 12}, steel, square, Adds, 1},
      {"with code 2", {4, 5, 6, 8, 9, 10, 11, 12}, steel, square, Adds, 2},
      {"a1 = 0", {4, 5, 6, 8, 9, 10, 11, 12}, steel, noA, Skips},
      {"b2 = 0", {4, 5, 6, 8, 9, 10, 11, 12}, steel, noB, Skips},
      {"nu = 1", {4, 5, 6, 8, 9, 10, 11, 12}, Surface(210, 1, 2), square, Divides},
      {"nu = 1 comes before the skip", {4, 9, 12}, Surface(210, 1, 2), noA, Divides},
      {"nu = -1 in plane strain", {5, 8, 12}, Surface(210, -1, 2, 1), square, Divides},
      {"nu = 0.5 in plane strain", {4, 5, 6, 8, 9, 10, 11}, Surface(210, 0.5, 2, 1), square, Divides},
      {"nu = 0.5 in plane stress", {4, 5, 6, 8, 9, 10, 11}, Surface(210, 0.5, 2), square, Adds},
      {"nu = 0.5, no plane strain in type 12", {12}, Surface(210, 0.5, 2, 1), square, Adds},
      {"E = 0 in a hybrid plate", {9, 10}, Surface(0, 0.3, 2), square, Divides},
      {"t = 0 in a hybrid plate", {9, 10}, Surface(210, 0.3, 0), square, Divides},
      {"E = 0 in a membrane", {4, 5, 12}, Surface(0, 0.3, 2), square, AddsZeros},
      {"t = 0 in a membrane", {4, 5, 12}, Surface(210, 0.3, 0), square, AddsZeros},
      {"t = 0 in a plate: its drilling term stays", {6, 8, 11}, Surface(210, 0.3, 0), square, AddsOnes},
      {"no area at a Gauss point", {4, 6, 8, 11}, steel, atGaussPoint, Divides},
      {"no area at a node", {8}, steel, atNode, Divides},
      {"no area at a node, membrane", {4, 5, 11}, steel, atNode, Adds},
  };
  for (const auto& row : rows) {
    for (const int type : row.types) {
      SCOPED_TRACE(std::string(row.name) + ", type " + std::to_string(type));
      Stage stage(row.material, row.analysisCode);
      EXPECT_EQ(stage.With(type, row.map).FailureNumber(), row.outcome == Divides ? error::DivisionByZero : 0);
      if (row.outcome == Divides) continue;
      const auto [height, entry] = stage.Largest();
      EXPECT_EQ(height, row.outcome == Skips ? 0 : 4 * DofPerNodeOf(row.analysisCode));
      EXPECT_EQ(entry > 0, row.outcome == Adds || row.outcome == AddsOnes);
      if (row.outcome == AddsOnes) {
        EXPECT_EQ(entry, 1) << "the drilling term";
      }
    }
  }
}

TEST(SurfaceStage, GivesEachTypeItsMembrane) {
  const MappingTerms map{3, 0, 0, 0, 2, 0};
  const Material strained{.E = 210, .nu = 0.3, .A = 2, .planeStrain = 1};  // which tells type 12 from type 4
  const std::pair<std::vector<int>, Table<12, 12>> membranes[] = {
      {{4, 6, 8, 11}, IsoparametricMembraneStiffness(strained, map)},
      {{5, 9, 10}, IncompatibleMembraneStiffness(strained, 3, 2)},
      {{12}, RectangleMembraneStiffness(strained, 3, 2)}};
  for (const auto& [types, K] : membranes) {
    for (const int type : types) {
      Stage stage(Surface(210, 0.3, 2, 1));
      ASSERT_EQ(stage.With(type, map).FailureNumber(), 0);
      const auto equation = [&](int local) {  // local freedoms u, v lie along x, y
        const auto node = static_cast<std::size_t>((local - 1) / 2);
        return stage.run.sizes.Equation(stage.quadrilaterals[0].nodes[node], 2 - local % 2);
      };
      for (int i = 1; i <= 8; ++i) {
        for (int j = i; j <= 8; ++j) {
          const auto [first, last] = std::minmax({equation(i), equation(j)});
          EXPECT_EQ(stage.run.GlobalBand(first, last - first + 1), K(i, j)) << "type " << type << ": " << i << "," << j;
        }
      }
    }
  }
}

TEST(SurfaceStage, SkipsATriangleWithoutAreaBeforeItReadsPoissonsRatio) {
  for (const int type : {2, 3, 13}) {
    for (const double nu : {0.3, 1.0}) {
      for (const double area : {0.0, 0.5}) {
        SCOPED_TRACE("type " + std::to_string(type) + ", nu " + std::to_string(nu) + ", area " + std::to_string(area));
        Stage stage(Surface(210, nu, 2), 1);
        EXPECT_EQ(stage.WithTriangle(type, area).FailureNumber(), nu == 1 && area > 0 ? error::DivisionByZero : 0);
        EXPECT_EQ(stage.Largest()[0], nu < 1 && area > 0 ? 8 : 0);
      }
    }
  }
}

TEST(SurfaceStage, AnswersAPlateTableThatIsMissingOrBad) {
  const struct {
    const char* name;
    std::string table;  // empty: no file
    int type;
    std::vector<std::string> messages;
    int number;
  } rows[] = {
      {"missing", "", 11, {"PLAT.ELM NOT FOUND"}, error::FileNotFound},
      {"short", "1 2 3", 11, {"CALCULATION STOPPED"}, error::InputPastEnd},
      {"no number", "1,2,three", 11, {"CALCULATION STOPPED"}, error::TypeMismatch},
      {"missing, but no type 11", "", 9, {}, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Stage stage(Surface(210, 0.3, 2));
    std::filesystem::remove(stage.folder.Program("PLAT.ELM"));
    if (!row.table.empty()) WriteText(stage.folder.Program("PLAT.ELM"), row.table);
    EXPECT_EQ(stage.With(row.type, {1, 0, 0, 0, 1, 0}).FailureNumber(), row.number);
    EXPECT_EQ(stage.display.messages, row.messages);
    EXPECT_EQ(std::filesystem::exists(stage.folder.Program("EEM.CTR")), row.number == 0);
  }
}

TEST(SurfaceStage, TakesType3AsType2AndType13AsFourHalvedTriangles) {
  const auto matrixOf = [](const Model& model, std::size_t messages) {
    Folder folder;
    folder.Write(model);
    RecordingDisplay display;
    EXPECT_EQ(folder.Run(display), 0);
    EXPECT_EQ(display.messages, std::vector<std::string>(messages, "TRIMS ELEMENT IS NOT SUPPORTED"));
    return folder.Read(".MAT");
  };
  Model model;
  for (const auto& [x, y] : {std::pair{0, 0}, {4, 1}, {5, 4}, {-1, 3}}) AddNode(model, Tilted.At(x, y));
  model.analysisCode = 0;
  model.materials = {Surface(210, 0.3, 2), Surface(210, 0.3, 1)};
  model.Fix(1, 3);
  model.flags.SolveFlag = 0;
  const auto with = [&](std::initializer_list<Model::Element> elements) {
    Model other = model;
    other.elements = elements;
    return other;
  };
  const std::string halves =
      matrixOf(with({{2, {1, 2, 3}, 2}, {2, {1, 3, 4}, 2}, {2, {1, 2, 4}, 2}, {2, {2, 3, 4}, 2}}), 0);
  EXPECT_EQ(matrixOf(with({{13, {1, 2, 3, 4}, 1}}), 0), halves);
  // Once per element in the stiffness stage and once in the mass stage.
  EXPECT_EQ(matrixOf(with({{3, {1, 2, 3}, 1}, {3, {1, 3, 4}, 1}}), 4),
            matrixOf(with({{2, {1, 2, 3}, 1}, {2, {1, 3, 4}, 1}}), 0));
}

}  // namespace
}  // namespace velmor::testing
