#pragma once

#include <chrono>
#include <cstdio>
#include <string>

#include "run/display.hpp"

namespace velmor {

/// The display of the program: progress on standard output, as one live line per stage and status on a terminal and one
/// plain line elsewhere; message boxes and warnings as lines on standard error; the main window's buttons as commands
/// on standard input.
class ConsoleDisplay : public Display {
 public:
  ConsoleDisplay();
  ~ConsoleDisplay() override;

  void Refresh(const MainWindow& window) override;
  void Refresh(const ProgressWindow& window) override;
  void Refresh(const StressWindow& window) override;
  void MessageBox(const std::string& text) override;
  void Warning(const std::string& text) override;
  void Explain(const FailureNotice& notice) override;
  MainWindowAction WaitForUser(const MainWindow& window) override;
  std::optional<std::string> OpenFile(const FileDialog& dialog) override;
  void ShowModal(OptionsWindow& window) override;
  void ShowSummary(const std::vector<std::string>& lines) override;

 private:
  void ShowProgress(const std::string& stage, const std::string& status, const std::string& progress);
  void EndLiveLine();
  /// A line of standard input without the blanks around it; nothing at its end.
  std::optional<std::string> Ask(const std::string& question);
  void Notice(const std::string& line);

  bool live_;  // standard output is a terminal
  bool lineOpen_ = false;
  std::string stage_, status_;  // as last shown
  std::chrono::steady_clock::time_point stageStart_{}, nextUpdate_{};
  int answers_ = 0;       // taken from standard input
  std::string argument_;  // what stood behind a command
};

}  // namespace velmor
