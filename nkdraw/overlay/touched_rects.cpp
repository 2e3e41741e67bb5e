// SPDX-License-Identifier: BSD-2-Clause
//
// What a burn-in pass may touch, told from the settings.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/overlay/texts.h>
#include <nkdraw/surface/bitmap_info.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/text/font_data.h>
#include <nkdraw/text/text_extent.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

/// A rectangle that may reach far outside the frame; right and bottom lie outside it.
struct Extent {
  std::int64_t left, top, right, bottom;
};

/// The panel of the meters, and the mark of the faintest peak below it.
constexpr std::int64_t kPanelWidth = 281, kPanelHeight = 212;

bool usesBuiltInFont() {
  const char* const kind = nkdraw::fontData.fontKind;
  return std::memcmp(kind, "ttf", 4) != 0 && std::memcmp(kind, "bmp", 4) != 0;
}

/// The cells of a text, which are one line higher than its box. Moves `rect` as DrawText does.
Extent extentOf(const char* text, tagRECT& rect) {
  const auto length = static_cast<std::uint32_t>(std::strlen(text));
  const std::uint32_t magnification = nkdraw::textMagnification(rect);
  nkdraw::setTextBox(rect, length, magnification);
  return {rect.left, rect.top,
          rect.left + std::int64_t{length} * magnification * nkdraw::kGlyphWidth,
          std::int64_t{rect.bottom} + 1};
}

/// Writes what lies inside the frame, and counts.
class Collector {
 public:
  Collector(std::int32_t width, std::int32_t height, pixelType type, NKTouchedRect* rects,
            std::uint32_t capacity)
      : width_(width), height_(std::abs(std::int64_t{height})), rects_(rects), capacity_(capacity) {
    const nkdraw::LayoutFacts* const facts = nkdraw::findFacts(type);
    if (facts != nullptr && nkdraw::isYCbCr(type) && facts->groupPixels > 1)
      columns_ = 2;  // of a pair, which shares its chroma
    fillsWide_ = nkdraw::isThreeByteType(type);
  }

  void addFrame(NKLayer layer) { addInside(layer, {0, 0, width_, height_}); }

  /// What leaves the frame at a side goes on in other rows.
  void add(NKLayer layer, Extent extent) {
    if (fillsWide_)
      extent.right = (extent.right * 4 + 2) / 3;
    if (extent.left < 0 || extent.right > width_)
      addFrame(layer);
    else
      addInside(layer, extent);
  }

  void addInside(NKLayer layer, const Extent& extent) {
    const Extent part = {std::max<std::int64_t>(extent.left, 0) / columns_ * columns_,
                         std::max<std::int64_t>(extent.top, 0),
                         (std::min(extent.right, width_) + columns_ - 1) / columns_ * columns_,
                         std::min(extent.bottom, height_)};
    if (part.left >= part.right || part.top >= part.bottom)
      return;
    if (count_ < capacity_)
      rects_[count_] = {
          layer,
          {static_cast<std::int32_t>(part.left), static_cast<std::int32_t>(part.top),
           static_cast<std::int32_t>(part.right), static_cast<std::int32_t>(part.bottom)}};
    ++count_;
  }

  [[nodiscard]] std::uint32_t count() const { return count_; }

 private:
  std::int64_t width_, height_;
  std::int64_t columns_ = 1;  // touched together
  bool fillsWide_ = false;    // backgrounds, with four bytes a pixel
  NKTouchedRect* rects_;
  std::uint32_t capacity_, count_ = 0;
};

pixelType typeOf(const NKDraw* surface, BITMAPINFO header) {
  if (surface != nullptr)
    return surface->PixelType();
  auto type = static_cast<std::uint32_t>(ptNone);
  nkdraw::DrawSizeFromBitmapInfo(&header, &type);
  return static_cast<pixelType>(type);
}

}  // namespace

std::uint32_t CNkOverlay::TouchedRects(const QFRAME* frame, std::uint32_t timecodeOffset,
                                       NKTouchedRect* rects, std::uint32_t capacity) const {
  const BITMAPINFOHEADER& header = videoHeader.bmiHeader;
  const pixelType type = typeOf(surface, videoHeader);
  if (Enabled == 0 || header.biSizeImage == 0 || type == ptNone)
    return 0;
  Collector touched(header.biWidth, header.biHeight, type, rects, capacity);
  const auto addText = [&](NKLayer layer, const char* text, tagRECT& rect) {
    const Extent extent = extentOf(text, rect);
    if (*text != '\0' && usesBuiltInFont())
      touched.add(layer, extent);
    else if (*text != '\0')
      touched.addFrame(layer);
  };
  const auto longestClock = [] { return Texts::ClockText{"00:00:00.000"}; };
  Texts::eachRow(*this, *frame, timecodeOffset, longestClock,
                 [&](const char* text, tagRECT& rect) { addText(NKLayerTimecode, text, rect); });
  if (WatermarkEnable != 0 &&
      (watermark10 != nullptr || watermark8 != nullptr || watermarkRGBA != nullptr)) {
    const Extent extent = {WatermarkX, WatermarkY, std::int64_t{WatermarkX} + watermarkWidth,
                           std::int64_t{WatermarkY} + watermarkHeight};
    if (nkdraw::isThreeByteType(type))
      touched.addFrame(NKLayerWatermark);
    else
      touched.add(NKLayerWatermark, extent);
  }
  Texts::eachLine(*this, addText);
  if (AudioEnable != 0) {
    const std::int64_t y = Texts::evenIn(*this, AudioY);
    touched.add(NKLayerAudio, {AudioX, y, AudioX + kPanelWidth, y + kPanelHeight});
  }
  if (CaptionsEnable != 0)
    touched.addFrame(NKLayerCaptions);
  return touched.count();
}
