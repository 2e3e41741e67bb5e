// SPDX-License-Identifier: BSD-2-Clause
//
// Text with its background, and magnified labels, on every layout, at each position within a group
// of pixels, at every magnification, inside the canvas, at its edges and across them. The result
// must equal the plain reference.
#include <tests/support/model.h>
#include <tests/support/reference_draw.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace nkdraw::test;

constexpr std::size_t kBytes = 1 << 20, kSlack = 1 << 14;

struct Canvas {
  int width, height, pitch;
};

/// A text with its lower left corner there, magnified so often.
struct Writing {
  std::string text;
  int left, bottom, magnification;

  [[nodiscard]] int width() const { return 8 * magnification * static_cast<int>(text.size()); }
  /// Lines of a cell, with the one above it.
  [[nodiscard]] int lines() const { return 10 * magnification + 1; }
  /// A rectangle of the magnification's height that ends there; upside down when it would begin
  /// above the canvas.
  [[nodiscard]] tagRECT rect() const {
    const int height = 10 * magnification;
    return {left, bottom >= height ? bottom - height : bottom + height, left + 1, bottom};
  }
};

class BoxedText : public testing::TestWithParam<pixelType> {
 protected:
  BoxedText()
      : random_(static_cast<std::uint32_t>(GetParam()) * 77 + 5),
        frame_(kBytes, 1, kSlack),
        wanted_(kBytes, 1, kSlack),
        surface_(makeSurface(GetParam(), 1, 1, 0, frame_.canvas())) {
    surface_->SetTextTransparent(false);
  }

  /// The pitches that a width can have: the layout's own and wider ones, odd ones too. A negative
  /// one counts as its size, where it is not taken as it is.
  int pitchFor(int width) {
    constexpr int kMore[] = {1, 2, 3, 5, 16, 64};
    const int pitch = 8 * width + 48 * 8 / 3 + kMore[random_.between(0, 5)];
    switch (random_.between(0, 3)) {
      case 0:
        return pitch;
      case 1:
        return takesRawSizes() ? pitch : -pitch;
      default:
        return 0;
    }
  }

  static bool takesRawSizes() {
    const pixelType type = GetParam();
    return (type >= ptYUYV && type <= ptVYUY) || isDeepYCbCr(type) || type == ptUV8 ||
           type == ptUV16;
  }

  void changeColours() {
    for (int i = 0; i < 8; ++i)
      setDeepWord(*surface_, i < 4, i % 4, random_.word());
    for (const bool ink : {false, true}) {
      surface_->SetColorRGBA(random_.real(0, 1), random_.real(0, 1), random_.real(0, 1),
                             random_.real(0, 1), ink);
      surface_->SetTransparency(random_.flag() ? random_.real(0, 1) : 0.0, ink);
    }
    surface_->SetTransparency(random_.between(0, 3) == 0);
    surface_->SetAlphaAdditive(random_.between(0, 7) == 0);
  }

  void expectSame(const Canvas& canvas, const Writing& writing) {
    surface_->SetCanvas(frame_.canvas(), canvas.height, canvas.width, canvas.pitch);
    tagRECT rect = writing.rect();
    ReferenceDraw reference(GetParam());
    reference.drawText(writing.text.c_str(), 0, rect, DT_BOTTOM, false);
    const bool above = writing.bottom - writing.lines() + 1 < 0;
    if (above && !takesRowsAbove(GetParam()))
      return;
    Model model;
    model.take(*surface_, wanted_.data());
    for (const Step& step : reference.steps)
      model.put(step.x, step.y, step.foreground);
    rect = writing.rect();
    surface_->DrawText(writing.text.c_str(), 0, &rect, DT_BOTTOM);
    ASSERT_TRUE(frame_.all() == wanted_.all())
        << writing.text << " at " << writing.left << "," << writing.bottom << " times "
        << writing.magnification << " on " << canvas.width << " by " << canvas.height << ", pitch "
        << surface_->Pitch();
  }

  /// A magnified label, whose strokes may run one column over its right edge.
  void expectSameLabel(const Canvas& canvas, const Writing& writing) {
    surface_->SetCanvas(frame_.canvas(), canvas.height, canvas.width, canvas.pitch);
    surface_->LabelFont(0U, writing.magnification);
    const bool invert = random_.flag(), fill = random_.between(0, 3) != 0;
    const int top = writing.bottom - 10 * writing.magnification;
    ReferenceDraw reference(GetParam());
    reference.label(writing.left, top, writing.text.c_str(), invert, fill, writing.magnification);
    if (top < 0 && (!takesRowsAbove(GetParam()) || fillsRows(GetParam())))
      return;
    Model model;
    model.take(*surface_, wanted_.data());
    for (const Step& step : reference.steps) {
      if (step.kind == Step::Kind::kFill)
        model.fillRow(step.x, step.y, step.x2);
      else
        model.put(step.x, step.y, step.foreground);
    }
    surface_->Label(writing.left, top, writing.text.c_str(), invert, fill);
    ASSERT_TRUE(frame_.all() == wanted_.all())
        << writing.text << " at " << writing.left << "," << top << " times "
        << writing.magnification << " on " << canvas.width << " by " << canvas.height << ", pitch "
        << surface_->Pitch() << (invert ? ", inverted" : "") << (fill ? ", filled" : "");
  }

