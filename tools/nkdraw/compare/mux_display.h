// SPDX-License-Identifier: BSD-2-Clause
//
// Shows two pictures in one.
#pragma once

#include "cli/using_media.h"
#include "compare/mux_plan.h"
#include "media/libav.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nkdraw::tool {

class MuxDisplay {
 public:
  MuxDisplay(const MuxCall& call, int width, int height);

  /// The frame that shows both pictures, which are BGRA; its rows have no padding. Valid until the
  /// next call. The mode decides what byte 3 of its pixels holds.
  [[nodiscard]] const std::uint8_t* show(const AVFrame& first, const AVFrame& second);

 private:
  void load(const AVFrame& picture, std::vector<std::uint8_t>& frame) const;

  MuxCall call_;
  int width_, height_;
  std::size_t pitch_;
  std::vector<std::uint8_t> first_, second_, shown_;
};

}  // namespace nkdraw::tool
