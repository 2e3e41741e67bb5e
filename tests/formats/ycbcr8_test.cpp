// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit 4:2:2: binding, plotting with its wrap-around and its kept luma, colours as words.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

/// Y, B (Cb), R (Cr) in memory order.
std::string orderOf(int type) {
  switch (type) {
    case 10:
      return "YBYR";
    case 12:
      return "YRYB";
    case 13:
      return "RYBY";
    default:
      return "BYRY";
  }
}

constexpr pixelType kOrders[] = {ptYUYV, ptUYVY, ptYVYU, ptVYUY};

class Pair422 : public testing::TestWithParam<pixelType> {};

INSTANTIATE_TEST_SUITE_P(AllOrders, Pair422, testing::ValuesIn(kOrders),
                         [](const auto& each) { return layoutName(each.param); });

TEST_P(Pair422, TheFieldsStartAsDocumented) {
  CDrawYCbCrYUYV surface(GetParam());
  const bool lumaFirst = GetParam() == 10 || GetParam() == 12;
  EXPECT_EQ(PairFields::foreground(surface), lumaFirst ? 0xEB80EB80 : 0x80EB80EB);
  EXPECT_EQ(PairFields::background(surface), lumaFirst ? 0x10801080U : 0x80108010U);
  EXPECT_EQ(PairFields::spare(surface), 0);
  constexpr double kScales[] = {16.0, 235.0, 19.0, 219.0, 18.0, 219.0};
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(*PairFields::scales(surface)[i], kScales[i]);
}

TEST_P(Pair422, SetCanvasKeepsTheSignsAndRaisesThePitch) {
  CDrawYCbCrYUYV surface(GetParam());
  char byte = 0;
  EXPECT_EQ(surface.SetCanvas(&byte, -1080, 1920, 0), 0U);
  EXPECT_EQ(surface.Height(), static_cast<std::uint32_t>(-1080));
  EXPECT_EQ(surface.Width(), 1920U);
  EXPECT_EQ(surface.Pitch(), 3840U);
  EXPECT_FALSE(PixelFields::flippedOf(surface));
  EXPECT_EQ(surface.GetCanvas(), &byte);
  surface.SetCanvas(&byte, 10, 100, 199);
  EXPECT_EQ(surface.Pitch(), 200U);
  surface.SetCanvas(&byte, 10, 100, 201);
  EXPECT_EQ(surface.Pitch(), 201U);
  surface.SetCanvas(&byte, 10, 100, -500);  // large as an unsigned number, and kept as it is
  EXPECT_EQ(surface.Pitch(), static_cast<std::uint32_t>(-500));
  surface.SetCanvas(&byte, 10, -100, 0);
  EXPECT_EQ(surface.Width(), static_cast<std::uint32_t>(-100));
  EXPECT_EQ(surface.Pitch(), static_cast<std::uint32_t>(-200));
  EXPECT_EQ(surface.GetPitch(), -200);
}

TEST_P(Pair422, SetCanvasKeepsAModeOfTheFamilyThatTheWidthAsksFor) {
  CDrawYCbCrYUYV surface(GetParam());
  for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 1001, 1003, 1004, -1}) {
    for (const int width : {1, 720, 721, 1920}) {
      SCOPED_TRACE(testing::Message() << mode << " " << width);
      surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
      surface.SetCanvas(nullptr, 10, width, 0);
      const int want =
          width > 720 ? (mode == 3 || mode == 4 ? mode : 3) : (mode == 1 || mode == 2 ? mode : 1);
      EXPECT_EQ(PixelFields::mode(surface), want);
    }
  }
  // It looks at the argument with its sign.
  surface.SetYCbCrMode(NKPixel::mode709Full);
  surface.SetCanvas(nullptr, 10, -1920, 0);
  EXPECT_EQ(PixelFields::mode(surface), 1);
}

