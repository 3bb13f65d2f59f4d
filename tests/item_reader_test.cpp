#include "base/item_reader.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/failure.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// A file with this text, which lives as long as its test.
struct TextFile {
  explicit TextFile(const std::string& text) { folder.Write(".TEK", text); }
  std::string Path() const { return folder.File(".TEK"); }
  Folder folder;
};

/// The failure of `read` on a file that holds `text`; failure 0 if there was none.
Failure FailureOf(const std::string& text, const std::function<void(ItemReader&)>& read) {
  const TextFile file(text);
  try {
    ItemReader reader(file.Path());
    read(reader);
  } catch (const Failure& failure) {
    return failure;
  }
  return {0, "nothing failed"};
}

TEST(ItemReader, TakesEverySeparatorAlike) {
  const char* const texts[] = {
      "1,2,3",       "1 2 3",      "1\n2\n3\n", "1\r\n2\r\n3\r\n", "1\t2\t3",        "1 , 2 , 3",
      "  1,\n\n2,3", "1\n,2\n,3 ", "1,2,3,",    "1,2\n3\n\n\n",    "\"1\",\"2\" 3 ", "+1,\"+2\",\" 3 \"",
  };
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    const TextFile file(text);
    ItemReader reader(file.Path());
    for (int expected = 1; expected <= 3; ++expected) EXPECT_EQ(reader.Whole("number"), expected);
    EXPECT_TRUE(reader.AtEnd());
  }
}

TEST(ItemReader, KeepsWhatStandsInQuotes) {
  const TextFile file("\"a b, c\",bare,\"\",\"line\nbreak\" last");
  ItemReader reader(file.Path());
  for (const char* expected : {"a b, c", "bare", "", "line\nbreak", "last"}) EXPECT_EQ(reader.Text("name"), expected);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ItemReader, ReadsEveryFormOfANumber) {
  struct Form {
    const char* text;
    double value;
  };
  const Form forms[] = {
      {"1.5E3", 1500},
      {"1.5e3", 1500},
      {"1.5D3", 1500},
      {"1.5d+3", 1500},
      {"-1.5D-03", -0.0015},
      {".5", 0.5},
      {"-.5", -0.5},
      {"+.5", 0.5},
      {"5.", 5},
      {"7", 7},
      {"\"1.25\"", 1.25},
      {"\" 1D2 \"", 100},
      {"0.1", 0.1},
      {"-0", 0},
      {"1e-400", 0},
      {"4.9e-324", 4.9e-324},
      {"1e308", 1e308},
      {"2.5E-310", 2.5e-310},
      {"0.1000000000000000055511151231257827", 0.1},
      {"12345678901234567890", 12345678901234567890.0},
  };
  for (const Form& form : forms) {
    SCOPED_TRACE(form.text);
    const TextFile file(form.text);
    ItemReader reader(file.Path());
    EXPECT_EQ(reader.Number("number"), form.value);
  }
}

TEST(ItemReader, ReadsAWholeNumberWithAPointOrAnExponent) {
  const TextFile file("3. 3.0 3.000E0 30D-1 0.3e+1 -2147483648 2147483647.0");
  ItemReader reader(file.Path());
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(reader.Whole("number"), 3);
  EXPECT_EQ(reader.Whole("smallest"), -2147483647 - 1);
  EXPECT_EQ(reader.Whole("largest"), 2147483647);
}

