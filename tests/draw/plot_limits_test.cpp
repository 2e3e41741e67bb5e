// SPDX-License-Identifier: BSD-2-Clause
//
// Runs of pixels at the limits: far columns, coordinates that wrap, copies of derived surfaces,
// rows that overlap, no canvas.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/model.h>
#include <tests/support/reference_draw.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace {

using namespace nkdraw::test;

constexpr int kMost = std::numeric_limits<int>::max(), kLeast = std::numeric_limits<int>::min();
constexpr pixelType kPairs[] = {ptYUYV, ptUYVY, ptYVYU, ptVYUY};

/// A surface of the library's own class, and the model beside it.
struct Twin {
  Twin(pixelType type, int width, int height, int pitch, std::size_t bytes, std::size_t slack = 64)
      : frame(bytes, 9, slack),
        wanted(bytes, 9, slack),
        surface(makeSurface(type, width, height, pitch, frame.canvas())) {
    surface->SetColorRGBA(0.9, 0.4, 0.2, 0.6, true);
    surface->SetColorRGBA(0.1, 0.3, 0.8, 0.7, false);
  }
  template <class Draw, class Tell>
  void draw(Draw draw, Tell tell) {
    ReferenceDraw steps(surface->PixelType());
    tell(steps);
    Model model;
    model.take(*surface, wanted.data());
    for (const Step& step : steps.steps)
      model.put(step.x, step.y, step.foreground);
    draw(*surface);
    ASSERT_TRUE(frame.all() == wanted.all());
  }

  Frame frame, wanted;
  Surface surface;
};

TEST(LineVert, ReachesColumnsBeyond16Bits) {
  constexpr int kWidth = 70000;
  for (const pixelType type : kLayouts) {
    Twin twin(type, kWidth, 2, 0, std::size_t{kWidth} * 8 * 2);
    for (const int x : {32767, 32768, 40000, 65535, 65536, 69999}) {
      SCOPED_TRACE(testing::Message() << layoutName(type) << " " << x);
      twin.draw([x](NKDraw& d) { d.LineVert(x, 0, 1); },
                [x](ReferenceDraw& r) { r.lineVert(x, 0, 1); });
    }
  }
}

TEST(FlatLines, OfAnyLengthAndSlopeAreTheirPixels) {
  constexpr int kWidth = 3000, kHeight = 40;
  Random random(43);
  for (const pixelType type : kLayouts) {
    Twin twin(type, kWidth, kHeight, 0, std::size_t{kWidth + 96} * 8 * (kHeight + 1));
    for (int i = 0; i < 16; ++i) {
      const int length = random.between(0, kWidth - 1);
      const int rise = random.between(0, i % 3 == 0 ? length * (kHeight - 1) / (kWidth - 1) : 12);
      int x1 = random.between(0, kWidth - 1 - length), x2 = x1 + length;
      int y1 = random.between(0, kHeight - 1 - rise), y2 = y1 + rise;
      if (random.flag())
        std::swap(x1, x2);
      if (random.flag())
        std::swap(y1, y2);
      const int on = random.between(1, 900), off = random.between(1, 300);
      SCOPED_TRACE(testing::Message() << layoutName(type) << " " << x1 << "," << y1 << " " << x2
                                      << "," << y2 << " " << on << " " << off);
      if (i % 2 == 0) {
        ASSERT_NO_FATAL_FAILURE(twin.draw([=](NKDraw& d) { d.Line(x1, y1, x2, y2); },
                                          [=](ReferenceDraw& r) { r.line(x1, y1, x2, y2); }));
      } else {
        ASSERT_NO_FATAL_FAILURE(
            twin.draw([=](NKDraw& d) { d.Dash(x1, y1, x2, y2, on, off); },
                      [=](ReferenceDraw& r) { r.dash(x1, y1, x2, y2, on, off); }));
      }
    }
  }
}

