#pragma once

#include <span>

#include "run/control_file.hpp"
#include "run/windows.hpp"

namespace velmor {

/// The boxes of the options window that a person can click.
enum class OptionsBox {
  CompileStiffness,  // Check1 0
  Solve,             // Check1 1
  Eigen,             // Check1 2
  TwoDimensional,    // Option1 0
  ThreeDimensional,  // Option1 1
  ClearMemory,       // Check4
  Renumber,          // Check2 0
  Mass,              // Check2 1
  LineStress,        // Check3 1
  FEStress,          // Check3 2
};

/// The boxes with their frames, in the order of the window.
struct OptionsEntry {
  std::string_view frame;
  OptionsBox box;
};
std::span<const OptionsEntry> OptionsEntries();
Box& BoxOf(OptionsWindow& window, OptionsBox box);

/// The options as the window shows them when it opens: boxes from the flags, and no renumbering where there is no
/// stiffness matrix or no solution.
void OpenOptions(OptionsWindow& window, const AnalysisFlags& flags, int twoDimensional);

/// What the Options button of a manual start takes away: memory is not cleared, nodes are not renumbered.
void RestrictOptions(OptionsWindow& window);

/// A click: changes the box and keeps the others consistent with it. Nothing happens to a box that is disabled or
/// invisible. An eigen analysis runs without a static solution and without stresses; renumbering needs both the
/// stiffness matrix and the solution.
void ClickOption(OptionsWindow& window, OptionsBox box);

/// "Ready": the boxes become the flags of the run.
void TakeOptions(const OptionsWindow& window, AnalysisFlags& flags, int& twoDimensional);

}  // namespace velmor
