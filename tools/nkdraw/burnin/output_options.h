// SPDX-License-Identifier: BSD-2-Clause
//
// The outputs of a run, each with its own options. --output begins another one, and what follows it
// counts for that one.
#pragma once

#include "burnin/delivery_options.h"
#include "burnin/stream_options.h"
#include "cli/using_media.h"
#include "media/delivery.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace nkdraw::tool {

class OutputArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// Whether --output was given.
  [[nodiscard]] bool namesAny() const { return !begun_.empty(); }

  /// The requests for all outputs, first the one named `plain` without --output, if there is one.
  /// `streams` says whether there are streams beside the video. Throws Failure for options that are
  /// impossible, and for outputs that can't be written by one run.
  [[nodiscard]] std::vector<OutputRequest> read(const std::optional<std::string>& plain,
                                                bool isStill, bool streams) const;

 private:
  /// What was given for one output.
  struct Asked {
    std::optional<std::string> path, format;
    DeliveryArguments delivery;
    StreamArguments streams;
    bool any = false;  // of the options
  };

  void begin(const std::string& path);
  [[nodiscard]] std::vector<Asked> all(const std::optional<std::string>& plain) const;

  std::vector<CLI::Option*> options_;  // that count for one output
  std::vector<Asked> begun_;           // those before the last --output
  Asked last_;                         // where the options are stored while they are parsed
};

}  // namespace nkdraw::tool
