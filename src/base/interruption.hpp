#pragma once

namespace velmor {

/// From now on SIGINT, SIGTERM and the SIGHUP of a closed terminal are noted instead of ending the process, so that a
/// run can end cleanly.
void WatchSignals();

/// The signal that was noted, or 0.
int CaughtSignal();

/// Thrown where a run looks for a signal and finds one; ends the program.
struct Interrupted {
  int signal;
};
void ThrowIfInterrupted();

}  // namespace velmor
