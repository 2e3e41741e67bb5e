// SPDX-License-Identifier: BSD-2-Clause
//
// How two frames are shown: the user's request, and the arguments of the library's call for frames
// of one size.
#pragma once

#include "cli/option_values.h"
#include "compare/mux_modes.h"

#include <cstdint>
#include <optional>
#include <string>

namespace nkdraw::tool {

/// Mirroring of a frame before it is shown.
struct Flip {
  bool leftToRight = false, topToBottom = false;
};

/// Anything not set has the mode's default.
struct MuxRequest {
  const MuxMode* mode = nullptr;
  bool vertical = false, horizontal = false, markSplit = false, swap = false;
  Flip first, second;
  std::optional<int> splitX, splitY;
  std::optional<std::uint32_t> threshold;  // 0 to 255
  std::optional<std::uint32_t> gain;       // 1 to 255
  std::optional<double> amount;            // 0.0 to 1.0
  std::optional<std::uint32_t> block;      // 1 to 100 pixels
  std::optional<std::uint32_t> channel;    // the mask of a byte of the pixel, 0 for the mean
  std::optional<std::uint32_t> wipe;
  std::optional<int> gridPercent;  // 1 to 100
  std::optional<Point> gridPixels;
};

/// Arguments of NKDraw_DisplayMuxRGBA, under its names.
struct MuxCall {
  std::uint32_t mode = 0, wipe = 0, amount = 0, threshold = 0, splitX = 0, splitY = 0, gridType = 0,
                gridX = 0, gridY = 0;
};

/// Throws Failure for an option that the mode does not take, and for positions outside the frame.
[[nodiscard]] MuxCall planMux(const MuxRequest& request, int width, int height);

}  // namespace nkdraw::tool
