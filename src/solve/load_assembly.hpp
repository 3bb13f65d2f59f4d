#pragma once

namespace velmor {

struct Run;

/// Fills LoadTable for all load cases: element loads of NAME.ell first, then, load case by load case, the nodal loads
/// of NAME.KNK and the acceleration of the case. An error on the way ends the assembly with what stands in the table;
/// the display warns of it and of every line that is skipped. LoadTable is allocated, loadCases are read.
void AssembleLoads(Run& run);

}  // namespace velmor
