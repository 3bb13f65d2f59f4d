#pragma once

#include <source_location>
#include <stdexcept>
#include <string>

namespace velmor {

/// Numbers of the failures that a stage can meet.
namespace error {
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int ReadWriteError = 57;
inline constexpr int InputPastEnd = 62;
inline constexpr int PathAccessError = 75;
}  // namespace error

/// What a failure is about, where a stage answers one cause with other messages than the rest.
enum class Cause {
  General,
  MissingFile,   // a file of the run that is not there; Failure::path names it as the stage spells it
  ControlFile,   // EEM.CTR is missing or cannot be read
  NoMaterials,   // NAME.MLT has no readable count
  BandMemory,    // there is no memory for GlobalBand
  SingularBand,  // a pivot of the elimination is zero or not a number
  NoPlateTable,  // PLAT.ELM cannot be opened
};

/// A failure of a stage: the number and source line that the stage's window shows, and a description that
/// names the file and the item. It is thrown where the fact is known and caught once per stage.
struct Failure : std::runtime_error {
  Failure(int code, const std::string& description, std::source_location where = std::source_location::current())
      : Failure(Cause::General, code, description, {}, where) {}

  Failure(Cause reason, int code, const std::string& description, std::string file,
          std::source_location where = std::source_location::current())
      : std::runtime_error(description),
        cause(reason),
        number(code),
        line(static_cast<int>(where.line())),
        path(std::move(file)) {}

  Cause cause;
  int number;
  int line;
  std::string path;
};

/// a / b, or failure 11 at the line of the caller if b is 0, so that no infinity travels on.
inline double Divide(double a, double b, std::source_location where = std::source_location::current()) {
  if (b == 0) throw Failure(error::DivisionByZero, "division by zero", where);
  return a / b;
}

}  // namespace velmor
