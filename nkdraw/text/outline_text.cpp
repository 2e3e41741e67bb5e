// SPDX-License-Identifier: BSD-2-Clause
//
// Text in the platform's outline font. The platform supplies the outlines, the extent and a filled
// mask; the surface draws the lines, curves and pixels.
#include <nkdraw/text/text_paths.h>

#include <nkdraw/draw/weighted_line.h>
#include <nkdraw/platform/graphics.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/font_data.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace {

using nkdraw::Channels;
using nkdraw::penColour;
using nkdraw::wrappingAdd;

// Arguments, numbered as in the platform's graphics interface.
constexpr int kColourCount = 24;
constexpr int kThin = 100;
constexpr std::uint32_t kPlatformCharacters = 255;
constexpr std::uint32_t kOutlinesOnly = 7;
constexpr std::uint32_t kAntialiased = 4;
constexpr int kTransparent = 1;
constexpr int kDifference = 4;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0;

template <auto release>
struct Release {
  template <class Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};
using Context = std::unique_ptr<nkDeviceContext, Release<DeleteDC>>;
using Object = std::unique_ptr<nkGraphicsObject, Release<DeleteObject>>;
using Region = std::unique_ptr<nkRegion, Release<nkDeleteRegion>>;
template <class Element>
using Block = std::unique_ptr<Element[], Release<NKFree>>;

/// Zeros: a missing point of a path has no type, and is not drawn.
template <class Element>
Block<Element> allocate(std::uint32_t count) {
  const auto bytes = count * static_cast<std::uint32_t>(sizeof(Element));
  Block<Element> block(static_cast<Element*>(NKAlloc(bytes)));
  if (block)
    nkOSZeroMemory(block.get(), bytes);
  return block;
}

/// Deliberate: callers rely on the colours. Channels are 0 to 1 already, so this darkens nearly to
/// black.
void setDarkened(NKDraw& surface, const Channels& colour, double alpha) {
  surface.SetColorRGBA(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0, alpha, true);
}

/// The recorded path of a text.
struct Outline {
  Block<std::uint8_t> types;
  Block<tagPOINT> points;
  int count = 0;  ///< 0 when there was no memory for them
};

/// A text in the platform's terms: its font, its mask and its path.
class PlatformText {
 public:
  PlatformText(const char* text, std::int32_t count) : text_(text), count_(count) {
    GetDeviceCaps(screen_.get(), kColourCount);
    const int height = nkdraw::wrappingSubtract(0, nkdraw::fontData.fontPointSize);
    font_.reset(CreateFontA(height, 0, 0, 0, kThin, 0, 0, 0, kPlatformCharacters, kOutlinesOnly, 0,
                            kAntialiased, 0, "Times New Roman"));
  }

  [[nodiscard]] bool hasFont() const { return font_ != nullptr; }
  [[nodiscard]] const tagSIZE& extent() const { return extent_; }

  /// Opens the font and makes a mask of the size of the text.
  void makeMask() {
    SelectObject(screen_.get(), SelectObject(screen_.get(), font_.get()));
    canvas_.reset(CreateCompatibleDC(screen_.get()));
    SetTextAlign(canvas_.get(), 0);
    SetTextColor(canvas_.get(), kWhite);
    SetBkColor(canvas_.get(), kBlack);
    SetBkMode(canvas_.get(), kTransparent);
    SelectObject(canvas_.get(), font_.get());
    measure();
    bitmap_.reset(CreateCompatibleBitmap(screen_.get(), extent_.cx, extent_.cy));
    SelectObject(canvas_.get(), bitmap_.get());
  }

  /// Deliberate: callers rely on the colours. Channels from 0 to 1 are truncated to integers. If
  /// all are below 1, the mask is filled with black and shows nothing.
  void chooseColour(const Channels& colour) {
    const std::uint32_t word = nkdraw::truncateToLow8(colour.r) |
                               std::uint32_t{nkdraw::truncateToLow8(colour.g)} << 8 |
                               std::uint32_t{nkdraw::truncateToLow8(colour.b)} << 16;
    pen_.reset(CreatePen(0, 1, word));
    brush_.reset(CreateSolidBrush(word));
    blackPen_.reset(CreatePen(0, 1, kBlack));
    SelectObject(canvas_.get(), pen_.get());
    SelectObject(canvas_.get(), brush_.get());
  }

  /// Records the path, and allocates its points.
  [[nodiscard]] Outline record() {
    MoveToEx(canvas_.get(), 0, 0, nullptr);
    BeginPath(canvas_.get());
    TextOutA(canvas_.get(), 0, 0, text_, count_);
    endPath();
    const int count = std::max(GetPath(canvas_.get(), nullptr, nullptr, 0), 0);
    const auto room = static_cast<std::uint32_t>(count);
    Outline outline{allocate<std::uint8_t>(room), allocate<tagPOINT>(room), count};
    if (!outline.points || !outline.types)
      outline.count = 0;
    return outline;
  }

