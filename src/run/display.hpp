#pragma once

#include <optional>
#include <string>
#include <vector>

#include "run/windows.hpp"

namespace velmor {

/// A failure as the window of its stage shows it, with the description that explains it.
struct FailureNotice {
  std::string stage;
  int number;
  int line;
  std::string description;
  std::string advice = {};  // what to look at
};

/// What a person at the main window asks for.
enum class MainWindowAction { Browse, Options, Run, Close };

/// The screen. The logic sets the windows' data and asks for a refresh; how that looks is the display's affair.
class Display {
 public:
  virtual ~Display() = default;

  /// Shows the window as it stands. Called inside loops over equations: it must cost nothing there.
  virtual void Refresh(const MainWindow& window) = 0;
  virtual void Refresh(const ProgressWindow& window) = 0;
  virtual void Refresh(const StressWindow& window) = 0;

  /// A notice with one button.
  virtual void MessageBox(const std::string& text) = 0;
  /// One line for something that was skipped or left out, without any effect on the run.
  virtual void Warning(const std::string& text) = 0;
  /// The failure that a window shows, together with its description.
  virtual void Explain(const FailureNotice& notice) = 0;

  /// Waits for a person at the main window. Close when nobody can answer any more.
  virtual MainWindowAction WaitForUser(const MainWindow& window) = 0;
  /// The path that a person picks, or nothing.
  virtual std::optional<std::string> OpenFile(const FileDialog& dialog) = 0;
  /// Shows the options window until "Ready"; every click goes through ClickOption.
  virtual void ShowModal(OptionsWindow& window) = 0;
  /// The figures of a complete run, a line each.
  virtual void ShowSummary(const std::vector<std::string>& lines) = 0;
};

}  // namespace velmor
