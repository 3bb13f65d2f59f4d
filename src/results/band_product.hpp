#pragma once

#include "base/table.hpp"
#include "elements/band_matrix.hpp"
#include "solve/band_solver.hpp"

namespace velmor {

/// product = K u over the first `equations` rows of a symmetric upper band, for all load cases (u(c, e), c from 1) in
/// one sweep over the band that reads each row up to its height: an entry serves its own row and, by symmetry, its
/// mirror image. u and product have the same bounds; product is zero before.
void MultiplyBand(const BandMatrix& K, const Grid& u, Grid& product, int equations, const RowProgress& progress);

}  // namespace velmor