TEST_P(Pair422, ByteColoursGoStraightToTheirPlacesInTheWord) {
  CDrawYCbCrYUYV surface(GetParam());
  const std::string order = orderOf(GetParam());
  Random random(79);
  for (int i = 0; i < 500; ++i) {
    const auto y = static_cast<std::uint8_t>(random.word());
    const auto cb = static_cast<std::uint8_t>(random.word());
    const auto cr = static_cast<std::uint8_t>(random.word());
    const bool ink = random.flag();
    const auto expectWord = [&](std::uint8_t luma, std::uint8_t blue, std::uint8_t red) {
      std::uint32_t want = 0;
      for (std::size_t byte = 0; byte < 4; ++byte) {
        const std::uint32_t value = order[byte] == 'Y' ? luma : order[byte] == 'B' ? blue : red;
        want |= value << (8 * byte);
      }
      ASSERT_EQ(ink ? PairFields::foreground(surface) : PairFields::background(surface), want);
    };
    ASSERT_EQ(surface.SetColorYCbCr8(y, cb, cr, 3, ink), 0U);
    expectWord(y, cb, cr);
    // Ten-bit codes keep bits 2 to 9; what is above is cut off.
    const std::uint32_t y10 = random.word(), cb10 = random.word() & 0x3FF, cr10 = random.word();
    ASSERT_EQ(surface.SetColorYCbCr10(y10, cb10, cr10, 3, ink), 0U);
    expectWord(static_cast<std::uint8_t>(y10 >> 2), static_cast<std::uint8_t>(cb10 >> 2),
               static_cast<std::uint8_t>(cr10 >> 2));
  }
}

TEST_P(Pair422, ChannelsAreScaledByTheFieldsAndCarryIntoTheNextByte) {
  CDrawYCbCrYUYV surface(GetParam());
  Random random(83);
  for (int i = 0; i < 4000; ++i) {
    if (i == 2000) {
      for (double* const scale : PairFields::scales(surface))
        *scale = random.real(-300.0, 300.0);
    }
    const double range = i % 3 == 0 ? 0.0 : i % 3 == 1 ? 3.0 : 1e6;
    const double y = random.real(-range, 1 + range), cb = random.real(-range, 1 + range);
    const double cr = random.real(-range, 1 + range);
    const auto scales = PairFields::scales(surface);
    const auto whole = [](double value) {
      return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
    };
    const std::uint32_t luma = whole(y * *scales[1] + *scales[0]);
    const std::uint32_t blue = whole(cb * *scales[3] + *scales[2]);
    const std::uint32_t red = whole(cr * *scales[5] + *scales[4]);
    std::uint32_t want = 0;
    switch (GetParam()) {
      case 10:
        want = (((red << 16) + blue) << 8) + luma * 0x10001;
        break;
      case 12:
        want = (((blue << 16) + red) << 8) + luma * 0x10001;
        break;
      case 13:
        want = luma * 0x1000100 + (blue << 16) + red;
        break;
      default:
        want = luma * 0x1000100 + (red << 16) + blue;
        break;
    }
    const bool ink = random.flag();
    ASSERT_EQ(surface.SetColorYCbCr(y, cb, cr, 0.5, ink), 0U);
    ASSERT_EQ(ink ? PairFields::foreground(surface) : PairFields::background(surface), want);
  }
}

TEST_P(Pair422, BlackWithNeutralChromaHasUnlikeChromaBytes) {
  CDrawYCbCrYUYV surface(GetParam());
  surface.SetColorYCbCr(0.0, 0.5, 0.5, 0.0, true);
  const std::string order = orderOf(GetParam());
  const std::uint32_t word = PairFields::foreground(surface);
  for (std::size_t byte = 0; byte < 4; ++byte) {
    const std::uint32_t want = order[byte] == 'Y' ? 16 : order[byte] == 'B' ? 128 : 127;
    EXPECT_EQ((word >> (8 * byte)) & 0xFF, want);
  }
}

