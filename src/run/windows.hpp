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
  Label Label2, Label3;                        // beside Text2 and Text3, with their texts after a failure
  TextBox Text2{"", false}, Text3{"", false};  // error number and error line
  Button Command1{"Run", false}, Command2{"Options", false}, Command3{"Browse", false};
  FileDialog CMDialog1{"All Files (*.*)|*.*|FE Model (*.tek)|*.tek|Batch Files (*.bat)|*.bat", 2};
};

/// Progress window of the EEM, Mass, Freq, Sys, Nodal Force and Non-Linear stages.
struct ProgressWindow {
  std::string caption;
  Label Frame1;                                // running stage, such as "EEM 3.1"
  Label Label7;                                // status line
  Label Label8;                                // progress
  TextBox Text2, Text3, Text4;                 // beside " No. Equations", "Bandwidth", "Matrix Size"
  Label Label5, Label6;                        // beside Text5 and Text6, with their texts after a failure
  TextBox Text5{"", false}, Text6{"", false};  // error number and error line
};

/// Progress window of the stress stages.
struct StressWindow {
  std::string caption = "NSA 2.3";
  std::string frame = "Stress Calculation";
  Label Frame1;                                // running stage, such as "Nodal Stress 2.1"
  Label Label6;                                // beside "Element Stresses"
  Label Label7;                                // beside "Nodal Stresses"
  Label Label8, Label9;                        // beside "Group No:" and "Node id:", under "Nodal Averages"
  Label Label10, Label11;                      // beside Text3 and Text2, with their texts after a failure
  TextBox Text2{"", false}, Text3{"", false};  // error line and error number
};

/// "50 %": the whole part of 100 times part by whole; "0 %" if there is nothing to do.
inline std::string Percent(double part, double whole) {
  return std::to_string(whole > 0 ? static_cast<int>(part / whole * 100) : 0) + " %";
}

}  // namespace velmor
