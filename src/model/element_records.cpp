#include "model/element_records.hpp"

#include <limits>
#include <string>

#include "base/failure.hpp"
#include "model/element_types.hpp"

namespace velmor {
namespace {

void WriteVector(ItemWriter& dat, const Vector3& v) {
  dat.Item(v.x);
  dat.Item(v.y);
  dat.Item(v.z);
}

void WriteCentre(ItemWriter& dat, const Vector3& centre) {
  WriteVector(dat, centre);
  dat.EndLine();
}

/// Reads the items of one record at the place of the caller.
struct RecordReader {
  ItemReader& dat;
  int nodeCount;
  std::source_location where;

  double Number(std::string_view item) { return dat.Number(item, where); }
  int Node() { return dat.Index("node of an element record", nodeCount, where); }
  int Material() { return dat.Whole("material of an element record", where); }
  Vector3 Vector(std::string_view item) {
    const double x = Number(item), y = Number(item), z = Number(item);
    return {x, y, z};
  }
  Vector3 Axis() { return Vector("axis of an element record"); }
  Vector3 Centre() { return Vector("centre of an element record"); }
};

}  // namespace

void Write(ItemWriter& dat, const LineRecord& record) {
  dat.Item(record.type);
  for (int node : record.nodes) dat.Item(node);
  WriteVector(dat, record.cosines);
  dat.Line(record.length, record.material);
  WriteCentre(dat, record.centre);
}

void Write(ItemWriter& dat, const TriangleRecord& record) {
  dat.Item(record.type);
  for (int node : record.nodes) dat.Item(node);
  dat.Line(record.x12, record.x13, record.x23, record.y12, record.y13, record.y23);
  WriteVector(dat, record.ex);
  WriteVector(dat, record.ey);
  dat.Line(record.area, record.material);
  WriteCentre(dat, record.centre);
}

void Write(ItemWriter& dat, const QuadrilateralRecord& record) {
  dat.Item(record.type);
  for (int node : record.nodes) dat.Item(node);
  WriteVector(dat, record.ex);
  WriteVector(dat, record.ey);
  dat.Line(record.material);
  dat.Line(record.map.a1, record.map.a2, record.map.a3, record.map.b1, record.map.b2, record.map.b3);
  WriteCentre(dat, record.centre);
}

void Write(ItemWriter& dat, const SpringRecord& record) {
  dat.Line(record.type, record.node, record.material);
  WriteCentre(dat, record.centre);
}

LineRecord ReadLineRecord(ItemReader& dat, int type, int nodeCount, std::source_location where) {
  RecordReader read{dat, nodeCount, where};
  LineRecord record;
  record.type = type;
  for (int& node : record.nodes) node = read.Node();
  record.cosines = read.Axis();
  record.length = read.Number("length of an element record");
  record.material = read.Material();
  record.centre = read.Centre();
  return record;
}

TriangleRecord ReadTriangleRecord(ItemReader& dat, int type, int nodeCount, std::source_location where) {
  RecordReader read{dat, nodeCount, where};
  TriangleRecord record;
  record.type = type;
  for (int& node : record.nodes) node = read.Node();
  for (double* difference : {&record.x12, &record.x13, &record.x23, &record.y12, &record.y13, &record.y23}) {
    *difference = read.Number("coordinate difference of an element record");
  }
  record.ex = read.Axis();
  record.ey = read.Axis();
  record.area = read.Number("area of an element record");
  record.material = read.Material();
  record.centre = read.Centre();
  return record;
}

QuadrilateralRecord ReadQuadrilateralRecord(ItemReader& dat, int type, int nodeCount, std::source_location where) {
  RecordReader read{dat, nodeCount, where};
  QuadrilateralRecord record;
  record.type = type;
  for (int& node : record.nodes) node = read.Node();
  record.ex = read.Axis();
  record.ey = read.Axis();
  record.material = read.Material();
  MappingTerms& map = record.map;
  for (double* term : {&map.a1, &map.a2, &map.a3, &map.b1, &map.b2, &map.b3}) {
    *term = read.Number("mapping term of an element record");
  }
  record.centre = read.Centre();
  return record;
}

SpringRecord ReadSpringRecord(ItemReader& dat, int type, int nodeCount, std::source_location where) {
  RecordReader read{dat, nodeCount, where};
  SpringRecord record;
  record.type = type;
  record.node = read.Node();
  record.material = read.Material();
  record.centre = read.Centre();
  return record;
}

void PassRecord(ItemReader& dat, int type, int nodeCount, std::source_location where) {
  switch (RecordFormOf(type)) {
    case RecordForm::Line:
      ReadLineRecord(dat, type, nodeCount, where);
      break;
    case RecordForm::Triangle:
      ReadTriangleRecord(dat, type, nodeCount, where);
      break;
    case RecordForm::Quadrilateral:
      ReadQuadrilateralRecord(dat, type, nodeCount, where);
      break;
    case RecordForm::Spring:
      ReadSpringRecord(dat, type, nodeCount, where);
      break;
    case RecordForm::None:
      throw Failure(error::SubscriptOutOfRange,
                    dat.Describe("element type") + " " + std::to_string(type) + " is unknown", where);
  }
}

void WriteModelSizes(ItemWriter& dat, const ModelSizes& sizes) {
  dat.Line(sizes.NodeCount);
  dat.Line(sizes.BandInput);
  dat.Line(sizes.ElementCount);
}

ModelSizes ReadModelSizes(ItemReader& dat, int dofPerNode, int modelNodes, std::source_location where) {
  ModelSizes sizes;
  sizes.DofPerNode = dofPerNode;
  sizes.NodeCount = dat.Count("node count", where);
  if (sizes.NodeCount != modelNodes) {
    throw Failure(error::SubscriptOutOfRange,
                  dat.Path() + " belongs to another model: it has " + std::to_string(sizes.NodeCount) +
                      " nodes, NAME.TEK has " + std::to_string(modelNodes),
                  where);
  }
  if ((1LL + sizes.NodeCount) * dofPerNode >= std::numeric_limits<int>::max()) {
    throw Failure(error::Overflow, dat.Path() + ": more equations than can be counted", where);
  }
  sizes.BandInput = dat.Count("half bandwidth", where);
  sizes.ElementCount = dat.Count("element record count", where);
  const int widest = sizes.NodeCount > 1 ? sizes.EquationCount() : dofPerNode;
  if (dofPerNode == 0 || sizes.BandInput % dofPerNode != 0 || sizes.BandInput < dofPerNode ||
      sizes.BandInput > widest) {
    throw Failure(error::SubscriptOutOfRange,
                  dat.Path() + ": a half bandwidth of " + std::to_string(sizes.BandInput) + " does not fit " +
                      std::to_string(sizes.NodeCount) + " nodes of " + std::to_string(dofPerNode) + " freedoms",
                  where);
  }
  return sizes;
}

}  // namespace velmor