TEST(PairRuns, GoRoundTheCanvasFromAnyCoordinates) {
  Random random(41);
  constexpr int kFar[] = {0, 100000, -100000, kMost - 60, kLeast + 60, 0x40000000};
  for (int i = 0; i < 4000; ++i) {
    const int width = random.between(1, 33), height = random.between(1, 12);
    Twin twin(kPairs[i % 4], width, height, 0, 34 * 2 * 12);
    const int x = kFar[random.between(0, 5)] + random.between(-50, 50);
    const int y = kFar[random.between(0, 5)] + random.between(-50, 50);
    const int length = random.between(0, 100);
    const int right = x > kMost - length ? kMost : x + length;
    SCOPED_TRACE(testing::Message()
                 << width << "x" << height << " " << x << "," << y << " " << right);
    ASSERT_NO_FATAL_FAILURE(twin.draw([=](NKDraw& d) { d.LineHoriz(x, y, right); },
                                      [=](ReferenceDraw& r) {
                                        for (std::int64_t at = x; at <= right; ++at)
                                          r.put(static_cast<int>(at), y, true);
                                      }));
    ASSERT_NO_FATAL_FAILURE(twin.draw([=](NKDraw& d) { d.Line(right, y / 65536, x, y / 65536); },
                                      [=](ReferenceDraw& r) {
                                        for (std::int64_t at = right; at >= x; --at)
                                          r.put(static_cast<int>(at), y / 65536, true);
                                      }));
  }
}

TEST(Runs, OverTheEndOfTheCoordinatesGoOnAtTheOtherEnd) {
  for (const pixelType type : kPairs) {
    Twin twin(type, 17, 30, 0, 36 * 30);
    twin.surface->SetTextTransparent(false);
    for (int left = kMost - 20; left < kMost; ++left) {
      const tagRECT rect = {left, 2, left, 22};
      ASSERT_NO_FATAL_FAILURE(twin.draw(
          [&](NKDraw& d) {
            tagRECT own = rect;
            d.DrawText("#", 1, &own, DT_BOTTOM);
          },
          [&](ReferenceDraw& r) {
            tagRECT own = {0, 2, 0, 22};
            r.drawText("#", 1, own, DT_BOTTOM, false);
            for (Step& step : r.steps)
              step.x = static_cast<int>(static_cast<std::uint32_t>(left) +
                                        static_cast<std::uint32_t>(step.x));
          }));
    }
    // A line whose width wraps goes one step the other way.
    twin.draw([](NKDraw& d) { d.Line(kLeast, 3, kMost, 3); },
              [](ReferenceDraw& r) {
                r.put(kLeast, 3, true);
                r.put(kMost, 3, true);
              });
  }
}

TEST(GroupRuns, LeftOfOrAboveTheCanvasAreRefusedEvenWithoutOne) {
  const Surface surface = makeSurface(ptV210, 48, 20, 0, nullptr);
  surface->SetTextTransparent(false);
  EXPECT_EQ(surface->LineHoriz(-900, 5, -1), 0U);
  EXPECT_EQ(surface->LineHoriz(kLeast, 5, kLeast + 100), 0U);
  EXPECT_EQ(surface->LineVert(-4, 0, 300), 0U);
  EXPECT_EQ(surface->LineVert(4, -300, -1), 0U);
  EXPECT_EQ(surface->Line(-900, 0, -100, 40), 0U);
  EXPECT_EQ(surface->Line(-900, 0, -100, 700), 0U);
  EXPECT_EQ(surface->Line(0, -900, 40, -100), 0U);
  tagRECT rect = {-200, 1, -10, 31};
  EXPECT_EQ(surface->DrawText("text", 4, &rect, 0), 0);
}

