#pragma once

namespace velmor {

struct Run;

/// A uniform load on an element: direction 1, 2 or 3 along its local x, y, z, value per length or area.
struct ElementLoad {
  int element = 0;
  double direction = 0;  // any value but 1, 2, 3 adds nothing
  double value = 0;
};

/// Adds an element load to the row of a load case in LoadTable: half of the load of a line element to each end, with
/// the end moments q L^2 / 12 of a beam in the sense of the support's answer; a third of a triangle's load to each
/// corner; the bilinear shape functions' share of a quadrilateral's load to each corner, forces only. A type of 0 or
/// below, 16 and 17 take no load. Returns whether there was anything to add. Failure 9 for an element, load case or
/// material outside the tables, 11 for an element of no length or area.
bool AddElementLoad(Run& run, int loadCase, const ElementLoad& load);

}  // namespace velmor
