// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_canvas.h"

#include "media/frame_converter.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr std::size_t kColours = 3;

std::size_t coloursOf(AVPixelFormat format) {
  return av_pix_fmt_desc_get(format)->nb_components < kColours ? 1 : kColours;
}

std::vector<Component> colourComponents(AVPixelFormat format) {
  std::vector<Component> components;
  for (std::size_t i = 0; i < coloursOf(format); ++i)
    components.emplace_back(format, static_cast<int>(i));
  return components;
}

std::optional<Component> alphaOf(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  if ((facts.flags & AV_PIX_FMT_FLAG_ALPHA) == 0)
    return std::nullopt;
  return Component(format, facts.nb_components - 1);
}

SampleKind kindOf(bool isRGB, std::size_t component) {
  return isRGB ? SampleKind::kRGB : component == 0 ? SampleKind::kLuma : SampleKind::kChroma;
}

}  // namespace

FrameCanvas::FrameCanvas(const FrameShape& shape, std::vector<RowSpan> rows,
                         std::optional<Area> blended)
    : shape_(shape),
      kind_(canvasKindFor(shape.format)),
      width_(shape.orientation.turned ? shape.height : shape.width),
      height_(shape.orientation.turned ? shape.width : shape.height),
      pitch_(static_cast<std::ptrdiff_t>(packedPitch(kind_.type, width_))),
      rows_(std::move(rows)),
      blended_(kind_.blends ? blended : std::nullopt),
      components_(colourComponents(shape.format)),
      alpha_(alphaOf(shape.format)),
      drawn_(makeLine(kind_, width_)),
      before_(makeLine(kind_, width_)) {
  if (!kind_.isRGB && components_.size() == kColours)
    chroma_.emplace(shape.format, shape.width, shape.height, shape.interlaced);
}

void FrameCanvas::setRange(bool full) {
  if (full_ == full)
    return;
  full_ = full;
  scales_ = {};
  for (std::size_t i = 0; i < components_.size(); ++i) {
    const SampleKind kind = kindOf(kind_.isRGB, i);
    const Levels canvas = levelsOf(kind, kind_.depth, false);
    const Levels frame = levelsOf(kind, components_[i].depth(), full);
    scales_.toFrame.emplace_back(canvas, frame);
    if (blended_)
      scales_.toCanvas.emplace_back(frame, canvas);
  }
}

void FrameCanvas::allocate() {
  const auto bytes = static_cast<std::size_t>(pitch_ * height_);
  canvas_ = std::make_unique<std::uint8_t[]>(bytes);
  blank_ = std::make_unique<std::uint8_t[]>(bytes);
  const auto rowBytes = static_cast<std::size_t>(pitch_);
  for (const RowSpan span : rows_) {
    for (int y = span.first; y < span.end; ++y) {
      kind_.clear(row(blank_, y), rowBytes);
      std::memcpy(row(canvas_, y), row(blank_, y), rowBytes);
    }
  }
}

void FrameCanvas::prepare(const AVFrame& frame) {
  setRange(usesFullRange(frame));
  if (canvas_ == nullptr)
    allocate();
  if (blended_)
    load(frame, *blended_);
}

unsigned FrameCanvas::loaded(const AVFrame& frame, std::size_t component, Pixel at) const {
  return scales_.toCanvas[component](components_[component].get(frame, at.x, at.y));
}

void FrameCanvas::loadRGB(const AVFrame& frame, Pixel shown, std::uint8_t* pixel) const {
  const Pixel at = inFrame(shown.x, shown.y);
  for (std::size_t i = 0; i < kColours; ++i)
    pixel[kColours - 1 - i] = static_cast<std::uint8_t>(loaded(frame, i, at));
}

/// The chroma of a pair is that of its first pixel.
void FrameCanvas::loadYCbCr(const AVFrame& frame, Pixel shown, std::uint8_t* pair) const {
  const Pixel at = inFrame(shown.x, shown.y);
  pair[shown.x % 2 == 0 ? 1 : 3] = static_cast<std::uint8_t>(loaded(frame, 0, at));
  if (shown.x % 2 != 0)
    return;
  constexpr std::uint8_t kGrey = 128;
  const auto chroma = [&](std::size_t component) {
    return chroma_ ? static_cast<std::uint8_t>(loaded(frame, component, chroma_->sampleOf(at)))
                   : kGrey;
  };
  pair[0] = chroma(1);
  pair[2] = chroma(2);
}

