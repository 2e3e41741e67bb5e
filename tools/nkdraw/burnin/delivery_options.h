// SPDX-License-Identifier: BSD-2-Clause
//
// The options for how an output is encoded and written.
#pragma once

#include "cli/using_media.h"
#include "media/delivery.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class DeliveryArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request for the output `path`. Throws Failure for options that exclude each other, and for
  /// any if the output is a still.
  [[nodiscard]] OutputRequest read(const std::string& path, bool isStill) const;

 private:
  void checkStill() const;
  void checkOneWay() const;

  std::optional<std::string> codec_;
  bool lossless_ = false, viewingCopy_ = false;
  std::vector<std::string> containerOptions_;
};

}  // namespace nkdraw::tool
