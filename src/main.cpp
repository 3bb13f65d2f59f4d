#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "base/file_system.hpp"
#include "base/interruption.hpp"
#include "run/console_display.hpp"
#include "run/failure_answer.hpp"
#include "run/run_controller.hpp"

int main() {
  velmor::WatchSignals();
  // Standard streams that are closed get a place to go, so that no file of the run takes their numbers.
  int descriptor = 0;
  while (0 <= descriptor && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDWR);
  const std::string folder = velmor::ProgramFolder();
  if (folder.empty()) {
    std::fprintf(stderr, "The program folder cannot be found: /proc/self/exe is not there\n");
    return velmor::exit_status::StartUp;
  }
  const velmor::FolderLock lock(folder);
  if (!lock.IsHeld()) {
    std::fprintf(stderr, "Velmor is running in this program folder already; start it from a copy of the folder\n");
    return velmor::exit_status::StartUp;
  }
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its size limit fails to grow, as on a full disk, and the stage answers
  std::signal(SIGPIPE, SIG_IGN);  // a run goes on when nobody reads its progress any more
  velmor::ConsoleDisplay display;
  return velmor::RunProgram(display, folder);
}
