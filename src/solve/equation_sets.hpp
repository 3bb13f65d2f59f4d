#pragma once

#include <vector>

#include "base/table.hpp"
#include "elements/band_matrix.hpp"

namespace velmor {

/// Equations of a band that no entry links with any other equation, so that no fill-in ever will either.
struct EquationSet {
  ColumnOf<int> member;  // its equations, ascending; 1..Count()
  int width = 0;         // members that a row of the band has room for, at most, from its own on

  int Count() const { return member.Size(); }
  /// How many members there are up to this equation.
  int Rank(int equation) const;
};

struct EquationSets {
  /// No more are taken apart: the elimination keeps two equations' numbers in one Double, exactly.
  static constexpr int MostEquations = 1 << 26;

  std::vector<EquationSet> sets;
  std::vector<int> loose;  // the equations without any link, which stand in no set; ascending
};

/// The sets into which the first `equations` rows of K fall, if to eliminate them one by one, each as a narrower band
/// of its own, saves more than half of the operations; otherwise none. A flat plate is the case in point: its membrane,
/// bending and drilling freedoms do not meet. Small sets may be united.
///
/// Reads the band up to its heights once. It stops early where a stretch of rows hangs together, as those of a frame,
/// a shell or a full band soon do, and takes no narrow band apart.
EquationSets SeparateSets(const BandMatrix& K, int equations);

}  // namespace velmor
