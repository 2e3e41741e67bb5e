// SPDX-License-Identifier: BSD-2-Clause
//
// What every sub-command is to the program.
#pragma once

#include "cli/using_media.h"
#include "media/failure.h"

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// A sub-command that has put its options on the command line and runs with what was parsed.
class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  /// Whether the user asked for this one.
  [[nodiscard]] virtual bool asked() const = 0;
  /// Throws Failure or Interrupted.
  virtual void run() = 0;
};

}  // namespace nkdraw::tool
