#include "run/failure_answer.hpp"

namespace velmor {
namespace {

std::string AdviceByNumber(int number) {
  switch (number) {
    case error::Overflow:
      return "a number is too large to go on with; look at units, sizes and stiffnesses of the model";
    case error::OutOfMemory:
      return "the model is too large for the memory of this machine";
    case error::SubscriptOutOfRange:
      return "a number points at something that is not there, or a file belongs to another model; look at the item "
             "named";
    case error::DivisionByZero:
      return "a size or material value that divides is zero; look at the element or material named";
    case error::TypeMismatch:
      return "look at the item named: it has to be a number, and a whole one where things are counted";
    case error::FileNotFound:
      return "look at whether the file is there and at the model path in EEM.CTR";
    case error::ReadWriteError:
      return "look at the room on the disk";
    case error::InputPastEnd:
      return "the file ends too early; look at its counts and its last lines";
    case error::PathAccessError:
      return "look at the permissions of the folder, for a folder in the file's place, and for another run of the "
             "model";
    default:
      return "look at the file and item named";
  }
}

std::string Advice(const Failure& failure) {
  switch (failure.cause) {
    case Cause::ControlFile:
      return "look at EEM.CTR in the program folder: the model path in quotes, then eight whole numbers";
    case Cause::NoMaterials:
      return "look at the first item of the material file: the number of materials";
    case Cause::BandMemory:
      return "number the nodes so that those of one element lie close together: the band takes 8 bytes for every "
             "equation and every step of its width";
    case Cause::SingularBand:
      return "look at the supports, and for parts that hang on too few members or hinges";
    case Cause::NoPlateTable:
      return "PLAT.ELM belongs beside the program; copy it there";
    case Cause::MissingFile:
    case Cause::General:
      break;
  }
  return AdviceByNumber(failure.number);
}

}  // namespace

int ExitStatusOf(const Failure& failure) {
  switch (failure.number) {
    case error::OutOfMemory:
    case error::ReadWriteError:
    case error::PathAccessError:
      return exit_status::Resources;
    default:
      break;
  }
  if (failure.cause == Cause::ControlFile) return exit_status::StartUp;
  return failure.cause == Cause::SingularBand ? exit_status::Model : exit_status::BadInput;
}

FailureNotice NoticeOf(const std::string& stage, const Failure& failure) {
  return {stage, failure.number, failure.line, failure.what(), Advice(failure)};
}

}  // namespace velmor
