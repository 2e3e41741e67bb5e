// SPDX-License-Identifier: BSD-2-Clause
//
// The options for image sequences.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class SequenceArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The number of the first picture, if given. Throws Failure for what is no number, and if
  /// neither name is that of a sequence.
  [[nodiscard]] std::optional<std::int64_t> startNumber(const std::string& input,
                                                        const std::string& output) const;

 private:
  std::optional<std::string> startNumber_;
};

/// Throws Failure unless the output's name fits what is asked for: a still, a sequence or a clip.
void checkPictureName(const std::string& output, bool still);

}  // namespace nkdraw::tool
