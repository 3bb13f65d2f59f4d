#pragma once

#include "patterns.hpp"

namespace velmor::bench {

// OpenBLAS with one thread, where it is installed. Every function returns 0 where it is not.

/// Processor time of dpbtrf and dpbtrs for the system of a pattern, every load 1.
double PeerSeconds(const Pattern& pattern, int loadCases);

/// GFLOP/s of one dgemm of 1024 by 1024 matrices.
double MultiplicationRate();

/// The kernel that the library has chosen for this processor.
const char* PeerName();

}  // namespace velmor::bench
