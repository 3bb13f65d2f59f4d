#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace velmor::models {

/// Coordinates or a direction in space.
using Point = std::array<double, 3>;

/// Directions of NAME.VPL and NAME.KNK in analysis code 3; codes 0 and 1 have the first ones, code 2 has X, Y, RotZ.
enum Direction { X = 1, Y, Z, RotX, RotY, RotZ };

/// A material of NAME.MLT by its fields 1 to 12 and its spring matrix.
struct Material {
  double E = 0, nu = 0, density = 0;
  double area = 0;         // field 4: section area, or thickness
  double planeStrain = 0;  // field 5
  double turn = 0;         // field 6: turn in degrees, or the limit of a gap
  double torsion = 0;      // field 7: torsion constant, or the pre-force of type 17
  double unused = 0;
  double I2 = 0, W2 = 0;  // fields 9 and 10: along the second section axis; field 9 is the offset of type 17
  double I1 = 0, W1 = 0;  // fields 11 and 12: along the first section axis
  std::array<std::array<double, 6>, 6> spring{};
};

/// A model as it is described in code; WriteFamily makes its files. Nodes, elements and materials count from 1.
struct Model {
  struct Element {
    int type;
    std::vector<int> nodes;
    int material = 1;
  };
  struct Support {
    int node, direction;
    double value = 0;
  };
  struct NodalLoad {
    int node, direction;
    double value;
  };
  struct ElementLoad {
    int element, direction;
    double value;
  };
  struct LoadCase {
    std::vector<NodalLoad> nodal;
    std::vector<ElementLoad> onElements;
    int type = 0;
    std::array<double, 5> values{};
  };

  int analysisCode = 3;
  std::vector<Point> nodes;
  std::vector<Element> elements;
  std::vector<Material> materials;
  std::vector<Support> supports;
  std::vector<LoadCase> cases = std::vector<LoadCase>(1);

  int AddNode(double x, double y, double z = 0) {
    nodes.push_back({x, y, z});
    return static_cast<int>(nodes.size());
  }
  int AddElement(int type, std::vector<int> on, int material = 1) {
    elements.push_back({type, std::move(on), material});
    return static_cast<int>(elements.size());
  }
  int AddMaterial(const Material& material) {
    materials.push_back(material);
    return static_cast<int>(materials.size());
  }
  /// Holds the freedoms 1..count of a node.
  void Fix(int node, int count) {
    for (int direction = 1; direction <= count; ++direction) supports.push_back({node, direction});
  }
  void Hold(int node, const std::vector<int>& directions) {
    for (const int direction : directions) supports.push_back({node, direction});
  }
  void Prescribe(int node, int direction, double value) { supports.push_back({node, direction, value}); }
  void Load(int node, int direction, double value, int loadCase = 1) {
    Case(loadCase).nodal.push_back({node, direction, value});
  }
  void LoadElement(int element, int direction, double value, int loadCase = 1) {
    Case(loadCase).onElements.push_back({element, direction, value});
  }
  const Point& At(int node) const { return nodes.at(static_cast<std::size_t>(node - 1)); }
  int NodeCount() const { return static_cast<int>(nodes.size()); }
  int ElementCount() const { return static_cast<int>(elements.size()); }
  /// Freedoms of a node.
  int Freedoms() const { return analysisCode == 3 ? 6 : analysisCode == 1 ? 2 : 3; }

 private:
  LoadCase& Case(int loadCase) {
    if (cases.size() < static_cast<std::size_t>(loadCase)) cases.resize(static_cast<std::size_t>(loadCase));
    return cases.at(static_cast<std::size_t>(loadCase - 1));
  }
};

}  // namespace velmor::models
