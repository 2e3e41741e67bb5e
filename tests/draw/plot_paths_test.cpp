// SPDX-License-Identifier: BSD-2-Clause
//
// The ways that a pixel can be plotted. The library plots whole runs on the classes that it knows,
// and pixel by pixel through virtual functions on any other. Random pictures are drawn on four
// surfaces: the library's own class, a derived class that overrides nothing, one that overrides
// PutPixel, and a model with a plain implementation of the operations. All four must be the same to
// the bit, and the override must see every pixel in order.
#include "shape_log.h"

#include <tests/support/model.h>
#include <tests/support/reference_draw.h>
#include <tests/support/reference_shapes.h>
#include <tests/support/reference_soft_lines.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr std::size_t kSlack = 1 << 17;

/// The surfaces under test, and the model.
class Bench {
 public:
  Bench(pixelType type, int width, int height, int pitch, std::uint32_t seed)
      : known_(bytes(height, pitch), seed, kSlack),
        unknown_(known_),
        watched_(known_),
        model_(known_),
        type_(type) {
    surfaces_[0] = makeSurface(type, width, height, pitch, known_.canvas());
    surfaces_[1] = makeDerived<Unknown>(type, width, height, pitch, unknown_.canvas());
    surfaces_[2] = makeDerived<Recording>(type, width, height, pitch, watched_.canvas(), &log_);
    onModel_ = makeDerived<Unknown>(type, width, height, pitch, model_.canvas());
  }

  /// Does the same to each of the surfaces, and to the one on the model's canvas.
  template <class Work>
  void each(Work work) {
    drawOnEach(work);
    work(*onModel_);
  }

  /// Draws on the surfaces with `work` and on the model with `reference`, and compares. Does
  /// nothing if the frames have no room for what is plotted.
  template <class Work, class Reference>
  void draw(Work work, Reference reference) {
    ReferenceDraw steps(type_);
    reference(steps);
    if (!hasRoom(steps))
      return;
    log_->plots.clear();
    drawOnEach(work);
    Model model;
    model.take(*surfaces_[0], model_.data());
    std::vector<Plot> plots;
    for (const Step& step : steps.steps) {
      if (step.kind == Step::Kind::kFill) {
        model.fillRow(step.x, step.y, step.x2);
      } else if (step.kind == Step::Kind::kFillAll) {
        model.fillAll();
      } else {
        model.put(step.x, step.y, step.foreground);
        plots.push_back({step.x, step.y, step.foreground});
      }
    }
    ASSERT_TRUE(log_->plots == plots) << "what the override sees";
    expectSame();
  }

  /// The same with a reference that reads and sets colours of a surface as it goes.
  template <class Work, class Reference>
  void drawSoft(Work work, Reference reference) {
    drawOnEach(work);
    reference(*onModel_);
    expectSame();
    Model wanted;
    wanted.take(*onModel_, nullptr);
    for (const Surface& surface : surfaces_) {
      Model model;
      model.take(*surface, nullptr);
      ASSERT_TRUE(model.hasInkOf(wanted));
    }
  }

  NKDraw& first() { return *surfaces_[0]; }

 private:
  /// Nothing is clipped, and some surfaces write above the canvas when they are told to.
  [[nodiscard]] bool hasRoom(const ReferenceDraw& reference) const {
    const auto fits = [this](const Step& step) {
      const std::int64_t pitch = surfaces_[0]->Pitch();
      return (step.y >= 0 || takesRowsAbove(type_)) &&
             step.y * pitch + std::int64_t{8} * std::abs(step.x) < std::int64_t{kSlack};
    };
    return std::all_of(reference.steps.begin(), reference.steps.end(), fits);
  }

  template <class Work>
  void drawOnEach(Work work) {
    for (const Surface& surface : surfaces_)
      work(*surface);
  }

  void expectSame() {
    ASSERT_TRUE(known_.all() == model_.all()) << "the library's own class";
    ASSERT_TRUE(unknown_.all() == model_.all()) << "a class that overrides nothing";
    ASSERT_TRUE(watched_.all() == model_.all()) << "a class that overrides PutPixel";
    for (const Surface& surface : surfaces_) {
      ASSERT_EQ(DrawFields::penXOf(*surface), DrawFields::penXOf(*surfaces_[0]));
      ASSERT_EQ(DrawFields::penYOf(*surface), DrawFields::penYOf(*surfaces_[0]));
    }
  }

  static std::size_t bytes(int height, int pitch) {
    return static_cast<std::size_t>(height) * static_cast<std::size_t>(std::max(pitch, 400));
  }

