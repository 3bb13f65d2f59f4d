#include "run/model_warnings.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

#include "elements/mapping.hpp"
#include "model/element_geometry.hpp"
#include "model/element_types.hpp"
#include "run/run.hpp"
#include "solve/supports.hpp"

namespace velmor {
namespace {

constexpr double ShapeTolerance = 0.01;  // of a side, or as an angle in radians: half a degree
constexpr double PlaneTolerance = 1e-6;  // of the model's largest coordinate: z in a plane model

/// "model: what: 3, first element 7: consequence".
void Tell(Run& run, const std::string& what, int count, const std::string& first, const std::string& consequence) {
  if (count > 0) Warn(run, "model: " + what + ": " + std::to_string(count) + ", first " + first + ": " + consequence);
}

void TellElements(Run& run, const Finding& found, const std::string& what, const std::string& consequence) {
  Tell(run, what, found.count, "element " + std::to_string(found.first), consequence);
}

void TellRecords(Run& run, const Finding& found, const std::string& what, const std::string& consequence) {
  Tell(run, what, found.count, "record " + std::to_string(found.first), consequence);
}

void TellNodes(Run& run, const Finding& found, const std::string& what, const std::string& consequence) {
  Tell(run, what, found.count, "node " + std::to_string(found.first), consequence);
}

/// The first of them is an equation.
void TellFreedoms(Run& run, const Finding& found, const std::string& what, const std::string& consequence) {
  if (found.count == 0) return;
  const ModelSizes& sizes = run.sizes;
  const std::string node = "node " + std::to_string(sizes.NodeOfEquation(found.first));
  Tell(run, what, found.count, node + " in " + FreedomName(run.analysisCode, sizes.FreedomOfEquation(found.first)),
       consequence);
}

bool IsTranslation(const Run& run, int equation) {
  return run.sizes.FreedomOfEquation(equation) <= (IsSpatial(run.analysisCode) ? 3 : 2);
}

QuadrilateralGeometry GeometryOf(const ModelTables& model, int e) {
  return QuadrilateralGeometryOf(
      {model.NodeOfElement(e, 1), model.NodeOfElement(e, 2), model.NodeOfElement(e, 3), model.NodeOfElement(e, 4)},
      SecondDirection::MeanOfSides);
}

/// True for the types that know a1 and b2 alone of the map.
bool IsTakenAsRectangle(int type) { return type == 5 || type == 6 || (9 <= type && type <= 12); }

/// The largest deviation of a corner from a right angle (tangent) or of a side from its opposite's mean (ratio).
double DeviationFromRectangle(const MappingTerms& m) {
  return std::max({(std::abs(m.b1) + std::abs(m.b3)) / m.a1, (std::abs(m.a2) + std::abs(m.a3)) / m.b2,
                   std::abs(m.a3) / m.a1, std::abs(m.b3) / m.b2});
}

/// Difference of opposite sides against the shorter side.
double DeviationFromParallelogram(const MappingTerms& m) {
  return std::hypot(m.a3, m.b3) / std::min(std::hypot(m.a1, m.b1), std::hypot(m.a2, m.b2));
}

/// Distance of the corners from their mean plane against the shorter side.
double Warp(const ModelTables& model, int e, const QuadrilateralGeometry& quad) {
  const Vector3 twist =
      (model.NodeOfElement(e, 1) - model.NodeOfElement(e, 2) + model.NodeOfElement(e, 3) - model.NodeOfElement(e, 4)) /
      4;
  return std::abs(Dot(twist, quad.axes.ez)) / std::min(quad.map.a1, quad.map.b2);
}

/// True if the Jacobian of the map has no area, or a negative one, at a corner.
bool HasBadCorner(const MappingTerms& map) {
  const double least = 1e-6 * std::abs(JacobianAt(map, 0, 0).det);
  for (int corner = 1; corner <= 4; ++corner) {
    if (JacobianAt(map, CornerS[corner], CornerT[corner]).det <= least) return true;
  }
  return false;
}

void WarnOfQuadrilaterals(Run& run) {
  const ModelTables& model = run.model;
  Finding noRectangle, noParallelogram, badCorner, warped;
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    if (RecordFormOf(type) != RecordForm::Quadrilateral) continue;
    const QuadrilateralGeometry quad = GeometryOf(model, e);
    if (IsTakenAsRectangle(type) && DeviationFromRectangle(quad.map) > ShapeTolerance) noRectangle.Note(e);
    if (type == 8 && DeviationFromParallelogram(quad.map) > ShapeTolerance) noParallelogram.Note(e);
    if ((type == 4 || type == 8) && HasBadCorner(quad.map)) badCorner.Note(e);
    if (Warp(model, e, quad) > ShapeTolerance) warped.Note(e);
  }
  TellElements(run, noRectangle, "elements of types 5, 6 and 9 to 12 that are no rectangles",
               "they get the stiffness of the rectangle of their mean sides");
  TellElements(run, noParallelogram, "elements of type 8 that are no parallelograms",
               "a tilt without strain gives them forces");
  TellElements(run, badCorner, "elements of types 4 and 8 with a corner of 180 degrees or more",
               "check the order of their nodes");
  TellElements(run, warped, "four-node elements whose corners do not lie in one plane",
               "they are projected onto their mean plane");
}

bool AreParallel(const Vector3& a, const Vector3& b) { return Length(Cross(a, b)) <= ShapeTolerance; }

/// Type 8 has +dw/dx for the rotation about its second axis: elements that share a node must share their axes.
void WarnOfPolynomialPlates(Run& run) {
  const ModelTables& model = run.model;
  std::map<int, ElementAxesTriad> axesAt;  // of the first element of type 8 at a node
  std::set<int> others;                    // nodes of other shells and beams
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    if (type == 8) {
      const ElementAxesTriad axes = GeometryOf(model, e).axes;
      for (int j = 1; j <= 4; ++j) axesAt.try_emplace(model.elements(e, j), axes);
    }
  }
  if (axesAt.empty()) return;
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    if (type == 8 || (type != BeamType && !IsPlate(type))) continue;
    for (int j = 1; j <= (type == BeamType ? 2 : 4); ++j) others.insert(model.elements(e, j));
  }
  Finding turned, mixed;
  for (int e = 1; e <= model.elementCount; ++e) {
    if (model.elements(e, 0) != 8) continue;
    const ElementAxesTriad axes = GeometryOf(model, e).axes;
    bool isTurned = false, isMixed = false;
    for (int j = 1; j <= 4; ++j) {
      const ElementAxesTriad& first = axesAt.at(model.elements(e, j));
      isTurned = isTurned || !AreParallel(axes.ex, first.ex) || !AreParallel(axes.ez, first.ez);
      isMixed = isMixed || others.contains(model.elements(e, j));
    }
    if (isTurned) turned.Note(e);
    if (isMixed) mixed.Note(e);
  }
  TellElements(run, turned, "elements of type 8 beside others of type 8 with other local axes",
               "the third freedom of type 8 belongs to its own axes, they do not fit together");
  TellElements(run, mixed, "elements of type 8 beside other shells or beams",
               "the third freedom of type 8 has the other sign, they do not fit together");
}

