// SPDX-License-Identifier: BSD-2-Clause
//
// Burnt frames, compared by bytes with text that the test draws on its own surface.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

const HZWSYSTEM kSystem = [] {
  HZWSYSTEM system{};
  system.size = sizeof system;
  system.fileType = hzwFileMOV;
  return system;
}();

/// One text of the expected picture.
struct Line {
  std::string text;
  int left, top, right, height;
};

/// An overlay with everything that it shows, and the expected picture.
class Burn : public testing::TestWithParam<Stream> {
 protected:
  Burn() : video_(videoOf(GetParam())) {
    overlay_.Enabled = 1;
    got_.record.ltcCount = want_.record.ltcCount = 107892;
    got_.record.vitcCount = want_.record.vitcCount = 123456;
  }

  /// Draws lines in their order, in the colours of an overlay.
  void draw(const std::vector<Line>& lines, bool fill) {
    BITMAPINFO info{};
    std::memcpy(&info, &video_, sizeof info);
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(&info, want_.record.frameBuffer, surface), 0U);
    surface->SetCanvas(want_.record.frameBuffer, video_.biHeight, video_.biWidth, 0);
    surface->SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
    surface->SetColorRGBA(0.0, 0.0, 0.0, 0.0, false);
    surface->SetTextTransparent(!fill);
    for (const Line& line : lines) {
      tagRECT rect = {line.left, line.top, line.right, line.top + line.height};
      surface->DrawText(line.text.c_str(), static_cast<int>(line.text.size()), &rect, 0x400);
    }
    ReleaseDraw(surface);
  }

  void expectLines(const std::vector<Line>& lines, bool fill = true) {
    draw(lines, fill);
    EXPECT_EQ(overlay_.BurnIn(&got_.record, nullptr, nullptr, offset_), 0U);
    EXPECT_TRUE(got_.frame.all() == want_.frame.all());
    EXPECT_TRUE(got_.frame.guardsIntact());
    EXPECT_EQ(got_.frame.untouched(), lines.empty());
  }

  void create() { ASSERT_EQ(overlay_.Create(&video_, &kSystem), 0U); }

  [[nodiscard]] std::string timecode(std::uint32_t count) const {
    char text[64] = {};
    TcForm(count - offset_, overlay_.timeCodeType | 0x30100, text);
    return text;
  }

  HZWVIDEO video_;
  Overlay overlay_;
  BurnFrame got_, want_;
  std::uint32_t offset_ = 0;
};

INSTANTIATE_TEST_SUITE_P(AllStreams, Burn, testing::ValuesIn(kStreams),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(Burn, NothingEnabledDrawsNothing) {
  create();
  expectLines({});
}

TEST_P(Burn, TheThreeFlagsOfFramesAndBitsAreNotRead) {
  overlay_.VChipEnable = overlay_.TimeCodeLUBEnable = overlay_.TimeCodeVUBEnable = 1;
  overlay_.TimeCodeLTCFrameEnable = overlay_.TimeCodeVITCFrameEnable = 1;
  create();
  expectLines({});
}

TEST_P(Burn, LtcAloneStandsInTheFirstRow) {
  overlay_.TimeCodeLTCEnable = 1;
  offset_ = 1000;
  create();
  expectLines({{timecode(107892), 20, 300, 0, 20}});
}

TEST_P(Burn, VitcAloneStandsInTheFirstRowToo) {
  overlay_.TimeCodeVITCEnable = 5;
  overlay_.TimeCodeX = 33;
  overlay_.TimeCodeY = 77;
  overlay_.TimeCodeSize = 4;
  create();
  expectLines({{timecode(123456), 33, 77, 0, 40}});
}

TEST_P(Burn, VitcStandsUnderLtc) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  create();
  expectLines({{timecode(107892), 20, 300, 0, 20}, {timecode(123456), 20, 320, 0, 20}});
}

TEST_P(Burn, AnOffsetAboveTheCountWraps) {
  overlay_.TimeCodeLTCEnable = 1;
  offset_ = 200000;
  create();
  expectLines({{timecode(107892), 20, 300, 0, 20}});
}

TEST_P(Burn, ASizeAboveTwentyMagnifiesTwentyTimesAndAdvancesByItsOwnRows) {
  video_ = videoOf(GetParam(), 2400, 680);
  got_.frame = Frame(2448 * 680 * 4);
  want_.frame = Frame(2448 * 680 * 4);
  got_.record.frameBuffer = got_.frame.canvas();
  want_.record.frameBuffer = want_.frame.canvas();
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  overlay_.TimeCodeSize = 23;
  overlay_.TimeCodeY = 10;
  create();
  expectLines({{timecode(107892), 20, 10, 0, 230}, {timecode(123456), 20, 240, 0, 230}});
}

