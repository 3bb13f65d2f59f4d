// Surface elements through the stages: whole runs, and the stiffness stage on records by hand.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "elements/membrane_quad.hpp"
#include "model/element_types.hpp"
#include "patch.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

models::Material Surface(double E, double nu, double t, double planeStrain = 0) { return {E, nu, 0, t, planeStrain}; }

TEST(SurfaceElements, ShareATensionWithBarsAndBeamsInAnyDirection) {
  const double E = 210e3, L = 40, width = 25, t = 1.5, A = 7, force = 1e4;
  const double u = force * L / (E * (t * width + 2 * A));
  for (const int type : {2, 4, 5, 12, 13, 6, 8, 9, 10, 11}) {
    for (const int line : {1, 7}) {
      for (const auto& n : {std::array{1, 2, 3, 4}, {4, 3, 2, 1}, {3, 1, 4, 2}}) {  // node numbers of the corners
        SCOPED_TRACE(::testing::Message() << "type " << type << " with type " << line << " from node " << n[0]);
        Model model;
        model.nodes.resize(4);
        const std::array<double, 2> corners[] = {{0, 0}, {L, 0}, {L, width}, {0, width}};
        for (std::size_t corner = 0; corner < 4; ++corner) {
          const Vector3 p = Turned.Point(corners[corner][0], corners[corner][1]);
          model.nodes.at(static_cast<std::size_t>(n[corner] - 1)) = {p.x, p.y, p.z};
        }
        model.AddElement(type, {n.begin(), n.end() - (type == 2 ? 1 : 0)});
        if (type == 2) model.AddElement(type, {n[2], n[3], n[0]});
        model.analysisCode = line == 7 || IsPlate(type) ? 3 : 0;
        model.AddElement(line, {n[0], n[1]}, 2);
        model.AddElement(line, {n[3], n[2]}, 2);
        model.materials = {Surface(E, 0, t), {E, 0, 0, A, 0, 0, 10, 0, 20, 1, 20, 1}};
        // Springs along the normal, in whole numbers: spring matrices are single precision.
        model.AddMaterial({.spring = {{{100, 200, -200}, {200, 400, -400}, {-200, -400, 400}}}});
        for (const int node : n) model.AddElement(16, {node}, 3);
        for (const int fixed : {n[0], n[3]}) model.Fix(fixed, model.analysisCode == 3 ? 6 : 3);
        for (const int pulled : {n[1], n[2]}) {
          for (int k = 1; k <= 3; ++k) model.Load(pulled, k, force / 2 * Turned.e1(k));
        }
        Folder folder;
        folder.Solve(model);
        const NodalValues moved = folder.Displacements();
        for (const int pulled : {n[1], n[2]}) {
          const Vector3 found{moved(1, pulled, 1), moved(1, pulled, 2), moved(1, pulled, 3)};
          EXPECT_LT(Length(found - u * Turned.e1), 1e-9 * u);
        }
      }
    }
  }
}

// ---- the stiffness stage on records written by hand

/// The stiffness stage alone, on an element of four nodes and one material.
struct Stage {
  Stage(int type, const models::Material& material, const MappingTerms& map, int analysisCode = 3) {
    Model model;
    model.analysisCode = analysisCode;
    model.nodes.resize(4);
    model.materials = {material};
    folder.Write(model);
    run.model.nodeCount = 4;
    run.modelSizeValues.values(4) = 1;
    const auto& [a1, a2, a3, b1, b2, b3] = map;
    std::ostringstream dat;
    dat.precision(17);
    dat << "4," << 4 * DofPerNodeOf(analysisCode) << ",1," << type;
    if (RecordFormOf(type) == RecordForm::Triangle) {
      dat << ",4,2,1,-1,0,1,0,-1,-1,1,0,0,0,1,0," << a1 * b2 / 2 << ",1,0,0,0\n";
    } else {
      dat << ",4,2,1,3,1,0,0,0,1,0,1," << a1 << "," << a2 << "," << a3 << "," << b1 << "," << b2 << "," << b3
          << ",0,0,0\n";
    }
    folder.Write(".DAT", dat.str());
  }
  /// Number of the failure that ends the stage, 0 if it comes to its end.
  int FailureNumber() {
    try {
      RunStiffnessStage(run);
      return 0;
    } catch (const ProgramEnd&) {
      return display.notices.empty() ? -1 : display.notices.back().number;
    }
  }

  Folder folder;
  RecordingDisplay display;
  velmor::Run run{display, folder.Program()};
};

const MappingTerms Square{1, 0, 0, 0, 1, 0};