void WarnOfLinesAndRotations(Run& run) {
  const ModelTables& model = run.model;
  Finding noLength, noRotations;
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    const bool needsSix = IsPlate(type) && run.analysisCode != 3;
    const bool needsOne = type == BeamType && run.analysisCode != 2 && run.analysisCode != 3;
    if (needsSix || needsOne) noRotations.Note(e);
    if (RecordFormOf(type) != RecordForm::Line) continue;
    if (Length(model.NodeOfElement(e, 2) - model.NodeOfElement(e, 1)) == 0) noLength.Note(e);
  }
  TellElements(run, noRotations, "beams or shells in an analysis code without their rotations",
               "all their rotations are clamped");
  TellElements(run, noLength, "line elements of no length", "they add no stiffness");
}

void WarnOfNodes(Run& run) {
  const ModelTables& model = run.model;
  ColumnOf<char> used(model.nodeCount);
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    for (int j = 1; type > 0 && j <= NodeCountOf(model.types, type); ++j) used(model.elements(e, j)) = 1;
  }
  double largest = 0;
  for (int n = 1; n <= model.nodeCount; ++n) {
    for (int k = 1; k <= 3; ++k) largest = std::max(largest, std::abs(model.nodeCoordinates(n, k)));
  }
  Finding unused, outOfPlane;
  for (int n = 1; n <= model.nodeCount; ++n) {
    if (used(n) == 0) unused.Note(n);
    const double z = model.nodeCoordinates(n, 3) - model.nodeCoordinates(1, 3);
    if (!IsSpatial(run.analysisCode) && std::abs(z) > PlaneTolerance * largest) outOfPlane.Note(n);
  }
  TellNodes(run, unused, "nodes that no element stiffens", "they are held at zero");
  TellNodes(run, outOfPlane, "nodes of a plane analysis off the plane of node 1",
            "elements keep their length in space, and only the part of their stiffness in x and y counts");
}

