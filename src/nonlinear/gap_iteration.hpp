#pragma once

#include <source_location>

namespace velmor {

struct Run;

/// Stiffness factor of a gap after the first pass, from its elongation D, its limit g (a length, field 6 of its
/// material) and its factor of the pass before:
///
///     -D <= g:  -factor D / g    the force that the gap would carry at the shortening g is the one it carries now
///     else:     0                it is shortened beyond its limit
///
/// The iteration comes to rest where a gap is shortened by g and carries what that takes, or where its factor has died
/// out. A gap that is elongated has a negative factor on the way. Failure 11 for -D <= g = 0.
double GapFactor(double D, double g, double factor, std::source_location where = std::source_location::current());

/// Adds the gap elements to GlobalBand, with factor 1 in the first pass and by GapFactor in the later ones, and writes
/// the factors to the element state table and the gaps to NAME.GPD. Displacements come from load case 1 in LoadTable.
/// Every other record is passed over and takes the factor of the gap before it, bars excepted, whose state stays 1.
void GapStiffnessPass(Run& run);

/// Sum of the squared differences in load case 1 between NAME.RVP, which the pass before left, and LoadTable, over all
/// nodes and freedoms, to GapChange.
void CompareDisplacements(Run& run);

/// Counts the gaps, and those short of their limit, for the figures at the end of the run, and warns of each one that
/// ended where no one-sided support can be: shortened beyond its limit, or pulling at it. Changes no result.
void ReportGaps(Run& run);

/// Reads NAME.RVP into LoadTable for all load cases. Failure 9 if there is none.
void ReloadSolution(Run& run);

}  // namespace velmor
