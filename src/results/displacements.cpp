#include "results/displacements.hpp"

#include <string>

#include "base/failure.hpp"
#include "model/model_sizes.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"

namespace velmor {

DisplacementFile::DisplacementFile(const Run& run, std::source_location where)
    : file_(run.File(".RVP"), where), caseLength_(run.model.nodeCount * run.DofPerNode) {
  const int nodes = file_.Whole("node count", where);
  const int code = file_.Whole("analysis code", where);
  if (nodes != run.model.nodeCount || code != run.analysisCode) {
    throw Failure(error::SubscriptOutOfRange,
                  file_.Path() + " belongs to another model: " + std::to_string(nodes) + " nodes and analysis code " +
                      std::to_string(code) + ", not " + std::to_string(run.model.nodeCount) + " and " +
                      std::to_string(run.analysisCode),
                  where);
  }
}

void DisplacementFile::ExpectCases(int count, std::source_location where) const {
  file_.ExpectItems(count, 1LL + caseLength_, "load cases", where);
}

void DisplacementFile::ReadCase(double* to, std::source_location where) {
  for (int e = 1; e <= caseLength_; ++e) to[e] = file_.Number("displacement", where);
  if (file_.PassText("END")) return;
  file_.Skip(1, "\"END\" of a load case", where);
  throw Failure(error::TypeMismatch, file_.Describe("\"END\" of a load case is not there"), where);
}

void DisplacementTable::Require(int freedoms, std::source_location where) const {
  if (!isRead) {
    throw Failure(error::SubscriptOutOfRange, "an element needs displacements, NAME.RVP was not read", where);
  }
  if (freedoms > DofPerNode) {
    throw Failure(error::SubscriptOutOfRange,
                  "an element needs " + std::to_string(freedoms) + " displacements of a node, the model has " +
                      std::to_string(DofPerNode),
                  where);
  }
}

void ReadDisplacements(Run& run, std::source_location where) {
  try {
    DisplacementFile file(run, where);
    file.ExpectCases(run.LoadCaseCount, where);
    DisplacementTable table;
    table.nodeCount = run.model.nodeCount;
    table.DofPerNode = run.DofPerNode;
    table.isSpatial = IsSpatial(run.analysisCode);
    table.values = Grid(run.LoadCaseCount, file.CaseLength());
    for (int c = 1; c <= run.LoadCaseCount; ++c) file.ReadCase(table.values.RowStart(c), where);
    table.isRead = true;
    run.displacements = std::move(table);
  } catch (const Failure& failure) {
    if (failure.number != error::FileNotFound && failure.number != error::PathAccessError) throw;
    run.display.MessageBox("Displacements not found");
    if (failure.number == error::PathAccessError) Warn(run, failure.what());
  }
}

}  // namespace velmor