constexpr double MostExtraTwist = 1;          // of type 6: its twist is twice as stiff as it should be
constexpr double LargestDrilling = 1e-3;      // of the bending stiffness: above, the ground takes part of the moments
constexpr double SmallestDrilling = 1e-12;    // below, it is lost in rounding where plates are inclined
constexpr double LargeDiagonal = 1e20;        // beside which the 1e30 of a support begins to give way
constexpr double SmallDiagonal = 1e-6;        // near the absolute limit under which a freedom counts as loose
constexpr double RoundingOfDiagonal = 1e-15;  // of the largest diagonal: a right angle that is one but for rounding

/// Extra twist of a type 6 plate in units of the true one. The stabilised deflection block stores for w = xi eta
/// the energy G t k 4ab (1/a^2 + 1/b^2) / 2 with k = 1.3^2 / 3, the true twist stores G t^3 4ab / (3 2 (ab)^2).
double ExtraTwist(const MappingTerms& map, double thickness) {
  return 1.69 * (map.a1 * map.a1 + map.b2 * map.b2) / (thickness * thickness);
}

/// Rows of the diagonal with a stiffness that is there, and small in absolute terms alone.
Finding NearlyLooseFreedoms(const Run& run) {
  double largest = 0;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) largest = std::max(largest, std::abs(run.GlobalBand(e, 1)));
  Finding found;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    const double diagonal = std::abs(run.GlobalBand(e, 1));
    if (diagonal > RoundingOfDiagonal * largest && diagonal < SmallDiagonal) found.Note(e);
  }
  return found;
}

/// A span under a uniform load, held by simple supports, sags by 1.6 / n^2 of its deflection too little, a cantilever
/// by 0.67 / n^2: here 2.5 and 1 per cent.
constexpr int LeastElementsOfRun = 8;

/// A beam under the sum of its loads along one local axis in one load case.
struct LoadedBeam {
  int loadCase, direction, element;
  double value;
};

std::vector<LoadedBeam> LoadedBeamsOf(const Run& run, const std::vector<LineOfLoad>& loads) {
  std::map<std::tuple<int, int, int>, double> sums;
  for (const LineOfLoad& load : loads) {
    const bool exists = 1 <= load.element && load.element <= run.model.elementCount;
    if (!exists || run.model.elements(load.element, 0) != BeamType) continue;
    if (load.direction != 2 && load.direction != 3) continue;
    sums[{load.loadCase, static_cast<int>(load.direction), load.element}] += load.value;
  }
  std::vector<LoadedBeam> beams;
  for (const auto& [key, value] : sums) {
    if (value != 0) beams.push_back({std::get<0>(key), std::get<1>(key), std::get<2>(key), value});
  }
  return beams;
}

/// True where the end moments of two beams at a common node cancel, more or less: in line, loads of one size. The sign
/// of a load follows the sense of its beam and is left aside.
bool ContinueEachOther(const ModelTables& model, const LoadedBeam& a, const LoadedBeam& b) {
  const double q = std::abs(a.value), other = std::abs(b.value);
  if (std::min(q, other) < 0.5 * std::max(q, other)) return false;
  const auto axis = [&](int e) { return LineGeometryOf(model.NodeOfElement(e, 1), model.NodeOfElement(e, 2)).cosines; };
  return AreParallel(axis(a.element), axis(b.element));
}

constexpr std::size_t MostLoadedBeamsOfNode = 16;  // more is no frame, and each would be compared with each

