#pragma once

#include <source_location>
#include <string>

#include "model/model_tables.hpp"

namespace velmor {

/// Forms of record that an element type has in NAME.DAT.
enum class RecordForm { None, Line, Triangle, Quadrilateral, Spring };

/// Form of the record of an element type: lines 1, 7, 14, 17; triangles 2, 3, 13; quadrilaterals 4 to 6 and
/// 8 to 12; nodal spring 16. None for any other code.
///
/// A new type stands here, which gives it a record, masses, loads and reactions; in DispatchElement of the EEM stage
/// with its stiffness, a file of its own in src/elements/; in ELTYP.DAT; in the line or the nodal stress stage if it
/// has stresses; and in the tables of elements of the user's pages.
constexpr RecordForm RecordFormOf(int type) {
  switch (type) {
    case 1:
    case 7:
    case 14:
    case 17:
      return RecordForm::Line;
    case 2:
    case 3:
    case 13:
      return RecordForm::Triangle;
    case 4:
    case 5:
    case 6:
    case 8:
    case 9:
    case 10:
    case 11:
    case 12:
      return RecordForm::Quadrilateral;
    case 16:
      return RecordForm::Spring;
    default:
      return RecordForm::None;
  }
}

/// True for the shells: a plate, a membrane and the drilling stiffness, with rotations at their nodes.
constexpr bool IsPlate(int type) { return type == 6 || (8 <= type && type <= 11); }

/// Types that a stage treats in a way of their own.
inline constexpr int BarType = 1;
inline constexpr int TrimsType = 3;  // announced as unsupported, then a triangle like type 2
inline constexpr int BeamType = 7;
inline constexpr int GapType = 14;
inline constexpr int TransverseBarType = 17;
inline constexpr int DoubleTriangleType = 13;  // a quadrilateral made of four triangles
inline constexpr int SuperElementType = 100;

/// Nodes that the record of a type refers to.
constexpr int NodesOfRecord(int type) {
  switch (RecordFormOf(type)) {
    case RecordForm::Line:
      return 2;
    case RecordForm::Triangle:
      return type == DoubleTriangleType ? 4 : 3;
    case RecordForm::Quadrilateral:
      return 4;
    case RecordForm::Spring:
      return 1;
    case RecordForm::None:
      break;
  }
  return 0;
}

/// Reads ELTYP.DAT: the number of rows, then a name and a node count for each row from 0. Failure 53 if it is
/// missing, 9 for a row beyond `lastRow` or a node count outside 0..4.
ElementTypeTable ReadElementTypes(const std::string& programFolder, int lastRow = ElementTypeTable::LastRow,
                                  std::source_location where = std::source_location::current());

/// Nodes that a type has in NAME.TEK: 2 for a type of 0 or below, else by its row. Failure 9 without a row.
int NodeCountOf(const ElementTypeTable& types, int type, std::source_location where = std::source_location::current());

}  // namespace velmor
