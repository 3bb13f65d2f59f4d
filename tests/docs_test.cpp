// The examples of the user's pages run as they are printed.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <sstream>

#include "support.hpp"

namespace velmor::testing {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;  // text of each by name

/// The blocks of a page that carry the name of a file, ```name to ```, from the EEM.CTR of a model to the next EEM.CTR.
Files FilesOf(const std::string& page, const std::string& model) {
  Files files;
  std::istringstream text(ReadFile(std::string(VELMOR_DOCS_FOLDER) + "/" + page));
  std::string name, block;
  bool belongs = false;
  for (std::string line; std::getline(text, line);) {
    if (!line.starts_with("```")) {
      block += line + "\n";
      continue;
    }
    if (name == "EEM.CTR") belongs = block.starts_with('"' + model + '"');
    if (belongs && !name.empty()) files[name] = block;
    name = line.substr(3);
    block.clear();
  }
  return files;
}

/// A folder in which an example of the pages has run, as the working folder, without any message, failure or lost line.
/// Its results have the names that a folder looks for.
struct Example : Folder {
  explicit Example(const std::string& model) : files(FilesOf("input-files.md", model)) {
    const fs::path before = fs::current_path();
    fs::current_path(fs::path(File()).parent_path());
    for (const auto& [name, text] : files) WriteFile(name.starts_with(model + ".") ? name : Program(name), text);
    Solve();
    for (const auto& entry : fs::directory_iterator(".")) {
      if (entry.path().stem() == model) fs::rename(entry.path(), File(entry.path().extension()));
    }
    fs::current_path(before);
  }
  const Files files;
};

TEST(Docs, TheShelfStandsAsPrinted) {
  const Example shelf("shelf");
  for (const char* delivered : {"ELTYP.DAT", "PLAT.ELM"}) {
    EXPECT_EQ(shelf.files.at(delivered), ReadFile(std::string(VELMOR_DATA_FOLDER) + "/" + delivered));
  }
  for (const char* extension : {".MAS", ".EMS", ".LES", ".NSR", ".NSL", ".NSA", ".NLA", ".RSA", ".RLA"}) {
    EXPECT_TRUE(shelf.Has(extension)) << extension;
  }
  EXPECT_EQ(shelf.Read(".MAT").size(), 16280u);
  // 0.002 N/mm2 on 400 by 250: what the foot does not carry goes into the wall.
  EXPECT_NEAR(shelf.Reactions().totals.at(0).at(2) - 50 * shelf.Displacements()(1, 5, 3), 200, 1e-5);
}

TEST(Docs, TheChainSwingsAsPrinted) {
  std::istringstream eig(Example("chain").Read(".EIG"));
  std::string head;
  double period = 0;
  EXPECT_TRUE(eig >> head >> period);
  EXPECT_NEAR(1 / period, std::sin(std::numbers::pi / 18) / std::numbers::pi, 1e-6);
}

TEST(Docs, TheBarMeetsTheWallAsPrinted) {
  const Example wall("wall");
  EXPECT_NEAR(wall.Displacements()(1, 2, 1), 1.5, 2e-4);
  const auto lines = wall.Blocks(".LES").at(0);
  EXPECT_NEAR(lines.at(2).at(4), -40, 0.02);
  EXPECT_NEAR(lines.at(4).at(4) * 250, -10000, 5);  // the gap itself
}

}  // namespace
}  // namespace velmor::testing