TEST(SurfaceStage, AnswersTheValuesThatAnElementCannotTake) {
  const MappingTerms noA{0, 1, 0, 0, 1, 0}, noB{1, 0, 0, 1, 0, 0};
  const MappingTerms atGaussPoint{1, 0, 0, 0, 0.5773502691, 1}, atNode{1, 0, 0, 0, 1, 1};
  const models::Material steel = Surface(210, 0.3, 2);
  enum Outcome { Adds, AddsOnes, Skips, Divides };
  const struct {
    const char* name;
    std::vector<int> types;
    models::Material material;
    MappingTerms map;
    Outcome outcome;
  } rows[] = {
      {"an ordinary square", {2, 3, 13, 4, 5, 6, 8, 9, 10, 11, 12}, steel, Square, Adds},
      {"a1 = 0", {2, 4, 5, 6, 8, 9, 10, 11, 12}, steel, noA, Skips},
      {"b2 = 0", {2, 4, 5, 6, 8, 9, 10, 11, 12}, steel, noB, Skips},
      {"nu = 1", {2, 4, 5, 6, 8, 9, 10, 11, 12}, Surface(210, 1, 2), Square, Divides},
      {"nu = 1 comes before the skip", {4, 9, 12}, Surface(210, 1, 2), noA, Divides},
      {"and behind that of a triangle", {2, 3, 13}, Surface(210, 1, 2), noA, Skips},
      {"nu = 0.5 in plane strain", {4, 5, 6, 8, 9, 10, 11}, Surface(210, 0.5, 2, 1), Square, Divides},
      {"E = 0 in a hybrid plate", {9, 10}, Surface(0, 0.3, 2), Square, Divides},
      {"t = 0 in a hybrid plate", {9, 10}, Surface(210, 0.3, 0), Square, Divides},
      {"t = 0 in a plate: its drilling term stays", {6, 8, 11}, Surface(210, 0.3, 0), Square, AddsOnes},
      {"no area at a Gauss point", {4, 6, 8, 11}, steel, atGaussPoint, Divides},
      {"no area at a node", {8}, steel, atNode, Divides},
  };
  for (const auto& [name, types, material, map, outcome] : rows) {
    for (const int type : types) {
      for (const int code : outcome == Adds ? std::vector{0, 1, 2, 3} : std::vector{3}) {
        SCOPED_TRACE(::testing::Message() << name << ", type " << type << ", code " << code);
        Stage stage(type, material, map, code);
        EXPECT_EQ(stage.FailureNumber(), outcome == Divides ? error::DivisionByZero : 0);
        if (outcome == Divides) continue;
        const BandMatrix& band = stage.run.GlobalBand;
        double height = 0, entry = 0;
        for (int e = 1; e <= band.EquationBound(); ++e) {
          height = std::max(height, band(e, 0));
          for (int d = 1; d <= band.BandBound(); ++d) entry = std::max(entry, std::abs(band(e, d)));
        }
        EXPECT_EQ(height, outcome == Skips ? 0 : 4 * DofPerNodeOf(code));
        EXPECT_TRUE(outcome == Adds ? entry > 1 : entry == (outcome == AddsOnes ? 1 : 0)) << entry;
      }
    }
  }
}

TEST(SurfaceStage, GivesEachTypeItsMembrane) {
  const Material strained{.E = 210, .nu = 0.3, .A = 2, .planeStrain = 1};  // which tells type 12 from type 4
  const std::pair<std::vector<int>, Table<12, 12>> membranes[] = {
      {{4, 6, 8, 11}, IsoparametricMembraneStiffness(strained, Square)},
      {{5, 9, 10}, IncompatibleMembraneStiffness(strained, 1, 1)},
      {{12}, RectangleMembraneStiffness(strained, 1, 1)}};
  for (const auto& [types, K] : membranes) {
    for (const int type : types) {
      Stage stage(type, Surface(210, 0.3, 2, 1), Square);
      EXPECT_EQ(stage.FailureNumber(), 0);
      EXPECT_EQ(stage.run.GlobalBand(stage.run.sizes.Equation(4, 1), 1), K(1, 1))
          << "u of the first node, type " << type;
    }
  }
}

TEST(SurfaceStage, NeedsThePlateTableForType11) {
  for (const int type : {9, 11}) {
    Stage stage(type, Surface(210, 0.3, 2), Square);
    std::filesystem::remove(stage.folder.Program("PLAT.ELM"));
    EXPECT_EQ(stage.FailureNumber(), type == 11 ? error::FileNotFound : 0);
    EXPECT_EQ(stage.display.messages, std::vector<std::string>(type == 11 ? 1 : 0, "PLAT.ELM NOT FOUND"));
  }
}

}  // namespace
}  // namespace velmor::testing
