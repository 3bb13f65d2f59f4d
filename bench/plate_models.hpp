#pragma once

#include <string>

namespace velmor::bench {

/// A square plate, simply supported along its edges and uniformly loaded, of N x N equal four-node elements, for our
/// program and for CalculiX. Newtons and metres.
struct PlateModel {
  static constexpr double Side = 10, Thickness = 0.05, E = 2e11, Nu = 0.3, Pressure = 1000;
  int elements;

  int Line() const { return elements + 1; }  // nodes in a line; numbered line by line from 1
  int Nodes() const { return Line() * Line(); }
  int Centre() const { return (Nodes() + 1) / 2; }
};

/// Deflection of the centre of the thin plate: 0.00406235 q a^4 / D for a Poisson's ratio of 0.3.
/// Source: Timoshenko, Woinowsky-Krieger, Theory of Plates and Shells, 2nd ed., article 30 (Navier's series).
double NavierDeflection();

/// The file family of NAME, with shells of type 9 in space; all files of a run but the control file.
void WriteModelFamily(const PlateModel& plate, const std::string& name);

/// NAME.inp with shell elements of a type such as S4. Displacements, reactions and stresses go to a result file, and
/// the centre's displacements to NAME.dat.
void WriteInputDeck(const PlateModel& plate, const std::string& name, const std::string& elementType);

}  // namespace velmor::bench
