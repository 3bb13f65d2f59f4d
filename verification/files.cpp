#include "files.hpp"

#include <charconv>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace velmor::verification {
namespace {

/// A text file in the making: items of a line with commas between them.
class Text {
 public:
  Text() { text_.precision(17); }
  template <typename... Items>
  Text& Line(const Items&... items) {
    const char* comma = "";
    ((text_ << std::exchange(comma, ",") << items), ...);
    text_ << "\n";
    return *this;
  }
  template <typename List>
  Text& ListLine(const List& list) {
    const char* comma = "";
    for (const auto& item : list) text_ << std::exchange(comma, ",") << item;
    text_ << "\n";
    return *this;
  }
  void Save(const std::string& path) const { WriteText(path, text_.str()); }

 private:
  std::ostringstream text_;
};

bool IsSurface(int type) { return type >= 2 && type <= 13 && type != 7; }

void WriteModel(const Model& model, const std::string& name) {
  Text tek;
  tek.Line(model.NodeCount(), model.ElementCount());
  for (const Point& node : model.nodes) tek.ListLine(node);
  for (const auto& element : model.elements) {
    std::vector<int> items = {element.type};
    items.insert(items.end(), element.nodes.begin(), element.nodes.end());
    items.push_back(element.material);
    tek.ListLine(items);
  }
  tek.Save(name + ".TEK");
}

void WriteMaterials(const Model& model, const std::string& name) {
  Text mlt;
  mlt.Line(model.materials.size());
  for (const Material& m : model.materials) {
    mlt.Line("\"material\"", m.E, m.nu, m.density, m.area, m.planeStrain, m.turn, m.torsion, m.unused, m.I2, m.W2, m.I1,
             m.W1);
  }
  for (const Material& m : model.materials) {
    for (const auto& row : m.spring) mlt.ListLine(row);
  }
  mlt.Save(name + ".MLT");
}

void WriteLoads(const Model& model, const std::string& name) {
  Text lcd, knk, ell;
  lcd.Line(model.cases.size());
  for (const auto& loadCase : model.cases) {
    lcd.Line("\"load case\"", loadCase.type, loadCase.values[0], loadCase.values[1], loadCase.values[2],
             loadCase.values[3], loadCase.values[4]);
    knk.Line(loadCase.nodal.size());
    for (const auto& load : loadCase.nodal) knk.Line(load.at, load.direction, load.value);
    ell.Line(loadCase.onElements.size());
    for (const auto& load : loadCase.onElements) ell.Line(load.at, load.direction, load.value);
  }
  lcd.Save(name + ".lcd");
  knk.Save(name + ".KNK");
  ell.Save(name + ".ell");
}

void WriteSupports(const Model& model, const std::string& name) {
  Text vpl;
  vpl.Line(model.supports.size());
  for (const auto& support : model.supports) vpl.Line(support.node, support.direction, support.value);
  vpl.Save(name + ".VPL");
}

void WriteTurns(const Model& model, const std::string& name) {
  Text rot;
  for (const auto& element : model.elements) {
    for (int record = 0; record < (element.type == 13 ? 4 : 1); ++record) rot.Line(0);
  }
  rot.Save(name + ".rot");
}

}  // namespace

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

std::string ReadText(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteFamily(const Model& model, const std::string& name) {
  WriteModel(model, name);
  WriteMaterials(model, name);
  WriteLoads(model, name);
  WriteSupports(model, name);
  WriteTurns(model, name);
}

void WriteControl(const Model& model, const std::string& name, const std::string& path) {
  bool masses = model.eigen, surfaces = false, lines = false;
  for (const auto& loadCase : model.cases) masses = masses || loadCase.values[4] != 0;
  for (const auto& element : model.elements) {
    surfaces = surfaces || IsSurface(element.type);
    lines = lines || element.type == 1 || element.type == 7 || element.type == 14;
  }
  const bool solve = !model.eigen;
  Text control;
  control.Line("\"" + name + "\"");
  control.Line(model.eigen, masses, model.code, 0, 1, solve, solve && lines && model.lineStresses, solve && surfaces);
  control.Save(path);
}

std::vector<std::vector<std::vector<double>>> ReadBlocks(const std::string& path) {
  std::vector<std::vector<std::vector<double>>> blocks(1);
  std::istringstream text(ReadText(path));
  for (std::string line; std::getline(text, line);) {
    if (line == "\"END\"") {
      blocks.emplace_back();
      continue;
    }
    std::vector<double> numbers;
    const char* const end = line.data() + line.size();
    for (const char* at = line.data(); at != end;) {
      double number = 0;
      const auto [next, error] = std::from_chars(at, end, number);
      if (error == std::errc()) numbers.push_back(number);
      at = error == std::errc() ? next : at + 1;  // commas and blanks
    }
    blocks.back().push_back(std::move(numbers));
  }
  return blocks;
}

}  // namespace velmor::verification