/// For each beam the number of the first beam of its run, from 0.
std::vector<std::size_t> RunsOf(const ModelTables& model, const std::vector<LoadedBeam>& beams) {
  std::vector<std::size_t> run(beams.size());
  std::iota(run.begin(), run.end(), std::size_t{0});
  const auto firstOf = [&](std::size_t i) {
    while (run[i] != i) i = run[i] = run[run[i]];
    return i;
  };
  std::map<std::tuple<int, int, int>, std::vector<std::size_t>> beamsAt;  // load case, direction, node
  for (std::size_t i = 0; i < beams.size(); ++i) {
    for (int end = 1; end <= 2; ++end) {
      auto& here = beamsAt[{beams[i].loadCase, beams[i].direction, model.elements(beams[i].element, end)}];
      for (std::size_t j : here) {
        if (ContinueEachOther(model, beams[i], beams[j])) run[firstOf(i)] = firstOf(j);
      }
      if (here.size() < MostLoadedBeamsOfNode) here.push_back(i);
    }
  }
  for (std::size_t i = 0; i < beams.size(); ++i) run[i] = firstOf(i);
  return run;
}

constexpr double MassTolerance = 1e-6;  // of the largest mass; NAME.KNK and densities carry more digits

}  // namespace

void Warn(Run& run, const std::string& text) {
  auto& told = run.report.warnings;
  if (std::find(told.begin(), told.end(), text) != told.end()) return;
  told.push_back(text);
  run.display.Warning(text);
}

void WarnOfElements(Run& run) {
  WarnOfQuadrilaterals(run);
  WarnOfPolynomialPlates(run);
  WarnOfLinesAndRotations(run);
  WarnOfNodes(run);
}

void WarnOfStiffness(Run& run) {
  const ModelTables& model = run.model;
  Finding thin, planeStrain, drilling;
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    const RecordForm form = RecordFormOf(type);
    if (form != RecordForm::Quadrilateral && form != RecordForm::Triangle) continue;
    const Material& material = run.materials.MaterialTable[static_cast<std::size_t>(model.elementMaterial(e))];
    if (material.planeStrain != 0 && type != 4) planeStrain.Note(e);
    if (!IsPlate(type) || material.A == 0 || material.E == 0) continue;
    if (type == 6 && ExtraTwist(GeometryOf(model, e).map, material.A) > MostExtraTwist) thin.Note(e);
    const double ratio = 1 / PlateRigidity(material);
    if (run.analysisCode == 3 && (ratio > LargestDrilling || ratio < SmallestDrilling)) drilling.Note(e);
  }
  TellElements(run, thin, "elements of type 6 that are thin for their size",
               "their twist is more than twice too stiff");
  TellElements(run, planeStrain, "plane strain (field 5) in elements of another type than 4",
               "stiffness and stresses do not go together");
  TellElements(run, drilling, "shells beside whose bending stiffness the drilling stiffness of 1.0 is large or lost",
               "choose units in which E t^3 / 12 lies between 1e3 and 1e12");
  Finding rigid;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (std::abs(run.GlobalBand(e, 1)) > LargeDiagonal) rigid.Note(e);
  }
  TellFreedoms(run, rigid, "freedoms with a stiffness above 1e20",
               "supports hold by a stiffness of 1e30 and give way beside it, whatever the units");
  TellFreedoms(run, NearlyLooseFreedoms(run), "freedoms with a stiffness below 1e-6",
               "up to 1e-10 the solver takes it for none and holds them, whatever the units");
}

void WarnOfUndividedBeams(Run& run, const std::vector<LineOfLoad>& loads) {
  if (run.analysisCode != 2 && run.analysisCode != 3) return;  // no end moments
  if (run.GapPass > 0) return;                                 // the first pass told it
  const std::vector<LoadedBeam> beams = LoadedBeamsOf(run, loads);
  const std::vector<std::size_t> runs = RunsOf(run.model, beams);
  std::vector<int> length(beams.size());
  for (std::size_t first : runs) ++length[first];
  std::set<int> elements;  // each once, whatever its load cases
  for (std::size_t i = 0; i < beams.size(); ++i) {
    if (length[runs[i]] < LeastElementsOfRun) elements.insert(beams[i].element);
  }
  if (elements.empty()) return;
  TellElements(run, {static_cast<int>(elements.size()), *elements.begin()},
               "beams under a uniform load in runs of fewer than 8 elements",
               "its end moments have the wrong sign and cancel only between neighbours; divide them");
}

