// SPDX-License-Identifier: BSD-2-Clause
#include "media/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace nkdraw::media {
namespace {

volatile std::sig_atomic_t arrived = 0;

extern "C" void noteSignal(int signal) {
  arrived = signal;
}

/// As set by nohup, and by shells that run a command in the background.
bool isIgnored(int signal) {
  struct sigaction inherited = {};
  return sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN;
}

}  // namespace

void catchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = noteSignal;
  // Without SA_RESTART: a read that waits for a pipe returns, and finds that it was interrupted.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (!isIgnored(signal))
      sigaction(signal, &action, nullptr);
  }
  // A write that can't be done must fail, not end the process.
  action.sa_handler = SIG_IGN;
  for (const int signal : {SIGXFSZ, SIGPIPE})
    sigaction(signal, &action, nullptr);
}

int pendingInterrupt() {
  return arrived;
}

void throwIfInterrupted() {
  if (arrived != 0)
    throw Interrupted(arrived);
}

}  // namespace nkdraw::media
