// SPDX-License-Identifier: BSD-2-Clause
//
// 16-bit RGB: words that no colour call reaches, reads over 65536, and what others see in them.
#include <tests/formats/decoded.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

struct Deep {
  pixelType type;
  int words;
  int red;  // the word that holds it; green and blue follow
};

constexpr Deep kDeep[] = {
    {ptRGB48, 3, 0}, {ptRGBHalf48, 3, 0}, {ptARGB64, 4, 1}, {ptRGBAHalf64, 4, 1}};

/// Calls `work` with a null pointer of the type's class.
template <class Work>
void withDeepClass(Work work) {
  switch (testing::TestWithParam<Deep>::GetParam().type) {
    case ptRGB48:
      return work(static_cast<CDrawRGB48*>(nullptr));
    case ptRGBHalf48:
      return work(static_cast<CDrawRGBHalf48*>(nullptr));
    default:
      return work(static_cast<CDrawARGB64*>(nullptr));
  }
}

class DeepRgb : public testing::TestWithParam<Deep> {
 protected:
  static Surface make(int width, int height, int pitch, char* canvas) {
    return makeSurface(GetParam().type, width, height, pitch, canvas);
  }
  static int words() { return GetParam().words; }
  static int step() { return 2 * GetParam().words; }
  static bool hasAlpha() { return GetParam().words == 4; }

  /// The elements of the field that PutPixel writes from.
  static std::uint32_t& element(NKDraw& surface, bool ink, int i) {
    if (auto* const three = dynamic_cast<CDrawRGB48*>(&surface))
      return WordFields<CDrawRGB48>::words(*three, ink)[i];
    if (auto* const half = dynamic_cast<CDrawRGBHalf48*>(&surface))
      return WordFields<CDrawRGBHalf48>::words(*half, ink)[i];
    return WordFields<CDrawARGB64>::words(dynamic_cast<CDrawARGB64&>(surface), ink)[i];
  }
};

INSTANTIATE_TEST_SUITE_P(AllTypes, DeepRgb, testing::ValuesIn(kDeep),
                         [](const auto& each) { return layoutName(each.param.type); });

std::uint32_t wordOf(const std::uint8_t* pixel, int word) {
  return pixel[2 * word] + 256U * pixel[2 * word + 1];
}

TEST_P(DeepRgb, StartsWithWordsOf255AndZero) {
  const Surface surface = make(4, 4, 0, nullptr);
  for (int i = 0; i < words(); ++i) {
    EXPECT_EQ(element(*surface, true, i), 255U);
    EXPECT_EQ(element(*surface, false, i), 0U);
  }
  EXPECT_EQ(sizeof(WordFields<CDrawRGB48>::words(
                dynamic_cast<CDrawRGB48&>(*makeSurface(ptRGB48, 1, 1, 0, nullptr)), true)),
            12U);
}

TEST_P(DeepRgb, PitchesAreTheBytesOfTheWordsAndTheirFloor) {
  const Surface surface = make(100, 10, 0, nullptr);
  EXPECT_EQ(surface->GetPitch(), 100 * step());
  EXPECT_EQ(surface->Pitch(), 100U * static_cast<unsigned>(step()));
  surface->SetCanvas(nullptr, 10, 100, 100 * step() - 1);
  EXPECT_EQ(surface->Pitch(), 100U * static_cast<unsigned>(step()));
  surface->SetCanvas(nullptr, 10, 100, 100 * step() + 1);
  EXPECT_EQ(surface->Pitch(), 100U * static_cast<unsigned>(step()) + 1);
  surface->SetCanvas(nullptr, -10, -100, -900);
  EXPECT_EQ(surface->Pitch(), 900U);
  EXPECT_EQ(surface->Width(), 100U);
  EXPECT_EQ(surface->Height(), 10U);
  EXPECT_TRUE(PixelFields::flippedOf(*surface));
}

TEST_P(DeepRgb, TheConstructorKeepsAnyType) {
  for (const int type : {-1, 0, 1, 14, 31, 38, 10000}) {
    withDeepClass([type]<class Base>(Base*) {
      Base surface(static_cast<pixelType>(type));
      EXPECT_EQ(surface.PixelType(), type);
      EXPECT_EQ(PixelFields::mode(surface), 1);
    });
  }
}

