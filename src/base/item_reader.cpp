#include "base/item_reader.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>

#include "base/failure.hpp"
#include "base/file_system.hpp"

namespace velmor {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
bool EndsItem(char c) { return c == ',' || IsBlank(c); }

/// The text of a file; grows beyond the size that the system told, so that a pipe can be read as well.
std::unique_ptr<char[]> ReadText(InputFile& file, std::size_t& length) {
  std::size_t room = static_cast<std::size_t>(std::max<std::int64_t>(file.Size(), 0)) + 1;
  length = 0;
  std::unique_ptr<char[]> text;
  try {
    for (;;) {
      auto larger = std::make_unique_for_overwrite<char[]>(room);
      std::copy_n(text.get(), length, larger.get());
      text = std::move(larger);
      length += file.ReadSome(text.get() + length, room - length);
      if (length < room) return text;
      room *= 2;
    }
  } catch (const std::bad_alloc&) {
    throw Failure(error::OutOfMemory, file.Path() + ": no memory for the file");
  }
}

}  // namespace

ItemReader::ItemReader(const std::string& path, Place where) : path_(path) {
  InputFile file(path, where);
  std::size_t length = 0;
  text_ = ReadText(file, length);
  at_ = item_ = text_.get();
  end_ = at_ + length;
}

void ItemReader::SkipBlanks() {
  while (at_ != end_ && IsBlank(*at_)) ++at_;
}

/// Passes the one comma that may close an item, with the blanks before it.
void ItemReader::EndItem() {
  SkipBlanks();
  if (at_ != end_ && *at_ == ',') ++at_;
}

ItemReader::Token ItemReader::Next(std::string_view item, Place where) {
  SkipBlanks();
  item_ = at_;
  if (at_ == end_) throw Failure(error::InputPastEnd, Describe(item) + " is missing, the file ends", where);
  Token token{at_, at_};
  if (*at_ == '"') {
    token.first = ++at_;
    token.last = at_ = std::find(at_, end_, '"');
    if (at_ == end_) throw Failure(error::InputPastEnd, Describe(item) + " has no closing quote", where);
    ++at_;
  } else {
    token.last = at_ = std::find_if(at_, end_, EndsItem);
  }
  EndItem();
  return token;
}

bool ItemReader::AtEnd() {
  SkipBlanks();
  return at_ == end_;
}

bool ItemReader::PassText(std::string_view text) {
  SkipBlanks();
  const char* const start = at_;
  const bool quoted = at_ != end_ && *at_ == '"';
  if (quoted) ++at_;
  const std::string_view rest(at_, static_cast<std::size_t>(end_ - at_));
  const char* const stop = at_ + std::min(text.size(), rest.size());
  const bool ends = quoted ? stop != end_ && *stop == '"' : stop == end_ || EndsItem(*stop);
  if (!rest.starts_with(text) || !ends) {
    at_ = start;
    return false;
  }
  item_ = start;
  at_ = quoted ? stop + 1 : stop;
  EndItem();
  return true;
}

std::string ItemReader::Describe(std::string_view item) const {
  const auto line = 1 + std::count(static_cast<const char*>(text_.get()), item_, '\n');
  return path_ + ", line " + std::to_string(line) + ": " + std::string(item);
}

void ItemReader::ExpectItems(long long count, long long items, std::string_view item, Place where) const {
  const long long room = (end_ - at_ + 1) / 2;
  if (items > 0 && count > room / items) {
    throw Failure(
        error::InputPastEnd,
        path_ + ": " + std::string(item) + ": the file is too short for " + std::to_string(count) + " of them", where);
  }
}

/// The usual form of a number, read where it stands; anything else goes the slow way.
template <typename T>
T ItemReader::Parse(std::string_view item, Place where) {
  SkipBlanks();
  T value{};
  const auto [stop, status] = std::from_chars(at_, end_, value);
  bool plain = status == std::errc() && (stop == end_ || EndsItem(*stop));
  if constexpr (std::is_floating_point_v<T>) plain = plain && std::isfinite(value);
  if (!plain) return ParseSlowly<T>(item, where);
  item_ = at_;
  at_ = stop;
  EndItem();
  return value;
}

template <typename T>
T ItemReader::ParseSlowly(std::string_view item, Place where) {
  const Token token = Next(item, where);
  std::string text(token.first, token.last);
  const auto noNumber = [&] {
    return Failure(error::TypeMismatch, Describe(item) + " is no number: \"" + text.substr(0, 40) + "\"", where);
  };
  // Blanks inside quotes count for nothing; a sign + and an exponent D are unknown to the standard library.
  const auto lead = text.find_first_not_of(" \t\r\n");
  std::string digits = lead == std::string::npos ? "" : text.substr(lead, text.find_last_not_of(" \t\r\n") - lead + 1);
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.erase(0, 1);
  for (char& c : digits) c = c == 'D' || c == 'd' ? 'e' : c;
  if (digits.find_first_not_of("+-.0123456789eE") != std::string::npos) throw noNumber();

  double value = 0;
  const auto [stop, status] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (stop != digits.data() + digits.size()) throw noNumber();
  if (status == std::errc::invalid_argument) throw noNumber();
  if (status == std::errc::result_out_of_range) value = std::strtod(digits.c_str(), nullptr);  // infinite, or tiny
  const auto tooLarge = [&] { return Failure(error::Overflow, Describe(item) + " is too large: " + digits, where); };
  if constexpr (std::is_same_v<T, int>) {
    if (value != std::floor(value)) {
      throw Failure(error::TypeMismatch, Describe(item) + " is no whole number: " + digits, where);
    }
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) throw tooLarge();
  } else {
    if (std::abs(value) > static_cast<double>(std::numeric_limits<T>::max())) throw tooLarge();
  }
  return static_cast<T>(value);
}

int ItemReader::Whole(std::string_view item, Place where) { return Parse<int>(item, where); }
double ItemReader::Number(std::string_view item, Place where) { return Parse<double>(item, where); }
float ItemReader::Single(std::string_view item, Place where) { return Parse<float>(item, where); }

std::string ItemReader::Text(std::string_view item, Place where) {
  const Token token = Next(item, where);
  return {token.first, token.last};
}

int ItemReader::Count(std::string_view item, Place where) {
  const int count = Whole(item, where);
  if (count < 0) {
    throw Failure(error::SubscriptOutOfRange, Describe(item) + " is negative: " + std::to_string(count), where);
  }
  return count;
}

int ItemReader::Index(std::string_view item, int last, Place where) {
  const int index = Whole(item, where);
  if (index < 1 || index > last) {
    throw Failure(error::SubscriptOutOfRange,
                  Describe(item) + " is " + std::to_string(index) + ", not in 1.." + std::to_string(last), where);
  }
  return index;
}

void ItemReader::Skip(int items, std::string_view item, Place where) {
  for (int i = 1; i <= items; ++i) Next(item, where);
}

}  // namespace velmor