  Frame known_, unknown_, watched_, model_;
  pixelType type_;
  PlotLog* log_ = nullptr;
  std::array<Surface, 3> surfaces_;
  Surface onModel_;
};

class PlotPaths : public testing::TestWithParam<pixelType> {
 protected:
  PlotPaths() : random_(static_cast<std::uint32_t>(GetParam()) * 1000 + 7) {}

  Bench makeBench() {
    width_ = random_.between(1, 70);
    height_ = random_.between(1, 40);
    const int pitch = random_.flag() ? 0 : 281 + random_.between(0, 60);
    return Bench(GetParam(), width_, height_, pitch, random_.word());
  }

  void changeState(Bench& bench) {
    std::array<double, 8> channels{};
    for (double& channel : channels)
      channel = random_.real(0.0, 1.0);
    const bool blends = random_.flag(), adds = random_.between(0, 3) == 0;
    const double ink = random_.between(0, 3) == 0 ? 0.0 : random_.real(0, 1);
    const double paper = random_.between(0, 3) == 0 ? 0.0 : random_.real(0, 1);
    const bool clearText = random_.flag();
    std::array<std::uint32_t, 8> words{};
    for (std::uint32_t& word : words)
      word = random_.word();
    bench.each([&](NKDraw& surface) {
      for (int i = 0; i < 8; ++i)
        setDeepWord(surface, i < 4, i % 4, words[static_cast<std::size_t>(i)]);
      surface.SetColorRGBA(channels[0], channels[1], channels[2], channels[3], true);
      surface.SetColorRGBA(channels[4], channels[5], channels[6], channels[7], false);
      surface.SetTransparency(ink, true);
      surface.SetTransparency(paper, false);
      surface.SetTransparency(blends);
      surface.SetAlphaAdditive(adds);
      surface.SetTextTransparent(clearText);
    });
  }

  int x() { return random_.between(-30, width_ + 30); }
  int y() { return random_.between(takesRowsAbove(GetParam()) ? -6 : 0, height_ + 6); }

  std::string text(int longest, bool anyCode) {
    std::string letters;
    for (int length = random_.between(0, longest); length > 0; --length)
      letters += static_cast<char>(anyCode ? random_.between(1, 255) : random_.between(1, 127));
    return letters;
  }

  void drawLines(Bench& bench) {
    const int x1 = x(), y1 = y(), x2 = x(), y2 = y();
    switch (random_.between(0, 6)) {
      case 0:
        bench.draw([=](NKDraw& d) { ASSERT_EQ(d.Line(x1, y1, x2, y2), 0U); },
                   [=](ReferenceDraw& r) { r.line(x1, y1, x2, y2); });
        break;
      case 1:
        bench.draw([=](NKDraw& d) { ASSERT_EQ(d.LineVert(x1, y1, y2), 0U); },
                   [=](ReferenceDraw& r) { r.lineVert(x1, y1, y2); });
        break;
      case 2: {  // where a row is filled at once its ends must be in order
        const bool fills = fillsRows(GetParam());
        const int left = fills ? std::min(x1, x2) : x1, right = fills ? std::max(x1, x2) : x2;
        bench.draw([=](NKDraw& d) { ASSERT_EQ(d.LineHoriz(left, std::abs(y1), right), 0U); },
                   [=](ReferenceDraw& r) { r.lineHoriz(left, std::abs(y1), right); });
        break;
      }
      case 3: {
        const int on = random_.between(-1, 6), off = random_.between(-1, 6);
        bench.draw([=](NKDraw& d) { ASSERT_EQ(d.Dash(x1, y1, x2, y2, on, off), 0U); },
                   [=](ReferenceDraw& r) { r.dash(x1, y1, x2, y2, on, off); });
        break;
      }
      case 4: {
        std::vector<tagPOINT> points;
        for (int i = random_.between(2, 6); i >= 0; --i)
          points.push_back({x(), y()});
        const auto count = static_cast<std::uint32_t>(points.size() - 1);
        const std::vector<tagPOINT> drawn(points.begin(), points.end() - 1);
        bench.draw([&](NKDraw& d) { ASSERT_EQ(d.PolylineTo(points.data(), count), 0U); },
                   [&](ReferenceDraw& r) { r.polyline(drawn); });
        ASSERT_EQ(DrawFields::penXOf(bench.first()), points.back().x);
        break;
      }
      case 5: {
        const int fromX = DrawFields::penXOf(bench.first());
        const int fromY = DrawFields::penYOf(bench.first());
        bench.draw([=](NKDraw& d) { ASSERT_EQ(d.LineTo(x1, y1), 0U); },
                   [=](ReferenceDraw& r) { r.line(fromX, fromY, x1, y1); });
        ASSERT_EQ(DrawFields::penXOf(bench.first()), x1);
        ASSERT_EQ(DrawFields::penYOf(bench.first()), y1);
        break;
      }
      default: {
        const bool ink = random_.flag();
        bench.draw([=](NKDraw& d) { d.Point(x1, y1, ink); },
                   [=](ReferenceDraw& r) { r.put(x1, y1, ink); });
        break;
      }
    }
  }