TEST_P(DeepRgb, NoColourReachesThePixelsWhichAreMeantToStayAt255AndZero) {
  Frame frame(64);
  const Surface surface = make(3, 1, 0, frame.canvas());
  for (const bool ink : {true, false}) {
    surface->SetColorRGBA(0.0, 1.0, 0.25, 0.75, ink);
    surface->SetColorYCbCr(0.1, 0.2, 0.3, 0.4, ink);
    surface->SetColorYCbCr8(1, 2, 3, 4, ink);
    surface->SetColorYCbCr10(1, 2, 3, 4, ink);
    frame.fill(0x5A);
    EXPECT_EQ(surface->PutPixel(1, 0, ink), 0U);
    for (int byte = 0; byte < 3 * step(); ++byte) {
      const bool own = byte >= step() && byte < 2 * step();
      const int want = !own ? 0x5A : ink && byte % 2 == 0 ? 0xFF : 0;
      EXPECT_EQ(frame[byte], want) << byte;
    }
    EXPECT_TRUE(frame.guardsIntact());
    // SetPixel sets a colour first, to no more effect.
    frame.fill(0x5A);
    EXPECT_EQ(surface->SetPixel(0, 0, 0.5, 0.5, 0.5, 0.5, ink), 0U);
    EXPECT_EQ(wordOf(frame.data(), 0), ink ? 255U : 0U);
  }
}

TEST_P(DeepRgb, GetColorRgbaMeanwhileReportsTheColourThatWasSet) {
  const Surface surface = make(3, 1, 0, nullptr);
  for (const bool ink : {true, false}) {
    surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, ink);
    const std::uint8_t* const packed =
        ink ? PixelFields::foreground(*surface) : PixelFields::background(*surface);
    EXPECT_EQ(Bytes(packed, packed + 4), (Bytes{51, 102, 153, 204}));
    double r = 9, g = 9, b = 9, a = 9;
    EXPECT_EQ(surface->GetColorRGBA(r, g, b, a, ink), 0U);
    EXPECT_EQ(r, 51 / 255.0);
    EXPECT_EQ(g, 102 / 255.0);
    EXPECT_EQ(b, 153 / 255.0);
    EXPECT_EQ(a, 204 / 255.0);
  }
}

TEST_P(DeepRgb, PutPixelStoresTheLow16BitsOfEachElementInOrder) {
  Random random(1009);
  for (int i = 0; i < 300; ++i) {
    Frame got(4096, 3, 256), want(4096, 3, 256);
    const int pitch = 100 + random.between(0, 50);
    const Surface surface = make(7, 9, pitch, got.canvas());
    const bool ink = random.flag();
    for (int word = 0; word < words(); ++word)
      element(*surface, ink, word) = random.word();
    // Neither switch is consulted.
    surface->SetTransparency(0.5, ink);
    surface->SetTransparency(random.flag());
    surface->SetAlphaAdditive(random.flag());
    const int x = random.between(-9, 20), y = random.between(0, 12);
    ASSERT_EQ(surface->PutPixel(x, y, ink), 0U);
    ASSERT_EQ(surface->GetPixel(x, y), got.canvas() + y * pitch + x * step());
    for (int word = 0; word < words(); ++word) {
      for (int byte = 0; byte < 2; ++byte) {
        want[y * pitch + x * step() + 2 * word + byte] =
            static_cast<std::uint8_t>(element(*surface, ink, word) >> (8 * byte));
      }
    }
    ASSERT_TRUE(got.all() == want.all());
  }
}

