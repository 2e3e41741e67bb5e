// SPDX-License-Identifier: BSD-2-Clause
//
// How a watermark gets into the frames, against plain references.
#include "exposed_overlay.h"
#include "noted_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr std::uint32_t kRgb = 0, k8 = 0x32767579, k10 = 0x76323130;

int pitch10(int width) {
  return (width + 47) / 48 * 48 * 8 / 3;
}

/// A watermark of random samples over a frame of noise.
class Blend {
 public:
  Blend(std::uint32_t layout, int width, int height, int frameWidth, int frameHeight)
      : got(frameBytes(layout, frameWidth, frameHeight)), want(got), layout_(layout) {
    Random random(static_cast<std::uint32_t>(width * 1000 + height * 100 + frameWidth));
    overlay.watermarkLayout = layout;
    overlay.watermarkWidth = static_cast<std::uint32_t>(width);
    overlay.watermarkHeight = static_cast<std::uint32_t>(height);
    overlay.video.biWidth = frameWidth;
    overlay.video.biHeight = frameHeight;
    const int pixels = width * height;
    if (layout == kRgb)
      overlay.watermarkRGBA = filled<std::uint8_t>(pixels * 4, 255, random);
    else if (layout == k8)
      overlay.watermark8 = filled<std::uint8_t>(pixels * 5, 255, random);
    else
      overlay.watermark10 = filled<std::uint32_t>(pixels * 5, 1023, random);
  }

  /// Applies it and compares the frame, guards included.
  void expectPlain(int x, int y) {
    overlay.WatermarkX = x;
    overlay.WatermarkY = y;
    QFRAME record{};
    record.frameBuffer = got.canvas();
    EXPECT_EQ(overlay.ApplyWatermark(&record), 0U);
    if (layout_ == kRgb)
      plainRgb();
    else if (layout_ == k8)
      plain8();
    else
      plain10();
    ASSERT_EQ(got.all(), want.all())
        << overlay.watermarkWidth << "x" << overlay.watermarkHeight << " at " << x << "," << y;
    EXPECT_TRUE(got.guardsIntact());
  }

  Overlay overlay;
  Frame got, want;

 private:
  static std::size_t frameBytes(std::uint32_t layout, int width, int height) {
    const int row = layout == kRgb ? width * 4 : layout == k8 ? width * 2 : pitch10(width);
    return static_cast<std::size_t>(row * height);
  }
  template <class Sample>
  static Sample* filled(int count, int most, Random& random) {
    auto* const samples = static_cast<Sample*>(
        NKAlloc(static_cast<std::uint32_t>(std::max(count, 1)) * sizeof(Sample)));
    for (int i = 0; i < count; ++i)
      samples[i] = static_cast<Sample>(random.between(0, random.flag() ? most : 30));
    return samples;
  }

  /// Blends the byte of the frame at `at`, if it has one there.
  void plainByte(int at, int source, int alpha) {
    if (at < 0 || at >= static_cast<int>(want.bytes().size()))
      return;
    std::uint8_t& under = want[at];
    under = static_cast<std::uint8_t>((source * alpha + under * (255 - alpha)) / 255);
  }

  /// A negative place is in the line above, unless that lies before the frame.
  void plainRgb() {
    const Overlay& o = overlay;
    const int width = static_cast<int>(o.watermarkWidth);
    for (int row = 0; row < static_cast<int>(o.watermarkHeight); ++row) {
      for (int x = 0; x < width; ++x) {
        const int frameX = o.WatermarkX + x, frameY = o.WatermarkY + row;
        const std::uint8_t* const source = o.watermarkRGBA + (row * width + x) * 4;
        const int at = (frameY * o.video.biWidth + frameX) * 4;
        if (frameX >= o.video.biWidth || frameY >= o.video.biHeight || at < 0 || source[3] <= 16)
          continue;
        for (int channel = 0; channel < 3; ++channel)
          plainByte(at + channel, source[channel], source[3]);
        want[at + 3] = source[3];
      }
    }
  }