  void drawLabel(Bench& bench) {
    const std::string letters = text(6, random_.flag());
    const int scale = random_.between(0, 5), left = x();
    // The 32-bit layouts fill rows without a look at y, which must lie on the canvas there.
    const int top = fillsRows(GetParam()) && scale > 1 ? std::abs(y()) : y();
    const bool invert = random_.flag(), fill = random_.flag();
    bench.draw(
        [&](NKDraw& d) {
          ASSERT_EQ(d.LabelFont(12U, scale), 0U);
          ASSERT_EQ(d.Label(left, top, letters.c_str(), invert, fill), 0U);
        },
        [&](ReferenceDraw& r) { r.label(left, top, letters.c_str(), invert, fill, scale); });
  }

  void drawText(Bench& bench) {
    const std::string letters = text(4, random_.flag());
    constexpr std::uint32_t kFormats[] = {0x0, 0x1, 0x2, 0x3, 0x8, 0x9, 0xA, 0x10, 0x100000};
    const std::uint32_t format = kFormats[random_.between(0, 8)] | (random_.flag() ? 0x400U : 0U);
    const int count = random_.between(0, 6);
    const int lines = random_.between(0, 23) * 10 + random_.between(0, 9);
    const int top = y(), left = x();
    tagRECT rect = {left, top, left + random_.between(0, 400), top + lines};
    if (random_.between(0, 9) == 0)
      rect.bottom = 0;
    if (random_.between(0, 9) == 0)
      std::swap(rect.top, rect.bottom);
    const bool clearText = DrawFields::transparentText(bench.first());
    tagRECT want = rect;
    bench.draw(
        [&](NKDraw& d) {
          tagRECT own = rect;
          ASSERT_EQ(d.DrawText(letters.c_str(), count, &own, format), 0);
          tagRECT wanted = rect;
          ReferenceDraw unused(GetParam());
          unused.drawText(letters.c_str(), count, wanted, format, clearText);
          ASSERT_EQ(own.left, wanted.left);
          ASSERT_EQ(own.top, wanted.top);
          ASSERT_EQ(own.right, wanted.right);
          ASSERT_EQ(own.bottom, wanted.bottom);
        },
        [&](ReferenceDraw& r) { r.drawText(letters.c_str(), count, want, format, clearText); });
  }

  /// A shape, and its plain implementation.
  struct Shape {
    std::function<void(NKDraw&)> draw;
    std::function<void(ReferenceShapes&)> tell;
  };

