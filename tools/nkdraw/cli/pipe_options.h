// SPDX-License-Identifier: BSD-2-Clause
//
// Options for inputs and outputs that are pipes, shared by the sub-commands that read clips.
#pragma once

#include "cli/using_media.h"
#include "media/input_shape.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class PipeArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);
  /// Adds those for the input alone.
  void addInputTo(CLI::App& command);

  /// What is told about the input. Throws Failure for impossible values.
  [[nodiscard]] InputShape input() const;
  /// The kind of file to write, if given.
  [[nodiscard]] const std::optional<std::string>& format() const { return format_; }

 private:
  std::optional<std::string> format_, inputFormat_, inputSize_, inputLayout_, inputRate_;
};

/// Adds the option that names the kind of file to write, stored in `format`.
void addFormatTo(CLI::App& command, std::optional<std::string>& format);

/// The frames a second in the value of an option: "25", "29.97", "30000/1001". Throws badValue's
/// Failure.
[[nodiscard]] AVRational readRate(const std::string& option, const std::string& text);

}  // namespace nkdraw::tool