TEST_P(DeepRgb, PutPixelAsksTheVirtualGetPixelForItsAddress) {
  withDeepClass([]<class Base>(Base*) {
    class Elsewhere final : public Base {
     public:
      explicit Elsewhere(pixelType type) : NKDraw(type), Base(type) {}
      void* GetPixel(int, int) override { return pixel; }
      std::uint8_t pixel[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    };
    Elsewhere surface(GetParam().type);
    EXPECT_EQ(surface.PutPixel(1000, 1000, true), 0U);  // without a canvas, too
    EXPECT_EQ(wordOf(surface.pixel, 0), 255U);
    EXPECT_EQ(wordOf(surface.pixel, 2), 255U);
    double r = 0, g = 0, b = 0, a = 0;
    surface.GetPixelRGBA(5, 5, r, g, b, a);
    EXPECT_EQ(g, 255 / 65536.0);
    EXPECT_EQ(surface.GetLuma(5, 5), 765 / 196608.0);
  });
}

TEST_P(DeepRgb, WordsReadOver65536AndOnlyFourOfThemGiveAnAlpha) {
  Frame frame(65536 * 8);
  for (int value = 0; value < 65536; ++value) {
    for (int word = 0; word < words(); ++word) {
      const int own = (value + 4099 * word) & 0xFFFF;
      frame[value * step() + 2 * word] = static_cast<std::uint8_t>(own);
      frame[value * step() + 2 * word + 1] = static_cast<std::uint8_t>(own >> 8);
    }
  }
  const Surface surface = make(65536, 1, 0, frame.canvas());
  for (int x = 0; x < 65536; ++x) {
    const std::uint8_t* const at = frame.data() + x * step();
    double r = 9, g = 9, b = 9, a = 9;
    ASSERT_EQ(surface->GetPixelRGBA(x, 0, r, g, b, a), 0U);
    ASSERT_EQ(r, wordOf(at, GetParam().red) / 65536.0);
    ASSERT_EQ(g, wordOf(at, GetParam().red + 1) / 65536.0);
    ASSERT_EQ(b, wordOf(at, GetParam().red + 2) / 65536.0);
    ASSERT_EQ(a, hasAlpha() ? wordOf(at, 0) / 65536.0 : 9.0);
    const double sum = wordOf(at, GetParam().red) + wordOf(at, GetParam().red + 1) +
                       wordOf(at, GetParam().red + 2);
    ASSERT_EQ(surface->GetLuma(x, 0), sum / 196608.0);
  }
}

TEST_P(DeepRgb, AFullWordNeverReadsAsOne) {
  Frame frame(8);
  frame.fill(0xFF);
  const Surface surface = make(1, 1, 0, frame.canvas());
  double r = 0, g = 0, b = 0, a = 0.25;
  surface->GetPixelRGBA(0, 0, r, g, b, a);
  EXPECT_EQ(r, 65535 / 65536.0);
  EXPECT_EQ(g, 65535 / 65536.0);
  EXPECT_EQ(b, 65535 / 65536.0);
  EXPECT_EQ(a, hasAlpha() ? 65535 / 65536.0 : 0.25);
  EXPECT_EQ(surface->GetLuma(0, 0), 65535 / 65536.0);
}

TEST_P(DeepRgb, ReadsStandOnThePixelsChannelsInEveryMode) {
  Frame frame(4096, 77);
  const Surface surface = make(60, 3, 0, frame.canvas());
  for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1003}) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 60; ++x) {
      double r = 0, g = 0, b = 0, a = 0.5;
      surface->GetPixelRGBA(x, 2, r, g, b, a);
      double want[] = {7, 7, 7}, unused = 0;
      surface->RGBToYCbCr(r, g, b, a, want[0], want[1], want[2], unused);
      double y2 = 7, cb = 7, cr = 7, alpha = 0.5;
      ASSERT_EQ(surface->GetPixelYCbCr(x, 2, y2, cb, cr, alpha), 0U);
      ASSERT_EQ(y2, want[0]);
      ASSERT_EQ(cb, want[1]);
      ASSERT_EQ(cr, want[2]);
      ASSERT_EQ(alpha, a);
      double hsv[] = {7, 7, 7}, h = 7, s = 7, v = 7;
      surface->RGBToHSV(r, g, b, a, hsv[0], hsv[1], hsv[2], unused);
      alpha = 0.5;
      ASSERT_EQ(surface->GetPixelHSV(x, 2, h, s, v, alpha), 0U);
      ASSERT_EQ(h, hsv[0]);
      ASSERT_EQ(s, hsv[1]);
      ASSERT_EQ(v, hsv[2]);
      ASSERT_EQ(alpha, a);
    }
  }
}

