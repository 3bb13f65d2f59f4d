#include "base/item_writer.hpp"

#include <array>
#include <charconv>
#include <cmath>

#include "base/failure.hpp"

namespace velmor {
namespace {

// The longest shortest form of a Double has 24 characters.
template <typename T>
std::string_view Digits(std::array<char, 32>& room, T value) {
  const auto result = std::to_chars(room.data(), room.data() + room.size(), value);
  return {room.data(), static_cast<std::size_t>(result.ptr - room.data())};
}

}  // namespace

void ItemWriter::Separate() {
  if (lineStarted_) file_.Append(",");
  lineStarted_ = true;
}

void ItemWriter::Item(int value) {
  std::array<char, 32> room;
  Separate();
  file_.Append(Digits(room, value));
}

void ItemWriter::Item(double value) {
  if (!std::isfinite(value)) throw Failure(error::Overflow, path_ + ": a result is no finite number", where_);
  std::array<char, 32> room;
  Separate();
  file_.Append(value == 0 ? "0" : Digits(room, value));  // also for the zero with a minus sign
}

void ItemWriter::Item(std::string_view text) {
  if (text.find('"') != text.npos) {
    throw Failure(error::TypeMismatch, path_ + ": a string with a double quote cannot be written", where_);
  }
  Separate();
  file_.Append("\"");
  file_.Append(text);
  file_.Append("\"");
}

void ItemWriter::Print(std::string_view text) {
  file_.Append(text);
  lineStarted_ = false;
}

void ItemWriter::EndLine() {
  file_.Append("\n");
  lineStarted_ = false;
}

}  // namespace velmor