  std::string text(int length) {
    std::string letters;
    for (; length > 0; --length)
      letters += static_cast<char>(random_.between(1, 255));
    return letters;
  }

  Random random_;
  Frame frame_, wanted_;
  Surface surface_;
};

INSTANTIATE_TEST_SUITE_P(AllLayouts, BoxedText, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

TEST_P(BoxedText, IsItsPixelsAtEveryPlaceAndMagnificationInACanvasThatItJustFits) {
  for (int m = 1; m <= 20; ++m) {
    for (int left = 0; left <= 12; ++left) {
      changeColours();
      const Writing writing = {text(m < 5 ? random_.between(1, 4) : 1), left, 10 * m, m};
      const int width = left + writing.width();
      ASSERT_NO_FATAL_FAILURE(expectSame({width, writing.lines(), pitchFor(width)}, writing));
    }
  }
}

TEST_P(BoxedText, IsItsPixelsAtAndOverEveryEdge) {
  for (int m = 1; m <= 4; ++m) {
    for (int over = -7; over <= 7; ++over) {
      changeColours();
      const Writing inside = {text(random_.between(1, 3)), 6 + m, 10 * m + 7, m};
      const int width = inside.left + inside.width() + 7, height = inside.bottom + 8;
      Writing left = inside, top = inside;
      left.left = over;
      top.bottom = 10 * m + over;  // at 0 the topmost line is the canvas's first
      const int pitch = pitchFor(width);
      ASSERT_NO_FATAL_FAILURE(expectSame({width, height, pitch}, left));
      ASSERT_NO_FATAL_FAILURE(expectSame({width, height, pitch}, top));
      ASSERT_NO_FATAL_FAILURE(expectSame({width - 7 - over, height, pitch}, inside));
      ASSERT_NO_FATAL_FAILURE(expectSame({width, height - 7 - over, pitch}, inside));
    }
  }
}

TEST_P(BoxedText, IsItsPixelsHoweverManyCellsItHas) {
  for (int m = 1; m <= 3; ++m) {
    for (const int cells : {1, 47, 48, 49, 16, 23, 24, 25, 96, 97, 100}) {
      changeColours();
      const Writing writing = {text(cells), random_.between(0, 12), 10 * m + 1, m};
      const int width = writing.left + writing.width() + random_.between(0, 3);
      ASSERT_NO_FATAL_FAILURE(expectSame({width, writing.lines() + 1, pitchFor(width)}, writing));
    }
  }
}

TEST_P(BoxedText, OfALabelIsItsStrokesAtEveryMagnificationAndAtTheRightEdge) {
  for (int m = 2; m <= 21; ++m) {
    for (int left = 0; left <= 12; ++left) {
      changeColours();
      const Writing writing = {text(m < 5 ? random_.between(1, 9) : 3), left, 10 * m, m};
      const int width = left + writing.width() + random_.between(-2, 3);
      ASSERT_NO_FATAL_FAILURE(expectSameLabel({width, 10 * m + 1, pitchFor(width)}, writing));
    }
  }
}

TEST_P(BoxedText, OfALabelIsItsStrokesAtTheOtherEdgesAndHoweverManyCellsItHas) {
  for (int m = 2; m <= 4; ++m) {
    for (int over = -7; over <= 7; ++over) {
      changeColours();
      const Writing inside = {text(random_.between(1, 40)), 6 + m, 10 * m + 7, m};
      const int width = inside.left + inside.width() + 7, height = inside.bottom + 8;
      Writing left = inside, top = inside;
      left.left = over;
      top.bottom = 10 * m + over;
      const int pitch = pitchFor(width);
      ASSERT_NO_FATAL_FAILURE(expectSameLabel({width, height, pitch}, left));
      ASSERT_NO_FATAL_FAILURE(expectSameLabel({width, height, pitch}, top));
      ASSERT_NO_FATAL_FAILURE(expectSameLabel({width, height - 7 - over, pitch}, inside));
    }
  }
}

TEST_P(BoxedText, IsItsPixelsWhereRowsOverlap) {
  // Layouts that take any pitch get one that is smaller than their rows, by a byte and by more.
  for (int m = 1; m <= 3; ++m) {
    for (int bytesPerPixel = 1; bytesPerPixel <= 8; ++bytesPerPixel) {
      for (const int lessThanRow : {0, 1, 2, 5, random_.between(6, 20)}) {
        changeColours();
        const Writing writing = {text(3), random_.flag() ? 0 : random_.between(0, 12), 10 * m, m};
        const int width = writing.left + writing.width();
        const int pitch = bytesPerPixel * width - lessThanRow;
        ASSERT_GT(pitch, 0);
        ASSERT_NO_FATAL_FAILURE(expectSame({width, writing.lines(), pitch}, writing));
      }
    }
  }
}

}  // namespace