TEST_P(Burn, ASizeOfZeroOverprintsItsRows) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  overlay_.TimeCodeSize = 0;
  create();
  expectLines({{timecode(107892), 20, 300, 0, 0}, {timecode(123456), 20, 300, 0, 0}});
}

TEST_P(Burn, InterlacedVideoMakesTheVerticalSettingsEvenForGood) {
  for (const std::uint32_t flags : {0x100U, 0x300U, 0x105U}) {
    Overlay o;
    o.Enabled = 1;
    o.TimeCodeSize = 3;
    o.TimeCodeX = 21;
    o.TimeCodeY = 301;
    o.SourceFormatX = 23;
    o.SourceFormatY = 601;
    o.AudioX = 25;
    o.AudioY = -101;
    o.WatermarkY = 401;
    for (int slot = 0; slot < 10; ++slot) {
      o.CustomTextX[slot] = 11;
      o.CustomTextY[slot] = 31 * slot;
    }
    video_.scanFlags = flags;
    o.Create(&video_, &kSystem);
    o.BurnIn(&got_.record, nullptr, nullptr, 0);
    EXPECT_EQ(o.TimeCodeSize, 2U);
    EXPECT_EQ(o.TimeCodeX, 21);
    EXPECT_EQ(o.TimeCodeY, 300);
    EXPECT_EQ(o.SourceFormatX, 23);
    EXPECT_EQ(o.SourceFormatY, 600);
    EXPECT_EQ(o.AudioX, 25);
    EXPECT_EQ(o.AudioY, -102);
    EXPECT_EQ(o.WatermarkY, 401);
    for (int slot = 0; slot < 10; ++slot) {
      EXPECT_EQ(o.CustomTextX[slot], 11);
      EXPECT_EQ(o.CustomTextY[slot], 31 * slot / 2 * 2);
    }
  }
}

TEST_P(Burn, OtherVideoLeavesTheSettingsAlone) {
  for (const std::uint32_t flags : {0U, 0x200U, 0x1FU}) {
    Overlay o;
    o.Enabled = 1;
    o.TimeCodeSize = 3;
    o.TimeCodeY = 301;
    video_.scanFlags = flags;
    o.Create(&video_, &kSystem);
    o.BurnIn(&got_.record, nullptr, nullptr, 0);
    EXPECT_EQ(o.TimeCodeSize, 3U);
    EXPECT_EQ(o.TimeCodeY, 301);
  }
}

TEST_P(Burn, ASizeOfOneOnInterlacedVideoOverprintsItsRows) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  overlay_.TimeCodeSize = 1;
  overlay_.TimeCodeY = 51;
  video_.scanFlags = 0x100;
  create();
  expectLines({{timecode(107892), 20, 50, 0, 0}, {timecode(123456), 20, 50, 0, 0}});
  EXPECT_EQ(overlay_.TimeCodeSize, 0U);
}

TEST_P(Burn, OnlyAFillOfExactlyOneDrawsTheBox) {
  for (const std::uint32_t fill : {0U, 1U, 2U, 0xFFFFFFFFU}) {
    SCOPED_TRACE(fill);
    overlay_.TimeCodeLTCEnable = 1;
    overlay_.FillBackground = fill;
    create();
    expectLines({{timecode(107892), 20, 300, 0, 20}}, fill == 1);
    EXPECT_EQ(DrawFields::transparentText(*overlay_.surface), fill != 1);
  }
}

TEST_P(Burn, TheSecondColoursAreSetWithTheBoxOnly) {
  create();
  for (const std::uint32_t fill : {0U, 2U}) {
    overlay_.FillBackground = fill;
    overlay_.BurnIn(&got_.record, nullptr, nullptr, 0);
    EXPECT_EQ(DrawFields::textColor(*overlay_.surface)[0], 1.0);
    EXPECT_EQ(DrawFields::bkColor(*overlay_.surface)[0], 0.6);
  }
  overlay_.FillBackground = 1;
  overlay_.BurnIn(&got_.record, nullptr, nullptr, 0);
  const double text[] = {0.9, 0.9, 0.9, 1.0};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(DrawFields::textColor(*overlay_.surface)[i], text[i]);
    EXPECT_EQ(DrawFields::bkColor(*overlay_.surface)[i], 0.0);
  }
}

std::string formatLine(const HZWVIDEO& video) {
  const char* scan = "p";
  if ((video.scanFlags & 0x300) == 0x100)
    scan = "i";
  if ((video.scanFlags & 0x300) == 0x200)
    scan = "sf";
  const float rate = static_cast<float>(video.frameRate) / static_cast<float>(video.frameScale);
  char text[512];
  std::snprintf(text, sizeof text, "%.2f %s %s %dx%d %s", static_cast<double>(rate),
                hzwutilFileTypeString(kSystem.fileType),
                hzwutilCodecTypeString(video.biCompression), video.biWidth, video.biHeight, scan);
  return text;
}