  /// The right edge is looked for in pairs.
  void plain8() {
    const Overlay& o = overlay;
    const int pairs = static_cast<int>(o.watermarkWidth) / 2;
    for (int row = 0; row < static_cast<int>(o.watermarkHeight); ++row) {
      const int frameY = o.WatermarkY + row;
      for (int pair = 0; pair < pairs && o.WatermarkX + pair < o.video.biWidth; ++pair) {
        const std::uint8_t* const group = o.watermark8 + (row * pairs + pair) * 5;
        const int at = (frameY * o.video.biWidth + o.WatermarkX) * 2 + pair * 4;
        if (frameY >= o.video.biHeight || group[4] <= 8)
          continue;
        plainByte(at + 0, group[1], group[4]);
        plainByte(at + 1, group[0], group[4]);
        plainByte(at + 2, group[3], group[4]);
        plainByte(at + 3, group[2], group[4]);
      }
    }
  }

  void plain10() {
    const Overlay& o = overlay;
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(ptV210, o.video.biWidth, o.video.biHeight, pitch10(o.video.biWidth),
                      want.canvas(), surface),
              0U);
    const int width = static_cast<int>(o.watermarkWidth), groups = (width + 1) / 2;
    for (int row = 0; row < static_cast<int>(o.watermarkHeight); ++row) {
      for (int x = 0; x < width; ++x) {
        const std::uint32_t* const group = o.watermark10 + (row * groups + x / 2) * 5;
        const int frameX = o.WatermarkX + x, frameY = o.WatermarkY + row;
        if (group[4] <= 10 || frameX < 0 || frameX >= o.video.biWidth || frameY < 0 ||
            frameY >= o.video.biHeight)
          continue;
        surface->SetColorYCbCr10(x % 2 == 0 ? group[0] : group[2], group[1], group[3], group[4],
                                 true);
        surface->PutPixel(frameX, frameY, true);
      }
    }
    ReleaseDraw(surface);
  }

  std::uint32_t layout_;
};

class WatermarkBlend : public testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(
    Layouts, WatermarkBlend, testing::Values(kRgb, k8, k10), [](const auto& each) {
      return std::string(each.param == kRgb ? "Rgb" : each.param == k8 ? "EightBits" : "TenBits");
    });

TEST_P(WatermarkBlend, IsPlainAtEveryPlaceAroundTheFrame) {
  for (const auto& [width, height] : {std::pair{10, 4}, {7, 3}, {1, 1}, {2, 1}}) {
    for (int y = -5; y <= 9; ++y) {
      for (int x = -12; x <= 26; ++x) {
        Blend blend(GetParam(), width, height, 24, 8);
        blend.expectPlain(x, y);
      }
    }
  }
}

TEST_P(WatermarkBlend, OfAPictureLargerThanTheFrameStaysInside) {
  for (const auto& [x, y] : {std::pair{0, 0}, {-20, -3}, {6, 2}, {-70, -20}, {24, 8}}) {
    Blend blend(GetParam(), 75, 21, 24, 8);
    blend.expectPlain(x, y);
  }
}

TEST_P(WatermarkBlend, FarOutsideTheFrameDrawsNothing) {
  constexpr int kMost = 2147483647;
  for (const auto& [x, y] : {std::pair{kMost, 0}, {-kMost - 1, 0}, {0, kMost}, {0, -kMost - 1}}) {
    Blend blend(GetParam(), 10, 4, 24, 8);
    blend.overlay.WatermarkX = x;
    blend.overlay.WatermarkY = y;
    QFRAME record{};
    record.frameBuffer = blend.got.canvas();
    blend.overlay.ApplyWatermark(&record);
    EXPECT_TRUE(blend.got.untouched());
  }
}

TEST_P(WatermarkBlend, WithoutAPictureDrawsNothingAndIsSilent) {
  notedReader = NotedReader();
  Blend blend(GetParam(), 10, 4, 24, 8);
  blend.overlay.watermarkRGBA = nullptr;
  blend.overlay.watermark8 = nullptr;
  blend.overlay.watermark10 = nullptr;
  QFRAME record{};
  record.frameBuffer = blend.got.canvas();
  blend.overlay.WatermarkX = blend.overlay.WatermarkY = 0;
  EXPECT_EQ(blend.overlay.ApplyWatermark(&record), 0U);
  EXPECT_TRUE(blend.got.untouched());
  EXPECT_EQ(notedReader.messages, Calls{});
}

TEST_P(WatermarkBlend, TakesNoOpacity) {
  for (const std::uint32_t opacity : {0U, 50U, 255U}) {
    Blend blend(GetParam(), 10, 4, 24, 8);
    blend.overlay.WatermarkOpacity = opacity;
    blend.expectPlain(4, 2);
  }
}

