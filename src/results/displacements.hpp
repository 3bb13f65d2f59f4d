#pragma once

#include <source_location>

#include "base/item_reader.hpp"
#include "base/table.hpp"
#include "base/vector3.hpp"

namespace velmor {

struct Run;

/// NAME.RVP open for reading: its head is the node count and the analysis code; then come, for each load case, the
/// displacements of node after node in the order of the equations, and the string "END".
class DisplacementFile {
 public:
  /// Reads the head. Failure 53 or 75 if the file cannot be opened, 9 if it belongs to another model: another node
  /// count than NAME.TEK's or another analysis code than the run's.
  explicit DisplacementFile(const Run& run, std::source_location where = std::source_location::current());

  /// Displacements in a load case: NodeCount times DofPerNode.
  int CaseLength() const { return caseLength_; }
  /// Failure 62 if the file is too short for this many load cases.
  void ExpectCases(int count, std::source_location where = std::source_location::current()) const;
  /// Reads the next load case with its "END" into `to`(1..CaseLength), the order of the equations. Failure 62 or 13
  /// if the file ends or holds anything else.
  void ReadCase(double* to, std::source_location where = std::source_location::current());

 private:
  ItemReader file_;
  int caseLength_;
};

/// Displacements of all load cases. Read once per run by the first stress stage that needs them; empty before, and as
/// long as a reading fails.
struct DisplacementTable {
  bool isRead = false;
  int nodeCount = 0;
  int DofPerNode = 0;
  bool isSpatial = false;  // nodes move in z as well
  Grid values;             // load case by equation

  /// Displacement of node n along freedom k in load case c.
  double operator()(int c, int n, int k) const { return values(c, (n - 1) * DofPerNode + k); }
  Vector3 Translation(int c, int n) const {
    return {(*this)(c, n, 1), (*this)(c, n, 2), isSpatial ? (*this)(c, n, 3) : 0};
  }
  /// Rotations about x, y, z of an analysis in space with rotations.
  Vector3 Rotation(int c, int n) const { return {(*this)(c, n, 4), (*this)(c, n, 5), (*this)(c, n, 6)}; }

  /// Failure 9 if the table is empty or its nodes have fewer freedoms than that.
  void Require(int freedoms, std::source_location where = std::source_location::current()) const;
};

/// Fills run.displacements from NAME.RVP for all load cases of the run. A file that cannot be opened gives the message
/// "Displacements not found" and leaves the table empty; other failures as in DisplacementFile.
void ReadDisplacements(Run& run, std::source_location where = std::source_location::current());

}  // namespace velmor