/// Memory that is allocated when it is first touched.
class Reserved {
 public:
  Reserved()
      : bytes_(mmap(nullptr, kBytes, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
  Reserved(const Reserved&) = delete;
  Reserved& operator=(const Reserved&) = delete;
  ~Reserved() {
    if (there())
      munmap(bytes_, kBytes);
  }
  [[nodiscard]] bool there() const { return bytes_ != MAP_FAILED; }
  [[nodiscard]] char* canvas() const { return static_cast<char*>(bytes_); }

 private:
  static constexpr std::size_t kBytes = std::size_t{6} << 30;
  void* bytes_;
};

TEST(GroupRuns, OverTheEndOfTheCoordinatesAreRefusedFromThereOn) {
  const Reserved memory;
  if (!memory.there())
    GTEST_SKIP() << "no room for a row of all columns";
  const Surface surface = makeSurface(ptV210, 48, 1, 0, memory.canvas());
  surface->SetColorYCbCr10(1, 2, 3, 0, true);
  surface->Line(kLeast, 0, kMost, 0);  // its width wraps: two pixels, one on each side
  const char* const group = memory.canvas() + std::ptrdiff_t{kMost / 6} * 16;
  std::array<std::uint8_t, 32> bytes, wanted{};
  std::memcpy(bytes.data(), group, bytes.size());
  static_assert(kMost % 6 == 1);
  const std::uint32_t first = 2 | 3 << 20, second = 1;  // Cb and Cr of the pair, Y of its odd pixel
  std::memcpy(wanted.data(), &first, 4);
  std::memcpy(wanted.data() + 4, &second, 4);
  EXPECT_EQ(bytes, wanted);
}

TEST(PairText, OfRowsThatGoBackwardThroughMemoryIsThatOfSinglePixels) {
  // A raw negative pitch: each row begins a little in front of the one above it, 4 GB further on.
  constexpr int kWidth = 40, kHeight = 14, kPitch = -24;
  const Reserved first, second;
  if (!first.there() || !second.there())
    GTEST_SKIP() << "no room for the rows";
  const Surface known = makeSurface(ptUYVY, kWidth, kHeight, kPitch, first.canvas());
  const Surface unknown = makeDerived<Unknown>(ptUYVY, kWidth, kHeight, kPitch, second.canvas());
  for (const Surface* const surface : {&known, &unknown}) {
    (*surface)->SetColorRGBA(0.9, 0.4, 0.2, 0.6, true);
    (*surface)->SetColorRGBA(0.1, 0.3, 0.8, 0.7, false);
    (*surface)->SetTextTransparent(false);
    tagRECT rect = {0, 2, 40, 12};
    (*surface)->DrawText("#A@W", 4, &rect, DT_BOTTOM);
  }
  const std::ptrdiff_t lastRow = (std::ptrdiff_t{1} << 32) + kPitch * (kHeight - 1);
  EXPECT_EQ(std::memcmp(first.canvas() + lastRow, second.canvas() + lastRow, 800), 0);
}

TEST(Surfaces, OfAnyLayoutButV210DrawNothingWithoutACanvas) {
  for (const pixelType type : kLayouts) {
    if (type == ptV210)
      continue;
    const Surface surface = makeSurface(type, 90, 40, 800, nullptr);
    for (const bool blends : {false, true}) {
      surface->SetTransparency(0.5, true);
      surface->SetTransparency(blends);
      EXPECT_EQ(surface->Line(1, 2, 80, 9), 0U);
      EXPECT_EQ(surface->Line(1, 2, 9, 38), 0U);
      EXPECT_EQ(surface->LineVert(40000, 0, 30), 0U);
      EXPECT_EQ(surface->LineHoriz(0, 3, 80), 0U);
      EXPECT_EQ(surface->Dash(0, 3, 80, 8, 3, 2), 0U);
      EXPECT_EQ(surface->Circle(20, 20, 15), 0U);
      EXPECT_EQ(surface->Bezier(1, 1, 9, 28, 44, 0, 70, 20), 0U);
      EXPECT_EQ(surface->RoundRect(1, 1, 60, 30, 20, 10), 0U);
      const tagRECT part = {2, 2, 80, 30};
      EXPECT_EQ(surface->FillRect(&part), 0U);
      EXPECT_EQ(surface->EraseCanvas(true), 0U);
      EXPECT_EQ(surface->Label(3, 3, "label", false, true), 0U);
      for (const bool transparent : {false, true}) {
        surface->SetTextTransparent(transparent);
        tagRECT rect = {2, 2, 80, 22};
        EXPECT_EQ(surface->DrawText("text", 4, &rect, 0), 0);
      }
    }
  }
}

/// A surface of the library's own class with what only a derived one can set.
template <class Base>
struct Odd final : public Base {
  explicit Odd(pixelType type) : NKDraw(type), Base(type) {}
  void setAlpha(double ink, double paper) {
    this->foregroundAlpha = ink;
    this->backgroundAlpha = paper;
    this->transparencyOn = true;
  }
};

TEST(BlendedRuns, OfAWeightThatOnlyADerivedClassCanSetAreStillThePixelsOfTheOtherForm) {
  const double kWeights[] = {1.0,       1.5,  2.0,   300.0,    1e-300, 5e-324,
                             1 - 1e-16, 1e10, 1e300, INFINITY, NAN,    -1.0};
  constexpr int kWidth = 90, kHeight = 30;
  for (const double weight : kWeights) {
    for (const pixelType type : {ptRGBA32, ptABGR32}) {
      Frame first(kWidth * kHeight * 4, 5), second(kWidth * kHeight * 4, 5);
      Odd<CDrawRGBA32> derived(type);
      derived.setAlpha(weight, weight);
      derived.SetColorRGBA(0.99, 0.5, 0.3, 0.98, true);
      CDrawRGBA32 own(derived);
      NKDraw* const surfaces[] = {&derived, &own};
      Frame* const frames[] = {&first, &second};
      for (int i = 0; i < 2; ++i) {
        NKDraw& surface = *surfaces[i];
        surface.SetCanvas(frames[i]->canvas(), kHeight, kWidth, 0);
        surface.Line(1, 1, 80, 1);
        surface.Line(0, 2, 80, 6);
        surface.SetTextTransparent(false);
        tagRECT rect = {0, 8, 80, 28};
        surface.DrawText("ab", 2, &rect, 0);
      }
      ASSERT_TRUE(first.all() == second.all()) << weight;
    }
  }
}

template <class Base>
class Soft final : public Base {
 public:
  explicit Soft(pixelType type) : NKDraw(type), Base(type) { this->antialias = true; }
};

class Copies : public testing::TestWithParam<pixelType> {};

INSTANTIATE_TEST_SUITE_P(AllLayouts, Copies, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

TEST_P(Copies, OfAnAntialiasedSurfaceInTheLibrarysClassDrawItsShapesAntialiased) {
  const auto check = []<class Base>(Base*) {
    constexpr std::size_t kBytes = 60 * 400, kSlack = 1 << 14;
    Frame first(kBytes, 5, kSlack), second(kBytes, 5, kSlack);
    Soft<Base> derived(GetParam());
    derived.SetColorRGBA(0.9, 0.7, 0.3, 0.8, true);
    Base own(derived);
    EXPECT_TRUE(PixelFields::antialiased(own));
    NKDraw* const surfaces[] = {&derived, &own};
    Frame* const frames[] = {&first, &second};
    for (int i = 0; i < 2; ++i) {
      NKDraw& surface = *surfaces[i];
      surface.SetCanvas(frames[i]->canvas(), 50, 45, 400);
      surface.Line(2, 2, 30, 9);
      surface.SetColorRGBA(0.9, 0.7, 0.3, 0.8, true);
      surface.Circle(20, 20, 12);
      surface.SetColorRGBA(0.9, 0.7, 0.3, 0.8, true);
      surface.Bezier(1, 40, 10, 0, 30, 45, 40, 3);
      surface.RoundRect(3, 3, 40, 40, 14, 10);
      surface.Dash(0, 1, 40, 9, 3, 2);
    }
    EXPECT_TRUE(first.all() == second.all());
    EXPECT_EQ(DrawFields::penXOf(own), DrawFields::penXOf(derived));
    Model one, other;
    one.take(derived, nullptr);
    other.take(own, nullptr);
    EXPECT_TRUE(one.hasInkOf(other));
  };
  withClassOf(GetParam(), check);
}

/// A class derived from a derived class; both override the plot.
template <class Base>
class Shifted : public Base {
 public:
  explicit Shifted(pixelType type) : NKDraw(type), Base(type) {}
  std::uint32_t PutPixel(int x, int y, bool foreground) override {
    return Base::PutPixel(x + 1, y, foreground);
  }
};

template <class Base>
class Twice final : public Shifted<Base> {
 public:
  explicit Twice(pixelType type) : NKDraw(type), Shifted<Base>(type) {}
};

TEST_P(Copies, ACopyInTheLibrarysClassDropsTheOverridesAndAClassDerivedTwiceKeepsThem) {
  const auto check = []<class Base>(Base*) {
    constexpr std::size_t kBytes = 30 * 400, kSlack = 1 << 14;
    Frame first(kBytes, 5, kSlack), second(kBytes, 5, kSlack), third(kBytes, 5, kSlack);
    Twice<Base> shifted(GetParam());
    Base own(shifted);
    Unknown<Base> plain(GetParam());
    const auto draw = [](NKDraw& surface, Frame& frame, int x) {
      surface.SetCanvas(frame.canvas(), 25, 40, 400);
      surface.SetTextTransparent(false);
      surface.LineVert(x, 0, 20);
      surface.Line(x, 1, x + 20, 9);
      surface.Circle(x + 12, 12, 9);
      tagRECT rect = {x, 2, x + 30, 12};
      surface.DrawText("Own", 3, &rect, 0);
    };
    draw(shifted, first, 4);
    draw(own, second, 5);
    draw(plain, third, 5);
    EXPECT_TRUE(first.all() == third.all());
    EXPECT_TRUE(second.all() == third.all());
  };
  withClassOf(GetParam(), check);
}

}  // namespace
