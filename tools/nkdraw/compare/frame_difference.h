// SPDX-License-Identifier: BSD-2-Clause
//
// How much two frames differ, sample by sample.
#pragma once

#include "cli/using_media.h"
#include "media/libav.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct Difference {
  std::int64_t pixels = 0;                 // that differ in any channel
  std::array<std::uint32_t, 4> largest{};  // by channel, in the order of the pixel format

  [[nodiscard]] std::uint32_t largestOfAll() const;
};

/// Compares frames of one size and one pixel format, in that format. A pixel differs if one of its
/// samples differs, including samples shared with its neighbours.
class FrameComparer {
 public:
  /// Whether the format has samples that can be compared as numbers.
  [[nodiscard]] static bool takes(AVPixelFormat format);

  explicit FrameComparer(AVPixelFormat format);

  /// "y", "cb", "cr" or "r", "g", "b", "a"
  [[nodiscard]] std::span<const std::string> channels() const { return names_; }
  [[nodiscard]] Difference compare(const AVFrame& a, const AVFrame& b);

 private:
  [[nodiscard]] bool isSameRow(const AVFrame& a, const AVFrame& b, int y) const;
  void compareRow(const AVFrame& a, const AVFrame& b, int y, Difference& difference);

  const AVPixFmtDescriptor& format_;
  std::vector<std::string> names_;
  std::vector<std::uint16_t> rowA_, rowB_;  // samples of one channel
  std::vector<std::uint8_t> differs_;       // by column, 1 or 0
};

}  // namespace nkdraw::tool