  Shape arc() {
    std::array<int, 8> p{};
    for (std::size_t i = 0; i < 8; i += 2) {
      p[i] = x();
      p[i + 1] = y();
    }
    if (p[0] > p[2])
      std::swap(p[0], p[2]);
    if (random_.between(0, 4) != 0 && p[1] > p[3])
      std::swap(p[1], p[3]);
    switch (random_.between(0, 2)) {
      case 0:
        return {[p](NKDraw& d) { d.Arc(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); },
                [p](ReferenceShapes& r) { r.arc(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); }};
      case 1:
        return {
            [p](NKDraw& d) { d.ArcTo(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); },
            [p](ReferenceShapes& r) { r.arcTo(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); }};
      default:
        return {[p](NKDraw& d) { d.Pie(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); },
                [p](ReferenceShapes& r) { r.pie(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]); }};
    }
  }

  Shape turn() {
    const int left = x(), top = y(), rx = random_.between(-3, 40), ry = random_.between(-3, 25);
    const auto start = static_cast<float>(random_.real(-400, 400));
    const auto end = static_cast<float>(random_.real(-400, 400));
    switch (random_.between(0, 3)) {
      case 0:
        return {[=](NKDraw& d) { d.Circle(left, top, rx); },
                [=](ReferenceShapes& r) {
                  r.angleArc(left, top, static_cast<std::uint32_t>(rx), 0.0F, 360.0F);
                }};
      case 1:
        return {[=](NKDraw& d) { d.Ellipse(left, top, rx, ry); },
                [=](ReferenceShapes& r) { r.angleArcTo(left, top, rx, ry, 0.0F, 360.0F); }};
      case 2:
        return {
            [=](NKDraw& d) { d.AngleArc(left, top, static_cast<std::uint32_t>(rx), start, end); },
            [=](ReferenceShapes& r) {
              r.angleArc(left, top, static_cast<std::uint32_t>(rx), start, end);
            }};
      default:
        return {[=](NKDraw& d) { d.AngleArcTo(left, top, rx, ry, start, end); },
                [=](ReferenceShapes& r) { r.angleArcTo(left, top, rx, ry, start, end); }};
    }
  }

  Shape curve() {
    std::array<tagPOINT, 10> p{};
    for (tagPOINT& point : p)
      point = {x(), y()};
    switch (random_.between(0, 2)) {
      case 0:
        return {[p](NKDraw& d) {
                  d.Bezier(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
                },
                [p](ReferenceShapes& r) {
                  r.bezier(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
                }};
      case 1:
        return {[p](NKDraw& d) { d.PolyBezier(p.data(), 10); },
                [p](ReferenceShapes& r) { r.polyBezier(p.data(), 10); }};
      default:
        return {[p](NKDraw& d) { d.PolyBezierTo(p.data(), 7); },
                [p](ReferenceShapes& r) { r.polyBezierTo(p.data(), 7); }};
    }
  }

  Shape outline() {
    const int x1 = x(), y1 = y(), x2 = x(), y2 = y();
    const int wide = random_.between(-2, 40), high = random_.between(-2, 25);
    if (random_.flag()) {
      return {[=](NKDraw& d) { d.Rectangle(x1, y1, x2, y2); },
              [=](ReferenceShapes& r) { r.rectangle(x1, y1, x2, y2); }};
    }
    return {[=](NKDraw& d) { d.RoundRect(x1, y1, x2, y2, wide, high); },
            [=](ReferenceShapes& r) { r.roundRect(x1, y1, x2, y2, wide, high); }};
  }

  /// Whether the frames have room for what is plotted.
  bool hasRoom(const std::vector<Segment>& lines) const {
    const auto fits = [this](int x, int y) {
      return x >= -90 && x <= width_ + 90 && y <= height_ + 60 &&
             (y >= 0 || takesRowsAbove(GetParam()));
    };
    return std::all_of(lines.begin(), lines.end(), [&fits](const Segment& line) {
      return fits(line.x1, line.y1) && fits(line.x2, line.y2);
    });
  }

  /// False when the shape would leave the frames.
  bool drawShape(Bench& bench) {
    const Shape shape = randomShape();
    ReferenceShapes reference;
    reference.ends = arcEnds();
    reference.pen = {DrawFields::penXOf(bench.first()), DrawFields::penYOf(bench.first())};
    shape.tell(reference);
    if (!hasRoom(reference.lines))
      return false;
    bench.draw(shape.draw, [&](ReferenceDraw& r) { r.shape(reference.lines); });
    EXPECT_EQ(DrawFields::penXOf(bench.first()), reference.pen.x);
    EXPECT_EQ(DrawFields::penYOf(bench.first()), reference.pen.y);
    return true;
  }

  Shape randomShape() {
    switch (random_.between(0, 3)) {
      case 0:
        return arc();
      case 1:
        return turn();
      case 2:
        return curve();
      default:
        return outline();
    }
  }

  void drawFill(Bench& bench) {
    if (random_.between(0, 4) == 0) {
      const bool flag = random_.flag();
      bench.draw([=](NKDraw& d) { ASSERT_EQ(d.EraseCanvas(flag), 0U); },
                 [this](ReferenceDraw& r) { r.eraseCanvas(width_, height_); });
      return;
    }
    const int left = x(), top = random_.between(0, height_);
    tagRECT rect = {left, top, left + random_.between(0, 30), random_.between(0, height_)};
    if (random_.between(0, 3) == 0)
      rect = {left, top, left + width_, top + height_};
    bench.draw([&](NKDraw& d) { ASSERT_EQ(d.FillRect(&rect), 0U); },
               [&](ReferenceDraw& r) { r.fillRect(rect, width_, height_); });
  }

  void drawSoft(Bench& bench) {
    const int x1 = x(), y1 = std::abs(y()), x2 = x(), y2 = std::abs(y());
    const int penX = std::abs(DrawFields::penXOf(bench.first())) % 50;
    const bool weighted = x1 != x2 && y1 != y2 && std::abs(x2 - x1) != std::abs(y2 - y1);
    switch (random_.between(0, weighted ? 2 : 1)) {
      case 0:
        bench.drawSoft([=](NKDraw& d) { ASSERT_EQ(d.LineWu(x1, y1, x2, y2), 0U); },
                       [=](NKDraw& d) { referenceLineWu(d, x1, y1, x2, y2); });
        break;
      case 1:
        bench.drawSoft(
            [=](NKDraw& d) {
              d.MoveTo(penX, y1);
              ASSERT_EQ(d.LineWuTo(x2, y2), 0U);
              ASSERT_EQ(DrawFields::penXOf(d), x2);
            },
            [=](NKDraw& d) { referenceLineWu(d, penX, y1, x2, y2); });
        break;
      default:
        bench.drawSoft(
            [=](NKDraw& d) {
              PixelFields::antialiased(d) = true;
              ASSERT_EQ(d.Line(x1, y1, x2, y2), 0U);
              PixelFields::antialiased(d) = false;
            },
            [=](NKDraw& d) { referenceWeightedLine(d, x1, y1, x2, y2); });
        break;
    }
  }

  Random random_;
  int width_ = 0, height_ = 0;
};

INSTANTIATE_TEST_SUITE_P(AllLayouts, PlotPaths, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

TEST_P(PlotPaths, LinesAreTheSameOnAll) {
  for (int picture = 0; picture < 40; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 30; ++i) {
      if (i % 5 == 0)
        changeState(bench);
      drawLines(bench);
      ASSERT_FALSE(HasFatalFailure()) << "picture " << picture << " operation " << i;
    }
  }
}

TEST_P(PlotPaths, ShapesAreTheSameOnAll) {
  int drawn = 0;
  for (int picture = 0; picture < 40; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 30; ++i) {
      if (i % 5 == 0)
        changeState(bench);
      drawn += drawShape(bench) ? 1 : 0;
      ASSERT_FALSE(HasFailure()) << "picture " << picture << " operation " << i;
    }
  }
  EXPECT_GT(drawn, 500);
}

