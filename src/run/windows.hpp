#pragma once

#include <array>
#include <string>
#include <string_view>

namespace velmor {

// The windows as plain data: a window is its named controls. Stages set them; a Display shows them.

struct Label {
  std::string caption;
  bool visible = true;
};

struct TextBox {
  std::string text;
  bool visible = true;
};

struct Button {
  std::string_view caption;
  bool visible = true;
};

/// The file-open dialog: filters as pairs of text and pattern, parted by '|'; the index counts pairs from 1.
struct FileDialog {
  std::string_view filter;
  int filterIndex = 1;
};

/// A check box (0 or 1) or an option button (the same) of the options window.
struct Box {
  std::string_view text;
  int value = 0;
  bool visible = true;
  bool enabled = true;
};

/// The modal window "Analysis Options". Boxes of a control array keep their index; Check3 has none at 0.
struct OptionsWindow {
  std::string_view caption = "Analysis Options";
  Label Frame1{"Solver"}, Frame2{"General"}, Frame3{"Pre-processor"}, Frame4{"Post-Processor"};
  std::array<Box, 3> Check1{{{"Compile Stiffness Matrix"},
                             {"Solve Displacements and Reaction forces"},
                             {"Solve Eigen Modes and frequencies"}}};
  std::array<Box, 2> Option1{{{"2-D analysis (Only X and Y dimensions included)"}, {"3-D analysis"}}};
  Box Check4{"Clear memory before analysis"};
  std::array<Box, 2> Check2{{{"Renumber model Nodes"}, {"Generate element mass matrix"}}};
  std::array<Box, 3> Check3{
      {{"", 0, false, false}, {"Calculate Line Element stresses"}, {"Calculate Finite Element stresses"}}};
  Button Command1{"Ready"};
};

/// Main window: the Kol stage, and the manual path (Browse, Options, Run) of a start without control file.
struct MainWindow {
  std::string caption;
  Label Frame1;                                // running stage, such as "Kol 2.1"
  Label Label6;                                // status line
  Label Label7;                                // progress, such as "50 %"
  Label Label1{"Processed"};                   // beside Label7
  Label Label5{"Model name :"};                // beside Text4
  TextBox Text4{"none"};                       // model path
  Label Label4{"Degrees of Freedom ="};        // beside Text5
  TextBox Text5;                               // dof per node
  Label Label2{"", false}, Label3{"", false};  // beside Text2 and Text3
  TextBox Text2{"", false}, Text3{"", false};  // error number and error line
  Button Command1{"Run", false}, Command2{"Options", false}, Command3{"Browse", false};
  FileDialog CMDialog1{"All Files (*.*)|*.*|FE Model (*.tek)|*.tek|Batch Files (*.bat)|*.bat", 2};
};

/// Progress window of the EEM, Mass, Freq, Sys, Nodal Force and Non-Linear stages.
struct ProgressWindow {
  static constexpr std::string_view EquationsText = " No. Equations";  // beside Text2
  static constexpr std::string_view BandwidthText = "Bandwidth";       // beside Text3
  static constexpr std::string_view MatrixSizeText = "Matrix Size";    // beside Text4
  std::string caption;
  Label Frame1;  // running stage, such as "EEM 3.1"
  Label Label7;  // status line
  Label Label8;  // progress
  TextBox Text2, Text3, Text4;
  Label Label5{"", false}, Label6{"", false};  // beside Text5 and Text6
  TextBox Text5{"", false}, Text6{"", false};  // error number and error line
};

/// Progress window of the stress stages.
struct StressWindow {
  static constexpr std::string_view ElementStressesText = "Element Stresses";  // beside Label6
  static constexpr std::string_view NodalStressesText = "Nodal Stresses";      // beside Label7
  static constexpr std::string_view NodalAveragesText = "Nodal Averages";      // over Label8 and Label9
  static constexpr std::string_view GroupText = "Group No:";                   // beside Label8
  static constexpr std::string_view NodeText = "Node id:";                     // beside Label9
  std::string caption = "NSA 2.3";
  Label Frame1{"Stress Calculation"};  // then the running stage, such as "Nodal Stress 2.1"
  Label Label6, Label7, Label8, Label9;
  Label Label10{"", false}, Label11{"", false};  // beside Text3 and Text2
  TextBox Text2{"", false}, Text3{"", false};    // error line and error number
};

inline void HideFailure(MainWindow& window) {
  window.Label2.visible = window.Label3.visible = window.Text2.visible = window.Text3.visible = false;
}

inline void HideFailure(ProgressWindow& window) {
  window.Label5.visible = window.Label6.visible = window.Text5.visible = window.Text6.visible = false;
}

/// A whole number of percents as the windows show it: "50 %".
inline std::string PercentText(double percent) { return std::to_string(static_cast<int>(percent)) + " %"; }

/// "50 %": the whole part of 100 times part by whole; "0 %" if there is nothing to do.
inline std::string Percent(double part, double whole) { return PercentText(whole > 0 ? part / whole * 100 : 0); }

}  // namespace velmor