class SetterLog final : public CDrawYCbCrYUYV {
 public:
  explicit SetterLog(pixelType type) : NKDraw(type), CDrawYCbCrYUYV(type) {}
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    got = {y, cb, cr, a};
    inkSeen = ink;
    return 888;
  }
  std::array<double, 4> got{};
  bool inkSeen = false;
};

TEST_P(Pair422, RgbColoursGoThroughTheMatrixAndTheVirtualSetter) {
  SetterLog surface(GetParam());
  Random random(89);
  for (int mode = 0; mode <= 8; ++mode) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int i = 0; i < 50; ++i) {
      const double r = random.real(0, 1), g = random.real(0, 1), b = random.real(0, 1);
      double y = 0, cb = 0, cr = 0, unused = 0;
      surface.RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
      const bool ink = random.flag();
      ASSERT_EQ(surface.SetColorRGBA(r, g, b, 0.7, ink), 0U);
      ASSERT_EQ(surface.got, (std::array<double, 4>{y, cb, cr, 0.7}));
      ASSERT_EQ(surface.inkSeen, ink);
    }
  }
  surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(9));
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  EXPECT_EQ(surface.got, (std::array<double, 4>{0.0, 0.0, 0.0, 1.0}));
}

TEST_P(Pair422, OneLumaOfThePairIsKeptByTheParityOfX) {
  // As the second row of a pair's life: what an even and an odd x leave alone.
  const int keptByEven = GetParam() == 11 || GetParam() == 13 ? 3 : 0;
  const int keptByOdd = GetParam() == 11 || GetParam() == 13 ? 1 : 2;
  for (int x = 0; x < 2; ++x) {
    for (const bool ink : {true, false}) {
      Frame frame(4);
      frame.fill(0xAA);
      CDrawYCbCrYUYV surface(GetParam());
      surface.SetCanvas(frame.canvas(), 1, 2, 0);
      surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, ink);
      EXPECT_EQ(surface.PutPixel(x, 0, ink), 0U);
      const std::string order = orderOf(GetParam());
      for (int byte = 0; byte < 4; ++byte) {
        const char role = order[static_cast<std::size_t>(byte)];
        int want = role == 'Y' ? 0x50 : role == 'B' ? 0x60 : 0x70;
        if (byte == (x == 0 ? keptByEven : keptByOdd))
          want = 0xAA;
        EXPECT_EQ(frame[byte], want) << "x " << x << " byte " << byte;
      }
      EXPECT_TRUE(frame.guardsIntact());
    }
  }
}

TEST_P(Pair422, CoordinatesWrapAroundTheCanvasAndTheLumaGoesByTheGivenX) {
  for (const int width : {1, 2, 3, 5, 6, 7}) {
    for (const int height : {1, 2, 3}) {
      const std::vector<int> marks = {0,  1,  2,       3,           4,       5,
                                      6,  7,  8,       13,          100,     -1,
                                      -2, -3, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1};
      for (const int x : marks) {
        for (const int y : marks) {
          SCOPED_TRACE(testing::Message() << x << "," << y << " on " << width << "x" << height);
          Frame got(64, 2), want(64, 2);
          CDrawYCbCrYUYV surface(GetParam());
          surface.SetCanvas(got.canvas(), height, width, 18);
          surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, true);
          const std::uint32_t word = PairFields::foreground(surface);
          EXPECT_EQ(surface.PutPixel(x, y, true), 0U);

          const std::uint32_t row =
              static_cast<std::uint32_t>(y) % static_cast<std::uint32_t>(height);
          const std::uint32_t column =
              static_cast<std::uint32_t>(x) % static_cast<std::uint32_t>(width);
          const bool odd = x % 2 != 0;
          const std::uint32_t kept = GetParam() % 2 == 1 ? (odd ? 1U : 3U) : (odd ? 2U : 0U);
          for (std::uint32_t byte = 0; byte < 4; ++byte) {
            if (byte != kept)
              want[static_cast<std::ptrdiff_t>(row * 18 + column / 2 * 4 + byte)] =
                  static_cast<std::uint8_t>(word >> (8 * byte));
          }
          ASSERT_TRUE(got.all() == want.all());
        }
      }
    }
  }
}

