#pragma once

#include <string>
#include <utility>

#include "base/table.hpp"
#include "elements/band_matrix.hpp"
#include "elements/element_work.hpp"
#include "elements/materials.hpp"
#include "model/model_sizes.hpp"
#include "model/model_tables.hpp"
#include "results/displacements.hpp"
#include "run/control_file.hpp"
#include "run/display.hpp"
#include "run/model_warnings.hpp"
#include "run/run_report.hpp"
#include "run/windows.hpp"
#include "run/working_space.hpp"
#include "solve/load_cases.hpp"

namespace velmor {

/// What a run keeps from stage to stage, apart from the screen. Start-up makes it anew.
struct RunState {
  // Set by start-up.
  double pi = 3.14159265358979;     // for all stages; the eigen stage leaves a shorter one
  ModelSizeValues modelSizeValues;  // decmem.DAT
  bool stopFlag = false;            // the Kol stage gave up or found no control file
  bool gapFlag = false;             // the Kol stage met a gap: the Non-Linear stage solves
  int GapPass = 0;                  // set by the Non-Linear stage
  double GapChange = 0;             // set by CompareDisplacements in the Sys stage, for the Non-Linear stage
  AnalysisFlags flags;              // from EEM.CTR by every stage; the Eigen flag by the EEM stage alone
  int twoDimensional = 0;           // 2-D option of the analysis options

  // From EEM.CTR and the head of NAME.DAT, read again by every stage.
  std::string modelName;
  int analysisCode = 0;
  int DofPerNode = 0;
  ModelSizes sizes;

  ModelTables model;      // filled by the Kol stage
  Materials materials;    // by the EEM, Mass, Non-Linear and stress stages; element loads read field 6
  ElementWork work;       // one element at a time
  BandMatrix GlobalBand;  // filled by the EEM stage, used up by the Sys stage; Nodal Force loads it again
  Column MassVector;      // 0..EquationBound; zeros from the EEM stage, masses from the Mass stage
  LoadCases loadCases;    // from NAME.lcd by the Sys stage
  int LoadCaseCount = 0;  // from NAME.lcd by the Sys stage and by the load routine of the stress window
  Grid LoadTable;         // load case by equation: loads, then displacements, left by the Sys stage
  Finding weakPivots;     // of the last elimination of the Sys stage (model_warnings.hpp)
  RunReport report;       // figures for the end of the run, from every stage
  int exitStatus = 0;     // of the process, by a stage that failed where the run goes on (failure_answer.hpp)

  // From NAME.RVP by the first stress stage of the run that needs them.
  DisplacementTable displacements;
};

/// A run: its state, its windows and the display that shows them. Nothing else outlives a stage.
struct Run : RunState {
  Run(Display& screen, std::string folder) : display(screen), programFolder(std::move(folder)) {}

  Display& display;
  std::string programFolder;  // with a trailing '/'; holds EEM.CTR, ELTYP.DAT, decmem.DAT, PLAT.ELM
  MainWindow form1;
  ProgressWindow form2;
  StressWindow nsa;

  /// The model path plus an extension, spelled as the stage spells it.
  std::string File(const char* extension) const { return modelName + extension; }
};

}  // namespace velmor
