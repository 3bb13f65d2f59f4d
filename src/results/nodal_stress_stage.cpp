// The Nodal Stress stage: stresses at the nodes of each element to NAME.NSR and NAME.NSL.

#include "elements/hybrid_plate.hpp"
#include "elements/polynomial_plate.hpp"
#include "elements/table_plate.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "results/line_stress.hpp"
#include "results/membrane_stress.hpp"
#include "results/plate_stress.hpp"
#include "results/stress_record.hpp"
#include "results/stress_support.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

constexpr int MostMaterials = 100;
constexpr int LastTypeRow = 20;  // of ELTYP.DAT

/// What the elements of a load case share.
struct StressPass {
  Run& run;
  ItemReader& dat;
  StressFiles& files;
  const Column& rotations;  // angle of an element record's output axes, in radians
  PlateTable& plateTable;
  int loadCase;

  int NodeCount() const { return run.sizes.NodeCount; }
  Vector3 Translation(int node) const { return run.displacements.Translation(loadCase, node); }
  Vector3 Rotation(int node) const { return run.displacements.Rotation(loadCase, node); }
  void RequireTranslations() const { run.displacements.Require(run.displacements.isSpatial ? 3 : 2); }
  /// Cosine and sine of the angle of a record's output axes.
  Turn TurnOf(int record) const {
    if (record > rotations.Size()) {
      throw Failure(error::SubscriptOutOfRange, dat.Describe("element record") + ": there are more than " +
                                                    std::to_string(rotations.Size()) + " of them");
    }
    return TurnBy(rotations(record));
  }
};

/// The displacements of an element's nodes along its in-plane axes: u1, v1, u2, v2 and so on.
template <std::size_t Nodes>
auto InPlaneDisplacements(const StressPass& pass, const std::array<int, Nodes>& nodes, const Vector3& ex,
                          const Vector3& ey) {
  pass.RequireTranslations();
  Row<double, 2 * Nodes> g;
  int position = 0;
  for (const int node : nodes) {
    const Vector3 motion = pass.Translation(node);
    g(++position) = Dot(motion, ex);
    g(++position) = Dot(motion, ey);
  }
  return g;
}

/// The displacements of a plate's nodes: w along the normal, then the rotations about the two in-plane axes.
Row<double, 12> PlateDisplacements(const StressPass& pass, const QuadrilateralRecord& quad) {
  pass.run.displacements.Require(6);
  const Vector3 normal = Cross(quad.ex, quad.ey);
  Row<double, 12> g;
  int position = 0;
  for (const int node : quad.nodes) {
    const Vector3 rotation = pass.Rotation(node);
    g(++position) = Dot(pass.Translation(node), normal);
    g(++position) = Dot(rotation, quad.ex);
    g(++position) = Dot(rotation, quad.ey);
  }
  return g;
}

/// A bar, or a gap, which counts as a bar whether it is open or closed.
void BarStress(const StressPass& pass, int type, int record) {
  const LineRecord bar = ReadLineRecord(pass.dat, type, pass.NodeCount());
  const Material& m = LoadMaterial(pass.run.materials, bar.material);
  pass.RequireTranslations();
  const Vector3 change = pass.Translation(bar.nodes[1]) - pass.Translation(bar.nodes[0]);
  StressState stress;
  stress.x = AxialStress(m.E, Dot(change, bar.cosines), bar.length);
  const StressedElement element{record, bar.material, type, bar.cosines, {}, pass.TurnOf(record)};
  for (const int node : bar.nodes) pass.files.WriteStressRecord(element, node, stress);
}

void TriangleStress(const StressPass& pass, int type, int record) {
  const TriangleRecord triangle = ReadTriangleRecord(pass.dat, type, pass.NodeCount());
  const Material& m = LoadMaterial(pass.run.materials, triangle.material);
  const Row<double, 6> g = InPlaneDisplacements(pass, triangle.nodes, triangle.ex, triangle.ey);
  const Strain strain = TriangleStrain(TriangleSlopesOf(triangle), triangle.area, g);
  const PlaneStressState plane = StressOf(strain, m, PlaneStateOf(m));
  const StressedElement element{record, triangle.material, type, triangle.ex, triangle.ey, pass.TurnOf(record)};
  for (const int node : triangle.nodes) {
    pass.files.WriteStressRecord(element, node, {plane.x, plane.y, plane.xy, 0, 0});
  }
}

/// The field of a plate, from which its stress follows at each corner: the terms of its deflection, or the parameters
/// of its moments.
struct PlateField {
  Row<double, 12> terms;
  Row<double, 9> beta;
};

PlateField PlateFieldOf(const StressPass& pass, const QuadrilateralRecord& quad, const Material& m) {
  const double a = quad.map.a1, b = quad.map.b2;
  PlateField field;
  switch (quad.type) {
    case 8:
      field.terms = DeflectionTerms(PolynomialCoefficients(quad.map), PlateDisplacements(pass, quad));
      break;
    case 9:
    case 10: {
      pass.plateTable.loaded = false;  // a type 11 element that follows reads PLAT.ELM again
      const HybridShear shear = quad.type == 10 ? HybridShear::Included : HybridShear::None;
      field.beta = MomentParameters(HybridPlateOf(m, a, b, shear), PlateDisplacements(pass, quad));
      break;
    }
    case 11:
      LoadPlateTable(pass.run.programFolder, pass.plateTable);
      field.terms = DeflectionTerms(PlateTableCoefficients(pass.plateTable.P, a, b), PlateDisplacements(pass, quad));
      break;
    default:
      break;
  }
  return field;
}

