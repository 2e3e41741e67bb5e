// SPDX-License-Identifier: BSD-2-Clause
//
// Stops on SIGINT, SIGTERM and SIGHUP, at a point where everything can be cleaned up.
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

/// From now on these signals are noted instead of ending the process, except those that it ignores;
/// and a write that can't be done fails instead of raising SIGPIPE.
void catchInterrupts();

/// The signal that arrived, or 0.
[[nodiscard]] int pendingInterrupt();

/// Throws Interrupted once a signal has arrived.
void throwIfInterrupted();

}  // namespace nkdraw::media