TEST(ItemReader, NamesNumberAndLineOfEveryFailure) {
  const auto whole = [](ItemReader& reader) { reader.Whole("item"); };
  const auto number = [](ItemReader& reader) { reader.Number("item"); };
  const auto single = [](ItemReader& reader) { reader.Single("item"); };
  const auto text = [](ItemReader& reader) { reader.Text("item"); };
  const auto count = [](ItemReader& reader) { reader.Count("item"); };
  const auto index = [](ItemReader& reader) { reader.Index("item", 4); };
  struct Case {
    const char* text;  // a first item that reads, then the one that fails
    std::function<void(ItemReader&)> read;
    int failure;
    int line;
  };
  const std::vector<Case> cases = {
      {"1,1e999", number, error::Overflow, 1},        {"1\n-1D400", number, error::Overflow, 2},
      {"1\n\n1e39", single, error::Overflow, 3},      {"1,2147483648", whole, error::Overflow, 1},
      {"1,-3e9", whole, error::Overflow, 1},          {"1,-1", count, error::SubscriptOutOfRange, 1},
      {"1\n0", index, error::SubscriptOutOfRange, 2}, {"1\n5", index, error::SubscriptOutOfRange, 2},
      {"1,,2", number, error::TypeMismatch, 1},       {"1\n,,", whole, error::TypeMismatch, 2},
      {"1\n\"\"", number, error::TypeMismatch, 2},    {"1 2.5", whole, error::TypeMismatch, 1},
      {"1 1e-3", whole, error::TypeMismatch, 1},      {"1 12x", whole, error::TypeMismatch, 1},
      {"1 1.2.3", number, error::TypeMismatch, 1},    {"1 1e", number, error::TypeMismatch, 1},
      {"1 --1", number, error::TypeMismatch, 1},      {"1 +-1", number, error::TypeMismatch, 1},
      {"1 0x10", number, error::TypeMismatch, 1},     {"1\r\n\r\nnan", number, error::TypeMismatch, 3},
      {"1 inf", number, error::TypeMismatch, 1},      {"1 -infinity", single, error::TypeMismatch, 1},
      {"1 1;2", number, error::TypeMismatch, 1},      {"1", number, error::InputPastEnd, 1},
      {"1,\n\n", whole, error::InputPastEnd, 3},      {"1\n\"open", text, error::InputPastEnd, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const Failure failure = FailureOf(c.text, [&](ItemReader& reader) {
      EXPECT_EQ(reader.Whole("first item"), 1);
      c.read(reader);
    });
    EXPECT_EQ(failure.number, c.failure) << failure.what();
    const std::string place = ", line " + std::to_string(c.line) + ": item";
    EXPECT_NE(std::string(failure.what()).find(place), std::string::npos) << failure.what();
  }
}

TEST(ItemReader, FailsAtAFileThatIsMissingOrAFolder) {
  const auto open = [](const std::string& path) {
    try {
      ItemReader reader(path);
    } catch (const Failure& failure) {
      return failure.number;
    }
    return 0;
  };
  const Folder folder;
  EXPECT_EQ(open(folder.File(".TEK")), error::FileNotFound);
  EXPECT_EQ(open(folder.Program()), error::PathAccessError);
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
    const TextFile file(std::string(static_cast<std::size_t>(shift), ' ') + body + "x");
    ItemReader reader(file.Path());
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

TEST(ItemReader, ReadsAnItemLongerThanItsBuffer) {
  const std::string name(300'000, 'n');
  const std::string zeros(100'000, '0');
  const TextFile file("1,\"" + name + "\"," + zeros + "7 1." + zeros + "\n" + name);
  ItemReader reader(file.Path());
  EXPECT_EQ(reader.Whole("number"), 1);
  EXPECT_EQ(reader.Text("name"), name);
  EXPECT_EQ(reader.Whole("number"), 7);
  EXPECT_EQ(reader.Number("number"), 1);
  EXPECT_EQ(reader.Text("name"), name);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ItemReader, RefusesACountThatTheFileCannotHold) {
  // Five items need five characters and four separators; what is left after the count is just that.
  const TextFile file("5\n1 2 3 4 5");
  ItemReader reader(file.Path());
  const int count = reader.Count("count");
  EXPECT_NO_THROW(reader.ExpectItems(count, 1, "values"));
  EXPECT_THROW(reader.ExpectItems(count + 1, 1, "values"), Failure);
  EXPECT_THROW(reader.ExpectItems(2'000'000'000, 2'000'000'000'000, "values"), Failure);
}

TEST(ItemReader, PassesAGivenStringAndLeavesAnyOther) {
  for (const char* text : {"\"END\"", "END", " \"END\" ,", "END\n", "\"END\"\r\n"}) {
    const TextFile file(text);
    ItemReader reader(file.Path());
    EXPECT_TRUE(reader.PassText("END")) << text;
    EXPECT_TRUE(reader.AtEnd()) << text;
    EXPECT_FALSE(reader.PassText("END")) << text;
    reader.Rewind();
    EXPECT_TRUE(reader.PassText("END")) << text;
  }
  for (const char* text : {"", "EN", "\"EN", "\"END", "ENDE", "\"ENDE\"", "\" END\"", "end", ",END", "1"}) {
    const TextFile file(text);
    ItemReader reader(file.Path());
    EXPECT_FALSE(reader.PassText("END")) << text;
    EXPECT_EQ(reader.AtEnd(), *text == 0) << text;
  }
}

}  // namespace
}  // namespace velmor::testing
