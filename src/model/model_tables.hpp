#pragma once

#include <array>
#include <string>

#include "base/table.hpp"
#include "base/vector3.hpp"

namespace velmor {

inline constexpr int MostNodesInElement = 4;

/// ELTYP.DAT: name and node count of each element type; the row number is the type.
struct ElementTypeTable {
  static constexpr int LastRow = 25;
  int rows = 0;  // rows in use, from row 0
  std::array<std::string, LastRow + 1> name;
  std::array<int, LastRow + 1> nodeCount{};
};

/// The model of NAME.TEK, filled by the Kol stage and kept for the run. Nodes and elements count from 1 in the
/// order of the file.
struct ModelTables {
  int nodeCount = 0;
  int elementCount = 0;           // elements of NAME.TEK, not records of NAME.DAT
  Grid nodeCoordinates;           // 0..N, 0..3: columns 1, 2, 3 are x, y, z
  GridOf<int> elements;           // 0..E, 0..4: column 0 type, columns 1..4 node numbers
  ColumnOf<int> elementMaterial;  // 0..E
  Column elementState;            // 0..element records: factor of a gap's stiffness, 1 at the start
  Column rotations;  // 0..E, radians: angle of a four-node element's load axes, 0: NAME.rot turns stresses alone
  ElementTypeTable types;

  Vector3 Node(int n) const { return {nodeCoordinates(n, 1), nodeCoordinates(n, 2), nodeCoordinates(n, 3)}; }
  Vector3 NodeOfElement(int e, int position) const { return Node(elements(e, position)); }
  /// State of an element record; 1 where none was ever set.
  double State(int record) const { return record <= elementState.Size() ? elementState(record) : 1; }
};

}  // namespace velmor
