// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw compare`.
#pragma once

#include "compare/mux_plan.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// What a run was asked for.
struct CompareOptions {
  std::string a, b;
  std::optional<std::string> output, report;  // one at least
  MuxRequest display;
  std::optional<std::string> codec;
  bool overwrite = false, dryRun = false, list = false, verbose = false;
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

  std::string a_, b_, output_, report_, codec_;
  std::string mode_ = "difference", amount_, channel_, wipe_, flipFirst_, flipSecond_, gridPixels_;
  std::optional<std::string> splitX_, splitY_, grid_, threshold_, gain_, block_;
  bool horizontal_ = false, vertical_ = false, markSplit_ = false, swap_ = false;
  bool overwrite_ = false, dryRun_ = false, list_ = false, verbose_ = false;
};

}  // namespace nkdraw::tool
