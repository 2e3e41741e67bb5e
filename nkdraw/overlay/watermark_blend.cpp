// SPDX-License-Identifier: BSD-2-Clause
//
// The converted watermark, put into every frame.
#include <nkdraw/overlay/overlay.h>

#include "watermark_rows.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/surface/v210_group.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

using namespace nkdraw::watermark;

/// Where the picture lies in the frame. Frames have packed rows.
struct Placement {
  std::int64_t x, y;
  std::int64_t frameWidth, frameHeight;
  std::int64_t width, height;  ///< of the picture

  /// Calls `row(picture row, frame row)` for the rows above the frame's lower edge.
  template <class Row>
  void forRows(Row row) const {
    for (std::int64_t line = 0; line < height && y + line < frameHeight; ++line)
      row(line, y + line);
  }
  /// Pixels from the frame's first one to the picture's place in this row.
  [[nodiscard]] std::int64_t start(std::int64_t frameRow) const {
    return frameRow * frameWidth + x;
  }
};

// Deliberate: callers rely on the pictures. A watermark that begins left of the frame begins in the
// line above; only the first and the last byte of the frame limit it there.

void blendRgb32(const Placement& place, const std::uint8_t* picture, std::uint8_t* frame) {
  constexpr auto kBytes = std::int64_t{kPixelBytes};
  const std::int64_t end = std::min(place.width, place.frameWidth - place.x);
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    const std::int64_t start = place.start(frameRow), x = std::max<std::int64_t>(0, -start);
    if (x < end)
      rows().blendPixels(picture + (row * place.width + x) * kBytes, frame + (start + x) * kBytes,
                         static_cast<std::size_t>(end - x));
  });
}

/// A frame of 8-bit 4:2:2, in which the first or the last pair may lie in part.
struct PairFrame {
  std::uint8_t* bytes;
  std::int64_t size;

  /// Blends `count` pairs; the first one's bytes begin at `first`, which may lie before the frame.
  void blend(const std::uint8_t* picture, std::int64_t first, std::int64_t count) const {
    constexpr auto kBytes = std::int64_t{kPairBytes}, kParts = std::int64_t{kPairParts};
    for (; count > 0 && first < 0; --count, picture += kParts, first += kBytes)
      blendPart(picture, first);
    const std::int64_t whole = std::min(count, std::max<std::int64_t>(size - first, 0) / kBytes);
    if (whole > 0)
      rows().blendPairs(picture, bytes + first, static_cast<std::size_t>(whole));
    if (whole < count)
      blendPart(picture + whole * kParts, first + whole * kBytes);
  }

 private:
  /// Blends the bytes of a pair that the frame has.
  void blendPart(const std::uint8_t* picture, std::int64_t first) const {
    std::array<std::uint8_t, kPairBytes> pair{};
    const auto inside = [&](std::int64_t i) { return first + i >= 0 && first + i < size; };
    for (std::int64_t i = 0; i < std::ssize(pair); ++i)
      pair[static_cast<std::size_t>(i)] = inside(i) ? bytes[first + i] : std::uint8_t{0};
    kPlainRows.blendPairs(picture, pair.data(), 1);
    for (std::int64_t i = 0; i < std::ssize(pair); ++i) {
      if (inside(i))
        bytes[first + i] = pair[static_cast<std::size_t>(i)];
    }
  }
};

/// Deliberate: callers rely on the pictures. The right edge is counted in pairs as if they were
/// pixels, so a picture that crosses it continues in the next line.
void blendYCbCr8(const Placement& place, const std::uint8_t* picture, std::uint8_t* frame) {
  constexpr auto kBytes = std::int64_t{kPairBytes}, kParts = std::int64_t{kPairParts};
  const std::int64_t pairs = place.width / 2, end = std::min(pairs, place.frameWidth - place.x);
  const PairFrame target{frame, place.frameWidth * place.frameHeight * 2};
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    const std::int64_t start = place.start(frameRow);
    const std::int64_t pair = std::max<std::int64_t>(0, -start / 2);
    target.blend(picture + (row * pairs + pair) * kParts, start * 2 + pair * kBytes, end - pair);
  });
}

