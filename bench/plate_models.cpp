#include "plate_models.hpp"

#include <fstream>
#include <vector>

#include "models/model_files.hpp"

namespace velmor::bench {
namespace {

/// Nodes with their coordinates: action(node, x, y, isOnEdge).
template <typename Action>
void ForEachNode(const PlateModel& plate, Action action) {
  int node = 0;
  for (int row = 0; row <= plate.elements; ++row) {
    for (int column = 0; column <= plate.elements; ++column) {
      const bool isOnEdge = row % plate.elements == 0 || column % plate.elements == 0;
      const double step = PlateModel::Side / plate.elements;
      action(++node, column * step, row * step, isOnEdge);
    }
  }
}

/// Elements with their corners in turn: action(element, nodes).
template <typename Action>
void ForEachElement(const PlateModel& plate, Action action) {
  int element = 0;
  for (int row = 0; row < plate.elements; ++row) {
    for (int column = 1; column <= plate.elements; ++column) {
      const int first = row * plate.Line() + column, above = first + plate.Line();
      action(++element, std::vector{first, first + 1, above + 1, above});
    }
  }
}

}  // namespace

double NavierDeflection() {
  constexpr double t = PlateModel::Thickness, a = PlateModel::Side, nu = PlateModel::Nu;
  constexpr double D = PlateModel::E * t * t * t / (12 * (1 - nu * nu));
  return 0.00406235 * PlateModel::Pressure * a * a * a * a / D;
}

void WriteModelFamily(const PlateModel& plate, const std::string& name) {
  models::Model model;
  ForEachNode(plate, [&](int node, double x, double y, bool isOnEdge) {
    model.AddNode(x, y);
    if (isOnEdge) model.Hold(node, {models::Z});
  });
  model.Hold(1, {models::X, models::Y});
  model.Hold(plate.Line(), {models::Y});
  ForEachElement(plate, [&](int element, const std::vector<int>& nodes) {
    model.AddElement(9, nodes);
    model.LoadElement(element, 3, -PlateModel::Pressure);
  });
  model.AddMaterial({.E = PlateModel::E, .nu = PlateModel::Nu, .density = 7850, .area = PlateModel::Thickness});
  models::WriteFamily(model, name);
}

void WriteInputDeck(const PlateModel& plate, const std::string& name, const std::string& elementType) {
  std::ofstream deck(name + ".inp");
  std::string edge;
  deck << "*NODE,NSET=ALL\n";
  ForEachNode(plate, [&](int node, double x, double y, bool isOnEdge) {
    deck << node << ',' << x << ',' << y << ",0\n";
    if (isOnEdge) edge += std::to_string(node) + "\n";
  });
  deck << "*ELEMENT,TYPE=" << elementType << ",ELSET=PLATE\n";
  ForEachElement(plate, [&](int element, const std::vector<int>& nodes) {
    deck << element << ',' << nodes[0] << ',' << nodes[1] << ',' << nodes[2] << ',' << nodes[3] << '\n';
  });
  deck << "*NSET,NSET=EDGE\n" << edge << "*NSET,NSET=CENTRE\n" << plate.Centre() << '\n';
  deck << "*MATERIAL,NAME=STEEL\n*ELASTIC\n" << PlateModel::E << ',' << PlateModel::Nu << '\n';
  deck << "*SHELL SECTION,ELSET=PLATE,MATERIAL=STEEL\n" << PlateModel::Thickness << '\n';
  deck << "*BOUNDARY\nEDGE,3,3\n1,1,2\n" << plate.Line() << ",2,2\n";
  deck << "*STEP\n*STATIC\n*DLOAD\nPLATE,P," << -PlateModel::Pressure << '\n';
  deck << "*NODE FILE,OUTPUT=2D\nU,RF\n*EL FILE\nS\n*NODE PRINT,NSET=CENTRE\nU\n*END STEP\n";
}

}  // namespace velmor::bench
