#include "base/item_reader.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>

#include "base/failure.hpp"
#include "base/interruption.hpp"

namespace velmor {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
bool EndsItem(char c) { return c == ',' || IsBlank(c); }

std::unique_ptr<char[]> MakeBuffer(std::size_t room) {
  try {
    return std::make_unique_for_overwrite<char[]>(room);
  } catch (const std::bad_alloc&) {
    throw Failure(error::OutOfMemory, "no memory for an item of " + std::to_string(room) + " characters");
  }
}

/// Line ends in blocks so short that a byte holds the count of each, which lets the compiler take many characters at a
/// time.
std::int64_t CountLineEnds(const char* first, const char* last) {
  constexpr std::ptrdiff_t blockSize = 128;
  std::int64_t lines = 0;
  while (first != last) {
    const char* const stop = first + std::min(last - first, blockSize);
    std::uint8_t inBlock = 0;
    for (; first != stop; ++first) inBlock = static_cast<std::uint8_t>(inBlock + (*first == '\n'));
    lines += inBlock;
  }
  return lines;
}

constexpr std::size_t BufferSize = std::size_t{1} << 16;
constexpr std::size_t LongestItem = std::size_t{1} << 20;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";  // which some editors put in front of a text

/// More than any number takes that is written with some sense; a longer one is read the slow way.
constexpr std::ptrdiff_t UsualNumberLength = 64;

}  // namespace

ItemReader::ItemReader(const std::string& path, Place where)
    : file_(path, where), room_(BufferSize), buffer_(MakeBuffer(BufferSize)) {
  Start();
}

void ItemReader::Start() {
  at_ = end_ = item_ = buffer_.get();
  bytesRead_ = linesBefore_ = 0;
  bufferHoldsRest_ = commaMayFollow_ = false;
}

void ItemReader::Rewind() {
  file_.Rewind();
  Start();
}

/// Brings more of the file into the buffer, behind what it holds from `keep` on, which moves to its start; what stands
/// before `keep` is dropped. at_ moves along. False at the end of the file.
bool ItemReader::ReadOn(const char* keep) {
  if (bufferHoldsRest_) return false;
  ThrowIfInterrupted();
  linesBefore_ += CountLineEnds(buffer_.get(), keep);
  const std::ptrdiff_t kept = end_ - keep, passed = at_ - keep;
  if (static_cast<std::size_t>(kept) == room_) {
    if (room_ == LongestItem) throw Failure(error::TypeMismatch, Describe("an item of more than a million characters"));
    room_ *= 2;
    auto larger = MakeBuffer(room_);
    std::copy(keep, end_, larger.get());
    buffer_ = std::move(larger);
  } else {
    std::copy(keep, end_, buffer_.get());
  }
  char* const free = buffer_.get() + kept;
  const std::size_t wanted = room_ - static_cast<std::size_t>(kept), got = file_.ReadSome(free, wanted);
  at_ = buffer_.get() + passed;
  end_ = free + got;
  item_ = buffer_.get();
  if (bytesRead_ == 0 && std::string_view(free, got).starts_with(ByteOrderMark)) at_ += ByteOrderMark.size();
  bytesRead_ += static_cast<std::int64_t>(got);
  bufferHoldsRest_ = got < wanted;
  return got > 0;
}

void ItemReader::SkipBlanks() {
  do {
    while (at_ != end_ && IsBlank(*at_)) ++at_;
  } while (at_ == end_ && ReadOn(at_));
}

/// Passes blanks, and the one comma among them that may close the item last read.
void ItemReader::SkipSeparators() {
  SkipBlanks();
  if (!commaMayFollow_ || at_ == end_ || *at_ != ',') return;
  commaMayFollow_ = false;
  ++at_;
  SkipBlanks();
}

ItemReader::Token ItemReader::Next(std::string_view item, Place where) {
  SkipSeparators();
  item_ = at_;
  if (at_ == end_) throw Failure(error::InputPastEnd, Describe(item) + " is missing, the file ends", where);
  const bool quoted = *at_ == '"';
  if (quoted) ++at_;
  do {
    at_ = quoted ? std::find(at_, end_, '"') : std::find_if(at_, end_, EndsItem);
  } while (at_ == end_ && ReadOn(item_));
  if (quoted && at_ == end_) throw Failure(error::InputPastEnd, Describe(item) + " has no closing quote", where);
  commaMayFollow_ = true;
  return quoted ? Token{item_ + 1, at_++} : Token{item_, at_};
}

bool ItemReader::PassText(std::string_view text) {
  SkipSeparators();
  if (end_ - at_ < static_cast<std::ptrdiff_t>(text.size() + 3)) ReadOn(at_);  // the text, quotes, and what ends it
  const bool quoted = at_ != end_ && *at_ == '"';
  const char* const first = quoted ? at_ + 1 : at_;
  const std::string_view rest(first, static_cast<std::size_t>(end_ - first));
  if (!rest.starts_with(text)) return false;
  const char* const stop = first + text.size();
  const bool ends = quoted ? stop != end_ && *stop == '"' : stop == end_ || EndsItem(*stop);
  if (!ends) return false;
  item_ = at_;
  at_ = quoted ? stop + 1 : stop;
  commaMayFollow_ = true;
  return true;
}

bool ItemReader::AtEnd() {
  SkipSeparators();
  return at_ == end_;
}

std::string ItemReader::Describe(std::string_view item) const {
  const auto line = 1 + linesBefore_ + CountLineEnds(buffer_.get(), item_);
  return Path() + ", line " + std::to_string(line) + ": " + std::string(item);
}

void ItemReader::ExpectItems(long long count, long long items, std::string_view item, Place where) const {
  const std::int64_t size = bufferHoldsRest_ ? bytesRead_ : file_.Size();
  if (size < bytesRead_) return;
  const long long room = (size - bytesRead_ + (end_ - at_) + 1) / 2;
  if (items > 0 && count > room / items) {
    throw Failure(
        error::InputPastEnd,
        Path() + ": " + std::string(item) + ": the file is too short for " + std::to_string(count) + " of them", where);
  }
}

/// The usual form of a number, read where it stands; anything else goes the slow way.
template <typename T>
T ItemReader::Parse(std::string_view item, Place where) {
  SkipSeparators();
  if (end_ - at_ < UsualNumberLength) ReadOn(at_);
  T value{};
  const auto [stop, status] = std::from_chars(at_, end_, value);
  const bool complete = stop == end_ ? bufferHoldsRest_ : EndsItem(*stop);
  bool plain = status == std::errc() && complete;
  if constexpr (std::is_floating_point_v<T>) plain = plain && std::isfinite(value);
  if (!plain) return ParseSlowly<T>(item, where);
  item_ = at_;
  at_ = stop;
  commaMayFollow_ = true;
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
