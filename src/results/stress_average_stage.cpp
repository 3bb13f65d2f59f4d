// The Nodal Stress Average stage: means of the stress records by material and node.

#include <string>

#include "base/item_writer.hpp"
#include "model/element_types.hpp"
#include "model/model_file.hpp"
#include "results/nodal_averages.hpp"
#include "results/stress_support.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

constexpr int LastTypeRow = 20;  // of ELTYP.DAT

int ReadMaterialCount(const Run& run) {
  ItemReader mlt(run.File(".MLT"));
  return mlt.Count("number of materials");
}

/// Element table and element materials of NAME.TEK, with the element types; the other tables stay empty. A super
/// element counts as an element without nodes.
ModelTables ReadElements(const Run& run) {
  ModelTables model;
  model.types = ReadElementTypes(run.programFolder, LastTypeRow);
  ItemReader tek(run.File(".TEK"));
  model.nodeCount = tek.Count("node count");
  model.elementCount = tek.Count("element count");
  tek.ExpectItems(model.nodeCount, 3, "nodes");
  tek.ExpectItems(model.elementCount, 2, "elements");
  model.elements = GridOf<int>(model.elementCount, MostNodesInElement);
  model.elementMaterial = ColumnOf<int>(model.elementCount);
  for (int n = 1; n <= model.nodeCount; ++n) tek.Skip(3, "node coordinate");
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0) = tek.Whole("element type");
    if (type == SuperElementType) {
      PassSuperElement(tek, model.nodeCount);
    } else {
      ReadElementNodes(tek, model, e);
    }
  }
  return model;
}

/// Adds up the records of the next load case of NAME.NSR or NAME.NSL.
void Collect(Run& run, ItemReader& records, NodalAverages& averages) {
  while (!records.PassText("END")) {
    records.Skip(1, "record number");
    const int node = records.Index("node of a stress record", averages.Nodes());
    const int material = records.Index("material of a stress record", averages.Materials());
    records.Skip(1, "type of a stress record");
    AveragedItems items;
    for (double& item : items) item = records.Number("stress");
    records.Number("stress");  // item 17 has no mean
    run.nsa.Label8.caption = std::to_string(material);
    run.nsa.Label9.caption = std::to_string(node);
    run.display.Refresh(run.nsa);
    averages.Add(material, node, items);
  }
}

void WriteMean(ItemWriter& file, int element, int node, int material, int type, const NodalAverages& averages) {
  for (const int item : {element, node, material, type}) file.Item(item);
  for (const double item : averages.Mean(material, node)) file.Item(item);
  file.Line(0);
}

void WriteByElement(ItemWriter& file, const ModelTables& model, const NodalAverages& averages) {
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0), material = model.elementMaterial(e);
    const int nodes = type == SuperElementType ? 0 : NodeCountOf(model.types, type);
    for (int j = 1; j <= nodes; ++j) {
      const int node = model.elements(e, j);
      if (material < 0 || material > averages.Materials() || node > averages.Nodes()) {
        throw Failure(error::SubscriptOutOfRange, "no averages for element " + std::to_string(e) + " of material " +
                                                      std::to_string(material) + " at node " + std::to_string(node));
      }
      WriteMean(file, e, node, material, type, averages);
    }
  }
  file.Line("END");
}

void WriteByMaterialAndNode(ItemWriter& file, const ModelTables& model, const NodalAverages& averages) {
  const int lastType = model.elementCount > 0 ? model.elements(model.elementCount, 0) : 0;
  for (int m = 1; m <= averages.Materials(); ++m) {
    for (int n = 1; n <= averages.Nodes(); ++n) WriteMean(file, 0, n, m, lastType, averages);
  }
  file.Line("END");
}

/// One file of stress records to its means by element and by material and node.
struct AveragedFile {
  const char* records;
  const char* byElement;
  const char* byMaterialAndNode;
};

void AverageFile(Run& run, const AveragedFile& names, const ModelTables& model, NodalAverages& averages) {
  ItemWriter byElement(run.File(names.byElement), Unfinished::Keep);
  ItemWriter byMaterialAndNode(run.File(names.byMaterialAndNode), Unfinished::Keep);
  ItemReader records(run.File(names.records));
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    averages.Clear();
    Collect(run, records, averages);
    WriteByElement(byElement, model, averages);
    WriteByMaterialAndNode(byMaterialAndNode, model, averages);
  }
  byElement.Close();
  byMaterialAndNode.Close();
}

/// The stresses of another model than that of NAME.TEK would leave zeros where elements have none.
void WarnOfAnotherModel(Run& run, const ModelTables& model) {
  int records = 0;
  for (int e = 1; e <= model.elementCount; ++e) {
    const int type = model.elements(e, 0);
    if (RecordFormOf(type) != RecordForm::None) records += type == DoubleTriangleType ? 4 : 1;
  }
  if (records == run.sizes.ElementCount) return;
  Warn(run, run.File(".TEK") + ": its elements make " + std::to_string(records) +
                " element records, the stresses come from " + std::to_string(run.sizes.ElementCount) +
                ": averages without a stress are 0");
}

void AverageStresses(Run& run) {
  TakeControlFile(run);
  const int materials = ReadMaterialCount(run);
  NodalAverages averages(materials, run.displacements.nodeCount);
  const ModelTables model = ReadElements(run);
  WarnOfAnotherModel(run, model);
  AverageFile(run, {".NSR", ".NSA", ".RSA"}, model, averages);
  AverageFile(run, {".NSL", ".NLA", ".RLA"}, model, averages);
}

}  // namespace

void RunStressAverageStage(Run& run) {
  BeginStressStage(run, "Nodal Stress Average 3.0");
  if (const auto failure = Attempt([&] { AverageStresses(run); })) EndStressRun(run, *failure);
}

}  // namespace velmor
