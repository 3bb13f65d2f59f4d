#pragma once

#include <source_location>
#include <string>

namespace velmor {

/// The flags of a run. A flag is on for the value 1 alone.
struct AnalysisFlags {
  int EigenFlag = 0;             // "Solve Eigen Modes and frequencies"
  int MassFlag = 1;              // "Generate element mass matrix"
  int RenumberFlag = 0;          // "Renumber model Nodes"; carried along, nothing acts on it
  int CompileStiffnessFlag = 1;  // "Compile Stiffness Matrix"
  int SolveFlag = 1;             // "Solve Displacements and Reaction forces"
  int LineStressFlag = 1;        // "Calculate Line Element stresses"
  int FEStressFlag = 1;          // "Calculate Finite Element stresses"
};

constexpr bool IsOn(int flag) { return flag == 1; }

/// True where the Kol stage reads the whole model; otherwise the files of an earlier run serve.
constexpr bool PreparesModel(const AnalysisFlags& flags) {
  return IsOn(flags.CompileStiffnessFlag) || IsOn(flags.MassFlag);
}

/// EEM.CTR in the program folder: the model path without extension, then eight numbers.
struct ControlFile {
  std::string modelName;
  int analysisCode = 0;
  AnalysisFlags flags;
};

inline constexpr const char* ControlFileName = "EEM.CTR";

/// Reads the nine items. Any failure has Cause::ControlFile; its number is 53 or 75 if the file cannot be opened.
ControlFile ReadControlFile(const std::string& programFolder,
                            std::source_location where = std::source_location::current());

/// Writes the two lines.
void WriteControlFile(const std::string& programFolder, const ControlFile& control);

}  // namespace velmor
