#pragma once

#include "base/table.hpp"
#include "elements/table_plate.hpp"

namespace velmor {

/// Work arrays through which every element reaches the band; one record long.
struct ElementWork {
  Table<12, 12> ElementStiffness;  // in local axes, at most 12 local freedoms
  Table<24, 24> ElementBlock;      // in global axes: four nodes of six freedoms at the most
  Table<6, 6> ElementAxes;         // row: nodal freedom of the model; column: local freedom of a node
  Row<int, 24> EquationMap;        // position in ElementBlock to equation
  Row<int, 4> ElementNodes;
  PlateTable plateTable;  // PLAT.ELM, read by the first type 11 element of the stage
};

}  // namespace velmor
