#pragma once

namespace velmor {

struct Run;

// The run on one page: every stage in run order. A stage has no arguments and no result beyond the run; files
// carry what it leaves. What runs when is settled in run/run_controller.cpp.

void RunKolStage(Run& run);            // "Kol 2.1": NAME.TEK to NAME.DAT, model tables, gap flag
void RunStiffnessStage(Run& run);      // "EEM 3.1": NAME.DAT, NAME.MLT to GlobalBand and NAME.MAT
void RunMassStage(Run& run);           // "Mass 1.0": NAME.DAT, NAME.MLT to MassVector, NAME.MAS, NAME.EMS
void RunEigenStage(Run& run);          // "Freq 1.0": NAME.MAT and masses to NAME.EIG
void RunGapStage(Run& run);            // "Non-Linear 1.0": Sys once per pass until the gaps settle
void RunSysStage(Run& run);            // "Sys 2.4": loads, supports, elimination, NAME.RVP
void RunNodalForceStage(Run& run);     // "Nodal Force 1.0": NAME.MAT and displacements to NAME.KRT
void RunLineStressStage(Run& run);     // "Line Element stress 3.1": NAME.LES
void RunNodalStressStage(Run& run);    // "Nodal Stress 2.1": NAME.NSR, NAME.NSL
void RunStressAverageStage(Run& run);  // "Nodal Stress Average 3.0": NAME.NSA, NAME.NLA, NAME.RSA, NAME.RLA

}  // namespace velmor