TEST_P(DeepRgb, AColourlessPixelHasTheHueMinusOne) {
  Frame frame(8);
  for (const int value : {0, 0x80}) {
    frame.fill(static_cast<std::uint8_t>(value));
    const Surface surface = make(1, 1, 0, frame.canvas());
    double h = 7, s = 7, v = 7, a = 7;
    EXPECT_EQ(surface->GetPixelHSV(0, 0, h, s, v, a), 0U);
    EXPECT_EQ(h, -1.0);
    EXPECT_EQ(s, 0.0);
    EXPECT_EQ(v, value * 257 / 65536.0);
  }
}

template <class Base>
class WatchesReads final : public Base {
 public:
  explicit WatchesReads(pixelType type) : NKDraw(type), Base(type) {}
  std::uint32_t GetPixelRGBA(int, int, double& r, double& g, double& b, double& a) override {
    r = 0.25;
    g = 0.5;
    b = 0.75;
    a = 0.125;
    return 55;
  }
  std::uint32_t RGBToYCbCr(double r, double g, double b, double a, double& y, double& cb,
                           double& cr, double& aOut) override {
    seen = {r, g, b, a};
    y = 1;
    cb = 2;
    cr = 3;
    aOut = 4;
    return 66;
  }
  std::vector<double> seen;
};

TEST_P(DeepRgb, TheYCbCrReadCallsBothVirtualOperations) {
  withDeepClass([]<class Base>(Base*) {
    WatchesReads<Base> surface(GetParam().type);
    double y = 0, cb = 0, cr = 0, a = 0;
    EXPECT_EQ(surface.GetPixelYCbCr(0, 0, y, cb, cr, a), 0U);
    EXPECT_EQ(surface.seen, (std::vector<double>{0.25, 0.5, 0.75, 0.125}));
    EXPECT_EQ(y, 1);
    EXPECT_EQ(cb, 2);
    EXPECT_EQ(cr, 3);
    double h = 0, s = 0, v = 0;
    EXPECT_EQ(surface.GetPixelHSV(0, 0, h, s, v, a), 0U);
    EXPECT_EQ(v, 0.75);
    EXPECT_EQ(h, (0.25 - 0.5) / 0.5 * 60.0 + 240.0);
    EXPECT_EQ(a, 0.125);
  });
}

TEST_P(DeepRgb, TheCodesInBytesAndTenBitsAreTheBaseForms) {
  Frame frame(8);
  frame.fill(0xFF);
  const Surface surface = make(1, 1, 0, frame.canvas());
  surface->SetYCbCrMode(NKPixel::mode601Full);
  std::uint8_t y8 = 0, cb8 = 0, cr8 = 0, a8 = 0;
  EXPECT_EQ(surface->GetPixelYCbCr8(0, 0, y8, cb8, cr8, a8), 0U);
  EXPECT_EQ(y8, 254);  // 65535/65536 of 255, truncated
  std::uint32_t y10 = 0, cb10 = 0, cr10 = 0, a10 = 0;
  EXPECT_EQ(surface->GetPixelYCbCr10(0, 0, y10, cb10, cr10, a10), 0U);
  EXPECT_EQ(y10, 1023U);
}

TEST_P(DeepRgb, CopiesAndAssignmentsTakeTheWords) {
  withDeepClass([]<class Base>(Base*) {
    Frame one(64, 1), two(64, 2);
    Base left(GetParam().type), right(GetParam().type);
    left.SetCanvas(one.canvas(), 1, 2, 0);
    right.SetCanvas(two.canvas(), 1, 2, 0);
    for (int i = 0; i < GetParam().words; ++i) {
      WordFields<Base>::words(right, true)[i] = 1000U + static_cast<unsigned>(i);
      WordFields<Base>::words(right, false)[i] = 2000U + static_cast<unsigned>(i);
    }
    Base copy(right);
    Base& result = (left = right);
    EXPECT_EQ(&result, &left);
    for (Base* const taken : {&copy, &left}) {
      for (int i = 0; i < GetParam().words; ++i) {
        EXPECT_EQ(WordFields<Base>::words(*taken, true)[i], 1000U + static_cast<unsigned>(i));
        EXPECT_EQ(WordFields<Base>::words(*taken, false)[i], 2000U + static_cast<unsigned>(i));
      }
    }
    EXPECT_EQ(copy.GetCanvas(), two.canvas());
    // The picture copy plots the right side in its own colour, and leaves the left one alone.
    EXPECT_EQ(wordOf(two.data(), 0), 1000U);
    EXPECT_EQ(wordOf(two.data() + 2 * GetParam().words, 1), 1001U);
    EXPECT_TRUE(one.untouched());
  });
}

