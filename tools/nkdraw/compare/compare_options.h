// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw compare`.
#pragma once

#include "cli/run_options.h"
#include "cli/using_media.h"
#include "compare/mux_plan.h"
#include "media/encoder.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// What a run was asked for.
struct CompareOptions : RunOptions {
  std::string a, b;
  std::optional<std::string> output, report;  // one at least
  MuxRequest display;
  CodecRequest codec = {"--codec", {}};
  bool list = false;
};

/// The options as they stand on the command line.
class CompareArguments {
 public:
  /// Puts them on the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// What they mean. Throws Failure for values that can't be.
  [[nodiscard]] CompareOptions read() const;

 private:
  void addModeTo(CLI::App& command);
  void addLookTo(CLI::App& command);
  void addWritingTo(CLI::App& command);
  void readDisplay(MuxRequest& display) const;

  CompareOptions plain_;  // what the command line says without being read
  std::string output_, report_, codec_;
  std::string mode_ = "difference", amount_, channel_, wipe_, flipFirst_, flipSecond_, gridPixels_;
  std::optional<std::string> splitX_, splitY_, grid_, threshold_, gain_, block_;
};

}  // namespace nkdraw::tool
