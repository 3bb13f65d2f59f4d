// The Mass stage: lumped masses of all element records to MassVector, NAME.MAS and NAME.EMS.

#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "base/item_writer.hpp"
#include "dynamics/lumped_mass.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

/// Equal shares of a mass at the nodes of an element, and the whole of it at the element's centre.
template <std::size_t Nodes>
void AddElementMass(Run& run, MaterialMass& byMaterial, double m, const std::array<int, Nodes>& nodes, int material,
                    const Vector3& centre) {
  for (int node : nodes) AddNodeMass(run.MassVector, run.sizes, run.analysisCode, m, node);
  AddMaterialMass(byMaterial, material, static_cast<double>(Nodes) * m, centre);
}

void AddLineMass(Run& run, ItemReader& dat, int type, MaterialMass& byMaterial) {
  const LineRecord record = ReadLineRecord(dat, type, run.sizes.NodeCount);
  const Material& material = LoadMaterial(run.materials, record.material);
  const double m = material.A * record.length * material.density / 2;
  AddElementMass(run, byMaterial, m, record.nodes, record.material, record.centre);
  if (type != BeamType) return;
  const double rotary = record.length * record.length * m / 24;
  for (int node : record.nodes) {
    if (run.analysisCode == 2) AddRotaryMass(run.MassVector, run.sizes, rotary, node, 3);
    for (int k = 4; run.analysisCode == 3 && k <= 6; ++k) AddRotaryMass(run.MassVector, run.sizes, rotary, node, k);
  }
}

void AddTriangleMass(Run& run, ItemReader& dat, int type, MaterialMass& byMaterial) {
  if (type == TrimsType) run.display.MessageBox("TRIMS ELEMENT IS NOT SUPPORTED");
  const TriangleRecord record = ReadTriangleRecord(dat, type, run.sizes.NodeCount);
  const Material& material = LoadMaterial(run.materials, record.material);
  double m = material.A * record.area * material.density / 3;
  if (type == DoubleTriangleType) m /= 2;
  AddElementMass(run, byMaterial, m, record.nodes, record.material, record.centre);
}

void AddQuadrilateralMass(Run& run, ItemReader& dat, int type, MaterialMass& byMaterial) {
  const QuadrilateralRecord record = ReadQuadrilateralRecord(dat, type, run.sizes.NodeCount);
  const Material& material = LoadMaterial(run.materials, record.material);
  const double m = material.A * material.density * 4 * record.map.a1 * record.map.b2 / 4;
  AddElementMass(run, byMaterial, m, record.nodes, record.material, record.centre);
}

void AddRecordMass(Run& run, ItemReader& dat, MaterialMass& byMaterial) {
  const int type = dat.Whole("element type");
  switch (RecordFormOf(type)) {
    case RecordForm::Line:
      return AddLineMass(run, dat, type, byMaterial);
    case RecordForm::Triangle:
      return AddTriangleMass(run, dat, type, byMaterial);
    case RecordForm::Quadrilateral:
      return AddQuadrilateralMass(run, dat, type, byMaterial);
    case RecordForm::Spring:
    case RecordForm::None:
      return PassRecord(dat, type, run.sizes.NodeCount);
  }
}

/// Nodal masses, then per freedom the sum of the masses, of mass times coordinate, and their quotient.
void WriteNodeMasses(const Run& run) {
  const ModelSizes& sizes = run.sizes;
  ItemWriter file(run.File(".MAS"));
  Row<double, 6> DirectionMass, DirectionMoment;
  for (int n = 1; n <= sizes.NodeCount; ++n) {
    for (int k = 1; k <= sizes.DofPerNode; ++k) {
      const double m = run.MassVector(sizes.Equation(n, k));
      file.Item(m);
      DirectionMass(k) += m;
      if (k <= 3) DirectionMoment(k) += m * run.model.nodeCoordinates(n, k);
    }
    file.EndLine();
  }
  for (int k = 1; k <= sizes.DofPerNode; ++k) {
    const double mass = DirectionMass(k);
    if (mass == 0) {
      file.Line(0, 0, 0);
    } else {
      file.Line(mass, DirectionMoment(k), DirectionMoment(k) / mass);
    }
  }
  file.Close();
}

/// One digit, a point, two decimals, E, a sign and at least two digits of exponent: 7.85E+03.
std::string Scientific(double value) {
  if (!std::isfinite(value)) throw Failure(error::Overflow, "a mass is no finite number");
  std::array<char, 32> text;
  const int length = std::snprintf(text.data(), text.size(), "%.2E", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

void WriteMaterialMasses(const Run& run, const MaterialMass& byMaterial) {
  ItemWriter file(run.File(".EMS"));
  for (int m = 1; m <= run.materials.Count(); ++m) {
    file.Item(m);
    for (int column = 0; column <= 6; ++column) file.Item(Scientific(byMaterial(m, column)));
    file.EndLine();
  }
  file.Close();
}

void GenerateMasses(Run& run) {
  TakeControlFile(run);
  ItemReader dat = OpenElementRecords(run);
  ShowMatrixSize(run, run.sizes.EquationCount());
  run.MassVector = Column(run.sizes.EquationBound());
  run.materials = ReadMaterials(run.File(".MLT"), run.modelSizeValues.MaterialLimit(), MaterialPart::Fields);
  MaterialMass byMaterial(run.materials.Count(), 6);

  ShowStatus(run, "Generating Mass Matrix ");
  for (int record = 1; record <= run.sizes.ElementCount; ++record) {
    run.form2.Label8.caption = Percent(record, run.sizes.ElementCount);
    run.display.Refresh(run.form2);
    AddRecordMass(run, dat, byMaterial);
  }

  ShowStatus(run, "Saving");
  WriteNodeMasses(run);
  WriteMaterialMasses(run, byMaterial);
}

}  // namespace

void RunMassStage(Run& run) {
  BeginStage(run, "Mass 1.0");
  if (const auto failure = Attempt([&] { GenerateMasses(run); })) EndAfterFailure(run, *failure);
}

}  // namespace velmor
