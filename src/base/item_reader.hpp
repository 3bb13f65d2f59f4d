#pragma once

#include <cstdint>
#include <memory>
#include <source_location>
#include <string>
#include <string_view>

#include "base/file_system.hpp"

namespace velmor {

/// Reads a text file item by item. An item ends at a comma, a blank or a line end; a string may stand in double
/// quotes and then holds anything but a double quote. Line breaks mean no more than blanks do. Two commas with
/// nothing between them hold an item that is no number. Numbers have a point, an optional sign and an exponent
/// with E, e, D or d, whatever the locale says; a number in quotes is the number.
///
/// The file passes through a small buffer, which grows only for an item that does not fit in. Every operation takes the
/// name of the item for the description of a failure, which also names the file and the line, and the place of the
/// caller, which the stage shows: failure 62 if the file ends before the item, 13 if the item is no number (or a
/// fraction where a whole number belongs), 6 if the number is too large for its type.
class ItemReader {
 public:
  using Place = std::source_location;

  /// Opens the file. Failure 53 if it is not there, 75 if it cannot be opened.
  explicit ItemReader(const std::string& path, Place where = Place::current());

  int Whole(std::string_view item, Place where = Place::current());
  double Number(std::string_view item, Place where = Place::current());
  float Single(std::string_view item, Place where = Place::current());
  std::string Text(std::string_view item, Place where = Place::current());

  /// A whole number from 0 up; failure 9 if it is negative.
  int Count(std::string_view item, Place where = Place::current());
  /// A whole number from 1 to `last`; failure 9 if it lies outside.
  int Index(std::string_view item, int last, Place where = Place::current());
  void Skip(int items, std::string_view item, Place where = Place::current());

  /// True if only blanks follow.
  bool AtEnd();
  /// Passes the next item and returns true if it is this string, quoted or bare; else leaves it.
  bool PassText(std::string_view text);
  /// Back to the first item.
  void Rewind();
  /// Failure 62 if what is left of the file is too short to hold `count` times `items` items, each of a
  /// character and a separator at the least: a table for them is then not worth making. Passes if nobody can tell,
  /// as with a file that the system makes up.
  void ExpectItems(long long count, long long items, std::string_view item, Place where = Place::current()) const;

  const std::string& Path() const { return file_.Path(); }
  /// File and line of the item last read, with the item's name, to begin the description of a failure.
  std::string Describe(std::string_view item) const;

 private:
  struct Token {
    const char* first;
    const char* last;
  };
  Token Next(std::string_view item, Place where);
  void Start();
  bool ReadOn(const char* keep);
  void SkipBlanks();
  void SkipSeparators();
  template <typename T>
  T Parse(std::string_view item, Place where);
  template <typename T>
  T ParseSlowly(std::string_view item, Place where);

  InputFile file_;
  std::size_t room_ = 0;  // characters that the buffer can hold
  std::unique_ptr<char[]> buffer_;
  const char* at_;            // the next character
  const char* end_;           // behind the last character in the buffer
  const char* item_;          // start of the item last read
  std::int64_t bytesRead_;    // of the file, up to end_
  std::int64_t linesBefore_;  // line ends that have left the buffer
  bool bufferHoldsRest_;      // the file has ended, nothing follows end_
  bool commaMayFollow_;       // the comma that closes the item last read has not come yet
};

}  // namespace velmor
