#include <csignal>
#include <cstdio>

#include "base/file_system.hpp"
#include "run/console_display.hpp"
#include "run/run_controller.hpp"

int main() {
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its size limit fails to grow, as on a full disk, and the stage answers
  velmor::ConsoleDisplay display;
  return velmor::RunProgram(display, velmor::ProgramFolder());
}
