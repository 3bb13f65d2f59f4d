#pragma once

#include <array>
#include <source_location>

#include "base/item_reader.hpp"
#include "base/item_writer.hpp"
#include "base/vector3.hpp"
#include "model/element_geometry.hpp"
#include "model/model_sizes.hpp"

namespace velmor {

// NAME.DAT: the head of three numbers, then the element records in element order. The first item of a record is
// the element type, the last line the centre. Each record stands here with its writer and its reader; a reader
// takes up behind the type and fails with error 9 for a node outside 1..NodeCount.

/// Line elements (types 1, 7, 14, 17): direction cosines from node 1 to node 2 and length.
struct LineRecord {
  int type = 0;
  std::array<int, 2> nodes{};
  Vector3 cosines;
  double length = 0;
  int material = 0;
  Vector3 centre;
};

/// Triangles (types 2, 3; four of them for a type 13): coordinate differences in the local axes ex, ey.
struct TriangleRecord {
  int type = 0;
  std::array<int, 3> nodes{};
  double x12 = 0, x13 = 0, x23 = 0, y12 = 0, y13 = 0, y23 = 0;
  Vector3 ex, ey;
  double area = 0;
  int material = 0;
  Vector3 centre;
};

/// Four-node elements (types 4 to 6 and 8 to 12): in-plane axes and mapping terms.
struct QuadrilateralRecord {
  int type = 0;
  std::array<int, 4> nodes{};
  Vector3 ex, ey;
  int material = 0;
  MappingTerms map;
  Vector3 centre;
};

/// Nodal springs (type 16).
struct SpringRecord {
  int type = 0;
  int node = 0;
  int material = 0;
  Vector3 centre;  // the node itself
};

void Write(ItemWriter& dat, const LineRecord& record);
void Write(ItemWriter& dat, const TriangleRecord& record);
void Write(ItemWriter& dat, const QuadrilateralRecord& record);
void Write(ItemWriter& dat, const SpringRecord& record);

LineRecord ReadLineRecord(ItemReader& dat, int type, int nodeCount,
                          std::source_location where = std::source_location::current());
TriangleRecord ReadTriangleRecord(ItemReader& dat, int type, int nodeCount,
                                  std::source_location where = std::source_location::current());
QuadrilateralRecord ReadQuadrilateralRecord(ItemReader& dat, int type, int nodeCount,
                                            std::source_location where = std::source_location::current());
SpringRecord ReadSpringRecord(ItemReader& dat, int type, int nodeCount,
                              std::source_location where = std::source_location::current());

/// Reads a record of any type that is not needed, by its form; failure 9 for a type without a form.
void PassRecord(ItemReader& dat, int type, int nodeCount, std::source_location where = std::source_location::current());

void WriteModelSizes(ItemWriter& dat, const ModelSizes& sizes);

/// Reads the head of NAME.DAT. `modelNodes` is the node count of NAME.TEK. Failure 9 if the head belongs to another
/// model: another node count, or a half bandwidth that is not a multiple of dofPerNode within the model.
ModelSizes ReadModelSizes(ItemReader& dat, int dofPerNode, int modelNodes,
                          std::source_location where = std::source_location::current());

}  // namespace velmor
