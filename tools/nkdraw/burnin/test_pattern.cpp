// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/test_pattern.h"

#include "media/failure.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace nkdraw::tool {
namespace {

constexpr int kBars = 8;
constexpr int kSteps = 16;
constexpr double kBarLevel = 0.75;
constexpr int kFramesToCross = 100;  // by the moving box

int even(int value) {
  return value & ~1;
}

/// 10-bit studio codes by the formulas of ITU-R BT.601 and BT.709.
struct StudioCodes {
  std::uint32_t y, cb, cr;
};

StudioCodes studioCodes(double r, double g, double b, bool highDefinition) {
  const double kr = highDefinition ? 0.2126 : 0.299, kb = highDefinition ? 0.0722 : 0.114;
  const double luma = kr * r + (1.0 - kr - kb) * g + kb * b;
  const auto code = [](double value) { return static_cast<std::uint32_t>(std::lround(value)); };
  return {code(64.0 + 876.0 * luma), code(512.0 + 896.0 * (b - luma) / (2.0 * (1.0 - kb))),
          code(512.0 + 896.0 * (r - luma) / (2.0 * (1.0 - kr)))};
}

bool isFourByteRGB(pixelType type) {
  return type >= ptRGBA32 && type <= ptABGR32;
}

}  // namespace

void TestPattern::ReleaseSurface::operator()(NKDraw* surface) const {
  ReleaseDraw(surface);
}

TestPattern::TestPattern(const Layout& layout, int width, int height)
    : layout_(layout),
      width_(isYCbCr(layout.type) ? width + width % 2 : width),
      height_(height),
      still_(packedPitch(layout.type, width) * static_cast<std::size_t>(height)) {
  NKDraw* made = nullptr;
  if (GetDraw(static_cast<std::uint32_t>(layout.type), width_, height_, 0,
              reinterpret_cast<char*>(still_.data()), made) != 0)
    throw Failure(ExitCode::kProcessing, "no surface draws in this layout",
                  std::string(layout.name), "see nkdraw burnin --list-layouts");
  surface_.reset(made);
  drawStill();
}

void TestPattern::bind(std::uint8_t* canvas) {
  surface_->SetCanvas(reinterpret_cast<char*>(canvas), height_, width_, 0);
}

/// Video levels are set as codes, so greys are exactly neutral.
void TestPattern::choose(Colour colour) {
  if (isYCbCr(layout_.type)) {
    const StudioCodes codes =
        studioCodes(colour.r, colour.g, colour.b, matrixForWidth(width_) == AVCOL_SPC_BT709);
    surface_->SetColorYCbCr10(codes.y, codes.cb, codes.cr, 0, true);
  } else {
    surface_->SetColorRGBA(colour.r, colour.g, colour.b, 1.0, true);
  }
}

/// Edges are on even columns, so that both pixels of a 4:2:2 pair have one colour.
void TestPattern::fill(int left, int top, int right, int bottom, Colour colour) {
  choose(colour);
  // On 32-bit layouts the far end of a line is not drawn, on the others it is.
  const int end = isFourByteRGB(layout_.type) ? right : right - 1;
  for (int y = top; y < bottom; ++y)
    surface_->LineHoriz(left, y, end);
}

void TestPattern::drawStill() {
  const int barsEnd = height_ * 6 / 10, bandEnd = height_ * 3 / 4;
  for (int bar = 0; bar < kBars; ++bar) {
    // White, yellow, cyan, green, magenta, red, blue, black.
    const Colour colour = {(bar & 2) == 0 ? kBarLevel : 0.0, (bar & 4) == 0 ? kBarLevel : 0.0,
                           (bar & 1) == 0 ? kBarLevel : 0.0};
    fill(even(width_ * bar / kBars), 0,
         bar + 1 == kBars ? width_ : even(width_ * (bar + 1) / kBars), barsEnd, colour);
  }
  fill(0, barsEnd, width_, bandEnd, {0.1, 0.1, 0.1});
  for (int step = 0; step < kSteps; ++step) {
    const double level = 0.9 * step / (kSteps - 1);
    fill(even(width_ * step / kSteps), bandEnd,
         step + 1 == kSteps ? width_ : even(width_ * (step + 1) / kSteps), height_,
         {level, level, level});
  }
}

void TestPattern::drawBox(std::int64_t index) {
  const int top = height_ * 6 / 10 + height_ / 40, bottom = height_ * 3 / 4 - height_ / 40;
  const int size = std::max(even(bottom - top), 2);
  const auto way = static_cast<std::int64_t>(width_ - size);
  const std::int64_t step = index % (2 * kFramesToCross);
  const std::int64_t place = step < kFramesToCross ? step : 2 * kFramesToCross - step;
  const int left = even(static_cast<int>(way * place / kFramesToCross));
  fill(left, top, left + size, bottom, {0.9, 0.6, 0.1});
}

void TestPattern::drawNumber(std::int64_t index) {
  char text[32];
  std::snprintf(text, sizeof text, "FRAME %06lld", static_cast<long long>(index));
  const auto length = static_cast<int>(std::strlen(text));
  const int magnification = std::clamp(even(width_ / (length * 8 * 3)), 1, 20);
  const int textWidth = length * 8 * magnification, textHeight = 10 * magnification;
  const int border = even(4 * magnification);
  const int left = even((width_ - textWidth) / 2), top = even((height_ * 6 / 10 - textHeight) / 2);
  if (left < border || top < border)
    return;  // the frame is too small for it
  fill(left - border, top - border, left + textWidth + border, top + textHeight + border,
       {0.0, 0.0, 0.0});
  choose({0.9, 0.9, 0.9});
  surface_->SetTextTransparent(true);
  tagRECT rect = {left, top, left + textWidth, top + textHeight};
  surface_->DrawText(text, length, &rect, 0);
}

void TestPattern::draw(std::uint8_t* canvas, std::int64_t index) {
  std::copy(still_.begin(), still_.end(), canvas);
  bind(canvas);
  drawBox(index);
  drawNumber(index);
}

}  // namespace nkdraw::tool
