#pragma once

#include <array>
#include <string>

#include "base/item_writer.hpp"
#include "base/vector3.hpp"

namespace velmor {

/// Stresses at a node of an element along its local axes e1, e2: in its plane, and by bending at the outer surface.
struct StressState {
  double x = 0, y = 0, xy = 0;
  double bendingX = 0, bendingY = 0;
};

/// Items 5 to 13 of a stress record: six components in the plane, then three columns of bending stress.
using StressColumns = std::array<double, 9>;

/// The in-plane stress as a tensor in global axes, sx e1 e1' + sy e2 e2' + sxy (e1 e2' + e2 e1'): xx, yy, zz, xy, xz,
/// yz; then the bending columns Y, X, Z, which leave the twisting stress out and are no tensor components:
///
///     bX = bx l1^2 - by l2 m1,  bY = by m2^2 - bx m1 l2,  bZ = bx e3x^2 + by e3y^2
///
/// with e1 = (l1, m1, n1), e2 = (l2, m2, n2) and e3 = e1 x e2.
StressColumns GlobalColumns(const StressState& stress, const Vector3& e1, const Vector3& e2);

/// An angle in radians by its cosine and sine.
struct Turn {
  double c = 1, s = 0;
};
Turn TurnBy(double angle);

/// The stresses along axes turned within the element, (c, -s) and (s, c) in e1, e2: first, second, 0, shear, 0, 0; then
/// the bending columns second, first, 0, without the twisting stress.
StressColumns TurnedColumns(const StressState& stress, const Turn& turn);

/// The element whose stresses are written: items 1, 3 and 4 of its records, its axes and those of its output.
struct StressedElement {
  int record = 0;
  int material = 0;
  int type = 0;
  Vector3 e1, e2;
  Turn turn;
};

/// NAME.NSR with the stresses in global axes and NAME.NSL with those in turned axes, being written: seventeen items for
/// each node of an element, and "END" behind each load case.
class StressFiles {
 public:
  /// What has been written stays on disk if the stage fails.
  StressFiles(const std::string& globalPath, const std::string& turnedPath)
      : global_(globalPath, Unfinished::Keep), turned_(turnedPath, Unfinished::Keep) {}

  void WriteStressRecord(const StressedElement& element, int node, const StressState& stress);
  void EndLoadCase();
  void Close();

 private:
  ItemWriter global_, turned_;
};

}  // namespace velmor
