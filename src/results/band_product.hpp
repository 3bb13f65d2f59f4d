#pragma once

#include "elements/band_matrix.hpp"
#include "solve/band_solver.hpp"

namespace velmor {

/// product = K u over the first `equations` rows of a symmetric upper band, in one sweep that reads each row up to its
/// height: an entry serves its own row and, by symmetry, its mirror image. u and product count from 1.
void MultiplyBand(const BandMatrix& K, const double* u, double* product, int equations, const RowProgress& progress);

}  // namespace velmor
