// SPDX-License-Identifier: BSD-2-Clause
//
// Converts the overlay's settings to a request.
#pragma once

#include "burnin/overlay_plan.h"

#include <string>

namespace nkdraw::tool {

struct OverlaySettings {
  OverlayRequest request;
  // For layers that an option switches on.
  Point watermarkAt, metersAt;
  unsigned captionSource = 1;
};

/// What is burnt in without settings, at the library's default positions.
[[nodiscard]] OverlaySettings plainSettings();

/// "store", or the path of an INI file. Throws Failure for one that can't be loaded.
[[nodiscard]] OverlaySettings loadSettings(const std::string& source);

}  // namespace nkdraw::tool