/// The first alpha that shows, in a picture of one pixel or pair.
std::uint32_t firstThatShows(std::uint32_t layout) {
  for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
    Blend blend(layout, 2, 1, 24, 8);
    if (layout == kRgb)
      SetMemoryFast(blend.overlay.watermarkRGBA, 0x00010203U | alpha << 24, 8);
    else if (layout == k8)
      std::memset(blend.overlay.watermark8, static_cast<int>(alpha), 5);
    else
      std::fill_n(static_cast<std::uint32_t*>(blend.overlay.watermark10), 5, alpha);
    blend.got.fill(0xFF);
    QFRAME record{};
    record.frameBuffer = blend.got.canvas();
    blend.overlay.WatermarkX = blend.overlay.WatermarkY = 0;
    blend.overlay.ApplyWatermark(&record);
    if (!blend.got.untouched())
      return alpha;
  }
  return 256;
}

TEST(WatermarkAlpha, ShowsFromALevelOfEachLayout) {
  EXPECT_EQ(firstThatShows(kRgb), 17U);
  EXPECT_EQ(firstThatShows(k8), 9U);
  EXPECT_EQ(firstThatShows(k10), 11U);
}

/// Every source over every ground; the division truncates.
TEST(WatermarkAlpha, BlendsEveryPairOfBytesInRgb) {
  for (int alpha = 0; alpha < 256; alpha += alpha < 20 || alpha > 250 ? 1 : 23) {
    Blend blend(kRgb, 256, 256, 256, 256);
    for (int y = 0; y < 256; ++y) {
      for (int x = 0; x < 256; ++x) {
        const auto source = static_cast<std::uint8_t>(y), under = static_cast<std::uint8_t>(x);
        const int at = (y * 256 + x) * 4;
        const std::uint8_t picture[4] = {source, static_cast<std::uint8_t>(255 - source), under,
                                         static_cast<std::uint8_t>(alpha)};
        std::memcpy(blend.overlay.watermarkRGBA + at, picture, 4);
        for (int channel = 0; channel < 4; ++channel)
          blend.want[at + channel] = blend.got[at + channel] = under;
      }
    }
    blend.expectPlain(0, 0);
  }
}

TEST(WatermarkAlpha, IsWrittenInRgbWhereThePictureShows) {
  Blend blend(kRgb, 2, 1, 4, 2);
  const std::uint8_t picture[8] = {1, 2, 3, 16, 200, 100, 50, 17};
  std::memcpy(blend.overlay.watermarkRGBA, picture, 8);
  blend.got.fill(90);
  blend.overlay.WatermarkX = 1;
  blend.overlay.WatermarkY = 1;
  QFRAME record{};
  record.frameBuffer = blend.got.canvas();
  blend.overlay.ApplyWatermark(&record);
  // 200 * 17 + 90 * 238 is 24820, which is 97.3 times 255.
  const std::uint8_t wanted[16] = {90, 90, 90, 90, 90, 90, 90, 90, 97, 90, 87, 17, 90, 90, 90, 90};
  EXPECT_EQ(std::memcmp(&blend.got[16], wanted, 16), 0);
}

TEST(WatermarkPairs, LieInTheFrameAsCbYCrY) {
  Blend blend(k8, 2, 1, 4, 1);
  const std::uint8_t group[5] = {10, 20, 30, 40, 255};  // Y, Cb, Y, Cr
  std::memcpy(blend.overlay.watermark8, group, 5);
  blend.got.fill(0);
  blend.overlay.WatermarkX = 2;
  blend.overlay.WatermarkY = 0;
  QFRAME record{};
  record.frameBuffer = blend.got.canvas();
  blend.overlay.ApplyWatermark(&record);
  const std::uint8_t wanted[8] = {0, 0, 0, 0, 20, 10, 40, 30};
  EXPECT_EQ(std::memcmp(&blend.got[0], wanted, 8), 0);
}

