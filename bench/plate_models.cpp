#include "plate_models.hpp"

#include <array>
#include <fstream>

#include "base/item_writer.hpp"

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
      action(++element, std::array{first, first + 1, above + 1, above});
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
  const int elements = plate.elements * plate.elements;
  ItemWriter tek(name + ".TEK"), ell(name + ".ell"), rot(name + ".rot"), vpl(name + ".VPL");
  tek.Line(plate.Nodes(), elements);
  vpl.Line(4 * plate.elements + 3);
  ForEachNode(plate, [&](int node, double x, double y, bool isOnEdge) {
    tek.Line(x, y, 0);
    if (isOnEdge) vpl.Line(node, 3, 0);
  });
  for (const auto& [node, direction] : {std::array{1, 1}, {1, 2}, {plate.Line(), 2}}) vpl.Line(node, direction, 0);
  ell.Line(elements);
  ForEachElement(plate, [&](int element, const std::array<int, 4>& nodes) {
    tek.Line(9, nodes[0], nodes[1], nodes[2], nodes[3], 1);
    ell.Line(element, 3, -PlateModel::Pressure);
    rot.Line(0);
  });
  for (ItemWriter* const file : {&tek, &ell, &rot, &vpl}) file->Close();

  std::ofstream(name + ".KNK") << "0\n";
  std::ofstream(name + ".lcd") << "1\n\"load\",0,0,0,0,0,0\n";
  std::ofstream mlt(name + ".MLT");
  mlt << "1\n\"steel\"," << PlateModel::E << ',' << PlateModel::Nu << ",7850," << PlateModel::Thickness;
  mlt << ",0,0,0,0,0,0,0,0\n";
  for (int row = 0; row < 6; ++row) mlt << "0,0,0,0,0,0\n";
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
  ForEachElement(plate, [&](int element, const std::array<int, 4>& nodes) {
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
