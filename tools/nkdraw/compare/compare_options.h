// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw compare`.
#pragma once

#include "cli/damage_options.h"
#include "cli/pipe_options.h"
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

/// The request for one run.
struct CompareOptions : RunOptions {
  OnDamage onDamage = OnDamage::kStop;
  InputShape inputShape;              // what a piped input does not tell itself
  std::optional<std::string> format;  // of the output; none: by its name
  std::string a, b;
  std::optional<std::string> output, report;  // at least one
  MuxRequest display;
  CodecRequest codec = {"--codec", {}};
  bool list = false;
};

/// The options on the command line.
class CompareArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] CompareOptions read() const;

 private:
  void addModeTo(CLI::App& command);
  void addLookTo(CLI::App& command);
  void addWritingTo(CLI::App& command);
  void readDisplay(MuxRequest& display) const;

  CompareOptions plain_;  // values that need no interpretation
  PipeArguments pipes_;
  DamageArguments damage_;
  std::string output_, report_, codec_;
  std::string mode_ = "difference", amount_, channel_, wipe_, flipFirst_, flipSecond_, gridPixels_;
  std::optional<std::string> splitX_, splitY_, grid_, threshold_, gain_, block_;
};

}  // namespace nkdraw::tool
