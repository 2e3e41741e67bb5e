// SPDX-License-Identifier: BSD-2-Clause
//
// Cuts uncompressed sound to the sample, without decoding it.
#pragma once

#include "media/libav.h"
#include "media/time_window.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace nkdraw::media {

/// The bytes of one sample of all channels; none for sound that can't be cut to the sample.
[[nodiscard]] std::optional<std::size_t> sampleBytes(const AVCodecParameters& sound);

class PCMCut {
 public:
  /// Keeps the samples of `window`, which must have a first moment. With `fill`, silence takes the
  /// place of samples that are missing before the first one and between packets.
  PCMCut(const AVStream& sound, const TimeWindow& window, bool fill);

  /// Passes on what the window holds of a packet; its times are samples from the window's first
  /// moment, in timeBase().
  void cut(AVPacket& packet, const TakePacket& take);

  [[nodiscard]] AVRational timeBase() const { return {1, rate_}; }
  /// Whether a packet has reached the end of the window.
  [[nodiscard]] bool isThrough() const { return next_ >= end_; }

 private:
  [[nodiscard]] std::int64_t placeOf(const AVPacket& packet) const;
  void fillUntil(std::int64_t place, int stream, const TakePacket& take);

  AVRational streamTime_;
  AVCodecID codec_;
  int rate_;
  std::size_t bytes_;
  bool fill_;
  std::int64_t first_, end_;  // samples from the beginning of the input's times
  std::int64_t next_;         // where the next packet should begin
  std::int64_t written_;      // where the next sample of the output belongs
  bool began_ = false;
};

}  // namespace nkdraw::media