TEST_P(Burn, TheFormatLineNamesRateFileCodecSizeAndScan) {
  for (const std::uint32_t flags : {0U, 0x100U, 0x200U, 0x300U, 0x2FFU}) {
    SCOPED_TRACE(flags);
    video_.scanFlags = flags;
    overlay_.SourceFormatEnable = 1;
    create();
    expectLines({{formatLine(video_), 20, 600, 960, 30}});
  }
}

TEST_P(Burn, TheFormatLineIsAlwaysThreeTimesMagnified) {
  overlay_.SourceFormatEnable = 1;
  overlay_.SourceFormatX = 5;
  overlay_.SourceFormatY = 44;
  overlay_.TimeCodeSize = 9;
  create();
  expectLines({{formatLine(video_), 5, 44, 960, 30}});
}

TEST_P(Burn, AFrameScaleOfZeroIsAnInfiniteRate) {
  video_.frameScale = 0;
  overlay_.SourceFormatEnable = 1;
  create();
  const std::string text = formatLine(video_);
  EXPECT_EQ(text.substr(0, 4), "inf ");
  expectLines({{text, 20, 600, 960, 30}});
}

TEST_P(Burn, CustomTextsAreDrawnInOrderAndMissingOnesLeaveTheirGap) {
  overlay_.setText(0, "zero");
  overlay_.setText(2, "two");
  overlay_.setText(3, "three");
  overlay_.CustomTextEnabled[1] = 1;  // enabled without a text
  overlay_.CustomTextEnabled[3] = 0;  // a text that is not enabled
  overlay_.setText(9, "nine");
  overlay_.CustomTextX[9] = 7;
  overlay_.CustomTextY[9] = 400;
  create();
  expectLines({{"zero", 500, 0, 960, 30}, {"two", 500, 60, 960, 30}, {"nine", 7, 400, 960, 30}});
}

TEST_P(Burn, LaterLayersLieOverEarlierOnes) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  overlay_.TimeCodeY = 300;
  overlay_.TimeCodeSize = 3;
  overlay_.SourceFormatEnable = 1;
  overlay_.SourceFormatX = 60;
  overlay_.SourceFormatY = 310;
  overlay_.setText(0, "one text");
  overlay_.CustomTextX[0] = 90;
  overlay_.CustomTextY[0] = 320;
  overlay_.setText(1, "another");
  overlay_.CustomTextX[1] = 130;
  overlay_.CustomTextY[1] = 330;
  create();
  expectLines({{timecode(107892), 20, 300, 0, 30},
               {timecode(123456), 20, 330, 0, 30},
               {formatLine(video_), 60, 310, 960, 30},
               {"one text", 90, 320, 960, 30},
               {"another", 130, 330, 960, 30}});
}

TEST_P(Burn, AFrameFollowsAFrame) {
  overlay_.TimeCodeLTCEnable = 1;
  create();
  for (std::uint32_t count = 1790; count < 1810; ++count) {
    got_.record.ltcCount = count;
    expectLines({{timecode(count), 20, 300, 0, 20}});
  }
}

long long millisecondsNow() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
}

std::string clockText(std::time_t second, long long millisecond) {
  std::tm local{};
  localtime_r(&second, &local);
  char text[24];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d.%lld", local.tm_hour, local.tm_min, local.tm_sec,
                millisecond);
  return text;
}

/// Burns the clock when the milliseconds are in the given range, and expects the frame of one of
/// the moments between before and after.
TEST_P(Burn, TheWallClockShowsLocalTimeAndUnpaddedMilliseconds) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVsyncEnable = 1;
  create();
  BurnFrame warm;
  overlay_.BurnIn(&warm.record, nullptr, nullptr, 0);
  while (millisecondsNow() % 1000 > 80) {
  }
  // The calendar's clock may be some milliseconds behind the other at the turn of a second.
  const std::time_t firstSecond = std::time(nullptr);
  const long long before = millisecondsNow();
  overlay_.BurnIn(&got_.record, nullptr, nullptr, 0);
  const long long after = millisecondsNow();
  const std::time_t lastSecond = std::time(nullptr);
  bool found = false;
  for (long long moment = before; moment <= after && !found; ++moment) {
    for (std::time_t second = firstSecond; second <= lastSecond && !found; ++second) {
      want_.frame = BurnFrame().frame;
      want_.record.frameBuffer = want_.frame.canvas();
      draw({{timecode(107892), 20, 300, 0, 20}, {clockText(second, moment % 1000), 20, 320, 0, 20}},
           true);
      found = got_.frame.all() == want_.frame.all();
    }
  }
  EXPECT_TRUE(found) << "between " << clockText(firstSecond, before % 1000) << " and "
                     << clockText(lastSecond, after % 1000);
}

}  // namespace
