#pragma once

#include <source_location>
#include <string>
#include <string_view>

#include "base/file_system.hpp"

namespace velmor {

/// Writes a text file: comma-separated items, strings in double quotes, one record to a line that ends with
/// '\n'. A Double takes the shortest decimal form that reads back to the same value. Failure 75 if the file
/// cannot be created, 57 if writing fails, 6 for a number that is infinite or none at all: no such value
/// reaches a file; 13 for a string that holds a double quote.
class ItemWriter {
 public:
  using Place = std::source_location;

  explicit ItemWriter(const std::string& path, Unfinished unfinished = Unfinished::Discard,
                      Place where = Place::current())
      : file_(path, unfinished, where), path_(path), where_(where) {}

  /// One record: numbers, and strings that get their quotes here.
  template <typename... Items>
  void Line(const Items&... items) {
    (Item(items), ...);
    EndLine();
  }

  void Item(int value);
  void Item(double value);
  void Item(std::string_view text);
  void Item(const char* text) { Item(std::string_view(text)); }
  void EndLine();
  /// Text that stands as it is, without quotes; the next item follows it without a comma.
  void Print(std::string_view text);

  void Close(Place where = Place::current()) { file_.Close(where); }

 private:
  char* BeginItem(std::size_t room);
  void EndItem(const char* end) { file_.Took(end); }

  OutputFile file_;
  std::string path_;
  Place where_;
  bool lineStarted_ = false;
};

}  // namespace velmor
