#include "run/console_display.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "base/file_system.hpp"
#include "base/interruption.hpp"
#include "run/analysis_options.hpp"

namespace velmor {
namespace {

constexpr std::chrono::milliseconds UpdateInterval{50};
// From a pipe; more is no person's input, and an endless pipe must not hold the program.
constexpr int MostAnswers = 1000;
constexpr std::size_t LongestAnswer = 65536;

std::string LowerCase(std::string text) {
  for (char& c : text) c = 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// A line of standard input. False at its end, where the line is longer than any answer, and on a signal.
bool ReadAnswer(std::string& line) {
  line.clear();
  int c = std::getchar();
  for (; c != EOF && c != '\n'; c = std::getchar()) {
    if (line.size() == LongestAnswer) return false;
    line += static_cast<char>(c);
  }
  return c == '\n' || !line.empty();
}

/// Text of a file as one line that no terminal obeys.
std::string Printable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return ('\0' <= c && c < ' ') || c == '\x7f'; }, '?');
  return text;
}

/// The number that a text is, or -1.
int WholeNumber(const std::string& text) {
  int number = -1;
  const char* const end = text.data() + text.size();
  const auto [stop, status] = std::from_chars(text.data(), end, number);
  return status == std::errc() && stop == end ? number : -1;
}

/// Paths of the model files in a folder, in alphabetical order.
std::vector<std::string> ModelsIn(const std::string& folder) {
  std::vector<std::string> models;
  std::error_code ignored;
  for (std::filesystem::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
       entry.increment(ignored)) {
    if (LowerCase(entry->path().extension().string()) == ".tek") models.push_back(entry->path().string());
  }
  std::sort(models.begin(), models.end());
  return models;
}

/// The text of the filter that a dialog begins with: pairs of text and pattern, parted by '|'.
std::string FilterName(const FileDialog& dialog) {
  std::string_view rest = dialog.filter;
  for (int skip = 2 * (dialog.filterIndex - 1); skip > 0; --skip) rest.remove_prefix(rest.find('|') + 1);
  return std::string(rest.substr(0, rest.find('|')));
}

/// Ten cells for a progress text that begins with a number of percents; empty for any other text.
std::string Bar(const std::string& progress) {
  if (progress.find('%') == std::string::npos) return "";
  const int percent = std::clamp(std::atoi(progress.c_str()), 0, 100);
  std::string bar(10, '.');
  std::fill_n(bar.begin(), percent / 10, '#');
  return "[" + bar + "] ";
}

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
    if (stage != stage_) stageStart_ = now;
    stage_ = stage;
    status_ = status;
  }
  const std::string line = stage + (status.empty() ? "" : ": " + status);
  if (live_) {
    const std::chrono::duration<double> elapsed = now - stageStart_;
    std::printf("\r%s %s%s  %.1f s\x1b[K", line.c_str(), Bar(progress).c_str(), progress.c_str(), elapsed.count());
    std::fflush(stdout);
    lineOpen_ = true;
  } else {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
  }
}

void ConsoleDisplay::Refresh(const MainWindow& window) {
  ThrowIfInterrupted();
  ShowProgress(window.Frame1.caption, window.Label6.caption, window.Label7.caption);
}

void ConsoleDisplay::Refresh(const ProgressWindow& window) {
  ThrowIfInterrupted();
  ShowProgress(window.Frame1.caption, window.Label7.caption, window.Label8.caption);
}

void ConsoleDisplay::Refresh(const StressWindow& window) {
  ThrowIfInterrupted();
  const std::string& stage = window.Frame1.caption;
  const auto show = [&](std::string_view status, const std::string& progress) {
    ShowProgress(stage, std::string(status), progress);
  };
  if (stage.starts_with("Line Element")) {
    show(StressWindow::ElementStressesText, window.Label6.caption);
  } else if (!stage.starts_with("Nodal Stress Average")) {
    show(StressWindow::NodalStressesText, window.Label7.caption);
  } else if (live_) {  // the place is put together only where it can be seen
    show(StressWindow::NodalAveragesText, std::string(StressWindow::GroupText) + " " + window.Label8.caption + "  " +
                                              std::string(StressWindow::NodeText) + " " + window.Label9.caption);
  } else {
    show(StressWindow::NodalAveragesText, "");
  }
}

void ConsoleDisplay::Notice(const std::string& line) {
  EndLiveLine();
  std::fprintf(stderr, "%s\n", Printable(line).c_str());
}

