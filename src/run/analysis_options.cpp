#include "run/analysis_options.hpp"

#include <array>

namespace velmor {
namespace {

void ClearAndDisable(Box& box) {
  box.value = 0;
  box.enabled = false;
}

bool On(const Box& box) { return box.value == 1; }

// The rules between the boxes. Renumbering is cleared whether or not its box can be seen.

void RenumberOnlyForASolution(OptionsWindow& w) {
  if (On(w.Check1[1]) && !On(w.Check1[0])) ClearAndDisable(w.Check2[0]);
}

void RenumberOnlyForStressesOfASolution(OptionsWindow& w) {
  const bool stresses = On(w.Check3[1]) || On(w.Check3[2]);
  const bool solution = On(w.Check1[0]) && On(w.Check1[1]);
  if (stresses && !solution) ClearAndDisable(w.Check2[0]);
}

void EigenWithoutStatics(OptionsWindow& w) {
  for (Box* box : {&w.Check1[1], &w.Check3[1], &w.Check3[2]}) {
    if (On(w.Check1[2])) {
      ClearAndDisable(*box);
    } else {
      box->enabled = true;
    }
  }
}

void AfterSolverBox(OptionsWindow& w, OptionsBox box) {
  w.Check2[0].enabled = true;
  RenumberOnlyForASolution(w);
  RenumberOnlyForStressesOfASolution(w);
  if (box == OptionsBox::Eigen) EigenWithoutStatics(w);
}

void AfterStressBox(OptionsWindow& w) {
  w.Check2[0].enabled = true;
  RenumberOnlyForStressesOfASolution(w);
  RenumberOnlyForASolution(w);
}

}  // namespace

std::span<const OptionsEntry> OptionsEntries() {
  static constexpr std::array<OptionsEntry, 10> entries{{{"Solver", OptionsBox::CompileStiffness},
                                                         {"Solver", OptionsBox::Solve},
                                                         {"Solver", OptionsBox::Eigen},
                                                         {"General", OptionsBox::TwoDimensional},
                                                         {"General", OptionsBox::ThreeDimensional},
                                                         {"General", OptionsBox::ClearMemory},
                                                         {"Pre-processor", OptionsBox::Renumber},
                                                         {"Pre-processor", OptionsBox::Mass},
                                                         {"Post-Processor", OptionsBox::LineStress},
                                                         {"Post-Processor", OptionsBox::FEStress}}};
  return entries;
}

Box& BoxOf(OptionsWindow& window, OptionsBox box) {
  switch (box) {
    case OptionsBox::CompileStiffness:
      return window.Check1[0];
    case OptionsBox::Solve:
      return window.Check1[1];
    case OptionsBox::Eigen:
      return window.Check1[2];
    case OptionsBox::TwoDimensional:
      return window.Option1[0];
    case OptionsBox::ThreeDimensional:
      return window.Option1[1];
    case OptionsBox::ClearMemory:
      return window.Check4;
    case OptionsBox::Renumber:
      return window.Check2[0];
    case OptionsBox::Mass:
      return window.Check2[1];
    case OptionsBox::LineStress:
      return window.Check3[1];
    case OptionsBox::FEStress:
      break;
  }
  return window.Check3[2];
}

void OpenOptions(OptionsWindow& window, const AnalysisFlags& flags, int twoDimensional) {
  const auto box = [](int flag) { return IsOn(flag) ? 1 : 0; };
  window.Option1[0].value = box(twoDimensional);
  window.Option1[1].value = 1 - box(twoDimensional);
  window.Check2[0].value = box(flags.RenumberFlag);
  window.Check1[0].value = box(flags.CompileStiffnessFlag);
  window.Check1[1].value = box(flags.SolveFlag);
  window.Check1[2].value = box(flags.EigenFlag);
  window.Check3[1].value = box(flags.LineStressFlag);
  window.Check3[2].value = box(flags.FEStressFlag);
  window.Check2[1].value = box(flags.MassFlag);
  window.Check4.value = 0;
  if (!On(window.Check1[0]) || !On(window.Check1[1])) ClearAndDisable(window.Check2[0]);
}

void RestrictOptions(OptionsWindow& window) {
  window.Check4.enabled = false;
  window.Check2[0].visible = false;
}

void ClickOption(OptionsWindow& window, OptionsBox which) {
  Box& box = BoxOf(window, which);
  if (!box.visible || !box.enabled) return;
  switch (which) {
    case OptionsBox::TwoDimensional:
    case OptionsBox::ThreeDimensional:
      for (Box& button : window.Option1) button.value = &button == &box ? 1 : 0;
      return;
    case OptionsBox::ClearMemory:
    case OptionsBox::Renumber:
    case OptionsBox::Mass:
      box.value = 1 - box.value;
      return;
    case OptionsBox::CompileStiffness:
    case OptionsBox::Solve:
    case OptionsBox::Eigen:
      box.value = 1 - box.value;
      return AfterSolverBox(window, which);
    case OptionsBox::LineStress:
    case OptionsBox::FEStress:
      box.value = 1 - box.value;
      return AfterStressBox(window);
  }
}

void TakeOptions(const OptionsWindow& window, AnalysisFlags& flags, int& twoDimensional) {
  twoDimensional = window.Option1[0].value;
  flags.RenumberFlag = window.Check2[0].value;
  flags.CompileStiffnessFlag = window.Check1[0].value;
  flags.SolveFlag = window.Check1[1].value;
  flags.EigenFlag = window.Check1[2].value;
  flags.LineStressFlag = window.Check3[1].value;
  flags.FEStressFlag = window.Check3[2].value;
  flags.MassFlag = window.Check2[1].value;
}

}  // namespace velmor
