#include "base/interruption.hpp"

#include <csignal>
#include <initializer_list>

namespace velmor {
namespace {

volatile std::sig_atomic_t caught = 0;

void Note(int signal) { caught = signal; }

}  // namespace

void WatchSignals() {
  struct sigaction action {};
  action.sa_handler = Note;  // without SA_RESTART: a read that waits for a person ends as well
  for (int signal : {SIGINT, SIGTERM}) ::sigaction(signal, &action, nullptr);
  struct sigaction hangup {};
  ::sigaction(SIGHUP, nullptr, &hangup);
  if (hangup.sa_handler != SIG_IGN) ::sigaction(SIGHUP, &action, nullptr);  // nohup has it ignored
}

int CaughtSignal() { return caught; }

void ThrowIfInterrupted() {
  if (caught != 0) throw Interrupted{caught};
}

}  // namespace velmor
