#pragma once

#include <string>

namespace velmor {

class Display;

/// Runs the program from the start of the main window to the end of the process and returns the exit status: 0 after a
/// complete run, another value otherwise. `programFolder` has a trailing '/'.
int RunProgram(Display& display, const std::string& programFolder);

}  // namespace velmor
