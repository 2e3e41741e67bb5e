// SPDX-License-Identifier: BSD-2-Clause
#include "caption_strips.h"

#include <nkdraw/surface/layout_facts.h>

namespace nkdraw {
namespace {

/// Sets the bits of `row` that are not kept; those kept are 0.
void merge(std::uint8_t* at, const std::uint8_t* kept, const std::uint8_t* row, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i)
    at[i] = static_cast<std::uint8_t>((at[i] & kept[i]) | row[i]);
}

}  // namespace

CaptionStrips::CaptionStrips(const StripPlace& place) : place_(place), bytes_(place.pitch) {
  if (const LayoutFacts* const facts = findFacts(place.layout)) {
    const auto group = static_cast<std::size_t>(facts->groupPixels);
    const auto left = static_cast<std::size_t>(place.left);
    const auto right = static_cast<std::size_t>(place.right);
    linesPerDot_ = facts->rows;
    first_ = left / group * facts->groupBytes;
    bytes_ = (right + group - 1) / group * facts->groupBytes - first_;
  }
  room_ = std::make_unique_for_overwrite<std::uint8_t[]>(
      2 * (canvasBytes() + strips_.size() * lines() * bytes_));
}

std::uint8_t* CaptionStrips::lineOf(std::size_t row, std::size_t line) const {
  return room_.get() + 2 * (canvasBytes() + (row * lines() + line) * bytes_);
}

char* CaptionStrips::cleared(int ground) {
  std::uint8_t* const canvas = room_.get() + (ground == 0 ? 0 : canvasBytes());
  std::memset(canvas, ground, canvasBytes());
  return reinterpret_cast<char*>(canvas);
}

/// Bits that differ after drawing on zeros and on ones are those that drawing leaves alone.
void CaptionStrips::keepDrawn(std::size_t row) {
  const std::uint8_t* zeros = room_.get() + first_;
  for (std::size_t line = 0; line < lines(); ++line, zeros += place_.pitch) {
    const std::uint8_t* const ones = zeros + canvasBytes();
    std::uint8_t* const kept = lineOf(row, line);
    for (std::size_t i = 0; i < bytes_; ++i)
      kept[i] = zeros[i] ^ ones[i];
    std::memcpy(kept + bytes_, zeros, bytes_);
  }
  findEdges(row);
}

void CaptionStrips::findEdges(std::size_t row) {
  constexpr std::uint8_t kUntouched = 0xFF;
  const auto isUntouched = [&](std::size_t byte) {
    for (std::size_t line = 0; line < lines(); ++line) {
      if (lineOf(row, line)[byte] != kUntouched)
        return false;
    }
    return true;
  };
  Strip& strip = strips_[row];
  strip.first = 0;
  strip.end = bytes_;
  while (strip.first < strip.end && isUntouched(strip.first))
    ++strip.first;
  while (strip.first < strip.end && isUntouched(strip.end - 1))
    --strip.end;
  strip.opaque = true;
  for (std::size_t line = 0; line < lines(); ++line)
    strip.opaque =
        strip.opaque && std::all_of(lineOf(row, line) + strip.first, lineOf(row, line) + strip.end,
                                    [](std::uint8_t kept) { return kept == 0; });
}

void CaptionStrips::layOn(std::size_t row, char* pixels, int top) const {
  const Strip& strip = strips_[row];
  const std::size_t bytes = strip.end - strip.first;
  for (int line = 0; line < place_.dots * place_.scale; ++line) {
    const int y = top + line;
    const int from = line / place_.scale * linesPerDot_ + y % linesPerDot_;
    const std::uint8_t* const kept = lineOf(row, static_cast<std::size_t>(from)) + strip.first;
    auto* const at = reinterpret_cast<std::uint8_t*>(pixels) +
                     static_cast<std::size_t>(y) * place_.pitch + first_ + strip.first;
    if (strip.opaque)
      std::memcpy(at, kept + bytes_, bytes);
    else
      merge(at, kept, kept + bytes_, bytes);
  }
}

}  // namespace nkdraw
