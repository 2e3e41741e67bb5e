// SPDX-License-Identifier: BSD-2-Clause
//
// One row of the display, for every rule. Rows are four bytes a pixel, of any alignment; no byte
// outside the row is read or written.
#pragma once

#include "mux_rules.h"

#include <cstring>

namespace nkdraw {

/// Writes `width` pixels by `rule`. `output` may be one of the inputs, but must not partly overlap
/// one.
template <class Rule>
using MuxRow = void (*)(Rule rule, const std::uint8_t* first, const std::uint8_t* second,
                        std::uint8_t* output, std::size_t width);

/// Writes `count` pixels of another row in an order of its own.
using PixelWalk = void (*)(const std::uint8_t* source, std::uint8_t* output, std::size_t count);

/// One implementation of every row.
struct MuxRows {
  MuxRow<ChannelMix> channels;
  MuxRow<Average> average;
  MuxRow<Difference> difference;
  MuxRow<Compare> compare;
  MuxRow<Fade> fade;
  MuxRow<GreyByte> greyByte;
  MuxRow<GreyMean> greyMean;
  MuxRow<const Runs&> runs;
  PixelWalk everyOther;  ///< pixels 0, 2, 4 and so on; the rows do not overlap
  PixelWalk backwards;   ///< `source`, then the pixels before it; the row may start at `source`
};

inline constexpr std::size_t kMuxPixelBytes = sizeof(MuxPixel);

namespace plain {

[[nodiscard]] inline MuxPixel pixelAt(const std::uint8_t* row, std::size_t x) {
  MuxPixel pixel;
  std::memcpy(&pixel, row + x * kMuxPixelBytes, kMuxPixelBytes);
  return pixel;
}

inline void setPixel(std::uint8_t* row, std::size_t x, const MuxPixel& pixel) {
  std::memcpy(row + x * kMuxPixelBytes, &pixel, kMuxPixelBytes);
}

template <class Rule>
void mixRow(Rule rule, const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* output,
            std::size_t width) {
  const std::uint8_t* const other = kReadsFirstAlone<Rule> ? first : second;
  for (std::size_t x = 0; x < width; ++x)
    setPixel(output, x, rule(pixelAt(first, x), pixelAt(other, x)));
}

inline void alternateRow(const Runs& runs, const std::uint8_t* first, const std::uint8_t* second,
                         std::uint8_t* output, std::size_t width) {
  for (std::size_t x = 0; x < width; ++x)
    setPixel(output, x, pixelAt(x / runs.run % 2 == 0 ? first : second, x));
}

inline void takeEveryOther(const std::uint8_t* source, std::uint8_t* output, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    setPixel(output, i, pixelAt(source, 2 * i));
}

inline void takeBackwards(const std::uint8_t* source, std::uint8_t* output, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    setPixel(output, i, pixelAt(source - i * kMuxPixelBytes, 0));
}

}  // namespace plain

/// The plain form, which defines the result: pixel after pixel from the left. Its output may also
/// partly overlap an input.
inline constexpr MuxRows kPlainMuxRows = {
    plain::mixRow<ChannelMix>, plain::mixRow<Average>, plain::mixRow<Difference>,
    plain::mixRow<Compare>,    plain::mixRow<Fade>,    plain::mixRow<GreyByte>,
    plain::mixRow<GreyMean>,   plain::alternateRow,    plain::takeEveryOther,
    plain::takeBackwards,
};

/// The fastest rows of an instruction set.
struct MuxForms {
  MuxRows kept;      ///< through the caches
  MuxRows streamed;  ///< past them where possible: for displays too large for them
};

/// The rows of the best among `targets`, Highway's bits; 0 gives what runs everywhere.
[[nodiscard]] const MuxForms& muxFormsFor(std::int64_t targets);

/// The rows for this machine.
[[nodiscard]] const MuxForms& muxForms();

}  // namespace nkdraw