void WarnOfPrescribedDisplacements(Run& run, const std::vector<Support>& supports) {
  if (run.LoadCaseCount < 2) return;
  Finding found;
  for (const Support& support : supports) {
    if (support.value == 0 || support.direction > run.sizes.DofPerNode) continue;
    found.Note(run.sizes.Equation(support.node, support.direction));
  }
  TellFreedoms(run, found, "prescribed displacements", "they act in load case 1 alone, the other cases hold them at 0");
}

void WarnOfLooseFreedoms(Run& run, double tinyPivot) {
  if (run.GapPass > 0) return;  // the first pass, with all gaps closed, told it
  Finding translations, rotations, loaded;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (std::abs(run.GlobalBand(e, 1)) > tinyPivot) continue;
    (IsTranslation(run, e) ? translations : rotations).Note(e);
    bool isLoaded = false;
    for (int c = 1; c <= run.LoadCaseCount; ++c) isLoaded = isLoaded || run.LoadTable(c, e) != 0;
    if (isLoaded) loaded.Note(e);
  }
  TellFreedoms(run, translations, "translations without stiffness", "they are held at zero");
  TellFreedoms(run, rotations, "rotations without stiffness", "they are held at zero");
  TellFreedoms(run, loaded, "loaded freedoms without stiffness", "their loads are dropped");
}

Finding WeakPivots(const Run& run, const Column& diagonal) {
  constexpr double leastPart = 1e-11;
  Finding weak;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (std::abs(run.GlobalBand(e, 1)) < leastPart * std::abs(diagonal(e))) weak.Note(e);
  }
  return weak;
}

void WarnOfWeakPivots(Run& run) {
  TellFreedoms(run, run.weakPivots, "freedoms that keep less than 1e-11 of their stiffness when all others may move",
               "the structure is a mechanism there, or so soft beside its own members that the results have lost their "
               "digits");
}

void WarnOfUnequalMasses(Run& run, const Column& MassDiagonal, const std::vector<Support>& supports) {
  ColumnOf<char> held(run.sizes.EquationCount());
  for (const Support& support : supports) {
    if (support.direction <= run.sizes.DofPerNode) held(run.sizes.Equation(support.node, support.direction)) = 1;
  }
  double largest = 0;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (held(e) == 0) largest = std::max(largest, std::abs(MassDiagonal(e)));
  }
  Finding found;
  for (int e = 1; e <= run.sizes.EquationCount(); ++e) {
    if (held(e) == 0 && MassDiagonal(e) < (1 - MassTolerance) * largest) found.Note(e);
  }
  TellFreedoms(run, found, "free freedoms with less mass than the heaviest",
               "periods are true only where every free freedom has the same mass");
}

void WarnOfEigenModel(Run& run, const std::vector<Support>& supports) {
  Finding prescribed, skipped;
  for (const Support& support : supports) {
    if (support.direction > run.sizes.DofPerNode) {
      skipped.Note(support.node);
    } else if (support.value != 0) {
      prescribed.Note(run.sizes.Equation(support.node, support.direction));
    }
  }
  TellFreedoms(run, prescribed, "supports with a value in an eigen run",
               "the value loads the iteration, the modes are none");
  TellNodes(run, skipped, "supports of freedoms that the model has not",
            "the eigen run counts them all the same and looks for fewer modes");
  if (static_cast<int>(supports.size()) >= run.sizes.EquationCount()) {
    Warn(run, "model: as many support lines as equations: no mode is looked for");
  }
  if (run.gapFlag) Warn(run, "model: gaps in an eigen run: the modes are those with every gap open");
}

void WarnOfGaps(Run& run, const Finding& lost, const Finding& pulling, const Finding& unsettled) {
  TellRecords(run, unsettled, "gaps that had not settled when the passes ended",
              "the change of a pass is compared with 1e-8 in the model's units: choose millimetres");
  TellRecords(run, lost, "gaps shortened beyond their limit (field 6)",
              "the iteration has lost these supports, the results are those of a model without them");
  TellRecords(run, pulling, "gaps that pull at their limit (field 6)",
              "the results are not those of one-sided supports");
}

}  // namespace velmor
