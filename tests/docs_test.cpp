// The examples of the user's pages run as they are printed.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <sstream>

#include "support.hpp"

namespace velmor::testing {
namespace {

/// The blocks of a page that carry the name of a file, ```name to ```: the text of each file by model and name. A model
/// begins with its EEM.CTR.
std::map<std::string, std::map<std::string, std::string>> ExamplesOf(const std::string& page) {
  std::map<std::string, std::map<std::string, std::string>> files;
  std::istringstream text(ReadText(std::string(VELMOR_DOCS_FOLDER) + "/" + page));
  std::string name, block, control;
  for (std::string line; std::getline(text, line);) {
    if (!line.starts_with("```")) {
      block += line + "\n";
      continue;
    }
    if (name == "EEM.CTR") control = block;
    if (!name.empty()) files[control.substr(1, control.find('"', 1) - 1)][name] = block;
    name = line.substr(3);
    block.clear();
  }
  return files;
}

/// A folder with the examples of a page, as the working folder while it lives.
struct Page : Folder {
  explicit Page(const std::string& page) : examples(ExamplesOf(page)) {
    std::filesystem::current_path(std::filesystem::path(Program()).parent_path().parent_path());
  }
  ~Page() { std::filesystem::current_path(before); }
  /// Runs one example; fails the test on any message, failure or lost line.
  std::vector<std::string> RunExample(const std::string& model) {
    for (const auto& [name, text] : examples.at(model)) {
      WriteText(name.starts_with(model + ".") ? name : Program(name), text);
    }
    return Solve();
  }
  const std::filesystem::path before = std::filesystem::current_path();
  const std::map<std::string, std::map<std::string, std::string>> examples;
};

std::vector<double> Numbers(const std::string& path) {
  std::istringstream text(ReadText(path));
  std::vector<double> numbers;
  for (std::string item; std::getline(text, item);) numbers.push_back(std::strtod(item.c_str(), nullptr));
  return numbers;
}

TEST(Docs, TheShelfStandsAsPrinted) {
  Page page("input-files.md");
  for (const char* delivered : {"ELTYP.DAT", "PLAT.ELM"}) {
    EXPECT_EQ(page.examples.at("shelf").at(delivered), ReadText(std::string(VELMOR_DATA_FOLDER) + "/" + delivered));
  }
  page.RunExample("shelf");
  for (const char* extension :
       {"DAT", "MAT", "MAS", "EMS", "RVP", "KRT", "LES", "NSR", "NSL", "NSA", "NLA", "RSA", "RLA"}) {
    EXPECT_TRUE(std::filesystem::exists(std::string("shelf.") + extension)) << extension;
  }
  EXPECT_EQ(std::filesystem::file_size("shelf.MAT"), 16280u);
  // 0.002 N/mm2 on 400 by 250: what the foot does not carry goes into the wall.
  std::filesystem::rename("shelf.RVP", page.File(".RVP"));
  std::filesystem::rename("shelf.KRT", page.File(".KRT"));
  EXPECT_NEAR(page.Reactions().totals.at(0).at(2) - 50 * page.Displacements()(1, 5, 3), 200, 1e-5);
}

TEST(Docs, TheChainSwingsAsPrinted) {
  Page page("input-files.md");
  page.RunExample("chain");
  const std::vector<double> eig = Numbers("chain.EIG");
  ASSERT_EQ(eig.size(), 1 + 4 * 11u);
  for (std::size_t mode = 1; mode <= 4; ++mode) {
    const double angle = (2 * static_cast<double>(mode) - 1) * std::numbers::pi / 18;
    EXPECT_NEAR(1 / eig[1 + 11 * (mode - 1)], std::sin(angle) / std::numbers::pi, 2e-5);
  }
}

TEST(Docs, TheBarMeetsTheWallAsPrinted) {
  Page page("input-files.md");
  page.RunExample("wall");
  std::filesystem::rename("wall.RVP", page.File(".RVP"));
  EXPECT_NEAR(page.Displacements()(1, 2, 1), 1.5, 2e-4);
  EXPECT_NEAR(page.Displacements()(1, 3, 1), 1.2, 2e-4);
  std::filesystem::rename("wall.LES", page.File(".LES"));
  const auto lines = page.Blocks(".LES").at(0);
  EXPECT_NEAR(lines.at(0).at(4), 200, 0.02);
  EXPECT_NEAR(lines.at(2).at(4), -40, 0.02);
  EXPECT_NEAR(lines.at(4).at(4) * 250, -10000, 5);  // the gap itself
}

}  // namespace
}  // namespace velmor::testing
