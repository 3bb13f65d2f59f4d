#include "run/console_display.hpp"

#include <unistd.h>

#include <iostream>

namespace velmor {
namespace {

constexpr std::chrono::milliseconds UpdateInterval{50};

}  // namespace

ConsoleDisplay::ConsoleDisplay() : live_(::isatty(STDOUT_FILENO) == 1) {}

ConsoleDisplay::~ConsoleDisplay() { EndLiveLine(); }

void ConsoleDisplay::EndLiveLine() {
  if (lineOpen_) std::fputc('\n', stdout);
  lineOpen_ = false;
  std::fflush(stdout);
}

/// A new stage or status is always shown, progress within it on a terminal alone and only now and then.
void ConsoleDisplay::ShowProgress(const std::string& stage, const std::string& status, const std::string& progress) {
  if (stage.empty()) return;
  const bool changed = stage != stage_ || status != status_;
  if (!changed && !live_) return;
  const auto now = std::chrono::steady_clock::now();
  if (!changed && now < nextUpdate_) return;
  nextUpdate_ = now + UpdateInterval;
  if (changed) {
    EndLiveLine();
    stage_ = stage;
    status_ = status;
  }
  const std::string line = stage + (status.empty() ? "" : ": " + status);
  if (live_) {
    std::printf("\r%s  %s\x1b[K", line.c_str(), progress.c_str());
    std::fflush(stdout);
    lineOpen_ = true;
  } else {
    std::printf("%s\n", line.c_str());
  }
}

void ConsoleDisplay::Refresh(const MainWindow& window) {
  ShowProgress(window.Frame1.caption, window.Label6.caption, window.Label7.caption);
}

void ConsoleDisplay::Refresh(const ProgressWindow& window) {
  ShowProgress(window.Frame1.caption, window.Label7.caption, window.Label8.caption);
}

void ConsoleDisplay::Refresh(const StressWindow& window) {
  const std::string& progress = window.Label7.caption.empty() ? window.Label6.caption : window.Label7.caption;
  ShowProgress(window.Frame1.caption, "", progress);
}

void ConsoleDisplay::Notice(const std::string& line) {
  EndLiveLine();
  std::fprintf(stderr, "%s\n", line.c_str());
}

void ConsoleDisplay::MessageBox(const std::string& text) { Notice(text); }

void ConsoleDisplay::Warning(const std::string& text) {
  if (warned_.insert(text).second) Notice("warning: " + text);
}

void ConsoleDisplay::Explain(const FailureNotice& notice) {
  Notice(notice.stage + ": Error No. " + std::to_string(notice.number) + ", Error line " + std::to_string(notice.line) +
         ": " + notice.description);
}

MainWindowAction ConsoleDisplay::WaitForUser(const MainWindow& window) {
  EndLiveLine();
  std::printf("%s\n%s %s\nBrowse PATH, Options, Run or Quit? ", window.caption.c_str(), window.Label5.caption.c_str(),
              window.Text4.text.c_str());
  std::fflush(stdout);
  for (std::string line; std::getline(std::cin, line);) {
    const auto start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos) continue;
    const auto stop = line.find_first_of(" \t\r", start);
    std::string command = line.substr(start, stop - start);
    for (char& c : command) c = 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    const auto rest = stop == std::string::npos ? stop : line.find_first_not_of(" \t\r", stop);
    argument_ = rest == std::string::npos ? "" : line.substr(rest, line.find_last_not_of(" \t\r") - rest + 1);
    if (command == "browse") return MainWindowAction::Browse;
    if (command == "options") return MainWindowAction::Options;
    if (command == "run") return MainWindowAction::Run;
    if (command == "quit") return MainWindowAction::Close;
    std::printf("Browse PATH, Options, Run or Quit? ");
    std::fflush(stdout);
  }
  std::printf("\n");
  return MainWindowAction::Close;
}

std::optional<std::string> ConsoleDisplay::OpenFile(const FileDialog&) {
  if (!argument_.empty()) return argument_;
  std::printf("Model file (*.tek): ");
  std::fflush(stdout);
  std::string line;
  if (!std::getline(std::cin, line) || line.empty()) return std::nullopt;
  return line;
}

}  // namespace velmor
