#pragma once

#include <string>

#include "base/failure.hpp"
#include "run/display.hpp"

namespace velmor {

/// Exit statuses of the process.
namespace exit_status {
inline constexpr int Complete = 0;
inline constexpr int StartUp = 1;    // control file, or the main window closed without a complete run
inline constexpr int BadInput = 2;   // a file that is missing, cut short or does not fit
inline constexpr int Model = 3;      // the structure has a mechanism
inline constexpr int Resources = 4;  // memory, disk, permissions
}  // namespace exit_status

/// The class of a failure.
int ExitStatusOf(const Failure& failure);

/// The failure of a stage for the display, with what to look at in plain words.
FailureNotice NoticeOf(const std::string& stage, const Failure& failure);

}  // namespace velmor