/// A row of the watermark in a row of v210: the same as CDrawYCbCr10 plots pixel by pixel, but a
/// group at a time. The surface ignores negative positions.
struct GroupRow {
  const std::uint32_t* picture;  ///< of the picture's first pixel
  std::uint8_t* frame;           ///< of the frame's first pixel
  std::int64_t left;             ///< of the picture in the frame

  static constexpr std::int64_t kPixels = nkdraw::v210::kGroupPixels;

  /// Plots the pixels from `x` up to, but not including, `end`.
  void plot(std::int64_t x, std::int64_t end) const {
    const std::int64_t firstWhole = (left + x + kPixels - 1) / kPixels * kPixels - left;
    const std::int64_t groups = left % 2 == 0 ? (end - firstWhole) / kPixels : 0;
    if (groups > 0) {  // pairs lie in pairs of the frame
      plotPart(x, firstWhole);
      x = firstWhole + groups * kPixels;
      rows().plotGroups(pairOf(firstWhole), groupOf(firstWhole), static_cast<std::size_t>(groups));
    }
    plotPart(x, end);
  }

 private:
  [[nodiscard]] const std::uint32_t* pairOf(std::int64_t x) const {
    return picture + x / 2 * static_cast<std::int64_t>(kPairParts);
  }
  [[nodiscard]] std::uint8_t* groupOf(std::int64_t x) const {
    return frame + (left + x) / kPixels * nkdraw::v210::kGroupBytes;
  }

  void plotPart(std::int64_t x, std::int64_t end) const {
    while (x < end) {
      nkdraw::v210::GroupEditor editor(reinterpret_cast<char*>(groupOf(x)));
      const std::int64_t groupEnd = std::min(end, ((left + x) / kPixels + 1) * kPixels - left);
      for (; x < groupEnd; ++x) {
        if (pairOf(x)[4] > kInvisible10)
          editor.put(static_cast<std::size_t>((left + x) % kPixels), codeOf(pairOf(x), x % 2 != 0));
      }
      editor.store();
    }
  }
};

void plotYCbCr10(const Placement& place, const std::uint32_t* picture, NKDraw& frame) {
  const std::int64_t rowParts = (place.width + 1) / 2 * static_cast<std::int64_t>(kPairParts);
  const std::int64_t end = std::min(place.width, place.frameWidth - place.x);
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    if (frameRow < 0)
      return;
    auto* const groups = static_cast<std::uint8_t*>(frame.GetPixel(0, static_cast<int>(frameRow)));
    GroupRow{picture + row * rowParts, groups, place.x}.plot(std::max<std::int64_t>(0, -place.x),
                                                             end);
  });
}

}  // namespace

std::uint32_t CNkOverlay::ApplyWatermark(QFRAME* frame) {
  // If loading failed, the previous picture stays, and its size may differ from the new one.
  const std::uint64_t rows =
      watermarkRoom == 0 || watermarkWidth == 0
          ? watermarkHeight
          : std::min<std::uint64_t>(watermarkHeight, watermarkRoom / watermarkWidth);
  const Placement place{WatermarkX,     WatermarkY,     video.biWidth,
                        video.biHeight, watermarkWidth, static_cast<std::int64_t>(rows)};
  auto* const bytes = reinterpret_cast<std::uint8_t*>(frame->frameBuffer);
  if (watermarkLayout == kRgb32) {
    if (watermarkRGBA != nullptr)
      blendRgb32(place, watermarkRGBA, bytes);
  } else if (watermarkLayout == kYCbCr8) {
    if (watermark8 != nullptr)
      blendYCbCr8(place, watermark8, bytes);
  } else if (watermarkLayout == kYCbCr10) {
    if (watermark10 == nullptr)
      return 0;
    NKDraw* target = nullptr;
    GetDraw(ptV210, video.biWidth, video.biHeight, 0, frame->frameBuffer, target);
    if (target == nullptr)
      return 0;
    plotYCbCr10(place, watermark10, *target);
    ReleaseDraw(target);
  } else {
    ErrOut("Error: No colourspace for watermark ");
  }
  return 0;
}
