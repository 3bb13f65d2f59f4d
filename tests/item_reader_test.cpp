#include "base/item_reader.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "base/failure.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// A reader of a file with this text, which lives as long as its reader.
struct TextReader : private Folder, ItemReader {
  explicit TextReader(const std::string& text) : ItemReader(FileWith(text)) {}

 private:
  std::string FileWith(const std::string& text) {
    Folder::Write(".TEK", text);
    return File(".TEK");
  }
};

/// The failure of an action; failure 0 if there was none.
Failure FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure;
  }
  return {0, "nothing failed"};
}

TEST(ItemReader, TakesEverySeparatorAlike) {
  for (const char* text : {"1,2,3", "1 2 3", "1\r\n2\r\n3\r\n", "1\t2\t3", "1 , 2 , 3", "  1,\n\n2,3", "1\n,2\n,3 ",
                           "1,2,3,", "1,2\n3\n\n\n", "\xEF\xBB\xBF 1 2 3", "\"1\",\"2\" 3 ", "+1,\"+2\",\" 3 \""}) {
    SCOPED_TRACE(text);
    TextReader reader(text);
    for (int expected = 1; expected <= 3; ++expected) EXPECT_EQ(reader.Whole("number"), expected);
    EXPECT_TRUE(reader.AtEnd());
  }
}

TEST(ItemReader, ReadsEveryFormOfANumber) {
  const std::pair<const char*, double> forms[] = {
      {"1.5E3", 1500},    {"-1.5d-03", -0.0015}, {"-.5", -0.5},    {"+.5", 0.5},          {"5.", 5},
      {"\" 1D2 \"", 100}, {"1e-400", 0},         {"1e308", 1e308}, {"2.5D-310", 2.5e-310}};
  for (const auto& [text, value] : forms) EXPECT_EQ(TextReader(text).Number("number"), value) << text;
  TextReader whole("3. 3.0 3.000E0 30D-1 0.3e+1 -2147483648 2147483647.0");
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(whole.Whole("number"), 3);
  EXPECT_EQ(whole.Whole("smallest"), -2147483647 - 1);
  EXPECT_EQ(whole.Whole("largest"), 2147483647);
}

/// Each text holds a first item that reads, then one that fails, on the last line.
void ExpectFailures(int number, void (*read)(ItemReader&), const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    TextReader reader(text);
    EXPECT_EQ(reader.Whole("first item"), 1);
    const Failure failure = FailureOf([&] { read(reader); });
    EXPECT_EQ(failure.number, number) << text;
    const std::string place = ", line " + std::to_string(1 + std::count(text.begin(), text.end(), '\n')) + ": item";
    EXPECT_NE(std::string(failure.what()).find(place), std::string::npos) << failure.what();
  }
}

TEST(ItemReader, NamesNumberAndLineOfEveryFailure) {
  const auto number = [](ItemReader& reader) { reader.Number("item"); };
  const auto whole = [](ItemReader& reader) { reader.Whole("item"); };
  ExpectFailures(error::Overflow, number, {"1,1e999"});
  ExpectFailures(error::Overflow, [](ItemReader& reader) { reader.Single("item"); }, {"1\n\n1e39"});
  ExpectFailures(error::Overflow, whole, {"1,2147483648", "1,-3e9"});
  ExpectFailures(error::SubscriptOutOfRange, [](ItemReader& reader) { reader.Count("item"); }, {"1,-1"});
  ExpectFailures(error::SubscriptOutOfRange, [](ItemReader& reader) { reader.Index("item", 4); }, {"1\n0", "1\n5"});
  ExpectFailures(error::TypeMismatch, number,
                 {"1,,2", "1\n\"\"", "1 12x", "1 1e", "1 --1", "1 +-1", "1 0x1", "1\r\nnan"});
  ExpectFailures(error::TypeMismatch, whole, {"1 2.5"});
  ExpectFailures(error::InputPastEnd, whole, {"1,\n\n"});
  ExpectFailures(error::InputPastEnd, [](ItemReader& reader) { reader.Text("item"); }, {"1\n\"open"});
  const Folder folder;
  EXPECT_EQ(FailureOf([&] { ItemReader(folder.File(".TEK")); }).number, error::FileNotFound);
  EXPECT_EQ(FailureOf([&] { ItemReader(folder.Program()); }).number, error::PathAccessError);
}

