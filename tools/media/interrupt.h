// SPDX-License-Identifier: BSD-2-Clause
//
// Stopping on SIGINT, SIGTERM and SIGHUP, at a point where everything can be cleaned up.
#pragma once

#include <exception>

namespace nkdraw::media {

/// A signal asked the run to stop.
class Interrupted : public std::exception {
 public:
  explicit Interrupted(int signal) : signal_(signal) {}
  [[nodiscard]] int signal() const { return signal_; }
  [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }

 private:
  int signal_;
};

/// From now on those of these signals that the process doesn't ignore are noted instead of ending
/// it, and a write that can't be
/// done fails instead of sending one.
void catchInterrupts();

/// The signal that arrived, 0 before one did.
[[nodiscard]] int pendingInterrupt();

/// Throws Interrupted once a signal has arrived.
void throwIfInterrupted();

}  // namespace nkdraw::media