TEST_P(Pair422, WithoutACanvasPlottingReturnsZero) {
  CDrawYCbCrYUYV surface(GetParam());
  EXPECT_EQ(surface.PutPixel(0, 0, true), 0U);
  surface.SetCanvas(nullptr, 4, 4, 0);
  EXPECT_EQ(surface.PutPixel(1, 1, false), 0U);
  EXPECT_EQ(surface.GetPixel(1, 1), nullptr);
}

TEST_P(Pair422, BlendingAndAddingAreNotConsulted) {
  Frame plain(32, 3), other(32, 3);
  CDrawYCbCrYUYV surface(GetParam());
  surface.SetColorYCbCr8(1, 2, 3, 0, true);
  surface.SetCanvas(plain.canvas(), 2, 4, 0);
  surface.PutPixel(1, 1, true);
  surface.SetCanvas(other.canvas(), 2, 4, 0);
  surface.SetTransparency(0.5, true);
  surface.SetTransparency(true);
  surface.SetAlphaAdditive(true);
  surface.PutPixel(1, 1, true);
  EXPECT_TRUE(plain.all() == other.all());
}

TEST(Pair422Bytes, UyvyPlotsItsTwoLumasInTurn) {
  Frame frame(8);
  frame.fill(0);
  CDrawYCbCrYUYV surface(ptUYVY);
  surface.SetCanvas(frame.canvas(), 1, 4, 0);
  surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, true);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(Bytes(frame.data(), frame.data() + 4), (Bytes{0x60, 0x50, 0x70, 0x00}));
  surface.PutPixel(1, 0, true);
  EXPECT_EQ(Bytes(frame.data(), frame.data() + 4), (Bytes{0x60, 0x50, 0x70, 0x50}));
}

TEST(Pair422Bytes, YuyvPlotsTheOtherLuma) {
  Frame frame(8);
  frame.fill(0);
  CDrawYCbCrYUYV surface(ptYUYV);
  surface.SetCanvas(frame.canvas(), 1, 4, 0);
  surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, true);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(Bytes(frame.data(), frame.data() + 4), (Bytes{0x00, 0x60, 0x50, 0x70}));
}

TEST(Pair422Bytes, GetColorRgbaKnowsNoneOfItsColours) {
  CDrawYCbCrYUYV surface(ptUYVY);
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  double r = 9, g = 9, b = 9, a = 9;
  surface.GetColorRGBA(r, g, b, a, true);
  EXPECT_EQ(r + g + b + a, 4.0);
}

TEST(Pair422Bytes, AnAssignmentCopiesTheWordsFromTheRightSide) {
  Frame one(16, 1), two(16, 2);
  CDrawYCbCrYUYV left(ptUYVY), right(ptUYVY);
  left.SetCanvas(one.canvas(), 1, 2, 0);
  right.SetCanvas(two.canvas(), 1, 2, 0);
  right.SetColorYCbCr8(4, 5, 6, 0, true);
  right.SetColorYCbCr8(7, 8, 9, 0, false);
  *PairFields::scales(right)[3] = 12.5;
  PairFields::spare(right) = 77;
  CDrawYCbCrYUYV& result = (left = right);
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(PairFields::foreground(left), PairFields::foreground(right));
  EXPECT_EQ(PairFields::background(left), PairFields::background(right));
  EXPECT_EQ(*PairFields::scales(left)[3], 12.5);
  EXPECT_EQ(PairFields::spare(left), 77);
  EXPECT_EQ(Bytes(two.data(), two.data() + 4), (Bytes{5, 4, 6, 4}));
  EXPECT_TRUE(one.untouched());
}

}  // namespace