void FrameCanvas::load(const AVFrame& frame, const Area& area) {
  constexpr std::ptrdiff_t kGroupBytes = 4;  // of a pixel in BGRA, and of a pair in UYVY
  const int first = area.x & ~1, end = std::min(area.x + area.width + 1, width_);
  for (int y = area.y; y < area.y + area.height; ++y) {
    std::uint8_t* const line = row(blank_, y);
    for (int x = first; x < end; ++x) {
      if (kind_.isRGB)
        loadRGB(frame, {x, y}, line + kGroupBytes * x);
      else
        loadYCbCr(frame, {x, y}, line + kGroupBytes * (x / 2));
    }
    std::memcpy(row(canvas_, y), line, static_cast<std::size_t>(pitch_));
  }
}

void FrameCanvas::takeOver(AVFrame& frame) {
  const auto bytes = static_cast<std::size_t>(pitch_);
  for (const RowSpan span : rows_) {
    for (int y = span.first; y < span.end; ++y) {
      std::uint8_t* const canvas = row(canvas_, y);
      const std::uint8_t* const blank = row(blank_, y);
      const Columns columns = changedColumns(kind_, canvas, blank, width_);
      if (columns.first == columns.end)
        continue;
      kind_.read(canvas, drawn_, columns.first, columns.end);
      kind_.read(blank, before_, columns.first, columns.end);
      takeRow(frame, y, columns);
      std::memcpy(canvas, blank, bytes);
    }
  }
  if (chroma_)
    chroma_->settle(frame);
}

void FrameCanvas::takeRow(AVFrame& frame, int y, Columns columns) {
  for (int x = columns.first; x < columns.end; ++x) {
    if (kind_.isRGB) {
      takeRGB(frame, x, y);
      continue;
    }
    takeLuma(frame, x, y);
    if (chroma_)
      takeChroma(x, y);
  }
}

void FrameCanvas::takeRGB(AVFrame& frame, int x, int y) const {
  constexpr std::size_t kAlpha = 3;
  const auto column = static_cast<std::size_t>(x);
  if (drawn_[kAlpha][column] == kind_.key)
    return;
  const Pixel at = inFrame(x, y);
  for (std::size_t i = 0; i < kColours; ++i)
    components_[i].put(frame, at.x, at.y, scales_.toFrame[i](drawn_[i][column]));
  makeOpaque(frame, at);
}

void FrameCanvas::takeLuma(AVFrame& frame, int x, int y) const {
  const auto column = static_cast<std::size_t>(x);
  if (!hasLuma(column))
    return;
  const Pixel at = inFrame(x, y);
  components_[0].put(frame, at.x, at.y, scales_.toFrame[0](drawn_[0][column]));
  makeOpaque(frame, at);
}

/// Whether the pixel's chroma was drawn. In the canvas, that of a pair belongs to both pixels; in
/// frames where every pixel has its own, only to those that were drawn on.
bool FrameCanvas::hasChroma(std::size_t x) const {
  const std::size_t pair = x / 2;
  const bool changed = drawn_[1][pair] != before_[1][pair] || drawn_[2][pair] != before_[2][pair];
  if (chroma_->isWhole())
    return hasLuma(x) || (changed && before_[0][x] != kind_.key);
  const std::size_t other = std::min(x ^ 1, static_cast<std::size_t>(width_) - 1);
  return changed || hasLuma(x) || hasLuma(other);
}

void FrameCanvas::takeChroma(int x, int y) {
  const auto column = static_cast<std::size_t>(x);
  if (hasChroma(column))
    chroma_->add(inFrame(x, y), scales_.toFrame[1](drawn_[1][column / 2]),
                 scales_.toFrame[2](drawn_[2][column / 2]));
}

void FrameCanvas::makeOpaque(AVFrame& frame, Pixel pixel) const {
  if (alpha_)
    alpha_->put(frame, pixel.x, pixel.y, alpha_->most());
}

}  // namespace nkdraw::media
