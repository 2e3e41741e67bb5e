// SPDX-License-Identifier: BSD-2-Clause
//
// Values of samples, from one number of bits and one range to another.
#pragma once

#include <cstdint>
#include <vector>

namespace nkdraw::media {

/// What a sample's values mean.
enum class SampleKind { kLuma, kChroma, kRGB };

/// The values that samples have: black's, or grey's for chroma, and how far it is from there to
/// white, or from one end of chroma to the other.
struct Levels {
  int zero, span;
  unsigned most;  // of the bits
};
/// RGB always uses the full range.
[[nodiscard]] Levels levelsOf(SampleKind kind, int depth, bool fullRange);

/// From one kind of samples to another. White becomes white and black black; between samples of
/// studio range, more bits are a shift.
class SampleScale {
 public:
  SampleScale(const Levels& from, const Levels& to);
  [[nodiscard]] unsigned operator()(unsigned value) const { return values_[value]; }

 private:
  std::vector<std::uint16_t> values_;
};

}  // namespace nkdraw::media
