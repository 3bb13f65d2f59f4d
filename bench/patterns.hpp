#pragma once

#include <vector>

#include "elements/band_matrix.hpp"

namespace velmor::bench {

/// A band as it is before the elimination: in each row the entries from the diagonal up to the row's height. Entries
/// beside the diagonal are random from -1 to 1, the same at every call; the diagonal outweighs them.
struct Pattern {
  int equations, width;
  std::vector<std::vector<double>> rows;
};

/// Rows of full height without a zero.
Pattern Full(int equations, int width);

/// Heights uniformly spread from 5 to 100 percent of the width.
Pattern Ragged(int equations, int width);

/// A tower with two setbacks: the rows' height falls to two thirds and to one third of the width.
Pattern Setbacks(int equations, int width);

/// The frame of a building with six freedoms a node: beams in two directions on each floor, columns between floors,
/// nodes numbered floor by floor.
Pattern Frame(int nodesAcross, int nodesAlong, int floors);

/// A square plate in a plane with six freedoms a node, numbered line by line: membrane, bending and drilling freedoms
/// do not meet.
Pattern Plate(int elements);

/// Sets a band of these bounds to the pattern, whatever it held.
void Restore(const Pattern& pattern, BandMatrix& K);

/// The same for a new band, entry by entry as an assembly goes.
BandMatrix Assembled(const Pattern& pattern);

}  // namespace velmor::bench
