#include "base/item_writer.hpp"

#include <charconv>
#include <cmath>

#include "base/failure.hpp"

namespace velmor {
namespace {

constexpr std::size_t MostDigits = 32;  // the longest shortest form of a Double has 24

}  // namespace

/// Room for an item, behind the comma that parts it from the one before.
char* ItemWriter::BeginItem(std::size_t room) {
  char* at = file_.Room(room + 1);
  if (lineStarted_) *at++ = ',';
  lineStarted_ = true;
  return at;
}

void ItemWriter::Item(int value) {
  char* const at = BeginItem(MostDigits);
  EndItem(std::to_chars(at, at + MostDigits, value).ptr);
}

void ItemWriter::Item(double value) {
  if (!std::isfinite(value)) throw Failure(error::Overflow, path_ + ": a result is no finite number", where_);
  if (value == 0) return Item(0);  // also for the zero with a minus sign
  char* const at = BeginItem(MostDigits);
  EndItem(std::to_chars(at, at + MostDigits, value).ptr);
}

void ItemWriter::Item(std::string_view text) {
  if (text.find('"') != text.npos) {
    throw Failure(error::TypeMismatch, path_ + ": a name with a double quote cannot be read back", where_);
  }
  char* const at = BeginItem(1);
  *at = '"';
  EndItem(at + 1);
  file_.Append(text);
  file_.Append("\"");
}

void ItemWriter::Print(std::string_view text) {
  file_.Append(text);
  lineStarted_ = false;
}

void ItemWriter::EndLine() {
  char* const at = file_.Room(1);
  *at = '\n';
  file_.Took(at + 1);
  lineStarted_ = false;
}

}  // namespace velmor
