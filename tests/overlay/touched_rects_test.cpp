// SPDX-License-Identifier: BSD-2-Clause
//
// What the overlay says that a pass touches, against what a pass touches.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr int kWidth = 576, kHeight = 400;
constexpr HZWSYSTEM kSystem = {};

struct Rects {
  explicit Rects(const Overlay& overlay, const QFRAME& frame, std::uint32_t offset = 0) {
    NKTouchedRect room[CNkOverlay::kMostTouchedRects];
    const std::uint32_t count =
        overlay.TouchedRects(&frame, offset, room, CNkOverlay::kMostTouchedRects);
    EXPECT_LE(count, CNkOverlay::kMostTouchedRects);
    all.assign(room, room + count);
  }
  [[nodiscard]] std::string text() const {
    std::string lines;
    for (const auto& [layer, rect] : all) {
      for (const auto number :
           {static_cast<int>(layer), static_cast<int>(rect.left), static_cast<int>(rect.top),
            static_cast<int>(rect.right), static_cast<int>(rect.bottom)})
        lines += std::to_string(number) + ' ';
      lines.back() = '\n';
    }
    return lines;
  }
  std::vector<NKTouchedRect> all;
};

/// An overlay of random settings, whose texts and meters mostly lie inside the frame.
class Scene {
 public:
  Scene(const Stream& stream, std::uint32_t seed)
      : random_(seed), stream_(stream), video_(videoOf(stream, kWidth, kHeight)) {
    video_.scanFlags = random_.flag() ? 0x100 : 0;
    overlay.Enabled = 1;
    overlay.FillBackground = random_.flag() ? 1 : 0;
    overlay.TimeCodeLTCEnable = random_.flag();
    overlay.TimeCodeVITCEnable = random_.flag();
    overlay.TimeCodeVsyncEnable = random_.flag();
    overlay.TimeCodeSize = static_cast<std::uint32_t>(random_.between(0, 4));
    place(overlay.TimeCodeX, overlay.TimeCodeY, 12 * 8 * 4, 3 * 40 + 1);
    overlay.SourceFormatEnable = random_.flag();
    place(overlay.SourceFormatX, overlay.SourceFormatY, 24 * 24, 31);
    for (int slot = 0; slot < 10; ++slot) {
      if (random_.between(0, 3) != 0)
        continue;
      const int length = random_.between(0, 12);
      overlay.setText(slot, std::string(static_cast<std::size_t>(length), 'W'));
      place(overlay.CustomTextX[slot], overlay.CustomTextY[slot], length * 24, 31);
    }
    overlay.AudioEnable = random_.between(0, 3) == 0;
    place(overlay.AudioX, overlay.AudioY, 281, 213);
    overlay.Create(&video_, &kSystem);
    setWatermark();
  }

  /// Burns in, and expects no change outside the rectangles.
  void expectNothingElseTouched() {
    const std::uint32_t levels[4] = {random_.word(), random_.word(), random_.word(), 0xFFFF0300},
                        peaks[4] = {random_.word(), random_.word(), 0x0300FFFF, 632};
    frame.record.ltcCount = random_.word() % 100000;
    const Rects rects(overlay, frame.record, 7);
    overlay.BurnIn(&frame.record, levels, peaks, 7);
    const std::vector<bool> allowed = bytesOf(rects);
    for (const std::ptrdiff_t offset : frame.frame.changed()) {
      ASSERT_TRUE(offset >= 0 && offset < static_cast<std::ptrdiff_t>(allowed.size()) &&
                  allowed[static_cast<std::size_t>(offset)])
          << "byte " << offset % pitch() << " of row " << offset / pitch() << "\n"
          << rects.text();
    }
    EXPECT_EQ(Rects(overlay, frame.record, 7).text(), rects.text());
  }

  Overlay overlay;
  BurnFrame frame{5, kWidth, kHeight};

 private:
  /// Inside the frame, if there is room.
  void place(std::int32_t& x, std::int32_t& y, int width, int height) {
    x = random_.between(0, std::max(0, kWidth - width));
    y = random_.between(0, kHeight - height);
  }

  void setWatermark() {
    // In 24-bit frames a watermark leaves the frame.
    if (random_.flag() || std::string(stream_.name) == "BGR24")
      return;
    overlay.WatermarkEnable = 1;
    overlay.watermarkWidth = static_cast<std::uint32_t>(random_.between(1, 90));
    overlay.watermarkHeight = static_cast<std::uint32_t>(random_.between(1, 60));
    overlay.WatermarkX = random_.between(-100, kWidth + 20);
    overlay.WatermarkY = random_.between(-70, kHeight + 20);
    const std::string name = stream_.name;
    overlay.watermarkLayout = name == "v210" ? 0x76323130 : name.find('B') == 0 ? 0 : 0x32767579;
    if (name == "v210")
      overlay.watermark10 = opaque<std::uint32_t>(1023);
    else if (name.find('B') == 0)
      overlay.watermarkRGBA = opaque<std::uint8_t>(255);
    else
      overlay.watermark8 = opaque<std::uint8_t>(255);
  }
  template <class Sample>
  [[nodiscard]] Sample* opaque(Sample most) const {
    const std::uint32_t count = (overlay.watermarkWidth + 1) * overlay.watermarkHeight * 5;
    auto* const samples = static_cast<Sample*>(NKAlloc(count * sizeof(Sample)));
    std::fill_n(samples, count, most);
    return samples;
  }

  [[nodiscard]] const nkdraw::LayoutFacts& facts() const {
    return *nkdraw::findFacts(overlay.surface->PixelType());
  }
  [[nodiscard]] std::ptrdiff_t pitch() const { return nkdraw::packedPitch(facts(), kWidth); }

