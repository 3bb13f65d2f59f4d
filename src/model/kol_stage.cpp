// The Kol stage: NAME.TEK to NAME.DAT.

#include <algorithm>
#include <cstdlib>
#include <string>

#include "base/file_system.hpp"
#include "base/item_reader.hpp"
#include "base/item_writer.hpp"
#include "model/element_geometry.hpp"
#include "model/element_records.hpp"
#include "model/element_types.hpp"
#include "model/model_file.hpp"
#include "run/failure_answer.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "run/stages.hpp"

namespace velmor {
namespace {

/// What reading the elements finds besides the tables.
struct ElementCensus {
  int records = 0;           // element records of NAME.DAT
  int widestDifference = 0;  // largest node number difference within one element
};

void DimensionTables(ItemReader& tek, ModelTables& model) {
  model.nodeCount = tek.Count("node count");
  model.elementCount = tek.Count("element count");
  tek.ExpectItems(model.nodeCount, 3, "nodes");
  tek.ExpectItems(model.elementCount, 2, "elements");
  model.nodeCoordinates = Grid(model.nodeCount, 3);
  model.elements = GridOf<int>(model.elementCount, MostNodesInElement);
  model.elementMaterial = ColumnOf<int>(model.elementCount);
  model.rotations = Column(model.elementCount);
}

void ReadNodes(ItemReader& tek, ModelTables& model) {
  for (int n = 1; n <= model.nodeCount; ++n) {
    for (int k = 1; k <= 3; ++k) model.nodeCoordinates(n, k) = tek.Number("node coordinate");
  }
}

/// Reads the rest of a super element's record, then refuses it.
[[noreturn]] void RefuseSuperElement(Run& run, ItemReader& tek, int e) {
  PassSuperElement(tek, run.model.nodeCount);
  run.display.MessageBox("SUPER ELEMENT IS NOT SUPPORTED");
  throw Failure(error::SubscriptOutOfRange, "element " + std::to_string(e) + " is a super element");
}

void ReadElement(Run& run, ItemReader& tek, int e, ElementCensus& census) {
  ModelTables& model = run.model;
  const int type = tek.Whole("element type");
  model.elements(e, 0) = type;
  if (type > 0) census.records += type == DoubleTriangleType ? 4 : 1;
  if (type == SuperElementType) RefuseSuperElement(run, tek, e);
  if (type > 0 && RecordFormOf(type) == RecordForm::None) {
    throw Failure(error::SubscriptOutOfRange, tek.Describe("element type ") + std::to_string(type) + " is unknown");
  }
  const int nodes = NodeCountOf(model.types, type);
  if (nodes < NodesOfRecord(type)) {
    throw Failure(error::SubscriptOutOfRange,
                  tek.Describe("element type ") + std::to_string(type) + " has too few nodes in ELTYP.DAT");
  }
  ReadElementNodes(tek, model, e);
  int lowest = model.nodeCount, highest = 0;
  for (int j = 1; j <= nodes; ++j) {
    lowest = std::min(lowest, model.elements(e, j));
    highest = std::max(highest, model.elements(e, j));
  }
  census.widestDifference = std::max(census.widestDifference, highest - lowest);
}

void WriteLine(const ModelTables& model, int e, ItemWriter& dat) {
  const LineGeometry line = LineGeometryOf(model.NodeOfElement(e, 1), model.NodeOfElement(e, 2));
  Write(dat, LineRecord{model.elements(e, 0),
                        {model.elements(e, 1), model.elements(e, 2)},
                        line.cosines,
                        line.length,
                        model.elementMaterial(e),
                        line.centre});
}

void WriteTriangle(const ModelTables& model, int e, const std::array<int, 3>& at, ItemWriter& dat) {
  const TriangleGeometry t =
      TriangleGeometryOf(model.NodeOfElement(e, at[0]), model.NodeOfElement(e, at[1]), model.NodeOfElement(e, at[2]));
  Write(dat, TriangleRecord{model.elements(e, 0),
                            {model.elements(e, at[0]), model.elements(e, at[1]), model.elements(e, at[2])},
                            t.x12,
                            t.x13,
                            t.x23,
                            t.y12,
                            t.y13,
                            t.y23,
                            t.axes.ex,
                            t.axes.ey,
                            t.area,
                            model.elementMaterial(e),
                            t.centre});
}

void WriteTriangles(const ModelTables& model, int e, ItemWriter& dat) {
  if (model.elements(e, 0) != DoubleTriangleType) return WriteTriangle(model, e, {1, 2, 3}, dat);
  for (const auto& positions : TrianglesOfQuadrilateral) WriteTriangle(model, e, positions, dat);
}

void WriteQuadrilateral(const ModelTables& model, int e, ItemWriter& dat) {
  const QuadrilateralGeometry quad = QuadrilateralGeometryOf(
      {model.NodeOfElement(e, 1), model.NodeOfElement(e, 2), model.NodeOfElement(e, 3), model.NodeOfElement(e, 4)},
      SecondDirection::MeanOfSides);
  Write(dat,
        QuadrilateralRecord{model.elements(e, 0),
                            {model.elements(e, 1), model.elements(e, 2), model.elements(e, 3), model.elements(e, 4)},
                            quad.axes.ex,
                            quad.axes.ey,
                            model.elementMaterial(e),
                            quad.map,
                            quad.centre});
}

void WriteSpring(const ModelTables& model, int e, ItemWriter& dat) {
  Write(dat,
        SpringRecord{model.elements(e, 0), model.elements(e, 1), model.elementMaterial(e), model.NodeOfElement(e, 1)});
}

void WriteElement(Run& run, int e, ItemWriter& dat) {
  const int type = run.model.elements(e, 0);
  if (type == GapType) run.gapFlag = true;
  switch (RecordFormOf(type)) {
    case RecordForm::Line:
      return WriteLine(run.model, e, dat);
    case RecordForm::Triangle:
      return WriteTriangles(run.model, e, dat);
    case RecordForm::Quadrilateral:
      return WriteQuadrilateral(run.model, e, dat);
    case RecordForm::Spring:
      return WriteSpring(run.model, e, dat);
    case RecordForm::None:
      return;  // passive: it counts for the bandwidth only
  }
}

/// A failure of the geometry, which knows no element, with the element's number.
Failure OfElement(const Run& run, int e, const Failure& failure) {
  Failure named(failure.number, run.File(".TEK") + ": element " + std::to_string(e) + ": " + failure.what());
  named.line = failure.line;
  return named;
}

void WriteElements(Run& run, ItemWriter& dat) {
  const int E = run.model.elementCount;
  for (int e = 1; e <= E; ++e) {
    run.form1.Label7.caption = Percent(e, E);
    run.form1.Text5.text = std::to_string(run.DofPerNode);
    run.display.Refresh(run.form1);
    try {
      WriteElement(run, e, dat);
    } catch (const Failure& failure) {
      if (failure.number != error::DivisionByZero) throw;
      throw OfElement(run, e, failure);
    }
  }
}

/// The model to NAME.DAT.
void PrepareModel(Run& run) {
  TakeControlFile(run);
  run.model.types = ReadElementTypes(run.programFolder);
  run.form1.Text4.text = run.modelName;
  run.display.Refresh(run.form1);
  ItemReader tek(run.File(".TEK"));
  DimensionTables(tek, run.model);
  if (!PreparesModel(run.flags)) return;

  run.form1.Frame1.caption = "Kol 2.1";
  HideFailure(run.form1);
  run.form1.Label6.caption = "Calculating Geometrical Element Properties";
  run.display.Refresh(run.form1);
  ReadNodes(tek, run.model);
  ElementCensus census;
  for (int e = 1; e <= run.model.elementCount; ++e) ReadElement(run, tek, e, census);
  run.model.elementState = Column(census.records, 1.0);

  ModelSizes sizes;
  sizes.NodeCount = run.model.nodeCount;
  sizes.ElementCount = census.records;
  const long long halfBandwidth = (1LL + census.widestDifference) * run.DofPerNode;
  if (halfBandwidth != static_cast<int>(halfBandwidth))
    throw Failure(error::Overflow, "the half bandwidth is too large");
  sizes.BandInput = static_cast<int>(halfBandwidth);
  ItemWriter dat(run.File(".DAT"));
  WriteModelSizes(dat, sizes);
  WriteElements(run, dat);
  dat.Close();
  WarnOfElements(run);
}

void ShowKolFailure(Run& run, const Failure& failure) {
  run.form1.Label2 = {"Error No.", true};
  run.form1.Label3 = {"Errorlijn", true};
  run.form1.Text2 = {std::to_string(failure.number), true};
  run.form1.Text3 = {std::to_string(failure.line), true};
  run.display.Refresh(run.form1);
  run.display.Explain(NoticeOf("Kol 2.1", failure));
}

}  // namespace

void RunKolStage(Run& run) {
  if (const auto failure = Attempt([&] { PrepareModel(run); })) {
    run.stopFlag = true;
    const bool notOpened = failure->number == error::FileNotFound || failure->number == error::PathAccessError;
    if (failure->cause == Cause::ControlFile && notOpened) return;
    ShowKolFailure(run, *failure);
    run.exitStatus = ExitStatusOf(*failure);
    return;
  }
  if (!PreparesModel(run.flags)) return;
  if (const auto unsupported = Attempt([&] { InputFile vpl(run.File(".VPL")); })) {
    run.display.MessageBox("NO CONSTRAINS DEFINED");
    run.display.Explain(NoticeOf("Kol 2.1", *unsupported));
    run.stopFlag = true;
    run.exitStatus = ExitStatusOf(*unsupported);
  }
}

}  // namespace velmor
