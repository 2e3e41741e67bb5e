// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's lines of text with their rectangles, for whoever draws or measures them.
#pragma once

#include <nkdraw/overlay/overlay.h>

#include <nkdraw/constants.h>
#include <nkdraw/platform/timecode.h>
#include <nkdraw/surface/wrapping.h>

#include <array>
#include <cstdint>

struct CNkOverlay::Texts {
  /// Room for a line of text.
  using Buffer = std::array<char, 512>;
  /// The height of the format line and the custom texts.
  static constexpr std::int32_t kLineHeight = 30;

  [[nodiscard]] static Buffer formatLine(const CNkOverlay& overlay);
  using ClockText = std::array<char, 24>;
  [[nodiscard]] static ClockText wallClock();

  /// Where a block begins: on interlaced frames on an even row.
  template <class Place>
  [[nodiscard]] static Place evenIn(const CNkOverlay& overlay, Place place) {
    return (overlay.video.scanFlags & NKScanInterlaced) != 0 ? place & ~Place{1} : place;
  }

  /// Calls `take(text, rect)` for each row of the timecode block, the rows one under the other.
  /// `take` leaves in `rect` what DT_CALCRECT does. `clock` returns the ClockText.
  template <class Clock, class Take>
  static void eachRow(const CNkOverlay& overlay, const QFRAME& frame, std::uint32_t offset,
                      Clock clock, Take take) {
    constexpr std::uint32_t kFlags = 0x30100;  // always set for the formatter
    const std::uint32_t lines = 10 * evenIn(overlay, overlay.TimeCodeSize);
    const std::int32_t y = evenIn(overlay, overlay.TimeCodeY);
    tagRECT rect = {overlay.TimeCodeX, y, 0, nkdraw::wrappingAdd(y, lines)};
    const auto pass = [&](const char* text) {
      take(text, rect);
      rect.top = nkdraw::wrappingAdd(rect.top, lines);
      rect.bottom = nkdraw::wrappingAdd(rect.bottom, lines);
    };
    Buffer text{};  // kept from row to row
    const auto passTimecode = [&](std::uint32_t count) {
      TcForm(count - offset, overlay.timeCodeType | kFlags, text.data());
      pass(text.data());
    };
    if (overlay.TimeCodeLTCEnable != 0)
      passTimecode(frame.ltcCount);
    if (overlay.TimeCodeVITCEnable != 0)
      passTimecode(frame.vitcCount);
    if (overlay.TimeCodeVsyncEnable != 0)
      pass(clock().data());
  }

  /// Calls `take(layer, text, rect)` for the format line and for each custom text.
  template <class Take>
  static void eachLine(const CNkOverlay& overlay, Take take) {
    const auto pass = [&](NKLayer layer, const char* text, std::int32_t x, std::int32_t y) {
      const std::int32_t top = evenIn(overlay, y);
      tagRECT rect = {x, top, overlay.video.biWidth, nkdraw::wrappingAdd(top, kLineHeight)};
      take(layer, text, rect);
    };
    if (overlay.SourceFormatEnable != 0)
      pass(NKLayerSourceFormat, formatLine(overlay).data(), overlay.SourceFormatX,
           overlay.SourceFormatY);
    for (int slot = 0; slot < kCustomTexts; ++slot) {
      if (overlay.CustomTextEnabled[slot] != 0 && overlay.CustomText[slot] != nullptr)
        pass(NKLayerCustomText, overlay.CustomText[slot], overlay.CustomTextX[slot],
             overlay.CustomTextY[slot]);
    }
  }
};