// The file passes through a buffer of 64 kB: items of every kind fall on its edges, at another place with each shift.
TEST(ItemReader, ReadsItemsThatLieAcrossTheEdgesOfItsBuffer) {
  constexpr int rounds = 4000;
  std::string body;
  for (int i = 1; i <= rounds; ++i) {
    const std::string number = std::to_string(i);
    body += number + "," + number + ".0625 , \"name, " + number + "\"   " + number + "D-1\n\"END\",";
  }
  for (int shift = 0; shift < 40; ++shift) {
    SCOPED_TRACE(shift);
    TextReader reader(std::string(static_cast<std::size_t>(shift), ' ') + body + "x");
    for (int pass = 1; pass <= 2; ++pass, reader.Rewind()) {
      for (int i = 1; i <= rounds; ++i) {
        ASSERT_EQ(reader.Whole("number"), i);
        ASSERT_EQ(reader.Number("number"), i + 0.0625);
        ASSERT_FALSE(reader.PassText("name"));
        ASSERT_EQ(reader.Text("name"), "name, " + std::to_string(i));
        ASSERT_DOUBLE_EQ(reader.Number("number"), i / 10.0);
        ASSERT_FALSE(reader.AtEnd());
        ASSERT_TRUE(reader.PassText("END"));
      }
      EXPECT_NE(reader.Describe("last").find("line " + std::to_string(rounds + 1) + ":"), std::string::npos);
      EXPECT_THROW(reader.Number("last"), Failure);
      EXPECT_TRUE(reader.AtEnd());
    }
  }
}

TEST(ItemReader, KeepsWhatStandsInQuotesAndItemsLongerThanItsBuffer) {
  const std::string name(300'000, 'n'), zeros(100'000, '0');
  TextReader reader("\"" + name + "\"," + zeros + "7 1." + zeros + "\n" + name + ",\"a b, c\",\"\",\"line\nbreak\"");
  EXPECT_EQ(reader.Text("name"), name);
  EXPECT_EQ(reader.Whole("number"), 7);
  EXPECT_EQ(reader.Number("number"), 1);
  for (const std::string& expected : {name, std::string("a b, c"), std::string(), std::string("line\nbreak")}) {
    EXPECT_EQ(reader.Text("name"), expected);
  }
  EXPECT_TRUE(reader.AtEnd());
  EXPECT_THROW(TextReader(std::string(2'000'000, '7')).Text("no text of a model"), Failure);
}

TEST(ItemReader, RefusesACountThatTheFileCannotHold) {
  // Five items need five characters and four separators; what is left after the count is just that.
  TextReader reader("5\n1 2 3 4 5");
  const int count = reader.Count("count");
  EXPECT_NO_THROW(reader.ExpectItems(count, 1, "values"));
  EXPECT_THROW(reader.ExpectItems(count + 1, 1, "values"), Failure);
  EXPECT_THROW(reader.ExpectItems(2'000'000'000, 2'000'000'000'000, "values"), Failure);
}

TEST(ItemReader, PassesAGivenStringAndLeavesAnyOther) {
  for (const char* text : {"\"END\"", "END", " \"END\" ,", "\"END\"\r\n"}) {
    TextReader reader(text);
    EXPECT_TRUE(reader.PassText("END")) << text;
    EXPECT_TRUE(reader.AtEnd()) << text;
    EXPECT_FALSE(reader.PassText("END")) << text;
  }
  for (const char* text : {"", "EN", "\"END", "ENDE", "\"ENDE\"", "\" END\"", "end", ",END"}) {
    TextReader reader(text);
    EXPECT_FALSE(reader.PassText("END")) << text;
    EXPECT_EQ(reader.AtEnd(), *text == 0) << text;
  }
}

}  // namespace
}  // namespace velmor::testing
