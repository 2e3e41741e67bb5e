// SPDX-License-Identifier: BSD-2-Clause
#include "interrupt.h"

#include <csignal>

namespace nkdraw::tool {
namespace {

volatile std::sig_atomic_t arrived = 0;

extern "C" void noteSignal(int signal) {
  arrived = signal;
}

}  // namespace

void catchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int pendingInterrupt() {
  return arrived;
}

void throwIfInterrupted() {
  if (arrived != 0)
    throw Interrupted(arrived);
}

}  // namespace nkdraw::tool
