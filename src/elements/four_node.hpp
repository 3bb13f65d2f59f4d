#pragma once

#include "base/item_reader.hpp"

namespace velmor {

struct Run;

/// Reads the rest of the record of a four-node element (types 4 to 6 and 8 to 12) and adds the element to GlobalBand:
///
///     type   plate                   membrane
///     4      none                    isoparametric (4)
///     5      none                    incompatible rectangle (5)
///     12     none                    rectangle (12)
///     6      with shear              isoparametric (4)
///     8      polynomial              isoparametric (4)
///     11     table of PLAT.ELM       isoparametric (4)
///     9, 10  hybrid, thin or thick   incompatible rectangle (5)
///
/// A plate comes with a rotational stiffness of 1.0 at each node about the element's normal, whatever the units. Plate
/// and membrane have no terms in common. Failure 11 for a Poisson's ratio of 1 or -1; then an element whose mapping
/// term a1 or b2 is 0 is skipped whole. The other failures are those of the families.
void FourNodeElement(Run& run, ItemReader& dat, int type);

}  // namespace velmor