  /// The bytes of the groups of pixels in the rectangles.
  [[nodiscard]] std::vector<bool> bytesOf(const Rects& rects) const {
    std::vector<bool> allowed(static_cast<std::size_t>(pitch() * kHeight));
    for (const auto& [layer, rect] : rects.all) {
      const int first = rect.left / facts().groupPixels * facts().groupBytes;
      const int end =
          (rect.right + facts().groupPixels - 1) / facts().groupPixels * facts().groupBytes;
      for (int y = rect.top; y < rect.bottom; ++y)
        std::fill(allowed.begin() + y * pitch() + first, allowed.begin() + y * pitch() + end, true);
    }
    return allowed;
  }

  Random random_;
  const Stream& stream_;
  HZWVIDEO video_;
};

class Touched : public testing::TestWithParam<Stream> {};

INSTANTIATE_TEST_SUITE_P(AllStreams, Touched, testing::ValuesIn(kStreams),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(Touched, NothingElseIsWrittenWhateverTheSettings) {
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    Scene(GetParam(), seed).expectNothingElseTouched();
    if (HasFatalFailure())
      return;
  }
}

/// The settings of the tables below.
class TouchedRects : public testing::Test {
 protected:
  void create(const char* layout = "BGRA", std::uint32_t scanFlags = 0) {
    const auto* const stream = std::ranges::find(kStreams, std::string(layout), &Stream::name);
    HZWVIDEO video = videoOf(*stream, kWidth, kHeight);
    video.scanFlags = scanFlags;
    overlay.Enabled = 1;
    overlay.Create(&video, &kSystem);
  }
  [[nodiscard]] std::string rects() const { return Rects(overlay, frame.record).text(); }

  Overlay overlay;
  BurnFrame frame{5, kWidth, kHeight};
};

TEST_F(TouchedRects, AreNoneForAnOverlayThatDrawsNothing) {
  overlay.TimeCodeLTCEnable = 1;
  EXPECT_EQ(rects(), "") << "before Create";
  create();
  overlay.Enabled = 0;
  EXPECT_EQ(rects(), "") << "disabled";
  overlay.Enabled = 1;
  overlay.TimeCodeLTCEnable = 0;
  overlay.setText(0, "");
  EXPECT_EQ(rects(), "") << "nothing on";
}

TEST_F(TouchedRects, ComeInDrawingOrderOneForEachLayer) {
  create();
  overlay.TimeCodeLTCEnable = overlay.TimeCodeVITCEnable = overlay.TimeCodeVsyncEnable = 1;
  overlay.TimeCodeY = 100;
  overlay.SourceFormatEnable = 1;
  overlay.SourceFormatX = 0;
  overlay.SourceFormatY = 200;
  overlay.setText(2, "AB");
  overlay.AudioEnable = overlay.CaptionsEnable = 1;
  const std::string text = rects();
  EXPECT_EQ(text.substr(0, text.find("\n2 ") + 1),
            "0 20 100 196 121\n0 20 120 196 141\n0 20 140 212 161\n");
  EXPECT_NE(text.find("\n3 500 60 548 91\n4 20 100 301 312\n5 0 0 576 400\n"), std::string::npos)
      << text;
}

TEST_F(TouchedRects, AreWholePairsWhereChromaIsShared) {
  overlay.TimeCodeLTCEnable = 1;
  overlay.TimeCodeX = 21;
  create("v210");
  EXPECT_EQ(rects(), "0 20 300 198 321\n");
  Overlay other;
  other.TimeCodeLTCEnable = 1;
  other.TimeCodeX = 21;
  const HZWVIDEO video = videoOf(kStreams[0], kWidth, kHeight);
  other.Enabled = 1;
  other.Create(&video, &kSystem);
  EXPECT_EQ(Rects(other, frame.record).text(), "0 21 300 197 321\n");
}

TEST_F(TouchedRects, BeginOnEvenRowsInInterlacedFrames) {
  create("BGRA", 0x100);
  overlay.setText(0, "A");
  overlay.CustomTextX[0] = 0;
  overlay.CustomTextY[0] = 31;
  EXPECT_EQ(rects(), "3 0 30 24 61\n");
  EXPECT_EQ(overlay.CustomTextY[0], 31) << "asking changes no setting";
}

TEST_F(TouchedRects, EndAtTheFramesEdges) {
  create();
  overlay.setText(0, "A");
  overlay.CustomTextX[0] = 10;
  overlay.CustomTextY[0] = kHeight - 12;
  EXPECT_EQ(rects(), "3 10 388 34 400\n");
}

TEST_F(TouchedRects, AreTheWholeFrameForTextThatLeavesIt) {
  create();
  overlay.setText(0, "A");
  overlay.CustomTextX[0] = kWidth - 23;
  EXPECT_EQ(rects(), "3 0 0 576 400\n");
  overlay.CustomTextX[0] = kWidth - 24;
  EXPECT_EQ(rects(), "3 552 0 576 31\n");
  overlay.CustomTextX[0] = -1;
  EXPECT_EQ(rects(), "3 0 0 576 400\n");
}

TEST_F(TouchedRects, AreWrittenAsFarAsThereIsRoom) {
  create();
  for (int slot = 0; slot < 3; ++slot) {
    overlay.setText(slot, "A");
    overlay.CustomTextX[slot] = 0;
  }
  NKTouchedRect room[2] = {{9, {}}, {9, {}}};
  EXPECT_EQ(overlay.TouchedRects(&frame.record, 0, room, 1), 3U);
  EXPECT_EQ(room[0].layer, static_cast<std::uint32_t>(NKLayerCustomText));
  EXPECT_EQ(room[1].layer, 9U);
  EXPECT_EQ(overlay.TouchedRects(&frame.record, 0, nullptr, 0), 3U);
}

}  // namespace
