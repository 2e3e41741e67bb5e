// SPDX-License-Identifier: BSD-2-Clause
//
// The options for settings, watermark, captions and meters.
#pragma once

#include "burnin/overlay_settings.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class LayerArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request made by the settings, if the user named any.
  [[nodiscard]] OverlaySettings settings() const;

  /// Adds the options to the request made by the settings. Throws Failure.
  void apply(const OverlaySettings& settings, OverlayRequest& overlay) const;

 private:
  void applyCaptions(unsigned source, OverlayRequest& overlay) const;

  std::optional<std::string> settings_, watermark_, watermarkAt_, captionsFile_, captionChannel_,
      metersAt_;
  bool captions_ = false, meters_ = false;
};

}  // namespace nkdraw::tool
