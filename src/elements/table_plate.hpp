#pragma once

#include <source_location>
#include <string>

#include "base/table.hpp"
#include "elements/materials.hpp"

namespace velmor {

// Type 11: plate of a rectangle with half sides a, b whose deflection has the twelve terms of polynomial_plate.hpp. The
// way from the node freedoms to the terms is the file PLAT.ELM, the energy of the terms a closed formula.
// Source: Melosh, Basis for derivation of matrices for the direct stiffness method, AIAA Journal 1, 1963; Zienkiewicz,
// The Finite Element Method, 3rd ed., section 10.5.

/// PLAT.ELM as one stage holds it: the table and whether it has been read.
struct PlateTable {
  /// Coefficient of term `row` in the shape function of freedom `column` on the square of half side 1, times 8.
  /// The freedoms of node i, 3i - 2 to 3i, are w, dw/deta and, in the table that is delivered, -dw/dxi.
  Table<12, 12> P;
  bool loaded = false;
};

/// Reads PLAT.ELM of the program folder into the table, unless it is loaded, and marks it so: 144 numbers, row by row;
/// what follows is not read. Failure 53 or 75 (Cause::NoPlateTable) if it cannot be opened, 62 if it is too short, 13
/// for an item that is no number.
void LoadPlateTable(const std::string& programFolder, PlateTable& table,
                    std::source_location where = std::source_location::current());

/// Scale from local freedom 1..12 to the table's freedom on the square of half side 1: 1, b, a for each node.
double PlateTableScale(int freedom, double a, double b);

/// K, order 12, upper triangle, from the numbers of PLAT.ELM. Thickness is field 4. Failure 11 for a Poisson's ratio of
/// 1 or -1.
Table<12, 12> TablePlateStiffness(const Material& material, double a, double b, const Table<12, 12>& P);

}  // namespace velmor
