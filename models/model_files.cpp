#include "models/model_files.hpp"

#include <charconv>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace velmor::models {
namespace {

/// A text file in the making, its items parted by blanks and commas in turn, as both must be read.
class Text {
 public:
  Text() { text_.precision(17); }
  template <typename... Items>
  Text& Line(const Items&... items) {
    const char* separator = "";
    ((text_ << std::exchange(separator, comma_ ? "," : " ") << items), ...);
    text_ << "\n";
    comma_ = !comma_;
    return *this;
  }
  template <typename List>
  Text& ListLine(const List& list) {
    for (const auto& item : list) text_ << item << " ";
    text_ << "\n";
    return *this;
  }
  void Save(const std::string& path) const { WriteText(path, text_.str()); }

 private:
  std::ostringstream text_;
  bool comma_ = false;
};

void WriteModel(const Model& model, const std::string& name) {
  Text tek;
  tek.Line(model.NodeCount(), model.ElementCount());
  for (const auto& [x, y, z] : model.nodes) tek.Line(x, y, z);
  for (const auto& element : model.elements) tek.Line(element.type).ListLine(element.nodes).Line(element.material);
  tek.Save(name + ".TEK");
}

void WriteMaterials(const Model& model, const std::string& name) {
  Text mlt;
  mlt.Line(model.materials.size());
  for (const Material& m : model.materials) {
    mlt.Line("\"a material\"", m.E, m.nu, m.density, m.area, m.planeStrain, m.turn);
    mlt.Line(m.torsion, m.unused, m.I2, m.W2, m.I1, m.W1);
  }
  for (const Material& m : model.materials) {
    for (const auto& row : m.spring) mlt.ListLine(row);
  }
  mlt.Save(name + ".MLT");
}

void WriteSupports(const Model& model, const std::string& name) {
  Text vpl;
  vpl.Line(model.supports.size());
  for (const auto& support : model.supports) vpl.Line(support.node, support.direction, support.value);
  vpl.Save(name + ".VPL");
}

void WriteLoads(const Model& model, const std::string& name) {
  Text lcd, knk, ell;
  lcd.Line(model.cases.size());
  for (const auto& loadCase : model.cases) {
    lcd.Line("\"load case\"", loadCase.type).ListLine(loadCase.values);
    knk.Line(loadCase.nodal.size());
    for (const auto& load : loadCase.nodal) knk.Line(load.node, load.direction, load.value);
    ell.Line(loadCase.onElements.size());
    for (const auto& load : loadCase.onElements) ell.Line(load.element, load.direction, load.value);
  }
  lcd.Save(name + ".lcd");
  knk.Save(name + ".KNK");
  ell.Save(name + ".ell");
}

void WriteTurns(const Model& model, const std::string& name) {
  Text rot;
  for (const auto& element : model.elements) {
    const int records = element.type == 13 ? 4 : 1;
    for (int record = 1; record <= records; ++record) rot.Line(0);
  }
  rot.Save(name + ".rot");
}

std::vector<double> NumbersOf(const std::string& line) {
  std::vector<double> numbers;
  const char* const end = line.data() + line.size();
  for (const char* at = line.data(); at != end;) {
    double number = 0;
    const auto [next, error] = std::from_chars(at, end, number);
    if (error == std::errc()) numbers.push_back(number);
    at = error == std::errc() ? next : at + 1;  // commas and blanks
  }
  return numbers;
}

}  // namespace

void WriteFamily(const Model& model, const std::string& name) {
  WriteModel(model, name);
  WriteMaterials(model, name);
  WriteSupports(model, name);
  WriteLoads(model, name);
  WriteTurns(model, name);
}

std::vector<std::vector<std::vector<double>>> ReadBlocks(const std::string& path) {
  std::vector<std::vector<std::vector<double>>> blocks(1);
  std::istringstream text(ReadText(path));
  for (std::string line; std::getline(text, line);) {
    if (line == "\"END\"") {
      blocks.emplace_back();
    } else {
      blocks.back().push_back(NumbersOf(line));
    }
  }
  return blocks;
}

std::string ReadText(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace velmor::models
