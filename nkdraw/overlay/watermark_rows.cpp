// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of a watermark in the plain form, pixel by pixel or pair by pair.
#include "watermark_rows.h"

#include <nkdraw/surface/v210_group.h>

namespace nkdraw::watermark {
namespace {

void blendPixels(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pixels) {
  for (; pixels > 0; --pixels, picture += kPixelBytes, frame += kPixelBytes) {
    const std::uint32_t alpha = picture[3];
    if (alpha <= kInvisibleRgb)
      continue;
    for (int channel = 0; channel < 3; ++channel)
      frame[channel] = blend(picture[channel], frame[channel], alpha);
    frame[3] = picture[3];
  }
}

void blendPairs(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pairs) {
  constexpr std::uint8_t kOrder[kPairBytes] = {1, 0, 3, 2};  // of the parts, in the frame
  for (; pairs > 0; --pairs, picture += kPairParts, frame += kPairBytes) {
    const std::uint32_t alpha = picture[4];
    for (std::size_t i = 0; i < kPairBytes && alpha > kInvisible8; ++i)
      frame[i] = blend(picture[kOrder[i]], frame[i], alpha);
  }
}

void plotGroups(const std::uint32_t* picture, std::uint8_t* frame, std::size_t groups) {
  for (; groups > 0; --groups, frame += v210::kGroupBytes) {
    v210::GroupEditor editor(reinterpret_cast<char*>(frame));
    for (std::size_t m = 0; m < v210::kGroupPixels; m += 2, picture += kPairParts) {
      if (picture[4] <= kInvisible10)
        continue;
      editor.put(m, codeOf(picture, false));
      editor.put(m + 1, codeOf(picture, true));
    }
    editor.store();
  }
}

}  // namespace

constexpr Rows kPlainRows = {blendPixels, blendPairs, plotGroups};

}  // namespace nkdraw::watermark