TEST(DeepRgbBytes, GreenOn48BitsIsWrittenAsThreeWordsOf255) {
  Frame frame(6);
  const Surface surface = makeSurface(ptRGB48, 1, 1, 0, frame.canvas());
  surface->SetColorRGBA(0.0, 1.0, 0.0, 1.0, true);
  surface->PutPixel(0, 0, true);
  EXPECT_EQ(Bytes(frame.data(), frame.data() + 6), (Bytes{0xFF, 0, 0xFF, 0, 0xFF, 0}));
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(DeepRgbBytes, TheBackgroundOf64BitsClearsEightBytes) {
  Frame frame(32);
  frame.fill(0x11);
  const Surface surface = makeSurface(ptARGB64, 4, 1, 0, frame.canvas());
  surface->PutPixel(1, 0, false);
  EXPECT_EQ(frame.changed(), (std::vector<std::ptrdiff_t>{8, 9, 10, 11, 12, 13, 14, 15}));
  for (int i = 8; i < 16; ++i)
    EXPECT_EQ(frame[i], 0);
}

TEST(DeepRgbBytes, HalfFloatsAreMeantToBeReadAsWholeNumbers) {
  Frame frame(8);
  for (int i = 0; i < 4; ++i) {  // 1.0 as a half float
    frame[2 * i] = 0x00;
    frame[2 * i + 1] = 0x3C;
  }
  for (const pixelType type : {ptRGBHalf48, ptRGBAHalf64}) {
    const Surface surface = makeSurface(type, 1, 1, 0, frame.canvas());
    double r = 0, g = 0, b = 0, a = 0;
    surface->GetPixelRGBA(0, 0, r, g, b, a);
    EXPECT_EQ(r, 0x3C00 / 65536.0);
  }
}

TEST_P(DeepRgb, FfmpegReadsTheChannelsThatWeRead) {
  constexpr int kWidth = 46, kHeight = 30;
  const int step = 2 * GetParam().words;
  Frame frame(static_cast<std::size_t>(kWidth * kHeight * step), 9);
  const Surface surface = makeSurface(GetParam().type, kWidth, kHeight, 0, frame.canvas());
  surface->Line(0, 0, kWidth - 1, kHeight - 1);
  surface->LineVert(5, 3, 20);
  surface->Label(2, 2, "16", false, true);
  Bytes raw;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    const std::uint8_t* const pixel = frame.data() + i * step;
    const int red = 2 * GetParam().red;
    raw.insert(raw.end(), pixel + red, pixel + red + 6);
    if (step == 8)  // what others hold as R, G, B, A we hold with the alpha in front
      raw.insert(raw.end(), pixel, pixel + 2);
  }
  const bool alpha = step == 8;
  // Planes of G, B, R and the alpha.
  const std::vector<std::uint16_t> planes = decodedWords(
      raw, alpha ? "rgba64le" : "rgb48le", kWidth, kHeight, alpha ? "gbrap16le" : "gbrp16le");
  ASSERT_EQ(planes.size(), static_cast<std::size_t>(kWidth * kHeight * GetParam().words));
  const std::size_t plane = kWidth * kHeight;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const auto at = static_cast<std::size_t>(y * kWidth + x);
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, y, r, g, b, a);
      ASSERT_EQ(g * 65536.0, planes[at]) << x << "," << y;
      ASSERT_EQ(b * 65536.0, planes[plane + at]) << x << "," << y;
      ASSERT_EQ(r * 65536.0, planes[2 * plane + at]) << x << "," << y;
      if (alpha) {
        ASSERT_EQ(a * 65536.0, planes[3 * plane + at]) << x << "," << y;
      }
    }
  }
}

}  // namespace