TEST(WatermarkPairs, RunOnIntoTheNextLineButNotOutOfTheFrame) {
  Blend blend(k8, 20, 2, 16, 3);
  std::memset(blend.overlay.watermark8, 255, 20 * 2 * 5);
  blend.got.fill(0);
  blend.overlay.WatermarkX = 12;
  blend.overlay.WatermarkY = 1;
  QFRAME record{};
  record.frameBuffer = blend.got.canvas();
  blend.overlay.ApplyWatermark(&record);
  // Four pairs fit between 12 and 16 as though they were pixels; the row ends after two.
  std::vector<std::ptrdiff_t> wanted;
  for (int byte = 0; byte < 16; ++byte)
    wanted.push_back(32 + 24 + byte);
  for (int byte = 0; byte < 8; ++byte)
    wanted.push_back(64 + 24 + byte);
  EXPECT_EQ(blend.got.changed(), wanted);
}

TEST(WatermarkPlace, LeftOfTheFrameIsInTheLineAbove) {
  for (const std::uint32_t layout : {kRgb, k8}) {
    Blend blend(layout, 8, 2, 16, 3);
    const int pixel = layout == kRgb ? 4 : 2;
    if (layout == kRgb)
      std::memset(blend.overlay.watermarkRGBA, 255, 8 * 2 * 4);
    else
      std::memset(blend.overlay.watermark8, 255, 8 * 2 * 5);
    blend.got.fill(0);
    blend.overlay.WatermarkX = -3;
    blend.overlay.WatermarkY = 0;
    QFRAME record{};
    record.frameBuffer = blend.got.canvas();
    blend.overlay.ApplyWatermark(&record);
    std::vector<std::ptrdiff_t> wanted;
    for (int byte = 0; byte < 5 * pixel; ++byte)  // of the first row, what is in the frame
      wanted.push_back(byte);
    for (int byte = -3 * pixel; byte < 5 * pixel; ++byte)
      wanted.push_back(16 * pixel + byte);
    EXPECT_EQ(blend.got.changed(), wanted);
    EXPECT_TRUE(blend.got.guardsIntact());
  }
}

TEST(WatermarkLayout, ThatIsNotServedIsToldAtEveryFrame) {
  notedReader = NotedReader();
  Blend blend(k8, 10, 4, 24, 8);
  for (const std::uint32_t layout : {1U, 3U, 0x30313276U, 0x32595559U, 0xFFFFFFFFU}) {
    notedReader.messages.clear();
    blend.overlay.watermarkLayout = layout;
    blend.overlay.WatermarkX = blend.overlay.WatermarkY = 0;
    QFRAME record{};
    record.frameBuffer = blend.got.canvas();
    EXPECT_EQ(blend.overlay.ApplyWatermark(&record), 0U);
    EXPECT_EQ(blend.overlay.ApplyWatermark(&record), 0U);
    EXPECT_EQ(notedReader.messages, Calls(2, "Error: No colourspace for watermark "));
    EXPECT_TRUE(blend.got.untouched());
  }
}

TEST(WatermarkLayer, LiesOverTheTimecodeAndUnderTheTexts) {
  notedReader = NotedReader();
  usePicture(300, 60, 3);
  for (std::size_t i = 3; i < notedReader.picture.size(); i += 4)
    notedReader.picture[i] = 255;
  const auto coveredBytes = [](bool text, std::uint32_t enabled) {
    Overlay o;
    o.SetWatermarkPath("logo.png");
    o.Enabled = o.TimeCodeLTCEnable = 1;
    o.WatermarkEnable = enabled;
    o.WatermarkX = 20;
    o.WatermarkY = 300;
    if (text) {
      o.setText(0, "text");
      o.CustomTextX[0] = 30;
      o.CustomTextY[0] = 310;
    }
    const HZWVIDEO video = videoOf(kStreams[0]);
    const HZWSYSTEM system{};
    o.Create(&video, &system);
    BurnFrame frame;
    o.BurnIn(&frame.record, nullptr, nullptr, 0);
    int same = 0;
    for (int row = 0; row < 60; ++row) {
      for (int byte = 0; byte < 300 * 4; ++byte)
        same += frame.frame[((300 + row) * 960 + 20) * 4 + byte] ==
                        notedReader.picture[static_cast<std::size_t>(row * 1200 + byte)]
                    ? 1
                    : 0;
    }
    return same;
  };
  EXPECT_EQ(coveredBytes(false, 1), 300 * 60 * 4);
  EXPECT_EQ(coveredBytes(false, 2), 300 * 60 * 4);
  EXPECT_LT(coveredBytes(true, 1), 300 * 60 * 4 - 4 * 24 * 30);
  EXPECT_LT(coveredBytes(false, 0), 300 * 60);
}

}  // namespace
