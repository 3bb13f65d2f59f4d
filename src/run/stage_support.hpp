#pragma once

#include <new>
#include <optional>
#include <source_location>
#include <stdexcept>
#include <string>

#include "base/failure.hpp"
#include "base/item_reader.hpp"
#include "run/control_file.hpp"

namespace velmor {

struct Run;

// What the stages have in common: how they begin, and how they end when they fail.

/// Reads EEM.CTR again and stores the model name, the analysis code with its degrees of freedom per node, and all
/// flags but the Eigen flag, which only the EEM stage takes from the result.
ControlFile TakeControlFile(Run& run, std::source_location where = std::source_location::current());

/// Opens NAME.DAT and reads its head into run.sizes; the records follow.
ItemReader OpenElementRecords(Run& run, std::source_location where = std::source_location::current());

/// GlobalBand anew, as NAME.MAT has it. The old one goes first: memory holds one.
void LoadGlobalBand(Run& run, std::source_location where = std::source_location::current());

/// Begins a stage of form2: caption, status "Declaring working Space", error boxes hidden; percent as given, or as the
/// stage before left it.
void BeginStage(Run& run, const char* caption, const char* percent = nullptr);
void ShowStatus(Run& run, const char* status);

/// Text2, Text3, Text4 of form2: number of equations, band width, and Int(bound / 1024 * BandBound * 4) " kB", a
/// figure for entries of four bytes. `bound` is EquationBound, in the Mass stage the number of equations.
void ShowMatrixSize(Run& run, int bound);

/// Runs the body of a stage and returns the failure that ended it, if any. What the standard library throws for
/// want of memory becomes failure 7.
template <typename Body>
std::optional<Failure> Attempt(Body body, std::source_location where = std::source_location::current()) {
  try {
    body();
    return std::nullopt;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return Failure(error::OutOfMemory, "out of memory", where);
  } catch (const std::length_error&) {
    return Failure(error::OutOfMemory, "out of memory", where);
  }
}

/// The failure with the number and type of an element record in its description.
Failure OfRecord(const Failure& failure, int record, int type);

/// Runs what a stage does with one element record; a failure of the arithmetic, which knows no element, gets the
/// record's number and type.
template <typename Body>
void WithRecord(int record, int type, Body body) {
  try {
    body();
  } catch (const Failure& failure) {
    if (failure.number != error::DivisionByZero && failure.number != error::Overflow) throw;
    throw OfRecord(failure, record, type);
  }
}

/// A stage failed and the run goes on: its status becomes that of the process, unless an earlier one has.
void NoteFailure(Run& run, const Failure& failure);

/// Shows number and line of a failure on form2.
void ShowFailure(Run& run, const Failure& failure);

/// The messages by which a stage that cannot go on answers a failure, then the end of program. `stage` is told
/// beside the failure.
[[noreturn]] void EndAfterFailure(Run& run, const Failure& failure, const std::string& stage);
[[noreturn]] void EndAfterFailure(Run& run, const Failure& failure);

/// The end of a process, thrown to the run controller.
struct ProgramEnd {
  int status;
};

/// Deletes EEM.CTR, with a warning if it stays.
void DeleteControlFile(Run& run);

/// The common end of program: deletes EEM.CTR and ends the process with an exit_status.
[[noreturn]] void EndProgram(Run& run, int status);

}  // namespace velmor