  void fillMask() {
    FlattenPath(canvas_.get());
    SelectClipPath(canvas_.get(), kDifference);
    FillPath(canvas_.get());
    AbortPath(canvas_.get());
  }

  /// Records the path again, with curves flattened to straight lines.
  void recordFlat(Outline& outline, tagRECT& rect, std::uint32_t format) {
    BeginPath(canvas_.get());
    TextOutA(canvas_.get(), 0, 0, text_, count_);
    if ((format & DT_CALCRECT) != 0) {
      measure();
      rect.right = wrappingAdd(rect.left, extent_.cy);  // deliberate: callers rely on the height
    }
    endPath();
    FlattenPath(canvas_.get());
    GetPath(canvas_.get(), outline.points.get(), outline.types.get(), outline.count);
    SelectClipPath(canvas_.get(), kDifference);
    const Region unused(PathToRegion(canvas_.get()));
    GetLastError();
  }

  [[nodiscard]] bool inked(int x, int y) {
    const bool ink = GetPixel(canvas_.get(), x, y) != 0;
    GetPixel(canvas_.get(), wrappingAdd(x, 1), y);
    return ink;
  }

 private:
  void measure() { GetTextExtentPoint32A(canvas_.get(), text_, count_, &extent_); }

  void endPath() {
    CloseFigure(canvas_.get());
    EndPath(canvas_.get());
  }

  const char* text_;
  std::int32_t count_;
  tagSIZE extent_ = {0, 0};
  Context screen_{CreateICA("DISPLAY")};
  // Declared before the context that they are selected into, so the context is destroyed first.
  Object font_, bitmap_, pen_, brush_, blackPen_;
  Context canvas_;
};

/// Draws the lines and curves of a path, moved to the rectangle's upper left corner.
class OutlineWalk {
 public:
  OutlineWalk(NKDraw& surface, const Outline& outline, const tagRECT& rect)
      : surface_(surface),
        points_(outline.points.get()),
        types_(outline.types.get()),
        count_(outline.count),
        left_(rect.left),
        top_(rect.top) {}

  void draw() {
    tagPOINT figureStart = {left_, top_};
    for (int i = 0; i < count_; ++i) {
      const std::uint8_t type = types_[i];
      const auto kind = static_cast<std::uint8_t>(type & ~PT_CLOSEFIGURE);
      if (kind == PT_MOVETO)
        figureStart = at(i);
      else if (kind == PT_LINETO && i > 0)
        line(at(i - 1), at(i));
      else if (kind == PT_BEZIERTO && i > 0 && i + 2 < count_)
        curve(i);
      else
        continue;
      if (kind != PT_MOVETO && (type & PT_CLOSEFIGURE) != 0)
        line(at(i), figureStart);
      if (kind == PT_BEZIERTO)
        i += 2;
    }
  }

 private:
  [[nodiscard]] tagPOINT at(int i) const {
    return {wrappingAdd(left_, points_[i].x), wrappingAdd(top_, points_[i].y)};
  }

  void line(tagPOINT from, tagPOINT to) { surface_.Line(from.x, from.y, to.x, to.y); }

  void curve(int i) {
    const tagPOINT p1 = at(i - 1), p2 = at(i), p3 = at(i + 1), p4 = at(i + 2);
    surface_.Bezier(p1.x, p1.y, p2.x, p2.y, p3.x, p3.y, p4.x, p4.y);
  }

  NKDraw& surface_;
  const tagPOINT* points_;
  const std::uint8_t* types_;
  int count_;
  std::int32_t left_, top_;
};

/// Plots the pixels of the mask in `colour`, darkened.
void copyMask(NKDraw& surface, PlatformText& text, const tagRECT& rect, const Channels& colour) {
  const tagSIZE extent = text.extent();
  for (int y = 0; y < extent.cy; ++y) {
    for (int x = 0; x < extent.cx; ++x) {
      if (!text.inked(x, y))
        continue;
      setDarkened(surface, colour, 0.0);
      surface.PutPixel(wrappingAdd(rect.left, x), wrappingAdd(rect.top, y), true);
      setDarkened(surface, penColour(surface), 1.0);
    }
  }
}

}  // namespace

void nkdraw::drawOutlineText(NKDraw& surface, const char* text, std::int32_t count, tagRECT& rect,
                             std::uint32_t format) {
  PlatformText platform(text, std::min(count, lstrlenA(text)));
  if (!platform.hasFont())
    return;
  platform.makeMask();
  platform.chooseColour(penColour(surface));
  Outline outline = platform.record();
  setDarkened(surface, penColour(surface), 1.0);
  platform.fillMask();
  platform.recordFlat(outline, rect, format);
  const Channels colour = penColour(surface);
  OutlineWalk(surface, outline, rect).draw();
  copyMask(surface, platform, rect, colour);
}