BendingStress PlateStress(const QuadrilateralRecord& quad, const Material& m, double xi, double eta,
                          const PlateField& field) {
  switch (quad.type) {
    case 8:
      return DeflectionStress(m, quad.map, xi, eta, field.terms);
    case 9:
    case 10:
      return MomentStress(m.A, quad.map.a1, quad.map.b2, xi, eta, field.beta);
    case 11:
      return DeflectionStress(m, RectangleMap(quad.map), xi, eta, field.terms);
    default:
      return {};
  }
}

/// The membranes of the shells know plane stress alone.
PlaneStressState MembraneStress(const QuadrilateralRecord& quad, const Material& m, double xi, double eta,
                                const Row<double, 8>& g) {
  switch (quad.type) {
    case 4:
      return StressOf(QuadrilateralStrain(quad.map, xi, eta, g), m, PlaneStateOf(m));
    case 12:
      return StressOf(QuadrilateralStrain(RectangleMap(quad.map), xi, eta, g), m, PlaneStateOf(m));
    case 8:
      return StressOf(QuadrilateralStrain(quad.map, xi, eta, g), m, PlaneState::Stress);
    case 11:
      return StressOf(QuadrilateralStrain(RectangleMap(quad.map), xi, eta, g), m, PlaneState::Stress);
    default:  // 5, 9, 10
      return IncompatibleStress(m, quad.map.a1, quad.map.b2, xi, eta, g);
  }
}

/// A four-node element, corner by corner: the stress is asked at the nodes and not carried there from within.
void QuadrilateralStress(const StressPass& pass, int type, int record) {
  const QuadrilateralRecord quad = ReadQuadrilateralRecord(pass.dat, type, pass.NodeCount());
  const Material& m = LoadMaterial(pass.run.materials, quad.material);
  const StressedElement element{record, quad.material, type, quad.ex, quad.ey, pass.TurnOf(record)};
  if (type == 6) {  // nothing is computed for it
    for (const int node : quad.nodes) pass.files.WriteStressRecord(element, node, {});
    return;
  }
  const PlateField field = PlateFieldOf(pass, quad, m);
  const Row<double, 8> g = InPlaneDisplacements(pass, quad.nodes, quad.ex, quad.ey);
  for (std::size_t k = 1; k <= 4; ++k) {
    const double xi = CornerS[k], eta = CornerT[k];
    const BendingStress bending = PlateStress(quad, m, xi, eta, field);
    const PlaneStressState plane = MembraneStress(quad, m, xi, eta, g);
    pass.files.WriteStressRecord(element, quad.nodes[k - 1], {plane.x, plane.y, plane.xy, bending.x, bending.y});
  }
}

/// Reads the rest of an element record and writes its stresses. A new family is one line here.
void WriteElementStress(const StressPass& pass, int type, int record) {
  switch (type) {
    case 1:
    case 14:
      return BarStress(pass, type, record);
    case 2:
    case 3:
    case 13:
      return TriangleStress(pass, type, record);
    case 4:
    case 5:
    case 6:
    case 8:
    case 9:
    case 10:
    case 11:
    case 12:
      return QuadrilateralStress(pass, type, record);
    default:
      return PassRecord(pass.dat, type, pass.NodeCount());
  }
}

/// One angle for each element record.
Column ReadRotations(const Run& run) {
  ItemReader rot(run.File(".rot"));
  rot.ExpectItems(run.sizes.ElementCount, 1, "angles of output axes");
  Column rotations(run.sizes.ElementCount);
  for (int record = 1; record <= run.sizes.ElementCount; ++record)
    rotations(record) = rot.Number("angle of output axes");
  return rotations;
}

void WriteNodalStresses(Run& run) {
  TakeControlFile(run);
  ReadElementTypes(run.programFolder, LastTypeRow);
  run.materials = ReadMaterials(run.File(".MLT"), MostMaterials, MaterialPart::Fields);
  if (!run.displacements.isRead) ReadDisplacements(run);
  StressFiles files(run.File(".NSR"), run.File(".NSL"));
  std::optional<ItemReader> file;
  Column rotations;
  PlateTable plateTable;
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    ItemReader& dat = BeginLoadCase(run, file);
    if (c == 1) rotations = ReadRotations(run);
    const StressPass pass{run, dat, files, rotations, plateTable, c};
    ForEachElementRecord(run, dat, run.nsa.Label7,
                         [&](int record, int type) { WriteElementStress(pass, type, record); });
    files.EndLoadCase();
  }
  files.Close();
}

}  // namespace

void RunNodalStressStage(Run& run) {
  BeginStressStage(run, "Nodal Stress 2.1");
  if (const auto failure = Attempt([&] { WriteNodalStresses(run); })) EndStressRun(run, *failure);
}

}  // namespace velmor