void ConsoleDisplay::MessageBox(const std::string& text) { Notice(text); }

void ConsoleDisplay::Warning(const std::string& text) { Notice("warning: " + text); }

void ConsoleDisplay::Explain(const FailureNotice& notice) {
  Notice(notice.stage + ": Error No. " + std::to_string(notice.number) + ", Error line " + std::to_string(notice.line));
  Notice("  " + notice.description);
  if (!notice.advice.empty()) Notice("  " + notice.advice);
}

std::optional<std::string> ConsoleDisplay::Ask(const std::string& question) {
  ThrowIfInterrupted();
  std::printf("%s ", question.c_str());
  std::fflush(stdout);
  std::string line;
  const bool answered = (::isatty(STDIN_FILENO) == 1 || ++answers_ <= MostAnswers) && ReadAnswer(line);
  ThrowIfInterrupted();
  if (!answered) {
    std::printf("\n");
    return std::nullopt;
  }
  return Trimmed(line);
}

MainWindowAction ConsoleDisplay::WaitForUser(const MainWindow& window) {
  EndLiveLine();
  stage_.clear();
  std::printf("\n%s\n%s %s\n", window.caption.c_str(), window.Label5.caption.c_str(), window.Text4.text.c_str());
  while (const auto line = Ask("Browse, Options, Run or Quit?")) {
    const auto end = std::min(line->find_first_of(" \t"), line->size());
    const std::string command = LowerCase(line->substr(0, end));
    argument_ = Trimmed(line->substr(end));
    if (command == "browse" || command == "b") return MainWindowAction::Browse;
    if (command == "options" || command == "o") return MainWindowAction::Options;
    if (command == "run" || command == "r") return MainWindowAction::Run;
    if (command == "quit" || command == "q") return MainWindowAction::Close;
  }
  return MainWindowAction::Close;
}

/// A path given with the command is taken at once; a folder, or no path, brings up a numbered list of its models.
std::optional<std::string> ConsoleDisplay::OpenFile(const FileDialog& dialog) {
  std::string choice = std::exchange(argument_, "");
  std::vector<std::string> models;
  for (;;) {
    if (const auto number = WholeNumber(choice); 1 <= number && number <= static_cast<int>(models.size())) {
      return models[static_cast<std::size_t>(number - 1)];
    }
    std::error_code ignored;
    if (std::filesystem::is_regular_file(FindFile(choice), ignored)) return choice;
    const bool isFolder = std::filesystem::is_directory(choice, ignored);
    if (!choice.empty() && !isFolder) std::printf("There is no file %s\n", choice.c_str());
    models = ModelsIn(isFolder ? choice : ".");
    std::printf("%s\n", FilterName(dialog).c_str());
    for (std::size_t i = 0; i < models.size(); ++i) std::printf("%4zu  %s\n", i + 1, models[i].c_str());
    const auto answer = Ask("Number, path or folder (empty: none)?");
    if (!answer || answer->empty()) return std::nullopt;
    choice = *answer;
  }
}

void ConsoleDisplay::ShowModal(OptionsWindow& window) {
  for (;;) {
    std::printf("\n%s\n", std::string(window.caption).c_str());
    std::vector<OptionsBox> shown;
    std::string_view frame;
    for (const OptionsEntry& entry : OptionsEntries()) {
      const Box& box = BoxOf(window, entry.box);
      if (!box.visible) continue;
      if (entry.frame != frame) std::printf("  %s\n", std::string(entry.frame).c_str());
      frame = entry.frame;
      shown.push_back(entry.box);
      std::printf("%4zu [%c] %s%s\n", shown.size(), box.value == 1 ? 'x' : ' ', std::string(box.text).c_str(),
                  box.enabled ? "" : " (not available)");
    }
    const auto answer = Ask("Number to switch, Ready to go on?");
    if (!answer || LowerCase(*answer) == "ready" || answer->empty()) return;
    const int number = WholeNumber(*answer);
    if (1 <= number && number <= static_cast<int>(shown.size())) {
      ClickOption(window, shown[static_cast<std::size_t>(number - 1)]);
    }
  }
}

void ConsoleDisplay::ShowSummary(const std::vector<std::string>& lines) {
  EndLiveLine();
  std::printf("\n");
  for (const std::string& line : lines) std::printf("%s\n", Printable(line).c_str());
}

}  // namespace velmor