TEST_P(PlotPaths, FillsAreTheSameOnAll) {
  for (int picture = 0; picture < 20; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 15; ++i) {
      changeState(bench);
      drawFill(bench);
      ASSERT_FALSE(HasFatalFailure()) << "picture " << picture << " operation " << i;
    }
  }
}

TEST_P(PlotPaths, AntialiasedLinesAreTheSameOnAll) {
  for (int picture = 0; picture < 20; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 15; ++i) {
      changeState(bench);
      drawSoft(bench);
      ASSERT_FALSE(HasFatalFailure()) << "picture " << picture << " operation " << i;
    }
  }
}

TEST_P(PlotPaths, LabelsAreTheSameOnAll) {
  for (int picture = 0; picture < 15; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 10; ++i) {
      changeState(bench);
      drawLabel(bench);
      ASSERT_FALSE(HasFatalFailure()) << "picture " << picture << " operation " << i;
    }
  }
}

TEST_P(PlotPaths, TextIsTheSameOnAll) {
  for (int picture = 0; picture < 12; ++picture) {
    Bench bench = makeBench();
    for (int i = 0; i < 8; ++i) {
      changeState(bench);
      drawText(bench);
      ASSERT_FALSE(HasFatalFailure()) << "picture " << picture << " operation " << i;
    }
  }
}

TEST_P(PlotPaths, TextOfEveryMagnificationIsTheSameOnAll) {
  for (int m = 1; m <= 20; ++m) {
    Bench bench = makeBench();
    changeState(bench);
    const bool clearText = DrawFields::transparentText(bench.first());
    for (const char* const letters : {"^", "_a", "\xB0\x7F"}) {
      const tagRECT rect = {3, 2, 400, 2 + 10 * m + 9};
      bench.draw(
          [&](NKDraw& d) {
            tagRECT own = rect;
            d.DrawText(letters, 2, &own, 0);
          },
          [&](ReferenceDraw& r) {
            tagRECT own = rect;
            r.drawText(letters, 2, own, 0, clearText);
          });
      ASSERT_FALSE(HasFatalFailure()) << "magnification " << m;
    }
  }
}

TEST_P(PlotPaths, ARunSeesTheColourOfItsOwnOperation) {
  // Colours change between operations of one picture, and rows are cached nowhere.
  Bench bench = makeBench();
  for (int i = 0; i < 50; ++i) {
    bench.each([i](NKDraw& d) { d.SetColorRGBA(i / 50.0, 0.5, 1.0 - i / 50.0, 1.0, true); });
    bench.draw([](NKDraw& d) { d.Line(0, 0, 20, 0); },
               [](ReferenceDraw& r) { r.line(0, 0, 20, 0); });
    ASSERT_FALSE(HasFatalFailure());
  }
}

}  // namespace
